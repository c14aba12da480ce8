// Where tabs that a person drags can be dropped.

#pragma once

#include "dqlib/framework/windows/drag_drop.h"

namespace dq {

class CDocument;
class CDQFlexTab;
class CDQFlexTabFrame;

enum TabMessage : UINT {
  /// To a window that isn't a `CDQFlexTabFrame` but takes tabs: one has been dropped on it. The
  /// arguments are the tab's extra data and its document, either may be null; 1 is the answer if it
  /// has taken the tab, which is gone from where it was in any case.
  WM_TAB_DROPPED = 0x3D09,
};

/// Takes tabs of other frames than its window's own. A frame with tabs has one already; any other
/// window may register one.
class CDQFlexTabDropTarget : public COleDropTarget {
 public:
  /// The number of the format in which tabs are dragged.
  static UINT GetClipboardFormat();

  /// Whether tabs are taken; they are at first.
  void AcceptDropData(bool accept) { m_bAcceptDropData = accept; }
  /// Whether the data are a tab that a window can take: one that is there, in another frame than
  /// the window or the one around it. Null for either argument is no tab, and no window.
  virtual bool AcceptData(COleDataObject* data, CWnd* window);
  /// Moves the tab of the data to the window. For a `CDQFlexTabFrame`, or a window in one, it
  /// becomes a new tab there, whose window is made anew by its class for the same document, with
  /// the label and the icon that it had; any other window gets `WM_TAB_DROPPED`. False if there is
  /// no such tab, it is the frame's own, or the window didn't take it. A document that is left
  /// without a window then stays open.
  virtual bool DropTab(CWnd* window, COleDataObject* data, DWORD effect, CPoint point);
  /// Takes a tab out of a tab window and ends its window, while its document, which may be null,
  /// outlives that. Behind it the last tab becomes active; the frame, if it isn't null, ends with
  /// its last tab. False, and no change, if there is no such tab.
  bool RemoveTab(int index, CDQFlexTabFrame* frame, CDQFlexTab* tabs, CWnd* view,
                 CDocument* document);

  UINT OnDragOver(CWnd* window, COleDataObject* data, UINT keys, CPoint point) override;
  BOOL OnDrop(CWnd* window, COleDataObject* data, UINT effect, CPoint point) override;

 protected:
  bool m_bAcceptDropData = true;
};

}  // namespace dq
