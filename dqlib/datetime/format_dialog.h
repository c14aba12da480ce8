// The dialog in which a person chooses a date-time format or builds one.
//
//   CLGDateTimeFormatDlg(format.get(), 6, nullptr).DoModal();
//   text = format->GetDispDateTimeFmt(6, CLGDateTimeFormat::DFK_CURRENT);

#pragma once

#include "dqlib/datetime/date_time_format.h"
#include "dqlib/datetime/format_dialog_parts.h"
#include "dqlib/framework/controls/tool_tip.h"
#include "dqlib/toolkit/dialog.h"
#include "dqlib/toolkit/tool_tip_combo_box.h"

namespace dq {

/// Opens with the list of the formats for columns of a data type. "Customize" makes it larger, by
/// the controls for a format's elements, and the format built there, which is shown with the
/// present time as an example, counts until it is made smaller again.
///
/// OK makes the format the current one: of a built format, one more definition is added to the
/// customised ones, even if it is known already. OK without a choice cancels. The option that keeps
/// the format isn't written; that is the host's. Thread of the user interface.
class CLGDateTimeFormatDlg : public CDQDialog {
 public:
  static constexpr UINT kTemplateId = 44530;
  enum ControlId : int {
    kPredefined = 44531,
    // The elements, in the order of their kinds.
    kDay = 44532,
    kMonth = 44533,
    kYear = 44534,
    kHour = 44535,
    kMinute = 44536,
    kSecond = 44537,
    kAMPM = 44538,
    // The separators behind these.
    kDaySeparator = 44539,
    kMonthSeparator = 44540,
    kYearSeparator = 44541,
    // Radio buttons: the six orders of a date, and which of date and time comes first.
    kFirstDateOrder = 44542,
    kLastDateOrder = 44547,
    kDateTime = 44548,
    kTimeDate = 44549,
    kFormat = 44550,
    kExample = 44551,
    kCustomize = 44552,
    // The frame around what is hidden at first: everything from its upper edge down.
    kCustomizeFrame = 44553,
  };

  /// For the format, which isn't owned and outlives the dialog, and a data type code. A code that
  /// isn't one of dates and times has no formats; neither has null, which can only be cancelled.
  CLGDateTimeFormatDlg(CLGDateTimeFormat* format, int code, CWnd* parent = nullptr);

 protected:
  BOOL OnInitDialog() override;
  void DoDataExchange(CDataExchange* exchange) override;
  void OnOK() override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  static constexpr int kCombos = kYearSeparator - kPredefined + 1;
  CToolTipComboBox& Combo(ControlId id) { return m_combos[id - kPredefined]; }
  CToolTipComboBox& ElementCombo(int kind) { return m_combos[kDay - kPredefined + kind]; }
  CToolTipComboBox& SeparatorCombo(int kind) {
    return m_combos[kDaySeparator - kPredefined + kind];
  }

  void InitMember();
  /// Fills the controls for elements, and hides them.
  void InitCustomizedCtrls();
  void LoadDefaultDateTimeCombo();
  void InitPredefinedCtrls();
  /// The definition that a row of the predefined formats stands for, in the format's own lists;
  /// null for none.
  CLGDateTimeFmtDef* DefinitionOfRow(int row) const;

  /// Shows the dialog small or large, by the customise flag; with the button's text in either
  /// state, and its tool tip, by the ids of strings.
  void InitExpandDialog(UINT small_text, UINT large_text, UINT tip);
  void OnExpand();
  /// The marker of the half day can be chosen unless hours go to 24, also where only a date is
  /// built.
  void ValidateAMPMFmt();
  void OnSelChange(UINT id);
  void OnSelChangeHourFmt(UINT id);
  void ShowTip(CToolTipComboBox& combo);

  LRESULT OnTimer(WPARAM id, LPARAM);
  LRESULT OnDestroy(WPARAM, LPARAM);
  void UpdateFormat();
  void UpdateExample();
  /// Writes the text to the control, unless it shows it already.
  void ShowText(ControlId id, const CString& text);

  /// What the controls hold.
  detail::DateTimeFmtParts GetParts() const;
  CString GenerateDateTimeFmt() const { return GetParts().GenerateDateTimeFmt(m_nCode); }

  /// The predefined formats, the elements by kind, the separators by kind.
  CToolTipComboBox m_combos[kCombos];
  bool m_bCustomize = false;
  CLGDateTimeFormat* m_pFormat;
  int m_nCode;
  /// Copies of the definitions listed; a row's data is the index of the original in the format's
  /// predefined and customised lists, taken as one.
  CLGDateTimeFmtDefList m_definitions;
  CToolTipCtrl m_tips;
  /// Of the client area when all is shown.
  int m_nLargeHeight = 0;
};

}  // namespace dq
