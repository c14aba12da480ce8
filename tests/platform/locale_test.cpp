#include "dqlib/platform/locale.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <locale.h>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "dqlib/platform/posix/system_services.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq::platform {
namespace {

using Variables = std::map<std::string, std::string>;

/// Variables of the environment for the lifetime of the object; those of locales that it doesn't
/// name are unset.
class ScopedEnvironment {
 public:
  explicit ScopedEnvironment(const Variables& variables) {
    for (const char* name : {"LC_ALL", "LC_NUMERIC", "LC_TIME", "LANG", "LOCPATH"}) {
      const char* value = std::getenv(name);
      former_.emplace_back(name,
                           value == nullptr ? std::nullopt : std::optional<std::string>(value));
      const auto wanted = variables.find(name);
      Set(name, wanted == variables.end() ? std::nullopt : std::optional(wanted->second));
    }
  }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
  ~ScopedEnvironment() {
    for (const auto& [name, value] : former_) Set(name, value);
  }

 private:
  static void Set(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
      setenv(name.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name.c_str());
    }
  }

  std::vector<std::pair<std::string, std::optional<std::string>>> former_;
};

/// Locales compiled into a directory of their own.
class LocaleDirectory {
 public:
  LocaleDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "locales.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error(pattern);
    path_ = pattern;
  }
  LocaleDirectory(const LocaleDirectory&) = delete;
  LocaleDirectory& operator=(const LocaleDirectory&) = delete;
  ~LocaleDirectory() { std::filesystem::remove_all(path_); }

  /// A locale of the system.
  bool Compile(const std::string& name) { return Run("-i " + name, name, "LC_TIME"); }

  /// A locale that has nothing but a way to write numbers.
  bool CompileNumbers(const std::string& name, const std::string& definition) {
    const std::string source = path_ + "/source";
    std::ofstream(source) << "LC_NUMERIC\n" << definition << "\nEND LC_NUMERIC\n";
    return Run("-c -i '" + source + "'", name, "LC_NUMERIC");
  }

  const std::string& path() const { return path_; }

 private:
  bool Run(const std::string& options, const std::string& name, const std::string& category) {
    const std::string target = path_ + "/" + name + ".UTF-8";
    const std::string command =
        "localedef " + options + " -f UTF-8 '" + target + "' >/dev/null 2>&1";
    // The status tells of missing categories, too.
    static_cast<void>(std::system(command.c_str()));
    return std::filesystem::exists(target + "/" + category);
  }

  std::string path_;
};

std::string Item(Locale& locale, DWORD item) {
  return locale.Item(item, LOCALE_USER_DEFAULT).value_or("(none)");
}

void ExpectUsEnglish(Locale& locale, DWORD id) {
  const std::map<DWORD, std::string> expected = {
      {LOCALE_SLIST, ","},
      {LOCALE_SDECIMAL, "."},
      {LOCALE_STHOUSAND, ","},
      {LOCALE_SGROUPING, "3;0"},
      {LOCALE_IDIGITS, "2"},
      {LOCALE_ILZERO, "1"},
      {LOCALE_SSHORTDATE, "M/d/yyyy"},
      {LOCALE_SLONGDATE, "dddd, MMMM dd, yyyy"},
      {LOCALE_IDATE, "0"},
      {LOCALE_ITIME, "0"},
      {LOCALE_S1159, "AM"},
      {LOCALE_S2359, "PM"},
      {LOCALE_STIMEFORMAT, "h:mm:ss tt"},
      {LOCALE_INEGNUMBER, "1"},
      {LOCALE_SDAYNAME1, "Monday"},
      {LOCALE_SDAYNAME1 + 6, "Sunday"},
      {LOCALE_SABBREVDAYNAME1 + 2, "Wed"},
      {LOCALE_SMONTHNAME1, "January"},
      {LOCALE_SMONTHNAME1 + 11, "December"},
      {LOCALE_SABBREVMONTHNAME1 + 8, "Sep"},
  };
  for (const auto& [item, text] : expected) EXPECT_EQ(locale.Item(item, id), text) << item;
}

TEST(Locale, IsUsEnglishWithoutALocaleOfItsOwn) {
  for (const char* name : {"", "C", "POSIX", "C.UTF-8", "en_US", "en_US.UTF-8", "en_US@x", "xx_YY",
                           "../../etc", "\xFF%n"}) {
    SCOPED_TRACE(name);
    const ScopedEnvironment environment(Variables{{"LANG", name}});
    ExpectUsEnglish(*posix::MakeLocale(), LOCALE_USER_DEFAULT);
  }
}

TEST(Locale, TakesItsItemsFromTheLocaleOfTheEnvironment) {
  LocaleDirectory directory;
  for (const char* name : {"de_DE", "ja_JP", "en_IN"}) {
    ASSERT_TRUE(directory.Compile(name)) << name;
  }
  ASSERT_TRUE(directory.CompileNumbers("fr_FR", "copy \"fr_FR\""));
  ASSERT_TRUE(directory.CompileNumbers("unm_US", "copy \"unm_US\""));
  ASSERT_TRUE(directory.CompileNumbers(
      "xx_XX", "decimal_point \",\"\nthousands_sep \".\"\ngrouping 3;2;2;-1"));
  struct {
    const char* name;
    std::map<DWORD, std::string> items;
  } const cases[] = {
      {"de_DE.UTF-8",
       {{LOCALE_SLIST, ";"},
        {LOCALE_SDECIMAL, ","},
        {LOCALE_STHOUSAND, "."},
        {LOCALE_SGROUPING, "3;0"},
        {LOCALE_IDIGITS, "2"},
        {LOCALE_SSHORTDATE, "dd.MM.yyyy"},
        {LOCALE_SLONGDATE, "dddd dd MMMM yyyy"},
        {LOCALE_STIMEFORMAT, "HH:mm:ss"},
        {LOCALE_SDATE, "."},
        {LOCALE_STIME, ":"},
        {LOCALE_IDATE, "1"},
        {LOCALE_ITIME, "1"},
        {LOCALE_S1159, ""},
        {LOCALE_SDAYNAME1, "Montag"},
        {LOCALE_SDAYNAME1 + 6, "Sonntag"},
        {LOCALE_SABBREVDAYNAME1, "Mo"},
        {LOCALE_SMONTHNAME1 + 2, "M\xC3\xA4rz"},
        {LOCALE_SABBREVMONTHNAME1 + 11, "Dez"}}},
      {"fr_FR.UTF-8", {{LOCALE_STHOUSAND, "\xE2\x80\xAF"}}},
      {"ja_JP.UTF-8",
       {{LOCALE_SDECIMAL, "."},
        {LOCALE_SLIST, ","},
        {LOCALE_SSHORTDATE, "yyyy'\xE5\xB9\xB4'MM'\xE6\x9C\x88'dd'\xE6\x97\xA5'"},
        {LOCALE_STIMEFORMAT, "HH'\xE6\x99\x82'mm'\xE5\x88\x86'ss'\xE7\xA7\x92'"},
        {LOCALE_SDATE, "/"},
        {LOCALE_STIME, ":"},
        {LOCALE_IDATE, "2"},
        {LOCALE_ITIME, "1"},
        {LOCALE_S1159, "\xE5\x8D\x88\xE5\x89\x8D"}}},
      {"en_IN.UTF-8",
       {{LOCALE_SGROUPING, "3;2;0"},
        {LOCALE_STIMEFORMAT, "hh:mm:ss tt"},
        {LOCALE_IDATE, "1"},
        {LOCALE_ITIME, "0"},
        {LOCALE_S2359, "PM"}}},
      {"unm_US.UTF-8", {{LOCALE_SGROUPING, "2;2;2;3;0"}}},
      {"xx_XX.UTF-8", {{LOCALE_SGROUPING, "3;2;2"}}},
  };
  const std::string former = setlocale(LC_ALL, nullptr);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const ScopedEnvironment environment(
        Variables{{"LC_ALL", c.name}, {"LOCPATH", directory.path()}});
    const auto locale = posix::MakeLocale();
    for (const auto& [item, text] : c.items) EXPECT_EQ(Item(*locale, item), text) << item;
    ExpectUsEnglish(*locale, LOCALE_US_ENGLISH);
  }
  EXPECT_EQ(setlocale(LC_ALL, nullptr), former);

  // Each category has a variable of its own, which gives way to LC_ALL; LANG stands for the rest.
  const ScopedEnvironment mixed(Variables{{"LANG", "ja_JP.UTF-8"},
                                          {"LC_NUMERIC", "en_US.UTF-8"},
                                          {"LC_TIME", "de_DE.UTF-8"},
                                          {"LOCPATH", directory.path()}});
  const auto captured = posix::MakeLocale();
  EXPECT_EQ(Item(*captured, LOCALE_SDECIMAL), ".");
  EXPECT_EQ(Item(*captured, LOCALE_SDAYNAME1), "Montag");
  const ScopedEnvironment one(
      {{"LC_ALL", "ja_JP.UTF-8"}, {"LC_TIME", "de_DE.UTF-8"}, {"LOCPATH", directory.path()}});
  EXPECT_EQ(Item(*posix::MakeLocale(), LOCALE_SDAYNAME1), "\xE6\x9C\x88\xE6\x9B\x9C\xE6\x97\xA5");
  EXPECT_EQ(Item(*captured, LOCALE_SDAYNAME1), "Montag");
}

TEST(Locale, KnowsTheUsersTheSystemsAndUsEnglish) {
  const ScopedEnvironment environment(Variables{});
  const auto locale = posix::MakeLocale();
  for (const DWORD id : {0U, LOCALE_USER_DEFAULT, LOCALE_SYSTEM_DEFAULT, LOCALE_US_ENGLISH}) {
    EXPECT_EQ(locale->Item(LOCALE_SSHORTDATE, id), "M/d/yyyy") << id;
    EXPECT_EQ(locale->Item(0, id), std::nullopt);
    EXPECT_EQ(locale->Item(0xFFFFFFFF, id), std::nullopt);
  }
  EXPECT_EQ(locale->Item(LOCALE_SSHORTDATE, 0x407), std::nullopt);
}

TEST(Locale, KeepsTheCodePageWhenAnUnknownOneIsChosen) {
  const auto locale = posix::MakeLocale();
  EXPECT_EQ(locale->code_page().number(), 0U);
  EXPECT_TRUE(locale->SetCodePage(950));
  EXPECT_FALSE(locale->SetCodePage(1251));
  EXPECT_EQ(locale->code_page().number(), 950U);
  EXPECT_TRUE(locale->SetCodePage(0));
  EXPECT_EQ(locale->code_page().number(), 0U);
}

}  // namespace
}  // namespace dq::platform
