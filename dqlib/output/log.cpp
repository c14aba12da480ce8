#include "dqlib/output/log.h"

#include <algorithm>
#include <limits>
#include <mutex>

#include "dqlib/core/system_info.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/platform/per_thread.h"
#include "dqlib/platform/platform.h"
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

/// The thread of one warning: `parameter` is a hold of its own on what it shares with the log.
UINT Warn(void* parameter) {
  const std::unique_ptr<std::shared_ptr<detail::LogWarning>> hold(
      static_cast<std::shared_ptr<detail::LogWarning>*>(parameter));
  detail::LogWarning& warning = **hold;
  {
    const std::lock_guard lock(WarningMutex());
    warning.may_warn = false;
    const int answer = AfxMessageBoxWithCaption(LoadText(IDS_LOG_TOO_LONG),
                                                LoadText(IDS_LOG_WARNING_CAPTION), BOX_OK_CANCEL);
    if (answer == BUTTON_OK) warning.may_warn = true;
  }
  --warning.under_way;
  warning.under_way.notify_all();
  return 0;
}

/// The line that a thread wrote last. What is written in the same millisecond begins alike, so the
/// stamp stays and only the text behind it is replaced.
struct LastLine {
  SYSTEMTIME time;
  /// 0 if there is none.
  std::size_t stamp_size = 0;
  std::string bytes;
};

/// More than an ordinary line: not kept once it is written.
constexpr std::size_t kLongLine = 65536;

/// The size by which a log starts over, from the two halves as a search gives them.
std::int64_t FoundSize(std::uint64_t size) {
  return static_cast<std::int64_t>(size & 0xFFFFFFFF) - static_cast<std::int64_t>(size >> 32);
}

}  // namespace

IMPLEMENT_SERIAL(CDQLog, CObject, 1)

CDQLog::CDQLog() : m_pWarning(std::make_shared<detail::LogWarning>(false)) {}

CDQLog::CDQLog(const CString& name, DWORD maxKilobytes, bool warn)
    : m_strLogFileName(name),
      m_nMaxFileSize(maxKilobytes),
      m_pWarning(std::make_shared<detail::LogWarning>(warn)) {
  Initialize();
}

CDQLog::~CDQLog() {
  if (m_pFile != nullptr) m_pFile->Abort();
}

void CDQLog::Serialize(CArchive& archive) { CObject::Serialize(archive); }

void CDQLog::Initialize() {
  if (m_nMaxFileSize == 0) m_nMaxFileSize = kDefaultKilobytes;
  constexpr DWORD kMost = std::numeric_limits<DWORD>::max();
  m_nMaxFileSize =
      m_nMaxFileSize > kMost / kBytesInKilobyte ? kMost : m_nMaxFileSize * kBytesInKilobyte;
  if (!m_bUseLog || m_strLogFileName.IsEmpty()) return;
  auto file = std::make_unique<CFile>();
  constexpr UINT kFlags = CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite |
                          CFile::shareDenyNone | CFile::modeAppend;
  if (!file->Open(m_strLogFileName, kFlags, &m_openFailure)) {
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
  const platform::ThreadKept<LastLine> line;
  const platform::Platform& services = platform::Current();
  const SYSTEMTIME now = services.clock->LocalTime();
  if (line->stamp_size == 0 || line->time != now) {
    line->stamp_size = 0;
    line->bytes = CDQSystemInfo::GetFormattedDateTime(&now, DATE_SHORT).View();
    line->bytes += "  ";
    line->stamp_size = line->bytes.size();
    line->time = now;
  }
  line->bytes.resize(line->stamp_size);
  line->bytes.append(text.View()).append("\r\n");
  // One write, so that the lines of several writers don't mix.
  const auto written = services.files->WriteAndTell(m_pFile->m_hFile, line->bytes);
  if (line->bytes.size() > kLongLine) *line = {};
  if (!written.ok()) {
    throw CFileException(CFileException::CauseOf(written.error),
                         static_cast<LONG>(written.error.code), m_strLogFileName);
  }
  DisplayWarningMessage(written.value);
}

void CDQLog::DisplayWarningMessage(std::uint64_t length) {
  if (length <= m_nMaxFileSize || !m_pWarning->may_warn.exchange(false)) return;
  auto hold = std::make_unique<std::shared_ptr<detail::LogWarning>>(m_pWarning);
  ++m_pWarning->under_way;
  if (AfxBeginThread(&Warn, hold.get())) {
    static_cast<void>(hold.release());
  } else {
    --m_pWarning->under_way;
  }
}

void CDQLog::WaitForWarning() const {
  for (int count = m_pWarning->under_way; count != 0; count = m_pWarning->under_way) {
    m_pWarning->under_way.wait(count);
  }
}

bool CDQLog::ClearLogFile() {
  if (m_pFile != nullptr) m_pFile->SetLength(0);
  return true;
}

void WriteLogEntry(const char* path, const char* text, long maxKilobytes) {
  CFileStatus status;
  const bool exists = CFile::GetStatus(path, status) != 0;
  const std::int64_t limit =
      std::clamp<std::int64_t>(maxKilobytes, 0, std::numeric_limits<std::int32_t>::max()) *
      kBytesInKilobyte;
  const CString entry = CDQSystemInfo::GetCurrentDateTime(DATE_SHORT) + "\r\n" + text + "\r\n";
  // Nothing is emptied before the file is held: another process may be writing its entry just now.
  constexpr UINT kFlags =
      CFile::modeWrite | CFile::shareDenyWrite | CFile::modeNoTruncate | CFile::modeAppend;
  CFile file(path, kFlags | (exists ? 0 : UINT{CFile::modeCreate}));
  if (limit > 0 && CFile::GetStatus(path, status) && FoundSize(status.m_size) >= limit) {
    file.SetLength(0);
  }
  file.Write(static_cast<const char*>(entry), static_cast<UINT>(entry.GetLength()));
  file.Close();
}

int DQLIB_WriteLogFile(const char* path, const char* text, long maxKilobytes) try {
  if (path == nullptr || text == nullptr) return -1;
  WriteLogEntry(path, text, maxKilobytes);
  return 1;
} catch (const CFileException&) {
  return -1;
}

}  // namespace dq
