// Dialogs of several pages, chosen by tabs.
//
//   CDQSftTabsDialog sheet(3000);
//   sheet.AddPage(general);
//   sheet.AddPage(schedule);
//   if (sheet.DoModal() == IDOK) ...
//
// The template of the dialog has a control of the class "TabStrip" for the tabs, and one whose
// place the pages take.

#pragma once

#include <deque>

#include "dqlib/toolkit/child_dialog.h"

namespace dq {

class CDQSftTabsDialog;
class CSftTabs;

/// One page. Its window is made when it first becomes active, and lives until the dialog closes.
class CDQSftTabsPage : public CDQChildDialog {
  DECLARE_DYNAMIC(CDQSftTabsPage)
  /// By the id of its template and the label of its tab; null counts as "".
  CDQSftTabsPage(UINT template_id, const char* title);
  /// With the label from the string with the id, by the library's module and the chain.
  CDQSftTabsPage(UINT template_id, UINT title_id);
  /// Leaves its dialog.
  ~CDQSftTabsPage() override;

  CString GetTitle() const;
  /// The dialog that it is a page of, or null. Not owned.
  CDQSftTabsDialog* GetTabsDialog() const { return m_pDialog; }

  /// It has become the active page and is shown.
  virtual void ActivatePage() {}
  /// Another page is to be active. False keeps this one, after telling the person why. The base
  /// asks `ClosePossible`.
  virtual bool SwitchPossible() { return ClosePossible(); }
  /// The dialog is to close by OK. False keeps it open, after telling the person why. The base
  /// moves the controls to the variables, if the window is made.
  virtual bool ClosePossible();

 private:
  friend class CDQSftTabsDialog;

  CString m_strTitle;
  UINT m_nTitleID = 0;
  CDQSftTabsDialog* m_pDialog = nullptr;
};

/// A dialog of pages. A page whose tab is disabled takes no part: it can't be active, and is
/// neither asked nor told when the dialog closes.
class CDQSftTabsDialog : public CDQDialog {
  DECLARE_DYNAMIC(CDQSftTabsDialog)
  /// Ids of the controls for the tabs and for the pages' place, if the template doesn't use others.
  static constexpr int kTabsId = 2900;
  static constexpr int kPlaceId = 2901;

  explicit CDQSftTabsDialog(UINT template_id, CWnd* parent = nullptr, int tabs_id = kTabsId,
                            int place_id = kPlaceId);
  ~CDQSftTabsDialog() override;

  /// Adds a page behind the others, before the dialog opens, and returns its index, from 0; -1 for
  /// a page that has a dialog already, or while the dialog is open. Not owned; a page that ends
  /// leaves the dialog.
  int AddPage(CDQSftTabsPage& page);
  int GetPageCount() const { return static_cast<int>(m_pages.size()); }
  /// The page with the index, or null.
  CDQSftTabsPage* GetPage(int index) const;

  /// The index of the active page, or before the dialog opens of the one that is to be active; -1
  /// for none. A dialog that opens without one takes the first that is enabled.
  int GetActivePage() const { return m_nActive; }
  /// Makes a page the active one, if the present one lets it; the window is made if need be. True
  /// if it is then; false for a page that is disabled or isn't there, or can't be made.
  bool SetActivePage(int index);

  bool IsTabEnabled(int index) const;
  /// The active page stays active when its tab is disabled.
  void EnableTab(int index, bool enable);

  /// Goes to the active page if that has a help context, and else is the dialog's own.
  void OnHelp() override;

 protected:
  /// Makes the tabs and opens the page.
  BOOL OnInitDialog() override;
  /// Asks the pages in their order whether they can close, and stays at the first that can't, which
  /// becomes the active one. Then moves the dialog's own controls to its variables, tells each page
  /// `OnOK`, and closes.
  void OnOK() override;
  /// Tells each page `OnCancel`, and closes.
  void OnCancel() override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  /// The control for the tabs, or null.
  CSftTabs* Tabs() const;

 private:
  friend class CDQSftTabsPage;
  struct Entry {
    CDQSftTabsPage* page;
    bool enabled = true;
  };

  /// Calls it for each page that takes part, until it returns false or the dialog is gone; false
  /// then.
  template <typename Call>
  bool ForEachPage(Call call);
  void RemovePage(const CDQSftTabsPage& page);
  bool Leave();
  bool Open(int index);
  bool IsStill(HWND self) const { return self != nullptr && FromHandle(self) == this; }
  void OnTabWished();

  /// Pages go in constant time from either end.
  std::deque<Entry> m_pages;
  int m_nTabsID;
  int m_nPlaceID;
  int m_nActive = -1;
  bool m_bSwitching = false;
};

}  // namespace dq
