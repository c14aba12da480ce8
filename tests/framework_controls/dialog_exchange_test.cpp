#include "dqlib/framework/controls/dialog_exchange.h"

#include <gtest/gtest.h>
#include <limits>

#include "tests/framework_controls/control_dialog.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_prompts.h"

namespace dq {
namespace {

using enum testing::ControlDialog::Id;
using enum testing::ControlDialog::RowsId;
using testing::ControlDialog;

/// Moves the edit control's text to a number; the help id of the box that failed it, or 0.
template <typename Value>
UINT Save(const char* text, Value& value) {
  ControlDialog dialog;
  dialog.edit().SetWindowText(text);
  testing::ScriptedPrompts prompts;
  CDataExchange exchange(&dialog, true);
  try {
    DDX_Text(&exchange, kEdit, value);
    return 0;
  } catch (const CUserException&) {
    EXPECT_EQ(CWnd::GetFocus(), &dialog.edit());
    return prompts.shown.size() == 1 ? prompts.shown.front().help_id : 1;
  }
}

/// Texts that are refused by a box, the others with what they give.
template <typename Value>
void ExpectSaved(test::Rows<const char*, Value> good, UINT box,
                 std::initializer_list<const char*> bad) {
  Value value = 0;
  for (const auto& [text, saved] : good) {
    EXPECT_EQ(Save(text, value), 0U) << text;
    EXPECT_EQ(value, saved) << text;
  }
  value = 77;
  for (const char* text : bad) EXPECT_EQ(Save(text, value), box) << text;
  EXPECT_EQ(value, 77);
}

TEST(DialogExchange, NumbersAreReadAsTheRunTimeReadsThem) {
  constexpr int kMax = std::numeric_limits<int>::max();
  constexpr int kMin = std::numeric_limits<int>::min();
  constexpr UINT kAll = std::numeric_limits<UINT>::max();
  ExpectSaved<int>({{"0", 0},
                    {" \t-12 ", -12},
                    {"+5", 5},
                    {"007", 7},
                    {" \n5", 5},
                    {"-2147483648", kMin},
                    {"2147483648", kMax},
                    {"-2147483649 ", kMin},
                    {"99999999999999999999999", kMax}},
                   61712,
                   {"", "  ", "x", "1 2", "0x1", "-0", "+-1", "-", "\n0", "99999999999999999999x"});
  ExpectSaved<short>({{"32767", 32767}, {"-32768", -32768}}, 61712, {"32768", "9999999999"});
  ExpectSaved<UINT>({{"4294967296", kAll}, {"-1", kAll}, {"-4294967295", 1}, {"-4294967296", kAll}},
                    61719, {""});
  ExpectSaved<BYTE>({{"255", 255}}, 61718, {"256", "9999999999", "-1", "a"});
  ExpectSaved<long>({{"-2147483649", kMin}}, 61712, {""});
  ExpectSaved<unsigned long>({{"4294967295", kAll}}, 61719, {""});
}

TEST(DialogExchange, ControlsAndVariablesExchangeTheirValues) {
  ControlDialog dialog;
  CDataExchange load(&dialog, false);
  CDataExchange save(&dialog, true);
  const test::Rows<void (*)(CDataExchange*, int, int&), int, int, int> numbers = {
      {DDX_Check, kCheck, 2, 2},  {DDX_Check, kCheck, 7, 0},    {DDX_Radio, kRadio, 1, 1},
      {DDX_Radio, kRadio, 2, -1}, {DDX_CBIndex, kCombo, 2, 2},  {DDX_CBIndex, kCombo, 9, -1},
      {DDX_LBIndex, kList, 1, 1}, {DDX_LBIndex, kList, -1, -1},
  };
  for (const auto& [exchange, id, loaded, saved] : numbers) {
    int value = loaded;
    exchange(&load, id, value);
    exchange(&save, id, value);
    EXPECT_EQ(value, saved) << id << ": " << loaded;
  }
  const test::Rows<void (*)(CDataExchange*, int, CString&), int, const char*, const char*> texts = {
      {DDX_CBString, kCombo, "t", "Two"},           {DDX_CBString, kCombo, "", ""},
      {DDX_CBStringExact, kCombo, "t", "t"},        {DDX_CBStringExact, kCombo, "three", "Three"},
      {DDX_CBStringExact, kDropList, "one", "One"}, {DDX_CBStringExact, kDropList, "none", "One"},
      {DDX_LBString, kList, "th", "Three"},         {DDX_Text, kEdit, "any text", "any text"},
  };
  for (const auto& [exchange, id, loaded, saved] : texts) {
    CString value = loaded;
    exchange(&load, id, value);
    exchange(&save, id, value);
    EXPECT_STREQ(value, saved) << id << ": " << loaded;
  }
  int number = -3;
  DDX_Text(&load, kEdit, number);
  EXPECT_STREQ(dialog.edit().GetWindowText(), "-3");
  DDV_MaxChars(&load, "", 4);
  EXPECT_EQ(dialog.edit().GetLimitText(), 4U);
}

TEST(DialogExchange, ValidationShowsItsBoxOnSavingOnly) {
  ControlDialog dialog;
  testing::ScriptedPrompts prompts;
  CDataExchange load(&dialog, false);
  CDataExchange save(&dialog, true);
  DDV_MinMaxInt(&load, 9, 1, 5);
  DDV_MinMaxInt(&save, 5, 1, 5);
  DDV_MaxChars(&save, "abc", 3);
  EXPECT_TRUE(prompts.shown.empty());
  EXPECT_THROW(DDV_MinMaxInt(&save, 0, 1, 5), CUserException);
  EXPECT_THROW(DDV_MaxChars(&save, "abcd", 3), CUserException);
  EXPECT_EQ(prompts.shown,
            (std::vector<testing::ShownBox>{
                {"Please enter an integer between 1 and 5.", BOX_EXCLAMATION, 61714},
                {"Please enter no more than 3 characters.", BOX_EXCLAMATION, 61716}}));
}

TEST(DialogExchange, ControlThatIsNotThereOrOfAnotherKindIsRefused) {
  ControlDialog dialog;
  CDataExchange load(&dialog, false);
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
  DDX_Control(&load, kEdit, edit);
  DDX_Control(&load, kEdit, edit);
  EXPECT_EQ(dialog.GetDlgItem(kEdit), &edit);
}

}  // namespace
}  // namespace dq
