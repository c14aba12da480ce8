// The registry editor's text export format: a header line, then keys, each with its values.
//
//   REGEDIT4
//
//   [HKEY_CURRENT_USER\Software\Velmora]
//   @="default value"
//   "Path"="C:\\data"
//   "Count"=dword:0000002a
//   "Font"=hex:01,02,03
//
// Texts are bytes. Three things the format itself can't say are added: a line end in a value's name
// is written `\n` or `\r`, one in a key's name `\\n` or `\\r`, and a text whose bytes are not
// exactly one line and a zero is written as `hex(1):`.

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq::platform {

/// The first line of a file, without its line end.
inline constexpr std::string_view kRegistryTextHeader = "REGEDIT4";

/// What opens every line end that is written.
inline constexpr std::string_view kRegistryTextLineEnd = "\r\n";

/// Appends the line that opens a key, from its root: `HKEY_CURRENT_USER\Software`. No line end of
/// its own stands before it.
void AppendRegistryKey(std::string_view path, std::string& text);
/// Appends the line, or lines, of a value of the key that was opened last.
void AppendRegistryValue(std::string_view name, DWORD type, std::string_view data,
                         std::string& text);

/// What a reader finds, in the order of the file. Views last as long as the call, unless the reader
/// says otherwise.
class RegistryTextSink {
 public:
  RegistryTextSink() = default;
  RegistryTextSink(const RegistryTextSink&) = delete;
  RegistryTextSink& operator=(const RegistryTextSink&) = delete;
  virtual ~RegistryTextSink();

  /// `path` is as it stands, from its root, and not checked. Returns false if the key can't be
  /// had; its values are then lost and counted.
  virtual bool OnKey(std::string_view path) = 0;
  virtual bool OnDeletedKey(std::string_view path) = 0;
  virtual bool OnValue(std::string_view name, DWORD type, std::string_view data) = 0;
  virtual bool OnDeletedValue(std::string_view name) = 0;
  /// Whether what stands below the key that was found last is to be given by `OnLines` instead of
  /// value by value. Lines that are given so aren't counted.
  virtual bool TakesLines() const { return false; }
  virtual void OnLines(std::span<char> lines);
  /// A line that begins with `;`, without it.
  virtual void OnComment(std::string_view text);
  /// A line that is lost, by its number from 1; of lines that go on with one another, the first.
  virtual void OnLostLine(std::size_t number);
};

/// What a reader could not use.
struct RegistryTextDamage {
  /// The file begins with another line than the header.
  bool no_header = false;
  /// Lines that make no sense, that the sink refused, and values below no key.
  std::size_t lost_lines = 0;

  bool any() const { return no_header || lost_lines > 0; }
};

/// Reads a text from its header to its end and gives all that makes sense to `sink`; what doesn't
/// is left out and counted. Any bytes are safe.
RegistryTextDamage ReadRegistryText(std::string_view text, RegistryTextSink& sink);
/// The same without a copy of anything: names and data are decoded where they stand, so that their
/// views last as long as `text`, which is no registry text any more then.
RegistryTextDamage ReadRegistryTextInPlace(std::span<char> text, RegistryTextSink& sink);
/// The same for what `OnLines` has given.
RegistryTextDamage ReadRegistryLinesInPlace(std::span<char> lines, RegistryTextSink& sink);

}  // namespace dq::platform
