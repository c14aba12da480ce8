// Exceptions of the framework. They are thrown by value and caught by reference; none crosses the
// platform seam.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"
#include "dqlib/platform/error.h"

namespace dq {

/// Base of the framework's exceptions.
class CException : public CObject {
  DECLARE_DYNAMIC(CException)
  CException() = default;
  CException(const CException&) : CObject() {}
  CException& operator=(const CException&) { return *this; }

  /// What went wrong, in words to stand within a sentence: without a full stop or a line end. Fills
  /// `text`, of `size` bytes with the zero, with as much of it as there is room for, and `help_id`,
  /// if not null, with the help topic. False, "" and topic 0 if the exception has no words.
  BOOL GetErrorMessage(char* text, UINT size, UINT* help_id = nullptr) const;

 protected:
  /// The words, and in `help_id` the string that they come from; the base has none.
  virtual CString DescribeError(UINT& help_id) const;
};

/// A failed operation on a file.
class CFileException : public CException {
  DECLARE_DYNAMIC(CFileException)
  /// What went wrong, as numbers that callers compare.
  enum Cause : int {
    none = 0,
    generic = 1,
    fileNotFound = 2,
    badPath = 3,
    tooManyOpenFiles = 4,
    accessDenied = 5,
    invalidFile = 6,
    removeCurrentDir = 7,
    directoryFull = 8,
    badSeek = 9,
    hardIO = 10,
    sharingViolation = 11,
    lockViolation = 12,
    diskFull = 13,
    endOfFile = 14,
  };

  /// `os_error` is the system's own error number, -1 if there is none.
  explicit CFileException(int cause = none, LONG os_error = -1, const char* file_name = nullptr);
  CFileException(const CFileException&) = default;
  CFileException& operator=(const CFileException&) = default;

  /// The cause that an error of the seam stands for.
  static int CauseOf(const platform::Error& error);

  int m_cause;
  LONG m_lOsError;
  CString m_strFileName;

 protected:
  /// Of an error without a cause of its own, the system's words if it has some.
  CString DescribeError(UINT& help_id) const override;
};

/// A stream of objects that doesn't hold what is read from it, or can't be read or written.
class CArchiveException : public CException {
  DECLARE_DYNAMIC(CArchiveException)
  enum Cause : int {
    none = 0,
    generic = 1,
    readOnly = 2,
    endOfFile = 3,
    writeOnly = 4,
    badIndex = 5,
    badClass = 6,
    badSchema = 7,
  };

  explicit CArchiveException(int cause = none);
  CArchiveException(const CArchiveException&) = default;
  CArchiveException& operator=(const CArchiveException&) = default;

  int m_cause;

 protected:
  CString DescribeError(UINT& help_id) const override;
};

}  // namespace dq
