// All controls: what they tell, and that they may end while they tell it.

#include <gtest/gtest.h>

#include "dqlib/framework/windows/dialog.h"
#include "tests/framework_controls/control_dialog.h"
#include "tests/support/recording_observer.h"

namespace dq {
namespace {

using testing::ControlDialog;
using testing::RecordingObserver;

TEST(Controls, EveryChangeReachesTheObserver) {
  using Dialog = ControlDialog;
  constexpr auto kText = WindowChange::kText, kContent = WindowChange::kContent,
                 kSelection = WindowChange::kSelection;
  const struct {
    const char* name;
    int id;
    std::function<void(Dialog&)> act;
    std::vector<WindowChange> told;
  } rows[] = {
      {"static text",
       Dialog::kStatic,
       [](Dialog& d) { d.SetDlgItemText(Dialog::kStatic, "x"); },
       {kText}},
      {"edit text", Dialog::kEdit, [](Dialog& d) { d.edit().SetWindowText("x"); }, {kText}},
      {"edit replace",
       Dialog::kEdit,
       [](Dialog& d) { d.edit().ReplaceSel("abc"); },
       {kText, kSelection}},
      {"edit select",
       Dialog::kEdit,
       [](Dialog& d) { d.edit().ReplaceSel("abc"), d.edit().SetSel(0, 2); },
       {kText, kSelection, kSelection}},
      {"edit same selection", Dialog::kEdit, [](Dialog& d) { d.edit().SetSel(0, 0); }, {}},
      {"edit limit", Dialog::kEdit, [](Dialog& d) { d.edit().LimitText(3); }, {kContent}},
      {"edit read-only", Dialog::kEdit, [](Dialog& d) { d.edit().SetReadOnly(); }, {kContent}},
      {"edit type", Dialog::kEdit, [](Dialog& d) { d.edit().Type("x"); }, {kText, kSelection}},
      {"spin range", Dialog::kSpin, [](Dialog& d) { d.spin().SetRange(1, 9); }, {kContent}},
      {"spin position", Dialog::kEdit, [](Dialog& d) { d.spin().SetPos(5); }, {kText}},
      {"check", Dialog::kCheck, [](Dialog& d) { d.CheckDlgButton(Dialog::kCheck, 2); }, {kContent}},
      {"same check", Dialog::kCheck, [](Dialog& d) { d.CheckDlgButton(Dialog::kCheck, 0); }, {}},
      {"press radio",
       Dialog::kRadio,
       [](Dialog& d) {
         d.GetDlgItem(Dialog::kRadio)->Press(), d.GetDlgItem(Dialog::kRadio2)->Press();
       },
       {kContent, kContent}},
      {"add", Dialog::kList, [](Dialog& d) { d.list().AddString("x"); }, {kContent}},
      {"insert", Dialog::kList, [](Dialog& d) { d.list().InsertString(0, "x"); }, {kContent}},
      {"delete", Dialog::kList, [](Dialog& d) { d.list().DeleteString(0); }, {kContent}},
      {"reset", Dialog::kList, [](Dialog& d) { d.list().ResetContent(); }, {kContent, kSelection}},
      {"select", Dialog::kList, [](Dialog& d) { d.list().SetCurSel(1); }, {kSelection}},
      {"top", Dialog::kList, [](Dialog& d) { d.list().SetTopIndex(1); }, {kContent}},
      {"select many",
       Dialog::kMany,
       [](Dialog& d) { d.Get<CListBox>(Dialog::kMany).SetSel(-1); },
       {kSelection}},
      {"mark", Dialog::kMarks, [](Dialog& d) { d.marks().SetCheck(1, 1); }, {kContent}},
      {"disable row", Dialog::kMarks, [](Dialog& d) { d.marks().Enable(1, false); }, {kContent}},
      {"combo choose",
       Dialog::kCombo,
       [](Dialog& d) { d.combo().SetCurSel(1); },
       {kSelection, kText}},
      {"combo delete chosen",
       Dialog::kCombo,
       [](Dialog& d) { d.combo().SetCurSel(1), d.combo().DeleteString(1); },
       {kSelection, kText, kContent, kSelection, kText}},
      {"combo edit select",
       Dialog::kCombo,
       [](Dialog& d) { d.combo().SetWindowText("x"), d.combo().SetEditSel(0, -1); },
       {kText, kSelection}},
      {"combo text leaves the row",
       Dialog::kCombo,
       [](Dialog& d) { d.combo().SetCurSel(1), d.combo().SetWindowText("x"); },
       {kSelection, kText, kSelection, kText}},
      {"combo drop", Dialog::kCombo, [](Dialog& d) { d.combo().ShowDropDown(); }, {kContent}},
      {"combo width",
       Dialog::kCombo,
       [](Dialog& d) { d.combo().SetDroppedWidth(300); },
       {kContent}},
  };
  for (const auto& row : rows) {
    ControlDialog dialog;
    RecordingObserver observer;
    row.act(dialog);
    EXPECT_EQ(observer.Take(*dialog.GetDlgItem(row.id)), row.told) << row.name;
  }
  ControlDialog dialog;
  RecordingObserver observer;
  EXPECT_TRUE(dialog.tips.AddTool(&dialog.edit(), "tip"));
  dialog.tips.UpdateTipText("other", &dialog.edit());
  EXPECT_STREQ(dialog.tips.GetText(&dialog.edit()), "other");
  dialog.tips.Activate(false);
  dialog.tips.DelTool(&dialog.edit());
  EXPECT_EQ(observer.Take(dialog.tips), std::vector(4, kContent));
  EXPECT_FALSE(dialog.tips.AddTool(nullptr, "tip"));
}

/// What a person does to the dialog, whether it is taken, and what the dialog is told.
const struct PersonRow {
  int id;
  std::function<bool(CWnd&)> act;
  bool taken;
  std::vector<int> codes;
  const char* value;
} kPersonRows[] = {
    {ControlDialog::kStatic, [](CWnd& c) { return c.Press() || c.Enter("x"); }, false, {}, ""},
    {ControlDialog::kEdit,
     [](CWnd& c) { return c.Enter("a\nb"); },
     true,
     {EN_UPDATE, EN_CHANGE},
     "a\r\nb"},
    {ControlDialog::kEdit,
     [](CWnd& c) { return c.SendMessage(WM_CHAR, 'q') == 0; },
     true,
     {EN_UPDATE, EN_CHANGE},
     "q"},
    {ControlDialog::kEdit,
     [](CWnd& c) { return c.SetFocus() == nullptr; },
     true,
     {EN_SETFOCUS},
     ""},
    {ControlDialog::kCheck, [](CWnd& c) { return c.Press(); }, true, {BN_CLICKED}, "1"},
    {ControlDialog::kCheck, [](CWnd& c) { return c.Enter("2"); }, true, {BN_CLICKED}, "2"},
    {ControlDialog::kCheck, [](CWnd& c) { return c.Enter("3"); }, false, {}, "0"},
    {ControlDialog::kRadio, [](CWnd& c) { return c.Enter("1"); }, true, {BN_CLICKED}, "1"},
    {ControlDialog::kRadio, [](CWnd& c) { return c.Enter("0"); }, true, {}, "0"},
    {ControlDialog::kPush, [](CWnd& c) { return c.Press(); }, true, {BN_CLICKED}, ""},
    {ControlDialog::kPush, [](CWnd& c) { return c.Enter("1"); }, false, {}, ""},
    {ControlDialog::kPush,
     [](CWnd& c) { return c.EnableWindow(false) || c.Press(); },
     false,
     {},
     ""},
    {ControlDialog::kList, [](CWnd& c) { return c.Enter("two"); }, true, {LBN_SELCHANGE}, "Two"},
    {ControlDialog::kList, [](CWnd& c) { return c.Enter("3"); }, true, {LBN_SELCHANGE}, "Three"},
    {ControlDialog::kList, [](CWnd& c) { return c.Enter("4"); }, false, {}, ""},
    {ControlDialog::kList,
     [](CWnd& c) { return c.Enter("1") && c.Press(); },
     true,
     {LBN_SELCHANGE, LBN_DBLCLK},
     "One"},
    {ControlDialog::kMany,
     [](CWnd& c) { return c.Enter("3\nOne"); },
     true,
     {LBN_SELCHANGE},
     "One\nThree"},
    {ControlDialog::kMany, [](CWnd& c) { return c.Enter("One\nFour"); }, false, {}, ""},
    {ControlDialog::kMarks,
     [](CWnd& c) { return c.Enter("Two\nThree"); },
     true,
     {CLBN_CHKCHANGE},
     "Two\nThree"},
    {ControlDialog::kMarks,
     [](CWnd& c) {
       auto& m = dynamic_cast<CCheckListBox&>(c);
       return m.Enable(1, false), m.Toggle(1) || m.Enter("One\nTwo");
     },
     false,
     {},
     ""},
    {ControlDialog::kCombo, [](CWnd& c) { return c.Enter("two"); }, true, {CBN_EDITCHANGE}, "two"},
    {ControlDialog::kCombo, [](CWnd& c) { return c.Enter("Two"); }, true, {CBN_SELCHANGE}, "Two"},
    {ControlDialog::kDropList,
     [](CWnd& c) { return c.Enter("two"); },
     true,
     {CBN_SELCHANGE},
     "Two"},
    {ControlDialog::kDropList, [](CWnd& c) { return c.Enter("x"); }, false, {}, ""},
};

TEST(Controls, ParentIsToldOfWhatAPersonDoes) {
  for (const PersonRow& row : kPersonRows) {
    SCOPED_TRACE(&row - kPersonRows);
    ControlDialog dialog;
    CWnd& control = *dialog.GetDlgItem(row.id);
    EXPECT_EQ(row.act(control), row.taken);
    ControlDialog::Codes codes;
    for (const int code : row.codes) codes.emplace_back(row.id, code);
    EXPECT_EQ(dialog.codes, codes);
    platform::DialogControl shown;
    control.Describe(shown);
    EXPECT_EQ(shown.value, row.value);
  }
}

TEST(Controls, HandlerMayDestroyTheControlOrItsDialog) {
  for (const PersonRow& row : kPersonRows) {
    for (const bool whole : {false, true}) {
      ControlDialog dialog;
      dialog.handler = [&](int id) {
        if (whole) dialog.DestroyWindow();
        std::erase_if(dialog.controls,
                      [&](const auto& control) { return whole || control->GetDlgCtrlID() == id; });
      };
      // Steps of a row that come after the control's end are the caller's fault.
      if (row.codes.size() == 2 && row.codes[1] == LBN_DBLCLK) continue;
      row.act(*dialog.GetDlgItem(row.id));
      EXPECT_EQ(dialog.codes.size(), row.codes.empty() ? 0U : 1U) << &row - kPersonRows;
    }
  }
}

TEST(Controls, RadioButtonTakesTheMarkFromItsGroupOnly) {
  ControlDialog dialog;
  for (const int id : {ControlDialog::kRadio3, ControlDialog::kRadio, ControlDialog::kRadio2}) {
    dialog.GetDlgItem(id)->Press();
  }
  EXPECT_EQ(dialog.IsDlgButtonChecked(ControlDialog::kRadio), 0);
  EXPECT_EQ(dialog.IsDlgButtonChecked(ControlDialog::kRadio2), 1);
  EXPECT_EQ(dialog.IsDlgButtonChecked(ControlDialog::kRadio3), 1);
}

TEST(Controls, SpinKeepsTheBuddysNumberInItsRange) {
  ControlDialog dialog;
  dialog.edit().SetWindowText("30");
  dialog.spin().SetRange(10, 50);
  EXPECT_STREQ(dialog.edit().GetWindowText(), "30");
  const struct {
    int position;
    const char* typed;
    int steps;
    const char* text;
  } rows[] = {{60, nullptr, 0, "50"}, {-1, nullptr, 0, "10"}, {20, nullptr, 3, "23"},
              {20, "40", 1, "41"},    {20, "99", 1, "21"},    {20, "x", -50, "10"}};
  for (const auto& row : rows) {
    dialog.spin().SetPos(row.position);
    if (row.typed != nullptr) dialog.edit().SetWindowText(row.typed);
    EXPECT_EQ(dialog.spin().Step(row.steps), row.steps != 0);
    EXPECT_STREQ(dialog.edit().GetWindowText(), row.text) << row.position;
  }
  EXPECT_FALSE(dialog.spin().Step(-1));
  dialog.spin().SetRange(50, 10);
  EXPECT_TRUE(dialog.spin().Step(-1));
  EXPECT_EQ(dialog.spin().GetPos(), 11);
  dialog.edit().DestroyWindow();
  EXPECT_EQ(dialog.spin().SetPos(70), 11);
  EXPECT_EQ(dialog.spin().GetPos(), 50);
}

TEST(Controls, ControlThatTakesAPlaceTakesWhatWasThere) {
  ControlDialog dialog;
  dialog.edit().Type("abc\rd");
  dialog.combo().SetCurSel(1);
  dialog.combo().SetEditSel(1, 2);
  dialog.marks().SetCheck(2, 1);
  CEdit edit;
  CComboBox combo;
  CCheckListBox marks;
  CListBox other;
  ASSERT_TRUE(edit.SubclassDlgItem(ControlDialog::kEdit, &dialog));
  ASSERT_TRUE(combo.SubclassDlgItem(ControlDialog::kCombo, &dialog));
  ASSERT_TRUE(marks.SubclassDlgItem(ControlDialog::kMarks, &dialog));
  ASSERT_TRUE(other.SubclassDlgItem(ControlDialog::kStatic, &dialog));
  EXPECT_EQ(edit.GetLineCount(), 2);
  EXPECT_TRUE(edit.GetModify());
  EXPECT_EQ(combo.GetCurSel(), 1);
  EXPECT_EQ(combo.GetEditSel(), 0x20001U);
  EXPECT_EQ(marks.GetCheck(2), 1);
  EXPECT_EQ(other.GetCount(), 0);
  EXPECT_EQ(dialog.spin().GetBuddy(), &edit);
}

TEST(Controls, EveryWindowClassOfTemplatesMakesItsControl) {
  const struct {
    const char* window_class;
    const CRuntimeClass* made;
  } rows[] = {
      {"Static", RUNTIME_CLASS(CStatic)},       {"Edit", RUNTIME_CLASS(CEdit)},
      {"Button", RUNTIME_CLASS(CButton)},       {"ListBox", RUNTIME_CLASS(CListBox)},
      {"Spin", RUNTIME_CLASS(CSpinButtonCtrl)}, {"ComboBox", RUNTIME_CLASS(CComboBox)},
      {"ToolTip", RUNTIME_CLASS(CToolTipCtrl)}, {"CheckListBox", RUNTIME_CLASS(CCheckListBox)}};
  DialogTemplate pattern;
  for (const auto& row : rows) pattern.controls.emplace_back().window_class = row.window_class;
  pattern.controls[1].flags = {"limit=2", "number"};
  CDialog dialog;
  ASSERT_TRUE(dialog.CreateIndirect(pattern, nullptr));
  CWnd* control = dialog.GetTopWindow();
  for (const auto& row : rows) {
    EXPECT_EQ(control->GetRuntimeClass(), row.made) << row.window_class;
    if (row.made == RUNTIME_CLASS(CEdit)) {
      EXPECT_FALSE(control->Enter("100"));
      EXPECT_FALSE(control->Enter("x"));
      EXPECT_TRUE(control->Enter("10"));
    }
    control = control->GetNextWindow();
  }
}

}  // namespace
}  // namespace dq
