#include "dqlib/platform/dialog_script.h"

#include <gtest/gtest.h>

namespace dq::platform {
namespace {

/// Takes values and presses of ids below 100; 1 closes it.
class PlainDialog : public DialogView {
 public:
  std::string Caption() override { return "Plain"; }
  std::vector<DialogControl> Controls() override { return {}; }
  bool Enter(int id, std::string_view value) override {
    log += std::to_string(id) + '=' + std::string(value) + ';';
    return id < 100;
  }
  bool Press(int id) override {
    log += '!' + std::to_string(id) + ';';
    if (id == 1) open = false;
    if (id == 9) script->Play(*inner);
    return id < 100;
  }
  bool IsOpen() override { return open; }

  std::string log;
  bool open = true;
  DialogScript* script = nullptr;
  PlainDialog* inner = nullptr;
};

TEST(DialogScript, StepsArePlayedAndOpenedDialogsArePlayedTheNextOnes) {
  DialogScript script;
  EXPECT_FALSE(
      DialogScript::Read("# all\n\n 20 = a\\tb\\\\ \r\n21=\npress 9\n22=x\npress 1\n23=y\n"
                         "press 100\n24=z",
                         script));
  PlainDialog outer;
  PlainDialog inner;
  outer.script = &script;
  outer.inner = &inner;
  script.Play(outer);
  EXPECT_EQ(inner.log, "22=x;!1;");
  EXPECT_EQ(outer.log, "20= a\tb\\ ;21=;!9;23=y;!100;");
  ASSERT_TRUE(script.problem());
  EXPECT_EQ(script.problem()->line, 9U);
  EXPECT_FALSE(script.IsDone());
}

TEST(DialogScript, LineThatBreaksTheFormIsNamed) {
  for (const char* line :
       {"x=1", "press", "press x", "12", "99999999999=1", "-1=1", "1=\\x", "1=\\", "pressed 1"}) {
    DialogScript script;
    const auto problem = DialogScript::Read("1=2\n" + std::string(line), script);
    ASSERT_TRUE(problem) << line;
    EXPECT_EQ(problem->line, 2U);
    EXPECT_TRUE(script.IsDone());
  }
}

}  // namespace
}  // namespace dq::platform
