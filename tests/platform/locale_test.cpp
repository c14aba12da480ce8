#include "dqlib/platform/locale.h"

#include <locale.h>

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/system_locale.h"
#include "tests/support/testing.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq::platform {
namespace {

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
    const auto locale = posix::MakeLocale();
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
  for (const auto& [name, definition, numbers] : test::Rows<std::string, std::string, const char*>{
           {"fr_FR", "copy \"fr_FR\"", ",|\xE2\x80\xAF|3;0|;|2|1|1|"},
           {"de_AT", "copy \"de_DE\"", ",|.|3;0|;|2|1|1|"},
           {"unm_US", "copy \"unm_US\"", ".|\xE2\x80\xAF|2;2;2;3;0|,|2|1|1|"},
           {"xx_XX", "decimal_point \",\"\nthousands_sep \".\"\ngrouping 3;2;2;-1",
            ",|.|3;2;2|;|2|1|1|"}}) {
    const std::string source =
        test::LocaleDirectory().Put("source", "LC_NUMERIC\n" + definition + "\nEND LC_NUMERIC\n");
    test::CompileLocale(name, "-c -i '" + source + "'");
    const ScopedVariable numeric("LC_NUMERIC", name + ".UTF-8");
    EXPECT_EQ(Texts(*posix::MakeLocale(), kNumbers), numbers) << name;
  }

  // Each category has a variable of its own; LANG stands for the rest, and LC_ALL goes before all.
  const ScopedVariable language("LANG", "en_IN.UTF-8");
  const ScopedVariable time("LC_TIME", "de_DE.UTF-8");
  const auto german = posix::MakeLocale();
  EXPECT_EQ(Texts(*german, kNumbers), ".|,|3;2;0|,|2|1|1|");
  EXPECT_EQ(Texts(*german, kTimes), "dd.MM.yyyy|dddd dd MMMM yyyy|HH:mm:ss|.|:|1|1|||");
  EXPECT_EQ(Texts(*german, kNames), "Montag|Sonntag|Mo|So|Januar|M\xC3\xA4rz|Dezember|Jan|Dez|");
  const ScopedVariable one("LC_ALL", "ja_JP.UTF-8");
  const auto japanese = posix::MakeLocale();
  EXPECT_EQ(Texts(*japanese, kNumbers), ".|,|3;0|,|2|1|1|");
  EXPECT_EQ(Texts(*japanese, kTimes),
            "yyyy'年'MM'月'dd'日'|yyyy'年'MM'月'dd'日'|HH'時'mm'分'ss'秒'|/|:|2|1|午前|午後|");
  EXPECT_EQ(Texts(*german, {LOCALE_SDAYNAME1}), "Montag|");
  ExpectUsEnglish(*japanese, LOCALE_US_ENGLISH);
  EXPECT_EQ(setlocale(LC_ALL, nullptr), former);
}

TEST(Locale, KeepsTheCodePageWhenAnUnknownOneIsChosen) {
  const auto locale = posix::MakeLocale();
  EXPECT_EQ(locale->code_page().number(), 0U);
  EXPECT_TRUE(locale->SetCodePage(950));
  EXPECT_FALSE(locale->SetCodePage(1251));
  EXPECT_EQ(locale->code_page().number(), 950U);
}

}  // namespace
}  // namespace dq::platform
