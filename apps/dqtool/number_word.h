// Numbers among a command's words.

#pragma once

#include <charconv>
#include <string>
#include <system_error>

#include "apps/dqtool/command.h"

namespace dqtool {

/// The number that the word is; throws `WrongUsage`, with what the word stands for, if it is none
/// of the type's.
template <typename Number>
Number ReadNumber(const std::string& word, const char* what) {
  Number number{};
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  if (error == std::errc() && stop == end) return number;
  throw WrongUsage(std::string(what) + " is a number, not '" + word + "'");
}

}  // namespace dqtool
