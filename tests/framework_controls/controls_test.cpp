// All controls: what they show and tell, that they may end while they tell it, the rows that some
// have, and the exchange of values with them.

#include "dqlib/framework/controls/row_store.h"
#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

using enum ControlDialog::Id;
using enum ControlDialog::RowsId;

/// Kind by number, what else is said of it, its items and its value.
std::string Described(const CWnd& control) {
  platform::DialogControl shown;
  control.Describe(shown);
  std::string text = std::to_string(static_cast<int>(shown.kind));
  text.append(shown.editable ? " editable" : "").append(shown.multiple ? " multiple" : "");
  text.append(shown.secret ? " secret" : "").append(shown.is_default ? " default" : "");
  for (const std::string& item : shown.items) text += " " + item;
  return text + " =" + shown.value;
}

struct Controls : testing::Test {
  /// Takes what was notified, "id:code " each.
  std::string Codes() {
    std::string text;
    for (const auto& [id, code] : std::exchange(dialog.codes, {})) {
      text += std::to_string(id) + ":" + std::to_string(code) + " ";
    }
    return text;
  }

  ControlDialog dialog;
};

TEST_F(Controls, AreMadeByTheWordsOfTemplatesAndDescribeThemselves) {
  // The word, the flags, and the class and description of what is made.
  for (const auto& [word, flags, described] : Cases<3>(R"(defbutton => => CButton 1 default =
      text => => CStatic 0 = ;; group => => CButton 0 =
      button => => CButton 1 = ;; edit => multiline password => CEdit 4 editable multiple secret =
      check => => CButton 2 =0 ;; radio => => CButton 3 =0 ;; list => => CListBox 5 b a =
      edit => limit=2 number => CEdit 4 editable =t ;; combo => droplist sorted => CComboBox 6 a b =
      list => multiple sorted => CListBox 5 multiple a b = ;; class "ToolTip" => => CToolTipCtrl 7 =
      checklist => => CCheckListBox 5 multiple b a = ;; spin => => CSpinButtonCtrl 7 =
      progress => => CProgressCtrl 0 =0% ;; hotkey => hidden => CHotKeyCtrl 4 editable =
      class "BitmapButton" => picture=1 => CBitmapButton 1 =
      edit => readonly => CEdit 0 =t ;; combo => limit=2 => CComboBox 6 editable b a =t)")) {
    SCOPED_TRACE(word + flags);
    CDialog made;
    const std::string text = "size 9 9\n" + word + " 1 \"t\" 0 0 1 1 " + flags;
    ASSERT_TRUE(made.CreateIndirect(*ReadDialogTemplate(text), nullptr));
    CWnd& control = *made.GetTopWindow();
    if (auto* const has_rows = dynamic_cast<RowControl*>(&control)) {
      for (const char* row : {"b", "a"}) has_rows->AddString(row);
    }
    EXPECT_EQ(control.GetRuntimeClass()->m_lpszClassName + (" " + Described(control)), described);
    if (!flags.starts_with("limit=2")) continue;
    EXPECT_FALSE(control.Enter("100") || (flags.ends_with("number") && control.Enter("x")));
    EXPECT_TRUE(control.Enter("10"));
  }
}

TEST_F(Controls, EveryChangeReachesTheObserver) {
  RecordingObserver told;
  CEdit& edit = dialog.edit();
  edit.ReplaceSel("abc");
  for (const int at : {3, 0}) edit.SetSel(at, at);
  edit.Type("x");
  edit.LimitText(3);
  edit.SetReadOnly(true);
  EXPECT_EQ(told.Take(), "2 text 2 selection 2 selection 2 text 2 selection 2 content 2 content ");
  dialog.spin().SetRange(1, 9);
  EXPECT_TRUE(dialog.spin().Step(1) && dialog.spin().SetPos(5) == 2);
  for (int twice = 0; twice < 2; ++twice) dialog.CheckDlgButton(kCheck, 2);
  EXPECT_EQ(told.Take(), "3 content 3 content 2 selection 2 text 3 content 2 text 4 content ");
  dialog.Get<CButton>(kCheck).SetKind(ButtonKind::kCheck);
  EXPECT_EQ(dialog.IsDlgButtonChecked(kCheck), 1u) << "there is no third state any more";
  CListBox &list = dialog.list(), &many = dialog.Get<CListBox>(kMany);
  EXPECT_TRUE(list.AddString("x") == 3 && list.DeleteString(0) == 3 && list.SetCurSel(1) == 1);
  EXPECT_EQ(list.SetTopIndex(1), 0);
  list.ResetContent();
  EXPECT_TRUE(many.SetSel(-1) == 0 && many.GetSelCount() == 3);
  dialog.Get<CCheckListBox>(kMarks).SetCheck(1, 1);
  dialog.Get<CCheckListBox>(kMarks).Enable(1, false);
  CComboBox& combo = dialog.combo();
  for (int twice = 0; twice < 2; ++twice) combo.SetCurSel(1);
  combo.ResetContent();
  combo.SetWindowText("x");
  for (int twice = 0; twice < 2; ++twice) combo.ShowDropDown();
  combo.SetDroppedWidth(300);
  EXPECT_TRUE(combo.LimitText(0) && combo.SetCurSel(-1) == -1);
  EXPECT_EQ(
      told.Take() + combo.GetWindowText(),
      "4 content 4 content 20 +rows@3*1 20 -rows@0*1 20 selection 20 content 20 -rows@0*3 20 "
      "selection 21 selection@0*3 22 rows@1*1 22 rows@1*1 23 selection 23 text 23 -rows@0*3 23 "
      "selection 23 text 23 text 23 content 23 content 23 content 23 selection 23 text ");
  CToolTipCtrl tips;
  tips.Create(&dialog);
  tips.AddTool(&edit, "tip");
  tips.UpdateTipText("other", &edit);
  EXPECT_EQ(tips.GetText(&edit) + tips.GetText(&list), "other");
  for (int twice = 0; twice < 2; ++twice) tips.Activate(false);
  for (int twice = 0; twice < 2; ++twice) tips.DelTool(&edit);
  EXPECT_FALSE(tips.AddTool(nullptr, "tip"));
  EXPECT_EQ(told.Take(), "0 created 2 tip 2 tip 2 tip ");
}

/// What a person enters or else does.
bool Act(CWnd& control, std::string_view what) {
  if (what == "press") return control.Press();
  if (what == "press disabled") return control.EnableWindow(false) || control.Press();
  if (what == "focus") return control.SetFocus() == nullptr;
  if (what == "type q") return control.SendMessage(WM_CHAR, 'q') == 0;
  return control.Enter(what);
}

TEST_F(Controls, ParentIsToldOfWhatAPersonDoesAndMayDestroyTheControlOrTheDialogThen) {
  // The control's id and what is done: the codes that the dialog is told, and the value. The ids: 1
  // static, 2 edit, 4 check, 5 radio, 8 push, 20 list, 21 many, 22 marks, 23 combo, 24 drop list.
  std::istringstream rows(
      "1 press: refused =; 1 x: refused =; 2 a\nb: 1024 768 =a\r\nb; 2 type q: 1024 768 =q; 2 "
      "focus: 256 =; 4 press: 0 =1; 4 2: 0 =2; 4 3: refused =0; 4 00: refused =0; 4 0: =0; 5 "
      "press: 0 =1; 5 2: refused =0; 24 0: refused =; 24 3: 9 1 =Three; 22 4: refused =; 23 a\tb: "
      "refused =; 2 a\tb: 1024 768 =a\tb; 21 3: 1 =Three; 5 1: 0 =1; 5 0: =0; 8 press: 0 =; 8 "
      "press disabled: refused =; 20 press: refused =; 20 two: 1 =Two; 20 3: 1 =Three; 20 4: "
      "refused =; 21 3\nOne: 1 =One\nThree; 21 One\nFour: refused =; 22 Two\n3: 40 =Two\nThree; "
      "23 two: 6 5 =two; 23 Two: 9 1 =Two; 24 two: 9 1 =Two; 24 x: refused =");
  for (std::string row; std::getline(rows >> std::ws, row, ';');) {
    SCOPED_TRACE(row);
    const int id = std::stoi(row);
    std::string got = row.substr(0, row.find(": "));
    const std::string what = got.substr(got.find(' ') + 1);
    ControlDialog told;
    got += Act(*told.GetDlgItem(id), what) ? ": " : ": refused ";
    for (const auto& [from, code] : told.codes) {
      got += (from == id ? "" : "?") + std::to_string(code) + " ";
    }
    const std::string described = Described(*told.GetDlgItem(id));
    EXPECT_EQ(got + described.substr(described.find('=')), row);
    for (const bool whole : {false, true}) {
      ControlDialog ending;
      ending.handler = [&](int from) {
        if (whole) ending.DestroyWindow();
        std::erase_if(ending.controls,
                      [&](const auto& each) { return whole || each->GetDlgCtrlID() == from; });
      };
      Act(*ending.GetDlgItem(id), what);
      // A control that ends with the focus says so.
      std::erase_if(ending.codes, [](const auto& each) { return each.second == EN_KILLFOCUS; });
      EXPECT_EQ(ending.codes.size(), told.codes.empty() ? 0U : 1U);
    }
  }
}

TEST_F(Controls, TakeAPersonsEditsAsTheLayersOwnControlMakesThem) {
  dialog.edit().SetStyle({});
  const Rows<int, int, int, const char*, bool, const char*> rows = {
      {kEdit, 0, 0, "abc", true, "2:1024 2:768 abc"},
      {kEdit, 1, 1, "", true, "2:1024 2:768 ac"},
      {kEdit, 2, 1, "x", false, "ac"},
      {kEdit, -1, 0, "x", false, "ac"},
      {kEdit, 0, 0, "a\nb", false, "ac"},
      {kEdit, 1, 0, "1234", false, "2:1281 2:1024 2:768 a123c"},
      {kEdit, 5, 0, "z", false, "2:1281 a123c"},
      {kEdit, 0, 5, "", true, "2:1024 2:768 "},
      {kCombo, 0, 0, "two", true, "23:6 23:5 two"},
      {kCombo, 2, 1, "\t", false, "two"},
      {kCombo, 0, 3, "", true, "23:6 23:5 "},
      {kDropList, 0, 0, "x", false, ""}};
  for (const auto& [id, first, removed, inserted, taken, left] : rows) {
    auto* const edit = dynamic_cast<CEdit*>(dialog.GetDlgItem(id));
    if (edit != nullptr) edit->LimitText(5);
    Codes();
    EXPECT_EQ(edit != nullptr ? edit->EditText(first, removed, inserted, 1, 1)
                              : dialog.Get<CComboBox>(id).EditText(first, removed, inserted, 0, 0),
              taken)
        << inserted;
    EXPECT_EQ(Codes() + std::string(dialog.GetDlgItemText(id)), left);
  }
  // The handler of `EN_MAXTEXT` may make room, or refuse.
  CEdit& edit = dialog.edit();
  edit.LimitText(2);
  dialog.handler = [&](int) { edit.LimitText(4); };
  EXPECT_TRUE(edit.EditText(0, 0, "abcd", 4, 4) && Codes() == "2:1281 2:1024 2:768 ");
  dialog.handler = [&](int) { edit.SetReadOnly(); };
  EXPECT_FALSE(edit.EditText(0, 0, "x", 1, 1) || edit.Type("x"));
  EXPECT_EQ(Codes() + edit.GetWindowText(), "2:1281 abcd");
  dialog.handler = {};
  // What the program does is told too, but not of a text of several lines that is set.
  dialog.edit().SetWindowText("s");
  dialog.edit().ReplaceSel("r");
  dialog.edit().SetStyle({.multi_line = true});
  dialog.edit().SetWindowText("m");
  dialog.edit().ReplaceSel("r");
  dialog.combo().SetWindowText("Two");
  dialog.combo().SetCurSel(2);
  EXPECT_EQ(Codes(), "2:1024 2:768 2:1024 2:768 2:1024 2:768 23:6 23:5 ");
}

/// A dialog that a person works with by keys; what its buttons, and help, do is logged.
struct KeyDialog : CDialog {
  BOOL OnCommand(WPARAM wparam, LPARAM) override {
    if (HiWord(wparam) == BN_CLICKED) log += "!" + std::to_string(LoWord(wparam)) + " ";
    return 1;
  }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message == WM_HELP) log += "help ";
    return CDialog::WindowProc(message, wparam, lparam);
  }
  /// Presses keys, separated by blanks: a letter with Alt, "'" before one without; names of others.
  /// The log, and where the focus is after each.
  std::string Press(const char* keys) {
    static const std::map<std::string, WORD> kNames = {
        {"Tab", VK_TAB}, {"Back", VK_TAB},  {"Enter", VK_RETURN}, {"Esc", VK_ESCAPE},
        {"F1", VK_F1},   {"Down", VK_DOWN}, {"Up", VK_UP},        {"CtrlTab", VK_TAB},
    };
    std::istringstream words(keys);
    for (std::string word; words >> word;) {
      layer.held = {word == "Back" ? VK_SHIFT : word == "CtrlTab" ? VK_CONTROL : 0};
      MSG message{GetFocus()->GetSafeHwnd(), WM_KEYDOWN, 0, 0};
      if (kNames.contains(word)) {
        message.wParam = kNames.at(word);
      } else {
        message.message = word.front() == '\'' ? WM_CHAR : WM_SYSCHAR;
        message.wParam = static_cast<WPARAM>(word.back());
      }
      if (PreTranslateMessage(&message) == 0) log += "- ";
      log += std::to_string(GetFocus() == nullptr ? 0 : GetFocus()->GetDlgCtrlID()) + " ";
    }
    return std::exchange(log, {});
  }

  std::string log;
  HeldKeys layer;
};

TEST(DialogKeys, MoveTheFocusPressButtonsAndGoToMnemonics) {
  KeyDialog dialog;
  CDialog page;
  const auto pattern = ReadDialogTemplate(
      "size 9 9\ntext 9 \"&Name &&c\" 0 0 1 1\nedit 10 \"\" 0 0 1 1\ncheck 11 \"&Mark\" 0 0 1 1\n"
      "radio 12 \"One\" 0 0 1 1 group\nradio 13 \"T&wo\" 0 0 1 1 disabled\n"
      "radio 14 \"Three\" 0 0 1 1\nedit 15 \"\" 0 0 1 1 multiline group\n"
      "combo 16 \"\" 0 0 1 1\nbutton 17 \"&Go\" 0 0 1 1\nbutton 18 \"&Get\" 0 0 1 1\n"
      "edit 19 \"\" 0 0 1 1 hidden\ndefbutton 1 \"OK\" 0 0 1 1\n");
  const auto inner = ReadDialogTemplate("size 9 9\nbutton 20 \"Wh&at?\" 0 0 1 1\n");
  ASSERT_TRUE(dialog.CreateIndirect(pattern.value(), nullptr));
  ASSERT_TRUE(page.CreateIndirect(inner.value(), &dialog, true));
  page.ShowWindow(SW_SHOW);
  dialog.ShowWindow(SW_SHOW);
  for (const auto& [keys, log] : Cases<2>(R"(
      Tab Tab Tab Tab Tab Tab Tab Tab Tab => 11 12 15 16 17 18 1 20 10 ;; Back Back Tab => 20 1 20 ;;
      n m => 10 !11 11 ;; Tab Down Down => 12 !14 14 !12 12 ;; Down Back Tab Up => !14 14 11 14 !12 12 ;;
      w => - 12 ;; g g G => 17 18 17 ;; 'g 'x => 18 - 18 ;; a => 20 ;; Enter => 20 ;;
      n Enter Esc => 10 !1 10 !2 10 ;; 'm CtrlTab => - 10 - 10 ;; Tab Tab Tab Enter => 11 12 15 - 15 ;;
      Esc Down F1 => !2 15 - 15 help 15 ;; & c => - 15 - 15)")) {
    EXPECT_EQ(dialog.Press(keys.c_str()), log + " ") << keys;
  }
  CComboBox& combo = *DYNAMIC_DOWNCAST(CComboBox, dialog.GetDlgItem(16));
  combo.SetFocus();
  combo.DropDown(true);
  EXPECT_EQ(dialog.Press("Esc Enter Tab Esc"), "- 16 - 16 17 !2 17 ")
      << "the list wants them first";
  dialog.DestroyWindow();
}

TEST_F(Controls, ComboBoxTellsHowItsListIsDroppedDownAndLetGo) {
  CComboBox& combo = dialog.combo();
  combo.SetFocus();
  EXPECT_TRUE(combo.DropDown(true) && combo.Choose(1) && combo.DropDown(true) && combo.Choose(1));
  EXPECT_EQ(Codes(), "23:3 23:7 23:9 23:8 23:1 23:7 23:9 23:8 ");
  combo.ShowDropDown();
  dialog.edit().SetFocus();
  EXPECT_EQ(Codes(), "23:7 23:10 23:8 23:4 2:256 ");
  combo.EnableWindow(false);
  EXPECT_FALSE(combo.DropDown(true) || combo.GetDroppedState());
}

TEST_F(Controls, RadioButtonTakesTheMarkFromItsGroupOnly) {
  for (const int id : {kRadio3, kRadio, kRadio2}) dialog.GetDlgItem(id)->Press();
  EXPECT_TRUE(dialog.IsDlgButtonChecked(kRadio2) && dialog.IsDlgButtonChecked(kRadio3));
  EXPECT_EQ(dialog.GetCheckedRadioButton(kRadio, kRadio3), kRadio2);
  dialog.CheckRadioButton(kRadio, kRadio3, kRadio3);
  EXPECT_TRUE(dialog.GetCheckedRadioButton(kRadio, kRadio3) == kRadio3 &&
              dialog.GetCheckedRadioButton(kRadio, kRadio2) == 0);
}

TEST_F(Controls, SpinKeepsTheBuddysNumberInItsRange) {
  CSpinButtonCtrl& spin = dialog.spin();
  dialog.SetDlgItemInt(kEdit, 30);
  spin.SetRange(10, 50);
  EXPECT_EQ(dialog.GetDlgItemText(kEdit), "30");
  // A position, what is typed then, steps, and the text of the buddy.
  for (const auto& [position, typed, steps, text] : Cases<4>(R"(60 => => 0 => 50 ;; -1 => => 0 => 10
      20 => 40 => 1 => 41 ;; 20 => 50 => -1 => 49 ;; 20 => 99 => 1 => 21 ;; 20 => x => -50 => 10)")) {
    spin.SetPos(std::stoi(position));
    if (!typed.empty()) dialog.edit().SetWindowText(typed.c_str());
    EXPECT_EQ(spin.Step(std::stoi(steps)), steps != "0");
    EXPECT_EQ(dialog.edit().GetWindowText(), text) << position;
  }
  EXPECT_TRUE(!spin.EnableWindow(false) && !spin.Step(1) && spin.EnableWindow() && !spin.Step(-1));
  spin.SetRange(50, 10);
  EXPECT_TRUE(spin.Step(-1) && spin.GetPos() == 11);
  dialog.edit().DestroyWindow();
  EXPECT_TRUE(spin.SetPos(70) == 11 && spin.GetPos() == 50);
}

TEST_F(Controls, ControlThatTakesAPlaceTakesWhatWasThere) {
  dialog.edit().Type("abc\rd");
  dialog.combo().SetCurSel(1);
  EXPECT_TRUE(dialog.combo().SetEditSel(1, 2));
  EXPECT_FALSE(dialog.Get<CComboBox>(kDropList).SetEditSel(1, 2));
  dialog.Get<CCheckListBox>(kMarks).SetCheck(2, 1);
  CEdit edit;
  CComboBox combo;
  CCheckListBox marks;
  CListBox other;
  ASSERT_TRUE(edit.SubclassDlgItem(kEdit, &dialog) && combo.SubclassDlgItem(kCombo, &dialog));
  ASSERT_TRUE(marks.SubclassDlgItem(kMarks, &dialog) && other.SubclassDlgItem(kStatic, &dialog));
  EXPECT_TRUE(edit.GetModify() && edit.GetLineCount() == 2 && dialog.spin().GetBuddy() == &edit);
  EXPECT_TRUE(combo.GetCurSel() == 1 && combo.GetEditSel() == 0x20001);
  EXPECT_TRUE(marks.GetCheck(2) == 1 && other.GetCount() == 0);
  for (CWnd* child = dialog.GetTopWindow(); child != nullptr; child = dialog.GetTopWindow()) {
    child->SendMessage(WM_CLOSE);
    ASSERT_NE(dialog.GetTopWindow(), child) << "each closes";
  }
}

TEST_F(Controls, ComboBoxPutsTheCaretBehindOtherTextsThanItsRowsAndAnswersWhereItLiesDroppedDown) {
  CComboBox& combo = dialog.combo();
  EXPECT_TRUE(combo.Enter("other") && combo.GetEditSel() == 0x50005);
  EXPECT_TRUE(combo.Enter("One") && combo.GetCurSel() == 0);
  EXPECT_TRUE(dialog.list().Enter("two") && dialog.list().Enter("two")) << "chosen already";
  dialog.MoveWindow(100, 100, 500, 500);
  for (const auto& [width, right] : Rows<UINT, LONG>{{300, 410}, {30, 190}}) {
    combo.SetDroppedWidth(width);
    CRect rect;
    combo.SendMessage(CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&rect));
    EXPECT_EQ(rect, (CRect{110, 120, right, 160}));
  }
  EXPECT_EQ(combo.SendMessage(CB_GETDROPPEDCONTROLRECT), 0);
}

TEST(Edit, SelectionFollowsItsRules) {
  const Rows<int, int, DWORD> rows = {{0, -1, 0x50000}, {-1, 4, 0x30003}, {4, 2, 0x40002},
                                      {9, 9, 0x50005},  {2, 99, 0x50002}, {-7, 0, 0x30003}};
  for (const auto& [start, end, selected] : rows) {
    CEdit edit;
    EXPECT_EQ(edit.GetSel(), 0U);
    edit.SetWindowText("hello");
    edit.SetSel(3, 1);
    edit.SetSel(start, end);
    EXPECT_EQ(edit.GetSel(), selected) << start << ", " << end;
  }
}

TEST(Edit, TakesFromAPersonWhatItsStyleAndLimitAllow) {
  const EditStyle plain, lines{.multi_line = true}, digit{.number = true}, fixed{.read_only = true};
  const Rows<EditStyle, const char*, bool, const char*> rows = {
      {plain, "x\r\ny", true, "axd"},       {plain, "\r", false, "abcd"},
      {plain, "\t", false, "abcd"},         {plain, "\b", true, "ad"},
      {plain, "12345678", true, "a12345d"}, {lines, "\r", true, "a\r\nd"},
      {lines, "\n\n", true, "a\r\n\r\nd"},  {lines, "1234\n", true, "a1234d"},
      {digit, "09", true, "a09d"},          {fixed, "\b", false, "abcd"},
      {digit, "/", false, "abcd"},          {digit, ":", false, "abcd"},
      {plain, "\x1F", false, "abcd"},       {plain, " ", true, "a d"},
      {plain, "1234é5", true, "a1234d"}};
  for (const auto& [style, typed, taken, text] : rows) {
    CEdit edit(style);
    edit.CreateWnd({.class_name = "Edit", .text = "abcd"});
    edit.LimitText(7);
    edit.SetSel(1, 3);
    EXPECT_TRUE(edit.Type(typed) == taken && edit.GetModify() == taken) << typed;
    EXPECT_STREQ(edit.GetWindowText(), text) << typed;
    edit.SetSel(0, -1);
    edit.ReplaceSel("longer than the limit");
    EXPECT_EQ(edit.GetWindowTextLength(), 21) << "the program isn't limited";
  }
}

TEST(Edit, BackspaceTakesAWholeCharacterOrLineEndAndLinesAreFoundByPlaceAndNumber) {
  ScriptedLocale locale;
  ASSERT_TRUE(locale.SetCodePage(932));
  CEdit edit(EditStyle{.multi_line = true});
  edit.CreateWnd({.class_name = "Edit", .text = "a\r\n\x83\x41"});
  edit.SetSel(4, 4);
  EXPECT_EQ(edit.GetSel(), 0x30003U) << "not inside a character";
  edit.SetSel(9, 9);
  for (const char* text : {"a\r\n", "a", ""}) {
    EXPECT_TRUE(edit.Type("\b") && edit.GetWindowText() == std::string(text)) << text;
  }
  EXPECT_FALSE(edit.Type("\b"));
  edit.SetWindowText("ab\r\n\r\nc\nd");
  std::string lines;
  for (int at = 0; at < 10; ++at) lines += std::to_string(edit.LineFromChar(at));
  EXPECT_EQ(lines, "0000112222");
  edit.SetSel(7, 9);
  EXPECT_TRUE(edit.GetLineCount() == 3 && edit.LineFromChar(-1) == 2 && edit.LineIndex() == 6);
  EXPECT_TRUE(edit.LineIndex(1) == 4 && edit.LineIndex(3) == -1);
  edit.SetWindowText("\r\nb");
  EXPECT_EQ(edit.LineIndex(1), 2);
}

// ---- The exchange of values

struct DialogExchange : Controls {
  /// What the texts of the edit control, with "|" between them, are saved as, or "#" and the help
  /// id of the box that refuses.
  std::string Saved(auto value, const char* texts) {
    std::string result;
    std::istringstream rest(texts);
    for (std::string text; std::getline(rest, text, '|');) {
      dialog.edit().SetWindowText(text.c_str());
      dialog.list().SetFocus();
      value = 77;
      try {
        DDX_Text(&save, kEdit, value);
        result += std::to_string(value) + " ";
      } catch (const CUserException&) {
        EXPECT_TRUE(CWnd::GetFocus() == &dialog.edit() && value == 77);
        result += "#" + std::to_string(prompts.shown.back().help_id) + " ";
      }
    }
    return result;
  }
  ScriptedPrompts prompts;
  CDataExchange load{&dialog, false}, save{&dialog, true};
};

TEST_F(DialogExchange, NumbersAreReadAsTheRunTimeReadsThem) {
  EXPECT_EQ(
      Saved(0, "0| \t-12 |+5|007| \n5|-2147483648|2147483648|-2147483649 |99999999999999999999"),
      "0 -12 5 7 5 -2147483648 2147483647 -2147483648 2147483647 ");
  EXPECT_EQ(Saved(0, "|  |x|1 2|0x1|-0|+-1|-|\n0|99999999999999999999x"),
            "#61712 #61712 #61712 #61712 #61712 #61712 #61712 #61712 #61712 #61712 ");
  EXPECT_EQ(Saved(0, "000000000000000000000000000000123"), "12 ") << "32 characters count";
  EXPECT_EQ(Saved(short{}, "32767|-32768|32768|999999999"), "32767 -32768 #61712 #61712 ");
  EXPECT_EQ(Saved(0U, "|4294967296|-1|-4294967295|-4294967296"),
            "#61719 4294967295 4294967295 1 4294967295 ");
  EXPECT_EQ(Saved(BYTE{}, "255|256|99999999|-1|a"), "255 #61718 #61718 #61718 #61718 ");
  EXPECT_EQ(Saved(0L, "|-2147483649"), "#61712 -2147483648 ");
  EXPECT_EQ(Saved(0UL, "|4294967295"), "#61719 4294967295 ");
  EXPECT_EQ(Saved(0LL, "|-9223372036854775809"), "#61712 -9223372036854775808 ");
}

TEST_F(DialogExchange, ControlsAndVariablesExchangeTheirValues) {
  const Rows<void (*)(CDataExchange*, int, int&), int, int, int> numbers = {
      {DDX_Check, kCheck, 2, 2},  {DDX_Check, kCheck, 7, 0},    {DDX_Radio, kRadio, 1, 1},
      {DDX_Radio, kRadio, 2, -1}, {DDX_CBIndex, kCombo, 2, 2},  {DDX_CBIndex, kCombo, 9, -1},
      {DDX_LBIndex, kList, 1, 1}, {DDX_LBIndex, kList, -1, -1}, {DDX_Text, kEdit, -3, -3}};
  const Rows<void (*)(CDataExchange*, int, CString&), int, CString, CString> texts = {
      {DDX_CBString, kCombo, "t", "Two"},           {DDX_CBString, kCombo, "", ""},
      {DDX_CBStringExact, kCombo, "t", "t"},        {DDX_CBStringExact, kCombo, "three", "Three"},
      {DDX_CBStringExact, kDropList, "one", "One"}, {DDX_CBStringExact, kDropList, "none", "One"},
      {DDX_LBString, kList, "th", "Three"},         {DDX_Text, kEdit, "any text", "any text"}};
  const auto exchanged = [&](const auto& rows) {
    for (const auto& [exchange, id, loaded, saved] : rows) {
      auto value = loaded;
      exchange(&load, id, value);
      exchange(&save, id, value);
      EXPECT_EQ(value, saved) << id;
    }
  };
  exchanged(numbers);
  exchanged(texts);
  DDV_MaxChars(&load, "", 4);
  EXPECT_EQ(dialog.edit().GetLimitText(), 4U);
}

TEST_F(DialogExchange, ValidationShowsItsBoxOnSavingOnly) {
  DDV_MinMaxInt(&load, 9, 1, 5);
  for (const int inside : {1, 5}) DDV_MinMaxInt(&save, inside, 1, 5);
  DDV_MaxChars(&save, "abc", 3);
  for (const int bad : {0, 6}) EXPECT_THROW(DDV_MinMaxInt(&save, bad, 1, 5), CUserException);
  EXPECT_THROW(DDV_MaxChars(&save, "abcd", 3), CUserException);
  const ShownBox range{"Please enter an integer between 1 and 5.", BOX_EXCLAMATION, 61714};
  const ShownBox size{"Please enter no more than 3 characters.", BOX_EXCLAMATION, 61716};
  EXPECT_THAT(prompts.shown, testing::ElementsAre(range, range, size));
}

TEST_F(DialogExchange, ControlThatIsNotThereOrOfAnotherKindIsRefused) {
  int number = 0;
  CString text;
  CEdit edit;
  for (const int id : {int{kMissing}, int{kStatic}}) {
    EXPECT_THROW(DDX_Check(&load, id, number), CNotSupportedException);
    EXPECT_THROW(DDX_CBString(&load, id, text), CNotSupportedException);
    EXPECT_THROW(DDX_LBIndex(&load, id, number), CNotSupportedException);
  }
  EXPECT_THROW(DDX_Text(&load, kMissing, text), CNotSupportedException);
  EXPECT_THROW(DDX_Control(&load, kMissing, edit), CNotSupportedException);
  for (int twice = 0; twice < 2; ++twice) DDX_Control(&load, kEdit, edit);
  EXPECT_EQ(dialog.GetDlgItem(kEdit), &edit);
}

TEST(RowStore, AnswersAsAPlainListOfTextsDoes) {
  std::mt19937 random(20261);
  detail::RowStore store;
  std::vector<std::string> plain;
  for (int step = 0; step < 20'000; ++step) {
    const int at = static_cast<int>(random() % (plain.size() + 1));
    const std::string text(random() % 3, "aAbB"[random() % 4]);
    const std::string lower = multi_byte::Lower(text);
    if (random() % 8 < 3 && at < store.size()) {
      store.Erase(at);
      plain.erase(plain.begin() + at);
    } else if (plain.size() < 60) {
      store.Insert(at, text);
      plain.insert(plain.begin() + at, text);
      ASSERT_EQ(std::exchange(store[at].data, 1U), 0U) << "a row that is used again begins anew";
    }
    // The rows behind `at`, then those from the first on.
    const int count = static_cast<int>(plain.size());
    int exact = -1, prefix = -1;
    for (int steps = count; steps > 0; --steps) {
      const int next = (at < count ? at + steps : steps - 1) % count;
      const std::string row = multi_byte::Lower(plain[static_cast<std::size_t>(next)]);
      if (row == lower) exact = next;
      if (!lower.empty() && row.starts_with(lower)) prefix = next;
    }
    ASSERT_TRUE(store.FindExact(at, text) == exact && store.FindPrefix(at, text) == prefix) << step;
  }
  EXPECT_EQ(store.Texts(), plain);
}

TEST(RowStore, PersonNamesRowsByOneLineEachAndEqualOnesOneAfterTheOther) {
  detail::RowStore store;
  for (const char* text : {"a", "B", "A", "2", "a"}) store.Insert(store.size(), text);
  // A row's own text may be added, wherever the rows lie then.
  for (int i = 0; i < 20; ++i) store.Insert(store.size(), store.Text(1));
  for (int i = 0; i < 20; ++i) store.Erase(5);
  EXPECT_EQ(store.FindExact(1, "b"), 1) << "they are all gone";
  const Rows<std::string_view, const char*> rows = {
      {"", "....."},           {"a", "x...."},    {"A\na", "x.x.."}, {"a\r\nA\na", "x.x.x"},
      {"a\na\na\na", "x.x.x"}, {"1\na", "x.x.."}, {"2\nb", ".x.x."}, {"5", "....x"},
      {{"34", 1}, "..x.."},    {"6", ""},         {"0", ""},         {"a\n\na", ""}};
  for (const auto& [lines, marks] : rows) {
    std::vector<bool> named;
    std::string got;
    if (store.FindAllNamed(lines, named)) {
      for (const bool each : named) got += each ? 'x' : '.';
    }
    EXPECT_EQ(got, marks) << lines;
  }
}

TEST(RowStore, SortedListPutsEqualsBehindEachOtherAndKeepsTheSelectedRow) {
  CListBox list(ListStyle{.sorted = true});
  std::string places;
  for (const char* text : {"b", "C", "a", "B", "c", "A"}) {
    places += std::to_string(list.AddString(text));
    if (list.GetCount() == 1) list.SetCurSel(0);
  }
  for (int at = 0; at < 6; ++at) places += std::string(" ") + list.GetText(at);
  EXPECT_EQ(places, "010241 a A b B C c");
  EXPECT_TRUE(list.GetCurSel() == 2 && list.InsertString(0, "z") == 0 && list.GetCurSel() == 3);
  EXPECT_TRUE(list.DeleteString(1) == 6 && list.DeleteString(3) == 5 && list.GetCurSel() == 2);
  EXPECT_TRUE(list.DeleteString(2) == 4 && list.GetCurSel() == -1);
  for (const int bad : {-2, 99}) {
    EXPECT_THAT((std::vector{list.InsertString(bad, "x"), list.DeleteString(bad),
                             list.SetCurSel(bad), list.SetItemData(bad, 1), list.GetTextLen(bad),
                             list.GetSel(bad), list.SetTopIndex(bad)}),
                testing::Each(-1));
    EXPECT_EQ(list.GetItemData(bad), ~std::uintptr_t{0});
  }
}

}  // namespace
}  // namespace dq::test
