#include "dqlib/core/system_info.h"

#include <cstring>

#include "dqlib/core/dq_string.h"
#include "dqlib/core/file_utility.h"
#include "dqlib/core/locale_info.h"
#include "dqlib/frame/system_error_msg.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/date_text.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/per_thread.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr DWORD kWindows95Family = 1;
constexpr DWORD kNtFamily = 2;
constexpr int kLongestDate = 79;

platform::SystemFacts& Facts() { return *platform::Current().system_facts; }

/// A number with zeros before it up to the width, and what stands behind it unless that is zero.
void AppendDigits(std::string& text, int number, int width, char behind) {
  char digits[8];
  int length = 0;
  do {
    digits[length++] = static_cast<char>('0' + number % 10);
    number /= 10;
  } while (number != 0 || length < width);
  while (length > 0) text += digits[--length];
  if (behind != '\0') text += behind;
}

SYSTEMTIME Now() { return platform::Current().clock->LocalTime(); }

/// A value of a key of this machine, of any length; "" if there is none.
std::string MachineValue(const char* path, const char* name) {
  platform::Registry& registry = *platform::Current().registry;
  const auto key = registry.OpenKey(kLocalMachine, path);
  if (!key.ok()) return {};
  const std::size_t size = registry.ReadValue(key.value, name, {}).value.size;
  std::string data(size, '\0');
  const bool read = registry.ReadValue(key.value, name, data).ok();
  registry.CloseKey(key.value);
  return read ? data : std::string();
}

/// "<application data>\" and, with an application object, its registry key name and `below`.
CString DataPath(bool create, const CString& below) {
  // The folder is made with what is below it, so that a failure is told once.
  CString path = CDQSystemInfo::GetSpecialFolderPath(FOLDER_APPDATA, false);
  // A user without a home has no place for data, least of all at the root.
  if (path.IsEmpty()) return path;
  const char separator = platform::SeparatorFor(path.View());
  path += separator;
  if (const CWinApp* const app = AfxGetApp()) {
    path += app->GetRegistryKeyName();
    path += separator;
    path += below;
    path += separator;
  }
  if (create) CDQFileUtility::CreateDirectory(path, false);
  return path;
}

}  // namespace

CDQSystemInfo::CDQSystemInfo() {
  const auto version = Facts().Version();
  if (!version.ok()) {
    CDQSystemErrorMsg(static_cast<int>(version.error.code)).Show();
    return;
  }
  m_version.dwMajorVersion = version.value.major;
  m_version.dwMinorVersion = version.value.minor;
  m_version.dwBuildNumber = version.value.build;
  m_version.dwPlatformId = kNtFamily;
  m_bTerminalServer = IsProductSuiteInstalled("Terminal Server");
}

CDQSystemInfo::~CDQSystemInfo() = default;

bool CDQSystemInfo::IsWindows95() const { return m_version.dwPlatformId == kWindows95Family; }

bool CDQSystemInfo::IsWindowsNT() { return true; }

CString CDQSystemInfo::GetUserName() { return Facts().UserName(); }

CString CDQSystemInfo::GetComputerName() { return "\\\\" + CString(Facts().ComputerName()); }

CString CDQSystemInfo::GetHostName() { return Facts().HostName(); }

bool CDQSystemInfo::IsIE4Installed() {
  platform::Registry& registry = *platform::Current().registry;
  const auto key = registry.OpenKey(kLocalMachine, "SOFTWARE\\Microsoft\\Internet Explorer");
  registry.CloseKey(key.value);
  return key.ok();
}

bool CDQSystemInfo::IsProductSuiteInstalled(const char* suite) {
  if (suite == nullptr || *suite == '\0') return false;
  const std::string suites =
      MachineValue("SYSTEM\\CurrentControlSet\\Control\\ProductOptions", "ProductSuite");
  for (std::size_t start = 0; start < suites.size();) {
    const CString name(suites.c_str() + start);
    if (name.CompareNoCase(suite) == 0) return true;
    start += static_cast<std::size_t>(name.GetLength()) + 1;
  }
  return false;
}

CString CDQSystemInfo::GetSpecialFolderPath(int folder, bool create, CWnd* /*owner*/) {
  CString path = Facts().FolderPath(folder);
  if (create && !path.IsEmpty()) CDQFileUtility::CreateDirectory(path, false);
  return path;
}

CString CDQSystemInfo::GetAppDataPath(bool create) {
  CDQString name(AfxGetAppName());
  name.TrimWhiteSpace();
  return DataPath(create, name);
}

CString CDQSystemInfo::GetSharedDataPath(bool create) { return DataPath(create, "Shared"); }

bool CDQSystemInfo::IsCurrentUserAdmin() { return Facts().IsAdministrator(); }

bool CDQSystemInfo::IsSufficientResources() { return true; }

CString CDQSystemInfo::GetDefaultWebBrowser() {
  platform::Registry& registry = *platform::Current().registry;
  const auto key = registry.OpenKey(kClassesRoot, "http\\shell\\open\\command");
  if (key.ok()) {
    std::string command(registry.ReadValue(key.value, "", {}).value.size, '\0');
    const bool read = registry.ReadValue(key.value, "", command).ok();
    registry.CloseKey(key.value);
    if (read && !command.empty() && command.front() != '\0') return command.c_str();
  }
  return Facts().WebBrowserCommand();
}

WebBrowserType CDQSystemInfo::GetDefaultWebBrowserType() {
  const CDQString command(GetDefaultWebBrowser());
  if (command.IsEmpty()) return WEB_BROWSER_NONE;
  return command.FindNoCase("iexplore.exe") >= 0 ? WEB_BROWSER_IE : WEB_BROWSER_OTHER;
}

CString CDQSystemInfo::GetCurrentDate(DWORD flags) {
  return GetFormattedDate(static_cast<const SYSTEMTIME*>(nullptr), flags);
}

CString CDQSystemInfo::GetTickCount() { return GetFormattedTime(nullptr, false); }

CString CDQSystemInfo::GetCurrentDateTime(DWORD flags) {
  return GetFormattedDateTime(nullptr, flags);
}

CString CDQSystemInfo::GetFormattedDate(const SYSTEMTIME* time, DWORD flags) {
  const DWORD item = (flags & DATE_LONG) != 0 ? LOCALE_SLONGDATE : LOCALE_SSHORTDATE;
  const CString picture = CDQLocaleInfo::GetInfo(item, "", LOCALE_USER_DEFAULT);
  const SYSTEMTIME shown = time == nullptr ? Now() : *time;
  platform::Locale* const locale = platform::Current().locale;
  // A log asks for the same date line after line. One with names in it is laid out each time, since
  // they may change while the picture stays.
  struct LaidOut {
    platform::Locale* locale = nullptr;
    CString picture;
    SYSTEMTIME date;
    CString text;
  };
  const platform::ThreadKept<LaidOut> last;
  const bool has_names = picture.View().find("ddd") != std::string_view::npos ||
                         picture.View().find("MMM") != std::string_view::npos;
  if (has_names || last->locale != locale || last->picture != picture ||
      last->date.wYear != shown.wYear || last->date.wMonth != shown.wMonth ||
      last->date.wDay != shown.wDay) {
    const std::string text =
        platform::LayOutDate(shown, picture.View(), *locale, LOCALE_USER_DEFAULT);
    // The platform gives no date at all if it has no room for it.
    *last = {locale, picture, shown, text.size() > kLongestDate ? CString() : CString(text)};
  }
  return last->text;
}

CString CDQSystemInfo::GetFormattedDate(const COleDateTime& time, DWORD flags) {
  SYSTEMTIME parts;
  return time.GetAsSystemTime(parts) ? GetFormattedDate(&parts, flags) : CString();
}

CString CDQSystemInfo::GetFormattedTime(const SYSTEMTIME* time, bool milliseconds) {
  const SYSTEMTIME shown = time == nullptr ? Now() : *time;
  // "HH:MM:SS.mmm"; every line of a log asks for it.
  std::string digits;
  AppendDigits(digits, shown.wHour, 2, ':');
  AppendDigits(digits, shown.wMinute, 2, ':');
  AppendDigits(digits, shown.wSecond, 2, '.');
  AppendDigits(digits, shown.wMilliseconds, 3, '\0');
  CDQString text(digits);
  const int place = milliseconds ? GetMilliSecPos(text) : -1;
  if (place >= 0) {
    CString inserted;
    inserted.Format(".%.3u", static_cast<unsigned>(shown.wMilliseconds));
    text.Insert(place, inserted);
  }
  return text;
}

CString CDQSystemInfo::GetFormattedDateTime(const SYSTEMTIME* time, DWORD flags) {
  const SYSTEMTIME shown = time == nullptr ? Now() : *time;
  CString text = GetFormattedDate(&shown, flags);
  text += ' ';
  text += GetFormattedTime(&shown, false);
  return text;
}

int CDQSystemInfo::GetMilliSecPos(const char* time) {
  const std::string_view text = time == nullptr ? "" : time;
  const std::size_t colon = text.rfind(':');
  if (colon == text.npos || text.find('.', colon) != text.npos) return -1;
  std::size_t place = colon + 1;
  while (place < text.size() && text[place] >= '0' && text[place] <= '9') ++place;
  return static_cast<int>(place);
}

}  // namespace dq
