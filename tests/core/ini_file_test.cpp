#include "dqlib/core/ini_file.h"

#include "tests/support/joined.h"
#include "tests/support/own_settings.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using test::Joined;
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

TEST_F(IniFile, ValuesOfSeveralLinesFitOnOneAndLoseTheirCarriageReturns) {
  ini.WriteKey("s", "k", "one\r\ntwo\n\nthree\r");
  EXPECT_EQ(directory.Get("f.ini"), "[s]\r\nk=one</N/>two</N/></N/>three\r\n");
  EXPECT_EQ(Value("S", "K"), "one\ntwo\n\nthree");
  EXPECT_EQ(directory.Mode("f.ini"), 0600u);
  EXPECT_EQ(Value("s", "missing", "a</N/>b"), "a\nb") << "the fallback is read like a value";
  EXPECT_EQ(Value("s", "missing", nullptr), "");
}

TEST_F(IniFile, ValuesAreCutAt2047BytesBeforeTheMarksAreUndone) {
  ini.WriteKey("s", "k", (std::string(2044, 'x') + "\ny").c_str());
  EXPECT_EQ(Value("s", "k"), std::string(2044, 'x') + "</N");
}

TEST_F(IniFile, NumbersAreTheDigitsAtTheStart) {
  directory.Put("f.ini", "[s]\na=12\nb=-3x\nc=+4\nd=x\ne=\nf=- 1\n");
  int value = 0;
  for (const auto& [key, expected] :
       {std::pair{"a", 12}, {"b", -3}, {"c", 4}, {"d", 0}, {"e", 0}, {"f", 0}, {"missing", 99}}) {
    ini.ReadIntKey("s", key, value, 99);
    EXPECT_EQ(value, expected) << key;
  }
  ini.WriteKey("s", "n", -2147483647 - 1);
  EXPECT_EQ(Value("s", "n"), "-2147483648");
}

TEST_F(IniFile, DeletingAKeyResetsItAndDeletingASectionRemovesIt) {
  directory.Put("f.ini", "; note\n[s]\nk=1\n[t]\nk=2\n");
  ini.DeleteKey("s", "k");
  EXPECT_EQ(Value("s", "k"), "0");
  ini.DeleteSection("s");
  ini.DeleteSection(nullptr);
  EXPECT_EQ(directory.Get("f.ini"), "; note\n[t]\nk=2\n");
}

TEST_F(IniFile, EnumerationsAppendToTheList) {
  CStringList names;
  ini.EnumSections(names);
  ini.EnumKeys("s", names);
  EXPECT_TRUE(names.IsEmpty());
  directory.Put("f.ini", "[b]\ny=\nx=1\n[a]\n");
  names.AddTail("first");
  ini.EnumSections(names);
  ini.EnumKeys("B", names);
  ini.EnumKeys(nullptr, names);
  // A buffer of names ends in two zeros.
  for (const char* const buffer : {"one\0two\0\0three\0", "\0one\0", "\0", kNone}) {
    CDQIniFile::ParseIniBuffer(buffer, names);
  }
  EXPECT_EQ(Joined(names), "first|b|a|y|x|one|two|");

  CDQIniFile bare("bare.ini");
  bare.WriteKey("s", "k", "v");
  names.RemoveAll();
  bare.EnumSections(names);
  EXPECT_TRUE(names.IsEmpty()) << "the current directory has no such file";
}

}  // namespace
}  // namespace dq
