#include "dqlib/framework/controls/tab_control_base.h"

#include <algorithm>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(SECTabControlBase, CWnd)

SECTabControlBase::~SECTabControlBase() { EndInDestructor(); }

SECTabControlBase::Tab* SECTabControlBase::Find(int index) {
  return HasTab(index) ? &tabs_[static_cast<std::size_t>(index)] : nullptr;
}

void SECTabControlBase::Tell(WindowChange change, const ChangedRange& range) {
  if (GetSafeHwnd() == nullptr) return;
  Changed(change, range);
  Invalidate();
}

void SECTabControlBase::MeasureTabs() {
  layout_.ForgetAll();
  Tell(WindowChange::kRowsChanged, {0, GetTabCount()});
}

bool SECTabControlBase::InsertTab(int index, const char* label, HWND window) {
  if (index < 0 || index > GetTabCount()) return false;
  Tab& tab = *tabs_.emplace(tabs_.begin() + index);
  tab.label = label;
  tab.window = window;
  layout_.Insert(index);
  OnTabsShift(index, 1);
  Tell(WindowChange::kRowsInserted, {index, 1});
  return true;
}

bool SECTabControlBase::RemoveTab(int index) {
  if (!HasTab(index)) return false;
  detail::TellNewRows();
  tabs_.erase(tabs_.begin() + index);
  layout_.Erase(index);
  OnTabsShift(index, -1);
  Tell(WindowChange::kRowsRemoved, {index, 1});
  return true;
}

void SECTabControlBase::OnTabsShift(int index, int by) {
  active_ = detail::ShiftedIndex(active_, index, by);
}

CString SECTabControlBase::GetTabLabel(int index) const {
  return HasTab(index) ? TabAt(index).label : CString();
}

bool SECTabControlBase::SetTabLabel(int index, const char* label) {
  Tab* const tab = Find(index);
  if (tab == nullptr) return false;
  tab->label = label;
  layout_.Forget(index);
  Tell(WindowChange::kRowsChanged, {index, 1});
  return true;
}

UINT SECTabControlBase::GetTabIcon(int index) const {
  return HasTab(index) ? TabAt(index).icon_id : 0;
}

bool SECTabControlBase::SetTabIcon(int index, UINT icon) {
  Tab* const tab = Find(index);
  if (tab == nullptr) return false;
  tab->icon_id = icon;
  tab->icon = icon == 0 ? nullptr : LoadIcon(AfxFindResourceHandle(icon, RESOURCE_ICON), icon);
  layout_.Forget(index);
  Tell(WindowChange::kRowsChanged, {index, 1});
  return true;
}

HWND SECTabControlBase::GetTabHandle(int index) const {
  return HasTab(index) ? TabAt(index).window : nullptr;
}

CWnd* SECTabControlBase::GetTabWindow(int index) const { return FromHandle(GetTabHandle(index)); }

const void* SECTabControlBase::GetTabExtra(int index) const {
  return HasTab(index) ? TabAt(index).extra : nullptr;
}

bool SECTabControlBase::SetTabExtra(int index, const void* extra) {
  Tab* const tab = Find(index);
  if (tab != nullptr) tab->extra = extra;
  return tab != nullptr;
}

int SECTabControlBase::FindTab(HWND window) const {
  if (window == nullptr) return -1;
  const auto found = std::ranges::find(tabs_, window, &Tab::window);
  return found == tabs_.end() ? -1 : static_cast<int>(found - tabs_.begin());
}

bool SECTabControlBase::GetTabInfo(int index, CString& label, bool& selected, CWnd*& window,
                                   const void*& extra) const {
  if (!HasTab(index)) return false;
  const Tab& tab = TabAt(index);
  label = tab.label;
  selected = tab.selected;
  window = FromHandle(tab.window);
  extra = tab.extra;
  return true;
}

bool SECTabControlBase::ActivateTab(int index) {
  if (index != -1 && !HasTab(index)) return false;
  if (Tab* const former = Find(active_)) former->selected = false;
  active_ = index;
  if (Tab* const tab = Find(index)) tab->selected = true;
  Tell(WindowChange::kSelection);
  return true;
}

bool SECTabControlBase::IsTabSelected(int index) const {
  return HasTab(index) && TabAt(index).selected;
}

void SECTabControlBase::SetTabSelected(int index, bool selected) {
  Tab* const tab = Find(index);
  if (tab == nullptr || tab->selected == selected) return;
  tab->selected = selected;
  Tell(WindowChange::kRowsChanged, {index, 1});
}

void SECTabControlBase::Choose(int index) {
  if (HasTab(index) && ActivateTab(index)) NotifyParent(kTabActivated);
}

}  // namespace dq
