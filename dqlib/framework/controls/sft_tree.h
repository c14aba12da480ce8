// The list and tree control: rows with levels, columns, pictures, and a header above them.
//
//   CSftTree tree;
//   tree.AddColumn("Name", 120);
//   tree.AddColumn("Size", 60, kColumnNumber);
//   tree.CreateWnd({.class_name = "SftTree", .place = place, .parent = &view, .id = 3070});
//   const int row = tree.AddRow("a.sql");
//   tree.SetCellText(row, 1, "12 KB");

#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/controls/cell_style.h"
#include "dqlib/framework/controls/control.h"
#include "dqlib/framework/controls/scrolling.h"
#include "dqlib/framework/controls/tree_sort.h"

namespace dq {

class CSftTree;
namespace detail {
class TreeRows;
class TreeColumns;
}  // namespace detail

/// Bits of a column's format word. Others may be used by callers.
enum ColumnFormat : UINT {
  kColumnText = 0,
  kColumnCentered = 0x1,
  /// Numbers, which stand at the right.
  kColumnNumber = 0x2,
  kColumnDateTime = 0x400,
};

/// What a tree tells of by `WM_COMMAND`: its parent, and before that its own class by reflected
/// entries. The control itself does nothing on those of rows' buttons and of headers: whoever
/// handles them expands, or sorts.
enum TreeNotification : int {
  /// A drag has begun on the caret's row; the pointer moves on; it is dropped; it is given up.
  kTreeBeginDrag = 8,
  kTreeDragging = 9,
  kTreeEndDrag = 10,
  kTreeCancelDrag = 11,
  /// Of an editor in a cell, by who has made one: it is left without and with a new text.
  kTreeQuitEdit = 14,
  kTreeValidateEdit = 15,
  /// Another row is selected, or another one has the caret, by a person.
  kTreeSelectionChanged = 1,
  /// A press on the button that expands the row, on the row's picture, on a cell, and on a column's
  /// title. The row has the caret then; for a title see `GetHeaderColumn`. The left and right arrow
  /// keys, where they would expand or collapse, tell the first.
  kTreeButtonDown = 33,
  kTreePictureDown = 34,
  kTreeTextDown = 35,
  kTreeHeaderDown = 36,
  /// The second press of a double click, on a row's button, picture and text; Enter tells the last.
  kTreeButtonDoubleClick = 40,
  kTreePictureDoubleClick = 44,
  kTreeTextDoubleClick = 45,
};

/// Where a point of the client area lies.
enum class TreePart { kNowhere, kHeader, kHeaderDivider, kIndent, kButton, kPicture, kCell };

struct TreeHit {
  TreePart part = TreePart::kNowhere;
  /// -1 outside of the rows, and right of the last column.
  int row = -1;
  int column = -1;
};

/// Compares the texts of two cells for a sort, with the data of their rows: below 0, 0 or above 0.
using TreeCompare = int (*)(CSftTree& tree, const char* a, const char* b, std::uintptr_t data_a,
                            std::uintptr_t data_b);

/// The control. Window class "SftTree". It paints itself and needs no native counterpart.
///
/// Rows are counted from 0 in the order in which they stand with all branches expanded, columns
/// from 0. Without columns the texts of column 0 are shown all the same. A row's level is at most
/// one below that of the row before; rows behind it with a deeper level are its children and what
/// is below those. Operations on a row or column that isn't there do nothing and answer false, -1,
/// 0, "" or null. Texts are kept up to the first zero; null counts as
/// "".
///
/// It is made for millions of rows: a row takes some 50 bytes beside its texts; adding at the end,
/// taking the first row or the last one out, reading and finding one by its place on the screen
/// take time that doesn't grow with their number; an insertion or deletion elsewhere moves a block
/// of rows at most. Observers are told rows by their ranges.
class CSftTree : public Control {
  DECLARE_DYNCREATE(CSftTree)
  CSftTree();
  ~CSftTree() override;

  /// Makes the window.
  bool Create(CWnd* parent, const CRect& place, int id);

  // Columns. There is none at first; the first column shows levels, buttons and pictures.

  /// Adds a column at the right, so wide in pixels, and returns its index.
  int AddColumn(const char* title, int width, UINT format = kColumnText);
  int GetColumnCount() const;
  /// How many texts a row has: one for each column, and one where there is none.
  int GetCellCount() const;
  CString GetColumnTitle(int column) const;
  void SetColumnTitle(int column, const char* title);
  UINT GetColumnFormat(int column) const;
  void SetColumnFormat(int column, UINT format);
  int GetColumnWidth(int column) const;
  /// A negative width counts as 0.
  void SetColumnWidth(int column, int width);
  /// Makes the column as wide as its title and the widest of its cells need, indentation, button
  /// and picture included. Called after each row that comes or goes it takes time that doesn't grow
  /// with their number.
  void FitColumn(int column);
  /// Whether the titles are shown. At first they are.
  void ShowHeader(bool show);
  bool IsHeaderShown() const { return header_shown_; }
  /// The column whose title was pressed last; -1 if none was.
  int GetHeaderColumn() const { return header_column_; }
  /// Draws no title pressed any more: for handlers of `kTreeHeaderDown`.
  void ResetHeader();
  /// The title with the sort mark, -1 for none, and which way it points.
  void SetSortMark(int column, bool ascending);
  int GetSortMarkColumn() const { return sort_mark_; }
  bool IsSortMarkAscending() const { return sort_mark_ascending_; }

  // Rows.

  int GetCount() const;
  /// Adds a row behind all, at level 0 or, in the second form, at a level, which is cut to one
  /// below the last row's. `text` is that of column 0. Returns its index.
  int AddRow(const char* text, int level = 0);
  /// The same with the texts of the first columns, null for an empty one; faster than setting
  /// them afterwards. What is beyond the columns is left out.
  int AddRow(std::span<const char* const> texts, int level = 0);
  /// Inserts it before the row `index`, or at the end with -1 or the count; -1 for any other index.
  /// The level is cut to what the row before allows; rows behind that hang on keep their levels, as
  /// far as they may. The branch that it comes into is not expanded by that.
  int InsertRow(int index, const char* text, int level);
  int InsertRow(int index, std::span<const char* const> texts, int level);
  /// Takes the row out with all that is below it. True if there was one. For each row the delete
  /// callback is called first, which must not change the tree.
  bool DeleteRow(int row);
  void ResetContent();
  /// Moves the row with all that is below it before the row `before` (the count: behind all), to a
  /// level that is cut as usual. Returns where it is then; -1, and no change, if `before` lies in
  /// what is moved.
  int MoveRow(int row, int before, int level);

  /// The text itself, good until the tree changes; and as a string.
  const char* CellText(int row, int column) const;
  CString GetCellText(int row, int column) const { return CString(CellText(row, column)); }
  /// Calls `visit` with the text of a column of each row, in order, which is faster for many rows.
  /// It must not change the tree. Without such a column it isn't called.
  void ForEachText(int column, const std::function<void(const char* text)>& visit) const;
  /// False if there is no such cell.
  bool SetCellText(int row, int column, const char* text);

  /// A number or a pointer for the caller's use, 0 at first.
  std::uintptr_t GetRowData(int row) const;
  bool SetRowData(int row, std::uintptr_t data);
  /// Called with each row that is to go, and its data; null for none. Not called for rows that are
  /// left when the window ends; the destructor calls it for those.
  using DeleteCallback = void (*)(CSftTree& tree, int row, std::uintptr_t data);
  void SetDeleteCallback(DeleteCallback callback) { delete_callback_ = callback; }

  // Levels.

  int GetLevel(int row) const;
  /// Cut to what the row before allows. What is below the row goes with it.
  bool SetLevel(int row, int level);
  /// The row that it is below, or -1.
  int GetParentRow(int row) const;
  /// The next and previous row with the same parent, or -1.
  int GetNextSibling(int row) const;
  int GetPrevSibling(int row) const;
  bool HasChildren(int row) const;
  /// How many children, and how many rows are below it in all levels.
  int GetChildCount(int row) const;
  int GetDescendantCount(int row) const;
  /// New rows are expanded. Rows below one that isn't are hidden. `deep`: all below it too.
  bool Expand(int row, bool expand, bool deep = false);
  bool IsExpanded(int row) const;
  /// Whether all rows that it is below are expanded.
  bool IsRowShown(int row) const;
  /// Rows that are shown, and the n-th of them, or -1; the place of a row among them, or -1.
  int GetShownCount() const;
  int GetShownRow(int n) const;
  int GetShownIndex(int row) const;

  // Selection. With single selection, as at first, the selected row is the one with the caret.

  bool IsMultiSelection() const { return multi_selection_; }
  /// A change keeps the caret's row selected and no other one.
  void SetMultiSelection(bool multi);
  bool IsSelected(int row) const;
  /// Single selection: selects the row by the caret, or takes the caret away.
  bool SelectRow(int row, bool select = true);
  /// All rows of a range, ends included, in time that grows with its length alone.
  void SelectRows(int first, int last, bool select = true);
  int GetSelectedCount() const;
  /// Those rows, rising.
  std::vector<int> GetSelectedRows() const;
  /// The current row, or -1.
  int GetCaret() const { return caret_; }
  /// Makes it the current row; with single selection the selected one. -1 for none. It isn't
  /// brought into sight.
  bool SetCaret(int row);

  // Looks.

  /// The picture that stands before the text of column 0; null for none. Pictures, fonts and
  /// colours are shared: thousands of rows may have the same.
  HBITMAP GetRowPicture(int row) const;
  bool SetRowPicture(int row, HBITMAP picture);
  CellStyle GetCellStyle(int row, int column) const;
  bool SetCellStyle(int row, int column, const CellStyle& style);
  /// Pictures for rows with children, collapsed and expanded, and for those without, where a row
  /// has none of its own.
  void SetDefaultPictures(HBITMAP collapsed, HBITMAP expanded, HBITMAP leaf);
  /// Of the whole: `CellStyle::kNoColor` is the desktop's colour.
  void SetColors(COLORREF text, COLORREF background, COLORREF selected_text,
                 COLORREF selected_background);
  /// Lines from row to row, and buttons to expand; both are drawn at first.
  void ShowTreeLines(bool show);
  void ShowButtons(bool show);
  /// The row that is marked as the target of a drop; -1 for none.
  void SetDropTarget(int row);
  int GetDropTarget() const { return drop_target_; }
  /// Whether a person may drag rows; at first not.
  void EnableDrag(bool enable) { drag_enabled_ = enable; }
  bool IsDragEnabled() const { return drag_enabled_; }
  bool IsDragging() const { return dragging_; }
  /// Ends a drag that a person has begun, without a word, and gives the mouse back.
  void CancelMode();
  /// Nothing is drawn, and no scroll bar set, until it is on again.
  void SetRedraw(bool redraw);

  // Its own geometry, in pixels of the client area; works without a layer.

  int GetRowHeight() const;
  int GetHeaderHeight() const;
  /// How many rows are in sight as a whole, at least 1.
  int GetPageRows() const;
  /// The first row in sight, -1 without rows.
  int GetTopRow() const;
  void SetTopRow(int row);
  int GetHorizontalPos() const { return left_; }
  void SetHorizontalPos(int left);
  /// Brings it into sight, expanding what it is below; a cell from its left edge on.
  void EnsureRowVisible(int row);
  void EnsureCellVisible(int row, int column);
  TreeHit HitTest(const CPoint& point) const;
  /// The rectangle of a cell, or of a whole row with -1 as the column. False if the row isn't shown
  /// or lies outside of the client area; `inside` leaves indentation, button and picture out.
  bool GetCellRect(int row, int column, CRect* rect, bool inside = false) const;

  // Sorting. Siblings are put in order within their parent, and take what is below them along. The
  // sort is stable, and right in the sense that it ends with a permutation for any comparison.
  // Selection and caret go with their rows.

  /// By the texts of a column with case ignored, or by a comparison.
  void SortRows(int column, TreeCompare compare = nullptr);
  /// By the texts, rising or falling. Equal ones keep their order in both.
  void SortRowsByText(int column, bool ascending);
  /// By a comparison of rows by the indexes that they have before; for sorts by keys that were
  /// extracted before.
  void SortRowsBy(const std::function<int(int a, int b)>& compare);
  /// The same, with a comparison that is known to the compiler.
  template <typename Compare>
  void SortRowsWith(Compare compare);
  /// By keys, one for each row, and a comparison of two of them: the fastest, where keys are small.
  template <typename Key, typename Compare>
  void SortRowsByKeys(const std::vector<Key>& keys, Compare compare);

  void Describe(platform::DialogControl& control) const override;
  /// A person selects rows by their numbers from 1 or by the text of column 0, one a line.
  bool Enter(std::string_view value) override;
  bool Press() override;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnPaint(CDC& dc) override;
  void OnSubclassed(CWnd& former) override;
  /// Rows may lie elsewhere now. It may end the tree.
  virtual void OnLayoutChanged() {}

  bool HasRow(int row) const { return row >= 0 && row < GetCount(); }
  bool HasCell(int row, int column) const;

  /// A row whose index goes with it through changes and sorts, as that of the caret does, until it
  /// is deleted; -1 for none, as at first.
  void FollowRow(int row) { followed_row_ = row; }
  int GetFollowedRow() const { return followed_row_; }

  /// The row with the caret, and the point of the press in client coordinates, of the notification
  /// that is under way.
  const CPoint& GetPressPoint() const { return press_point_; }

 private:
  /// The parts of a cell from left to right; those that it doesn't have are empty.
  struct CellParts {
    CRect cell;
    CRect button;
    CRect picture;
    CRect cell_picture;
    /// What is left for the text.
    CRect inside;
  };
  enum DefaultPicture : int { kCollapsedPicture, kExpandedPicture, kLeafPicture };
  struct Colors {
    COLORREF text = CellStyle::kNoColor;
    COLORREF background = CellStyle::kNoColor;
    COLORREF selected_text = CellStyle::kNoColor;
    COLORREF selected_background = CellStyle::kNoColor;
  };

  // Rows and what follows their changes.
  template <typename Change>
  bool ChangeCell(int row, int column, Change change);
  template <typename Follow>
  void MoveMarks(Follow follow);
  void EraseRows(int first, int count);
  void TellErased(int first, int count);
  void CountWidth(int row, int column, bool add);
  void CountWidths(int first, int last, bool add);
  detail::SiblingGroups GetSiblingGroups() const;
  void TakeOrder(const std::vector<int>& order);

  // The mouse.
  enum class Gesture { kNone, kTitle, kDivider, kPress, kDrag };
  bool OnMouse(UINT message, WPARAM keys, const CPoint& point);
  void PressMouse(bool is_double, WPARAM keys, const CPoint& point);
  void PressDivider(bool is_double, int column, const CPoint& point);
  void PressTitle(int column);
  void PressRow(bool is_double, WPARAM keys, const TreeHit& hit);
  void PressRightButton(const CPoint& point);
  void MoveMouse(const CPoint& point);
  void ReleaseMouse(const CPoint& point);
  bool OnTimer(WPARAM id);
  void BeginGesture(Gesture gesture, const CPoint& point);
  void EndGesture(bool cancel);
  bool ShowPointer();

  // The keyboard, and the selection by a person.
  /// What becomes selected by a step of the caret: nothing else than before; the row alone; it, if
  /// it wasn't; all from where the selection began, alone or with what is selected.
  enum class Selecting { kNothing, kAlone, kToggle, kRange, kAddRange };
  LRESULT OnKey(UINT key, LPARAM lparam);
  bool OnMoveKey(UINT key);
  bool OnBranchKey(UINT key);
  bool OnActionKey(UINT key);
  void AskForMenu();
  void TypeAhead(char typed);
  int GetShownCaret() const;
  void StepTo(int row);
  void MoveCaret(int row, Selecting selecting);
  void SelectShown(int from, int to);
  void SelectNone();
  void InvalidateSelected();
  void RedrawSelection();

  // Where everything lies.
  /// Pixels of a level's indentation, and of the place of the button; around the text of a cell,
  /// and of a title.
  static constexpr LONG kLevelWidth = 16;
  static constexpr LONG kTextMargin = 3;
  static constexpr LONG kTitleMargin = 6;
  CRect GetBody() const;
  int GetTotalWidth() const;
  int GetIndent(int row) const;
  HBITMAP GetShownPicture(int row) const;
  int GetPictureWidth(int row) const;
  int GetNeededWidth(int row, int column) const;
  int GetTitleWidth(int column) const;
  CRect GetTitleRect(int column) const;
  CRect PlaceRow(int row) const;
  CellParts PlaceCell(int row, int column, const CRect& row_place) const;
  int RowAt(LONG y) const;

  // Painting.
  struct RowColors;
  COLORREF GetBackground() const;
  RowColors GetRowColors(int row) const;
  void PaintHeader(CDC& dc);
  void PaintTitle(CDC& dc, int column, const CRect& title);
  void PaintRows(CDC& dc, const CRect& clip);
  void PaintRow(CDC& dc, int row, const CRect& place);
  void PaintBranch(CDC& dc, int row, const CellParts& parts);
  void PaintLines(CDC& dc, int row, const CellParts& parts);
  void PaintCell(CDC& dc, int row, int column, const CellParts& parts, const RowColors& colors);

  // Scrolling and drawing anew.
  void UpdateScroll(int former_top, int former_left);
  void ScrollBy(ScrollBar bar, WPARAM wparam);
  void ScrollTo(ScrollBar bar, int position);
  void ChangeWidth(int column, int width);
  void Redraw();
  void InvalidateHeader();
  void InvalidateRows(int first, int last);
  void InvalidateRow(int row) { InvalidateRows(row, row); }
  void InvalidateFrom(int row);
  void RowsChanged(int first);
  void LayoutChanged();

  std::unique_ptr<detail::TreeRows> rows_;
  std::unique_ptr<detail::TreeColumns> columns_;
  DeleteCallback delete_callback_ = nullptr;
  /// By `DefaultPicture`.
  std::array<HBITMAP, 3> default_pictures_{};
  Colors colors_;
  CPoint press_point_;
  int caret_ = -1;
  /// Where a selection by Shift begins.
  int anchor_ = -1;
  /// The first row in sight.
  int top_ = 0;
  int left_ = 0;
  /// The title that is drawn pressed, or -1.
  int pressed_title_ = -1;
  /// What the mouse was pressed for, and where; of a divider its column, and the former width.
  Gesture gesture_ = Gesture::kNone;
  CPoint gesture_from_;
  int gesture_column_ = -1;
  int gesture_width_ = 0;
  /// The row that the release selects alone, or -1.
  int pending_row_ = -1;
  bool scroll_timer_ = false;
  /// What is typed to find a row, and when the last of it was.
  std::string typed_;
  DWORD typed_at_ = 0;
  detail::WheelTurns wheel_;
  /// Once it was measured.
  mutable int row_height_ = 0;
  int drop_target_ = -1;
  int followed_row_ = -1;
  int header_column_ = -1;
  int sort_mark_ = -1;
  bool sort_mark_ascending_ = true;
  bool header_shown_ = true;
  bool multi_selection_ = false;
  bool drag_enabled_ = false;
  bool dragging_ = false;
  bool lines_shown_ = true;
  bool buttons_shown_ = true;
  bool redraw_ = true;
};

/// Has the rows that are kept by their indexes follow a change.
template <typename Follow>
void CSftTree::MoveMarks(Follow follow) {
  for (int* const mark : {&caret_, &anchor_, &drop_target_, &followed_row_, &pending_row_}) {
    *mark = follow(*mark);
  }
}

template <typename Compare>
void CSftTree::SortRowsWith(Compare compare) {
  detail::SiblingGroups groups = GetSiblingGroups();
  groups.ForEach([&compare](std::span<int> rows) { detail::MergeSort(rows, compare); });
  TakeOrder(groups.GetOrder());
}

template <typename Key, typename Compare>
void CSftTree::SortRowsByKeys(const std::vector<Key>& keys, Compare compare) {
  if (keys.size() != static_cast<std::size_t>(GetCount())) return;
  detail::SiblingGroups groups = GetSiblingGroups();
  detail::SortByKeys(groups, keys, compare);
  TakeOrder(groups.GetOrder());
}

}  // namespace dq
