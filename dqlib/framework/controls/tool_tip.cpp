#include "dqlib/framework/controls/tool_tip.h"

namespace dq {

IMPLEMENT_DYNAMIC(CToolTipCtrl, CWnd)

bool CToolTipCtrl::Create(CWnd* parent) {
  CWnd* const owner = parent == nullptr ? nullptr : parent->GetTopLevelParent();
  return CreateWnd({.class_name = "ToolTip", .owner = owner, .visible = false});
}

bool CToolTipCtrl::AddTool(CWnd* window, const char* text) {
  const HWND tool = window == nullptr ? nullptr : window->GetSafeHwnd();
  if (tool == nullptr) return false;
  if (texts_.size() >= sweep_at_) {
    std::erase_if(texts_, [](const auto& entry) { return FromHandle(entry.first) == nullptr; });
    sweep_at_ = texts_.size() * 2 + 16;
  }
  texts_[tool] = text;
  Show(tool);
  return true;
}

bool CToolTipCtrl::AddTool(CWnd* window, UINT text_id) {
  return AddTool(window, detail::LoadText(text_id));
}

void CToolTipCtrl::DelTool(CWnd* window) {
  if (window != nullptr && texts_.erase(window->GetSafeHwnd()) > 0) window->SetToolTip({});
}

/// Puts the text of a tool where the window layer finds it.
void CToolTipCtrl::Show(HWND tool) const {
  if (CWnd* const window = FromHandle(tool)) {
    window->SetToolTip(active_ ? texts_.at(tool) : CString());
  }
}

void CToolTipCtrl::ShowAll() const {
  for (const auto& [tool, text] : texts_) Show(tool);
}

CString CToolTipCtrl::GetText(const CWnd* window) const {
  const auto found = window == nullptr ? texts_.end() : texts_.find(window->GetSafeHwnd());
  return found == texts_.end() ? CString() : found->second;
}

void CToolTipCtrl::UpdateTipText(const char* text, const CWnd* window) {
  const auto found = window == nullptr ? texts_.end() : texts_.find(window->GetSafeHwnd());
  if (found == texts_.end()) return;
  found->second = text;
  Show(found->first);
}

void CToolTipCtrl::UpdateTipText(UINT text_id, const CWnd* window) {
  UpdateTipText(detail::LoadText(text_id), window);
}

void CToolTipCtrl::Activate(bool active) {
  if (active == active_) return;
  active_ = active;
  ShowAll();
}

void CToolTipCtrl::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (const CToolTipCtrl* const tips = DYNAMIC_DOWNCAST(CToolTipCtrl, &former)) {
    texts_ = tips->texts_;
    active_ = tips->active_;
  }
}

}  // namespace dq
