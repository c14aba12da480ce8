#include "dqlib/platform/profile_files.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

namespace fs = std::filesystem;

struct ProfileFilesTest : testing::Test {
  test::TempDirectory dir;
  ProfileFiles& profiles = *System().profile_files;
  const std::string path = dir / "a.ini";
};

TEST_F(ProfileFilesTest, AreMadeForTheUserAndReadBack) {
  EXPECT_EQ(profiles.Read(path, "s", "k"), std::nullopt);
  EXPECT_TRUE(profiles.Sections(path).empty());
  EXPECT_TRUE(profiles.Write(path, "s", "k", {}).ok());
  EXPECT_TRUE(profiles.Write(path, "s", {}, {}).ok());
  EXPECT_EQ(dir.Count(), 0u) << "deleting nothing makes no file";
  EXPECT_TRUE(profiles.Write(path, "s", "k", "v").ok());
  EXPECT_EQ(dir.Mode("a.ini"), 0600u);
  EXPECT_EQ(profiles.Read(path, "S", "K"), "v");
  EXPECT_EQ(profiles.Sections(path), std::vector<std::string>{"s"});
  EXPECT_EQ(profiles.Keys(path, "s"), std::vector<std::string>{"k"});
  EXPECT_TRUE(profiles.Write(path, "s", "k", {}).ok());
  EXPECT_EQ(dir.Get("a.ini"), "[s]\r\n");
  EXPECT_EQ(dir.Count(), 1u);
}

TEST_F(ProfileFilesTest, WritingKeepsPermissionsLinksAndBytesOfOthers) {
  const std::string before = "\xEF\xBB\xBF; \xFF comment\r[a]\rk = 1\r\n\n[b]\nk=2";
  dir.Put("a.ini", before);
  fs::permissions(path, fs::perms{0640});
  fs::create_symlink("a.ini", dir / "link.ini");
  EXPECT_TRUE(profiles.Write(dir / "link.ini", "b", "k", "3").ok());
  EXPECT_EQ(dir.Get("a.ini"), before.substr(0, before.size() - 1) + "3");
  EXPECT_TRUE(fs::is_symlink(dir / "link.ini"));
  EXPECT_EQ(dir.Mode("a.ini"), 0640u);
}

TEST_F(ProfileFilesTest, AWriteThatChangesNothingWritesNothing) {
  dir.Put("a.ini", "[s]\nk = v\n");
  const auto inode = [&] {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_ino;
  };
  const auto former = inode();
  EXPECT_TRUE(profiles.Write(path, "s", "k", "v").ok());
  EXPECT_TRUE(profiles.Write(path, "s", "none", {}).ok());
  EXPECT_EQ(inode(), former);
}

TEST_F(ProfileFilesTest, AFileWithoutDirectoryLiesInTheUsersConfiguration) {
  const test::ScopedVariable variable("XDG_CONFIG_HOME", dir / "config");
  EXPECT_TRUE(profiles.Write("own.ini", "s", "k", "v").ok());
  EXPECT_EQ(profiles.Read("own.ini", "s", "k"), "v");
  EXPECT_EQ(dir.Get("config/velmora/own.ini"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(dir.Mode("config/velmora"), 0700u);
}

TEST_F(ProfileFilesTest, BadInputIsRefusedAndChangesNothing) {
  dir.Put("a.ini", "[s]\r\nk=v\r\n");
  const auto kind = [&](std::string_view section, std::optional<std::string_view> key,
                        std::optional<std::string_view> value) {
    return profiles.Write(path, section, key, value).kind;
  };
  EXPECT_EQ(kind("", "k", "v"), ErrorKind::kInvalidArgument);
  EXPECT_EQ(kind("s", "", "v"), ErrorKind::kInvalidArgument);
  EXPECT_EQ(kind("s", "k=", "v"), ErrorKind::kInvalidArgument);
  EXPECT_EQ(kind("s", "k", "a\n[t]"), ErrorKind::kInvalidArgument);
  EXPECT_EQ(kind("s", "k", std::string_view("\0", 1)), ErrorKind::kInvalidArgument);
  EXPECT_EQ(dir.Get("a.ini"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(profiles.Write(dir / "none/a.ini", "s", "k", "v").kind, ErrorKind::kNotFound);
  EXPECT_EQ(profiles.Write("c:\\a.ini", "s", "k", "v").kind, ErrorKind::kNotFound);
  EXPECT_FALSE(profiles.Write(dir.path(), "s", "k", "v").ok());
  const std::string wide("\xFF\xFE[\0s\0]\0", 8);
  dir.Put("wide.ini", wide);
  EXPECT_EQ(profiles.Write(dir / "wide.ini", "s", "k", "v").kind, ErrorKind::kUnsupported);
  EXPECT_EQ(dir.Get("wide.ini"), wide);
  ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(profiles.Write(dir / "pipe", "s", "k", "v").kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(profiles.Read(dir / "pipe", "s", "k"), std::nullopt);
  fs::permissions(path, fs::perms{0400});
  EXPECT_EQ(kind("s", "k", "new"), ErrorKind::kAccessDenied);
}

TEST_F(ProfileFilesTest, SurviveTheFailureOfEachCall) {
  test::FailingSystemCalls calls;
  const std::unique_ptr<ProfileFiles> failing = posix::MakeProfileFiles(calls);
  const std::string old = "[s]\r\nk=old\r\n";
  const test::ScopedVariable variable("XDG_CONFIG_HOME", dir / "config");
  for (const int error : {EIO, ENOSPC, EACCES, EROFS, EINTR}) {
    for (const bool exists : {true, false}) {
      int call = 1;
      for (;; ++call) {
        fs::remove_all(dir / "config");
        if (exists) {
          fs::create_directories(dir / "config/velmora");
          dir.Put("config/velmora/a.ini", old);
        }
        calls.Fail(call, error);
        const Error result = failing->Write("a.ini", "s", "k", "new");
        const bool failed = calls.failed();
        calls.Fail(0, 0);
        const std::string now = dir.Get("config/velmora/a.ini");
        if (result.ok()) {
          EXPECT_EQ(now, "[s]\r\nk=new\r\n") << error << " at " << call;
        } else if (exists) {
          EXPECT_EQ(now, old) << error << " at " << call;
        } else {
          // An empty file means the same as none; it is left only where the lock on it failed.
          EXPECT_TRUE(now == "(none)" || now == "") << now << error << " at " << call;
        }
        EXPECT_TRUE(result.ok() || static_cast<int>(result.code) == error)
            << error << " at " << call;
        EXPECT_TRUE(failing->Write("a.ini", "s", "k", "new").ok()) << error << " at " << call;
        EXPECT_EQ(failing->Read("a.ini", "s", "k"), "new") << error << " at " << call;
        const fs::directory_iterator entries(dir / "config/velmora");
        EXPECT_EQ(std::distance(begin(entries), end(entries)), 1) << error << " at " << call;
        if (!failed) break;
      }
      EXPECT_GT(call, 8) << "calls are made";
    }
  }
}

/// Runs work in a child process, and exits with 0 if it returns true.
template <typename Work>
pid_t Spawn(Work work) {
  const pid_t child = fork();
  if (child == 0) _exit(work() ? 0 : 1);
  return child;
}

TEST_F(ProfileFilesTest, EightProcessesLoseNothing) {
  constexpr int kProcesses = 8;
  constexpr int kKeys = 50;
  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process) {
    children.push_back(Spawn([&, process] {
      bool ok = true;
      for (int i = 0; i < kKeys; ++i) {
        const std::string key = std::to_string(process) + "_" + std::to_string(i);
        ok = profiles.Write(path, "s" + std::to_string(process % 3), key, key).ok() && ok;
      }
      return ok;
    }));
  }
  for (const pid_t child : children) {
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  for (int process = 0; process < kProcesses; ++process) {
    for (int i = 0; i < kKeys; ++i) {
      const std::string key = std::to_string(process) + "_" + std::to_string(i);
      ASSERT_EQ(profiles.Read(path, "s" + std::to_string(process % 3), key), key);
    }
  }
  EXPECT_EQ(dir.Count(), 1u);
}

TEST_F(ProfileFilesTest, AKilledWriterLeavesTheOldOrTheNewFile) {
  // The writer counts up in two keys of one value, by turns, and tells each number through a pipe
  // once it is written. Comments around make the file large enough to be torn.
  const std::string comment = ";" + std::string(40'000, 'c') + "\n";
  dir.Put("a.ini", comment + "[s]\na=0\nb=0\n[end]\nlast=1\n" + comment);
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::minstd_rand random(seed);
  int start = 0;
  for (int round = 0; round < 100; ++round) {
    int pipe_ends[2];
    ASSERT_EQ(pipe(pipe_ends), 0);
    const pid_t child = Spawn([&] {
      for (int number = start + 1;; ++number) {
        const std::string text = std::to_string(number);
        if (!profiles.Write(path, "s", number % 2 == 0 ? "a" : "b", text).ok()) return false;
        if (write(pipe_ends[1], &number, sizeof number) != sizeof number) return false;
      }
    });
    close(pipe_ends[1]);
    int reported = start;
    ASSERT_EQ(read(pipe_ends[0], &reported, sizeof reported), ssize_t{sizeof reported});
    usleep(static_cast<useconds_t>(random() % 3000));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    while (read(pipe_ends[0], &reported, sizeof reported) == ssize_t{sizeof reported}) {
    }
    close(pipe_ends[0]);
    const int a = std::stoi(profiles.Read(path, "s", "a").value_or("-1"));
    const int b = std::stoi(profiles.Read(path, "s", "b").value_or("-1"));
    start = std::max(a, b);
    ASSERT_EQ(std::min(a, b), std::max(start - 1, 0));
    ASSERT_TRUE(start == reported || start == reported + 1) << start << " " << reported;
    ASSERT_EQ(profiles.Read(path, "end", "last"), "1");
  }
  EXPECT_TRUE(profiles.Write(path, "s", "a", "done").ok());
  EXPECT_EQ(dir.Count(), 1u) << "what killed writers left is gone with the next write";
}

}  // namespace
}  // namespace dq::platform
