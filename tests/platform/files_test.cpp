#include "dqlib/platform/files.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <unistd.h>

#include "dqlib/platform/posix/mount_table.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/profile_files.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/rows.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

namespace fs = std::filesystem;
using test::Rows;

struct FilesTest : testing::Test {
  test::TempDirectory dir;
  Files& files = *System().files;

  /// Opens, and closes again if that succeeded.
  ErrorKind TryOpen(const std::string& path, const OpenOptions& options) {
    const Result<HANDLE> file = files.Open(path, options);
    if (file.ok()) files.Close(file.value);
    return file.error.kind;
  }
  std::vector<std::string> Names(const std::string& pattern) {
    std::vector<std::string> names;
    for (const FoundFile& found : files.Find(pattern).value) names.push_back(found.name);
    return names;
  }
};

TEST_F(FilesTest, OpenFilesReadWriteAndSeek) {
  const std::string path = dir / "a";
  EXPECT_EQ(TryOpen(path, {.write = true}), ErrorKind::kNotFound);
  const HANDLE file = files.Open(path, {.write = true, .create = true, .user_only = true}).value;
  EXPECT_EQ(dir.Mode("a"), 0600u);
  EXPECT_TRUE(files.Write(file, "0123456789").ok());
  EXPECT_EQ(files.Seek(file, -3, SeekOrigin::kEnd).value, 7u);
  EXPECT_EQ(files.Seek(file, -8, SeekOrigin::kCurrent).error.kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(files.Seek(file, -1, SeekOrigin::kCurrent).value, 6u);
  char buffer[8];
  EXPECT_EQ(files.Read(file, buffer).value, 4u);
  EXPECT_EQ(std::string_view(buffer, 4), "6789");
  EXPECT_EQ(files.Read(file, buffer).value, 0u);
  EXPECT_TRUE(files.SetLength(file, 3).ok());
  EXPECT_EQ(files.SetLength(file, ~0ull).kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(files.Length(file).value, 3u);
  EXPECT_TRUE(files.Flush(file).ok());
  EXPECT_TRUE(files.Close(file).ok());
  EXPECT_EQ(dir.Get("a"), "012");

  EXPECT_EQ(files.Close(file).kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(files.Read(file, buffer).error.kind, ErrorKind::kInvalidArgument);
  const HANDLE next = files.Open(path, {}).value;
  EXPECT_NE(next, file);
  EXPECT_FALSE(files.Write(next, "x").ok());
  files.Close(next);
}

TEST_F(FilesTest, ShareModesHoldWithinAndBetweenProcesses) {
  const std::string path = dir.Put("a", "x");
  const OpenOptions read{};
  const OpenOptions write{.read = false, .write = true};
  const OpenOptions both{.write = true};
  const OpenOptions read_deny_write{.deny_write = true};
  const OpenOptions write_deny_write{.read = false, .write = true, .deny_write = true};
  const OpenOptions exclusive{.deny_read = true};
  for (const auto& [rule, first_options, second, allowed] :
       Rows<const char*, OpenOptions, OpenOptions, bool>{
           {"readers", read, read, true},
           {"writers", write, write, true},
           {"reader and writer", read, both, true},
           {"one that denies, and a reader", write_deny_write, read, true},
           {"one that denies, and a writer", read_deny_write, write, false},
           {"a writer, and one that denies", both, read_deny_write, false},
           {"two readers that deny writing", read_deny_write, read_deny_write, true},
           {"two writers that deny writing", write_deny_write, write_deny_write, false},
           {"one alone, and a reader", exclusive, read, false},
           {"a reader, and one alone", read, exclusive, false},
           {"two alone", exclusive, exclusive, false},
           {"one alone, and a writer", exclusive, write, false}}) {
    SCOPED_TRACE(rule);
    const ErrorKind expected = allowed ? ErrorKind::kNone : ErrorKind::kBusy;
    const Result<HANDLE> first = files.Open(path, first_options);
    ASSERT_TRUE(first.ok());
    EXPECT_EQ(TryOpen(path, second), expected);
    const OpenOptions& others = second;
    test::ForkedProcess other([&] { EXPECT_EQ(TryOpen(path, others), expected); });
    EXPECT_TRUE(other.EndsWell());
    EXPECT_TRUE(files.Close(first.value).ok());
    EXPECT_EQ(TryOpen(path, second), ErrorKind::kNone) << "after closing";
  }
  // What is denied isn't emptied either.
  const HANDLE holder = files.Open(path, exclusive).value;
  EXPECT_EQ(TryOpen(path, {.write = true, .truncate = true}), ErrorKind::kBusy);
  std::string bytes;
  EXPECT_EQ(files.ReadAll(path, bytes).kind, ErrorKind::kBusy);
  files.Close(holder);
  EXPECT_EQ(dir.Get("a"), "x");
}

TEST_F(FilesTest, ReplaceKeepsPermissionsAndLinks) {
  dir.Put("old", "old");
  fs::permissions(dir / "old", fs::perms{0640});
  fs::create_symlink("old", dir / "link");
  EXPECT_TRUE(files.Replace(dir / "link", "new", true).ok());
  EXPECT_EQ(dir.Get("old"), "new");
  EXPECT_TRUE(fs::is_symlink(dir / "link"));
  EXPECT_EQ(dir.Mode("old"), 0640u);
  EXPECT_TRUE(files.Replace(dir / "secret", "s", true).ok());
  EXPECT_EQ(dir.Mode("secret"), 0600u);
  fs::create_symlink("loop", dir / "loop");
  EXPECT_EQ(files.Replace(dir / "loop", "x", false).kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(files.Replace(dir.path(), "x", false).kind, ErrorKind::kAccessDenied);
  EXPECT_EQ(files.Replace(dir / "none/x", "x", false).kind, ErrorKind::kNotFound);
  EXPECT_EQ(dir.Count(), 4u);
}

constexpr OpenOptions kToReplace{.write = true, .create = true, .deny_read = true, .replace = true};

TEST_F(FilesTest, FileIsHeldFromOpeningToReplacing) {
  dir.Put("old", "old");
  fs::permissions(dir / "old", fs::perms{0640});
  fs::create_symlink("old", dir / "link");
  fs::create_symlink("none", dir / "dangling");
  const auto open = [&](const char* name) { return files.Open(dir / name, kToReplace).value; };
  for (const char* name : {"link", "dangling"}) {
    const HANDLE file = open(name);
    EXPECT_EQ(TryOpen(dir / name, {}), ErrorKind::kBusy);
    EXPECT_TRUE(files.ReplaceAndClose(file, "new").ok());
    EXPECT_EQ(files.Close(file).kind, ErrorKind::kInvalidArgument);
    EXPECT_TRUE(fs::is_symlink(dir / name));
    EXPECT_EQ(dir.Get(name), "new");
    EXPECT_EQ(TryOpen(dir / name, kToReplace), ErrorKind::kNone);
  }
  EXPECT_EQ(dir.Mode("old"), 0640u);
  EXPECT_EQ(TryOpen(dir / "made", kToReplace), ErrorKind::kNone);
  EXPECT_EQ(dir.Get("made"), "(none)");

  const HANDLE stale = open("old");
  fs::rename(dir.Put("other", "other"), dir / "old");
  EXPECT_EQ(files.ReplaceAndClose(stale, "lost").kind, ErrorKind::kBusy);
  EXPECT_EQ(dir.Get("old"), "other");
  const HANDLE not_for_that = files.Open(dir / "old", {.write = true}).value;
  EXPECT_EQ(files.ReplaceAndClose(not_for_that, "x").kind, ErrorKind::kInvalidArgument);
  EXPECT_TRUE(files.ReplaceAndClose(files.Open("/dev/null", kToReplace).value, "x").ok());
  EXPECT_EQ(dir.Count(), 4u);
}

TEST_F(FilesTest, NoChangeIsLostAmongThoseWhoHoldTheFile) {
  constexpr int kChanges = 25;
  constexpr int kProcesses = 4;
  OpenOptions patient = kToReplace;
  patient.patience = 60'000;
  EXPECT_TRUE(test::AllEndWell(kProcesses, [&](int) {
    for (int i = 0; i < kChanges; ++i) {
      const HANDLE file = files.Open(dir / "made", patient).value;
      std::string bytes(files.Length(file).value + 1, '+');
      files.Read(file, bytes);
      bytes.back() = '+';
      EXPECT_TRUE(files.ReplaceAndClose(file, bytes).ok());
    }
  }));
  EXPECT_EQ(dir.Get("made"), std::string(kProcesses * kChanges, '+'));
}

TEST_F(FilesTest, ChangesAreDoneOrNotWhicheverCallFails) {
  test::FailingSystemCalls calls;
  const std::unique_ptr<Files> failing = posix::MakeFiles(calls);
  const std::string large(700'000, 'n');
  dir.Put("large", large);
  const auto to_other_volume = [&] {
    calls.SplitVolumes();
    return failing->Rename(dir / "a", dir / "b");
  };
  const auto find_all = [&]() -> Error {
    const auto found = failing->Find(dir / "*");
    EXPECT_TRUE(!found.ok() || found.value.size() == dir.Count() + 2) << "a list lacks no entry";
    return found.error;
  };
  const auto append = [&]() -> Error {
    const OpenOptions options{.write = true, .append = true, .deny_write = true};
    const Result<HANDLE> file = failing->Open(dir / "a", options);
    if (!file.ok()) return file.error;
    const Error error = failing->Write(file.value, "+");
    failing->Close(file.value);
    return error;
  };
  const auto replace_opened = [&](const char* name) {
    const Result<HANDLE> file = failing->Open(dir / name, kToReplace);
    return file.ok() ? failing->ReplaceAndClose(file.value, large) : file.error;
  };
  const std::pair<std::function<Error()>, std::string> rows[] = {
      {append, "a+,(none)"},
      {[&] { return replace_opened("link"); }, large + ",(none)"},
      {[&] { return replace_opened("b"); }, "a," + large},
      {[&] { return failing->Rename(dir / "a", dir / "b"); }, "(none),a"},
      {to_other_volume, "(none),a"},
      {[&] { return failing->Copy(dir / "a", dir / "b", false); }, "a,a"},
      {[&] { return failing->Copy(dir / "large", dir / "a", true); }, large + ",(none)"},
      {[&] { return failing->Replace(dir / "a", large, false); }, large + ",(none)"},
      {[&] { return failing->Replace(dir / "link", "new", false); }, "new,(none)"},
      {[&] { return failing->MakeDirectory(dir / "made"); }, "a,(none)"},
      {[&] { return failing->MakeTempFile(dir.path(), "x").error; }, "a,(none)"},
      {find_all, "a,(none)"},
      {[&] { return failing->Volume(dir.path()).error; }, "a,(none)"},
      {[&] { return failing->Delete(dir / "a"); }, "(none),(none)"},
      {[&] { return failing->SetModified(dir / "a", 1000); }, "a,(none)"},
      {[&] { return failing->SetAttributes(dir / "a", FILE_READ_ONLY); }, "a,(none)"},
      {[&] { return failing->RemoveDirectory(dir / "sub"); }, "a,(none)"},
  };
  for (const auto& row : rows) {
    for (const int error : {EIO, ENOSPC, EACCES, EINTR}) {
      bool failed = true;
      for (int call = 1; failed; ++call) {
        SCOPED_TRACE(testing::Message() << &row - rows << ", error " << error << " at " << call);
        for (const char* name : {"a", "b", "made"}) fs::remove(dir / name);
        dir.Put("a", "a");
        fs::create_directory(dir / "sub");
        if (!fs::is_symlink(dir / "link")) fs::create_symlink("a", dir / "link");
        calls.Fail(call, error);
        const Error result = row.first();
        failed = calls.failed();
        calls.Fail(0, 0);
        const std::string now = dir.Get("a") + "," + dir.Get("b");
        // One that was made to be filled, and may not be removed, stays as an empty file.
        EXPECT_TRUE(now == row.second || (!result.ok() && (now == "a,(none)" || now == "a,")));
        EXPECT_TRUE(fs::is_symlink(dir / "link"));
        EXPECT_TRUE(result.ok() || (failed && static_cast<int>(result.code) == error));
        EXPECT_TRUE(failed || call > 1) << "no call is made";
        EXPECT_EQ(Names(dir / ".dq*").size(), 0u) << "temporary files are left";
      }
    }
  }
  calls.WriteAtMost(1000);
  EXPECT_TRUE(failing->Replace(dir / "to", large, false).ok());
  EXPECT_EQ(dir.Get("to"), large);
}

TEST_F(FilesTest, WhatAFullDiskRefusesToAppendLeavesNothing) {
  test::FailingSystemCalls calls;
  const std::unique_ptr<Files> full = posix::MakeFiles(calls);
  for (const auto& [most, room, other, left] :
       Rows<std::size_t, std::size_t, const char*, std::string>{
           {99, 5, "", "old,"},
           {2, 5, "", "old,"},
           {99, 0, "", "old,"},
           {99, 5, "other's ", "old,lost other's "},
       }) {
    const std::string path = dir.Put("log", "old,");
    const OpenOptions options{.read = false, .write = true, .append = true};
    const HANDLE file = full->Open(path, options).value;
    calls.WriteAtMost(most);
    calls.LeaveRoom(room);
    calls.AfterWrites([&, text = other] { std::ofstream(path, std::ios::app) << text; });
    EXPECT_EQ(full->WriteAndTell(file, "lost line").error.kind, ErrorKind::kNoSpace);
    calls.LeaveRoom(1 << 20);
    EXPECT_EQ(dir.Get("log"), left) << most << ' ' << room;
    EXPECT_EQ(full->WriteAndTell(file, "kept").value, left.size() + 4);
    EXPECT_EQ(dir.Get("log"), left + "kept");
    full->Close(file);
  }
}

TEST_F(FilesTest, NothingIsWrittenByAnothersLinkInADirectoryForEverybody) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can make links of others";
  constexpr uid_t kOther = 12345;
  ProfileFiles& profiles = *System().profile_files;
  const std::string shared = dir / "shared";
  const std::string link = shared + "/link";
  fs::create_directory(shared);
  for (const auto& [directory_mode, directory_owner, owner, target, refused] :
       Rows<mode_t, uid_t, uid_t, const char*, bool>{
           {01777, 0, kOther, "../a", true},
           {01777, 0, kOther, "none", true},
           {01777, kOther, kOther, "../a", false},
           {01777, kOther, 0, "../a", false},
           {01775, 0, kOther, "../a", false},
           {0777, 0, kOther, "../a", false},
       }) {
    SCOPED_TRACE(testing::Message() << std::oct << directory_mode << ' ' << owner);
    dir.Put("a", "[s]\nk=v\n");
    fs::remove(link);
    fs::create_symlink(target, link);
    ASSERT_EQ(lchown(link.c_str(), owner, 0), 0);
    ASSERT_EQ(chown(shared.c_str(), directory_owner, 0), 0);
    ASSERT_EQ(chmod(shared.c_str(), directory_mode), 0);
    const ErrorKind expected = refused ? ErrorKind::kAccessDenied : ErrorKind::kNone;
    EXPECT_EQ(TryOpen(link, {.read = false, .write = true, .create = true}), expected);
    EXPECT_EQ(files.SetAttributes(link, FILE_READ_ONLY).kind, expected);
    EXPECT_EQ(files.SetAttributes(link, 0).kind, expected);
    EXPECT_EQ(files.SetModified(link, 1000).kind, expected);
    EXPECT_EQ(profiles.Write(link, "s", "k", "w").kind, expected);
    EXPECT_EQ(files.Copy(dir / "a", link, true).kind,
              refused ? expected : ErrorKind::kInvalidArgument);
    EXPECT_EQ(dir.Get("a"), refused ? "[s]\nk=v\n" : "[s]\nk=w\n");
    EXPECT_EQ(files.Replace(link, "new", false).kind, expected);
    EXPECT_EQ(dir.Get("a"), refused ? "[s]\nk=v\n" : "new");
    EXPECT_EQ(profiles.Read(link, "s", "k").has_value(), refused && target[0] == '.')
        << "reading follows";
  }
  EXPECT_EQ(dir.Get("shared/none"), "(none)");
}

TEST_F(FilesTest, AWriterFollowsTheSystemsOwnLinksToPipes) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const HANDLE pipe =
      files.Open("/dev/fd/" + std::to_string(ends[1]), {.read = false, .write = true}).value;
  EXPECT_TRUE(files.Write(pipe, "x").ok());
  char byte = 0;
  EXPECT_EQ(read(ends[0], &byte, 1), 1);
  files.Close(pipe);
  for (const int end : ends) close(end);
}

TEST_F(FilesTest, NothingThatIsAppendedIsLostToThoseWhoReplace) {
  constexpr int kProcesses = 4;
  constexpr int kLines = 200;
  const std::string path = dir.Put("log", "");
  const OpenOptions alone{.write = true, .append = true, .deny_write = true};
  EXPECT_TRUE(test::AllEndWell(kProcesses, [&](int process) {
    for (int line = 0; line < kLines; ++line) {
      Result<HANDLE> file = files.Open(path, alone);
      while (file.error.kind == ErrorKind::kBusy) file = files.Open(path, alone);
      const std::string text(1, static_cast<char>('a' + process));
      std::string bytes;
      if (process % 2 == 0) {
        files.Write(file.value, text);
      } else if (files.ReadAll(path, bytes).ok()) {
        files.Replace(path, bytes + text, false);
      }
      files.Close(file.value);
    }
  }));
  const std::string log = dir.Get("log");
  for (const char process : {'a', 'b', 'c', 'd'}) {
    EXPECT_EQ(std::count(log.begin(), log.end(), process), kLines) << process;
  }
}

TEST_F(FilesTest, WhatKilledWritersLeaveIsRemovedButNotWhatLiveOnesFill) {
  const std::string large(4'000'000, 'x');
  dir.Put(".dq1-2-x.tmp", "not ours");
  constexpr std::size_t kWithoutLeftovers = 5;
  constexpr int kRounds = 10;
  for (int i = 0; i < kRounds || dir.Count() <= kWithoutLeftovers; ++i) {
    ASSERT_LT(i, 50 * kRounds) << "no writer was killed while it filled a file";
    std::deque<test::ForkedProcess> writers;
    for (const char* name : {"0", "1", "2", "3"}) {
      writers.emplace_back([&, name] {
        while (files.Replace(dir / name, large, false).ok()) continue;
      });
    }
    for (test::ForkedProcess& writer : writers) {
      usleep(1000);  // any moment will do
      EXPECT_TRUE(writer.Kill()) << "a call failed";
    }
  }
  EXPECT_TRUE(files.Replace(dir / "0", "last", false).ok());
  for (const char* other : {"1", "2", "3"}) dir.Put(other, "");
  EXPECT_EQ(dir.Count(), kWithoutLeftovers);
  EXPECT_EQ(dir.Get("0"), "last");
}

TEST_F(FilesTest, ReadAllHasTheWholeOfAnyFile) {
  std::string bytes = "former";
  for (const std::size_t size : {0u, 1u, 15u, 16u, 262'144u, 1'000'000u}) {
    const std::string content(size, 'x');
    EXPECT_TRUE(files.ReadAll(dir.Put("a", content), bytes).ok());
    EXPECT_EQ(bytes, content);
  }
  EXPECT_TRUE(files.ReadAll("/proc/self/stat", bytes).ok()) << "whose size is 0";
  EXPECT_FALSE(bytes.empty());
  EXPECT_EQ(files.ReadAll(dir.path(), bytes).kind, ErrorKind::kAccessDenied);
  EXPECT_EQ(bytes, "");
  fs::resize_file(dir / "a", 3ull << 30);
  EXPECT_EQ(files.ReadAll(dir / "a", bytes).kind, ErrorKind::kNoSpace);
  ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0600), 0);
  EXPECT_TRUE(files.ReadAll(dir / "pipe", bytes).ok()) << "a pipe that nobody writes to";
}

TEST_F(FilesTest, StatusTellsSizeAttributesAndTime) {
  const std::string path = dir.Put("a", "12345");
  EXPECT_TRUE(files.SetModified(path, 1'000'000'000).ok());
  EXPECT_EQ(files.Status(path).value.size, 5u);
  EXPECT_EQ(files.Status(path).value.modified, 1'000'000'000);
  EXPECT_EQ(files.Status(path).value.attributes, FILE_ARCHIVE);
  EXPECT_EQ(files.Status(dir.path()).value.attributes, FILE_DIRECTORY);
  EXPECT_EQ(files.Status(dir.Put(".a", "")).value.attributes, FILE_ARCHIVE | FILE_HIDDEN);
  EXPECT_EQ(files.Status("/dev/null").value.attributes, FILE_SYSTEM);
  EXPECT_EQ(files.Status(dir / "none").error.kind, ErrorKind::kNotFound);
}

TEST_F(FilesTest, ReadOnlyFilesAreKeptAlsoFromPrivilegedUsers) {
  const std::string path = dir.Put("a", "old");
  dir.Put("b", "new");
  fs::permissions(path, fs::perms{0664});
  EXPECT_TRUE(files.SetAttributes(path, FILE_READ_ONLY | FILE_ARCHIVE).ok());
  EXPECT_EQ(dir.Mode("a"), 0444u);
  EXPECT_EQ(files.Status(path).value.attributes, FILE_READ_ONLY | FILE_ARCHIVE);
  EXPECT_EQ(files.Delete(path).kind, ErrorKind::kAccessDenied);
  EXPECT_EQ(files.Replace(path, "new", false).kind, ErrorKind::kAccessDenied);
  EXPECT_EQ(files.Copy(dir / "b", path, true).kind, ErrorKind::kAccessDenied);
  EXPECT_EQ(TryOpen(path, {.write = true, .truncate = true}), ErrorKind::kAccessDenied);
  EXPECT_EQ(dir.Get("a"), "old");
  EXPECT_TRUE(files.SetAttributes(path, FILE_ARCHIVE).ok());
  EXPECT_EQ(dir.Mode("a"), 0644u);
  EXPECT_TRUE(files.Delete(path).ok());
  EXPECT_EQ(files.Delete(path).kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Delete(dir.path()).kind, ErrorKind::kAccessDenied);
}

TEST_F(FilesTest, RenameAndCopyDoNotOverwriteUnasked) {
  dir.Put("a", "a");
  dir.Put("b", "b");
  EXPECT_EQ(files.Rename(dir / "a", dir / "b").kind, ErrorKind::kAlreadyExists);
  EXPECT_EQ(files.Copy(dir / "a", dir / "b", false).kind, ErrorKind::kAlreadyExists);
  EXPECT_EQ(files.Copy(dir / "a", dir / "a", true).kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(dir.Get("b"), "b");
  EXPECT_TRUE(files.Rename(dir / "a", dir / "a").ok());
  fs::permissions(dir / "a", fs::perms{0500});
  files.SetModified(dir / "a", 1000);
  EXPECT_TRUE(files.Copy(dir / "a", dir / "c", false).ok());
  EXPECT_EQ(dir.Get("c"), "a");
  EXPECT_EQ(dir.Mode("c"), 0500u);
  EXPECT_EQ(files.Status(dir / "c").value.modified, 1000);
  EXPECT_TRUE(files.Copy(dir / "c", dir / "b", true).ok());
  EXPECT_EQ(dir.Get("b"), "a");
  EXPECT_TRUE(files.Rename(dir / "b", dir / "d").ok());
  EXPECT_EQ(dir.Get("b"), "(none)");
  EXPECT_EQ(files.Copy(dir.path(), dir / "e", false).kind, ErrorKind::kAccessDenied);
  EXPECT_EQ(dir.Count(), 3u);
}

TEST_F(FilesTest, FindGivesSortedMatchesWithTheirStatus) {
  dir.Put("b.SQL", "12");
  dir.Put("a.sql", "1");
  dir.Put("plain", "");
  dir.Put(".hidden", "");
  fs::create_directory(dir / "d.sql");
  fs::create_symlink("nowhere", dir / "dead");
  dir.Put("..\\plain", "a name that would lead to another file");
  using testing::ElementsAre;
  EXPECT_THAT(Names(dir / "*.*"),
              ElementsAre(".", "..", ".hidden", "a.sql", "b.SQL", "d.sql", "dead", "plain"));
  EXPECT_THAT(Names(dir / "*.sql"), ElementsAre("a.sql", "b.SQL", "d.sql"));
  EXPECT_THAT(Names(dir.path() + "\\A.SQL"), ElementsAre("a.sql"));
  const std::vector<FoundFile> found = files.Find(dir / "?.sql").value;
  ASSERT_EQ(found.size(), 3u);
  EXPECT_EQ(found[1].status.size, 2u);
  EXPECT_EQ(found[2].status.attributes, FILE_DIRECTORY);
  EXPECT_EQ(files.Find(dir / "x*").error.kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Find(dir / "none/*").error.kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Find(dir.path() + "/").error.kind, ErrorKind::kNotFound);
}

TEST_F(FilesTest, TemporaryFilesAreNewEmptyAndPrivate) {
  const Result<std::string> first = files.MakeTempFile(dir.path(), "SQLX");
  const Result<std::string> second = files.MakeTempFile(dir.path(), "SQLX");
  ASSERT_TRUE(first.ok());
  EXPECT_NE(first.value, second.value);
  EXPECT_THAT(first.value, testing::MatchesRegex(dir.path() + "/SQL[0-9A-F]{1,4}\\.tmp"));
  EXPECT_EQ(files.Status(first.value).value.size, 0u);
  EXPECT_EQ(dir.Mode(first.value.substr(dir.path().size() + 1)), 0600u);
  EXPECT_EQ(files.MakeTempFile(dir / "none", "a").error.kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.MakeTempFile("", "a").error.kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.MakeTempFile(dir.path(), "../").error.kind, ErrorKind::kInvalidArgument);
  const test::ScopedVariable variable("TMPDIR", dir.path());
  EXPECT_EQ(files.TempDirectory(), dir.path() + "/");
}

TEST_F(FilesTest, DirectoriesAreMadeEnteredAndRemoved) {
  EXPECT_TRUE(files.MakeDirectory(dir.path() + "\\sub").ok());
  EXPECT_EQ(files.MakeDirectory(dir / "sub").kind, ErrorKind::kAlreadyExists);
  EXPECT_EQ(files.MakeDirectory(dir / "x/y").kind, ErrorKind::kNotFound);
  const std::string former = files.CurrentDirectory();
  EXPECT_TRUE(files.SetCurrentDirectory(dir / "sub").ok());
  EXPECT_EQ(files.FullPath("..\\a").value, dir / "a");
  EXPECT_TRUE(files.RemoveDirectory(dir / "sub").ok());
  EXPECT_EQ(files.FullPath("a").error.kind, ErrorKind::kNotFound) << "in a removed directory";
  EXPECT_EQ(files.FullPath("c:\\a\\..\\b").value, "c:\\b");
  EXPECT_TRUE(files.SetCurrentDirectory(former).ok());
  dir.Put("f", "");
  EXPECT_FALSE(files.RemoveDirectory(dir.path()).ok());
  EXPECT_EQ(dir.Count(), 1u);
}

TEST_F(FilesTest, PathsThatCannotBeAreRefused) {
  const std::string component(250, 'x');
  std::string long_path = dir.path();
  while (long_path.size() <= 4096 - 251) long_path += "/" + component;
  long_path.resize(4096, 'x');
  EXPECT_EQ(files.Status(long_path).error.kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(files.FullPath(std::string(4095, 'x')).error.kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(files.Status(std::string(4096, 'x')).error.kind, ErrorKind::kInvalidArgument);
  const std::string zero = dir.Put("a", "") + std::string("\0b", 2);
  EXPECT_EQ(files.Delete(zero).kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(files.Status("").error.kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Status("c:" + dir.path()).error.kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Status("\\\\tmp").error.kind, ErrorKind::kNotFound);
  EXPECT_TRUE(files.Status("/").ok());
  EXPECT_EQ(dir.Get("a"), "");
}

TEST_F(FilesTest, SearchesProgramDirectoryThenCurrentThenPath) {
  const std::string program = System().modules->FileName(nullptr);
  EXPECT_EQ(files.SearchPath(program.substr(program.rfind('/') + 1)).value, program);
  const std::string tool = dir.Put("only_here.txt", "");
  EXPECT_EQ(files.SearchPath("only_here.txt").error.kind, ErrorKind::kNotFound);
  const test::ScopedVariable variable("PATH", "/nowhere:" + dir.path());
  EXPECT_EQ(files.SearchPath("only_here.txt").value, tool);
  EXPECT_EQ(files.SearchPath(tool).value, tool);
}

TEST_F(FilesTest, TellsVolumesAndDrives) {
  const Result<VolumeFacts> volume = files.Volume(dir.path());
  ASSERT_TRUE(volume.ok());
  EXPECT_GT(volume.value.bytes_total, volume.value.bytes_free);
  EXPECT_EQ(files.Volume("/proc").value.file_system, "proc");
  EXPECT_EQ(files.Volume(dir / "none").error.kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.KindOfDrive(""), DRIVE_KIND_NO_ROOT);
  EXPECT_EQ(files.KindOfDrive("c:"), DRIVE_KIND_FIXED);
  EXPECT_EQ(files.KindOfDrive("\\\\server\\share"), DRIVE_KIND_REMOTE);
  EXPECT_EQ(files.KindOfDrive("/"), DRIVE_KIND_FIXED);
  EXPECT_EQ(files.KindOfDrive(dir / "none"), DRIVE_KIND_NO_ROOT);
  EXPECT_EQ(files.UniversalName("/proc/self").error.kind, ErrorKind::kUnsupported);
}

TEST(MountTable, KnowsThePathsOfOtherMachines) {
  constexpr std::string_view kTable =
      "21 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
      "torn line - nfs\n"
      "30 21 0:40 / /mnt/my\\040disk rw master:2 shared:3 - cifs //server/share/ rw\n"
      "31 21 0:41 / /mnt/n rw - tmpfs none rw\n"
      "32 21 0:42 / /mnt/n rw - nfs4 host:/export/home rw\n"
      "33 21 0:42 /team /mnt/team rw - nfs4 host:/export rw";
  for (const auto& [path, universal] : Rows<const char*, std::optional<std::string>>{
           {"/mnt/my disk/a/b", "\\\\server\\share\\a\\b"},
           {"/mnt/my disk", "\\\\server\\share"},
           {"/mnt/n/x", "\\\\host\\export\\home\\x"},
           {"/mnt/team/x", "\\\\host\\export\\team\\x"},
           {"/mnt/nx", {}},
           {"/", {}}}) {
    const auto mount = posix::FindMount(kTable, path);
    ASSERT_TRUE(mount) << path;
    EXPECT_EQ(posix::NetworkPath(*mount, path), universal) << path;
    EXPECT_EQ(posix::IsRemote(*mount), universal.has_value()) << path;
  }
  EXPECT_FALSE(posix::FindMount("", "/"));
}

}  // namespace
}  // namespace dq::platform
