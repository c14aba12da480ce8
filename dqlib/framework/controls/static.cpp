#include "dqlib/framework/controls/static.h"

namespace dq {

IMPLEMENT_DYNAMIC(CStatic, CWnd)

void CStatic::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  control.kind = platform::DialogControlKind::kText;
}

LRESULT CStatic::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_GETDLGCODE) return DLGC_STATIC;
  return Control::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
