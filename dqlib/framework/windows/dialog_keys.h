// What keys do in a dialog. For the framework's own sources.

#pragma once

#include <vector>

#include "dqlib/framework/windows/wnd.h"

namespace dq::detail {

/// The visible controls of a dialog in their order, those of child dialogs in their places.
std::vector<CWnd*> ControlsInOrder(const CWnd& dialog);

/// Whether the focus stops at the control on its way from control to control.
bool TakesFocus(const CWnd& control);

/// Gives the focus to the first control that takes it, if there is one.
void FocusFirst(const CWnd& dialog);

/// The control before or behind the one with the focus that takes it, from the other end where
/// there is none; the first or the last if the focus is elsewhere; null if no control takes it.
CWnd* NextTabStop(const CWnd& dialog, bool forward);

/// Handles a key that is pressed while a control of the dialog has the focus, unless one of the
/// frames around takes it, or the control wants it: Tab moves the focus, Enter presses the button
/// with the focus or the default one, Escape is Cancel, arrows go through a group of radio buttons,
/// F1 asks for help, and a mnemonic (with Alt, or alone where the control takes no characters)
/// focuses or presses its control. True if the key was meant for the dialog.
bool TranslateDialogKey(CWnd& dialog, MSG& message);

}  // namespace dq::detail
