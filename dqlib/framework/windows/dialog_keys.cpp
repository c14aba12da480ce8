#include "dqlib/framework/windows/dialog_keys.h"

#include <algorithm>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/dialog.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq::detail {
namespace {

constexpr UINT kPushButton = DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON;

/// What kind of control it is and which keys it wants; of `message`, if not null, whether it wants
/// that one.
UINT CodeOf(CWnd& control, const MSG* message) {
  return static_cast<UINT>(control.SendMessage(
      WM_GETDLGCODE, message == nullptr ? 0 : message->wParam, reinterpret_cast<LPARAM>(message)));
}

void AddControls(const CWnd& parent, std::vector<CWnd*>& controls) {
  for (CWnd* child = parent.GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
    if (!child->IsShown()) continue;
    if (!child->IsKindOf(RUNTIME_CLASS(CDialog))) {
      controls.push_back(child);
    } else if (child->IsWindowEnabled()) {
      AddControls(*child, controls);
    }
  }
}

/// The letter behind the first single "&", in lower case; "" if there is none.
std::string MnemonicOf(std::string_view text) {
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  while (!text.empty()) {
    const bool marks = text.front() == '&';
    text.remove_prefix(page.CharacterSize(text));
    if (!marks || text.empty()) continue;
    if (text.front() != '&') {
      return multi_byte::Lower(text.substr(0, page.CharacterSize(text)));
    }
    text.remove_prefix(1);
  }
  return {};
}

/// Where the control with the focus, or the one around it, stands; the count if it is elsewhere.
std::size_t PlaceOfFocus(const std::vector<CWnd*>& controls) {
  const CWnd* const focus = CWnd::GetFocus();
  const auto found = std::ranges::find_if(controls, [focus](const CWnd* each) {
    return focus != nullptr && (each == focus || each->IsChild(focus));
  });
  return static_cast<std::size_t>(found - controls.begin());
}

bool PressDefault(CWnd& dialog) {
  CWnd* const focus = CWnd::GetFocus();
  if (focus != nullptr && (CodeOf(*focus, nullptr) & kPushButton) != 0) {
    focus->Press();
    return true;
  }
  const std::vector<CWnd*> controls = ControlsInOrder(dialog);
  const auto found = std::ranges::find_if(
      controls, [](CWnd* each) { return (CodeOf(*each, nullptr) & DLGC_DEFPUSHBUTTON) != 0; });
  if (found != controls.end()) {
    (*found)->Press();
  } else if (dialog.IsKindOf(RUNTIME_CLASS(CDialog))) {
    dialog.SendMessage(WM_COMMAND, IDOK);
  } else {
    return false;
  }
  return true;
}

bool PressCancel(CWnd& dialog) {
  CWnd* const button = dialog.GetDlgItem(IDCANCEL);
  if (button != nullptr && (CodeOf(*button, nullptr) & kPushButton) != 0) {
    button->Press();
  } else if (dialog.IsKindOf(RUNTIME_CLASS(CDialog))) {
    dialog.SendMessage(WM_COMMAND, IDCANCEL);
  } else {
    return false;
  }
  return true;
}

/// The window with the focus is asked first, then those around it.
void AskForHelp(CWnd& focus) {
  for (HWND next = focus.GetSafeHwnd(); CWnd* const window = CWnd::FromHandle(next);) {
    const CWnd* const above = window->GetParent();
    next = above == nullptr ? nullptr : above->GetSafeHwnd();
    if (window->SendMessage(WM_HELP) != 0) return;
  }
}

/// Goes to the control of a mnemonic: labels give the focus to the control behind them, buttons are
/// pressed. Of several controls the next one behind the focus counts, and is focused alone.
bool GoToMnemonic(CWnd& dialog, const std::string& letter) {
  const std::vector<CWnd*> controls = ControlsInOrder(dialog);
  const std::size_t count = controls.size();
  const std::size_t focus = PlaceOfFocus(controls);
  std::vector<std::size_t> found;
  for (std::size_t step = 1; step <= count; ++step) {
    const std::size_t at = (focus % count + step) % count;
    const UINT code = CodeOf(*controls[at], nullptr);
    if ((code & (DLGC_BUTTON | DLGC_STATIC | kPushButton | DLGC_RADIOBUTTON)) == 0) continue;
    if (!controls[at]->IsWindowEnabled()) continue;
    if (MnemonicOf(controls[at]->GetWindowText().View()) == letter) found.push_back(at);
  }
  if (found.empty()) return false;
  std::size_t target = found.front();
  CWnd* control = controls[target];
  if ((CodeOf(*control, nullptr) & DLGC_STATIC) != 0) {
    while (++target < count && !TakesFocus(*controls[target])) {
    }
    if (target < count) controls[target]->SetFocus();
    return true;
  }
  const HWND handle = control->GetSafeHwnd();
  control->SetFocus();
  control = CWnd::FromHandle(handle);
  if (control != nullptr && found.size() == 1) control->Press();
  return true;
}

bool TranslateKeyDown(CWnd& dialog, CWnd& focus, const MSG& message) {
  const UINT code = CodeOf(focus, &message);
  if ((code & DLGC_WANTALLKEYS) != 0) return false;
  switch (message.wParam) {
    case VK_TAB: {
      if ((code & DLGC_WANTTAB) != 0 || IsKeyDown(VK_CONTROL)) return false;
      CWnd* const next = NextTabStop(dialog, !IsKeyDown(VK_SHIFT));
      if (next != nullptr) next->SetFocus();
      return true;
    }
    case VK_RETURN:
      return PressDefault(dialog);
    case VK_ESCAPE:
      return PressCancel(dialog);
    case VK_F1:
      AskForHelp(focus);
      return true;
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN:
      if ((code & DLGC_RADIOBUTTON) == 0) return false;
      focus.SendMessage(WM_KEYDOWN, message.wParam);
      return true;
    default:
      return false;
  }
}

/// Their key combinations would be lost to the dialog's keys.
bool OfferToFrames(const CWnd& dialog, MSG& message) {
  // By handle, because what one does with it may end those around.
  const auto frame_of = [](const CWnd& window) -> HWND {
    const CFrameWnd* const frame = window.GetParentFrame();
    return frame == nullptr ? nullptr : frame->GetSafeHwnd();
  };
  for (HWND next = frame_of(dialog); CWnd* const frame = CWnd::FromHandle(next);) {
    next = frame_of(*frame);
    if (frame->PreTranslateMessage(&message) != 0) return true;
  }
  return false;
}

}  // namespace

std::vector<CWnd*> ControlsInOrder(const CWnd& dialog) {
  std::vector<CWnd*> controls;
  AddControls(dialog, controls);
  return controls;
}

bool TakesFocus(const CWnd& control) {
  return control.IsTabStop() && control.IsShown() && control.IsWindowEnabled();
}

void FocusFirst(const CWnd& dialog) {
  const std::vector<CWnd*> controls = ControlsInOrder(dialog);
  const auto first =
      std::ranges::find_if(controls, [](const CWnd* control) { return TakesFocus(*control); });
  if (first != controls.end()) (*first)->SetFocus();
}

CWnd* NextTabStop(const CWnd& dialog, bool forward) {
  const std::vector<CWnd*> controls = ControlsInOrder(dialog);
  const std::size_t count = controls.size();
  std::size_t at = PlaceOfFocus(controls);
  if (at == count && forward) at = count - 1;
  for (std::size_t step = 0; step < count; ++step) {
    at = forward ? (at + 1) % count : (at + count - 1) % count;
    if (TakesFocus(*controls[at])) return controls[at];
  }
  return nullptr;
}

bool TranslateDialogKey(CWnd& dialog, MSG& message) {
  const UINT kind = message.message;
  if (kind != WM_KEYDOWN && kind != WM_CHAR && kind != WM_SYSCHAR) return false;
  const CWnd* const target = CWnd::FromHandle(message.hwnd);
  if (target == nullptr || (target != &dialog && !dialog.IsChild(target))) return false;
  const Watched self(dialog);
  if (OfferToFrames(dialog, message) || !self.IsThere()) return true;
  CWnd* const focus = CWnd::FromHandle(message.hwnd);
  if (focus == nullptr) return true;
  switch (kind) {
    case WM_KEYDOWN:
      return TranslateKeyDown(dialog, *focus, message);
    case WM_CHAR:
    case WM_SYSCHAR: {
      const UINT wants =
          kind == WM_CHAR ? DLGC_WANTCHARS | DLGC_WANTALLKEYS : UINT{DLGC_WANTALLKEYS};
      if ((CodeOf(*focus, &message) & wants) != 0) return false;
      const char letter = static_cast<char>(message.wParam);
      if (static_cast<unsigned char>(letter) <= ' ') return false;
      return GoToMnemonic(dialog, multi_byte::Lower({&letter, 1}));
    }
    default:
      return false;
  }
}

}  // namespace dq::detail
