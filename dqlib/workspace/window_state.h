// Windows that come back where the user left them: their placements in the program's profile, one
// section per window. On the user-interface thread.

#pragma once

#include "dqlib/framework/windows/window_messages.h"

namespace dq {

class CWnd;

/// Writes the window's placement to the section: the values "wp.showCmd", "wp.flags",
/// "wp.ptMinPosition.x", "wp.ptMinPosition.y", "wp.ptMaxPosition.x", "wp.ptMaxPosition.y",
/// "wp.left", "wp.right", "wp.top" and "wp.bottom". Does nothing for a null section, a null window,
/// one that isn't made, or without an application object. Nothing is reported.
void DQLIB_SaveWindowPlacement(const char* section, CWnd* window);

/// Gives the window the stored placement; values that aren't stored are the window's own, so a
/// section that doesn't exist leaves it where it is. False, and the window left alone, if the
/// normal rectangle would be wholly off the primary screen or has no area, and where saving does
/// nothing.
bool DQLIB_RestoreWindowPlacement(const char* section, CWnd* window);

/// Fills the structure from the section; a field that isn't stored keeps what it held. Nothing
/// changes for a null argument or without an application object.
void DQLIB_GetWindowPlacement(const char* section, WINDOWPLACEMENT* placement);

/// Sets the position and size with which a window is about to be created to the stored normal
/// rectangle. An edge that isn't stored stays where the structure has it.
void DQLIB_SetCreateStructPlacement(const char* section, CREATESTRUCT* create);

}  // namespace dq
