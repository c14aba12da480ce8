#include "dqlib/platform/prompts.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "dqlib/platform/platform.h"

namespace dq::platform {
namespace {

enum class Setting { kTerminal, kOnlyControllingTerminal, kBackground, kNoTerminal };

struct Outcome {
  /// The button, or -1 if the child didn't answer in time.
  int button = -1;
  /// What the terminal showed (with its echo of the input), and what went to standard error
  /// elsewhere.
  std::string terminal;
  std::string standard_error;
};

std::string ReadAll(int descriptor) {
  std::string all;
  char buffer[512];
  for (ssize_t count; (count = read(descriptor, buffer, sizeof buffer)) > 0;) {
    all.append(buffer, static_cast<std::size_t>(count));
  }
  close(descriptor);
  return all;
}

/// In a child: takes the place in the setting and leaves with the button that was pressed.
[[noreturn]] void ShowInChild(Setting setting, int terminal, int error_pipe, std::string_view text,
                              UINT type) {
  alarm(20);  // an endless question ends as a failure
  setsid();
  const int nothing = open("/dev/null", O_RDONLY);
  if (setting != Setting::kNoTerminal) ioctl(terminal, TIOCSCTTY, 0);
  const bool standard = setting == Setting::kTerminal || setting == Setting::kBackground;
  dup2(standard ? terminal : nothing, STDIN_FILENO);
  dup2(setting == Setting::kTerminal ? terminal : error_pipe, STDERR_FILENO);
  if (setting == Setting::kBackground) {
    const pid_t child = fork();
    if (child != 0) {
      int status = 0;
      waitpid(child, &status, WUNTRACED);
      _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 99);
    }
    setpgid(0, 0);
  }
  _exit(System().prompts->Show("", text, type, 0));
}

Outcome Show(Setting setting, std::string_view text, UINT type, std::string_view input = {}) {
  const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  grantpt(master);
  unlockpt(master);
  const int terminal = open(ptsname(master), O_RDWR | O_NOCTTY);
  EXPECT_EQ(write(master, input.data(), input.size()), static_cast<ssize_t>(input.size()));
  int error_pipe[2];
  EXPECT_EQ(pipe(error_pipe), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(master);
    close(error_pipe[0]);
    ShowInChild(setting, terminal, error_pipe[1], text, type);
  }
  close(terminal);
  close(error_pipe[1]);
  Outcome outcome;
  outcome.terminal = ReadAll(master);
  outcome.standard_error = ReadAll(error_pipe[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) outcome.button = WEXITSTATUS(status);
  return outcome;
}

TEST(Prompts, WithoutATerminalTheDefaultIsTakenAndTheTextGoesToStandardError) {
  const struct {
    UINT type;
    int button;
  } rows[] = {
      {BOX_OK, BUTTON_OK},
      {BOX_OK_CANCEL | BOX_QUESTION, BUTTON_OK},
      {BOX_OK_CANCEL | BOX_DEFAULT_SECOND, BUTTON_CANCEL},
      {BOX_ABORT_RETRY_IGNORE | BOX_DEFAULT_THIRD | BOX_STOP, BUTTON_IGNORE},
      {BOX_YES_NO_CANCEL | BOX_DEFAULT_SECOND, BUTTON_NO},
      {BOX_YES_NO | BOX_DEFAULT_THIRD, BUTTON_YES},
      {BOX_RETRY_CANCEL, BUTTON_RETRY},
      {BOX_OK | BOX_DEFAULT_SECOND, BUTTON_OK},
      {0xFFFFF00F, BUTTON_OK},
  };
  for (const auto& row : rows) {
    const Outcome outcome = Show(Setting::kNoTerminal, "Delete\x01 it?", row.type, "n\n");
    EXPECT_EQ(outcome.button, row.button) << row.type;
    EXPECT_EQ(outcome.standard_error, "Delete\x01 it?\n");
  }
  EXPECT_EQ(Show(Setting::kNoTerminal, "No such file\r\n", BOX_OK).standard_error,
            "No such file\r\n");
}

TEST(Prompts, AnswerIsAWordOrItsFirstLetter) {
  const struct {
    UINT type;
    std::string_view input;
    int button;
  } rows[] = {
      {BOX_YES_NO_CANCEL, "n\n", BUTTON_NO},
      {BOX_YES_NO_CANCEL, "cANCEL\n", BUTTON_CANCEL},
      {BOX_ABORT_RETRY_IGNORE, " Retry \n", BUTTON_RETRY},
      {BOX_YES_NO, "\n", BUTTON_YES},
      {BOX_YES_NO | BOX_DEFAULT_SECOND, "\n", BUTTON_NO},
      {BOX_YES_NO | BOX_DEFAULT_SECOND, "perhaps\nye\ny\n", BUTTON_YES},
      {BOX_YES_NO | BOX_DEFAULT_SECOND, "\x04", BUTTON_NO},
      {BOX_YES_NO, "what\n\x04", BUTTON_YES},
      {BOX_OK, "fine\n", BUTTON_OK},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Show(Setting::kTerminal, "Sure?", row.type, row.input).button, row.button)
        << row.type << ' ' << row.input;
  }
}

TEST(Prompts, QuestionEndsAfterTenSenselessAnswers) {
  std::string input;
  for (int line = 0; line < 10; ++line) input += "x\n";
  EXPECT_EQ(
      Show(Setting::kTerminal, "Sure?", BOX_YES_NO | BOX_DEFAULT_SECOND, input + "y\n").button,
      BUTTON_NO);
}

TEST(Prompts, TerminalShowsTextAndButtonsAndIsNotSteered) {
  const Outcome outcome =
      Show(Setting::kTerminal, "a\r\nb\x1b[2Jc", BOX_YES_NO_CANCEL | 0x100, "\n");
  EXPECT_NE(outcome.terminal.find("a\r\nb?[2Jc\r\nYes / [No] / Cancel: "), std::string::npos)
      << outcome.terminal;
  EXPECT_EQ(outcome.standard_error, "");
}

TEST(Prompts, ControllingTerminalIsAskedWhenStandardHandlesAreElsewhere) {
  const Outcome outcome =
      Show(Setting::kOnlyControllingTerminal, "Sure?", BOX_YES_NO | BOX_DEFAULT_SECOND, "y\n");
  EXPECT_EQ(outcome.button, BUTTON_YES);
  EXPECT_NE(outcome.terminal.find("Sure?"), std::string::npos);
}

TEST(Prompts, ProcessInTheBackgroundTakesTheDefaultInsteadOfBeingStopped) {
  const Outcome outcome =
      Show(Setting::kBackground, "Sure?", BOX_YES_NO | BOX_DEFAULT_SECOND, "y\n");
  EXPECT_EQ(outcome.button, BUTTON_NO);
  EXPECT_EQ(outcome.standard_error, "Sure?\n");
}

}  // namespace
}  // namespace dq::platform
