#include "dqlib/core/system_info.h"

#include <gtest/gtest.h>
#include <optional>

#include "dqlib/framework/windows/win_app.h"
#include "tests/support/manual_clock.h"
#include "tests/support/memory_registry.h"
#include "tests/support/own_service.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"

namespace dq {
namespace {

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
  const CDQSystemInfo info;
  const auto& read = info.GetOSVersionInfo();
  EXPECT_TRUE(read.dwOSVersionInfoSize == 148 && read.dwMajorVersion == 6 &&
              read.dwMinorVersion == 1 && read.dwBuildNumber == 7601);
  EXPECT_TRUE(!info.IsWindows95() && CDQSystemInfo::IsWindowsNT() && !info.IsTerminalServer());
  EXPECT_TRUE(prompts.shown.empty());
  EXPECT_STREQ(CDQSystemInfo::GetComputerName(), "\\\\TIGER");

  platform_.facts.version = platform::Error{platform::ErrorKind::kOther, 5};
  platform_.errors.texts[5] = "No version";
  EXPECT_EQ(CDQSystemInfo().GetOSVersionInfo().dwMajorVersion, 0U);
  ASSERT_EQ(prompts.shown.size(), 1U);
  EXPECT_NE(prompts.shown[0].text.find("No version"), std::string::npos);
}

TEST_F(SystemInfoTest, FindsSuitesAndBrowsersInTheRegistry) {
  EXPECT_FALSE(CDQSystemInfo::IsIE4Installed());
  EXPECT_FALSE(CDQSystemInfo::IsProductSuiteInstalled("Terminal Server"));
  EXPECT_EQ(CDQSystemInfo::GetDefaultWebBrowserType(), WEB_BROWSER_NONE);
  platform_.facts.browser = "/usr/bin/browser";
  EXPECT_STREQ(CDQSystemInfo::GetDefaultWebBrowser(), "/usr/bin/browser");
  EXPECT_EQ(CDQSystemInfo::GetDefaultWebBrowserType(), WEB_BROWSER_OTHER);

  SetValue(kLocalMachine, "SOFTWARE\\Microsoft\\Internet Explorer", "", "");
  SetValue(kLocalMachine, "SYSTEM\\CurrentControlSet\\Control\\ProductOptions", "ProductSuite",
           std::string_view("Small Business\0Terminal Server\0\0", 33));
  SetValue(kClassesRoot, "http\\shell\\open\\command", "",
           std::string_view("\"C:\\IEXPLORE.EXE\" %1\0", 22));
  EXPECT_TRUE(CDQSystemInfo::IsIE4Installed());
  EXPECT_TRUE(CDQSystemInfo().IsTerminalServer());
  for (const char* const none : {"Terminal", "Server", "", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(CDQSystemInfo::IsProductSuiteInstalled(none));
  }
  EXPECT_STREQ(CDQSystemInfo::GetDefaultWebBrowser(), "\"C:\\IEXPLORE.EXE\" %1");
  EXPECT_EQ(CDQSystemInfo::GetDefaultWebBrowserType(), WEB_BROWSER_IE);
}

TEST_F(SystemInfoTest, NamesFoldersByTheApplication) {
  const test::TempDirectory directory;
  const std::string folder = directory / "roaming";
  platform_.facts.folders[FOLDER_APPDATA] = folder;
  EXPECT_EQ(CDQSystemInfo::GetAppDataPath(false), (folder + "/").c_str());
  CWinApp app(" My\tTool 1 ");
  app.SetRegistryKey("Some Maker");
  const std::string mine = folder + "/Some Maker/MyTool1/";
  EXPECT_EQ(CDQSystemInfo::GetAppDataPath(false), mine.c_str());
  EXPECT_EQ(directory.Count(), 0U);
  EXPECT_EQ(CDQSystemInfo::GetAppDataPath(true), mine.c_str());
  EXPECT_EQ(CDQSystemInfo::GetSharedDataPath(true), (folder + "/Some Maker/Shared/").c_str());
  for (const char* const made : {"MyTool1", "Shared"}) {
    EXPECT_TRUE(std::filesystem::is_directory(folder + "/Some Maker/" + made));
  }
  EXPECT_EQ(CDQSystemInfo::GetSpecialFolderPath(99, true), "");
  const CString plain = CDQSystemInfo::GetSpecialFolderPath(FOLDER_APPDATA, true, HWND{});
  EXPECT_EQ(CDQSystemInfo::GetSpecialFolderPath(26, true, nullptr), plain);
  EXPECT_EQ(plain, folder);

  // A user without a home has no place, least of all at the root.
  platform_.facts.folders.clear();
  for (const bool create : {false, true}) {
    EXPECT_EQ(CDQSystemInfo::GetAppDataPath(create) + CDQSystemInfo::GetSharedDataPath(create), "");
  }
}

TEST_F(SystemInfoTest, WritesDatesAndTimesByTheUsersLocale) {
  locale_.items = {{LOCALE_SSHORTDATE, "dd.MM.yy"},
                   {LOCALE_SLONGDATE, "dddd, d. MMMM yyyy"},
                   {LOCALE_SDAYNAME1 + 5, "Samstag"},
                   {LOCALE_SDAYNAME1 + 6, "Sonntag"},
                   {LOCALE_SMONTHNAME1 + 1, "Februar"}};
  EXPECT_STREQ(CDQSystemInfo::GetCurrentDate(DATE_LONG), "Samstag, 3. Februar 2001");
  EXPECT_STREQ(CDQSystemInfo::GetCurrentDateTime(DATE_SHORT), "03.02.01 04:05:06.007");
  const SYSTEMTIME time{1996, 2, 0, 29, 23, 59, 58, 999};
  for (const bool milliseconds : {false, true}) {
    EXPECT_STREQ(CDQSystemInfo::GetFormattedTime(&time, milliseconds), "23:59:58.999");
  }
  EXPECT_STREQ(CDQSystemInfo::GetFormattedDateTime(&time, DATE_SHORT), "29.02.96 23:59:58.999");
  EXPECT_STREQ(CDQSystemInfo::GetFormattedDate(COleDateTime(2001, 2, 4, 0, 0, 0), DATE_LONG),
               "Sonntag, 4. Februar 2001");
  EXPECT_STREQ(CDQSystemInfo::GetFormattedDate(COleDateTime(2001, 2, 29, 0, 0, 0), 0), "");
  for (const std::size_t size : {79U, 80U}) {
    locale_.items[LOCALE_SSHORTDATE] = std::string(size, '-');
    EXPECT_EQ(CDQSystemInfo::GetCurrentDate(DATE_SHORT).GetLength(), size == 79 ? 79 : 0);
  }
}

TEST_F(SystemInfoTest, MillisecondsGoBehindTheSecondsUnlessTheyAreThere) {
  constexpr std::pair<const char*, int> kTimes[] = {
      {"12:34:56", 8},      {"1:2:3 PM", 5}, {"12:34:56.789", -1},
      {"1.2.2001 1:2", 12}, {"", -1},        {nullptr, -1}};
  for (const auto& [time, place] : kTimes) EXPECT_EQ(CDQSystemInfo::GetMilliSecPos(time), place);
}

}  // namespace
}  // namespace dq
