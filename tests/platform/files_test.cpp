#include "dqlib/platform/files.h"

#include <unistd.h>

#include "dqlib/platform/posix/mount_table.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/profile_files.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

namespace fs = std::filesystem;
using enum ErrorKind;
using test::Rows;
using testing::ElementsAre;

constexpr OpenOptions kToReplace{.write = true, .create = true, .deny_read = true, .replace = true};

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
  static std::vector<ErrorKind> Kinds(std::initializer_list<Error> errors) {
    std::vector<ErrorKind> kinds;
    for (const Error& error : errors) kinds.push_back(error.kind);
    return kinds;
  }
};

TEST_F(FilesTest, OpenFilesReadWriteAndSeek) {
  const std::string path = dir / "a";
  EXPECT_EQ(TryOpen(path, {.write = true}), kNotFound);
  const HANDLE file = files.Open(path, {.write = true, .create = true, .user_only = true}).value;
  EXPECT_EQ(dir.Mode("a"), 0600u);
  EXPECT_TRUE(files.Write(file, "0123456789").ok());
  EXPECT_EQ(files.Seek(file, -3, SeekOrigin::kEnd).value, 7u);
  EXPECT_EQ(files.Seek(file, -8, SeekOrigin::kCurrent).error.kind, kInvalidArgument);
  EXPECT_EQ(files.Seek(file, -1, SeekOrigin::kCurrent).value, 6u);
  char buffer[8];
  EXPECT_EQ(files.Read(file, buffer).value, 4u);
  EXPECT_EQ(std::string_view(buffer, 4), "6789");
  EXPECT_EQ(files.Read(file, buffer).value, 0u);
  EXPECT_EQ(files.SetLength(file, ~0ull).kind, kInvalidArgument);
  EXPECT_TRUE(files.SetLength(file, 3).ok());
  EXPECT_EQ(files.Length(file).value, 3u);
  EXPECT_TRUE(files.Flush(file).ok() && files.Close(file).ok());
  EXPECT_EQ(dir.Get("a"), "012");

  EXPECT_THAT(Kinds({files.Close(file), files.Read(file, buffer).error}),
              ElementsAre(kInvalidArgument, kInvalidArgument));
  const HANDLE next = files.Open(path, {}).value;
  EXPECT_NE(next, file);
  EXPECT_FALSE(files.Write(next, "x").ok());
  files.Close(next);
}

TEST_F(FilesTest, ShareModesHoldWithinAndBetweenProcesses) {
  const std::string path = dir.Put("a", "x");
  const OpenOptions exclusive{.deny_read = true};
  // The second may open beside the first, in this order: reads, writes, does both; reads and writes
  // and denies writing; denies all.
  const OpenOptions modes[] = {{},
                               {.read = false, .write = true},
                               {.write = true},
                               {.deny_write = true},
                               {.read = false, .write = true, .deny_write = true},
                               exclusive};
  const std::string_view allowed[] = {"+++++-", "+++---", "+++---", "+--+--", "+-----", "------"};
  for (std::size_t first = 0; first < std::size(modes); ++first) {
    const HANDLE file = files.Open(path, modes[first]).value;
    const auto others = [&] {
      std::string opened;
      for (const OpenOptions& second : modes) {
        const ErrorKind kind = TryOpen(path, second);
        opened += kind == kNone ? '+' : kind == kBusy ? '-' : '?';
      }
      return opened;
    };
    EXPECT_EQ(others(), allowed[first]) << first;
    EXPECT_TRUE(test::AllEndWell(1, [&](int) { EXPECT_EQ(others(), allowed[first]) << first; }));
    EXPECT_TRUE(files.Close(file).ok());
    EXPECT_EQ(others(), "++++++") << "after closing";
  }
  const HANDLE holder = files.Open(path, exclusive).value;
  std::string bytes;
  EXPECT_EQ(TryOpen(path, {.write = true, .truncate = true}), kBusy);
  EXPECT_EQ(files.ReadAll(path, bytes).kind, kBusy);
  files.Close(holder);
  EXPECT_EQ(dir.Get("a"), "x") << "what is denied isn't emptied either";
}

TEST_F(FilesTest, ReplaceKeepsPermissionsAndLinks) {
  dir.Put("old", "old");
  fs::permissions(dir / "old", fs::perms{0640});
  fs::create_symlink("old", dir / "link");
  fs::create_symlink("loop", dir / "loop");
  EXPECT_THAT(
      Kinds({files.Replace(dir / "link", "new", true), files.Replace(dir / "secret", "s", true),
             files.Replace(dir / "loop", "x", false), files.Replace(dir.path(), "x", false),
             files.Replace(dir / "none/x", "x", false)}),
      ElementsAre(kNone, kNone, kInvalidArgument, kAccessDenied, kNotFound));
  EXPECT_EQ(dir.Get("old"), "new");
  EXPECT_TRUE(fs::is_symlink(dir / "link"));
  EXPECT_EQ(dir.Mode("old"), 0640u);
  EXPECT_EQ(dir.Mode("secret"), 0600u);
  EXPECT_EQ(dir.Count(), 4u);
}

TEST_F(FilesTest, FileIsHeldFromOpeningToReplacing) {
  dir.Put("old", "old");
  fs::permissions(dir / "old", fs::perms{0640});
  fs::create_symlink("old", dir / "link");
  fs::create_symlink("none", dir / "dangling");
  const auto open = [&](const char* name) { return files.Open(dir / name, kToReplace).value; };
  for (const char* name : {"link", "dangling"}) {
    const HANDLE file = open(name);
    EXPECT_EQ(TryOpen(dir / name, {}), kBusy);
    EXPECT_TRUE(files.ReplaceAndClose(file, "new").ok());
    EXPECT_EQ(files.Close(file).kind, kInvalidArgument);
    EXPECT_TRUE(fs::is_symlink(dir / name));
    EXPECT_EQ(dir.Get(name), "new");
    EXPECT_EQ(TryOpen(dir / name, kToReplace), kNone);
  }
  EXPECT_EQ(dir.Mode("old"), 0640u);
  EXPECT_EQ(TryOpen(dir / "made", kToReplace), kNone);
  EXPECT_EQ(dir.Get("made"), "(none)");

  const HANDLE stale = open("old");
  fs::rename(dir.Put("other", "other"), dir / "old");
  EXPECT_EQ(files.ReplaceAndClose(stale, "lost").kind, kBusy);
  EXPECT_EQ(dir.Get("old"), "other");
  const HANDLE not_for_that = files.Open(dir / "old", {.write = true}).value;
  EXPECT_EQ(files.ReplaceAndClose(not_for_that, "x").kind, kInvalidArgument);
  EXPECT_TRUE(files.ReplaceAndClose(files.Open("/dev/null", kToReplace).value, "x").ok());
  EXPECT_EQ(dir.Count(), 4u);
}

TEST_F(FilesTest, NoChangeIsLostAmongThoseWhoAppendReplaceOrHoldTheFile) {
  constexpr int kChanges = 100;
  const std::string path = dir / "made";
  OpenOptions to_replace = kToReplace;
  OpenOptions to_append{.write = true, .create = true, .append = true, .deny_write = true};
  to_replace.patience = to_append.patience = 60'000;
  EXPECT_TRUE(test::AllEndWell(4, [&](int process) {
    const std::string text(1, static_cast<char>('a' + process));
    for (int i = 0; i < kChanges; ++i) {
      const HANDLE file = files.Open(path, process == 0 ? to_replace : to_append).value;
      std::string bytes(files.Length(file).value, '+');
      files.Read(file, bytes);
      if (process == 0) {
        EXPECT_TRUE(files.ReplaceAndClose(file, bytes + text).ok());
        continue;
      }
      if (process == 1) files.Replace(path, bytes + text, false);
      if (process > 1) files.Write(file, text);
      files.Close(file);
    }
  }));
  const std::string made = dir.Get("made");
  for (const char process : std::string_view("abcd")) {
    EXPECT_EQ(std::ranges::count(made, process), kChanges) << process;
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
    const ErrorKind expected = refused ? kAccessDenied : kNone;
    EXPECT_EQ(TryOpen(link, {.read = false, .write = true, .create = true}), expected);
    EXPECT_EQ(files.SetAttributes(link, FILE_READ_ONLY).kind, expected);
    EXPECT_EQ(files.SetAttributes(link, 0).kind, expected);
    EXPECT_EQ(files.SetModified(link, 1000).kind, expected);
    EXPECT_EQ(profiles.Write(link, "s", "k", "w").kind, expected);
    EXPECT_EQ(files.Copy(dir / "a", link, true).kind, refused ? expected : kInvalidArgument);
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
  for (const char* other : {"1", "2", "3"}) {
    EXPECT_THAT(dir.Get(other).size(), testing::AnyOf(large.size(), 6u)) << "whole or (none)";
    dir.Put(other, "");
  }
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
  EXPECT_EQ(files.ReadAll(dir.path(), bytes).kind, kAccessDenied);
  EXPECT_EQ(bytes, "");
  fs::resize_file(dir / "a", 3ull << 30);
  EXPECT_EQ(files.ReadAll(dir / "a", bytes).kind, kNoSpace);
  ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0600), 0);
  EXPECT_TRUE(files.ReadAll(dir / "pipe", bytes).ok()) << "a pipe that nobody writes to";
}

TEST_F(FilesTest, StatusTellsSizeAttributesAndTime) {
  const std::string path = dir.Put("a", "12345");
  EXPECT_TRUE(files.SetModified(path, 1'000'000'000).ok());
  EXPECT_EQ(files.Status(path).value.size, 5u);
  EXPECT_EQ(files.Status(path).value.modified, 1'000'000'000);
  for (const auto& [name, attributes] :
       Rows<std::string, DWORD>{{path, FILE_ARCHIVE},
                                {dir.path(), FILE_DIRECTORY},
                                {dir.Put(".a", ""), FILE_ARCHIVE | FILE_HIDDEN},
                                {"/dev/null", FILE_SYSTEM}}) {
    EXPECT_EQ(files.Status(name).value.attributes, attributes) << name;
  }
}

TEST_F(FilesTest, ReadOnlyFilesAreKeptAlsoFromPrivilegedUsers) {
  const std::string path = dir.Put("a", "old");
  dir.Put("b", "new");
  fs::permissions(path, fs::perms{0664});
  EXPECT_TRUE(files.SetAttributes(path, FILE_READ_ONLY | FILE_ARCHIVE).ok());
  EXPECT_EQ(dir.Mode("a"), 0444u);
  EXPECT_EQ(files.Status(path).value.attributes, FILE_READ_ONLY | FILE_ARCHIVE);
  EXPECT_THAT(Kinds({files.Delete(path), files.Replace(path, "new", false),
                     files.Copy(dir / "b", path, true),
                     files.Open(path, {.write = true, .truncate = true}).error}),
              testing::Each(kAccessDenied));
  EXPECT_EQ(dir.Get("a"), "old");
  EXPECT_TRUE(files.SetAttributes(path, FILE_ARCHIVE).ok());
  EXPECT_EQ(dir.Mode("a"), 0644u);
  EXPECT_THAT(Kinds({files.Delete(path), files.Delete(path), files.Delete(dir.path())}),
              ElementsAre(kNone, kNotFound, kAccessDenied));
}

TEST_F(FilesTest, RenameAndCopyDoNotOverwriteUnasked) {
  const std::string a = dir.Put("a", "a");
  const std::string b = dir.Put("b", "b");
  const std::string c = dir / "c";
  EXPECT_THAT(Kinds({files.Rename(a, b), files.Copy(a, b, false), files.Copy(a, a, true),
                     files.Copy(dir.path(), c, false), files.Rename(a, a)}),
              ElementsAre(kAlreadyExists, kAlreadyExists, kInvalidArgument, kAccessDenied, kNone));
  EXPECT_EQ(dir.Get("b"), "b");
  fs::permissions(a, fs::perms{0500});
  files.SetModified(a, 1000);
  EXPECT_TRUE(files.Copy(a, c, false).ok() && files.Copy(c, b, true).ok());
  EXPECT_EQ(dir.Mode("c"), 0500u);
  EXPECT_EQ(files.Status(c).value.modified, 1000);
  EXPECT_TRUE(files.Rename(b, dir / "d").ok());
  EXPECT_EQ(dir.Get("b") + dir.Get("c") + dir.Get("d"), "(none)aa");
  EXPECT_EQ(dir.Count(), 3u);
}

TEST_F(FilesTest, FindGivesSortedMatchesWithTheirStatus) {
  for (const char* name : {"b.SQL", "plain", ".hidden"}) dir.Put(name, "12");
  dir.Put("a.sql", "1");
  fs::create_directory(dir / "d.sql");
  fs::create_symlink("nowhere", dir / "dead");
  dir.Put("..\\plain", "a name that would lead to another file");
  EXPECT_THAT(Names(dir / "*.*"),
              ElementsAre(".", "..", ".hidden", "a.sql", "b.SQL", "d.sql", "dead", "plain"));
  EXPECT_THAT(Names(dir.path() + "\\A.SQL"), ElementsAre("a.sql"));
  const std::vector<FoundFile> found = files.Find(dir / "?.sql").value;
  ASSERT_EQ(found.size(), 3u);
  EXPECT_EQ(found[1].status.size, 2u);
  EXPECT_EQ(found[2].status.attributes, FILE_DIRECTORY);
  for (const char* pattern : {"/x*", "/none/*", "/"}) {
    EXPECT_EQ(files.Find(dir.path() + pattern).error.kind, kNotFound) << pattern;
  }
}

TEST_F(FilesTest, TemporaryFilesAreNewEmptyAndPrivate) {
  const Result<std::string> first = files.MakeTempFile(dir.path(), "SQLX");
  EXPECT_NE(first.value, files.MakeTempFile(dir.path(), "SQLX").value);
  EXPECT_THAT(first.value, testing::MatchesRegex(dir.path() + "/SQL[0-9A-F]{1,4}\\.tmp"));
  EXPECT_EQ(dir.Get(first.value.substr(dir.path().size() + 1)), "");
  EXPECT_EQ(dir.Mode(first.value.substr(dir.path().size() + 1)), 0600u);
  EXPECT_THAT(Kinds({files.MakeTempFile(dir / "none", "a").error, files.MakeTempFile("", "a").error,
                     files.MakeTempFile(dir.path(), "../").error}),
              ElementsAre(kNotFound, kNotFound, kInvalidArgument));
  const test::ScopedVariable variable("TMPDIR", dir.path());
  EXPECT_EQ(files.TempDirectory(), dir.path() + "/");
}

TEST_F(FilesTest, DirectoriesAreMadeEnteredAndRemoved) {
  EXPECT_THAT(Kinds({files.MakeDirectory(dir.path() + "\\sub"), files.MakeDirectory(dir / "sub"),
                     files.MakeDirectory(dir / "x/y")}),
              ElementsAre(kNone, kAlreadyExists, kNotFound));
  const std::string former = files.CurrentDirectory();
  EXPECT_TRUE(files.SetCurrentDirectory(dir / "sub").ok());
  EXPECT_EQ(files.FullPath("..\\a").value, dir / "a");
  EXPECT_TRUE(files.RemoveDirectory(dir / "sub").ok());
  EXPECT_EQ(files.FullPath("a").error.kind, kNotFound) << "in a removed directory";
  EXPECT_EQ(files.FullPath("c:\\a\\..\\b").value, "c:\\b");
  EXPECT_TRUE(files.SetCurrentDirectory(former).ok());
  dir.Put("f", "");
  EXPECT_FALSE(files.RemoveDirectory(dir.path()).ok());
  EXPECT_EQ(dir.Get("f"), "");
}

TEST_F(FilesTest, PathsThatCannotBeAreRefused) {
  std::string long_path = dir.path();
  while (long_path.size() < 4096) long_path += "/" + std::string(250, 'x');
  long_path.resize(4096, 'x');
  const std::string zero = dir.Put("a", "") + std::string("\0b", 2);
  EXPECT_THAT(Kinds({files.Status(long_path).error, files.FullPath(std::string(4095, 'x')).error,
                     files.Status(std::string(4096, 'x')).error, files.Delete(zero)}),
              testing::Each(kInvalidArgument));
  for (const std::string& path : {std::string(), "c:" + dir.path(), std::string("\\\\tmp")}) {
    EXPECT_EQ(files.Status(path).error.kind, kNotFound) << path;
  }
  EXPECT_TRUE(files.Status("/").ok());
  EXPECT_EQ(dir.Get("a"), "");
}

TEST_F(FilesTest, SearchesProgramDirectoryThenCurrentThenPath) {
  const std::string program = System().modules->FileName(nullptr);
  EXPECT_EQ(files.SearchPath(program.substr(program.rfind('/') + 1)).value, program);
  const std::string tool = dir.Put("only_here.txt", "");
  EXPECT_EQ(files.SearchPath("only_here.txt").error.kind, kNotFound);
  const test::ScopedVariable variable("PATH", "/nowhere:" + dir.path());
  EXPECT_EQ(files.SearchPath("only_here.txt").value, tool);
  EXPECT_EQ(files.SearchPath(tool).value, tool);
}

TEST_F(FilesTest, TellsVolumesAndDrives) {
  const VolumeFacts volume = files.Volume(dir.path()).value;
  EXPECT_GT(volume.bytes_total, volume.bytes_free);
  EXPECT_EQ(files.Volume("/proc").value.file_system, "proc");
  EXPECT_EQ(files.Volume(dir / "none").error.kind, kNotFound);
  for (const auto& [drive, kind] : Rows<std::string, UINT>{{"", DRIVE_KIND_NO_ROOT},
                                                           {"c:", DRIVE_KIND_FIXED},
                                                           {"\\\\server\\share", DRIVE_KIND_REMOTE},
                                                           {"/", DRIVE_KIND_FIXED},
                                                           {dir / "none", DRIVE_KIND_NO_ROOT}}) {
    EXPECT_EQ(files.KindOfDrive(drive), kind) << drive;
  }
  EXPECT_EQ(files.UniversalName("/proc/self").error.kind, kUnsupported);
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
