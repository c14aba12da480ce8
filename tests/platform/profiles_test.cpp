#include "dqlib/platform/platform.h"
#include "dqlib/platform/profile_text.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

using test::Rows;

using Names = std::vector<std::string>;

TEST(ProfileText, FindsValues) {
  const std::string text =
      "\xEF\xBB\xBF[Main]\r\nplain=a b\r\n  Padded\t =  x y \t\r\ndouble=\" a \"\r\nsingle='b'\r\n"
      "mixed=\"c'\r\none=\"\r\nempty=\r\nequals=a=b;c\r\n;comment=1\r\nno value here\r\n"
      "=nameless\r\ntwice=first\r\nTWICE=second\r\n [ Spaced ] ; remark\r\nk=1\r\n[x]y]\r\n"
      "k=2\r\n[main]\r\nlate=3\r\n[broken\r\nk=4";
  const Rows<const char*, const char*, std::optional<std::string_view>> rows = {
      {"Main", "plain", "a b"},  {"MAIN", " PADDED ", "x y"},
      {"Main", "double", " a "}, {"Main", "single", "b"},
      {"Main", "mixed", "\"c'"}, {"Main", "one", "\""},
      {"Main", "empty", ""},     {"Main", "equals", "a=b;c"},
      {"Main", ";comment", {}},  {"Main", "no value here", {}},
      {"Main", "", {}},          {"Main", "twice", "first"},
      {"spaced", "k", "1"},      {"x]y", "k", "2"},
      {"Main", "late", {}},      {"Main", "k", {}},
      {"broken", "k", {}},       {"none", "k", {}}};
  for (const auto& [section, key, value] : rows) {
    EXPECT_EQ(FindProfileValue(text, section, key), value) << section << " " << key;
  }
  EXPECT_EQ(ProfileSections(text), (Names{"Main", "Spaced", "x]y"}));
  EXPECT_EQ(ProfileKeys(text, "main"), (Names{"plain", "Padded", "double", "single", "mixed", "one",
                                              "empty", "equals", "twice"}));
  EXPECT_EQ(ProfileKeys(text, "none"), Names{});
}

TEST(ProfileText, ChangesOnlyTheLinesConcerned) {
  using Text = std::optional<const char*>;
  constexpr Text kNone;
  for (const auto& [rule, before, section, key, value, after] :
       Rows<const char*, std::string, const char*, Text, Text, std::string>{
           {"new file", "", "S", "k", "v", "[S]\r\nk=v\r\n"},
           {"mark alone", "\xEF\xBB\xBF", "S", "k", "v", "\xEF\xBB\xBF[S]\r\nk=v\r\n"},
           {"value", "[s]\n Key = old \n;c\n", "S", "KEY", "v", "[s]\nKey=v\n;c\n"},
           {"same value", "[s]\n k = v \n", "s", "k", "v", "[s]\n k = v \n"},
           {"blank kept", "[s]\nk=v\n", "s", "k", " v ", "[s]\nk= v \n"},
           {"last line", "[s]\rk=1\r;c", "s", "k", "2", "[s]\rk=2\r;c"},
           {"first twin", "[s]\nk=1\nk=2\n[s]\nk=3\n", "s", "k", "v", "[s]\nk=v\nk=2\n[s]\nk=3\n"},
           {"end of section", "[s]\na=1\n \n; of s\nno key\n\n\t\n[t]\n", "s", "k", "v",
            "[s]\na=1\n \n; of s\nno key\nk=v\n\n\t\n[t]\n"},
           {"end of text", "[s]\na=1\n;c", "s", "k", "v", "[s]\na=1\n;c\nk=v\n"},
           {"first key", "[s]\n;c\n[t]\nk=1\n", "s", "k", "v", "[s]\n;c\nk=v\n[t]\nk=1\n"},
           {"blank section", "[s]\n\n[t]\n", "s", "k", "v", "[s]\nk=v\n\n[t]\n"},
           {"no line end", "[s]\na=1", "s", "k", "v", "[s]\na=1\nk=v\n"},
           {"no line end at all", "[s]", "s", "k", "v", "[s]\r\nk=v\r\n"},
           {"neighbour's line end", "[r]\r\n[s]\na=1\n[t]\r\n", "s", "k", "v",
            "[r]\r\n[s]\na=1\nk=v\n[t]\r\n"},
           {"new section", "[r]\ra=1\r", "s", "k", "v", "[r]\ra=1\r[s]\rk=v\r"},
           {"keys before sections", "k=1\n", "s", "k", "v", "k=1\n[s]\nk=v\n"},
           {"delete key", "[s]\nk=1\n;c\nK = 2\na=1", "s", "k", {}, "[s]\n;c\na=1"},
           {"delete no key", "[s]\nk=1\n", "s", "j", {}, "[s]\nk=1\n"},
           {"delete section", "\xEF\xBB\xBF[s]\r\nk=1\r\n;c\r\n[t]\nk=1\n[S]\rk=2", "s", kNone,
            kNone, "\xEF\xBB\xBF;c\r\n[t]\nk=1\n"},
           {"delete no section", "[s]\nk=1\n", "k", {}, {}, "[s]\nk=1\n"}}) {
    std::string text = before;
    const bool changed = !key     ? DeleteProfileSection(text, section)
                         : !value ? DeleteProfileKey(text, section, *key)
                                  : SetProfileValue(text, section, *key, *value);
    EXPECT_EQ(text, after) << rule;
    EXPECT_EQ(changed, before != after) << rule;
  }
}

TEST(ProfileText, RefusesWhatWouldNotBeReadBack) {
  for (const char* name : {"", " \t", "a\nb", "a\r"}) {
    EXPECT_FALSE(IsProfileSectionName(name)) << name;
    EXPECT_FALSE(IsProfileKeyName(name)) << name;
  }
  for (const char* name : {"[a", " ;a", "a=b"}) {
    EXPECT_TRUE(IsProfileSectionName(name)) << name;
    EXPECT_FALSE(IsProfileKeyName(name)) << name;
  }
  EXPECT_FALSE(IsProfileKeyName(std::string_view("a\0b", 3)));
  EXPECT_FALSE(IsProfileValue(std::string_view("\0", 1)));
  EXPECT_TRUE(IsProfileValue(""));
}

struct ProfileFilesTest : testing::Test {
  std::string Run(const std::string& command) { return test::Shell(dir.path(), command); }

  const test::TempDirectory dir;
  ProfileFiles& profiles = *System().profile_files;
  const std::string path = dir / "a.ini";
};

TEST_F(ProfileFilesTest, AreMadeForTheUserAndReadBack) {
  EXPECT_EQ(profiles.Read(path, "s", "k"), std::nullopt);
  EXPECT_TRUE(profiles.Sections(path).empty());
  EXPECT_TRUE(profiles.Write(path, "s", "k", {}).ok() && profiles.Write(path, "s", {}, {}).ok());
  EXPECT_EQ(dir.Count(), 0u) << "deleting nothing makes no file";
  EXPECT_TRUE(profiles.Write(path, "s", "k", "v").ok());
  EXPECT_EQ(dir.Mode("a.ini"), 0600u);
  EXPECT_EQ(profiles.Read(path, "S", "K"), "v");
  EXPECT_EQ(profiles.Sections(path), std::vector<std::string>{"s"});
  EXPECT_EQ(profiles.Keys(path, "s"), std::vector<std::string>{"k"});
  EXPECT_TRUE(profiles.Write(path, "s", "k", {}).ok());
  EXPECT_EQ(dir.Get("a.ini"), "[s]\r\n");
  const test::ScopedVariable variable("XDG_CONFIG_HOME", dir / "config");
  EXPECT_TRUE(profiles.Write("own.ini", "s", "k", "v").ok());
  EXPECT_EQ(profiles.Read("own.ini", "s", "k"), "v");
  EXPECT_EQ(dir.Get("config/velmora/own.ini"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(dir.Mode("config/velmora"), 0700u);
}

TEST_F(ProfileFilesTest, WritingKeepsPermissionsLinksAndBytesOfOthers) {
  const std::string before = "\xEF\xBB\xBF; \xFF comment\r[a]\rk = 1\r\n\n[b]\nk=2";
  dir.Put("a.ini", before);
  Run("chmod 640 a.ini; ln -s a.ini link.ini; ln a.ini same.ini");
  EXPECT_TRUE(profiles.Write(path, "a", "k", "1").ok() && profiles.Write(path, "a", "j", {}).ok());
  EXPECT_EQ(Run("stat -c %h a.ini"), "2\n") << "what changes nothing writes nothing";
  EXPECT_TRUE(profiles.Write(dir / "link.ini", "b", "k", "3").ok());
  EXPECT_EQ(dir.Get("a.ini"), before.substr(0, before.size() - 1) + "3");
  EXPECT_EQ(Run("stat -c '%a %N' link.ini a.ini"), "777 'link.ini' -> 'a.ini'\n640 'a.ini'\n");
}

TEST_F(ProfileFilesTest, BadInputIsRefusedAndChangesNothing) {
  using enum ErrorKind;
  using Text = const char*;
  dir.Put("a.ini", "[s]k=v\n");
  dir.Put("wide", "\xFF\xFE[");
  Run("mkfifo pipe; mkdir sub; echo old > kept; chmod 400 kept");
  const Rows<Text, Text, Text, Text, ErrorKind> rows = {
      {"sub", "s", "k", "v", kInvalidArgument},  {"a.ini", "", "k", "v", kInvalidArgument},
      {"pipe", "s", "k", "v", kInvalidArgument}, {"a.ini", "s", "k=", "v", kInvalidArgument},
      {"wide", "s", "k", "v", kUnsupported},     {"none/a.ini", "s", "k", "v", kNotFound},
      {"kept", "s", "k", "v", kAccessDenied},    {"a.ini", "s", "k", "a\n[t]", kInvalidArgument}};
  for (const auto& [name, section, key, value, kind] : rows) {
    EXPECT_EQ(profiles.Write(dir / name, section, key, value).kind, kind) << name << section;
  }
  EXPECT_EQ(profiles.Write("c:\\a.ini", "s", "k", "v").kind, kNotFound);
  EXPECT_EQ(profiles.Read(dir / "pipe", "s", "k"), std::nullopt);
  for (const auto& [name, kind] : Rows<Text, ErrorKind>{
           {"a.ini", kNone}, {"none", kNone}, {"wide", kUnsupported}, {"pipe", kInvalidArgument}}) {
    EXPECT_EQ(profiles.CheckReadable(dir / name).kind, kind) << name;
  }
  EXPECT_EQ(Run("cat a.ini wide kept; ls"), "[s]k=v\n\xFF\xFE[old\na.ini\nkept\npipe\nsub\nwide\n");
}

TEST_F(ProfileFilesTest, ATemporaryNameThatIsTakenBlocksNoWriteAndALeftoverGoes) {
  // The name under which a.ini is written anew. A directory there can't be removed like a file.
  const std::string name = ".dq65abe8b5491700c0.tmp";
  Run("mkdir " + name);
  EXPECT_TRUE(profiles.Write(path, "s", "k", "v").ok());
  EXPECT_EQ(dir.Get("a.ini"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(dir.Count(), 2u);
  Run("rmdir " + name + "; touch " + name);
  EXPECT_TRUE(profiles.Write(path, "s", "k", "w").ok());
  EXPECT_EQ(dir.Get(name), "(none)");
}

}  // namespace
}  // namespace dq::platform
