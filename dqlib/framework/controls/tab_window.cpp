#include "dqlib/framework/controls/tab_window.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNCREATE(SEC3DTabWnd, CWnd)

using detail::Watched;

namespace {

/// The first view of a window, itself or below it; null if there is none.
CView* FirstView(CWnd* window) {
  CView* view = DYNAMIC_DOWNCAST(CView, window);
  CWnd* inner = window == nullptr ? nullptr : window->GetTopWindow();
  for (; view == nullptr && inner != nullptr; inner = inner->GetNextWindow()) {
    view = FirstView(inner);
  }
  return view;
}

bool IsOrHas(const CWnd& window, const CWnd* other) {
  return other == &window || window.IsChild(other);
}

}  // namespace

SEC3DTabWnd::SEC3DTabWnd() : SEC3DTabWnd(std::make_unique<SEC3DTabControl>()) {}

SEC3DTabWnd::SEC3DTabWnd(std::unique_ptr<SEC3DTabControl> control) : control_(std::move(control)) {}

SEC3DTabWnd::~SEC3DTabWnd() { EndInDestructor(); }

bool SEC3DTabWnd::Create(CWnd* parent, int id) {
  return parent != nullptr && CreateWnd({.class_name = "TabWnd", .parent = parent, .id = id});
}

/// Those of a former window.
void SEC3DTabWnd::ForgetTabs() {
  for (int last = GetTabCount() - 1; last >= 0; --last) {
    control_->RemoveTab(last);
    OnTabsShift(last, -1);
  }
  shown_ = nullptr;
  made_.clear();
}

// ---- Tabs come and go

HWND SEC3DTabWnd::MakeWindow(const CRuntimeClass* window_class, const CCreateContext* context) {
  if (window_class == nullptr) return nullptr;
  // The ids of panes are no other child's.
  const int id = kFirstPaneId + next_id_++ % (kLastPaneId - kFirstPaneId + 1);
  const Watched self(*this);
  if (window_class->IsDerivedFrom(RUNTIME_CLASS(CView))) {
    CCreateContext made = context == nullptr ? CCreateContext() : *context;
    made.m_pNewViewClass = window_class;
    CView* const view = CView::MakeView(this, {}, id, &made);
    const HWND handle = view == nullptr ? nullptr : view->GetSafeHwnd();
    if (view != nullptr) view->ShowWindow(SW_HIDE);
    return handle;
  }
  std::unique_ptr<CObject> object(window_class->CreateObject());
  CWnd* const window = DYNAMIC_DOWNCAST(CWnd, object.get());
  if (window == nullptr ||
      !window->CreateWnd({.class_name = "TabPage", .parent = this, .id = id, .visible = false})) {
    return nullptr;
  }
  const HWND handle = window->GetSafeHwnd();
  if (!self.IsThere() || handle == nullptr) return nullptr;
  static_cast<void>(object.release());
  made_.emplace(handle, window);
  return handle;
}

int SEC3DTabWnd::EnterTab(int index, HWND window, const char* label) {
  // Handlers may have taken tabs out meanwhile.
  index = std::min(index, GetTabCount());
  if (!control_->InsertTab(index, label, window)) return -1;
  OnTabsShift(index, 1);
  return index;
}

int SEC3DTabWnd::AddTab(const CRuntimeClass* window_class, const char* label,
                        const CCreateContext* context) {
  return InsertTab(GetTabCount(), window_class, label, context);
}

int SEC3DTabWnd::InsertTab(int index, const CRuntimeClass* window_class, const char* label,
                           const CCreateContext* context) {
  if (GetSafeHwnd() == nullptr || index < 0 || index > GetTabCount()) return -1;
  const CString kept(label);
  const Watched self(*this);
  const HWND window = MakeWindow(window_class, context);
  return self.IsThere() ? EnterTab(index, window, kept) : -1;
}

int SEC3DTabWnd::AddTab(CWnd* window, const char* label) {
  return InsertTab(GetTabCount(), window, label);
}

int SEC3DTabWnd::InsertTab(int index, CWnd* window, const char* label) {
  const HWND handle = window == nullptr ? nullptr : window->GetSafeHwnd();
  if (GetSafeHwnd() == nullptr || index < 0 || index > GetTabCount()) return -1;
  if (handle == nullptr || control_->FindTab(handle) >= 0) return -1;
  if (window == this || window == control_.get() || window->IsChild(this)) return -1;
  if (window->GetParent() != this) window->SetParent(this);
  if (window->GetParent() != this) return -1;
  const CString kept(label);
  const Watched self(*this);
  window->ShowWindow(SW_HIDE);
  return self.IsThere() && FromHandle(handle) != nullptr ? EnterTab(index, handle, kept) : -1;
}

bool SEC3DTabWnd::RemoveTab(int index) {
  if (!control_->HasTab(index)) return false;
  const bool was_active = index == GetActiveTab();
  const HWND window = control_->GetTabHandle(index);
  control_->RemoveTab(index);
  OnTabsShift(index, -1);
  if (!was_active) {
    HideWindow(window);
    return true;
  }
  control_->ActivateTab(std::min(index, GetTabCount() - 1));
  ShowActiveTab(false);
  return true;
}

void SEC3DTabWnd::EndTabWindow(HWND window) {
  CWnd* const ending = FromHandle(window);
  const Watched self(*this);
  if (ending != nullptr && IsChild(ending)) ending->DestroyWindow();
  if (self.IsThere()) made_.erase(window);
}

int SEC3DTabWnd::FindTab(const CWnd* window) const {
  return window == nullptr ? -1 : control_->FindTab(window->GetSafeHwnd());
}

// ---- The active tab

bool SEC3DTabWnd::ActivateTab(int index) {
  if (!control_->HasTab(index)) return false;
  if (index != GetActiveTab() || !control_->IsTabSelected(index)) control_->ActivateTab(index);
  control_->ScrollToTab(index);
  ShowActiveTab(false);
  return true;
}

void SEC3DTabWnd::OnTabChosen() { ShowActiveTab(true); }

/// The window of a tab; null if it has ended, or moved to another parent.
CWnd* SEC3DTabWnd::PageOf(HWND window) const {
  CWnd* const page = FromHandle(window);
  return page != nullptr && page->GetParent() == this ? page : nullptr;
}

void SEC3DTabWnd::HideWindow(HWND window) {
  if (CWnd* const hidden = PageOf(window)) hidden->ShowWindow(SW_HIDE);
}

/// Makes the view in a window of a tab the frame's active one. Without one no view that has been
/// hidden stays it.
void SEC3DTabWnd::MakeViewActive(CWnd* window) {
  CFrameWnd* const frame = GetParentFrame();
  if (frame == nullptr) return;
  CView* const active = frame->GetActiveView();
  if (window != nullptr && active != nullptr && IsOrHas(*window, active)) return;
  CView* const view = FirstView(window);
  if (view != nullptr || (active != nullptr && IsChild(active))) frame->SetActiveView(view);
}

void SEC3DTabWnd::ShowActiveTab(bool by_person) {
  const HWND now = control_->GetTabHandle(GetActiveTab());
  const HWND former = std::exchange(shown_, now);
  const Watched self(*this);
  // Each handler may have turned to another tab, or ended the window.
  const auto stays = [&] { return self.IsThere() && shown_ == now; };
  const auto window = [&] { return PageOf(now); };
  const CWnd* const focus = GetFocus();
  const bool had_focus = focus != nullptr && focus != control_.get() && IsOrHas(*this, focus);
  if (window() != nullptr) window()->MoveWindow(GetInsideRect());
  if (stays() && window() != nullptr) window()->ShowWindow(SW_SHOWNA);
  if (stays()) MakeViewActive(window());
  if (self.IsThere() && former != shown_) HideWindow(former);
  const bool takes_focus = stays() && window() != nullptr && (by_person || had_focus);
  if (takes_focus && !IsOrHas(*window(), GetFocus())) window()->SetFocus();
  if (stays()) OnTabActivated();
}

// ---- Layout

void SEC3DTabWnd::SetTabSizes(const SECTabSizes& sizes) {
  sizes_ = {std::max(0, sizes.height), std::max(0, sizes.margin), sizes.style};
  control_->SetMargin(sizes_.margin);
  control_->SetAtBottom((sizes_.style & TWS_TABS_ON_BOTTOM) != 0);
  RecalcLayout();
}

CRect SEC3DTabWnd::StripRect() const {
  CRect strip = GetClientRect();
  const LONG height = sizes_.style == TWS_NO_TABS ? 0 : std::min<LONG>(sizes_.height, strip.bottom);
  if ((sizes_.style & TWS_TABS_ON_BOTTOM) != 0) {
    strip.top = strip.bottom - height;
  } else {
    strip.bottom = height;
  }
  return strip;
}

CRect SEC3DTabWnd::GetInsideRect() const {
  CRect inside = GetClientRect();
  const CRect strip = StripRect();
  if ((sizes_.style & TWS_TABS_ON_BOTTOM) != 0) {
    inside.bottom = strip.top;
  } else {
    inside.top = strip.bottom;
  }
  return inside;
}

void SEC3DTabWnd::RecalcLayout() {
  if (GetSafeHwnd() == nullptr) return;
  const Watched self(*this);
  const CRect strip = StripRect();
  control_->MoveWindow(strip);
  if (self.IsThere()) control_->ShowWindow(strip.Height() > 0 ? SW_SHOWNA : SW_HIDE);
  CWnd* const window = self.IsThere() ? PageOf(shown_) : nullptr;
  if (window != nullptr) window->MoveWindow(GetInsideRect());
}

void SEC3DTabWnd::OnPaint(CDC& dc) {
  // What no window covers.
  if (PageOf(shown_) == nullptr) dc.FillSolidRect(GetInsideRect(), GetSysColor(COLOR_BTNFACE));
}

// ---- Messages

bool SEC3DTabWnd::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      ControlEntry<&SEC3DTabWnd::OnTabChosen>(SECTabControlBase::kTabActivated, kStripId),
  };
  return CallEntry(kEntries, *this, key, arguments) || CWnd::CallMapped(key, arguments);
}

LRESULT SEC3DTabWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE:
      ForgetTabs();
      if (!control_->Create(this, kStripId)) return -1;
      SetTabSizes({control_->GetIdealHeight(), SEC3DTabControl::kUsualMargin, TWS_TABS_ON_TOP});
      return 0;
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) RecalcLayout();
      return 0;
    case WM_SETFOCUS:
      if (CWnd* const window = PageOf(shown_)) window->SetFocus();
      return 0;
    case WM_COMMAND:
    case WM_NOTIFY:
      return GetParent() == nullptr ? 0 : GetParent()->SendMessage(message, wparam, lparam);
    default:
      return CWnd::DefWindowProc(message, wparam, lparam);
  }
}

}  // namespace dq
