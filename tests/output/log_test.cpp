#include "dqlib/output/log.h"

#include <semaphore>

#include "dqlib/core/dq_string.h"
#include "dqlib/core/ini_file.h"
#include "dqlib/core/system_info.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"
#include "tests/support/forked_process.h"
#include "tests/support/manual_clock.h"
#include "tests/support/own_service.h"
#include "tests/support/scripted_locale.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using test::TempDirectory;
using testing::ScriptedPrompts;
using testing::ShownBox;

constexpr char kTime[] = "2/3/2001 04:05:06.007";

class LogTest : public ::testing::Test {
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

  TempDirectory directory_;
  const std::string path_ = directory_ / "x.log";
  testing::ManualClock clock_;
  test::ScriptedLocale locale_;
  /// One at a time, on any thread.
  ScriptedPrompts prompts_{BUTTON_OK, BUTTON_CANCEL, BUTTON_OK, BUTTON_CANCEL};
  std::atomic<int> shown_ = 0;

 private:
  std::counting_semaphore<> answers_{0};
  const platform::ScopedPlatform time_{test::With(&platform::Platform::clock, &clock_)};
};

TEST_F(LogTest, WritesOneStampedLineAnEntryBehindWhatIsThere) {
  ResourceModule module;
  module.AddString(50100, "plain");
  module.AddString(50101, "%1 and %2");
  const CDynLinkLibrary link(&module);
  directory_.Put("x.log", "old\r\n");
  CDQLog log(path_.c_str(), 0, false);
  EXPECT_EQ(log.GetMaxFileSize(), 1'024'000U);
  log.LogMessage("");
  log.LogMessage(50999);
  log.LogMessage(50999, "one", "two");
  log.LogMessage(50100);
  log.LogMessage(50101, "one");
  log.LogMessage(50101, "one", "two");
  log.SetUseLog(false);
  log.LogMessage("unheard");
  log.SetUseLog(true);
  log.LogMessage("heard");
  EXPECT_EQ(directory_.Get("x.log"),
            "old\r\n" + Line("plain") + Line("one and %2") + Line("one and two") + Line("heard"));
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
              ::testing::ElementsAre(ShownBox{"Unable to open Log file for writing", BOX_OK, 0}));
  EXPECT_EQ(prompts.shown[0].caption, "Log");
  for (CDQLog* const log : {&unnamed, &unused, &on_directory}) {
    EXPECT_FALSE(log->HasFile());
    log->LogMessage("text");
    EXPECT_TRUE(log->ClearLogFile());
  }
  EXPECT_EQ(directory_.Count(), 0U);
}

TEST_F(LogTest, WarnsWhenTheFileIsLargerThanItsLimitOnly) {
  for (const int excess : {0, 1}) {
    directory_.Put("x.log", std::string(1024 + excess - Line("text").size(), '-'));
    CDQLog log(path_.c_str(), 1, true), silent(path_.c_str(), 1, false), made_silent;
    made_silent.SetLogFileName(path_.c_str());
    made_silent.SetMaxFileSize(1);
    made_silent.Initialize();
    log.LogMessage("text");
    if (excess != 0) Answer(1, log);
    log.WaitForWarning();
    for (CDQLog* const each : {&silent, &made_silent}) {
      each->LogMessage("text");
      each->WaitForWarning();
    }
  }
  EXPECT_EQ(
      prompts_.shown,
      (std::vector<ShownBox>{{"Log file length has exceeded the maximum limit", BOX_OK_CANCEL}}));
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
              ::testing::Throws<CFileException>(
                  ::testing::Field(&CFileException::m_cause, int{CFileException::diskFull})));
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
  EXPECT_EXIT(run(), ::testing::ExitedWithCode(0), "");
  std::string expected;
  for (const std::string who : {"early", "worker", "early", "main thread", "process"}) {
    expected += Line(who + " on 03/02/2001 by the calendar " + value);
  }
  EXPECT_EQ(directory_.Get("x.log"), expected);
}

TEST_F(LogTest, WritersLoseNoEntry) {
  const auto with = [](CDQLog& log, const char* text) {
    for (int i = 0; i < 300; ++i) log.LogMessage(text);
  };
  const auto at_once = [&](const char* text) {
    for (int done = 0; done < 300;) done += DQLIB_WriteLogFile(path_.c_str(), text, 0) == 1;
  };
  auto shared = std::make_unique<CDQLog>(path_.c_str(), 0, true);
  test::ForkedProcess logging([&] {
    CDQLog own(path_.c_str(), 0, false);
    with(own, "one");
  });
  std::thread other([&] { with(*shared, "two"); });
  with(*shared, "three");
  other.join();
  EXPECT_TRUE(logging.EndsWell());
  shared.reset();
  test::ForkedProcess writing([&] { at_once("four"); });
  at_once("five");
  EXPECT_TRUE(writing.EndsWell());
  std::string text = directory_.Get("x.log");
  for (const std::string writer : {"  one", "  two", "  three", "\r\nfour", "\r\nfive"}) {
    CDQString rest(text);
    EXPECT_EQ(rest.FindReplace((kTime + writer + "\r\n").c_str(), ""), 300) << writer;
    text = rest.View();
  }
  EXPECT_EQ(text, "");
}

TEST_F(LogTest, WhatOthersWriteAndANewLimitCount) {
  CDQLog log(path_.c_str(), 1, true);
  std::filesystem::resize_file(path_, 1024);
  log.LogMessage("above");
  Answer(1, log);
  log.SetMaxFileSize(0xFFFFFFFF);
  log.LogMessage("below");
  log.SetMaxFileSize(1);
  log.LogMessage("above");
  Answer(2, log);
}

TEST_F(LogTest, WriteLogFileStartsOverAtItsLimitOrSaysMinusOne) {
  const std::string entry = std::string(kTime) + "\r\none\ntwo\r\n";
  using Limits = std::numeric_limits<long>;
  for (const auto& [size, maximum, restarts] :
       test::Rows<std::uint64_t, long, bool>{{1023, 1, false},
                                             {1024, 1, true},
                                             {1024, 0, false},
                                             {1024, Limits::min(), false},
                                             {1024, Limits::max(), false},
                                             // What is above 32 bits is taken off.
                                             {(1ULL << 32) + 1024, 1, false},
                                             {(1ULL << 32) + 1025, 1, true},
                                             {(1ULL << 32) - 1, 1, true}}) {
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
}  // namespace dq
