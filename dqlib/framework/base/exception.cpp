#include "dqlib/framework/base/exception.h"

namespace dq {

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CFileException, CException)
IMPLEMENT_DYNAMIC(CArchiveException, CException)

CFileException::CFileException(int cause, LONG os_error, const char* file_name)
    : m_cause(cause), m_lOsError(os_error), m_strFileName(file_name) {}

int CFileException::CauseOf(const platform::Error& error) {
  switch (error.kind) {
    case platform::ErrorKind::kNone:
      return none;
    case platform::ErrorKind::kNotFound:
      return fileNotFound;
    case platform::ErrorKind::kInvalidArgument:
      return badPath;
    case platform::ErrorKind::kAccessDenied:
    case platform::ErrorKind::kAlreadyExists:
      return accessDenied;
    case platform::ErrorKind::kBusy:
      return sharingViolation;
    case platform::ErrorKind::kNoSpace:
      return diskFull;
    default:
      return generic;
  }
}

CArchiveException::CArchiveException(int cause) : m_cause(cause) {}

}  // namespace dq
