// How parts of controls that the layer draws itself look, in the toolkit's words.

#pragma once

#include <wx/renderer.h>

namespace workbench {

/// `flag` where it holds, a `wxCONTROL_...` value.
constexpr int When(bool holds, int flag) { return holds ? flag : 0; }

inline wxRendererNative& Renderer() { return wxRendererNative::Get(); }

}  // namespace workbench
