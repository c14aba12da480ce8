#include "dqlib/framework/windows/window_input.h"

#include <utility>

#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_thread.h"

namespace dq {
namespace {

bool IsPress(UINT message) {
  return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_MBUTTONDOWN ||
         message == WM_LBUTTONDBLCLK || message == WM_RBUTTONDBLCLK || message == WM_MBUTTONDBLCLK;
}

/// Enabled, and below nothing that is disabled.
bool IsUsable(const CWnd* window) {
  while (window != nullptr && window->IsWindowEnabled()) window = window->GetParent();
  return window == nullptr;
}

/// Has a key count as offered for its lifetime.
class ScopedOffer {
 public:
  explicit ScopedOffer(detail::KeyOffer& offer)
      : former_(std::exchange(detail::CurrentUi().key_offer, &offer)) {}
  ScopedOffer(const ScopedOffer&) = delete;
  ScopedOffer& operator=(const ScopedOffer&) = delete;
  ~ScopedOffer() { detail::CurrentUi().key_offer = former_; }

 private:
  detail::KeyOffer* former_;
};

LRESULT Give(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  CWnd* const target = CWnd::FromHandle(window);
  return target == nullptr ? 0 : target->WindowProc(message, wparam, lparam);
}

}  // namespace

bool MouseInput(UINT message, WPARAM keys, const CPoint& screen, CWnd* under) {
  CWnd* const capture = CWnd::GetCapture();
  CWnd* target = capture != nullptr ? capture : under;
  while (target != nullptr && !IsUsable(target)) target = target->GetParent();
  if (target == nullptr) return false;
  const HWND window = target->GetSafeHwnd();
  if (IsPress(message) && capture == nullptr) {
    const HWND top = target->GetTopLevelParent()->GetSafeHwnd();
    const LRESULT answer = Give(window, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(top),
                                MakeLParam(HTCLIENT, static_cast<int>(message)));
    if (answer != MA_NOACTIVATE && answer != MA_NOACTIVATEANDEAT) {
      if (CWnd::FromHandle(window) == target) target->TellTurnTo(false);
      if (CWnd* const active = CWnd::FromHandle(top)) active->SetActiveWindow(true);
    }
    if (answer == MA_ACTIVATEANDEAT || answer == MA_NOACTIVATEANDEAT) return true;
  }
  if (CWnd::FromHandle(window) != target) return true;
  const CPoint at = message == WM_MOUSEWHEEL ? screen : target->ScreenToClient(screen);
  MSG input{window, message, keys, MakeLParam(at.x, at.y)};
  if (PreTranslateInput(input)) return true;
  if (message == WM_MOUSEMOVE && capture == nullptr) {
    Give(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
         MakeLParam(HTCLIENT, WM_MOUSEMOVE));
  }
  Give(window, message, keys, input.lParam);
  return true;
}

bool KeyInput(UINT message, WPARAM key, LPARAM lparam) {
  const CWnd* const focus = CWnd::GetFocus();
  const CWnd* const target = focus != nullptr ? focus : CWnd::GetActiveWindow();
  if (target == nullptr || !IsUsable(target)) return false;
  MSG input{target->GetSafeHwnd(), message, key, lparam};
  if (!PreTranslateInput(input)) Give(input.hwnd, message, key, lparam);
  return true;
}

bool OfferKey(MSG message) {
  if (PreTranslateInput(message)) return true;
  CWnd* const window = CWnd::FromHandle(message.hwnd);
  // One that is gone has no native control any more.
  if (window == nullptr) return true;
  HandlerArguments question{.only_ask = true};
  if (!window->CallMapped({message.message, 0, 0}, question)) return false;
  detail::KeyOffer offer{message.hwnd};
  const ScopedOffer scope(offer);
  window->WindowProc(message.message, message.wParam, message.lParam);
  return !offer.passed_on || CWnd::FromHandle(message.hwnd) == nullptr;
}

}  // namespace dq
