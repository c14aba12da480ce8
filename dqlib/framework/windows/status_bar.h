// Status bars: a line of panes at the bottom of a frame.

#pragma once

#include <span>
#include <vector>

#include "dqlib/framework/windows/control_bar.h"

namespace dq {

/// Bits of a pane's style.
enum PaneStyle : UINT {
  SBPS_NORMAL = 0,
  SBPS_NOBORDERS = 0x0100,
  /// Raised: what it tells is checked.
  SBPS_POPOUT = 0x0200,
  /// Its text isn't shown.
  SBPS_DISABLED = 0x04000000,
  /// It takes the room that the others leave; of several the first.
  SBPS_STRETCH = 0x08000000,
};

/// A pane of a status bar.
struct StatusPane {
  /// 0 for one without a command.
  UINT id = 0;
  /// A sum of `PaneStyle` values.
  UINT style = SBPS_NORMAL;
  /// Of the text's room, in pixels.
  int width = 0;
  CString text;

  friend bool operator==(const StatusPane&, const StatusPane&) = default;
};

/// A status bar. Its panes are there before its window is made; each that changes is told as a row.
/// Positions count from 0; for one that isn't there operations do nothing and answer 0, false or
/// "".
class CStatusBar : public CControlBar {
  DECLARE_DYNAMIC(CStatusBar)
  CStatusBar() : CControlBar(DockSide::kBottom) {}

  /// Makes the window below `parent`.
  bool Create(CWnd* parent, int id = kStatusBarId);

  /// Replaces the panes. One with an id is as wide as the part behind "\n" of the string with that
  /// id, or as all of it without "\n", shows that text, and is disabled until its text is set or a
  /// handler has brought it up to date. One of id 0 is a quarter of the screen wide; the first of
  /// all stretches, without borders, and shows the frame's message. False, and no change, if an id
  /// has no string.
  bool SetIndicators(std::span<const UINT> ids);

  int GetItemCount() const { return static_cast<int>(panes_.size()); }
  UINT GetItemID(int position) const { return GetPane(position).id; }
  /// The position of the first pane with the id, 0 included; -1 if there is none.
  int CommandToIndex(UINT id) const;
  /// How the pane stands; an empty one if there is none.
  StatusPane GetPane(int position) const;
  CString GetPaneText(int position) const { return GetPane(position).text; }
  /// Sets the text, null counts as "", and enables the pane.
  bool SetPaneText(int position, const char* text);
  UINT GetPaneStyle(int position) const { return GetPane(position).style; }
  void SetPaneStyle(int position, UINT style);
  /// False, and no change, if there is no such pane. A width below 0 counts as 0.
  bool GetPaneInfo(int position, UINT& id, UINT& style, int& width) const;
  bool SetPaneInfo(int position, UINT id, UINT style, int width);

  /// Where the pane lies, in client coordinates, with its borders; empty if there is none. What
  /// doesn't fit is cut off on the right.
  CRect GetItemRect(int position) const;
  CSize CalcFixedLayout(const CSize& room, bool horizontal) override;
  /// Brings the panes with ids up to date by the handlers of `target` and its route, which set
  /// their texts and enable or check them. One that no handler knows stays as it is, but is
  /// disabled if handlers knew it before. Handlers may replace the panes and end the bar, and
  /// `target` if that is a window.
  void OnUpdateCmdUI(CCmdTarget& target, bool disable_if_no_handler) override;

  /// Shows the frame's message in the first pane of id 0.
  void ShowMessage(const char* text);

 private:
  class PaneUI;
  struct Pane : StatusPane {
    /// A handler has brought it up to date before.
    bool updated = false;
  };

  void SetPane(int position, const StatusPane& pane);
  void SetText(int position, const char* text);

  std::vector<Pane> panes_;
};

}  // namespace dq
