// Control bars: windows that take an edge of a frame's client area, as tool bars, status bars and
// panes that are docked.

#pragma once

#include "dqlib/framework/windows/wnd.h"

namespace dq {

/// Ids of what lies in a frame.
enum FrameChildId : int {
  kToolBarId = 0xE800,
  kStatusBarId = 0xE801,
  /// The view, the splitter or the window of child frames: it fills what the bars leave. The panes
  /// of a splitter have this id plus 16 for each row and 1 for each column.
  kFirstPaneId = 0xE900,
  kLastPaneId = 0xE9FF,
};

/// The edge of the frame at which a bar lies; a floating one lies in a window of its own.
enum class DockSide { kNone, kTop, kBottom, kLeft, kRight };

/// Base of the bars. The frame around it lays it out: bars take their part of the client area in
/// the order of the frame's children, and what is left belongs to the view (`CFrameWnd::
/// RecalcLayout`).
class CControlBar : public CWnd {
  DECLARE_DYNAMIC(CControlBar)
  CControlBar() = default;
  explicit CControlBar(DockSide side) : m_eSide(side) {}

  /// Where it lies. A change has the frame laid out anew.
  DockSide GetDockSide() const { return m_eSide; }
  void SetDockSide(DockSide side);
  bool IsHorizontal() const { return m_eSide == DockSide::kTop || m_eSide == DockSide::kBottom; }

  /// How much of `room`, the part of the client area that is left, the bar wants: of a horizontal
  /// bar the height counts, of a vertical one the width. The base wants `GetBarSize`.
  virtual CSize CalcFixedLayout(const CSize& room, bool horizontal);
  /// The size that a person has given it, or the design.
  const CSize& GetBarSize() const { return m_sizeBar; }
  void SetBarSize(const CSize& size);

  /// The frame that lays it out, or null.
  CFrameWnd* GetDockingFrame() const;
  /// Brings what shows commands up to date by the handlers of `target` and its route. Called with
  /// the frame around the bar when the thread is idle, if the bar is visible. The base does so with
  /// its controls.
  virtual void OnUpdateCmdUI(CCmdTarget& target, bool disable_if_no_handler);

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  friend class CFrameWnd;

  /// Takes its part of the rectangle, in the frame's client coordinates, and leaves the rest.
  void LayOut(CRect& room);

  DockSide m_eSide = DockSide::kTop;
  CSize m_sizeBar;
};

}  // namespace dq
