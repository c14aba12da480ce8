#include "dqlib/frame/system_error_msg.h"

#include "dqlib/frame/output_message.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

/// The code of an error that hasn't been read yet, and the line of no place.
constexpr int kNone = -1;

/// Bytes of a network provider's name and of its error text that are shown.
constexpr std::size_t kNetworkTextSize = 255;

/// A code as the argument of a `%ld`: 32 bits wide and signed, as everywhere in the family.
long ToLong(DWORD code) { return static_cast<LONG>(code); }

/// The text as the argument of a `%s`, cut to what is shown.
CString NetworkText(const std::string& text) {
  return CString(std::string_view(text).substr(0, kNetworkTextSize));
}

void ShowStop(const CString& text) { AfxMessageBox(text, BOX_STOP); }

/// Sends to the main window as it is now: what handles one message may end the window before the
/// next.
void SendToMainWindow(UINT message, WPARAM wparam, LPARAM lparam) {
  if (CWnd* main_window = AfxGetMainWnd()) main_window->SendMessage(message, wparam, lparam);
}

}  // namespace

CDQSystemErrorMsg::CDQSystemErrorMsg(const char* file, int line)
    : m_nErrorCode(kNone), m_strFile(file), m_nLine(line) {}

CDQSystemErrorMsg::CDQSystemErrorMsg(int code) : m_nErrorCode(code), m_nLine(kNone) {}

CDQSystemErrorMsg::~CDQSystemErrorMsg() = default;

int CDQSystemErrorMsg::GetErrorCode() {
  if (m_nErrorCode == kNone) {
    m_nErrorCode = static_cast<int>(platform::Current().system_errors->LastError());
  }
  return m_nErrorCode;
}

CString CDQSystemErrorMsg::GetErrorMessage() {
  const auto code = static_cast<DWORD>(GetErrorCode());
  return CString(platform::Current().system_errors->Describe(code).value_or(""));
}

void CDQSystemErrorMsg::Show() {
  CString text = GetErrorMessage();
  if (!m_strFile.IsEmpty() && m_nLine != kNone) {
    const CString message = text;
    text.Format(IDS_SYSTEM_ERROR_WITH_FILE, static_cast<const char*>(message),
                static_cast<const char*>(m_strFile), m_nLine);
  }
  AfxMessageBox(text, BOX_EXCLAMATION);
}

CString RetrieveOSErrorMessage(DWORD code) {
  CString text;
  text.LoadString(IDS_UNKNOWN_OS_ERROR);
  if (const auto described = platform::Current().system_errors->Describe(code)) text = *described;
  return text;
}

int NetworkErrorHandler(DWORD code) {
  CString text;
  if (code != ERROR_NETWORK_EXTENDED) {
    text.Format(IDS_NETWORK_ERROR, ToLong(code), "");
    ShowStop(text);
    return 1;
  }
  const auto last = platform::Current().network->LastError();
  if (!last.ok()) {
    text.Format(IDS_NETWORK_LAST_ERROR_FAILED, ToLong(last.error.code));
    ShowStop(text);
    return 0;
  }
  const CString provider = NetworkText(last.value.provider);
  const CString description = NetworkText(last.value.description);
  text.Format(IDS_NETWORK_PROVIDER_ERROR, static_cast<const char*>(provider),
              static_cast<int>(last.value.code), static_cast<const char*>(description));
  ShowStop(text);
  return 1;
}

void DQLIB_DQDBErrorHandler(Errors& errors) {
  try {
    while (errors.MoreErrors()) {
      const CString description = errors.GetNextError().GetErrorDescription();
      SendToMainWindow(DQM_SHOW_OUTPUT_PANE, 0, 1);
      CDQOutputMessage message;
      message.SetType(OUTPUT_DBMS_ERROR);
      message.SetText(description);
      SendToMainWindow(DQM_ADD_OUTPUT_MESSAGE, 0, reinterpret_cast<LPARAM>(&message));
    }
  } catch (...) {
    // Whoever is reporting an error must not be met by another one.
  }
}

}  // namespace dq
