// How the rows of a tree look where that is other than usual.

#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "dqlib/framework/controls/cell_style.h"

namespace dq::detail {

/// A row's picture, and the styles of its cells that have one, by rising columns.
struct RowLook {
  HBITMAP picture = nullptr;
  std::vector<std::pair<int, CellStyle>> cells;

  /// That of a column, or null.
  const CellStyle* Find(int column) const;
  void Set(int column, const CellStyle& style);
  friend bool operator==(const RowLook&, const RowLook&) = default;
};

/// Holds each look once, however many rows have it. Number 0 is the usual one.
class TreeLooks {
 public:
  const RowLook& operator[](std::uint32_t number) const { return looks_[number].look->first; }
  /// The number of a look for one row more, and for one fewer.
  std::uint32_t Take(const RowLook& look);
  void Release(std::uint32_t number);

 private:
  struct Less {
    bool operator()(const RowLook& a, const RowLook& b) const;
  };
  using Numbers = std::map<RowLook, std::uint32_t, Less>;
  struct Entry {
    Numbers::const_iterator look;
    std::uint32_t rows = 0;
  };

  Numbers numbers_{{RowLook{}, 0}};
  std::vector<Entry> looks_{{numbers_.begin(), 1}};
  std::vector<std::uint32_t> free_;
};

}  // namespace dq::detail
