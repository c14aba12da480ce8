// The tree control: its items and rows.

#include "dqlib/framework/controls/tree_ctrl.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/text.h"
#include "dqlib/framework/controls/tree_item.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::TreeItems;

namespace {

/// State bits that follow the selection and the rows.
constexpr UINT kOwnState = TVIS_SELECTED | TVIS_EXPANDED;

}  // namespace

IMPLEMENT_DYNCREATE(CTreeCtrl, CWnd)

CTreeCtrl::CTreeCtrl() = default;

CTreeCtrl::~CTreeCtrl() {
  EndInDestructor();
  std::vector<CTreeItem*> gone;
  items_.Erase(TreeItems::kRoot, gone);
  DropObjects(gone);
}

bool CTreeCtrl::Create(CWnd* parent, const CRect& place, int id) {
  return CreateWnd({.class_name = "TreeView", .place = place, .parent = parent, .id = id});
}

// ---- Items

/// The root as `after_item` is the place before all siblings.
bool CTreeCtrl::FindPlace(HTREEITEM parent, HTREEITEM after, Index& parent_item,
                          Index& after_item) const {
  const bool is_top = parent == nullptr || parent == TVI_ROOT;
  parent_item = is_top ? TreeItems::kRoot : items_.Find(parent);
  if (!is_top && parent_item == kNone) return false;
  if (after == TVI_FIRST || after == TVI_LAST) {
    after_item = after == TVI_LAST ? items_[parent_item].last_child : kNone;
    return true;
  }
  after_item = items_.Find(after);
  return after_item != kNone && items_[after_item].parent == parent_item;
}

HTREEITEM CTreeCtrl::InsertItem(const CTreeViewItemEx& record, HTREEITEM parent, HTREEITEM after) {
  Index above = kNone;
  Index before = kNone;
  if (!FindPlace(parent, after, above, before)) return nullptr;
  TreeItems::Node values;
  values.text = static_cast<const char*>(record.GetText());
  values.param = record.GetParam();
  values.image = record.GetImage();
  values.selected_image = record.GetSelectedImage();
  values.state = record.GetState() & ~UINT{TVIS_SELECTED};
  const bool is_first = items_[above].first_child == kNone;
  if (is_first) detail::TellNewRows();
  const Index item = items_.Insert(above, before, std::move(values));
  if (is_first && above != kNone) RowChanged(above);
  if (const int row = items_.RowOf(item); row >= 0) RowsCame({row, 1});
  return items_.HandleOf(item);
}

HTREEITEM CTreeCtrl::InsertItem(const char* text, HTREEITEM parent, HTREEITEM after) {
  CTreeViewItemEx record;
  record.SetText(text);
  return InsertItem(record, parent, after);
}

HTREEITEM CTreeCtrl::InsertItem(CTreeItem& object, const CTreeViewItemEx& record, HTREEITEM parent,
                                HTREEITEM after) {
  Index above = kNone;
  Index before = kNone;
  // The row that it has stays if there is no other place for it.
  if (!FindPlace(parent, after, above, before)) return nullptr;
  const bool has_row = object.tree_ == this;
  if (has_row && after == object.handle_) return nullptr;
  if (has_row && items_.IsBelow(above, items_.Find(object.handle_))) return nullptr;
  if (object.tree_ != nullptr) object.tree_->DeleteItem(object.handle_);
  const HTREEITEM handle = InsertItem(record, parent, after);
  items_[items_.Find(handle)].object = &object;
  object.tree_ = this;
  object.handle_ = handle;
  return handle;
}

void CTreeCtrl::DropObjects(const std::vector<CTreeItem*>& gone) {
  for (CTreeItem* const object : gone) {
    object->tree_ = nullptr;
    object->handle_ = nullptr;
  }
}

/// Selects another item if the selected one is about to go with this one.
void CTreeCtrl::LeaveSelection(Index doomed) {
  if (selected_ == kNone || !items_.IsBelow(selected_, doomed)) return;
  const TreeItems::Node& node = items_[doomed];
  selected_ = kNone;
  if (doomed == TreeItems::kRoot) return;
  selected_ = node.next != kNone ? node.next : node.previous != kNone ? node.previous : node.parent;
}

void CTreeCtrl::Erase(Index item) {
  detail::TellNewRows();
  const Index former = selected_;
  const Index parent = items_[item].parent;
  LeaveSelection(item);
  std::vector<CTreeItem*> gone;
  const TreeItems::Range rows = items_.Erase(item, gone);
  DropObjects(gone);
  if (parent != kNone && items_[parent].first_child == kNone) RowChanged(parent);
  RowsWent(rows);
  if (selected_ == former) return;
  if (selected_ != kNone) InvalidateRow(items_.RowOf(selected_));
  Tell(WindowChange::kSelection);
}

bool CTreeCtrl::DeleteItem(HTREEITEM item) {
  const Index found = items_.Find(item);
  if (found != kNone) Erase(found);
  return found != kNone;
}

bool CTreeCtrl::DeleteAllItems() {
  const bool had_items = items_.size() > 0;
  if (had_items) Erase(TreeItems::kRoot);
  return had_items;
}

HTREEITEM CTreeCtrl::GetRootItem() const {
  return items_.HandleOf(items_[TreeItems::kRoot].first_child);
}

HTREEITEM CTreeCtrl::GetChildItem(HTREEITEM item) const {
  if (item == TVI_ROOT) return GetRootItem();
  const Index found = items_.Find(item);
  return found == kNone ? nullptr : items_.HandleOf(items_[found].first_child);
}

HTREEITEM CTreeCtrl::GetNextSiblingItem(HTREEITEM item) const {
  return items_.HandleOf(items_[items_.Find(item)].next);
}

HTREEITEM CTreeCtrl::GetPrevSiblingItem(HTREEITEM item) const {
  return items_.HandleOf(items_[items_.Find(item)].previous);
}

HTREEITEM CTreeCtrl::GetParentItem(HTREEITEM item) const {
  return items_.HandleOf(items_[items_.Find(item)].parent);
}

bool CTreeCtrl::SetItem(const CTreeViewItemEx& record) {
  const Index item = items_.Find(record.GetItem());
  if (item == kNone) return false;
  TreeItems::Node& node = items_[item];
  const UINT mask = record.GetMask();
  const UINT bits = record.GetStateMask() & ~kOwnState;
  if ((mask & TVIF_TEXT) != 0) node.text = static_cast<const char*>(record.GetText());
  if ((mask & TVIF_IMAGE) != 0) node.image = record.GetImage();
  if ((mask & TVIF_SELECTEDIMAGE) != 0) node.selected_image = record.GetSelectedImage();
  if ((mask & TVIF_PARAM) != 0) node.param = record.GetParam();
  if ((mask & TVIF_STATE) != 0) node.state = (node.state & ~bits) | (record.GetState() & bits);
  if ((mask & ~UINT{TVIF_PARAM}) != 0) RowChanged(item);
  return true;
}

bool CTreeCtrl::GetItem(CTreeViewItemEx& record) const {
  const Index item = items_.Find(record.GetItem());
  if (item == kNone) return false;
  const TreeItems::Node& node = items_[item];
  record.SetText(node.text.c_str());
  record.SetImage(node.image);
  record.SetSelectedImage(node.selected_image);
  record.SetParam(node.param);
  record.SetState(GetItemState(record.GetItem(), ~0U), ~0U);
  return true;
}

CString CTreeCtrl::GetItemText(HTREEITEM item) const { return items_[items_.Find(item)].text; }

bool CTreeCtrl::SetItemText(HTREEITEM item, const char* text) {
  CTreeViewItemEx record;
  record.SetItem(item);
  record.SetText(text);
  return SetItem(record);
}

UINT CTreeCtrl::GetItemState(HTREEITEM item, UINT mask) const {
  const Index found = items_.Find(item);
  if (found == kNone) return 0;
  return (items_[found].state | (found == selected_ ? UINT{TVIS_SELECTED} : 0U)) & mask;
}

bool CTreeCtrl::SetItemState(HTREEITEM item, UINT state, UINT mask) {
  CTreeViewItemEx record;
  record.SetItem(item);
  record.SetState(state, mask);
  return SetItem(record);
}

LPARAM CTreeCtrl::GetItemData(HTREEITEM item) const { return items_[items_.Find(item)].param; }

bool CTreeCtrl::SetItemData(HTREEITEM item, LPARAM param) {
  const Index found = items_.Find(item);
  if (found != kNone) items_[found].param = param;
  return found != kNone;
}

CTreeItem* CTreeCtrl::GetItemObject(HTREEITEM item) const {
  return items_[items_.Find(item)].object;
}

// ---- Rows

bool CTreeCtrl::Expand(HTREEITEM item, UINT code) {
  const Index found = items_.Find(item);
  return found != kNone && SetExpanded(found, code);
}

bool CTreeCtrl::SetExpanded(Index item, UINT code) {
  const bool expanded = items_.IsExpanded(item);
  const bool expand = code == TVE_TOGGLE ? !expanded : code == TVE_EXPAND;
  if ((code != TVE_EXPAND && code != TVE_COLLAPSE && code != TVE_TOGGLE) || expand == expanded) {
    return false;
  }
  if (expand && items_[item].first_child == kNone) return false;
  const bool hides_selected = !expand && selected_ != item && items_.IsBelow(selected_, item);
  detail::TellNewRows();
  const TreeItems::Range rows = items_.Expand(item, expand);
  RowChanged(item);
  expand ? RowsCame(rows) : RowsWent(rows);
  if (hides_selected) Select(item);
  return true;
}

bool CTreeCtrl::IsExpanded(HTREEITEM item) const {
  const Index found = items_.Find(item);
  return found != kNone && items_.IsExpanded(found);
}

bool CTreeCtrl::SelectItem(HTREEITEM item) {
  const Index found = items_.Find(item);
  if (found == kNone && item != nullptr) return false;
  Select(found);
  return true;
}

/// Whether that changed anything.
bool CTreeCtrl::Select(Index item) {
  if (item == selected_) return false;
  const Index former = std::exchange(selected_, item);
  for (const Index each : {former, item}) {
    if (each != kNone) InvalidateRow(items_.RowOf(each));
  }
  Tell(WindowChange::kSelection);
  return true;
}

void CTreeCtrl::RowsCame(const TreeItems::Range& rows) {
  if (rows.count == 0) return;
  // What is in sight stays where it is.
  if (rows.first < top_) top_ += rows.count;
  Tell(WindowChange::kRowsInserted, {rows.first, rows.count});
  const int behind_sight = top_ + GetPageRows() + 1;
  if (rows.first < behind_sight) {
    Measure(rows.first, std::min(rows.first + rows.count, behind_sight));
    Invalidate();
  }
  UpdateScrolling();
}

void CTreeCtrl::RowsWent(const TreeItems::Range& rows) {
  if (rows.count == 0) return;
  const bool is_in_sight = rows.first <= top_ + GetPageRows();
  if (rows.first < top_) top_ -= std::min(rows.count, top_ - rows.first);
  Tell(WindowChange::kRowsRemoved, {rows.first, rows.count});
  if (is_in_sight) Invalidate();
  if (GetRowCount() == 0) content_width_ = 0;
  UpdateScrolling();
}

void CTreeCtrl::RowChanged(Index item) {
  if (batches_ > 0) {
    batch_changed_ = true;
    return;
  }
  const int row = items_.RowOf(item);
  if (row < 0) return;
  Tell(WindowChange::kRowsChanged, {row, 1});
  InvalidateRow(row);
  if (row < top_ || row > top_ + GetPageRows()) return;
  Measure(row, row + 1);
  UpdateScrolling();
}

CTreeCtrl::Batch::Batch(CTreeCtrl* tree) : tree_(tree) {
  if (tree_ != nullptr) ++tree_->batches_;
}

CTreeCtrl::Batch::~Batch() {
  if (tree_ == nullptr || --tree_->batches_ > 0) return;
  if (!std::exchange(tree_->batch_changed_, false)) return;
  tree_->Tell(WindowChange::kRowsChanged, {0, tree_->GetRowCount()});
  tree_->Invalidate();
  tree_->Measure(tree_->top_, tree_->top_ + tree_->GetPageRows() + 1);
  tree_->UpdateScrolling();
}

}  // namespace dq
