// The exchange of values between a dialog's controls and its variables.
//
//   void CGotoDlg::DoDataExchange(CDataExchange* exchange) {
//     DDX_Text(exchange, 2766, line_);
//     DDV_MinMaxInt(exchange, line_, 1, line_count_);
//   }
//
// `CWnd::UpdateData` runs it. What controls notify the window of meanwhile, as when the focus moves
// to the one that fails, is dropped. The functions for the controls stand in
// `framework/controls/dialog_exchange.h`.

#pragma once

#include "dqlib/framework/base/exception.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

/// Ends an operation that the user has been told about already.
class CUserException : public CException {
  DECLARE_DYNAMIC(CUserException)
};

/// An operation was asked of something that doesn't have it, as a control that isn't there.
class CNotSupportedException : public CException {
  DECLARE_DYNAMIC(CNotSupportedException)
};

/// One exchange under way.
class CDataExchange {
 public:
  CDataExchange(CWnd* dialog, bool save) : m_bSaveAndValidate(save), m_pDlgWnd(dialog) {}
  CDataExchange(const CDataExchange&) = delete;
  CDataExchange& operator=(const CDataExchange&) = delete;

  /// The control with the id, which becomes the one that gets the focus if the exchange fails.
  /// Throws `CNotSupportedException` if there is none.
  CWnd* PrepareCtrl(int id);
  /// The same for a control with an edit part, whose text is selected then.
  CWnd* PrepareEditCtrl(int id);

  /// Ends the exchange: throws `CUserException`. Tell the user first.
  [[noreturn]] void Fail();

  /// True from controls to variables, false the other way.
  bool m_bSaveAndValidate;
  /// The window with the controls. Not owned.
  CWnd* m_pDlgWnd;
  /// The last control prepared; null at first.
  HWND m_hWndLastControl = nullptr;
  bool m_bEditLastControl = false;
};

}  // namespace dq
