// What the toolkit's menus can show on this system beyond their own interface.

#pragma once

#include <functional>
#include <wx/gdicmn.h>
#include <wx/string.h>

union _GdkEvent;
typedef struct _GdkEventKey GdkEventKey;
typedef struct _GtkWidget GtkWidget;
class wxMenu;
class wxMenuItem;
class wxWindow;

namespace workbench {

/// Shows keys behind an item's text, as "Ctrl+O". They aren't the toolkit's: who handles them is
/// the library.
void ShowKeys(wxMenuItem& item, const wxString& keys);

/// Shows the mark of an item as that of a radio button.
void ShowAsRadio(wxMenuItem& item, bool radio);

/// Whether all rows of a menu have room for a mark before them.
void ReserveMarks(wxMenu& menu, bool reserve);

/// The keys of a menu while it is shown.
class MenuKeys {
 public:
  /// `takes` is called from within the toolkit with each character that a person types, in lower
  /// or upper case, without the Control key; the toolkit doesn't get those that it takes. Blanks
  /// choose an item and are the toolkit's.
  MenuKeys(wxMenu& menu, std::function<bool(unsigned int character)> takes);
  MenuKeys(const MenuKeys&) = delete;
  MenuKeys& operator=(const MenuKeys&) = delete;
  ~MenuKeys();

  // While the menu is shown; nothing happens else.

  /// Looks at an item and, with `execute`, chooses it: a popup drops down.
  void Choose(wxMenuItem& item, bool execute);
  /// Leaves all menus.
  void Close();

 private:
  static int OnKey(GtkWidget* menu, GdkEventKey* event, void* self);

  GtkWidget* menu_;
  const std::function<bool(unsigned int character)> takes_;
};

/// To which side of a point a menu lies.
enum class MenuSide { kRight, kBoth, kLeft };

/// Drops a menu down at a point of the screen; any button chooses. `over` is the window that it
/// belongs to. `done` is called from within the toolkit when it is left, behind what the person has
/// chosen. False, and no call, if the toolkit refuses.
bool DropMenu(wxMenu& menu, wxWindow& over, const wxPoint& at, MenuSide side,
              std::function<void()> done);

/// Has the toolkit take a press of a key as that of a menu of a menu bar, which drops down.
void DropFromBar(wxMenu& menu, _GdkEvent& press);

/// The height of a menu bar of one line, in the display's pixels.
int MenuBarHeight();

}  // namespace workbench
