// `CString`: the framework's text value.
//
//   CString text;
//   text.Format("Line %d", 7);
//   if (text.Find("7") >= 0) text += '!';

#pragma once

#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <limits>
#include <new>
#include <string>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq {

namespace detail {
/// A text that brings its length, as `std::string_view` and `std::string` do.
template <class T>
concept SizedText =
    std::convertible_to<const T&, std::string_view> && !std::convertible_to<const T&, const char*>;
}  // namespace detail

/// 8-bit text in the process's multi-byte code page, with a zero behind its last byte. Indices and
/// lengths are bytes, of type `int`; a text is at most 2^31 - 1 bytes long. It may hold zeros; an
/// operation that takes a plain `const char*` reads up to the first zero, and takes null as "".
/// What is passed may be a part of the string itself. Walks and searches go by character of the
/// code page. A value: a const one may be read by several threads. Running out of memory, or over
/// the length, throws `std::bad_alloc`.
class CString {
 public:
  CString() = default;
  /// A copy has the value alone, not what a caller has written behind it in the buffer.
  CString(const CString& other);
  CString(CString&& other) noexcept;
  CString(const char* text);
  CString(const char* text, int length);
  CString(std::string_view text) : text_(text), length_(Checked(text.size())) {}
  CString(const std::string& text);
  CString(std::string&& text);
  /// `repeat` times the character; "" if `repeat` is below 1.
  explicit CString(char character, int repeat = 1);
  ~CString() = default;

  CString& operator=(const CString& other);
  CString& operator=(CString&& other) noexcept;
  CString& operator=(const char* text);
  CString& operator=(std::string_view text);
  CString& operator=(const std::string& text);
  CString& operator=(char character);

  int GetLength() const { return static_cast<int>(length_); }
  bool IsEmpty() const { return length_ == 0; }
  void Empty();

  /// The byte at an index from 0 to the length (the zero behind the text).
  char GetAt(int index) const { return text_[static_cast<std::size_t>(index)]; }
  /// The same for an index of any integer type.
  template <std::integral Index>
  char operator[](Index index) const {
    return text_[static_cast<std::size_t>(index)];
  }
  /// Replaces the byte at an index below the length.
  void SetAt(int index, char character);

  /// The text, zero-ended; valid until the string changes.
  operator const char*() const { return text_.c_str(); }
  /// The whole text, zeros included; valid until the string changes.
  std::string_view View() const { return {text_.data(), length_}; }

  CString& operator+=(const CString& text) { return Append(text.View()); }
  CString& operator+=(const char* text);
  CString& operator+=(std::string_view text) { return Append(text); }
  CString& operator+=(char character);

  /// Compares by unsigned bytes, `CompareNoCase` by their lower-case forms: below 0, 0 or above 0.
  int Compare(const char* text) const;
  int CompareNoCase(const char* text) const;

  /// Comparisons by unsigned bytes, of all bytes; a null `const char*` counts as "". `<`, `<=`,
  /// `>`,
  /// `>=`, `!=` and an exchange of the sides come from these.
  friend bool operator==(const CString& left, const CString& right) {
    return left.View() == right.View();
  }
  friend bool operator==(const CString& left, const char* right) {
    return left.Compare(right) == 0;
  }
  template <detail::SizedText Text>
  friend bool operator==(const CString& left, const Text& right) {
    return left.View() == std::string_view(right);
  }
  friend std::strong_ordering operator<=>(const CString& left, const CString& right) {
    return left.View() <=> right.View();
  }
  friend std::strong_ordering operator<=>(const CString& left, const char* right) {
    return left.Compare(right) <=> 0;
  }
  template <detail::SizedText Text>
  friend std::strong_ordering operator<=>(const CString& left, const Text& right) {
    return left.View() <=> std::string_view(right);
  }

  friend CString operator+(const CString& left, const CString& right);
  friend CString operator+(const CString& left, const char* right);
  friend CString operator+(const char* left, const CString& right);
  friend CString operator+(const CString& left, char right);
  friend CString operator+(char left, const CString& right);
  template <detail::SizedText Text>
  friend CString operator+(const CString& left, const Text& right) {
    return Sum(left.View(), right);
  }
  template <detail::SizedText Text>
  friend CString operator+(const Text& left, const CString& right) {
    return Sum(left, right.View());
  }

  /// Parts of the text. A start or count out of range is clipped; a negative one counts as 0.
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString Left(int count) const;
  CString Right(int count) const;
  /// The longest start of the text made only of, or free of, the characters of `set`.
  CString SpanIncluding(const char* set) const;
  CString SpanExcluding(const char* set) const;

  /// Case by the code page.
  void MakeUpper();
  void MakeLower();
  void MakeReverse();

  /// Removes white space at the end or at the start.
  void TrimRight();
  void TrimLeft();

  /// First or last place of a character or text, or -1. By character.
  int Find(char character) const;
  int Find(const char* text) const;
  int ReverseFind(char character) const;
  /// First place of any character of `set`, or -1.
  int FindOneOf(const char* set) const;

  /// Replaces the text by the formatted arguments, by the rules of `printf`. The second form takes
  /// the format from the string with the id; "" if there is none.
  void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Format(UINT id, ...);
  void FormatV(const char* format, std::va_list arguments);

  /// Loads the string with the id by the chain of resource modules (see `resource_chain.h`).
  /// Returns 0, and leaves "", if no module has it.
  BOOL LoadString(UINT id);

  /// The string's own storage, with room for at least `minimum` bytes and a zero behind them; the
  /// present text stands at its start and bytes behind it are zero. The caller may write there and
  /// then calls `ReleaseBuffer`; until then the length stays what it was, and a change to the
  /// string drops what was written behind it.
  char* GetBuffer(int minimum);
  /// Takes over what was written to the buffer: the first `length` bytes, or, if that is -1, the
  /// bytes up to the first zero.
  void ReleaseBuffer(int length = -1);

 protected:
  /// The text for editing, cut to its length.
  std::string& Storage();
  /// Takes over an edited `Storage()`.
  void Commit();

 private:
  CString& Append(std::string_view text);
  static CString Sum(std::string_view left, std::string_view right);
  /// A length that callers can have as an `int`; one that is too long counts as out of memory.
  static std::size_t Checked(std::size_t length) {
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max())) throw std::bad_alloc();
    return length;
  }

  std::string text_;
  /// Bytes of `text_` that belong to the value; fewer than it holds while a buffer is out.
  std::size_t length_ = 0;
};

namespace detail {
/// The string with the id by the chain of resource modules; "" if no module has it.
CString LoadText(UINT id);
}  // namespace detail

/// Replaces `%1`, and `%2` in the second form, in the string with the id by the texts, in one pass:
/// what is inserted is not looked at again, and every other `%` stays. `result` becomes "" if there
/// is no such string.
void AfxFormatString1(CString& result, UINT id, const char* text1);
void AfxFormatString2(CString& result, UINT id, const char* text1, const char* text2);

}  // namespace dq
