// Cuts the output of a program into lines as it arrives.

#pragma once

#include <string>
#include <string_view>

namespace dq::detail {

/// The characters that end a line: line feed, carriage return, form feed and the character 26. Not
/// the same set as white space: 26 isn't trimmed, and a vertical tab or a blank ends no line.
inline constexpr char kLineEnds[] = "\n\r\f\x1a";

/// Collects output and cuts it into lines. A line is ready when the first character of the next one
/// has come, so the last line is left over for `Rest`. Runs of line ends count as one, and those
/// that nothing stands before are dropped, so there are no empty lines. A line goes up to the last
/// character of the run and is then trimmed, so that a 26 within the run stays in it. Linear in the
/// bytes fed, however long a line is.
class LineCutter {
 public:
  explicit LineCutter(bool trim_left) : trim_left_(trim_left) {}

  /// Adds what arrived. Then `Next` until it returns false.
  void Feed(std::string_view bytes);

  /// The next ready line that isn't empty, trimmed at its right end, and at its left end if so
  /// asked; zero-ended behind the view, and valid until the next call. False if there is none.
  bool Next(std::string_view& line);

  /// What is left when no more comes, trimmed at its right end only; valid until the next call.
  std::string_view Rest();

 private:
  void DropLeadingLineEnds();

  std::string text_;
  /// Bytes of `text_` that are done with.
  std::size_t begin_ = 0;
  /// Where the search for a line end goes on.
  std::size_t scan_ = 0;
  bool trim_left_;
};

}  // namespace dq::detail
