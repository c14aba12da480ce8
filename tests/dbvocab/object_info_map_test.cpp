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

/// Keys "a" and "r" share a bucket, and so do "b" and the one whose first byte counts as negative.
const std::string kKnownFile =
    "\4\0"
    "\1r\xFF\xFF\1\0\x0D\0CDBObjectInfo\x23\0\0\0\1O\1N"
    "\1a\0\0"
    "\2\xE4x\1\x80\x28\0\0\0\3own\4name"
    "\1b\1\x80\xFF\xFF\xFF\xFF\0\0"s;
const std::string kOldFile = "\1\0\1o\0\0"s;

class ObjectInfoMapTest : public ::testing::Test {
 protected:
  ObjectInfoMapTest() {
    map_.Insert("a", nullptr);
    map_.Insert("b", new CDBObjectInfo);
    map_.Insert("r", new CDBObjectInfo(OT_INDEX, "replaced", "replaced"));
    map_.Insert("\xE4x", new CDBAObjectInfo(OT_VIEW, "own", "name", "datasource"));
    map_.Insert("r", new CDBObjectInfo(OT_TABLE, "O", "N"));
  }
  /// "key=owner.name " for each entry, in order.
  static std::string Contents(const CDBObjectInfoMap& map) {
    std::string contents;
    for (POSITION position = map.GetStartPosition(); position != nullptr;) {
      CString key;
      CObject* object = nullptr;
      map.GetNextAssoc(position, key, object);
      auto* const info = DYNAMIC_DOWNCAST(CDBObjectInfo, object);
      if (info != nullptr) key += "=" + info->GetOwner() + "." + info->GetName();
      contents += std::string(key + " ");
    }
    return contents;
  }
  /// What has been shown since the last time, without what all begin with.
  std::string Shown() {
    std::string texts;
    for (const auto& box : prompts_.shown) {
      EXPECT_TRUE(box.type == BOX_STOP && box.text.starts_with("Error:  Failed to ")) << box.text;
      texts += box.text.substr(18) + "\n";
    }
    prompts_.shown.clear();
    return texts;
  }
  static std::string Failure(const char* what, const std::string& path, const char* cause) {
    return what + " object map file '"s + path + "'.\nCause: " + cause + ".\n";
  }

  test::TempDirectory files_;
  testing::ScriptedPrompts prompts_;
  CDBObjectInfoMap map_;
  const std::string path_ = files_ / "map";
};

TEST_F(ObjectInfoMapTest, FileHasTheFormOfEarlierReleasesByteForByte) {
  // A file that a link leads to stays with its owner and mode.
  const std::string file = files_.Put("file", "old");
  ASSERT_TRUE(::chmod(file.c_str(), 0640) == 0 && ::symlink("file", path_.c_str()) == 0);
  const bool given = ::chown(file.c_str(), 77, 88) == 0;
  ASSERT_TRUE(map_.Save(path_.c_str()));
  EXPECT_EQ(files_.Get("file"), kKnownFile);
  struct stat status {};
  EXPECT_TRUE(::stat(file.c_str(), &status) == 0 && (status.st_mode & 0777) == 0640);
  EXPECT_TRUE(!given || (status.st_uid == 77 && status.st_gid == 88));
  EXPECT_FALSE(map_.IsLoaded());
  CDBObjectInfoMap loaded;
  loaded.Insert("r", new CDBObjectInfo(OT_INDEX, "old", "old"));
  loaded.Insert("z", new CDBObjectInfo(OT_INDEX, "kept", "kept"));
  ASSERT_TRUE(loaded.Load(path_.c_str()));
  EXPECT_TRUE(loaded.IsLoaded());
  EXPECT_EQ(Contents(loaded), "z=kept.kept a r=O.N b=. \xE4x=own.name ");
  CDBObjectInfo* found = nullptr;
  EXPECT_TRUE(!loaded.Find("R", found) && loaded.Find("\xE4x", found));
  EXPECT_EQ(found->GetObjectType(), OT_VIEW);
  for (const auto& [bytes, contents] : test::Rows<std::string, const char*>{
           {"", ""},
           {"\1\0\0\0\0"s, " "},
           // An object that stands under several keys is owned once.
           {"\5\0\1k\xFF\xFF\1\0\x0D\0CDBObjectInfo\1\0\0\0\1o\1n"
            "\1k\1\x80\1\0\0\0\1p\1q\1l\2\0\1m\2\0\1m\3\0"s,
            "k=p.q l=o.n m=p.q "}}) {
    CDBObjectInfoMap map;
    EXPECT_TRUE(map.Load(files_.Put("map", bytes).c_str()) && map.IsLoaded());
    EXPECT_EQ(Contents(map), contents);
  }
}

TEST_F(ObjectInfoMapTest, EachFailingCallAndAllocationLeavesAWholeFileAndAWholeMap) {
  test::FailingSystemCalls calls;
  calls.WriteAtMost(20);
  const auto failing = platform::posix::MakeFiles(calls);
  const platform::ScopedPlatform scope(test::With(&platform::Platform::files, failing.get()));
  const char* const path = path_.c_str();
  for (const bool of_memory : {false, true}) {
    bool failed = true;
    for (int number = 1; failed; ++number) {
      failed = false;
      const auto tried = [&](auto work) {
        of_memory ? test::FailAllocation(number) : calls.Fail(number, ENOSPC);
        const bool done = work();
        failed |= of_memory ? test::AllocationFailed() : calls.failed();
        calls.Fail(0, 0);
        EXPECT_EQ(Shown().empty(), done) << number;
        return done;
      };
      files_.Put("map", kOldFile);
      const bool saved = tried([&] { return map_.Save(path); });
      const std::string now = files_.Get("map");
      EXPECT_TRUE(now == kKnownFile || (!saved && now == kOldFile)) << number;
      files_.Put("map", kKnownFile);
      CDBObjectInfoMap map;
      map.Insert("r", new CDBObjectInfo(OT_INDEX, "old", "old"));
      const bool loaded = tried([&] { return map.Load(path); });
      EXPECT_EQ(Contents(map), loaded ? "a r=O.N b=. \xE4x=own.name " : "r=old.old ") << number;
      EXPECT_EQ(map.IsLoaded(), loaded);
    }
  }
  calls.LeaveRoom(50);
  EXPECT_FALSE(map_.Save((files_ / "new").c_str()));
  EXPECT_EQ(files_.Get("new"), "(none)");
}

TEST_F(ObjectInfoMapTest, UpdateHoldsTheFileAndWritesOverNothingUnread) {
  EXPECT_TRUE(test::AllEndWell(4, [&](int process) {
    for (int i = 0; i < 10; ++i) {
      CDBObjectInfoMap map;
      const std::string key = std::to_string(process * 10 + i);
      EXPECT_TRUE(map.Update(path_.c_str(), [&] { map.SetAt(key.c_str(), new CDBObjectInfo); }));
    }
  }));
  CDBObjectInfoMap map;
  EXPECT_TRUE(map.Load(path_.c_str()) && map.GetCount() == 40);

  const std::string bad = files_.Put("bad", "\1\0\1"s);
  const std::string unreachable = files_ / "loop", missing = files_ / "missing/map";
  ASSERT_EQ(::symlink("loop", unreachable.c_str()), 0);
  for (const std::string& each : {bad, unreachable, missing}) {
    EXPECT_FALSE(map.Update(each.c_str(), [] { FAIL() << "nothing was read"; }));
  }
  EXPECT_EQ(files_.Get("bad"), "\1\0\1"s);
  EXPECT_EQ(Shown(), Failure("read", bad, "The file ended too soon") +
                         Failure("open", unreachable, "The path is not valid") +
                         Failure("create", missing, "The file was not found"));
}

TEST_F(ObjectInfoMapTest, WhatIsDroppedIsDeletedAndPassedByInAWalk) {
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
  map.SetAt(first->GetName(), new Counted(left));
  EXPECT_EQ(left, 1);
  EXPECT_TRUE(map.RemoveKey("key") && !map.RemoveKey("key") && left == 0);
  for (const char* each : {"a", "b", "r"}) map.SetAt(each, new Counted(left));
  std::string walked;
  for (POSITION position = map.GetStartPosition(); position != nullptr;) {
    CString key;
    CObject* object = nullptr;
    map.GetNextAssoc(position, key, object);
    walked += key;
    EXPECT_TRUE(map.RemoveKey(key));
    map.SetAt("new", nullptr);
  }
  EXPECT_EQ(walked, "rab");
  EXPECT_TRUE(left == 0 && map.GetCount() == 1);
  map.SetAt("a", new Counted(left));
  map.RemoveAll();
  EXPECT_TRUE(left == 0 && map.IsEmpty());
}

TEST_F(ObjectInfoMapTest, FileThatDoesNotHoldAMapChangesNothing) {
  constexpr const char* kTooSoon = "The file ended too soon";
  std::vector<std::pair<std::string, const char*>> rows = {
      {"\xFF\xFF\xFF\xFF\xFF\xFF"s + std::string(100, '\0'), kTooSoon},
      {"\1\0\1k\xFF\xFF\0\0\x0E\0CMapStringToOb\0\0"s,
       "The file has an object of an unexpected class"},
      {"\1\0\1k\5\0"s, "The file refers to an object that it does not have"}};
  for (std::size_t size = 1; size < kKnownFile.size(); ++size) {
    rows.emplace_back(kKnownFile.substr(0, size), kTooSoon);
  }
  const std::string before = Contents(map_);
  for (const auto& [bytes, cause] : rows) {
    EXPECT_FALSE(map_.Load(files_.Put("map", bytes).c_str())) << bytes;
    EXPECT_EQ(Shown(), Failure("read", path_, cause));
  }
  EXPECT_EQ(Contents(map_), before);
  EXPECT_FALSE(map_.IsLoaded());
}

TEST_F(ObjectInfoMapTest, FailuresOfTheSystemAreShownWithTheirCause) {
  struct Broken : test::ForwardingFiles {
    platform::Result<std::size_t> Read(HANDLE, std::span<char>) override { return error; }
    platform::Error error{platform::ErrorKind::kNoSpace, 28};
  };
  EXPECT_FALSE(map_.Load((files_ / "missing").c_str()));
  EXPECT_TRUE(Shown().empty()) << "that is told by the result alone";
  files_.Put("map", kKnownFile);
  test::FailAllocation(1);
  EXPECT_TRUE(!map_.Load(path_.c_str()) && test::AllocationFailed());
  EXPECT_FALSE(map_.Save((files_ / "missing/map").c_str()));
  EXPECT_FALSE(map_.Load(files_.path().c_str()));
  {
    const CFile reader(path_.c_str(), CFile::modeRead);
    EXPECT_FALSE(map_.Save(path_.c_str())) << "it keeps others out";
    const CFile writer(path_.c_str(), CFile::modeWrite);
    EXPECT_FALSE(map_.Load(path_.c_str())) << "it keeps writers out";
  }
  Broken broken;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::files, &broken));
  EXPECT_FALSE(map_.Load(path_.c_str()));
  EXPECT_EQ(Shown(), Failure("open", path_, "Cannot allocate memory") +
                         Failure("create", files_ / "missing/map", "The file was not found") +
                         Failure("open", files_.path(), "Access to the file was denied") +
                         Failure("create", path_, "The file is in use") +
                         Failure("open", path_, "The file is in use") +
                         Failure("read", path_, "The disk is full"));
  for (const auto& [size, expected] :
       test::Rows<UINT, const char*>{{255, "Too many files are open"}, {9, "Too many"}, {1, ""}}) {
    char text[255] = "?";
    UINT help_id = 0;
    EXPECT_TRUE(CFileException(CFileException::tooManyOpenFiles).GetErrorMessage(text, size));
    EXPECT_STREQ(text, expected);
    EXPECT_FALSE(CException().GetErrorMessage(text, size, &help_id));
    EXPECT_STREQ(text, "");
    EXPECT_TRUE(CArchiveException(99).GetErrorMessage(text, size, &help_id));
    EXPECT_EQ(help_id, 61861U) << "what is no cause is an error without one";
  }
}

}  // namespace
}  // namespace dq
