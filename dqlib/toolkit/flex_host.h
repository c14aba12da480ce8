// What all windows have in common whose controls stretch with them.

#pragma once

#include "dqlib/framework/windows/window_messages.h"
#include "dqlib/toolkit/flex_constraint_list.h"

namespace dq::detail {

/// A kind of window (`Base`) as a host of flexible controls. The class over it calls `InitFlex` as
/// soon as the window has the size it was designed with.
template <typename Base>
class FlexHost : public Base {
 public:
  using Base::Base;

  /// See `CNSFlexConstraintList`. Best before the window is shown.
  void AddFlexConstraint(UINT id, const CNSFlexHorizontalConstraint& horizontal,
                         const CNSFlexVerticalConstraint& vertical) {
    m_listFlex.AddFlexConstraint(id, horizontal, vertical);
  }
  /// The smallest size to which a person can drag the window; 0, 0 before it is initialised.
  const CSize& GetMinTrackSize() const { return m_sizeMinTrack; }
  bool IsSizable() const override { return true; }

 protected:
  /// The window's size is the least it can be dragged to, and its client size the design size.
  void InitFlex() {
    m_sizeMinTrack = this->GetWindowRect().Size();
    const CRect client = this->GetClientRect();
    m_listFlex.SetDesignSize(client.Width(), client.Height());
  }

  /// The client size has changed; `type` is a `SizeType`. The window stretches its controls, unless
  /// it is minimised, and is drawn anew.
  virtual void OnSize(UINT type, int cx, int cy) {
    if (type == SIZE_MINIMIZED) return;
    const HWND self = this->GetSafeHwnd();
    m_listFlex.Resize(cx, cy);
    if (Base::FromHandle(self) == this) this->Invalidate();
  }

  /// Reports the least size that the window can be dragged to.
  virtual void OnGetMinMaxInfo(MINMAXINFO* info) {
    info->ptMinTrackSize = {m_sizeMinTrack.cx, m_sizeMinTrack.cy};
  }

  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    const HWND self = this->GetSafeHwnd();
    const LRESULT result = Base::DefWindowProc(message, wparam, lparam);
    if (Base::FromHandle(self) != this) return result;
    if (message == WM_SIZE) {
      const WPARAM size = static_cast<WPARAM>(lparam);
      OnSize(static_cast<UINT>(wparam), LoWord(size), HiWord(size));
    } else if (message == WM_GETMINMAXINFO && lparam != 0) {
      OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lparam));
    }
    return result;
  }

  CNSFlexConstraintList m_listFlex{this};
  CSize m_sizeMinTrack;
};

}  // namespace dq::detail
