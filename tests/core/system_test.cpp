#include "tests/support/doubles.h"
#include "tests/support/own_settings.h"
#include "tests/support/registries.h"
#include "tests/support/serial_node.h"

namespace dq::test {
namespace {

using namespace std::string_view_literals;
using Info = CDQSystemInfo;
using platform::ErrorKind;
using Text = const char*;
constexpr Text kNone = nullptr;

struct IniFile : testing::Test {
  std::string Value(const char* section, const char* key, const char* fallback = "(none)") {
    CString value;
    CDQIniFile(ini).ReadKey(section, key, value, fallback);
    return std::string(value.View());
  }

  const TempDirectory directory;
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
  for (const Text section : {"s", kNone}) ini.DeleteSection(section);
  EXPECT_EQ(directory.Get("f.ini"), "; note\n[t]\nk=-2147483648\n");
}

TEST_F(IniFile, EnumerationsAppendToTheList) {
  CStringList names;
  ini.EnumSections(names);
  ini.EnumKeys("s", names);
  directory.Put("f.ini", "[b]\ny=\nx=1\n[a]\n");
  names.AddTail("first");
  ini.EnumSections(names);
  for (const Text section : {"B", kNone}) ini.EnumKeys(section, names);
  // A buffer of names ends in two zeros.
  for (const Text list : {"one\0two\0\0three\0", "\0one\0", kNone}) ini.ParseIniBuffer(list, names);
  // A file of which the current directory has none.
  CDQIniFile bare("bare.ini");
  bare.WriteKey("s", "k", "v");
  bare.EnumSections(names);
  EXPECT_EQ(Joined(names), "first|b|a|y|x|one|two|");
}

/// A registry of the test's own, of which one read may fail, in force while it lives.
struct OwnRegistry : MemoryRegistry {
  HKEY Create(Text path, HKEY root = kCurrentUser) { return CreateKey(root, path).value; }
  void Set(Text path, Text name, std::string_view data, DWORD type = REGISTRY_BINARY,
           HKEY root = kCurrentUser) {
    EXPECT_TRUE(SetValue(Create(path, root), name, type, data).ok());
  }
  /// What stands in it: "path{name=type:data ...}...", of much data its size.
  std::string Shown(HKEY root = kCurrentUser) {
    std::string all;
    for (const auto& [path, values] : Dump(*this, root)) {
      all += path + "{";
      for (const auto& [name, value] : values) {
        const std::string& data = value.second;
        all += name + "=" + std::to_string(value.first) + ":" +
               (data.size() > 99 ? std::to_string(data.size()) : data) + " ";
      }
      all += "}";
    }
    return all;
  }

  platform::Result<platform::RegistryValue> EnumValue(HKEY key, std::size_t index) override {
    return --reads_left == 0 ? busy : MemoryRegistry::EnumValue(key, index);
  }
  platform::Result<std::string> EnumKey(HKEY key, std::size_t index) override {
    return --reads_left == 0 ? busy : MemoryRegistry::EnumKey(key, index);
  }
  const platform::Error busy{ErrorKind::kBusy, 16};
  int reads_left = 0;
};

TEST(RegistryTools, TextsOfUpTo260BytesAreFoundAndAnyAreWrittenInTheLengthThatIsGiven) {
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
  DeleteRegistryTree(kCurrentUser, "k");
  const Rows<Text, Text, int> rows = {
      {"zero", "xyz", 4}, {"xy", "xyz", 2}, {"none", "xyz", 0}, {"-1", "xyz", -1}, {"", kNone, 1}};
  for (const auto& [name, text, length] : rows) {
    DQLIB_AppWriteValueInRegistry(kCurrentUser, "a\\b", name, text, length);
  }
  DQLIB_AppWriteValueInRegistry(kCurrentUser, nullptr, "null", "x", 1);
  EXPECT_EQ(registry.Shown(), "{}a{}a\\b{none=1: xy=1:xy zero=1:xyz\0 }"sv);
}

TEST(RegistryTools, ACopyMovesAllButAValueOf7681BytesWhichASubKeyLoses) {
  OwnRegistry registry;
  const std::string much(7681, 'x');
  registry.Set("from", "", "default", REGISTRY_STRING);
  registry.Set("from", "too much", much);
  registry.Set("from", "most", much.substr(1), 0x1234);
  registry.Set("from", "none", "", REGISTRY_NONE);
  registry.Set("to", "", "overwritten");
  registry.Set("from\\one\\two", "deep", "1");
  registry.Set("from\\one\\two", "too much", much);
  registry.Set("to\\one", "kept", "2");
  EXPECT_TRUE(DQLIB_CopyRegistryKey(registry.Create("from"), registry.Create("to")));
  EXPECT_TRUE(DQLIB_CopyRegistryKey(registry.Create("to"), registry.Create("TO"))) << "no change";
  EXPECT_EQ(registry.Shown(), R"({}from{too much=3:7681 }to{=1:default most=4660:7680 none=0: })"
                              R"(to\one{kept=3:2 }to\one\two{deep=3:1 })");
}

TEST(RegistryTools, ARenameMovesMergesOrChangesCase) {
  OwnRegistry registry;
  registry.Set("Name", "v", "1");
  registry.Set("Name\\sub", "v", "1");
  for (const auto& [from, to, renamed, after] : Cases<4>(R"(
       Name => Name => 1 => Name ;; Name => NAME => 1 => NAME ;; missing => x => 0 => NAME
       => x => 0 => NAME ;; name\ => nAmE => 1 => nAmE ;; \ => => 1 => nAmE ;; nAmE => => 0 => nAmE
       nAmE\sub => nAmE => 0 => nAmE ;; nAmE => Name\below => 0 => nAmE
       name => \other\ => 1 => other)")) {
    const BOOL result = DQLIB_RenameRegistryItem(kCurrentUser, from.c_str(), to.c_str());
    EXPECT_EQ(std::to_string(result), renamed) << from << " to " << to;
    EXPECT_EQ(registry.Shown(), "{}" + after + "{v=3:1 }" + after + "\\sub{v=3:1 }");
  }
  EXPECT_FALSE(DQLIB_RenameRegistryItem(kCurrentUser, "other", nullptr) ||
               DQLIB_RenameRegistryItem(kCurrentUser, nullptr, "x"));
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
  for (const Text target : {"to", "FROM"}) {
    bool failed = true;
    for (int read = 1; failed; ++read) {
      OwnRegistry registry;
      for (const Text path : {"from", "from\\sub", "from\\sub\\low"}) registry.Set(path, "v", "1");
      registry.reads_left = read;
      const BOOL renamed = DQLIB_RenameRegistryItem(kCurrentUser, "from", target);
      failed = registry.reads_left <= 0;
      EXPECT_EQ(renamed, failed ? 0 : 1) << read;
      registry.reads_left = 0;
      EXPECT_EQ(std::ranges::count(registry.Shown(), '='), 3) << target << read;
    }
  }
}

TEST(RegistryTools, FileTypesAreEnteredUpToTheFirstRefusal) {
  ScriptedPlatform platform;
  OwnRegistry registry;
  const auto enter = CDQFileUtility::RegisterFileType;
  EXPECT_FALSE(enter("DQScript", "SQL Script", "sql") || enter(nullptr, "SQL Script", ".sql") ||
               enter("", "SQL Script", ".sql"));
  EXPECT_TRUE(enter("DQScript", "SQL Script", ".sql"));
  registry.changes = 0;
  EXPECT_TRUE(enter("DQScript", "SQL Script", ".sql") && registry.changes == 3);
  registry.refusal = {ErrorKind::kNoSpace, 0};
  EXPECT_FALSE(enter("Refused", "SQL Script", ""));
  registry.refusal = {};
  platform.modules.path = "/opt/my host";
  EXPECT_TRUE(enter("Other", "Other Type", ""));
  std::string shown = registry.Shown(kClassesRoot);
  std::erase(shown, '\0');
  EXPECT_EQ(shown,
            R"({}.sql{=1:DQScript }DQScript{=1:SQL Script }DQScript\shell{}DQScript\shell\open{})"
            R"(DQScript\shell\open\command{=1:/opt/host "%1" })"
            R"(DQScript\shell\open\ddeexec{=1:[open("%1")] })"
            R"(Other{=1:Other Type }Other\shell{}Other\shell\open{})"
            R"(Other\shell\open\command{=1:"/opt/my host" "%1" })"
            R"(Other\shell\open\ddeexec{=1:[open("%1")] })");
}

TEST(XMemFile, TheProfileAndAnArchiveKeepItsBytes) {
  const auto bytes = [](CXMemFile& file) {
    return CString(file.GetBuffer(), static_cast<int>(file.GetLength()));
  };
  CXMemFile file, read;
  EXPECT_FALSE(file.WriteRegistry("s", "b")) << "without an application";
  CWinApp app("tool");
  app.SetRegistryKey("Velmora");
  file.Write("a\0b", 3);
  EXPECT_TRUE(!file.ReadRegistry("s", "b") && file.GetPosition() == 3) << "it is left as it is";
  EXPECT_TRUE(file.WriteRegistry("s", "b"));
  read.Write("longer than that", 16);
  EXPECT_TRUE(read.ReadRegistry("s", "b") && read.GetPosition() == 0 && bytes(read) == "a\0b"sv);
  DeleteRegistryTree(kCurrentUser, "Software\\Velmora");

  const auto store = [&](CArchive& archive) { file.Serialize(archive << DWORD{8}); };
  LoadFrom(Stored(store), [&](CArchive& archive) {
    read.Write("former", 6);
    EXPECT_THROW(read.Serialize(archive), CArchiveException) << "a length past the end";
    EXPECT_EQ(bytes(read), "former");
    read.Serialize(archive);
    EXPECT_EQ(bytes(read), "a\0b"sv);
  });
}

struct SystemInfoTest : testing::Test {
  ScriptedPlatform platform;
  ManualClock clock;
  ScriptedLocale locale;
  OwnRegistry registry;
};

TEST_F(SystemInfoTest, ReadsTheVersionOrShowsWhyNot) {
  ScriptedPrompts prompts;
  platform.facts.version = platform::SystemVersion{6, 1, 7601};
  const Info info;
  const auto& os = info.GetOSVersionInfo();
  EXPECT_TRUE(os.dwOSVersionInfoSize == 148 && os.dwMajorVersion == 6 && os.dwMinorVersion == 1 &&
              os.dwBuildNumber == 7601 && prompts.shown.empty());
  EXPECT_TRUE(!info.IsWindows95() && Info::IsWindowsNT() && !info.IsTerminalServer());
  EXPECT_EQ(Info::GetComputerName() + Info::GetUserName() + Info::GetHostName(),
            "\\\\TIGERscotttiger.example.org");

  platform.facts.version = platform::Error{platform::ErrorKind::kOther, 5};
  platform.errors.texts[5] = "No version";
  EXPECT_EQ(Info().GetOSVersionInfo().dwMajorVersion, 0U);
  ASSERT_EQ(prompts.shown.size(), 1U);
  EXPECT_THAT(prompts.shown[0].text, testing::HasSubstr("No version"));
}

TEST_F(SystemInfoTest, FindsSuitesAndBrowsersInTheRegistry) {
  EXPECT_FALSE(Info::IsIE4Installed() || Info::IsProductSuiteInstalled("Terminal Server"));
  EXPECT_EQ(Info::GetDefaultWebBrowserType(), WEB_BROWSER_NONE);
  platform.facts.browser = "/usr/bin/browser";
  EXPECT_STREQ(Info::GetDefaultWebBrowser(), "/usr/bin/browser");
  EXPECT_EQ(Info::GetDefaultWebBrowserType(), WEB_BROWSER_OTHER);

  registry.Create("SOFTWARE\\Microsoft\\Internet Explorer", kLocalMachine);
  registry.Set("SYSTEM\\CurrentControlSet\\Control\\ProductOptions", "ProductSuite",
               "Small Business\0Terminal Server\0\0"sv, 7, kLocalMachine);
  registry.Set("http\\shell\\open\\command", "", "\"C:\\IEXPLORE.EXE\" %1\0"sv, 1, kClassesRoot);
  EXPECT_TRUE(Info::IsIE4Installed() && Info().IsTerminalServer());
  for (const Text none : {"Terminal", "Server", "", kNone}) {
    EXPECT_FALSE(Info::IsProductSuiteInstalled(none));
  }
  EXPECT_STREQ(Info::GetDefaultWebBrowser(), "\"C:\\IEXPLORE.EXE\" %1");
  EXPECT_EQ(Info::GetDefaultWebBrowserType(), WEB_BROWSER_IE);
}

TEST_F(SystemInfoTest, NamesFoldersByTheApplication) {
  const TempDirectory directory;
  const std::string folder = platform.facts.folders[FOLDER_APPDATA] = directory / "roaming";
  EXPECT_EQ(Info::GetAppDataPath(false), folder + "/");
  CWinApp app(" My\tTool 1 ");
  app.SetRegistryKey("Some Maker");
  const std::string maker = folder + "/Some Maker/", mine = maker + "MyTool1/",
                    shared = maker + "Shared/";
  EXPECT_TRUE(Info::GetAppDataPath(false) == mine && directory.Count() == 0);
  EXPECT_TRUE(Info::GetAppDataPath(true) == mine && Info::GetSharedDataPath(true) == shared);
  EXPECT_TRUE(std::filesystem::is_directory(mine) && std::filesystem::is_directory(shared));
  EXPECT_EQ(Info::GetSpecialFolderPath(99, true), "");
  EXPECT_EQ(Info::GetSpecialFolderPath(FOLDER_APPDATA, true, HWND{}), folder);
  EXPECT_EQ(Info::GetSpecialFolderPath(26, true, nullptr), folder);

  // A user without a home has no place, least of all at the root.
  platform.facts.folders.clear();
  for (const bool create : {false, true}) {
    EXPECT_EQ(Info::GetAppDataPath(create) + Info::GetSharedDataPath(create), "");
  }
}

TEST_F(SystemInfoTest, WritesDatesAndTimesByTheUsersLocale) {
  locale.items = {{LOCALE_SSHORTDATE, "dd.MM.yy"},
                  {LOCALE_SLONGDATE, "dddd, d. MMMM yyyy"},
                  {LOCALE_SDAYNAME1 + 5, "Samstag"},
                  {LOCALE_SDAYNAME1 + 6, "Sonntag"},
                  {LOCALE_SMONTHNAME1 + 1, "Februar"}};
  EXPECT_STREQ(Info::GetCurrentDate(DATE_LONG), "Samstag, 3. Februar 2001");
  EXPECT_STREQ(Info::GetCurrentDateTime(DATE_SHORT), "03.02.01 04:05:06.007");
  EXPECT_STREQ(Info::GetTickCount(), "04:05:06.007");
  const SYSTEMTIME leap_day{1996, 2, 0, 29, 23, 59, 58, 999};
  EXPECT_EQ(Info::GetFormattedTime(&leap_day, false) + Info::GetFormattedTime(&leap_day, true),
            "23:59:58.99923:59:58.999");
  EXPECT_STREQ(Info::GetFormattedDateTime(&leap_day, DATE_SHORT), "29.02.96 23:59:58.999");
  EXPECT_STREQ(Info::GetFormattedDate(COleDateTime(2001, 2, 4, 0, 0, 0), DATE_LONG),
               "Sonntag, 4. Februar 2001");
  locale.items[LOCALE_SLONGDATE] = "MMMM";
  for (const char* const name : {"Februar", "Hornung"}) {
    locale.items[LOCALE_SMONTHNAME1 + 1] = name;
    EXPECT_STREQ(Info::GetCurrentDate(DATE_LONG), name);
  }
  EXPECT_STREQ(Info::GetFormattedDate(COleDateTime(2001, 2, 29, 0, 0, 0), 0), "");
  for (const auto& [size, length] : {std::pair(79, 79), {80, 0}}) {
    locale.items[LOCALE_SSHORTDATE].assign(size, '-');
    EXPECT_EQ(Info::GetCurrentDate(DATE_SHORT).GetLength(), length);
  }
  // Milliseconds go behind the seconds unless they are there.
  const Rows<Text, int> rows = {{"12:34:56", 8},      {"1:2:3 PM", 5}, {"12:34:56.789", -1},
                                {"1.2.2001 1:2", 12}, {"", -1},        {nullptr, -1}};
  for (const auto& [text, place] : rows) EXPECT_EQ(Info::GetMilliSecPos(text), place);
}

TEST(LocaleInfo, FallsBackOnlyWhereAnItemCantBeRead) {
  using Locale = CDQLocaleInfo;
  ScriptedLocale locale;
  constexpr DWORD kUser = LOCALE_USER_DEFAULT, kGerman = 0x407;
  locale.items = {{LOCALE_SGROUPING, "3;0"}, {LOCALE_S1159, ""}, {LOCALE_IDIGITS, "x"}};
  const Rows<DWORD, DWORD, Text, char, int> rows = {{LOCALE_SGROUPING, kUser, "3;0", '3', 3},
                                                    {LOCALE_S1159, kUser, "", '\0', 0},
                                                    {LOCALE_SGROUPING, kGerman, "pm", 'p', 7},
                                                    {LOCALE_S2359, kUser, "pm", 'p', 7},
                                                    {LOCALE_IDIGITS, kUser, "x", 'x', 0}};
  for (const auto& [item, language, text, first, number] : rows) {
    EXPECT_STREQ(Locale::GetInfo(item, "pm", language), text) << item;
    EXPECT_EQ(Locale::GetInfoChar(item, "pm", language), first) << item;
    EXPECT_EQ(Locale::GetInfoInt(item, 7, language), number) << item;
  }
  EXPECT_STREQ(Locale::GetInfo(LOCALE_S2359, nullptr, kUser), "");
  EXPECT_EQ(Locale::GetInfoChar(LOCALE_S2359, nullptr, kUser), '\0');
  EXPECT_STREQ(Locale::GetDateFormat(LOCALE_SSHORTDATE, true), " ");
  locale.items = {{LOCALE_SSHORTDATE, "M/d/yyyy"}, {LOCALE_STIMEFORMAT, "h:mm:ss tt"}};
  EXPECT_STREQ(Locale::GetDateFormat(LOCALE_SSHORTDATE, false), "M/d/yyyy");
  EXPECT_STREQ(Locale::GetDateFormat(LOCALE_SSHORTDATE, true), "M/d/yyyy h:mm:ss tt");
}

TEST(Guid, ShowsItsFormsAndKeepsItsValueForOtherTexts) {
  CDQGuid guid("8012abCD-0234-F678-9abc-def01234567f");
  for (const Text text :
       {"{11111111-1111-1111-1111-111111111111}", "11111111-1111-1111-1111-11111111111g",
        "11111111-1111-1111-1111011111111111", kNone}) {
    guid.SetGUID(text);
  }
  EXPECT_STREQ(guid.GetRegistryString(), "{8012ABCD-0234-F678-9ABC-DEF01234567F}");
  EXPECT_STREQ(guid, guid.GetRegistryString());
  EXPECT_EQ(guid.GetGUID(),
            (GUID{0x8012ABCD, 0x234, 0xF678, {0x9A, 0xBC, 0xDE, 0xF0, 0x12, 0x34, 0x56, 0x7F}}));
  EXPECT_TRUE(CDQGuid(guid.GetGUID()) == guid && guid == CString(guid) && CDQGuid() < guid);
  EXPECT_TRUE(guid == "{8012ABCD-0234-F678-9ABC-DEF01234567F}" && guid > "{8012" && "{9" > guid);
  EXPECT_STREQ(CDQGuid(), "{00000000-0000-0000-0000-000000000000}");
}

TEST(ClipboardWriter, PostsAllThatWasWrittenAndKeepsWhatWasRefused) {
  struct RefusingClipboard : platform::Clipboard {
    platform::Error SetAll(std::span<const platform::ClipboardData>) override {
      return {platform::ErrorKind::kBusy, 0};
    }
    std::optional<std::string> Get(UINT) override { return std::nullopt; }
    std::vector<UINT> Formats() override { return {}; }
  } refusing;
  struct CountingWriter : CDQClipboardWriter {
    using CDQClipboardWriter::CDQClipboardWriter;
    void OnFailedToOpenClipBoard() override { failures += GetOwner() == nullptr ? 100 : 1; }
    int failures = 0;
  };
  CWnd owner;
  CountingWriter writer(&owner, 49'161);
  for (const Text text : {"one,", kNone, "two"}) writer.Write(text);
  {
    const platform::ScopedPlatform scope(With(&platform::Platform::clipboard, &refusing));
    EXPECT_TRUE(!writer.PostData() && writer.failures == 1);
  }
  platform::Clipboard& own = *platform::System().clipboard;
  EXPECT_TRUE(own.Set(CLIPBOARD_TEXT, "text").ok() && own.Get(CLIPBOARD_TEXT) == "text");
  EXPECT_TRUE(writer.PostData() && own.Get(49'161) == std::string("one,two\0", 8));
  EXPECT_TRUE(writer.PostData() && own.Get(49'161) == std::string(1, '\0'));
  EXPECT_TRUE(own.Get(CLIPBOARD_TEXT) == std::nullopt && writer.failures == 1);
}

}  // namespace
}  // namespace dq::test
