#include "dqlib/framework/controls/edit.h"

#include <gtest/gtest.h>

#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"

namespace dq {
namespace {

TEST(Edit, SelectionFollowsItsRules) {
  const test::Rows<int, int, DWORD> rows = {{0, -1, 0x50000}, {-1, 4, 0x30003}, {4, 2, 0x40002},
                                            {9, 9, 0x50005},  {2, 99, 0x50002}, {-7, 0, 0x30003}};
  for (const auto& [start, end, selected] : rows) {
    CEdit edit;
    edit.SetWindowText("hello");
    edit.SetSel(3, 1);
    edit.SetSel(start, end);
    EXPECT_EQ(edit.GetSel(), selected) << start << ", " << end;
  }
}

TEST(Edit, TakesFromAPersonWhatItsStyleAndLimitAllow) {
  const EditStyle plain, lines{.multi_line = true}, digits{.number = true},
      fixed{.read_only = true};
  const test::Rows<EditStyle, const char*, bool, const char*> rows = {
      {plain, "x\r\ny", true, "axd"},       {plain, "\r", false, "abcd"},
      {plain, "\t", false, "abcd"},         {plain, "\b", true, "ad"},
      {plain, "12345678", true, "a12345d"}, {lines, "\r", true, "a\r\nd"},
      {lines, "\n\n", true, "a\r\n\r\nd"},  {lines, "1234\n", true, "a1234d"},
      {digits, "12", true, "a12d"},         {digits, "1x", false, "abcd"},
      {fixed, "x", false, "abcd"},          {fixed, "\b", false, "abcd"},
      {plain, "\x1b", false, "abcd"},
  };
  for (const auto& [style, typed, taken, text] : rows) {
    CEdit edit(style);
    edit.CreateWnd({.class_name = "Edit", .text = "abcd"});
    edit.LimitText(7);
    edit.SetSel(1, 3);
    EXPECT_EQ(edit.Type(typed), taken) << typed;
    EXPECT_STREQ(edit.GetWindowText(), text) << typed;
    EXPECT_EQ(edit.GetModify(), taken) << typed;
    edit.SetSel(0, -1);
    edit.ReplaceSel("longer than the limit");
    EXPECT_EQ(edit.GetWindowTextLength(), 21) << "the program isn't limited";
  }
}

TEST(Edit, BackspaceTakesAWholeCharacterOrLineEnd) {
  test::ScriptedLocale locale;
  ASSERT_TRUE(locale.SetCodePage(932));
  CEdit edit(EditStyle{.multi_line = true});
  edit.CreateWnd({.class_name = "Edit", .text = "a\r\n\x83\x41"});
  edit.SetSel(4, 4);
  EXPECT_EQ(edit.GetSel(), 0x30003U) << "not inside a character";
  edit.SetSel(9, 9);
  for (const char* text : {"a\r\n", "a", ""}) {
    EXPECT_TRUE(edit.Type("\b"));
    EXPECT_STREQ(edit.GetWindowText(), text);
  }
  EXPECT_FALSE(edit.Type("\b"));
}

TEST(Edit, LinesAreFoundByPlaceAndNumber) {
  CEdit edit(EditStyle{.multi_line = true});
  edit.SetWindowText("ab\r\n\r\nc\nd");
  EXPECT_EQ(edit.GetLineCount(), 3);
  const int line_of[] = {0, 0, 0, 0, 1, 1, 2, 2, 2, 2};
  for (int at = 0; at < 10; ++at) EXPECT_EQ(edit.LineFromChar(at), line_of[at]) << at;
  EXPECT_EQ(edit.LineIndex(1), 4);
  EXPECT_EQ(edit.LineIndex(3), -1);
  edit.SetSel(7, 9);
  EXPECT_EQ(edit.LineIndex(), 6);
}

}  // namespace
}  // namespace dq
