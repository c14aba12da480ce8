// Any text as an identifier: it is read as the identifier that is printed of it, or as none.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  const std::string text(input);
  const CDQGuid guid(text.c_str());
  const std::string printed(guid.GetODLString().View());
  Require(CDQGuid(printed.c_str()).GetGUID() == guid.GetGUID());
  Require(guid.GetRegistryString().View() == "{" + printed + "}");
  const bool same = std::ranges::equal(std::string_view(text.c_str()), printed, [](char a, char b) {
    return a == b || (a >= 'a' && a <= 'f' && a - 'a' == b - 'A');
  });
  Require(same || printed == "00000000-0000-0000-0000-000000000000");
}
