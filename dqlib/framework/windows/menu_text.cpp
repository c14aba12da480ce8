#include "dqlib/framework/windows/menu_model.h"
#include "dqlib/framework/windows/resource_text.h"

namespace dq::detail {
namespace {

constexpr std::size_t kDeepest = 32;
constexpr int kHighestId = 0xFFFF;

constexpr std::string_view kPopup = "popup";
constexpr std::string_view kItem = "item";
constexpr std::string_view kSeparator = "separator";
constexpr std::string_view kEnd = "end";
constexpr std::string_view kChecked = "checked";
constexpr std::string_view kGrayed = "grayed";

/// Reads one menu.
class MenuTextReader {
 public:
  explicit MenuTextReader(std::string_view text) : lines_(text), way_{NewMenu()} {}

  /// The menu, or null; then nothing of it is left.
  HMENU Read() {
    while (lines_.NextLine() && ReadLine()) {
    }
    if (way_.size() > 1) lines_.Fail("a popup has no end");
    if (!lines_.failed()) return way_.front();
    DestroyMenuTree(way_.front());
    return nullptr;
  }

  const std::string& error() const { return lines_.error(); }

 private:
  bool ReadLine() {
    const std::optional<std::string_view> word = lines_.Word();
    if (!word) return false;
    if (*word == kItem) return ReadItem();
    if (*word == kPopup) return ReadPopup();
    if (*word == kSeparator) {
      Add({.flags = MF_SEPARATOR});
      return true;
    }
    if (*word != kEnd) return lines_.Fail("an unknown word begins the line");
    if (way_.size() == 1) return lines_.Fail("an end without its popup");
    way_.pop_back();
    return true;
  }

  bool ReadItem() {
    const std::optional<int> id = lines_.Number(1, kHighestId);
    std::optional<std::string> text = lines_.Text();
    if (!text) return false;
    MenuItem item{.id = static_cast<UINT>(*id), .text = *std::move(text)};
    return ReadFlags(item, MF_CHECKED | MF_GRAYED);
  }

  bool ReadPopup() {
    std::optional<std::string> text = lines_.Text();
    if (!text) return false;
    if (way_.size() > kDeepest) return lines_.Fail("popups are nested too deep");
    const HMENU submenu = NewMenu();
    CountPlace(submenu, 1);
    MenuItem item{.flags = MF_POPUP, .submenu = submenu, .text = *std::move(text)};
    // In the menu even if a flag is wrong, so that it goes with it.
    const bool read = ReadFlags(item, MF_GRAYED);
    way_.push_back(submenu);
    return read;
  }

  bool ReadFlags(MenuItem& item, UINT allowed) {
    while (!lines_.AtLineEnd() && !lines_.failed()) {
      const std::string_view word = lines_.Word().value_or(std::string_view());
      UINT flag = 0;
      if (word == kChecked) flag = MF_CHECKED;
      if (word == kGrayed) flag = MF_GRAYED;
      if ((flag & allowed) == 0) lines_.Fail("an unknown flag");
      item.flags |= flag;
    }
    Add(std::move(item));
    return !lines_.failed();
  }

  void Add(MenuItem item) { FindMenu(way_.back())->items.push_back(std::move(item)); }

  ResourceTextReader lines_;
  /// The menu and the popups whose ends haven't come yet.
  std::vector<HMENU> way_;
};

}  // namespace

HMENU ReadMenuText(std::string_view text, std::string* error) {
  MenuTextReader reader(text);
  const HMENU menu = reader.Read();
  if (menu == nullptr && error != nullptr) *error = reader.error();
  return menu;
}

}  // namespace dq::detail
