#include "dqlib/platform/processes.h"

#include <csignal>
#include <future>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include "dqlib/platform/platform.h"
#include "tests/support/forked_process.h"
#include "tests/support/own_process.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

/// Every test ends with what it began with: no child, no zombie, no descriptor more.
class ProcessesTest : public ::testing::Test {
 protected:
  void TearDown() override {
    for (const HANDLE handle : handles_) processes_.Close(handle);
    EXPECT_TRUE(test::Eventually([] { return test::Children().empty(); })) << test::Children();
    EXPECT_EQ(test::OpenDescriptors(), descriptors_);
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
    for (;;) {
      const auto read = processes_.Read(output_, buffer);
      if (!read.ok() || read.value == 0) return all;
      all.append(buffer, read.value);
    }
  }
  std::string Output(const std::string& command_line, const std::string& directory = "") {
    Start(command_line, directory);
    return ReadAll();
  }

  Processes& processes_ = *System().processes;
  HANDLE output_ = kNoHandle;
  test::TempDirectory files_;

 private:
  std::vector<HANDLE> handles_;
  const std::ptrdiff_t descriptors_ = test::OpenDescriptors();
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
  const std::string plain = files_.Put("plain", "text");
  const std::string no_format = files_.Put("no_format", "text");
  std::filesystem::permissions(no_format, std::filesystem::perms::owner_all);
  const std::pair<StartInfo, int> cases[] = {
      {{"no-such-program-anywhere -x"}, ENOENT},
      {{plain}, EACCES},
      {{no_format}, ENOEXEC},
      {{" \t"}, ENOENT},
      {{std::string("true\0x", 6)}, EINVAL},
      {{"true", "/no/such/directory"}, ENOENT},
      {{.command_line = "true", .standard_output = ~HANDLE{0}}, EBADF},
  };
  for (const auto& [info, error] : cases) {
    EXPECT_EQ(processes_.Start(info).error.code, static_cast<DWORD>(error)) << info.command_line;
  }
  const std::string program = files_.Put("program", "#!/bin/sh\npwd -P\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  // A relative program is that of this process's directory.
  EXPECT_EQ(Output(std::filesystem::relative(program).string(), "/usr"), "/usr\n");
}

TEST_F(ProcessesTest, ReturnsTheExitCodeOr128PlusTheSignalEachTime) {
  for (const auto& [command_line, code] :
       {std::pair{"sh -c 'exit 255'", 255}, {"sh -c 'kill -TERM $$'", 128 + SIGTERM}}) {
    const HANDLE process = Start(command_line).process;
    EXPECT_EQ(processes_.Wait(process).value, code);
    EXPECT_EQ(processes_.Wait(process).value, code);
    EXPECT_TRUE(processes_.Terminate(process).ok());
  }
}

TEST_F(ProcessesTest, AChildHasNothingOfThisProcessButItsStandardHandles) {
  const int inheritable = dup(STDERR_FILENO);
  sigset_t signals;
  sigset_t former;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, &former);
  const auto handler = signal(SIGPIPE, SIG_IGN);
  // Both masks are empty, but for the two signals that the C library keeps to itself.
  EXPECT_EQ(Output("grep -cE 'Sig(Blk|Ign).{9}[01][08]0{7}$' /proc/self/status"), "2\n");
  EXPECT_EQ(Output("ls /proc/self/fd"), "0\n1\n2\n3\n");  // 3 is that of the listing itself
  signal(SIGPIPE, handler);
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
  close(inheritable);

  const std::string id = std::to_string(Start("cut -d' ' -f1,5,6 /proc/self/stat").process_id);
  EXPECT_EQ(ReadAll(), id + ' ' + id + ' ' + id + '\n');  // process, group, session
}

TEST_F(ProcessesTest, WorksWhereTheStandardHandlesAreClosed) {
  EXPECT_TRUE(test::AllEndWell(1, [&](int) {
    EXPECT_EQ(close(STDIN_FILENO) + close(STDOUT_FILENO), 0);
    const Pipe pipe = MakePipe();
    Start("cat", "", pipe.read_end);
    processes_.Write(pipe.write_end, "through");
    processes_.Close(pipe.write_end);
    EXPECT_EQ(ReadAll(), "through");
  }));
}

TEST_F(ProcessesTest, AnInterruptedEndReadsNoMoreAndWritingToNobodyIsNoSignal) {
  const Pipe pipe = MakePipe();
  char buffer[8];
  std::thread other([&] { processes_.InterruptRead(pipe.read_end); });
  EXPECT_EQ(processes_.Read(pipe.read_end, buffer).error.kind, ErrorKind::kBrokenPipe);
  other.join();
  processes_.Write(pipe.write_end, "bytes that wait");
  EXPECT_EQ(processes_.Read(pipe.read_end, buffer).error.kind, ErrorKind::kBrokenPipe);
  processes_.Close(pipe.read_end);
  EXPECT_EQ(processes_.Write(pipe.write_end, "x").error.kind, ErrorKind::kBrokenPipe);
  sigset_t pending;
  sigpending(&pending);
  EXPECT_FALSE(sigismember(&pending, SIGPIPE));
}

TEST_F(ProcessesTest, TerminateEndsTheWholeGroupWhoeverWaits) {
  const HANDLE process = Start("sh -c 'sleep 600 & echo up; wait'").process;
  char buffer[8];
  EXPECT_EQ(processes_.Read(output_, buffer).value, 3u);
  std::atomic<int> codes = 0;
  std::vector<std::thread> waiters;
  for (int i = 0; i < 3; ++i) {
    waiters.emplace_back([&] { codes += processes_.Wait(process).value; });
  }
  EXPECT_TRUE(processes_.Terminate(process).ok());
  for (std::thread& waiter : waiters) waiter.join();
  EXPECT_EQ(codes, 3 * (128 + SIGKILL));
  EXPECT_EQ(ReadAll(), "");  // would wait for the grandchild
}

TEST_F(ProcessesTest, HandlesOutOfDateOrOfAnotherKindAreErrors) {
  const Pipe pipe = MakePipe();
  const StartedProcess running = Start("cat", "", pipe.read_end);
  processes_.Close(running.process);
  EXPECT_EQ(test::Children(), std::to_string(running.process_id) + ' ') << "reaped at its end";
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
