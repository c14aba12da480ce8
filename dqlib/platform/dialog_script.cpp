#include "dqlib/platform/dialog_script.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "dqlib/platform/seam_texts.h"

namespace dq::platform {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kPress = "press";

std::string_view Trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// A control's id from 0; no value if the text is none.
std::optional<int> ReadId(std::string_view text) {
  text = Trim(text);
  int id = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, id);
  if (error != std::errc{} || stop != end || id < 0) return std::nullopt;
  return id;
}

/// Undoes `\n`, `\t` and `\\`; no value for a backslash before anything else.
std::optional<std::string> ReadValue(std::string_view text) {
  constexpr std::string_view kLetters = "nt\\";
  constexpr std::string_view kMeanings = "\n\t\\";
  std::string value;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\\') {
      value += text[at];
      continue;
    }
    const std::size_t letter =
        ++at < text.size() ? kLetters.find(text[at]) : std::string_view::npos;
    if (letter == std::string_view::npos) return std::nullopt;
    value += kMeanings[letter];
  }
  return value;
}

}  // namespace

std::optional<DialogScript::Problem> DialogScript::Read(std::string_view text,
                                                        DialogScript& script) {
  script = {};
  DialogScript read;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::string_view begin =
        line.substr(std::min(line.find_first_not_of(kBlanks), line.size()));
    if (begin.empty() || begin.front() == '#') continue;

    Step step;
    step.line = number;
    const std::size_t equals = begin.find('=');
    step.press = begin.starts_with(kPress) && equals == std::string_view::npos;
    if (!step.press && equals == std::string_view::npos) {
      return Problem{number, std::string(Text(IDS_SCRIPT_NO_STEP))};
    }
    const auto id = ReadId(step.press ? begin.substr(kPress.size()) : begin.substr(0, equals));
    if (!id) return Problem{number, std::string(Text(IDS_SCRIPT_NO_ID))};
    step.id = *id;
    if (!step.press) {
      auto value = ReadValue(begin.substr(equals + 1));
      if (!value) return Problem{number, std::string(Text(IDS_SCRIPT_BACKSLASH))};
      step.value = *std::move(value);
    }
    read.steps_.push_back(std::move(step));
  }
  script = std::move(read);
  return std::nullopt;
}

void DialogScript::Play(DialogView& dialog) {
  while (!problem_ && !IsDone() && dialog.IsOpen()) {
    // Counted before it is played, because it may open a dialog that is played the next ones.
    const Step step = steps_[next_++];
    const bool taken = step.press ? dialog.Press(step.id) : dialog.Enter(step.id, step.value);
    if (taken || problem_) continue;
    // Without the value, which may be a secret.
    const SeamTextId what = step.press ? IDS_SCRIPT_NOT_PRESSED : IDS_SCRIPT_NOT_TAKEN;
    problem_ = Problem{step.line, Filled(Text(what), {std::to_string(step.id)})};
  }
}

}  // namespace dq::platform
