// A window with one control of each kind, which keeps what they notify.

#pragma once

#include "dqlib/framework/windows/dialog_controls.h"
#include "tests/support/testing.h"

namespace dq::test {

/// Lists and combo boxes have the rows "One", "Two", "Three"; the second radio button begins no
/// group, the third does.
struct ControlDialog : CWnd {
  enum Id { kStatic = 1, kEdit, kSpin, kCheck, kRadio, kRadio2, kRadio3, kPush };
  enum RowsId { kList = 20, kMany, kMarks, kCombo, kDropList, kMissing };

  ControlDialog() {
    CreateWnd("Dialog");
    const auto pattern = ReadDialogTemplate(
        "size 9 9\ntext 1 \"\" 0 0 1 1\nedit 2 \"\" 0 0 1 1 multiline\n"
        "spin 3 \"\" 0 0 1 1 buddy\ncheck 4 \"\" 0 0 1 1\nradio 5 \"\" 0 0 1 1 group\n"
        "radio 6 \"\" 0 0 1 1\nradio 7 \"\" 0 0 1 1 group\nlist 20 \"\" 0 0 1 1\n"
        "checklist 22 \"\" 0 0 1 1\ncombo 23 \"\" 10 20 80 40\ncombo 24 \"\" 0 0 1 1 droplist\n"
        "button 8 \"\" 0 0 1 1\nlist 21 \"\" 0 0 1 1 multiple\n");
    detail::MakeControls(pattern.value(), *this, controls);
    Get<CButton>(kCheck).SetKind(ButtonKind::kThreeState);
    for (const int id : {kList, kMany, kMarks, kCombo, kDropList}) {
      for (const char* text : {"One", "Two", "Three"}) Get<RowControl>(id).AddString(text);
    }
    tips.Create(this);
    codes.clear();
  }
  ~ControlDialog() override { DestroyWindow(); }
  BOOL OnCommand(WPARAM wparam, LPARAM) override {
    codes.emplace_back(LoWord(wparam), HiWord(wparam));
    if (handler) handler(LoWord(wparam));
    return 1;
  }

  template <typename Class>
  Class& Get(int id) {
    return *dynamic_cast<Class*>(GetDlgItem(id));
  }
  CEdit& edit() { return Get<CEdit>(kEdit); }
  CSpinButtonCtrl& spin() { return Get<CSpinButtonCtrl>(kSpin); }
  CListBox& list() { return Get<CListBox>(kList); }
  CCheckListBox& marks() { return Get<CCheckListBox>(kMarks); }
  CComboBox& combo() { return Get<CComboBox>(kCombo); }

  /// Ids and codes of the notifications.
  std::vector<std::pair<int, int>> codes;
  /// Called with each.
  std::function<void(int id)> handler;
  CToolTipCtrl tips;
  std::vector<std::unique_ptr<CWnd>> controls;
};

}  // namespace dq::test
