// Base classes of the library's combo boxes.

#pragma once

#include "dqlib/framework/controls/combo_box.h"

namespace dq {

/// A combo box whose rows stand for values.
class CDQComboBox : public CComboBox {
  DECLARE_DYNAMIC(CDQComboBox)
  explicit CDQComboBox(const ComboStyle& style = {}) : CComboBox(style) {}

  /// Adds a row with its item data; the row's index, or -1.
  int AddItem(const char* text, std::uintptr_t data);

 protected:
  /// Called for each row that `AddItem` adds.
  virtual void OnItemAdded(int /*index*/) {}
};

/// A combo box whose list, dropped down, is as wide as the longest of the rows that `AddItem` has
/// added, at least as wide as itself. Widths are reckoned by the average character of dialogs'
/// fonts.
class CDQAutoDropWidthCombo : public CDQComboBox {
  DECLARE_DYNAMIC(CDQAutoDropWidthCombo)
  using CDQComboBox::CDQComboBox;

 protected:
  void OnItemAdded(int index) override;
};

}  // namespace dq
