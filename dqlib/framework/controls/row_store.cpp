#include "dqlib/framework/controls/row_store.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/controls/control.h"

namespace dq::detail {
namespace {

std::uint32_t HashOf(std::string_view lower) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>()(lower));
}

}  // namespace

void RowStore::Insert(int index, std::string_view text) {
  // Before the rows move: the text may be one of theirs.
  const std::uint32_t hash = HashOf(multi_byte::Lower(text));
  std::uint32_t slot = static_cast<std::uint32_t>(slots_.size());
  if (free_slots_.empty()) {
    slots_.push_back({std::string(text)});
  } else {
    slot = free_slots_.back();
    slots_[slot].text = text;
    free_slots_.pop_back();
  }
  order_.insert(order_.begin() + index, {slot, hash});
}

int RowStore::SortedPlace(std::string_view text) const {
  const auto behind = [this](std::string_view wanted, const Entry& entry) {
    return multi_byte::CompareNoCase(wanted, slots_[entry.slot].text) < 0;
  };
  // Rows that come in order are the usual case.
  if (order_.empty() || !behind(text, order_.back())) return size();
  return static_cast<int>(std::upper_bound(order_.begin(), order_.end(), text, behind) -
                          order_.begin());
}

void RowStore::SetText(int index, std::string_view text) {
  Entry& entry = order_[static_cast<std::size_t>(index)];
  entry.hash = HashOf(multi_byte::Lower(text));
  slots_[entry.slot].text = text;
}

void RowStore::Erase(int index) {
  const std::uint32_t slot = order_[static_cast<std::size_t>(index)].slot;
  slots_[slot] = {};
  free_slots_.push_back(slot);
  order_.erase(order_.begin() + index);
}

void RowStore::Clear() { *this = {}; }

template <typename Matches>
int RowStore::FindBehind(int after, Matches matches) const {
  if (!Has(after)) after = -1;
  for (int at = after + 1; at < size(); ++at) {
    if (matches(at)) return at;
  }
  for (int at = 0; at <= after; ++at) {
    if (matches(at)) return at;
  }
  return -1;
}

int RowStore::FindPrefix(int after, std::string_view text) const {
  if (text.empty()) return -1;
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  const std::string lower = multi_byte::Lower(text);
  return FindBehind(after, [&](int at) {
    const std::string_view row = Text(at);
    return row.size() >= lower.size() &&
           multi_byte::IsLowerForm(row.substr(0, lower.size()), lower, page);
  });
}

int RowStore::FindExact(int after, std::string_view text) const {
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  const std::string lower = multi_byte::Lower(text);
  const std::uint32_t hash = HashOf(lower);
  return FindBehind(after, [&](int at) {
    if (order_[static_cast<std::size_t>(at)].hash != hash) return false;
    const std::string_view row = Text(at);
    return row.size() == lower.size() && multi_byte::IsLowerForm(row, lower, page);
  });
}

int RowStore::FindNamed(std::string_view name) const {
  const int found = FindExact(-1, name);
  return found >= 0 ? found : IndexFromNumber(name, size());
}

bool RowStore::FindAllNamed(std::string_view lines, std::vector<bool>& named) const {
  named.assign(order_.size(), false);
  // The rows of each text, the last first, down to those that are named already.
  std::unordered_map<std::string, std::vector<int>> rows;
  for (int at = size() - 1; at >= 0; --at) rows[multi_byte::Lower(Text(at))].push_back(at);
  for (const std::string_view line : SplitLines(lines)) {
    const auto found = rows.find(multi_byte::Lower(line));
    int row = found == rows.end() ? IndexFromNumber(line, size()) : found->second.back();
    if (row < 0) return false;
    // Once all are named, a further line names the last one again.
    while (found != rows.end() && found->second.size() > 1 &&
           named[static_cast<std::size_t>(row)]) {
      found->second.pop_back();
      row = found->second.back();
    }
    named[static_cast<std::size_t>(row)] = true;
  }
  return true;
}

std::vector<std::string> RowStore::Texts() const {
  std::vector<std::string> texts;
  texts.reserve(order_.size());
  for (const Entry& entry : order_) texts.push_back(slots_[entry.slot].text);
  return texts;
}

}  // namespace dq::detail
