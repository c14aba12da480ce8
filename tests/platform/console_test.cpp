#include "dqlib/platform/console.h"

#include <csignal>
#include <future>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include "dqlib/platform/files.h"
#include "dqlib/platform/platform.h"
#include "tests/support/forked_process.h"
#include "tests/support/own_process.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

void (*PresentHandler(int signal_number))(int) {
  struct sigaction present {};
  sigaction(signal_number, nullptr, &present);
  return present.sa_handler;
}

TEST(Console, StopRequestCallsTheWatchInsteadOfEndingTheProgram) {
  for (const int signal_number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
    std::promise<void> stopped;
    auto watch = System().console->WatchStopRequests([&stopped] { stopped.set_value(); });
    ASSERT_NE(watch, nullptr);
    raise(signal_number);
    stopped.get_future().wait();
    watch.reset();
    EXPECT_EQ(PresentHandler(signal_number), SIG_DFL) << signal_number;
  }
  const auto former = std::signal(SIGHUP, SIG_IGN);
  auto watch = System().console->WatchStopRequests([] { ADD_FAILURE(); });
  raise(SIGHUP);
  EXPECT_EQ(PresentHandler(SIGHUP), SIG_IGN) << "what was ignored stays so";
  watch.reset();
  std::signal(SIGHUP, former);
}

TEST(Console, NoWatchAndNothingLeftBehindWithoutAThread) {
  const auto descriptors = test::OpenDescriptors();
  pthread_attr_t former, huge;
  ASSERT_EQ(pthread_getattr_default_np(&former), 0);
  ASSERT_EQ(pthread_getattr_default_np(&huge), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&huge, std::size_t{1} << 47), 0);
  ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
  EXPECT_EQ(System().console->WatchStopRequests([] { ADD_FAILURE(); }), nullptr);
  pthread_setattr_default_np(&former);
  EXPECT_EQ(PresentHandler(SIGTERM), SIG_DFL);
  EXPECT_EQ(test::OpenDescriptors(), descriptors);
  pthread_attr_destroy(&huge);
  pthread_attr_destroy(&former);
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
  const test::TempDirectory dir;
  test::ForkedProcess child([&] {
    System().console->PrepareStreams();
    for (const int number : {SIGXFSZ, SIGPIPE}) EXPECT_NE(PresentHandler(number), SIG_IGN);
    int ends[2];
    EXPECT_EQ(pipe(ends) + close(ends[0]), 0);
    EXPECT_TRUE(write(ends[1], "x", 1) == -1 && errno == EPIPE);
    const rlimit limit{1000, 1000};
    setrlimit(RLIMIT_FSIZE, &limit);
    Files& files = *System().files;
    EXPECT_EQ(files.Replace(dir / "a", std::string(1001, 'x'), false).code, DWORD{EFBIG});
    const OpenOptions options{.write = true, .create = true, .append = true};
    const HANDLE log = files.Open(dir / "log", options).value;
    EXPECT_TRUE(files.Write(log, std::string(990, 'x')).ok());
    EXPECT_EQ(files.Write(log, "this is torn").code, DWORD{EFBIG});
    EXPECT_EQ(files.Length(log).value, 990u);
    EXPECT_TRUE(files.Write(log, "whole").ok());
  });
  EXPECT_TRUE(child.EndsWell());
  EXPECT_EQ(dir.Count(), 1u);
}

}  // namespace
}  // namespace dq::platform
