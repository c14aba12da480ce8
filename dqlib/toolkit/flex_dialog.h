// A dialog whose controls stretch with it, and which edits a subject.

#pragma once

#include "dqlib/toolkit/dialog.h"
#include "dqlib/toolkit/flex_host.h"

namespace dq {

/// The dialog as its template designs it is the smallest there is. A button with the id
/// `ID_APPLY_NOW` applies changes and leaves the dialog open.
class CNSFlexDialog : public detail::FlexHost<CDQDialog> {
  DECLARE_DYNAMIC(CNSFlexDialog)
  using FlexHost::FlexHost;

  /// What the dialog edits, or null. Not owned.
  void* GetSubject() const { return m_pSubject; }
  void SetSubject(void* subject) { m_pSubject = subject; }

  /// Says whether there is something to apply, and enables the apply button by it.
  void SetModified(BOOL modified = 1);
  bool IsModified() const { return m_bModified; }

 protected:
  BOOL OnInitDialog() override;
  /// Moves the controls to the variables and, if that succeeds, has the changes applied.
  virtual void OnApply();
  /// The same, and closes with `IDOK`.
  void OnOK() override;
  /// Applies the variables to the subject. The base does nothing.
  virtual void OnApplyChanges(void* subject);

  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  bool Apply();

  void* m_pSubject = nullptr;
  bool m_bModified = false;
};

}  // namespace dq
