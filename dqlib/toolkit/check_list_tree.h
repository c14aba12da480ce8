// A tree whose rows have check boxes, and whose parents show the state of the rows below them.
//
//   CDQCheckListTree tree;
//   tree.Create(0, place, &pane, 3070);
//   tree.AddColumn("Table", 200);
//   tree.LoadCheckStateBitmaps(IDB_CHECK_CLEAR, IDB_CHECK_MIXED, IDB_CHECK_SET);
//   tree.AddString("EMPLOYEES");
//   tree.SetCheck(0, true);

#pragma once

#include <array>
#include <memory>

#include "dqlib/toolkit/tree.h"

namespace dq {

/// The state of a row: unknown if its picture is none of the tree's three.
enum CHECK_STATE : int {
  CHECK_STATE_CLEAR = 0,
  CHECK_STATE_MIXED = 1,
  CHECK_STATE_CHECKED = 2,
  CHECK_STATE_UNKNOWN = 3,
};

/// What the rows of one parent have in common.
enum GROUP_STATE : int {
  GROUP_STATE_NONE = 0,
  GROUP_STATE_MIXED = 1,
  GROUP_STATE_ALL = 2,
  GROUP_STATE_UNKNOWN = 3,
};

/// What the tree tells its parent by `WM_COMMAND`.
enum CheckListNotification : int {
  /// The mouse was pressed on a box, or where it toggles on a text, and what is to change has.
  kCheckListToggled = 0x1E,
  /// The space bar was pressed. It toggles nothing by itself.
  kCheckListSpace = 0x2C,
};

/// The control. The check state of a row is its picture, in the first column, which must exist;
/// that of a row with children follows from those, and a change of its own goes to all rows below.
/// A press on the box of a mixed row checks it. `SelectAll` and its kin are about the check states,
/// not the selection.
class CDQCheckListTree : public CDQTree {
  DECLARE_DYNCREATE(CDQCheckListTree)
  CDQCheckListTree();
  ~CDQCheckListTree() override;

  /// The pictures of the states, which aren't owned; whether a press on the text of a row toggles
  /// it as one on its box does; whether checked rows are bold. Rows that have a state keep it, by
  /// the new pictures.
  void Initialize(CBitmap* clear, CBitmap* mixed, CBitmap* checked, bool toggle_by_text = false,
                  bool bold_checked = false);
  /// The same with pictures from the resources, which the tree owns, and what `Initialize` has said
  /// about texts and bold rows before. False, and no change, if one can't be loaded.
  bool LoadCheckStateBitmaps(UINT clear_id, UINT mixed_id, UINT checked_id);

  /// Whether just one row is checked at a time. At first not.
  bool IsSingleCheck() const { return m_bSingleCheck; }
  void SetSingleCheck(bool single) { m_bSingleCheck = single; }

  /// As the base; the row is clear.
  int AddString(const char* text);
  int AddString(int number);
  /// Checks or clears the row with all rows below, and brings those above it up to date. With
  /// single check all others are cleared first when one is checked.
  void SetCheck(int row, bool check);
  /// Whether it is checked; not if it is mixed, or there is no such row.
  bool GetCheck(int row) const;
  int GetCheckedCount() const;
  /// Scrolls the first checked row to the top.
  void SetTopCheckedIndex();
  /// Checks all rows that have a state, or none. With single check `SelectAll` does nothing.
  void SelectAll(bool first = true, bool second = true) override;
  void UnselectAll() override;
  /// The checked rows, rising, in the place of what `rows` holds; returns their number.
  int GetSelectedItems(CUIntArray& rows, int flags = 0) override;

 protected:
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  /// Handlers of presses on a row's picture and text. They leave both to the parent as well.
  virtual BOOL OnLButtonDownCheck();
  virtual BOOL OnLButtonDownText();
  LRESULT OnKeyDown(WPARAM key, LPARAM lparam) override;

  /// Whether a row has no children, has some, and has nothing above it, with a remark for
  /// debugging. False for a row that isn't there.
  bool IsItemLeaf(int row) const;
  bool IsItemParent(int row) const;
  bool IsItemRoot(int row) const;
  CHECK_STATE GetItemCheckState(int row) const;
  /// Of the rows with the same parent, the row among them. One that is mixed makes that mixed.
  GROUP_STATE GetSiblingGroupState(int row) const;
  /// Toggles the row as a person does, with all rows below, and brings those above up to date. A
  /// mixed one becomes checked.
  void UpdateItemCheckbox(int row);
  /// Brings the rows above up to date, from the parent to the root: their pictures alone, not their
  /// fonts.
  void UpdateParentItemState(int row);
  /// Checks or clears all rows below.
  void UpdateSubItemState(int row, bool check);

 private:
  void ReplacePictures(const std::array<CBitmap*, 3>& pictures);
  void ShowState(int row, bool check);
  void ShowAll(bool check);
  void TellToggled();

  /// By `CHECK_STATE`.
  std::array<CBitmap*, 3> m_pictures{};
  bool m_bToggleByText = false;
  bool m_bBoldChecked = false;
  bool m_bSingleCheck = false;
  /// The pictures, if they were loaded.
  std::unique_ptr<std::array<CBitmap, 3>> m_pLoaded;
};

}  // namespace dq
