#include "dqlib/output/console_program.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/forwarding_processes.h"
#include "tests/support/own_process.h"
#include "tests/support/temp_directory.h"

namespace dq {
namespace {

using platform::Error;
using platform::ErrorKind;
using platform::Result;
using test::Children;
using test::Eventually;
using test::OpenDescriptors;
using ::testing::ElementsAre;

using Report = std::pair<int, std::string>;

/// What the feedback procedure was called with; a null text is "(null)".
std::vector<Report> g_reports;
std::function<void(const Report&)> g_on_report;

int Record(int code, const char* text) {
  g_reports.emplace_back(code, text == nullptr ? "(null)" : text);
  if (g_on_report) g_on_report(g_reports.back());
  return -1;  // not looked at
}

/// Every test ends with what it began with: no child, no zombie, no descriptor more.
class ConsoleProgramTest : public ::testing::Test {
 protected:
  void SetUp() override {
    g_reports.clear();
    g_on_report = nullptr;
    program_.SetCallback(Record);
    descriptors_ = OpenDescriptors();
  }
  void TearDown() override {
    EXPECT_TRUE(Eventually([] { return Children().empty(); })) << Children();
    EXPECT_EQ(OpenDescriptors(), descriptors_);
  }

  /// Runs it; the lines it wrote.
  std::vector<std::string> Lines(const char* exe, const std::string& args) {
    g_reports.clear();
    EXPECT_EQ(program_.RunExecutable(exe, last_, args.c_str()), 1);
    std::vector<std::string> lines;
    for (const auto& [code, text] : g_reports) {
      EXPECT_EQ(code, CONSOLE_LINE);
      lines.push_back(text);
    }
    EXPECT_FALSE(lines.empty());
    if (!lines.empty()) lines.erase(lines.begin());  // the command line
    return lines;
  }
  std::vector<std::string> ScriptLines(std::string_view text) {
    return Lines("sh", files_.Put("script", text));
  }

  CDQConsoleProgram program_;
  CString last_ = "before";
  test::TempDirectory files_;

 private:
  std::ptrdiff_t descriptors_ = 0;
};

TEST_F(ConsoleProgramTest, MasksPasswordsInTheCommandLineItReports) {
  const struct {
    const char* exe;
    const char* args;
    const char* shown;
  } cases[] = {
      {"none", "", "none "},
      {"none", "USERID=u1/p1@d1", "none USERID=u1/****@d1"},
      {"USERID=u1/p1@d1", "-x", "USERID=u1/p1@d1 -x"},
      {"none", "-Usa -Psecret -Sserver", "none -Usa -P****** -Sserver"},
      {"none", "-P secret", "none -P secret"},
      {"none", "-Px\t-Py", "none -P*\t-Py"},
      {"MY-PROG", "x", "MY-P*** x"},
      {"none", "a@b/c", "none a@b/c"},
      {"none", "u/@d", "none u/@d"},
      {"none", "u/se@d use", "none u/****@d u****"},
      {"/opt/none", "u/p@d", "/****@d"},
      {"none", "u/-Pw@d -Pq", "none u/****@d -P*"},
  };
  for (const auto& c : cases) {
    g_reports.clear();
    program_.RunExecutable(c.exe, last_, c.args);
    EXPECT_EQ(g_reports.front(), Report(CONSOLE_LINE, c.shown)) << c.exe << ' ' << c.args;
  }
}

TEST_F(ConsoleProgramTest, KeepsTheFormerProgramAndShowsFormerArgumentsUnmasked) {
  EXPECT_EQ(program_.RunExecutable(nullptr, last_, nullptr), 0);
  EXPECT_THAT(g_reports, ElementsAre(Report(CONSOLE_NO_EXECUTABLE, "(null)")));
  EXPECT_THAT(Lines("echo", "-Psecret"), ElementsAre("-Psecret"));
  EXPECT_EQ(g_reports.front().second, "echo -P******");
  g_reports.clear();
  EXPECT_EQ(program_.RunExecutable(nullptr, last_, nullptr), 1);
  EXPECT_EQ(g_reports.front().second, "echo -Psecret");
  program_.SetCallback(nullptr);
  EXPECT_EQ(program_.RunExecutable(nullptr, last_, "quiet"), 1);
  EXPECT_EQ(last_, "quiet");
  EXPECT_EQ(program_.RunExecutable("", last_, nullptr), 0);
}

TEST_F(ConsoleProgramTest, ReportsLinesAndKeepsTheLastOne) {
  const std::string long_line(200'000, 'x');
  const std::string head_of_chunk = "one\nhead" + std::string(1, '\0') + std::string(246, 'L');
  const struct {
    std::string output;
    std::vector<std::string> lines;
    const char* last;
  } cases[] = {
      {"", {}, "before"},
      {" \n\n", {}, "before"},
      {"no end", {"no end"}, "no end"},
      {"\n  a\r\n\r\nb\r\n", {"a", "b"}, "b"},
      {long_line + '\n' + long_line, {long_line, long_line}, long_line.c_str()},
      {head_of_chunk + "tail\nlast", {"one", "headtail", "last"}, "last"},
      {"\x80\xFE\xFF\n\xE9", {"\x80\xFE\xFF", "\xE9"}, "\xE9"},
  };
  for (const auto& c : cases) {
    last_ = "before";
    EXPECT_TRUE(Lines("cat", files_.Put("output", c.output)) == c.lines) << c.output.substr(0, 9);
    EXPECT_EQ(last_, c.last);
  }
  program_.EnableTrimLeft(false);
  EXPECT_THAT(Lines("printf", "'  a  \\n  b  \\n'"), ElementsAre("  a", "  b"));
}

TEST_F(ConsoleProgramTest, GivesTheChildADirectoryAndNothingToRead) {
  program_.SetCurrentDirectory("/usr");
  const auto lines = ScriptLines("pwd -P\ncat && echo read\necho error >&2\n");
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], "/usr");
  EXPECT_THAT(lines[1], ::testing::StartsWith("cat: "));
  EXPECT_EQ(lines[2], "error");
}

TEST_F(ConsoleProgramTest, HoweverAProgramEndsItRan) {
  EXPECT_THAT(ScriptLines("echo a; exit 3"), ElementsAre("a"));
  EXPECT_THAT(ScriptLines("echo a; kill -SEGV $$"), ElementsAre("a"));
  // The pipe ends before the program does, which is waited for.
  const std::string mark = files_ / "mark";
  EXPECT_THAT(ScriptLines("echo a; exec >&- 2>&-; : > " + mark), ElementsAre("a"));
  EXPECT_TRUE(std::filesystem::exists(mark));
  // The program ends before the pipe does, which is read to its end.
  EXPECT_THAT(ScriptLines("(until grep -q 'State:.Z' /proc/$$/status; do :; done; echo late) &\n"
                          "echo early\n"),
              ElementsAre("early", "late"));
}

TEST_F(ConsoleProgramTest, TellsWhyAProgramCouldNotBeStarted) {
  const std::string plain = files_.Put("plain", "");
  const std::pair<const char*, const char*> cases[] = {
      {"no-such-program-anywhere", "Create process failed: No such file or directory\r\n"},
      {plain.c_str(), "Create process failed: Permission denied\r\n"}};
  for (const auto& [exe, text] : cases) {
    g_reports.clear();
    EXPECT_EQ(program_.RunExecutable(exe, last_, "x"), 0);
    EXPECT_THAT(g_reports, ElementsAre(Report(CONSOLE_LINE, std::string(exe) + " x"),
                                       Report(CONSOLE_START_FAILED, text)));
  }
  EXPECT_EQ(last_, "before");
}

/// Fails one call.
class FailingProcesses : public test::ForwardingProcesses {
 public:
  Result<platform::Pipe> CreatePipe() override {
    return ++pipes == failing_pipe ? Error{ErrorKind::kNoSpace, EMFILE}
                                   : ForwardingProcesses::CreatePipe();
  }
  Result<std::size_t> Read(HANDLE read_end, std::span<char> buffer) override {
    return ++reads == failing_read ? read_error : ForwardingProcesses::Read(read_end, buffer);
  }
  int pipes = 0;
  int failing_pipe = 0;
  int reads = 0;
  int failing_read = 0;
  Result<std::size_t> read_error;
};

TEST_F(ConsoleProgramTest, ReportsEachFailureOnce) {
  FailingProcesses failing;
  platform::Platform services = platform::Current();
  services.processes = &failing;
  const platform::ScopedPlatform scope(services);

  failing.failing_pipe = 1;
  EXPECT_EQ(program_.RunExecutable("yes", last_, ""), 0);
  EXPECT_THAT(g_reports, ElementsAre(Report(CONSOLE_PIPE_FAILED,
                                            "Create STDOUT pipe failed: Too many open files\r\n")));
  failing.pipes = 0;
  failing.failing_pipe = 2;
  g_reports.clear();
  EXPECT_EQ(program_.RunExecutable("yes", last_, ""), 0);
  EXPECT_THAT(g_reports, ElementsAre(Report(CONSOLE_PIPE_FAILED,
                                            "Create STDIN pipe failed: Too many open files\r\n")));

  // The first bytes were read by then: what is left of them is dropped. The child still runs.
  const std::pair<DWORD, const char*> cases[] = {{EIO, "Read pipe failed: Input/output error\r\n"},
                                                 {99999, "Read pipe failed: Unknown OS Error"}};
  for (const auto& [code, text] : cases) {
    failing.reads = 0;
    failing.failing_read = 2;
    failing.read_error = Error{ErrorKind::kOther, code};
    g_reports.clear();
    EXPECT_EQ(program_.RunExecutable("sh", last_, "-c 'printf x; exec yes'"), 0);
    EXPECT_EQ(g_reports.back(), Report(CONSOLE_READ_FAILED, text));
    EXPECT_EQ(std::count_if(g_reports.begin(), g_reports.end(),
                            [](const Report& report) { return report.first < 0; }),
              1);
  }
  EXPECT_EQ(last_, "before");
}

TEST_F(ConsoleProgramTest, ACancelEndsAFloodWhoeverHoldsThePipe) {
  // A stray process in a session of its own keeps the pipe until the test opens the named pipe.
  const std::string fifo = files_ / "fifo";
  const std::string stray = "mkfifo " + fifo + "; setsid sh -c 'echo ready; exec cat " + fifo +
                            "' & while :; do echo flood; done\n";
  for (const std::string& script : {std::string("echo ready; yes & yes"), stray}) {
    std::thread canceller;
    g_on_report = [&](const Report& report) {
      if (report.second != "ready") return;
      canceller = std::thread([copy = program_]() mutable { copy.CancelProgram(); });
    };
    ScriptLines(script);
    ASSERT_TRUE(canceller.joinable());
    canceller.join();
    program_.CancelProgram();  // none runs
  }
  std::ofstream end(fifo);
}

TEST_F(ConsoleProgramTest, ACancelWakesAReaderThatWaits) {
  std::thread canceller;
  g_on_report = [&](const Report& report) {
    if (report.second != "ready") return;
    canceller = std::thread([&] { program_.CancelProgram(); });
  };
  // Its last line has no line behind it, so it comes at the end.
  EXPECT_THAT(ScriptLines("echo ready; printf last; exec sleep 600"), ElementsAre("ready", "last"));
  canceller.join();
  EXPECT_EQ(last_, "last");
}

TEST(ConsoleProgram, FindsTheEndOfACompleteFirstLine) {
  const std::pair<const char*, int> cases[] = {
      {"", -2},         {"abc", 0},     {"abc\n", 0},      {"abc\r\n\f\x1a", 0},
      {"abc\nd", 3},    {"a\r\nb", 2},  {"a\r\n\r\nb", 4}, {"\nb", 0},
      {"\r\n\nb\n", 2}, {"a\vb\n ", 3}, {nullptr, -2}};
  for (const auto& [text, position] : cases) {
    EXPECT_EQ(CDQConsoleProgram::GetEndOfLinePosition(text), position)
        << ::testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace dq
