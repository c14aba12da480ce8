#include "dqlib/core/data_exchange.h"

#include <limits>
#include <string>

#include "dqlib/framework/controls/edit.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
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
      {"9223372036854775807", "no", "no", "no", "9223372036854775807"},
      {"-9223372036854775808", "no", "no", "no", "-9223372036854775808"},
      {"9223372036854775808", "no", "no", "no", "no"},
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
}

}  // namespace
}  // namespace dq
