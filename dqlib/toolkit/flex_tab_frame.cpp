#include "dqlib/toolkit/flex_tab_frame.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "dqlib/framework/windows/doc_manager.h"
#include "dqlib/framework/windows/doc_template.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/toolkit/cool_menu.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDQFlexTabFrame, CMDIChildWnd)

using detail::Watched;

CDQFlexTabFrame::~CDQFlexTabFrame() { EndInDestructor(); }

bool CDQFlexTabFrame::OnCreateClient(const CCreateContext* context) {
  const Watched self(*this);
  m_dropTarget.Register(this);
  if (!m_wndTab.Create(this)) return false;
  if (context == nullptr || context->m_pNewViewClass == nullptr || !self.IsThere()) {
    return self.IsThere();
  }
  CCreateContext first = *context;
  const CDocument* const document = context->m_pCurrentDoc;
  const CString title = document == nullptr ? CString() : document->GetTitle();
  m_bLabelDue = title.IsEmpty();
  // What the frame is complete with brings the view up to date.
  if (!m_wndTab.AddFlexTab(context->m_pNewViewClass, title, &first, 0, false)) return false;
  return m_wndTab.GetWindow(0) != nullptr && m_wndTab.ActivateTab(0) && self.IsThere();
}

CDQFlexTab* CDQFlexTabFrame::GetTabWnd() {
  return m_wndTab.GetSafeHwnd() == nullptr ? nullptr : &m_wndTab;
}

int CDQFlexTabFrame::GetTabCount() {
  const CDQFlexTab* const tabs = GetTabWnd();
  return tabs == nullptr ? 0 : tabs->GetTabCount();
}

void CDQFlexTabFrame::ShowTabs(bool show) {
  if (CDQFlexTab* const tabs = GetTabWnd()) tabs->ShowTabs(show);
}

bool CDQFlexTabFrame::SelectTab(int index) {
  CDQFlexTab* const tabs = GetTabWnd();
  return tabs != nullptr && tabs->ActivateTab(index);
}

bool CDQFlexTabFrame::ShowNextTab(bool forward) {
  const int count = GetTabCount();
  if (count == 0) return false;
  const int next = (GetTabWnd()->GetActiveTab() + (forward ? 1 : -1)) % count;
  return SelectTab(next < 0 ? count - 1 : next);
}

// ---- Documents

void CDQFlexTabFrame::GetDocuments(CTypedPtrArray<CObArray, CDocument*>& documents,
                                   bool include_own) {
  const CWinApp* const app = AfxGetApp();
  const CDocManager* const manager = app == nullptr ? nullptr : app->m_pDocManager.get();
  if (manager == nullptr) return;
  const CDocument* const own = GetActiveDocument();
  const auto lies_here = [this](const CView* view) { return IsChild(view); };
  for (const auto& kind : manager->GetTemplates()) {
    for (CDocument* const document : kind->GetDocuments()) {
      if (document == own && !include_own) continue;
      if (std::ranges::any_of(document->GetViews(), lies_here)) documents.Add(document);
    }
  }
}

bool CDQFlexTabFrame::ContainsModifiedDocs() {
  CTypedPtrArray<CObArray, CDocument*> documents;
  GetDocuments(documents, true);
  for (int at = 0; at < documents.GetSize(); ++at) {
    if (documents[at]->IsModified() != 0) return true;
  }
  return false;
}

void CDQFlexTabFrame::OnClose() {
  const Watched self(*this);
  const detail::Closing closing;
  CTypedPtrArray<CObArray, CDocument*> documents;
  GetDocuments(documents, false);
  std::vector<detail::WatchedObject<CDocument>> asked;
  for (int at = 0; at < documents.GetSize(); ++at) asked.emplace_back(documents[at]);
  for (const auto& document : asked) {
    if (document && document->SaveModified() == 0) return;
    if (!self.IsThere()) return;
  }
  CMDIChildWnd::OnClose();
}

// ---- Commands

BOOL CDQFlexTabFrame::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  const Watched self(*this);
  CDQFlexTab* const tabs = GetTabWnd();
  if (tabs != nullptr && tabs->OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  return self.IsThere() ? CMDIChildWnd::OnCmdMsg(id, code, extra, handler_info) : 0;
}

bool CDQFlexTabFrame::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      MessageEntry<&CDQFlexTabFrame::OnMenuChar>(WM_MENUCHAR),
  };
  return CallEntry(kEntries, *this, key, arguments) || CMDIChildWnd::CallMapped(key, arguments);
}

LRESULT CDQFlexTabFrame::OnMenuChar(WPARAM key, LPARAM menu) {
  CMenu* const open = CMenu::FromHandle(reinterpret_cast<HMENU>(menu));
  const LRESULT answer = CDQCoolMenu::OnMenuChar(LoWord(key), HiWord(key), open);
  return answer != 0 ? answer : DefWindowProc(WM_MENUCHAR, key, menu);
}

void CDQFlexTabFrame::OnUpdateFrameTitle(bool add_document) {
  const CDocument* const document = GetActiveDocument();
  if (m_bLabelDue && document != nullptr && !document->GetTitle().IsEmpty()) {
    m_bLabelDue = false;
    if (m_wndTab.GetLabel(0).IsEmpty()) m_wndTab.SetLabel(0, document->GetTitle());
  }
  CMDIChildWnd::OnUpdateFrameTitle(add_document);
}

}  // namespace dq
