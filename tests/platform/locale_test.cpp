// How dates, numbers and letters are written: by the system's locales, by pictures, by code pages.

#include <locale.h>

#include "dqlib/platform/date_text.h"
#include "dqlib/platform/posix/date_pictures.h"
#include "tests/support/doubles.h"
#include "tests/support/system_locale.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq::platform {
namespace {

using namespace posix;
using test::Rows;
using test::ScopedVariable;

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
  for (const std::string name : {"de_DE", "ja_JP", "en_IN"}) {
    test::CompileLocale(name, "-i " + name);
  }
  const std::string former = setlocale(LC_ALL, nullptr);
  const ScopedVariable path("LOCPATH", test::LocaleDirectory().path());
  const ScopedVariable all("LC_ALL", "");
  for (const auto& [name, definition, numbers] : Rows<std::string, std::string, const char*>{
           {"fr_FR", "copy \"fr_FR\"", ",|\xE2\x80\xAF|3;0|;|2|1|1|"},
           {"de_AT", "copy \"de_DE\"", ",|.|3;0|;|2|1|1|"},
           {"unm_US", "copy \"unm_US\"", ".|\xE2\x80\xAF|2;2;2;3;0|,|2|1|1|"},
           {"xx_XX", "decimal_point \",\"\nthousands_sep \".\"\ngrouping 3;2;2;-1",
            ",|.|3;2;2|;|2|1|1|"}}) {
    const std::string source =
        test::LocaleDirectory().Put("source", "LC_NUMERIC\n" + definition + "\nEND LC_NUMERIC\n");
    test::CompileLocale(name, "-c -i '" + source + "'");
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

using Pairs = Rows<const char*, const char*>;

TEST(DatePictures, TranslateElementsAndQuoteText) {
  // The second byte of a two-byte character may look like a letter or a bracket.
  const Pairs rows = {{"%", ""},
                      {"%H%-", "HH"},
                      {"%H %Z:%M", "HH:mm"},
                      {"%n%H%t%M%%", "HH mm%"},
                      {"%D %F %T %R", "MM/dd/yy yyyy-MM-dd HH:mm:ss HH:mm"},
                      {"%k:%M %l:%M %P %I:%M:%S %p %Z", "H:mm h:mm tt hh:mm:ss tt"},
                      {"%0e %_d %-m %#m %0k %Oy/%Om/%Od %EY", "dd d M M HH yy/MM/dd yyyy"},
                      {"%A %a %B %h %G %g", "dddd ddd MMMM MMM yyyy yy"},
                      {"kl. %H.%M %z", "'kl'. HH.mm"},
                      {"%H o'clock'%M''", "HH 'o''clock'''mm''''"},
                      {"%Y\x83\x61\x83[ %m", "yyyy'\x83\x61\x83[' MM"}};
  for (const auto& [pattern, picture] : rows) {
    EXPECT_EQ(TimePicture({.time = pattern}), picture) << pattern;
    EXPECT_EQ(ShortDatePicture({.date = pattern}), picture) << pattern;
  }
}

TEST(DatePictures, FollowPatternsThatNameOthers) {
  EXPECT_EQ(TimePicture({.time = "%r", .time_12h = "%l:%M %p"}), "h:mm tt");
  EXPECT_EQ(TimePicture({.time = "%r"}), "hh:mm:ss tt");
  EXPECT_EQ(TimePicture({.time = "%c", .time_12h = ""}), "");
  // Patterns that name themselves and each other come to an end.
  EXPECT_LT(TimePicture({.time = "%X%X%X%H", .time_12h = ""}).size(), 2000U);
  EXPECT_LT(ShortDatePicture({.date_time = "%x%x%x", .date = "-%c%c"}).size(), 2000U);
}

TEST(DatePictures, LongDateIsTheDateOfTheDateAndTimeWithFullNames) {
  for (const auto& [date_time, picture] :
       Pairs{{"%a %b %e %H:%M:%S %Y", "dddd MMMM d yyyy"},
             {"%a, %d %b %Y, %X", "dddd, dd MMMM yyyy"},
             {"%Y. %b. %-e., %A, %H:%M:%S %Z", "yyyy. MMMM. d., dddd"},
             {"%T, %d.%m.%Y", "dd.MM.yyyy"},
             {"%d-%m-%Y ora %H:%M", "dd-MM-yyyy"},
             {"%Y\xE5\xB9\xB4%d\xE6\x97\xA5 %H\xE6\x99\x82%M\xE5\x88\x86",
              "yyyy'\xE5\xB9\xB4'dd'\xE6\x97\xA5'"},
             {"", "dd.MM.yyyy"}}) {
    const DatePatterns patterns{.date_time = date_time, .date = "%d.%m.%Y", .time = "%T"};
    EXPECT_EQ(LongDatePicture(patterns), picture) << date_time;
  }
}

TEST(DatePictures, TellTheSeparatorOfTheFirstTwoElementsAndTheOrderOfAll) {
  using Text = const char*;
  const Rows<Text, Text, Text> rows = {
      {"M/d/yyyy", "/", "0"}, {"d. M. yyyy", ". ", "1"}, {"dddd dd MMM yyyy", " ", "1"},
      {"d.M.yy", ".", "1"},   {"yyyy-MM-dd", "-", "2"},  {"'yd' M 'd'/dd/y", "|", "0"},
      {"dddd", "|", "1"},     {"yy dd. MM", " ", "2"},   {"dddd, MMMM d", ", ", "0"},
      {"yyyy.", "|", "2"},    {"yyyy'J'MM", "|", "2"}};
  for (const auto& [picture, separator, order] : rows) {
    EXPECT_EQ(DateOrder(picture), order) << picture;
    EXPECT_EQ(PictureSeparator(picture, "dMy", "|"), separator) << picture;
  }
  EXPECT_EQ(PictureSeparator("'kl'. HH.mm", "Hhm", ":"), ".");
  EXPECT_TRUE(HasTwentyFourHours("'h' H:mm"));
  EXPECT_FALSE(HasTwentyFourHours("'H' h''mm tt"));
}

TEST(DateText, LaysOutPictures) {
  test::ScriptedLocale locale;
  locale.items = {{LOCALE_SDAYNAME1, "Monday"},
                  {LOCALE_SABBREVDAYNAME1, "Mon"},
                  {LOCALE_SMONTHNAME1 + 2, "March"},
                  {LOCALE_SABBREVMONTHNAME1 + 2, "Mar"}};
  const SYSTEMTIME date{.wYear = 2004, .wMonth = 3, .wDay = 1};
  const SYSTEMTIME never{.wYear = 2003, .wMonth = 2, .wDay = 29};
  for (const auto& [picture, text] :
       Pairs{{"d/M/y dd.MM.yy yyy", "1/3/4 01.03.04 2004"},
             {"ddd, MMM y dddddMMMMMyyyyy", "Mon, Mar 4 MondayMarch2004"},
             {"d 'de' MMMM 'o''clock' ''M", "1 de March o'clock 3"},
             {"''''d'", "'1"},
             {"'d", "d"},
             {"x\xC3\xA9h", "x\xC3\xA9h"},
             {"", ""}}) {
    EXPECT_EQ(LayOutDate(date, picture, locale, LOCALE_USER_DEFAULT), text) << picture;
  }
  EXPECT_EQ(LayOutDate(never, "d", locale, LOCALE_USER_DEFAULT), "");
  EXPECT_EQ(LayOutDate({}, "d", locale, LOCALE_USER_DEFAULT), "");
}

TEST(DateText, CountsEveryDayOnce) {
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

TEST(LayOutNumber, RoundsHalfAwayFromZeroAndFollowsTheFormat) {
  const Rows<UINT, const char*, const char*> us = {
      {2, "1234.5", "1,234.50"},  {0, "1234", "1,234"},  {0, "999", "999"}, {2, "0.005", "0.01"},
      {2, "-0.005", "-0.01"},     {2, "-0.004", "0.00"}, {0, "-0.5", "-1"}, {0, "2.5", "3"},
      {2, "999.995", "1,000.00"}, {0, "007", "7"},       {1, ".5", "0.5"},  {1, "5.", "5.0"}};
  for (const auto& [places, number, text] : us) {
    EXPECT_EQ(LayOutNumber(number, Us(places)), text) << number;
  }
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
}

TEST(LayOutNumber, RefusesWhatIsNoNumberAndFormatsOutOfRange) {
  for (const std::string_view number : std::initializer_list<std::string_view>{
           "", "-", ".", "-.", "--1", "1-", "1.2.3", "1/2", "1:2", "1\xB2", {"1\0", 2}}) {
    EXPECT_EQ(LayOutNumber(number, Us(2)), std::nullopt) << number;
  }
  EXPECT_EQ(LayOutNumber("1", Us(255))->size(), 257U);
  EXPECT_EQ(LayOutNumber("1", Us(256)), std::nullopt);
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
  for (const auto& [number, bytes, wide_letters] : Rows<UINT, const char*, const char*>{
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
        unsigned char pair[] = {static_cast<unsigned char>(code >> 8),
                                static_cast<unsigned char>(code)};
        (page.*change)(reinterpret_cast<char*>(pair), 2);
        distances += Distance(static_cast<int>(code), pair[0] * 256 + pair[1]);
      }
      return distances;
    };
    EXPECT_EQ(Runs(256, tell_byte), latin + bytes) << number;
    EXPECT_EQ(Runs(0x10000, tell_pair), wide_letters) << number;
    EXPECT_EQ(page.number(), number);
    EXPECT_EQ(page.IsSingleByte(), number == 0 || number == 1252);
  }
  for (const UINT number : {1U, 1251U, 65001U}) EXPECT_EQ(CodePage::Get(number), nullptr);
}

TEST(CodePage, CaseChangesByCharacter) {
  for (const auto& [page, text, upper] : Rows<UINT, std::string, const char*>{
           {932, "a\x83\x61\x62\x63", "A\x83\x61\x42\x43"},  // whose second looks like a letter
           {936, "ab\x81", "AB\x81"},                        // a lead byte at the very end
           {1252, "ra\xDF \xFF", "RA\xDF \x9F"}}) {
    std::string changed = text;
    CodePage::Get(page)->UpperInPlace(changed.data(), changed.size());
    EXPECT_EQ(changed, upper);
  }
  EXPECT_EQ(CodePage::Get(932)->CharacterSize("\x83\x61"), 2U);
  EXPECT_EQ(CodePage::Get(932)->CharacterSize("\x83"), 1U);
}

}  // namespace
}  // namespace dq::platform
