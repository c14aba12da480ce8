#include "dqlib/toolkit/splitter_wnd.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNCREATE(CDQSplitterWnd, CSplitterWnd)

CDQSplitterWnd::~CDQSplitterWnd() { EndInDestructor(); }

// ---- Other panes

bool CDQSplitterWnd::ReplaceView(int row, int column, const CRuntimeClass* view_class,
                                 const CSize& size) {
  CWnd* const pane = GetPane(row, column);
  if (pane == nullptr || (view_class != nullptr && pane->IsKindOf(view_class))) return false;
  const auto fail = [] {
    AfxTrace("CDQSplitterWnd::ReplaceView - Failed to create view\n");
    return false;
  };
  if (view_class == nullptr || view_class->m_pfnCreateObject == nullptr) return fail();
  if (!view_class->IsDerivedFrom(RUNTIME_CLASS(CView))) return fail();
  const CFrameWnd* const around = GetParentFrame();
  const bool becomes_active =
      GetActivePane() == pane || (around != nullptr && around->GetActiveView() == nullptr);
  const CView* const former = DYNAMIC_DOWNCAST(CView, pane);
  const Watched self(*this);
  // Until the new view shows it.
  const detail::KeptDocument document(former == nullptr ? nullptr : former->GetDocument());
  pane->DestroyWindow();
  if (!self.IsThere()) return false;
  const CCreateContext context{
      .m_pCurrentDoc = document.get(),
      .m_pNewDocTemplate = document.get() == nullptr ? nullptr : document.get()->GetDocTemplate(),
      .m_pCurrentFrame = GetParentFrame()};
  const bool made = CreateView(row, column, view_class, size, &context);
  // Handlers may have ended the splitter, or the new pane.
  const CWnd* const fresh = made && self.IsThere() ? GetPane(row, column) : nullptr;
  if (fresh == nullptr) return fail();
  const HWND handle = fresh->GetSafeHwnd();
  SendToWindow(handle, WM_INITIALUPDATE, 0, 0);
  if (CWnd* const there = FromHandle(handle)) there->SendMessageToDescendants(WM_INITIALUPDATE);
  if (!self.IsThere()) return false;
  CWnd* const now = FromHandle(handle);
  CView* const view = DYNAMIC_DOWNCAST(CView, now);
  CFrameWnd* const frame = GetParentFrame();
  if (view == nullptr || !becomes_active || frame == nullptr) return view != nullptr;
  if (frame->GetActiveView() == view) {
    // It was made so without being told.
    view->OnActivateView(true, view, nullptr);
  } else {
    frame->SetActiveView(view);
  }
  return self.IsThere() && FromHandle(handle) != nullptr;
}

// ---- Hidden rows and columns

std::vector<int> CDQSplitterWnd::PlacesOf(const Lines& lines) {
  std::vector<int> places(static_cast<std::size_t>(lines.count));
  std::iota(places.begin(), places.end(), 0);
  if (lines.hidden >= 0) places.push_back(lines.SpareOf(lines.count + 1));
  return places;
}

/// Shows those that are in sight now, whatever handlers do meanwhile, and hides the others. False
/// if they have ended the splitter.
bool CDQSplitterWnd::ShowPanesInSight(const std::vector<HWND>& panes) {
  const Watched self(*this);
  for (const HWND each : panes) {
    CWnd* const pane = FromHandle(each);
    if (pane != nullptr) pane->ShowWindow(IsChildPane(pane) ? SW_SHOWNA : SW_HIDE);
    if (!self.IsThere()) return false;
  }
  return true;
}

void CDQSplitterWnd::Hide(const Lines& lines, const Lines& across, int line) {
  if (!lines.CanHide(line)) return;
  const Watched self(*this);
  StopTracking(false);
  if (!self.IsThere()) return;
  int row = 0;
  int column = 0;
  const bool has_active = GetActivePane(&row, &column) != nullptr;
  int& active = lines.are_columns ? column : row;
  if (has_active && active == line) {
    active = line + 1 < lines.count ? line + 1 : 0;
    SetActivePane(row, column);
  }
  // Whoever was told may have hidden one.
  if (!self.IsThere() || !lines.CanHide(line)) return;
  std::vector<HWND> panes;
  for (const int place : PlacesOf(across)) {
    CWnd* const hidden = GetDlgItem(lines.IdOf(line, place));
    for (int at = line + 1; at < lines.count; ++at) {
      if (CWnd* const pane = GetDlgItem(lines.IdOf(at, place))) {
        pane->SetDlgCtrlID(lines.IdOf(at - 1, place));
      }
    }
    if (hidden == nullptr) continue;
    hidden->SetDlgCtrlID(lines.IdOf(lines.SpareOf(lines.count), place));
    panes.push_back(hidden->GetSafeHwnd());
  }
  CRowColInfo& info = lines.info[static_cast<std::size_t>(line)];
  if (info.nCurSize > 0) info.nIdealSize = info.nCurSize;
  const auto begin = lines.info.begin();
  std::rotate(begin + line, begin + line + 1, begin + lines.count);
  --lines.count;
  lines.hidden = line;
  if (ShowPanesInSight(panes)) RecalcLayout();
}

void CDQSplitterWnd::Show(const Lines& lines, const Lines& across) {
  if (lines.hidden < 0) return;
  const Watched self(*this);
  StopTracking(false);
  if (!self.IsThere() || lines.hidden < 0) return;
  const int line = std::exchange(lines.hidden, -1);
  std::vector<HWND> panes;
  for (const int place : PlacesOf(across)) {
    CWnd* const hidden = GetDlgItem(lines.IdOf(lines.SpareOf(lines.count + 1), place));
    for (int at = lines.count - 1; at >= line; --at) {
      if (CWnd* const pane = GetDlgItem(lines.IdOf(at, place))) {
        pane->SetDlgCtrlID(lines.IdOf(at + 1, place));
      }
    }
    if (hidden == nullptr) continue;
    hidden->SetDlgCtrlID(lines.IdOf(line, place));
    panes.push_back(hidden->GetSafeHwnd());
  }
  const auto begin = lines.info.begin();
  std::rotate(begin + line, begin + lines.count, begin + lines.count + 1);
  ++lines.count;
  if (ShowPanesInSight(panes)) RecalcLayout();
}

LRESULT CDQSplitterWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  // Those of a former window.
  if (message == WM_CREATE) m_nHiddenColumn = m_nHiddenRow = -1;
  return CSplitterWnd::DefWindowProc(message, wparam, lparam);
}

void CDQSplitterWnd::MoveTracking(const CPoint& point) {
  const Watched self(*this);
  CSplitterWnd::MoveTracking(point);
  if (self.IsThere() && m_bDynamic && IsTracking()) TakeTrackedSizes();
}

}  // namespace dq
