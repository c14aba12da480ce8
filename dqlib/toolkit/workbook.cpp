#include "dqlib/toolkit/workbook.h"

#include "siblings/options/options_server.h"

namespace dq {
namespace {

/// The option "worksheet creation".
constexpr int kCreationOption = 50229;

}  // namespace

IMPLEMENT_DYNCREATE(CDQWorkbook, SECWorkbook)
IMPLEMENT_DYNCREATE(CDQWorksheet, SECWorksheetWnd)

CDQWorkbook::~CDQWorkbook() { EndInDestructor(); }

CDQWorksheet::~CDQWorksheet() { EndInDestructor(); }

void CDQWorksheet::Close() { SendMessage(WM_CLOSE); }

CDQWorkbook* CDQWorksheet::GetDQWorkbook() const {
  SECWorkbook* const workbook = GetWorkbook();
  return DYNAMIC_DOWNCAST(CDQWorkbook, workbook);
}

void CDQWorksheet::ActivateFrame(int show_command) {
  if (show_command == -1 && !IsShown() && Maximizable()) show_command = SW_SHOWMAXIMIZED;
  SECWorksheetWnd::ActivateFrame(show_command);
}

LRESULT CDQWorksheet::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_CREATE) {
    m_bMaximize = CDQOptionsServer::GetObject()->GetBool(kCreationOption);
  }
  if (message == WM_SIZE && wparam == SIZE_MAXIMIZED && !s_bEnableMaximize) {
    ShowWindow(SW_SHOWNOACTIVATE);
    return 0;
  }
  if (message == WM_MDIACTIVATE || message == WM_SHOWWINDOW) {
    CDQWorkbook* const workbook = GetDQWorkbook();
    if (workbook != nullptr && workbook->IsWorkbookMode()) workbook->InvalidateTab(this);
  }
  return SECWorksheetWnd::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
