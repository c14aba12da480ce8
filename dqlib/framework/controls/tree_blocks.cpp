#include "dqlib/framework/controls/tree_blocks.h"

#include <bit>
#include <iterator>
#include <utility>

namespace dq::detail {
namespace {

constexpr std::size_t kBlockSize = 512;
/// Neighbours that have no more together become one.
constexpr std::size_t kSmallBlock = kBlockSize / 2;

template <typename Rows>
auto At(Rows& rows, std::size_t index) {
  return rows.begin() + static_cast<std::ptrdiff_t>(index);
}

}  // namespace

TreeBlocks::Totals TreeBlocks::Sum(const Totals& a, const Totals& b) {
  return {a.rows + b.rows, a.shown + b.shown, a.selected + b.selected,
          std::min(a.least_level, b.least_level)};
}

void TreeBlocks::Count(Totals& totals, const TreeRow& row, int by) {
  totals.rows += by;
  totals.shown += row.hidden ? 0 : by;
  totals.selected += row.selected ? by : 0;
}

TreeBlocks::Totals TreeBlocks::Count(const Rows& rows) {
  Totals totals;
  for (const TreeRow& row : rows) {
    Count(totals, row, 1);
    totals.least_level = std::min(totals.least_level, row.level);
  }
  return totals;
}

void TreeBlocks::Recount(std::size_t block) {
  blocks_[block].totals = Count(blocks_[block].rows);
  Refresh(block);
}

void TreeBlocks::Refresh(std::size_t block) {
  if (block != unsummed_) Sums();
  unsummed_ = block;
  Totals& leaf = sums_[leaves_ + block];
  const Totals& totals = blocks_[block].totals;
  all_.rows += totals.rows - leaf.rows;
  all_.shown += totals.shown - leaf.shown;
  all_.selected += totals.selected - leaf.selected;
  leaf = totals;
}

/// The sums, all of them right.
const std::vector<TreeBlocks::Totals>& TreeBlocks::Sums() const {
  if (unsummed_ == kNone) return sums_;
  for (std::size_t node = (leaves_ + unsummed_) / 2; node > 0; node /= 2) {
    sums_[node] = Sum(sums_[2 * node], sums_[2 * node + 1]);
  }
  unsummed_ = kNone;
  return sums_;
}

void TreeBlocks::Rebuild() {
  leaves_ = std::bit_ceil(std::max<std::size_t>(blocks_.size(), 1));
  sums_.assign(2 * leaves_, {});
  for (std::size_t i = 0; i < blocks_.size(); ++i) sums_[leaves_ + i] = blocks_[i].totals;
  for (std::size_t node = leaves_ - 1; node > 0; --node) {
    sums_[node] = Sum(sums_[2 * node], sums_[2 * node + 1]);
  }
  all_ = sums_[1];
  unsummed_ = kNone;
  Forget();
}

TreeBlocks::Place TreeBlocks::Find(int row) const {
  const int in_last = row - last_first_;
  if (in_last >= 0 && last_block_ < blocks_.size() &&
      static_cast<std::size_t>(in_last) < blocks_[last_block_].rows.size()) {
    return {last_block_, static_cast<std::size_t>(in_last), last_first_};
  }
  const std::vector<Totals>& sums = Sums();
  std::size_t node = 1;
  int left = row;
  while (node < leaves_) {
    node *= 2;
    if (left >= sums[node].rows) left -= sums[node++].rows;
  }
  last_block_ = node - leaves_;
  last_first_ = row - left;
  return {last_block_, static_cast<std::size_t>(left), last_first_};
}

int TreeBlocks::FirstRowOf(std::size_t block) const {
  const std::vector<Totals>& sums = Sums();
  int before = 0;
  for (std::size_t node = leaves_ + block; node > 1; node /= 2) {
    if (node % 2 == 1) before += sums[node - 1].rows;
  }
  return before;
}

void TreeBlocks::InsertBlock(std::size_t block, Rows rows) {
  const Totals totals = Count(rows);
  blocks_.insert(At(blocks_, block), {std::move(rows), totals});
  if (block + 1 == blocks_.size() && block < leaves_) {
    Refresh(block);
  } else {
    Rebuild();
  }
}

void TreeBlocks::Insert(int index, const TreeRow& row) {
  const TreeRow added = row;
  const bool is_last = index == size();
  if (is_last && (blocks_.empty() || blocks_.back().rows.size() == kBlockSize)) {
    Rows rows;
    // Where there are many rows, more of them follow.
    if (!blocks_.empty()) rows.reserve(kBlockSize);
    rows.push_back(added);
    InsertBlock(blocks_.size(), std::move(rows));
    return;
  }
  Place place{blocks_.size() - 1, blocks_.back().rows.size(), 0};
  if (!is_last) place = Find(index);
  if (blocks_[place.block].rows.size() == kBlockSize) {
    Rows& full = blocks_[place.block].rows;
    Rows second(At(full, kSmallBlock), full.end());
    full.erase(At(full, kSmallBlock), full.end());
    blocks_[place.block].totals = Count(full);
    InsertBlock(place.block + 1, std::move(second));
    Refresh(place.block);
    place = Find(index);
  }
  Block& block = blocks_[place.block];
  block.rows.insert(At(block.rows, place.at), added);
  Count(block.totals, added, 1);
  block.totals.least_level = std::min(block.totals.least_level, added.level);
  Refresh(place.block);
  // Rows in blocks behind it have other indexes now.
  if (last_block_ > place.block) Forget();
}

void TreeBlocks::Insert(int index, std::span<const TreeRow> rows) {
  if (rows.size() <= 1) {
    if (!rows.empty()) Insert(index, rows.front());
    return;
  }
  std::size_t block = blocks_.size();
  Rows tail;
  if (index < size()) {
    const Place place = Find(index);
    Rows& cut = blocks_[place.block].rows;
    block = place.block;
    if (place.at > 0) {
      ++block;
      tail.assign(At(cut, place.at), cut.end());
      cut.erase(At(cut, place.at), cut.end());
    }
  }
  // What fits goes to the block before; the rest and the tail make blocks of their own.
  std::vector<Block> added;
  const auto append = [&](std::span<const TreeRow> more) {
    while (!more.empty()) {
      const bool to_former = added.empty() && block > 0;
      Rows* into = to_former       ? &blocks_[block - 1].rows
                   : added.empty() ? nullptr
                                   : &added.back().rows;
      if (into == nullptr || into->size() == kBlockSize) into = &added.emplace_back().rows;
      const std::size_t count = std::min(more.size(), kBlockSize - into->size());
      into->insert(into->end(), more.begin(), At(more, count));
      more = more.subspan(count);
    }
  };
  append(rows);
  append(tail);
  for (Block& each : added) each.totals = Count(each.rows);
  if (block > 0) blocks_[block - 1].totals = Count(blocks_[block - 1].rows);
  blocks_.insert(At(blocks_, block), std::make_move_iterator(added.begin()),
                 std::make_move_iterator(added.end()));
  Rebuild();
}

void TreeBlocks::Erase(int first, int last) {
  if (first >= last) return;
  const Place place = Find(first);
  auto left = static_cast<std::size_t>(last - first);
  std::size_t block = place.block;
  std::size_t at = place.at;
  const std::size_t first_gone = at == 0 ? block : block + 1;
  std::size_t gone = 0;
  while (left > 0) {
    Rows& rows = blocks_[block].rows;
    const std::size_t count = std::min(left, rows.size() - at);
    if (count == rows.size()) {
      ++gone;
    } else {
      rows.erase(At(rows, at), At(rows, at + count));
      Recount(block);
    }
    left -= count;
    at = 0;
    ++block;
  }
  if (gone > 0) {
    blocks_.erase(At(blocks_, first_gone), At(blocks_, first_gone + gone));
    Rebuild();
  }
  Forget();
  if (!Merge(place.block) && place.block > 0) Merge(place.block - 1);
}

bool TreeBlocks::Merge(std::size_t block) {
  if (block + 1 >= blocks_.size()) return false;
  Rows& first = blocks_[block].rows;
  const Rows& second = blocks_[block + 1].rows;
  if (first.size() + second.size() > kSmallBlock) return false;
  first.insert(first.end(), second.begin(), second.end());
  blocks_[block].totals = Sum(TotalsOf(block), TotalsOf(block + 1));
  blocks_.erase(At(blocks_, block + 1));
  Rebuild();
  return true;
}

void TreeBlocks::Clear() {
  blocks_.clear();
  Rebuild();
}

void TreeBlocks::Permute(std::span<const int> order) {
  Rows former;
  former.reserve(order.size());
  ForRange(0, size(), [&](const TreeRow& row) { former.push_back(row); });
  for (Block& block : blocks_) {
    for (std::size_t i = 0; i < block.rows.size(); ++i) {
      block.rows[i] = former[static_cast<std::size_t>(order[i])];
    }
    order = order.subspan(block.rows.size());
    block.totals = Count(block.rows);
  }
  Rebuild();
}

template <typename Predicate>
std::size_t TreeBlocks::NextBlock(std::size_t block, Predicate fits) const {
  const std::vector<Totals>& sums = Sums();
  std::size_t node = leaves_ + block;
  while (node > 1 && (node % 2 == 1 || !fits(sums[node + 1]))) node /= 2;
  if (node <= 1) return kNone;
  for (++node; node < leaves_;) {
    node *= 2;
    if (!fits(sums[node])) ++node;
  }
  return node - leaves_;
}

template <typename Predicate>
std::size_t TreeBlocks::PrevBlock(std::size_t block, Predicate fits) const {
  const std::vector<Totals>& sums = Sums();
  std::size_t node = leaves_ + block;
  while (node > 1 && (node % 2 == 0 || !fits(sums[node - 1]))) node /= 2;
  if (node <= 1) return kNone;
  for (--node; node < leaves_;) {
    node = 2 * node + 1;
    if (!fits(sums[node])) --node;
  }
  return node - leaves_;
}

int TreeBlocks::FindShown(int n) const {
  const std::vector<Totals>& sums = Sums();
  std::size_t node = 1;
  int left = n;
  while (node < leaves_) {
    node *= 2;
    if (left >= sums[node].shown) left -= sums[node++].shown;
  }
  const std::size_t block = node - leaves_;
  const Rows& rows = blocks_[block].rows;
  int at = left;
  if (TotalsOf(block).shown != TotalsOf(block).rows) {
    for (at = 0;; ++at) {
      if (!rows[static_cast<std::size_t>(at)].hidden && left-- == 0) break;
    }
  }
  return FirstRowOf(block) + at;
}

int TreeBlocks::CountShownBefore(int row) const {
  const Place place = Find(row);
  const std::vector<Totals>& sums = Sums();
  int before = 0;
  for (std::size_t node = leaves_ + place.block; node > 1; node /= 2) {
    if (node % 2 == 1) before += sums[node - 1].shown;
  }
  if (TotalsOf(place.block).shown == TotalsOf(place.block).rows) {
    return before + static_cast<int>(place.at);
  }
  for (const TreeRow& each : std::span(blocks_[place.block].rows).first(place.at)) {
    before += each.hidden ? 0 : 1;
  }
  return before;
}

int TreeBlocks::FindSelected(int from) const {
  if (from >= size()) return size();
  Place place = Find(from);
  for (;;) {
    const Rows& block = blocks_[place.block].rows;
    if (TotalsOf(place.block).selected > 0) {
      for (; place.at < block.size(); ++place.at) {
        if (block[place.at].selected) {
          return FirstRowOf(place.block) + static_cast<int>(place.at);
        }
      }
    }
    place.block = NextBlock(place.block, [](const Totals& sum) { return sum.selected > 0; });
    if (place.block == kNone) return size();
    place.at = 0;
  }
}

int TreeBlocks::FindNextAtMost(int from, int level) const {
  if (from >= size()) return size();
  Place place = Find(from);
  for (;;) {
    const Rows& block = blocks_[place.block].rows;
    if (TotalsOf(place.block).least_level <= level) {
      for (; place.at < block.size(); ++place.at) {
        if (block[place.at].level <= level) {
          return FirstRowOf(place.block) + static_cast<int>(place.at);
        }
      }
    }
    place.block =
        NextBlock(place.block, [level](const Totals& sum) { return sum.least_level <= level; });
    if (place.block == kNone) return size();
    place.at = 0;
  }
}

int TreeBlocks::FindPrevAtMost(int before, int level) const {
  if (before <= 0) return -1;
  Place place = Find(before - 1);
  for (;;) {
    const Rows& block = blocks_[place.block].rows;
    if (TotalsOf(place.block).least_level <= level) {
      for (std::size_t at = place.at + 1; at-- > 0;) {
        if (block[at].level <= level) return FirstRowOf(place.block) + static_cast<int>(at);
      }
    }
    place.block =
        PrevBlock(place.block, [level](const Totals& sum) { return sum.least_level <= level; });
    if (place.block == kNone) return -1;
    place.at = blocks_[place.block].rows.size() - 1;
  }
}

}  // namespace dq::detail
