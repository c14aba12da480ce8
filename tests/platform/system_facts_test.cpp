#include "dqlib/platform/system_facts.h"

#include <ctime>
#include <unistd.h>

#include "dqlib/platform/platform.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

using test::ScopedVariable;
using test::TempDirectory;

TEST(SystemFacts, FoldersFollowTheBaseDirectoryRules) {
  const TempDirectory home;
  const ScopedVariable home_variable("HOME", home.path());
  const ScopedVariable data("XDG_DATA_HOME", "relative");
  const ScopedVariable common("XDG_CONFIG_DIRS", "relative:/etc/one:/etc/two");
  SystemFacts& facts = *System().system_facts;
  {
    const ScopedVariable config("XDG_CONFIG_HOME", "");
    EXPECT_EQ(facts.FolderPath(FOLDER_APPDATA), home / ".config");
    EXPECT_EQ(facts.FolderPath(FOLDER_PERSONAL), home / "Documents");
  }
  const ScopedVariable config("XDG_CONFIG_HOME", home / "cfg");
  std::filesystem::create_directory(home / "cfg");
  home.Put("cfg/user-dirs.dirs",
           "# XDG_DESKTOP_DIR=\"/no\"\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch/\"\n"
           "XDG_DOCUMENTS_DIR=\"/srv/documents\"\nXDG_TEMPLATES_DIR=broken\n");
  for (const auto& [folder, path] :
       test::Rows<int, std::string>{{FOLDER_APPDATA, home / "cfg"},
                                    {FOLDER_LOCAL_APPDATA, home / ".local/share"},
                                    {FOLDER_COMMON_APPDATA, "/etc/one"},
                                    {FOLDER_PROFILE, home.path()},
                                    {FOLDER_PROGRAMS, home / ".local/share/applications"},
                                    {FOLDER_STARTUP, home / "cfg/autostart"},
                                    {FOLDER_DESKTOP, home / "Schreibtisch"},
                                    {FOLDER_PERSONAL, "/srv/documents"},
                                    {FOLDER_TEMPLATES, home / "Templates"},
                                    {999, ""}}) {
    EXPECT_EQ(facts.FolderPath(folder), path) << folder;
  }
}

TEST(SystemFacts, TheBrowserIsThatOfTheDesktopElseOfTheEnvironment) {
  const TempDirectory home;
  const ScopedVariable config("XDG_CONFIG_HOME", home.path());
  const ScopedVariable data("XDG_DATA_HOME", home.path());
  const ScopedVariable dirs("XDG_DATA_DIRS", home.path());
  const ScopedVariable browser("BROWSER", "lynx");
  SystemFacts& facts = *System().system_facts;
  home.Put("mimeapps.list", "[Default Applications]\nx-scheme-handler/http=missing.desktop\n");
  EXPECT_EQ(facts.WebBrowserCommand(), "lynx");
  home.Put("mimeapps.list",
           "[Added Associations]\nx-scheme-handler/http=other.desktop\n"
           "[Default Applications]\nx-scheme-handler/http=web.desktop;other.desktop\n");
  std::filesystem::create_directory(home / "applications");
  home.Put("applications/web.desktop",
           "[Desktop Action new]\nExec=no\n[Desktop Entry]\nExec=web --at=100%% %u\n");
  EXPECT_EQ(facts.WebBrowserCommand(), "web --at=100%");
  home.Put("applications/web.desktop", "[Desktop Entry]\nExec=web %");
  EXPECT_EQ(facts.WebBrowserCommand(), "web");
}

TEST(SystemFacts, TellsWhoAndWhere) {
  SystemFacts& facts = *System().system_facts;
  EXPECT_EQ(facts.IsAdministrator(), ::geteuid() == 0);
  EXPECT_NE(facts.UserName(), "");
  char host[256] = {};
  ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
  EXPECT_EQ(facts.HostName(), host);
  EXPECT_EQ(facts.ComputerName(), std::string(host).substr(0, std::string(host).find('.')));
  EXPECT_GT(facts.Version().value.major, 0U);
}

TEST(Clock, KnowsTheTimeOfDayInTheUsersZone) {
  const SYSTEMTIME time = System().clock->LocalTime();
  const std::time_t now = static_cast<std::time_t>(System().clock->SecondsSince1970());
  std::tm parts{};
  std::tie(parts.tm_sec, parts.tm_min, parts.tm_hour, parts.tm_mday, parts.tm_mon, parts.tm_year,
           parts.tm_isdst) = std::tuple(time.wSecond, time.wMinute, time.wHour, time.wDay,
                                        time.wMonth - 1, time.wYear - 1900, -1);
  EXPECT_NEAR(std::difftime(now, std::mktime(&parts)), 0, 60);
  EXPECT_EQ(parts.tm_wday, time.wDayOfWeek);
  EXPECT_LT(time.wMilliseconds, 1000);
}

}  // namespace
}  // namespace dq::platform
