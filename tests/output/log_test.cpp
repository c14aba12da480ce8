
#include <semaphore>

#include "tests/support/doubles.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"

namespace dq::test {
namespace {

constexpr char kTime[] = "2/3/2001 04:05:06.007";

class LogTest : public testing::Test {
 protected:
  LogTest() {
    locale_.items[LOCALE_SSHORTDATE] = "M/d/yyyy";
    prompts_.on_box = [this] {
      ++shown_;
      shown_.notify_all();
      answers_.acquire();
    };
  }

  static std::string Line(std::string_view text) {
    return std::string(kTime) + "  " + std::string(text) + "\r\n";
  }
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

 private:
  std::counting_semaphore<> answers_{0};
  const platform::ScopedPlatform time_{With(&platform::Platform::clock, &clock_)};
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
  for (const auto& [kilobytes, bytes] :
       {std::pair(4194303U, 4294966272U), {4194304U, 4294967295U}}) {
    unused.SetMaxFileSize(kilobytes);
    unused.Initialize();
    EXPECT_EQ(unused.GetMaxFileSize(), bytes);
  }
  unused.SetUseLog(true);
  EXPECT_TRUE(prompts.shown.empty());
  CDQLog on_directory(directory_.path().c_str(), 1, true);
  EXPECT_THAT(prompts.shown,
              testing::ElementsAre(ShownBox{"Unable to open Log file for writing", BOX_OK, 0}));
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
  EXPECT_THAT(prompts_.shown, testing::ElementsAre(box, box));
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
  EXPECT_THAT([&] { full.LogMessage("lost"); },
              testing::Throws<CFileException>(
                  testing::Field(&CFileException::m_cause, int{CFileException::diskFull})));
  std::filesystem::rename(path_, directory_ / "x.log.1");
  log.LogMessage("kept");
  EXPECT_EQ(directory_.Get("x.log.1"), Line("kept"));
  std::filesystem::remove(directory_ / "x.log.1");
  log.LogMessage("removed");
  EXPECT_EQ(directory_.Count(), 0U);
}

/// Works as late as the end of its thread, or of the process.
struct AtEnd {
  std::function<void()> work;
  ~AtEnd() { work(); }
};

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
    static AtEnd of_process{[use] { use("process"); }};
    thread_local AtEnd of_thread{[use] { use("main thread"); }};
    std::thread([use] {
      thread_local AtEnd of_worker{[use] { use("worker"); }};
      use("early");
    }).join();
    use("early");
    std::exit(of_process.work && of_thread.work ? 0 : 1);
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
    const char* const text = i == 0 ? "four" : "five";
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
  for (const char* const path : {path_.c_str(), directory_.path().c_str(), nowhere.c_str(),
                                 "/dev/full", "", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(DQLIB_WriteLogFile(path, "text", 0), -1);
  }
  EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), nullptr, 0), -1);
}

}  // namespace
}  // namespace dq::test
