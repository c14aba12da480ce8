// The cutting of output into lines, told step by step and without regard to its cost.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/output/console_program.h"

namespace dq::test {

struct CutOutput {
  std::vector<std::string> lines;
  std::string rest;
  friend bool operator==(const CutOutput&, const CutOutput&) = default;
};

/// Cuts `output`, of which `chunk` bytes arrive at a time, each as a zero-ended text.
inline CutOutput CutPlainly(std::string_view output, std::size_t chunk, bool trim_left) {
  CutOutput cut;
  std::string text;
  for (; !output.empty(); output.remove_prefix(std::min(chunk, output.size()))) {
    text += std::string(output.substr(0, chunk)).c_str();
    while (!multi_byte::TrimLeft(text).empty()) {
      text.erase(0, text.find_first_not_of("\n\r\f\x1a"));
      const int position = CDQConsoleProgram::GetEndOfLinePosition(text.c_str());
      if (position < 1) break;
      const std::size_t size = static_cast<std::size_t>(position);
      std::string_view line = multi_byte::TrimRight(std::string_view(text).substr(0, size));
      if (trim_left) line = multi_byte::TrimLeft(line);
      if (!line.empty()) cut.lines.emplace_back(line);
      text.erase(0, size);
    }
  }
  cut.rest = multi_byte::TrimRight(text);
  return cut;
}

/// The same by any cutter with `Feed`, `Next` and `Rest`.
template <typename Cutter>
CutOutput CutWith(Cutter cutter, std::string_view output, std::size_t chunk) {
  CutOutput cut;
  for (; !output.empty(); output.remove_prefix(std::min(chunk, output.size()))) {
    cutter.Feed(std::string(output.substr(0, chunk)).c_str());
    // The text has a zero behind it, so read it as callers do.
    for (std::string_view line; cutter.Next(line);) cut.lines.emplace_back(line.data());
  }
  cut.rest = cutter.Rest().data();
  return cut;
}

}  // namespace dq::test
