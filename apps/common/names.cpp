#include "apps/common/names.h"

#include <algorithm>
#include <vector>

#include "dqlib/platform/ascii.h"

namespace dqapps {
namespace {

/// Longer words are no misspelt names.
constexpr std::size_t kLongestName = 64;

/// How many letters must be put in, left out, changed or exchanged with the next one.
std::size_t Distance(std::string_view from, std::string_view to) {
  using Row = std::vector<std::size_t>;
  Row before(to.size() + 1);
  Row last(to.size() + 1);
  Row row(to.size() + 1);
  const auto same = [&](std::size_t i, std::size_t j) {
    return dq::platform::AsciiLower(from[i]) == dq::platform::AsciiLower(to[j]);
  };
  for (std::size_t j = 0; j <= to.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    before.swap(last);
    last.swap(row);
    row[0] = i;
    for (std::size_t j = 1; j <= to.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same(i - 1, j - 1) ? 0 : 1)});
      if (i > 1 && j > 1 && same(i - 1, j - 2) && same(i - 2, j - 1)) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
  }
  return row[to.size()];
}

}  // namespace

std::string DidYouMean(std::string_view word, std::span<const std::string> names) {
  if (word.empty() || word.size() > kLongestName) return {};
  const std::string* nearest = nullptr;
  // A third of the letters may be wrong.
  std::size_t best = std::max<std::size_t>(word.size() / 3, 1) + 1;
  for (const std::string& name : names) {
    const bool is_start =
        word.size() > 2 && name.size() > word.size() &&
        dq::platform::EqualIgnoringCase(std::string_view(name).substr(0, word.size()), word);
    const std::size_t distance = is_start ? 1 : Distance(word, name);
    if (distance >= best || distance >= name.size()) continue;
    best = distance;
    nearest = &name;
  }
  return nearest == nullptr ? std::string() : "; did you mean '" + *nearest + "'?";
}

}  // namespace dqapps
