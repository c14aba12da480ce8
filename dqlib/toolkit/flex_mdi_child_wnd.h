// A child frame that can't be made smaller than its view was designed.

#pragma once

#include "dqlib/framework/windows/mdi_frame.h"
#include "dqlib/toolkit/flex_host.h"

namespace dq {

/// Its view tells it the least size by a registered message; until then there is none, and its own
/// controls don't stretch.
class CNSFlexMDIChildWnd : public detail::FlexHost<CMDIChildWnd> {
  DECLARE_DYNCREATE(CNSFlexMDIChildWnd)
  using FlexHost::FlexHost;

  /// Number of the message: the arguments are the view's least width and height.
  static UINT SetMinTrackSizeMessage();
  /// Sends it to the frame around a view, whatever kind it is; nothing without a frame.
  static void PassMinTrackSize(const CWnd& view, const CSize& size);

 protected:
  /// The least size becomes the view's with the frame around it, and the present client size the
  /// design size.
  LRESULT OnSetMinTrackSize(WPARAM width, LPARAM height);
  BOOL OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override;
};

}  // namespace dq
