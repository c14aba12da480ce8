#include "dqlib/platform/posix/dialog_questions.h"

#include <algorithm>

#include "dqlib/platform/ascii.h"
#include "dqlib/platform/seam_texts.h"

namespace dq::platform::posix {
namespace {

/// Refused answers to one question, and presses in a row that change nothing, before the dialog is
/// left: a terminal that is fed by a program must not be asked for ever.
constexpr int kAttempts = 10;
/// Bytes of an answer; longer ones are refused.
constexpr std::size_t kLongestAnswer = 65536;
/// What is shown of long lists and values.
constexpr std::size_t kMostItems = 50;
constexpr std::size_t kLongestShown = 200;

constexpr std::string_view kNothing = "\"\"";
constexpr char kInterrupt = '\x03';
/// What a mark is called that has the value 0 or 1.
constexpr SeamTextId kMarks[] = {IDS_MARK_NO, IDS_MARK_YES};

bool IsMark(DialogControlKind kind) {
  return kind == DialogControlKind::kCheck || kind == DialogControlKind::kRadio;
}

bool IsAsked(const DialogControl& control) {
  if (!control.visible || !control.enabled) return false;
  return IsMark(control.kind) || control.kind == DialogControlKind::kEdit ||
         control.kind == DialogControlKind::kList || control.kind == DialogControlKind::kCombo;
}

bool IsPressed(const DialogControl& control) {
  return control.visible && control.enabled && control.kind == DialogControlKind::kButton;
}

/// On one line, with escapes for the line feeds of a text with several.
std::string OneLine(std::string_view text, bool escape) {
  std::string line;
  for (const char each : ForTerminal(text)) {
    if (escape && each == '\\') {
      line += "\\\\";
    } else if (each == '\n') {
      line += escape ? "\\n" : " ";
    } else {
      line += each;
    }
  }
  return line;
}

/// Cuts a long text where a character of UTF-8 begins.
std::string Shortened(std::string text) {
  if (text.size() <= kLongestShown) return text;
  std::size_t size = kLongestShown;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
  return text.substr(0, size) + "...";
}

/// Undoes `\n` and `\\`; other backslashes stand for themselves.
std::string Unescaped(std::string_view answer) {
  std::string text;
  for (std::size_t at = 0; at < answer.size(); ++at) {
    const char next = at + 1 < answer.size() ? answer[at + 1] : '\0';
    const bool escape = answer[at] == '\\' && (next == 'n' || next == '\\');
    text += !escape ? answer[at] : next == 'n' ? '\n' : '\\';
    if (escape) ++at;
  }
  return text;
}

std::string ShownValue(const DialogControl& control) {
  if (control.secret) return {};
  if (IsMark(control.kind)) {
    const bool is_on = control.value == "1", is_off = control.value == "0";
    return std::string(Text(is_on ? IDS_MARK_YES : is_off ? IDS_MARK_NO : IDS_MARK_UNDETERMINED));
  }
  return Shortened(OneLine(control.value, control.multiple));
}

/// The items by number, then "Label [value]: ".
std::string Question(const DialogControl& control) {
  std::string question;
  for (std::size_t at = 0; at < std::min(control.items.size(), kMostItems); ++at) {
    question +=
        "  " + std::to_string(at + 1) + " " + Shortened(OneLine(control.items[at], false)) + "\n";
  }
  if (control.items.size() > kMostItems) {
    question += Filled(Text(IDS_ITEMS_IN_ALL), {std::to_string(control.items.size())}) + "\n";
  }
  question += control.label.empty() ? std::to_string(control.id) : OneLine(control.label, false);
  const std::string value = ShownValue(control);
  return question + (value.empty() ? "" : " [" + value + "]") + ": ";
}

/// "1, 3" as lines; an answer that isn't made of numbers as it stands.
std::string ItemNumbers(std::string answer) {
  const bool numbers = answer.find_first_not_of("0123456789, ") == std::string::npos &&
                       answer.find_first_of(", ") != std::string::npos;
  if (!numbers) return answer;
  std::string lines;
  for (const char each : answer) {
    const bool digit = each != ',' && each != ' ';
    if (digit || (!lines.empty() && lines.back() != '\n')) lines += digit ? each : '\n';
  }
  if (lines.ends_with('\n')) lines.pop_back();
  return lines;
}

/// The answer in the form that the control takes.
std::string ValueOf(const DialogControl& control, std::string answer) {
  if (answer == kNothing) return {};
  if (IsMark(control.kind)) {
    const std::string_view word = Trim(answer);
    const std::optional<std::size_t> named = NamedText(word, kMarks);
    return named ? std::to_string(*named) : std::string(word);
  }
  if (!control.multiple) return answer;
  return control.kind == DialogControlKind::kList ? ItemNumbers(Unescaped(answer))
                                                  : Unescaped(answer);
}

/// A button's name as it is typed.
std::string_view ButtonName(std::string_view label) {
  while (label.ends_with('.')) label.remove_suffix(1);
  return Trim(label);
}

/// The button that the answer names by its word or by letters that no other begins with; null if it
/// names none.
const DialogControl* Choose(const std::vector<DialogControl>& buttons, std::string_view answer) {
  const DialogControl* found = nullptr;
  for (const DialogControl& button : buttons) {
    const std::string_view name = ButtonName(button.label);
    if (answer.empty() ? button.is_default : EqualIgnoringCase(answer, name)) return &button;
  }
  if (answer.empty()) return nullptr;
  for (const DialogControl& button : buttons) {
    if (!EqualIgnoringCase(answer, ButtonName(button.label).substr(0, answer.size()))) continue;
    if (found != nullptr) return nullptr;
    found = &button;
  }
  return found;
}

/// "[OK] / Cancel / Help: "
std::string ButtonLine(const std::vector<DialogControl>& buttons) {
  std::string line;
  for (const DialogControl& button : buttons) {
    if (!line.empty()) line += " / ";
    const std::string name =
        button.label.empty() ? std::to_string(button.id) : OneLine(button.label, false);
    line += button.is_default ? "[" + name + "]" : name;
  }
  return line + ": ";
}

bool IsSame(const DialogControl& left, const DialogControl& right) {
  return left.id == right.id && left.kind == right.kind && left.label == right.label &&
         left.value == right.value && left.items == right.items && left.visible == right.visible &&
         left.enabled == right.enabled;
}

}  // namespace

void DialogQuestions::Run() {
  Tell(OneLine(dialog_.Caption(), false) + "\n");
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const Controls before = dialog_.Controls();
    if (!AskControls() || !AskButton()) return;
    if (!std::ranges::equal(before, dialog_.Controls(), IsSame)) attempt = -1;
  }
}

bool DialogQuestions::AskControls() {
  Controls controls = dialog_.Controls();
  for (std::size_t at = 0; at < controls.size(); ++at) {
    const DialogControl& control = controls[at];
    if (control.kind == DialogControlKind::kText && control.visible) {
      // A text that names the control behind it is part of that one's question.
      const bool names_next = at + 1 < controls.size() && control.value.empty() &&
                              controls[at + 1].label == control.label && IsAsked(controls[at + 1]);
      std::string text = control.label;
      if (!control.value.empty()) text += (text.empty() ? "" : ": ") + control.value;
      if (!names_next && !text.empty()) Tell(ForTerminal(text) + "\n");
    } else if (IsAsked(control)) {
      if (!AskControl(control) || !dialog_.IsOpen()) return false;
      // An answer may have changed what comes next.
      controls = dialog_.Controls();
    }
  }
  return dialog_.IsOpen();
}

bool DialogQuestions::AskControl(const DialogControl& control) {
  const std::string question = Question(control);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const std::optional<std::string> answer = Ask(question, control.secret);
    if (!answer) return false;
    if (answer->empty()) return true;
    if (answer->size() <= kLongestAnswer && dialog_.Enter(control.id, ValueOf(control, *answer))) {
      return true;
    }
    if (!dialog_.IsOpen()) return false;
    Tell(std::string(Text(IDS_NOT_POSSIBLE)) + "\n");
  }
  return false;
}

bool DialogQuestions::AskButton() {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    Controls buttons = dialog_.Controls();
    std::erase_if(buttons, [](const DialogControl& control) { return !IsPressed(control); });
    if (buttons.empty()) return false;
    const std::optional<std::string> answer = Ask(ButtonLine(buttons));
    if (!answer) return false;
    const DialogControl* const button = Choose(buttons, Trim(*answer));
    if (button != nullptr && dialog_.Press(button->id)) return dialog_.IsOpen();
    if (!dialog_.IsOpen()) return false;
  }
  return false;
}

std::optional<std::string> DialogQuestions::Ask(std::string_view question, bool secret) {
  const std::lock_guard lock(one_at_a_time_);
  std::optional<HiddenInput> hidden;
  // Before the question, which may be answered at once.
  if (secret) hidden.emplace(terminal_.input());
  WriteAll(terminal_.output(), question);
  std::optional<std::string> answer;
  if (!hidden || hidden->hidden()) answer = ReadLine(terminal_.input(), kLongestAnswer + 1);
  if (hidden && answer && answer->find(kInterrupt) != std::string::npos) answer.reset();
  if (hidden || !answer) WriteAll(terminal_.output(), "\n");
  return answer;
}

void DialogQuestions::Tell(std::string_view text) {
  const std::lock_guard lock(one_at_a_time_);
  WriteAll(terminal_.output(), text);
}

}  // namespace dq::platform::posix
