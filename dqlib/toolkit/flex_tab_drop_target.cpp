#include "dqlib/toolkit/flex_tab_drop_target.h"

#include <algorithm>

#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/platform.h"
#include "dqlib/toolkit/flex_tab.h"
#include "dqlib/toolkit/flex_tab_data.h"
#include "dqlib/toolkit/flex_tab_frame.h"

namespace dq {

using detail::Watched;
using WatchedDocument = detail::WatchedObject<CDocument>;

namespace {

CFrameWnd* FrameOf(CWnd* window) {
  CFrameWnd* const own = DYNAMIC_DOWNCAST(CFrameWnd, window);
  return own != nullptr || window == nullptr ? own : window->GetParentFrame();
}

/// The window and the tab of data that are one which `window` can be given; null if they aren't.
CDQFlexTab* FindSource(COleDataObject* data, CWnd* window, int& tab) {
  if (data == nullptr || window == nullptr || window->GetSafeHwnd() == nullptr) return nullptr;
  const auto bytes = data->GetData(CDQFlexTabDropTarget::GetClipboardFormat());
  CDQFlexTabData read;
  if (!bytes || !read.SetBytes(*bytes)) return nullptr;
  CDQFlexTab* const source = read.GetSourceWnd();
  if (source == nullptr || !source->GetTabControl().HasTab(read.GetTab())) return nullptr;
  tab = read.GetTab();
  return FrameOf(source) == FrameOf(window) ? nullptr : source;
}

}  // namespace

UINT CDQFlexTabDropTarget::GetClipboardFormat() {
  static const UINT format = platform::Current().clipboard->RegisterFormat("* DQ FlexTab Data *");
  return format;
}

bool CDQFlexTabDropTarget::AcceptData(COleDataObject* data, CWnd* window) {
  int tab = -1;
  return m_bAcceptDropData && FindSource(data, window, tab) != nullptr;
}

UINT CDQFlexTabDropTarget::OnDragOver(CWnd* window, COleDataObject* data, UINT, CPoint) {
  return AcceptData(data, window) ? DROPEFFECT_MOVE : DROPEFFECT_NONE;
}

BOOL CDQFlexTabDropTarget::OnDrop(CWnd* window, COleDataObject* data, UINT effect, CPoint point) {
  return AcceptData(data, window) && DropTab(window, data, effect, point) ? 1 : 0;
}

bool CDQFlexTabDropTarget::DropTab(CWnd* window, COleDataObject* data, DWORD, CPoint) {
  int tab = -1;
  CDQFlexTab* const source = FindSource(data, window, tab);
  if (source == nullptr) return false;
  CFrameWnd* const source_frame = FrameOf(source);
  CFrameWnd* const target_frame = FrameOf(window);
  CDQFlexTabFrame* const target = DYNAMIC_DOWNCAST(CDQFlexTabFrame, target_frame);
  CString label;
  UINT icon = 0;
  CWnd* view = nullptr;
  const CRuntimeClass* view_class = nullptr;
  CDocument* document = nullptr;
  const GUID* extra = nullptr;
  source->GetAttributesEx(tab, label, icon, view, view_class, document, extra);
  // What could not be made there stays here.
  const bool can_be_made = view_class != nullptr && view_class->m_pfnCreateObject != nullptr;
  if (target != nullptr && !(can_be_made && target->GetTabWnd() != nullptr)) return false;
  const WatchedDocument kept(document);
  const Watched taker(target != nullptr ? *target : *window);
  RemoveTab(tab, DYNAMIC_DOWNCAST(CDQFlexTabFrame, source_frame), source, view, document);
  // Handlers may have ended what the tab was to go to.
  if (!taker.IsThere() || kept.get() != document) return false;
  if (target == nullptr) {
    return window->SendMessage(WM_TAB_DROPPED, reinterpret_cast<WPARAM>(extra),
                               reinterpret_cast<LPARAM>(document)) == 1;
  }
  CCreateContext context{.m_pNewViewClass = view_class, .m_pCurrentDoc = document};
  if (target->GetTabWnd() == nullptr ||
      !target->GetTabWnd()->AddFlexTab(view_class, label, &context, icon, true)) {
    return false;
  }
  target->SelectTab(target->GetTabCount() - 1);
  if (taker.IsThere()) target->MDIActivate();
  return true;
}

bool CDQFlexTabDropTarget::RemoveTab(int index, CDQFlexTabFrame* frame, CDQFlexTab* tabs,
                                     CWnd* view, CDocument* document) {
  if (tabs == nullptr || !tabs->GetTabControl().HasTab(index)) return false;
  const HWND ending = view == nullptr ? nullptr : view->GetSafeHwnd();
  const HWND around = frame == nullptr ? nullptr : frame->GetSafeHwnd();
  const Watched source(*tabs);
  {
    const detail::KeptDocument keep(document);
    tabs->RemoveTab(index);
    if (source.IsThere()) tabs->EndTabWindow(ending);
  }
  if (!source.IsThere()) return true;
  const int left = tabs->GetTabCount();
  if (left == 1) tabs->ShowTabs(false);
  if (!source.IsThere()) return true;
  if (left > 0) {
    tabs->ActivateTab(std::max(left, index) - 1);
  } else if (around != nullptr && CWnd::FromHandle(around) == frame) {
    frame->MDIDestroy();
  }
  return true;
}

}  // namespace dq
