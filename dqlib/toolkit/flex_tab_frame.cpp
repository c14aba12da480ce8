#include "dqlib/toolkit/flex_tab_frame.h"

#include <algorithm>
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

/// Has those of `GetDocuments`, and not `but`, ask to be saved. False if one refuses, or a handler
/// has ended the frame.
bool CDQFlexTabFrame::SaveDocuments(bool include_own, const CDocument* but) {
  const Watched self(*this);
  CTypedPtrArray<CObArray, CDocument*> documents;
  GetDocuments(documents, include_own);
  std::vector<detail::WatchedObject<CDocument>> asked;
  asked.reserve(static_cast<std::size_t>(documents.GetSize()));
  for (int at = 0; at < documents.GetSize(); ++at) asked.emplace_back(documents[at]);
  for (const auto& document : asked) {
    if (document && document.get() != but && document->SaveModified() == 0) return false;
    if (!self.IsThere()) return false;
  }
  return true;
}

void CDQFlexTabFrame::OnClose() {
  const detail::Closing closing;
  if (SaveDocuments(false)) CMDIChildWnd::OnClose();
}

/// Whether the active document may take along what else lies in frames with a view of it.
bool CDQFlexTabFrame::CanCloseDocument() {
  const detail::WatchedObject<CDocument> document(GetActiveDocument());
  if (!document) return true;
  const detail::Closing closing;
  std::vector<HWND> frames;
  for (const CView* const view : document->GetViews()) {
    const CFrameWnd* const frame = view->GetParentFrame();
    if (frame != nullptr) frames.push_back(frame->GetSafeHwnd());
  }
  for (const HWND each : frames) {
    CWnd* const window = FromHandle(each);
    CDQFlexTabFrame* const frame = DYNAMIC_DOWNCAST(CDQFlexTabFrame, window);
    if (frame != nullptr && !frame->SaveDocuments(true, document.get())) return false;
  }
  return true;
}

// ---- Commands

BOOL CDQFlexTabFrame::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  const Watched self(*this);
  CDQFlexTab* const tabs = GetTabWnd();
  if (tabs != nullptr && tabs->OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self.IsThere()) return 0;
  const bool closes = id == ID_FILE_CLOSE && code == CN_COMMAND && handler_info == nullptr;
  if (closes && (!CanCloseDocument() || !self.IsThere())) return 1;
  return CMDIChildWnd::OnCmdMsg(id, code, extra, handler_info);
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
