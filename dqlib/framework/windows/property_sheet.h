// Property sheets: dialogs of several pages, one of which is active.

#pragma once

#include <deque>
#include <memory>

#include "dqlib/framework/windows/dialog.h"

namespace dq {

class CPropertySheet;

/// A page of a property sheet. Its window is made when the page first becomes active.
class CPropertyPage : public CDialog {
  DECLARE_DYNAMIC(CPropertyPage)
  /// By the id of its template, whose caption names the page.
  explicit CPropertyPage(UINT template_id);
  /// By a template that isn't in a resource module, copied.
  explicit CPropertyPage(DialogTemplate page);
  /// Leaves its sheet.
  ~CPropertyPage() override;

  CPropertySheet* GetSheet() const { return m_pSheet; }

  /// Says whether the page has something to apply; the sheet's apply button is enabled while any
  /// page has.
  void SetModified(BOOL modified = 1);
  bool IsModified() const { return m_bModified; }

  /// The page becomes active. The base moves the variables to the controls. 0 refuses.
  virtual BOOL OnSetActive();
  /// The page stops being active, or its values are about to be applied. The base moves the
  /// controls to the variables. 0 keeps the page active.
  virtual BOOL OnKillActive();
  /// Applies the variables. The base calls `OnOK`. 0 keeps the sheet open.
  virtual BOOL OnApply();
  /// The base does nothing: a page doesn't close by itself.
  void OnOK() override;
  /// The sheet is cancelled. The base does nothing.
  void OnCancel() override;

 private:
  friend class CPropertySheet;

  /// The template, or no value if there is none.
  std::optional<DialogTemplate> Template() const;

  std::unique_ptr<DialogTemplate> m_pTemplate;
  CPropertySheet* m_pSheet = nullptr;
  bool m_bModified = false;
};

/// A property sheet. For the person who answers it, it is a dialog: the tabs are a list of the
/// pages' names, and the controls of the active page stand with its own.
class CPropertySheet : public CDialog {
  DECLARE_DYNAMIC(CPropertySheet)
  /// The window of the tabs.
  static constexpr int kTabControlId = 0x3020;

  /// A sheet that opens with the page of the index.
  explicit CPropertySheet(const char* caption, CWnd* parent = nullptr, int first_page = 0);
  ~CPropertySheet() override;

  /// Adds a page behind the others; it isn't owned. One that is in a sheet already, and null, are
  /// refused with false.
  bool AddPage(CPropertyPage* page);
  int GetPageCount() const { return static_cast<int>(m_pages.size()); }
  /// Null for an index that doesn't exist.
  CPropertyPage* GetPage(int index) const;
  /// -1 for a page that isn't there.
  int GetPageIndex(const CPropertyPage* page) const;
  /// -1 and null while the sheet has no active page.
  int GetActiveIndex() const { return GetPageIndex(m_pActive); }
  CPropertyPage* GetActivePage() const { return m_pActive; }
  /// Makes a page active if the active one can be left, and the new one doesn't refuse or lack its
  /// template. Where the former had the focus, its first control that takes it has it then. Before
  /// the sheet is open, chooses the page it opens with.
  bool SetActivePage(int index);
  bool SetActivePage(CPropertyPage* page) { return SetActivePage(GetPageIndex(page)); }

  /// As `CDialog::DoModal`, large enough for the largest page. -1 without any page.
  int DoModal() override;
  /// Makes the sheet without running it and without buttons.
  bool Create(CWnd* parent, bool child = false);

  /// Says whether the sheet itself has something to apply, as a page does.
  void SetModified(BOOL modified = 1);
  /// Whether the sheet or any page has.
  bool IsModified() const;

  /// Ctrl+Tab and Ctrl+Page Down go on to the next page that doesn't refuse, with Shift and by
  /// Ctrl+Page Up to the one before, from either end to the other.
  BOOL PreTranslateMessage(MSG* message) override;

  /// The name of a page on its tab; "" for an index that doesn't exist.
  CString GetPageCaption(int index) const;

 protected:
  friend class CPropertyPage;

  BOOL OnInitDialog() override;
  /// Asks the active page whether it can be left, then has each page that was ever active apply its
  /// values in order. The first that refuses becomes active, and the result is false. Afterwards
  /// nothing counts as modified. False too if a handler has ended the sheet.
  virtual bool OnApply();
  /// Applies, and if that succeeds closes with `IDOK`.
  void OnOK() override;
  /// Applies, and leaves the sheet open: the active page becomes active anew.
  virtual void OnApplyNow();
  /// Tells each page that was ever active, and closes.
  void OnCancel() override;
  /// A page has become active. The base does nothing.
  virtual void OnPageSetActive(CPropertyPage* page);

  /// Puts the tabs and the active page where the sheet's client size wants them.
  void LayOutPages();

  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  class Tabs;

  DialogTemplate Pattern(bool with_buttons) const;
  bool OpenPage(CPropertyPage* page);
  bool Activate(CPropertyPage* page);
  bool Show(CPropertyPage* page);
  void TurnPage(bool forward);
  void ShowModified();
  /// Counts a page in or out of those that are modified.
  void CountModified(bool modified) { m_nModified += modified ? 1 : -1; }
  void Forget(CPropertyPage* page);
  CRect TabsPlace() const;

  CString m_strCaption;
  CWnd* m_pSheetParent;
  int m_nFirstPage;
  /// Pages go in constant time from either end.
  std::deque<CPropertyPage*> m_pages;
  int m_nModified = 0;
  CPropertyPage* m_pActive = nullptr;
  std::unique_ptr<Tabs> m_pTabs;
  bool m_bModified = false;
};

}  // namespace dq
