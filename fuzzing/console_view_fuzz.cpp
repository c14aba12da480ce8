// Whatever a program writes, in whatever pieces, comes into the console view whole and in order; of
// what is cut off the text's begin the number of bytes is told.

#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

/// One program that writes the input, so many bytes at a time.
class WritingProcesses : public platform::Processes {
 public:
  WritingProcesses(std::string_view output, std::size_t size) : output_(output), size_(size) {}

  platform::Result<platform::Pipe> CreatePipe() override { return platform::Pipe{1, 2}; }
  platform::Result<HANDLE> OpenStandardInput() override { return HANDLE{1}; }
  platform::Result<HANDLE> OpenStandardOutput() override { return HANDLE{2}; }
  platform::Result<std::size_t> Read(HANDLE, std::span<char> buffer) override {
    const std::size_t size = output_.copy(buffer.data(), std::min(size_, buffer.size()));
    output_.remove_prefix(size);
    return size;
  }
  platform::Result<std::size_t> Write(HANDLE, std::string_view bytes) override {
    return bytes.size();
  }
  void Interrupt(HANDLE) override {}
  platform::Result<platform::StartedProcess> Start(const platform::StartInfo&) override {
    return platform::StartedProcess{3, 4};
  }
  platform::Result<int> Wait(HANDLE) override { return 0; }
  platform::Error Terminate(HANDLE) override { return {}; }
  void Close(HANDLE) override {}
  std::optional<std::string> EnvironmentVariable(const std::string&) override { return {}; }
  std::string_view LineEnd() override { return "\n"; }

 private:
  std::string_view output_;
  std::size_t size_;
};

struct View : CDQConsoleProgramView {
  ~View() override { EndInDestructor(); }
  void PostNcDestroy() override { last_text = Text(); }
  std::string last_text;
};

std::string Expected(std::string_view output) {
  std::string expected;
  for (const char byte : output) {
    if (byte == '\n' && !expected.ends_with('\r')) expected += '\r';
    if (byte != '\0') expected += byte;
  }
  return expected;
}

}  // namespace

void Try(std::string_view input) {
  static CWinApp& app = *new CWinApp("fuzz");
  static_cast<void>(app);
  const auto size = static_cast<std::size_t>(TakeByte(input)) + 1;
  const int kept = 16 * TakeByte(input);
  WritingProcesses processes(input, size);
  platform::Platform services = platform::Current();
  services.processes = &processes;
  const platform::ScopedPlatform scope(services);
  CWnd parent;
  parent.CreateWnd("Parent");
  View view;
  view.SetCommandLine("x");
  if (kept > 0) view.SetMaxText(kept);
  Require(view.Create(&parent, {}, 1, static_cast<CDocument*>(nullptr)));
  PumpUntilHandled([&view] { return view.GetSafeHwnd() == nullptr; });
  const std::string expected = Expected(input);
  std::string_view text = view.last_text;
  if (text == expected) return;
  // "[N bytes of older text were removed]" and what is left of the text.
  const auto cut = static_cast<std::size_t>(std::atoll(view.last_text.c_str() + 1));
  text.remove_prefix(std::min(text.find("]\r\n") + 3, text.size()));
  Require(kept > 0 && cut + text.size() == expected.size() && expected.ends_with(text));
  Require(text.size() <= static_cast<std::size_t>(kept) * 5 / 4 + 2 * size + 99);
}

}  // namespace dq::fuzz
