#include <semaphore>

#include "dqlib/output/line_cutter.h"
#include "tests/support/doubles.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"

namespace dq::test {
namespace {

using namespace platform;
using testing::ElementsAre;
using Text = const char*;
using Report = std::pair<int, std::string>;

/// What the feedback procedure was called with; a null text is "(null)".
std::vector<Report> g_reports;
std::function<void(const Report&)> g_on_report;

int Record(int code, const char* text) {
  g_reports.emplace_back(code, text == nullptr ? "(null)" : text);
  if (g_on_report) g_on_report(g_reports.back());
  return -1;  // not looked at
}

/// The system's, of which the calls with these numbers fail, from 1.
struct FailingProcesses : platform::Processes {
  Result<Pipe> CreatePipe() override { return --failing_pipe == 0 ? error : system.CreatePipe(); }
  Result<std::size_t> Read(HANDLE read_end, std::span<char> buffer) override {
    return --failing_read == 0 ? error : system.Read(read_end, buffer);
  }
  Result<HANDLE> OpenStandardInput() override { return error; }
  Result<HANDLE> OpenStandardOutput() override { return error; }
  Result<std::size_t> Write(HANDLE, std::string_view) override { return error; }
  void Interrupt(HANDLE end) override { system.Interrupt(end); }
  Result<StartedProcess> Start(const StartInfo& info) override { return system.Start(info); }
  Result<int> Wait(HANDLE process) override { return system.Wait(process); }
  Error Terminate(HANDLE process) override { return immortal ? error : system.Terminate(process); }
  void Close(HANDLE handle) override { system.Close(handle); }
  std::optional<std::string> EnvironmentVariable(const std::string&) override { return {}; }
  std::string_view LineEnd() override { return "\n"; }

  Processes& system = *platform::System().processes;
  int failing_pipe = 0, failing_read = 0;
  bool immortal = false;
  Error error;
};

/// Every test ends with what it began with: no pipe, no process.
struct ConsoleProgramTest : testing::Test {
  ConsoleProgramTest() { program_.SetCallback(Record); }
  ~ConsoleProgramTest() override {
    EXPECT_TRUE(Eventually([] { return Children().empty(); })) << Children();
    EXPECT_EQ(OpenDescriptors(), descriptors_);
    program_.CancelProgram();  // none runs
    g_on_report = nullptr;
  }

  std::vector<Report> Run(const char* exe, const char* args, int result) {
    g_reports.clear();
    last_ = "before";
    EXPECT_EQ(program_.RunExecutable(exe, last_, args), result);
    return g_reports;
  }
  /// The lines that a program writes that runs, with "|" between them, without the command line.
  std::string Output(const char* exe, const std::string& args) {
    std::string lines;
    for (const auto& [code, text] : Run(exe, args.c_str(), 1)) {
      EXPECT_EQ(code, CONSOLE_LINE);
      lines += '|' + text;
    }
    return lines.substr(std::min(lines.find('|', 1), lines.size() - 1) + 1);
  }
  std::string ScriptOutput(std::string_view text) {
    return Output("sh", files_.Put("script", text));
  }

  const std::ptrdiff_t descriptors_ = OpenDescriptors();
  FailingProcesses processes_;
  const platform::ScopedPlatform scope_{With(&platform::Platform::processes, &processes_)};
  CDQConsoleProgram program_;
  CString last_;
  TempDirectory files_;
};

TEST_F(ConsoleProgramTest, MasksPasswordsInTheCommandLineItReports) {
  for (const auto& [exe, args, shown] : Cases<3>(R"(none => => none ;; MY-PROG => x => MY-P*** x
       no => USERID=u1/p1@d1 => no USERID=u1/****@d1 ;; USERID=u1/p1@d1 => x => USERID=u1/p1@d1 x
       no => -Usa -Psecret -Sserver => no -Usa -P****** -Sserver ;; /opt/none => u/p@d => /****@d
       none => -P secret -Px => none -P secret -Px ;; none => u/se@d use => none u/****@d u****
       none => a@b/c => none a@b/c ;; none => u/@d => none u/@d ;; none => u@d => none u@d
       -Px => => -P*)")) {
    EXPECT_EQ(Run(exe.c_str(), args.c_str(), 0).front(),
              Report(CONSOLE_LINE, shown + (args.empty() ? " " : "")));
  }
}

TEST_F(ConsoleProgramTest, KeepsTheFormerProgramAndShowsFormerArgumentsUnmasked) {
  EXPECT_THAT(Run(nullptr, nullptr, 0), ElementsAre(Report(CONSOLE_NO_EXECUTABLE, "(null)")));
  EXPECT_EQ(Run("echo", "-Psecret", 1).front().second, "echo -P******");
  EXPECT_EQ(Run(nullptr, nullptr, 1).front().second, "echo -Psecret");
  program_.SetCallback(nullptr);
  Run(nullptr, "quiet", 1);
  EXPECT_EQ(last_, "quiet");
}

TEST_F(ConsoleProgramTest, ReportsLinesAndKeepsTheLastOne) {
  const std::string long_line(200'000, 'x');
  for (const auto& [output, lines, last] : Rows<std::string, std::string, std::string>{
           {" \n\n", "", "before"},
           {"\n  a\r\n\r\nb\r\n", "a|b", "b"},
           {long_line + '\n' + long_line, long_line + '|' + long_line, long_line},
           {"\x80\xFE\xFF\n\xE9", "\x80\xFE\xFF|\xE9", "\xE9"}}) {
    EXPECT_EQ(Output("cat", files_.Put("output", output)), lines);
    EXPECT_EQ(last_.View(), last);
  }
  program_.EnableTrimLeft(false);
  EXPECT_EQ(Output("printf", "'  a  \\n  b  \\n'"), "  a|  b");
  // What is behind a zero is lost with the rest of its piece.
  const int usual = CDQConsoleProgram::m_nPipeOutputSize;
  const auto zero = files_.Put("zero", "ab" + std::string(1, '\0') + std::string(252, 'L') + "end");
  for (const auto& [size, left] : {std::pair(1000, 0), {254, 1}, {0, 252}, {usual, 0}}) {
    CDQConsoleProgram::m_nPipeOutputSize = size;
    EXPECT_EQ(Output("cat", zero), "ab" + std::string(left, 'L') + "end");
  }
}

TEST_F(ConsoleProgramTest, GivesTheChildADirectoryAndNothingToRead) {
  program_.SetCurrentDirectory("/usr");
  EXPECT_THAT(ScriptOutput("pwd -P; cat && echo read; echo error >&2"),
              testing::MatchesRegex("/usr.cat: [^|]*.error"));
}

TEST_F(ConsoleProgramTest, HoweverAProgramEndsItRan) {
  EXPECT_EQ(program_.GetExitCode(), -1);
  for (const auto& [script, lines, code] : Rows<Text, Text, int>{
           {"echo a; kill -9 $$", "a", 128 + 9},
           // The pipe ends before the program does, which is waited for.
           {"echo a; exec >&- 2>&-; sleep 0.1; exit 4", "a", 4},
           // The program ends before the pipe does, which is read to its end.
           {"(until grep -q 'State:.Z' /proc/$$/status; do :; done; echo 1) & echo 0", "0|1", 0}}) {
    EXPECT_EQ(ScriptOutput(script), lines);
    EXPECT_EQ(program_.GetExitCode(), code) << script;
    EXPECT_EQ(CDQConsoleProgram(program_).GetExitCode(), code);
  }
  Run("/nowhere/none", "", 0);
  EXPECT_EQ(program_.GetExitCode(), -1);
  EXPECT_EQ(program_.GetStartError().kind, platform::ErrorKind::kNotFound);
  Run("true", "", 1);
  EXPECT_TRUE(program_.GetStartError().ok() && program_.GetExitCode() == 0);
}

TEST_F(ConsoleProgramTest, ReportsEachFailureOnce) {
  for (const auto& [exe, failing_pipe, failing_read, error, report] :
       Rows<Text, int, int, DWORD, Report>{
           {"yes", 1, 0, EMFILE, {-4, "Create STDOUT pipe failed: Too many open files\r\n"}},
           {"yes", 2, 0, EMFILE, {-4, "Create STDIN pipe failed: Too many open files\r\n"}},
           {"no-program", 0, 0, 0, {-3, "Create process failed: No such file or directory\r\n"}},
           {"yes", 0, 2, EIO, {-5, "Read pipe failed: Input/output error\r\n"}},
           {"yes", 0, 1, 99999, {-5, "Read pipe failed: Unknown OS Error"}}}) {
    processes_.failing_pipe = failing_pipe;
    processes_.failing_read = failing_read;
    processes_.error = {platform::ErrorKind::kOther, error};
    const auto reports = Run(exe, "x", 0);
    EXPECT_EQ(reports.back(), report);
    EXPECT_EQ(std::ranges::count_if(reports, [](const Report& each) { return each.first < 0; }), 1);
    EXPECT_EQ(last_, "before");
  }
}

TEST_F(ConsoleProgramTest, ACancelEndsARunWhoeverHoldsThePipe) {
  program_.SetCurrentDirectory(files_.path().c_str());
  for (const auto& [script, immortal, last, code] : Rows<Text, bool, Text, int>{
           {"echo ready; yes & yes", false, "y", 128 + SIGKILL},
           {"echo ready; printf last; exec sleep 600", false, "last", 128 + SIGKILL},
           // What can't be ended finds that nobody reads.
           {"echo ready; exec yes", true, "y", 128 + SIGPIPE},
           // A stray process in a session of its own keeps the pipe until the test opens another.
           {"mkfifo F; setsid sh -c 'echo ready; exec cat F' & while :; do echo flood; done", false,
            "flood", 128 + SIGKILL}}) {
    processes_.immortal = immortal;
    std::thread canceller;
    g_on_report = [&](const Report& report) {
      if (report.second != "ready") return;
      canceller = std::thread([copy = program_]() mutable { copy.CancelProgram(); });
    };
    const std::string lines = ScriptOutput(script);
    EXPECT_THAT(lines.substr(lines.rfind('|') + 1), testing::StartsWith(last));
    ASSERT_TRUE(canceller.joinable());
    canceller.join();
    EXPECT_EQ(program_.GetExitCode(), code) << script;
  }
  std::ofstream end(files_ / "F");
}

TEST(ConsoleProgram, FindsTheEndOfACompleteFirstLine) {
  const Rows<Text, int> rows = {{"", -2},      {"abc", 0}, {"abc\r\n\f\x1a", 0},
                                {"a\r\nb", 2}, {"\nb", 0}, {"a\vb\n ", 3}};
  for (const auto& [text, at] : rows)
    EXPECT_EQ(CDQConsoleProgram::GetEndOfLinePosition(text), at) << text;
}

/// Each line with "|" behind it, and the rest.
std::string Cut(std::string_view output, std::size_t chunk, bool trim_left) {
  detail::LineCutter cutter(trim_left);
  std::string cut;
  for (; !output.empty(); output.remove_prefix(std::min(chunk, output.size()))) {
    cutter.Feed(std::string(output.substr(0, chunk)).c_str());
    for (std::string_view line; cutter.Next(line);) cut += std::string(line.data()) + '|';
  }
  return cut + cutter.Rest().data();
}

TEST(LineCutter, GivesLinesWithTextThatSomethingFollowsHoweverTheyArrive) {
  const Rows<Text, Text, Text> rows = {{" \n \r\n", "", ""},
                                       {"\n\r\f\x1a  a \r\n\r\n \tb\n", "a| \tb", "  a| \tb"},
                                       {"no end ", "no end", "no end"},
                                       {" a\n\n \n b \n c", "a|b| c", " a| b| c"},
                                       {"a\x1a\r\nb", "a\x1a|b", "a\x1a|b"},
                                       {"\x1a\na\nb", "a|b", "a|b"},
                                       {"", "", ""}};
  for (const auto& [output, trimmed, whole] : rows) {
    for (const std::size_t chunk : {255, 2, 1}) {
      EXPECT_EQ(Cut(output, chunk, true), trimmed) << output << " by " << chunk;
      EXPECT_EQ(Cut(output, chunk, false), whole) << output << " by " << chunk;
    }
  }
}

constexpr char kTime[] = "2/3/2001 04:05:06.007";

struct LogTest : testing::Test {
  LogTest() {
    locale_.items[LOCALE_SSHORTDATE] = "M/d/yyyy";
    prompts_.on_box = [this] {
      ++shown_;
      shown_.notify_all();
      answers_.acquire();
    };
  }

  static std::string Line(const std::string& text) { return kTime + ("  " + text) + "\r\n"; }
  /// Waits until so many boxes have been shown.
  void AwaitBox(int count) {
    for (int now; (now = shown_) < count;) shown_.wait(now);
  }
  /// Then has the last of them answered, the first by OK, the next by Cancel, and so on, and the
  /// log's own come to its end.
  void Answer(int count, const CDQLog& log) {
    AwaitBox(count);
    answers_.release();
    log.WaitForWarning();
  }

  const TempDirectory directory_;
  const std::string path_ = directory_ / "x.log";
  ManualClock clock_;
  ScriptedLocale locale_;
  /// One at a time, on any thread.
  ScriptedPrompts prompts_{BUTTON_OK, BUTTON_CANCEL, BUTTON_OK, BUTTON_CANCEL};
  std::atomic<int> shown_ = 0;
  std::counting_semaphore<> answers_{0};
};

TEST_F(LogTest, WritesOneStampedLineAnEntryBehindWhatIsThere) {
  constexpr UINT kRange = 61714;  // one of the framework's
  directory_.Put("x.log", "old\r\n");
  CDQLog log(path_.c_str(), 0, false);
  EXPECT_EQ(log.GetMaxFileSize(), 1'024'000U);
  log.LogMessage("");
  log.LogMessage(50999);
  log.LogMessage(50999, "one", "two");
  log.LogMessage(IDS_LOG_CAPTION);
  log.LogMessage(kRange, "1");
  log.LogMessage(kRange, "1", "2");
  log.SetUseLog(false);
  log.LogMessage("unheard");
  log.SetUseLog(true);
  log.LogMessage("heard");
  EXPECT_EQ(directory_.Get("x.log"),
            "old\r\n" + Line("Log") + Line("Please enter an integer between 1 and %2.") +
                Line("Please enter an integer between 1 and 2.") + Line("heard"));
  EXPECT_TRUE(log.ClearLogFile());
  locale_.items[LOCALE_SSHORTDATE] = "dd.MM.yy";
  ++clock_.local_time.wMilliseconds;
  log.LogMessage("German");
  EXPECT_EQ(directory_.Get("x.log"), "03.02.01 04:05:06.008  German\r\n");
}

TEST_F(LogTest, WithoutAFileEveryCallDoesNothing) {
  ScriptedPrompts prompts;
  CDQLog unnamed("", 1, true);
  CDQLog unused;
  unused.SetLogFileName(path_.c_str());
  unused.SetUseLog(false);
  for (const auto& [kilobytes, bytes] : {std::pair(4194303U, 4294966272U), {4194304U, ~0U}}) {
    unused.SetMaxFileSize(kilobytes);
    unused.Initialize();
    EXPECT_EQ(unused.GetMaxFileSize(), bytes);
  }
  unused.SetUseLog(true);
  CDQLog on_directory(directory_.path().c_str(), 1, true);
  EXPECT_THAT(prompts.shown, ElementsAre(ShownBox{"Unable to open Log file for writing", BOX_OK}));
  EXPECT_EQ(prompts.shown[0].caption, "Log");
  for (CDQLog* const log : {&unnamed, &unused, &on_directory}) {
    EXPECT_FALSE(log->HasFile());
    log->LogMessage("text");
    EXPECT_TRUE(log->ClearLogFile());
  }
  EXPECT_EQ(directory_.Count(), 0U);
}

TEST_F(LogTest, WarnsWhenTheFileIsLargerThanItsLimitWhoeverWroteIt) {
  CDQLog log(path_.c_str(), 1, true), silent(path_.c_str(), 1, false), made_silent;
  made_silent.SetLogFileName(path_.c_str());
  made_silent.SetMaxFileSize(1);
  made_silent.Initialize();
  int shown = 0;
  for (const auto& [size, limit, warns] : Rows<std::size_t, DWORD, bool>{
           {1024, 1024, false}, {1025, 1024, true}, {9999, 0xFFFFFFFF, false}, {9999, 1, true}}) {
    directory_.Put("x.log", std::string(size - Line("text").size(), '-'));
    log.SetMaxFileSize(limit);
    for (CDQLog* const each : {&log, &silent, &made_silent}) {
      each->LogMessage("text");
      if (each == &log && warns) Answer(++shown, log);
      each->WaitForWarning();
    }
  }
  const ShownBox box{"Log file length has exceeded the maximum limit", BOX_OK_CANCEL};
  EXPECT_THAT(prompts_.shown, ElementsAre(box, box));
  EXPECT_EQ(prompts_.shown[0].caption, "Log- Warning");
}

TEST_F(LogTest, OneWarningStandsWhileTheLogGoesOn) {
  std::string written(1024, '-');
  directory_.Put("x.log", written);
  auto log = std::make_unique<CDQLog>(path_.c_str(), 1, true);
  const auto write = [&](CDQLog& to, int shown) {
    to.LogMessage("text");
    written += Line("text");
    AwaitBox(shown);
    EXPECT_EQ(shown_, shown);
  };
  for (int i = 0; i < 3; ++i) write(*log, 1);
  Answer(1, *log);
  write(*log, 2);
  Answer(2, *log);
  write(*log, 2);
  log->WaitForWarning();
  EXPECT_EQ(shown_, 2);
  // One box at a time, and each may outlive its log.
  CDQLog other(path_.c_str(), 1, true);
  log = std::make_unique<CDQLog>(path_.c_str(), 1, true);
  write(*log, 3);
  log.reset();
  write(other, 3);
  Answer(3, CDQLog());  // its own log is gone
  Answer(4, other);
  EXPECT_EQ(directory_.Get("x.log"), written);
}

TEST_F(LogTest, TellsOfAFullDiskAndStaysWithAFileThatIsRotatedAwayOrRemoved) {
  CDQLog full("/dev/full", 1, true), log(path_.c_str(), 1, true);
  const auto is_full = testing::Field(&CFileException::m_cause, int{CFileException::diskFull});
  EXPECT_THAT([&] { full.LogMessage("lost"); }, testing::Throws<CFileException>(is_full));
  std::filesystem::rename(path_, directory_ / "x.log.1");
  log.LogMessage("kept");
  EXPECT_EQ(directory_.Get("x.log.1"), Line("kept"));
  std::filesystem::remove(directory_ / "x.log.1");
  log.LogMessage("removed");
  EXPECT_EQ(directory_.Count(), 0U);
}

TEST_F(LogTest, ServesTheDestructorsThatRunLast) {
  locale_.items[LOCALE_SLONGDATE] = "'on' dd/MM/yyyy 'by the calendar'";
  const std::string value = "a value of more bytes than a short text has room for";
  directory_.Put("a.ini", "[s]\nk=" + value);
  const auto use = [&](const char* who) {
    CString read;
    CDQIniFile((directory_ / "a.ini").c_str()).ReadKey("s", "k", read, "");
    const CString date = CDQSystemInfo::GetFormattedDate(&clock_.local_time, DATE_LONG);
    CDQLog(path_.c_str(), 1, true).LogMessage(CString(who) + ' ' + date + ' ' + read);
  };
  // Each is made before the thread's caches are, so it ends after them.
  const auto run = [&] {
    using AtEnd = std::shared_ptr<void>;  // which works as it goes
    static AtEnd of_process(nullptr, [use](void*) { use("process"); });
    thread_local AtEnd of_thread(nullptr, [use](void*) { use("main thread"); });
    std::thread([use] {
      thread_local AtEnd of_worker(nullptr, [use](void*) { use("worker"); });
      of_worker ? use("never") : use("early");
    }).join();
    use("early");
    std::exit(of_process || of_thread ? 1 : 0);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
  std::string expected;
  for (const std::string who : {"early", "worker", "early", "main thread", "process"}) {
    expected += Line(who + " on 03/02/2001 by the calendar " + value);
  }
  EXPECT_EQ(directory_.Get("x.log"), expected);
}

TEST_F(LogTest, WritersLoseNoEntry) {
  const auto log = [this] { return std::make_unique<CDQLog>(path_.c_str(), 0, false); };
  const auto fill = [](CDQLog& with, const char* text) {
    for (int i = 0; i < 300; ++i) with.LogMessage(text);
  };
  auto shared = log();
  ForkedProcess logging([&] { fill(*log(), "one"); });
  std::thread other([&] { fill(*shared, "two"); });
  fill(*shared, "three");
  other.join();
  EXPECT_TRUE(logging.EndsWell());
  shared.reset();
  EXPECT_TRUE(AllEndWell(2, [&](int i) {
    const Text text = i == 0 ? "four" : "five";
    for (int done = 0; done < 300;) done += DQLIB_WriteLogFile(path_.c_str(), text, 0) == 1;
  }));
  CDQString text(directory_.Get("x.log"));
  for (const std::string writer : {"  one", "  two", "  three", "\r\nfour", "\r\nfive"}) {
    EXPECT_EQ(text.FindReplace((kTime + writer + "\r\n").c_str(), ""), 300) << writer;
  }
  EXPECT_EQ(text, "");
}

TEST_F(LogTest, WriteLogFileStartsOverAtItsLimitOrSaysMinusOne) {
  const std::string entry = std::string(kTime) + "\r\none\ntwo\r\n";
  constexpr std::uint64_t k4G = 1ULL << 32;  // What is above 32 bits is taken off.
  const Rows<std::uint64_t, long, bool> rows = {{1023, 1, false},        {1024, 1, true},
                                                {1024, 0, false},        {1024, LONG_MIN, false},
                                                {1024, LONG_MAX, false}, {k4G + 1024, 1, false},
                                                {k4G + 1025, 1, true},   {k4G - 1, 1, true}};
  for (const auto& [size, maximum, restarts] : rows) {
    std::filesystem::resize_file(directory_.Put("x.log", ""), size);
    EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), "one\ntwo", maximum), 1);
    EXPECT_EQ(std::filesystem::file_size(path_), (restarts ? 0 : size) + entry.size()) << size;
  }
  EXPECT_EQ(directory_.Get("x.log"), entry);
  std::filesystem::remove(path_);
  EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), "", 1), 1);
  const CFile held(path_.c_str(), CFile::modeWrite);
  const std::string nowhere = directory_ / "no/x.log";
  for (const Text path : std::initializer_list<Text>{path_.c_str(), directory_.path().c_str(),
                                                     nowhere.c_str(), "/dev/full", "", nullptr}) {
    EXPECT_EQ(DQLIB_WriteLogFile(path, "text", 0), -1);
  }
  EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), nullptr, 0), -1);
}

}  // namespace
}  // namespace dq::test
