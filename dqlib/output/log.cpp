#include "dqlib/output/log.h"

#include <cstring>
#include <mutex>

#include "dqlib/core/system_info.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

constexpr DWORD kDefaultKilobytes = 1000;
constexpr DWORD kBytesInKilobyte = 1024;

/// Lets one warning stand at a time in the process.
std::mutex& WarningMutex() {
  static std::mutex& mutex = *new std::mutex;
  return mutex;
}

CString LoadText(UINT id) {
  CString text;
  text.LoadString(id);
  return text;
}

/// The thread of one warning: `parameter` is a flag of its own hold on the log's storage.
UINT Warn(void* parameter) {
  const std::unique_ptr<std::shared_ptr<std::atomic<bool>>> warn(
      static_cast<std::shared_ptr<std::atomic<bool>>*>(parameter));
  const std::lock_guard lock(WarningMutex());
  **warn = false;
  const int answer = AfxMessageBoxWithCaption(LoadText(IDS_LOG_TOO_LONG),
                                              LoadText(IDS_LOG_WARNING_CAPTION), BOX_OK_CANCEL);
  if (answer == BUTTON_OK) **warn = true;
  return 0;
}

}  // namespace

IMPLEMENT_SERIAL(CDQLog, CObject, 1)

CDQLog::CDQLog() : m_pWarn(std::make_shared<std::atomic<bool>>(false)) {}

CDQLog::CDQLog(const CString& name, DWORD maxKilobytes, bool warn)
    : m_strLogFileName(name),
      m_nMaxFileSize(maxKilobytes),
      m_pWarn(std::make_shared<std::atomic<bool>>(warn)) {
  Initialize();
}

CDQLog::~CDQLog() {
  if (m_pFile != nullptr) m_pFile->Abort();
}

void CDQLog::Serialize(CArchive& archive) { CObject::Serialize(archive); }

void CDQLog::Initialize() {
  if (m_nMaxFileSize == 0) m_nMaxFileSize = kDefaultKilobytes;
  m_nMaxFileSize *= kBytesInKilobyte;
  if (!m_bUseLog || m_strLogFileName.IsEmpty()) return;
  auto file = std::make_unique<CFile>();
  constexpr UINT kFlags = CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite |
                          CFile::shareDenyNone | CFile::modeAppend;
  if (!file->Open(m_strLogFileName, kFlags)) {
    AfxMessageBoxWithCaption(LoadText(IDS_LOG_OPEN_FAILED), LoadText(IDS_LOG_CAPTION), BOX_OK);
    return;
  }
  m_pFile = std::move(file);
}

void CDQLog::LogMessage(UINT stringId) { LogMessage(LoadText(stringId)); }

void CDQLog::LogMessage(UINT stringId, const char* arg) {
  CString text;
  AfxFormatString1(text, stringId, arg);
  LogMessage(text);
}

void CDQLog::LogMessage(UINT stringId, const char* arg1, const char* arg2) {
  CString text;
  AfxFormatString2(text, stringId, arg1, arg2);
  LogMessage(text);
}

void CDQLog::LogMessage(const CString& text) {
  if (!m_bUseLog || m_pFile == nullptr || text.IsEmpty()) return;
  // One write, so that the lines of several processes don't mix.
  const CString line = CDQSystemInfo::GetCurrentDateTime(DATE_SHORT) + "  " + text + "\r\n";
  m_pFile->Write(static_cast<const char*>(line), static_cast<UINT>(line.GetLength()));
  DisplayWarningMessage();
}

void CDQLog::DisplayWarningMessage() {
  if (!*m_pWarn || m_pFile == nullptr) return;
  if (m_pFile->GetLength() <= m_nMaxFileSize) return;
  *m_pWarn = false;
  auto hold = std::make_unique<std::shared_ptr<std::atomic<bool>>>(m_pWarn);
  if (AfxBeginThread(&Warn, hold.get())) hold.release();
}

bool CDQLog::ClearLogFile() {
  if (m_pFile != nullptr) m_pFile->SetLength(0);
  return true;
}

int DQLIB_WriteLogFile(const char* path, const char* text, long maxKilobytes) try {
  if (path == nullptr || text == nullptr) return -1;
  UINT flags = CFile::modeWrite | CFile::shareDenyWrite;
  CFileStatus status;
  const bool exists = CFile::GetStatus(path, status) != 0;
  if (!exists) flags |= CFile::modeCreate;
  const std::int64_t limit = std::int64_t{maxKilobytes} * kBytesInKilobyte;
  if (limit > 0 && exists && static_cast<std::int64_t>(status.m_size) >= limit) {
    flags |= CFile::modeCreate;
  }
  const CString entry = CDQSystemInfo::GetCurrentDateTime(DATE_SHORT) + "\r\n" + text + "\r\n";
  CFile file;
  if (!file.Open(path, flags)) return -1;
  file.SeekToEnd();
  file.Write(static_cast<const char*>(entry), static_cast<UINT>(entry.GetLength()));
  file.Close();
  return 1;
} catch (const CFileException&) {
  return -1;
}

}  // namespace dq
