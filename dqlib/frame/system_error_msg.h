// The small failure reporters that everything else calls.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "siblings/dberrors/errors.h"

namespace dq {

/// A system error with its text, and the place in the source where it was met.
///
///   CDQSystemErrorMsg(__FILE__, __LINE__).Show();
class CDQSystemErrorMsg {
 public:
  /// For the calling thread's last error, which is read when the code is first asked for. A null or
  /// empty file name, or the line -1, is no place.
  explicit CDQSystemErrorMsg(const char* file = nullptr, int line = -1);
  /// For an error by its code.
  explicit CDQSystemErrorMsg(int code);
  CDQSystemErrorMsg(const CDQSystemErrorMsg&) = default;
  CDQSystemErrorMsg& operator=(const CDQSystemErrorMsg&) = default;
  virtual ~CDQSystemErrorMsg();

  /// The code. If it is -1, the thread's last error is read and kept, so the first call decides.
  int GetErrorCode();
  void SetErrorCode(int code) { m_nErrorCode = code; }

  /// The system's text for the code, with its CR LF; "" if it has none.
  CString GetErrorMessage();

  /// Shows the text, with file and line if there is a place, in a box with an exclamation mark.
  void Show();

 private:
  int m_nErrorCode;
  CString m_strFile;
  int m_nLine;
};

/// The system's text for the code, with its CR LF, or "Unknown OS Error". Any thread.
CString RetrieveOSErrorMessage(DWORD code);

/// The code that says "ask the network layer for the error".
inline constexpr DWORD ERROR_NETWORK_EXTENDED = 1208;

/// Shows a network error in a stop box. Returns 1, but 0 if the network layer could not say what
/// its extended error (code 1208) was; then that is what is shown.
int NetworkErrorHandler(DWORD code);

/// Sends the errors that are left in the list to the output pane of the host's main window, one
/// message each, and asks it to open the pane before each. An exception thrown on the way ends it
/// silently: reporting an error must not cause another.
void DQLIB_DQDBErrorHandler(Errors& errors);

}  // namespace dq
