#include "dqlib/framework/windows/doc_template.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

#include "dqlib/framework/windows/mdi_frame.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/paths.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

using WatchedDocument = detail::WatchedObject<CDocument>;

namespace {

/// Handlers of one may close others.
std::vector<WatchedDocument> Watch(const std::vector<CDocument*>& documents) {
  std::vector<WatchedDocument> watched;
  watched.reserve(documents.size());
  for (CDocument* const document : documents) watched.emplace_back(document);
  return watched;
}

}  // namespace

IMPLEMENT_DYNAMIC(CDocTemplate, CCmdTarget)
IMPLEMENT_DYNAMIC(CMultiDocTemplate, CDocTemplate)

CDocTemplate::CDocTemplate(UINT resource_id, const CRuntimeClass* document_class,
                           const CRuntimeClass* frame_class, const CRuntimeClass* view_class)
    : m_nIDResource(resource_id),
      m_pDocClass(document_class),
      m_pFrameClass(frame_class),
      m_pViewClass(view_class),
      m_strDocStrings(detail::LoadText(resource_id)) {}

CDocTemplate::~CDocTemplate() {
  for (CDocument* const document : m_documents) document->m_pDocTemplate = nullptr;
}

bool CDocTemplate::GetDocString(CString& text, DocStringIndex index) const {
  std::string_view rest = m_strDocStrings.View();
  for (int part = 0; part < static_cast<int>(index); ++part) {
    const std::size_t end = rest.find('\n');
    if (end == rest.npos) {
      text.Empty();
      return false;
    }
    rest.remove_prefix(end + 1);
  }
  text = rest.substr(0, rest.find('\n'));
  return true;
}

std::vector<std::string> CDocTemplate::GetExtensions() const {
  std::vector<std::string> extensions;
  CString all;
  GetDocString(all, filterExt);
  std::string_view rest = all.View();
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    const std::size_t dot = part.find('.');
    if (dot != part.npos) {
      extensions.emplace_back(part.substr(dot, part.find_last_not_of(' ') + 1 - dot));
    }
  }
  return extensions;
}

CDocTemplate::Confidence CDocTemplate::MatchDocType(const char* path, CDocument*& open_document) {
  const CString wanted(path);
  if (wanted.IsEmpty()) return noAttempt;
  for (CDocument* const document : m_documents) {
    if (!platform::IsSamePath(document->GetPathName().View(), wanted.View())) continue;
    open_document = document;
    return yesAlreadyOpen;
  }
  const std::string extension = platform::SplitPath(wanted.View()).extension;
  const auto is_own = [&](const std::string& each) {
    return platform::EqualIgnoringCase(each, extension);
  };
  return std::ranges::any_of(GetExtensions(), is_own) ? yesAttemptNative : yesAttemptForeign;
}

CDocument* CDocTemplate::CreateNewDocument() {
  if (m_pDocClass == nullptr) return nullptr;
  std::unique_ptr<CObject> object(m_pDocClass->CreateObject());
  CDocument* const document = DYNAMIC_DOWNCAST(CDocument, object.get());
  if (document == nullptr) return nullptr;
  // It is its own from now on.
  static_cast<void>(object.release());
  document->m_bAutoDelete = true;
  AddDocument(document);
  return document;
}

CFrameWnd* CDocTemplate::CreateNewFrame(CDocument* document, CFrameWnd* other) {
  if (m_pFrameClass == nullptr) return nullptr;
  const CCreateContext context{
      .m_pNewViewClass = m_pViewClass,
      .m_pCurrentDoc = document,
      .m_pNewDocTemplate = this,
      .m_pLastView = other == nullptr ? nullptr : other->GetActiveView(),
      .m_pCurrentFrame = other,
  };
  std::unique_ptr<CObject> object(m_pFrameClass->CreateObject());
  CFrameWnd* const frame = DYNAMIC_DOWNCAST(CFrameWnd, object.get());
  if (frame == nullptr || !frame->LoadFrame(m_nIDResource, nullptr, &context)) return nullptr;
  frame->DeleteWithWindow();
  static_cast<void>(object.release());
  return frame;
}

void CDocTemplate::InitialUpdateFrame(CFrameWnd* frame, CDocument* document, bool visible) {
  frame->InitialUpdateFrame(document, visible);
}

BOOL CDocTemplate::SaveAllModified() {
  for (const WatchedDocument& document : Watch(m_documents)) {
    if (document && !document->SaveModified()) return 0;
  }
  return 1;
}

void CDocTemplate::CloseAllDocuments(bool) {
  for (const WatchedDocument& document : Watch(m_documents)) {
    if (document) document->OnCloseDocument();
  }
}

void CDocTemplate::OnIdle() {
  for (const WatchedDocument& document : Watch(m_documents)) {
    if (document) document->OnIdle();
  }
}

void CDocTemplate::AddDocument(CDocument* document) {
  if (document == nullptr || document->m_pDocTemplate == this) return;
  if (document->m_pDocTemplate != nullptr) document->m_pDocTemplate->RemoveDocument(document);
  m_documents.push_back(document);
  document->m_pDocTemplate = this;
}

void CDocTemplate::RemoveDocument(CDocument* document) {
  if (document == nullptr || document->m_pDocTemplate != this) return;
  std::erase(m_documents, document);
  document->m_pDocTemplate = nullptr;
}

// ---- Several documents

CMultiDocTemplate::CMultiDocTemplate(UINT resource_id, const CRuntimeClass* document_class,
                                     const CRuntimeClass* frame_class,
                                     const CRuntimeClass* view_class)
    : CDocTemplate(resource_id, document_class, frame_class, view_class) {
  m_menuShared.LoadMenu(resource_id);
  m_accelerators.Load(resource_id);
}

CMultiDocTemplate::~CMultiDocTemplate() {
  // Main frames may show the menu that is about to go.
  std::unordered_set<HWND> around;
  for (CDocument* const document : std::vector(GetDocuments())) {
    for (const CView* const view : document->GetViews()) {
      CFrameWnd* const frame = view->GetParentFrame();
      const CMDIChildWnd* const child = DYNAMIC_DOWNCAST(CMDIChildWnd, frame);
      const CMDIFrameWnd* const main = child == nullptr ? nullptr : child->GetMDIFrame();
      if (main != nullptr) around.insert(main->GetSafeHwnd());
    }
    CDocTemplate::RemoveDocument(document);
  }
  for (const HWND each : around) {
    CWnd* const main = CWnd::FromHandle(each);
    CMDIFrameWnd* const frame = DYNAMIC_DOWNCAST(CMDIFrameWnd, main);
    if (frame != nullptr) frame->OnUpdateFrameMenu();
  }
}

CDocument* CMultiDocTemplate::OpenDocumentFile(const char* path, bool make_visible) {
  // It may be that of a document which closes meanwhile.
  const CString file(path);
  const bool is_new = path == nullptr;
  const detail::WatchedObject<CDocTemplate> self(this);
  const WatchedDocument document(CreateNewDocument());
  if (!document) {
    AfxMessageBox(IDS_CREATE_FAILED);
    return nullptr;
  }
  const bool deletes_itself = document->m_bAutoDelete;
  HWND shown = nullptr;
  const auto discard = [&]() -> CDocument* {
    if (CWnd* const frame = CWnd::FromHandle(shown)) frame->DestroyWindow();
    if (!document) return nullptr;
    document->m_bAutoDelete = deletes_itself;
    document->OnCloseDocument();
    return nullptr;
  };
  try {
    // A view that fails doesn't take the document along.
    document->m_bAutoDelete = false;
    CFrameWnd* const frame = CreateNewFrame(document.get(), nullptr);
    if (frame == nullptr) {
      AfxMessageBox(IDS_CREATE_FAILED);
      return discard();
    }
    shown = frame->GetSafeHwnd();
    if (document) document->m_bAutoDelete = deletes_itself;
    if (is_new && self && document) SetDefaultTitle(document.get());
    const bool filled =
        document && (is_new ? document->OnNewDocument() : document->OnOpenDocument(file)) != 0;
    if (!filled) return discard();
    if (is_new && self) ++m_nUntitledCount;
    if (!is_new && document) document->SetPathName(file);
    if (document && CWnd::FromHandle(shown) == frame) {
      self ? InitialUpdateFrame(frame, document.get(), make_visible)
           : frame->InitialUpdateFrame(document.get(), make_visible);
    }
    // A frame isn't left behind for a document that has been closed.
    if (!document && CWnd::FromHandle(shown) == frame && frame->GetActiveDocument() == nullptr) {
      frame->DestroyWindow();
    }
  } catch (...) {
    discard();
    throw;
  }
  return document.get();
}

void CMultiDocTemplate::SetDefaultTitle(CDocument* document) {
  CString title;
  if (GetDocString(title, docName) && !title.IsEmpty()) {
    title += std::to_string(m_nUntitledCount + 1).c_str();
  } else {
    title.LoadString(IDS_UNTITLED);
  }
  document->SetTitle(title);
}

CMenu* CMultiDocTemplate::GetSharedMenu() {
  return m_menuShared.GetSafeHmenu() == nullptr ? nullptr : &m_menuShared;
}

const AcceleratorTable* CMultiDocTemplate::GetAccelerators() const {
  return m_accelerators.entries().empty() ? nullptr : &m_accelerators;
}

}  // namespace dq
