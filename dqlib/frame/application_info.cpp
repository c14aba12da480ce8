#include "dqlib/frame/application_info.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/library.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

constexpr int kLongestPath = 259;
constexpr char kOptionsExtension[] = ".dqo";

CString LibraryString(UINT id) {
  const CDQSwitchResourceHandle library(DQLIB_GetInstanceHandle());
  return detail::LoadText(id);
}

/// The number at the start of the text, 0 if there is none.
int Number(const CString& text) { return static_cast<int>(std::strtol(text, nullptr, 10)); }

/// Without a code the host is no application, whatever the string table holds.
bool IsApp(const CString& code, UINT id) {
  return !code.IsEmpty() && code.CompareNoCase(LibraryString(id)) == 0;
}

}  // namespace

CDQApplicationInfo::CDQApplicationInfo() { RetrieveVersionInfo(); }

CDQApplicationInfo::~CDQApplicationInfo() = default;

CDQApplicationInfo& CDQApplicationInfo::operator=(const CDQApplicationInfo& other) {
  m_strTitle = other.m_strTitle;
  m_strExecutablePath = other.m_strExecutablePath;
  m_strExecutableDirectory = other.m_strExecutableDirectory;
  m_strRegistryKey = other.m_strRegistryKey;
  m_strOptionsFile = other.m_strOptionsFile;
  m_nSplashIDB = other.m_nSplashIDB;
  m_strLongVersion = other.m_strLongVersion;
  m_strShortVersion = other.m_strShortVersion;
  m_strMediumVersion = other.m_strMediumVersion;
  m_nMajorVersion = other.m_nMajorVersion;
  m_nMinorVersion = other.m_nMinorVersion;
  m_nBuildNumber = other.m_nBuildNumber;
  m_strProductName = other.m_strProductName;
  return *this;
}

CString CDQApplicationInfo::GetTitle() {
  if (m_strTitle.IsEmpty()) m_strTitle.LoadString(IDS_APP_TITLE);
  return m_strTitle;
}

CString CDQApplicationInfo::GetExecutablePath() {
  if (m_strExecutablePath.IsEmpty()) {
    const CWinApp* const app = AfxGetApp();
    const CString path = app == nullptr ? CString(platform::Current().modules->FileName(nullptr))
                                        : app->GetExecutablePath();
    m_strExecutablePath = path.Left(kLongestPath);
  }
  return m_strExecutablePath;
}

CString CDQApplicationInfo::GetExecutableDirectory() {
  if (m_strExecutableDirectory.IsEmpty()) {
    const CString path = GetExecutablePath();
    const std::size_t separator = platform::FindLastSeparator(path.View());
    if (separator == std::string_view::npos) return {};
    m_strExecutableDirectory = path.Left(static_cast<int>(separator));
  }
  return m_strExecutableDirectory;
}

bool CDQApplicationInfo::RunningFromNetwork() {
  platform::Files& files = *platform::Current().files;
  const CString path = GetExecutablePath();
  UINT kind = DRIVE_KIND_NO_ROOT;
  if (platform::FormOf(path.View()) == platform::PathForm::kWindows) {
    kind = files.KindOfDrive(platform::SplitPath(path.View()).drive);
  } else {
    // A path of the platform's own form has no drive to ask for: where it lies is told by itself,
    // or by the nearest directory above that is there.
    std::string place = files.FullPath(path.View()).value;
    while ((kind = files.KindOfDrive(place)) == DRIVE_KIND_NO_ROOT && place.size() > 1) {
      place.resize(std::max<std::size_t>(platform::FindLastSeparator(place), 1));
    }
  }
  return kind == DRIVE_KIND_REMOTE || kind == DRIVE_KIND_UNKNOWN || kind == DRIVE_KIND_NO_ROOT;
}

CString CDQApplicationInfo::GetOptionsFile() {
  if (m_strOptionsFile.IsEmpty()) {
    if (IsAppLumenSql()) {
      m_strOptionsFile = LibraryString(IDS_LUMEN_SQL_OPTIONS_FILE) + kOptionsExtension;
    } else if (IsAppQuillbase()) {
      m_strOptionsFile = LibraryString(IDS_QUILLBASE_OPTIONS_FILE) + kOptionsExtension;
    } else if (IsAppDQPacer()) {
      m_strOptionsFile = LibraryString(IDS_PACER_OPTIONS_FILE) + kOptionsExtension;
    } else {
      m_strOptionsFile = GetRegistryKeyOf(GetExecutablePath()) + kOptionsExtension;
    }
  }
  return m_strOptionsFile;
}

CString CDQApplicationInfo::GetRegistryKey() {
  if (m_strRegistryKey.IsEmpty()) m_strRegistryKey = GetRegistryKeyOf(GetExecutablePath());
  return m_strRegistryKey;
}

CString CDQApplicationInfo::GetRegistryKeyOf(const CString& path) {
  return platform::SplitPath(path.View()).name;
}

CString CDQApplicationInfo::GetProductName() {
  if (m_strProductName.IsEmpty()) m_strProductName = CDQVersionInfo::GetProductName();
  return m_strProductName;
}

CString& CDQApplicationInfo::AppCode() {
  // Never destroyed: destructors of static objects may ask for it.
  static CString& code = *new CString;
  return code;
}

bool CDQApplicationInfo::IsAppLumenSql() { return IsApp(AppCode(), IDS_APP_LUMEN_SQL); }

bool CDQApplicationInfo::IsAppDeltaKeeper() { return IsApp(AppCode(), IDS_APP_DELTA_KEEPER); }

bool CDQApplicationInfo::IsAppQuillbase() { return IsApp(AppCode(), IDS_APP_QUILLBASE); }

bool CDQApplicationInfo::IsAppDQPacer() { return IsApp(AppCode(), IDS_APP_PACER); }

void CDQApplicationInfo::RetrieveVersionInfo() {
  m_strLongVersion = GetVersionString();
  const CString& version = m_strLongVersion;
  int dots = 0;
  int first_dot = 0;
  for (int i = 0; i < version.GetLength(); ++i) {
    if (version[i] != '.') continue;
    switch (++dots) {
      case 1:
        m_nMajorVersion = Number(version.Left(i));
        first_dot = i;
        break;
      case 2:
        m_strShortVersion = version.Left(i);
        // From the character before the second dot, not behind the first: one digit is all that is
        // read of the minor version.
        m_nMinorVersion = Number(version.Mid(i - 1, i - first_dot));
        break;
      case 3:
        m_strMediumVersion = version.Left(i);
        m_nBuildNumber = Number(version.Mid(i + 1));
        break;
      default:
        break;
    }
  }
}

}  // namespace dq
