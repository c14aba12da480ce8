#include "dqlib/platform/system_facts.h"

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <pwd.h>
#include <sstream>
#include <string_view>
#include <sys/utsname.h>
#include <unistd.h>
#include <vector>

#include "dqlib/platform/posix/system_calls.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// The user's entry in the list of users: name or home directory.
std::string UserEntry(char* passwd::*field) {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 ||
      found == nullptr) {
    return {};
  }
  return found->*field;
}

std::string Home() {
  const std::string home = Variable("HOME");
  return home.empty() ? UserEntry(&passwd::pw_dir) : home;
}

/// A directory below the user's; "" for a user without one.
std::string BelowHome(std::string_view below) {
  const std::string home = Home();
  return home.empty() ? home : home + std::string(below);
}

/// Where the desktop's data lie if nothing else is said.
constexpr char kDataDirectories[] = "/usr/local/share:/usr/share";

std::string WithoutLastSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

/// A directory of the desktop's base directory rules, which count only absolute paths.
std::string BaseDirectory(const char* variable, const char* below_home) {
  const std::string path = Variable(variable);
  return path.starts_with('/') ? WithoutLastSlashes(path) : BelowHome(below_home);
}

/// An entry of a directory; "" without the directory.
std::string Below(const std::string& directory, const char* entry) {
  return directory.empty() ? directory : directory + entry;
}

std::string ConfigDirectory() { return BaseDirectory("XDG_CONFIG_HOME", "/.config"); }
std::string DataDirectory() { return BaseDirectory("XDG_DATA_HOME", "/.local/share"); }

/// A list of directories with colons between them; never empty.
std::vector<std::string> DirectoryList(const char* variable, const char* fallback) {
  std::vector<std::string> directories;
  for (const std::string& list : {Variable(variable), std::string(fallback)}) {
    if (!directories.empty()) break;
    std::istringstream stream(list);
    for (std::string directory; std::getline(stream, directory, ':');) {
      if (directory.starts_with('/')) directories.push_back(WithoutLastSlashes(directory));
    }
  }
  return directories;
}

/// The value of `key` in a file of lines `key=value`; with a section, only below its `[section]`.
std::string ReadKey(const std::string& path, const std::string& section, const std::string& key) {
  // One that can't be read says as little as one that isn't there.
  std::istringstream file(ReadText(RealSystemCalls(), path).value);
  bool inside = section.empty();
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('[')) inside = line == section;
    if (!inside || !line.starts_with(key)) continue;
    const std::size_t equals = line.find_first_not_of(' ', key.size());
    if (equals == line.npos || line[equals] != '=') continue;
    const std::size_t value = line.find_first_not_of(' ', equals + 1);
    return value == line.npos ? std::string() : line.substr(value);
  }
  return {};
}

/// A folder of the user's own that the desktop keeps a list of: `NAME="$HOME/Folder"`.
std::string UserFolder(const char* name, const char* below_home) {
  std::string value = ReadKey(ConfigDirectory() + "/user-dirs.dirs", "", name);
  if (value.size() > 2 && value.front() == '"' && value.back() == '"') {
    value = value.substr(1, value.size() - 2);
    if (value.starts_with("$HOME/") || value == "$HOME")
      value = BelowHome(std::string_view(value).substr(5));
    while (value.size() > 1 && value.back() == '/') value.pop_back();
    if (value.starts_with('/')) return value;
  }
  return BelowHome(below_home);
}

/// The command of a program's desktop entry, without the places for what it is to open.
std::string DesktopCommand(const std::string& entry) {
  std::vector<std::string> directories = DirectoryList("XDG_DATA_DIRS", kDataDirectories);
  directories.insert(directories.begin(), DataDirectory());
  for (std::string& directory : directories) {
    directory.append("/applications/").append(entry);
    std::string command = ReadKey(directory, "[Desktop Entry]", "Exec");
    if (command.empty()) continue;
    for (std::size_t place = command.find('%'); place != command.npos;
         place = command.find('%', place)) {
      const bool literal = command.compare(place, 2, "%%") == 0;
      command.erase(place, literal ? 1 : 2);
      if (literal) ++place;
    }
    while (!command.empty() && command.back() == ' ') command.pop_back();
    return command;
  }
  return {};
}

/// Without a window system there is no screen to ask; resolution and colours are those that
/// desktops start from. A host with a screen puts its own service in place.
class PosixFacts : public SystemFacts {
 public:
  int VerticalPixelsPerInch() override { return 96; }

  Result<SystemVersion> Version() override try {
    utsname name{};
    if (uname(&name) != 0) return ErrorFromErrno(errno);
    SystemVersion version;
    std::istringstream release(name.release);
    char dot = 0;
    release >> version.major >> dot >> version.minor >> dot >> version.build;
    return version;
  } catch (const std::exception&) {
    return ErrorOfException();
  }

  std::string UserName() override {
    const std::string name = UserEntry(&passwd::pw_name);
    return name.empty() ? std::to_string(geteuid()) : name;
  }

  std::string ComputerName() override {
    const std::string name = NodeName();
    return name.substr(0, name.find('.'));
  }

  std::string HostName() override {
    // The network's own idea of the name would be worth a wait for a name server.
    return NodeName();
  }

  bool IsAdministrator() override { return geteuid() == 0; }

  std::string FolderPath(int folder) override {
    switch (folder) {
      case FOLDER_DESKTOP:
        return UserFolder("XDG_DESKTOP_DIR", "/Desktop");
      case FOLDER_PROGRAMS:
        return Below(DataDirectory(), "/applications");
      case FOLDER_PERSONAL:
        return UserFolder("XDG_DOCUMENTS_DIR", "/Documents");
      case FOLDER_STARTUP:
        return Below(ConfigDirectory(), "/autostart");
      case FOLDER_TEMPLATES:
        return UserFolder("XDG_TEMPLATES_DIR", "/Templates");
      case FOLDER_APPDATA:
        return ConfigDirectory();
      case FOLDER_LOCAL_APPDATA:
        return DataDirectory();
      case FOLDER_COMMON_APPDATA:
        return DirectoryList("XDG_CONFIG_DIRS", "/etc/xdg").front();
      case FOLDER_PROFILE:
        return Home();
      default:
        return {};
    }
  }

  std::string WebBrowserCommand() override {
    std::vector<std::string> directories = DirectoryList("XDG_CONFIG_DIRS", "/etc/xdg");
    directories.insert(directories.begin(), ConfigDirectory());
    directories.push_back(Below(DataDirectory(), "/applications"));
    for (const std::string& data : DirectoryList("XDG_DATA_DIRS", kDataDirectories)) {
      directories.push_back(Below(data, "/applications"));
    }
    for (const std::string& directory : directories) {
      // The first program of the list that is installed is the one.
      std::istringstream entries(ReadKey(Below(directory, "/mimeapps.list"),
                                         "[Default Applications]", "x-scheme-handler/http"));
      for (std::string entry; std::getline(entries, entry, ';');) {
        std::string command = DesktopCommand(entry);
        if (!command.empty()) return command;
      }
    }
    return Variable("BROWSER");
  }

  std::string UserShell() override {
    std::string shell = Variable("SHELL");
    if (shell.empty()) shell = UserEntry(&passwd::pw_shell);
    // What users have who have nothing else.
    return shell.empty() ? "/bin/sh" : shell;
  }

 private:
  static std::string NodeName() {
    utsname name{};
    return uname(&name) == 0 ? name.nodename : "localhost";
  }
};

}  // namespace

SystemFacts& SystemFactsService() {
  static PosixFacts& facts = *new PosixFacts;
  return facts;
}

}  // namespace dq::platform::posix
