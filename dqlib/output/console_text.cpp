#include "dqlib/output/console_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/text.h"

namespace dq::detail {
namespace {

/// Bytes of the character of UTF-8 that begins with this one; 1 if none of several does.
std::size_t SizeByFirst(unsigned char byte) {
  if (byte < 0xC2 || byte > 0xF4) return 1;
  return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// How many bytes at the end of UTF-8 are the first part of a character.
std::size_t PartOfUtf8(std::string_view text) {
  for (std::size_t size = 1; size <= std::min<std::size_t>(text.size(), 3); ++size) {
    const unsigned char byte = Byte(text[text.size() - size]);
    if ((byte & 0xC0) != 0x80) return SizeByFirst(byte) > size ? size : 0;
  }
  return 0;
}

/// How many bytes at the end of a text, which begins with a whole character, need more.
std::size_t PartAtEnd(std::string_view text) {
  if (text.empty()) return 0;
  if (text.back() == '\r') return 1;
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  if (page.number() == 0) return PartOfUtf8(text);
  const bool is_single = multi_byte::LastCharacter(text) + 1 == text.size();
  return is_single && page.IsLeadByte(Byte(text.back())) ? 1 : 0;
}

std::string WithLineEnds(std::string_view text) {
  std::string shown;
  shown.reserve(text.size() + text.size() / 8);
  for (const char character : text) {
    if (character == '\n' && !shown.ends_with('\r')) shown += '\r';
    shown += character;
  }
  return shown;
}

}  // namespace

std::string ConsoleText::Take(std::string_view bytes) {
  std::string text = std::exchange(held_, {});
  std::ranges::copy_if(bytes, std::back_inserter(text), [](char byte) { return byte != '\0'; });
  const std::size_t whole = text.size() - PartAtEnd(text);
  held_ = text.substr(whole);
  return WithLineEnds(std::string_view(text).substr(0, whole));
}

std::string ConsoleText::Rest() { return WithLineEnds(std::exchange(held_, {})); }

}  // namespace dq::detail
