// A locale whose items a test sets; what isn't set can't be read.

#pragma once

#include "tests/support/own_service.h"
#include "tests/support/testing.h"

namespace dq::test {

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

}  // namespace dq::test
