// The system's locales by their names, compiled for the tests.

#pragma once

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "dqlib/platform/platform.h"
#include "dqlib/platform/posix/system_services.h"
#include "tests/support/manual_clock.h"
#include "tests/support/temp_directory.h"

namespace dq::test {

/// A directory with the locales of the tests, compiled once.
inline const std::string& LocaleDirectory() {
  static const TempDirectory directory;
  static const bool compiled = [] {
    for (const std::string name : {"de_DE", "ja_JP"}) {
      const std::string command = "localedef -i " + name + " -f UTF-8 '" +
                                  (directory / (name + ".UTF-8")) + "' 2>/dev/null";
      // The command's status tells of missing categories, too.
      static_cast<void>(std::system(command.c_str()));
    }
    return true;
  }();
  static_cast<void>(compiled);
  return directory.path();
}

/// A locale of the system ("C", "de_DE" or "ja_JP"), and a clock that stands still in 2001, in
/// force while it lives. A program that uses it tells the leak checker of `argz_add_sep`.
class SystemLocale {
 public:
  explicit SystemLocale(const std::string& name) {
    const ScopedVariable path("LOCPATH", LocaleDirectory());
    const ScopedVariable all("LC_ALL", name == "C" ? name : name + ".UTF-8");
    locale_ = platform::posix::MakeLocale();
    locale_->Item(LOCALE_SSHORTDATE, LOCALE_USER_DEFAULT);
    platform::Platform services = platform::Current();
    services.locale = locale_.get();
    services.clock = &clock_;
    scope_.emplace(services);
  }

 private:
  testing::ManualClock clock_;
  std::unique_ptr<platform::Locale> locale_;
  std::optional<platform::ScopedPlatform> scope_;
};

}  // namespace dq::test
