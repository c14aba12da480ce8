// Dialogs: windows made from templates, run until the person leaves them.

#pragma once

#include <memory>
#include <vector>

#include "dqlib/framework/windows/data_exchange.h"
#include "dqlib/framework/windows/dialog_template.h"

namespace dq {

/// A dialog. Its template names the controls, which it makes and owns. When the thread is idle the
/// controls are brought up to date by the update handlers for their ids.
class CDialog : public CWnd {
  DECLARE_DYNAMIC(CDialog)
  CDialog() = default;
  /// By the id of its template. `parent` owns the window; null means the active window if that is a
  /// dialog that runs, and else the thread's main window.
  explicit CDialog(UINT template_id, CWnd* parent = nullptr);
  ~CDialog() override;

  /// Uses a template that isn't in a resource module, copied, for `DoModal`.
  void InitModalIndirect(DialogTemplate dialog, CWnd* parent = nullptr);

  /// Makes the window, runs it and ends it. The result is that given to `EndDialog`, or -1 if the
  /// window couldn't be made. Its parent's top-level window, and those that own that one, are
  /// disabled meanwhile; at the end they are enabled first, then the window ends, and what was
  /// active and had the focus gets that back. Without a parent that is the active window, or the
  /// main window if there is none that can be used; the main window is disabled in any case. The
  /// platform's prompts run the dialog, unless a window layer does (see
  /// `WindowObserver::RunsDialogs`); one that they leave open is cancelled, and so is one that runs
  /// when the thread is told to end. A dialog whose own handler destroys it, or drops the object,
  /// ends with `IDCANCEL`. Runs may be nested, but not of the same object: then -1.
  virtual int DoModal();

  /// Makes the window without running it, as a child of `parent` if `child`, and else owned by it.
  /// `OnInitDialog` runs. False if there is no such template.
  bool Create(UINT template_id, CWnd* parent, bool child = false);
  bool CreateIndirect(const DialogTemplate& dialog, CWnd* parent, bool child = false);

  /// Closes a modal run with the result; a run that is closed already keeps its first result.
  /// During `OnInitDialog` of `DoModal` the dialog isn't shown at all. A dialog that isn't run is
  /// only hidden.
  void EndDialog(int result);
  UINT GetTemplateId() const { return template_id_; }

  /// Moves the focus to the next or previous control that takes it, those of dialogs that lie in it
  /// among them, or to the given one, before the dialog is shown as soon as it is.
  void NextDlgCtrl();
  void PrevDlgCtrl();
  void GotoDlgCtrl(CWnd* control);

  /// What the dialog doesn't handle goes on to its parent or owner, and to the thread, if it is a
  /// command with an id from 0x8000 to 0xEFFF; ids below are those of controls.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;
  /// Handles the keys of dialogs: Tab and Shift+Tab, Enter, Escape, arrows among radio buttons,
  /// F1 for help, and mnemonics.
  BOOL PreTranslateMessage(MSG* message) override;

 protected:
  /// Called when the controls are there, before the dialog is shown; the base moves the variables
  /// to the controls, and closes a run with -1 if that fails. 0 says that it has set the focus
  /// itself; else the first control that takes it gets it.
  virtual BOOL OnInitDialog();
  /// The base moves the controls to the variables and, if that succeeds, closes with `IDOK`.
  virtual void OnOK();
  /// The base closes with `IDCANCEL`.
  virtual void OnCancel();

  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

  /// Runs the window that `Create` has made, as `DoModal` does, but hides it at the end instead of
  /// ending it, as often as one likes. -1 without a window, for a child, and while it runs.
  int RunWindow();

 private:
  class View;
  struct Run;

  bool Open(const DialogTemplate& dialog, CWnd* parent, bool child);
  int RunModal(const DialogTemplate& dialog, CWnd* parent);
  int RunShown(Run& run);

  UINT template_id_ = 0;
  CWnd* modal_parent_ = nullptr;
  std::shared_ptr<const DialogTemplate> own_template_;
  std::vector<std::unique_ptr<CWnd>> controls_;
  /// The modal run that is under way.
  Run* run_ = nullptr;
  /// The first control gets the focus when the dialog is shown.
  bool first_focus_ = false;
  /// The control that gets it then.
  HWND wanted_focus_ = nullptr;
};

}  // namespace dq
