// The tree control: items below items, each with a text, pictures and a picture of its state.
//
//   CTreeCtrl tree;
//   tree.Create(&pane, place, 12);
//   const HTREEITEM root = tree.InsertItem("Server");
//   tree.InsertItem("Tables", root);
//   tree.Expand(root);

#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/controls/control.h"
#include "dqlib/framework/controls/scrolling.h"
#include "dqlib/framework/controls/tree_items.h"

namespace dq {

class CImageList;

/// Where a point lies, as `CTreeCtrl::HitTest` tells.
enum TreeHitFlag : UINT {
  TVHT_NOWHERE = 0x1,
  TVHT_ONITEMICON = 0x2,
  TVHT_ONITEMLABEL = 0x4,
  TVHT_ONITEMINDENT = 0x8,
  TVHT_ONITEMBUTTON = 0x10,
  TVHT_ONITEMRIGHT = 0x20,
  TVHT_ONITEMSTATEICON = 0x40,
  TVHT_ONITEM = TVHT_ONITEMICON | TVHT_ONITEMLABEL | TVHT_ONITEMSTATEICON,
  // Outside of the client area.
  TVHT_ABOVE = 0x100,
  TVHT_BELOW = 0x200,
  TVHT_TORIGHT = 0x400,
  TVHT_TOLEFT = 0x800,
};

/// How `CTreeCtrl::Expand` changes an item.
enum TreeExpand : UINT { TVE_COLLAPSE = 1, TVE_EXPAND = 2, TVE_TOGGLE = 3 };

/// Which image list is meant.
enum TreeImageList : int { TVSIL_NORMAL = 0, TVSIL_STATE = 2 };

/// What a tree tells its parent by `WM_NOTIFY`, with an `NM_TREEVIEW`, when a person does it.
enum TreeViewNotification : int {
  NM_CLICK = -2,
  NM_DBLCLK = -3,
  /// Another item is to be selected, or is: an answer that isn't 0 to the first refuses it.
  TVN_SELCHANGING = -401,
  TVN_SELCHANGED = -402,
  /// The same for an item that is expanded or collapsed; `action` is a `TreeExpand`.
  TVN_ITEMEXPANDING = -405,
  TVN_ITEMEXPANDED = -406,
};

struct NM_TREEVIEW {
  NMHDR hdr;
  UINT action = 0;
  HTREEITEM itemOld = nullptr;
  HTREEITEM itemNew = nullptr;
  CPoint ptDrag;
};

/// The control. Window class "TreeView". It paints itself and needs no native counterpart.
///
/// Handles of items that are gone, and null where no root is meant, name no item: operations do
/// nothing then and answer false, null, -1 or "". Texts are kept up to the first zero; null counts
/// as "". Rows are the items that are shown, because all they are below is expanded, counted from 0
/// from the top.
///
/// It is made for a million items: an item takes some 120 bytes beside a text of more than 15;
/// one that comes or goes, and finding the item of a row or the row of an item, takes logarithmic
/// time; what is drawn is what is in sight. Observers are told rows by their ranges.
class CTreeCtrl : public Control {
  DECLARE_DYNCREATE(CTreeCtrl)
  CTreeCtrl();
  ~CTreeCtrl() override;

  /// Makes the window.
  bool Create(CWnd* parent, const CRect& place, int id);

  // Items.

  /// Inserts an item below another one, or at the top level with `TVI_ROOT` or null, behind one of
  /// its siblings, or at `TVI_FIRST` or `TVI_LAST`. Null if there is no such place. Its row doesn't
  /// come into sight by that. Items are collapsed at first, unless the record's state says
  /// otherwise, and never selected.
  HTREEITEM InsertItem(const CTreeViewItemEx& record, HTREEITEM parent = TVI_ROOT,
                       HTREEITEM after = TVI_LAST);
  HTREEITEM InsertItem(const char* text, HTREEITEM parent = TVI_ROOT, HTREEITEM after = TVI_LAST);
  /// The same for an object, which isn't owned. A row that it had before goes, unless there is no
  /// such place, as below or behind that row itself.
  HTREEITEM InsertItem(CTreeItem& object, const CTreeViewItemEx& record,
                       HTREEITEM parent = TVI_ROOT, HTREEITEM after = TVI_LAST);
  /// Takes an item out with all below it; a sibling, or its parent, is selected then if the
  /// selected one was among them.
  bool DeleteItem(HTREEITEM item);
  bool DeleteAllItems();
  int GetCount() const { return items_.size(); }
  bool HasItem(HTREEITEM item) const { return items_.Find(item) != detail::TreeItems::kRoot; }

  /// The first at the top level; the first below one; siblings; the one it is below.
  HTREEITEM GetRootItem() const;
  HTREEITEM GetChildItem(HTREEITEM item) const;
  HTREEITEM GetNextSiblingItem(HTREEITEM item) const;
  HTREEITEM GetPrevSiblingItem(HTREEITEM item) const;
  HTREEITEM GetParentItem(HTREEITEM item) const;
  bool ItemHasChildren(HTREEITEM item) const { return GetChildItem(item) != nullptr; }

  /// Changes what the mask of the record says, of the item that it names. Its bits for what is
  /// selected and expanded don't count.
  bool SetItem(const CTreeViewItemEx& record);
  /// Puts all that the record's item has into the record.
  bool GetItem(CTreeViewItemEx& record) const;
  CString GetItemText(HTREEITEM item) const;
  bool SetItemText(HTREEITEM item, const char* text);
  UINT GetItemState(HTREEITEM item, UINT mask) const;
  bool SetItemState(HTREEITEM item, UINT state, UINT mask);
  LPARAM GetItemData(HTREEITEM item) const;
  bool SetItemData(HTREEITEM item, LPARAM param);
  /// The object of an item that has one, or null.
  CTreeItem* GetItemObject(HTREEITEM item) const;

  // Rows.

  /// By a `TreeExpand`. True if that changed it; one without children isn't expanded. With the
  /// selected item below one that is collapsed, that one is selected.
  bool Expand(HTREEITEM item, UINT code = TVE_EXPAND);
  bool IsExpanded(HTREEITEM item) const;
  int GetRowCount() const { return items_.row_count(); }
  HTREEITEM GetRowItem(int row) const { return items_.HandleOf(items_.AtRow(row)); }
  int GetItemRow(HTREEITEM item) const { return items_.RowOf(items_.Find(item)); }

  /// Null for none. It isn't brought into sight.
  HTREEITEM GetSelectedItem() const { return items_.HandleOf(selected_); }
  bool SelectItem(HTREEITEM item);

  // Looks. Image lists aren't owned, and must live as long as the tree has them.

  /// The pictures before the texts, and those of states before these; null for none. Without state
  /// images of its own, an item with a state image has a check box: 1 clear, 2 checked, 4 mixed.
  void SetImageList(const CImageList* images, int which = TVSIL_NORMAL);
  const CImageList* GetImageList(int which = TVSIL_NORMAL) const;

  /// While one lives, changes of items are drawn and told together: by one range about all rows.
  class Batch {
   public:
    /// Null for no tree. The tree must outlive it.
    explicit Batch(CTreeCtrl* tree);
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch();

   private:
    CTreeCtrl* const tree_;
  };

  // Its own geometry, in pixels of the client area; works without a layer.

  int GetRowHeight() const;
  /// How many rows are in sight as a whole, at least 1.
  int GetPageRows() const;
  int GetTopRow() const { return top_; }
  void SetTopRow(int row);
  /// Brings an item into sight, expanding what it is below.
  bool EnsureVisible(HTREEITEM item);
  /// The item in the row at the point, or null, and where the point lies: `TreeHitFlag` bits.
  HTREEITEM HitTest(const CPoint& point, UINT* flags = nullptr) const;
  /// The row of an item, or its text alone. False if it isn't shown; it may lie outside of the
  /// client area.
  bool GetItemRect(HTREEITEM item, CRect* rect, bool text_only) const;
  /// The picture of its state; empty if it has none.
  bool GetStateImageRect(HTREEITEM item, CRect* rect) const;

  /// A person selects, or expands and collapses, an item. False if it can't be used, or the parent
  /// refuses.
  bool Choose(HTREEITEM item);
  bool ChooseExpand(HTREEITEM item, UINT code);

  void Describe(platform::DialogControl& control) const override;
  /// A person selects an item by the number of its row from 1 or by its text.
  bool Enter(std::string_view value) override;
  bool Press() override;

  /// What the tree does by itself on a message: for objects whose handlers have it do so.
  LRESULT HandleMessage(UINT message, WPARAM wparam, LPARAM lparam);

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnPaint(CDC& dc) override;

  /// The colours of an item's text and what is behind it. The base takes the desktop's.
  virtual void PickTextColors(HTREEITEM item, COLORREF& text, COLORREF& background) const;
  /// The font of an item's text, null for the tree's own; `text` is the colour that was picked. The
  /// base makes items with `TVIS_BOLD` bold.
  virtual CFont* PickTextFont(HTREEITEM item, COLORREF& text) const;

 private:
  using Index = detail::TreeItems::Index;
  static constexpr Index kNone = detail::TreeItems::kRoot;

  /// Pixels left and right of a text.
  static constexpr int kTextGap = 3;

  /// Where the parts of a row lie; what it doesn't have is empty.
  struct RowParts {
    CRect row, button, state, image, text;
  };

  bool FindPlace(HTREEITEM parent, HTREEITEM after, Index& parent_item, Index& after_item) const;
  void Erase(Index item);
  void DropObjects(const std::vector<CTreeItem*>& gone);
  void LeaveSelection(Index doomed);
  bool Select(Index item);
  bool SetExpanded(Index item, UINT code);

  void RowsCame(const detail::TreeItems::Range& rows);
  void RowsWent(const detail::TreeItems::Range& rows);
  void RowChanged(Index item);
  void InvalidateRow(int row);
  void Measure(int first, int last);
  void UpdateScrolling();
  bool ScrollTo(int top, int left);
  int GetLastTop() const;
  int RowAt(LONG y) const;

  std::string_view ShownText(Index item) const;
  RowParts PartsOf(Index item, int row) const;
  CFont* BoldFont() const;
  void PaintRow(CDC& dc, Index item, int row) const;
  void PaintButton(CDC& dc, const CRect& button, bool expanded) const;
  void PaintState(CDC& dc, const CRect& place, int image) const;

  LRESULT TellParent(int code, UINT action, HTREEITEM old_item, HTREEITEM new_item,
                     const CPoint& point = {});
  bool ChooseRow(int row);
  LRESULT OnPress(const CPoint& point, bool second);
  bool OnKey(WPARAM key);
  bool OnArrow(bool right);
  void Search(char character);

  detail::TreeItems items_;
  mutable std::unique_ptr<CFont> bold_;
  const CImageList* images_ = nullptr;
  const CImageList* state_images_ = nullptr;
  Index selected_ = kNone;
  /// How many batches are under way, and whether items have changed.
  int batches_ = 0;
  bool batch_changed_ = false;
  int top_ = 0;
  int left_ = 0;
  detail::WheelTurns wheel_;
  /// Of the rows that have been in sight.
  int content_width_ = 0;
  mutable int row_height_ = 0;
};

}  // namespace dq
