#include "dqlib/framework/windows/document.h"

#include <algorithm>

#include "dqlib/framework/windows/mdi_frame.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/paths.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDocument, CCmdTarget)

/// A walk through the views. Those that go meanwhile are null in it.
struct CDocument::Update {
  CDocument& document;
  std::vector<CView*> views;
  bool document_gone = false;

  explicit Update(CDocument& of) : document(of), views(of.m_views) {
    document.m_updates.push_back(this);
  }
  Update(const Update&) = delete;
  Update& operator=(const Update&) = delete;
  ~Update() {
    if (!document_gone) document.m_updates.pop_back();
  }
};

CDocument::CDocument() = default;

CDocument::~CDocument() {
  for (Update* const update : m_updates) update->document_gone = true;
  for (CView* const view : m_views) view->m_pDocument = nullptr;
}

void CDocument::AddView(CView* view) {
  if (view == nullptr || view->m_pDocument == this) return;
  if (view->m_pDocument != nullptr) view->m_pDocument->RemoveView(view);
  m_views.push_back(view);
  view->m_pDocument = this;
  OnChangedViewList();
}

void CDocument::RemoveView(CView* view) {
  if (view == nullptr || view->m_pDocument != this) return;
  std::erase(m_views, view);
  view->m_pDocument = nullptr;
  for (Update* const update : m_updates) {
    std::ranges::replace(update->views, view, static_cast<CView*>(nullptr));
  }
  OnChangedViewList();
}

bool CDocument::HasViewOutside(const CFrameWnd& frame) const {
  return std::ranges::any_of(m_views,
                             [&](const CView* view) { return view->GetParentFrame() != &frame; });
}

void CDocument::UpdateAllViews(CView* sender, LPARAM hint, CObject* object) {
  Update update(*this);
  for (std::size_t at = 0; !update.document_gone && at < update.views.size(); ++at) {
    CView* const view = update.views[at];
    if (view != nullptr && view != sender) view->OnUpdate(sender, hint, object);
  }
}

void CDocument::SetTitle(const char* title) {
  m_strTitle = title;
  UpdateFrameCounts();
}

void CDocument::SetPathName(const char* path, bool) {
  m_strPathName = path;
  const std::string_view whole = m_strPathName.View();
  const std::size_t separator = platform::FindLastSeparator(whole);
  const bool has_folder = separator != std::string_view::npos;
  SetTitle(std::string(whole.substr(has_folder ? separator + 1 : 0)).c_str());
}

bool CDocument::CanCloseFrame(CFrameWnd* frame) {
  if (frame != nullptr && HasViewOutside(*frame)) return true;
  return SaveModified() != 0;
}

void CDocument::OnCloseDocument() {
  const bool deletes_itself = m_bAutoDelete;
  m_bAutoDelete = false;
  Update alive(*this);
  while (!m_views.empty()) {
    CView* const view = m_views.front();
    CFrameWnd* const frame = view->GetParentFrame();
    const HWND handle = frame == nullptr ? nullptr : frame->GetSafeHwnd();
    if (frame != nullptr) PreCloseFrame(frame);
    if (alive.document_gone) return;
    if (handle != nullptr && CWnd::FromHandle(handle) == frame) frame->DestroyWindow();
    if (alive.document_gone) return;
    // One that has no frame, or outlives it, is left to whoever made it.
    if (!m_views.empty() && m_views.front() == view) RemoveView(view);
  }
  DeleteContents();
  if (alive.document_gone) return;
  m_bAutoDelete = deletes_itself;
  if (deletes_itself) delete this;
}

void CDocument::OnChangedViewList() {
  if (m_views.empty() && m_bAutoDelete) {
    OnCloseDocument();
  } else {
    UpdateFrameCounts();
  }
}

std::vector<CFrameWnd*> CDocument::Frames() const {
  std::vector<CFrameWnd*> frames;
  for (const CView* const view : m_views) {
    CFrameWnd* const frame = view->GetParentFrame();
    const bool is_new = std::ranges::find(frames, frame) == frames.end();
    if (frame != nullptr && frame->GetSafeHwnd() != nullptr && is_new) frames.push_back(frame);
  }
  return frames;
}

void CDocument::UpdateFrameCounts() {
  const std::vector<CFrameWnd*> frames = Frames();
  int number = 0;
  for (CFrameWnd* const frame : frames) {
    ++number;
    const detail::Watched watched(*frame);
    if (CMDIChildWnd* const child = DYNAMIC_DOWNCAST(CMDIChildWnd, frame)) {
      child->SetWindowNumber(frames.size() > 1 ? number : 0);
    }
    if (frame->GetActiveDocument() == this) frame->OnUpdateFrameTitle(true);
    // What follows may be gone with it.
    if (!watched.IsThere()) return;
  }
}

}  // namespace dq
