#include "dqlib/toolkit/child_dialog.h"

#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQChildDialog, CDQDialog)

std::optional<DialogTemplate> CDQChildDialog::MakeTemplate() {
  return FindDialogTemplate(GetTemplateId());
}

bool CDQChildDialog::CreateIn(CWnd* parent, int site_id) {
  if (GetSafeHwnd() != nullptr) return true;
  if (parent == nullptr) return false;
  const CDQSwitchResourceHandle scope(ResourceModule());
  const std::optional<DialogTemplate> pattern = MakeTemplate();
  if (!pattern || !CreateIndirect(*pattern, parent, true)) return false;
  CWnd* const site = parent->GetDlgItem(site_id);
  if (site == nullptr) return true;
  const detail::Watched self(*this);
  const detail::Watched beside(*site);
  MoveWindow(site->GetPlace());
  if (self.IsThere() && beside.IsThere()) SetWindowOrder(site);
  return self.IsThere();
}

bool CDQChildDialog::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandRangeEntry<&CDQChildDialog::OnCloseParent>(IDOK, IDCANCEL),
  };
  return CallEntry(kEntries, *this, key, arguments) || CDQDialog::CallMapped(key, arguments);
}

void CDQChildDialog::OnCloseParent(UINT id) {
  if (CWnd* const parent = GetParent()) parent->SendMessage(WM_COMMAND, id);
}

int CDQChildDialogCollection::Add(CDQChildDialog& child) {
  m_children.push_back(&child);
  return GetSize() - 1;
}

CDQChildDialog* CDQChildDialogCollection::GetAt(int index) const {
  return index >= 0 && index < GetSize() ? m_children[static_cast<std::size_t>(index)] : nullptr;
}

bool CDQChildDialogCollection::CreateAll(CWnd* parent, int site_id) {
  for (CDQChildDialog* const child : m_children) {
    if (!child->CreateIn(parent, site_id)) return false;
  }
  return true;
}

bool CDQChildDialogCollection::Show(int index) {
  CDQChildDialog* const wanted = GetAt(index);
  if (index != -1 && (wanted == nullptr || wanted->GetSafeHwnd() == nullptr)) return false;
  // The former one goes first, so that no two are ever seen.
  for (CDQChildDialog* const child : m_children) {
    const detail::Watched self(*child);
    if (child != wanted) child->ShowWindow(SW_HIDE);
    if (!self.IsThere()) return false;
  }
  if (wanted != nullptr) {
    const detail::Watched self(*wanted);
    wanted->ShowWindow(SW_SHOW);
    if (!self.IsThere()) return false;
  }
  m_nShown = index;
  return true;
}

bool CDQChildDialogCollection::ShowById(UINT template_id) {
  for (int at = 0; at < GetSize(); ++at) {
    if (GetAt(at)->GetTemplateId() == template_id) return Show(at);
  }
  return false;
}

bool CDQChildDialogCollection::UpdateData(bool save) {
  if (save) {
    CDQChildDialog* const shown = GetAt(m_nShown);
    return shown == nullptr || shown->UpdateData(1) != 0;
  }
  bool moved = true;
  for (CDQChildDialog* const child : m_children) {
    const detail::Watched self(*child);
    if (child->GetSafeHwnd() != nullptr) moved = child->UpdateData(0) != 0 && moved;
    if (!self.IsThere()) return false;
  }
  return moved;
}

void CDQChildDialogCollection::Enable(bool enable) {
  for (CDQChildDialog* const child : m_children) {
    const detail::Watched self(*child);
    child->EnableChild(enable);
    if (!self.IsThere()) return;
  }
}

}  // namespace dq
