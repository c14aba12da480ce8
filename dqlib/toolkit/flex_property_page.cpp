#include "dqlib/toolkit/flex_property_page.h"

#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CNSFlexPropertyPage, CPropertyPage)

CView* CNSFlexPropertyPage::GetView() const {
  for (CWnd* above = GetParent(); above != nullptr; above = above->GetParent()) {
    if (CView* const view = DYNAMIC_DOWNCAST(CView, above)) return view;
  }
  return nullptr;
}

CDocument* CNSFlexPropertyPage::GetDocument() const {
  const CView* const view = GetView();
  return view == nullptr ? nullptr : view->GetDocument();
}

void CNSFlexPropertyPage::OnUpdate(CView*, LPARAM, CObject*) {}

BOOL CNSFlexPropertyPage::OnInitDialog() {
  const detail::Watched self(*this);
  const BOOL choose_focus = CPropertyPage::OnInitDialog();
  if (!self.IsThere()) return 0;
  InitFlex();
  return choose_focus;
}

}  // namespace dq
