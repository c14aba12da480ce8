#include "dqlib/core/registry_tools.h"

#include "dqlib/framework/base/registry_key.h"
#include "tests/support/memory_registry.h"
#include "tests/support/own_service.h"
#include "tests/support/own_settings.h"
#include "tests/support/registry_dump.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using test::Dump;
using test::RegistryDump;
constexpr char kRoot[] = "Software\\Velmora\\Test";

/// Keys of the real registry, below one that is empty at first.
class RegistryTools : public testing::Test {
 protected:
  ~RegistryTools() override {
    registry.CloseKey(root);
    DeleteRegistryTree(kCurrentUser, kRoot);
  }

  void Set(const char* path, const char* name, std::string_view data,
           DWORD type = REGISTRY_BINARY) {
    const HKEY key = registry.CreateKey(root, path).value;
    EXPECT_TRUE(registry.SetValue(key, name, type, data).ok());
    registry.CloseKey(key);
  }
  void Copy() {
    const HKEY from = registry.OpenKey(root, "from").value;
    const HKEY to = registry.CreateKey(root, "to").value;
    EXPECT_TRUE(DQLIB_CopyRegistryKey(from, to));
    const HKEY same = registry.OpenKey(root, "TO").value;
    EXPECT_TRUE(DQLIB_CopyRegistryKey(to, same)) << "which changes nothing";
    for (const HKEY key : {from, to, same}) registry.CloseKey(key);
  }
  RegistryDump All() { return Dump(registry, root); }

  platform::Registry& registry = *platform::Current().registry;
  HKEY root = registry.CreateKey(kCurrentUser, kRoot).value;
};

TEST_F(RegistryTools, TextsOfUpTo260BytesAreFoundWhateverTheirKind) {
  for (const auto& [data, type, expected] : test::Rows<std::string, DWORD, std::string>{
           {"", REGISTRY_STRING, ""},
           {std::string("text\0more", 9), REGISTRY_EXPAND_STRING, "text"},
           {std::string(260, 'x'), REGISTRY_BINARY, std::string(260, 'x')},
           {std::string(261, 'x'), REGISTRY_STRING, ""},
           {std::string("AB\0\0", 4), REGISTRY_DWORD, "AB"},
       }) {
    Set("k", "v", data, type);
    EXPECT_EQ(DQLIB_AppFindValueInRegistry(root, "k", "V").View(), expected);
  }
  for (const auto& [path, name] : test::Rows<const char*, const char*>{
           {"k", "missing"}, {"missing", "v"}, {nullptr, "v"}, {"k", nullptr}}) {
    EXPECT_EQ(DQLIB_AppFindValueInRegistry(root, path, name), "");
  }
}

TEST_F(RegistryTools, TextsAreWrittenInTheLengthThatIsGiven) {
  DQLIB_AppWriteValueInRegistry(root, "a\\b", "with zero", "xyz", 4);
  DQLIB_AppWriteValueInRegistry(root, "a\\b", "without", "xyz", 2);
  DQLIB_AppWriteValueInRegistry(root, "a\\b", "negative", "xyz", -1);
  DQLIB_AppWriteValueInRegistry(root, "a\\b", "null", nullptr, 1);
  DQLIB_AppWriteValueInRegistry(root, nullptr, "null", "x", 1);
  const RegistryDump expected = {{"", {}},
                                 {"a", {}},
                                 {"a\\b",
                                  {{"with zero", {REGISTRY_STRING, std::string("xyz\0", 4)}},
                                   {"without", {REGISTRY_STRING, "xy"}}}}};
  EXPECT_EQ(All(), expected);
}

TEST_F(RegistryTools, ACopyMovesAllAndLeavesTheSourceEmpty) {
  Set("from", "", "default", REGISTRY_STRING);
  Set("from", "most", std::string(7680, 'x'), 0x1234);
  Set("from", "none", "", REGISTRY_NONE);
  Set("from\\one\\two", "deep", "1");
  Set("to", "", "overwritten");
  Set("to\\one", "kept", "2");
  Copy();
  const RegistryDump expected = {{"", {}},
                                 {"from", {}},
                                 {"to",
                                  {{"", {REGISTRY_STRING, "default"}},
                                   {"most", {0x1234, std::string(7680, 'x')}},
                                   {"none", {REGISTRY_NONE, ""}}}},
                                 {"to\\one", {{"kept", {REGISTRY_BINARY, "2"}}}},
                                 {"to\\one\\two", {{"deep", {REGISTRY_BINARY, "1"}}}}};
  EXPECT_EQ(All(), expected);
}

TEST_F(RegistryTools, AValueOf7681BytesStaysInTheTopKeyAndIsLostInASubKey) {
  Set("from", "much", std::string(7681, 'x'));
  Set("from\\sub", "much", std::string(7681, 'x'));
  Copy();
  const RegistryDump expected = {{"", {}},
                                 {"from", {{"much", {REGISTRY_BINARY, std::string(7681, 'x')}}}},
                                 {"to", {}},
                                 {"to\\sub", {}}};
  EXPECT_EQ(All(), expected);
}

TEST_F(RegistryTools, ARenameMovesMergesOrChangesCase) {
  const std::map<std::string, test::DumpedValue> values = {{"v", {REGISTRY_BINARY, "1"}}};
  const auto tree = [&](const std::string& name) {
    return RegistryDump{{"", {}}, {name, values}, {name + "\\sub", values}};
  };
  Set("Name", "v", "1");
  Set("Name\\sub", "v", "1");
  for (const auto& [from, to, result, after] :
       test::Rows<const char*, const char*, BOOL, const char*>{{"Name", "Name", 1, "Name"},
                                                               {"missing", "x", 0, "Name"},
                                                               {"Name", "NAME", 1, "NAME"},
                                                               {"name\\", "nAmE", 1, "nAmE"},
                                                               {"nAmE", "Name\\below", 0, "nAmE"},
                                                               {"nAmE\\sub", "nAmE", 0, "nAmE"},
                                                               {"", "x", 0, "nAmE"},
                                                               {"nAmE", "", 0, "nAmE"},
                                                               {nullptr, "x", 0, "nAmE"},
                                                               {"name", "other", 1, "other"}}) {
    EXPECT_EQ(DQLIB_RenameRegistryItem(root, from, to) != 0, result != 0) << to;
    EXPECT_EQ(All(), tree(after)) << to;
  }
  Set("target", "v", "old");
  Set("target", "w", "kept");
  EXPECT_TRUE(DQLIB_RenameRegistryItem(root, "other", "target"));
  RegistryDump merged = tree("target");
  merged["target"]["w"] = {REGISTRY_BINARY, "kept"};
  EXPECT_EQ(All(), merged);
}

TEST(RegistryMoves, AStoreThatRefusesEndsTheMoveWhichIsNoFailure) {
  test::MemoryRegistry registry;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::registry, &registry));
  registry.SetValue(registry.CreateKey(kCurrentUser, "from\\sub").value, "v", REGISTRY_BINARY, "1");
  registry.CreateKey(kCurrentUser, "to\\sub");
  registry.refusal = {platform::ErrorKind::kNoSpace, 0};
  EXPECT_TRUE(DQLIB_RenameRegistryItem(kCurrentUser, "from", "to"));
  EXPECT_EQ(Dump(registry)["from\\sub"].count("v"), 1u);
  registry.refusal = {};
  const HKEY from = registry.OpenKey(kCurrentUser, "from").value;
  const HKEY below = registry.CreateKey(from, "sub\\below").value;
  EXPECT_FALSE(DQLIB_CopyRegistryKey(from, below)) << "a move into itself ends";
}

TEST(RegistryMoves, WhatCannotBeReadIsNeitherMovedNorLost) {
  struct Unreadable : test::MemoryRegistry {
    platform::Result<platform::RegistryValue> EnumValue(HKEY key, std::size_t index) override {
      if (--reads_left == 0) return platform::Error{platform::ErrorKind::kBusy, 16};
      return MemoryRegistry::EnumValue(key, index);
    }
    platform::Result<std::string> EnumKey(HKEY key, std::size_t index) override {
      if (--reads_left == 0) return platform::Error{platform::ErrorKind::kBusy, 16};
      return MemoryRegistry::EnumKey(key, index);
    }
    int reads_left = 0;
  };
  for (const char* target : {"to", "FROM"}) {
    bool failed = true;
    for (int read = 1; failed; ++read) {
      Unreadable registry;
      const platform::ScopedPlatform scope(test::With(&platform::Platform::registry, &registry));
      for (const char* path : {"from", "from\\sub", "from\\sub\\low"}) {
        registry.SetValue(registry.CreateKey(kCurrentUser, path).value, path, REGISTRY_BINARY, "1");
      }
      registry.reads_left = read;
      const BOOL renamed = DQLIB_RenameRegistryItem(kCurrentUser, "from", target);
      failed = registry.reads_left <= 0;
      EXPECT_EQ(renamed, failed ? 0 : 1) << read;
      registry.reads_left = 0;
      std::size_t values = 0;
      for (const auto& [path, found] : Dump(registry)) values += found.size();
      EXPECT_EQ(values, 3U) << target << ", read " << read;
    }
  }
}

TEST(RegistryMoves, AKeyWhoseSubKeysCannotBeListedIsNotDeleted) {
  test::MemoryRegistry registry;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::registry, &registry));
  registry.CreateKey(kCurrentUser, "from\\sub");
  registry.unlisted = {platform::ErrorKind::kNoSpace, 0};
  EXPECT_EQ(DeleteRegistryTree(kCurrentUser, "from\\sub").kind, platform::ErrorKind::kNoSpace);
  registry.unlisted = {};
  EXPECT_EQ(Dump(registry).count("from\\sub"), 1u);
  EXPECT_TRUE(DeleteRegistryTree(kCurrentUser, "from").ok());
  EXPECT_EQ(DeleteRegistryTree(kCurrentUser, "from").kind, platform::ErrorKind::kNotFound);
}

}  // namespace
}  // namespace dq
