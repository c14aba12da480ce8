// What the toolkit's menus can show on this system beyond their own interface.

#pragma once

#include <functional>
#include <wx/gdicmn.h>
#include <wx/string.h>

class wxMenu;
class wxMenuItem;
class wxWindow;

namespace workbench {

/// Shows keys behind an item's text, as "Ctrl+O". They aren't the toolkit's: who handles them is
/// the library.
void ShowKeys(wxMenuItem& item, const wxString& keys);

/// Shows the mark of an item as that of a radio button.
void ShowAsRadio(wxMenuItem& item, bool radio);

/// To which side of a point a menu lies.
enum class MenuSide { kRight, kBoth, kLeft };

/// Drops a menu down at a point of the screen; any button chooses. `over` is the window that it
/// belongs to. `done` is called from within the toolkit when it is left, behind what the person has
/// chosen. False, and no call, if the toolkit refuses.
bool DropMenu(wxMenu& menu, wxWindow& over, const wxPoint& at, MenuSide side,
              std::function<void()> done);

/// The height of a menu bar of one line, in the display's pixels.
int MenuBarHeight();

}  // namespace workbench
