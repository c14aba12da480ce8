// What the system tells of itself, of its errors and of the program, and what every program has.

#include <ctime>
#include <fcntl.h>
#include <unistd.h>

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

using posix::ErrorFromErrno;
using test::Rows;
using test::ScopedVariable;

/// Where the desktop keeps what it knows of the user.
struct SystemFactsTest : testing::Test {
  const test::TempDirectory home;
  const ScopedVariable config{"XDG_CONFIG_HOME", home.path()};
  const ScopedVariable data{"XDG_DATA_HOME", "relative"};
  SystemFacts& facts = *System().system_facts;
};

TEST_F(SystemFactsTest, FoldersFollowTheBaseDirectoryRules) {
  const ScopedVariable home_variable("HOME", home / "me");
  const ScopedVariable common("XDG_CONFIG_DIRS", "relative:/etc/one/:/etc/two");
  home.Put("user-dirs.dirs",
           "# XDG_DESKTOP_DIR=\"/no\"\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch/\"\n"
           "XDG_DOCUMENTS_DIR=\"/srv/documents\"\nXDG_TEMPLATES_DIR=broken\n");
  for (const auto& [folder, path] :
       Rows<int, std::string>{{FOLDER_APPDATA, home.path()},
                              {FOLDER_LOCAL_APPDATA, home / "me/.local/share"},
                              {FOLDER_COMMON_APPDATA, "/etc/one"},
                              {FOLDER_PROFILE, home / "me"},
                              {FOLDER_PROGRAMS, home / "me/.local/share/applications"},
                              {FOLDER_STARTUP, home / "autostart"},
                              {FOLDER_DESKTOP, home / "me/Schreibtisch"},
                              {FOLDER_PERSONAL, "/srv/documents"},
                              {FOLDER_TEMPLATES, home / "me/Templates"},
                              {999, ""}}) {
    EXPECT_EQ(facts.FolderPath(folder), path) << folder;
  }
  const ScopedVariable none("XDG_CONFIG_HOME", "");
  EXPECT_EQ(facts.FolderPath(FOLDER_APPDATA), home / "me/.config");
  EXPECT_EQ(facts.FolderPath(FOLDER_PERSONAL), home / "me/Documents");
}

TEST_F(SystemFactsTest, TheBrowserIsThatOfTheDesktopElseOfTheEnvironment) {
  const ScopedVariable dirs("XDG_DATA_DIRS", home.path());
  const ScopedVariable browser("BROWSER", "lynx");
  std::filesystem::create_directory(home / "applications");
  const std::string list = "[Default Applications]\nx-scheme-handler/http=";
  const std::string other = "[Added Associations]\nx-scheme-handler/http=other.desktop\n";
  const std::string entry = "[Desktop Action new]\nExec=no\n[Desktop Entry]\nExec=web ";
  for (const auto& [defaults, program, command] : Rows<std::string, std::string, const char*>{
           {list + "missing.desktop\n", "", "lynx"},
           {other + list + "no.desktop;web.desktop;other.desktop\n", entry + "--at=100%% %u\n",
            "web --at=100%"},
           {list + "web.desktop", entry + "%", "web"}}) {
    home.Put("mimeapps.list", defaults);
    home.Put("applications/web.desktop", program);
    EXPECT_EQ(facts.WebBrowserCommand(), command);
  }
}

TEST_F(SystemFactsTest, TellsWhoAndWhere) {
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

TEST(SystemErrors, TextIsTheSystemsOwnAndTheLastErrorTheThreadsWhoeverAsksForTexts) {
  SystemErrors& errors = *System().system_errors;
  ASSERT_EQ(open("/no/such/file", O_RDONLY), -1);
  for (const DWORD code : {4095u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(errors.Describe(code), std::nullopt) << code;
  }
  EXPECT_EQ(errors.Describe(EACCES), "Permission denied\r\n");
  EXPECT_EQ(errors.Describe(0), "Success\r\n");
  std::thread([&] {
    errno = 0;
    EXPECT_EQ(errors.LastError(), 0u);
  }).join();
  EXPECT_EQ(errors.LastError(), static_cast<DWORD>(ENOENT));
}

TEST(ErrorFromErrno, KindFollowsWhatCallersDoAboutIt) {
  using enum ErrorKind;
  const Rows<int, ErrorKind> rows = {
      {0, kNone},           {ENOENT, kNotFound},  {EROFS, kAccessDenied},
      {EIO, kOther},        {ENOMEM, kNoSpace},   {EINVAL, kInvalidArgument},
      {EBUSY, kBusy},       {EDQUOT, kNoSpace},   {EEXIST, kAlreadyExists},
      {EWOULDBLOCK, kBusy}, {EPIPE, kBrokenPipe}, {EOPNOTSUPP, kUnsupported}};
  for (const auto& [number, kind] : rows) {
    EXPECT_EQ(ErrorFromErrno(number).kind, kind) << number;
    EXPECT_EQ(ErrorFromErrno(number).code, static_cast<DWORD>(number));
  }
}

TEST(Network, LastErrorIsWhatTheThreadRecorded) {
  std::thread([] {
    posix::RecordNetworkError({5, "refused", "LAN"});
    const NetworkError error = System().network->LastError().value;
    EXPECT_EQ(std::to_string(error.code) + error.description + error.provider, "5refusedLAN");
  }).join();
  EXPECT_EQ(System().network->LastError().error.kind, ErrorKind::kNotFound);
}

TEST(SplitCommandLine, CutsAtBlanksAndTakesQuotesAway) {
  Locale& locale = *Current().locale;
  for (const auto& [page, line, expected] : Rows<UINT, const char*, std::vector<std::string>>{
           {0, " \t ", {}},
           {0, " \tsqlite3  sales.db\t-batch ", {"sqlite3", "sales.db", "-batch"}},
           {0, "'one arg' \"and another\"", {"one arg", "and another"}},
           {0, "a'b c'\"d e\"f", {"ab cd ef"}},
           {0, "'' x \"\"", {"", "x", ""}},
           {0, "'say \"hi\"' \"it's\"", {"say \"hi\"", "it's"}},
           {0, "\\'a 'a\\'b' \"a\\\"b\"", {"'a", "a'b", "a\"b"}},
           {0, "C:\\dir\\file a\\ b \\\\", {"C:\\dir\\file", "a\\", "b", "\\\\"}},
           {0, "$HOME *.sql ~ `x` ; | > #c", {"$HOME", "*.sql", "~", "`x`", ";", "|", ">", "#c"}},
           {0, "'no end", {"no end"}},
           // A second byte that looks like a backslash is none.
           {932, "\"\x95\\\" b", {"\x95\\", "b"}}}) {
    ASSERT_TRUE(locale.SetCodePage(page));
    std::vector<std::string> arguments{"of a former call"};
    SplitCommandLine(line, arguments);
    EXPECT_EQ(arguments, expected) << line;
  }
  EXPECT_FALSE(locale.SetCodePage(1251));
  EXPECT_EQ(locale.code_page().number(), 932U) << "as it was";
  ASSERT_TRUE(locale.SetCodePage(0));
}

DWORD Number(std::string_view data, std::size_t at, std::size_t bytes) {
  DWORD number = 0;
  while (bytes-- > 0) number = number << 8 | static_cast<unsigned char>(data[at + bytes]);
  return number;
}

TEST(Modules, EachHasTheProgramsPathAndTheSystemsNothingButPicturesUnlikeEachOther) {
  Modules& modules = *System().modules;
  const Module& system = modules.System();
  EXPECT_EQ(modules.FileName(nullptr), std::filesystem::canonical("/proc/self/exe"));
  EXPECT_EQ(modules.FileName(&system), modules.FileName(nullptr));
  EXPECT_EQ(system.String(32512), std::nullopt);
  std::string names;
  std::set<std::string_view> different;
  for (const auto& [type, group_type] : {std::pair{RESOURCE_CURSOR, RESOURCE_GROUP_CURSOR},
                                         std::pair{RESOURCE_ICON, RESOURCE_GROUP_ICON}}) {
    for (WORD name = 32500; name < 32700; ++name) {
      const Resource* picture = system.Find(type, name);
      if (picture == nullptr) continue;
      if (system.Find(type, name - 1) == nullptr) names += std::to_string(name) + "-";
      if (system.Find(type, name + 1) == nullptr) names += std::to_string(name) + " ";
      ASSERT_EQ(picture->data.size(), 4u + 40 + 32 * 32 * 3);
      EXPECT_TRUE(different.insert(picture->data.substr(44)).second);
      const Resource* group = system.Find(group_type, name);
      ASSERT_TRUE(group != nullptr && group->data.size() == 20) << name;
      EXPECT_EQ(Number(group->data, 14, 4), picture->data.size());
      EXPECT_EQ(Number(group->data, 18, 2), name);
    }
  }
  EXPECT_EQ(names, "32512-32516 32640-32651 32512-32518 ");
  // The hot spot and a bottom-up bitmap.
  const std::string_view up = system.Find(RESOURCE_CURSOR, 32516)->data;
  EXPECT_EQ(up.substr(0, 20), std::string_view("\x10\0\0\0\x28\0\0\0 \0\0\0 \0\0\0\1\0\x18\0", 20));
  EXPECT_EQ(Number(up, 44 + (23 * 32 + 8) * 3, 3), 0x000000u) << "at 8, 8 from the top";
  EXPECT_EQ(Number(up, 44 + (8 * 32 + 8) * 3, 3), 0xFFFFFFu);
}

struct VersionResourcesTest : testing::Test {
  test::TempDirectory dir;
  VersionResources& resources = *System().version_resources;

  std::vector<char> Fetch(const std::string& path) {
    std::vector<char> block(resources.Size(path));
    if (!resources.Fetch(path, block)) block.clear();
    return block;
  }
};

TEST_F(VersionResourcesTest, ComeFromTheTextFileBesideTheProgram) {
  const std::string path = dir / "tool";
  EXPECT_EQ(resources.Size(path), 0u);
  EXPECT_FALSE(resources.Fetch(path, {}));
  dir.Put("tool.version",
          "\xEF\xBB\xBF FileVersion = 7.1.2.3 \r\nFileVersion=8\n;Comments=no\nnonsense\n"
          "ProductName=A=B");
  const std::vector<char> block = Fetch(path);
  using Text = std::optional<std::string_view>;
  for (const auto& [query, text] :
       Rows<const char*, Text>{{"\\VarFileInfo\\Translation", "\x09\x04\xB0\x04"},
                               {"\\StringFileInfo\\040904b0\\FileVersion", "7.1.2.3"},
                               {"\\STRINGFILEINFO\\040904B0\\productname", "A=B"},
                               {"\\StringFileInfo\\040904b0\\Comments", {}},
                               {"\\StringFileInfo\\040704b0\\FileVersion", {}},
                               {"\\StringFileInfo\\040904b0", {}},
                               {"\\", {}},
                               {"", {}},
                               {"\\StringFileInfo\\04x904b0\\FileVersion", {}}}) {
    EXPECT_EQ(resources.Query(block, query), text) << query;
  }
  std::vector<char> small(block.size() - 1);
  EXPECT_FALSE(resources.Fetch(path, small));
  // Damaged blocks have no texts, or texts that lie in the block.
  constexpr const char* kLast = "\\StringFileInfo\\040904b0\\ProductName";
  for (std::size_t at = 0; at < block.size(); ++at) {
    EXPECT_EQ(resources.Query(std::span(block).first(at), kLast), std::nullopt) << at;
    std::vector<char> damaged = block;
    damaged[at] = '\xFF';
    const Text text = resources.Query(damaged, kLast);
    EXPECT_TRUE(!text || (text->data() >= damaged.data() &&
                          text->data() + text->size() <= damaged.data() + damaged.size()));
  }
}

TEST_F(VersionResourcesTest, AreTakenFromATableHandedIn) {
  dir.Put("tool.version", "FileVersion=1\n");
  resources.SetTable(dir / "x/../tool", {{"FileVersion", "2"}, {"Translation", "0407,04e4"}});
  EXPECT_EQ(resources.Query(Fetch(dir / "tool"), "\\StringFileInfo\\040704e4\\FileVersion"), "2");
  resources.SetTable(dir / "tool", {});
  EXPECT_EQ(resources.Size(dir / "tool"), 0u);
  resources.SetTable("C:\\Bin\\Tool.exe", {{"FileVersion", "3"}});
  EXPECT_NE(resources.Size("c:/bin/tool.EXE"), 0u);
}

}  // namespace
}  // namespace dq::platform
