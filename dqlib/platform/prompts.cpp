#include "dqlib/platform/prompts.h"

namespace dq {
namespace {

constexpr UINT kButtonBits = 0x0F;
constexpr UINT kDefaultBits = 0xF00;

constexpr BoxButton kOk[] = {BUTTON_OK};
constexpr BoxButton kOkCancel[] = {BUTTON_OK, BUTTON_CANCEL};
constexpr BoxButton kAbortRetryIgnore[] = {BUTTON_ABORT, BUTTON_RETRY, BUTTON_IGNORE};
constexpr BoxButton kYesNoCancel[] = {BUTTON_YES, BUTTON_NO, BUTTON_CANCEL};
constexpr BoxButton kYesNo[] = {BUTTON_YES, BUTTON_NO};
constexpr BoxButton kRetryCancel[] = {BUTTON_RETRY, BUTTON_CANCEL};

}  // namespace

std::span<const BoxButton> BoxButtons(UINT type) {
  switch (type & kButtonBits) {
    case BOX_OK_CANCEL:
      return kOkCancel;
    case BOX_ABORT_RETRY_IGNORE:
      return kAbortRetryIgnore;
    case BOX_YES_NO_CANCEL:
      return kYesNoCancel;
    case BOX_YES_NO:
      return kYesNo;
    case BOX_RETRY_CANCEL:
      return kRetryCancel;
    default:
      return kOk;
  }
}

BoxButton DefaultBoxButton(UINT type) {
  const std::span<const BoxButton> buttons = BoxButtons(type);
  const UINT index = (type & kDefaultBits) / BOX_DEFAULT_SECOND;
  return buttons[index < buttons.size() ? index : 0];
}

}  // namespace dq
