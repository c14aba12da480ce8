#include "dqlib/framework/windows/splitter_wnd.h"

#include <algorithm>
#include <span>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

namespace {

/// Pixels of a bar, across.
constexpr int kBarSize = 6;

template <typename Info>
int StartOf(std::span<Info> lines, int index) {
  int start = 0;
  for (const Info& each : lines.first(static_cast<std::size_t>(index))) {
    start += each.nCurSize + kBarSize;
  }
  return start;
}

/// Hands the room out among the lines.
template <typename Info>
void LayOutLines(std::span<Info> lines, int room) {
  if (lines.empty()) return;
  room = std::max(0, room - kBarSize * (static_cast<int>(lines.size()) - 1));
  Info* open = &lines.front();
  for (Info& line : lines) {
    const int size = &line == &lines.back() ? room : std::min(line.nIdealSize, room);
    line.nCurSize = size < line.nMinSize ? 0 : size;
    room -= line.nCurSize;
    if (line.nCurSize > 0) open = &line;
  }
  open->nCurSize += room;
}

/// How far the bar behind a line can be dragged.
template <typename Info>
int ClampDrag(const std::vector<Info>& lines, int index, int by) {
  const auto at = static_cast<std::size_t>(index);
  return std::clamp(by, -lines[at].nCurSize, lines[at + 1].nCurSize);
}

/// The lines as they are wanted once the bar behind one of them has been dragged.
template <typename Info>
std::vector<Info> Dragged(std::vector<Info> lines, int index, int by) {
  for (Info& line : lines) line.nIdealSize = line.nCurSize;
  Info& before = lines[static_cast<std::size_t>(index)];
  Info& behind = lines[static_cast<std::size_t>(index) + 1];
  const int both = before.nCurSize + behind.nCurSize;
  int size = before.nCurSize + by;
  if (size < before.nMinSize) {
    size = 0;
  } else if (both - size < behind.nMinSize) {
    size = both;
  }
  before.nIdealSize = size;
  behind.nIdealSize = both - size;
  return lines;
}

}  // namespace

IMPLEMENT_DYNCREATE(CSplitterWnd, CWnd)

CSplitterWnd::~CSplitterWnd() { EndInDestructor(); }

bool CSplitterWnd::CreateStatic(CWnd* parent, int rows, int columns, int id) {
  const auto fits = [](int lines) { return lines >= 1 && lines <= kMostLines; };
  if (parent == nullptr || !fits(rows) || !fits(columns) || rows * columns < 2) return false;
  if (GetSafeHwnd() != nullptr) return false;
  m_nRows = rows;
  m_nCols = columns;
  m_rowInfo.assign(static_cast<std::size_t>(rows), {});
  m_colInfo.assign(static_cast<std::size_t>(columns), {});
  return CreateWnd({.class_name = "Splitter", .parent = parent, .id = id});
}

bool CSplitterWnd::CreateView(int row, int column, const CRuntimeClass* view_class,
                              const CSize& size, const CCreateContext* context) {
  if (row < 0 || row >= m_nRows || column < 0 || column >= m_nCols) return false;
  if (GetPane(row, column) != nullptr) return false;
  CCreateContext made = context == nullptr ? CCreateContext{} : *context;
  made.m_pNewViewClass = view_class;
  CFrameWnd* const frame = GetParentFrame();
  if (context == nullptr && frame != nullptr) {
    made.m_pCurrentFrame = frame;
    made.m_pLastView = frame->GetActiveView();
    made.m_pCurrentDoc = frame->GetActiveDocument();
    if (made.m_pCurrentDoc != nullptr) {
      made.m_pNewDocTemplate = made.m_pCurrentDoc->GetDocTemplate();
    }
  }
  const Watched self(*this);
  const CRect place{0, 0, size.cx, size.cy};
  if (CView::MakeView(this, place, IdFromRowCol(row, column), &made) == nullptr) return false;
  if (!self.IsThere()) return false;
  m_rowInfo[static_cast<std::size_t>(row)].nIdealSize = std::max<int>(0, size.cy);
  m_colInfo[static_cast<std::size_t>(column)].nIdealSize = std::max<int>(0, size.cx);
  RecalcLayout();
  return true;
}

void CSplitterWnd::DeleteView(int row, int column) {
  CWnd* const pane = GetPane(row, column);
  if (pane == nullptr) return;
  const HWND handle = pane->GetSafeHwnd();
  if (GetActivePane() == pane) ActivateNext();
  if (CWnd* const left = FromHandle(handle)) left->DestroyWindow();
}

CWnd* CSplitterWnd::GetPane(int row, int column) const {
  if (row < 0 || row >= m_nRows || column < 0 || column >= m_nCols) return nullptr;
  return GetDlgItem(IdFromRowCol(row, column));
}

bool CSplitterWnd::IsChildPane(const CWnd* window, int* row, int* column) const {
  const int cell = window == nullptr ? -1 : window->GetDlgCtrlID() - kFirstPaneId;
  const bool is_pane = cell >= 0 && GetPane(cell / kMostLines, cell % kMostLines) == window;
  if (row != nullptr) *row = is_pane ? cell / kMostLines : -1;
  if (column != nullptr) *column = is_pane ? cell % kMostLines : -1;
  return is_pane;
}

CWnd* CSplitterWnd::GetActivePane(int* row, int* column) const {
  const CFrameWnd* const frame = GetParentFrame();
  CWnd* active = frame == nullptr ? nullptr : frame->GetActiveView();
  if (active == nullptr) active = GetFocus();
  while (active != nullptr && active->GetParent() != this) active = active->GetParent();
  return IsChildPane(active, row, column) ? active : nullptr;
}

void CSplitterWnd::SetActivePane(int row, int column) {
  CWnd* const pane = GetPane(row, column);
  CFrameWnd* const frame = GetParentFrame();
  if (CSplitterWnd* const inner = DYNAMIC_DOWNCAST(CSplitterWnd, pane)) {
    inner->SetActivePane(0, 0);
  } else if (CView* const view = DYNAMIC_DOWNCAST(CView, pane); view && frame != nullptr) {
    frame->SetActiveView(view);
  } else if (pane != nullptr) {
    pane->SetFocus();
  }
}

bool CSplitterWnd::ActivateNext(bool previous) {
  int row = 0;
  int column = 0;
  const bool has_active = GetActivePane(&row, &column) != nullptr;
  const int count = m_nRows * m_nCols;
  int at = has_active ? row * m_nCols + column : previous ? 0 : count - 1;
  for (int left = has_active ? count - 1 : count; left > 0; --left) {
    at = (at + (previous ? count - 1 : 1)) % count;
    const CWnd* const pane = GetPane(at / m_nCols, at % m_nCols);
    if (pane == nullptr || !pane->IsShown()) continue;
    SetActivePane(at / m_nCols, at % m_nCols);
    return true;
  }
  return false;
}

void CSplitterWnd::SetRowInfo(int row, int ideal, int least) {
  if (row < 0 || row >= m_nRows) return;
  CRowColInfo& info = m_rowInfo[static_cast<std::size_t>(row)];
  info.nIdealSize = std::max(0, ideal);
  info.nMinSize = std::max(0, least);
}

void CSplitterWnd::GetRowInfo(int row, int& current, int& least) const {
  const bool is_there = row >= 0 && row < m_nRows;
  const CRowColInfo info = is_there ? m_rowInfo[static_cast<std::size_t>(row)] : CRowColInfo{};
  current = info.nCurSize;
  least = info.nMinSize;
}

void CSplitterWnd::SetColumnInfo(int column, int ideal, int least) {
  if (column < 0 || column >= m_nCols) return;
  CRowColInfo& info = m_colInfo[static_cast<std::size_t>(column)];
  info.nIdealSize = std::max(0, ideal);
  info.nMinSize = std::max(0, least);
}

void CSplitterWnd::GetColumnInfo(int column, int& current, int& least) const {
  const bool is_there = column >= 0 && column < m_nCols;
  const CRowColInfo info = is_there ? m_colInfo[static_cast<std::size_t>(column)] : CRowColInfo{};
  current = info.nCurSize;
  least = info.nMinSize;
}

void CSplitterWnd::RecalcLayout() {
  if (GetSafeHwnd() == nullptr) return;
  const Watched self(*this);
  const CRect client = GetClientRect();
  LayOutLines(std::span(m_rowInfo).first(static_cast<std::size_t>(m_nRows)), client.bottom);
  LayOutLines(std::span(m_colInfo).first(static_cast<std::size_t>(m_nCols)), client.right);
  for (int row = 0; row < m_nRows; ++row) {
    for (int column = 0; column < m_nCols; ++column) {
      CWnd* const pane = GetPane(row, column);
      if (pane == nullptr) continue;
      pane->MoveWindow(StartOf(std::span(m_colInfo), column), StartOf(std::span(m_rowInfo), row),
                       m_colInfo[static_cast<std::size_t>(column)].nCurSize,
                       m_rowInfo[static_cast<std::size_t>(row)].nCurSize);
      if (!self.IsThere()) return;
    }
  }
  Invalidate();
}

CRect CSplitterWnd::GetRowBarRect(int row) const {
  if (row < 0 || row >= m_nRows - 1) return {};
  const int bottom = StartOf(std::span(m_rowInfo), row + 1);
  return {0, bottom - kBarSize, GetClientRect().right, bottom};
}

CRect CSplitterWnd::GetColumnBarRect(int column) const {
  if (column < 0 || column >= m_nCols - 1) return {};
  const int right = StartOf(std::span(m_colInfo), column + 1);
  return {right - kBarSize, 0, right, GetClientRect().bottom};
}

CSplitterWnd::Bars CSplitterWnd::HitTest(const CPoint& point) const {
  Bars bars;
  for (int row = 0; row < m_nRows - 1; ++row) {
    if (GetRowBarRect(row).PtInRect(point)) bars.row = row;
  }
  for (int column = 0; column < m_nCols - 1; ++column) {
    if (GetColumnBarRect(column).PtInRect(point)) bars.column = column;
  }
  return bars;
}

CRect CSplitterWnd::GetTrackedRowBar() const {
  if (tracked_.row < 0) return {};
  const int bottom = StartOf(std::span(former_rows_), tracked_.row + 1) + tracked_by_.cy;
  return {0, bottom - kBarSize, GetClientRect().right, bottom};
}

CRect CSplitterWnd::GetTrackedColumnBar() const {
  if (tracked_.column < 0) return {};
  const int right = StartOf(std::span(former_columns_), tracked_.column + 1) + tracked_by_.cx;
  return {right - kBarSize, 0, right, GetClientRect().bottom};
}

void CSplitterWnd::StartTracking(const Bars& bars, const CPoint& point) {
  if (bars.IsNone() || bars.row >= m_nRows - 1 || bars.column >= m_nCols - 1) return;
  const Watched self(*this);
  SetCapture();
  if (!self.IsThere() || GetCapture() != this) return;
  tracked_ = bars;
  tracking_from_ = point;
  tracked_by_ = {};
  former_rows_ = m_rowInfo;
  former_columns_ = m_colInfo;
  Changed(WindowChange::kContent);
}

void CSplitterWnd::MoveTracking(const CPoint& point) {
  if (!IsTracking()) return;
  CSize by;
  if (tracked_.row >= 0) {
    by.cy = ClampDrag(former_rows_, tracked_.row,
                      detail::WrappingDifference(point.y, tracking_from_.y));
  }
  if (tracked_.column >= 0) {
    by.cx = ClampDrag(former_columns_, tracked_.column,
                      detail::WrappingDifference(point.x, tracking_from_.x));
  }
  if (by == tracked_by_) return;
  tracked_by_ = by;
  Changed(WindowChange::kContent);
}

void CSplitterWnd::TakeTrackedSizes() {
  if (tracked_.row >= 0) m_rowInfo = Dragged(former_rows_, tracked_.row, tracked_by_.cy);
  if (tracked_.column >= 0) {
    m_colInfo = Dragged(former_columns_, tracked_.column, tracked_by_.cx);
  }
  RecalcLayout();
}

void CSplitterWnd::StopTracking(bool accept) {
  if (!IsTracking()) return;
  const bool moved = tracked_by_ != CSize{};
  const bool changed = m_rowInfo != former_rows_ || m_colInfo != former_columns_;
  const Watched self(*this);
  if (accept && moved) TakeTrackedSizes();
  if (!self.IsThere()) return;
  tracked_ = {};
  if (!accept && changed) {
    m_rowInfo = std::move(former_rows_);
    m_colInfo = std::move(former_columns_);
    RecalcLayout();
    if (!self.IsThere()) return;
  }
  Changed(WindowChange::kContent);
  if (GetCapture() == this) ReleaseCapture();
}

void CSplitterWnd::OnPaint(CDC& dc) {
  const auto draw = [&dc](const CRect& bar) {
    dc.DrawEdge(bar, BDR_RAISEDINNER, BF_RECT | BF_MIDDLE);
  };
  for (int row = 0; row < m_nRows - 1; ++row) draw(GetRowBarRect(row));
  for (int column = 0; column < m_nCols - 1; ++column) draw(GetColumnBarRect(column));
}

LRESULT CSplitterWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  const CPoint point = PointOfParam(lparam);
  switch (message) {
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) RecalcLayout();
      return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      if (!IsTracking()) StartTracking(HitTest(point), point);
      return 0;
    case WM_MOUSEMOVE:
      MoveTracking(point);
      return 0;
    case WM_LBUTTONUP: {
      const Watched self(*this);
      MoveTracking(point);
      if (self.IsThere()) StopTracking(true);
      return 0;
    }
    case WM_CAPTURECHANGED:
      StopTracking(false);
      return 0;
    case WM_SETCURSOR: {
      const Bars bars = HitTest(ScreenToClient(GetPointerPos()));
      if (bars.IsNone()) return CWnd::DefWindowProc(message, wparam, lparam);
      SetPointerShape(bars.row < 0      ? PointerShape::kSizeLeftRight
                      : bars.column < 0 ? PointerShape::kSizeUpDown
                                        : PointerShape::kCross);
      return 1;
    }
    case WM_COMMAND:
    case WM_NOTIFY:
      return GetParent() == nullptr ? 0 : GetParent()->SendMessage(message, wparam, lparam);
    default:
      return CWnd::DefWindowProc(message, wparam, lparam);
  }
}

}  // namespace dq
