// What the system tells of itself, of its errors and of the program, and what every program has;
// and the texts of its profiles.

#include <ctime>
#include <fcntl.h>
#include <unistd.h>

#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/profile_text.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

using namespace std::string_literals;
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
  const ScopedVariable home_variable("HOME", "/me");
  const ScopedVariable common("XDG_CONFIG_DIRS", "relative:/etc/one/:/etc/two");
  home.Put("user-dirs.dirs",
           "# XDG_DESKTOP_DIR=\"/no\"\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch/\"\n"
           "XDG_DOCUMENTS_DIR=\"/srv/documents\"\nXDG_TEMPLATES_DIR=broken\n");
  const Rows<int, std::string> rows = {{FOLDER_APPDATA, home.path()},
                                       {FOLDER_PROGRAMS, "/me/.local/share/applications"},
                                       {FOLDER_PROFILE, "/me"},
                                       {FOLDER_LOCAL_APPDATA, "/me/.local/share"},
                                       {FOLDER_COMMON_APPDATA, "/etc/one"},
                                       {FOLDER_STARTUP, home / "autostart"},
                                       {FOLDER_PERSONAL, "/srv/documents"},
                                       {FOLDER_TEMPLATES, "/me/Templates"},
                                       {999, ""},
                                       {FOLDER_DESKTOP, "/me/Schreibtisch"}};
  for (const auto& [folder, path] : rows) EXPECT_EQ(facts.FolderPath(folder), path) << folder;
  const ScopedVariable none("XDG_CONFIG_HOME", "");
  EXPECT_EQ(facts.FolderPath(FOLDER_APPDATA), "/me/.config");
  EXPECT_EQ(facts.FolderPath(FOLDER_PERSONAL), "/me/Documents");
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
  EXPECT_EQ(ProfileSections(text), (std::vector<std::string>{"Main", "Spaced", "x]y"}));
  EXPECT_EQ(ProfileKeys(text, "main"),
            (std::vector<std::string>{"plain", "Padded", "double", "single", "mixed", "one",
                                      "empty", "equals", "twice"}));
  EXPECT_EQ(ProfileKeys(text, "none"), std::vector<std::string>{});
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
           {"first twin", "[s]\nk=1\nk=2\n[s]\nk=3\n", "s", "k", "v", "[s]\nk=v\nk=2\n[s]\nk=3\n"},
           {"end of section", "[s]\na=1\n \n; of s\nno key\n\n\t\n[t]\n", "s", "k", "v",
            "[s]\na=1\n \n; of s\nno key\nk=v\n\n\t\n[t]\n"},
           {"end of text", "[s]\na=1\n;c", "s", "k", "v", "[s]\na=1\n;c\nk=v\n"},
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
      ASSERT_TRUE(group != nullptr) << name;
      // The picture's size, and its name.
      EXPECT_EQ(group->data.substr(14), "\x2C\x0C\0\0"s + char(name & 0xFF) + char(name >> 8));
    }
  }
  EXPECT_EQ(names, "32512-32516 32640-32651 32512-32518 ");
  // The hot spot and a bottom-up bitmap.
  const std::string_view up = system.Find(RESOURCE_CURSOR, 32516)->data;
  EXPECT_EQ(up.substr(0, 20), std::string_view("\x10\0\0\0\x28\0\0\0 \0\0\0 \0\0\0\1\0\x18\0", 20));
  EXPECT_EQ(up.substr(44 + (23 * 32 + 8) * 3, 3), "\0\0\0"s) << "at 8, 8 from the top";
  EXPECT_EQ(up.substr(44 + (8 * 32 + 8) * 3, 3), "\xFF\xFF\xFF");
}

TEST(VersionResources, ComeFromTheTextFileBesideTheProgramOrATableHandedIn) {
  const test::TempDirectory dir;
  const std::string path = dir / "tool";
  VersionResources& resources = *System().version_resources;
  const auto fetch = [&] {
    std::vector<char> block(resources.Size(path));
    EXPECT_EQ(resources.Fetch(path, block), !block.empty());
    return block;
  };
  EXPECT_TRUE(fetch().empty());
  dir.Put("tool.version",
          "\xEF\xBB\xBF FileVersion = 7.1.2.3 \r\nFileVersion=8\n;Comments=no\nnonsense\n"
          "ProductName=A=B");
  const std::vector<char> block = fetch();
  EXPECT_EQ(resources.Query(block, "\\VarFileInfo\\Translation"), "\x09\x04\xB0\x04");
  EXPECT_EQ(resources.Query(block, "\\StringFileInfo\\040904b0\\FileVersion"), "7.1.2.3");
  EXPECT_EQ(resources.Query(block, "\\STRINGFILEINFO\\040904B0\\productname"), "A=B");
  for (const char* query :
       {"", "\\StringFileInfo\\040904b0", "\\StringFileInfo\\040904b0\\Comments",
        "\\StringFileInfo\\040704b0\\FileVersion", "\\StringFileInfo\\04x904b0\\FileVersion"}) {
    EXPECT_EQ(resources.Query(block, query), std::nullopt) << query;
  }
  std::vector<char> small(block.size() - 1);
  EXPECT_FALSE(resources.Fetch(path, small));
  // Damaged blocks have no texts, or texts that lie in the block.
  constexpr const char* kLast = "\\StringFileInfo\\040904b0\\ProductName";
  for (std::size_t at = 0; at < block.size(); ++at) {
    EXPECT_EQ(resources.Query(std::span(block).first(at), kLast), std::nullopt) << at;
    std::vector<char> damaged = block;
    damaged[at] = '\xFF';
    const auto text = resources.Query(damaged, kLast);
    EXPECT_TRUE(!text || (text->data() >= damaged.data() &&
                          text->data() + text->size() <= damaged.data() + damaged.size()));
  }
  resources.SetTable(dir / "x/../tool", {{"FileVersion", "2"}, {"Translation", "0407,04e4"}});
  EXPECT_EQ(resources.Query(fetch(), "\\StringFileInfo\\040704e4\\FileVersion"), "2");
  resources.SetTable(path, {});
  EXPECT_TRUE(fetch().empty());
  resources.SetTable("C:\\Bin\\Tool.exe", {{"FileVersion", "3"}});
  EXPECT_NE(resources.Size("c:/bin/tool.EXE"), 0u);
}

}  // namespace
}  // namespace dq::platform
