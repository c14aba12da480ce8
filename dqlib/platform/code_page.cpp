#include "dqlib/platform/code_page.h"

#include <span>

namespace dq::platform {
namespace {

struct ByteRange {
  unsigned char first;
  unsigned char last;
};

struct CasePair {
  unsigned char upper;
  unsigned char lower;
};

/// Full-width Latin letters that follow one another in both cases.
struct WideLetters {
  unsigned upper;
  unsigned lower;
  unsigned count;
};

constexpr ByteRange kLeadBytes932[] = {{0x81, 0x9F}, {0xE0, 0xFC}};
constexpr ByteRange kLeadBytes936[] = {{0x81, 0xFE}};
constexpr ByteRange kLeadBytes949[] = {{0x81, 0xFE}};
constexpr ByteRange kLeadBytes950[] = {{0x81, 0xFE}};

constexpr WideLetters kWideLetters932[] = {{0x8260, 0x8281, 26}};
constexpr WideLetters kWideLetters936[] = {{0xA3C1, 0xA3E1, 26}};
constexpr WideLetters kWideLetters949[] = {{0xA3C1, 0xA3E1, 26}};
// The small letters go on in the next row of the page.
constexpr WideLetters kWideLetters950[] = {{0xA2CF, 0xA2E9, 22}, {0xA2E5, 0xA340, 4}};

/// Half-width katakana with their length and voice marks.
constexpr ByteRange kKatakana932 = {0xA6, 0xDF};

/// The pairs of 1252 that are not 20h apart.
constexpr CasePair kOddPairs1252[] = {{0x8A, 0x9A}, {0x8C, 0x9C}, {0x8E, 0x9E}, {0x9F, 0xFF}};
/// Capitals from C0h to DEh whose small letters are 20h higher; D7h is the multiplication sign.
constexpr ByteRange kCapitals1252[] = {{0xC0, 0xD6}, {0xD8, 0xDE}};
/// Small letters without a capital in the page: florin, ordinals, micro sign, sharp s.
constexpr unsigned char kOnlyLower1252[] = {0x83, 0xAA, 0xB5, 0xBA, 0xDF};

std::span<const ByteRange> LeadBytes(UINT number) {
  switch (number) {
    case 932:
      return kLeadBytes932;
    case 936:
      return kLeadBytes936;
    case 949:
      return kLeadBytes949;
    case 950:
      return kLeadBytes950;
    default:
      return {};
  }
}

std::span<const WideLetters> WideLettersOf(UINT number) {
  switch (number) {
    case 932:
      return kWideLetters932;
    case 936:
      return kWideLetters936;
    case 949:
      return kWideLetters949;
    case 950:
      return kWideLetters950;
    default:
      return {};
  }
}

/// Changes the case of the two-byte character at `text` if it is a full-width Latin letter.
void ChangeWideCase(std::span<const WideLetters> rows, unsigned WideLetters::*from,
                    unsigned WideLetters::*to, char* text) {
  const unsigned code =
      static_cast<unsigned char>(text[0]) * 0x100U + static_cast<unsigned char>(text[1]);
  for (const WideLetters& row : rows) {
    if (code < row.*from || code - row.*from >= row.count) continue;
    const unsigned changed = row.*to + (code - row.*from);
    text[0] = static_cast<char>(changed >> 8);
    text[1] = static_cast<char>(changed & 0xFF);
    return;
  }
}

}  // namespace

const CodePage* CodePage::Get(UINT number) {
  static const CodePage pages[] = {CodePage(0),   CodePage(932), CodePage(936),
                                   CodePage(949), CodePage(950), CodePage(1252)};
  for (const CodePage& page : pages) {
    if (page.number_ == number) return &page;
  }
  return nullptr;
}

CodePage::CodePage(UINT number) : number_(number) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    lower_[byte] = upper_[byte] = static_cast<unsigned char>(byte);
  }
  const auto add_pair = [this](unsigned upper, unsigned lower) {
    flags_[upper] |= kAlpha | kUpper;
    flags_[lower] |= kAlpha | kLower;
    lower_[upper] = static_cast<unsigned char>(lower);
    upper_[lower] = static_cast<unsigned char>(upper);
  };
  for (unsigned letter = 'A'; letter <= 'Z'; ++letter) add_pair(letter, letter + 0x20);
  for (const ByteRange range : LeadBytes(number)) {
    for (unsigned byte = range.first; byte <= range.last; ++byte) flags_[byte] |= kLead;
    single_byte_ = false;
  }
  if (number == 932) {
    for (unsigned byte = kKatakana932.first; byte <= kKatakana932.last; ++byte) {
      flags_[byte] |= kAlpha;
    }
  } else if (number == 1252) {
    for (const CasePair pair : kOddPairs1252) add_pair(pair.upper, pair.lower);
    for (const ByteRange range : kCapitals1252) {
      for (unsigned byte = range.first; byte <= range.last; ++byte) add_pair(byte, byte + 0x20);
    }
    for (const unsigned char byte : kOnlyLower1252) flags_[byte] |= kAlpha | kLower;
  }
}

void CodePage::ChangeCase(const std::array<unsigned char, 256>& bytes, bool to_lower, char* text,
                          std::size_t size) const {
  const std::span<const WideLetters> wide = WideLettersOf(number_);
  const auto from = to_lower ? &WideLetters::upper : &WideLetters::lower;
  const auto to = to_lower ? &WideLetters::lower : &WideLetters::upper;
  for (std::size_t i = 0; i < size;) {
    const std::size_t character = CharacterSize({text + i, size - i});
    if (character == 1) {
      text[i] = static_cast<char>(bytes[static_cast<unsigned char>(text[i])]);
    } else {
      ChangeWideCase(wide, from, to, text + i);
    }
    i += character;
  }
}

void CodePage::LowerInPlace(char* text, std::size_t size) const {
  ChangeCase(lower_, true, text, size);
}

void CodePage::UpperInPlace(char* text, std::size_t size) const {
  ChangeCase(upper_, false, text, size);
}

}  // namespace dq::platform
