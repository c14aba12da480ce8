#include "dqlib/framework/base/multi_byte.h"

#include <algorithm>
#include <cstring>

#include "dqlib/platform/platform.h"

namespace dq::multi_byte {
namespace {

unsigned char Byte(char character) { return static_cast<unsigned char>(character); }

/// `wanted` in `text` by bytes; the C library's search is linear and vectorised.
std::size_t FindBytes(std::string_view text, std::string_view wanted, std::size_t start) {
  const void* hit = memmem(text.data() + start, text.size() - start, wanted.data(), wanted.size());
  return hit == nullptr ? npos
                        : static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
}

}  // namespace

const platform::CodePage& CurrentCodePage() { return platform::Current().locale->code_page(); }

std::size_t Find(std::string_view text, char character, std::size_t start) {
  if (start >= text.size()) return npos;
  const platform::CodePage& page = CurrentCodePage();
  if (page.IsSingleByte()) return text.find(character, start);
  for (std::size_t i = start; i < text.size();) {
    if (text[i] == character) return i;
    i += page.CharacterSize(text.substr(i));
  }
  return npos;
}

std::size_t Find(std::string_view text, std::string_view wanted, std::size_t start) {
  if (start > text.size()) return npos;
  if (wanted.empty()) return start;
  const platform::CodePage& page = CurrentCodePage();
  std::size_t hit = FindBytes(text, wanted, start);
  if (page.IsSingleByte()) return hit;
  // A hit counts only where a character begins, so walk the characters up to it.
  for (std::size_t i = start; hit != npos;) {
    while (i < hit) i += page.CharacterSize(text.substr(i));
    if (i == hit) return hit;
    hit = i > text.size() ? npos : FindBytes(text, wanted, i);
  }
  return npos;
}

std::size_t ReverseFind(std::string_view text, char character) {
  const platform::CodePage& page = CurrentCodePage();
  if (page.IsSingleByte()) return text.rfind(character);
  std::size_t last = npos;
  for (std::size_t i = 0; i < text.size(); i += page.CharacterSize(text.substr(i))) {
    if (text[i] == character) last = i;
  }
  return last;
}

int Compare(std::string_view left, std::string_view right) {
  // char_traits<char> compares as unsigned.
  return left.compare(right);
}

int CompareNoCase(std::string_view left, std::string_view right) {
  const platform::CodePage& page = CurrentCodePage();
  if (!page.IsSingleByte()) return Compare(Lower(left), Lower(right));
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = page.Lower(Byte(left[i])) - page.Lower(Byte(right[i]));
    if (difference != 0) return difference;
  }
  return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

bool NextToken(std::string_view text, std::string_view delimiters, std::size_t& position,
               std::string_view& token) {
  const platform::CodePage& page = CurrentCodePage();
  const auto is_delimiter = [&](std::size_t at, std::size_t size) {
    return delimiters.size() == 1 && size == 1 ? text[at] == delimiters.front()
                                               : Find(delimiters, text.substr(at, size)) != npos;
  };
  const auto size_at = [&](std::size_t at) { return page.CharacterSize(text.substr(at)); };
  std::size_t start = position;
  while (start < text.size() && is_delimiter(start, size_at(start))) start += size_at(start);
  std::size_t end = start;
  while (end < text.size() && !is_delimiter(end, size_at(end))) end += size_at(end);
  position = std::min(end + 1, text.size());
  if (start == end) return false;
  token = text.substr(start, end - start);
  return true;
}

void MakeLower(std::string& text) { CurrentCodePage().LowerInPlace(text.data(), text.size()); }

void MakeUpper(std::string& text) { CurrentCodePage().UpperInPlace(text.data(), text.size()); }

std::string Lower(std::string_view text) {
  std::string lower(text);
  MakeLower(lower);
  return lower;
}

std::string Upper(std::string_view text) {
  std::string upper(text);
  MakeUpper(upper);
  return upper;
}

std::string_view TrimRight(std::string_view text) {
  while (!text.empty() && IsSpace(Byte(text.back()))) text.remove_suffix(1);
  return text;
}

std::string_view TrimLeft(std::string_view text) {
  while (!text.empty() && IsSpace(Byte(text.front()))) text.remove_prefix(1);
  return text;
}

}  // namespace dq::multi_byte
