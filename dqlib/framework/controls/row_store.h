// The rows of lists and combo boxes.

#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/types.h"

namespace dq::detail {

/// Rows in an order, by index from 0. Adding and taking out at either end takes constant time; in
/// between, 8 bytes move for each row behind or before it, whichever are fewer, wherever the row
/// itself lies.
class RowStore {
 public:
  struct Row {
    std::string text;
    std::uintptr_t data = 0;
    BYTE flags = 0;
  };

  int size() const { return static_cast<int>(order_.size()); }
  bool Has(int index) const { return index >= 0 && index < size(); }
  Row& operator[](int index) { return slots_[order_[static_cast<std::size_t>(index)].slot]; }
  const Row& operator[](int index) const {
    return slots_[order_[static_cast<std::size_t>(index)].slot];
  }
  /// "" for a row that isn't there.
  std::string_view Text(int index) const {
    return Has(index) ? std::string_view((*this)[index].text) : std::string_view();
  }

  void Insert(int index, std::string_view text);
  /// Where a text comes among rows that are sorted with case ignored: behind its equals.
  int SortedPlace(std::string_view text) const;
  void SetText(int index, std::string_view text);
  void Erase(int index);
  void Clear();

  /// The first row behind `after` that begins with the text, or is the text, case ignored; the
  /// search goes on at the beginning, up to `after` itself. From the beginning if there is no row
  /// `after`. -1 if there is none. No row begins with "", so that what has no value selects none.
  int FindPrefix(int after, std::string_view text) const;
  int FindExact(int after, std::string_view text) const;

  /// The row that a person names by its text or by its number from 1, or -1.
  int FindNamed(std::string_view name) const;
  /// Marks in `named`, one for each row, those that a person names by one line each; false if there
  /// is no such row. Of rows with the same text, each line names another one.
  bool FindAllNamed(std::string_view lines, std::vector<bool>& named) const;

  std::vector<std::string> Texts() const;

 private:
  /// Where the row lies, and the hash of its text in lower case.
  struct Entry {
    std::uint32_t slot;
    std::uint32_t hash;
  };

  template <typename Matches>
  int FindBehind(int after, Matches matches) const;

  std::vector<Row> slots_;
  std::vector<std::uint32_t> free_slots_;
  /// By index.
  std::deque<Entry> order_;
};

}  // namespace dq::detail
