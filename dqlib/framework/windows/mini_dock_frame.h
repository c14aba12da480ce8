// The small frames in which control bars float.

#pragma once

#include "dqlib/framework/windows/frame_wnd.h"

namespace dq {

/// A top-level window with a control bar that floats, owned by the frame that the bar belongs to;
/// `CFrameWnd::FloatControlBar` makes it, and it deletes itself with its window. The bar fills it.
/// A person who closes it hides the bar. Commands and key combinations go to the owner.
class CMiniDockFrameWnd : public CFrameWnd {
  DECLARE_DYNAMIC(CMiniDockFrameWnd)
  /// For a bar that has another size if the person wants it, or hasn't.
  explicit CMiniDockFrameWnd(bool sizable) : sizable_(sizable) {}

  /// Makes the window, hidden, with its corner and a client area of the size in `place`, on the
  /// screen. It is enabled if a person can use the owner.
  bool Create(CFrameWnd& owner, const char* caption, const CRect& place);

  CFrameWnd* GetDockingFrame() const;
  /// The bar, or null.
  CControlBar* GetBar() const;

  void RecalcLayout() override;
  /// Of the route, only a view in the bar: the owner gets by messages what isn't handled here.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;
  BOOL PreTranslateMessage(MSG* message) override;
  bool IsSizable() const override { return sizable_; }

 protected:
  void OnClose() override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  friend class CFrameWnd;

  bool sizable_;
};

}  // namespace dq
