#include "dqlib/core/ini_file.h"
#include "dqlib/core/registry_tools.h"
#include "dqlib/core/x_mem_file.h"
#include "dqlib/framework/base/registry_key.h"
#include "dqlib/framework/windows/win_app.h"
#include "tests/support/joined.h"
#include "tests/support/memory_registry.h"
#include "tests/support/own_service.h"
#include "tests/support/own_settings.h"
#include "tests/support/registry_dump.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using platform::ErrorKind;
using test::Rows;
constexpr const char* kNone = nullptr;

class IniFile : public testing::Test {
 protected:
  std::string Value(const char* section, const char* key, const char* fallback = "(none)") {
    CString value;
    CDQIniFile(ini).ReadKey(section, key, value, fallback);
    return std::string(value.View());
  }

  const test::TempDirectory directory;
  CDQIniFile ini{(directory / "f.ini").c_str()};
};

TEST_F(IniFile, ValuesOfSeveralLinesFitOnOneAndAKeyIsDeletedByAZero) {
  directory.Put("f.ini", "; note\n[s]\nk=-3x\n[t]\nk=2\n");
  int number = 0, missing = 0;
  ini.ReadIntKey("s", "k", number, 99);
  ini.ReadIntKey("s", "missing", missing, 99);
  EXPECT_TRUE(number == -3 && missing == 99);
  ini.DeleteKey("s", "k");
  ini.WriteKey("s", "n", "one\r\ntwo\n\nthree\r");
  EXPECT_EQ(directory.Get("f.ini"), "; note\n[s]\nk=0\nn=one</N/>two</N/></N/>three\n[t]\nk=2\n");
  EXPECT_EQ(Value("S", "N"), "one\ntwo\n\nthree");
  EXPECT_EQ(Value("s", "missing", "a</N/>b"), "a\nb") << "the fallback is read like a value";
  EXPECT_EQ(Value("s", "missing", nullptr), "");
  // Cut at 2047 bytes, before the marks are undone.
  ini.WriteKey("s", "k", (std::string(2044, 'x') + "\ny").c_str());
  EXPECT_EQ(Value("s", "k"), std::string(2044, 'x') + "</N");
  ini.WriteKey("t", "k", INT_MIN);
  for (const char* section : {"s", kNone}) ini.DeleteSection(section);
  EXPECT_EQ(directory.Get("f.ini"), "; note\n[t]\nk=-2147483648\n");
}

TEST_F(IniFile, EnumerationsAppendToTheList) {
  CStringList names;
  ini.EnumSections(names);
  ini.EnumKeys("s", names);
  EXPECT_TRUE(names.IsEmpty());
  directory.Put("f.ini", "[b]\ny=\nx=1\n[a]\n");
  names.AddTail("first");
  ini.EnumSections(names);
  for (const char* section : {"B", kNone}) ini.EnumKeys(section, names);
  // A buffer of names ends in two zeros.
  for (const char* buffer : {"one\0two\0\0three\0", "\0one\0", kNone}) {
    CDQIniFile::ParseIniBuffer(buffer, names);
  }
  EXPECT_EQ(test::Joined(names), "first|b|a|y|x|one|two|");

  CDQIniFile bare("bare.ini");
  bare.WriteKey("s", "k", "v");
  names.RemoveAll();
  bare.EnumSections(names);
  EXPECT_TRUE(names.IsEmpty()) << "the current directory has no such file";
}

/// A registry of the test's own, of which one read may fail, in force while it lives.
struct OwnRegistry : test::MemoryRegistry {
  HKEY Create(const char* path) { return CreateKey(kCurrentUser, path).value; }
  void Set(const char* path, const char* name, std::string_view data,
           DWORD type = REGISTRY_BINARY) {
    EXPECT_TRUE(SetValue(Create(path), name, type, data).ok());
  }
  /// What stands in it: "path{name=type:data ...}...", of much data its size.
  std::string Shown() {
    std::string all;
    for (const auto& [path, values] : test::Dump(*this)) {
      all += path + "{";
      for (const auto& [name, value] : values) {
        const auto& [type, data] = value;
        const bool is_much = data.size() > 99;
        all += name + "=" + std::to_string(type) + ":";
        all += (is_much ? std::to_string(data.size()) : data) + " ";
      }
      all += "}";
    }
    return all;
  }

  platform::Result<platform::RegistryValue> EnumValue(HKEY key, std::size_t index) override {
    if (--reads_left == 0) return platform::Error{ErrorKind::kBusy, 16};
    return MemoryRegistry::EnumValue(key, index);
  }
  platform::Result<std::string> EnumKey(HKEY key, std::size_t index) override {
    if (--reads_left == 0) return platform::Error{ErrorKind::kBusy, 16};
    return MemoryRegistry::EnumKey(key, index);
  }
  int reads_left = 0;
  platform::ScopedPlatform scope{test::With(&platform::Platform::registry, this)};
};

TEST(RegistryTools, TextsOfUpTo260BytesAreFoundWhateverTheirKind) {
  OwnRegistry registry;
  for (const auto& [data, type, expected] : Rows<std::string, DWORD, std::string>{
           {"", REGISTRY_STRING, ""},
           {std::string("text\0more", 9), REGISTRY_EXPAND_STRING, "text"},
           {std::string(260, 'x'), REGISTRY_BINARY, std::string(260, 'x')},
           {std::string(261, 'x'), REGISTRY_STRING, ""},
           {std::string("AB\0\0", 4), REGISTRY_DWORD, "AB"}}) {
    registry.Set("k", "v", data, type);
    EXPECT_EQ(DQLIB_AppFindValueInRegistry(kCurrentUser, "k", "V").View(), expected);
  }
  for (const auto& [path, name] :
       {std::pair("k", "missing"), {"missing", "v"}, {kNone, "v"}, {"k", kNone}}) {
    EXPECT_EQ(DQLIB_AppFindValueInRegistry(kCurrentUser, path, name), "");
  }
}

TEST(RegistryTools, TextsAreWrittenInTheLengthThatIsGiven) {
  OwnRegistry registry;
  DQLIB_AppWriteValueInRegistry(kCurrentUser, "a\\b", "with zero", "xyz", 4);
  DQLIB_AppWriteValueInRegistry(kCurrentUser, "a\\b", "without", "xyz", 2);
  DQLIB_AppWriteValueInRegistry(kCurrentUser, "a\\b", "none", "xyz", 0);
  DQLIB_AppWriteValueInRegistry(kCurrentUser, "a\\b", "negative", "xyz", -1);
  DQLIB_AppWriteValueInRegistry(kCurrentUser, "a\\b", "null", nullptr, 1);
  DQLIB_AppWriteValueInRegistry(kCurrentUser, nullptr, "null", "x", 1);
  EXPECT_EQ(registry.Shown(),
            std::string("{}a{}a\\b{none=1: with zero=1:xyz\0 without=1:xy }", 48));
}

TEST(RegistryTools, ACopyMovesAllButAValueOf7681BytesWhichASubKeyLoses) {
  OwnRegistry registry;
  registry.Set("from", "", "default", REGISTRY_STRING);
  registry.Set("from", "too much", std::string(7681, 'x'));
  registry.Set("from", "most", std::string(7680, 'x'), 0x1234);
  registry.Set("from", "none", "", REGISTRY_NONE);
  registry.Set("from\\one\\two", "deep", "1");
  registry.Set("from\\one\\two", "too much", std::string(7681, 'x'));
  registry.Set("to", "", "overwritten");
  registry.Set("to\\one", "kept", "2");
  EXPECT_TRUE(DQLIB_CopyRegistryKey(registry.Create("from"), registry.Create("to")));
  EXPECT_TRUE(DQLIB_CopyRegistryKey(registry.Create("to"), registry.Create("TO"))) << "no change";
  EXPECT_EQ(registry.Shown(),
            "{}from{too much=3:7681 }to{=1:default most=4660:7680 none=0: }to\\one{kept=3:2 }"
            "to\\one\\two{deep=3:1 }");
}

TEST(RegistryTools, ARenameMovesMergesOrChangesCase) {
  OwnRegistry registry;
  registry.Set("Name", "v", "1");
  registry.Set("Name\\sub", "v", "1");
  const Rows<const char*, const char*, bool, const char*> rows = {
      {"Name", "Name", true, "Name"},         {"Name", "NAME", true, "NAME"},
      {"missing", "x", false, "NAME"},        {"", "x", false, "NAME"},
      {"name\\", "nAmE", true, "nAmE"},       {"\\", "", true, "nAmE"},
      {"nAmE\\sub", "nAmE", false, "nAmE"},   {"nAmE", "", false, "nAmE"},
      {"nAmE", nullptr, false, "nAmE"},       {nullptr, "x", false, "nAmE"},
      {"nAmE", "Name\\below", false, "nAmE"}, {"name", "\\other\\", true, "other"}};
  for (const auto& [from, to, result, after] : rows) {
    EXPECT_EQ(DQLIB_RenameRegistryItem(kCurrentUser, from, to) != 0, result) << to;
    EXPECT_EQ(registry.Shown(), std::string("{}") + after + "{v=3:1 }" + after + "\\sub{v=3:1 }")
        << to;
  }
  registry.Set("target", "v", "old");
  registry.Set("target", "w", "kept");
  EXPECT_TRUE(DQLIB_RenameRegistryItem(kCurrentUser, "other", "target"));
  EXPECT_EQ(registry.Shown(), "{}target{v=3:1 w=3:kept }target\\sub{v=3:1 }");
}

TEST(RegistryTools, AStoreThatRefusesEndsTheMoveWhichIsNoFailure) {
  OwnRegistry registry;
  registry.Set("from\\sub", "v", "1");
  registry.Create("to\\sub");
  registry.refusal = {ErrorKind::kNoSpace, 0};
  EXPECT_TRUE(DQLIB_RenameRegistryItem(kCurrentUser, "from", "to"));
  EXPECT_EQ(registry.Shown(), "{}from{}from\\sub{v=3:1 }to{}to\\sub{}");
  registry.refusal = {};
  EXPECT_FALSE(DQLIB_CopyRegistryKey(registry.Create("from"), registry.Create("from\\sub\\below")))
      << "a move into itself ends";

  registry.unlisted = {ErrorKind::kNoSpace, 0};
  EXPECT_EQ(DeleteRegistryTree(kCurrentUser, "to").kind, ErrorKind::kNoSpace);
  registry.unlisted = {};
  EXPECT_TRUE(DeleteRegistryTree(kCurrentUser, "to").ok());
  EXPECT_EQ(DeleteRegistryTree(kCurrentUser, "to").kind, ErrorKind::kNotFound);
}

TEST(RegistryTools, WhatCannotBeReadIsNeitherMovedNorLost) {
  for (const char* target : {"to", "FROM"}) {
    bool failed = true;
    for (int read = 1; failed; ++read) {
      OwnRegistry registry;
      for (const char* path : {"from", "from\\sub", "from\\sub\\low"}) registry.Set(path, "v", "1");
      registry.reads_left = read;
      const BOOL renamed = DQLIB_RenameRegistryItem(kCurrentUser, "from", target);
      failed = registry.reads_left <= 0;
      EXPECT_EQ(renamed, failed ? 0 : 1) << read;
      registry.reads_left = 0;
      EXPECT_EQ(std::ranges::count(registry.Shown(), '='), 3) << target << read;
    }
  }
}

std::string Bytes(CXMemFile& file) {
  return {file.GetBuffer(), static_cast<std::size_t>(file.GetLength())};
}

TEST(XMemFile, TheProfileKeepsItsBytes) {
  CXMemFile file, other;
  EXPECT_FALSE(file.WriteRegistry("s", "b")) << "without an application";
  CWinApp app("tool");
  app.SetRegistryKey("Velmora");
  file.Write("a\0b", 3);
  EXPECT_FALSE(file.ReadRegistry("s", "b"));
  EXPECT_EQ(file.GetPosition(), 3) << "a failure leaves the file as it is";
  EXPECT_TRUE(file.WriteRegistry("s", "b"));
  other.Write("longer than that", 16);
  EXPECT_TRUE(other.ReadRegistry("s", "b") && other.GetPosition() == 0);
  EXPECT_EQ(Bytes(other), std::string("a\0b", 3));
  DeleteRegistryTree(kCurrentUser, "Software\\Velmora");
}

TEST(XMemFile, AnArchiveKeepsALengthAndTheBytes) {
  CXMemFile file, loaded;
  file.Write("xyz", 3);
  CMemFile stream;
  CArchive storing(&stream, CArchive::store);
  storing << DWORD{8};
  file.Serialize(storing);
  storing.Close();
  stream.SeekToBegin();
  CArchive loading(&stream, CArchive::load);
  loaded.Write("former", 6);
  EXPECT_THROW(loaded.Serialize(loading), CArchiveException) << "a length past the end";
  EXPECT_EQ(Bytes(loaded), "former");
  loaded.Serialize(loading);
  EXPECT_EQ(Bytes(loaded), "xyz");
}

}  // namespace
}  // namespace dq
