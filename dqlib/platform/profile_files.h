// Private profile files: sections of keys with text values.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/error.h"

namespace dq::platform {

/// Profile files: lines `[section]` and `key=value`, `;` begins a comment line.
///
/// Names of sections and keys are compared without regard to the case of ASCII letters and without
/// blanks around them. On reading, blanks around a value and one pair of quotes (' or ") around it
/// are dropped. Writing changes only the line concerned: comments, order, unknown lines and the
/// line ends of every other line stay byte for byte. A new key goes to the end of its section,
/// before the blank lines there, a new section to the end of the file, both with the line end that
/// the file uses, CR LF in a new one. A path without a directory lies in the user's configuration
/// directory. Every call reads the file as it is then; a write replaces it atomically and keeps out
/// other writers meanwhile, so that none is lost. Files that are made may be read by the user only.
/// Any thread.
class ProfileFiles {
 public:
  ProfileFiles() = default;
  ProfileFiles(const ProfileFiles&) = delete;
  ProfileFiles& operator=(const ProfileFiles&) = delete;
  virtual ~ProfileFiles();

  /// The value of a key; of the first one where names stand twice. No value if there is none or the
  /// file can't be read.
  virtual std::optional<std::string> Read(std::string_view path, std::string_view section,
                                          std::string_view key) = 0;

  /// Sets a key, and makes section and file if need be. A null key deletes the section with its
  /// keys, a null value the key; where there is nothing to delete, that is no error. A value is one
  /// line: one with a line end is `kInvalidArgument`, as is a name with a line end or an empty one.
  virtual Error Write(std::string_view path, std::string_view section,
                      std::optional<std::string_view> key,
                      std::optional<std::string_view> value) = 0;

  /// Names in the order of the file; each once. None if the file can't be read.
  virtual std::vector<std::string> Sections(std::string_view path) = 0;
  virtual std::vector<std::string> Keys(std::string_view path, std::string_view section) = 0;

  /// Why the file can't be read; none if it can be, or isn't there.
  virtual Error CheckReadable(std::string_view path) = 0;
};

}  // namespace dq::platform
