#include "dqlib/toolkit/check_box_tree_item.h"

#include "dqlib/framework/controls/tree_ctrl.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQCheckBoxTreeItem, CDQTreeItemBase)

CDQCheckBoxTreeItem::CDQCheckBoxTreeItem() { UpdateStateImage(kClearImage); }

CDQCheckBoxTreeItem::CDQCheckBoxTreeItem(CDQCheckBoxTreeItemModel* model) : CDQTreeItemBase(model) {
  const bool is_checked = model != nullptr && model->GetCheckState() == 1;
  UpdateStateImage(is_checked ? kCheckedImage : kClearImage);
}

CDQCheckBoxTreeItemModel* CDQCheckBoxTreeItem::GetItemModel() const {
  return dynamic_cast<CDQCheckBoxTreeItemModel*>(CDQTreeItemBase::GetItemModel());
}

bool CDQCheckBoxTreeItem::Takes(CDQTreeItemBase* child) const {
  return dynamic_cast<CDQCheckBoxTreeItem*>(child) != nullptr;
}

CDQCheckBoxTreeItem* CDQCheckBoxTreeItem::Parent() const {
  return dynamic_cast<CDQCheckBoxTreeItem*>(GetParent());
}

bool CDQCheckBoxTreeItem::AddChild(CDQTreeItemBase* child) {
  if (!CDQTreeItemBase::AddChild(child)) return false;
  TakeIn();
  return true;
}

bool CDQCheckBoxTreeItem::InsertChild(int index, CDQTreeItemBase* child) {
  if (!CDQTreeItemBase::InsertChild(index, child)) return false;
  TakeIn();
  return true;
}

/// Has models count what came in, and boxes show it.
void CDQCheckBoxTreeItem::TakeIn() {
  if (CDQCheckBoxTreeItemModel* const model = GetItemModel()) {
    model->InitCheck();
    for (auto* above = model->Parent(); above != nullptr; above = above->Parent()) {
      above->UpdateChildCount();
    }
  }
  SetCheckBox();
}

// ---- What is shown

int CDQCheckBoxTreeItem::ImageByModel() const {
  const CDQCheckBoxTreeItemModel* const model = GetItemModel();
  if (model == nullptr) return kClearImage;
  if (model->HasMixedStateChildren()) return kMixedImage;
  return model->HasOnlyUncheckedChildren() ? kClearImage : kCheckedImage;
}

CTreeViewItemEx& CDQCheckBoxTreeItem::GetTVITEMEX() {
  CTreeViewItemEx& record = CDQTreeItemBase::GetTVITEMEX();
  if (m_bImageDue) record.SetStateImage(ImageByModel());
  m_bImageDue = false;
  return record;
}

void CDQCheckBoxTreeItem::SetCheckBox() {
  for (CDQCheckBoxTreeItem* item = this; item != nullptr; item = item->Parent()) {
    const CDQCheckBoxTreeItemModel* const model = item->GetItemModel();
    item->m_bImageDue = model != nullptr && model->m_nDue != 0;
    if (item->m_bImageDue) continue;
    item->CDQTreeItemBase::GetTVITEMEX().SetStateImage(item->ImageByModel());
  }
}

void CDQCheckBoxTreeItem::UpdateCheckBox() {
  for (CDQCheckBoxTreeItem* item = this; item != nullptr; item = item->Parent()) {
    item->m_bImageDue = false;
    item->UpdateStateImage(item->ImageByModel());
  }
}

void CDQCheckBoxTreeItem::SetIsChecked(int checked) {
  const int image = checked != 0 ? kCheckedImage : kClearImage;
  const CTreeCtrl::Batch batch(GetTreeCtrl());
  std::vector<CDQCheckBoxTreeItem*> open = {this};
  while (!open.empty()) {
    CDQCheckBoxTreeItem& item = *open.back();
    open.pop_back();
    item.m_bImageDue = false;
    item.UpdateStateImage(image);
    for (int at = 0; at < item.GetChildCount(); ++at) {
      open.push_back(static_cast<CDQCheckBoxTreeItem*>(item.GetChild(at)));
    }
  }
}

void CDQCheckBoxTreeItem::ToggleCheckBox() {
  CDQCheckBoxTreeItemModel* const model = GetItemModel();
  if (model == nullptr) return;
  SetIsChecked(model->ToggleCheckState());
  if (CDQCheckBoxTreeItem* const parent = Parent()) parent->UpdateCheckBox();
}

// ---- What a person does

void CDQCheckBoxTreeItem::OnChar(UINT character, UINT repeat, UINT flags) {
  CDQTreeItemBase::OnChar(character, repeat, flags);
}

void CDQCheckBoxTreeItem::OnLButtonDown(UINT keys, CPoint point) {
  CTreeCtrl* const tree = GetTreeCtrl();
  if (tree == nullptr) return;
  const detail::Watched watched(*tree);
  const HTREEITEM self = GetHandle();
  CDQTreeItemBase::OnLButtonDown(keys, point);
  // What the press brought about may have ended the tree, or this item.
  if (!watched.IsThere() || tree->GetItemObject(self) != this) return;
  UINT flags = 0;
  if (tree->HitTest(point, &flags) == self && (flags & TVHT_ONITEMSTATEICON) != 0) {
    ToggleCheckBox();
  }
}

}  // namespace dq
