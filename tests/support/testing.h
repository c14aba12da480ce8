// What nearly every test needs, with the rest of the standard library that gmock brings: texts,
// containers, streams, pointers, algorithms; and all that is public. It is compiled once for all
// test programs.

#pragma once

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <mutex>
#include <numeric>
#include <optional>
#include <random>
#include <span>
#include <thread>

#include "dqlib/dqlib.h"

namespace dq::test {

/// Tables of cases whose columns need no type of their own:
///
///   for (const auto& [text, length] : Rows<const char*, int>{{"", 0}, {"a", 1}}) ...
template <typename... Columns>
using Rows = std::initializer_list<std::tuple<Columns...>>;

/// Cases of texts alone, as a text: one on a line, or several with ";;" between them. Around their
/// columns stands "=>". Blanks at the ends are not part of a column.
///
///   for (const auto& [text, quoted] : Cases<2>(R"(a => a ;; b c => "b c" ;; => "")")) ...
template <std::size_t columns>
std::vector<std::array<std::string, columns>> Cases(std::string_view text) {
  const auto take = [](std::string_view& rest, std::string_view sign) {
    const std::size_t end = std::min(rest.find(sign), rest.size());
    const std::string_view taken = rest.substr(0, end);
    rest.remove_prefix(std::min(end + sign.size(), rest.size()));
    return taken;
  };
  std::vector<std::array<std::string, columns>> cases;
  while (!text.empty()) {
    std::string_view line = take(text, "\n");
    while (line.find_first_not_of(' ') != line.npos) {
      std::string_view row = take(line, ";;");
      for (std::string& column : cases.emplace_back()) {
        const std::string_view cell = take(row, "=>");
        const std::size_t first = std::min(cell.find_first_not_of(' '), cell.size());
        column = cell.substr(first, cell.find_last_not_of(' ') + 1 - first);
      }
    }
  }
  return cases;
}

/// The texts of a list, from head to tail, with "|" behind each.
inline std::string Joined(const CStringList& list) {
  std::string joined;
  for (POSITION position = list.GetHeadPosition(); position != nullptr;) {
    joined += list.GetNext(position).View();
    joined += '|';
  }
  return joined;
}

}  // namespace dq::test
