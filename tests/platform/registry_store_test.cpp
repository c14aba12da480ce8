// The files of the registry when they are damaged, can't be written, or are deleted.

#include "dqlib/platform/posix/registry_store.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "dqlib/platform/posix/registry.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/profile_files.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/registry_dump.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"

namespace dq::platform::posix {
namespace {

namespace fs = std::filesystem;

using dq::testing::ScriptedPrompts;
using test::Dump;
using test::Read;
using test::RegistryDump;
using TempDirectory = test::MemoryDirectory;

constexpr std::size_t kHeader = kJournalHeaderSize;
const std::string kLarge(345'000, 'x');

HKEY Key(Registry& registry, std::string_view path = "k") {
  return registry.CreateKey(kCurrentUser, path).value;
}

Error Set(Registry& registry, std::string_view name, std::string_view data) {
  const Result<HKEY> key = registry.CreateKey(kCurrentUser, "k");
  if (!key.ok()) return key.error;
  const Error error = registry.SetValue(key.value, name, REGISTRY_BINARY, data);
  registry.CloseKey(key.value);
  return error;
}

std::string Get(Registry& registry, std::string_view name) {
  const HKEY key = registry.OpenKey(kCurrentUser, "k").value;
  const std::string data = Read(registry, key, name);
  registry.CloseKey(key);
  return data;
}

/// What a program finds that opens the files now.
RegistryDump DumpOf(const std::string& files) {
  FileRegistry registry(files);
  return Dump(registry);
}

/// A directory with three values in its journal, or in its snapshot.
void Fill(const TempDirectory& directory, bool in_snapshot) {
  const TempDirectory work;
  FileRegistry registry(work.path());
  for (const char* name : {"one", "two", "three"}) EXPECT_TRUE(Set(registry, name, name).ok());
  EXPECT_TRUE(!in_snapshot || registry.Leave().ok());
  fs::copy(work.path(), directory.path());  // as a process that is killed leaves them
}

struct RegistryStoreTest : ::testing::Test {
  const TempDirectory directory_;
  ScriptedPrompts prompts_;
};

TEST_F(RegistryStoreTest, ATornJournalIsReadUpToItsLastChangeWithoutAWord) {
  const TempDirectory full;
  Fill(full, false);
  const std::string bytes = full.Get("hkcu.journal");
  std::size_t whole_before = 0;
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
    const TempDirectory directory;
    directory.Put("hkcu.journal", bytes.substr(0, cut));
    FileRegistry registry(directory.path());
    const RegistryDump dump = Dump(registry);
    const std::size_t whole = dump.size() == 1 ? 0 : 1 + dump.at("k").size();
    EXPECT_GE(whole, whole_before) << cut;
    whole_before = whole;
    // What comes next stands behind the last whole record, and is there for the next one.
    EXPECT_TRUE(Set(registry, "next", "x").ok()) << cut;
    EXPECT_EQ(DumpOf(directory.path()), Dump(registry)) << cut;
    const std::string journal = directory.Get("hkcu.journal");
    RegistryTree tree;
    const auto records = std::string_view(journal).substr(kHeader);
    const auto epoch = DecodeJournalHead(journal)->epoch;
    EXPECT_EQ(ReplayJournal(records, epoch, kHeader, tree).end, journal.size()) << cut;
  }
  EXPECT_EQ(whole_before, 4u);
  EXPECT_TRUE(prompts_.shown.empty());
}

TEST_F(RegistryStoreTest, ADamagedSnapshotIsSalvagedKeptAndToldOnce) {
  const TempDirectory full;
  Fill(full, true);
  const std::string bytes = full.Get("hkcu.reg");
  const std::string journal = full.Get("hkcu.journal");
  for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
    const TempDirectory directory;
    directory.Put("hkcu.reg", bytes.substr(0, cut));
    directory.Put("hkcu.journal", journal);
    directory.Put("hkcu.reg.bad", "of last time");
    ScriptedPrompts prompts;
    SCOPED_TRACE(cut);
    const RegistryDump salvaged = DumpOf(directory.path());
    for (const auto& [path, values] : salvaged) {
      for (const auto& [name, value] : values) EXPECT_EQ(name, value.second);
    }
    ASSERT_EQ(prompts.shown.size(), 1u);
    EXPECT_EQ(prompts.shown[0].type, UINT{BOX_EXCLAMATION});
    EXPECT_NE(prompts.shown[0].text.find(directory / "hkcu.reg.bad.1"), std::string::npos);
    EXPECT_EQ(directory.Get("hkcu.reg.bad.1"), bytes.substr(0, cut));
    EXPECT_EQ(directory.Mode("hkcu.reg.bad.1"), 0600u);
    EXPECT_EQ(DumpOf(directory.path()), salvaged);
    EXPECT_EQ(prompts.shown.size(), 1u);
  }
}

TEST_F(RegistryStoreTest, AJournalDamagedInTheMiddleLosesOnlyWhatIsDamaged) {
  const TempDirectory full;
  Fill(full, false);
  const std::string bytes = full.Get("hkcu.journal");
  for (const auto& [lost, at] : test::Rows<std::string, std::size_t>{
           {"", 3}, {"", 9}, {"two", bytes.find("two")}, {"three", bytes.find("three")}}) {
    SCOPED_TRACE(at);
    const TempDirectory directory;
    std::string damaged = bytes;
    damaged[at] ^= 1;
    directory.Put("hkcu.journal", damaged);
    ScriptedPrompts prompts;
    FileRegistry registry(directory.path());
    for (const std::string name : {"one", "two", "three"}) {
      EXPECT_EQ(Get(registry, name), name == lost ? "(error 1)" : name);
    }
    ASSERT_EQ(prompts.shown.size(), 1u);
    EXPECT_EQ(directory.Get("hkcu.journal.bad"), damaged);
    EXPECT_TRUE(Set(registry, "next", "x").ok());
    EXPECT_EQ(DumpOf(directory.path()), Dump(registry));
    EXPECT_EQ(prompts.shown.size(), 1u);
  }
}

TEST_F(RegistryStoreTest, AGrownJournalIsFoldedWhileOthersHaveItOpen) {
  FileRegistry writer(directory_.path());
  FileRegistry reader(directory_.path());
  FileRegistry sleeper(directory_.path());
  EXPECT_TRUE(Set(sleeper, "first", "x").ok());
  const HKEY asleep = sleeper.OpenKey(kCurrentUser, "k").value;
  const HKEY doomed = Key(sleeper, "doomed");
  EXPECT_TRUE(writer.DeleteKey(kCurrentUser, "doomed").ok());
  // Four folds and more; the reader follows each, the sleeper wakes when all are over.
  for (int i = 0; i < 700; ++i) {
    const std::string data(10'000, static_cast<char>('a' + i % 26));
    ASSERT_TRUE(Set(i % 2 ? writer : reader, "v" + std::to_string(i % 60), data).ok());
    ASSERT_EQ(Get(i % 2 ? reader : writer, "v" + std::to_string(i % 60)), data);
  }
  EXPECT_LT(fs::file_size(directory_ / "hkcu.journal"), 3u << 20);
  EXPECT_GT(fs::file_size(directory_ / "hkcu.reg"), 600'000u);
  EXPECT_EQ(Read(sleeper, asleep, "v59").size(), 10'000u);
  EXPECT_EQ(Read(sleeper, doomed, "v"), "(error 1)");
  EXPECT_TRUE(sleeper.SetValue(asleep, "last", 1, "x").ok());
  EXPECT_EQ(Dump(writer), Dump(sleeper));
}

TEST_F(RegistryStoreTest, OnlyTheLastUserFolds) {
  auto first = std::make_unique<FileRegistry>(directory_.path());
  auto second = std::make_unique<FileRegistry>(directory_.path());
  EXPECT_TRUE(Set(*first, "a", "1").ok());
  EXPECT_EQ(Get(*second, "a"), "1");
  first.reset();
  EXPECT_EQ(directory_.Get("hkcu.reg"), "(none)");
  second.reset();
  EXPECT_EQ(fs::file_size(directory_ / "hkcu.journal"), kHeader);
  EXPECT_EQ(Get(*std::make_unique<FileRegistry>(directory_.path()), "a"), "1");
}

/// Something that happens to the files of a store from outside.
using Mishap = std::function<void(const TempDirectory&)>;

Mishap CutTo(std::size_t size) {
  return [=](const TempDirectory& d) { fs::resize_file(d / "hkcu.journal", size); };
}
Mishap Removed(const std::string& file) {
  return [=](const TempDirectory& d) { fs::remove(d / file); };
}
void Trash(const TempDirectory& d) { d.Put("hkcu.journal", std::string(500, 'x')); }
void RemoveAll(const TempDirectory& d) {
  for (const auto& entry : fs::directory_iterator(d.path())) fs::remove(entry);
}
void BeginAnew(const TempDirectory& d) {
  fs::remove(d / "hkcu.journal");
  EXPECT_TRUE(Set(*std::make_unique<FileRegistry>(d.path()), "of another", "x").ok());
}

TEST_F(RegistryStoreTest, WhatARunningProcessKnowsOutlivesItsFiles) {
  for (const auto& [what, strike] :
       test::Rows<const char*, Mishap>{{"journal emptied", CutTo(0)},
                                       {"header cut", CutTo(50)},
                                       {"records cut off", CutTo(kHeader)},
                                       {"record cut", CutTo(kHeader + 40)},
                                       {"journal deleted", Removed("hkcu.journal")},
                                       {"journal trashed", Trash},
                                       {"everything deleted", RemoveAll},
                                       {"begun anew by another", BeginAnew}}) {
    for (const bool behind_sees_it_first : {false, true}) {
      SCOPED_TRACE(what);
      const TempDirectory directory;
      ScriptedPrompts prompts;
      FileRegistry registry(directory.path());
      FileRegistry behind(directory.path());
      const HKEY key = Key(registry);
      EXPECT_TRUE(Set(registry, "gone", "x").ok());
      EXPECT_EQ(Get(behind, "gone"), "x");
      EXPECT_TRUE(registry.DeleteValue(key, "gone").ok());
      EXPECT_TRUE(Set(registry, "old", "y").ok());
      strike(directory);
      EXPECT_TRUE(!behind_sees_it_first || Set(behind, "more", "z").ok());
      EXPECT_EQ(Read(registry, key, "old"), "y");
      EXPECT_TRUE(Set(registry, "new", "n").ok());
      EXPECT_GE(prompts.shown.size(), 1u);
      const TempDirectory copy;
      fs::copy(directory.path(), copy.path());
      RegistryDump next = DumpOf(copy.path());
      EXPECT_EQ(next["k"]["old"].second + next["k"]["new"].second, "yn");
      EXPECT_EQ(next["k"].contains("more"), behind_sees_it_first);
      EXPECT_FALSE(next["k"].contains("gone"));
      EXPECT_EQ(Dump(behind), next);
      EXPECT_EQ(Dump(registry), next);
    }
  }
}

TEST_F(RegistryStoreTest, AJournalBegunAnewAndFoldedIsUnitedWithWhatAProgramKnew) {
  FileRegistry registry(directory_.path());
  EXPECT_TRUE(Set(registry, "mine", "1").ok() && Set(registry, "both", "old").ok());
  fs::remove(directory_ / "hkcu.journal");
  FileRegistry stranger(directory_.path());
  EXPECT_TRUE(Set(stranger, "theirs", "2").ok() && Set(stranger, "both", "new").ok());
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(Set(stranger, "large", kLarge).ok());
  ASSERT_TRUE(fs::exists(directory_ / "hkcu.reg"));
  EXPECT_TRUE(Set(registry, "next", "3").ok());
  for (FileRegistry* each : {&registry, &stranger}) {
    EXPECT_EQ(Get(*each, "mine") + Get(*each, "theirs") + Get(*each, "both") + Get(*each, "next"),
              "12new3");
  }
  const std::string former = directory_.Get("hkcu.reg.former");
  EXPECT_NE(former.find("\"both\"=hex:6f,6c,64"), std::string::npos) << "is there to look up";
  ASSERT_GE(prompts_.shown.size(), 1u);
  EXPECT_NE(prompts_.shown[0].text.find(directory_ / "hkcu.reg.former"), std::string::npos);
}

TEST_F(RegistryStoreTest, AJournalRemovedUnderSeveralProgramsLosesNothingOfAny) {
  for (const std::string removal : {"hkcu.journal", "hkcu.reg", "moved"}) {
    for (const std::string order : {"012", "210", "102", "120"}) {
      SCOPED_TRACE(removal + order);
      const TempDirectory directory;
      {
        // The first one is behind, and the last one ahead of all.
        FileRegistry programs[] = {FileRegistry(directory.path()), FileRegistry(directory.path()),
                                   FileRegistry(directory.path())};
        for (std::size_t i : {0u, 1u, 2u})
          EXPECT_TRUE(Set(programs[i], std::string(1, "abc"[i]), "x").ok());
        EXPECT_TRUE(Set(programs[2], "gone", "x").ok());
        EXPECT_TRUE(programs[2].DeleteValue(Key(programs[2]), "gone").ok());
        fs::rename(directory / "hkcu.journal", directory / "moved");
        if (removal != "moved") fs::remove(directory / "moved");
        if (removal == "hkcu.reg") fs::remove(directory / "hkcu.reg");
        FileRegistry stranger(directory.path());
        EXPECT_TRUE(Set(stranger, "new", "x").ok());
        EXPECT_TRUE(stranger.DeleteValue(Key(stranger), "new").ok());
        for (const char each : order) {
          EXPECT_TRUE(Set(programs[each - '0'], std::string("then") + each, "x").ok());
        }
        EXPECT_TRUE(Set(stranger, "last", "x").ok());
      }
      std::string names;
      const RegistryDump dump = DumpOf(directory.path());
      for (const auto& [name, value] : dump.at("k")) names += name + " ";
      EXPECT_EQ(names, "a b c last then0 then1 then2 ");
    }
  }
}

/// A file without what it tells of the other one, as an earlier version wrote it.
std::string OfEarlierVersion(std::string bytes) {
  if (bytes.starts_with("DQREGJ1")) return bytes.replace(36, 4, 4, '\0').replace(56, 8, 8, '\0');
  std::string text;
  const Error error = WriteSnapshot(*ReadSnapshot(bytes, "HKEY_CURRENT_USER").tree,
                                    "HKEY_CURRENT_USER", std::nullopt, [&](std::string_view piece) {
                                      text += piece;
                                      return Error{};
                                    });
  EXPECT_TRUE(error.ok());
  return text;
}

TEST_F(RegistryStoreTest, SnapshotAndJournalOfDifferentTimesAreNotMixed) {
  std::string file[6];
  enum { kJournal0, kSnapshot1, kJournal1Begun, kJournal1, kSnapshot2, kJournal2 };
  {
    FileRegistry registry(directory_.path());
    const auto save = [&](int snapshot, int journal) {
      if (snapshot >= 0) file[snapshot] = directory_.Get("hkcu.reg");
      if (journal >= 0) file[journal] = directory_.Get("hkcu.journal");
    };
    EXPECT_TRUE(Set(registry, "a", "1").ok());
    save(-1, kJournal0);
    EXPECT_TRUE(registry.Leave().ok());
    EXPECT_TRUE(Set(registry, "b", "1").ok());
    save(kSnapshot1, kJournal1Begun);
    EXPECT_TRUE(Set(registry, "b", "2").ok());
    save(-1, kJournal1);
    EXPECT_TRUE(registry.Leave().ok());
    EXPECT_TRUE(Set(registry, "a", "3").ok());
    save(kSnapshot2, kJournal2);
  }
  const auto earlier = OfEarlierVersion;
  for (const auto& [what, snapshot, journal, values, is_told] :
       test::Rows<const char*, std::string, std::string, std::string, bool>{
           {"first pair", file[kSnapshot1], file[kJournal1], "1,2", false},
           {"second pair", file[kSnapshot2], file[kJournal2], "3,2", false},
           {"both earlier", earlier(file[kSnapshot1]), earlier(file[kJournal1]), "1,2", false},
           {"first fold broken off", file[kSnapshot1], file[kJournal0], "1,(error 1)", false},
           {"second fold broken off", file[kSnapshot2], file[kJournal1], "1,2", false},
           {"folded, less of it", file[kSnapshot2], file[kJournal1Begun], "1,2", false},
           {"old snapshot", file[kSnapshot1], file[kJournal2], "1,(error 1)", true},
           {"old journal", file[kSnapshot2], file[kJournal0], "1,2", true},
           {"earlier snapshot", earlier(file[kSnapshot1]), file[kJournal2], "1,(error 1)", true},
           {"earlier journal", file[kSnapshot2], earlier(file[kJournal2]), "1,2", true}}) {
    SCOPED_TRACE(what);
    const TempDirectory directory;
    directory.Put("hkcu.reg", snapshot);
    directory.Put("hkcu.journal", journal);
    ScriptedPrompts prompts;
    for (const char* next : {"(error 1)", "x"}) {
      FileRegistry registry(directory.path());
      EXPECT_EQ(Get(registry, "a") + "," + Get(registry, "b"), values);
      EXPECT_EQ(Get(registry, "next"), next);
      EXPECT_EQ(prompts.shown.size(), is_told ? 1u : 0u);
      EXPECT_TRUE(Set(registry, "next", "x").ok());
      // As after a kill, with the journal that goes on.
      const TempDirectory copy;
      fs::copy(directory.path(), copy.path());
      EXPECT_EQ(DumpOf(copy.path()), Dump(registry));
    }
    EXPECT_EQ(directory.Get("hkcu.journal.bad"), is_told ? journal : "(none)");
    if (!is_told) continue;
    EXPECT_NE(prompts.shown[0].text.find("of different times"), std::string::npos);
    EXPECT_NE(prompts.shown[0].text.find("hkcu.journal.bad"), std::string::npos);
  }
}

TEST_F(RegistryStoreTest, ASnapshotPutUnderARunningProgramIsKeptAsideAndTold) {
  FileRegistry registry(directory_.path());
  EXPECT_TRUE(Set(registry, "a", "old").ok() && registry.Leave().ok());
  const std::string backup = directory_.Get("hkcu.reg");
  EXPECT_TRUE(Set(registry, "a", "new").ok() && registry.Leave().ok());
  EXPECT_TRUE(Set(registry, "b", "x").ok());
  for (const bool another_opens_it : {false, true}) {
    prompts_.shown.clear();
    directory_.Put("hkcu.reg", backup);
    if (another_opens_it) {
      EXPECT_EQ(Get(*std::make_unique<FileRegistry>(directory_.path()), "a"), "old");
      EXPECT_EQ(Get(registry, "a") + Get(registry, "b"), "oldx")
          << "the newer file's, and the rest";
      EXPECT_NE(directory_.Get("hkcu.reg.former").find("\"a\"=hex:6e,65,77"), std::string::npos);
      EXPECT_EQ(prompts_.shown.size(), 2u);
    } else {
      EXPECT_TRUE(registry.Leave().ok());
      EXPECT_EQ(Get(registry, "a") + Get(registry, "b"), "newx");
      EXPECT_EQ(directory_.Get("hkcu.reg.bad"), backup);
      ASSERT_EQ(prompts_.shown.size(), 1u);
      EXPECT_NE(prompts_.shown[0].text.find("hkcu.reg.bad"), std::string::npos);
      EXPECT_TRUE(Set(registry, "b", "x").ok());
    }
    EXPECT_EQ(DumpOf(directory_.path()), Dump(registry));
  }
}

TEST_F(RegistryStoreTest, WhatIsMissingWhenAStoreIsOpenedIsTold) {
  for (const auto& [what, strike, kept] : test::Rows<const char*, Mishap, const char*>{
           {"no snapshot", Removed("hkcu.reg"), "(error 1)"},
           {"no journal", Removed("hkcu.journal"), "two"},
           {"short journal", CutTo(63), "two"}}) {
    SCOPED_TRACE(what);
    const TempDirectory directory;
    Fill(directory, true);
    strike(directory);
    ScriptedPrompts prompts;
    {
      FileRegistry registry(directory.path());
      EXPECT_EQ(Get(registry, "two"), kept);
      EXPECT_EQ(prompts.shown.size(), 1u);
      EXPECT_TRUE(Set(registry, "new", "x").ok());
      // A second time, in the same process, is news again.
      CutTo(0)(directory);
      EXPECT_EQ(Get(registry, "new"), "x");
      EXPECT_EQ(prompts.shown.size(), 2u);
    }
    FileRegistry again(directory.path());
    EXPECT_EQ(Get(again, "new"), "x");
    EXPECT_EQ(prompts.shown.size(), 2u);
  }
}

TEST_F(RegistryStoreTest, WhatIsNoStoreIsAnErrorAtOnce) {
  for (const char* file : {"hkcu.reg", "hkcu.journal"}) {
    for (const bool is_pipe : {true, false}) {
      const TempDirectory directory;
      if (is_pipe) {
        ASSERT_EQ(::mkfifo((directory / file).c_str(), 0600), 0);
      } else {
        directory.Put(file, "");
        fs::resize_file(directory / file, std::size_t{4} << 40);
      }
      FileRegistry registry(directory.path());
      EXPECT_FALSE(registry.OpenKey(kCurrentUser, "").ok()) << file << is_pipe;
      EXPECT_FALSE(Set(registry, "a", "1").ok()) << file << is_pipe;
      fs::remove(directory / file);
      EXPECT_TRUE(Set(registry, "a", "1").ok()) << file << is_pipe;
    }
  }
}

TEST_F(RegistryStoreTest, NobodyElseCanReadTheFiles) {
  Fill(directory_, true);
  const std::string bait = directory_.Put("bait", "bait");
  fs::create_symlink(bait, directory_ / "hkcu.reg.tmp");
  fs::create_symlink(directory_ / "made", directory_ / "hklm.journal");
  for (const char* file : {"hkcu.reg", "hkcu.journal", "."}) {
    ::chmod((directory_ / file).c_str(), 0777);
  }
  for (const char* kept : {"before", "after"}) {
    FileRegistry registry(directory_.path());
    EXPECT_TRUE(Set(registry, kept, "x").ok());
    EXPECT_EQ(directory_.Mode("hkcu.reg"), 0600u) << kept;
    EXPECT_EQ(directory_.Mode("hkcu.journal"), 0600u) << kept;
    EXPECT_EQ(directory_.Mode("."), 0700u) << kept;
  }
  EXPECT_EQ(directory_.Get("bait"), "bait");
  // Nor does anyone make files elsewhere through them, or keep them from being written.
  FileRegistry registry(directory_.path());
  EXPECT_EQ(registry.CreateKey(kLocalMachine, "k").error.kind, ErrorKind::kAlreadyExists);
  EXPECT_EQ(directory_.Get("made"), "(none)");
  fs::remove(directory_ / "hkcu.reg.tmp");
  fs::create_directory(directory_ / "hkcu.reg.tmp");
  EXPECT_TRUE(Set(registry, "late", "x").ok() && registry.Leave().ok());
  EXPECT_NE(directory_.Get("hkcu.reg").find("\"late\"=hex:78"), std::string::npos);
}

TEST_F(RegistryStoreTest, AWriterThatWasStoppedStopsNobodyForEver) {
  class SlowPauses : public SystemCalls {
   public:
    void Pause(unsigned microseconds) override {
      now += std::chrono::microseconds(4 * microseconds);
    }
    std::chrono::nanoseconds MonotonicTime() override { return now; }
    std::chrono::nanoseconds now{};
    int Seconds() const { return static_cast<int>(now / std::chrono::seconds(1)); }
  } calls;
  Fill(directory_, false);
  directory_.Put("a.ini", "[s]\nk=1\n");
  const auto profiles = MakeProfileFiles(calls);
  FileRegistry registry(directory_.path(), calls);
  FileRegistry late(directory_.path(), calls);
  EXPECT_TRUE(Set(registry, "a", "1").ok());
  // One who is stopped while holding the locks.
  const FileDescriptor stopped(calls, ::open((directory_ / "hkcu.journal").c_str(), O_RDONLY));
  const FileDescriptor other(calls, ::open((directory_ / "a.ini").c_str(), O_RDONLY));
  for (const auto* file : {&stopped, &other}) ASSERT_EQ(::flock(file->get(), LOCK_EX), 0);
  EXPECT_EQ(calls.Seconds(), 0);
  for (int option = 0; option < 300; ++option) {
    EXPECT_EQ(late.OpenKey(kCurrentUser, "k").error.kind, ErrorKind::kBusy);
    EXPECT_EQ(late.CreateKey(kCurrentUser, "k").error.kind, ErrorKind::kBusy);
  }
  EXPECT_EQ(calls.Seconds(), 20) << "for all of them together";
  EXPECT_TRUE(late.Leave().ok()) << "it has done nothing";
  EXPECT_EQ(Get(registry, "a"), "1") << "what is known needs no lock";
  EXPECT_EQ(Set(registry, "a", "2").kind, ErrorKind::kBusy);
  EXPECT_EQ(registry.Leave().kind, ErrorKind::kBusy);
  EXPECT_EQ(calls.Seconds(), 40) << "leaving doesn't wait again";
  for (int i = 0; i < 9; ++i) {
    EXPECT_EQ(profiles->Write(directory_ / "a.ini", "s", "k", "2").kind, ErrorKind::kBusy);
  }
  EXPECT_EQ(calls.Seconds(), 60);
  // What is free is had at once; another time it is worth while to wait again.
  ASSERT_EQ(::flock(stopped.get(), LOCK_UN), 0);
  EXPECT_TRUE(Set(registry, "a", "2").ok());
  ASSERT_EQ(::flock(stopped.get(), LOCK_EX), 0);
  EXPECT_EQ(Set(registry, "a", "3").kind, ErrorKind::kBusy);
  EXPECT_EQ(calls.Seconds(), 80);
  calls.now += std::chrono::seconds(20);
  EXPECT_EQ(Set(registry, "a", "3").kind, ErrorKind::kBusy);
  EXPECT_EQ(calls.Seconds(), 120);
}

/// Whose a file is, and with which rights.
std::string OwnerOf(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return "(none)";
  char text[32];
  std::snprintf(text, sizeof text, "%u:%u %o", status.st_uid, status.st_gid,
                status.st_mode & 07777u);
  return text;
}

TEST_F(RegistryStoreTest, WhatAnAdministratorWritesStaysTheUsers) {
  if (::geteuid() != 0) GTEST_SKIP() << "only an administrator can give files away";
  ASSERT_EQ(::chown(directory_.path().c_str(), 1'234, 4'321), 0);
  const std::string files = directory_ / ".config/velmora";
  const auto in_child = [&](SystemCalls& calls, const char* name) {
    FileRegistry registry(files, calls);
    Error error = Set(registry, name, "x");
    const Error left = registry.Leave();
    return error.ok() ? left : error;
  };
  class Ungiving : public SystemCalls {
    int ChangeOwner(int, uid_t, gid_t) override {
      errno = EPERM;
      return -1;
    }
  } ungiving;
  EXPECT_EQ(in_child(ungiving, "never").kind, ErrorKind::kAccessDenied);
  EXPECT_EQ(directory_.Count(), 0u) << "what its owner couldn't read isn't left there";
  SystemCalls& calls = RealSystemCalls();
  EXPECT_TRUE(in_child(calls, "a").ok());
  EXPECT_TRUE(MakeProfileFiles(calls)->Write(files + "/a.ini", "s", "k", "v").ok());
  for (const auto& [file, owner] :
       test::Rows<const char*, const char*>{{"/..", "1234:4321 700"},
                                            {"", "1234:4321 700"},
                                            {"/hkcu.journal", "1234:4321 600"},
                                            {"/hkcu.reg", "1234:4321 600"},
                                            {"/a.ini", "1234:4321 600"}}) {
    EXPECT_EQ(OwnerOf(files + file), owner) << file;
  }
  // As they were, rather than as the directory is.
  ASSERT_EQ(::chown((files + "/hkcu.reg").c_str(), 77, 88), 0);
  ASSERT_EQ(::chmod((files + "/hkcu.reg").c_str(), 0400), 0);
  EXPECT_TRUE(in_child(calls, "b").ok());
  EXPECT_EQ(OwnerOf(files + "/hkcu.reg"), "77:88 400");
  EXPECT_TRUE(in_child(ungiving, "c").ok()) << "it is in the journal";
  EXPECT_EQ(OwnerOf(files + "/hkcu.reg"), "77:88 400");
  std::ofstream(files + "/hkcu.reg", std::ios::app) << "damage";
  EXPECT_EQ(DumpOf(files).at("k").size(), 3u);
  EXPECT_EQ(OwnerOf(files + "/hkcu.reg.bad"), "1234:4321 600");
}

TEST_F(RegistryStoreTest, WhoOnlyReadsLeavesNothingWhereNothingIs) {
  const std::string files = directory_ / "fresh/registry";
  {
    FileRegistry reader(files);
    for (int twice = 0; twice < 2; ++twice) {
      EXPECT_TRUE(reader.OpenKey(kCurrentUser, "").ok());
      EXPECT_EQ(reader.OpenKey(kLocalMachine, "k").error.kind, ErrorKind::kNotFound);
      EXPECT_EQ(reader.ReadValue(kCurrentUser, "v", {}).error.kind, ErrorKind::kNotFound);
      EXPECT_EQ(reader.EnumKey(kClassesRoot, 0).error.kind, ErrorKind::kNotFound);
      EXPECT_TRUE(reader.Flush().ok() && reader.Leave().ok());
      EXPECT_EQ(directory_.Count(), 0u);
    }
    EXPECT_EQ(Get(reader, "v"), "(error 1)");
    FileRegistry writer(files);
    EXPECT_TRUE(Set(writer, "v", "x").ok());
    EXPECT_EQ(Get(reader, "v"), "x");
    EXPECT_EQ(reader.EnumKey(kLocalMachine, 0).error.kind, ErrorKind::kNotFound);
  }
  EXPECT_EQ(directory_.Get("fresh/registry/hklm.journal"), "(none)");
  // A reader that knows what was there puts it back.
  FileRegistry reader(files);
  EXPECT_EQ(Get(reader, "v"), "x");
  EXPECT_TRUE(reader.Leave().ok());
  fs::remove_all(directory_ / "fresh");
  EXPECT_EQ(Get(reader, "v"), "x");
  EXPECT_EQ(Get(*std::make_unique<FileRegistry>(files), "v"), "x");
  fs::remove_all(directory_ / "fresh");
  EXPECT_EQ(Get(reader, "v"), "x");
}

TEST_F(RegistryStoreTest, WhatCannotBeReadIsNeverToldAsAbsent) {
  class Closed : public SystemCalls {
   public:
    int Open(const char* path, int flags, mode_t mode) override {
      if (!std::string_view(path).ends_with(file)) return SystemCalls::Open(path, flags, mode);
      errno = error;
      return -1;
    }
    std::string_view file;
    int error = 0;
  } calls;
  Fill(directory_, true);
  for (const auto& [error, kind] : test::Rows<int, ErrorKind>{{EACCES, ErrorKind::kAccessDenied},
                                                              {EPERM, ErrorKind::kAccessDenied},
                                                              {ENOTDIR, ErrorKind::kOther},
                                                              {ENXIO, ErrorKind::kOther},
                                                              {EIO, ErrorKind::kOther},
                                                              {ENOMEM, ErrorKind::kNoSpace},
                                                              {EMFILE, ErrorKind::kNoSpace}}) {
    for (const char* file : {"hkcu.journal", "hkcu.reg"}) {
      SCOPED_TRACE(::testing::Message() << file << error);
      calls.file = file;
      calls.error = error;
      FileRegistry registry(directory_.path(), calls);
      EXPECT_EQ(registry.OpenKey(kCurrentUser, "none").error.kind, kind);
      EXPECT_EQ(registry.ReadValue(kCurrentUser, "none", {}).error.kind, kind);
      EXPECT_EQ(registry.EnumValue(kCurrentUser, 0).error.kind, kind);
      EXPECT_EQ(registry.CreateKey(kCurrentUser, "none").error.kind, kind);
      EXPECT_EQ(registry.DeleteValue(kCurrentUser, "none").kind, kind);
    }
  }
  const std::string file = directory_.Put("file", "");
  FileRegistry below(file + "/registry");
  EXPECT_EQ(below.OpenKey(kCurrentUser, "k").error.kind, ErrorKind::kOther);
}

TEST_F(RegistryStoreTest, ASyncThatFailsIsMadeUpForLater) {
  class Unsynced : public SystemCalls {
   public:
    int Sync(int fd) override {
      ++syncs;
      errno = EIO;
      return fails ? -1 : SystemCalls::Sync(fd);
    }
    bool fails = true;
    int syncs = 0;
  } calls;
  FileRegistry registry(directory_.path(), calls);
  EXPECT_TRUE(Set(registry, "a", "1").ok());
  EXPECT_FALSE(registry.Leave().ok());
  EXPECT_FALSE(registry.Flush().ok());
  calls.fails = false;
  calls.syncs = 0;
  EXPECT_TRUE(registry.Leave().ok());
  EXPECT_GE(calls.syncs, 2) << "the journal, and the directory that it was made in";
}

/// What is done in turn, and what the registry holds afterwards.
using Step = std::pair<const char*, std::function<Error(FileRegistry&)>>;
constexpr std::size_t kFoldingStep = 10;
const Step kSteps[] = {
    {"create", [](auto& r) { return r.CreateKey(kCurrentUser, "k\\sub").error; }},
    {"set", [](auto& r) { return Set(r, "a", "1"); }},
    {"set another", [](auto& r) { return Set(r, "b", "2"); }},
    {"change", [](auto& r) { return Set(r, "a", "3"); }},
    {"delete value", [](auto& r) { return r.DeleteValue(Key(r), "b"); }},
    {"delete key", [](auto& r) { return r.DeleteKey(kCurrentUser, "k\\sub"); }},
    {"grow 1", [](auto& r) { return Set(r, "large", kLarge); }},
    {"grow 2", [](auto& r) { return Set(r, "large", kLarge + "2"); }},
    {"grow 3", [](auto& r) { return Set(r, "large", kLarge + "3"); }},
    {"shrink", [](auto& r) { return r.DeleteValue(Key(r), "large"); }},
    {"fold", [](auto& r) { return Set(r, "b", std::string(20'000, 'y')); }},
    {"flush", [](auto& r) { return r.Flush(); }},
    {"leave", [](auto& r) { return r.Leave(); }},
    {"set after leaving", [](auto& r) { return Set(r, "c", "5"); }},
};

TEST_F(RegistryStoreTest, AnySystemCallMayFailAndNothingElseChanges) {
  RegistryDump expected;
  {
    const TempDirectory directory;
    FileRegistry registry(directory.path());
    for (const Step& step : kSteps) {
      ASSERT_TRUE(step.second(registry).ok()) << step.first;
      const bool is_folded = fs::exists(directory / "hkcu.reg");
      ASSERT_EQ(is_folded, &step >= &kSteps[kFoldingStep]) << step.first;
    }
    expected = Dump(registry);
  }
  for (const int error : {EIO, EDQUOT, EACCES}) {
    test::FailingSystemCalls calls;
    int failures = 0;
    for (int number = 1;; ++number) {
      const TempDirectory directory;
      const std::string files = directory / "made/registry";
      FileRegistry registry(files, calls);
      calls.Fail(number, error);
      for (const Step& step : kSteps) {
        SCOPED_TRACE(::testing::Message()
                     << "call " << number << ", errno " << error << step.first);
        const auto state = [&] {
          const TempDirectory copy;
          if (fs::exists(files)) fs::copy(files, copy.path());
          return DumpOf(copy.path());
        };
        const RegistryDump before = number % 5 == 0 ? state() : RegistryDump();
        if (step.second(registry).ok()) continue;
        ++failures;
        EXPECT_TRUE(calls.failed());
        // The call that failed has done nothing, and does it when it is made again.
        EXPECT_TRUE(number % 5 != 0 || state() == before);
        EXPECT_TRUE(step.second(registry).ok());
      }
      EXPECT_EQ(Dump(registry), expected) << number;
      EXPECT_EQ(DumpOf(files), expected) << number;
      if (!calls.failed()) break;
      calls.Fail(0, 0);
    }
    EXPECT_GT(failures, 20) << error;
  }
  EXPECT_TRUE(prompts_.shown.empty());
}

/// Sets values until there is no room, and checks that those reported are there, also for others.
/// Returns how many there are.
int FillUp(FileRegistry& registry, const std::string& files) {
  int count = 0;
  Error error;
  while (count < 10'000) {
    error = Set(registry, "v" + std::to_string(count), std::string(1'000, 'x'));
    if (!error.ok()) break;
    ++count;
  }
  EXPECT_EQ(error.kind, ErrorKind::kNoSpace);
  const RegistryDump dump = Dump(registry);
  EXPECT_EQ(dump.contains("k") ? dump.at("k").size() : 0u, static_cast<std::size_t>(count));
  // Without room for a journal not even reading has an answer.
  EXPECT_TRUE(dump.empty() || DumpOf(files) == dump);
  return count;
}

TEST_F(RegistryStoreTest, AFullDiskIsToldAndLosesNothing) {
  // At each byte that a write can end at: in the header, the generation, and the first records.
  for (std::size_t room = 0; room < 3'000; room += room < 300 ? 1 : 97) {
    const TempDirectory directory;
    test::FailingSystemCalls disk;
    disk.LeaveRoom(room);
    FileRegistry registry(directory.path(), disk);
    FillUp(registry, directory.path());
    disk.LeaveRoom(1 << 20);
    EXPECT_TRUE(Set(registry, "room again", "x").ok()) << room;
    EXPECT_EQ(Get(*std::make_unique<FileRegistry>(directory.path()), "room again"), "x") << room;
  }
  // In the middle of folds, whose snapshots have no room any more.
  const TempDirectory directory;
  test::FailingSystemCalls disk;
  disk.LeaveRoom(std::size_t{3} << 20);
  EXPECT_GT(FillUp(*std::make_unique<FileRegistry>(directory.path(), disk), directory.path()), 990);
  EXPECT_EQ(directory.Count(), 1u) << "no half of a snapshot is left";
  // A limit of the size of files, in appending and in folding.
  test::ForkedProcess limited([] {
    const rlimit limit{1'400'000, 1'400'000};
    ASSERT_TRUE(::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && ::setrlimit(RLIMIT_FSIZE, &limit) == 0);
    const TempDirectory files;
    EXPECT_GT(FillUp(*std::make_unique<FileRegistry>(files.path()), files.path()), 1'000);
  });
  EXPECT_TRUE(limited.EndsWell());

  // A real file system, where the machine lets one be mounted.
  const TempDirectory mounted;
  if (::mount("tmpfs", mounted.path().c_str(), "tmpfs", 0, "size=2m") == 0) {
    EXPECT_GT(FillUp(*std::make_unique<FileRegistry>(mounted.path()), mounted.path()), 500);
    EXPECT_EQ(::umount(mounted.path().c_str()), 0);
  }
}

/// Runs `work` in a child without the rights of the administrator.
void RunAsNobody(const std::function<void()>& work) {
  test::ForkedProcess child([&] {
    ASSERT_TRUE(::getuid() != 0 || (::setgid(65'534) == 0 && ::setuid(65'534) == 0));
    work();
  });
  EXPECT_TRUE(child.EndsWell());
}

TEST_F(RegistryStoreTest, ADirectoryThatCannotBeWrittenCanStillBeRead) {
  for (const bool has_journal : {false, true}) {
    const TempDirectory directory;
    Fill(directory, true);
    for (const char* file : {"hkcu.reg", "hkcu.journal"}) {
      fs::permissions(directory / file, fs::perms{0444});
    }
    if (!has_journal) fs::remove(directory / "hkcu.journal");
    ::chmod(directory.path().c_str(), 0555);
    RunAsNobody([&] {
      FileRegistry registry(directory.path());
      EXPECT_EQ(Get(registry, "two"), "two");
      EXPECT_EQ(registry.OpenKey(kLocalMachine, "k").error.kind, ErrorKind::kNotFound);
      EXPECT_EQ(registry.SetValue(registry.OpenKey(kCurrentUser, "k").value, "two", 1, "x").kind,
                ErrorKind::kAccessDenied);
      EXPECT_EQ(registry.CreateKey(kLocalMachine, "k").error.kind, ErrorKind::kAccessDenied);
      EXPECT_EQ(Get(registry, "two"), "two");
      FileRegistry none(directory / "none");
      EXPECT_TRUE(none.OpenKey(kCurrentUser, "").ok());
      EXPECT_EQ(none.CreateKey(kCurrentUser, "k").error.kind, ErrorKind::kAccessDenied);
    });
    ::chmod(directory.path().c_str(), 0755);
    ::chmod((directory / "hkcu.reg").c_str(), 0);
    RunAsNobody([&] {
      FileRegistry registry(directory.path());
      EXPECT_EQ(registry.OpenKey(kCurrentUser, "").error.kind, ErrorKind::kAccessDenied)
          << "a snapshot that can't be read is not an empty one";
    });
  }
  FileRegistry homeless("");
  EXPECT_EQ(homeless.CreateKey(kCurrentUser, "k").error.kind, ErrorKind::kNotFound);
}

TEST_F(RegistryStoreTest, WithoutMappingsAndUnlockingChangesAreSeenAllTheSame) {
  class NoMapping : public SystemCalls {
    void* Map(std::size_t, int, int) override { return reinterpret_cast<void*>(-1); }
  } unmapped;
  class Sticky : public SystemCalls {
    int Lock(int fd, int operation) override {
      if (operation != LOCK_UN) return SystemCalls::Lock(fd, operation);
      errno = EIO;
      return -1;
    }
  } sticky;
  for (SystemCalls* calls :
       {static_cast<SystemCalls*>(&unmapped), static_cast<SystemCalls*>(&sticky)}) {
    const TempDirectory directory;
    FileRegistry plain(directory.path());
    FileRegistry broken(directory.path(), *calls);
    for (int i = 0; i < 10; ++i) {
      EXPECT_TRUE(Set(plain, "v", std::to_string(i)).ok());
      EXPECT_EQ(Get(broken, "v"), std::to_string(i));
      EXPECT_TRUE(Set(broken, "w", std::to_string(i)).ok());
      EXPECT_EQ(Get(plain, "w"), std::to_string(i));
    }
  }
}

}  // namespace
}  // namespace dq::platform::posix
