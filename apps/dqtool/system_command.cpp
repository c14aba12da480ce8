// dqtool system: what the library knows of the machine and the user.

#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/core/system_info.h"

namespace dqtool {
namespace {

using dq::CDQSystemInfo;

std::string VersionText(const dq::OSVERSIONINFO& version) {
  return std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) +
         "." + std::to_string(version.dwBuildNumber);
}

int RunSystem(Words words) {
  if (!words.empty()) throw WrongUsage("it takes no words");
  const CDQSystemInfo info;
  const auto print = [](const char* name, const dq::CString& value) {
    PrintLine(std::string(name) + "\t" + std::string(value.View()));
  };
  const auto print_truth = [&](const char* name, bool value) {
    print(name, value ? "true" : "false");
  };
  const dq::CString time = CDQSystemInfo::GetFormattedTime(nullptr, true);

  print("OSVersionInfo", VersionText(info.GetOSVersionInfo()));
  print("UserName", CDQSystemInfo::GetUserName());
  print("ComputerName", CDQSystemInfo::GetComputerName());
  print("HostName", CDQSystemInfo::GetHostName());
  print("SpecialFolderPath", CDQSystemInfo::GetSpecialFolderPath(dq::FOLDER_APPDATA, false));
  print("AppDataPath", CDQSystemInfo::GetAppDataPath(false));
  print("SharedDataPath", CDQSystemInfo::GetSharedDataPath(false));
  print("DefaultWebBrowser", CDQSystemInfo::GetDefaultWebBrowser());
  print("DefaultWebBrowserType", std::to_string(CDQSystemInfo::GetDefaultWebBrowserType()));
  print("CurrentDate", CDQSystemInfo::GetCurrentDate(dq::DATE_SHORT));
  print("TickCount", CDQSystemInfo::GetTickCount());
  print("CurrentDateTime", CDQSystemInfo::GetCurrentDateTime(dq::DATE_SHORT));
  print("FormattedDate", CDQSystemInfo::GetFormattedDate(
                             static_cast<const dq::SYSTEMTIME*>(nullptr), dq::DATE_LONG));
  print("FormattedTime", time);
  print("FormattedDateTime", CDQSystemInfo::GetFormattedDateTime(nullptr, dq::DATE_LONG));
  print("MilliSecPos", std::to_string(CDQSystemInfo::GetMilliSecPos(time)));
  print_truth("IsWindows95", info.IsWindows95());
  print_truth("IsWindowsNT", CDQSystemInfo::IsWindowsNT());
  print_truth("IsTerminalServer", info.IsTerminalServer());
  print_truth("IsIE4Installed", CDQSystemInfo::IsIE4Installed());
  print_truth("IsCurrentUserAdmin", CDQSystemInfo::IsCurrentUserAdmin());
  print_truth("IsSufficientResources", CDQSystemInfo::IsSufficientResources());
  return kYes;
}

const Command kSystem{
    "system", "", "Prints what the library knows of the machine and the user.",
    "Lines of a name, a tab and a value. SpecialFolderPath is the folder of application data,\n"
    "Formatted... are the present time with the long date, and MilliSecPos is that of\n"
    "FormattedTime.\n",
    RunSystem};

}  // namespace
}  // namespace dqtool
