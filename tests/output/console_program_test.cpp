
#include "dqlib/output/line_cutter.h"
#include "tests/support/doubles.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"

namespace dq::test {
namespace {

using platform::Error, platform::Pipe, platform::Result, platform::StartedProcess;
using testing::ElementsAre;
using Text = const char*;

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

/// The system's, of which the calls with these numbers fail, from 1.
struct FailingProcesses : platform::Processes {
  Result<Pipe> CreatePipe() override { return --failing_pipe == 0 ? error : system.CreatePipe(); }
  Result<std::size_t> Read(HANDLE read_end, std::span<char> buffer) override {
    return --failing_read == 0 ? error : system.Read(read_end, buffer);
  }
  Result<std::size_t> Write(HANDLE, std::string_view) override { return error; }
  void InterruptRead(HANDLE read_end) override { system.InterruptRead(read_end); }
  Result<StartedProcess> Start(const platform::StartInfo& info) override {
    return system.Start(info);
  }
  Result<int> Wait(HANDLE process) override { return system.Wait(process); }
  Error Terminate(HANDLE process) override { return immortal ? error : system.Terminate(process); }
  void Close(HANDLE handle) override { system.Close(handle); }

  Processes& system = *platform::System().processes;
  int failing_pipe = 0;
  int failing_read = 0;
  bool immortal = false;
  Error error;
};

/// Every test ends with what it began with: no pipe, no process.
class ConsoleProgramTest : public testing::Test {
 protected:
  ConsoleProgramTest() {
    g_on_report = nullptr;
    program_.SetCallback(Record);
  }
  ~ConsoleProgramTest() override {
    EXPECT_TRUE(Eventually([] { return Children().empty(); })) << Children();
    EXPECT_EQ(OpenDescriptors(), descriptors_);
    program_.CancelProgram();  // none runs
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

  const std::ptrdiff_t descriptors_ = OpenDescriptors();
  FailingProcesses processes_;
  const platform::ScopedPlatform scope_{With(&platform::Platform::processes, &processes_)};
  CDQConsoleProgram program_;
  CString last_;
  TempDirectory files_;
};

TEST_F(ConsoleProgramTest, MasksPasswordsInTheCommandLineItReports) {
  for (const auto& [exe, args, shown] :
       Rows<Text, Text, Text>{{"none", "USERID=u1/p1@d1", "none USERID=u1/****@d1"},
                              {"USERID=u1/p1@d1", "-x", "USERID=u1/p1@d1 -x"},
                              {"none", "-Usa -Psecret -Sserver", "none -Usa -P****** -Sserver"},
                              {"none", "-P secret -Px", "none -P secret -Px"},
                              {"MY-PROG", "x", "MY-P*** x"},
                              {"none", "u/se@d use", "none u/****@d u****"},
                              {"/opt/none", "u/p@d", "/****@d"},
                              {"-Px", "", "-P* "}}) {
    EXPECT_EQ(Run(exe, args, 0).front(), Report(CONSOLE_LINE, shown));
  }
  for (const std::string args : {"", "a@b/c", "u/@d", "u@d"}) {
    EXPECT_EQ(Run("none", args.c_str(), 0).front().second, "none " + args);
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
  const Rows<std::string, Lines> rows = {{" \n\n", {}},
                                         {"no end", {"no end"}},
                                         {"\n  a\r\n\r\nb\r\n", {"a", "b"}},
                                         {long_line + '\n' + long_line, {long_line, long_line}},
                                         {"\x80\xFE\xFF\n\xE9", {"\x80\xFE\xFF", "\xE9"}}};
  for (const auto& [output, lines] : rows) {
    EXPECT_TRUE(Output("cat", files_.Put("output", output)) == lines) << output.substr(0, 9);
    EXPECT_EQ(last_.View(), lines.empty() ? "before" : lines.back());
  }
  program_.EnableTrimLeft(false);
  EXPECT_THAT(Output("printf", "'  a  \\n  b  \\n'"), ElementsAre("  a", "  b"));
  // What is behind a zero is lost with the rest of its piece.
  const int usual = CDQConsoleProgram::m_nPipeOutputSize;
  const auto zero = files_.Put("zero", "ab" + std::string(1, '\0') + std::string(252, 'L') + "end");
  for (const auto& [size, left] : {std::pair(1000, 0), {254, 1}, {0, 252}, {usual, 0}}) {
    CDQConsoleProgram::m_nPipeOutputSize = size;
    EXPECT_THAT(Output("cat", zero), ElementsAre("ab" + std::string(left, 'L') + "end"));
  }
}

TEST_F(ConsoleProgramTest, GivesTheChildADirectoryAndNothingToRead) {
  program_.SetCurrentDirectory("/usr");
  EXPECT_THAT(ScriptOutput("pwd -P; cat && echo read; echo error >&2"),
              ElementsAre("/usr", testing::StartsWith("cat: "), "error"));
}

TEST_F(ConsoleProgramTest, HoweverAProgramEndsItRan) {
  EXPECT_EQ(program_.GetExitCode(), -1);
  for (const auto& [script, lines, code] : Rows<Text, Lines, int>{
           {"echo a; exit 3", {"a"}, 3},
           {"echo a; kill -9 $$", {"a"}, 128 + 9},
           // The pipe ends before the program does, which is waited for.
           {"echo a; exec >&- 2>&-; sleep 0.1; exit 4", {"a"}, 4},
           // The program ends before the pipe does, which is read to its end.
           {"(until grep -q 'State:.Z' /proc/$$/status; do :; done; echo late) & echo early",
            {"early", "late"},
            0}}) {
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
           {"/etc/passwd", 0, 0, 0, {-3, "Create process failed: Permission denied\r\n"}},
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
    EXPECT_THAT(ScriptOutput(script).back(), testing::StartsWith(last));
    ASSERT_TRUE(canceller.joinable());
    canceller.join();
    EXPECT_EQ(program_.GetExitCode(), code) << script;
  }
  std::ofstream end(files_ / "F");
}

TEST(ConsoleProgram, FindsTheEndOfACompleteFirstLine) {
  for (const auto& [text, position] : Rows<Text, int>{
           {"", -2}, {"abc", 0}, {"abc\r\n\f\x1a", 0}, {"a\r\nb", 2}, {"\nb", 0}, {"a\vb\n ", 3}}) {
    EXPECT_EQ(CDQConsoleProgram::GetEndOfLinePosition(text), position) << text;
  }
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

TEST(LineCutter, GivesLinesWithTextThatSomethingFollows) {
  const Rows<Text, Text, Text> rows = {{"", "", ""},
                                       {"no end ", "no end", "no end"},
                                       {" \n \r\n", "", ""},
                                       {"\x1a\na\nb", "a|b", "a|b"},
                                       {"\n\r\f\x1a  a \r\n\r\n \tb\n", "a| \tb", "  a| \tb"},
                                       {"a\x1a\r\nb", "a\x1a|b", "a\x1a|b"},
                                       {" a\n\n \n b \n c", "a|b| c", " a| b| c"}};
  for (const auto& [output, trimmed, whole] : rows) {
    EXPECT_EQ(Cut(output, 255, true), trimmed) << output;
    EXPECT_EQ(Cut(output, 255, false), whole) << output;
  }
}

TEST(LineCutter, CutsAllShortOutputsAlikeHoweverTheyArrive) {
  constexpr std::string_view kAlphabet = "a \n\r\f\x1a";
  for (int number = 0; number < 6 * 6 * 6 * 6 * 6 * 6; ++number) {
    std::string output;
    for (int i = 0, digits = number; i < 6; ++i, digits /= 6) output += kAlphabet[digits % 6];
    for (const bool trim_left : {true, false}) {
      const std::string cut = Cut(output, 255, trim_left);
      ASSERT_TRUE(Cut(output, 1, trim_left) == cut && Cut(output, 2, trim_left) == cut)
          << testing::PrintToString(output);
    }
  }
}

}  // namespace
}  // namespace dq::test
