// What the toolkit's menus can show on this system beyond their own interface.

#pragma once

#include <wx/string.h>

class wxMenuItem;

namespace workbench {

/// Shows keys behind an item's text, as "Ctrl+O". They aren't the toolkit's: who handles them is
/// the library.
void ShowKeys(wxMenuItem& item, const wxString& keys);

/// Shows the mark of an item as that of a radio button.
void ShowAsRadio(wxMenuItem& item, bool radio);

/// The height of a menu bar of one line, in the display's pixels.
int MenuBarHeight();

}  // namespace workbench
