#include "apps/workbench/layer/text.h"

#include <algorithm>
#include <wx/strconv.h>

#include "dqlib/framework/base/multi_byte.h"

namespace workbench {
namespace {

/// A byte without a character is this private one and its own number.
constexpr wchar_t kBytes = 0x10FF00;
constexpr wchar_t kLastByte = kBytes + 0xFF;

unsigned char Byte(char byte) { return static_cast<unsigned char>(byte); }

/// One character at the begin of a text.
struct Character {
  wchar_t code;
  std::size_t size;
};

/// The bytes behind a character's first one.
constexpr std::size_t kMostTrailing = 3;

Character DecodeUtf8(std::string_view text) {
  const unsigned char first = Byte(text.front());
  if (first < 0x80) return {first, 1};
  const std::size_t trailing = first >= 0xF0 ? kMostTrailing : first >= 0xE0 ? 2 : 1;
  constexpr wchar_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  if (first >= 0xC2 && first <= 0xF4 && text.size() > trailing) {
    wchar_t code = first & (0x3F >> trailing);
    bool is_whole = true;
    for (std::size_t at = 1; at <= trailing; ++at) {
      is_whole = is_whole && (Byte(text[at]) & 0xC0) == 0x80;
      code = code << 6 | (Byte(text[at]) & 0x3F);
    }
    const bool is_surrogate = code >= 0xD800 && code <= 0xDFFF;
    // What stands for bytes without a character is such bytes itself.
    if (is_whole && code >= kLeast[trailing] && code < kBytes && !is_surrogate) {
      return {code, trailing + 1};
    }
  }
  return {kBytes + first, 1};
}

const wxCSConv& ConversionOf(dq::UINT number) {
  thread_local dq::UINT last = 0;
  thread_local wxCSConv conversion(wxFONTENCODING_CP1252);
  if (last != number) conversion = wxCSConv(wxString::Format("CP%u", number));
  last = number;
  return conversion;
}

Character Decode(std::string_view text, const dq::platform::CodePage& page) {
  if (Byte(text.front()) < 0x80) return {Byte(text.front()), 1};
  if (page.number() == 0) return DecodeUtf8(text);
  const std::size_t size = page.CharacterSize(text);
  wchar_t codes[4] = {};
  const std::size_t count =
      ConversionOf(page.number()).ToWChar(codes, std::size(codes), text.data(), size);
  if (count == 1) return {codes[0], size};
  return {kBytes + Byte(text.front()), 1};
}

void Encode(wchar_t code, const dq::platform::CodePage& page, std::string& bytes) {
  if (code >= kBytes && code <= kLastByte) {
    bytes += static_cast<char>(code - kBytes);
  } else if (code < 0x80) {
    bytes += static_cast<char>(code);
  } else if (page.number() == 0) {
    bytes += wxString(wxUniChar(static_cast<wxUint32>(code))).utf8_str();
  } else {
    char encoded[8] = {};
    const std::size_t count =
        ConversionOf(page.number()).FromWChar(encoded, std::size(encoded), &code, 1);
    if (count == wxCONV_FAILED) {
      bytes += '?';
    } else {
      bytes.append(encoded, count);
    }
  }
}

}  // namespace

wxString ToNative(std::string_view bytes) { return ShownText(bytes, false).native(); }

std::string ToLibrary(const wxString& text) {
  const dq::platform::CodePage& page = dq::multi_byte::CurrentCodePage();
  std::string bytes;
  bytes.reserve(text.length());
  for (const wxUniChar character : text) {
    Encode(static_cast<wchar_t>(character.GetValue()), page, bytes);
  }
  return bytes;
}

std::string ToLibraryLines(const wxString& text) {
  std::string bytes;
  for (const char byte : ToLibrary(text)) {
    if (byte == '\n') bytes += '\r';
    bytes += byte;
  }
  return bytes;
}

ShownText::ShownText(std::string_view bytes, bool lines) {
  places_.reserve(bytes.size() + 1);
  places_.push_back(0);
  Append(bytes, lines);
}

wxString ShownText::Append(std::string_view bytes, bool lines) {
  const dq::platform::CodePage& page = dq::multi_byte::CurrentCodePage();
  const int begin = places_.back();
  places_.pop_back();
  std::wstring native;
  native.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    places_.push_back(begin + static_cast<int>(at));
    if (lines && bytes.substr(at).starts_with("\r\n")) {
      native += L'\n';
      at += 2;
      continue;
    }
    const Character character = Decode(bytes.substr(at), page);
    native += character.code;
    at += character.size;
  }
  places_.push_back(begin + static_cast<int>(bytes.size()));
  native_ += native;
  return native;
}

int ShownText::ByteAt(long character) const {
  return places_[static_cast<std::size_t>(std::clamp<long>(character, 0, size()))];
}

long ShownText::CharacterAt(int byte) const {
  const auto behind = std::ranges::upper_bound(places_, std::max(0, byte));
  return static_cast<long>(behind - places_.begin()) - 1;
}

}  // namespace workbench
