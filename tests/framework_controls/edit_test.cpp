#include "dqlib/framework/controls/edit.h"

#include <gtest/gtest.h>

#include "tests/support/scripted_locale.h"

namespace dq {
namespace {

TEST(Edit, SelectionFollowsItsRules) {
  const struct {
    int start, end;
    int first, last;
  } rows[] = {{0, -1, 0, 5}, {-1, 0, 3, 3}, {-1, 4, 3, 3}, {4, 2, 2, 4},
              {9, 9, 5, 5},  {2, 99, 2, 5}, {1, 1, 1, 1},  {-7, 0, 3, 3}};
  for (const auto& row : rows) {
    CEdit edit;
    edit.SetWindowText("hello");
    edit.SetSel(3, 1);
    edit.SetSel(row.start, row.end);
    int first = -1;
    int last = -1;
    edit.GetSel(first, last);
    EXPECT_EQ(first, row.first) << row.start << ", " << row.end;
    EXPECT_EQ(last, row.last) << row.start << ", " << row.end;
    EXPECT_EQ(edit.GetSel(), static_cast<DWORD>(row.first | row.last << 16));
  }
}

TEST(Edit, TakesFromAPersonWhatItsStyleAndLimitAllow) {
  const EditStyle plain, lines{.multi_line = true}, digits{.number = true},
      fixed{.read_only = true};
  const struct {
    EditStyle style;
    const char* typed;
    bool taken;
    const char* text;
    int lines;
  } rows[] = {
      {plain, "x", true, "axd", 1},         {plain, "x\r\ny", true, "axd", 1},
      {plain, "\r", false, "abcd", 1},      {plain, "\t", false, "abcd", 1},
      {plain, "\b", true, "ad", 1},         {plain, "123456789", true, "a12345d", 1},
      {lines, "\r", true, "a\r\nd", 2},     {lines, "\n\n", true, "a\r\n\r\nd", 3},
      {lines, "1234\n", true, "a1234d", 1}, {digits, "12", true, "a12d", 1},
      {digits, "1x", false, "abcd", 1},     {fixed, "x", false, "abcd", 1},
      {fixed, "\b", false, "abcd", 1},      {plain, "\x1b", false, "abcd", 1},
  };
  for (const auto& row : rows) {
    CEdit edit(row.style);
    edit.CreateWnd({.class_name = "Edit", .text = "abcd"});
    edit.LimitText(7);
    edit.SetSel(1, 3);
    EXPECT_EQ(edit.Type(row.typed), row.taken) << row.typed;
    EXPECT_STREQ(edit.GetWindowText(), row.text) << row.typed;
    EXPECT_EQ(edit.GetLineCount(), row.lines) << row.typed;
    EXPECT_EQ(edit.GetModify(), row.taken) << row.typed;
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
