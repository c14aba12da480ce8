// Combo boxes whose rows have tool tips.

#pragma once

#include <deque>

#include "dqlib/framework/controls/combo_box.h"

namespace dq {

/// A combo box with a tool tip for each row, for rows that are short codes. Its rows are added and
/// taken out by the operations below alone. Codes may differ by case only, so a person who enters a
/// text gets the row that is exactly that one before a row that has it in another case.
class CToolTipComboBox : public CComboBox {
  DECLARE_DYNAMIC(CToolTipComboBox)
  explicit CToolTipComboBox(const ComboStyle& style = {}) : CComboBox(style) {}

  /// As those of the base, with the row's tool tip, where null counts as "", and its data.
  int AddString(const char* text, const char* tip, std::uintptr_t data = 0);
  int InsertString(int index, const char* text, const char* tip, std::uintptr_t data = 0);
  int DeleteString(int index);
  void ResetContent();

  /// The row's tool tip; "" if there is no such row. That of the chosen row is the tool tip of the
  /// combo box itself, which its dialog shows.
  CString GetItemTip(int index) const;

  /// The first row that is the text, case regarded, or -1.
  int FindCode(std::string_view text) const;
  /// Chooses that row, or none if there isn't one.
  void SelectCode(std::string_view text) { SetCurSel(FindCode(text)); }

  bool Enter(std::string_view value) override;

 protected:
  void OnSubclassed(CWnd& former) override;

 private:
  /// Keeps what belongs to the row just added.
  int Keep(int index, const char* tip, std::uintptr_t data);

  std::deque<CString> m_tips;
};

}  // namespace dq
