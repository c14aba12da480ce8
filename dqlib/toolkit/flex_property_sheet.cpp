#include "dqlib/toolkit/flex_property_sheet.h"

#include <algorithm>

#include "dqlib/toolkit/flex_mdi_child_wnd.h"
#include "dqlib/toolkit/flex_property_page.h"

namespace dq {
namespace {

/// Width and height of a size grip in pixels.
constexpr LONG kGrip = 16;

}  // namespace

IMPLEMENT_DYNAMIC(CNSFlexPropertySheet, CPropertySheet)
IMPLEMENT_DYNAMIC(CNSFlexPropertySheetView, CView)

BOOL CNSFlexPropertySheet::OnInitDialog() {
  const HWND self = GetSafeHwnd();
  const BOOL choose_focus = CPropertySheet::OnInitDialog();
  if (FromHandle(self) != this) return 0;
  InitFlex();
  for (const int id : {int{IDOK}, int{IDCANCEL}, int{ID_APPLY_NOW}}) {
    const UINT button = static_cast<UINT>(id);
    if (GetDlgItem(id) == nullptr || m_listFlex.HasConstraint(button)) continue;
    AddFlexConstraint(button, NSFlexShiftRight, NSFlexShiftDown);
  }
  OnEraseBkgnd();
  return choose_focus;
}

void CNSFlexPropertySheet::OnSize(UINT type, int cx, int cy) {
  const HWND self = GetSafeHwnd();
  FlexHost::OnSize(type, cx, cy);
  if (FromHandle(self) != this) return;
  if (type != SIZE_MINIMIZED) LayOutPages();
  if (FromHandle(self) == this) OnEraseBkgnd();
}

void CNSFlexPropertySheet::OnPageSetActive(CPropertyPage* page) {
  CPropertySheet::OnPageSetActive(page);
  LayOutPages();
}

void CNSFlexPropertySheet::OnEraseBkgnd() {
  const CRect client = GetClientRect();
  CRect grip{std::max(0, client.right - kGrip), std::max(0, client.bottom - kGrip), client.right,
             client.bottom};
  if (IsZoomed() || IsIconic()) grip = {};
  if (grip == m_rectGrip) return;
  m_rectGrip = grip;
  Changed(WindowChange::kContent);
}

bool CNSFlexPropertySheet::OnApply() {
  if (!CPropertySheet::OnApply()) return false;
  const HWND self = GetSafeHwnd();
  OnApplyChanges(m_pSubject);
  return FromHandle(self) == this;
}

void CNSFlexPropertySheet::OnApplyChanges(void*) {}

CNSFlexPropertySheetView::CNSFlexPropertySheetView() = default;

CNSFlexPropertySheetView::~CNSFlexPropertySheetView() {
  // While the sheet is still there: its parent goes first.
  EndInDestructor();
}

CRect CNSFlexPropertySheetView::GetSizeGripRect() const {
  CRect grip = m_sheet.GetSizeGripRect();
  const CRect& place = m_sheet.GetPlace();
  if (!grip.IsRectEmpty()) grip.OffsetRect(place.left, place.top);
  return grip;
}

void CNSFlexPropertySheetView::OnInitialUpdate() {
  const HWND self = GetSafeHwnd();
  if (!m_sheet.Create(this, true) || FromHandle(self) != this) return;
  const CSize size = m_sheet.GetWindowRect().Size();
  const CRect frame = GetWindowRect();
  const CRect client = GetClientRect();
  MoveWindow(GetPlace().left, GetPlace().top, size.cx + frame.Width() - client.Width(),
             size.cy + frame.Height() - client.Height());
  if (FromHandle(self) != this) return;
  InitFlex();
  m_sheet.ShowWindow(SW_SHOW);
  if (FromHandle(self) != this) return;
  CNSFlexMDIChildWnd::PassMinTrackSize(*this, GetMinTrackSize());
  if (FromHandle(self) == this) CView::OnInitialUpdate();
}

void CNSFlexPropertySheetView::OnSize(UINT type, int cx, int cy) {
  const HWND self = GetSafeHwnd();
  FlexHost::OnSize(type, cx, cy);
  if (FromHandle(self) == this && type != SIZE_MINIMIZED) m_sheet.MoveWindow(0, 0, cx, cy);
}

void CNSFlexPropertySheetView::OnUpdate(CView* sender, LPARAM hint, CObject* object) {
  const HWND self = GetSafeHwnd();
  CView::OnUpdate(sender, hint, object);
  for (int i = 0; FromHandle(self) == this && i < m_sheet.GetPageCount(); ++i) {
    CNSFlexPropertyPage* const page = DYNAMIC_DOWNCAST(CNSFlexPropertyPage, m_sheet.GetPage(i));
    if (page != nullptr && page->GetSafeHwnd() != nullptr) page->OnUpdate(sender, hint, object);
  }
}

}  // namespace dq
