// What the toolkit's windows can do on this system beyond their own interface.

#pragma once

#include <functional>
#include <wx/gdicmn.h>

class wxNotebook;
class wxTopLevelWindow;
class wxWindow;

namespace workbench {

/// Whether the window has the keyboard, or gets it when its top-level window becomes active. One
/// that takes no keys by itself (`TakeNoKeys`) has it when no other has.
bool HasKeyboard(const wxWindow& window);
/// Gives it the keyboard within its top-level window, which doesn't become active by that.
void GrabKeyboard(wxWindow& window);
/// The keys for the window are handled before the toolkit sees them.
void TakeNoKeys(wxWindow& window);

/// Has the act done each time the window comes up on the display, until it ends.
void WhenMapped(wxWindow& window, std::function<void()> act);

/// Whether the person works with the top-level window.
bool IsActive(const wxTopLevelWindow& window);
/// Puts what lies in it where it was told to lie, which the toolkit does only when it draws next.
void LayOutNow(wxTopLevelWindow& window);
/// Asks the window manager to make it active and put it before others.
void Activate(wxTopLevelWindow& window);

/// Has a top-level window lie over another, its owner.
void SetOwner(wxTopLevelWindow& window, wxTopLevelWindow* owner);

/// Has a label break its lines where they would be longer than it is wide, from its top.
void WrapLabel(wxWindow& label);

/// Whether a text control of several lines breaks those that are longer than it is wide.
void WrapLines(wxWindow& text, bool wrap);

/// Draws a frame around a window with scroll bars.
void FrameScrolled(wxWindow& window);
/// Has the scroll bars of a window lie beside its client area, not over it.
void KeepBarsBeside(wxWindow& window);
/// How wide a scroll bar is, in the display's pixels.
int ScrollBarWidth();

/// A tab of a notebook, by its index from 0: whether a person may want its page, and where it lies
/// in the notebook.
void EnableTab(wxNotebook& book, int index, bool enable);
wxRect TabRect(const wxNotebook& book, int index);

}  // namespace workbench
