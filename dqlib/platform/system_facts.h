// Facts about the machine and its user.

#pragma once

#include <string>

#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dq {

/// Numbers of special folders.
enum SpecialFolder : int {
  FOLDER_DESKTOP = 0,
  FOLDER_PROGRAMS = 2,
  FOLDER_PERSONAL = 5,
  FOLDER_STARTUP = 7,
  FOLDER_TEMPLATES = 21,
  FOLDER_APPDATA = 26,  ///< The user's application data.
  FOLDER_LOCAL_APPDATA = 28,
  FOLDER_COMMON_APPDATA = 35,
  FOLDER_PROFILE = 40,
};

namespace platform {

/// The operating system's version.
struct SystemVersion {
  DWORD major = 0;
  DWORD minor = 0;
  DWORD build = 0;
};

/// Facts about the machine and its user. Any thread.
class SystemFacts {
 public:
  SystemFacts() = default;
  SystemFacts(const SystemFacts&) = delete;
  SystemFacts& operator=(const SystemFacts&) = delete;
  virtual ~SystemFacts();

  /// The screen's pixels per inch, downwards; at least 1.
  virtual int VerticalPixelsPerInch() = 0;

  virtual Result<SystemVersion> Version() = 0;

  /// Names as the system has them; the machine's without its domain, the host's with it if
  /// the system keeps it so. Answers at once, without the network.
  virtual std::string UserName() = 0;
  virtual std::string ComputerName() = 0;
  virtual std::string HostName() = 0;

  /// True if the user may do everything on this machine.
  virtual bool IsAdministrator() = 0;

  /// Path of a folder by `SpecialFolder`, without a separator at its end; "" if there is none with
  /// the number. It need not exist.
  virtual std::string FolderPath(int folder) = 0;

  /// The command line of the program that the user opens web addresses with; "" if none is set.
  virtual std::string WebBrowserCommand() = 0;

  /// Path of the program in which the user types commands at a terminal; "" if none is known.
  virtual std::string UserShell() = 0;
};

}  // namespace platform
}  // namespace dq
