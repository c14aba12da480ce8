// Plain text log files: a time stamp and a text a line.

#pragma once

#include <atomic>
#include <memory>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/file.h"

namespace dq {

namespace detail {
/// What a log and the threads of its warnings share.
struct LogWarning {
  explicit LogWarning(bool warn) : may_warn(warn) {}
  /// Whether a warning may be shown.
  std::atomic<bool> may_warn;
  /// Threads that show one or wait for their turn.
  std::atomic<int> under_way = 0;
};
}  // namespace detail

/// A log that stays open. Its size is watched, not limited: when it outgrows its limit the user is
/// warned, and the log goes on. Entries of several processes that write one log don't mix. Any
/// thread may call `LogMessage`, several at once too; all else is for one thread at a time. The
/// warning runs on a thread of its own, and one warning stands at a time in a process.
class CDQLog : public CObject {
  DECLARE_SERIAL(CDQLog)
  /// Without a file: set the name and call `Initialize`. Such a log never warns.
  CDQLog();
  /// `maxKilobytes` 0 means 1000. Calls `Initialize`.
  CDQLog(const CString& name, DWORD maxKilobytes, bool warn);
  CDQLog(const CDQLog&) = delete;
  CDQLog& operator=(const CDQLog&) = delete;
  ~CDQLog() override;

  void Serialize(CArchive& archive) override;

  /// Opens the file for appending and turns the maximum from kilobytes into bytes, 4 GiB less one
  /// at most, so it runs once for an object. A file that can't be opened is told to the user, and
  /// there is no log then. Without a name, or with `SetUseLog(false)`, nothing is opened.
  void Initialize();

  /// Write one line: the short date and the time, two blanks, the text, CR LF. An empty text, or an
  /// id without a string, writes nothing. The last two fill %1 and %2. Throw a `CFileException` if
  /// the system refuses the write, which leaves no part of the line then. The date is laid out once
  /// a millisecond, so a locale that changes shows from the next one on.
  void LogMessage(UINT stringId);
  void LogMessage(const CString& text);
  void LogMessage(UINT stringId, const char* arg);
  void LogMessage(UINT stringId, const char* arg1, const char* arg2);

  /// Whether there is a file to write to, and why `Initialize` couldn't open it.
  bool HasFile() const { return m_pFile != nullptr; }
  const CFileException& GetOpenFailure() const { return m_openFailure; }
  /// Waits until no warning of this log stands any more: a program that is about to end would take
  /// the warning with it.
  void WaitForWarning() const;

  /// Empties the file, if there is one. Returns true.
  bool ClearLogFile();

  const CString& GetLogFileName() const { return m_strLogFileName; }
  void SetLogFileName(const CString& name) { m_strLogFileName = name; }
  /// False turns all writing off while the file stays open.
  bool GetUseLog() const { return m_bUseLog; }
  void SetUseLog(bool use) { m_bUseLog = use; }
  /// Kilobytes until `Initialize` has run, bytes afterwards.
  DWORD GetMaxFileSize() const { return m_nMaxFileSize; }
  void SetMaxFileSize(DWORD size) { m_nMaxFileSize = size; }

 private:
  /// `length` is the file's, right behind the line that has been written.
  void DisplayWarningMessage(std::uint64_t length);

  CString m_strLogFileName;
  bool m_bUseLog = true;
  DWORD m_nMaxFileSize = 1000;
  std::unique_ptr<CFile> m_pFile;
  CFileException m_openFailure;
  /// Shared with the warning's thread, which may outlive the log.
  std::shared_ptr<detail::LogWarning> m_pWarning;
};

/// Appends one entry, of two lines, to a log file: date and time, then the text. `maxKilobytes`
/// above 0 makes a file of that size or larger start over, the opposite of what `CDQLog` does. The
/// size that counts is the low 32 bits less what is above them, so files of 4 GiB and more pass for
/// small ones; tools that keep such logs rely on their not being started over.
/// Returns 1, or -1 if a text is null or the file can't be opened or written, also because another
/// writer has it open just then.
int DQLIB_WriteLogFile(const char* path, const char* text, long maxKilobytes);

/// The same, which tells why: throws a `CFileException` instead of returning -1.
void WriteLogEntry(const char* path, const char* text, long maxKilobytes);

}  // namespace dq
