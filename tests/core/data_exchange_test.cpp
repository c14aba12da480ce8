#include "dqlib/core/data_exchange.h"

#include <string>

#include "dqlib/framework/controls/edit.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "tests/framework_controls/control_dialog.h"
#include "tests/support/joined.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_prompts.h"

namespace dq {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ShownBox;

enum class Choice { kOne };

template <typename Number>
concept HasCustomNumber = requires(CDataExchange* exchange, Number& value) {
  DQDDX_CustomNumber(exchange, 7, value);
};
template <typename Enum>
concept HasEnum = requires(CDataExchange* exchange, Enum& value) {
  DQDDX_CBEnum(exchange, 7, value);
  DQDDX_RadioEnum(exchange, 7, value);
};
static_assert(HasCustomNumber<BYTE> && HasCustomNumber<short> && HasCustomNumber<long long>);
static_assert(!HasCustomNumber<bool> && !HasCustomNumber<char> && !HasCustomNumber<double>);
static_assert(!HasCustomNumber<unsigned long long> && !HasCustomNumber<CString>);
static_assert(HasEnum<Choice> && !HasEnum<double> && !HasEnum<CString>);

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
  using Text = const char*;
  for (const auto& [text, of_byte, of_short, of_unsigned, of_wide] :
       test::Rows<std::string, Text, Text, Text, Text>{
           {"", "0", "0", "0", "0"},
           {" +7\t", "7", "7", "7", "7"},
           {"00", "0", "0", "0", "0"},
           {"-0", "no", "no", "no", "no"},
           {"0x1", "no", "no", "no", "no"},
           {"1 2", "no", "no", "no", "no"},
           {"-1", "no", "-1", "4294967295", "-1"},
           {"256", "no", "256", "256", "256"},
           {"32768", "no", "no", "32768", "32768"},
           {"9223372036854775807", "no", "no", "4294967295", "9223372036854775807"},
           {"-9223372036854775808", "no", "no", "4294967295", "-9223372036854775808"},
           {"9223372036854775808", "no", "no", "4294967295", "9223372036854775807"},
           {"-99999999999999999999", "no", "no", "4294967295", "-9223372036854775808"},
           // 32 characters are read.
           {std::string(31, ' ') + "12", "1", "1", "1", "1"},
       }) {
    EXPECT_EQ(Read<BYTE>(text), of_byte) << text;
    EXPECT_EQ(Read<short>(text), of_short) << text;
    EXPECT_EQ(Read<unsigned int>(text), of_unsigned) << text;
    EXPECT_EQ(Read<long long>(text), of_wide) << text;
  }
}

TEST_F(DataExchange, TellsWhatIsWrongByTheKindOfNumber) {
  Read<BYTE>("256");
  Read<unsigned long>("x");
  Read<long long>("x");
  EXPECT_THAT(prompts.shown,
              ElementsAre(ShownBox{"Please enter an integer between 0 and 255.", 0, 61718},
                          ShownBox{"Please enter a positive integer.", 0, 61719},
                          ShownBox{"Please enter an integer.", 0, 61712}));
}

TEST_F(DataExchange, ReadsSixtyTwoCharactersOfBigNumbersWithoutBlanks) {
  CDQBigInt value;
  CDataExchange save(&window, true);
  edit.SetWindowText(std::string(63, '1').c_str());
  DQDDX_Text(&save, 7, value);
  EXPECT_EQ(value.toString(), std::string(62, '1'));
  edit.SetWindowText("1 2");
  EXPECT_THROW(DQDDX_Text(&save, 7, value), CUserException);
}

TEST_F(DataExchange, TrimsTextsAndHoldsRanges) {
  CString text;
  CDataExchange save(&window, true);
  edit.SetWindowText(" a b\t");
  DQDDX_TextTrimRightLeftSpace(&save, 7, text, false);
  EXPECT_THAT(prompts.shown, IsEmpty());
  DQDDX_TextTrimRightLeftSpace(&save, 7, text, true);
  EXPECT_EQ(text, "a b");
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
  for (const auto& [exchange, id, loaded, saved] :
       test::Rows<void (*)(CDataExchange*, int, Color&), int, Color, Color>{
           {DQDDX_CBEnum<Color>, kDropList, Color::kBlue, Color::kBlue},
           {DQDDX_CBEnum<Color>, kCombo, Color::kNone, Color::kNone},
           {DQDDX_RadioEnum<Color>, kRadio, Color::kGreen, Color::kGreen},
           {DQDDX_RadioEnum<Color>, kRadio, Color::kBlue, Color::kNone}}) {
    Color value = loaded;
    exchange(&load, id, value);
    value = Color::kNone;
    exchange(&save, id, value);
    EXPECT_EQ(value, saved) << id;
  }
  for (const auto& [id, loaded, saved] :
       test::Rows<int, const char*, const char*>{{kCombo, "two", "Two"},
                                                 {kCombo, "Tw", "Tw"},
                                                 {kDropList, "Three", "Three"},
                                                 {kDropList, "Tw", "Three"}}) {
    CString text = loaded;
    DQDDX_CBStringExact(&load, id, text);
    DQDDX_CBStringExact(&save, id, text);
    EXPECT_STREQ(text, saved) << id << loaded;
  }
  CStringList list;
  for (const char* text : {"b", "a", "b"}) list.AddTail(text);
  DQDDX_StringList(&load, kList, list);
  EXPECT_EQ(dialog.list().GetCount(), 3);
  DQDDX_StringList(&save, kList, list);
  EXPECT_EQ(test::Joined(list), "b|a|b|");
  bool check = true;
  DQDDX_Check(&load, kCheck, check);
  dialog.CheckDlgButton(kCheck, 2);
  check = false;
  DQDDX_Check(&save, kCheck, check);
  EXPECT_TRUE(check) << "undetermined counts as set";
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
