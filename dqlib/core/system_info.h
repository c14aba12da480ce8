// The machine and the user: names, folders, rights, and how dates and times are written.

#pragma once

#include <concepts>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/ole_date_time.h"
#include "dqlib/platform/system_facts.h"

namespace dq {

class CWnd;

/// The platform's version record: 148 bytes, as callers hand it on.
struct OSVERSIONINFO {
  DWORD dwOSVersionInfoSize = 148;
  DWORD dwMajorVersion = 0;
  DWORD dwMinorVersion = 0;
  DWORD dwBuildNumber = 0;
  /// 1 for the Windows 95 family, 2 for the NT family, which every other platform counts to.
  DWORD dwPlatformId = 0;
  char szCSDVersion[128] = {};
};
static_assert(sizeof(OSVERSIONINFO) == 148);

/// Kinds of web browsers.
enum WebBrowserType {
  WEB_BROWSER_NONE = 0,  ///< No browser is set.
  WEB_BROWSER_IE = 1,    ///< Its command holds "iexplore.exe".
  WEB_BROWSER_OTHER = 2,
};

/// Flags of the date operations.
enum DateFlags : DWORD {
  DATE_SHORT = 1,
  DATE_LONG = 2,
};

/// Facts about the machine and the user. Static operations may be called from any thread.
class CDQSystemInfo {
 public:
  /// Reads the platform's version; a failure is shown to the user, and the record stays zero.
  CDQSystemInfo();
  virtual ~CDQSystemInfo();

  bool IsWindows95() const;
  static bool IsWindowsNT();
  bool IsTerminalServer() const { return m_bTerminalServer; }
  const OSVERSIONINFO& GetOSVersionInfo() const { return m_version; }

  static CString GetUserName();
  /// The machine's name with two backslashes before it, as names of shares begin.
  static CString GetComputerName();
  static CString GetHostName();

  /// Whether the registry has the browser's key on this machine.
  static bool IsIE4Installed();
  /// Whether the registry lists the product suite, case ignored.
  static bool IsProductSuiteInstalled(const char* suite);

  /// Path of a special folder (a `SpecialFolder`), without a separator at its end, made if
  /// `create`; "" if there is none. The window is the owner of any question, and may be null.
  static CString GetSpecialFolderPath(int folder, bool create, CWnd* owner = nullptr);
  /// A template, so that a null without a type is none of its arguments.
  template <std::same_as<HWND> Handle>
  static CString GetSpecialFolderPath(int folder, bool create, Handle /*owner*/) {
    // Nothing is asked by the services there are.
    return GetSpecialFolderPath(folder, create);
  }

  /// "<application data>\<registry key name>\<application's name without white space>\"; without an
  /// application object just the folder and a separator. Made, without a question, if `create`; ""
  /// for a user without such a folder.
  static CString GetAppDataPath(bool create);
  /// "<application data>\<registry key name>\Shared\", likewise.
  static CString GetSharedDataPath(bool create);

  static bool IsCurrentUserAdmin();

  /// True. Only the Windows 95 family can run low of system resources.
  static bool IsSufficientResources();

  /// The command that opens a web address, or "".
  static CString GetDefaultWebBrowser();
  static WebBrowserType GetDefaultWebBrowserType();

  /// Texts of the present local time. `GetTickCount` is a time of day with milliseconds, in spite
  /// of its name; `GetCurrentDateTime` is date, blank and that.
  static CString GetCurrentDate(DWORD flags);
  static CString GetTickCount();
  static CString GetCurrentDateTime(DWORD flags);

  /// The date by the user's locale, at most 79 bytes; null is the present local time.
  static CString GetFormattedDate(const SYSTEMTIME* time, DWORD flags);
  static CString GetFormattedDate(const COleDateTime& time, DWORD flags);

  /// "HH:MM:SS.mmm". With `milliseconds` they are put in once more where `GetMilliSecPos` says,
  /// which finds no place in a text that has them.
  static CString GetFormattedTime(const SYSTEMTIME* time, bool milliseconds);
  static CString GetFormattedDateTime(const SYSTEMTIME* time, DWORD flags);

  /// Where milliseconds go in a time text: behind the seconds; -1 if it has them already.
  static int GetMilliSecPos(const char* time);

 private:
  OSVERSIONINFO m_version;
  bool m_bTerminalServer = false;
};

}  // namespace dq
