// Which mirror serves which window.

#include "apps/workbench/layer/button_mirrors.h"
#include "apps/workbench/layer/edit_mirror.h"
#include "apps/workbench/layer/frame_mirror.h"
#include "apps/workbench/layer/plain_mirrors.h"
#include "apps/workbench/layer/top_level_mirror.h"
#include "dqlib/framework/controls/button.h"
#include "dqlib/framework/controls/edit.h"
#include "dqlib/framework/controls/static.h"
#include "dqlib/framework/controls/tool_tip.h"
#include "dqlib/framework/windows/frame_wnd.h"

namespace workbench {
namespace {

using dq::CWnd;

using Maker = std::unique_ptr<Mirror> (*)(Layer& layer, CWnd& window);

template <typename Kind>
std::unique_ptr<Mirror> Make(Layer& layer, CWnd& window) {
  return std::make_unique<Kind>(layer, window);
}

std::unique_ptr<Mirror> MakeNone(Layer&, CWnd&) { return nullptr; }

template <typename Class>
bool Is(const CWnd& window) {
  return dynamic_cast<const Class*>(&window) != nullptr;
}

/// The first row that fits counts. A window of a control's class whose object isn't one, because a
/// plain object has taken it over, holds nothing that could be shown.
struct Row {
  bool (*fits)(const CWnd& window);
  Maker make;
};

constexpr Row kRows[] = {
    {Is<dq::CToolTipCtrl>, MakeNone},
    {[](const CWnd& window) { return window.GetParent() == nullptr && Is<dq::CFrameWnd>(window); },
     Make<FrameMirror>},
    {[](const CWnd& window) { return window.GetParent() == nullptr; }, Make<TopLevelMirror>},
    {Is<dq::CButton>, MakeButtonMirror},
    {Is<dq::CEdit>, Make<EditMirror>},
    {Is<dq::CStatic>, Make<LabelMirror>},
};

}  // namespace

std::unique_ptr<Mirror> MakeMirror(Layer& layer, CWnd& window) {
  for (const Row& row : kRows) {
    if (row.fits(window)) return row.make(layer, window);
  }
  return std::make_unique<PlainMirror>(layer, window);
}

}  // namespace workbench
