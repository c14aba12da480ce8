// Code pages: which bytes begin a two-byte character, and case and class of characters.

#pragma once

#include <array>
#include <string>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq::platform {

/// The rules of one code page for 8-bit text. A code page is constant data: it lives as long as the
/// process and may be used from any thread.
///
/// The page 0 is the default one: every byte is a character, only ASCII letters have case and
/// class, and bytes from 80h on pass through every operation unharmed, so that text in UTF-8
/// survives. 1252 adds the letters of Western Europe; 932, 936, 949 and 950 have lead bytes, and of
/// their two-byte characters only the full-width Latin letters have case.
class CodePage {
 public:
  /// The page with the number, or null if it isn't one of 0, 932, 936, 949, 950, 1252.
  static const CodePage* Get(UINT number);

  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;

  UINT number() const { return number_; }

  /// True if no byte is a lead byte, so that bytes and characters are the same.
  bool IsSingleByte() const { return single_byte_; }

  /// True if the byte begins a two-byte character.
  bool IsLeadByte(unsigned char byte) const { return (flags_[byte] & kLead) != 0; }

  /// Bytes of the character at the start of `text`, which isn't empty: 2 for a lead byte with a
  /// byte behind it, else 1. A lead byte at the very end counts as a character of one byte.
  std::size_t CharacterSize(std::string_view text) const {
    return text.size() > 1 && IsLeadByte(static_cast<unsigned char>(text.front())) ? 2 : 1;
  }

  /// Class and case of one-byte characters; false or unchanged for lead and trail bytes.
  bool IsAlpha(unsigned char byte) const { return (flags_[byte] & kAlpha) != 0; }
  bool IsLower(unsigned char byte) const { return (flags_[byte] & kLower) != 0; }
  bool IsUpper(unsigned char byte) const { return (flags_[byte] & kUpper) != 0; }
  unsigned char Lower(unsigned char byte) const { return lower_[byte]; }
  unsigned char Upper(unsigned char byte) const { return upper_[byte]; }

  /// Changes the case of `size` bytes at `text` in place, character by character. The number of
  /// bytes never changes.
  void LowerInPlace(char* text, std::size_t size) const;
  void UpperInPlace(char* text, std::size_t size) const;

 private:
  enum Flag : unsigned char { kLead = 1, kAlpha = 2, kLower = 4, kUpper = 8 };

  explicit CodePage(UINT number);

  /// Changes one-byte characters by the table `bytes`, and the others by the page's letters.
  void ChangeCase(const std::array<unsigned char, 256>& bytes, bool to_lower, char* text,
                  std::size_t size) const;

  UINT number_;
  bool single_byte_ = true;
  std::array<unsigned char, 256> flags_{};
  std::array<unsigned char, 256> lower_{};
  std::array<unsigned char, 256> upper_{};
};

}  // namespace dq::platform
