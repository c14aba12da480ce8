// The strip of tabs by which a person chooses one of several windows.

#pragma once

#include <vector>

#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

class CDC;

/// What every strip knows of its tabs. Indexes count from 0; for a tab that isn't there operations
/// do nothing and answer false, 0, null or "". The observer is told of tabs as of rows.
class SECTabControlBase : public CWnd {
  DECLARE_DYNAMIC(SECTabControlBase)
  enum Notification : int {
    /// A person has turned to a tab, which is the active one now; it may have been before.
    kTabActivated = 1,
  };

  SECTabControlBase() = default;
  ~SECTabControlBase() override;

  int GetTabCount() const { return static_cast<int>(tabs_.size()); }
  bool HasTab(int index) const { return index >= 0 && index < GetTabCount(); }

  /// Adds a tab before another one, or behind all; false for any other index. `window` is the one
  /// that it stands for, or null. No handler is called. A null label counts as "".
  bool InsertTab(int index, const char* label, HWND window = nullptr);
  /// Takes a tab out; its window stays. Where it was the active one, none is. No handler is called.
  bool RemoveTab(int index);

  /// The tab's label, shown as it stands, cut where it is too wide.
  CString GetTabLabel(int index) const;
  bool SetTabLabel(int index, const char* label);
  /// The number of its icon, 0 for none. The icon is found by the chain of resource modules and
  /// shown 16 by 16 pixels large; a number without one shows nothing.
  UINT GetTabIcon(int index) const;
  bool SetTabIcon(int index, UINT icon);
  /// The window it stands for; null if that has ended.
  CWnd* GetTabWindow(int index) const;
  HWND GetTabHandle(int index) const;
  /// Anything of the program's, which must outlive the tab; null at first.
  const void* GetTabExtra(int index) const;
  bool SetTabExtra(int index, const void* extra);
  /// The tab of a window, or -1; null is no window.
  int FindTab(HWND window) const;
  /// All of it. False, and nothing changed, if there is no such tab.
  bool GetTabInfo(int index, CString& label, bool& selected, CWnd*& window,
                  const void*& extra) const;

  /// The active tab, or -1.
  int GetActiveTab() const { return active_; }
  /// Makes a tab the active one, or none with -1. It gets the mark of the selected tab, which the
  /// former one loses.
  bool ActivateTab(int index);
  /// Whether a tab is drawn as the selected one, in front of the others.
  bool IsTabSelected(int index) const;
  void SetTabSelected(int index, bool selected);

  /// Turns to a tab as a person does, and notifies the parent.
  void Choose(int index);

 protected:
  struct Tab {
    CString label;
    UINT icon_id = 0;
    HICON icon = nullptr;
    HWND window = nullptr;
    const void* extra = nullptr;
    bool selected = false;
    /// How wide it is, in pixels.
    int width = 0;
  };

  const Tab& TabAt(int index) const { return tabs_[static_cast<std::size_t>(index)]; }
  const std::vector<Tab>& tabs() const { return tabs_; }
  /// Right after a tab has come in at an index (`by` 1), or gone from there (-1): indexes that the
  /// class holds follow. It mustn't call handlers.
  virtual void OnTabsShift(int index, int by);
  /// How wide a tab is to be. Asked when its label, its icon or the font changes.
  virtual int MeasureTab(const Tab& tab) const = 0;
  /// Has all tabs measured anew.
  void MeasureTabs();
  /// The widths of all tabs together.
  long long GetTotalWidth() const { return total_width_; }
  /// Tells the observer, and has the strip drawn anew.
  void Tell(WindowChange change, const ChangedRange& range = {});

 private:
  Tab* Find(int index);
  void Measure(Tab& tab);

  std::vector<Tab> tabs_;
  int active_ = -1;
  long long total_width_ = 0;
};

/// A strip that is drawn in relief, its tabs side by side, above the windows or below them. Where
/// there isn't room for all, two buttons at its end scroll it, and so does the wheel. With the
/// focus the arrow keys, Home and End go from tab to tab.
class SEC3DTabControl : public SECTabControlBase {
  DECLARE_DYNAMIC(SEC3DTabControl)
  /// What lies at a point, where it is no tab.
  enum Part : int { kNothing = -1, kScrollBack = -2, kScrollOn = -3 };

  SEC3DTabControl() = default;
  ~SEC3DTabControl() override;

  /// False if it is made already, or can't be.
  bool Create(CWnd* parent, int id);

  /// How high the strip wants to be, in pixels, for its font.
  int GetIdealHeight() const;
  /// Pixels before the first tab, from 0; at first `kUsualMargin`.
  static constexpr int kUsualMargin = 2;
  int GetMargin() const { return margin_; }
  void SetMargin(int margin);
  /// Whether the tabs point down, because their windows lie above.
  void SetAtBottom(bool at_bottom);

  /// The first tab in sight; 0 while there is room for all.
  int GetFirstVisible() const { return first_; }
  /// Scrolls just as far that the tab is in sight, whole if there is room.
  void ScrollToTab(int index);
  /// Scrolls by so many tabs, as far as there are more. False if it is at the end.
  bool ScrollBy(int tabs);

  /// Where a tab lies, in client coordinates: what is in sight of it, empty if nothing is.
  CRect GetTabRect(int index) const;
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
  CRect TabsRect() const;
  bool Overflows() const;
  int LastFirst() const;
  void ClampFirst();
  void SetFirst(int first);
  bool OnKey(WPARAM key);
  bool OnWheel(int turned);
  void PaintTab(CDC& dc, int index, const CRect& rect) const;
  void PaintButton(CDC& dc, Part button, bool enabled) const;

  int first_ = 0;
  int margin_ = kUsualMargin;
  bool at_bottom_ = false;
  /// What is held down: a tab or a `Part`.
  int pressed_ = kNothing;
  /// How far the wheel was turned beyond whole notches.
  int turned_ = 0;
};

namespace detail {

/// Where an index is once a row has come in at `at` (`by` 1) or gone from there (-1); -1 if its own
/// row has gone.
constexpr int ShiftedIndex(int index, int at, int by) {
  if (index < at) return index;
  return by < 0 && index == at ? -1 : index + by;
}

}  // namespace detail
}  // namespace dq
