// A fixed set of words that is asked whether it has a name, millions of times.

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/string_collections.h"

namespace dq::detail {

/// Words, filled once. Asking takes no memory, and most names are told apart from every word by
/// their first byte and length alone. Several threads may ask at once.
class SqlWordSet {
 public:
  /// Takes the words of a list instead of those it has.
  void Fill(const CStringList& words);

  /// Whether the text is one of the words once its ASCII letters are in upper case.
  bool ContainsUpperOf(std::string_view text) const;

 private:
  std::vector<std::string> words_;
  /// Open addressing with room to spare: places in `words_` from 1 on; 0 is free.
  std::vector<std::uint16_t> slots_;
  /// Which lengths the words that begin with a byte have: a bit each, the last for all beyond.
  std::array<std::uint32_t, 256> lengths_{};
};

}  // namespace dq::detail
