// The text of a profile file: finding its sections and keys, and changing single lines of it.
//
// A line ends in CR LF, LF or CR, and one text may mix them. A line whose first character other
// than a blank (blank or tab) is `[` and that holds a `]` begins the section named between it and
// the last `]`. A line with a `=` behind a name, in a section, is a key, unless it begins with `;`.
// Every other line is kept and means nothing. A UTF-8 mark at the begin of the text is no part of
// the first line. Where sections or keys have one name, the first one counts. All operations take
// time in the length of the text. Any thread.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dq::platform {

/// Whether the text is in an encoding of 16 bits a character, in which no line can be found.
bool IsWideProfile(std::string_view text);

/// Whether a line for it, once written, is read back as this name: not empty but for blanks,
/// without line ends and zeros; for a key also without `=`, and not beginning with `[` or `;`.
bool IsProfileSectionName(std::string_view name);
bool IsProfileKeyName(std::string_view name);

/// Whether it is one line: without line ends and zeros.
bool IsProfileValue(std::string_view value);

/// The value of a key, without the blanks and one pair of quotes around it. A view into the text.
std::optional<std::string_view> FindProfileValue(std::string_view text, std::string_view section,
                                                 std::string_view key);

/// Names in the order of the text; each once, as it is spelled first.
std::vector<std::string> ProfileSections(std::string_view text);
std::vector<std::string> ProfileKeys(std::string_view text, std::string_view section);

/// Changes of a text, which keep every byte of the lines that they don't concern. Each returns
/// whether the text has changed.

/// Sets a key: in its line, which keeps its spelling of the name; in a new line at the end of the
/// section, before the blank lines there; or in a new section at the end. A new line has the line
/// end of the one before it, else that of the first line, else CR LF. Names and value are as the
/// tests above have them.
bool SetProfileValue(std::string& text, std::string_view section, std::string_view key,
                     std::string_view value);

/// Deletes every line of that key in the section.
bool DeleteProfileKey(std::string& text, std::string_view section, std::string_view key);

/// Deletes every section of that name: the line with the name, and the keys. Comments and unknown
/// lines stay, because those before the next section often belong to that one.
bool DeleteProfileSection(std::string& text, std::string_view section);

}  // namespace dq::platform
