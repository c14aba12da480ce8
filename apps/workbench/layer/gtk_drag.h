// What drags mean in the toolkit's words and in the library's.

#pragma once

#include <gdk/gdk.h>
#include <wx/gdicmn.h>

#include "dqlib/framework/windows/wnd.h"

class wxTopLevelWindow;

namespace workbench {

class TopLevelMirror;

GdkDragAction ActionsOf(dq::UINT effects);
dq::UINT EffectsOf(GdkDragAction actions);

/// The `MouseKey` bits of the toolkit's, and of what is held down now.
dq::UINT MouseKeysOf(guint state);
dq::UINT HeldMouseKeys();

/// The pointer's place on the display.
wxPoint PointerPlace();

/// As an act: the window at a point of the screen, if it or one around it takes drops; null
/// otherwise, and where a dialog over the top-level window is to be answered first.
dq::CWnd* TakerAt(const TopLevelMirror* top, const dq::CPoint& screen);

/// Has what is dragged over a top-level window be told to it.
void AwaitDrags(wxTopLevelWindow& window);

struct ContextDeleter {
  void operator()(GdkDragContext* context) const { g_object_unref(context); }
};

}  // namespace workbench
