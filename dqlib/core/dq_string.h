// `CDQString`: the library's working string, with field, search, replacement, number and case
// operations.
//
//   CDQString line("server=ora1;user=scott");
//   CDQString user = line.GetField(";", 1).GetField("=", 1);   // "scott"

#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/string_collections.h"

namespace dq {

/// A `CString` with more operations and no more data. Indices are byte indices; "not found" is -1
/// or an empty text. Unless told otherwise callers keep to the ranges: no null text, no negative
/// position or index, no forward start past the end; what is outside does no harm (null counts as
/// "", a negative number as 0 or as "not found") but means nothing. White space is the blank and
/// the characters 9 to 13. Texts that are passed may be parts of the string itself. "By character"
/// is told of operations that never take the second byte of a two-byte character for a character;
/// the searches, replacements and fields by text go by character, too.
class CDQString : public CString {
 public:
  /// Kinds of random text. Any other value gives bytes of any kind.
  enum RANDOMSTRINGTYPE : int {
    RANDOM_ALPHANUMERIC = 1,
    RANDOM_ALPHA = 2,
    RANDOM_NUMERIC = 3,
  };

  CDQString() = default;
  CDQString(const CDQString&) = default;
  CDQString(CDQString&&) noexcept = default;
  CDQString(const CString& text) : CString(text) {}
  CDQString(CString&& text) noexcept : CString(std::move(text)) {}
  CDQString(const char* text) : CString(text) {}
  CDQString(const char* text, int length) : CString(text, length) {}
  CDQString(std::string_view text) : CString(text) {}
  CDQString(const std::string& text) : CString(text) {}
  CDQString(std::string&& text) : CString(std::move(text)) {}
  CDQString(char character, int repeat) : CString(character, repeat) {}
  CDQString& operator=(const CDQString&) = default;
  CDQString& operator=(CDQString&&) noexcept = default;
  using CString::operator=;

  /// The number at the start of the text, as the C run-time reads it; 0 if there is none. `Int()`
  /// is the nearest `int` of a number that is out of range.
  double Double() const;
  int Int() const;
  /// `Int()` isn't 0: "1" and "-5" are true, "true" is false.
  bool Bool() const;

  /// Replaces the text by that of a number; `bool` gives a digit 1 or 0. A `long` is a 32-bit
  /// number on every machine: one that is out of that range gives the nearest that is in it.
  void SetNumber(int number);
  void SetNumber(unsigned int number);
  void SetNumber(long number);
  void SetNumber(bool number);

  /// Inserts at `pos`; if that is behind the end, blanks fill up the gap first, which callers use
  /// to lay out columns. Inserting nothing changes nothing.
  CDQString& Insert(int pos, const char* text);
  CDQString& Insert(int pos, char ch);

  /// Deletes `count` bytes at `pos`; a negative count, or one past the end, means all that remains.
  /// A position at or past the end changes nothing.
  CDQString& Delete(int pos, int count);
  /// Deletes every occurrence of a one-byte character, by character. One pass, in place.
  CDQString& Delete(char ch);

  /// `Delete`, then `Insert`.
  CDQString& Replace(int pos, int count, const char* text);

  /// Replaces each tab by `width` blanks, wherever it stands: it doesn't align to tab stops.
  /// Returns the number of tabs. By byte.
  int ReplaceTabs(int width);

  /// Removes all white space, between words too: callers compare texts that way. Returns the new
  /// length. By character. One pass, in place.
  int TrimWhiteSpace();

  /// Lower case, but upper case for the first byte and for each letter behind white space, by byte.
  CDQString& MakeProper();

  /// Appends "s"; "es" behind "s" or "x", in either case; makes "y" or "Y" "ies". Looks at the last
  /// character, not the last byte. An empty text stays.
  CDQString& MakePlural();

  /// Place of the first `ch` or `text` at or behind `start`, or -1.
  int Find(char ch, int start = 0) const;
  int Find(const char* text, int start = 0) const;
  /// The same, case ignored. The character is searched for in both its cases.
  int FindNoCase(char ch, int start = 0) const;
  int FindNoCase(const char* text, int start = 0) const;

  /// First white space, first lower-case letter, last white space, by byte.
  int FindWhiteSpace() const;
  int FindCharLower() const;
  int ReverseFindWhiteSpace() const;

  /// Last place of a character.
  int ReverseFind(char ch) const { return CString::ReverseFind(ch); }

  /// Last place of `text` at or before `start`, by byte; -1, or a start past the end, means the
  /// last byte. A hit at index 0 is not seen, while `ReverseFindNoCase` sees it: callers look for a
  /// separator that has something before it.
  int ReverseFind(const char* text, int start = -1) const;
  /// The same, case ignored, and with index 0.
  int ReverseFindNoCase(char ch, int start = -1) const;
  int ReverseFindNoCase(const char* text, int start = -1) const;

  /// Replaces `find`, which isn't empty, by `with`: every occurrence, or only the first. What was
  /// inserted is not searched again. Returns the number of replacements. One pass; in place unless
  /// the text grows. An empty `find` is never found.
  int FindReplace(const char* find, const char* with, bool all = true);
  int FindReplaceNoCase(const char* find, const char* with, bool all = true);

  /// The field with an index from 0, untrimmed; fields may be empty, and one past the last is "".
  /// An empty delimiter is never found.
  CDQString GetField(const char* delimiter, int index) const;
  CDQString GetField(char delimiter, int index) const;
  /// One more than the number of delimiters.
  int GetFieldCount(const char* delimiter) const;
  int GetFieldCount(char delimiter) const;

  /// The text between an `open` and the next `close`, by index from 0; "" if there is none. The
  /// search for the next field starts at the former opening plus the length of `close`, so an
  /// opening inside a field begins the next one; callers with nested fields rely on it.
  CDQString GetDelimitedField(const char* open, const char* close, int index) const;

  /// Adds the tokens between any of the delimiter characters at the end of `out`, which isn't
  /// emptied, and returns how many there were. No token is empty. The string itself is cut behind
  /// its first token, as the run-time's tokeniser leaves it: split a copy to keep the text.
  /// Delimiters before the first token stay, and a text of delimiters alone stays whole. What is
  /// behind a zero byte is lost.
  int Split(const char* delimiters, CStringArray& out);

  /// Takes over a fixed field of `size` bytes, which needs no zero, up to its first zero, without
  /// white space at its end.
  void ExtractFromCharBuffer(const char* buffer, int size);

  /// Makes the string's storage a fixed field: `size` bytes, zero but for at most `size` bytes of
  /// `text`. The caller uses the result at once; the string's own length is not updated and stays
  /// 0.
  char* PutToCharBuffer(const char* text, int size);

  /// Text of a number: with `precision` places in at least `width` columns; with `width`
  /// significant digits if precision is 0; shortest form up to 38 digits if both are 0 or any is
  /// negative.
  void SetDouble(double value, int width, int precision);

  /// Formats the number text by the user's locale; see `DQFormatNumber`. A text that is no number
  /// stays.
  void FormatNumber(char decimalChar, char thousandChar);

  /// Appends `length` characters, by `NextRandom`. The generator is seeded anew for each with its
  /// number times the length times the tick count, so neighbours are alike: no source of secrets.
  /// "z" of the letters and "9" of `RANDOM_NUMERIC` never come.
  void GenerateRandomString(int length, RANDOMSTRINGTYPE type);
};

/// Formats a number text (digits with an optional leading "-" and one ".") by the user's locale
/// into `output`, which has room for 255 bytes. The separators of the locale hold; the two
/// characters stand in for one that can't be read. A text without the locale's decimal separator
/// gets no decimal places. If the text is no number or the result has no room, or an argument is
/// null, `output` stays.
void DQFormatNumber(const char* input, char* output, char decimalChar, char thousandChar);

}  // namespace dq
