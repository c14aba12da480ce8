#include "dqlib/framework/controls/workbook.h"

#include <algorithm>

#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNCREATE(SECWorkbook, CMDIFrameWnd)
IMPLEMENT_DYNCREATE(SECWorksheetWnd, CMDIChildWnd)

SECWorkbook::SECWorkbook() { m_tabs.SetStyle(kTabsFlatBelow); }

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
  if (sheet == nullptr || sheet->GetSafeHwnd() == nullptr) return -1;
  const auto data = reinterpret_cast<std::uintptr_t>(sheet->GetSafeHwnd());
  for (int at = 0; at < GetSheetCount(); ++at) {
    if (m_tabs.GetTabData(at) == data) return at;
  }
  return -1;
}

SECWorksheetWnd* SECWorkbook::GetSheet(int index) const {
  CWnd* const window = FromHandle(reinterpret_cast<HWND>(m_tabs.GetTabData(index)));
  return DYNAMIC_DOWNCAST(SECWorksheetWnd, window);
}

void SECWorkbook::AddSheet(SECWorksheetWnd* sheet) {
  if (sheet == nullptr || sheet->GetWorkbook() != this || FindSheet(sheet) >= 0) return;
  const int index = m_tabs.AddTab(sheet->GetWindowText());
  m_tabs.SetTabData(index, reinterpret_cast<std::uintptr_t>(sheet->GetSafeHwnd()));
}

void SECWorkbook::RemoveSheet(SECWorksheetWnd* sheet) { m_tabs.DeleteTab(FindSheet(sheet)); }

void SECWorkbook::InvalidateTab(SECWorksheetWnd* sheet) {
  m_tabs.InvalidateRect(m_tabs.GetTabRect(FindSheet(sheet)));
}

/// Brings the tab to what the sheet is now.
void SECWorkbook::UpdateTab(const SECWorksheetWnd& sheet) {
  const int index = FindSheet(&sheet);
  if (index < 0) return;
  m_tabs.SetTabLabel(index, sheet.GetWindowText());
  if (m_tabs.IsTabEnabled(index) != sheet.IsShown()) m_tabs.EnableTab(index, sheet.IsShown());
  const bool is_active = MDIGetActive() == &sheet;
  if (is_active != (m_tabs.GetCurSel() == index)) m_tabs.SetCurSel(is_active ? index : -1);
}

// ---- The frame

void SECWorkbook::LayOutView(const CRect& room) {
  CRect rest = room;
  const Watched self(*this);
  if (m_bWorkbookMode && m_tabs.GetSafeHwnd() != nullptr) {
    rest.bottom = std::max<LONG>(room.top, room.bottom - m_tabs.GetWantedHeight());
    m_tabs.MoveWindow({room.left, rest.bottom, room.right, room.bottom});
    if (!self.IsThere()) return;
  }
  CMDIFrameWnd::LayOutView(rest);
}

bool SECWorkbook::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  if (key.message != WM_COMMAND || key.code != CSftTabs::kTabWished ||
      key.id != static_cast<UINT>(kSheetTabsId)) {
    return CMDIFrameWnd::CallMapped(key, arguments);
  }
  if (!arguments.only_ask) {
    if (SECWorksheetWnd* const sheet = GetSheet(m_tabs.GetWished())) sheet->MDIActivate();
  }
  return true;
}

LRESULT SECWorkbook::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE: {
      const bool made = m_tabs.CreateWnd({.class_name = "TabStrip",
                                          .parent = this,
                                          .id = kSheetTabsId,
                                          .visible = m_bWorkbookMode});
      return made ? CMDIFrameWnd::DefWindowProc(message, wparam, lparam) : -1;
    }
    case WM_DESTROY:
      // Sheets that end with it needn't be looked for.
      m_tabs.DeleteAllTabs();
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
