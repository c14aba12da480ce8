// dqtool console: the view that runs a console program, on the terminal.

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "apps/dqtool/command.h"
#include "dqlib/framework/base/error_text.h"
#include "dqlib/framework/windows/control_bar.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/output/console_program_view.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

using dq::platform::Processes;

/// Standard output, whose wait for a reader can be ended.
class Output {
 public:
  Output() : handle_(processes_.OpenStandardOutput().value) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  ~Output() { processes_.Close(handle_); }

  /// Throws `OutputClosed` if it can't be written.
  void Print(std::string_view text) {
    const dq::platform::Error error = processes_.Write(handle_, text).error;
    if (error.ok() || stopped_) return;
    throw OutputClosed("standard output: " + dq::detail::ErrorText(error),
                       error.kind == dq::platform::ErrorKind::kBrokenPipe);
  }

  /// Nothing more is printed. From any thread.
  void Stop() {
    stopped_ = true;
    processes_.Interrupt(handle_);
  }

 private:
  Processes& processes_ = *dq::platform::Current().processes;
  const dq::HANDLE handle_;
  std::atomic<bool> stopped_ = false;
};

/// What is typed at once, so that no output comes between.
struct TypedText {
  /// Whole lines; before the input's end the last one may have no line end.
  std::string text;
  bool is_end = false;
};

/// The view, whose output is printed too, and whose keys are standard input's bytes.
class TerminalView : public dq::CDQConsoleProgramView {
 public:
  /// The second argument is a `TypedText`, good for the length of the send, or null; the answer is
  /// how many bytes the program hasn't taken.
  static constexpr dq::UINT kType = dq::WM_APP;

  explicit TerminalView(Output& output) : output_(output) { SetMaxText(kKept); }
  ~TerminalView() override { EndInDestructor(); }

  dq::LRESULT WindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message != kType) return CDQConsoleProgramView::WindowProc(message, wparam, lparam);
    if (lparam != 0) Type(*reinterpret_cast<const TypedText*>(lparam));
    return static_cast<dq::LRESULT>(GetUnwrittenInput());
  }

 protected:
  void ShowOutput(const char* text) override {
    std::string printed(text);
    // As lines end on a terminal.
    for (std::size_t at = 0; (at = printed.find("\r\n", at)) != std::string::npos; ++at) {
      printed.erase(at, 1);
    }
    output_.Print(printed);
    CDQConsoleProgramView::ShowOutput(text);
  }

 private:
  /// More than that was printed already.
  static constexpr int kKept = 64 * 1024;

  void Type(const TypedText& typed) {
    SetSel(GetWindowTextLength(), -1);
    for (const char character : typed.text) {
      const auto byte = static_cast<unsigned char>(character);
      const bool is_key = character == '\t' || (byte >= ' ' && byte != 0x7F);
      if (character == '\n') {
        SendMessage(dq::WM_CHAR, '\r');
      } else if (is_key) {
        SendMessage(dq::WM_CHAR, byte);
      } else {
        // What no key types comes as if it was pasted.
        ReplaceSel(std::string(1, character).c_str());
      }
    }
    if (typed.is_end) CloseInput();
  }

  Output& output_;
};

/// Standard input on its way to a view, on a thread of its own until one of them ends.
class Typist {
 public:
  explicit Typist(TerminalView& view)
      : view_(view),
        window_(view.GetSafeHwnd()),
        input_(processes_.OpenStandardInput().value),
        thread_(dq::AfxBeginThread(&Run, this)) {}
  Typist(const Typist&) = delete;
  Typist& operator=(const Typist&) = delete;
  ~Typist() {
    processes_.Interrupt(input_);
    // What is still on its way then isn't waited for.
    view_.DestroyWindow();
    thread_.Join();
    processes_.Close(input_);
  }

  /// Whether standard input could be read so far.
  bool HasRead() const { return has_read_; }

 private:
  /// What may wait for the program before more is read.
  static constexpr dq::LRESULT kMostWaiting = 64 * 1024;

  static dq::UINT Run(void* self) {
    static_cast<Typist*>(self)->TypeAll();
    return 0;
  }

  void TypeAll() {
    const auto buffer = std::make_unique<char[]>(kReadSize);
    std::string text;
    for (;;) {
      const auto read = processes_.Read(input_, {buffer.get(), kReadSize});
      const bool is_end = read.error.kind == dq::platform::ErrorKind::kBrokenPipe;
      if (!read.ok() && !is_end) has_read_ = false;
      if (!read.ok() || read.value == 0) break;
      const std::string_view piece(buffer.get(), read.value);
      const std::size_t lines = piece.rfind('\n') + 1;
      text += piece.substr(0, lines);
      if (lines > 0) Type({std::exchange(text, {}), false});
      text += piece.substr(lines);
    }
    Type({std::move(text), true});
  }

  void Type(TypedText typed) {
    if (std::erase(typed.text, '\0') > 0 && !has_told_zeros_) {
      has_told_zeros_ = true;
      Complain("zero bytes can't be typed and are left out");
    }
    for (std::size_t at = 0; (at = typed.text.find("\r\n", at)) != std::string::npos;) {
      typed.text.erase(at, 1);
    }
    const auto send = [this](const TypedText* text) {
      return dq::SendToWindow(window_, TerminalView::kType, 0, reinterpret_cast<dq::LPARAM>(text));
    };
    // A view that has ended answers 0.
    for (dq::LRESULT waiting = send(&typed); !typed.is_end && waiting > kMostWaiting;) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      waiting = send(nullptr);
    }
  }

  static constexpr std::size_t kReadSize = 4096;

  Processes& processes_ = *dq::platform::Current().processes;
  TerminalView& view_;
  const dq::HWND window_;
  const dq::HANDLE input_;
  std::atomic<bool> has_read_ = true;
  bool has_told_zeros_ = false;
  /// Last, because it uses the others.
  dq::WorkerThread thread_;
};

int RunConsole(const Arguments& arguments) {
  const bool has_command = !arguments.words.empty();
  if (has_command && arguments.words[0].empty()) throw WrongUsage("COMMAND is empty");
  Output output;
  dq::CWnd main;
  main.CreateWnd("dqtool");
  TerminalView view(output);
  if (has_command) view.SetCommandLine(arguments.words[0].c_str());
  if (!view.Create(&main, {}, dq::kFirstPaneId, static_cast<dq::CDocument*>(nullptr))) {
    const std::string name = has_command ? "'" + arguments.words[0] + "'" : "the shell";
    return Complain("cannot start " + name + ": " + dq::detail::ErrorText(view.GetStartError()));
  }
  const dq::HWND window = view.GetSafeHwnd();
  std::atomic<bool> stopped = false;
  bool has_read = false;
  {
    const auto watch = dq::platform::Current().console->WatchStopRequests([&] {
      stopped = true;
      output.Stop();
      dq::PostToWindow(window, dq::WM_CLOSE, 0, 0);
    });
    const Typist typist(view);
    dq::PumpUntilHandled([&view] { return view.GetSafeHwnd() == nullptr; });
    has_read = typist.HasRead();
  }
  if (stopped) return Complain("stopped");
  return has_read ? int{kYes} : Complain("cannot read standard input");
}

const Command kConsole{
    "console",
    "Runs a console program, or the shell, in a console view at the terminal.",
    "What is on standard input is typed there line by line, and what the program writes is\n"
    "printed as it comes. The end of standard input ends the program's own; then it is waited\n"
    "for. COMMAND is one text; blanks separate, quotes group, and nothing is expanded. Without it\n"
    "the program named by COMSPEC runs, with ' /A', or else the user's shell.\n"
    "\n"
    "The program runs in a session of its own, so that keys as Ctrl-C don't reach it: they, a\n"
    "hang-up and a request to terminate end it at once with all it has started, and the exit\n"
    "status is 1, as it is if the program can't be started. If it ends by itself the status is 0,\n"
    "whatever it returns.\n",
    {{"[COMMAND]", RunConsole, {}}}};

}  // namespace
}  // namespace dqtool
