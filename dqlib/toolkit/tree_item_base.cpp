#include "dqlib/toolkit/tree_item_base.h"

#include "dqlib/framework/controls/tree_ctrl.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQTreeItemBase, CTreeItem)

CDQTreeItemBase::CDQTreeItemBase() { m_record.SetParam(reinterpret_cast<LPARAM>(this)); }

CDQTreeItemBase::CDQTreeItemBase(CDQTreeItemModel* model) : CDQTreeItemBase() {
  m_pModel = model;
  if (model == nullptr) return;
  m_record.SetText(model->GetItemText());
  m_record.SetImage(model->GetImage());
  m_record.SetSelectedImage(model->GetSelectedImage());
}

CDQTreeItemBase::~CDQTreeItemBase() {
  // All rows below go with this one, before the items below.
  if (GetTreeCtrl() != nullptr) GetTreeCtrl()->DeleteItem(GetHandle());
}

void CDQTreeItemBase::UpdateItemText(const char* text) {
  GetTVITEMEX().SetText(text);
  UpdateTreeCtrl();
}

void CDQTreeItemBase::UpdateImage(int image) {
  GetTVITEMEX().SetImage(image);
  UpdateTreeCtrl();
}

void CDQTreeItemBase::UpdateSelectedImage(int image) {
  GetTVITEMEX().SetSelectedImage(image);
  UpdateTreeCtrl();
}

void CDQTreeItemBase::UpdateState(UINT state, UINT mask) {
  GetTVITEMEX().SetState(state, mask);
  UpdateTreeCtrl();
}

void CDQTreeItemBase::UpdateOverlayImage(int image) {
  UpdateState(INDEXTOOVERLAYMASK(image), TVIS_OVERLAYMASK);
}

void CDQTreeItemBase::UpdateStateImage(int image) {
  UpdateState(INDEXTOSTATEIMAGEMASK(image), TVIS_STATEIMAGEMASK);
}

void CDQTreeItemBase::UpdateTreeCtrl() {
  if (GetTreeCtrl() == nullptr) return;
  CTreeViewItemEx& record = GetTVITEMEX();
  record.SetItem(GetHandle());
  GetTreeCtrl()->SetItem(record);
}

BOOL CDQTreeItemBase::HandleChildNotify(UINT message, WPARAM wparam, LPARAM lparam,
                                        LRESULT* result) {
  return OnChildNotify(message, wparam, lparam, result);
}

BOOL CDQTreeItemBase::OnChildNotify(UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/,
                                    LRESULT* /*result*/) {
  return 0;
}

}  // namespace dq
