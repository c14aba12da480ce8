// Version resources of program files.

#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq::platform {

/// Names and texts of a version resource: "FileVersion", "ProductName" and so on.
using VersionTable = std::map<std::string, std::string, std::less<>>;

/// Version resources, as blocks of bytes that only this service reads. Any thread.
class VersionResources {
 public:
  VersionResources() = default;
  VersionResources(const VersionResources&) = delete;
  VersionResources& operator=(const VersionResources&) = delete;
  virtual ~VersionResources();

  /// Bytes of the file's version resource; 0 if it has none. Where files carry none, it comes from
  /// the table handed in for that file, or from the text file `<path>.version` beside it, which has
  /// lines `name=text`; lines without `=` and those that begin with `;` mean nothing, and of two
  /// lines with one name the first counts. In both, the name "Translation" has language and code
  /// page as four hexadecimal digits each with a comma between, as in "0409,04b0", which holds
  /// where there is no such text.
  virtual std::size_t Size(std::string_view path) = 0;

  /// Fetches the resource into a block of that size. False if there is none, or the block is too
  /// small.
  virtual bool Fetch(std::string_view path, std::span<char> block) = 0;

  /// Looks up "\VarFileInfo\Translation", whose value is one or more 32-bit numbers (language in
  /// the low half, code page in the high half, lowest byte first), or "\StringFileInfo\<language
  /// and code page as 8 hexadecimal digits>\<name>", whose value is a text. The case of ASCII
  /// letters is ignored. No value if the block hasn't it or isn't one of this service; the view is
  /// into the block.
  virtual std::optional<std::string_view> Query(std::span<const char> block,
                                                std::string_view query) = 0;

  /// Hands in the table for a file, in place of what it carries. An empty table says that it
  /// carries none.
  virtual void SetTable(std::string_view path, VersionTable table) = 0;
};

}  // namespace dq::platform
