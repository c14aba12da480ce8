// How the toolkit's windows look: small enough for the rectangles that the library gives them.

#pragma once

#include <wx/font.h>
#include <wx/settings.h>
#include <wx/string.h>

#include "apps/workbench/layer/scale.h"

class wxWindow;

namespace dq {
class CFont;
struct LOGFONT;
}  // namespace dq

namespace workbench {

/// Has windows marked by `UseDialogStyle`, and what lies in them, drawn with the dialogs' own font
/// and with margins to match. Once per process.
void InstallDialogStyle(const Scale& scale);
void UseDialogStyle(wxWindow& window);

/// A colour of the desktop's.
inline wxColour SystemColor(wxSystemColour index) { return wxSystemSettings::GetColour(index); }

/// The dialogs' own font: the desktop's in the size that dialogs are designed for.
wxFont DialogFont();
/// Height of its lines, in the display's pixels.
int DialogLineHeight();

/// How large a text is in that font, in the display's pixels, if its lines are broken where they
/// would be wider than that.
wxSize WrappedTextSize(const wxString& text, int width);

/// A font of the library's; what it leaves open is as in the dialogs' own.
wxFont ToNativeFont(const dq::LOGFONT& font);
/// Gives a window a font of the library's; null is the dialogs' own.
void SetNativeFont(wxWindow& window, const dq::CFont* font);

}  // namespace workbench
