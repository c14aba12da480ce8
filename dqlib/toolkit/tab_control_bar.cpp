#include "dqlib/toolkit/tab_control_bar.h"

#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/frame_wnd.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDQTabControlBarTab, CDQFlexTab)
IMPLEMENT_DYNCREATE(CDQTabControlBar, CControlBar)

namespace {

CString LabelOf(UINT id) {
  CString label;
  label.LoadString(id);
  return label;
}

}  // namespace

CDQTabControlBarTab::~CDQTabControlBarTab() { EndInDestructor(); }

CDQTabControlBar::~CDQTabControlBar() { EndInDestructor(); }

bool CDQTabControlBar::Create(CFrameWnd* frame, int id) {
  return frame != nullptr && CreateWnd({.class_name = "TabControlBar", .parent = frame, .id = id});
}

bool CDQTabControlBar::CreateTabWnd() { return m_wndTab.Create(this); }

int CDQTabControlBar::AddTab(CWnd* window, const char* label) {
  return InsertTab(GetTabCount(), window, label);
}

int CDQTabControlBar::AddTab(CWnd* window, UINT label_id) {
  return InsertTab(GetTabCount(), window, label_id);
}

int CDQTabControlBar::AddTab(const CRuntimeClass* window_class, const char* label,
                             const CCreateContext* context) {
  return InsertTab(GetTabCount(), window_class, label, context);
}

int CDQTabControlBar::AddTab(const CRuntimeClass* window_class, UINT label_id,
                             const CCreateContext* context) {
  return InsertTab(GetTabCount(), window_class, label_id, context);
}

int CDQTabControlBar::InsertTab(int index, CWnd* window, const char* label) {
  return ShowStripFor(m_wndTab.InsertTab(index, window, label));
}

int CDQTabControlBar::InsertTab(int index, CWnd* window, UINT label_id) {
  return ShowStripFor(m_wndTab.InsertTab(index, window, LabelOf(label_id)));
}

int CDQTabControlBar::InsertTab(int index, const CRuntimeClass* window_class, const char* label,
                                const CCreateContext* context) {
  return ShowStripFor(m_wndTab.InsertTab(index, window_class, label, context));
}

int CDQTabControlBar::InsertTab(int index, const CRuntimeClass* window_class, UINT label_id,
                                const CCreateContext* context) {
  return ShowStripFor(m_wndTab.InsertTab(index, window_class, LabelOf(label_id), context));
}

/// Hands on the index of a tab that has come in, which may be -1.
int CDQTabControlBar::ShowStripFor(int inserted) {
  if (inserted >= 0 && m_bTabsWanted && GetTabCount() > 1) m_wndTab.ShowTabs(true);
  return inserted;
}

void CDQTabControlBar::ShowTabs(bool show) {
  m_bTabsWanted = show;
  m_wndTab.ShowTabs(show);
}

void CDQTabControlBar::LayOutInside() {
  const CRect inside = GetInsideRect();
  if (m_wndTab.GetSafeHwnd() != nullptr && m_wndTab.GetPlace() != inside) {
    m_wndTab.MoveWindow(inside);
  }
}

LRESULT CDQTabControlBar::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_CREATE && !CreateTabWnd()) {
    AfxTrace("CDQTabControlBarWnd::OnCreate - Failed to create Tab Window\n");
    return -1;
  }
  return CControlBar::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
