// Lists and trees: what a person does.

#include <algorithm>

#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/controls/tree_columns.h"
#include "dqlib/framework/controls/tree_rows.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

void CSftTree::CancelMode() {}

void CSftTree::Describe(platform::DialogControl& control) const { Control::Describe(control); }
bool CSftTree::Enter(std::string_view) { return false; }
bool CSftTree::Press() { return false; }

LRESULT CSftTree::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      UpdateScroll(top_, left_);
      return 0;
    case WM_SETFONT:
    case WM_SYSCOLORCHANGE:
      row_height_ = 0;
      columns_->ForgetWidths();
      Control::DefWindowProc(message, wparam, lparam);
      LayoutChanged();
      return 0;
    case WM_VSCROLL:
      ScrollBy(SB_VERT, wparam);
      return 0;
    case WM_HSCROLL:
      ScrollBy(SB_HORZ, wparam);
      return 0;
    default:
      return Control::DefWindowProc(message, wparam, lparam);
  }
}

}  // namespace dq
