#include "dqlib/framework/windows/doc_manager.h"

#include <algorithm>

#include "dqlib/framework/base/registry_key.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/seam_texts.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

using WatchedTemplate = detail::WatchedObject<CDocTemplate>;

namespace {

using Templates = std::vector<std::unique_ptr<CDocTemplate>>;

/// Handlers may remove templates.
std::vector<WatchedTemplate> Watch(const Templates& templates) {
  std::vector<WatchedTemplate> watched;
  watched.reserve(templates.size());
  for (const auto& each : templates) watched.emplace_back(each.get());
  return watched;
}

CString DocString(const CDocTemplate& from, CDocTemplate::DocStringIndex index) {
  CString text;
  from.GetDocString(text, index);
  return text;
}

/// What the choice of files shows for a kind of documents: "SQL Files (*.sql)|*.sql|".
CString FilterOf(const CDocTemplate& from) {
  const CString name = DocString(from, CDocTemplate::filterName);
  std::string patterns;
  for (const std::string& extension : from.GetExtensions()) {
    if (!patterns.empty()) patterns += ';';
    patterns += '*' + extension;
  }
  return name.IsEmpty() || patterns.empty() ? CString() : name + "|" + patterns + "|";
}

/// Asks what kind of document to make.
class NewDocumentDialog : public CDialog {
 public:
  explicit NewDocumentDialog(const std::vector<CString>& names) {
    constexpr int kWidth = 320;
    constexpr int kHeight = 180;
    DialogTemplate pattern;
    pattern.caption = detail::LoadText(IDS_NEW_DOCUMENT).View();
    pattern.size = {kWidth, kHeight};
    pattern.controls = {
        {"Static", -1, Text(IDS_DOCUMENT_KIND), {8, 8, 220, 22}, "text", {}, {}},
        {"ListBox", kList, "", {8, 24, 220, 172}, "list", {}, {}},
        {"Button", IDOK, Text(IDS_BUTTON_OK), {236, 8, 312, 32}, "defbutton", {}, {}},
        {"Button", IDCANCEL, Text(IDS_BUTTON_CANCEL), {236, 38, 312, 62}, "button", {}, {}},
    };
    for (const CString& name : names) pattern.controls[1].items.emplace_back(name.View());
    InitModalIndirect(std::move(pattern));
  }

  /// The name that is chosen; no value if none is.
  const std::string& chosen() const { return chosen_; }

 protected:
  BOOL OnInitDialog() override {
    const platform::DialogControl list = List();
    if (!list.items.empty()) GetDlgItem(kList)->Enter(list.items.front());
    return CDialog::OnInitDialog();
  }

  void OnOK() override {
    chosen_ = List().value;
    if (!chosen_.empty()) CDialog::OnOK();
  }

  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    static constexpr MessageMapEntry kEntries[] = {
        ControlEntry<&NewDocumentDialog::OnOK>(LBN_DBLCLK, kList),
    };
    return CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
  }

 private:
  static constexpr int kList = 100;

  static std::string Text(UINT id) { return std::string(detail::LoadText(id).View()); }

  platform::DialogControl List() const {
    platform::DialogControl list;
    GetDlgItem(kList)->Describe(list);
    return list;
  }

  std::string chosen_;
};

}  // namespace

IMPLEMENT_DYNAMIC(CDocManager, CObject)

CDocManager::CDocManager() = default;
CDocManager::~CDocManager() = default;

void CDocManager::AddDocTemplate(CDocTemplate* document_template) {
  const auto is_it = [&](const auto& each) { return each.get() == document_template; };
  if (document_template == nullptr || std::ranges::any_of(m_templates, is_it)) return;
  m_templates.emplace_back(document_template);
}

CString CDocManager::CanonicalPath(const char* path) {
  CString given(path);
  if (given.IsEmpty()) return given;
  const auto full = platform::Current().files->FullPath(given.View());
  return full.ok() ? CString(full.value) : given;
}

CDocument* CDocManager::OpenDocumentFile(const char* name) {
  std::string_view unquoted = detail::OrEmpty(name);
  if (unquoted.starts_with('"')) {
    unquoted.remove_prefix(1);
    unquoted = unquoted.substr(0, unquoted.rfind('"'));
  }
  const CString path = CanonicalPath(CString(unquoted));
  CDocument* open_document = nullptr;
  CDocTemplate* best = nullptr;
  CDocTemplate::Confidence best_match = CDocTemplate::noAttempt;
  for (const auto& each : m_templates) {
    const CDocTemplate::Confidence match = each->MatchDocType(path, open_document);
    if (match > best_match) {
      best_match = match;
      best = each.get();
    }
    if (match == CDocTemplate::yesAlreadyOpen) break;
  }
  if (open_document != nullptr) {
    const detail::WatchedObject<CDocument> document(open_document);
    ActivateDocument(*open_document);
    return document.get();
  }
  if (best == nullptr) {
    AfxMessageBox(IDS_OPEN_FAILED);
    return nullptr;
  }
  return best->OpenDocumentFile(path);
}

void CDocManager::ActivateDocument(CDocument& document) {
  const CView* const view = document.GetFirstView();
  CFrameWnd* const frame = view == nullptr ? nullptr : view->GetParentFrame();
  if (frame == nullptr) return;
  const detail::Watched shown(*frame);
  frame->ActivateFrame();
  if (!shown.IsThere()) return;
  CWnd* const top = frame->GetTopLevelParent();
  CFrameWnd* const main = DYNAMIC_DOWNCAST(CFrameWnd, top);
  if (main != nullptr && main != frame) main->ActivateFrame();
}

// ---- What the person chooses

CDocTemplate* CDocManager::ChooseForNew() {
  if (m_templates.empty()) AfxMessageBox(IDS_CREATE_FAILED);
  if (m_templates.size() < 2) return m_templates.empty() ? nullptr : m_templates.front().get();
  std::vector<WatchedTemplate> offered;
  std::vector<CString> names;
  for (const auto& each : m_templates) {
    const CString name = DocString(*each, CDocTemplate::fileNewName);
    if (name.IsEmpty()) continue;
    offered.emplace_back(each.get());
    names.push_back(name);
  }
  if (offered.size() < 2) return offered.empty() ? nullptr : offered.front().get();
  NewDocumentDialog dialog(names);
  if (dialog.DoModal() != IDOK) return nullptr;
  const auto chosen = std::ranges::find(names, dialog.chosen(), &CString::View);
  return chosen == names.end() ? nullptr
                               : offered[static_cast<std::size_t>(chosen - names.begin())].get();
}

void CDocManager::OnFileNew() {
  if (CDocTemplate* const chosen = ChooseForNew()) chosen->OpenDocumentFile(nullptr);
}

void CDocManager::OnFileOpen() {
  CString path;
  constexpr DWORD kFlags = OFN_HIDEREADONLY | OFN_FILEMUSTEXIST;
  if (!DoPromptFileName(path, IDS_TITLE_OPEN, kFlags, true, nullptr)) return;
  // The application's, since a host may have one of its own.
  CWinApp* const app = AfxGetApp();
  app != nullptr ? app->OpenDocumentFile(path) : OpenDocumentFile(path);
}

bool CDocManager::DoPromptFileName(CString& path, UINT title_id, DWORD flags, bool open,
                                   CDocTemplate* document_template) {
  CString filter;
  std::string extension;
  if (document_template != nullptr) {
    filter = FilterOf(*document_template);
    const std::vector<std::string> extensions = document_template->GetExtensions();
    if (!extensions.empty()) extension = extensions.front().substr(1);
  } else {
    for (const auto& each : m_templates) filter += FilterOf(*each);
  }
  filter += detail::LoadText(IDS_ALL_FILES) + "|*.*|";
  CFileDialog dialog(open, extension.c_str(), path, flags, filter);
  dialog.SetTitle(detail::LoadText(title_id));
  if (dialog.DoModal() != IDOK) return false;
  path = dialog.GetPathName();
  return true;
}

// ---- All documents

BOOL CDocManager::SaveAllModified() {
  for (const WatchedTemplate& each : Watch(m_templates)) {
    if (each && !each->SaveAllModified()) return 0;
  }
  return 1;
}

void CDocManager::CloseAllDocuments(bool end_session) {
  for (const WatchedTemplate& each : Watch(m_templates)) {
    if (each) each->CloseAllDocuments(end_session);
  }
}

void CDocManager::OnIdle() {
  for (const WatchedTemplate& each : Watch(m_templates)) {
    if (each) each->OnIdle();
  }
}

int CDocManager::GetOpenDocumentCount() {
  int count = 0;
  for (const auto& each : m_templates) count += static_cast<int>(each->GetDocuments().size());
  return count;
}

void CDocManager::RegisterShellFileTypes(int compatibility) {
  const std::string module = platform::Current().modules->FileName(nullptr);
  const std::string program = module.find(' ') == module.npos ? module : '"' + module + '"';
  // What is refused is left out: a program works without being known to the desktop.
  const auto set = [](const std::string& key, const std::string& text) {
    static_cast<void>(SetRegistryText(kClassesRoot, key, "", text));
  };
  for (std::size_t index = 0; index < m_templates.size(); ++index) {
    const CDocTemplate& each = *m_templates[index];
    const std::string type(DocString(each, CDocTemplate::regFileTypeId).View());
    if (type.empty()) continue;
    set(type, std::string(DocString(each, CDocTemplate::regFileTypeName).View()));
    set(type + "\\DefaultIcon", module + ',' + std::to_string(index));
    set(type + "\\shell\\open\\command", program + " \"%1\"");
    if (compatibility != 0) {
      set(type + "\\shell\\print\\command", program + " /p \"%1\"");
      set(type + "\\shell\\printto\\command", program + " /pt \"%1\" \"%2\" \"%3\" \"%4\"");
    }
    for (const std::string& extension : each.GetExtensions()) {
      const RegistryKey key(platform::Current().registry->OpenKey(kClassesRoot, extension));
      const auto former = key.ok() ? ReadRegistryValue(key.get(), "") : key.error();
      if (former.error.kind != platform::ErrorKind::kNotFound) continue;
      set(extension, type);
      if (compatibility != 0) {
        static_cast<void>(SetRegistryText(kClassesRoot, extension + "\\ShellNew", "NullFile", ""));
      }
    }
  }
}

}  // namespace dq
