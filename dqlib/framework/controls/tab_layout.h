// Where tabs lie that stand side by side.

#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <utility>
#include <vector>

#include "dqlib/framework/base/geometry.h"
#include "dqlib/platform/types.h"

namespace dq {

class CDC;
class CWnd;

namespace detail {

/// Where an index is once a row has come in at `at` (`by` 1) or gone from there (-1); -1 if its own
/// row has gone.
constexpr int ShiftedIndex(int index, int at, int by) {
  if (index < at) return index;
  return by < 0 && index == at ? -1 : index + by;
}

/// Tabs from left to right, each as high as the client area of their window. Where there isn't room
/// for all, two buttons at the end scroll them by whole tabs. Tabs are counted from 0; indexes are
/// those of tabs that are there, unless something else is said. Rectangles are in client
/// coordinates.
///
/// A tab is measured when its width is needed first; then finding one takes logarithmic time.
class TabLayout {
 public:
  /// `measure` says how wide a tab wants to be, in pixels; below 0 counts as 0. The window must
  /// outlive this object.
  TabLayout(const CWnd& window, std::function<int(int index)> measure)
      : window_(window), measure_(std::move(measure)) {}

  /// A tab comes in at an index, which may be the count, or goes. What is in sight stays there.
  void Insert(int index);
  void Erase(int index);
  void Clear();
  /// Has the tabs of another one, which loses them, and measures them anew.
  void TakeOver(TabLayout& other);
  /// A tab, or all, may be as wide as before no longer.
  void Forget(int index);
  void ForgetAll();

  /// Pixels before the first tab, from 0.
  LONG GetMargin() const { return margin_; }
  void SetMargin(LONG margin) { margin_ = margin; }

  bool Overflows() const;
  /// What the margin and the buttons leave for tabs.
  CRect GetRoom() const;
  /// A tab that isn't before the first one in sight; what lies far off the room counts as nearer.
  CRect GetPlace(int index) const;
  /// What of a tab is in sight; empty if nothing is, or there is no such tab.
  CRect GetRect(int index) const;
  /// The tab at a point, or -1.
  int HitTest(const CPoint& point) const;

  /// The button to the tabs before, or behind, those in sight; empty while there is room for all.
  CRect GetButton(bool forward) const;
  /// Draws the arrow head in it: grey if it can't scroll.
  void DrawArrow(CDC& dc, bool forward) const;

  /// The first tab in sight.
  int GetFirst() const { return first_; }
  bool CanScroll(bool forward) const { return forward ? first_ < LastFirst() : first_ > 0; }
  // Each of these says whether other tabs are in sight than before.
  /// By so many tabs, as far as there are more.
  bool ScrollBy(int tabs);
  /// Back, where room is left behind the last one.
  bool FillRoom() { return SetFirst(std::min(first_, LastFirst())); }
  /// Just as far that the tab is in sight, whole if there is room.
  bool ScrollTo(int index);

 private:
  int GetCount() const { return static_cast<int>(widths_.size()); }
  std::int64_t EndOf(int index) const;
  std::int64_t StartOf(int index) const { return index <= 0 ? 0 : EndOf(index - 1); }
  int FirstFrom(std::int64_t start) const;
  int LastFirst() const;
  bool SetFirst(int first) { return std::exchange(first_, first) != first; }
  void ForgetEnds(int from) const;

  const CWnd& window_;
  std::function<int(int index)> measure_;
  LONG margin_ = 0;
  int first_ = 0;
  /// -1 for a tab that isn't measured.
  mutable std::deque<int> widths_;
  /// Where tabs would end if the first one began at 0: of the first ones, as far as it was needed.
  mutable std::vector<std::int64_t> ends_;
};

}  // namespace detail
}  // namespace dq
