// Resources from a given module: strings, pictures, pointers, menus, dialogs, and the search for
// records.
//
// The last argument, or the first of a search, is a module. Operations marked "switched" make it
// the current resource module for the length of the call, so that null means the one that is
// current already. Operations marked "direct" hand it on as it stands, so that null means the
// system's own resources. Callers rely on the difference.

#pragma once

#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/base/string_collections.h"

namespace dq {

class CDialog;
class CMenu;
class CToolBar;

/// Direct. Attaches the picture to the object; true on success.
bool DQLoadBitmap(CBitmap& bitmap, UINT id, HINSTANCE module);
/// Direct. Null if there is none.
HCURSOR DQLoadCursor(UINT id, HINSTANCE module);
HICON DQLoadIcon(UINT id, HINSTANCE module);

/// Direct. Attaches the menu to the object; true on success. False, and no change, if there is none
/// or it breaks its form, or if the object has a menu.
bool DQLoadMenu(CMenu& menu, UINT id, HINSTANCE module);
/// Switched. Loads the buttons of the tool bar; true on success.
bool DQLoadToolBar(CToolBar& bar, UINT id, HINSTANCE module);
/// Switched. Runs the dialog by its own `DoModal` and returns that one's result.
int DQDoModalDialog(CDialog& dialog, HINSTANCE module);

/// Switched. Loads a string; 0, and "", if there is none. The id -1 means "no text": the result is
/// 1 and `text` is "", whatever the module.
int DQLoadString(CString& text, UINT id, HINSTANCE module);

/// Switched. The string with the id with %1, and %2 in the second form, replaced.
void DQFormatString1(CString& text, UINT id, const char* text1, HINSTANCE module);
void DQFormatString2(CString& text, UINT id, const char* text1, const char* text2,
                     HINSTANCE module);

/// Switched. Shows the string with the id; returns the button pressed.
int DQAfxMessageBox(UINT id, UINT type, UINT help_id, HINSTANCE module);

/// Switched even to null, so `module` must be a real one: load a string, without a rule for the id
/// -1. The first form returns `text`.
CString& LoadStringA(HINSTANCE module, UINT id, CString& text);
CString LoadStringA(HINSTANCE module, UINT id);

/// Switched even to null, so `module` must be a real one: shows the string with the id, which names
/// the help topic too; returns the button pressed.
int MessageBoxA(HINSTANCE module, UINT id, UINT type);

/// Direct. The resource record with the id's low 16 bits as its name, or null.
/// `DQFindStringResource` finds the block of 16 strings that the id belongs to.
HRSRC DQFindAcceleratorResource(HINSTANCE module, UINT id);
HRSRC DQFindBitmapResource(HINSTANCE module, UINT id);
HRSRC DQFindDialogResource(HINSTANCE module, UINT id);
HRSRC DQFindFontResource(HINSTANCE module, UINT id);
HRSRC DQFindFontDirResource(HINSTANCE module, UINT id);
HRSRC DQFindMenuResource(HINSTANCE module, UINT id);
HRSRC DQFindRCDataResource(HINSTANCE module, UINT id);
HRSRC DQFindStringResource(HINSTANCE module, UINT id);
HRSRC DQFindIconResource(HINSTANCE module, UINT id);
HRSRC DQFindGroupIconResource(HINSTANCE module, UINT id);
HRSRC DQFindVersionResource(HINSTANCE module, UINT id);
HRSRC DQFindToolbarResource(HINSTANCE module, UINT id);

/// Switched. Cuts the string with the id at any of the delimiter characters and fills `list`, which
/// is emptied first, with the tokens in reverse order: each goes in at the head, and callers that
/// walk from the tail rely on it. No such string gives an empty list.
void DQLIB_LoadResourceList(HINSTANCE module, UINT id, const CString& delimiters,
                            CStringList& list);

/// Tells the user that a feature isn't there yet.
void DQLIB_DoUnderConstructionMessageBox();

/// True if the window's class has that name, case ignored. Only the first 32 bytes of the window's
/// class name take part, so a longer `name` never matches. False for a dead handle.
bool DQCompareClassName(HWND window, const char* name);

}  // namespace dq
