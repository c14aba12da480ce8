// Options in lists: many switches in little room.

#pragma once

#include <span>

#include "dqlib/framework/controls/combo_box.h"
#include "dqlib/framework/controls/list_box.h"
#include "siblings/options/option_data_array.h"

namespace dq {

/// A check list of the boolean options of an array. Rows bear the options' labels. The array must
/// outlive the list's use.
class CDQOptionChecklist : public CCheckListBox {
  DECLARE_DYNAMIC(CDQOptionChecklist)
  /// Shows the array's boolean options with their working values, one row each.
  void LoadOptions(CDQOptionDataArray& options);
  /// Takes the marks as working values of the array that is shown. False if an option is gone.
  bool StoreChecks();
  /// `StoreChecks`, and keeps the array's options. False if one was refused.
  bool SaveOptions();

 private:
  CDQOptionDataArray* m_pOptions = nullptr;
};

/// Several arrays of boolean options, one of which a combo box chooses for a check list.
class CDQOptionMultiList {
 public:
  CDQOptionMultiList() = default;
  CDQOptionMultiList(const CDQOptionMultiList&) = delete;
  CDQOptionMultiList& operator=(const CDQOptionMultiList&) = delete;

  /// Adds an entry: the string with the id, by the chain of resource modules, and an array of the
  /// options, of which those that there aren't are left out. Before `SetControls`.
  void AddList(UINT title_id, std::span<const UINT> option_ids);
  /// Names the controls, when their dialog opens: takes the options' current values as the working
  /// values, fills the combo box with the entries and shows the first. They must outlive their use
  /// here.
  void SetControls(CComboBox& combo, CDQOptionChecklist& list);
  /// Another entry is chosen: its array is shown. What is marked so far stays a working value.
  void OnComboSelChange();
  /// Keeps the options of all entries. False if one was refused.
  bool SaveOptions();

 private:
  /// The index of the entry that the combo box shows, or -1.
  int ChosenList() const;

  CDQOptionDataArrayList m_arrays;
  std::vector<UINT> m_titles;
  CComboBox* m_pCombo = nullptr;
  CDQOptionChecklist* m_pList = nullptr;
};

}  // namespace dq
