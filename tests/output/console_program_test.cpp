#include "dqlib/output/console_program.h"

#include "tests/support/forwarding_processes.h"
#include "tests/support/own_process.h"
#include "tests/support/own_service.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using platform::Result;
using ::testing::ElementsAre;

using Report = std::pair<int, std::string>;
using Lines = std::vector<std::string>;

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
    g_on_report = nullptr;
    program_.SetCallback(Record);
  }
  void TearDown() override {
    EXPECT_TRUE(test::Eventually([] { return test::Children().empty(); })) << test::Children();
    EXPECT_EQ(test::OpenDescriptors(), descriptors_);
  }

  std::vector<Report> Run(const char* exe, const char* args, int result) {
    g_reports.clear();
    last_ = "before";
    EXPECT_EQ(program_.RunExecutable(exe, last_, args), result);
    return g_reports;
  }
  /// The lines that a program writes that runs, without the command line.
  Lines Output(const char* exe, const std::string& args) {
    Lines lines;
    for (const auto& [code, text] : Run(exe, args.c_str(), 1)) {
      EXPECT_EQ(code, CONSOLE_LINE);
      lines.push_back(text);
    }
    lines.erase(lines.begin());
    return lines;
  }
  Lines ScriptOutput(std::string_view text) { return Output("sh", files_.Put("script", text)); }

  CDQConsoleProgram program_;
  CString last_;
  test::TempDirectory files_;

 private:
  const std::ptrdiff_t descriptors_ = test::OpenDescriptors();
};

TEST_F(ConsoleProgramTest, MasksPasswordsInTheCommandLineItReports) {
  for (const auto& [exe, args, shown] : test::Rows<const char*, const char*, const char*>{
           {"none", "", "none "},
           {"none", "USERID=u1/p1@d1", "none USERID=u1/****@d1"},
           {"USERID=u1/p1@d1", "-x", "USERID=u1/p1@d1 -x"},
           {"none", "-Usa -Psecret -Sserver", "none -Usa -P****** -Sserver"},
           {"none", "-P secret -Px", "none -P secret -Px"},
           {"MY-PROG", "x", "MY-P*** x"},
           {"none", "a@b/c", "none a@b/c"},
           {"none", "u/@d", "none u/@d"},
           {"none", "u/se@d use", "none u/****@d u****"},
           {"/opt/none", "u/p@d", "/****@d"},
       }) {
    EXPECT_EQ(Run(exe, args, 0).front(), Report(CONSOLE_LINE, shown));
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
  const std::string chunk_with_zero = "one\nhead" + std::string(1, '\0') + std::string(246, 'L');
  for (const auto& [output, lines] : test::Rows<std::string, Lines>{
           {" \n\n", {}},
           {"no end", {"no end"}},
           {"\n  a\r\n\r\nb\r\n", {"a", "b"}},
           {long_line + '\n' + long_line, {long_line, long_line}},
           {chunk_with_zero + "tail\nlast", {"one", "headtail", "last"}},
           {"\x80\xFE\xFF\n\xE9", {"\x80\xFE\xFF", "\xE9"}},
       }) {
    EXPECT_TRUE(Output("cat", files_.Put("output", output)) == lines) << output.substr(0, 9);
    EXPECT_EQ(last_.View(), lines.empty() ? "before" : lines.back());
  }
  program_.EnableTrimLeft(false);
  EXPECT_THAT(Output("printf", "'  a  \\n  b  \\n'"), ElementsAre("  a", "  b"));
}

TEST_F(ConsoleProgramTest, GivesTheChildADirectoryAndNothingToRead) {
  program_.SetCurrentDirectory("/usr");
  EXPECT_THAT(ScriptOutput("pwd -P; cat && echo read; echo error >&2"),
              ElementsAre("/usr", ::testing::StartsWith("cat: "), "error"));
}

TEST_F(ConsoleProgramTest, HoweverAProgramEndsItRan) {
  EXPECT_EQ(program_.GetExitCode(), -1);
  EXPECT_THAT(ScriptOutput("echo a; exit 3"), ElementsAre("a"));
  EXPECT_EQ(program_.GetExitCode(), 3);
  EXPECT_THAT(ScriptOutput("echo a; kill -9 $$"), ElementsAre("a"));
  EXPECT_EQ(program_.GetExitCode(), 128 + 9);
  EXPECT_EQ(CDQConsoleProgram(program_).GetExitCode(), 128 + 9);
  Run("/nowhere/none", "", 0);
  EXPECT_EQ(program_.GetExitCode(), -1);
  EXPECT_EQ(program_.GetStartError().kind, platform::ErrorKind::kNotFound);
  Run("true", "", 1);
  EXPECT_TRUE(program_.GetStartError().ok() && program_.GetExitCode() == 0);
  // The pipe ends before the program does, which is waited for.
  EXPECT_THAT(ScriptOutput("echo a; exec >&- 2>&-; sleep 0.1; : > " + files_ / "mark"),
              ElementsAre("a"));
  EXPECT_EQ(files_.Get("mark"), "");
  // The program ends before the pipe does, which is read to its end.
  EXPECT_THAT(ScriptOutput("(until grep -q 'State:.Z' /proc/$$/status; do :; done; echo late) &\n"
                           "echo early\n"),
              ElementsAre("early", "late"));
}

/// Fails the calls with these numbers, from 1.
struct FailingProcesses : test::ForwardingProcesses {
  Result<platform::Pipe> CreatePipe() override {
    return --failing_pipe == 0 ? error : ForwardingProcesses::CreatePipe();
  }
  Result<std::size_t> Read(HANDLE read_end, std::span<char> buffer) override {
    return --failing_read == 0 ? error : ForwardingProcesses::Read(read_end, buffer);
  }
  int failing_pipe = 0;
  int failing_read = 0;
  platform::Error error;
};

TEST_F(ConsoleProgramTest, ReportsEachFailureOnce) {
  const std::string plain = files_.Put("plain", "");
  for (const auto& [exe, failing_pipe, failing_read, error, report] :
       test::Rows<std::string, int, int, DWORD, Report>{
           {"yes", 1, 0, EMFILE, {-4, "Create STDOUT pipe failed: Too many open files\r\n"}},
           {"yes", 2, 0, EMFILE, {-4, "Create STDIN pipe failed: Too many open files\r\n"}},
           {"no-program", 0, 0, 0, {-3, "Create process failed: No such file or directory\r\n"}},
           {plain, 0, 0, 0, {-3, "Create process failed: Permission denied\r\n"}},
           {"yes", 0, 2, EIO, {-5, "Read pipe failed: Input/output error\r\n"}},
           {"yes", 0, 1, 99999, {-5, "Read pipe failed: Unknown OS Error"}},
       }) {
    FailingProcesses failing;
    failing.failing_pipe = failing_pipe;
    failing.failing_read = failing_read;
    failing.error = {platform::ErrorKind::kOther, error};
    const platform::ScopedPlatform scope(test::With(&platform::Platform::processes, &failing));
    const auto reports = Run(exe.c_str(), "x", 0);
    EXPECT_EQ(reports.back(), report);
    EXPECT_EQ(std::ranges::count_if(reports, [](const Report& each) { return each.first < 0; }), 1);
    EXPECT_EQ(last_, "before");
  }
}

TEST_F(ConsoleProgramTest, ACancelEndsARunWhoeverHoldsThePipe) {
  // A stray process in a session of its own keeps the pipe until the test opens the named pipe.
  const std::string stray = "mkfifo F; setsid sh -c 'echo ready; exec cat F' & ";
  const std::string scripts[] = {"echo ready; yes & yes", "echo ready; printf last; exec sleep 600",
                                 stray + "while :; do echo flood; done"};
  program_.SetCurrentDirectory(files_.path().c_str());
  for (const std::string& script : scripts) {
    std::thread canceller;
    g_on_report = [&](const Report& report) {
      if (report.second != "ready") return;
      canceller = std::thread([copy = program_]() mutable { copy.CancelProgram(); });
    };
    const Lines lines = ScriptOutput(script);
    ASSERT_TRUE(canceller.joinable());
    canceller.join();
    EXPECT_EQ(lines.front() == "ready" && lines.back() == "last", script == scripts[1]);
    program_.CancelProgram();  // none runs
  }
  std::ofstream end(files_ / "F");
}

TEST(ConsoleProgram, FindsTheEndOfACompleteFirstLine) {
  for (const auto& [text, position] : test::Rows<const char*, int>{
           {"", -2}, {"abc", 0}, {"abc\r\n\f\x1a", 0}, {"a\r\nb", 2}, {"\nb", 0}, {"a\vb\n ", 3}}) {
    EXPECT_EQ(CDQConsoleProgram::GetEndOfLinePosition(text), position) << text;
  }
}

}  // namespace
}  // namespace dq
