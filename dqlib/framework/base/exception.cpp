#include "dqlib/framework/base/exception.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "dqlib/platform/platform.h"

namespace dq {
namespace {

/// Strings of the framework that describe causes: the cause is added.
constexpr UINT kFileCauses = 61840;
constexpr UINT kArchiveCauses = 61860;

CString DescribeCause(UINT first, int cause, int last, UINT& help_id) {
  // A number that is no cause is an error like any that has none.
  constexpr int kGeneric = 1;
  help_id = first + static_cast<UINT>(cause >= 0 && cause <= last ? cause : kGeneric);
  return detail::LoadText(help_id);
}

/// What there is no room for may be more than bytes on a disk.
CFileException::Cause CauseOfNoSpace(DWORD code) {
  const auto is = [code](std::errc error) { return code == static_cast<DWORD>(error); };
  if (is(std::errc::too_many_files_open) || is(std::errc::too_many_files_open_in_system)) {
    return CFileException::tooManyOpenFiles;
  }
  return is(std::errc::not_enough_memory) ? CFileException::generic : CFileException::diskFull;
}

}  // namespace

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CFileException, CException)
IMPLEMENT_DYNAMIC(CArchiveException, CException)

BOOL CException::GetErrorMessage(char* text, UINT size, UINT* help_id) const {
  UINT id = 0;
  const CString words = DescribeError(id);
  if (help_id != nullptr) *help_id = id;
  if (size > 0) {
    const std::string_view fitting = words.View().substr(0, size - 1);
    *std::ranges::copy(fitting, text).out = '\0';
  }
  return words.IsEmpty() ? 0 : 1;
}

CString CException::DescribeError(UINT&) const { return {}; }

CString CFileException::DescribeError(UINT& help_id) const {
  CString words = DescribeCause(kFileCauses, m_cause, endOfFile, help_id);
  if (m_cause == generic && m_lOsError > 0) {
    const auto system = platform::Current().system_errors->Describe(static_cast<DWORD>(m_lOsError));
    std::string_view known = system ? std::string_view(*system) : std::string_view();
    known = known.substr(0, known.find_last_not_of("\r\n. ") + 1);
    if (!known.empty()) words = known;
  }
  return words;
}

CString CArchiveException::DescribeError(UINT& help_id) const {
  return DescribeCause(kArchiveCauses, m_cause, badSchema, help_id);
}

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
      return CauseOfNoSpace(error.code);
    default:
      return generic;
  }
}

CArchiveException::CArchiveException(int cause) : m_cause(cause) {}

}  // namespace dq
