
#include <sys/file.h>

#include "dqlib/platform/posix/file_bytes.h"
#include "dqlib/platform/posix/mount_table.h"
#include "dqlib/platform/posix/system_services.h"
#include "tests/support/forked_process.h"
#include "tests/support/registries.h"

namespace dq::platform {
namespace {

namespace fs = std::filesystem;
using enum ErrorKind;
using namespace std::string_literals;
using namespace test;
using testing::ElementsAre;

constexpr OpenOptions kToReplace{.write = true, .create = true, .deny_read = true, .replace = true};

struct FilesTest : testing::Test {
  TempDirectory dir;
  Files& files = *System().files;
  ProfileFiles& profiles = *System().profile_files;
  const std::string ini = dir / "a.ini";

  /// Opens, and closes again if that succeeded.
  ErrorKind TryOpen(const std::string& path, const OpenOptions& options) {
    const Result<HANDLE> file = files.Open(path, options);
    if (file.ok()) files.Close(file.value);
    return file.error.kind;
  }
  std::string Run(const std::string& command) { return RunShell(dir.path(), command); }
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
  EXPECT_TRUE(dir.Mode("a") == 0600 && files.Write(file, "0123456789").ok());
  EXPECT_EQ(files.Seek(file, -3, SeekOrigin::kEnd).value, 7u);
  EXPECT_EQ(files.Seek(file, -8, SeekOrigin::kCurrent).error.kind, kInvalidArgument);
  EXPECT_EQ(files.Seek(file, -1, SeekOrigin::kCurrent).value, 6u);
  char buffer[8];
  EXPECT_EQ(std::string(buffer, files.Read(file, buffer).value), "6789");
  EXPECT_EQ(files.Read(file, buffer).value, 0u);
  EXPECT_EQ(files.SetLength(file, ~0ull).kind, kInvalidArgument);
  EXPECT_TRUE(files.SetLength(file, 3).ok() && files.Length(file).value == 3);
  EXPECT_TRUE(files.Flush(file).ok() && files.Close(file).ok() && dir.Get("a") == "012");
  ExpectEach(kInvalidArgument, {files.Close(file), files.Read(file, buffer).error});
  const HANDLE next = files.Open(path, {}).value;
  EXPECT_TRUE(next != file && !files.Write(next, "x").ok() && files.Close(next).ok());
  // A writer follows the system's own links to pipes.
  FILE* const reader = popen(("cat > " + dir / "out").c_str(), "w");
  const std::string link = "/dev/fd/" + std::to_string(fileno(reader));
  const HANDLE pipe = files.Open(link, {.read = false, .write = true}).value;
  EXPECT_TRUE(files.Write(pipe, "x").ok() && files.Close(pipe).ok() && pclose(reader) == 0);
  EXPECT_EQ(dir.Get("out"), "x");
}

TEST_F(FilesTest, ShareModesHoldWithinAndBetweenProcesses) {
  const std::string path = dir / "a";
  // Who may open it beside the one, in this order: reads, writes, does both; reads and writes and
  // denies writing; denies all.
  const std::pair<OpenOptions, std::string_view> modes[] = {
      {{}, "+++++-"},
      {{.read = false, .write = true}, "+++---"},
      {{.write = true}, "+++---"},
      {{.deny_write = true}, "+--+--"},
      {{.read = false, .write = true, .deny_write = true}, "+-----"},
      {{.deny_read = true}, "------"}};
  const auto others = [&] {
    std::string opened;
    for (const auto& mode : modes) {
      const ErrorKind kind = TryOpen(path, mode.first);
      opened += kind == kNone ? '+' : kind == kBusy ? '-' : '?';
    }
    return opened;
  };
  for (const auto& mode : modes) {
    SCOPED_TRACE(&mode - modes);
    dir.Put("a", "x");
    const HANDLE file = files.Open(path, mode.first).value;
    EXPECT_EQ(others(), mode.second);
    EXPECT_TRUE(AllEndWell(1, [&](int) { EXPECT_EQ(others(), mode.second); }));
    std::string bytes;
    EXPECT_EQ(files.ReadAll(path, bytes).ok(), mode.second[0] == '+');
    const bool may_empty = mode.second[2] == '+';
    EXPECT_EQ(TryOpen(path, {.write = true, .truncate = true}), may_empty ? kNone : kBusy);
    EXPECT_EQ(dir.Get("a"), may_empty ? "" : "x") << "what is denied isn't emptied either";
    EXPECT_TRUE(files.Close(file).ok());
    EXPECT_EQ(others(), "++++++") << "after closing";
  }
}

TEST_F(FilesTest, ReplacingKeepsPermissionsAndLinksAndHoldsAFileFromItsOpening) {
  Run("echo > old; chmod 640 old; ln -s old link; ln -s loop loop; ln -s none dangling");
  const auto replace = [&](const char* name) { return files.Replace(dir / name, "new", true); };
  EXPECT_THAT(
      Kinds({replace("link"), replace("secret"), replace("loop"), replace("."), replace("none/x")}),
      ElementsAre(kNone, kNone, kInvalidArgument, kAccessDenied, kNotFound));
  EXPECT_EQ(Run("stat -c '%a %N' old link secret; cat old; ls"),
            "640 'old'\n777 'link' -> 'old'\n600 'secret'\nnewdangling\nlink\nloop\nold\nsecret\n");
  const auto open = [&](const char* name) { return files.Open(dir / name, kToReplace).value; };
  for (const char* name : {"link", "dangling"}) {
    const HANDLE file = open(name);
    EXPECT_TRUE(TryOpen(dir / name, {}) == kBusy && files.ReplaceAndClose(file, name).ok());
    EXPECT_EQ(files.Close(file).kind, kInvalidArgument);
    EXPECT_EQ(TryOpen(dir / name, kToReplace), kNone);
  }
  EXPECT_EQ(TryOpen(dir / "made", kToReplace), kNone);
  EXPECT_EQ(Run("stat -c '%a %N' old link dangling; cat old none; ls"),
            "640 'old'\n777 'link' -> 'old'\n777 'dangling' -> 'none'\nlinkdangling"
            "dangling\nlink\nloop\nnone\nold\nsecret\n");
  const HANDLE stale = open("old");
  Run("printf other > other; mv other old");
  EXPECT_EQ(files.ReplaceAndClose(stale, "lost").kind, kBusy);
  const HANDLE not_for_that = files.Open(dir / "old", {.write = true}).value;
  EXPECT_EQ(files.ReplaceAndClose(not_for_that, "x").kind, kInvalidArgument);
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const std::string end = "/dev/fd/" + std::to_string(pipe[1]);
  for (const std::string& device : {std::string("/dev/null"), end}) {
    EXPECT_TRUE(files.ReplaceAndClose(files.Open(device, kToReplace).value, "x").ok()) << device;
  }
  ::close(pipe[1]);
  char read[2];
  EXPECT_EQ(::read(pipe[0], read, 2), 1);
  ::close(pipe[0]);
  const HANDLE source = files.Open(dir / "none", {.read = true}).value;
  char all[20];
  EXPECT_EQ(files.Read(source, all).value, 8u);
  for (const HANDLE no_source : {not_for_that, kNoHandle}) {
    EXPECT_EQ(files.ReplaceByAndClose(open("dangling"), no_source).kind, kInvalidArgument);
  }
  EXPECT_EQ(files.ReplaceByAndClose(kNoHandle, source).kind, kInvalidArgument);
  EXPECT_TRUE(files.ReplaceByAndClose(open("secret"), source).ok() && files.Close(source).ok());
  EXPECT_EQ(dir.Get("secret"), "dangling");
  EXPECT_TRUE(dir.Get("old") == "other" && dir.Get("none") == "dangling" && dir.Count() == 6);
}

TEST_F(FilesTest, NoChangeIsLostAmongThoseWhoAppendReplaceOrHoldTheFileNorOfProfiles) {
  constexpr int kChanges = 100;
  const std::string path = dir / "made";
  OpenOptions to_replace = kToReplace;
  OpenOptions to_append{.write = true, .create = true, .append = true, .deny_write = true};
  to_replace.patience = to_append.patience = 60'000;
  EXPECT_TRUE(AllEndWell(8, [&](int process) {
    const std::string text(1, static_cast<char>('a' + process));
    for (int i = 0; i < kChanges; ++i) {
      if (process >= 4) {
        EXPECT_TRUE(profiles.Write(ini, i % 2 ? "s" : "t", text + std::to_string(i), "v").ok());
        continue;
      }
      const HANDLE file = files.Open(path, process == 0 ? to_replace : to_append).value;
      std::string bytes(files.Length(file).value, '+');
      files.Read(file, bytes);
      if (process == 0) files.ReplaceAndClose(file, bytes + text);
      if (process == 1) files.Replace(path, bytes + text, false);
      if (process > 1) files.Write(file, text);
      files.Close(file);
    }
  }));
  const std::string made = dir.Get("made");
  for (const char process : std::string_view("abcd")) {
    EXPECT_EQ(std::ranges::count(made, process), kChanges) << process;
  }
  for (const char* section : {"s", "t"}) {
    EXPECT_EQ(profiles.Keys(ini, section).size(), 2u * kChanges) << section;
  }
  EXPECT_EQ(dir.Count(), 2u);
}

TEST_F(FilesTest, NothingIsWrittenByAnothersLinkInADirectoryForEverybody) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can make links of others";
  const std::string link = dir / "shared/link";
  const Rows<std::string, std::string, std::string, bool> rows = {
      {"../a", "link", "1777", true},    {"none", "link", "1777", true},
      {"../a", "link .", "1777", false}, {"../a", ".", "1777", false},
      {"../a", "link", "1775", false},   {"../a", "link", "777", false}};
  for (const auto& [target, others, mode, refused] : rows) {
    SCOPED_TRACE(target + ' ' + others + ' ' + mode);
    dir.Put("a", "[s]\nk=v\n");
    Run("rm -rf shared; mkdir shared; cd shared; ln -s " + target + " link; chown -h 12345 " +
        others + "; chmod " + mode + " .");
    const ErrorKind expected = refused ? kAccessDenied : kNone;
    ExpectEach(expected, {Error{TryOpen(link, {.read = false, .write = true, .create = true})},
                          files.SetAttributes(link, FILE_READ_ONLY), files.SetAttributes(link, 0),
                          files.SetModified(link, 1000), profiles.Write(link, "s", "k", "w")});
    EXPECT_EQ(files.Copy(dir / "a", link, true).kind, refused ? expected : kInvalidArgument);
    EXPECT_EQ(dir.Get("a"), refused ? "[s]\nk=v\n" : "[s]\nk=w\n");
    EXPECT_EQ(files.Replace(link, "new", false).kind, expected);
    EXPECT_EQ(dir.Get("a"), refused ? "[s]\nk=v\n" : "new");
    EXPECT_EQ(dir.Get("shared/none"), "(none)");
    EXPECT_TRUE(!refused || target == "none" || profiles.Read(link, "s", "k") == "v") << "follows";
  }
}

TEST_F(FilesTest, WhatKilledWritersLeaveIsRemovedButNotWhatLiveOnesFill) {
  struct : posix::SystemCalls {
    ssize_t Write(int fd, const void* data, std::size_t size) override {
      const int other = open(("/proc/self/fd/" + std::to_string(fd)).c_str(), O_RDONLY);
      EXPECT_EQ(flock(other, LOCK_EX | LOCK_NB), -1) << "while it is filled";
      close(other);
      return SystemCalls::Write(fd, data, size);
    }
  } calls;
  Run("touch .dq1-2-3.tmp .dq1-2-x.tmp .dq1-02-3.tmp");
  const int live = open((dir / ".dq7-8-9.tmp").c_str(), O_CREAT, 0600);
  EXPECT_EQ(flock(live, LOCK_EX), 0);
  EXPECT_TRUE(posix::MakeFiles(calls)->Replace(dir / "0", "last", false).ok());
  EXPECT_EQ(Run("ls -A; cat 0"), ".dq1-02-3.tmp\n.dq1-2-x.tmp\n.dq7-8-9.tmp\n0\nlast");
  close(live);
}

TEST_F(FilesTest, ReadAllHasTheWholeOfAnyFile) {
  std::string bytes = "former";
  for (const std::size_t size : {0u, 1u, 15u, 16u, 262'144u, 1'000'000u}) {
    EXPECT_TRUE(files.ReadAll(dir.Put("a", std::string(size, 'x')), bytes).ok());
    EXPECT_EQ(bytes, std::string(size, 'x'));
  }
  EXPECT_EQ(bytes.capacity(), 1'000'000u) << "memory is taken once";
  // One that has changed since it was opened ends where it did then.
  for (const std::string now : {"shorter", "longer than before"}) {
    const int file = open(dir.Put("b", "ten bytes.").c_str(), O_RDONLY);
    struct stat status;
    EXPECT_EQ(fstat(file, &status), 0);
    dir.Put("b", now);
    EXPECT_TRUE(posix::ReadToEnd(posix::RealSystemCalls(), file, status, bytes).ok());
    EXPECT_EQ(bytes, now.substr(0, 10));
    close(file);
  }
  EXPECT_TRUE(files.ReadAll("/proc/self/stat", bytes).ok()) << "whose size is 0";
  EXPECT_FALSE(bytes.empty());
  EXPECT_TRUE(files.ReadAll(dir.path(), bytes).kind == kAccessDenied && bytes == "");
  Run("truncate -s 3G a; mkfifo pipe");
  EXPECT_EQ(files.ReadAll(dir / "a", bytes).kind, kNoSpace);
  EXPECT_TRUE(files.ReadAll(dir / "pipe", bytes).ok()) << "a pipe that nobody writes to";
}

TEST_F(FilesTest, StatusIsToldAndReadOnlyFilesAreKeptAlsoFromPrivilegedUsers) {
  const std::string path = dir.Put("a", "12345");
  Run("echo new > b; touch .a; chmod 664 a");
  EXPECT_TRUE(files.SetModified(path, 1'000'000'000).ok());
  EXPECT_TRUE(files.SetAttributes(path, FILE_READ_ONLY | FILE_ARCHIVE).ok());
  const FileStatus status = files.Status(path).value;
  EXPECT_TRUE(status.size == 5 && status.modified == 1'000'000'000);
  std::vector<DWORD> attributes;
  for (const std::string& name : {path, dir / "b", dir.path(), dir / ".a", "/dev/null"s}) {
    attributes.push_back(files.Status(name).value.attributes);
  }
  EXPECT_THAT(attributes, ElementsAre(FILE_ARCHIVE | FILE_READ_ONLY, FILE_ARCHIVE, FILE_DIRECTORY,
                                      FILE_ARCHIVE | FILE_HIDDEN, FILE_SYSTEM));
  ExpectEach(kAccessDenied, {files.Delete(path), files.Replace(path, "new", false),
                             files.Copy(dir / "b", path, true),
                             files.Open(path, {.write = true, .truncate = true}).error});
  EXPECT_EQ(Run("stat -c %a a; cat a"), "444\n12345");
  EXPECT_TRUE(files.SetAttributes(path, FILE_ARCHIVE).ok() && dir.Mode("a") == 0644);
  EXPECT_THAT(Kinds({files.Delete(path), files.Delete(path), files.Delete(dir.path())}),
              ElementsAre(kNone, kNotFound, kAccessDenied));
}

TEST_F(FilesTest, RenameAndCopyDoNotOverwriteUnasked) {
  const std::string a = dir.Put("a", "a"), b = dir.Put("b", "b"), c = dir / "c";
  EXPECT_THAT(Kinds({files.Rename(a, b), files.Copy(a, b, false), files.Copy(a, a, true),
                     files.Copy(dir.path(), c, false), files.Rename(a, a)}),
              ElementsAre(kAlreadyExists, kAlreadyExists, kInvalidArgument, kAccessDenied, kNone));
  EXPECT_EQ(Run("chmod 500 a; touch -d @1000 a; cat b"), "b");
  EXPECT_TRUE(files.Copy(a, c, false).ok() && files.Copy(c, b, true).ok());
  EXPECT_TRUE(files.Rename(b, dir / "d").ok());
  EXPECT_EQ(Run("stat -c '%a %Y' c; cat c d; ls"), "500 1000\naaa\nc\nd\n");
}

TEST_F(FilesTest, FindGivesSortedMatchesWithTheirStatus) {
  // Among them a name that would lead to another file.
  Run("printf 12 | tee b.SQL plain .hidden '..\\plain'; touch a.sql; mkdir d.sql; ln -s no dead");
  std::string names;
  for (const std::string pattern : {"/*.*", "\\A.SQL"}) {
    for (const FoundFile& each : files.Find(dir.path() + pattern).value) names += each.name + ' ';
  }
  EXPECT_EQ(names, ". .. .hidden a.sql b.SQL d.sql dead plain a.sql ");
  const std::vector<FoundFile> found = files.Find(dir / "?.sql").value;
  ASSERT_EQ(found.size(), 3u);
  EXPECT_TRUE(found[1].status.size == 2 && found[2].status.attributes == FILE_DIRECTORY);
  for (const char* pattern : {"/x*", "/none/*", "/"}) {
    EXPECT_EQ(files.Find(dir.path() + pattern).error.kind, kNotFound) << pattern;
  }
}

TEST_F(FilesTest, TemporaryFilesAreNewEmptyAndPrivate) {
  const std::string first = files.MakeTempFile(dir.path(), "SQLX").value;
  EXPECT_NE(first, files.MakeTempFile(dir.path(), "SQLX").value);
  EXPECT_THAT(first, testing::MatchesRegex(dir.path() + "/SQL[0-9A-F]{1,4}\\.tmp"));
  EXPECT_EQ(Run("stat -c '%s %a' " + first), "0 600\n");
  EXPECT_THAT(Kinds({files.MakeTempFile(dir / "none", "a").error, files.MakeTempFile("", "a").error,
                     files.MakeTempFile(dir.path(), "../").error}),
              ElementsAre(kNotFound, kNotFound, kInvalidArgument));
  const ScopedVariable variable("TMPDIR", dir.path());
  EXPECT_EQ(files.TempDirectory(), dir.path() + "/");
}

TEST_F(FilesTest, DirectoriesAreMadeEnteredAndRemoved) {
  EXPECT_THAT(Kinds({files.MakeDirectory(dir.path() + "\\sub"), files.MakeDirectory(dir / "sub"),
                     files.MakeDirectory(dir / "x/y")}),
              ElementsAre(kNone, kAlreadyExists, kNotFound));
  const std::string former = files.CurrentDirectory();
  EXPECT_TRUE(files.SetCurrentDirectory(dir / "sub").ok() &&
              files.FullPath("..\\a").value == dir / "a");
  EXPECT_TRUE(files.RemoveDirectory(dir / "sub").ok());
  EXPECT_EQ(files.FullPath("a").error.kind, kNotFound) << "in a removed directory";
  EXPECT_TRUE(files.FullPath("c:\\a\\..\\b").value == "c:\\b" &&
              files.SetCurrentDirectory(former).ok());
  dir.Put("f", "");
  EXPECT_TRUE(!files.RemoveDirectory(dir.path()).ok() && dir.Get("f") == "");
}

TEST_F(FilesTest, PathsThatCannotBeAreRefused) {
  std::string long_path = dir.path();
  while (long_path.size() < 4096) long_path += "/" + std::string(250, 'x');
  long_path.resize(4096, 'x');
  const std::string zero = dir.Put("a", "") + std::string("\0b", 2), no_path(4095, 'x');
  ExpectEach(kInvalidArgument, {files.Status(long_path).error, files.FullPath(no_path).error,
                                files.Status(no_path + "x").error, files.Delete(zero)});
  for (const std::string& path : {""s, "c:" + dir.path(), "\\\\tmp"s}) {
    EXPECT_EQ(files.Status(path).error.kind, kNotFound) << path;
  }
  EXPECT_TRUE(files.Status("/").ok() && dir.Get("a") == "");
}

TEST_F(FilesTest, SearchesProgramDirectoryThenCurrentThenPath) {
  const std::string program = System().modules->FileName(nullptr);
  EXPECT_EQ(files.SearchPath(program.substr(program.rfind('/') + 1)).value, program);
  const std::string tool = dir.Put("only_here.txt", "");
  EXPECT_EQ(files.SearchPath("only_here.txt").error.kind, kNotFound);
  const ScopedVariable variable("PATH", "/nowhere:" + dir.path());
  for (const auto& name : {"only_here.txt"s, tool}) EXPECT_EQ(files.SearchPath(name).value, tool);
}

TEST_F(FilesTest, TellsVolumesAndDrives) {
  const VolumeFacts volume = files.Volume(dir.path()).value, proc = files.Volume("/proc").value;
  EXPECT_TRUE(volume.bytes_total > volume.bytes_free && proc.file_system == "proc");
  EXPECT_EQ(proc.longest_name, 255u);
  EXPECT_EQ(files.Volume(dir / "none").error.kind, kNotFound);
  for (const char* drive : {"c:", "/"}) EXPECT_EQ(files.KindOfDrive(drive), DRIVE_KIND_FIXED);
  for (const auto& no : {""s, dir / "none"}) EXPECT_EQ(files.KindOfDrive(no), DRIVE_KIND_NO_ROOT);
  EXPECT_EQ(files.KindOfDrive("\\\\server\\share"), DRIVE_KIND_REMOTE);
  EXPECT_EQ(files.UniversalName("/proc/self").error.kind, kUnsupported);
}

TEST(MountTable, TellsThePathsOfOtherMachines) {
  constexpr std::string_view kTable =
      "21 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
      "torn line - nfs\n"
      "30 21 0:40 / /mnt/my\\040disk rw master:2 shared:3 - cifs //server/share/ rw\n"
      "31 21 0:41 / /mnt/n rw - tmpfs none rw\n"
      "32 21 0:42 / /mnt/n rw - nfs4 host:/export/home rw\n"
      "33 21 0:42 /team /mnt/team rw - nfs4 host:/export rw";
  for (const auto& [path, universal] : Cases<2>(R"(/ => none ;; /mnt/nx => none
      /mnt/my disk => \\server\share ;; /mnt/my disk/a/b => \\server\share\a\b
      /mnt/n/x => \\host\export\home\x ;; /mnt/team/x => \\host\export\team\x)")) {
    const auto mount = posix::FindMount(kTable, path);
    ASSERT_TRUE(mount) << path;
    EXPECT_EQ(posix::NetworkPath(*mount, path).value_or("none"), universal) << path;
    EXPECT_EQ(posix::IsRemote(*mount), universal != "none") << path;
  }
  EXPECT_FALSE(posix::FindMount("", "/"));
}

TEST_F(FilesTest, ProfilesAreMadeForTheUserAndReadBackAndElseChangedWhereTheyAre) {
  const ScopedVariable variable("XDG_CONFIG_HOME", dir / "config");
  EXPECT_TRUE(profiles.Write(ini, "s", "k", {}).ok() && profiles.Write(ini, "s", {}, {}).ok());
  EXPECT_TRUE(!profiles.Read(ini, "s", "k") && profiles.Sections(ini).empty());
  EXPECT_EQ(dir.Count(), 0u) << "deleting nothing makes no file";
  for (const std::string& path : {ini, "own.ini"s}) {
    EXPECT_TRUE(profiles.Write(path, "s", "k", "v").ok() && profiles.Read(path, "S", "K") == "v");
  }
  EXPECT_THAT(profiles.Sections(ini), ElementsAre("s"));
  EXPECT_THAT(profiles.Keys(ini, "s"), ElementsAre("k"));
  EXPECT_TRUE(profiles.Write(ini, "s", "k", {}).ok());
  EXPECT_EQ(Run("cat a.ini config/velmora/own.ini; stat -c %a a.ini config/velmora"),
            "[s]\r\n[s]\r\nk=v\r\n600\n700\n");
  // Permissions, links and bytes of others are kept.
  const std::string before = "\xEF\xBB\xBF; \xFF comment\r[a]\rk = 1\r\n\n[b]\nk=2";
  dir.Put("a.ini", before);
  Run("chmod 640 a.ini; ln -s a.ini link.ini; ln a.ini same.ini");
  EXPECT_TRUE(profiles.Write(ini, "a", "k", "1").ok() && profiles.Write(ini, "a", "j", {}).ok());
  EXPECT_EQ(Run("stat -c %h a.ini"), "2\n") << "what changes nothing writes nothing";
  EXPECT_TRUE(profiles.Write(dir / "link.ini", "b", "k", "3").ok());
  EXPECT_EQ(dir.Get("a.ini"), before.substr(0, before.size() - 1) + "3");
  EXPECT_EQ(Run("stat -c '%a %N' link.ini a.ini"), "777 'link.ini' -> 'a.ini'\n640 'a.ini'\n");
}

TEST_F(FilesTest, BadInputOfProfilesIsRefusedAndChangesNothing) {
  dir.Put("a.ini", "[s]k=v\n");
  dir.Put("wide", "\xFF\xFE[");
  Run("mkfifo pipe; mkdir sub; echo old > kept; chmod 400 kept");
  const Rows<const char*, const char*, const char*, const char*, ErrorKind> rows = {
      {"sub", "s", "k", "v", kInvalidArgument},  {"a.ini", "", "k", "v", kInvalidArgument},
      {"pipe", "s", "k", "v", kInvalidArgument}, {"a.ini", "s", "k=", "v", kInvalidArgument},
      {"wide", "s", "k", "v", kUnsupported},     {"none/a.ini", "s", "k", "v", kNotFound},
      {"kept", "s", "k", "v", kAccessDenied},    {"a.ini", "s", "k", "a\n[t]", kInvalidArgument}};
  for (const auto& [name, section, key, value, kind] : rows) {
    EXPECT_EQ(profiles.Write(dir / name, section, key, value).kind, kind) << name << section;
  }
  EXPECT_EQ(profiles.Write("c:\\a.ini", "s", "k", "v").kind, kNotFound);
  EXPECT_EQ(profiles.Read(dir / "pipe", "s", "k"), std::nullopt);
  EXPECT_THAT(Kinds({profiles.CheckReadable(ini), profiles.CheckReadable(dir / "none"),
                     profiles.CheckReadable(dir / "wide"), profiles.CheckReadable(dir / "pipe")}),
              ElementsAre(kNone, kNone, kUnsupported, kInvalidArgument));
  EXPECT_EQ(Run("cat a.ini wide kept; ls"), "[s]k=v\n\xFF\xFE[old\na.ini\nkept\npipe\nsub\nwide\n");
}

TEST_F(FilesTest, ATemporaryNameThatIsTakenBlocksNoProfileAndALeftoverGoes) {
  // The name under which a.ini is written anew. A directory there can't be removed like a file.
  const std::string name = ".dq65abe8b5491700c0.tmp";
  Run("mkdir " + name);
  EXPECT_TRUE(profiles.Write(ini, "s", "k", "v").ok());
  EXPECT_EQ(Run("cat a.ini; rmdir " + name + "; touch " + name), "[s]\r\nk=v\r\n");
  EXPECT_TRUE(profiles.Write(ini, "s", "k", "w").ok());
  EXPECT_EQ(Run("ls -A"), "a.ini\n");
}

TEST(Paths, HaveTheFormTheyShowAndPartsWhichMakeThemUpAgain) {
  for (const auto& [windows, posix] : Cases<2>(R"(
      c:\data => a\b/c ;; C:/data => /a ;; c: => a ;; a\b => ;; \\srv\s => 1:\/ ;; c:a => ab:c)")) {
    EXPECT_EQ(FormOf(windows), PathForm::kWindows) << windows;
    EXPECT_EQ(FormOf(posix), PathForm::kPosix) << posix;
  }
  for (const auto& [path, drive, directory, name, extension] : Cases<5>(R"(
      c:\bin\tool.exe => c: => \bin\ => tool => .exe ;; C:/bin\a.b.c => C: => /bin\ => a.b => .c
      c:tool => c: => => tool => ;; \\srv\share\x.y\tool => => \\srv\share\x.y\ => tool => ;; =>
      /usr/lib.d/ => => /usr/lib.d/ => => ;; /home/.profile => => /home/ => => .profile)")) {
    const PathParts parts = SplitPath(path);
    EXPECT_EQ(std::tie(parts.drive, parts.directory, parts.name, parts.extension),
              std::tie(drive, directory, name, extension))
        << path;
    EXPECT_EQ(MakePath(drive, directory, name, extension), path);
  }
}

TEST(Paths, AreJoinedWithWhatIsMissingAndMadeFullByTheirText) {
  for (const auto& [drive, directory, name, extension, path] : Cases<5>(R"(
           c => data => a => sql => c:data\a.sql ;; c: => \data\ => a => .sql => c:\data\a.sql
           => data => a => sql => data/a.sql ;; => data\x => a => => data\x\a
           => => tool => dqo => tool.dqo)")) {
    EXPECT_EQ(MakePath(drive, directory, name, extension), path);
  }
  for (const auto& [first, second, joined] : Cases<3>(R"(
           c: => a => c:\a ;; c:\ => a => c:\a ;; c:\data => \a => c:\data\a ;; / => a => /a
           data => a => data/a ;; data => a\b => data\a\b ;; => a => a)")) {
    EXPECT_EQ(JoinPath(first, second), joined);
  }
  for (const auto& [base, path, full] : Cases<3>(R"(/w/v => . => /w/v ;; /w/v => c:\..\.. => c:\
      /w/v => ../.. => / ;; / => x => /x ;; /w/v => \data\..\x => \x ;; /w/v => c:x => c:\x
      /w/v => c:\data\ => c:\data\ ;; /w/v => ../x => /w/x ;; /w/v => C:/data//a => C:\data\a
      /w/v => ../../.. => / ;; /w/v => /a/./b/../../../c/ => /c/ ;; /w/v => ... => /w/v/...
      /w/v => a\b => /w/v/a/b ;; /w/v => c:\data\.\x\..\a.sql => c:\data\a.sql
      c:\w => sub/x => c:\w\sub\x ;; /w/v => \\srv\share\..\..\a => \\srv\share\a ;; /w/ => . => /w)")) {
    EXPECT_EQ(FullPath(path, base), full) << path;
  }
}

TEST(Paths, NamesMatchPatterns) {
  for (const auto& [pattern, name, matches] : Cases<3>(R"(=> => yes ;; * => => yes ;; ? => a => yes
      ? => => no ;; => x => no ;; ? => ab => no ;; *.* => . => yes ;; *ab => aab => yes
      *.sql => a.SQL => yes ;; *.sql => asql => no ;; ab*? => ab => no ;; A.SQL => a.sql => yes
      *.* => README => yes ;; ? => é => yes ;; *ab? => abcabd => yes ;; *.sql => a.sql.bak => no
      *.*.* => a.b => no ;; *iss*ip* => mississippi => yes)")) {
    EXPECT_EQ(MatchesPattern(name, pattern), matches == "yes") << name << pattern;
  }
  // A pattern made to try every split takes time only in the product of the lengths.
  std::string stars;
  for (int i = 0; i < 1000; ++i) stars += "*a";
  EXPECT_FALSE(MatchesPattern(std::string(5000, 'a') + "b", stars));
}

}  // namespace
}  // namespace dq::platform
