#include "dqlib/platform/prompts.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

#include "dqlib/platform/posix/dialog_questions.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/posix/terminal.h"
#include "dqlib/platform/seam_texts.h"

namespace dq::platform::posix {
namespace {

/// Answers that make no sense before the default button is taken: a terminal that is fed by a
/// program must not be asked for ever.
constexpr int kAttempts = 10;
/// Bytes of an answer that are looked at; more than the longest button name.
constexpr std::size_t kLongestAnswer = 32;

SeamTextId NameOf(BoxButton button) {
  return static_cast<SeamTextId>(UINT{IDS_BUTTON_OK} + static_cast<UINT>(button - BUTTON_OK));
}

std::string WithLineEnd(std::string text) {
  if (!text.ends_with('\n')) text += '\n';
  return text;
}

/// "[Yes] / No / Cancel: ", the default in brackets.
std::string ButtonLine(UINT type) {
  std::string line;
  for (const BoxButton button : BoxButtons(type)) {
    if (!line.empty()) line += " / ";
    const bool preselected = button == DefaultBoxButton(type);
    line += preselected ? "[" : "";
    line += Text(NameOf(button));
    line += preselected ? "]" : "";
  }
  return line + ": ";
}

/// The button that the answer names; a box with one button takes any answer.
std::optional<BoxButton> Choose(UINT type, std::string_view answer) {
  const std::span<const BoxButton> buttons = BoxButtons(type);
  if (answer.empty() || buttons.size() == 1) return DefaultBoxButton(type);
  std::vector<SeamTextId> names(buttons.size());
  std::ranges::transform(buttons, names.begin(), NameOf);
  const std::optional<std::size_t> named = NamedText(answer, names);
  return named ? std::optional(buttons[*named]) : std::nullopt;
}

BoxButton Ask(const Terminal& terminal, UINT type) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    WriteAll(terminal.output(), ButtonLine(type));
    const std::optional<std::string> answer = ReadLine(terminal.input(), kLongestAnswer);
    if (!answer) {
      WriteAll(terminal.output(), "\n");
      break;
    }
    if (const auto button = Choose(type, Trim(*answer))) return *button;
  }
  return DefaultBoxButton(type);
}

/// Asks on the terminal. Without one, a message box takes its default button and its text goes to
/// standard error as it stands, and a dialog is left with its caption told there. A terminal shows
/// neither captions of message boxes nor icons nor help topics.
class TerminalPrompts : public Prompts {
 public:
  int Show(std::string_view, std::string_view text, UINT type, UINT) override {
    const std::lock_guard lock(one_at_a_time_);
    const Terminal terminal;
    if (!terminal.CanAsk()) {
      WriteAll(STDERR_FILENO, WithLineEnd(std::string(text)));
      return DefaultBoxButton(type);
    }
    WriteAll(terminal.output(), WithLineEnd(ForTerminal(text)));
    return Ask(terminal, type);
  }

  void RunDialog(DialogView& dialog) override {
    const Terminal terminal;
    if (terminal.CanAsk()) {
      DialogQuestions(terminal, dialog, one_at_a_time_).Run();
    } else {
      WriteAll(STDERR_FILENO, WithLineEnd(dialog.Caption()));
    }
  }

 private:
  /// Held for a question, and not for a whole dialog, whose handlers ask more.
  std::mutex one_at_a_time_;
};

}  // namespace

Prompts& SystemPrompts() {
  static TerminalPrompts& prompts = *new TerminalPrompts;
  return prompts;
}

}  // namespace dq::platform::posix
