// All controls: what they tell, and that they may end while they tell it.

#include <gtest/gtest.h>

#include "dqlib/framework/windows/dialog.h"
#include "tests/framework_controls/control_dialog.h"
#include "tests/support/recording_observer.h"
#include "tests/support/rows.h"

namespace dq {
namespace {

using enum testing::ControlDialog::Id;
using enum testing::ControlDialog::RowsId;
using testing::ControlDialog;
using testing::RecordingObserver;

TEST(Controls, EveryChangeReachesTheObserver) {
  using Dialog = ControlDialog;
  using enum WindowChange;
  const struct {
    int id;
    void (*act)(Dialog&);
    std::vector<WindowChange> told;
  } rows[] = {
      {kStatic, [](Dialog& d) { d.SetDlgItemText(kStatic, "x"); }, {kText}},
      {kEdit, [](Dialog& d) { d.edit().ReplaceSel("abc"); }, {kText, kSelection}},
      {kEdit, [](Dialog& d) { d.edit().SetSel(0, 0); }, {}},
      {kEdit, [](Dialog& d) { d.edit().LimitText(3); }, {kContent}},
      {kEdit, [](Dialog& d) { d.edit().Type("x"); }, {kText, kSelection}},
      {kSpin, [](Dialog& d) { d.spin().SetRange(1, 9); }, {kContent}},
      {kEdit, [](Dialog& d) { d.spin().SetPos(5); }, {kText}},
      {kCheck, [](Dialog& d) { d.CheckDlgButton(kCheck, 2); }, {kContent}},
      {kCheck, [](Dialog& d) { d.CheckDlgButton(kCheck, 0); }, {}},
      {kList, [](Dialog& d) { d.list().AddString("x"); }, {kContent}},
      {kList, [](Dialog& d) { d.list().ResetContent(); }, {kContent, kSelection}},
      {kList, [](Dialog& d) { d.list().SetCurSel(1); }, {kSelection}},
      {kList, [](Dialog& d) { d.list().SetTopIndex(1); }, {kContent}},
      {kMany, [](Dialog& d) { d.Get<CListBox>(kMany).SetSel(-1); }, {kSelection}},
      {kMarks, [](Dialog& d) { d.marks().SetCheck(1, 1); }, {kContent}},
      {kMarks, [](Dialog& d) { d.marks().Enable(1, false); }, {kContent}},
      {kCombo, [](Dialog& d) { d.combo().SetCurSel(1); }, {kSelection, kText}},
      {kCombo, [](Dialog& d) { d.combo().ResetContent(); }, {kContent, kSelection, kText}},
      {kCombo, [](Dialog& d) { d.combo().SetWindowText("x"); }, {kText}},
      {kCombo, [](Dialog& d) { d.combo().ShowDropDown(); }, {kContent}},
      {kCombo, [](Dialog& d) { d.combo().SetDroppedWidth(300); }, {kContent}},
  };
  for (const auto& row : rows) {
    ControlDialog dialog;
    RecordingObserver observer;
    row.act(dialog);
    EXPECT_EQ(observer.Take(*dialog.GetDlgItem(row.id)), row.told) << &row - rows;
  }
  ControlDialog dialog;
  RecordingObserver observer;
  dialog.tips.AddTool(&dialog.edit(), "tip");
  dialog.tips.UpdateTipText("other", &dialog.edit());
  dialog.tips.Activate(false);
  dialog.tips.DelTool(&dialog.edit());
  EXPECT_EQ(observer.Take(dialog.tips), std::vector(4, kContent));
  EXPECT_FALSE(dialog.tips.AddTool(nullptr, "tip"));
}

const std::vector<int> kEdited = {EN_UPDATE, EN_CHANGE};

/// What a person does to the dialog, whether it is taken, and what the dialog is told.
const struct PersonRow {
  int id;
  bool (*act)(CWnd&);
  bool taken;
  std::vector<int> codes;
  const char* value;
} kPersonRows[] = {
    {kStatic, [](CWnd& c) { return c.Press() || c.Enter("x"); }, false, {}, ""},
    {kEdit, [](CWnd& c) { return c.Enter("a\nb"); }, true, kEdited, "a\r\nb"},
    {kEdit, [](CWnd& c) { return c.SendMessage(WM_CHAR, 'q') == 0; }, true, kEdited, "q"},
    {kEdit, [](CWnd& c) { return c.SetFocus() == nullptr; }, true, {EN_SETFOCUS}, ""},
    {kCheck, [](CWnd& c) { return c.Press(); }, true, {BN_CLICKED}, "1"},
    {kCheck, [](CWnd& c) { return c.Enter("2"); }, true, {BN_CLICKED}, "2"},
    {kCheck, [](CWnd& c) { return c.Enter("3"); }, false, {}, "0"},
    {kRadio, [](CWnd& c) { return c.Enter("1"); }, true, {BN_CLICKED}, "1"},
    {kRadio, [](CWnd& c) { return c.Enter("0"); }, true, {}, "0"},
    {kPush, [](CWnd& c) { return c.Press(); }, true, {BN_CLICKED}, ""},
    {kPush, [](CWnd& c) { return c.EnableWindow(false) || c.Press(); }, false, {}, ""},
    {kList, [](CWnd& c) { return c.Enter("two"); }, true, {LBN_SELCHANGE}, "Two"},
    {kList, [](CWnd& c) { return c.Enter("3"); }, true, {LBN_SELCHANGE}, "Three"},
    {kList, [](CWnd& c) { return c.Enter("4"); }, false, {}, ""},
    {kMany, [](CWnd& c) { return c.Enter("3\nOne"); }, true, {LBN_SELCHANGE}, "One\nThree"},
    {kMany, [](CWnd& c) { return c.Enter("One\nFour"); }, false, {}, ""},
    {kMarks, [](CWnd& c) { return c.Enter("Two\n3"); }, true, {CLBN_CHKCHANGE}, "Two\nThree"},
    {kCombo, [](CWnd& c) { return c.Enter("two"); }, true, {CBN_EDITCHANGE}, "two"},
    {kCombo, [](CWnd& c) { return c.Enter("Two"); }, true, {CBN_SELCHANGE}, "Two"},
    {kDropList, [](CWnd& c) { return c.Enter("two"); }, true, {CBN_SELCHANGE}, "Two"},
    {kDropList, [](CWnd& c) { return c.Enter("x"); }, false, {}, ""},
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
      row.act(*dialog.GetDlgItem(row.id));
      EXPECT_EQ(dialog.codes.size(), row.codes.empty() ? 0U : 1U) << &row - kPersonRows;
    }
  }
}

TEST(Controls, RadioButtonTakesTheMarkFromItsGroupOnly) {
  ControlDialog dialog;
  for (const int id : {kRadio3, kRadio, kRadio2}) dialog.GetDlgItem(id)->Press();
  EXPECT_FALSE(dialog.IsDlgButtonChecked(kRadio));
  EXPECT_TRUE(dialog.IsDlgButtonChecked(kRadio2) && dialog.IsDlgButtonChecked(kRadio3));
}

TEST(Controls, SpinKeepsTheBuddysNumberInItsRange) {
  ControlDialog dialog;
  dialog.edit().SetWindowText("30");
  dialog.spin().SetRange(10, 50);
  EXPECT_STREQ(dialog.edit().GetWindowText(), "30");
  for (const auto& [position, typed, steps, text] :
       test::Rows<int, const char*, int, const char*>{{60, nullptr, 0, "50"},
                                                      {-1, nullptr, 0, "10"},
                                                      {20, "40", 1, "41"},
                                                      {20, "99", 1, "21"},
                                                      {20, "x", -50, "10"}}) {
    dialog.spin().SetPos(position);
    if (typed != nullptr) dialog.edit().SetWindowText(typed);
    EXPECT_EQ(dialog.spin().Step(steps), steps != 0);
    EXPECT_STREQ(dialog.edit().GetWindowText(), text) << position;
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
  ASSERT_TRUE(edit.SubclassDlgItem(kEdit, &dialog));
  ASSERT_TRUE(combo.SubclassDlgItem(kCombo, &dialog));
  ASSERT_TRUE(marks.SubclassDlgItem(kMarks, &dialog));
  ASSERT_TRUE(other.SubclassDlgItem(kStatic, &dialog));
  EXPECT_EQ(edit.GetLineCount(), 2);
  EXPECT_TRUE(edit.GetModify());
  EXPECT_EQ(combo.GetCurSel(), 1);
  EXPECT_EQ(combo.GetEditSel(), 0x20001U);
  EXPECT_EQ(marks.GetCheck(2), 1);
  EXPECT_EQ(other.GetCount(), 0);
  EXPECT_EQ(dialog.spin().GetBuddy(), &edit);
}

TEST(Controls, ComboBoxAnswersWhereItLiesDroppedDown) {
  ControlDialog dialog;
  dialog.MoveWindow(100, 100, 500, 500);
  dialog.combo().SetDroppedWidth(300);
  CRect rect;
  dialog.combo().SendMessage(CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&rect));
  EXPECT_EQ(rect, (CRect{110, 120, 410, 160}));
  EXPECT_EQ(dialog.combo().SendMessage(CB_GETDROPPEDCONTROLRECT), 0);
}

TEST(Controls, EveryWindowClassOfTemplatesMakesItsControl) {
  DialogTemplate pattern;
  for (const char* window_class :
       {"Static", "Edit", "Button", "ListBox", "Spin", "ComboBox", "ToolTip", "CheckListBox"}) {
    pattern.controls.emplace_back().window_class = window_class;
  }
  pattern.controls[1].flags = {"limit=2", "number"};
  CDialog dialog;
  ASSERT_TRUE(dialog.CreateIndirect(pattern, nullptr));
  std::string made;
  for (const CWnd* at = dialog.GetTopWindow(); at != nullptr; at = at->GetNextWindow()) {
    made += std::string(at->GetRuntimeClass()->m_lpszClassName) + ' ';
  }
  EXPECT_EQ(made,
            "CStatic CEdit CButton CListBox CSpinButtonCtrl CComboBox CToolTipCtrl "
            "CCheckListBox ");
  CWnd& edit = *dialog.GetTopWindow()->GetNextWindow();
  EXPECT_FALSE(edit.Enter("100") || edit.Enter("x"));
  EXPECT_TRUE(edit.Enter("10"));
}

}  // namespace
}  // namespace dq
