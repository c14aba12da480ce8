// Services that stand in for the system's: they answer what a test tells them and keep what they
// were asked.
//
//   ScriptedPlatform platform;
//   platform.errors.texts[2] = "No such file\r\n";
//   EXPECT_EQ(CDQSystemErrorMsg(2).GetErrorMessage(), "No such file\r\n");

#pragma once

#include <mutex>

#include "tests/support/testing.h"

namespace dq::test {

/// The services in force, of which one is the test's.
template <typename Service>
platform::Platform With(Service* platform::Platform::*member,
                        std::type_identity_t<Service>* service) {
  platform::Platform services = platform::Current();
  services.*member = service;
  return services;
}

/// In force while it lives, and stands still at `start` until it is moved. Any thread.
class ManualClock : public platform::Clock {
 public:
  explicit ManualClock(DWORD start = 0) : now_(start) {}

  DWORD TickCount() override { return now_; }
  std::int64_t SecondsSince1970() override { return seconds; }
  SYSTEMTIME LocalTime() override { return local_time; }
  std::optional<SYSTEMTIME> LocalTimeOf(std::int64_t moment) override {
    return platform::System().clock->LocalTimeOf(moment);
  }
  std::optional<std::int64_t> SecondsOf(const SYSTEMTIME& local) override {
    return platform::System().clock->SecondsOf(local);
  }
  /// Moves on by so many milliseconds; wraps as the system's does.
  void Advance(DWORD milliseconds) { now_ += milliseconds; }

  /// The time of day, which `Advance` leaves: set it before other threads ask.
  std::int64_t seconds = 0;
  SYSTEMTIME local_time{2001, 2, 6, 3, 4, 5, 6, 7};  // Saturday the 3rd of February, 04:05:06.007

 private:
  std::atomic<DWORD> now_;
  platform::ScopedPlatform scope_{With(&platform::Platform::clock, this)};
};

/// A locale whose items a test sets; what isn't set can't be read.
/// In force while it lives. Knows the user's locale only; its code page is the page 0 until a test
/// chooses another.
class ScriptedLocale : public platform::Locale {
 public:
  std::map<DWORD, std::string> items;

  std::optional<std::string> Item(DWORD item, DWORD locale) override {
    const auto found = items.find(item);
    if (locale != LOCALE_USER_DEFAULT || found == items.end()) return std::nullopt;
    return found->second;
  }

  const platform::CodePage& code_page() const override { return *code_page_; }

  bool SetCodePage(UINT number) override {
    const platform::CodePage* const page = platform::CodePage::Get(number);
    if (page != nullptr) code_page_ = page;
    return page != nullptr;
  }

 private:
  const platform::CodePage* code_page_ = platform::CodePage::Get(0);
  platform::ScopedPlatform scope_{With(&platform::Platform::locale, this)};
};

struct ScriptedModules : platform::Modules {
  std::string FileName(const platform::Module* module) override {
    named.push_back(module);
    return path;
  }
  const platform::Module& System() override { return system; }
  std::string path = "/opt/host";
  ResourceModule system;
  std::vector<const platform::Module*> named;
};

struct ScriptedFacts : platform::SystemFacts {
  int VerticalPixelsPerInch() override { return pixels_per_inch; }
  platform::Result<platform::SystemVersion> Version() override { return version; }
  std::string UserName() override { return "scott"; }
  std::string ComputerName() override { return "TIGER"; }
  std::string HostName() override { return "tiger.example.org"; }
  bool IsAdministrator() override { return false; }
  std::string FolderPath(int folder) override { return folders[folder]; }
  std::string WebBrowserCommand() override { return browser; }
  std::string UserShell() override { return shell; }
  int pixels_per_inch = 96;
  platform::Result<platform::SystemVersion> version;
  std::map<int, std::string> folders;
  std::string browser, shell;
};

struct ScriptedColors : platform::ColorScheme {
  COLORREF Color(int index) override { return colors[index]; }
  std::map<int, COLORREF> colors;
};

struct ScriptedErrors : platform::SystemErrors {
  DWORD LastError() override { return last; }
  std::optional<std::string> Describe(DWORD code) override {
    return texts.contains(code) ? std::optional(texts[code]) : std::nullopt;
  }
  DWORD last = 0;
  std::map<DWORD, std::string> texts;
};

/// Puts all of the above in place for its lifetime.
class ScriptedPlatform {
 public:
  ScriptedModules modules;
  ScriptedFacts facts;
  ScriptedColors scheme;
  ScriptedErrors errors;

 private:
  using Scope = platform::ScopedPlatform;
  Scope modules_{With(&platform::Platform::modules, &modules)};
  Scope facts_{With(&platform::Platform::system_facts, &facts)};
  Scope scheme_{With(&platform::Platform::color_scheme, &scheme)};
  Scope errors_{With(&platform::Platform::system_errors, &errors)};
};

/// Takes what is printed, in place of the system, for its lifetime.
struct ScriptedPrinting : platform::Printing {
  platform::Result<std::vector<std::string>> Printers() override { return printers; }
  platform::Result<std::string> DefaultPrinter() override { return default_printer; }
  platform::PrintOutcome Print(const platform::PrintJob& given,
                               const platform::DocumentReader& reader) override {
    job = given;
    ++printed;
    char buffer[1000];
    while (const std::size_t size = reader(buffer).value) document.append(buffer, size);
    return outcome;
  }
  std::vector<std::string> printers;
  std::string default_printer;
  /// The last job, and all documents.
  platform::PrintJob job;
  int printed = 0;
  std::string document;
  platform::PrintOutcome outcome;
  platform::ScopedPlatform scope{With(&platform::Platform::printing, this)};
};

/// One message box that was shown.
struct ShownBox {
  std::string text;
  UINT type = 0;
  UINT help_id = 0;
  std::string caption = {};

  /// Boxes alike but for their captions, which few tests ask for.
  friend bool operator==(const ShownBox& left, const ShownBox& right) {
    return left.text == right.text && left.type == right.type && left.help_id == right.help_id;
  }
};

/// The platform's prompts for its lifetime. Boxes are left by the buttons of the script, one each,
/// and by their default buttons when it has come to its end. Dialogs are left open, which cancels
/// them, unless `on_dialog` does otherwise. Boxes may be shown by several threads.
class ScriptedPrompts : public platform::Prompts {
 public:
  ScriptedPrompts(std::initializer_list<BoxButton> script = {})
      : script_(script), scope_(With(&platform::Platform::prompts, this)) {}

  int Show(std::string_view caption, std::string_view text, UINT type, UINT help_id) override {
    {
      const std::scoped_lock lock(mutex_);
      shown.push_back({std::string(text), type, help_id, std::string(caption)});
    }
    if (on_box) on_box();
    const std::scoped_lock lock(mutex_);
    if (script_.empty()) return DefaultBoxButton(type);
    const BoxButton button = script_.front();
    script_.erase(script_.begin());
    return button;
  }

  void RunDialog(platform::DialogView& dialog) override {
    dialogs.push_back(dialog.Caption());
    if (on_dialog) on_dialog(dialog);
  }

  /// Called while a box is shown.
  std::function<void()> on_box;
  /// Answers each dialog.
  std::function<void(platform::DialogView&)> on_dialog;

  /// The captions of the dialogs that were run.
  std::vector<std::string> dialogs;
  /// The boxes in the order in which they were shown.
  std::vector<ShownBox> shown;

 private:
  std::mutex mutex_;
  std::vector<BoxButton> script_;
  platform::ScopedPlatform scope_;
};

}  // namespace dq::test
