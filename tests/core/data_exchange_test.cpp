#include "dqlib/core/data_exchange.h"

#include <limits>
#include <string>

#include "dqlib/framework/controls/edit.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "tests/framework_controls/control_dialog.h"
#include "tests/support/scripted_prompts.h"

namespace dq {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A window with the edit control 7.
class DataExchange : public ::testing::Test {
 protected:
  DataExchange() {
    window.CreateWnd("Dialog");
    edit.CreateWnd({.class_name = "Edit", .parent = &window, .id = 7});
  }

  /// What the text is read as; "no" if the exchange fails and leaves the variable.
  template <typename Number>
  std::string Read(const std::string& text) {
    edit.SetWindowText(text.c_str());
    Number value = 99;
    try {
      CDataExchange exchange(&window, true);
      DQDDX_Text(&exchange, 7, value);
    } catch (const CUserException&) {
      return value == 99 ? "no" : "changed";
    }
    return std::to_string(value);
  }

  CWnd window;
  CEdit edit;
  testing::ScriptedPrompts prompts;
};

TEST_F(DataExchange, ReadsNumbersAsEachTypeHoldsThem) {
  const std::string spaces(31, ' ');
  const struct {
    const char* text;
    const char* of_byte;
    const char* of_short;
    const char* of_unsigned;
    const char* of_wide;
  } kRows[] = {
      {"", "0", "0", "0", "0"},
      {" \t", "0", "0", "0", "0"},
      {" +7\t", "7", "7", "7", "7"},
      {"00", "0", "0", "0", "0"},
      {"-0", "no", "no", "no", "no"},
      {"x", "no", "no", "no", "no"},
      {"0x1", "no", "no", "no", "no"},
      {"1 2", "no", "no", "no", "no"},
      {"+-1", "no", "no", "no", "no"},
      {"-1", "no", "-1", "4294967295", "-1"},
      {"256", "no", "256", "256", "256"},
      {"32768", "no", "no", "32768", "32768"},
      {"9223372036854775807", "no", "no", "4294967295", "9223372036854775807"},
      {"-9223372036854775808", "no", "no", "4294967295", "-9223372036854775808"},
      {"9223372036854775808", "no", "no", "4294967295", "9223372036854775807"},
      {"-99999999999999999999", "no", "no", "4294967295", "-9223372036854775808"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(Read<BYTE>(row.text), row.of_byte) << row.text;
    EXPECT_EQ(Read<short>(row.text), row.of_short) << row.text;
    EXPECT_EQ(Read<unsigned int>(row.text), row.of_unsigned) << row.text;
    EXPECT_EQ(Read<long long>(row.text), row.of_wide) << row.text;
  }
  EXPECT_EQ(Read<long long>(spaces + "12"), "1");  // 32 characters
}

TEST_F(DataExchange, TellsWhatIsWrongByTheKindOfNumber) {
  Read<BYTE>("256");
  Read<int>("x");
  Read<unsigned long>("x");
  Read<long long>("x");
  EXPECT_THAT(prompts.shown,
              ElementsAre(testing::ShownBox{"Please enter an integer between 0 and 255.", 0, 61718},
                          testing::ShownBox{"Please enter an integer.", 0, 61712},
                          testing::ShownBox{"Please enter a positive integer.", 0, 61719},
                          testing::ShownBox{"Please enter an integer.", 0, 61712}));
}

TEST_F(DataExchange, ReadsSixtyTwoCharactersOfBigNumbersWithoutBlanks) {
  CDQBigInt value;
  CDataExchange save(&window, true);
  edit.SetWindowText(std::string(63, '1').c_str());
  DQDDX_Text(&save, 7, value);
  EXPECT_EQ(value.toString(), std::string(62, '1'));
  edit.SetWindowText("1 2");
  EXPECT_THROW(DQDDX_Text(&save, 7, value), CUserException);
  EXPECT_THAT(prompts.shown, ElementsAre(testing::ShownBox{"Please enter an integer.", 0, 61712}));
}

TEST_F(DataExchange, TrimsTextsAndHoldsRanges) {
  CString text;
  CDataExchange save(&window, true);
  edit.SetWindowText(" a b\t");
  DQDDX_TextTrimRightLeftSpace(&save, 7, text, false);
  EXPECT_THAT(prompts.shown, IsEmpty());
  DQDDX_TextTrimRightLeftSpace(&save, 7, text, true);
  EXPECT_EQ(text, "a b");
  DQDDV_MinMaxI64(&save, 5, 5, 6);
  EXPECT_THROW(DQDDV_MinMaxI64(&save, 7, 5, 6), CUserException);
  CDataExchange load(&window, false);
  DQDDV_MinMaxI64(&load, 7, 5, 6);
  ASSERT_EQ(prompts.shown.size(), 2U);
  EXPECT_EQ(prompts.shown[0].text, "Whitespace characters was trimmed from the string a b");
  EXPECT_EQ(prompts.shown[1].text, "Enter a value between 5 and 6\n");
  EXPECT_EQ(prompts.shown[1].type, BOX_OK);
}

enum class Color { kRed, kGreen, kBlue, kNone = 9 };

TEST(DataExchangeOfRows, MovesWhatIsChosenAndLeavesTheVariableWithoutAChoice) {
  using enum testing::ControlDialog::Id;
  using enum testing::ControlDialog::RowsId;
  testing::ControlDialog dialog;
  CDataExchange load(&dialog, false);
  CDataExchange save(&dialog, true);
  const struct {
    void (*exchange)(CDataExchange*, int, Color&);
    int id;
    Color loaded;
    Color saved;
  } enums[] = {{DQDDX_CBEnum<Color>, kDropList, Color::kBlue, Color::kBlue},
               {DQDDX_CBEnum<Color>, kCombo, Color::kNone, Color::kNone},
               {DQDDX_RadioEnum<Color>, kRadio, Color::kGreen, Color::kGreen},
               {DQDDX_RadioEnum<Color>, kRadio, Color::kBlue, Color::kNone}};
  for (const auto& row : enums) {
    Color value = row.loaded;
    row.exchange(&load, row.id, value);
    EXPECT_EQ(value, row.loaded);
    value = Color::kNone;
    row.exchange(&save, row.id, value);
    EXPECT_EQ(value, row.saved) << row.id;
  }
  const struct {
    int id;
    const char* loaded;
    const char* saved;
  } texts[] = {{kCombo, "two", "Two"},
               {kCombo, "Tw", "Tw"},
               {kDropList, "Three", "Three"},
               {kDropList, "Tw", "Three"}};
  for (const auto& row : texts) {
    CString text = row.loaded;
    DQDDX_CBStringExact(&load, row.id, text);
    DQDDX_CBStringExact(&save, row.id, text);
    EXPECT_STREQ(text, row.saved) << row.id << row.loaded;
  }
  CStringList list;
  for (const char* text : {"b", "a", "b"}) list.AddTail(text);
  DQDDX_StringList(&load, kList, list);
  EXPECT_EQ(dialog.list().GetCount(), 3);
  DQDDX_StringList(&save, kList, list);
  EXPECT_EQ(list.GetCount(), 3);
  EXPECT_EQ(list.GetHead(), "b");
  bool check = true;
  DQDDX_Check(&load, kCheck, check);
  dialog.CheckDlgButton(kCheck, 2);
  check = false;
  DQDDX_Check(&save, kCheck, check);
  EXPECT_TRUE(check) << "undetermined counts as set";
  testing::ScriptedPrompts prompts;
  BYTE byte = 7;
  dialog.edit().SetWindowText("256");
  EXPECT_THROW(DQDDX_CustomNumber(&save, kEdit, byte), CUserException);
  EXPECT_EQ(byte, 7);
  EXPECT_THAT(prompts.shown, ElementsAre(testing::ShownBox{
                                 "Please enter an integer between 0 and 255.", 0, 61718}));
  Color color = Color::kRed;
  CString text;
  for (const int id : {int{kMissing}, int{kStatic}}) {
    EXPECT_THROW(DQDDX_CBEnum(&save, id, color), CNotSupportedException);
    EXPECT_THROW(DQDDX_RadioEnum(&save, id, color), CNotSupportedException);
    EXPECT_THROW(DQDDX_StringList(&save, id, list), CNotSupportedException);
    EXPECT_THROW(DQDDX_CBStringExact(&save, id, text), CNotSupportedException);
    EXPECT_THROW(DQDDX_Check(&save, id, check), CNotSupportedException);
  }
  EXPECT_EQ(list.GetCount(), 3);
}

}  // namespace
}  // namespace dq
