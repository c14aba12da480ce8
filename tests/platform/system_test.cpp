// What the system tells of itself, of its errors and of the program, and what every program has;
// the texts of its profiles; and how dates, numbers and letters are written: by the system's
// locales, by pictures, by code pages.

#include <fcntl.h>

#include "dqlib/platform/checksum.h"
#include "dqlib/platform/date_text.h"
#include "dqlib/platform/posix/date_pictures.h"
#include "dqlib/platform/profile_text.h"
#include "tests/support/system_locale.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq::platform {
namespace {

using namespace std::string_literals;
using namespace posix;
using namespace test;
using testing::ElementsAre;

/// Where the desktop keeps what it knows of the user.
struct SystemFactsTest : testing::Test {
  const TempDirectory home;
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
  std::string paths;
  for (const int folder : std::initializer_list<int>{
           FOLDER_DESKTOP, FOLDER_PROGRAMS, FOLDER_PROFILE, FOLDER_LOCAL_APPDATA, FOLDER_TEMPLATES,
           999, FOLDER_COMMON_APPDATA, FOLDER_PERSONAL, FOLDER_APPDATA, FOLDER_STARTUP}) {
    paths += facts.FolderPath(folder) + '|';
  }
  EXPECT_EQ(paths,
            "/me/Schreibtisch|/me/.local/share/applications|/me|/me/.local/share|/me/Templates||"
            "/etc/one|/srv/documents|" +
                home.path() + '|' + home.path() + "/autostart|");
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
  EXPECT_TRUE(facts.IsAdministrator() == (::geteuid() == 0) && facts.UserName() != "");
  char host[256] = {};
  ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
  EXPECT_EQ(facts.HostName(), host);
  EXPECT_EQ(facts.ComputerName(), std::string(host).substr(0, std::string(host).find('.')));
  EXPECT_GT(facts.Version().value.major, 0U);
}

TEST(Clock, KnowsTheTimeOfDayInTheUsersZone) {
  Clock& clock = *System().clock;
  const SYSTEMTIME time = clock.LocalTime();
  EXPECT_LT(std::abs(clock.SecondsOf(time).value() - clock.SecondsSince1970()), 60);
  EXPECT_EQ(DayOfWeek(time.wYear, time.wMonth, time.wDay), time.wDayOfWeek);
  {
    const ScopedVariable zone("TZ", "EST5EDT,M3.2.0,M11.1.0");
    ::tzset();
    // Half past two doesn't exist in the night when clocks go forward.
    EXPECT_EQ(clock.SecondsOf({2024, 3, 0, 10, 2, 30, 0, 0}), 1710055800);
    EXPECT_EQ(clock.LocalTimeOf(1710055800), (SYSTEMTIME{2024, 3, 0, 10, 3, 30, 0, 0}));
    EXPECT_EQ(clock.SecondsOf({1969, 12, 0, 31, 18, 59, 59, 0}), -1);
    EXPECT_FALSE(clock.SecondsOf({2023, 2, 0, 29, 0, 0, 0, 0}) || clock.LocalTimeOf(1LL << 62));
  }
  ::tzset();
}

TEST(SystemErrors, TextIsTheSystemsOwnAndTheLastErrorTheThreadsAndKindsSayWhatCallersDo) {
  SystemErrors& errors = *System().system_errors;
  ASSERT_EQ(open("/no/such/file", O_RDONLY), -1);
  for (const DWORD code : {4095u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(errors.Describe(code), std::nullopt) << code;
  }
  EXPECT_EQ(*errors.Describe(EACCES) + *errors.Describe(0), "Permission denied\r\nSuccess\r\n");
  std::thread([&] {
    errno = 0;
    EXPECT_EQ(errors.LastError(), 0u);
  }).join();
  EXPECT_EQ(errors.LastError(), static_cast<DWORD>(ENOENT));
  // Kinds follow what callers do about them.
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
    RecordNetworkError({5, "refused", "LAN"});
    const NetworkError error = System().network->LastError().value;
    EXPECT_EQ(std::to_string(error.code) + error.description + error.provider, "5refusedLAN");
  }).join();
  EXPECT_EQ(System().network->LastError().error.kind, ErrorKind::kNotFound);
  const auto machines = System().network->Machines();
  ASSERT_TRUE(machines.ok() && !machines.value.empty());
  EXPECT_EQ(machines.value.front(), System().system_facts->HostName());
  EXPECT_EQ(std::ranges::count(machines.value, "localhost"), 0);
}

TEST(SplitCommandLine, CutsAtBlanksAndTakesQuotesAway) {
  std::vector<std::string> arguments{"of a former call"};
  const auto split = [&arguments](std::string line) {
    std::ranges::replace(line, '_', '\t');
    SplitCommandLine(line, arguments);
    std::string all;
    for (const std::string& argument : arguments) all += argument + '|';
    return all;
  };
  for (const auto& [line, expected] : Cases<2>(R"(
           _ _ => ;; _ sqlite3  sales.db_-batch_ => sqlite3|sales.db|-batch| ;; '' x "" => |x||
           'one arg' "and another" => one arg|and another| ;; a'b c'"d e"f => ab cd ef|
           'say "hi"' "it's" => say "hi"|it's| ;; \'a 'a\'b' "a\"b" => 'a|a'b|a"b|
           C:\dir\file a\ b \\ => C:\dir\file|a\|b|\\| ;; 'no end => no end|
           $HOME *.sql ~ `x` ; | > #c => $HOME|*.sql|~|`x`|;|||>|#c|)")) {
    EXPECT_EQ(split(line), expected) << line;
  }
  Locale& locale = *Current().locale;
  ASSERT_TRUE(locale.SetCodePage(932));
  EXPECT_EQ(split("\"\x95\\\" b"), "\x95\\|b|") << "a second byte that looks like a backslash";
  for (const char* argument : {"", "a b", "\x95\\", "\\\\", "'\\\"\\'\x95\\\\", "\\'"}) {
    EXPECT_EQ(split(QuoteArgument(argument)), argument + std::string("|"));
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
  for (const auto& [section, key, value] : Cases<3>(R"(
           Main => plain => (a b) ;; Main => double => ( a ) ;; Main => single => (b)
           Main => mixed => ("c') ;; Main => one => (") ;; Main => empty => () ;; x]y => k => (2)
           Main => equals => (a=b;c) ;; MAIN => PADDED => (x y) ;; Main => twice => (first)
           Main => ;comment ;; Main => no value here ;; Main => ;; Main => late ;; Main => k
           spaced => k => (1) ;; broken => k ;; none => k)")) {
    const auto found = FindProfileValue(text, section, ' ' + key + ' ');
    EXPECT_EQ(found ? '(' + std::string(*found) + ')' : "", value) << section << ' ' << key;
  }
  EXPECT_EQ(FindProfileValue(text, "Main", "plain"), "a b");
  EXPECT_THAT(ProfileSections(text), ElementsAre("Main", "Spaced", "x]y"));
  EXPECT_THAT(ProfileKeys(text, "main"), ElementsAre("plain", "Padded", "double", "single", "mixed",
                                                     "one", "empty", "equals", "twice"));
  EXPECT_THAT(ProfileKeys(text, "none"), ElementsAre());
}

TEST(ProfileText, ChangesOnlyTheLinesConcernedAndRefusesWhatCannotBeReadBack) {
  const auto plain = [](const std::string& signs) {
    std::string text;
    for (const char sign : signs) {
      text += sign == '^' ? "\xEF\xBB\xBF" : sign == '/' ? "\n" : sign == '~' ? "\r" : ""s + sign;
    }
    return text;
  };
  // "/" and "~" are line ends, "^" is the mark that a file may begin with. To delete is "-".
  for (const auto& [rule, before, section, key, value, after] : Cases<6>(R"(
      new file => => S => k => v => [S]~/k=v~/ ;; mark alone => ^ => S => k => v => ^[S]~/k=v~/
      value => [s]/ Key = old /;c/ => S => KEY => v => [s]/Key=v/;c/
      same value => [s]/ k = v / => s => k => v => [s]/ k = v /
      first twin => [s]/k=1/k=2/[s]/k=3/ => s => k => v => [s]/k=v/k=2/[s]/k=3/
      end of section => [s]/a=1/ /;c/x// /[t]/ => s => k => v => [s]/a=1/ /;c/x/k=v// /[t]/
      end of text => [s]/a=1/;c => s => k => v => [s]/a=1/;c/k=v/
      blank section => [s]//[t]/ => s => k => v => [s]/k=v//[t]/
      no line end => [s]/a=1 => s => k => v => [s]/a=1/k=v/
      neighbour's line end => [r]~/[s]/a=1/[t]~/ => s => k => v => [r]~/[s]/a=1/k=v/[t]~/
      new section => [r]~a=1~ => s => k => v => [r]~a=1~[s]~k=v~
      keys before => k=1/ => s => k => v => k=1/[s]/k=v/ ;; bare => [s] => s => k => v => [s]~/k=v~/
      delete key => [s]/k=1/;c/K = 2/a=1 => s => k => - => [s]/;c/a=1
      no key => [s]/k=1/ => s => j => - => [s]/k=1/ ;; none => [s]/k=1/ => k => - => => [s]/k=1/
      delete section => ^[s]~/k=1~/;c~/[t]/k=1/[S]~k=2 => s => - => => ^;c~/[t]/k=1/)")) {
    std::string text = plain(before);
    const bool changed = key == "-"     ? DeleteProfileSection(text, section)
                         : value == "-" ? DeleteProfileKey(text, section, key)
                                        : SetProfileValue(text, section, key, value);
    EXPECT_EQ(text, plain(after)) << rule;
    EXPECT_EQ(changed, before != after) << rule;
  }
  std::string text = "[s]\nk=v\n";
  EXPECT_TRUE(SetProfileValue(text, "s", "k", "\tv ") && text == "[s]\nk=\tv \n");
  // What would not be read back is refused.
  for (const char* name : {"", " \t", "a\nb", "a\r"}) {
    EXPECT_FALSE(IsProfileSectionName(name)) << name;
    EXPECT_FALSE(IsProfileKeyName(name)) << name;
  }
  for (const char* name : {"[a", " ;a", "a=b"}) {
    EXPECT_TRUE(IsProfileSectionName(name)) << name;
    EXPECT_FALSE(IsProfileKeyName(name)) << name;
  }
  EXPECT_FALSE(IsProfileKeyName(std::string_view("a\0b", 3)));
  EXPECT_TRUE(!IsProfileValue(std::string_view("\0", 1)) && IsProfileValue(""));
}

TEST(Modules, EachHasTheProgramsPathAndTheSystemsNothingButPicturesUnlikeEachOther) {
  Modules& modules = *System().modules;
  const Module& system = modules.System();
  EXPECT_EQ(modules.FileName(nullptr), std::filesystem::canonical("/proc/self/exe"));
  EXPECT_TRUE(modules.FileName(&system) == modules.FileName(nullptr) && !system.String(32512));
  std::string names, pictures;
  for (const auto& [type, group_type, head] : Rows<WORD, WORD, std::string>{
           {RESOURCE_CURSOR, RESOURCE_GROUP_CURSOR, "\0\0\2\0\1\0\x20\0\x40\0\1\0\x18\0"s},
           {RESOURCE_ICON, RESOURCE_GROUP_ICON, "\0\0\1\0\1\0\x20\x20\0\0\1\0\x18\0"s}}) {
    for (WORD name = 32500; name < 32700; ++name) {
      const Resource* picture = system.Find(type, name);
      if (picture == nullptr) continue;
      if (system.Find(type, name - 1) == nullptr) names += std::to_string(name) + "-";
      if (system.Find(type, name + 1) == nullptr) names += std::to_string(name) + " ";
      pictures += picture->data;
      const Resource* group = system.Find(group_type, name);
      ASSERT_TRUE(group != nullptr) << name;
      // The picture's size, and its name.
      EXPECT_EQ(group->data, head + "\x2C\x0C\0\0"s + char(name & 0xFF) + char(name >> 8));
    }
  }
  EXPECT_EQ(names, "32512-32516 32640-32651 32512-32518 ");
  EXPECT_EQ(Checksum(pictures), 0xD5923EB4u) << "each with its hot spot, and line by line";
  // The hot spot and a bottom-up bitmap.
  const std::string_view up = system.Find(RESOURCE_CURSOR, 32516)->data;
  EXPECT_EQ(up.substr(0, 20), std::string_view("\x10\0\0\0\x28\0\0\0 \0\0\0 \0\0\0\1\0\x18\0", 20));
  EXPECT_EQ(up.substr(44 + (23 * 32 + 8) * 3, 3), "\0\0\0"s) << "at 8, 8 from the top";
}

TEST(VersionResources, ComeFromTheTextFileBesideTheProgramOrATableHandedIn) {
  const TempDirectory dir;
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
  for (const auto& [query, text] : Cases<2>(R"(\StringFileInfo\040904b0\FileVersion => 7.1.2.3
      \StringFileInfo\040904b0 => none ;; \STRINGFILEINFO\040904B0\productname => A=B
      \StringFileInfo\040904b0\Comments => none ;; \StringFileInfo\040704b0\FileVersion => none
      => none ;; \StringFileInfo\04x904b0\FileVersion => none)")) {
    EXPECT_EQ(resources.Query(block, query).value_or("none"), text) << query;
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
  resources.SetTable(path, {{"Translation", "0407,04e4"}});
  EXPECT_EQ(resources.Query(fetch(), "\\VarFileInfo\\Translation"), "\x07\x04\xE4\x04");
  resources.SetTable(path, {});
  EXPECT_TRUE(fetch().empty());
  resources.SetTable("C:\\Bin\\Tool.exe", {{"FileVersion", "3"}});
  EXPECT_NE(resources.Size("c:/bin/tool.EXE"), 0u);
}

/// The texts of the items, each with a bar behind it.
std::string Texts(Locale& locale, const std::vector<DWORD>& items, DWORD id = LOCALE_USER_DEFAULT) {
  std::string texts;
  for (const DWORD item : items) texts += locale.Item(item, id).value_or("(none)") + "|";
  return texts;
}

const std::vector<DWORD> kNumbers = {LOCALE_SDECIMAL,  LOCALE_STHOUSAND, LOCALE_SGROUPING,
                                     LOCALE_SLIST,     LOCALE_IDIGITS,   LOCALE_ILZERO,
                                     LOCALE_INEGNUMBER};
const std::vector<DWORD> kTimes = {LOCALE_SSHORTDATE, LOCALE_SLONGDATE, LOCALE_STIMEFORMAT,
                                   LOCALE_SDATE,      LOCALE_STIME,     LOCALE_IDATE,
                                   LOCALE_ITIME,      LOCALE_S1159,     LOCALE_S2359};
const std::vector<DWORD> kNames = {
    LOCALE_SDAYNAME1, 48, 49, 55, LOCALE_SMONTHNAME1, 58, 67, 68, 79};

void ExpectUsEnglish(Locale& locale, DWORD id) {
  EXPECT_EQ(Texts(locale, kNumbers, id), ".|,|3;0|,|2|1|1|");
  EXPECT_EQ(Texts(locale, kTimes, id), "M/d/yyyy|dddd, MMMM dd, yyyy|h:mm:ss tt|/|:|0|0|AM|PM|");
  EXPECT_EQ(Texts(locale, kNames, id), "Monday|Sunday|Mon|Sun|January|March|December|Jan|Dec|");
}

TEST(Locale, IsUsEnglishWithoutALocaleOfItsOwn) {
  for (const char* name : {"", "C", "POSIX", "C.UTF-8", "en_US", "en_US.UTF-8", "en_US@x",
                           "xx_YY.UTF-8", "../../etc", "\xFF%n"}) {
    SCOPED_TRACE(name);
    const ScopedVariable all("LC_ALL", name);
    const ScopedVariable language("LANG", "");
    const auto locale = MakeLocale();
    for (const DWORD id : {LOCALE_USER_DEFAULT, LOCALE_SYSTEM_DEFAULT, 0U, LOCALE_US_ENGLISH}) {
      ExpectUsEnglish(*locale, id);
    }
    EXPECT_EQ(Texts(*locale, {0, 0xFFFFFFFF}), "(none)|(none)|");
    EXPECT_EQ(Texts(*locale, {LOCALE_SSHORTDATE}, 0x407), "(none)|");
  }
}

TEST(Locale, TakesItsItemsFromTheEnvironmentOnce) {
  for (const std::string id : {"de_DE", "ja_JP", "en_IN"}) CompileLocale(id, "-i " + id);
  const std::string former = setlocale(LC_ALL, nullptr);
  const ScopedVariable path("LOCPATH", LocaleDirectory().path());
  const ScopedVariable all("LC_ALL", "");
  for (const auto& [name, definition, numbers] : Rows<std::string, const char*, const char*>{
           {"fr_FR", "copy \"fr_FR\"", ",|\xE2\x80\xAF|3;0|;|2|1|1|"},
           {"de_AT", "copy \"de_DE\"", ",|.|3;0|;|2|1|1|"},
           {"unm_US", "copy \"unm_US\"", ".|\xE2\x80\xAF|2;2;2;3;0|,|2|1|1|"},
           {"xx_XX", "decimal_point \",\"\nthousands_sep \".\"\ngrouping 3;2;2;-1",
            ",|.|3;2;2|;|2|1|1|"}}) {
    CompileCategory(name, "LC_NUMERIC", definition);
    const ScopedVariable numeric("LC_NUMERIC", name + ".UTF-8");
    EXPECT_EQ(Texts(*MakeLocale(), kNumbers), numbers) << name;
  }

  // Each category has a variable of its own; LANG stands for the rest, and LC_ALL goes before all.
  const ScopedVariable language("LANG", "en_IN.UTF-8");
  const ScopedVariable time("LC_TIME", "de_DE.UTF-8");
  const auto german = MakeLocale();
  EXPECT_EQ(Texts(*german, kNumbers), ".|,|3;2;0|,|2|1|1|");
  EXPECT_EQ(Texts(*german, kTimes), "dd.MM.yyyy|dddd dd MMMM yyyy|HH:mm:ss|.|:|1|1|||");
  EXPECT_EQ(Texts(*german, kNames), "Montag|Sonntag|Mo|So|Januar|M\xC3\xA4rz|Dezember|Jan|Dez|");
  const ScopedVariable one("LC_ALL", "ja_JP.UTF-8");
  const auto japanese = MakeLocale();
  EXPECT_EQ(Texts(*japanese, kNumbers), ".|,|3;0|,|2|1|1|");
  EXPECT_EQ(Texts(*japanese, kTimes),
            "yyyy'年'MM'月'dd'日'|yyyy'年'MM'月'dd'日'|HH'時'mm'分'ss'秒'|/|:|2|1|午前|午後|");
  EXPECT_EQ(Texts(*german, {LOCALE_SDAYNAME1}), "Montag|");
  ExpectUsEnglish(*japanese, LOCALE_US_ENGLISH);
  EXPECT_EQ(setlocale(LC_ALL, nullptr), former);
}

TEST(Locale, PaperIsThatOfTheEnvironmentElseA4) {
  const ScopedVariable path("LOCPATH", LocaleDirectory().path());
  const ScopedVariable all("LC_ALL", "");
  // The size of the paper, where the system doesn't know the locale.
  for (const auto& [name, width, height, paper] : Cases<4>(R"(C => => => 9 ;; en_US => => => 1
      xx_YY => => => 9 ;; xx_AA.UTF-8 => 216 => 279 => 1 ;; xx_CC.UTF-8 => 297 => 420 => 8
      xx_DD.UTF-8 => 216 => 356 => 5 ;; xx_EE.UTF-8 => 216 => 420 => 9)")) {
    const std::string size = "width " + width + "\nheight " + height;
    if (!width.empty()) CompileCategory(name.substr(0, 5), "LC_PAPER", size);
    const ScopedVariable variable("LC_PAPER", name);
    EXPECT_EQ(Texts(*MakeLocale(), {LOCALE_IPAPERSIZE}), paper + "|") << name;
  }
}

TEST(DatePictures, TranslateElementsAndQuoteText) {
  auto rows = Cases<2>(R"(
      % => ;; %H%- => HH ;; %H %Z:%M => HH:mm ;; %n%H%t%M%% => HH mm% ;; kl. %H.%M %z => 'kl'. HH.mm
      %D %F %T %R => MM/dd/yy yyyy-MM-dd HH:mm:ss HH:mm ;; %H o'clock'%M'' => HH 'o''clock'''mm''''
      %k:%M %l:%M %P %I:%M:%S %p %Z => H:mm h:mm tt hh:mm:ss tt
      %0e %_d %-m %#m %0k %Oy/%Om/%Od %EY => dd d M M HH yy/MM/dd yyyy
      %A %a %B %h %G %g => dddd ddd MMMM MMM yyyy yy)");
  // The second byte of a two-byte character may look like a letter or a bracket.
  rows.push_back({"%Y\x83\x61\x83[ %m", "yyyy'\x83\x61\x83[' MM"});
  for (const auto& [pattern, picture] : rows) {
    EXPECT_EQ(TimePicture({.time = pattern}), picture) << pattern;
    EXPECT_EQ(ShortDatePicture({.date = pattern}), picture) << pattern;
  }
  // Patterns may name others.
  EXPECT_EQ(TimePicture({.time = "%r", .time_12h = "%l:%M %p"}), "h:mm tt");
  EXPECT_EQ(TimePicture({.time = "%r"}), "hh:mm:ss tt");
  EXPECT_EQ(TimePicture({.time = "%c", .time_12h = ""}), "");
  // Patterns that name themselves and each other come to an end.
  EXPECT_LT(TimePicture({.time = "%X%X%X%H", .time_12h = ""}).size(), 2000U);
  EXPECT_LT(ShortDatePicture({.date_time = "%x%x%x", .date = "-%c%c"}).size(), 2000U);
  // The long date is the date of date and time, with full names.
  for (const auto& [date_time, picture] : Cases<2>(R"(%a %b %e %H:%M:%S %Y => dddd MMMM d yyyy
      %d-%m-%Y ora %H:%M => dd-MM-yyyy ;; %a, %d %b %Y, %X => dddd, dd MMMM yyyy
      %Y年%d日 %H時%M分 => yyyy'年'dd'日' ;; %Y. %b. %-e., %A, %H:%M:%S %Z => yyyy. MMMM. d., dddd
      %T, %d.%m.%Y => dd.MM.yyyy ;; => dd.MM.yyyy)")) {
    EXPECT_EQ(LongDatePicture({.date_time = date_time, .date = "%d.%m.%Y", .time = "%T"}), picture);
  }
}

TEST(DatePictures, TellTheSeparatorOfTheFirstTwoElementsAndTheOrderOfAll) {
  const Rows<const char*, const char*, const char*> rows = {
      {"M/d/yyyy", "/", "0"}, {"d. M. yyyy", ". ", "1"}, {"dddd dd MMM yyyy", " ", "1"},
      {"d.M.yy", ".", "1"},   {"yyyy-MM-dd", "-", "2"},  {"'yd' M 'd'/dd/y", "|", "0"},
      {"dddd", "|", "1"},     {"yy dd. MM", " ", "2"},   {"dddd, MMMM d", ", ", "0"},
      {"yyyy.", "|", "2"},    {"yyyy'J'MM", "|", "2"}};
  for (const auto& [picture, separator, order] : rows) {
    EXPECT_EQ(DateOrder(picture), order) << picture;
    EXPECT_EQ(PictureSeparator(picture, "dMy", "|"), separator) << picture;
  }
  EXPECT_EQ(PictureSeparator("'kl'. HH.mm", "Hhm", ":"), ".");
  EXPECT_TRUE(HasTwentyFourHours("'h' H:mm") && !HasTwentyFourHours("'H' h''mm tt"));
}

TEST(DateText, LaysOutPicturesOfDaysThatAreCountedOneByOne) {
  ScriptedLocale locale;
  locale.items = {{LOCALE_SDAYNAME1, "Monday"},
                  {LOCALE_SABBREVDAYNAME1, "Mon"},
                  {LOCALE_SMONTHNAME1 + 2, "March"},
                  {LOCALE_SABBREVMONTHNAME1 + 2, "Mar"}};
  const SYSTEMTIME monday{.wYear = 2004, .wMonth = 3, .wDay = 1};
  for (const auto& [picture, text] : Cases<2>(R"(
           d/M/y dd.MM.yy yyy => 1/3/4 01.03.04 2004 ;; ''''d' => '1 ;; 'd => d ;; xéh => xéh ;; =>
           ddd, MMM y dddddMMMMMyyyyy => Mon, Mar 4 MondayMarch2004
           d 'de' MMMM 'o''clock' ''M => 1 de March o'clock 3)")) {
    EXPECT_EQ(LayOutDate(monday, picture, locale, LOCALE_USER_DEFAULT), text) << picture;
  }
  for (const SYSTEMTIME& never : {SYSTEMTIME{}, {2003, 2, 0, 29}}) {
    EXPECT_EQ(LayOutDate(never, "d", locale, LOCALE_USER_DEFAULT), "");
  }
  // Every day is counted once.
  using namespace std::chrono;
  for (sys_days day = 100y / 1 / 1; day < sys_days(2500y / 1 / 1); day += days(1)) {
    const year_month_day date(day);
    int year = 0, month = 0, day_of_month = 0;
    DateFromDays((day - sys_days(1899y / 12 / 30)).count(), year, month, day_of_month);
    ASSERT_EQ(year_month_day(std::chrono::year(year) / month / day_of_month), date);
    ASSERT_EQ(sys_days(1899y / 12 / 30) + days(DaysFromOrigin(year, month, day_of_month)), day);
    ASSERT_EQ(DayOfWeek(year, month, day_of_month), weekday(day).c_encoding());
  }
  EXPECT_EQ(DaysInMonth(1900, 2) * 100 + DaysInMonth(2000, 2), 2829);
  EXPECT_TRUE(DayOfWeek(2001, 13, 1) == -1 && DayOfWeek(2001, 0, 1) == -1 &&
              DayOfWeek(2001, 4, 31) == -1 && DayOfWeek(2001, 4, 0) == -1 &&
              DayOfWeek(0, 1, 1) == -1);
}

NumberFormat Us(UINT places) { return {places, true, 3, ".", ",", 1}; }

TEST(LayOutNumber, RoundsHalfAwayFromZeroAndFollowsTheFormatIfItIsANumber) {
  const Rows<UINT, const char*, const char*> us = {
      {2, "1234.5", "1,234.50"},  {0, "1234", "1,234"},  {0, "999", "999"}, {2, "0.005", "0.01"},
      {2, "-0.005", "-0.01"},     {2, "-0.004", "0.00"}, {0, "-0.5", "-1"}, {0, "2.5", "3"},
      {2, "999.995", "1,000.00"}, {0, "007", "7"},       {1, ".5", "0.5"},  {1, "5.", "5.0"}};
  for (const auto& [places, number, text] : us) EXPECT_EQ(LayOutNumber(number, Us(places)), text);
  // More digits than any number type holds.
  EXPECT_EQ(LayOutNumber("0.00499999999999999999999", Us(2)), "0.00");
  EXPECT_EQ(LayOutNumber("-123456789012345678901234567890.123456789012345678905", Us(20)),
            "-123,456,789,012,345,678,901,234,567,890.12345678901234567891");
  EXPECT_EQ(LayOutNumber("-1234.5", {2, true, 3, ",", "\xE2\x80\xAF", 1}), "-1\u202F234,50");
  const Rows<UINT, bool, UINT, UINT, const char*, const char*> others = {
      {0, true, 0, 1, "1234567", "1234567"}, {0, true, 4, 1, "1234567", "123,4567"},
      {2, false, 3, 1, "-0.5", "-.50"},      {0, false, 3, 1, "0.2", "0"},
      {1, true, 3, 0, "-1.1", "(1.1)"},      {1, true, 3, 2, "-1.1", "- 1.1"},
      {1, true, 3, 3, "-1.1", "1.1-"},       {1, true, 3, 4, "-1.1", "1.1 -"}};
  for (const auto& [places, has_zero, group, order, number, text] : others) {
    EXPECT_EQ(LayOutNumber(number, {places, has_zero, group, ".", ",", order}), text) << text;
  }

  // What is no number, and formats out of range.
  for (const std::string_view number : std::initializer_list<std::string_view>{
           "", "-", ".", "-.", "--1", "1-", "1.2.3", "1/2", "1:2", "1\xB2", {"1\0", 2}}) {
    EXPECT_EQ(LayOutNumber(number, Us(2)), std::nullopt) << number;
  }
  EXPECT_TRUE(LayOutNumber("1", Us(255))->size() == 257 && !LayOutNumber("1", Us(256)));
  EXPECT_EQ(LayOutNumber("1", {1, true, 3, ".", ",", 5}), std::nullopt);
}

/// The runs of codes that are told alike, with what is told of each; codes told as "" are left out.
std::string Runs(unsigned count, const std::function<std::string(unsigned)>& tell) {
  std::ostringstream runs;
  runs << std::hex << std::uppercase;
  std::string former;
  for (unsigned code = 0, first = 0; code <= count; ++code) {
    const std::string now = code < count ? tell(code) : "";
    if (now == former) continue;
    if (!former.empty()) runs << first << '-' << code - 1 << former << ' ';
    former = now;
    first = code;
  }
  return runs.str();
}

/// How far the other case is, "" if there is none.
std::string Distance(int from, int to) {
  return from == to ? "" : (to > from ? "+" : "") + std::to_string(to - from);
}

TEST(CodePage, CharactersHaveTheirCaseAndClass) {
  const std::string latin = "41-5AUa+32 61-7ALa-32 ";
  for (const auto& [number, bytes, wide_letters] : Rows<UINT, const char*, std::string>{
           {0, "", ""},
           {932, "81-9Fm A6-DFa E0-FCm ", "8260-8279+33 8281-829A-33 "},
           {936, "81-FEm ", "A3C1-A3DA+32 A3E1-A3FA-32 "},
           {949, "81-FEm ", "A3C1-A3DA+32 A3E1-A3FA-32 "},
           {950, "81-FEm ", "A2CF-A2E4+26 A2E5-A2E8+91 A2E9-A2FE-26 A340-A343-91 "},
           {1252,
            "83-83La 8A-8AUa+16 8C-8CUa+16 8E-8EUa+16 9A-9ALa-16 9C-9CLa-16 9E-9ELa-16 9F-9FUa+96 "
            "AA-AALa B5-B5La BA-BALa C0-D6Ua+32 D8-DEUa+32 DF-DFLa E0-F6La-32 F8-FELa-32 "
            "FF-FFLa-96 ",
            ""}}) {
    const CodePage& page = *CodePage::Get(number);
    const auto tell_byte = [&](unsigned code) {
      const auto byte = static_cast<unsigned char>(code);
      return std::string(page.IsUpper(byte) ? "U" : "") + (page.IsLower(byte) ? "L" : "") +
             (page.IsAlpha(byte) ? "a" : "") + (page.IsLeadByte(byte) ? "m" : "") +
             Distance(byte, page.Lower(byte)) + Distance(byte, page.Upper(byte));
    };
    const auto tell_pair = [&](unsigned code) {
      if (!page.IsLeadByte(static_cast<unsigned char>(code >> 8))) return std::string();
      std::string distances;
      for (const auto change : {&CodePage::LowerInPlace, &CodePage::UpperInPlace}) {
        BYTE pair[] = {BYTE(code >> 8), BYTE(code)};
        (page.*change)(reinterpret_cast<char*>(pair), 2);
        distances += Distance(static_cast<int>(code), pair[0] * 256 + pair[1]);
      }
      return distances;
    };
    EXPECT_EQ(Runs(256, tell_byte), latin + bytes) << number;
    EXPECT_EQ(Runs(0x10000, tell_pair), wide_letters) << number;
    EXPECT_TRUE(page.number() == number && page.IsSingleByte() == wide_letters.empty()) << number;
  }
  for (const UINT number : {1U, 1251U, 65001U}) EXPECT_EQ(CodePage::Get(number), nullptr);
  // By character: the second of a wide one looks like a letter, the last is a half.
  const CodePage& wide = *CodePage::Get(932);
  std::string changed = "a\x83\x61\x62\x63\x81";
  wide.UpperInPlace(changed.data(), changed.size());
  EXPECT_EQ(changed, "A\x83\x61\x42\x43\x81");
  EXPECT_TRUE(wide.CharacterSize("\x83\x61") == 2 && wide.CharacterSize("\x83") == 1);
}

}  // namespace
}  // namespace dq::platform
