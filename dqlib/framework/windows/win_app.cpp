#include "dqlib/framework/windows/win_app.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "dqlib/framework/base/little_endian.h"
#include "dqlib/framework/base/registry_key.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/doc_manager.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/recent_files.h"
#include "dqlib/framework/windows/settings_failure.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

using detail::OrEmpty;

std::atomic<CWinApp*> g_app = nullptr;

platform::Registry& Registry() { return *platform::Current().registry; }

platform::ProfileFiles& Profiles() { return *platform::Current().profile_files; }

/// A value of the current user's registry, if it is there, can be read and is of that type.
std::optional<std::string> ReadValue(const CString& path, const char* entry, DWORD type) {
  const RegistryKey key(Registry().OpenKey(kCurrentUser, path.View()));
  platform::Result<platform::RegistryValue> value = key.error();
  if (key.ok()) value = ReadRegistryValue(key.get(), OrEmpty(entry));
  NoteSettingsReading(SettingsStore::kUser, value.error);
  if (!value.ok() || value.value.type != type) return std::nullopt;
  return std::move(value.value.data);
}

/// A value of the profile file, if it is there and can be read.
std::optional<std::string> ReadProfile(const CString& file, const char* section,
                                       const char* entry) {
  auto text = Profiles().Read(file.View(), OrEmpty(section), OrEmpty(entry));
  NoteSettingsReading(SettingsStore::kUser,
                      text ? platform::Error{} : Profiles().CheckReadable(file.View()));
  return text;
}

BOOL WriteValue(const CString& path, const char* entry, DWORD type, std::string_view data) {
  const RegistryKey key(Registry().CreateKey(kCurrentUser, path.View()));
  return key.ok() && Registry().SetValue(key.get(), OrEmpty(entry), type, data).ok();
}

/// What isn't there needn't be deleted.
BOOL WasDeleted(const platform::Error& error) {
  return error.ok() || error.kind == platform::ErrorKind::kNotFound;
}

/// Bytes as a profile file keeps them: two letters each, the lower half first.
std::string EncodeBytes(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char byte : bytes) {
    text += static_cast<char>('A' + (byte & 0xF));
    text += static_cast<char>('A' + (byte >> 4 & 0xF));
  }
  return text;
}

std::optional<std::string> DecodeBytes(std::string_view text) {
  std::string bytes;
  if (text.size() % 2 != 0) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int low = text[i] - 'A';
    const int high = text[i + 1] - 'A';
    if (low < 0 || low > 15 || high < 0 || high > 15) return std::nullopt;
    bytes += static_cast<char>(high << 4 | low);
  }
  return bytes;
}

}  // namespace

IMPLEMENT_DYNAMIC(CWinApp, CWinThread)

CWinApp::CWinApp(const char* name)
    : executable_path_(platform::Current().modules->FileName(nullptr)) {
  app_name_ =
      name == nullptr ? platform::SplitPath(executable_path_.View()).name : std::string(name);
  AfxSetThread(this);
  g_app = this;
}

CWinApp::~CWinApp() {
  CWinApp* self = this;
  g_app.compare_exchange_strong(self, nullptr);
}

// ---- Documents

void CWinApp::AddDocTemplate(CDocTemplate* document_template) {
  if (m_pDocManager == nullptr) m_pDocManager = std::make_unique<CDocManager>();
  m_pDocManager->AddDocTemplate(document_template);
}

CDocument* CWinApp::OpenDocumentFile(const char* name) {
  return m_pDocManager == nullptr ? nullptr : m_pDocManager->OpenDocumentFile(name);
}

BOOL CWinApp::SaveAllModified() {
  return m_pDocManager == nullptr ? 1 : m_pDocManager->SaveAllModified();
}

void CWinApp::CloseAllDocuments(bool end_session) {
  if (m_pDocManager != nullptr) m_pDocManager->CloseAllDocuments(end_session);
}

bool CWinApp::DoPromptFileName(CString& path, UINT title_id, DWORD flags, bool open,
                               CDocTemplate* document_template) {
  CDocManager none;
  CDocManager& manager = m_pDocManager == nullptr ? none : *m_pDocManager;
  return manager.DoPromptFileName(path, title_id, flags, open, document_template);
}

BOOL CWinApp::OnIdle(LONG count) {
  const BOOL more = CWinThread::OnIdle(count);
  if (count == 0 && m_pDocManager != nullptr) m_pDocManager->OnIdle();
  return more;
}

void CWinApp::AddToRecentFileList(const char* path) {
  if (m_pRecentFileList == nullptr) return;
  m_pRecentFileList->Add(path);
  SaveStdProfileSettings();
}

void CWinApp::LoadStdProfileSettings(int count) {
  constexpr int kMost = ID_FILE_MRU_LAST - ID_FILE_MRU_FIRST + 1;
  m_pRecentFileList.reset();
  if (count <= 0) return;
  m_pRecentFileList =
      std::make_unique<CRecentFileList>(0, "Recent File List", "File%d", std::min(count, kMost));
  m_pRecentFileList->ReadList();
}

void CWinApp::SaveStdProfileSettings() {
  // A list that can't be kept is no reason to keep the person from their work.
  if (m_pRecentFileList != nullptr) static_cast<void>(m_pRecentFileList->WriteList());
}

bool CWinApp::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CWinApp::OnAppExit>(ID_APP_EXIT),
  };
  static constexpr MessageMapEntry kOfDocuments[] = {
      CommandEntry<&CWinApp::OnFileNew>(ID_FILE_NEW),
      CommandEntry<&CWinApp::OnFileOpen>(ID_FILE_OPEN),
  };
  static constexpr MessageMapEntry kOfRecentFiles[] = {
      CommandRangeEntry<&CWinApp::OnOpenRecentFile>(ID_FILE_MRU_FIRST, ID_FILE_MRU_LAST),
      UpdateEntry<&CWinApp::OnUpdateRecentFileMenu>(ID_FILE_MRU_FIRST),
  };
  return CallEntry(kEntries, *this, key, arguments) ||
         (m_pDocManager != nullptr && CallEntry(kOfDocuments, *this, key, arguments)) ||
         (m_pRecentFileList != nullptr && CallEntry(kOfRecentFiles, *this, key, arguments)) ||
         CWinThread::CallMapped(key, arguments);
}

void CWinApp::OnFileNew() {
  if (m_pDocManager != nullptr) m_pDocManager->OnFileNew();
}

void CWinApp::OnFileOpen() {
  if (m_pDocManager != nullptr) m_pDocManager->OnFileOpen();
}

void CWinApp::OnAppExit() {
  if (m_pMainWnd != nullptr) m_pMainWnd->SendMessage(WM_CLOSE);
}

void CWinApp::OnOpenRecentFile(UINT id) {
  if (m_pRecentFileList == nullptr) return;
  const CString path = (*m_pRecentFileList)[static_cast<int>(id) - ID_FILE_MRU_FIRST];
  if (path.IsEmpty()) return;
  const auto status = platform::Current().files->Status(path.View());
  if (status.error.kind != platform::ErrorKind::kNotFound) {
    OpenDocumentFile(path);
    return;
  }
  CString text;
  AfxFormatString1(text, IDS_FILE_INVALID_PATH, path);
  AfxMessageBox(text, BOX_EXCLAMATION, IDS_FILE_INVALID_PATH);
  if (m_pRecentFileList == nullptr) return;
  m_pRecentFileList->Remove(m_pRecentFileList->Find(path));
  SaveStdProfileSettings();
}

void CWinApp::OnUpdateRecentFileMenu(CCmdUI* ui) {
  if (m_pRecentFileList != nullptr) m_pRecentFileList->UpdateMenu(ui);
}

// ---- The profile

void CWinApp::SetRegistryKey(const char* key) { registry_key_ = key; }

CString CWinApp::ProfileKey(const char* section) const {
  return "Software\\" + registry_key_ + "\\" + app_name_ + "\\" + section;
}

CString CWinApp::ProfileFile() const { return app_name_ + ".ini"; }

UINT CWinApp::GetProfileInt(const char* section, const char* entry, int fallback) {
  if (registry_key_.IsEmpty()) {
    const auto text = ReadProfile(ProfileFile(), section, entry);
    return static_cast<UINT>(text ? detail::ProfileNumber(*text) : fallback);
  }
  const auto data = ReadValue(ProfileKey(section), entry, REGISTRY_DWORD);
  if (!data || data->size() != sizeof(UINT)) return static_cast<UINT>(fallback);
  return detail::FromLittleEndian<UINT>(*data);
}

BOOL CWinApp::WriteProfileInt(const char* section, const char* entry, int value) {
  if (registry_key_.IsEmpty()) {
    CString text;
    text.Format("%d", value);
    return WriteProfileString(section, entry, text);
  }
  const auto data = detail::ToLittleEndian(static_cast<UINT>(value));
  return WriteValue(ProfileKey(section), entry, REGISTRY_DWORD, detail::AsText(data));
}

CString CWinApp::GetProfileString(const char* section, const char* entry, const char* fallback) {
  const auto text = registry_key_.IsEmpty()
                        ? ReadProfile(ProfileFile(), section, entry)
                        : ReadValue(ProfileKey(section), entry, REGISTRY_STRING);
  return text ? CString(text->c_str()) : CString(fallback);
}

BOOL CWinApp::WriteProfileString(const char* section, const char* entry, const char* value) {
  const bool named = OrEmpty(section).find_first_not_of('\\') != std::string_view::npos;
  if (entry == nullptr && !named) return 0;
  if (registry_key_.IsEmpty()) {
    using Text = std::optional<std::string_view>;
    return Profiles()
        .Write(ProfileFile().View(), OrEmpty(section), entry == nullptr ? Text() : Text(entry),
               value == nullptr ? Text() : Text(value))
        .ok();
  }
  if (entry == nullptr) {
    return WasDeleted(DeleteRegistryTree(kCurrentUser, std::string(ProfileKey(section).View())));
  }
  if (value != nullptr) {
    const std::string_view with_zero(value, std::strlen(value) + 1);
    return WriteValue(ProfileKey(section), entry, REGISTRY_STRING, with_zero);
  }
  const RegistryKey key(Registry().OpenKey(kCurrentUser, ProfileKey(section).View()));
  return WasDeleted(key.ok() ? Registry().DeleteValue(key.get(), entry) : key.error());
}

BOOL CWinApp::GetProfileBinary(const char* section, const char* entry, BYTE** data, UINT* size) {
  *data = nullptr;
  *size = 0;
  std::optional<std::string> bytes;
  if (registry_key_.IsEmpty()) {
    const auto text = ReadProfile(ProfileFile(), section, entry);
    if (text) bytes = DecodeBytes(*text);
  } else {
    bytes = ReadValue(ProfileKey(section), entry, REGISTRY_BINARY);
  }
  if (!bytes) return 0;
  auto copy = std::make_unique<BYTE[]>(bytes->size());
  std::ranges::copy(*bytes, copy.get());
  *data = copy.release();
  *size = static_cast<UINT>(bytes->size());
  return 1;
}

BOOL CWinApp::WriteProfileBinary(const char* section, const char* entry, const BYTE* data,
                                 UINT size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (registry_key_.IsEmpty()) {
    return WriteProfileString(section, entry, EncodeBytes(bytes).c_str());
  }
  return WriteValue(ProfileKey(section), entry, REGISTRY_BINARY, bytes);
}

int detail::ProfileNumber(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  UINT number = 0;
  for (; !text.empty() && text[0] >= '0' && text[0] <= '9'; text.remove_prefix(1)) {
    number = number * 10 + static_cast<UINT>(text[0] - '0');
  }
  return static_cast<int>(negative ? 0 - number : number);
}

CWinApp* AfxGetApp() { return g_app; }

const char* AfxGetAppName() {
  const CWinApp* const app = AfxGetApp();
  return app == nullptr ? "" : app->GetAppName();
}

CString AppRegistryRoot() { return detail::LoadText(IDS_REGISTRY_ROOT) + AfxGetAppName() + "\\"; }

}  // namespace dq
