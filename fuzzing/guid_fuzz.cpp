// Any text as an identifier. Input: the text.

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "dqlib/core/guid.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string seen = text.c_str();
  std::string form = "00000000-0000-0000-0000-000000000000";
  bool readable = seen.size() == form.size();
  for (std::size_t i = 0; readable && i < form.size(); ++i) {
    readable = form[i] == '-' ? seen[i] == '-' : std::isxdigit(static_cast<unsigned char>(seen[i]));
  }
  const dq::CDQGuid guid(text.c_str());
  if (readable) {
    for (std::size_t i = 0; i < form.size(); ++i) {
      form[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(seen[i])));
    }
  }
  if (guid.GetODLString().View() != form) std::abort();
  if (guid.GetRegistryString().View() != "{" + form + "}") std::abort();
  if (dq::CDQGuid(guid.GetODLString()).GetGUID() != guid.GetGUID()) std::abort();
  return 0;
}
