// The strip of tabs by which a person chooses one of several windows.

#pragma once

#include "dqlib/framework/controls/scrolling.h"
#include "dqlib/framework/controls/tab_control_base.h"

namespace dq {

class CDC;

/// A strip that is drawn in relief, its tabs side by side, above the windows or below them. Where
/// there isn't room for all, two buttons at its end scroll it, and so does the wheel. With the
/// focus the arrow keys, Home and End go from tab to tab.
class SEC3DTabControl : public SECTabControlBase {
  DECLARE_DYNAMIC(SEC3DTabControl)
  /// What lies at a point, where it is no tab.
  enum Part : int { kNothing = -1, kScrollBack = -2, kScrollOn = -3 };

  SEC3DTabControl();
  ~SEC3DTabControl() override;

  /// False if it is made already, or can't be.
  bool Create(CWnd* parent, int id);

  /// How high the strip wants to be, in pixels, for its font.
  int GetIdealHeight() const;
  /// Pixels before the first tab, from 0; at first `kUsualMargin`.
  static constexpr int kUsualMargin = 2;
  int GetMargin() const { return static_cast<int>(layout().GetMargin()); }
  void SetMargin(int margin);
  /// Whether the tabs point down, because their windows lie above.
  void SetAtBottom(bool at_bottom);

  /// The first tab in sight; 0 while there is room for all.
  int GetFirstVisible() const { return layout().GetFirst(); }
  /// Scrolls just as far that the tab is in sight, whole if there is room.
  void ScrollToTab(int index);
  /// Scrolls by so many tabs, as far as there are more. False if it is at the end.
  bool ScrollBy(int tabs);

  /// Where a tab lies, in client coordinates: what is in sight of it, empty if nothing is.
  CRect GetTabRect(int index) const { return layout().GetRect(index); }
  /// The index of the tab at a point, or a `Part`.
  int HitTest(const CPoint& point) const;
  /// Where a button lies; empty while there is room for all tabs.
  CRect GetButtonRect(Part button) const;

  bool IsTabStop() const override { return true; }

 protected:
  int MeasureTab(const Tab& tab) const override;
  void OnTabsShift(int index, int by) override;
  void OnPaint(CDC& dc) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

  /// The left button is pressed: a tab becomes the active one, and the mouse is captured until it
  /// is let go. `keys` is a sum of `MouseKey` bits.
  virtual void OnLButtonDown(UINT keys, CPoint point);
  virtual void OnMouseMove(UINT /*keys*/, CPoint /*point*/) {}
  virtual void OnLButtonUp(UINT keys, CPoint point);
  /// The press is over, in whatever way.
  virtual void OnPressEnds();
  /// The tab on which the button is held down, or -1.
  int GetPressedTab() const { return pressed_ >= 0 ? pressed_ : -1; }

 private:
  void FillRoom();
  bool OnKey(WPARAM key);
  void PaintTab(CDC& dc, int index, const CRect& rect) const;
  void PaintButton(CDC& dc, Part button) const;

  bool at_bottom_ = false;
  /// What is held down: a tab or a `Part`.
  int pressed_ = kNothing;
  detail::WheelTurns wheel_;
};

}  // namespace dq
