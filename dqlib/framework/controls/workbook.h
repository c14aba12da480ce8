// Frames whose child frames can be chosen by tabs.

#pragma once

#include "dqlib/framework/controls/tab_control.h"
#include "dqlib/framework/windows/mdi_frame.h"

namespace dq {

class SECWorksheetWnd;

/// A frame that, in workbook mode, has a tab for each of its sheets below its child frames, with
/// the sheet's text, in the order in which they were made. The current tab is that of the active
/// sheet; a person chooses another one by its tab, which shows it if it is hidden.
class SECWorkbook : public CMDIFrameWnd {
  DECLARE_DYNCREATE(SECWorkbook)
  SECWorkbook();
  ~SECWorkbook() override;

  /// Workbook mode, in which it isn't at first. May be set before the window is made.
  bool IsWorkbookMode() const { return m_bWorkbookMode; }
  virtual void SetWorkbookMode(bool workbook);

  /// Gives a sheet of this frame a tab; one that has a tab keeps it. A sheet does so itself when it
  /// is made, and is taken out when it ends.
  virtual void AddSheet(SECWorksheetWnd* sheet);
  virtual void RemoveSheet(SECWorksheetWnd* sheet);
  /// Has the tab of a sheet drawn anew.
  virtual void InvalidateTab(SECWorksheetWnd* sheet);
  int GetSheetCount() const { return m_tabs.GetTabCount(); }
  /// The sheet of a tab, or null; and the tab of a sheet, or -1.
  SECWorksheetWnd* GetSheet(int index) const;
  int FindSheet(const SECWorksheetWnd* sheet) const;
  /// Shown in workbook mode.
  SEC3DTabControl& GetTabControl() { return m_tabs; }
  static constexpr int kSheetTabsId = 0xEA00;

 protected:
  /// The tabs lie below the child frames.
  void LayOutView(const CRect& room) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  friend class SECWorksheetWnd;
  void UpdateTab(const SECWorksheetWnd& sheet);
  void OnTabActivated();

  SEC3DTabControl m_tabs;
  bool m_bWorkbookMode = false;
};

/// A child frame that has a tab in its workbook. In another frame it is an ordinary one.
class SECWorksheetWnd : public CMDIChildWnd {
  DECLARE_DYNCREATE(SECWorksheetWnd)
  SECWorksheetWnd() = default;
  ~SECWorksheetWnd() override;

  /// Null if it lies in no workbook.
  SECWorkbook* GetWorkbook() const;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnTextWasSet() override;
};

}  // namespace dq
