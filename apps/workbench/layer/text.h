// Texts of the library, bytes in its code page, and those of the toolkit, characters.

#pragma once

#include <string>
#include <string_view>
#include <vector>
#include <wx/string.h>

namespace workbench {

/// The text for the toolkit. In the default code page bytes are UTF-8; one that belongs to no
/// character there, or has none in another code page, is a character of its own that nobody uses,
/// so that `ToLibrary` gives it back.
wxString ToNative(std::string_view bytes);
/// The bytes of a toolkit's text; a character that the code page hasn't is "?".
std::string ToLibrary(const wxString& text);
/// The same for a text of several lines, which end with CR LF in the library.
std::string ToLibraryLines(const wxString& text);

/// A library's text with the place of each character that the toolkit shows for it.
class ShownText {
 public:
  /// `lines`: CR LF is one character, LF.
  ShownText(std::string_view bytes, bool lines);
  ShownText() : ShownText("", false) {}

  /// Adds a text behind it, which makes no one character with its end, and returns what that is
  /// for the toolkit.
  wxString Append(std::string_view bytes, bool lines);

  const wxString& native() const { return native_; }
  long size() const { return static_cast<long>(places_.size()) - 1; }
  /// The place in bytes of a character; the ends for places beyond them.
  int ByteAt(long character) const;
  /// The character at, or around, a place in bytes.
  long CharacterAt(int byte) const;

 private:
  wxString native_;
  /// That of each character, and the text's end.
  std::vector<int> places_;
};

}  // namespace workbench
