#include "dqlib/toolkit/flex_tab.h"

#include <utility>

#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/resources/menus.h"
#include "dqlib/toolkit/cool_menu.h"
#include "dqlib/toolkit/tab_rename_dlg.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDQFlexTab, SEC3DTabWnd)

using detail::Watched;

namespace {

CDocument* DocumentOf(CWnd* window) {
  const CView* const view = DYNAMIC_DOWNCAST(CView, window);
  return view == nullptr ? nullptr : view->GetDocument();
}

}  // namespace

unsigned long CDQFlexTab::g_dwTabStyleOnShow = static_cast<unsigned long>(-1);

CDQFlexTab::CDQFlexTab() : SEC3DTabWnd(std::make_unique<CDQFlexTabCtrl>()) {}

CDQFlexTab::~CDQFlexTab() { EndInDestructor(); }

CDQFlexTabCtrl& CDQFlexTab::GetFlexTabCtrl() {
  return static_cast<CDQFlexTabCtrl&>(GetTabControl());
}

const CDQFlexTabCtrl& CDQFlexTab::GetFlexTabCtrl() const {
  return static_cast<const CDQFlexTabCtrl&>(GetTabControl());
}

void CDQFlexTab::SetTabDragable(int index, bool dragable) {
  GetFlexTabCtrl().SetTabDragable(index, dragable);
}

bool CDQFlexTab::IsTabDragable(int index) const { return GetFlexTabCtrl().IsTabDragable(index); }

void CDQFlexTab::SetTabClosable(int index, bool closable) {
  GetFlexTabCtrl().SetTabClosable(index, closable);
}

bool CDQFlexTab::IsTabClosable(int index) const { return GetFlexTabCtrl().IsTabClosable(index); }

void CDQFlexTab::OnTabsShift(int index, int by) {
  m_nContextTab = detail::ShiftedIndex(m_nContextTab, index, by);
}

void CDQFlexTab::OnTabActivated() {
  if (CFrameWnd* const frame = GetParentFrame()) frame->OnUpdateFrameTitle(true);
}

// ---- Tabs come and go

bool CDQFlexTab::AddFlexTab(const CRuntimeClass* window_class, const char* label,
                            CCreateContext* context, UINT icon, bool activate) {
  return AddFlexTabEx(window_class, label, context, icon, activate, nullptr);
}

bool CDQFlexTab::AddFlexTabEx(const CRuntimeClass* window_class, const char* label,
                              CCreateContext* context, UINT icon, bool activate,
                              const GUID* extra) {
  return InsertFlexTabEx(GetTabCount(), window_class, label, context, icon, activate, extra);
}

bool CDQFlexTab::InsertFlexTab(int index, const CRuntimeClass* window_class, const char* label,
                               CCreateContext* context, UINT icon, bool activate) {
  return InsertFlexTabEx(index, window_class, label, context, icon, activate, nullptr);
}

bool CDQFlexTab::InsertFlexTabEx(int index, const CRuntimeClass* window_class, const char* label,
                                 CCreateContext* context, UINT icon, bool activate,
                                 const GUID* extra) {
  const Watched self(*this);
  const int inserted = InsertTab(index, window_class, label, context);
  if (inserted < 0) return false;
  GetTabControl().SetTabIcon(inserted, icon);
  GetTabControl().SetTabExtra(inserted, extra);
  if (activate && !ActivateNewTab(inserted)) return false;
  if (!self.IsThere()) return false;
  ShowTabs(GetTabCount() > 1);
  return self.IsThere();
}

bool CDQFlexTab::ActivateNewTab(int index) {
  CWnd* const window = GetWindow(index);
  if (window == nullptr) {
    CloseFlexTab(index, true);
    return false;
  }
  const Watched self(*this);
  const Watched made(*window);
  if (window->IsKindOf(RUNTIME_CLASS(CView))) window->SendMessage(WM_INITIALUPDATE);
  const auto find = [&] {
    return self.IsThere() && made.IsThere() ? FindTabAgain(window->GetSafeHwnd(), index) : -1;
  };
  if (const int now = find(); now >= 0) ActivateTab(now);
  return find() >= 0;
}

/// The tab of a window, which was `before` until handlers were called; -1 if they have taken it
/// out.
int CDQFlexTab::FindTabAgain(HWND window, int before) const {
  const SEC3DTabControl& strip = GetTabControl();
  return strip.GetTabHandle(before) == window ? before : strip.FindTab(window);
}

bool CDQFlexTab::CloseFlexTab(int index, bool force) {
  if (!GetTabControl().HasTab(index) || (!force && !IsTabClosable(index))) return false;
  const Watched self(*this);
  const HWND handle = GetTabControl().GetTabHandle(index);
  CWnd* const window = GetWindow(index);
  if (CDocument* const document = DocumentOf(window)) {
    if (!document->CanCloseFrame(GetParentFrame())) return false;
  }
  if (window != nullptr && self.IsThere()) EndTabWindow(handle);
  if (!self.IsThere()) return true;
  RemoveTab(FindTabAgain(handle, index));
  if (self.IsThere() && GetTabCount() == 1) ShowTabs(false);
  if (self.IsThere()) RecalcLayout();
  return true;
}

void CDQFlexTab::CloseAllFlexTabs() {
  const Watched self(*this);
  // Who gives up the changes of a document does so once, for all of its tabs.
  const detail::Closing closing;
  for (int tab = GetTabCount() - 1; self.IsThere() && tab >= 0; --tab) CloseFlexTab(tab, false);
}

// ---- What a tab is

bool CDQFlexTab::GetAttributes(int index, CString& label, UINT& icon, CWnd*& window,
                               const CRuntimeClass*& window_class, CDocument*& document) const {
  if (!GetTabControl().HasTab(index)) return false;
  label = GetLabel(index);
  icon = GetTabIcon(index);
  window = GetWindow(index);
  window_class = window == nullptr ? nullptr : window->GetRuntimeClass();
  document = DocumentOf(window);
  return true;
}

bool CDQFlexTab::GetAttributesEx(int index, CString& label, UINT& icon, CWnd*& window,
                                 const CRuntimeClass*& window_class, CDocument*& document,
                                 const GUID*& extra) const {
  if (!GetAttributes(index, label, icon, window, window_class, document)) return false;
  extra = GetExtraPtr(index);
  return true;
}

// ---- The strip

void CDQFlexTab::ShowTabs(bool show) {
  SECTabSizes sizes;
  if (show != m_bTabsShown) {
    if (show) {
      sizes = m_savedSizes;
      const DWORD style = static_cast<DWORD>(g_dwTabStyleOnShow);
      if (style != 0xFFFFFFFF && !m_bIgnoreGlobalStyle) sizes.style = style;
    } else {
      m_savedSizes = GetTabSizes();
    }
    m_bTabsShown = show;
    SetTabSizes(sizes);
  } else {
    RecalcLayout();
  }
}

LRESULT CDQFlexTab::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_CREATE) return SEC3DTabWnd::DefWindowProc(message, wparam, lparam);
  // It is made with its strip in sight.
  const bool hidden = !std::exchange(m_bTabsShown, true);
  const Watched self(*this);
  const LRESULT answer = SEC3DTabWnd::DefWindowProc(message, wparam, lparam);
  if (answer == 0 && hidden && self.IsThere()) ShowTabs(false);
  return answer;
}

// ---- The context menu

bool CDQFlexTab::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      MessageEntry<&CDQFlexTab::OnContextMenu>(WM_CONTEXTMENU),
      MessageEntry<&CDQFlexTab::OnInitMenuPopup>(WM_INITMENUPOPUP),
      MessageEntry<&CDQFlexTab::OnMenuChar>(WM_MENUCHAR),
      CommandEntry<&CDQFlexTab::OnCloseTab>(ID_TAB_CLOSE),
      UpdateEntry<&CDQFlexTab::OnUpdateCloseTab>(ID_TAB_CLOSE),
      CommandEntry<&CDQFlexTab::OnCloseAllTabs>(ID_TAB_CLOSE_ALL),
      CommandEntry<&CDQFlexTab::OnRenameTab>(ID_TAB_RENAME),
      UpdateEntry<&CDQFlexTab::OnUpdateRenameTab>(ID_TAB_RENAME),
  };
  return CallEntry(kEntries, *this, key, arguments) || SEC3DTabWnd::CallMapped(key, arguments);
}

LRESULT CDQFlexTab::OnContextMenu(WPARAM window, LPARAM point) {
  const SEC3DTabControl& strip = GetTabControl();
  CPoint at = PointOfParam(point);
  int tab = -1;
  if (point == -1 || at == CPoint{-1, -1}) {
    // By the key, for the tab that it would go on from.
    if (GetFocus() != &strip) return DefWindowProc(WM_CONTEXTMENU, window, point);
    tab = strip.GetActiveTab();
    const CRect rect = strip.GetTabRect(tab);
    at = strip.ClientToScreen({rect.left, rect.bottom});
  } else {
    const CPoint inside = strip.ScreenToClient(at);
    if (!strip.IsWindowVisible() || !strip.GetClientRect().PtInRect(inside)) {
      return DefWindowProc(WM_CONTEXTMENU, window, point);
    }
    tab = strip.HitTest(inside);
  }
  if (!strip.HasTab(tab)) return 0;
  m_nContextTab = tab;
  CDQCoolMenu menu;
  if (!menu.Coolify(IDM_TAB_WINDOW, true)) return 0;
  if (CDQCoolMenu* const popup = menu.GetCoolSubMenu(0)) {
    popup->TrackPopupMenu(TPM_LEFTALIGN | TPM_RIGHTBUTTON, at.x, at.y, this);
  }
  return 0;
}

LRESULT CDQFlexTab::OnInitMenuPopup(WPARAM menu, LPARAM) {
  CMenu* const dropped = CMenu::FromHandle(reinterpret_cast<HMENU>(menu));
  if (dropped != nullptr) dropped->UpdateItems(*this, true, false);
  return 0;
}

LRESULT CDQFlexTab::OnMenuChar(WPARAM key, LPARAM menu) {
  CMenu* const open = CMenu::FromHandle(reinterpret_cast<HMENU>(menu));
  const LRESULT answer = CDQCoolMenu::OnMenuChar(LoWord(key), HiWord(key), open);
  return answer != 0 ? answer : DefWindowProc(WM_MENUCHAR, key, menu);
}

void CDQFlexTab::OnCloseTab() { CloseFlexTab(m_nContextTab, false); }

void CDQFlexTab::OnUpdateCloseTab(CCmdUI* ui) { ui->Enable(IsTabClosable(m_nContextTab)); }

void CDQFlexTab::OnCloseAllTabs() { CloseAllFlexTabs(); }

void CDQFlexTab::OnUpdateRenameTab(CCmdUI* ui) {
  ui->Enable(GetTabControl().HasTab(m_nContextTab));
}

void CDQFlexTab::OnRenameTab() {
  if (!GetTabControl().HasTab(m_nContextTab)) return;
  CTabRenameDlg dialog(this);
  dialog.m_strLabel = GetLabel(m_nContextTab);
  const Watched self(*this);
  // The tab may go while it is asked for.
  if (dialog.DoModal() != IDOK || !self.IsThere()) return;
  const int tab = m_nContextTab;
  SetLabel(tab, dialog.m_strLabel);
  if (CDocument* const document = DocumentOf(GetWindow(tab))) {
    document->SetTitle(dialog.m_strLabel);
  }
}

}  // namespace dq
