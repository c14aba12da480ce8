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
