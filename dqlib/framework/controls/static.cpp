#include "dqlib/framework/controls/static.h"

namespace dq {

IMPLEMENT_DYNAMIC(CStatic, CWnd)

void CStatic::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  control.kind = platform::DialogControlKind::kText;
}

}  // namespace dq
