// Which mirror serves which window.

#include "apps/workbench/layer/bar_mirrors.h"
#include "apps/workbench/layer/button_mirrors.h"
#include "apps/workbench/layer/child_frame_mirror.h"
#include "apps/workbench/layer/combo_mirror.h"
#include "apps/workbench/layer/edit_mirror.h"
#include "apps/workbench/layer/field_mirrors.h"
#include "apps/workbench/layer/frame_mirror.h"
#include "apps/workbench/layer/list_mirrors.h"
#include "apps/workbench/layer/message_box.h"
#include "apps/workbench/layer/plain_mirrors.h"
#include "apps/workbench/layer/spin_mirror.h"
#include "apps/workbench/layer/tab_mirror.h"
#include "apps/workbench/layer/top_level_mirror.h"
#include "dqlib/framework/controls/bitmap_button.h"
#include "dqlib/framework/controls/combo_box.h"
#include "dqlib/framework/controls/date_time_ctrl.h"
#include "dqlib/framework/controls/edit_model.h"
#include "dqlib/framework/controls/hot_key.h"
#include "dqlib/framework/controls/list_box.h"
#include "dqlib/framework/controls/progress.h"
#include "dqlib/framework/controls/sft_tabs.h"
#include "dqlib/framework/controls/spin_button.h"
#include "dqlib/framework/controls/static.h"
#include "dqlib/framework/controls/tool_tip.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/mdi_frame.h"
#include "dqlib/framework/windows/status_bar.h"
#include "dqlib/framework/windows/tool_bar.h"

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
    {Is<dq::CBitmapButton>, Make<BitmapButtonMirror>},
    {Is<dq::CButton>, MakeButtonMirror},
    {Is<dq::EditModel>, Make<EditMirror>},
    {[](const CWnd& window) { return window.GetWindowClass() == kIconClass; }, Make<IconMirror>},
    {Is<dq::CStatic>, Make<LabelMirror>},
    {Is<dq::CListBox>, Make<ListMirror>},
    {Is<dq::CComboBox>, Make<ComboMirror>},
    {Is<dq::CSpinButtonCtrl>, Make<SpinMirror>},
    {Is<dq::CProgressCtrl>, Make<ProgressMirror>},
    {Is<dq::CHotKeyCtrl>, Make<HotKeyMirror>},
    {Is<dq::CDateTimeCtrl>, Make<DateTimeMirror>},
    {[](const CWnd& window) { return DrawsItsTabs(window); }, Make<DrawnTabsMirror>},
    {[](const CWnd& window) {
       return Is<dq::CSftTabs>(window) && window.GetPlace().Height() > window.GetPlace().Width();
     },
     Make<TabListMirror>},
    {Is<dq::CSftTabs>, Make<TabMirror>},
    {[](const CWnd& window) { return window.GetWindowClass() == "SysTabControl32"; },
     Make<TabMirror>},
    {Is<dq::CToolBar>, Make<ToolBarMirror>},
    {Is<dq::CStatusBar>, Make<StatusBarMirror>},
    {Is<dq::CMDIChildWnd>, Make<ChildFrameMirror>},
};

}  // namespace

std::unique_ptr<Mirror> MakeMirror(Layer& layer, CWnd& window) {
  for (const Row& row : kRows) {
    if (row.fits(window)) return row.make(layer, window);
  }
  return std::make_unique<PlainMirror>(layer, window);
}

}  // namespace workbench
