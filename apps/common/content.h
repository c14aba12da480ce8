// Contents that a command reads from a file or, for "-", from standard input.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "apps/common/console.h"

namespace dqapps {

/// What complaints call the file: "standard input" for "-".
std::string NameOfInput(const std::string& path);

/// The content; no value, which has been said, if it can't be read.
std::optional<std::string> ReadContent(const std::string& path);

/// A file of its own for a moment, in the system's directory for such files and for the user only.
class TemporaryFile {
 public:
  TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  /// "", which has been said, if it couldn't be made.
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// A file that something else reads by its path. For "-" that of a temporary one with the content.
class InputFile {
 public:
  explicit InputFile(const std::string& path);

  /// False, which has been said, if there is no such content.
  bool ok() const { return ok_; }
  const std::string& path() const { return path_; }

 private:
  std::optional<TemporaryFile> own_;
  std::string path_;
  bool ok_ = true;
};

/// Takes a line without its end off standard input; false at its end.
bool ReadInputLine(std::string& line);

/// `kYes`, or what `Complain` returns if the lines ended because standard input can't be read.
int EndOfInputLines();

}  // namespace dqapps
