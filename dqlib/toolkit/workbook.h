// Workbooks of the family's tools, and their sheets.

#pragma once

#include "dqlib/framework/controls/workbook.h"

namespace dq {

/// A workbook.
class CDQWorkbook : public SECWorkbook {
  DECLARE_DYNCREATE(CDQWorkbook)
  CDQWorkbook() = default;
  ~CDQWorkbook() override;

  /// Whether it is in workbook mode; at first it isn't.
  void AllowWorkbookMode(bool allow) { SetWorkbookMode(allow); }
};

/// A sheet. When it is made it asks the options (50229) whether it is to be shown maximised, and
/// `ActivateFrame` does so when it shows the sheet first.
class CDQWorksheet : public SECWorksheetWnd {
  DECLARE_DYNCREATE(CDQWorksheet)
  CDQWorksheet() = default;
  ~CDQWorksheet() override;

  /// Whether this one is shown maximised at first.
  void SetMaximizeOption(bool maximize) { m_bMaximize = maximize; }
  bool GetMaximizeOption() const { return m_bMaximize; }
  /// Whether sheets, of the whole program, can be maximised; at first they can. While they can't,
  /// one that would be is restored at once.
  static void SetEnableMaximize(bool enable) { s_bEnableMaximize = enable; }
  /// Whether both say so.
  bool Maximizable() const { return s_bEnableMaximize && m_bMaximize; }

  /// Closes the sheet as a person does: its document may be asked, and refuse.
  void Close();
  /// Null if it lies in none.
  CDQWorkbook* GetDQWorkbook() const;

  void ActivateFrame(int show_command = -1) override;

 protected:
  /// In workbook mode the sheet's tab is drawn anew when it becomes active, or stops being it, and
  /// when it is shown or hidden.
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  static inline bool s_bEnableMaximize = true;
  bool m_bMaximize = false;
};

}  // namespace dq
