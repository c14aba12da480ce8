// The files of the registry when they are damaged, can't be written, or are deleted.

#include "dqlib/platform/posix/registry_store.h"

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/doubles.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/registries.h"

namespace dq::platform::posix {
namespace {

namespace fs = std::filesystem;

using namespace test;
using TempDirectory = MemoryDirectory;
using User = RegistryUser;

const std::string kFill = "one=one two=two three=three ";
const std::string kFilled = "k: one=one three=three two=two ";

constexpr const char* kUnited =
    "The files of your settings beside D/hkcu.reg were replaced while a program used them. The "
    "settings of both are kept; where they differ, those of the new files hold.\n\nThe former "
    "settings have been kept as D/hkcu.reg.former.~";

struct RegistryStoreTest : testing::Test {
  /// What the person was told of files in a directory, D, since the last question.
  std::string Told(const TempDirectory& directory) {
    std::string told;
    for (const auto& box : std::exchange(prompts_.shown, {})) {
      EXPECT_EQ(box.type, UINT{BOX_EXCLAMATION});
      told += box.text + "~";
    }
    return directory.Shortened(told, "D");
  }

  std::string Run(const std::string& command) { return RunShell(directory_.path(), command); }

  const TempDirectory directory_;
  FailingSystemCalls calls_;
  User user_{directory_.path(), calls_};
  ScriptedPrompts prompts_;
};

TEST_F(RegistryStoreTest, AFileThatIsCutOffIsReadUpToItsLastChange) {
  for (const std::string file : {"hkcu.journal", "hkcu.reg"}) {
    const bool is_snapshot = file == "hkcu.reg";
    const TempDirectory whole;
    Fill(whole.path(), kFill + (is_snapshot ? "leave" : ""));
    const std::string bytes = whole.Get(file);
    std::string states;
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
      SCOPED_TRACE(file + " cut to " + std::to_string(cut));
      const TempDirectory directory;
      fs::copy(whole.path(), directory.path());
      fs::resize_file(directory / file, cut);
      directory.Put("hkcu.reg.bad", "of last time");
      User user(directory.path());
      const std::string all = user.All();
      if (!states.ends_with("|" + all)) states += "|" + all;
      // A journal ends anywhere when a writer is killed; a snapshot doesn't, and it is kept.
      const std::string told = Told(directory);
      EXPECT_TRUE(is_snapshot ? told.ends_with("as D/hkcu.reg.bad.1.~") : told.empty()) << told;
      EXPECT_EQ(directory.Get("hkcu.reg.bad.1"), is_snapshot ? bytes.substr(0, cut) : "(none)");
      EXPECT_EQ(directory.Mode("hkcu.reg.bad.1"), is_snapshot ? 0600u : 0u);
      // What comes next stands behind the last whole record, and is there for the next one.
      user.Do("z=next");
      EXPECT_TRUE(directory.Get("hkcu.journal").ends_with(std::string("z\3\0\0\0next", 9)));
      EXPECT_EQ(Found(directory.path()), (all.empty() ? "k: " : all) + "z=next ");
      EXPECT_EQ(Told(directory), "");
    }
    EXPECT_EQ(states + (is_snapshot ? "" : "|" + kFilled),
              "||k: |k: one=one |k: one=one two=two |" + kFilled);
  }
}

TEST_F(RegistryStoreTest, AGrownJournalIsFoldedWhileOthersHaveItOpenElseByItsLastUser) {
  User users[] = {User(directory_.path()), User(directory_.path()), User(directory_.path())};
  User& sleeper = users[2];
  sleeper.Do("first=x +k\\doomed");
  const HKEY asleep = sleeper.OpenKey(kCurrentUser, "k").value;
  const HKEY doomed = sleeper.OpenKey(asleep, "doomed").value;
  users[0].Do("!k\\doomed");
  // The reader follows each fold, the sleeper wakes when all are over.
  std::string folds;
  for (std::uintmax_t i = 0, size = 0; i < 48; ++i) {
    const std::string value = "v" + std::to_string(i % 4) + "=#" + std::to_string(90'000 + i);
    users[i % 2].Do(value);
    ASSERT_NE(users[(i + 1) % 2].All().find(" " + value + " "), std::string::npos) << i;
    const std::uintmax_t now = fs::file_size(directory_ / "hkcu.journal");
    if (now < std::exchange(size, now)) folds += std::to_string(i) + " ";
  }
  EXPECT_EQ(folds, "11 24 37 ") << "at 1 MiB, and then where it is longer than the snapshot";
  EXPECT_TRUE(Read(sleeper, asleep, "first") == "x" && Read(sleeper, doomed, "v") == "(error 1)");
  EXPECT_TRUE(sleeper.SetValue(asleep, "last", 1, "x").ok());
  for (User& user : users) {
    EXPECT_EQ(user.All(), "k: first=x last=x v0=#90044 v1=#90045 v2=#90046 v3=#90047 ");
    EXPECT_GT(fs::file_size(directory_ / "hkcu.journal"), 64u) << "only the last user folds";
    user.Do("leave");
  }
  EXPECT_EQ(fs::file_size(directory_ / "hkcu.journal"), 64u);
  EXPECT_EQ(Found(directory_.path()), sleeper.All());
}

TEST_F(RegistryStoreTest, WhatARunningProcessKnowsOutlivesItsFiles) {
  for (const std::string strike :
       {"truncate -s 0 hkcu.journal", "truncate -s 50 hkcu.journal", "truncate -s 64 hkcu.journal",
        "truncate -s 104 hkcu.journal", "rm hkcu.journal", "yes | head -c 500 > hkcu.journal",
        "head -c 48 /dev/zero | dd of=hkcu.journal conv=notrunc status=none", "rm *",
        "mv hkcu.journal moved # and another begins it anew"}) {
    for (const std::string more : {"", "more=z "}) {
      SCOPED_TRACE(strike + more);
      const TempDirectory directory;
      User user(directory.path()), behind(directory.path());
      user.Do("gone=x");
      EXPECT_EQ(behind.All(), "k: gone=x ");
      user.Do("-gone old=y");
      RunShell(directory.path(), strike);
      const std::string others = strike.ends_with("anew") ? "another=x " : "";
      User(directory.path()).Do(others);
      behind.Do(more);
      user.Do("new=n");
      const char* const state = strike.starts_with("rm") ? "was missing"
                                : others.empty()         ? "was "
                                                         : "was damaged";
      EXPECT_THAT(Told(directory), testing::HasSubstr(state));
      const std::string all = "k: " + others + more + "new=n old=y ";
      EXPECT_EQ(Found(directory.path()), all);
      EXPECT_TRUE(behind.All() == all && user.All() == all);
    }
  }
}

TEST_F(RegistryStoreTest, AJournalBegunAnewAndFoldedIsUnitedWithWhatAProgramKnew) {
  user_.Do("mine=1 both=old");
  fs::remove(directory_ / "hkcu.journal");
  User stranger(directory_.path());
  stranger.Do("its=2 both=new l=#345000 l=#345000 l=#345000 l=#345000 -l");
  ASSERT_TRUE(fs::exists(directory_ / "hkcu.reg"));
  user_.Do("next=3");
  EXPECT_TRUE(user_.All() == "k: both=new its=2 mine=1 next=3 " && stranger.All() == user_.All());
  const std::string former = directory_.Get("hkcu.reg.former");
  EXPECT_NE(former.find("\"both\"=hex:6f,6c,64"), std::string::npos) << "is there to look up";
  EXPECT_EQ(Told(directory_), kUnited);
}

TEST_F(RegistryStoreTest, AJournalRemovedUnderSeveralProgramsLosesNothingOfAny) {
  for (const char* removal : {"rm hkcu.journal", "rm hkcu.*", "mv hkcu.journal moved"}) {
    for (const std::string order : {"012", "210", "102", "120"}) {
      const TempDirectory directory;
      {
        // The first one is behind, and the last one ahead of all.
        User users[] = {User(directory.path()), User(directory.path()), User(directory.path())};
        users[0].Do("a=x");
        users[1].Do("b=x");
        users[2].Do("c=x gone=x -gone");
        RunShell(directory.path(), removal);
        User stranger(directory.path());
        stranger.Do("new=x -new");
        for (const char each : order) users[each - '0'].Do(std::string("then") + each + "=x");
        stranger.Do("last=x");
      }
      EXPECT_EQ(Found(directory.path()), "k: a=x b=x c=x last=x then0=x then1=x then2=x ")
          << removal << order;
    }
  }
}

TEST_F(RegistryStoreTest, ASnapshotPutUnderARunningProgramIsKeptAsideAndTold) {
  user_.Do("a=old leave");
  const std::string backup = directory_.Get("hkcu.reg");
  user_.Do("a=new leave b=x");
  directory_.Put("hkcu.reg", backup);
  user_.Do("leave");
  EXPECT_TRUE(user_.All() == "k: a=new b=x " && directory_.Get("hkcu.reg.bad") == backup);
  EXPECT_EQ(Told(directory_),
            "The file D/hkcu.reg of your settings was replaced while a program used it, by one of "
            "another time. The settings that the program knew hold.\n\nThe replaced file has been "
            "kept as D/hkcu.reg.bad.~");
  user_.Do("b=x");
  directory_.Put("hkcu.reg", backup);
  EXPECT_EQ(User(directory_.path()).All(), "k: a=old ");
  EXPECT_EQ(user_.All(), "k: a=old b=x ") << "the newer file's, and the rest";
  EXPECT_NE(directory_.Get("hkcu.reg.former").find("\"a\"=hex:6e,65,77"), std::string::npos);
  EXPECT_TRUE(Told(directory_).ends_with(kUnited) && Found(directory_.path()) == user_.All());
}

TEST_F(RegistryStoreTest, FilesThatAreDamagedOrOfDifferentTimesAreToldKeptAndNotMixed) {
  const std::string nothing = "There was nothing of the file to keep.~";
  const std::string kept = "The damaged file has been kept as D/hkcu.";
  const std::string reg = "The file D/hkcu.reg of your settings was ";
  const std::string is_kept = ". What could be read of it is kept: ";
  const std::string lost = " lines could not be read.\n\n";
  const std::string journal = "The file D/hkcu.journal of your latest settings was ";
  const std::string changes =
      ". The changes that could be read of it, or that this program knew, are kept.\n\n";
  std::map<std::string, std::string> say{
      {"no reg", reg + "missing" + is_kept + "0 values. 0" + lost + nothing},
      {"bad reg", reg + "damaged" + is_kept + "2 values. 1" + lost + kept + "reg.bad.~"},
      {"no journal", journal + "missing" + changes + nothing},
      {"bad journal", journal + "damaged" + changes + kept + "journal.bad.~"},
      {"other times",
       "The file D/hkcu.journal of your latest settings and the file D/hkcu.reg are of different "
       "times, as if one of them came from a backup. The settings of D/hkcu.reg hold, and none of "
       "the other file is mixed into them.\n\nThe other file has been kept as "
       "D/hkcu.journal.bad.~"}};
  // The files behind each change, and some as an earlier version wrote them, which don't tell of
  // each other.
  int number = 0;
  for (const char* step : {"a=one", "leave", "b=two", "c=three", "leave", "a=four"}) {
    user_.Do(step);
    Run("for f in hkcu.*; do cp $f " + std::to_string(++number) + "${f#hkcu}; done");
  }
  directory_.Put("0.reg",
                 "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\k]\r\n\"a\"=hex:6f,6e,65\r\n; 1 values, "
                 "checksum b345d90d\r\n");
  const std::string to_earlier =
      "for at in 9 14 15; do dd if=/dev/zero of=hkcu.journal bs=4 count=1 conv=notrunc status=none "
      "seek=$at; done";
  // The two pairs, both of an earlier version; a fold that was broken off, the second one, and that
  // with less on the disk; and what is told.
  for (const auto& [snapshot, latest, strike, text, values] : Cases<5>(R"(
      2 => 4 => : => => a=one b=two c=three ;; 5 => 6 => : => => a=four b=two c=three
      0 => 4 => earlier => => a=one b=two c=three ;; 2 => 1 => : => => a=one
      5 => 4 => : => => a=one b=two c=three ;; 5 => 3 => : => => a=one b=two c=three
      2 => 6 => : => other times => a=one ;; 5 => 1 => : => other times => a=one b=two c=three
      0 => 6 => : => other times => a=one ;; 5 => 5 => rm hkcu.reg => no reg
      5 => 6 => earlier => other times => a=one b=two c=three
      5 => 5 => sed -i s/\"=hex:74,77/::/ hkcu.reg => bad reg => a=one c=three
      5 => 5 => rm hkcu.journal => no journal => a=one b=two c=three
      5 => 5 => truncate -s 63 hkcu.journal => bad journal => a=one b=two c=three
      2 => 4 => sed -i s/REG/ReG/ hkcu.journal => bad journal => a=one b=two c=three
      2 => 4 => sed -i s/two/tvo/ hkcu.journal => bad journal => a=one c=three
      2 => 4 => sed -i s/three/tiree/ hkcu.journal => bad journal => a=one b=two)")) {
    SCOPED_TRACE(snapshot + ' ' + latest + ' ' + strike);
    const TempDirectory directory;
    directory.Put("hkcu.reg", directory_.Get(snapshot + ".reg"));
    directory.Put("hkcu.journal", directory_.Get(latest + ".journal"));
    RunShell(directory.path(), strike == "earlier" ? to_earlier : strike);
    const std::string bad = directory.Get("hkcu.journal");
    const std::string left = "k: " + values + (values.empty() ? "" : " ");
    const std::string& told = say[text];
    User user(directory.path());
    EXPECT_TRUE(strike != ":" || user.All() == left);
    user.Do("z=new");
    EXPECT_EQ(user.All(), left + "z=new ");
    EXPECT_EQ(Told(directory), told);
    EXPECT_EQ(directory.Get("hkcu.journal.bad"), told.ends_with("journal.bad.~") ? bad : "(none)");
    EXPECT_EQ(Found(directory.path()), left + "z=new ");
    // A second time, in the same process, is news again.
    fs::resize_file(directory / "hkcu.journal", 0);
    EXPECT_EQ(user.All(), left + "z=new ");
    EXPECT_TRUE(Told(directory) == say["no journal"] && Found(directory.path()) == left + "z=new ");
    EXPECT_EQ(Told(directory), "");
  }
}

TEST_F(RegistryStoreTest, WhatIsNoStoreOrCannotBeReadIsAnErrorAtOnceAndNeverToldAsAbsent) {
  using enum ErrorKind;
  for (const std::string file : {"hkcu.journal", "hkcu.reg"}) {
    for (const auto& [strike, number, kind] :
         Rows<const char*, int, ErrorKind>{{"rm -f $F; mkfifo $F", 0, kInvalidArgument},
                                           {"truncate -s 1073741825 $F", 0, kNoSpace},
                                           {":", EACCES, kAccessDenied},
                                           {":", ENOTDIR, kOther},
                                           {":", EMFILE, kNoSpace}}) {
      SCOPED_TRACE(testing::Message() << file << ' ' << strike << ' ' << number);
      const TempDirectory directory;
      FailingSystemCalls calls;
      User user(directory.path(), calls);
      Fill(directory.path(), kFill + "leave");
      RunShell(directory.path(), "F=" + file + "; " + strike);
      calls.FailEach("Open", number, file);
      ExpectEach(kind,
                 {user.OpenKey(kCurrentUser, "none").error, user.EnumValue(kCurrentUser, 0).error,
                  user.ReadValue(kCurrentUser, "none", {}).error, user.Try("none=x")});
      calls.FailEach("Open", 0);
      RunShell(directory.path(), "rm hkcu.*");
      user.Do("a=1");
    }
  }
}

TEST_F(RegistryStoreTest, NobodyElseCanReadTheFiles) {
  Fill(directory_.path(), kFill + "leave");
  Run("echo bait > bait; ln -s bait hkcu.reg.tmp; ln -s made hklm.journal; chmod 777 hkcu.* .");
  for (const char* step : {"x=before", "x=after leave"}) {
    user_.Do(step);
    EXPECT_EQ(Run("stat -c %a hkcu.reg hkcu.journal .; cat bait"), "600\n600\n700\nbait\n") << step;
  }
  // Nor does anyone make files elsewhere through them, or keep them from being written.
  EXPECT_EQ(user_.CreateKey(kLocalMachine, "k").error.kind, ErrorKind::kAlreadyExists);
  EXPECT_EQ(directory_.Get("made"), "(none)");
  Run("rm hkcu.reg.tmp; mkdir hkcu.reg.tmp");
  user_.Do("late=x leave");
  EXPECT_NE(directory_.Get("hkcu.reg").find("\"late\"=hex:78"), std::string::npos);
}

TEST_F(RegistryStoreTest, AWriterThatWasStoppedStopsNobodyForEver) {
  struct SlowPauses : SystemCalls {
    void Pause(unsigned time) override { now += 4 * std::chrono::microseconds(time); }
    std::chrono::nanoseconds MonotonicTime() override { return now; }
    long Seconds() const { return now / std::chrono::seconds(1); }
    std::chrono::nanoseconds now{};
  } calls;
  Fill(directory_.path(), kFill);
  directory_.Put("a.ini", "[s]\nk=1\n");
  const auto profiles = MakeProfileFiles(calls);
  User user(directory_.path(), calls), late(directory_.path(), calls);
  user.Do("one=1");
  // One who is stopped while holding the locks.
  const FileDescriptor stopped(calls, ::open((directory_ / "hkcu.journal").c_str(), O_RDONLY));
  const FileDescriptor other(calls, ::open((directory_ / "a.ini").c_str(), O_RDONLY));
  for (const auto* file : {&stopped, &other}) ASSERT_EQ(::flock(file->get(), LOCK_EX), 0);
  EXPECT_EQ(user.All(), "k: one=1 three=three two=two ") << "what is known needs no lock";
  for (const auto& [times, work, seconds] : Rows<int, std::function<Error()>, long>{
           {300, [&] { return late.OpenKey(kCurrentUser, "k").error; }, 20},  // all together
           {300, [&] { return late.CreateKey(kCurrentUser, "k").error; }, 20},
           {1, [&] { return late.Do("leave"), user.Try("one=2"); }, 40},
           {1, [&] { return user.Leave(); }, 40},  // which doesn't wait again
           {9, [&] { return profiles->Write(directory_ / "a.ini", "s", "k", "2"); }, 60}}) {
    for (int i = 0; i < times; ++i) EXPECT_EQ(work().kind, ErrorKind::kBusy);
    EXPECT_EQ(calls.Seconds(), seconds);
  }
  // What is free is had at once; another time it is worth while to wait again.
  ASSERT_EQ(::flock(stopped.get(), LOCK_UN), 0);
  user.Do("one=2");
  ASSERT_EQ(::flock(stopped.get(), LOCK_EX), 0);
  for (const long seconds : {80, 120}) {
    EXPECT_TRUE(user.Try("one=3").kind == ErrorKind::kBusy && calls.Seconds() == seconds);
    calls.now += std::chrono::seconds(20);
  }
}

TEST_F(RegistryStoreTest, WhatAnAdministratorWritesStaysTheUsers) {
  if (::geteuid() != 0) GTEST_SKIP() << "only an administrator can give files away";
  Run("chown 1234:4321 .");
  const std::string files = directory_ / ".config/velmora";
  const auto owners = [&](std::string of) { return RunShell(files, "stat -c '%u:%g %a' " + of); };
  calls_.FailEach("ChangeOwner", EPERM);
  EXPECT_EQ(User(files, calls_).Try("never=x leave").kind, ErrorKind::kAccessDenied);
  EXPECT_EQ(directory_.Count(), 0u) << "what its owner couldn't read isn't left there";
  User(files).Do("a=x leave");
  EXPECT_TRUE(MakeProfileFiles(RealSystemCalls())->Write(files + "/a.ini", "s", "k", "v").ok());
  EXPECT_EQ(owners(".. ."), "1234:4321 700\n1234:4321 700\n");
  EXPECT_EQ(owners("hkcu.journal hkcu.reg a.ini"), "1234:4321 600\n1234:4321 600\n1234:4321 600\n");
  // As they were, rather than as the directory is.
  RunShell(files, "chown 77:88 hkcu.reg; chmod 400 hkcu.reg");
  User(files).Do("b=x leave");
  EXPECT_EQ(owners("hkcu.reg"), "77:88 400\n");
  User(files, calls_).Do("c=x leave");  // it is in the journal
  EXPECT_EQ(owners("hkcu.reg"), "77:88 400\n");
  RunShell(files, "echo damage >> hkcu.reg");
  EXPECT_EQ(User(files).All(), "k: a=x b=x c=x ");
  EXPECT_EQ(owners("hkcu.reg.bad"), "1234:4321 600\n");
}

TEST_F(RegistryStoreTest, AFoldRemovesWhatIsLeftOfItsOwnSnapshotsByWhomever) {
  calls_.FailEach("Open", EACCES, "-1-2-3.tmp");
  user_.Do("a=x leave b=x");
  Run("touch .dqhkcu-1-2-3.tmp .dqhkcu-7-8-9.tmp .dqhklm-1-2-3.tmp .dqhkcu-4-5-6.tmp");
  const int live = ::open((directory_ / ".dqhkcu-4-5-6.tmp").c_str(), O_RDONLY);
  EXPECT_EQ(::flock(live, LOCK_EX), 0);
  user_.Do("leave");
  ::close(live);
  EXPECT_EQ(Run("ls -d .dq*"), ".dqhkcu-4-5-6.tmp\n.dqhklm-1-2-3.tmp\n");
}

TEST_F(RegistryStoreTest, WhoOnlyReadsLeavesNothingWhereNothingIs) {
  const std::string files = directory_ / "fresh/registry";
  User reader(files);
  for (int twice = 0; twice < 2; ++twice) {
    EXPECT_EQ(reader.All(), "");
    ExpectEach(ErrorKind::kNotFound,
               {reader.OpenKey(kLocalMachine, "k").error, reader.DeleteValue(kCurrentUser, "v"),
                reader.ReadValue(kCurrentUser, "v", {}).error, reader.DeleteKey(kLocalMachine, "k"),
                reader.EnumKey(kClassesRoot, 0).error});
    reader.Do("flush leave");
    EXPECT_EQ(directory_.Count(), 0u);
  }
  User writer(files);
  writer.Do("v=x");
  EXPECT_EQ(reader.All(), "k: v=x ");
  EXPECT_EQ(reader.EnumKey(kLocalMachine, 0).error.kind, ErrorKind::kNotFound);
  EXPECT_EQ(directory_.Get("fresh/registry/hklm.journal"), "(none)");
  // A reader that knows what was there puts it back.
  reader.Do("leave");
  fs::remove_all(directory_ / "fresh");
  EXPECT_TRUE(reader.All() == "k: v=x " && Found(files) == "k: v=x ");
}

TEST_F(RegistryStoreTest, ASyncThatFailsIsMadeUpForLater) {
  struct : FailingSystemCalls {
    int Sync(int fd) override {
      if (++syncs == failing) FailEach("Sync", EIO, "", 1);
      return FailingSystemCalls::Sync(fd);
    }
    int syncs = 0, failing = 0;
  } calls;
  calls.FailEach("Sync", EIO);
  User user(directory_.path(), calls);
  user.Do("a=1");
  EXPECT_FALSE(user.Leave().ok() || user.Flush().ok());
  calls.FailEach("Sync", calls.syncs = 0);
  user.Do("leave");
  EXPECT_GE(calls.syncs, 2) << "the journal, and the directory that it was made in";
  // A fold syncs the snapshot, the directory and the journal; the journal is synced if one fails.
  for (const auto& [failing, syncs] : Rows<int, int>{{0, 3}, {1, 2}, {2, 3}, {3, 4}}) {
    calls.failing = failing;
    calls.syncs = 0;
    user.Do("a=1 leave");
    EXPECT_EQ(calls.syncs, syncs) << failing;
  }
}

TEST_F(RegistryStoreTest, ADirectoryThatCannotBeWrittenCanStillBeRead) {
  for (const bool has_journal : {false, true}) {
    const TempDirectory directory;
    Fill(directory.path(), kFill + "leave");
    if (!has_journal) fs::remove(directory / "hkcu.journal");
    RunShell(directory.path(), "chmod 444 hkcu.*; chmod 555 .");
    EXPECT_TRUE(AllEndWell(1, [&](int) {
      ASSERT_TRUE(::getuid() != 0 || (::setgid(65'534) == 0 && ::setuid(65'534) == 0));
      User user(directory.path());
      EXPECT_EQ(user.All(), kFilled);
      EXPECT_EQ(user.OpenKey(kLocalMachine, "k").error.kind, ErrorKind::kNotFound);
      EXPECT_EQ(user.Try("two=x").kind, ErrorKind::kAccessDenied);
      EXPECT_EQ(user.CreateKey(kLocalMachine, "k").error.kind, ErrorKind::kAccessDenied);
      User none(directory / "none");
      EXPECT_EQ(user.All() + none.All(), kFilled);
      EXPECT_EQ(none.Try("a=x").kind, ErrorKind::kAccessDenied);
    }));
  }
  EXPECT_EQ(User("").Try("a=x").kind, ErrorKind::kNotFound);
}

TEST_F(RegistryStoreTest, WithoutMappingsAndUnlockingChangesAreSeenAllTheSame) {
  for (const char* call : {"Map", "Unlock"}) {
    const TempDirectory directory;
    FailingSystemCalls calls;
    calls.FailEach(call, EIO);
    User plain(directory.path()), broken(directory.path(), calls);
    for (const std::string i : {"0", "1"}) {
      plain.Do("v=" + i);
      broken.Do("w=" + i);
      EXPECT_EQ(broken.All(), "k: v=" + i + " w=" + i + " ");
      EXPECT_EQ(plain.All(), broken.All());
    }
  }
}

TEST(RegistryPage, ABusErrorThatIsOfNoPageGoesToWhoHandledThemBefore) {
  using namespace ::testing;
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // in a process that has had no page yet
  const auto handle = [](const struct sigaction& former) {
    ::sigaction(SIGBUS, &former, nullptr);
    User(TempDirectory().path()).Do("a=1");
    ::raise(SIGBUS);
    ::_exit(3);
  };
  struct sigaction none {
  }, ignored{}, plain{}, informed{};
  ignored.sa_handler = SIG_IGN;
  plain.sa_handler = [](int number) { ::_exit(number == SIGBUS ? 1 : 9); };
  informed.sa_sigaction = [](int, siginfo_t* info, void*) { ::_exit(info->si_code < 0 ? 2 : 9); };
  informed.sa_flags = SA_SIGINFO;
  EXPECT_EXIT(handle(none), KilledBySignal(SIGBUS), "");
  EXPECT_EXIT(handle(ignored), ExitedWithCode(3), "");
  EXPECT_EXIT(handle(plain), ExitedWithCode(1), "");
  EXPECT_EXIT(handle(informed), ExitedWithCode(2), "");
}

}  // namespace
}  // namespace dq::platform::posix
