// The mouse over windows without a control of the toolkit's.

#pragma once

#include <wx/window.h>

#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/wnd.h"

namespace workbench {

class Layer;

/// Has what the mouse does over the toolkit's window come to the library's, as `dq::MouseInput`
/// hands it on. Both live until the toolkit's one ends.
void ReportMouse(Layer& layer, wxWindow& native, dq::HWND window);

/// The toolkit's pointer of a shape.
wxCursor ToNativePointer(dq::PointerShape shape);

}  // namespace workbench
