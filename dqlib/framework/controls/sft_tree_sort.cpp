// Lists and trees: sorting.

#include <cstring>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/controls/tree_rows.h"

namespace dq {
namespace {

/// A text that rows are sorted by: the bytes of its lower form behind those that all have alike.
struct TextKey {
  /// The first ones, as a number that has the order of the bytes.
  std::uint64_t prefix;
  const char* text;
};

int CompareTexts(const TextKey& a, const TextKey& b) {
  if (a.prefix != b.prefix) return a.prefix < b.prefix ? -1 : 1;
  // One that ends within the prefix is there as a whole.
  if ((a.prefix & 0xFF) == 0) return 0;
  return std::strcmp(a.text + sizeof a.prefix, b.text + sizeof a.prefix);
}

/// The lower forms of texts, by which they are sorted with case ignored.
class TextKeys {
 public:
  void Append(std::string_view text) {
    starts_.push_back(texts_.size());
    texts_.append(text);
    page_.LowerInPlace(texts_.data() + starts_.back(), text.size());
    texts_ += '\0';
    const char* const added = texts_.data() + starts_.back();
    if (starts_.size() == 1) common_ = text.size();
    // The zero behind the added one ends it.
    std::size_t alike = 0;
    while (alike < common_ && added[alike] == texts_[alike]) ++alike;
    common_ = alike;
  }
  /// Good as long as this is.
  std::vector<TextKey> MakeKeys() const {
    std::vector<TextKey> keys;
    keys.reserve(starts_.size());
    for (const std::size_t start : starts_) {
      const char* const text = texts_.data() + start + common_;
      std::uint64_t prefix = 0;
      bool ended = false;
      for (std::size_t i = 0; i < sizeof prefix; ++i) {
        ended |= ended || text[i] == '\0';
        prefix = prefix << 8 | (ended ? 0 : detail::Byte(text[i]));
      }
      keys.push_back({prefix, text});
    }
    return keys;
  }

 private:
  const platform::CodePage& page_ = multi_byte::CurrentCodePage();
  std::string texts_;
  std::vector<std::size_t> starts_;
  /// How many bytes at the front are the same in all.
  std::size_t common_ = 0;
};

}  // namespace

void CSftTree::SortRows(int column, TreeCompare compare) {
  if (compare == nullptr) {
    SortRowsByText(column, true);
    return;
  }
  if (!HasCell(0, column)) return;
  const auto count = static_cast<std::size_t>(GetCount());
  struct Cell {
    const char* text;
    std::uintptr_t data;
  };
  std::vector<Cell> cells(count);
  for (std::size_t i = 0; i < count; ++i) {
    const int row = static_cast<int>(i);
    cells[i] = {rows_->Text(row, column), GetRowData(row)};
  }
  SortRowsByKeys(cells, [this, compare](const Cell& a, const Cell& b) {
    return compare(*this, a.text, b.text, a.data, b.data);
  });
}

void CSftTree::SortRowsByText(int column, bool ascending) {
  if (!HasCell(0, column)) return;
  TextKeys texts;
  rows_->ForEachText(column, [&texts](const char* text) { texts.Append(text); });
  const std::vector<TextKey> keys = texts.MakeKeys();
  if (ascending) {
    SortRowsByKeys(keys, [](const TextKey& a, const TextKey& b) { return CompareTexts(a, b); });
  } else {
    SortRowsByKeys(keys, [](const TextKey& a, const TextKey& b) { return CompareTexts(b, a); });
  }
}

void CSftTree::SortRowsBy(const std::function<int(int a, int b)>& compare) {
  SortRowsWith([&compare](int a, int b) { return compare(a, b); });
}

}  // namespace dq
