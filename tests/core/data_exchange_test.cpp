#include "dqlib/core/data_exchange.h"

#include "tests/framework_controls/control_dialog.h"
#include "tests/support/joined.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using testing::ShownBox;
using enum testing::ControlDialog::Id;
using enum testing::ControlDialog::RowsId;

// Types whose numbers no control exchanges.
template <typename... Types>
constexpr bool kNoneIsExchanged = !(detail::ExchangedNumber<Types> || ...);
static_assert(kNoneIsExchanged<bool, char, double, unsigned long long, CString, CDQBigInt>);

class DataExchange : public ::testing::Test {
 protected:
  template <typename Number>
  void ExpectToTakeBlanksForZero(Number value) {
    // 32 characters are read.
    const test::Rows<std::string, int> rows = {{" +7\t", 7},
                                               {"", 0},
                                               {"\t ", 0},
                                               {std::string(31, ' ') + "12", 1},
                                               {std::string(32, ' ') + "1", 0}};
    for (const auto& [text, expected] : rows) {
      edit.SetWindowText(text.c_str());
      value = 99;
      DQDDX_CustomNumber(&save, kEdit, value);
      EXPECT_EQ(value, expected) << text;
    }
    edit.SetWindowText("x");
    value = 99;
    EXPECT_THROW(DQDDX_Text(&save, kEdit, value), CUserException);
    DQDDX_Text(&load, kEdit, value);
    EXPECT_EQ(edit.GetWindowText(), "99");
  }

  testing::ControlDialog dialog;
  CEdit& edit = dialog.edit();
  CDataExchange save{&dialog, true};
  CDataExchange load{&dialog, false};
  testing::ScriptedPrompts prompts;
};

TEST_F(DataExchange, BlanksAreTheNumberZeroOfEachType) {
  using Numbers = std::tuple<BYTE, short, int, UINT, long, unsigned long, long long>;
  std::apply([&](auto... numbers) { (ExpectToTakeBlanksForZero(numbers), ...); }, Numbers());
}

TEST_F(DataExchange, ReadsSixtyTwoCharactersOfBigNumbersWithoutBlanks) {
  CDQBigInt value;
  const std::string digits = "-1234567890" + std::string(51, '1');
  edit.SetWindowText((digits + "2").c_str());
  DQDDX_Text(&save, kEdit, value);
  EXPECT_EQ(value.toString(), digits);
  edit.SetWindowText("1 2");
  EXPECT_THROW(DQDDX_Text(&save, kEdit, value), CUserException);
  EXPECT_EQ(prompts.shown, (std::vector<ShownBox>{{"Please enter an integer.", 0, 61712}}));
  DQDDX_Text(&load, kEdit, value);
  EXPECT_EQ(edit.GetWindowText(), digits);
}

TEST_F(DataExchange, TrimsTextsAndHoldsRanges) {
  CString text = " a b\t";
  DQDDX_TextTrimRightLeftSpace(&load, kEdit, text, true);
  DQDDX_TextTrimRightLeftSpace(&save, kEdit, text, false);
  EXPECT_TRUE(prompts.shown.empty());
  DQDDX_TextTrimRightLeftSpace(&save, kEdit, text, true);
  EXPECT_EQ(text, "a b");
  for (const int value : {5, 6}) DQDDV_MinMaxI64(&save, value, 5, 6);
  for (const int value : {4, 7}) {
    EXPECT_THROW(DQDDV_MinMaxI64(&save, value, 5, 6), CUserException) << value;
    DQDDV_MinMaxI64(&load, value, 5, 6);
  }
  const ShownBox between{"Enter a value between 5 and 6\n"};
  EXPECT_EQ(prompts.shown,
            (std::vector<ShownBox>{
                {"Whitespace characters was trimmed from the string a b"}, between, between}));
}

enum class Color { kRed, kGreen, kBlue, kNone = 9 };

TEST_F(DataExchange, MovesWhatIsChosenAndLeavesTheVariableWithoutAChoice) {
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
  CString text = "two";
  DQDDX_CBStringExact(&load, kCombo, text);
  DQDDX_CBStringExact(&save, kCombo, text);
  EXPECT_EQ(text, "Two");
  CStringList list;
  for (const char* row : {"b", "a", "b"}) list.AddTail(row);
  DQDDX_StringList(&load, kList, list);
  EXPECT_EQ(dialog.list().GetCount(), 3);
  DQDDX_StringList(&save, kList, list);
  EXPECT_EQ(test::Joined(list), "b|a|b|");
  bool check = true;
  DQDDX_Check(&load, kCheck, check);
  EXPECT_EQ(dialog.IsDlgButtonChecked(kCheck), 1U);
  dialog.CheckDlgButton(kCheck, 2);
  check = false;
  DQDDX_Check(&save, kCheck, check);
  EXPECT_TRUE(check) << "undetermined counts as set";
  Color color = Color::kRed;
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
