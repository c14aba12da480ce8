#include "dqlib/platform/dialog_script.h"

#include "tests/support/testing.h"

namespace dq::platform {
namespace {

/// Takes values and presses of ids below 100; 1 closes it, and 9 opens another.
struct PlainDialog : DialogView {
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

  DialogScript* script = nullptr;
  PlainDialog* inner = nullptr;
  std::string log;
  bool open = true;
};

TEST(DialogScript, StepsArePlayedAndOpenedDialogsArePlayedTheNextOnes) {
  DialogScript script;
  EXPECT_FALSE(DialogScript::Read(
      "# all\n\n 20 = a\\tb\\\\ \r\n21=\npress 9\n22=x\npress 1\n23=y\npress 100\n24=z", script));
  PlainDialog inner;
  PlainDialog outer;
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
    EXPECT_TRUE(problem && problem->line == 2U && script.IsDone()) << line;
  }
}

}  // namespace
}  // namespace dq::platform
