#include "dqlib/platform/prompts.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "dqlib/platform/dialog_script.h"
#include "dqlib/platform/dialog_view.h"
#include "dqlib/platform/platform.h"
#include "tests/support/own_process.h"

namespace dq::platform {
namespace {

using test::Rows;

enum Setting { kTerminal, kOnlyControllingTerminal, kBackground, kNoTerminal };

struct Outcome {
  /// The button, or -1 if the child didn't answer in time.
  int button = -1;
  /// What the terminal showed (with its echo of the input), and what went to standard error
  /// elsewhere.
  std::string terminal;
  std::string standard_error;
};

/// Reads to the end, and writes a line of the input whenever it is asked for one.
std::string Converse(int descriptor, std::string_view input) {
  std::string all;
  char buffer[512];
  for (ssize_t count; (count = read(descriptor, buffer, sizeof buffer)) > 0;) {
    all.append(buffer, static_cast<std::size_t>(count));
    if (!all.ends_with(": ") || input.empty()) continue;
    // The question for a secret is there a little before the echo is off.
    const auto is_hidden = [&, mode = termios{}]() mutable {
      return tcgetattr(descriptor, &mode) == 0 && (mode.c_lflag & ECHO) == 0;
    };
    EXPECT_TRUE(!all.ends_with("Password: ") || test::Eventually(is_hidden));
    const std::size_t line = input.find_first_of("\n\x04") + 1;
    EXPECT_GT(write(descriptor, input.data(), line), 0);
    input.remove_prefix(line);
  }
  close(descriptor);
  return all;
}

/// In a child: takes the place in the setting, asks and leaves with the result.
[[noreturn]] void AskInChild(Setting setting, int terminal, int error_pipe,
                             const std::function<int()>& ask) {
  alarm(20);  // an endless question ends as a failure
  setsid();
  const int nothing = open("/dev/null", O_RDONLY);
  if (setting != kNoTerminal) ioctl(terminal, TIOCSCTTY, 0);
  const bool standard = setting == kTerminal || setting == kBackground;
  dup2(standard ? terminal : nothing, STDIN_FILENO);
  dup2(setting == kTerminal ? terminal : error_pipe, STDERR_FILENO);
  if (setting == kBackground) {
    const pid_t child = fork();
    if (child != 0) {
      int status = 0;
      waitpid(child, &status, WUNTRACED);
      _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 99);
    }
    setpgid(0, 0);
  }
  _exit(ask());
}

Outcome Ask(Setting setting, std::string_view input, const std::function<int()>& ask) {
  int master = -1;
  int terminal = -1;
  int errors[2];
  EXPECT_EQ(openpty(&master, &terminal, nullptr, nullptr, nullptr) + pipe(errors), 0);
  const pid_t child = fork();
  if (child == 0) AskInChild(setting, terminal, errors[1], ask);
  close(terminal);
  close(errors[1]);
  Outcome outcome{.terminal = Converse(master, input), .standard_error = Converse(errors[0], "")};
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) outcome.button = WEXITSTATUS(status);
  return outcome;
}

Outcome Show(Setting setting, std::string_view text, UINT type, std::string_view input = {}) {
  return Ask(setting, input, [&] { return System().prompts->Show("", text, type, 0); });
}

/// A dialog whose OK is refused while the name is "bad". Help asks a question of its own.
class LoginDialog : public DialogView {
 public:
  std::string Caption() override { return "Log\x1bin"; }
  std::vector<DialogControl> Controls() override { return controls_; }
  bool Enter(int id, std::string_view value) override {
    const auto found = std::ranges::find(controls_, id, &DialogControl::id);
    if (id == 13 && value != "2") return false;
    found->value = id == 13 ? "db" : value;
    if (id == 12) values_ += std::string(value) + ';';
    return true;
  }
  bool Press(int id) override {
    if (id == 9) System().prompts->Show("", "Helped", BOX_OK, 0);
    pressed = id == 1 && controls_[1].value == "bad" ? 0 : id == 9 ? 0 : id;
    return true;
  }
  bool IsOpen() override { return pressed == 0; }
  /// The values as they stand, and the pressed button.
  int Run() {
    System().prompts->RunDialog(*this);
    std::string state = "<";
    for (const DialogControl& each : controls_) state += each.value + '|';
    state += std::to_string(values_.size()) + ">\n";
    EXPECT_GT(write(STDERR_FILENO, state.data(), state.size()), 0);
    return pressed;
  }
  int pressed = 0;

 private:
  using Kind = DialogControlKind;
  std::vector<DialogControl> controls_{
      {.id = -1, .kind = Kind::kText, .label = "Name"},
      {.id = 10, .kind = Kind::kEdit, .label = "Name", .value = "sa"},
      {.id = 11, .kind = Kind::kEdit, .label = "Note", .value = "a\nb", .multiple = true},
      {.id = 12, .kind = Kind::kEdit, .label = "Password", .secret = true},
      {.id = 13, .kind = Kind::kList, .label = "Server", .items = {"dev", "db"}},
      {.id = 14, .kind = Kind::kCheck, .label = "Keep", .value = "0"},
      {.id = 15, .kind = Kind::kEdit, .label = "Hidden", .visible = false},
      {.id = 1, .kind = Kind::kButton, .label = "OK", .is_default = true},
      {.id = 2, .kind = Kind::kButton, .label = "Cancel"},
      {.id = 9, .kind = Kind::kButton, .label = "Help..."},
  };
  std::string values_;
};

TEST(Prompts, DialogIsAskedControlByControlAndAgainWhileItStaysOpen) {
  for (const auto& [input, button, state] : Rows<std::string_view, int, std::string_view>{
           {"\n\n\n\n\n\n", 1, "<|sa|a\r\nb|||0|"},
           // Values and choices are shown, but no secret.
           {"\n\n\n\n\n\n", 1,
            "Log?in\r\nName [sa]: \r\nNote [a\\nb]: \r\nPassword: \r\n  1 dev\r\n  2 db\r\n"
            "Server: \r\nKeep [no]: \r\n[OK] / Cancel / Help...: \r\n"},
           {"me\n\nsecret\n2\nyes\nc\n", 2, "[sa]: me\r\nNote [a\\nb]: \r\nPassword: \r\n  1 dev"},
           {"me\nx\\ny\\\\\nsecret\n7\n2\nyes\nc\n", 2, "<|me|x\r\ny\\|secret|db|1|"},
           {"\"\"\n\n\n\n\nhelp\n\n\n\n\n\n\n\nok\n", 1, "<||a\r\nb||"},
           {"bad\n\n\n\n\n\ngood\n\n\n\n\nO\n", 1, "<|good|"},
           {"bad\n\x04", 0, "<|bad|"},
           {"\n\n\n1\n1\n1\n1\n1\n1\n1\n1\n1\n1\n2\n\n\n", 0, "<|sa|"}}) {
    const Outcome outcome = Ask(kTerminal, input, [] { return LoginDialog().Run(); });
    EXPECT_EQ(outcome.button, button) << input;
    EXPECT_THAT(outcome.terminal, testing::HasSubstr(std::string(state)));
  }
  const Outcome nobody = Ask(kNoTerminal, "", [] { return LoginDialog().Run(); });
  EXPECT_EQ(nobody.button, 0);
  EXPECT_TRUE(nobody.standard_error.starts_with("Log\x1bin\n<")) << nobody.standard_error;
}

TEST(Prompts, AnswerIsAWordOrItsFirstLetterAndElseTheDefaultIsTaken) {
  constexpr UINT kNo = BOX_YES_NO | BOX_DEFAULT_SECOND;
  constexpr std::string_view kTenLines = "x\nx\nx\nx\nx\nx\nx\nx\nx\nx\ny\n";
  for (const auto& [setting, type, input, button] : Rows<Setting, UINT, std::string_view, int>{
           {kTerminal, BOX_YES_NO_CANCEL, "n\n", BUTTON_NO},
           {kTerminal, BOX_YES_NO_CANCEL, "cANCEL\n", BUTTON_CANCEL},
           {kTerminal, BOX_ABORT_RETRY_IGNORE, " Retry \n", BUTTON_RETRY},
           {kTerminal, BOX_YES_NO, "\n", BUTTON_YES},
           {kTerminal, kNo, "\n", BUTTON_NO},
           {kTerminal, kNo, "perhaps\nye\ny\n", BUTTON_YES},
           {kTerminal, kNo, "\x04", BUTTON_NO},
           {kTerminal, kNo, kTenLines, BUTTON_NO},
           {kTerminal, BOX_YES_NO, "what\n\x04", BUTTON_YES},
           {kTerminal, BOX_OK, "fine\n", BUTTON_OK},
           {kOnlyControllingTerminal, kNo, "y\n", BUTTON_YES},
           {kBackground, kNo, "y\n", BUTTON_NO},
           {kNoTerminal, BOX_OK, "n\n", BUTTON_OK},
           {kNoTerminal, BOX_OK_CANCEL | BOX_QUESTION, "n\n", BUTTON_OK},
           {kNoTerminal, BOX_OK_CANCEL | BOX_DEFAULT_SECOND, "", BUTTON_CANCEL},
           {kNoTerminal, BOX_ABORT_RETRY_IGNORE | BOX_DEFAULT_THIRD | BOX_STOP, "", BUTTON_IGNORE},
           {kNoTerminal, BOX_YES_NO_CANCEL | BOX_DEFAULT_SECOND, "", BUTTON_NO},
           {kNoTerminal, BOX_YES_NO | BOX_DEFAULT_THIRD, "n\n", BUTTON_YES},
           {kNoTerminal, BOX_RETRY_CANCEL, "", BUTTON_RETRY},
           {kNoTerminal, BOX_OK | BOX_DEFAULT_SECOND, "", BUTTON_OK},
           {kNoTerminal, 0xFFFFF00F, "", BUTTON_OK}}) {
    SCOPED_TRACE(testing::Message() << static_cast<int>(setting) << ' ' << type << ' ' << input);
    const Outcome outcome = Show(setting, "Sure\x01?", type, input);
    EXPECT_EQ(outcome.button, button);
    const bool asks = setting == kTerminal || setting == kOnlyControllingTerminal;
    EXPECT_EQ(outcome.terminal.find("Sure??") != std::string::npos, asks);
    EXPECT_EQ(outcome.standard_error, asks ? "" : "Sure\x01?\n");
  }
  EXPECT_EQ(Show(kNoTerminal, "No such file\r\n", BOX_OK).standard_error, "No such file\r\n");
  const Outcome outcome = Show(kTerminal, "a\r\nb\x1b[2Jc", BOX_YES_NO_CANCEL | 0x100, "\n");
  EXPECT_THAT(outcome.terminal, testing::HasSubstr("a\r\nb?[2Jc\r\nYes / [No] / Cancel: "));
}

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
