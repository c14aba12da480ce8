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

int RunSystem(const Arguments& arguments) {
  const CDQSystemInfo info;
  Fields facts;
  const auto add = [&facts](const char* name, const dq::CString& value) {
    facts.emplace_back(name, value.View());
  };
  const auto add_value = [&facts](const char* name, const Value& value) {
    facts.emplace_back(name, value);
  };
  const dq::CString time = CDQSystemInfo::GetFormattedTime(nullptr, true);

  add("OSVersionInfo", VersionText(info.GetOSVersionInfo()));
  add("UserName", CDQSystemInfo::GetUserName());
  add("ComputerName", CDQSystemInfo::GetComputerName());
  add("HostName", CDQSystemInfo::GetHostName());
  add("SpecialFolderPath", CDQSystemInfo::GetSpecialFolderPath(dq::FOLDER_APPDATA, false));
  add("AppDataPath", CDQSystemInfo::GetAppDataPath(false));
  add("SharedDataPath", CDQSystemInfo::GetSharedDataPath(false));
  add("DefaultWebBrowser", CDQSystemInfo::GetDefaultWebBrowser());
  add_value("DefaultWebBrowserType", int{CDQSystemInfo::GetDefaultWebBrowserType()});
  add("CurrentDate", CDQSystemInfo::GetCurrentDate(dq::DATE_SHORT));
  add("TickCount", CDQSystemInfo::GetTickCount());
  add("CurrentDateTime", CDQSystemInfo::GetCurrentDateTime(dq::DATE_SHORT));
  add("FormattedDate",
      CDQSystemInfo::GetFormattedDate(static_cast<const dq::SYSTEMTIME*>(nullptr), dq::DATE_LONG));
  add("FormattedTime", time);
  add("FormattedDateTime", CDQSystemInfo::GetFormattedDateTime(nullptr, dq::DATE_LONG));
  add_value("MilliSecPos", int{CDQSystemInfo::GetMilliSecPos(time)});
  add_value("IsWindows95", info.IsWindows95());
  add_value("IsWindowsNT", CDQSystemInfo::IsWindowsNT());
  add_value("IsTerminalServer", info.IsTerminalServer());
  add_value("IsIE4Installed", CDQSystemInfo::IsIE4Installed());
  add_value("IsCurrentUserAdmin", CDQSystemInfo::IsCurrentUserAdmin());
  add_value("IsSufficientResources", CDQSystemInfo::IsSufficientResources());
  return PrintFacts(arguments, facts);
}

const Command kSystem{
    "system",
    "Prints what the library knows of the machine and the user.",
    "Lines of a name, a tab and a value. SpecialFolderPath is the folder of application data,\n"
    "Formatted... are the present time with the long date, and MilliSecPos is that of\n"
    "FormattedTime.\n"
    "\n"
    "JSON: one object, with the names of the lines.\n",
    {{"", RunSystem, {kJson}}}};

}  // namespace
}  // namespace dqtool
