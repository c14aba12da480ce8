#include "dqlib/platform/processes.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include "dqlib/platform/platform.h"
#include "tests/support/own_process.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

using test::Children;
using test::Eventually;
using test::OpenDescriptors;

/// Every test ends with what it began with: no child, no zombie, no descriptor more.
class ProcessesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(Children(), "");
    descriptors_ = OpenDescriptors();
  }
  void TearDown() override {
    EXPECT_TRUE(Eventually([] { return Children().empty(); })) << Children();
    EXPECT_EQ(OpenDescriptors(), descriptors_);
  }

  /// A child that writes to `output_`, which only the child holds.
  Result<StartedProcess> Start(const std::string& command_line, const std::string& directory = "",
                               HANDLE input = kNoHandle) {
    const Pipe pipe = processes_.CreatePipe().value;
    const auto started = processes_.Start({.command_line = command_line,
                                           .directory = directory,
                                           .standard_input = input,
                                           .standard_output = pipe.write_end});
    processes_.Close(pipe.write_end);
    output_ = pipe.read_end;
    return started;
  }
  std::string Script(const char* text) { return "sh " + files_.Put("script", text); }

  std::string ReadAll(HANDLE read_end) {
    std::string all;
    char buffer[4096];
    for (;;) {
      const auto read = processes_.Read(read_end, buffer);
      if (!read.ok() || read.value == 0) return all;
      all.append(buffer, read.value);
    }
  }
  /// Runs to the end; what was written.
  std::string Output(const std::string& command_line, const std::string& directory = "") {
    const auto started = Start(command_line, directory);
    EXPECT_TRUE(started.ok()) << started.error.code;
    const std::string output = ReadAll(output_);
    processes_.Wait(started.value.process);
    processes_.Close(started.value.process);
    processes_.Close(output_);
    return output;
  }

  Processes& processes_ = *System().processes;
  HANDLE output_ = kNoHandle;
  test::TempDirectory files_;

 private:
  std::ptrdiff_t descriptors_ = 0;
};

TEST_F(ProcessesTest, CarriesAllBytesThroughAChild) {
  std::string bytes;
  for (int i = 0; i < 1 << 20; ++i) bytes += static_cast<char>(i);
  const Pipe input = processes_.CreatePipe().value;
  const auto started = Start("cat", "", input.read_end);
  processes_.Close(input.read_end);
  std::thread writer([&] {
    EXPECT_EQ(processes_.Write(input.write_end, bytes).value, bytes.size());
    processes_.Close(input.write_end);
  });
  EXPECT_TRUE(ReadAll(output_) == bytes);
  writer.join();
  EXPECT_EQ(processes_.Wait(started.value.process).value, 0);
  processes_.Close(started.value.process);
  processes_.Close(output_);
}

TEST_F(ProcessesTest, TellsWhyAProgramCouldNotBeStarted) {
  const std::string plain = files_.Put("plain", "text");
  const std::string no_format = files_.Put("no_format", "text");
  std::filesystem::permissions(no_format, std::filesystem::perms::owner_all);
  const struct {
    StartInfo info;
    int error;
  } cases[] = {
      {{.command_line = "no-such-program-anywhere -x"}, ENOENT},
      {{.command_line = "/no/such/program"}, ENOENT},
      {{.command_line = plain}, EACCES},
      {{.command_line = no_format}, ENOEXEC},
      {{.command_line = "/tmp"}, EACCES},
      {{.command_line = " \t"}, ENOENT},
      {{.command_line = "''"}, ENOENT},
      {{.command_line = std::string("true\0x", 6)}, EINVAL},
      {{.command_line = "true", .directory = "/no/such/directory"}, ENOENT},
      {{.command_line = "true", .directory = plain}, ENOTDIR},
      {{.command_line = "true", .standard_output = ~HANDLE{0}}, EBADF},
  };
  for (const auto& c : cases) {
    const auto started = processes_.Start(c.info);
    EXPECT_EQ(started.error.code, static_cast<DWORD>(c.error)) << c.info.command_line;
    EXPECT_EQ(started.value.process, kNoHandle);
  }
}

TEST_F(ProcessesTest, TakesARelativeProgramFromThisProcesssDirectory) {
  const std::string program = files_.Put("program", "#!/bin/sh\npwd -P\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  const std::string relative = std::filesystem::relative(program).string();
  EXPECT_EQ(Output(relative, "/usr"), "/usr\n");
  EXPECT_EQ(Output(relative), std::filesystem::current_path().string() + "\n");
}

TEST_F(ProcessesTest, ReturnsTheExitCodeOr128PlusTheSignal) {
  const std::pair<const char*, int> cases[] = {
      {"true", 0}, {"sh -c 'exit 255'", 255}, {"sh -c 'kill -TERM $$'", 128 + SIGTERM}};
  for (const auto& [command_line, code] : cases) {
    const HANDLE process = processes_.Start({.command_line = command_line}).value.process;
    EXPECT_EQ(processes_.Wait(process).value, code) << command_line;
    EXPECT_EQ(processes_.Wait(process).value, code) << command_line;
    EXPECT_TRUE(processes_.Terminate(process).ok());
    processes_.Close(process);
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

  const auto started = Start("cut -d' ' -f1,5,6 /proc/self/stat");
  const std::string id = std::to_string(started.value.process_id);
  EXPECT_EQ(ReadAll(output_), id + ' ' + id + ' ' + id + '\n');  // process, group, session
  processes_.Close(output_);
  processes_.Wait(started.value.process);
  processes_.Close(started.value.process);
}

TEST_F(ProcessesTest, WorksWhereTheStandardHandlesAreClosed) {
  const int input = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
  const int output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 10);
  close(STDIN_FILENO);
  close(STDOUT_FILENO);
  const Pipe pipe = processes_.CreatePipe().value;
  const auto started = Start("cat", "", pipe.read_end);
  processes_.Write(pipe.write_end, "through");
  processes_.Close(pipe.read_end);
  processes_.Close(pipe.write_end);
  const std::string read = ReadAll(output_);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  close(input);
  close(output);
  EXPECT_EQ(read, "through");
  processes_.Close(output_);
  processes_.Close(started.value.process);
}

TEST_F(ProcessesTest, WritingToNobodyIsAnErrorAndNoSignal) {
  const Pipe pipe = processes_.CreatePipe().value;
  processes_.Close(pipe.read_end);
  EXPECT_EQ(processes_.Write(pipe.write_end, "x").error.kind, ErrorKind::kBrokenPipe);
  sigset_t pending;
  sigpending(&pending);
  EXPECT_FALSE(sigismember(&pending, SIGPIPE));
  processes_.Close(pipe.write_end);
}

TEST_F(ProcessesTest, AnInterruptedEndReadsNoMore) {
  const Pipe pipe = processes_.CreatePipe().value;
  char buffer[8];
  ASSERT_EQ(processes_.Write(pipe.write_end, "x").value, 1u);
  EXPECT_EQ(processes_.Read(pipe.read_end, buffer).value, 1u);
  std::thread other([&] { processes_.InterruptRead(pipe.read_end); });
  EXPECT_EQ(processes_.Read(pipe.read_end, buffer).error.kind, ErrorKind::kBrokenPipe);
  other.join();
  processes_.Write(pipe.write_end, "bytes that wait");
  EXPECT_EQ(processes_.Read(pipe.read_end, buffer).error.kind, ErrorKind::kBrokenPipe);
  processes_.Close(pipe.read_end);
  processes_.Close(pipe.write_end);
}

TEST_F(ProcessesTest, TerminateEndsTheWholeGroupWhoeverWaits) {
  const auto started = Start(Script("sleep 600 & echo up; wait"));
  char buffer[8];
  EXPECT_EQ(processes_.Read(output_, buffer).value, 3u);
  std::atomic<int> seen = 0;
  std::vector<std::thread> waiters;
  for (int i = 0; i < 3; ++i) {
    waiters.emplace_back([&] { seen += processes_.Wait(started.value.process).value; });
  }
  EXPECT_TRUE(processes_.Terminate(started.value.process).ok());
  for (std::thread& waiter : waiters) waiter.join();
  EXPECT_EQ(seen, 3 * (128 + SIGKILL));
  EXPECT_EQ(ReadAll(output_), "");  // would wait for the grandchild
  processes_.Close(output_);
  processes_.Close(started.value.process);
}

TEST_F(ProcessesTest, AProcessClosedBeforeItsEndLeavesNoZombie) {
  const Pipe input = processes_.CreatePipe().value;
  const auto running = Start("cat", "", input.read_end);
  processes_.Close(output_);
  processes_.Close(running.value.process);
  EXPECT_EQ(Children(), std::to_string(running.value.process_id) + ' ');
  const auto ended = Start("true");
  ReadAll(output_);
  processes_.Close(output_);
  processes_.Close(ended.value.process);
  processes_.Close(input.read_end);
  processes_.Close(input.write_end);  // ends the first child; the fixture looks for what is left
}

TEST_F(ProcessesTest, EndingAndWaitingAtOnceHarmNobody) {
  for (int round = 0; round < 50; ++round) {
    const HANDLE process = processes_.Start({.command_line = "true"}).value.process;
    std::thread other([&] {
      EXPECT_TRUE(processes_.Terminate(process).ok());
      processes_.Wait(process);
    });
    const int code = processes_.Wait(process).value;
    EXPECT_TRUE(code == 0 || code == 128 + SIGKILL) << code;
    other.join();
    processes_.Close(process);
  }
}

TEST_F(ProcessesTest, HandlesOutOfDateOrOfAnotherKindAreErrors) {
  const Pipe pipe = processes_.CreatePipe().value;
  const HANDLE process = processes_.Start({.command_line = "true"}).value.process;
  processes_.Wait(process);
  char buffer[8];
  EXPECT_FALSE(processes_.Read(pipe.write_end, buffer).ok());
  EXPECT_FALSE(processes_.Write(pipe.read_end, "x").ok());
  EXPECT_FALSE(processes_.Wait(pipe.read_end).ok());
  EXPECT_FALSE(processes_.Read(process, buffer).ok());
  for (const HANDLE handle : {pipe.read_end, pipe.write_end, process, kNoHandle}) {
    processes_.Close(handle);
    processes_.Close(handle);
    EXPECT_FALSE(processes_.Read(handle, buffer).ok());
    EXPECT_FALSE(processes_.Write(handle, "x").ok());
    EXPECT_FALSE(processes_.Wait(handle).ok());
    EXPECT_FALSE(processes_.Terminate(handle).ok());
    processes_.InterruptRead(handle);
  }
}

}  // namespace
}  // namespace dq::platform
