// Base of the library's dialogs.
//
//   class CGotoDlg : public CDQDialog {
//    public:
//     explicit CGotoDlg(CWnd* parent = nullptr) : CDQDialog(2840, parent) {}
//     int line = 1;
//
//    protected:
//     void DoDataExchange(CDataExchange* exchange) override { DDX_Text(exchange, 2766, line); }
//   };

#pragma once

#include "dqlib/framework/controls/control_classes.h"
#include "dqlib/framework/windows/dialog.h"

namespace dq {

enum HelpMessage : UINT {
  /// The help command: to the main window, with the context as the second argument.
  WM_COMMANDHELP = 0x0365,
};

/// The other id of Help buttons, beside `ID_HELP`.
inline constexpr UINT kHelpCommand = 57670;

/// A dialog whose template is looked for in the library's own module first, or in its translations,
/// whatever the current resource module is, and then along the chain. The library's module is the
/// current one while the dialog opens and, in a modal run, until it is closed.
class CDQDialog : public CDialog {
  DECLARE_DYNAMIC(CDQDialog)
  /// As `CDialog`. The help context is the one of dialogs, 20000h plus the template's id.
  explicit CDQDialog(UINT template_id = 0, CWnd* parent = nullptr);

  /// The caption it opens with instead of the template's; null or "" is the template's.
  void SetCaption(const char* caption) { m_strCaption = caption; }
  /// What help is about; 0 for none.
  void SetHelpContext(DWORD context) { m_nHelpContext = context; }
  DWORD GetHelpContext() const { return m_nHelpContext; }

  int DoModal() override;
  /// As `CDialog::Create`.
  bool Create(UINT template_id, CWnd* parent, bool child = false);

  /// A Help button or the key for help: sends the main window the help command with the dialog's
  /// context. Nothing happens without a context or a main window.
  virtual void OnHelp();

 protected:
  BOOL OnInitDialog() override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

  /// The module that is searched first.
  HINSTANCE ResourceModule() const;

 private:
  friend int DQDoModalDialog(CDQDialog& dialog, HINSTANCE module);
  LRESULT OnHelpKey(WPARAM, LPARAM);

  CString m_strCaption;
  DWORD m_nHelpContext;
  /// The module that a caller of `DQDoModalDialog` names; null is the library's.
  HINSTANCE m_hModule = nullptr;
};

/// Runs the dialog by its own `DoModal` and returns that one's result. `module` is searched first
/// for its template, in place of the library's own; null leaves the library's.
int DQDoModalDialog(CDQDialog& dialog, HINSTANCE module);

}  // namespace dq
