// The system's locales by their names, compiled for the tests.

#pragma once

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/doubles.h"
#include "tests/support/temp_directory.h"

namespace dq::test {

/// Where the tests' locales are compiled.
inline const TempDirectory& LocaleDirectory() {
  static const TempDirectory directory;
  return directory;
}

/// Compiles a locale. The command's status tells of missing categories, too, and is left alone.
inline void CompileLocale(const std::string& name, const std::string& options) {
  const std::string path = LocaleDirectory() / (name + ".UTF-8");
  if (std::filesystem::exists(path + "/LC_TIME")) return;
  const std::string command = "localedef " + options + " -f UTF-8 '" + path + "' 2>/dev/null";
  static_cast<void>(std::system(command.c_str()));
}

/// Compiles a locale of which nothing but a category matters.
inline void CompileCategory(const std::string& name, const std::string& category,
                            const std::string& definition) {
  const std::string text = category + "\n" + definition + "\nEND " + category + "\n";
  CompileLocale(name, "-c -i '" + LocaleDirectory().Put("source", text) + "'");
}

/// Compiles what a locale of the system says of numbers and times, which is soon done.
inline void CompileNamesAndNumbers(const std::string& name) {
  const std::string copy = "\ncopy \"" + name + "\"\nEND ";
  const std::string source = LocaleDirectory().Put(
      name + ".source", "LC_NUMERIC" + copy + "LC_NUMERIC\nLC_TIME" + copy + "LC_TIME\n");
  CompileLocale(name, "-c -i '" + source + "'");
  // The compiler doesn't get over copies of a few.
  CompileLocale(name, "-i " + name);
}

/// A locale of the system ("C", "de_DE" ...), and a clock that stands still in 2001, in force while
/// it lives. A program that uses it tells the leak checker of `argz_add_sep`.
class SystemLocale {
 public:
  explicit SystemLocale(const std::string& name) {
    if (name != "C") CompileNamesAndNumbers(name);
    const ScopedVariable path("LOCPATH", LocaleDirectory().path());
    const ScopedVariable all("LC_ALL", name == "C" ? name : name + ".UTF-8");
    locale_ = platform::posix::MakeLocale();
    locale_->Item(LOCALE_SSHORTDATE, LOCALE_USER_DEFAULT);
    scope_.emplace(With(&platform::Platform::locale, locale_.get()));
  }

 private:
  ManualClock clock_;
  std::unique_ptr<platform::Locale> locale_;
  std::optional<platform::ScopedPlatform> scope_;
};

}  // namespace dq::test
