#include "dqlib/core/clipboard_writer.h"
#include "dqlib/core/guid.h"
#include "dqlib/core/locale_info.h"
#include "dqlib/core/system_info.h"
#include "dqlib/framework/windows/win_app.h"
#include "tests/support/manual_clock.h"
#include "tests/support/memory_registry.h"
#include "tests/support/own_service.h"
#include "tests/support/scripted_locale.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using Info = CDQSystemInfo;
using test::Rows;
constexpr const char* kNone = nullptr;

class SystemInfoTest : public ::testing::Test {
 protected:
  void SetValue(HKEY root, const char* path, const char* name, std::string_view data) {
    const HKEY key = registry_.CreateKey(root, path).value;
    EXPECT_TRUE(registry_.SetValue(key, name, REGISTRY_STRING, data).ok());
    registry_.CloseKey(key);
  }

  testing::ScriptedPlatform platform_;
  testing::ManualClock clock_;
  test::ScriptedLocale locale_;
  test::MemoryRegistry registry_;

 private:
  const platform::ScopedPlatform time_{test::With(&platform::Platform::clock, &clock_)};
  const platform::ScopedPlatform keys_{test::With(&platform::Platform::registry, &registry_)};
};

TEST_F(SystemInfoTest, ReadsTheVersionOrShowsWhyNot) {
  testing::ScriptedPrompts prompts;
  platform_.facts.version = platform::SystemVersion{6, 1, 7601};
  const Info info;
  const auto& read = info.GetOSVersionInfo();
  EXPECT_TRUE(read.dwOSVersionInfoSize == 148 && read.dwMajorVersion == 6 &&
              read.dwMinorVersion == 1 && read.dwBuildNumber == 7601);
  EXPECT_TRUE(!info.IsWindows95() && Info::IsWindowsNT() && !info.IsTerminalServer());
  EXPECT_TRUE(prompts.shown.empty());
  EXPECT_EQ(Info::GetComputerName() + Info::GetUserName() + Info::GetHostName(),
            "\\\\TIGERscotttiger.example.org");

  platform_.facts.version = platform::Error{platform::ErrorKind::kOther, 5};
  platform_.errors.texts[5] = "No version";
  EXPECT_EQ(Info().GetOSVersionInfo().dwMajorVersion, 0U);
  ASSERT_EQ(prompts.shown.size(), 1U);
  EXPECT_NE(prompts.shown[0].text.find("No version"), std::string::npos);
}

TEST_F(SystemInfoTest, FindsSuitesAndBrowsersInTheRegistry) {
  EXPECT_FALSE(Info::IsIE4Installed() || Info::IsProductSuiteInstalled("Terminal Server"));
  EXPECT_EQ(Info::GetDefaultWebBrowserType(), WEB_BROWSER_NONE);
  platform_.facts.browser = "/usr/bin/browser";
  EXPECT_STREQ(Info::GetDefaultWebBrowser(), "/usr/bin/browser");
  EXPECT_EQ(Info::GetDefaultWebBrowserType(), WEB_BROWSER_OTHER);

  SetValue(kLocalMachine, "SOFTWARE\\Microsoft\\Internet Explorer", "", "");
  SetValue(kLocalMachine, "SYSTEM\\CurrentControlSet\\Control\\ProductOptions", "ProductSuite",
           std::string_view("Small Business\0Terminal Server\0\0", 33));
  SetValue(kClassesRoot, "http\\shell\\open\\command", "",
           std::string_view("\"C:\\IEXPLORE.EXE\" %1\0", 22));
  EXPECT_TRUE(Info::IsIE4Installed() && Info().IsTerminalServer());
  for (const char* none : {"Terminal", "Server", "", kNone}) {
    EXPECT_FALSE(Info::IsProductSuiteInstalled(none));
  }
  EXPECT_STREQ(Info::GetDefaultWebBrowser(), "\"C:\\IEXPLORE.EXE\" %1");
  EXPECT_EQ(Info::GetDefaultWebBrowserType(), WEB_BROWSER_IE);
}

TEST_F(SystemInfoTest, NamesFoldersByTheApplication) {
  const test::TempDirectory directory;
  const std::string folder = directory / "roaming";
  platform_.facts.folders[FOLDER_APPDATA] = folder;
  EXPECT_EQ(Info::GetAppDataPath(false), folder + "/");
  CWinApp app(" My\tTool 1 ");
  app.SetRegistryKey("Some Maker");
  const std::string mine = folder + "/Some Maker/MyTool1/";
  const std::string shared = folder + "/Some Maker/Shared/";
  EXPECT_TRUE(Info::GetAppDataPath(false) == mine && directory.Count() == 0);
  EXPECT_TRUE(Info::GetAppDataPath(true) == mine && Info::GetSharedDataPath(true) == shared);
  for (const std::string& made : {mine, shared}) {
    EXPECT_TRUE(std::filesystem::is_directory(made)) << made;
  }
  EXPECT_EQ(Info::GetSpecialFolderPath(99, true), "");
  EXPECT_EQ(Info::GetSpecialFolderPath(FOLDER_APPDATA, true, HWND{}), folder);
  EXPECT_EQ(Info::GetSpecialFolderPath(26, true, nullptr), folder);

  // A user without a home has no place, least of all at the root.
  platform_.facts.folders.clear();
  for (const bool create : {false, true}) {
    EXPECT_EQ(Info::GetAppDataPath(create) + Info::GetSharedDataPath(create), "");
  }
}

TEST_F(SystemInfoTest, WritesDatesAndTimesByTheUsersLocale) {
  locale_.items = {{LOCALE_SSHORTDATE, "dd.MM.yy"},
                   {LOCALE_SLONGDATE, "dddd, d. MMMM yyyy"},
                   {LOCALE_SDAYNAME1 + 5, "Samstag"},
                   {LOCALE_SDAYNAME1 + 6, "Sonntag"},
                   {LOCALE_SMONTHNAME1 + 1, "Februar"}};
  EXPECT_STREQ(Info::GetCurrentDate(DATE_LONG), "Samstag, 3. Februar 2001");
  EXPECT_STREQ(Info::GetCurrentDateTime(DATE_SHORT), "03.02.01 04:05:06.007");
  EXPECT_STREQ(Info::GetTickCount(), "04:05:06.007");
  const SYSTEMTIME time{1996, 2, 0, 29, 23, 59, 58, 999};
  for (const bool milliseconds : {false, true}) {
    EXPECT_STREQ(Info::GetFormattedTime(&time, milliseconds), "23:59:58.999");
  }
  EXPECT_STREQ(Info::GetFormattedDateTime(&time, DATE_SHORT), "29.02.96 23:59:58.999");
  EXPECT_STREQ(Info::GetFormattedDate(COleDateTime(2001, 2, 4, 0, 0, 0), DATE_LONG),
               "Sonntag, 4. Februar 2001");
  EXPECT_STREQ(Info::GetFormattedDate(COleDateTime(2001, 2, 29, 0, 0, 0), 0), "");
  for (const std::size_t size : {79U, 80U}) {
    locale_.items[LOCALE_SSHORTDATE] = std::string(size, '-');
    EXPECT_EQ(Info::GetCurrentDate(DATE_SHORT).GetLength(), size == 79 ? 79 : 0);
  }
  // Milliseconds go behind the seconds unless they are there.
  const Rows<const char*, int> rows = {{"12:34:56", 8},      {"1:2:3 PM", 5}, {"12:34:56.789", -1},
                                       {"1.2.2001 1:2", 12}, {"", -1},        {nullptr, -1}};
  for (const auto& [text, place] : rows) EXPECT_EQ(Info::GetMilliSecPos(text), place);
}

TEST(LocaleInfo, FallsBackOnlyWhereAnItemCantBeRead) {
  using Locale = CDQLocaleInfo;
  test::ScriptedLocale locale;
  locale.items = {{LOCALE_SGROUPING, "3;0"}, {LOCALE_S1159, ""}, {LOCALE_IDIGITS, "x"}};
  for (const auto& [item, language, text, first, number] :
       Rows<DWORD, DWORD, const char*, char, int>{
           {LOCALE_SGROUPING, LOCALE_USER_DEFAULT, "3;0", '3', 3},
           {LOCALE_S1159, LOCALE_USER_DEFAULT, "", '\0', 0},
           {LOCALE_IDIGITS, LOCALE_USER_DEFAULT, "x", 'x', 0},
           {LOCALE_S2359, LOCALE_USER_DEFAULT, "pm", 'p', 7},
           {LOCALE_SGROUPING, 0x407, "pm", 'p', 7}}) {
    EXPECT_STREQ(Locale::GetInfo(item, "pm", language), text) << item;
    EXPECT_EQ(Locale::GetInfoChar(item, "pm", language), first) << item;
    EXPECT_EQ(Locale::GetInfoInt(item, 7, language), number) << item;
  }
  EXPECT_STREQ(Locale::GetInfo(LOCALE_S2359, nullptr, LOCALE_USER_DEFAULT), "");
  EXPECT_EQ(Locale::GetInfoChar(LOCALE_S2359, nullptr, LOCALE_USER_DEFAULT), '\0');

  EXPECT_STREQ(Locale::GetDateFormat(LOCALE_SSHORTDATE, true), " ");
  locale.items = {{LOCALE_SSHORTDATE, "M/d/yyyy"}, {LOCALE_STIMEFORMAT, "h:mm:ss tt"}};
  EXPECT_STREQ(Locale::GetDateFormat(LOCALE_SSHORTDATE, false), "M/d/yyyy");
  EXPECT_STREQ(Locale::GetDateFormat(LOCALE_SSHORTDATE, true), "M/d/yyyy h:mm:ss tt");
}

TEST(Guid, ShowsItsFormsAndKeepsItsValueForOtherTexts) {
  CDQGuid guid("8012abCD-0234-F678-9abc-def01234567f");
  for (const char* text :
       {"{11111111-1111-1111-1111-111111111111}", "11111111-1111-1111-1111-11111111111g",
        "11111111-1111-1111-1111011111111111", kNone}) {
    guid.SetGUID(text);
  }
  EXPECT_STREQ(guid.GetODLString(), "8012ABCD-0234-F678-9ABC-DEF01234567F");
  EXPECT_STREQ(guid.GetStructString(),
               "0X8012ABCD, 0X0234, 0XF678, 0X9A, 0XBC, 0XDE, 0XF0, 0X12, 0X34, 0X56, 0X7F");
  EXPECT_STREQ(guid.GetRegistryString(), "{8012ABCD-0234-F678-9ABC-DEF01234567F}");
  EXPECT_STREQ(guid, guid.GetRegistryString());
  EXPECT_EQ(guid.GetGUID(),
            (GUID{0x8012ABCD, 0x234, 0xF678, {0x9A, 0xBC, 0xDE, 0xF0, 0x12, 0x34, 0x56, 0x7F}}));
  EXPECT_STREQ(CDQGuid(guid.GetGUID()), guid);
  EXPECT_TRUE(CDQGuid(guid.GetGUID()) == guid && guid == CString(guid) && CDQGuid() < guid);
  EXPECT_TRUE(guid == "{8012ABCD-0234-F678-9ABC-DEF01234567F}" && guid > "{8012" && "{9" > guid);
  EXPECT_STREQ(CDQGuid(), "{00000000-0000-0000-0000-000000000000}");
}

TEST(ClipboardWriter, PostsAllThatWasWrittenAndKeepsWhatWasRefused) {
  struct RefusingClipboard : platform::Clipboard {
    platform::Error Set(UINT, std::string_view) override { return {platform::ErrorKind::kBusy, 0}; }
    std::optional<std::string> Get(UINT) override { return std::nullopt; }
  } refusing;
  struct CountingWriter : CDQClipboardWriter {
    using CDQClipboardWriter::CDQClipboardWriter;
    void OnFailedToOpenClipBoard() override { failures += GetOwner() == nullptr ? 100 : 1; }
    int failures = 0;
  };
  CWnd owner;
  CountingWriter writer(&owner, 49'161);
  for (const char* text : {"one,", kNone, "two"}) writer.Write(text);
  {
    const platform::ScopedPlatform scope(test::With(&platform::Platform::clipboard, &refusing));
    EXPECT_TRUE(!writer.PostData() && writer.failures == 1);
  }
  // The process's own clipboard holds one format.
  platform::Clipboard& own = *platform::System().clipboard;
  EXPECT_TRUE(own.Set(CLIPBOARD_TEXT, "text").ok() && own.Get(CLIPBOARD_TEXT) == "text");
  EXPECT_TRUE(writer.PostData() && own.Get(49'161) == std::string("one,two\0", 8));
  EXPECT_TRUE(writer.PostData() && own.Get(49'161) == std::string(1, '\0'));
  EXPECT_TRUE(own.Get(CLIPBOARD_TEXT) == std::nullopt && writer.failures == 1);
}

}  // namespace
}  // namespace dq
