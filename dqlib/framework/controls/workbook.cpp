#include "dqlib/framework/controls/workbook.h"

#include <algorithm>

#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNCREATE(SECWorkbook, CMDIFrameWnd)
IMPLEMENT_DYNCREATE(SECWorksheetWnd, CMDIChildWnd)

SECWorkbook::SECWorkbook() { m_tabs.SetAtBottom(true); }

SECWorkbook::~SECWorkbook() { EndInDestructor(); }

void SECWorkbook::SetWorkbookMode(bool workbook) {
  if (workbook == m_bWorkbookMode) return;
  m_bWorkbookMode = workbook;
  if (GetSafeHwnd() == nullptr) return;
  const Watched self(*this);
  m_tabs.ShowWindow(workbook ? SW_SHOWNA : SW_HIDE);
  if (self.IsThere()) RecalcLayout();
}

// ---- Sheets

int SECWorkbook::FindSheet(const SECWorksheetWnd* sheet) const {
  return sheet == nullptr ? -1 : m_tabs.FindTab(sheet->GetSafeHwnd());
}

SECWorksheetWnd* SECWorkbook::GetSheet(int index) const {
  CWnd* const window = m_tabs.GetTabWindow(index);
  return DYNAMIC_DOWNCAST(SECWorksheetWnd, window);
}

void SECWorkbook::AddSheet(SECWorksheetWnd* sheet) {
  if (sheet == nullptr || sheet->GetWorkbook() != this || FindSheet(sheet) >= 0) return;
  m_tabs.InsertTab(m_tabs.GetTabCount(), sheet->GetWindowText(), sheet->GetSafeHwnd());
}

void SECWorkbook::RemoveSheet(SECWorksheetWnd* sheet) { m_tabs.RemoveTab(FindSheet(sheet)); }

void SECWorkbook::InvalidateTab(SECWorksheetWnd* sheet) {
  m_tabs.InvalidateRect(m_tabs.GetTabRect(FindSheet(sheet)));
}

/// Brings the tab to what the sheet is now.
void SECWorkbook::UpdateTab(const SECWorksheetWnd& sheet) {
  const int index = FindSheet(&sheet);
  if (index < 0) return;
  if (m_tabs.GetTabLabel(index) != sheet.GetWindowText()) {
    m_tabs.SetTabLabel(index, sheet.GetWindowText());
  }
  const bool is_active = MDIGetActive() == &sheet;
  if (is_active == (m_tabs.GetActiveTab() == index)) return;
  m_tabs.ActivateTab(is_active ? index : -1);
  if (is_active) m_tabs.ScrollToTab(index);
}

/// A person has turned to a tab: its sheet is to be the active one, or the tab of the one that
/// stays is it again.
void SECWorkbook::OnTabActivated() {
  SECWorksheetWnd* const sheet = GetSheet(m_tabs.GetActiveTab());
  if (sheet == nullptr) return;
  const Watched self(*this);
  const HWND handle = sheet->GetSafeHwnd();
  if (!sheet->IsShown()) sheet->ShowWindow(SW_SHOW);
  if (self.IsThere() && FromHandle(handle) == sheet) MDIActivate(sheet);
  if (!self.IsThere()) return;
  const CMDIChildWnd* const active = MDIGetActive();
  m_tabs.ActivateTab(active == nullptr ? -1 : m_tabs.FindTab(active->GetSafeHwnd()));
}

// ---- The frame

void SECWorkbook::LayOutView(const CRect& room) {
  CRect rest = room;
  const Watched self(*this);
  if (m_bWorkbookMode && m_tabs.GetSafeHwnd() != nullptr) {
    rest.bottom = std::max<LONG>(room.top, room.bottom - m_tabs.GetIdealHeight());
    m_tabs.MoveWindow({room.left, rest.bottom, room.right, room.bottom});
    if (!self.IsThere()) return;
  }
  CMDIFrameWnd::LayOutView(rest);
}

bool SECWorkbook::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  if (key.message != WM_COMMAND || key.code != SEC3DTabControl::kTabActivated ||
      key.id != static_cast<UINT>(kSheetTabsId)) {
    return CMDIFrameWnd::CallMapped(key, arguments);
  }
  if (!arguments.only_ask) OnTabActivated();
  return true;
}

LRESULT SECWorkbook::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE: {
      if (!m_tabs.Create(this, kSheetTabsId)) return -1;
      if (!m_bWorkbookMode) m_tabs.ShowWindow(SW_HIDE);
      return CMDIFrameWnd::DefWindowProc(message, wparam, lparam);
    }
    case WM_DESTROY:
      // Sheets that end with it needn't be looked for.
      while (m_tabs.GetTabCount() > 0) m_tabs.RemoveTab(m_tabs.GetTabCount() - 1);
      break;
    default:
      break;
  }
  return CMDIFrameWnd::DefWindowProc(message, wparam, lparam);
}

// ---- Sheets themselves

SECWorksheetWnd::~SECWorksheetWnd() { EndInDestructor(); }

SECWorkbook* SECWorksheetWnd::GetWorkbook() const {
  CMDIFrameWnd* const frame = GetMDIFrame();
  return DYNAMIC_DOWNCAST(SECWorkbook, frame);
}

void SECWorksheetWnd::OnTextWasSet() {
  CMDIChildWnd::OnTextWasSet();
  if (SECWorkbook* const workbook = GetWorkbook()) workbook->UpdateTab(*this);
}

LRESULT SECWorksheetWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  SECWorkbook* const workbook = GetWorkbook();
  if (workbook == nullptr) return CMDIChildWnd::DefWindowProc(message, wparam, lparam);
  switch (message) {
    case WM_CREATE:
      workbook->AddSheet(this);
      break;
    case WM_DESTROY:
      workbook->RemoveSheet(this);
      break;
    case WM_MDIACTIVATE:
    case WM_SHOWWINDOW:
      workbook->UpdateTab(*this);
      break;
    default:
      break;
  }
  return CMDIChildWnd::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
