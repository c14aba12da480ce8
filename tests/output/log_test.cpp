#include "dqlib/output/log.h"

#include <condition_variable>

#include "dqlib/core/ini_file.h"
#include "dqlib/core/system_info.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"
#include "tests/support/forked_process.h"
#include "tests/support/forwarding_files.h"
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

/// Boxes that stand until the test answers them. Any thread.
class StandingPrompts : public platform::Prompts {
 public:
  int Show(std::string_view caption, std::string_view text, UINT type, UINT) override {
    const std::lock_guard lock(mutex_);
    boxes_.push_back(std::string(caption) + "|" + std::string(text) + "|" + std::to_string(type));
    shown = boxes_.size();
    shown.notify_all();
    answer_.wait(0);
    return answer_.exchange(0);
  }
  void RunDialog(platform::DialogView&) override {}
  /// Waits until so many boxes have been shown.
  void AwaitBox(std::size_t count) {
    for (std::size_t now; (now = shown) < count;) shown.wait(now);
  }
  /// Answers once so many boxes have been shown.
  void Answer(std::size_t count, BoxButton button) {
    AwaitBox(count);
    answer_ = button;
    answer_.notify_all();
  }
  /// Only while none stands.
  const std::vector<std::string>& boxes() const { return boxes_; }

  std::atomic<std::size_t> shown = 0;

 private:
  std::mutex mutex_;
  std::vector<std::string> boxes_;
  std::atomic<int> answer_ = 0;
};

/// Files whose writes and found sizes a test falsifies.
struct FaultyFiles : test::ForwardingFiles {
  platform::Error failure;
  std::uint64_t found_size = 0;

  platform::Error Write(HANDLE file, std::string_view bytes) override {
    return failure.ok() ? ForwardingFiles::Write(file, bytes) : failure;
  }
  platform::Result<platform::FileStatus> Status(std::string_view path) override {
    auto status = ForwardingFiles::Status(path);
    if (found_size != 0) status.value.size = found_size;
    return status;
  }
};

class LogTest : public ::testing::Test {
 protected:
  LogTest() { locale_.items[LOCALE_SSHORTDATE] = "M/d/yyyy"; }

  static std::string Line(std::string_view text) {
    return std::string(kTime) + "  " + std::string(text) + "\r\n";
  }

  TempDirectory directory_;
  const std::string path_ = directory_ / "x.log";
  testing::ManualClock clock_;
  test::ScriptedLocale locale_;
  FaultyFiles files_;
  StandingPrompts standing_;

 private:
  const platform::ScopedPlatform time_{test::With(&platform::Platform::clock, &clock_)};
  const platform::ScopedPlatform disk_{test::With(&platform::Platform::files, &files_)};
  const platform::ScopedPlatform person_{test::With(&platform::Platform::prompts, &standing_)};
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
  log.LogMessage(50100);
  log.LogMessage(50999, "one", "two");
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
  unused.SetMaxFileSize(0xFFFFFFFF / 1024 + 1);
  unused.Initialize();
  unused.SetUseLog(true);
  EXPECT_EQ(unused.GetMaxFileSize(), 0xFFFFFFFF);
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
  for (const std::size_t excess : {0U, 1U}) {
    directory_.Put("x.log", std::string(1024 + excess - Line("text").size(), '-'));
    CDQLog log(path_.c_str(), 1, true);
    CDQLog silent(path_.c_str(), 1, false);
    log.LogMessage("text");
    if (excess != 0) standing_.Answer(1, BUTTON_OK);
    log.WaitForWarning();
    silent.LogMessage("text");
    silent.WaitForWarning();
  }
  EXPECT_THAT(
      standing_.boxes(),
      ::testing::ElementsAre("Log- Warning|Log file length has exceeded the maximum limit|1"));
}

TEST_F(LogTest, OneWarningStandsWhileTheLogGoesOn) {
  directory_.Put("x.log", std::string(1024, '-'));
  auto log = std::make_unique<CDQLog>(path_.c_str(), 1, true);
  std::string written(1024, '-');
  const auto write = [&] {
    log->LogMessage("text");
    written += Line("text");
  };
  write();
  standing_.AwaitBox(1);
  write();
  write();
  EXPECT_EQ(standing_.shown, 1U);
  standing_.Answer(1, BUTTON_OK);
  log->WaitForWarning();

  write();  // OK has armed it again.
  standing_.Answer(2, BUTTON_CANCEL);
  log->WaitForWarning();
  write();  // Cancel has silenced it.
  log->WaitForWarning();
  EXPECT_EQ(standing_.shown, 2U);

  // One box at a time, and each may outlive its log.
  CDQLog other(path_.c_str(), 1, true);
  log = std::make_unique<CDQLog>(path_.c_str(), 1, true);
  write();
  standing_.AwaitBox(3);
  log.reset();
  other.LogMessage("text");
  EXPECT_EQ(standing_.shown, 3U);
  standing_.Answer(3, BUTTON_OK);
  standing_.Answer(4, BUTTON_CANCEL);
  other.WaitForWarning();
  EXPECT_EQ(directory_.Get("x.log"), written + Line("text"));
}

TEST_F(LogTest, TellsOfAFullDiskAndStaysWithAFileThatIsRotatedAwayOrRemoved) {
  CDQLog log(path_.c_str(), 1, true);
  files_.failure = {.kind = platform::ErrorKind::kNoSpace, .code = 28};
  try {
    log.LogMessage("lost");
    ADD_FAILURE() << "nothing thrown";
  } catch (const CFileException& failure) {
    EXPECT_EQ(failure.m_cause, CFileException::diskFull);
  }
  EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), "lost", 0), -1);
  files_.failure = {};
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
  directory_.Put("a.ini", "[s]\nk=a value of more bytes than a short text has room for\n");
  const auto use = [&](const char* who) {
    CString value;
    CDQIniFile((directory_ / "a.ini").c_str()).ReadKey("s", "k", value, "");
    const CString date = CDQSystemInfo::GetFormattedDate(&clock_.local_time, DATE_LONG);
    CDQLog(path_.c_str(), 1, true).LogMessage(CString(who) + ' ' + date + ' ' + value);
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
  for (const char* const who : {"early", "worker", "early", "main thread", "process"}) {
    expected += Line(std::string(who) +
                     " on 03/02/2001 by the calendar "
                     "a value of more bytes than a short text has room for");
  }
  EXPECT_EQ(directory_.Get("x.log"), expected);
}

TEST_F(LogTest, WritersLoseNoEntry) {
  static constexpr int kEntries = 300;
  const auto with = [](CDQLog& log, const char* text) {
    for (int i = 0; i < kEntries; ++i) log.LogMessage(text);
  };
  const auto at_once = [&](const char* text) {
    for (int done = 0; done < kEntries;) done += DQLIB_WriteLogFile(path_.c_str(), text, 0) == 1;
  };
  {
    CDQLog shared(path_.c_str(), 0, true);
    test::ForkedProcess child([&] {
      CDQLog own(path_.c_str(), 0, false);
      with(own, "one");
    });
    std::thread other([&] { with(shared, "two"); });
    with(shared, "three");
    other.join();
    EXPECT_TRUE(child.EndsWell());
  }
  test::ForkedProcess child([&] { at_once("four"); });
  at_once("five");
  EXPECT_TRUE(child.EndsWell());
  std::string text = directory_.Get("x.log");
  for (const std::string writer : {"  one", "  two", "  three", "\r\nfour", "\r\nfive"}) {
    const std::string entry = kTime + writer + "\r\n";
    int entries = 0;
    for (std::size_t at = 0; (at = text.find(entry, at)) != text.npos; ++entries) {
      text.erase(at, entry.size());
    }
    EXPECT_EQ(entries, kEntries) << writer;
  }
  EXPECT_EQ(text, "");
}

TEST_F(LogTest, WhatOthersWriteCountsFromTheNextMillisecondAtTheLatest) {
  CDQLog log(path_.c_str(), 128 * 1024, true);
  log.LogMessage("far from the maximum");
  std::filesystem::resize_file(path_, 128 * 1024 * 1024);
  ++clock_.local_time.wMilliseconds;
  log.LogMessage("above");
  standing_.Answer(1, BUTTON_OK);
  log.WaitForWarning();
  log.ClearLogFile();
  log.SetMaxFileSize(0xFFFFFFFF);
  log.LogMessage("far");
  log.SetMaxFileSize(1);
  log.LogMessage("above");
  standing_.Answer(2, BUTTON_CANCEL);
  log.WaitForWarning();
}

TEST_F(LogTest, WriteLogFileStartsOverAtItsLimit) {
  const std::string entry = std::string(kTime) + "\r\none\ntwo\r\n";
  for (const auto& [size, maximum, found, restarts] :
       test::Rows<std::size_t, long, std::uint64_t, bool>{
           {1023, 1, 0, false},
           {1024, 1, 0, true},
           {1024, 0, 0, false},
           {1024, std::numeric_limits<long>::min(), 0, false},
           {1024, std::numeric_limits<long>::max(), 0, false},
           // What is above 32 bits is taken off.
           {1024, 1, (1ULL << 32) + 1024, false},
           {1024, 1, (1ULL << 32) + 1025, true},
           {1024, 1, (1ULL << 32) - 1, true},
       }) {
    const std::string old(size, '-');
    directory_.Put("x.log", old);
    files_.found_size = found;
    EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), "one\ntwo", maximum), 1);
    EXPECT_EQ(directory_.Get("x.log"), (restarts ? "" : old) + entry)
        << size << ' ' << maximum << ' ' << found;
  }
}

TEST_F(LogTest, WriteLogFileMakesTheFileOrSaysMinusOne) {
  EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), "", 1), 1);
  CFile held(path_.c_str(), CFile::modeWrite);
  EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), "text", 0), -1) << "while another writes";
  const std::string nowhere = directory_ / "no/x.log";
  for (const char* const path :
       {directory_.path().c_str(), nowhere.c_str(), "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(DQLIB_WriteLogFile(path, "text", 0), -1);
  EXPECT_EQ(DQLIB_WriteLogFile(path_.c_str(), nullptr, 0), -1);
}

}  // namespace
}  // namespace dq
