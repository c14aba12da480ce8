// Processes, the console, and what is asked on it.

#include <fcntl.h>
#include <future>
#include <pty.h>
#include <sys/resource.h>

#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

using namespace test;

/// Every test ends with what it began with: no child, no zombie, no descriptor more.
struct ProcessesTest : testing::Test {
  void TearDown() override {
    for (const HANDLE handle : handles_) processes_.Close(handle);
    EXPECT_TRUE(Eventually([] { return Children().empty(); })) << Children();
    EXPECT_EQ(OpenDescriptors(), descriptors_);
  }

  /// What is made by these two is closed at the end.
  Pipe MakePipe() {
    const Pipe pipe = processes_.CreatePipe().value;
    handles_.insert(handles_.end(), {pipe.read_end, pipe.write_end});
    return pipe;
  }
  /// A child that writes to `output_`, which only the child holds.
  StartedProcess Start(const std::string& command_line, const std::string& directory = "",
                       HANDLE input = kNoHandle) {
    const Pipe pipe = MakePipe();
    const auto started = processes_.Start({command_line, directory, input, pipe.write_end});
    EXPECT_TRUE(started.ok()) << started.error.code;
    processes_.Close(pipe.write_end);
    output_ = pipe.read_end;
    handles_.push_back(started.value.process);
    return started.value;
  }

  std::string ReadAll() {
    std::string all;
    char buffer[4096];
    while (const auto size = processes_.Read(output_, buffer).value) all.append(buffer, size);
    return all;
  }
  std::string Output(const std::string& command_line, const std::string& directory = "") {
    Start(command_line, directory);
    return ReadAll();
  }

  Processes& processes_ = *System().processes;
  HANDLE output_ = kNoHandle;
  TempDirectory files_;
  std::vector<HANDLE> handles_;
  const std::ptrdiff_t descriptors_ = OpenDescriptors();
};

TEST_F(ProcessesTest, CarriesAllBytesThroughAChild) {
  std::string bytes;
  for (int i = 0; i < 1 << 20; ++i) bytes += static_cast<char>(i);
  const Pipe input = MakePipe();
  Start("cat", "", input.read_end);
  std::thread writer([&] {
    EXPECT_EQ(processes_.Write(input.write_end, bytes).value, bytes.size());
    processes_.Close(input.write_end);
  });
  EXPECT_TRUE(ReadAll() == bytes);
  writer.join();
}

TEST_F(ProcessesTest, StartsAProgramOrTellsWhyItCouldNot) {
  RunShell(files_.path(), "echo text | tee plain > no_format; chmod 700 no_format");
  const HANDLE no_output = ~HANDLE{0};
  const Rows<StartInfo, int> rows = {
      {{"no-such-program -x"}, ENOENT},           {{" \t \t "}, ENOENT},
      {{std::string("true\0x", 6)}, EINVAL},      {{files_ / "plain"}, EACCES},
      {{"true", "/no/such/directory"}, ENOENT},   {{files_ / "no_format"}, ENOEXEC},
      {{"true", "", kNoHandle, no_output}, EBADF}};
  for (const auto& [info, error] : rows) {
    EXPECT_EQ(processes_.Start(info).error.code, static_cast<DWORD>(error)) << info.command_line;
  }
  const std::string program = files_.Put("program", "#!/bin/sh\npwd -P\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  // A relative program is that of this process's directory.
  EXPECT_EQ(Output(std::filesystem::relative(program).string(), "/usr"), "/usr\n");
}

TEST_F(ProcessesTest, AChildHasNothingOfThisProcessButItsStandardHandles) {
  EXPECT_TRUE(AllEndWell(1, [&](int) {
    EXPECT_GT(dup(STDERR_FILENO), 2);
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGTERM);
    EXPECT_EQ(pthread_sigmask(SIG_BLOCK, &mask, nullptr), 0);
    signal(SIGPIPE, SIG_IGN);
    // Both masks are empty, but for the two signals that the C library keeps to itself.
    EXPECT_EQ(Output("grep -cE 'Sig(Blk|Ign).{9}[01][08]0{7}$' /proc/self/status"), "2\n");
    EXPECT_EQ(Output("ls /proc/self/fd"), "0\n1\n2\n3\n");  // 3 is that of the listing itself
    // It has them, too, where those of this process are closed.
    EXPECT_EQ(close(STDIN_FILENO) + close(STDOUT_FILENO), 0);
    const Pipe pipe = MakePipe();
    Start("cat", "", pipe.read_end);
    processes_.Write(pipe.write_end, "through");
    processes_.Close(pipe.write_end);
    EXPECT_EQ(ReadAll(), "through");
  }));
  const std::string id = std::to_string(Start("cut -d' ' -f1,5,6 /proc/self/stat").process_id);
  EXPECT_EQ(ReadAll(), id + ' ' + id + ' ' + id + '\n');  // process, group, session
}

TEST_F(ProcessesTest, AnInterruptedEndReadsNoMoreAndWritingToNobodyIsNoSignal) {
  const Pipe pipe = MakePipe();
  char buffer[8];
  std::thread other([&] { processes_.Interrupt(pipe.read_end); });
  EXPECT_EQ(processes_.Read(pipe.read_end, buffer).error.kind, ErrorKind::kBrokenPipe);
  other.join();
  processes_.Write(pipe.write_end, "bytes that wait");
  EXPECT_EQ(processes_.Read(pipe.read_end, buffer).error.kind, ErrorKind::kBrokenPipe);
  processes_.Close(pipe.read_end);
  EXPECT_EQ(processes_.Write(pipe.write_end, "x").error.kind, ErrorKind::kBrokenPipe);
  const Pipe full = MakePipe();
  std::thread reader([&] {
    EXPECT_EQ(processes_.Read(full.read_end, buffer).value, 8u);
    processes_.Interrupt(full.write_end);
  });
  EXPECT_EQ(processes_.Write(full.write_end, std::string(1 << 20, 'x')).error.kind,
            ErrorKind::kBrokenPipe);
  reader.join();
  sigset_t pending;
  sigpending(&pending);
  EXPECT_FALSE(sigismember(&pending, SIGPIPE));
}

TEST_F(ProcessesTest, TerminateEndsTheWholeGroupWhoeverWaits) {
  const HANDLE process = Start("sh -c 'sleep 600 & echo up; wait'").process;
  char buffer[8];
  EXPECT_EQ(processes_.Read(output_, buffer).value, 3u);
  std::atomic<int> codes = 0;
  const auto wait = [&] { codes += processes_.Wait(process).value; };
  std::thread waiters[] = {std::thread(wait), std::thread(wait), std::thread(wait)};
  EXPECT_TRUE(processes_.Terminate(process).ok());
  for (std::thread& waiter : waiters) waiter.join();
  EXPECT_EQ(codes, 3 * (128 + SIGKILL));
  EXPECT_EQ(ReadAll(), "");  // would wait for the grandchild
  EXPECT_EQ(processes_.Wait(process).value, 128 + SIGKILL) << "told again";
  EXPECT_TRUE(processes_.Terminate(process).ok());
  EXPECT_EQ(processes_.Wait(Start("sh -c 'exit 255'").process).value, 255);
}

TEST_F(ProcessesTest, HandlesOutOfDateOrOfAnotherKindAreErrors) {
  const Pipe pipe = MakePipe();
  const StartedProcess running = Start("cat", "", pipe.read_end);
  processes_.Close(running.process);
  EXPECT_EQ(Children(), std::to_string(running.process_id) + ' ') << "reaped at its end";
  const HANDLE process = Start("true").process;
  EXPECT_GT(process, pipe.write_end);  // one count for all
  processes_.Wait(process);
  char buffer[8];
  EXPECT_FALSE(processes_.Read(pipe.write_end, buffer).ok() ||
               processes_.Write(pipe.read_end, "x").ok() || processes_.Wait(pipe.read_end).ok());
  for (const HANDLE handle : {pipe.read_end, pipe.write_end, process, kNoHandle}) {
    processes_.Close(handle);
    EXPECT_FALSE(processes_.Read(handle, buffer).ok() || processes_.Write(handle, "x").ok());
    EXPECT_FALSE(processes_.Wait(handle).ok() || processes_.Terminate(handle).ok());
  }
}

void (*PresentHandler(int signal_number))(int) {
  struct sigaction present {};
  sigaction(signal_number, nullptr, &present);
  return present.sa_handler;
}

TEST(Console, StopRequestCallsTheWatchInsteadOfEndingTheProgramIfThereIsAThread) {
  for (const int signal_number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
    std::promise<void> stopped;
    auto watch = System().console->WatchStopRequests([&stopped] { stopped.set_value(); });
    ASSERT_NE(watch, nullptr);
    raise(signal_number);
    stopped.get_future().wait();
    watch.reset();
    EXPECT_EQ(PresentHandler(signal_number), SIG_DFL) << signal_number;
  }
  EXPECT_TRUE(AllEndWell(1, [](int) {
    std::signal(SIGHUP, SIG_IGN);
    const auto watch = System().console->WatchStopRequests([] { ADD_FAILURE(); });
    EXPECT_EQ(raise(SIGHUP), 0);
    EXPECT_EQ(PresentHandler(SIGHUP), SIG_IGN) << "what was ignored stays so";
  }));
  // Without a thread there is no watch, and nothing is left behind.
  const auto descriptors = OpenDescriptors();
  pthread_attr_t former, huge;
  ASSERT_EQ(pthread_getattr_default_np(&former) + pthread_getattr_default_np(&huge), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&huge, std::size_t{1} << 47), 0);
  ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
  EXPECT_EQ(System().console->WatchStopRequests([] { ADD_FAILURE(); }), nullptr);
  pthread_setattr_default_np(&former);
  EXPECT_TRUE(PresentHandler(SIGTERM) == SIG_DFL && OpenDescriptors() == descriptors);
  for (pthread_attr_t* const attributes : {&huge, &former}) pthread_attr_destroy(attributes);
}

TEST(Console, WatchEndsThoughMoreRequestsThanAPipeHoldsWait) {
  std::promise<void> first, go_on;
  std::shared_future<void> released = go_on.get_future();
  int calls = 0;
  auto watch = System().console->WatchStopRequests([&] {
    if (++calls == 1) first.set_value();
    released.wait();
  });
  raise(SIGTERM);
  first.get_future().wait();
  for (int i = 0; i < 70'000; ++i) raise(SIGTERM);
  go_on.set_value();
  watch.reset();
  EXPECT_GE(calls, 2);
}

TEST(Console, WritesThatTheSystemWouldKillForFailAndChildrenInheritNothing) {
  const TempDirectory dir;
  ForkedProcess child([&] {
    System().console->PrepareStreams();
    for (const int number : {SIGXFSZ, SIGPIPE}) EXPECT_NE(PresentHandler(number), SIG_IGN);
    int ends[2];
    EXPECT_TRUE(pipe(ends) + close(ends[0]) == 0 && write(ends[1], "x", 1) == -1 && errno == EPIPE);
    const rlimit limit{1000, 1000};
    setrlimit(RLIMIT_FSIZE, &limit);
    const Error error = System().files->Replace(dir / "a", std::string(1001, 'x'), false);
    EXPECT_EQ(error.code, DWORD{EFBIG});
  });
  EXPECT_TRUE(child.EndsWell() && dir.Count() == 0);
}

enum Setting { kTerminal, kOnlyControllingTerminal, kBackground, kNone };

struct Outcome {
  /// The button, or -1 if the child didn't answer in time.
  int button = -1;
  /// What the terminal showed (with its echo of the input), and what went to standard error
  /// elsewhere.
  std::string terminal, standard_error;
};

/// Reads to the end, and writes a line of the input whenever it is asked for one.
std::string Converse(int descriptor, std::string_view input) {
  std::string all;
  char buffer[512];
  for (ssize_t count; (count = read(descriptor, buffer, sizeof buffer)) > 0;) {
    all.append(buffer, static_cast<std::size_t>(count));
    if (!all.ends_with(": ") || input.empty()) continue;
    // The question for a secret is there a little before the echo is off.
    const auto is_hidden = [&, mode = termios{}]() mutable {
      return tcgetattr(descriptor, &mode) == 0 && (mode.c_lflag & ECHO) == 0;
    };
    EXPECT_TRUE(!all.ends_with("Password: ") || Eventually(is_hidden));
    const std::size_t line = input.find_first_of("\n\x04") + 1;
    EXPECT_GT(write(descriptor, input.data(), line), 0);
    input.remove_prefix(line);
  }
  close(descriptor);
  return all;
}

/// Asks in another process, which takes its place in the setting.
Outcome Ask(Setting setting, std::string_view input, const std::function<int()>& ask) {
  int master = -1, terminal = -1, errors[2];
  EXPECT_EQ(openpty(&master, &terminal, nullptr, nullptr, nullptr) + pipe(errors), 0);
  std::atomic<int>& button = MakeSharedCount();
  button = -1;
  ForkedProcess child([&] {
    alarm(20);  // an endless question ends as a failure
    setsid();
    if (setting != kNone) ioctl(terminal, TIOCSCTTY, 0);
    const bool is_standard = setting == kTerminal || setting == kBackground;
    dup2(is_standard ? terminal : open("/dev/null", O_RDONLY), STDIN_FILENO);
    dup2(setting == kTerminal ? terminal : errors[1], STDERR_FILENO);
    const auto answer = [&](int) {
      setpgid(0, 0);  // which the leader of a session can't
      button = ask();
    };
    setting == kBackground ? static_cast<void>(AllEndWell(1, answer)) : answer(0);
    // What nobody has read yet is lost when the leader of a session ends.
    int unread = 1;
    Eventually([&] { return ioctl(master, FIONREAD, &unread) != 0 || unread == 0; });
  });
  close(terminal);
  close(errors[1]);
  const std::string shown = Converse(master, input), other = Converse(errors[0], "");
  child.EndsWell();
  return {button, shown, other};
}

Outcome Show(Setting setting, std::string_view text, UINT type, std::string_view input = {}) {
  return Ask(setting, input, [&] { return System().prompts->Show("", text, type, 0); });
}

/// A dialog whose OK is refused while the name is "bad". Help asks a question of its own, or else.
struct LoginDialog : DialogView {
  std::string Caption() override { return "Log\x1bin"; }
  std::vector<DialogControl> Controls() override { return controls; }
  bool Enter(int id, std::string_view value) override {
    if (id == 13 && value != "2") return false;
    std::ranges::find(controls, id, &DialogControl::id)->value = id == 13 ? "db" : value;
    return true;
  }
  bool Press(int id) override {
    if (id > 9) return false;
    if (id == 9) help();
    pressed = id == 9 || (id == 1 && controls[1].value == "bad") ? 0 : id;
    return true;
  }
  bool IsOpen() override { return pressed == 0; }
  /// The values as they stand.
  std::string State() const {
    std::string state = "<";
    for (const DialogControl& each : controls) state += each.value + '|';
    return state;
  }
  int pressed = 0;
  std::function<void()> help = [] { System().prompts->Show("", "Helped", BOX_OK, 0); };
  using Kind = DialogControlKind;
  std::vector<DialogControl> controls{
      {.id = -1, .kind = Kind::kText, .label = "Name"},
      {.id = 10, .kind = Kind::kEdit, .label = "Name", .value = "sa"},
      {.id = 11, .kind = Kind::kEdit, .label = "Note", .value = "a\nb", .multiple = true},
      {.id = 12, .kind = Kind::kEdit, .label = "Password", .secret = true},
      {.id = 13, .kind = Kind::kList, .label = "Server", .items = {"dev", "db"}},
      {.id = 14, .kind = Kind::kCheck, .label = "Keep", .value = "0"},
      {.id = 15, .kind = Kind::kEdit, .label = "Hidden", .visible = false},
      {.id = 1, .kind = Kind::kButton, .label = "OK", .is_default = true},
      {.id = 2, .kind = Kind::kButton, .label = "Cancel"},
      {.id = 9, .kind = Kind::kButton, .label = "Help..."},
  };
};

TEST(Prompts, DialogIsAskedControlByControlAndAgainWhileItStaysOpen) {
  const auto log_in = [] {
    LoginDialog dialog;
    System().prompts->RunDialog(dialog);
    const std::string state = dialog.State();
    EXPECT_GT(write(STDERR_FILENO, state.data(), state.size()), 0);
    return dialog.pressed;
  };
  for (const auto& [input, button, state] : Rows<std::string_view, int, std::string_view>{
           // Values and choices are shown, but no secret.
           {"\n\n\n\n\n\n", 1,
            "Log?in\r\nName [sa]: \r\nNote [a\\nb]: \r\nPassword: \r\n  1 dev\r\n  2 db\r\n"
            "Server: \r\nKeep [no]: \r\n[OK] / Cancel / Help...: \r\n<|sa|a\r\nb|||0|"},
           {"me\n\nsecret\n2\nyes\nc\n", 2, "[sa]: me\r\nNote [a\\nb]: \r\nPassword: \r\n  1 dev"},
           {"me\nx\\ny\\\\\nsecret\n7\n2\nyes\nc\n", 2, "<|me|x\r\ny\\|secret|db|1|"},
           {"\"\"\n\n\n\n\nhelp\n\n\n\n\n\n\n\nok\n", 1, "<||a\r\nb||"},
           {"bad\n\n\n\n\n\ngood\n\n\n\n\nO\n", 1, "<|good|"},
           {"bad\n\x04", 0, "<|bad|"},
           {"\n\n\n1\n1\n1\n1\n1\n1\n1\n1\n1\n1\n2\n\n\n", 0, "<|sa|"}}) {
    const Outcome outcome = Ask(kTerminal, input, log_in);
    EXPECT_EQ(outcome.button, button) << input;
    EXPECT_THAT(outcome.terminal, testing::HasSubstr(std::string(state)));
  }
  const Outcome nobody = Ask(kNone, "", log_in);
  EXPECT_EQ(nobody.button, 0);
  EXPECT_TRUE(nobody.standard_error.starts_with("Log\x1bin\n<")) << nobody.standard_error;
}

TEST(Prompts, FilesAreChosenOnTheTerminalAndTheEndOfInputChoosesNone) {
  const auto choose = [] {
    const FileQuestion question{
        .folder = "/nowhere", .name = "a", .kinds = {{"B", "*.b"}, {"C", "*.c"}}, .kind = 2};
    const auto chosen = System().prompts->ChooseFile(question);
    return chosen ? chosen->kind * 100 + static_cast<int>(chosen->paths.front().size()) : 0;
  };
  const Outcome outcome = Ask(kTerminal, "new\n1\n\n", choose);
  EXPECT_EQ(outcome.button, 112) << "/nowhere/new of the first kind";
  EXPECT_EQ(outcome.terminal,
            "Open\r\nLook in: /nowhere\r\nFile name [a]: new\r\n  1 B\r\n  2 C\r\n"
            "Files of type [C]: 1\r\n[OK] / Cancel: \r\n");
  EXPECT_EQ(Ask(kTerminal, "\n\x04", choose).button, 0);
  EXPECT_EQ(Ask(kNone, "", choose).standard_error, "Open\n");
}

TEST(Prompts, AnswerIsAWordOrItsFirstLetterAndElseTheDefaultIsTaken) {
  constexpr UINT kSecond = BOX_DEFAULT_SECOND, kLast = BOX_DEFAULT_THIRD, kAll = BOX_YES_NO_CANCEL;
  constexpr UINT kNo = BOX_YES_NO | kSecond, kRisk = BOX_ABORT_RETRY_IGNORE;
  constexpr std::string_view kTenLines = "x\nx\nx\nx\nx\nx\nx\nx\nx\nx\ny\n";
  const Rows<Setting, UINT, std::string_view, int> rows = {
      {kTerminal, kAll, "cANCEL\n", BUTTON_CANCEL},         {kTerminal, kAll, "n\n", BUTTON_NO},
      {kTerminal, kRisk, " Retry \n", BUTTON_RETRY},        {kTerminal, kNo, "\n", BUTTON_NO},
      {kTerminal, kNo, "perhaps\nye\ny\n", BUTTON_YES},     {kTerminal, kNo, "\x04", BUTTON_NO},
      {kTerminal, BOX_YES_NO, "what\n\x04", BUTTON_YES},    {kTerminal, kNo, kTenLines, BUTTON_NO},
      {kOnlyControllingTerminal, kNo, "y\n", BUTTON_YES},   {kTerminal, BOX_OK, "no\n", BUTTON_OK},
      {kNone, BOX_OK_CANCEL | kSecond, "", BUTTON_CANCEL},  {kBackground, kNo, "y\n", BUTTON_NO},
      {kNone, kRisk | kLast | BOX_STOP, "", BUTTON_IGNORE}, {kNone, kAll | kSecond, "", BUTTON_NO},
      {kNone, BOX_YES_NO | kLast, "n\n", BUTTON_YES},       {kNone, 0xFFFFF00F, "", BUTTON_OK},
      {kNone, BOX_RETRY_CANCEL, "", BUTTON_RETRY}};
  for (const auto& [setting, type, input, button] : rows) {
    SCOPED_TRACE(testing::Message() << static_cast<int>(setting) << ' ' << type << ' ' << input);
    const Outcome outcome = Show(setting, "Sure\x01?", type, input);
    EXPECT_EQ(outcome.button, button);
    const bool asks = setting == kTerminal || setting == kOnlyControllingTerminal;
    EXPECT_EQ(outcome.terminal.find("Sure??") != std::string::npos, asks);
    EXPECT_EQ(outcome.standard_error, asks ? "" : "Sure\x01?\n");
  }
  EXPECT_EQ(Show(kNone, "No such file\r\n", BOX_OK).standard_error, "No such file\r\n");
  const Outcome outcome = Show(kTerminal, "a\r\nb\x1b[2Jc", BOX_YES_NO_CANCEL | 0x100, "\n");
  EXPECT_THAT(outcome.terminal, testing::HasSubstr("a\r\nb?[2Jc\r\nYes / [No] / Cancel: "));
}

TEST(Prompts, ATranslationIsShownAndAnsweredInAndAnswersInEnglishStillCount) {
  ResourceModule texts;
  for (const auto& [id, text] :
       Rows<UINT, const char*>{{44562, "Nein"}, {44563, "Nochmal"}, {44565, "Да"}, {44567, "ja"}}) {
    texts.AddString(id, text);
  }
  const CDynLinkLibrary link(&texts);
  for (const auto& [type, input, button] : Rows<UINT, std::string_view, int>{
           {BOX_YES_NO_CANCEL | 0x100, "Д\n", BUTTON_YES},
           {BOX_YES_NO_CANCEL | 0x100, "y\n", BUTTON_YES},
           // One letter of two names is none.
           {BOX_ABORT_RETRY_IGNORE | 0x200, "n\nNOCHMAL\n", BUTTON_RETRY},
           {BOX_ABORT_RETRY_IGNORE | 0x200, "n\na\n", BUTTON_ABORT}}) {
    const Outcome outcome = Show(kTerminal, "Sure?", type, input);
    EXPECT_EQ(outcome.button, button) << input;
    EXPECT_TRUE(outcome.terminal.find("Да / [No] / Cancel: ") != std::string::npos ||
                outcome.terminal.find("Nein / Nochmal / [Ignore]: ") != std::string::npos);
  }
  const Outcome marked = Ask(kTerminal, "\n\n\n\nJ\n\n", [] {
    LoginDialog dialog;
    System().prompts->RunDialog(dialog);
    return dialog.controls[5].value == "1" ? dialog.pressed : -2;
  });
  EXPECT_EQ(marked.button, 1) << marked.terminal;
}

TEST(DialogScript, StepsArePlayedInOpenedDialogsTooUnlessALineBreaksTheForm) {
  DialogScript script;
  EXPECT_FALSE(DialogScript::Read(
      "# all\n\n 10 = a\\tb\\\\ \r\n11=\npress 9\n11=x\npress 1\n12=y\npress 10\n12=z", script));
  LoginDialog inner, outer;
  outer.help = [&] { script.Play(inner); };
  script.Play(outer);
  EXPECT_EQ(inner.State(), "<|sa|x|||0|||||");
  EXPECT_EQ(outer.State(), "<| a\tb\\ ||y||0|||||");
  ASSERT_TRUE(script.problem());
  EXPECT_TRUE(script.problem()->line == 9 && !script.IsDone());
  // A line that breaks the form is named.
  for (const char* line :
       {"x=1", "press", "press x", "12", "99999999999=1", "-1=1", "1=\\x", "1=\\", "pressed 1"}) {
    DialogScript none;
    const auto problem = DialogScript::Read("1=2\n" + std::string(line), none);
    EXPECT_TRUE(problem && problem->line == 2U && none.IsDone()) << line;
  }
}

}  // namespace
}  // namespace dq::platform
