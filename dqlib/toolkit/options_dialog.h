// Dialogs in which a user sets options.
//
//   CDQOptionsPage page(OPTIONS_PAGE_OF_HOST, "My Tool");
//   page.AddOption(60001);
//   CDQOptionsDlg dialog(44510, 60000);
//   dialog.AddPage(page);
//   dialog.DoModal();

#pragma once

#include <map>

#include "dqlib/toolkit/sft_tabs_dialog.h"
#include "siblings/options/option_data_array.h"

namespace dq {

enum OptionsMessage : UINT {
  /// To the main window, with 0 and 0: the options dialog is closed, and what the options say now
  /// is to be applied.
  DQM_OPTIONS_CHANGED = 33796,
};

/// The pages of options dialogs, by the number under which the page shown last is kept. A host
/// numbers its own from `OPTIONS_PAGE_OF_HOST` on.
enum DQOptionsPageType : int {
  OPTIONS_PAGE_EDITOR = 0,
  OPTIONS_PAGE_FORMATTER = 1,
  OPTIONS_PAGE_NAMES = 2,
  OPTIONS_PAGE_OUTPUT = 3,
  OPTIONS_PAGE_FAVORITES = 4,
  OPTIONS_PAGE_JOBS = 5,
  OPTIONS_PAGE_OF_HOST = 100,
};

/// A page of options. A control of its template that has an option's id shows that option; without
/// a template the page lays out a control for each option itself, under the option's label.
///
/// What the person sets is kept when the dialog closes by OK, and not before: leaving the page only
/// finds out whether the values can be.
class CDQOptionsPage : public CDQSftTabsPage {
  DECLARE_DYNAMIC(CDQOptionsPage)
  /// By the label of the tab, or the string with it. A template's id of 0 is none.
  CDQOptionsPage(DQOptionsPageType type, const char* title, UINT template_id = 0);
  CDQOptionsPage(DQOptionsPageType type, UINT title_id, UINT template_id = 0);

  DQOptionsPageType GetType() const { return m_eType; }
  CDQOptionDataArray& GetOptions() { return m_options; }
  /// Before the page opens. False if there is no such option, or the page has it.
  bool AddOption(int id) { return m_options.AddOption(id, true, true); }
  /// A number option whose values from 0 on have names: those of the string with the id, separated
  /// by "|". Its control, which must be a combo box without an edit part, is filled with them.
  void NameValues(int option_id, UINT names_id) { m_names[option_id] = names_id; }

  bool ClosePossible() override;
  /// Keeps the options. If that fails, the person is told that they hold for this program only.
  void OnOK() override;

 protected:
  std::optional<DialogTemplate> MakeTemplate() override;
  BOOL OnInitDialog() override;
  /// Moves the options, and when they come from the controls keeps them.
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  DQOptionsPageType m_eType;
  CDQOptionDataArray m_options;
  std::map<int, UINT> m_names;
  bool m_bOnlyCheck = false;
};

/// A dialog of such pages. It opens with the page that it was closed with, which an option keeps.
class CDQOptionsDlg : public CDQSftTabsDialog {
  DECLARE_DYNAMIC(CDQOptionsDlg)
  /// By the id of its template and of the number or text option that keeps the page.
  CDQOptionsDlg(UINT template_id, int page_option_id, CWnd* parent = nullptr);

  /// Makes a page the active one, or before the dialog opens the one that it opens with. False if
  /// there is none of the type, or the present one can't be left.
  bool DisplayPage(DQOptionsPageType type);

  /// When the dialog is closed, by whatever button, keeps the page that was active and tells the
  /// main window `DQM_OPTIONS_CHANGED`.
  int DoModal() override;

 private:
  int m_nPageOptionID;
  /// Somebody has said which page the next run opens with.
  bool m_bDisplayed = false;
};

}  // namespace dq
