#include "dqlib/toolkit/flex_mdi_child_wnd.h"

#include <algorithm>

#include "dqlib/framework/windows/registered_message.h"

namespace dq {
namespace {

/// No screen is larger, and sums stay within the range of coordinates.
constexpr long long kLargest = 0x7FFF;

LONG ToExtent(long long value) { return static_cast<LONG>(std::clamp(value, 0LL, kLargest)); }

}  // namespace

IMPLEMENT_DYNCREATE(CNSFlexMDIChildWnd, CMDIChildWnd)

UINT CNSFlexMDIChildWnd::SetMinTrackSizeMessage() {
  static const UINT number = RegisterWindowMessage("CNSFlexMDIChildWnd::SetMinTrackSize");
  return number;
}

void CNSFlexMDIChildWnd::PassMinTrackSize(const CWnd& view, const CSize& size) {
  CFrameWnd* const frame = view.GetParentFrame();
  if (frame == nullptr) return;
  frame->SendMessage(SetMinTrackSizeMessage(), static_cast<WPARAM>(size.cx), size.cy);
}

LRESULT CNSFlexMDIChildWnd::OnSetMinTrackSize(WPARAM width, LPARAM height) {
  const CSize window = GetWindowRect().Size();
  const CRect client = GetClientRect();
  m_sizeMinTrack.cx =
      ToExtent(0LL + ToExtent(static_cast<LPARAM>(width)) + window.cx - client.Width());
  m_sizeMinTrack.cy = ToExtent(0LL + ToExtent(height) + window.cy - client.Height());
  m_listFlex.SetDesignSize(client.Width(), client.Height());
  return 0;
}

BOOL CNSFlexMDIChildWnd::OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
  if (message != SetMinTrackSizeMessage() || message == 0) {
    return CMDIChildWnd::OnWndMsg(message, wparam, lparam, result);
  }
  *result = OnSetMinTrackSize(wparam, lparam);
  return 1;
}

}  // namespace dq
