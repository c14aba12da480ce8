#include "dqlib/framework/controls/dialog_exchange.h"

#include <gtest/gtest.h>

#include "tests/framework_controls/control_dialog.h"
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

template <typename Value>
void ExpectSaved(std::initializer_list<std::tuple<const char*, UINT, Value>> rows) {
  for (const auto& [text, failure, saved] : rows) {
    Value value = 77;
    EXPECT_EQ(Save(text, value), failure) << text;
    EXPECT_EQ(value, failure == 0 ? saved : Value{77}) << text;
  }
}

TEST(DialogExchange, NumbersAreReadAsTheRunTimeReadsThem) {
  ExpectSaved<int>({{"0", 0, 0},
                    {" \t-12 ", 0, -12},
                    {"+5", 0, 5},
                    {"007", 0, 7},
                    {"2147483647", 0, 2147483647},
                    {"-2147483648", 0, -2147483647 - 1},
                    {"2147483648", 0, 2147483647},
                    {"-2147483649 ", 0, -2147483647 - 1},
                    {"", 61712, 0},
                    {"  ", 61712, 0},
                    {"x", 61712, 0},
                    {"1 2", 61712, 0},
                    {"0x1", 61712, 0},
                    {"-0", 61712, 0},
                    {"+-1", 61712, 0},
                    {"-", 61712, 0},
                    {" \n5", 0, 5},
                    {"\n0", 61712, 0},
                    {"99999999999999999999999", 0, 2147483647},
                    {"99999999999999999999999x", 61712, 0}});
  ExpectSaved<short>(
      {{"32767", 0, 32767}, {"32768", 61712, 0}, {"9999999999", 61712, 0}, {"-32768", 0, -32768}});
  ExpectSaved<UINT>({{"4294967295", 0, 4294967295U},
                     {"4294967296", 0, 4294967295U},
                     {"-1", 0, 4294967295U},
                     {"-4294967295", 0, 1},
                     {"-4294967296", 0, 4294967295U}});
  ExpectSaved<BYTE>({{"255", 0, 255},
                     {"256", 61718, 0},
                     {"9999999999", 61718, 0},
                     {"-1", 61718, 0},
                     {"a", 61718, 0}});
  ExpectSaved<long>({{"-2147483649", 0, -2147483647L - 1}, {"9", 0, 9}});
  ExpectSaved<unsigned long>({{"4294967295", 0, 4294967295UL}, {"", 61719, 0}});
}

TEST(DialogExchange, ControlsAndVariablesExchangeTheirValues) {
  ControlDialog dialog;
  CDataExchange load(&dialog, false);
  CDataExchange save(&dialog, true);
  const struct {
    void (*exchange)(CDataExchange*, int, int&);
    int id;
    int loaded;
    int saved;
  } numbers[] = {
      {DDX_Check, kCheck, 2, 2},  {DDX_Check, kCheck, 7, 0},    {DDX_Radio, kRadio, 1, 1},
      {DDX_Radio, kRadio, 2, -1}, {DDX_CBIndex, kCombo, 2, 2},  {DDX_CBIndex, kCombo, 9, -1},
      {DDX_LBIndex, kList, 1, 1}, {DDX_LBIndex, kList, -1, -1},
  };
  for (const auto& row : numbers) {
    int value = row.loaded;
    row.exchange(&load, row.id, value);
    row.exchange(&save, row.id, value);
    EXPECT_EQ(value, row.saved) << row.id << ": " << row.loaded;
  }
  const struct {
    void (*exchange)(CDataExchange*, int, CString&);
    int id;
    const char* loaded;
    const char* saved;
  } texts[] = {
      {DDX_CBString, kCombo, "t", "Two"},           {DDX_CBString, kCombo, "", ""},
      {DDX_CBStringExact, kCombo, "t", "t"},        {DDX_CBStringExact, kCombo, "three", "Three"},
      {DDX_CBStringExact, kDropList, "one", "One"}, {DDX_CBStringExact, kDropList, "none", "One"},
      {DDX_LBString, kList, "th", "Three"},         {DDX_Text, kEdit, "any text", "any text"},
  };
  for (const auto& row : texts) {
    CString value = row.loaded;
    row.exchange(&load, row.id, value);
    row.exchange(&save, row.id, value);
    EXPECT_STREQ(value, row.saved) << row.id << ": " << row.loaded;
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
