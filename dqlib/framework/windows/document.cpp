#include "dqlib/framework/windows/document.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

#include "dqlib/framework/base/archive.h"
#include "dqlib/framework/base/error_text.h"
#include "dqlib/framework/windows/data_exchange.h"
#include "dqlib/framework/windows/doc_manager.h"
#include "dqlib/framework/windows/file_failure.h"
#include "dqlib/framework/windows/mdi_frame.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

using Self = detail::WatchedObject<CDocument>;

namespace {

platform::Files& Files() { return *platform::Current().files; }

/// A new file for a while.
struct TemporaryFile {
  platform::Result<std::string> path = Files().MakeTempFile(Files().TempDirectory(), "afx");

  TemporaryFile() = default;
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    // What can't be removed is left to the system, as all that stands there.
    if (path.ok()) static_cast<void>(Files().Delete(path.value));
  }
};

}  // namespace

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

/// While a document closes it doesn't go with its last view, but at the end, by itself. If a
/// handler's exception ends that before, it is what it was.
struct CDocument::Closed {
  const Update& alive;
  const bool deletes_itself;

  explicit Closed(const Update& of)
      : alive(of), deletes_itself(std::exchange(of.document.m_bAutoDelete, false)) {}
  Closed(const Closed&) = delete;
  Closed& operator=(const Closed&) = delete;
  ~Closed() {
    if (alive.document_gone) return;
    alive.document.m_bAutoDelete = deletes_itself;
    if (deletes_itself && alive.document.m_views.empty()) delete &alive.document;
  }
};

CDocument::CDocument() = default;

CDocument::~CDocument() {
  m_life.reset();
  for (Update* const update : m_updates) update->document_gone = true;
  for (CView* const view : m_views) view->m_pDocument = nullptr;
  if (m_pDocTemplate != nullptr) m_pDocTemplate->RemoveDocument(this);
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
  return std::ranges::any_of(m_views, [&](const CView* view) {
    const CWnd* around = view;
    while (around != nullptr && around != &frame) {
      around = around->GetParent() != nullptr ? around->GetParent() : around->GetOwner();
    }
    return around == nullptr;
  });
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

void CDocument::SetPathName(const char* path, bool add_to_recent) {
  m_strPathName = CDocManager::CanonicalPath(path);
  const CString whole = m_strPathName;
  const platform::PathParts parts = platform::SplitPath(whole.View());
  SetTitle((parts.name + parts.extension).c_str());
  CWinApp* const app = AfxGetApp();
  if (add_to_recent && app != nullptr) app->AddToRecentFileList(whole);
}

CMenu* CDocument::GetDefaultMenu() {
  return m_pDocTemplate == nullptr ? nullptr : m_pDocTemplate->GetSharedMenu();
}

const AcceleratorTable* CDocument::GetDefaultAccelerators() {
  return m_pDocTemplate == nullptr ? nullptr : m_pDocTemplate->GetAccelerators();
}

// ---- Files

BOOL CDocument::OnNewDocument() {
  const Self self(this);
  DeleteContents();
  if (!self) return 0;
  m_strPathName.Empty();
  SetModifiedFlag(0);
  return 1;
}

BOOL CDocument::OnOpenDocument(const char* name) {
  // It may be the document's own.
  const CString path(name);
  CFile file;
  CFileException refused;
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite, &refused)) {
    ReportSaveLoadException(path, &refused, false, IDS_OPEN_FAILED);
    return 0;
  }
  const Self self(this);
  DeleteContents();
  if (!self) return 0;
  const auto fail = [&](CException* failure) {
    file.Abort();
    if (self) DeleteContents();
    if (self) SetModifiedFlag(0);
    if (self) ReportSaveLoadException(path, failure, false, IDS_OPEN_FAILED);
    return 0;
  };
  try {
    const CWaitCursor wait;
    CArchive archive(&file, CArchive::load);
    if (file.GetLength() != 0) Serialize(archive);
    archive.Close();
    file.Close();
  } catch (CException& failure) {
    return fail(&failure);
  } catch (const std::exception&) {
    return fail(nullptr);
  }
  if (self) SetModifiedFlag(0);
  return self ? 1 : 0;
}

BOOL CDocument::OnSaveDocument(const char* name) {
  const CString path(name);
  const Self self(this);
  CReplacingFile file;
  const auto fail = [&](CException* failure) {
    file.Abort();
    if (self) ReportSaveLoadException(path, failure, true, IDS_SAVE_FAILED);
    return 0;
  };
  CFileException refused;
  constexpr UINT kFlags = CFile::modeCreate | CFile::modeReadWrite | CFile::shareExclusive;
  if (!file.Open(path, kFlags, &refused)) return fail(&refused);
  try {
    const CWaitCursor wait;
    CArchive archive(&file, CArchive::store);
    Serialize(archive);
    archive.Close();
    file.Close();
  } catch (CException& failure) {
    return fail(&failure);
  } catch (const std::exception&) {
    return fail(nullptr);
  }
  if (self) SetModifiedFlag(0);
  return 1;
}

void CDocument::ReportSaveLoadException(const char* path, CException* exception, bool saving,
                                        UINT default_id) {
  if (exception != nullptr && exception->IsKindOf(RUNTIME_CLASS(CUserException))) return;
  AfxMessageBox(DescribeFileFailure(path, exception, saving, default_id), BOX_EXCLAMATION,
                default_id);
}

BOOL CDocument::SaveModified() {
  if (IsModified() == 0) return 1;
  const std::uint64_t closing = detail::CurrentUi().closing;
  if (closing != 0 && m_nGivenUpIn == closing) return 1;
  CString name = m_strPathName.IsEmpty() ? m_strTitle : m_strPathName;
  if (name.IsEmpty()) name.LoadString(IDS_UNTITLED);
  CString question;
  AfxFormatString1(question, IDS_ASK_TO_SAVE, name);
  const Self self(this);
  const int answer = AfxMessageBox(question, BOX_YES_NO_CANCEL | BOX_EXCLAMATION, IDS_ASK_TO_SAVE);
  if (!self || (answer != BUTTON_YES && answer != BUTTON_NO)) return 0;
  if (answer == BUTTON_YES) return DoFileSave();
  m_nGivenUpIn = closing;
  return 1;
}

BOOL CDocument::DoFileSave() {
  if (m_strPathName.IsEmpty()) return DoSave(nullptr);
  const auto status = Files().Status(m_strPathName.View());
  const bool read_only = status.ok() && (status.value.attributes & FILE_READ_ONLY) != 0;
  return DoSave(read_only ? nullptr : static_cast<const char*>(m_strPathName));
}

/// The name of its file, or without one that of a file it could have.
CString CDocument::ProposedName() const {
  if (!m_strPathName.IsEmpty()) {
    const platform::PathParts parts = platform::SplitPath(m_strPathName.View());
    return CString(parts.name + parts.extension);
  }
  constexpr std::string_view kNotInNames = "\\/:*?\"<>|";
  std::string name(m_strTitle.View());
  std::erase_if(name, [&](char each) {
    return static_cast<unsigned char>(each) < ' ' || kNotInNames.find(each) != kNotInNames.npos;
  });
  if (m_pDocTemplate != nullptr && !name.empty()) {
    const std::vector<std::string> extensions = m_pDocTemplate->GetExtensions();
    if (!extensions.empty()) name += extensions.front();
  }
  return CString(name);
}

BOOL CDocument::DoSave(const char* path, BOOL replace) {
  const Self self(this);
  CString target = path;
  if (target.IsEmpty()) {
    target = m_strPathName.IsEmpty() ? ProposedName() : m_strPathName;
    CWinApp* const app = AfxGetApp();
    constexpr DWORD kFlags = OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_OVERWRITEPROMPT;
    const bool chosen =
        app != nullptr
            ? app->DoPromptFileName(target, IDS_TITLE_SAVE_AS, kFlags, false, m_pDocTemplate)
            : CDocManager().DoPromptFileName(target, IDS_TITLE_SAVE_AS, kFlags, false,
                                             m_pDocTemplate);
    if (!chosen || !self) return 0;
  }
  const bool is_new = Files().Status(target.View()).error.kind == platform::ErrorKind::kNotFound;
  if (!OnSaveDocument(target)) {
    // What an override has left half written would be taken for the document; most leave nothing.
    if (is_new) static_cast<void>(Files().Delete(target.View()));
    return 0;
  }
  if (replace != 0 && self) SetPathName(target);
  return 1;
}

void CDocument::OnFileClose() {
  const Self self(this);
  if (SaveModified() && self) OnCloseDocument();
}

void CDocument::OnFileSendMail() {
  const Self self(this);
  platform::MailMessage message{
      .subject = std::string(m_strTitle.View()),
      .attachments = {{std::string(m_strPathName.View()), std::string(ProposedName().View())}}};
  std::optional<TemporaryFile> temporary;
  if (m_strPathName.IsEmpty() || IsModified()) {
    const platform::Result<std::string>& path = temporary.emplace().path;
    if (!path.ok()) {
      CFileException refused(CFileException::CauseOf(path.error));
      return ReportSaveLoadException(Files().TempDirectory().c_str(), &refused, true,
                                     IDS_SAVE_FAILED);
    }
    const BOOL modified = IsModified();
    const BOOL saved = DoSave(path.value.c_str(), 0);
    if (self) SetModifiedFlag(modified);
    if (!saved || !self) return;
    message.attachments[0].path = path.value;
  }
  const auto sent = platform::Current().mail->Send(message);
  if (!sent.ok()) {
    CString text;
    AfxFormatString1(text, IDS_MAIL_NOT_SENT, detail::ErrorText(sent.error).c_str());
    AfxMessageBox(text, BOX_EXCLAMATION, IDS_MAIL_NOT_SENT);
  } else if (sent.value == platform::MailOutcome::kNoProgram) {
    AfxMessageBox(IDS_NO_MAIL_PROGRAM, BOX_EXCLAMATION);
  }
}

bool CDocument::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CDocument::OnFileClose>(ID_FILE_CLOSE),
      CommandEntry<&CDocument::OnFileSave>(ID_FILE_SAVE),
      CommandEntry<&CDocument::OnFileSaveAs>(ID_FILE_SAVE_AS),
      CommandEntry<&CDocument::OnFileSendMail>(ID_FILE_SEND_MAIL),
  };
  return CallEntry(kEntries, *this, key, arguments) || CCmdTarget::CallMapped(key, arguments);
}

BOOL CDocument::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  const Self self(this);
  if (CCmdTarget::OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self || m_pDocTemplate == nullptr) return 0;
  return m_pDocTemplate->OnCmdMsg(id, code, extra, handler_info);
}

// ---- Closing

bool CDocument::CanCloseFrame(CFrameWnd* frame) {
  if (frame != nullptr && HasViewOutside(*frame)) return true;
  return SaveModified() != 0;
}

void CDocument::OnCloseDocument() {
  Update alive(*this);
  const Closed closed(alive);
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
}

void CDocument::OnChangedViewList() {
  if (m_views.empty() && m_bAutoDelete) {
    OnCloseDocument();
  } else {
    UpdateFrameCounts();
  }
}

std::vector<HWND> CDocument::Frames() const {
  std::vector<HWND> frames;
  std::unordered_set<HWND> known;
  for (const CView* const view : m_views) {
    const CFrameWnd* const frame = view->GetParentFrame();
    const HWND handle = frame == nullptr ? nullptr : frame->GetSafeHwnd();
    if (handle != nullptr && known.insert(handle).second) frames.push_back(handle);
  }
  return frames;
}

void CDocument::UpdateFrameCounts() {
  const Self self(this);
  const std::uint64_t count = ++m_nFrameCounts;
  const std::vector<HWND> frames = Frames();
  int number = 0;
  for (const HWND each : frames) {
    ++number;
    CWnd* const window = CWnd::FromHandle(each);
    CFrameWnd* const frame = DYNAMIC_DOWNCAST(CFrameWnd, window);
    if (frame == nullptr) continue;
    if (CMDIChildWnd* const child = DYNAMIC_DOWNCAST(CMDIChildWnd, frame)) {
      child->SetWindowNumber(frames.size() > 1 ? number : 0);
    }
    if (frame->GetActiveDocument() == this) frame->OnUpdateFrameTitle(true);
    // A handler may have ended the document, or frames, and then all were numbered anew.
    if (!self || m_nFrameCounts != count) return;
  }
}

namespace detail {

KeptDocument::KeptDocument(CDocument* document) : document_(document) {
  if (document != nullptr) deletes_itself_ = std::exchange(document->m_bAutoDelete, false);
}

KeptDocument::~KeptDocument() {
  if (document_) document_->m_bAutoDelete = deletes_itself_;
}

}  // namespace detail
}  // namespace dq
