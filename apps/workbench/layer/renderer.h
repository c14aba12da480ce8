// How parts of controls that the layer draws itself look, in the toolkit's words.

#pragma once

#include <algorithm>
#include <iterator>
#include <wx/dc.h>
#include <wx/renderer.h>

namespace workbench {

/// `flag` where it holds, a `wxCONTROL_...` value.
constexpr int When(bool holds, int flag) { return holds ? flag : 0; }

inline wxRendererNative& Renderer() { return wxRendererNative::Get(); }

/// Draws an arrow that points up or down, with the pen and the brush.
inline void DrawArrow(wxDC& context, const wxRect& rect, bool up) {
  const int half = std::max(1, std::min(rect.width, rect.height) / 4);
  const wxPoint middle(rect.x + rect.width / 2, rect.y + rect.height / 2);
  const int tip = up ? -half / 2 - 1 : half / 2 + 1;
  const wxPoint corners[] = {{middle.x - half, middle.y - tip},
                             {middle.x + half, middle.y - tip},
                             {middle.x, middle.y + tip}};
  context.DrawPolygon(static_cast<int>(std::size(corners)), corners);
}

}  // namespace workbench
