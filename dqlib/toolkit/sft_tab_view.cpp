#include "dqlib/toolkit/sft_tab_view.h"

#include <algorithm>
#include <memory>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

namespace {

/// Pixels of the edge around a view.
constexpr int kEdge = 2;

}  // namespace

IMPLEMENT_DYNCREATE(CViewTabControl, CSftTabs)
IMPLEMENT_DYNCREATE(CDQSftTabView, CView)

CDQSftTabView::CDQSftTabView() = default;

CDQSftTabView::~CDQSftTabView() { EndInDestructor(); }

// ---- Tabs

int CDQSftTabView::addTabView(const CRuntimeClass* view_class, CDocument* document,
                              const char* label, bool border, bool show, int data) {
  if (GetSafeHwnd() == nullptr) return -1;
  const CTabData tab(label, m_tabs.GetStyle());
  auto info = std::make_unique<CTabInfo>(label, tab.m_cMnemonic, data);
  const int index = getTabCount();
  info->delayCreation(view_class, document, this, border, index);
  m_arrTabs.Add(info.get());
  static_cast<void>(info.release());
  m_tabs.AddTab(tab.m_strLabel.c_str(), tab.m_nFlags);
  if (show) switchTab(index, true);
  return index;
}

CView* CDQSftTabView::createTabView(const CRuntimeClass* view_class, CDocument* document,
                                    const char* label, bool border, bool show, int data) {
  const Watched self(*this);
  const int index = addTabView(view_class, document, label, border, false, data);
  CView* const view = getView(index);
  const HWND handle = view == nullptr ? nullptr : view->GetSafeHwnd();
  if (view != nullptr && self.IsThere() && show) switchTab(index, true);
  return FromHandle(handle) == view ? view : nullptr;
}

CView* CDQSftTabView::getView(int index) {
  return Has(index) ? m_arrTabs[index]->getView(true, m_rectChild, !m_bComplete) : nullptr;
}

const CTabInfo* CDQSftTabView::GetTabInfo(int index) const {
  return Has(index) ? m_arrTabs[index] : nullptr;
}

CView* CDQSftTabView::GetCurrentView() const {
  return Has(m_nCurrentTab) ? m_arrTabs[m_nCurrentTab]->GetExistingView() : nullptr;
}

CWnd* CDQSftTabView::GetActivePane() const {
  CView* const current = GetCurrentView();
  const CFrameWnd* const frame = GetParentFrame();
  const CView* const active = frame == nullptr ? nullptr : frame->GetActiveView();
  if (current == nullptr || active == nullptr) return nullptr;
  return active == current || current->IsChild(active) ? current : nullptr;
}

void CDQSftTabView::SetTabStyle(int style) {
  m_tabs.SetStyle(style);
  for (int at = 0; at < getTabCount(); ++at) {
    m_tabs.SetTabLabel(at, CTabData(m_arrTabs[at]->GetLabel(), style).m_strLabel.c_str());
  }
  ResizeChildren(true);
}

void CDQSftTabView::enableView(int index, bool enable) { m_tabs.EnableTab(index, enable); }

void CDQSftTabView::SetTabLabel(int index, const char* label) {
  if (!Has(index)) return;
  const CTabData tab(label, m_tabs.GetStyle());
  m_arrTabs[index]->SetLabel(label, tab.m_cMnemonic);
  m_tabs.SetTabLabel(index, tab.m_strLabel.c_str());
}

void CDQSftTabView::switchTab(int index, bool activate) {
  if (!Has(index) || GetSafeHwnd() == nullptr) return;
  const Watched self(*this);
  CView* const view = getView(index);
  if (view == nullptr || !self.IsThere()) return;
  const HWND handle = view->GetSafeHwnd();
  CView* const former = GetCurrentView();
  activate = activate || GetActivePane() != nullptr;
  m_tabs.SetCurSel(index);
  m_nCurrentTab = index;
  if (former != view) {
    if (former != nullptr) former->ShowWindow(SW_HIDE);
    if (!self.IsThere()) return;
    ResizeChildren(true);
    if (!self.IsThere()) return;
    // A handler may have gone on to another tab.
    if (m_nCurrentTab == index && FromHandle(handle) == view) view->ShowWindow(SW_SHOW);
  }
  if (activate && self.IsThere() && m_nCurrentTab == index) Activate(handle);
  if (former != view && self.IsThere()) SendMessage(kViewChanged);
}

/// A view becomes the frame's active one and gets the focus.
void CDQSftTabView::Activate(HWND view) {
  CWnd* const window = FromHandle(view);
  CView* const activated = DYNAMIC_DOWNCAST(CView, window);
  if (activated == nullptr) return;
  if (CFrameWnd* const frame = GetParentFrame()) frame->SetActiveView(activated);
  if (FromHandle(view) != activated) return;
  // Another window keeps the focus, if that is the active one.
  const CWnd* const active = GetActiveWindow();
  const bool can_focus = active == nullptr || active == activated->GetTopLevelParent();
  if (can_focus) activated->SetFocus();
}

// ---- Their place and look

bool CDQSftTabView::HasInnerBorder() const {
  return Has(m_nCurrentTab) && m_arrTabs[m_nCurrentTab]->HasBorder();
}

void CDQSftTabView::ResizeChildren(bool repaint) {
  if (GetSafeHwnd() == nullptr) return;
  const Watched self(*this);
  const CRect client = GetClientRect();
  const bool below = CSftTabs::LiesBelow(m_tabs.GetStyle());
  const LONG height = std::min<LONG>(m_tabs.GetWantedHeight(), client.bottom);
  CRect strip = client;
  m_rectChild = client;
  if (below) {
    m_rectChild.bottom = strip.top = client.bottom - height;
  } else {
    m_rectChild.top = strip.bottom = height;
  }
  if (HasInnerBorder()) {
    const LONG x = std::min<LONG>(kEdge, m_rectChild.Width() / 2);
    const LONG y = std::min<LONG>(kEdge, m_rectChild.Height() / 2);
    m_rectChild = {m_rectChild.left + x, m_rectChild.top + y, m_rectChild.right - x,
                   m_rectChild.bottom - y};
  }
  m_tabs.MoveWindow(strip, repaint);
  if (!self.IsThere()) return;
  if (CView* const view = GetCurrentView()) view->MoveWindow(m_rectChild, repaint);
  if (self.IsThere() && repaint) Invalidate();
}

void CDQSftTabView::PaintInnerBorder(CDC* dc) {
  if (dc == nullptr || !HasInnerBorder()) return;
  dc->DrawEdge({m_rectChild.left - kEdge, m_rectChild.top - kEdge, m_rectChild.right + kEdge,
                m_rectChild.bottom + kEdge},
               EDGE_SUNKEN, BF_RECT);
}

void CDQSftTabView::OnDraw(CDC* dc) {
  dc->FillSolidRect(GetClientRect(), GetBkColor());
  PaintInnerBorder(dc);
}

COLORREF CDQSftTabView::GetColor(Color which, int system_color) const {
  const CBrush& brush = m_brushes[which];
  return brush.IsCreated() ? brush.color() : GetSysColor(system_color);
}

void CDQSftTabView::SetColor(Color which, COLORREF color) {
  m_brushes[which].CreateSolidBrush(color);
  ColorTabs();
}

void CDQSftTabView::SetColors(COLORREF background, COLORREF tab_background, COLORREF tab_text,
                              COLORREF highlight_background, COLORREF highlight_text) {
  m_brushes[kBk].CreateSolidBrush(background);
  m_brushes[kTabBk].CreateSolidBrush(tab_background);
  m_brushes[kTabText].CreateSolidBrush(tab_text);
  m_brushes[kTabBkHighlight].CreateSolidBrush(highlight_background);
  m_brushes[kTabTextHighlight].CreateSolidBrush(highlight_text);
  ColorTabs();
}

/// Tells the tabs what their colours are.
void CDQSftTabView::ColorTabs() {
  const auto color = [this](Color which) {
    const CBrush& brush = m_brushes[which];
    return brush.IsCreated() ? std::optional(brush.color()) : std::nullopt;
  };
  m_tabs.SetColors({.background = color(kTabBk),
                    .text = color(kTabText),
                    .highlight_background = color(kTabBkHighlight),
                    .highlight_text = color(kTabTextHighlight)},
                   color(kBk));
  if (GetSafeHwnd() != nullptr) Invalidate();
}

// ---- A person

void CDQSftTabView::OnTabWished() {
  const int wished = m_tabs.GetWished();
  const Watched self(*this);
  const bool agreed = OnTabChanging(wished);
  if (self.IsThere() && agreed && Has(wished)) OnTabChange(wished);
}

bool CDQSftTabView::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  if (key.message == WM_COMMAND && key.code == CSftTabs::kTabWished &&
      key.id == static_cast<UINT>(kTabsId)) {
    if (!arguments.only_ask) OnTabWished();
    return true;
  }
  return CView::CallMapped(key, arguments);
}

/// A person wishes for the next tab with the mnemonic, from the current one on; false if there is
/// none.
bool CDQSftTabView::GoToMnemonic(char character) {
  const std::string upper = multi_byte::Upper({&character, 1});
  if (upper.size() != 1 || upper.front() == 0) return false;
  const int count = getTabCount();
  for (int step = 1; step <= count; ++step) {
    const int at = (m_nCurrentTab + step + count) % count;
    if (m_arrTabs[at]->GetMnemonic() != upper.front() || !m_tabs.IsTabEnabled(at)) continue;
    m_tabs.Choose(at);
    return true;
  }
  return false;
}

BOOL CDQSftTabView::PreTranslateMessage(MSG* message) {
  if (message->message == WM_SYSCHAR && message->wParam < 0x100 &&
      GoToMnemonic(static_cast<char>(message->wParam))) {
    return 1;
  }
  return CView::PreTranslateMessage(message);
}

void CDQSftTabView::OnTurnTo(CWnd& window) {
  CView* const current = GetCurrentView();
  CWnd* nearest = &window;
  while (nearest != nullptr && !nearest->IsKindOf(RUNTIME_CLASS(CView))) {
    nearest = nearest->GetParent();
  }
  if (nearest == this && current != nullptr) {
    Activate(current->GetSafeHwnd());
  } else {
    CView::OnTurnTo(window);
  }
}

LRESULT CDQSftTabView::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE: {
      if (CView::DefWindowProc(message, wparam, lparam) == -1) return -1;
      if (!m_tabs.CreateWnd({.class_name = "TabStrip", .parent = this, .id = kTabsId})) return -1;
      m_nCurrentTab = -1;
      m_bComplete = false;
      ResizeChildren(false);
      return 0;
    }
    case WM_INITIALUPDATE: {
      const Watched self(*this);
      const LRESULT answer = CView::DefWindowProc(message, wparam, lparam);
      // Views that there are by now are brought up to date with the frame.
      if (self.IsThere()) m_bComplete = true;
      return answer;
    }
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) ResizeChildren(true);
      return 0;
    case WM_SETFOCUS:
      if (CView* const current = GetCurrentView()) {
        current->SetFocus();
        return 0;
      }
      return CView::DefWindowProc(message, wparam, lparam);
    default:
      return CView::DefWindowProc(message, wparam, lparam);
  }
}

}  // namespace dq
