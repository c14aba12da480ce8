// What lists and combo boxes have in common: rows with data, one of which may be the current one.

#pragma once

#include "dqlib/framework/controls/control.h"
#include "dqlib/framework/controls/row_store.h"

namespace dq {

/// Base of the controls with rows, which are counted from 0. Texts are kept up to the first zero; a
/// null one counts as "". Rows are found with case ignored.
class RowControl : public Control {
 public:
  int GetCount() const { return rows_.size(); }

  /// Adds a row at the end, or in a sorted control at its place, behind its equals; returns its
  /// index. Adding in order takes constant time.
  int AddString(const char* text);
  /// Adds it before the row `index`, even in a sorted control, or at the end with -1 or the count.
  /// -1 for any other index.
  int InsertString(int index, const char* text);
  /// Returns how many rows are left, or -1 if there is no such row. If it was the current one, none
  /// is afterwards.
  int DeleteString(int index);
  void ResetContent();

  /// A number or a pointer for the caller's use, 0 at first. Not owned. Setters return 0; -1, all
  /// bits set or null if there is no such row.
  int SetItemData(int index, std::uintptr_t data);
  std::uintptr_t GetItemData(int index) const;
  int SetItemDataPtr(int index, void* data);
  void* GetItemDataPtr(int index) const;

  /// The first row behind `after` that begins with the text, or in the second form is the text;
  /// the search goes on at the beginning, up to `after` itself. With -1 all are searched from the
  /// beginning. -1 if there is none. No row begins with "".
  int FindString(int after, const char* text) const;
  int FindStringExact(int after, const char* text) const;

  bool IsSorted() const { return sorted_; }

 protected:
  explicit RowControl(bool sorted) : sorted_(sorted) {}

  /// The current row is gone, or all are; `had_current`: there was a current one.
  virtual void OnRowsGone(bool /*had_current*/) {}
  void OnSubclassed(CWnd& former) override;

  /// The texts of the rows for which `is_in` holds, one a line.
  template <typename Predicate>
  std::string JoinRows(Predicate is_in) const {
    std::string lines;
    for (int at = 0; at < rows_.size(); ++at) {
      if (!is_in(at)) continue;
      if (!lines.empty()) lines += '\n';
      lines += rows_.Text(at);
    }
    return lines;
  }

  detail::RowStore rows_;
  int current_ = -1;
  bool sorted_;
};

}  // namespace dq
