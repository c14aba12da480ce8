// Options files: which options there are, and what they are when nobody has set them. Their form
// is told in docs/file-formats.md.

#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "siblings/options/option_value.h"

namespace dq {

/// What a file tells of one option.
struct OptionDefinition {
  int id = 0;
  OptionKind kind = OptionKind::kString;
  std::string name;
  std::string label;
  OptionValue fallback;
  /// Of numbers: the least and the greatest that make sense, ends included.
  std::optional<std::pair<int, int>> range;
  /// Not empty if the option has a value of its own for each platform.
  std::map<DBMS, OptionValue> platform_fallbacks;
  /// Key below the local machine and value whose text, if there is one, goes before the default; ""
  /// if there is no such.
  std::string machine_key;
  std::string machine_value;
};

/// Whether the text is a value of the option's kind and in its range.
bool IsValueOf(const OptionDefinition& option, std::string_view value);

/// A variable for templates.
struct OptionVariable {
  /// Without marks.
  std::string name;
  std::string value;
  /// The value is a path, and a relative one is below the options file's directory.
  bool is_directory = false;
};

/// A whole file. Ids and names, these without regard to case, stand once each.
struct OptionsFile {
  std::vector<OptionDefinition> options;
  std::vector<OptionVariable> variables;
};

/// The first thing in a file that breaks the form.
struct OptionsFileError {
  /// From 1.
  std::size_t line = 0;
  /// In lower case, without a full stop.
  std::string text;
};

/// Reads a text into `file`; if it breaks the form, returns why and leaves `file` empty. Any bytes
/// are safe. Linear in the text but for the search of ids and names.
std::optional<OptionsFileError> ReadOptionsText(std::string_view text, OptionsFile& file);

}  // namespace dq
