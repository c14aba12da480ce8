#include "dqlib/toolkit/flex_form_view.h"

#include "dqlib/toolkit/flex_mdi_child_wnd.h"

namespace dq {

IMPLEMENT_DYNAMIC(CNSFlexFormView, CFormView)

void CNSFlexFormView::OnInitialUpdate() {
  const HWND self = GetSafeHwnd();
  CFormView::OnInitialUpdate();
  if (FromHandle(self) != this) return;
  InitFlex();
  CNSFlexMDIChildWnd::PassMinTrackSize(*this, GetMinTrackSize());
}

}  // namespace dq
