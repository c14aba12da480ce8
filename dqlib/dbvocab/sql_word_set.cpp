#include "dqlib/dbvocab/sql_word_set.h"

#include <algorithm>
#include <bit>

#include "dqlib/platform/ascii.h"

namespace dq::detail {
namespace {

constexpr std::size_t kLastLengthBit = 31;

std::uint32_t LengthBit(std::size_t length) {
  return std::uint32_t{1} << std::min(length, kLastLengthBit);
}

/// The same for every case of a text.
std::size_t HashOf(std::string_view text) {
  std::uint64_t hash = text.size();
  for (const char each : text) {
    hash = hash * 31 + static_cast<unsigned char>(platform::AsciiUpper(each));
  }
  return static_cast<std::size_t>((hash * 0x9E3779B97F4A7C15U) >> 40);
}

}  // namespace

void SqlWordSet::Fill(const CStringList& words) {
  // A place is a number of 16 bits; no list comes near.
  constexpr std::size_t kMostWords = 0xFFFF;
  words_.clear();
  lengths_ = {};
  for (POSITION position = words.GetHeadPosition();
       position != nullptr && words_.size() < kMostWords;) {
    const CString& word = words.GetNext(position);
    if (!word.IsEmpty()) words_.emplace_back(word.View());
  }
  slots_.assign(std::bit_ceil(words_.size() * 4 + 1), 0);
  for (std::size_t place = 1; place <= words_.size(); ++place) {
    const std::string& word = words_[place - 1];
    lengths_[static_cast<unsigned char>(word.front())] |= LengthBit(word.size());
    std::size_t slot = HashOf(word) & (slots_.size() - 1);
    while (slots_[slot] != 0) slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = static_cast<std::uint16_t>(place);
  }
}

bool SqlWordSet::ContainsUpperOf(std::string_view text) const {
  if (text.empty()) return false;
  const auto first = static_cast<unsigned char>(platform::AsciiUpper(text.front()));
  if ((lengths_[first] & LengthBit(text.size())) == 0) return false;
  for (std::size_t slot = HashOf(text);; ++slot) {
    const std::uint16_t place = slots_[slot & (slots_.size() - 1)];
    if (place == 0) return false;
    const std::string& word = words_[place - 1u];
    if (std::equal(text.begin(), text.end(), word.begin(), word.end(),
                   [](char mine, char its) { return platform::AsciiUpper(mine) == its; })) {
      return true;
    }
  }
}

}  // namespace dq::detail
