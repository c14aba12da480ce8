// Reads the lines of resources that are texts: words, numbers and texts in quotes.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dq::detail {

/// Walks through a resource text. Lines end in LF or CR LF; empty ones and those that begin with
/// `#` are passed over; blanks and tabs separate what stands on a line. After the first `Fail` all
/// reading fails. The text must outlive the reader.
class ResourceTextReader {
 public:
  explicit ResourceTextReader(std::string_view text) : rest_(text) {}

  /// Goes to the next line that counts. False at the end of the text, after a failure, and if the
  /// line before has something left, which is a failure.
  bool NextLine();
  /// Whether nothing is left on the line.
  bool AtLineEnd() const { return line_.empty(); }

  /// What stands up to the next blank and isn't in quotes.
  std::optional<std::string_view> Word();
  /// A text in quotes with the escapes `\n`, `\t`, `\"` and `\\`; other control characters aren't
  /// taken.
  std::optional<std::string> Text();
  /// A decimal number within the bounds, which are part of the bounds.
  std::optional<int> Number(int lowest, int highest);

  /// Makes the first failure's text, in lower case without a full stop, the error. Returns false.
  bool Fail(std::string_view why);
  bool failed() const { return !error_.empty(); }
  /// "line 3: a text isn't closed"; "" without a failure.
  const std::string& error() const { return error_; }

 private:
  void SkipBlanks();
  bool AddEscape(std::string& text);

  std::string_view rest_;
  std::string_view line_;
  std::size_t number_ = 0;
  std::string error_;
};

/// The data of the resource by the chain of resource modules; no value if there is none.
std::optional<std::string_view> FindResourceData(unsigned id, unsigned short type);

/// Reads a whole decimal number with nothing around it; no value if it isn't one within the bounds.
std::optional<int> ReadWholeNumber(std::string_view digits, int lowest, int highest);

}  // namespace dq::detail
