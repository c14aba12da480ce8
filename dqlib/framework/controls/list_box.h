// List boxes, and those with a check mark in each row.

#pragma once

#include "dqlib/framework/controls/row_control.h"

namespace dq {

struct ListStyle {
  bool sorted = false;
  /// Any number of rows may be selected.
  bool multiple = false;
};

/// A list box. Window class "ListBox".
class CListBox : public RowControl {
  DECLARE_DYNAMIC(CListBox)
  explicit CListBox(const ListStyle& style = {})
      : RowControl(style.sorted), multiple_(style.multiple) {}

  bool IsMultiple() const { return multiple_; }

  /// The row's text and its length; "" and -1 if there is no such row.
  CString GetText(int index) const { return CString(rows_.Text(index)); }
  int GetText(int index, CString& text) const;
  int GetTextLen(int index) const;

  /// The selected row, or -1; with multiple selection the row that was selected or taken out last.
  int GetCurSel() const { return current_; }
  /// Selects a row, or none with -1. -1, and no change, if there is no such row or with multiple
  /// selection.
  int SetCurSel(int index);
  /// Selects the row that `FindString` finds and returns it; -1, and no change, if there is none.
  int SelectString(int after, const char* text);

  /// Multiple selection. Whether a row is selected (-1 if there is none such), how many are, and
  /// which: up to `size` of them to `indexes`, whose count is returned. `SetSel` with -1 is for all
  /// rows; -1 without multiple selection, else 0.
  int GetSel(int index) const;
  int SetSel(int index, bool selected = true);
  int GetSelCount() const;
  int GetSelItems(int size, int* indexes) const;

  /// The first row in sight. -1, and no change, if there is no such row.
  int GetTopIndex() const;
  int SetTopIndex(int index);

  /// A person selects the row, or with multiple selection selects it or takes it out. False if
  /// there is no such row or the control is disabled. `LBN_SELCHANGE` goes to the parent.
  bool Choose(int index);

  void Describe(platform::DialogControl& control) const override;
  /// A person selects a row, or exactly the rows, by text or by number from 1.
  bool Enter(std::string_view value) override;
  /// A person double-clicks the current row.
  bool Press() override;

 protected:
  /// Bits of a row's flags.
  enum Flag : BYTE { kSelected = 1, kChecked = 2, kUndetermined = 4, kDisabled = 8 };

  bool IsSelected(int index) const;
  void OnRowsGone(bool had_current) override {
    if (had_current) Tell(WindowChange::kSelection);
  }
  void OnSubclassed(CWnd& former) override;

 private:
  void Mark(int index, bool selected);

  bool multiple_;
  int top_ = 0;
};

/// A list box with a check mark in each row. Window class "CheckListBox". A person who answers a
/// dialog enters the rows with a mark.
class CCheckListBox : public CListBox {
  DECLARE_DYNAMIC(CCheckListBox)
  using CListBox::CListBox;

  /// The mark: 0 none, 1 set, 2 undetermined; other numbers count as 0. 0 and no change if there is
  /// no such row.
  int GetCheck(int index) const;
  void SetCheck(int index, int check);
  /// Whether a person may change the row's mark.
  bool IsEnabled(int index) const;
  void Enable(int index, bool enabled = true);

  /// A person clicks the mark: an undetermined one and one that is set go. False if the row or the
  /// control is disabled or not there. `CLBN_CHKCHANGE` goes to the parent.
  bool Toggle(int index);

  void Describe(platform::DialogControl& control) const override;
  bool Enter(std::string_view value) override;
};

}  // namespace dq
