// What a window layer reports of a person's mouse and keyboard over windows that have no native
// control of their own.

#pragma once

#include "dqlib/framework/windows/wnd.h"

namespace dq {

/// Handles a message of the mouse at a point of the screen. It goes to the window that has the
/// mouse captured, or else to `under`, the one under the pointer as the layer sees it; a disabled
/// one leaves it to its parent. `keys` is a sum of `MouseKey` bits, for the wheel with how far it
/// was turned in the high word. A press without capture makes the view, the child frame and the
/// top-level window around it active first, unless one of them refuses (`WM_MOUSEACTIVATE`); a move
/// without capture asks the window for the pointer's shape first (`WM_SETCURSOR`). Null for `under`
/// is outside of all windows. False if nobody got it.
bool MouseInput(UINT message, WPARAM keys, const CPoint& screen, CWnd* under);

/// Handles a message of the keyboard for the window that has the focus, or if none has it, the
/// active one: offers it to `PreTranslateInput`, and gives it to the window if it wasn't taken.
/// False if there is neither, or it is disabled.
bool KeyInput(UINT message, WPARAM key, LPARAM lparam = 0);

/// Offers a message of the keyboard to a window that has a native control, before that one gets the
/// key: to `PreTranslateInput`, and then to the handlers of the window's class, if it has any for
/// the message. True if it was taken: the native control mustn't get it. False if nobody took it,
/// or if its handler has passed it on to the base class. A character that is passed on to an edit
/// counts as taken, for the edit types it then and there; so its handler finds it in the text.
bool OfferKey(MSG message);

}  // namespace dq
