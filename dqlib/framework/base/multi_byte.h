// Helpers for text in the process's multi-byte code page.
//
// In a single-byte code page, the usual case, they work byte by byte. In a code page with lead
// bytes a two-byte character is never split: its second byte is not taken for a character, a
// one-byte character is never equal to either of its bytes, and a search never finds a hit that
// begins in the middle of a character.
//
// White space is the blank and the characters 9 to 13, whatever the code page; none of them is ever
// the second byte of a well-formed character. Bytes count as unsigned. Texts are bytes and may hold
// zeros; a result is a byte index, or `npos`. Any thread.

#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/code_page.h"

namespace dq::multi_byte {

inline constexpr std::size_t npos = std::string_view::npos;

/// The process's code page: that of the locale in force.
const platform::CodePage& CurrentCodePage();

/// Blank, tab, line feed, vertical tab, form feed or carriage return.
constexpr bool IsSpace(unsigned char byte) { return byte == 32 || (byte >= 9 && byte <= 13); }

/// A text to look for, prepared for many searches. It keeps views of both the text and the code
/// page, which must outlive it.
class Searcher {
 public:
  explicit Searcher(std::string_view wanted) : Searcher(wanted, CurrentCodePage()) {}
  Searcher(std::string_view wanted, const platform::CodePage& page);

  /// Where the wanted text first stands at or behind `start`, at which a character begins; `npos`
  /// if `start` is past the end. An empty wanted text is found at once. Linear in the distance to
  /// the hit and the length of the wanted text.
  std::size_t Find(std::string_view text, std::size_t start) const {
    return is_byte_ ? text.find(wanted_.front(), start) : FindText(text, start);
  }

  /// How often the wanted text, which isn't empty, stands in `text` without overlapping.
  std::size_t Count(std::string_view text) const;

  /// Where the occurrence with that index from 0 stands, of those that `Count` counts.
  std::size_t FindAt(std::string_view text, std::size_t index) const;

 private:
  std::size_t FindText(std::string_view text, std::size_t start) const;

  std::string_view wanted_;
  const platform::CodePage& page_;
  /// The wanted text is one byte, and bytes are characters.
  bool is_byte_;
};

/// Walks over the places where a text stands in another, case ignored: finds what `Searcher` finds
/// in the lower-case forms of both. It keeps a view of the text to be searched, of which what is
/// behind the place of the last search may be changed meanwhile.
class NoCaseWalk {
 public:
  NoCaseWalk(std::string_view text, std::string_view wanted);

  /// As `Searcher::Find`; `start` never decreases.
  std::size_t Find(std::size_t start);

 private:
  /// Where one of the bytes that the wanted text may begin with next stands.
  struct Beginning {
    char byte;
    std::size_t next;
  };

  std::size_t NextBeginning(std::size_t start);
  std::size_t CountEqual(std::size_t at) const;

  std::string_view text_;
  std::string wanted_;
  const platform::CodePage& page_;
  std::vector<Beginning> beginnings_;
  /// The text in lower case, once a plain search doesn't serve.
  std::optional<std::string> lower_;
};

/// A set of characters, prepared for many searches. It keeps a view of the code page, which must
/// outlive it.
class CharacterSet {
 public:
  explicit CharacterSet(std::string_view characters);

  /// Where the first character at or behind `start` stands that is in the set, or isn't; the length
  /// of the text if there is none.
  std::size_t FindMember(std::string_view text, std::size_t start) const;
  std::size_t FindOther(std::string_view text, std::size_t start) const;

 private:
  bool Contains(std::string_view character) const;
  std::size_t FindIf(std::string_view text, std::size_t start, bool member) const;

  const platform::CodePage& page_;
  std::array<bool, 256> bytes_{};
  /// The two-byte characters, one behind the other.
  std::string pairs_;
  /// The set is this one byte, and bytes are characters; else -1.
  int only_byte_ = -1;
};

/// Cuts a text as the run-time's tokeniser does: at any of the delimiter characters, of which runs
/// count as one and leading ones are skipped, so that no token is empty. It ends at the first zero,
/// of which one stands behind the text. Keeps a view of the text.
class Tokenizer {
 public:
  Tokenizer(std::string_view text, std::string_view delimiters);

  /// Takes the next token; false, and `token` unchanged, when there are no more.
  bool Next(std::string_view& token);

 private:
  std::string_view text_;
  CharacterSet delimiters_;
  CharacterSet ends_;
  /// The delimiter, if it is one byte only and bytes are characters.
  std::optional<char> only_byte_;
  std::size_t position_ = 0;
};

/// Where `character` first stands at or behind `start`; `npos` if `start` is past the end.
std::size_t Find(std::string_view text, char character, std::size_t start = 0);

/// `Searcher::Find` for one search.
std::size_t Find(std::string_view text, std::string_view wanted, std::size_t start = 0);

/// The same in the lower-case forms of the text and what is wanted; a character is searched for in
/// both its cases. Linear in the distance to the hit.
std::size_t FindNoCase(std::string_view text, char character, std::size_t start);
std::size_t FindNoCase(std::string_view text, std::string_view wanted, std::size_t start);

/// Where `character` last stands. Linear in the distance from the end.
std::size_t ReverseFind(std::string_view text, char character);

/// Where the bytes `wanted`, which aren't empty, last stand in `text`, whatever the code page.
/// Linear time.
std::size_t ReverseFindBytes(std::string_view text, std::string_view wanted);

/// The same, case ignored; each place is taken for the start of a character. Linear in the distance
/// of the hit from the end; where there are lead bytes, times what begins alike.
std::size_t ReverseFindNoCase(std::string_view text, std::string_view wanted);

/// Whether `lower` is `text` in lower case in the code page. Stops at the first difference.
bool IsLowerForm(std::string_view text, std::string_view lower, const platform::CodePage& page);

/// Compares by unsigned bytes; below 0, 0 or above 0.
int Compare(std::string_view left, std::string_view right);

/// Compares lower-case forms by unsigned bytes; below 0, 0 or above 0.
int CompareNoCase(std::string_view left, std::string_view right);

/// Case of a whole text.
void MakeLower(std::string& text);
void MakeUpper(std::string& text);
std::string Lower(std::string_view text);
std::string Upper(std::string_view text);

/// Where the character begins that the byte at a place belongs to; the place itself past the end.
std::size_t CharacterStart(std::string_view text, std::size_t place);

/// Where the last character of `text`, which isn't empty, begins.
std::size_t LastCharacter(std::string_view text);

/// `text` without white space at its end, or at its start.
std::string_view TrimRight(std::string_view text);
std::string_view TrimLeft(std::string_view text);

}  // namespace dq::multi_byte
