// The strip of a tab window whose tabs can be closed, and dragged from one frame to another.

#pragma once

#include "dqlib/framework/base/array.h"
#include "dqlib/framework/controls/tab_control.h"

namespace dq {

/// A person drags a tab by pressing it and moving out of it. What it is dropped on takes it, or
/// else it stays where it was.
class CDQFlexTabCtrl : public SEC3DTabControl {
  DECLARE_DYNAMIC(CDQFlexTabCtrl)
  CDQFlexTabCtrl() = default;
  ~CDQFlexTabCtrl() override;

  /// Tabs can be dragged, but for those that have been marked. Forbidding marks a tab, allowing
  /// takes the mark away; nothing for a tab that isn't there.
  bool IsTabDragable(int index) const;
  void SetTabDragable(int index, bool dragable);
  /// Tabs can be closed by a person, but for those that have been marked; while none is marked,
  /// none can. Frames whose tabs shall be closable mark their first one.
  bool IsTabClosable(int index) const;
  void SetTabClosable(int index, bool closable);

 protected:
  /// The marks go with their tabs.
  void OnTabsShift(int index, int by) override;
  void OnLButtonDown(UINT keys, CPoint point) override;
  void OnMouseMove(UINT keys, CPoint point) override;
  void OnPressEnds() override;

  /// Indexes of the tabs that are marked, each once, in any order.
  CUIntArray m_arrNotDragable;
  CUIntArray m_arrNotClosable;

 private:
  void DragTab(int index);

  /// A tab is held down, and has not been dragged yet.
  bool m_bDragArmed = false;
  /// The tab that is being dragged, or -1.
  int m_nDragged = -1;
};

}  // namespace dq
