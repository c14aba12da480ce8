// The list and tree control of the library: texts by cell, sorting by a click on a column's title,
// editing in a cell, state that is kept, and copying, saving and printing of rows.
//
//   CDQTree tree;
//   tree.Create(0, place, &pane, 3070);
//   tree.AddColumn("Name", 120);
//   tree.AddColumn("Size", 60, kColumnNumber);
//   const int row = tree.AddString("a.sql");
//   tree.SetText(row, 1, "12 KB");

#pragma once

#include <map>
#include <memory>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "dqlib/framework/base/array.h"
#include "dqlib/framework/base/string_collections.h"
#include "dqlib/framework/controls/sft_tree.h"

namespace dq {

class CDQTreeEdit;
struct TreeState;

/// Kinds of change that `AdjustSelections` and `AdjustIndices` follow.
enum ItemOperation : int {
  ITEM_INSERTED = 0,
  ITEM_DELETED = 1,
  /// Taken out at one place and put in at another.
  ITEM_MOVED = 2,
};

/// Notifications to the parent, by `WM_COMMAND`, of keys that ask for a change of the rows.
enum TreeKeyNotification : int {
  /// The plus of the keypad; Insert; Delete or the minus of the keypad.
  kTreeExpandKey = 0x64,
  kTreeInsertKey = 0x65,
  kTreeDeleteKey = 0x66,
};

/// To a `CDQTree`: a notification of its own by `WM_COMMAND`, before its parent gets it.
inline constexpr UINT kTreeReflectedCommand = kReflectBase + WM_COMMAND;
/// To a `CDQTree`: a key, with the current row behind its 16 bits; see `CDQTree::VKeyToItem`.
inline constexpr UINT kTreeKeyToItem = kReflectBase + 0x2E;
/// To a `CDQTree`: sets the caret to the row in the first argument, or takes it away with -1.
inline constexpr UINT kTreeSetCaret = 0x3701;
/// To a `CDQTree`: the cell being edited may lie out of sight.
inline constexpr UINT kTreePlaceEditor = 0x3702;

/// Flags of `tagCellInfoParm`: what is told or set.
enum CellInfoFlag : UINT {
  CELLINFO_TEXT = 1,
  CELLINFO_COLOR = 2,
  CELLINFO_BACKGROUND = 4,
  CELLINFO_FONT = 8,
  CELLINFO_BITMAP = 16,
  CELLINFO_ALL = 31,
};

/// All that a cell has. Colours and font are those of `CellStyle`: `kNoColor` and null are the
/// tree's own.
struct tagCellInfoParm {
  int row = -1;
  int column = 0;
  UINT flags = CELLINFO_ALL;
  CString text;
  COLORREF color = CellStyle::kNoColor;
  COLORREF background = CellStyle::kNoColor;
  const LOGFONT* font = nullptr;
  HBITMAP bitmap = nullptr;
};

/// The control. Window class "SftTree". Where there is no such row or column, operations do nothing
/// and answer as those of the base do. On the user-interface thread.
///
/// A handler of a notification, and each virtual operation, may change the rows, and end the tree.
class CDQTree : public CSftTree {
  DECLARE_DYNCREATE(CDQTree)
  CDQTree();
  ~CDQTree() override;

  /// Makes the window, visible, with what `SetDefaultStyle` and `SetDefaultFont` set. Of `style`
  /// the bit `kDisabledStyle` counts. Columns and rows may be added before.
  bool Create(DWORD style, const CRect& rect, CWnd* parent, UINT id);
  static constexpr DWORD kDisabledStyle = 0x08000000;

  // What a derived class may want otherwise.

  virtual bool IsDebugTree() const { return m_bDebugTree; }
  /// How the tree looks and behaves at first. The base shows lines, buttons and the header.
  virtual void SetDefaultStyle();
  /// What a row is. By default a row with children is a folder, any other one a leaf, and one at
  /// level 0 a root.
  virtual bool IsLeaf(int row) const;
  virtual bool IsFolder(int row) const;
  virtual bool IsRoot(int row) const;
  /// An operation of this class has made or moved a row: for a tree whose rows look different by
  /// their place.
  virtual void AdjustItemLines(int /*row*/) {}
  /// Whether a new text for the cell being edited can be taken; tells the person if not.
  virtual bool ValidateEdit(int row, const char* text);
  /// Selects all rows, or none, of a tree with multiple selection. The flags have no effect.
  virtual void SelectAll(bool first = true, bool second = true);
  virtual void UnselectAll();
  /// Puts the selected rows, rising, in the place of what `rows` holds, and returns their number.
  /// The flags have no effect.
  virtual int GetSelectedItems(CUIntArray& rows, int flags = 0);
  /// Moves a row with all that is below it into a folder (-1 is the top level), before its child
  /// `before`, or behind the last one with -1. Returns where it is then; -1, with a message, if it
  /// lies in that folder already, or the folder is in what is moved. `MoveFolder` and `MoveItem`
  /// are the same, for a folder and for a leaf, behind the last child.
  virtual int InsertNode(int row, int folder, int before = -1);
  virtual int MoveFolder(int row, int folder);
  virtual int MoveItem(int row, int folder);
  /// A cell was edited: the base sets its text.
  virtual void OnUpdateEdit(int row, const char* text);
  /// The name of a row for messages, by its data. The base gives "", which stands for the text of
  /// the row's first column.
  virtual CString GetItemName(void* data);
  /// Whether another folder with the same parent as the row's has the name, case regarded.
  virtual bool IsDuplicateFolderName(int row, const char* name);
  /// Makes the data of a new row, a folder or a leaf, for its name or for what was dropped from
  /// elsewhere; null for none.
  virtual void* CreateItem(const char* text, bool is_folder);
  /// Something is dropped that doesn't stay within the tree: rows of this tree on another window,
  /// `target`, or `texts` from elsewhere on the tree, which is `target` then. Not 0 if it was
  /// taken.
  virtual LRESULT OnForeignDrop(CWnd* target, const CStringArray* texts = nullptr);
  /// Rows of this tree are dragged over another window. Not 0 if they can be dropped there.
  virtual LRESULT OnForeignDrag(CWnd* target);
  /// A drag within the tree, or out of it, has ended by a drop.
  virtual void PostDrag() {}
  /// The picture of a leaf, if it has one of its own; else null, which is that of all leaves.
  virtual CBitmap* OverrideLeafBitmap(int row);
  /// Ask whether so many rows, or one, are to be deleted.
  virtual bool DeleteSelectedItemsMsg(int count);
  virtual bool DeleteItemMsg(bool is_folder, const char* name);

  // Looks.

  /// The dialogs' font; null as well as no argument.
  void SetDefaultFont(CFont* font = nullptr);
  /// As that of the base; without arguments the desktop's colours.
  void SetColors(COLORREF text = CellStyle::kNoColor, COLORREF background = CellStyle::kNoColor,
                 COLORREF selected_text = CellStyle::kNoColor,
                 COLORREF selected_background = CellStyle::kNoColor);

  // Texts. Numbers are their decimal texts.

  /// Adds a row behind all, at level 0, with the text of its first column; its index.
  int AddString(const char* text);
  int AddString(int number);
  CString GetText(int row, int column = 0) const { return GetCellText(row, column); }
  bool GetText(int row, CString& text) const { return GetText(row, 0, text); }
  /// False, and no change, if there is no such cell.
  bool GetText(int row, int column, CString& text) const;
  bool GetText(int row, int column, int& number) const;
  bool SetText(int row, const char* text) { return SetText(row, 0, text); }
  bool SetText(int row, int column, const char* text);
  bool SetText(int row, int column, int number);

  /// The first row whose text in the column is exactly this one; -1 without, and for null.
  int FindTextA(int column, const char* text) const;
  /// The texts of all columns, with the delimiter between. They are put out as they are: a
  /// delimiter in a text is not quoted. A null delimiter counts as "".
  void GetDelimitedText(int row, CString& out, const char* delimiter) const;
  /// The opposite: sets the columns one after the other. Columns without a part become "", parts
  /// without a column are left out. An empty delimiter leaves the text whole.
  bool SetDelimitedText(int row, const char* text, const char* delimiter);

  // Looks of single cells. A column of -1 is all columns of the row.

  bool SetItemColor(int row, int column, COLORREF text, COLORREF background = CellStyle::kNoColor);
  /// `CellStyle::kNoColor` for the tree's own.
  COLORREF GetItemColor(int row, int column) const;
  /// The font must live as long as the tree has it; null is the tree's own.
  bool SetItemFont(int row, int column, CFont* font);
  CFont* GetItemFont(int row, int column) const;
  bool SetItemBold(int row, int column, bool bold = true);
  /// The tree's font in bold.
  CFont* GetBoldFont();

  // Pictures. They must live as long as the tree has them.

  /// How large the pictures of a column are that `SetIndexedBitmap` cuts out of strips; at first
  /// 16 by 16 pixels.
  void RegisterColumnBitmapSize(int column, const CSize& size);
  /// The picture of a cell; null takes it away. That of the first column is the row's picture.
  bool SetColumnBitmap(int row, int column, const CBitmap* bitmap);
  HBITMAP GetColumnBitmap(int row, int column) const;
  /// The picture with the index of a strip, from the left. False if the strip has none such.
  bool SetIndexedBitmap(int row, int column, const CBitmap& strip, int index);
  /// The pictures of leaves and folders, of folders that are expanded, and of roots; null for none,
  /// where folders that are expanded look as others do, and roots as folders or leaves. Rows that
  /// there are get theirs now, others when an operation of this class makes or moves them.
  void SetBitmaps(CBitmap* leaf, CBitmap* folder, CBitmap* open_folder = nullptr,
                  CBitmap* root = nullptr);
  /// Gives each selected row this picture; null is that of its kind.
  void SetSelectedItemBitmaps(CBitmap* bitmap);

  /// Tells of a cell, or sets of it, what the flags say. False if there is no such cell.
  bool GetCellInfo(tagCellInfoParm* info) const;
  bool SetCellInfo(const tagCellInfoParm* info);

  // Selection.

  bool IsMultiSelect() const { return IsMultiSelection(); }
  void SetSingleSelect() { SetMultiSelection(false); }
  void SetMultiSelect() { SetMultiSelection(true); }
  /// Collects the selected rows, with single selection the current one, and returns their number;
  /// `GetSelection` gives them one by one, -1 beyond.
  int GetSelections();
  int GetSelection(int index) const;
  void ClearSelections() { m_selections.RemoveAll(); }
  /// Has the collected rows follow a change of the tree; see `AdjustIndices`.
  void AdjustSelections(ItemOperation operation, int row, int to = -1);
  /// Has row indexes follow: behind an insertion at `row` those at or above are one higher; at a
  /// deletion the row itself is dropped and those above are one lower; a move is a deletion at
  /// `row` and an insertion at `to`. -1 is behind all, and changes none.
  static void AdjustIndices(CUIntArray& rows, ItemOperation operation, int row, int to = -1);

  // State that is kept: current row, selection, expanded rows.

  /// Writes the state to the value "TreeState" of a section of the profile. False if that failed.
  bool SaveState(const char* key);
  /// Takes it back, as far as its indexes fit the rows: selects, expands and collapses now, and
  /// sets the caret when the message loop comes to it. False, and no change, without such a value
  /// or if it is empty or damaged.
  bool RestoreState(const char* key);
  /// The same with a state that was read.
  void TakeState(const TreeState& state);

  // Editing of a cell.

  /// Has the person edit a cell, of the current row if `row` is -1. Nothing happens if it can't be
  /// brought into view.
  void EditCell(int row, int column);
  CDQTreeEdit* GetEditCtrl() const { return m_pEdit.get(); }
  /// Drops the editor, and what was typed.
  void ResetEditCtrl();
  /// The cell being edited, or that was last; the row goes with changes of the others.
  int GetEditIndex() const { return GetFollowedRow(); }
  int GetEditCol() const { return m_nEditCol; }
  void AllowEmptyEdit(bool allow) { m_bAllowEmptyEdit = allow; }

  // Changes of rows.

  /// Deletes the selected rows with what is below them, if the person agrees.
  void DeleteSelectedItems();
  /// Adds a row, a folder or a leaf, below the current folder, or behind the current leaf, with the
  /// usual name and the data of `CreateItem`, and has the person edit its name; its index.
  int CreateNewFolder();
  int CreateNewItem();
  /// Whether both are folders or both leaves.
  bool TypesEqual(int a, int b) const;
  /// Moves a row with all that is below it before another with the same parent (`before` as -1:
  /// behind the last). Where it is then; -1, and no change, for rows of different parents.
  int RearrangeItem(int row, int before);
  /// Moves the selected rows onto a row: into it if that is a folder, else into the folder that it
  /// is in; with rearranging allowed, rows of one parent and kind before it. -1 is the top level.
  /// True if any was moved. Those below another selected row go with that one.
  bool MoveSelItems(int target);

  // Copying, saving, printing.

  /// Copy and delete; copy the selected rows to the clipboard, with as many tabs before each as its
  /// level says and tabs between its columns; nothing; delete. `Copy` is false, and tells nobody,
  /// if someone else holds the clipboard; then `Cut` deletes nothing.
  void Cut();
  bool Copy();
  virtual void Paste() {}
  void Clear() { DeleteSelectedItems(); }
  /// The text that `Copy` puts on the clipboard; "" if no row is selected, and then it puts none.
  CString GetCopyText() const;
  /// Writes all rows, hidden ones too, to a file: the former file or the new one is there whole.
  /// Throws the `CFileException` of what fails.
  void Save(const char* file, const char* delimiter, const char* line_end);
  /// Has the person choose a file, and saves with commas to it, whatever its kind. What fails is
  /// told in a box.
  void OnFileSave();
  /// Has the person choose how to print, and prints all rows or the selected ones, 60 a page.
  void OnFilePrint();
  void AllowPrintSelection(bool allow) { m_bAllowPrintSelection = allow; }
  /// What stands first in the header of pages; "" is the application's name.
  void SetPrintHeaderPrefix(const char* prefix) { m_strPrintHeaderPrefix = prefix; }

  // Behaviour.

  /// Whether a click on a column's title sorts, and one on a row's button expands and collapses.
  bool GetAutoSort() const { return m_bAutoSort; }
  void SetAutoSort(bool sort) { m_bAutoSort = sort; }
  bool GetHandleExpandCollapse() const { return m_bHandleExpandCollapse; }
  void SetHandleExpandCollapse(bool handle) { m_bHandleExpandCollapse = handle; }
  /// Whether rows may be dragged; roots can be collapsed then too. Whether rows that are dragged
  /// within the tree can be put in another order.
  bool IsDragAllowed() const { return m_bDragAllowed; }
  void AllowDrag(bool allow);
  bool IsRearrangingAllowed() const { return m_bAllowRearranging; }
  void AllowRearranging(bool allow) { m_bAllowRearranging = allow; }
  /// The column of the last sort by a title, or -1, and its direction.
  int GetSortColumn() const { return m_nSortColumn; }
  bool IsSortAscending() const { return m_bSortAscending; }
  /// Sorts as a click on the column's title does, whether clicks sort or not. False if there are
  /// less than two rows, or no such column.
  bool SortByColumn(int column);

  // Comparisons of a sort, and what they are made of. The texts mustn't be null where it isn't
  // said.

  /// The number that a text begins with, 1,000 times that if " MB" is in it and " KB" isn't. Sign,
  /// decimal digits, point and exponent are read; null gives 0.
  static double Str2Double(const char* text);
  static int Str2Number(const char* text);
  /// By `Str2Double`; by the texts with case ignored if both give 0 and one of them has no digit 0.
  /// Null counts as "".
  static int SortNumberAscendingCallback(CSftTree& tree, const char* a, const char* b,
                                         std::uintptr_t data_a, std::uintptr_t data_b);
  static int SortNumberDescendingCallback(CSftTree& tree, const char* a, const char* b,
                                          std::uintptr_t data_a, std::uintptr_t data_b);
  /// By the integers that the texts begin with. For the ascending one null counts as 0.
  static int SortIntegerAscendingCallback(CSftTree& tree, const char* a, const char* b,
                                          std::uintptr_t data_a, std::uintptr_t data_b);
  static int SortIntegerDescendingCallback(CSftTree& tree, const char* a, const char* b,
                                           std::uintptr_t data_a, std::uintptr_t data_b);
  /// By the texts with case ignored, the greater one first. 0 if one is null.
  static int SortStringDescendingCallback(CSftTree& tree, const char* a, const char* b,
                                          std::uintptr_t data_a, std::uintptr_t data_b);
  /// By dates and times. What can't be read counts as the date 0. If `a` can't be read, the first
  /// 19 bytes of both count. Null counts as "".
  static int SortDateTimeHelper(const char* a, const char* b);
  static int SortDateTimeAscendingCallback(CSftTree& tree, const char* a, const char* b,
                                           std::uintptr_t data_a, std::uintptr_t data_b);
  static int SortDateTimeDescendingCallback(CSftTree& tree, const char* a, const char* b,
                                            std::uintptr_t data_a, std::uintptr_t data_b);

 protected:
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnLayoutChanged() override;

  /// Handlers of notifications. One that returns 0 leaves it to the parent as well.
  virtual BOOL OnLButtonExpandCollapse();
  virtual BOOL OnHeaderButtonDown();
  virtual BOOL OnDragging();
  virtual BOOL OnEndDrag();
  virtual BOOL OnCancelDrag();
  virtual BOOL OnQuitEdit();
  virtual BOOL OnValidateEdit();
  /// A key before the tree handles it: -2 if it is one that only the parent knows what to do with,
  /// which it is told, else -1.
  virtual int VKeyToItem(UINT key, UINT row);
  /// All keys go on to the base, whatever was done for them.
  virtual LRESULT OnKeyDown(WPARAM key, LPARAM lparam);
  LRESULT OnSetCaret(WPARAM row, LPARAM);

  /// Null for null.
  static HBITMAP PictureOf(const CBitmap* bitmap) {
    return bitmap == nullptr ? nullptr : bitmap->GetSafeHandle();
  }

 private:
  friend class CDQTreeDropTarget;
  friend class CDQTreeEdit;

  void OnEditCopy() { Copy(); }
  LRESULT OnPlaceEditor(WPARAM, LPARAM);
  void PlaceEditor();
  int CreateNewRow(UINT name_id, bool is_folder);
  int InsertItem(int near, const char* text, void* data);
  int EndOfBranch(int row) const;
  std::vector<int> CollectSelections();
  CString NameOf(int row);
  bool RefuseMove(int row, int folder);
  void PickBitmap(int row);
  bool SetCellPicture(int row, int column, HBITMAP picture);
  CWnd* ForeignUnderPointer();
  bool IsForRows(const TreeHit& hit) const;
  LRESULT OnReflectedCommand(WPARAM wparam, LPARAM lparam);
  LRESULT OnKeyToItem(WPARAM wparam, LPARAM lparam);
  /// Calls it for each column that a cell operation is about; false if there is no such cell.
  template <typename Call>
  bool ForCells(int row, int column, Call call);

  std::unique_ptr<CDQTreeEdit> m_pEdit;
  std::unique_ptr<CFont> m_pBoldFont;
  std::unordered_map<const LOGFONT*, CFont*> m_fonts;
  std::map<int, CSize> m_bitmapSizes;
  /// By the strip, the index and the size.
  std::map<std::tuple<HBITMAP, int, LONG, LONG>, std::unique_ptr<const BitmapDescription>>
      m_indexedBitmaps;
  CUIntArray m_selections;
  CString m_strPrintHeaderPrefix;
  CBitmap* m_pLeafBitmap = nullptr;
  CBitmap* m_pFolderBitmap = nullptr;
  CBitmap* m_pOpenFolderBitmap = nullptr;
  CBitmap* m_pRootBitmap = nullptr;
  COLORREF m_textColor = CellStyle::kNoColor;
  int m_nSortColumn = -1;
  int m_nEditCol = -1;
  bool m_bDebugTree = true;
  bool m_bDragAllowed = false;
  bool m_bAllowRearranging = false;
  bool m_bHandleExpandCollapse = true;
  bool m_bAutoSort = true;
  bool m_bSortAscending = false;
  bool m_bAllowEmptyEdit = false;
  bool m_bAllowPrintSelection = false;
  bool m_bValidating = false;
};

}  // namespace dq
