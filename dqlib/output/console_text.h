// The bytes that a console program writes as the text that an edit shows.

#pragma once

#include <string>
#include <string_view>

namespace dq::detail {

/// Turns output into text, piece for piece as it arrives: a line feed that stands alone becomes
/// CR LF, zeros go, all else stays. What may be the first part of a CR LF or of a character of the
/// process's code page (of UTF-8 in the page 0) is held back until more comes, so that the pieces
/// may be cut anywhere. At most three bytes are.
class ConsoleText {
 public:
  /// What can be shown of all that has come and wasn't given before; whole characters.
  std::string Take(std::string_view bytes);

  /// What is left when no more comes.
  std::string Rest();

 private:
  std::string held_;
};

}  // namespace dq::detail
