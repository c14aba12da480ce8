#include "dqlib/framework/windows/file_failure.h"

#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

/// The text of a cause that has one of its own, else 0.
UINT TextOfFileCause(int cause, bool saving) {
  switch (cause) {
    case CFileException::fileNotFound:
    case CFileException::badPath:
      return IDS_FILE_INVALID_PATH;
    case CFileException::diskFull:
      return IDS_FILE_DISK_FULL;
    case CFileException::accessDenied:
    case CFileException::sharingViolation:
    case CFileException::lockViolation:
      return saving ? IDS_FILE_ACCESS_WRITE : IDS_FILE_ACCESS_READ;
    case CFileException::none:
      return 0;
    default:
      return saving ? IDS_FILE_IO_ERROR_WRITE : IDS_FILE_IO_ERROR_READ;
  }
}

UINT TextOfArchiveCause(int cause) {
  switch (cause) {
    case CArchiveException::endOfFile:
    case CArchiveException::badIndex:
    case CArchiveException::badClass:
    case CArchiveException::badSchema:
      return IDS_FILE_INVALID_FORMAT;
    default:
      return 0;
  }
}

}  // namespace

CString DescribeFileFailure(const char* path, const CException* exception, bool saving,
                            UINT default_id) {
  UINT id = 0;
  if (const auto* const of_file = dynamic_cast<const CFileException*>(exception)) {
    id = TextOfFileCause(of_file->m_cause, saving);
  } else if (const auto* const of_archive = dynamic_cast<const CArchiveException*>(exception)) {
    id = TextOfArchiveCause(of_archive->m_cause);
  }
  CString text;
  AfxFormatString1(text, id == 0 ? default_id : id, path);
  return text;
}

}  // namespace dq
