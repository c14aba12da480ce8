// A window with one control of each kind, which keeps what they notify.

#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "dqlib/framework/controls/button.h"
#include "dqlib/framework/controls/combo_box.h"
#include "dqlib/framework/controls/edit.h"
#include "dqlib/framework/controls/list_box.h"
#include "dqlib/framework/controls/spin_button.h"
#include "dqlib/framework/controls/static.h"
#include "dqlib/framework/controls/tool_tip.h"

namespace dq::testing {

/// Lists and combo boxes have the rows "One", "Two", "Three"; the second radio button begins no
/// group, the third one does.
struct ControlDialog : CWnd {
  enum Id { kStatic = 1, kEdit, kSpin, kCheck, kRadio, kRadio2, kRadio3, kPush };
  enum RowsId { kList = 20, kMany, kMarks, kCombo, kDropList, kMissing };
  using Codes = std::vector<std::pair<int, int>>;

  ControlDialog() {
    CreateWnd("Dialog");
    Add<CStatic>(kStatic, "Static");
    Add<CEdit>(kEdit, "Edit", EditStyle{.multi_line = true});
    Add<CSpinButtonCtrl>(kSpin, "Spin", true);
    Add<CButton>(kCheck, "Button", ButtonKind::kThreeState);
    Add<CButton>(kRadio, "Button", ButtonKind::kRadio).SetBeginsGroup(true);
    Add<CButton>(kRadio2, "Button", ButtonKind::kRadio);
    Add<CButton>(kRadio3, "Button", ButtonKind::kRadio).SetBeginsGroup(true);
    AddRows(Add<CListBox>(kList, "ListBox"));
    AddRows(Add<CCheckListBox>(kMarks, "CheckListBox"));
    AddRows(Add<CComboBox>(kCombo, "ComboBox"));
    AddRows(Add<CComboBox>(kDropList, "ComboBox", ComboStyle{.list_only = true}));
    Add<CButton>(kPush, "Button");
    AddRows(Add<CListBox>(kMany, "ListBox", ListStyle{.multiple = true}));
    tips.Create(this);
    codes.clear();
  }
  ~ControlDialog() override { DestroyWindow(); }

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
  Codes codes;
  /// Called with each.
  std::function<void(int id)> handler;
  CToolTipCtrl tips;
  std::vector<std::unique_ptr<CWnd>> controls;

 protected:
  BOOL OnCommand(WPARAM wparam, LPARAM) override {
    codes.emplace_back(LoWord(wparam), HiWord(wparam));
    if (handler) handler(LoWord(wparam));
    return 1;
  }

 private:
  template <typename Class, typename... Arguments>
  Class& Add(int id, const char* window_class, Arguments... arguments) {
    auto control = std::make_unique<Class>(arguments...);
    Class& added = *control;
    added.CreateWnd(
        {.class_name = window_class, .place = {10, 20, 90, 60}, .parent = this, .id = id});
    controls.push_back(std::move(control));
    return added;
  }
  static void AddRows(RowControl& control) {
    for (const char* text : {"One", "Two", "Three"}) control.AddString(text);
  }
};

}  // namespace dq::testing
