#include "dqlib/framework/windows/dialog_template.h"

#include <algorithm>
#include <limits>

#include "dqlib/framework/windows/resource_text.h"
#include "dqlib/platform/modules.h"

namespace dq {
namespace {

using detail::ResourceTextReader;

constexpr int kLowestId = -1;
constexpr int kHighestId = 0xFFFF;
/// Pixels; sums of them stay within an `int`.
constexpr int kFarthest = 32767;

struct ControlWord {
  std::string_view word;
  std::string_view window_class;
};

constexpr ControlWord kControlWords[] = {
    {"text", "Static"},      {"group", "Button"},      {"button", "Button"},
    {"defbutton", "Button"}, {"check", "Button"},      {"radio", "Button"},
    {"edit", "Edit"},        {"list", "ListBox"},      {"checklist", "CheckListBox"},
    {"combo", "ComboBox"},   {"spin", "Spin"},         {"progress", "Progress"},
    {"hotkey", "HotKey"},    {"datetime", "DateTime"},
};

constexpr std::string_view kCaption = "caption";
constexpr std::string_view kSize = "size";
/// The word of controls of any window class.
constexpr std::string_view kAnyClass = "class";

constexpr std::string_view kFlags[] = {
    "hidden", "disabled", "group",    "password", "multiline", "readonly", "number",
    "sorted", "multiple", "dropdown", "droplist", "buddy",     "time",     "optional",
};

/// Flags with a number.
constexpr std::string_view kNumbers[] = {"limit=", "picture="};

bool IsFlag(std::string_view flag) {
  const auto* const number = std::ranges::find_if(
      kNumbers, [flag](std::string_view name) { return flag.starts_with(name); });
  if (number == std::end(kNumbers)) return std::ranges::find(kFlags, flag) != std::end(kFlags);
  return detail::ReadWholeNumber(flag.substr(number->size()), 0, std::numeric_limits<int>::max())
      .has_value();
}

/// Reads one template.
class TemplateReader {
 public:
  explicit TemplateReader(std::string_view text) : lines_(text) {}

  bool Read() {
    while (lines_.NextLine()) {
      if (!ReadLine()) return false;
    }
    return !lines_.failed() && (has_size_ || lines_.Fail("the dialog has no size"));
  }

  const std::string& error() const { return lines_.error(); }
  DialogTemplate Take() { return std::move(dialog_); }

 private:
  bool ReadLine() {
    const std::optional<std::string_view> word = lines_.Word();
    if (!word) return false;
    if (*word == kCaption) return ReadCaption();
    if (*word == kSize) return ReadSize();
    ControlTemplate control;
    control.word = *word;
    if (*word == kAnyClass) {
      const std::optional<std::string> window_class = lines_.Text();
      if (!window_class) return false;
      if (window_class->empty()) return lines_.Fail("a window class without a name");
      control.window_class = *window_class;
    } else {
      const auto* const found = std::ranges::find(kControlWords, *word, &ControlWord::word);
      if (found == std::end(kControlWords)) return lines_.Fail("an unknown word begins the line");
      control.window_class = found->window_class;
    }
    return ReadControl(std::move(control));
  }

  bool ReadCaption() {
    if (has_caption_) return lines_.Fail("a second caption");
    has_caption_ = true;
    const std::optional<std::string> caption = lines_.Text();
    if (caption) dialog_.caption = *caption;
    return caption.has_value();
  }

  bool ReadSize() {
    if (has_size_) return lines_.Fail("a second size");
    has_size_ = true;
    const std::optional<int> width = lines_.Number(0, kFarthest);
    const std::optional<int> height = lines_.Number(0, kFarthest);
    if (!height) return false;
    dialog_.size = {*width, *height};
    return true;
  }

  bool ReadControl(ControlTemplate control) {
    const std::optional<int> id = lines_.Number(kLowestId, kHighestId);
    std::optional<std::string> text = lines_.Text();
    const std::optional<int> left = lines_.Number(-kFarthest, kFarthest);
    const std::optional<int> top = lines_.Number(-kFarthest, kFarthest);
    const std::optional<int> width = lines_.Number(0, kFarthest);
    const std::optional<int> height = lines_.Number(0, kFarthest);
    // After a failure nothing more is read, so the last part stands for all.
    if (!height) return false;
    control.id = *id;
    control.text = *std::move(text);
    control.place = {*left, *top, *left + *width, *top + *height};
    while (!lines_.AtLineEnd()) {
      const std::optional<std::string_view> flag = lines_.Word();
      if (!flag) return false;
      if (!IsFlag(*flag)) return lines_.Fail("an unknown flag");
      control.flags.emplace_back(*flag);
    }
    dialog_.controls.push_back(std::move(control));
    return true;
  }

  ResourceTextReader lines_;
  DialogTemplate dialog_;
  bool has_caption_ = false;
  bool has_size_ = false;
};

}  // namespace

bool ControlTemplate::Has(std::string_view flag) const {
  return std::ranges::find(flags, flag) != flags.end();
}

int ControlTemplate::Number(std::string_view name, int fallback) const {
  for (const std::string_view flag : flags) {
    if (!flag.starts_with(name) || !flag.substr(name.size()).starts_with('=')) continue;
    return detail::ReadWholeNumber(flag.substr(name.size() + 1), std::numeric_limits<int>::min(),
                                   std::numeric_limits<int>::max())
        .value_or(fallback);
  }
  return fallback;
}

std::optional<DialogTemplate> ReadDialogTemplate(std::string_view text, std::string* error) {
  TemplateReader reader(text);
  if (reader.Read()) return reader.Take();
  if (error != nullptr) *error = reader.error();
  return std::nullopt;
}

std::optional<DialogTemplate> FindDialogTemplate(UINT id) {
  const std::optional<std::string_view> data = detail::FindResourceData(id, RESOURCE_DIALOG);
  return data ? ReadDialogTemplate(*data) : std::nullopt;
}

}  // namespace dq
