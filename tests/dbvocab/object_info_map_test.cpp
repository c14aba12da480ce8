#include "dqlib/dbvocab/object_info_map.h"

#include "dqlib/framework/base/archive.h"
#include "dqlib/platform/posix/system_services.h"
#include "tests/support/failing_memory.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/forwarding_files.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using namespace std::string_literals;
using testing::ShownBox;

/// Keys "a" and "r" share a bucket, and so do "b" and the one whose first byte counts as negative.
const std::string kKnownFile =
    "\4\0"
    "\1r\xFF\xFF\1\0\x0D\0CDBObjectInfo\x23\0\0\0\1O\1N"
    "\1a\0\0"
    "\2\xE4x\1\x80\x28\0\0\0\3own\4name"
    "\1b\1\x80\xFF\xFF\xFF\xFF\0\0"s;

void FillWithKnown(CDBObjectInfoMap& map) {
  map.Insert("a", nullptr);
  map.Insert("b", new CDBObjectInfo);
  map.Insert("r", new CDBObjectInfo(OT_INDEX, "replaced", "replaced"));
  map.Insert("\xE4x", new CDBAObjectInfo(OT_VIEW, "own", "name", "datasource"));
  map.Insert("r", new CDBObjectInfo(OT_TABLE, "O", "N"));
}

/// "key=owner.name " for each entry, in order.
std::string Contents(const CDBObjectInfoMap& map) {
  std::string contents;
  for (POSITION position = map.GetStartPosition(); position != nullptr;) {
    CString key;
    CObject* object = nullptr;
    map.GetNextAssoc(position, key, object);
    contents += std::string(key) + '=';
    if (auto* const info = DYNAMIC_DOWNCAST(CDBObjectInfo, object)) {
      contents += std::string(info->GetOwner()) + '.' + std::string(info->GetName());
    }
    contents += ' ';
  }
  return contents;
}

class ObjectInfoMapTest : public ::testing::Test {
 protected:
  static ShownBox Failure(const char* what, const std::string& path, const std::string& cause) {
    return {
        "Error:  Failed to "s + what + " object map file '" + path + "'.\nCause: " + cause + ".",
        BOX_STOP};
  }
  test::TempDirectory files_;
  testing::ScriptedPrompts prompts_;
};

TEST_F(ObjectInfoMapTest, FileHasTheFormOfEarlierReleasesByteForByte) {
  CDBObjectInfoMap map;
  FillWithKnown(map);
  ASSERT_TRUE(map.Save((files_ / "map").c_str()));
  EXPECT_EQ(files_.Get("map"), kKnownFile);
  EXPECT_FALSE(map.IsLoaded());

  CDBObjectInfoMap loaded;
  loaded.Insert("r", new CDBObjectInfo(OT_INDEX, "old", "old"));
  loaded.Insert("z", new CDBObjectInfo(OT_INDEX, "kept", "kept"));
  ASSERT_TRUE(loaded.Load((files_ / "map").c_str()));
  EXPECT_TRUE(loaded.IsLoaded());
  EXPECT_EQ(Contents(loaded), "z=kept.kept a= r=O.N b=. \xE4x=own.name ");
  CDBObjectInfo* found = nullptr;
  EXPECT_FALSE(loaded.Find("R", found));
  ASSERT_TRUE(loaded.Find("\xE4x", found));
  EXPECT_EQ(found->GetObjectType(), OT_VIEW);
}

TEST_F(ObjectInfoMapTest, FileIsTheOldOrTheNewOneWheneverSavingEnds) {
  struct Dying : test::FailingSystemCalls {
    int Sync(int fd) override { return Next(), test::FailingSystemCalls::Sync(fd); }
    int Rename(const char* from, const char* to) override {
      return Next(), test::FailingSystemCalls::Rename(from, to);
    }
    ssize_t Write(int fd, const void* data, std::size_t size) override {
      return Next(), test::FailingSystemCalls::Write(fd, data, size);
    }
    void Next() {
      if (--calls_left == 0) ::_exit(0);
    }
    int calls_left = 0;
  };
  const std::string old = "\1\0\1o\0\0"s;
  CDBObjectInfoMap map;
  FillWithKnown(map);
  Dying calls;
  calls.WriteAtMost(20);
  const auto files = platform::posix::MakeFiles(calls);
  const platform::ScopedPlatform scope(test::With(&platform::Platform::files, files.get()));
  // Dies at each call in turn.
  int died = 0;
  for (bool done = false; !done; ++died) {
    const std::string path = files_.Put("map", old);
    test::ForkedProcess child([&] {
      calls.calls_left = died + 1;
      if (map.Save(path.c_str())) ::_exit(1);
    });
    done = !child.EndsWell();
    const std::string now = files_.Get("map");
    EXPECT_TRUE(now == kKnownFile || (!done && now == old)) << died;
  }
  EXPECT_GT(died, 7) << "writes, a sync and a rename";
  // Each call fails in turn, and each allocation.
  for (const bool of_memory : {false, true}) {
    bool failed = true;
    for (int number = 1; failed; ++number) {
      prompts_.shown.clear();
      const std::string path = files_.Put("map", old);
      of_memory ? test::FailAllocation(number) : calls.Fail(number, ENOSPC);
      const bool saved = map.Save(path.c_str());
      failed = of_memory ? test::AllocationFailed() : calls.failed();
      calls.Fail(0, 0);
      const std::string now = files_.Get("map");
      EXPECT_TRUE(now == kKnownFile || (!saved && now == old)) << number;
      EXPECT_EQ(prompts_.shown.size(), saved ? 0U : 1U) << number;
    }
  }
  calls.LeaveRoom(50);
  EXPECT_FALSE(map.Save((files_ / "new").c_str()));
  EXPECT_EQ(files_.Get("new"), "(none)");
}

TEST_F(ObjectInfoMapTest, LoadingIsAllOrNothingWithoutMemoryToo) {
  const std::string path = files_.Put("map", kKnownFile);
  bool failed = true;
  std::string told;
  for (int number = 1; failed; ++number) {
    CDBObjectInfoMap map;
    map.Insert("r", new CDBObjectInfo(OT_INDEX, "old", "old"));
    prompts_.shown.clear();
    test::FailAllocation(number);
    const bool loaded = map.Load(path.c_str());
    failed = test::AllocationFailed();
    EXPECT_EQ(Contents(map), loaded ? "a= r=O.N b=. \xE4x=own.name " : "r=old.old ") << number;
    EXPECT_EQ(map.IsLoaded(), loaded);
    EXPECT_EQ(prompts_.shown.size(), loaded ? 0U : 1U) << number;
    if (!loaded) told = prompts_.shown.at(0).text;
  }
  EXPECT_EQ(told, Failure("read", path, "Cannot allocate memory").text);
}

TEST_F(ObjectInfoMapTest, SavingKeepsOthersOutUntilTheFileIsReplaced) {
  struct Watched : test::ForwardingFiles {
    platform::Error ReplaceAndClose(HANDLE file, std::string_view bytes) override {
      EXPECT_EQ(ForwardingFiles::Open(path, {}).error.kind, platform::ErrorKind::kBusy);
      return ForwardingFiles::ReplaceAndClose(file, bytes);
    }
    std::string path;
  };
  Watched watched;
  watched.path = files_.Put("map", "old");
  CDBObjectInfoMap map;
  FillWithKnown(map);
  {
    const platform::ScopedPlatform scope(test::With(&platform::Platform::files, &watched));
    EXPECT_TRUE(map.Save(watched.path.c_str()));
  }
  EXPECT_EQ(files_.Get("map"), kKnownFile);
  const CFile reader(watched.path.c_str(), CFile::modeRead);
  EXPECT_FALSE(map.Save(watched.path.c_str()));
  EXPECT_EQ(prompts_.shown, std::vector{Failure("create", watched.path, "The file is in use")});
}

TEST_F(ObjectInfoMapTest, UpdateHoldsTheFileAndWritesOverNothingUnread) {
  const std::string path = files_ / "map";
  constexpr int kProcesses = 4;
  constexpr int kKeys = 10;
  EXPECT_TRUE(test::AllEndWell(kProcesses, [&](int process) {
    for (int i = 0; i < kKeys; ++i) {
      CDBObjectInfoMap map;
      const std::string key = std::to_string(process * kKeys + i);
      EXPECT_TRUE(map.Update(path.c_str(), [&] { map.SetAt(key.c_str(), new CDBObjectInfo); }));
    }
  }));
  CDBObjectInfoMap map;
  ASSERT_TRUE(map.Load(path.c_str()));
  EXPECT_EQ(map.GetCount(), kProcesses * kKeys);

  const std::string bad = files_.Put("bad", "\1\0\1"s);
  const std::string unreachable = files_ / "loop";
  ASSERT_EQ(::symlink("loop", unreachable.c_str()), 0);
  const std::string missing = files_ / "missing/map";
  for (const std::string& each : {bad, unreachable, missing}) {
    EXPECT_FALSE(map.Update(each.c_str(), [] { FAIL() << "nothing was read"; }));
  }
  EXPECT_FALSE(map.Load(unreachable.c_str()));
  EXPECT_EQ(files_.Get("bad"), "\1\0\1"s);
  EXPECT_EQ(prompts_.shown, (std::vector{Failure("read", bad, "The file ended too soon"),
                                         Failure("open", unreachable, "The path is not valid"),
                                         Failure("create", missing, "The file was not found"),
                                         Failure("open", unreachable, "The path is not valid")}));
}

TEST_F(ObjectInfoMapTest, WhatIsDroppedIsDeleted) {
  struct Counted : CDBObjectInfo {
    explicit Counted(int& count) : CDBObjectInfo(OT_TABLE, "owner", "key"), left(++count) {}
    ~Counted() override { --left; }
    int& left;
  };
  int left = 0;
  CDBObjectInfoMap map;
  auto* const first = new Counted(left);
  map.SetAt("key", first);
  map.SetAt("key", first);
  EXPECT_EQ(left, 1);
  // The key is a part of the object that goes.
  const CString& key = first->GetName();
  map.SetAt(key, new Counted(left));
  EXPECT_EQ(left, 1);
  EXPECT_TRUE(map.RemoveKey("key"));
  EXPECT_FALSE(map.RemoveKey("key"));
  EXPECT_EQ(left, 0);
  for (const char* each : {"a", "b"}) map.SetAt(each, new Counted(left));
  map.RemoveAll();
  EXPECT_EQ(left, 0);
  EXPECT_TRUE(map.IsEmpty());
}

TEST_F(ObjectInfoMapTest, FileThatDoesNotHoldAMapChangesNothing) {
  const std::string object = "\xFF\xFF\1\0\x0D\0CDBObjectInfo\1\0\0\0"s;
  constexpr const char* kTooSoon = "The file ended too soon";
  constexpr const char* kBadClass = "The file has an object of an unexpected class";
  constexpr const char* kNoObject = "The file refers to an object that it does not have";
  std::vector<std::pair<std::string, std::string>> rows = {
      {"\xFF\xFF\xFF\xFF\xFF\xFF"s + std::string(100, '\0'), kTooSoon},
      {"\1\0\1k\xFF\xFF\1\0\7\0Unknown\0\0"s, kBadClass},
      {"\1\0\1k\xFF\xFF\0\0\x0E\0CMapStringToOb\0\0"s, kBadClass},
      {"\1\0\1k\5\0"s, kNoObject},
      {"\2\0\1k"s + object + "\0\0\1l\1\0"s, kNoObject},  // a class, not an object
      {"\1\0\1k"s + object + "\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, kTooSoon},
  };
  for (std::size_t size = 1; size < kKnownFile.size(); ++size) {
    rows.emplace_back(kKnownFile.substr(0, size), kTooSoon);
  }
  CDBObjectInfoMap map;
  map.Insert("a", new CDBObjectInfo(OT_TABLE, "stays", "here"));
  const std::string path = files_ / "bad";
  std::vector<ShownBox> expected;
  for (const auto& [bytes, cause] : rows) {
    files_.Put("bad", bytes);
    EXPECT_FALSE(map.Load(path.c_str())) << bytes;
    expected.push_back(Failure("read", path, cause));
  }
  EXPECT_EQ(prompts_.shown, expected);
  EXPECT_EQ(Contents(map), "a=stays.here ");
  EXPECT_FALSE(map.IsLoaded());
}

TEST_F(ObjectInfoMapTest, SharedAndReplacedObjectsOfAFileAreOwnedOnce) {
  const std::string object = "\xFF\xFF\1\0\x0D\0CDBObjectInfo\1\0\0\0\1o\1n"s;
  const std::string again = "\1\x80\1\0\0\0\1p\1q"s;
  files_.Put("map", "\5\0\1k"s + object + "\1k"s + again + "\1l\2\0\1m\2\0\1m\3\0"s);
  CDBObjectInfoMap map;
  ASSERT_TRUE(map.Load((files_ / "map").c_str()));
  EXPECT_EQ(Contents(map), "k=p.q l=o.n m=p.q ");
}

TEST_F(ObjectInfoMapTest, FailuresOfTheSystemAreShownWithTheirCause) {
  struct Broken : test::ForwardingFiles {
    platform::Result<std::size_t> Read(HANDLE, std::span<char>) override { return error; }
    platform::Error ReplaceAndClose(HANDLE file, std::string_view) override {
      Close(file);
      return error;
    }
    platform::Error error{platform::ErrorKind::kNoSpace, 28};
  };
  CDBObjectInfoMap map;
  FillWithKnown(map);
  EXPECT_FALSE(map.Load((files_ / "missing").c_str()));
  EXPECT_TRUE(prompts_.shown.empty());
  EXPECT_TRUE(map.Load(files_.Put("empty", "").c_str()));
  EXPECT_TRUE(map.IsLoaded());

  const std::string known = files_.Put("known", kKnownFile);
  EXPECT_FALSE(map.Save((files_ / "missing/map").c_str()));
  EXPECT_FALSE(map.Load(files_.path().c_str()));
  Broken broken;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::files, &broken));
  EXPECT_FALSE(map.Save((files_ / "full").c_str()));
  EXPECT_FALSE(map.Load(known.c_str()));
  EXPECT_EQ(prompts_.shown,
            (std::vector{Failure("create", files_ / "missing/map", "The file was not found"),
                         Failure("open", files_.path(), "Access to the file was denied"),
                         Failure("write", files_ / "full", "The disk is full"),
                         Failure("read", known, "The disk is full")}));
  EXPECT_EQ(map.GetCount(), 4);
}

}  // namespace
}  // namespace dq
