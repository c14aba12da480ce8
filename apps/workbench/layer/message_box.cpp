#include "apps/workbench/layer/message_box.h"

#include <algorithm>
#include <utility>

#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/text.h"
#include "dqlib/framework/controls/static.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/platform/seam_texts.h"

namespace workbench {
namespace {

using dq::BoxButton;
using dq::ControlTemplate;
using dq::DialogTemplate;
using dq::LONG;
using dq::UINT;

// How a box is laid out, in pixels at 96 dots to the inch.
constexpr LONG kMargin = 12;
constexpr LONG kIcon = 32;
constexpr LONG kTextWidth = 420;
constexpr LONG kLeastTextWidth = 160;
constexpr LONG kMostTextHeight = 360;
constexpr LONG kButtonWidth = 84;
constexpr LONG kButtonHeight = 24;
constexpr LONG kButtonGap = 8;

constexpr int kIconId = 20;
constexpr int kTextId = 0xFFFF;

constexpr UINT kIconBits = 0xF0;

/// The icon's name; "" for a box without one.
std::string IconOf(UINT type) {
  switch (type & kIconBits) {
    case dq::BOX_STOP:
      return "error";
    case dq::BOX_QUESTION:
      return "question";
    case dq::BOX_EXCLAMATION:
      return "warning";
    case dq::BOX_INFORMATION:
      return "information";
    default:
      return {};
  }
}

std::string LabelOf(BoxButton button) {
  const std::string name(dq::platform::Text(static_cast<dq::SeamTextId>(
      UINT{dq::IDS_BUTTON_OK} + static_cast<UINT>(button - dq::BUTTON_OK))));
  const bool has_key = button == dq::BUTTON_OK || button == dq::BUTTON_CANCEL;
  return has_key ? name : '&' + name;
}

/// Ampersands are shown.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    escaped += character;
    if (character == '&') escaped += '&';
  }
  return escaped;
}

/// The line ends of an edit control.
std::string WithEditLines(std::string_view text) {
  std::string lines;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\n' && (at == 0 || text[at - 1] != '\r')) lines += '\r';
    lines += text[at];
  }
  return lines;
}

DialogTemplate Design(const Scale& scale, std::string_view caption, std::string_view text,
                      UINT type) {
  DialogTemplate box;
  box.caption = caption;
  const wxSize native = WrappedTextSize(ToNative(text), scale.ToNative(kTextWidth));
  // A pixel more, for a part of one doesn't hold a letter.
  const LONG width = std::max(kLeastTextWidth, scale.ToLogical(native.x) + 1);
  const LONG height = scale.ToLogical(native.y) + 1;
  LONG left = kMargin;
  LONG bottom = kMargin;
  const std::string icon = IconOf(type);
  if (!icon.empty()) {
    box.controls.push_back(
        {kIconClass, kIconId, icon, {left, kMargin, left + kIcon, kMargin + kIcon}, "class", {}});
    left += kIcon + kMargin;
    bottom += kIcon;
  }
  const bool is_long = height > kMostTextHeight;
  ControlTemplate shown{"Static",      kTextId,
                        Escaped(text), {left, kMargin, left + width, kMargin + height},
                        "text",        {}};
  if (is_long) {
    shown = {"Edit",
             kTextId,
             WithEditLines(text),
             {left, kMargin, left + kTextWidth, kMargin + kMostTextHeight},
             "edit",
             {"multiline", "readonly"}};
  }
  bottom = std::max(bottom, shown.place.bottom) + kMargin;
  const LONG right = shown.place.right + kMargin;
  box.controls.push_back(std::move(shown));
  const auto buttons = dq::BoxButtons(type);
  const LONG row = static_cast<LONG>(buttons.size()) * (kButtonWidth + kButtonGap) - kButtonGap;
  box.size = {std::max(right, row + 2 * kMargin), bottom + kButtonHeight + kMargin};
  LONG at = (box.size.cx - row) / 2;
  for (const BoxButton button : buttons) {
    const bool is_default = button == dq::DefaultBoxButton(type);
    box.controls.push_back({"Button",
                            button,
                            LabelOf(button),
                            {at, bottom, at + kButtonWidth, bottom + kButtonHeight},
                            is_default ? "defbutton" : "button",
                            {}});
    at += kButtonWidth + kButtonGap;
  }
  return box;
}

}  // namespace

void RegisterIconClass() {
  dq::RegisterControlClass(kIconClass, [](const ControlTemplate&) -> std::unique_ptr<dq::CWnd> {
    return std::make_unique<dq::CStatic>();
  });
}

MessageBox::MessageBox(const Layer& layer, std::string_view caption, std::string_view text,
                       UINT type)
    : type_(type) {
  InitModalIndirect(Design(layer.scale(), caption, text, type));
}

int MessageBox::Ask() {
  const int result = DoModal();
  return HasButton(result) ? result : dq::DefaultBoxButton(type_);
}

bool MessageBox::HasButton(int button) const {
  return std::ranges::count(dq::BoxButtons(type_), button) > 0;
}

dq::BOOL MessageBox::OnInitDialog() {
  CDialog::OnInitDialog();
  GotoDlgCtrl(GetDlgItem(dq::DefaultBoxButton(type_)));
  dq::MessageBeep(type_);
  return 0;
}

void MessageBox::OnCancel() {
  if (HasButton(dq::BUTTON_CANCEL)) {
    EndDialog(dq::BUTTON_CANCEL);
  } else if (dq::BoxButtons(type_).size() == 1) {
    EndDialog(dq::BUTTON_OK);
  }
}

bool MessageBox::CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) {
  static constexpr dq::MessageMapEntry kEntries[] = {
      dq::CommandRangeEntry<&MessageBox::OnButton>(dq::BUTTON_ABORT, dq::BUTTON_NO),
  };
  return dq::CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
}

}  // namespace workbench
