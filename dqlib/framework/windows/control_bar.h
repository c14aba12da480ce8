// Control bars: windows that take an edge of a frame's client area, as tool bars, status bars and
// panes that are docked.

#pragma once

#include "dqlib/framework/windows/wnd.h"

namespace dq {

/// Ids of what lies in a frame.
enum FrameChildId : int {
  /// From here to `kLastBarId` are the ids of bars, which are the commands to show and hide them
  /// too.
  kToolBarId = 0xE800,
  kStatusBarId = 0xE801,
  kLastBarId = 0xE8FF,
  /// The view, the splitter or the window of child frames: it fills what the bars leave. The panes
  /// of a splitter have this id plus 16 for each row and 1 for each column.
  kFirstPaneId = 0xE900,
  kLastPaneId = 0xE9FF,
};

/// The edge of the frame at which a bar lies; a floating one lies in a window of its own.
enum class DockSide { kNone, kTop, kBottom, kLeft, kRight };

/// Bits for the edges at which a bar may be docked.
enum BarAlignment : UINT {
  CBRS_ALIGN_LEFT = 0x1000,
  CBRS_ALIGN_TOP = 0x2000,
  CBRS_ALIGN_RIGHT = 0x4000,
  CBRS_ALIGN_BOTTOM = 0x8000,
  CBRS_ALIGN_ANY = 0xF000,
};

/// The bit of an edge; 0 for `DockSide::kNone`.
constexpr UINT AlignmentOf(DockSide side) {
  constexpr UINT kBits[] = {0, CBRS_ALIGN_TOP, CBRS_ALIGN_BOTTOM, CBRS_ALIGN_LEFT,
                            CBRS_ALIGN_RIGHT};
  return kBits[static_cast<int>(side)];
}

/// Base of the bars. The frame around it lays it out: bars take their part of the client area one
/// after the other, and what is left belongs to the view (`CFrameWnd::RecalcLayout`).
///
/// A bar that can be docked has a gripper while it is: a person drags it there to another edge or
/// out of the frame, or clicks it twice to have it float. One with a sizing edge gets another size
/// by that. Both go on until the mouse is let go; Escape leaves all as it was. A window layer
/// reports the mouse over them by `MouseInput`.
class CControlBar : public CWnd {
  DECLARE_DYNAMIC(CControlBar)
  CControlBar() = default;
  explicit CControlBar(DockSide side) : m_eSide(side), m_eLastSide(side) {}
  ~CControlBar() override;

  /// Where it lies, `kNone` while it floats; and where it is docked, or was before it floated. A
  /// change has the frame laid out anew.
  DockSide GetDockSide() const { return m_eSide; }
  DockSide GetLastDockSide() const { return m_eLastSide; }
  void SetDockSide(DockSide side);
  bool IsHorizontal() const { return m_eSide == DockSide::kTop || m_eSide == DockSide::kBottom; }
  bool IsVertical() const { return m_eSide == DockSide::kLeft || m_eSide == DockSide::kRight; }

  /// From now on it can be docked at the edges of the `BarAlignment` bits, and float; with 0 only
  /// that. Before, it stays where it is.
  void EnableDocking(UINT sides);
  bool IsDockable() const { return m_bDockable; }
  bool CanDock(DockSide side) const { return (m_nSides & AlignmentOf(side)) != 0; }
  bool IsFloating() const;
  /// Where it floats on the screen, or did last, with the small frame around it; empty if it never
  /// did.
  const CRect& GetFloatingPlace() const { return m_rectFloat; }
  /// Has it float where it did last, or else over its place, or be docked where it was before.
  /// False if it can't.
  bool ToggleFloating();

  /// How much of `room`, the part of the client area that is left, the bar wants: of a horizontal
  /// bar the height counts, of a vertical one the width. The base wants `GetBarSize`.
  virtual CSize CalcFixedLayout(const CSize& room, bool horizontal);
  /// How large it is when it begins to float. The base wants `GetBarSize`, each extent at least
  /// `kLeastFloating`.
  virtual CSize CalcFloatingLayout();
  static constexpr LONG kLeastFloating = 100;
  /// The size that a person has given it, or the design. Never below the smallest one, which is 0
  /// at first.
  const CSize& GetBarSize() const { return m_sizeBar; }
  void SetBarSize(const CSize& size);
  const CSize& GetMinBarSize() const { return m_sizeMin; }
  void SetMinBarSize(const CSize& size);
  /// Whether it has a sizing edge, towards the view; at first it has none.
  void EnableSizing(bool enable);
  bool IsSizingEnabled() const { return m_bSizing; }

  // The parts of its client area; an empty rectangle where there is none.

  CRect GetGripperRect() const;
  CRect GetSizingRect() const;
  /// What is left for its contents.
  CRect GetInsideRect() const;

  /// Where it would lie if the mouse was let go now, on the screen; empty if nobody drags it
  /// elsewhere. Changes are told as those of content.
  const CRect& GetDragRect() const { return m_rectDrag; }

  /// The frame that lays it out, or from which it floats; null if there is none.
  CFrameWnd* GetDockingFrame() const;
  /// Brings what shows commands up to date by the handlers of `target` and its route. Called with
  /// the frame around the bar when the thread is idle, if the bar is visible. The base does so with
  /// its controls.
  virtual void OnUpdateCmdUI(CCmdTarget& target, bool disable_if_no_handler);

  /// The window in which it floats ends with it.
  BOOL DestroyWindow() override;

 protected:
  /// What its controls notify by `WM_COMMAND` and `WM_NOTIFY` goes on to its parent.
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnPaint(CDC& dc) override;
  /// Places what lies in `GetInsideRect`. Called when the bar is moved, sized or laid out. It may
  /// end the bar.
  virtual void LayOutInside() {}

 private:
  friend class CFrameWnd;
  friend class CMiniDockFrameWnd;
  enum class Drag { kNone, kSize, kMove };

  /// Lies down in its part of the rectangle, in the frame's client coordinates, and leaves the
  /// rest.
  void LayOut(CRect& room);
  CRect TakePlace(CRect& room);
  LRESULT OnMouse(UINT message, const CPoint& point);
  void BeginDrag(Drag drag, const CPoint& screen);
  void DragTo(const CPoint& screen);
  void DragSize(LONG dx, LONG dy);
  void EndDrag(bool accept, const CPoint& screen);

  DockSide m_eSide = DockSide::kTop;
  DockSide m_eLastSide = DockSide::kTop;
  bool m_bDockable = false;
  bool m_bSizing = false;
  UINT m_nSides = 0;
  CSize m_sizeBar;
  CSize m_sizeMin;
  CRect m_rectFloat;
  /// What a person is doing, since where, and what the size was then.
  Drag m_eDrag = Drag::kNone;
  CPoint m_ptDragFrom;
  CSize m_sizeFormer;
  CRect m_rectDrag;
};

}  // namespace dq
