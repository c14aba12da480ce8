#include "dqlib/platform/shell.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "dqlib/platform/ascii.h"
#include "dqlib/platform/posix/desktop_command.h"
#include "dqlib/platform/posix/native_path.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/profile_text.h"

namespace dq::platform::posix {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kLinkFile = ".desktop";
/// Link files are a few lines.
constexpr std::uint64_t kLongestLinkFile = 65'536;
/// The commands that print, whichever the system has.
constexpr const char* kPrintCommands[] = {"lp", "lpr"};

bool IsLetter(char character) {
  const char lower = AsciiLower(character);
  return lower >= 'a' && lower <= 'z';
}

/// A scheme of two letters or more and a colon: one letter would be a drive.
bool IsAddress(std::string_view target) {
  const std::size_t colon = target.find(':');
  if (colon == std::string_view::npos || colon < 2 || !IsLetter(target.front())) return false;
  return std::ranges::all_of(target.substr(0, colon), [](char each) {
    return IsLetter(each) || (each >= '0' && each <= '9') || each == '+' || each == '-' ||
           each == '.';
  });
}

Error Print(const std::string& path) {
  for (const char* const command : kPrintCommands) {
    const Result<std::optional<int>> ended = RunCommand({command, path});
    if (ended.error.kind == ErrorKind::kUnsupported) continue;
    if (!ended.ok()) return ended.error;
    return ended.value.value_or(0) == 0 ? Error() : Error{ErrorKind::kOther, EIO};
  }
  return ErrorFromErrno(ENOSYS);
}

int HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  const char lower = AsciiLower(digit);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// "%20" and the like as the bytes they stand for; another "%" stands for itself.
std::string Decoded(std::string_view text) {
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const int high = text[at] == '%' && at + 2 < text.size() ? HexDigit(text[at + 1]) : -1;
    const int low = high < 0 ? -1 : HexDigit(text[at + 2]);
    decoded += low < 0 ? text[at] : static_cast<char>(high * 16 + low);
    if (low >= 0) at += 2;
  }
  return decoded;
}

/// The path that the address of a file of this machine has; "" for other addresses.
std::string PathOfAddress(std::string_view address) {
  for (const std::string_view head : {"file://localhost/", "file:///", "file:/"}) {
    if (EqualIgnoringCase(address.substr(0, head.size()), head)) {
      return Decoded(address.substr(head.size() - 1));
    }
  }
  return address.starts_with('/') ? std::string(address) : std::string();
}

/// What a link file leads to; "" if it isn't one that leads to a file.
Result<std::string> TargetOfLinkFile(const std::string& path) {
  Files& files = SystemFiles();
  const Result<FileStatus> status = files.Status(path);
  if (!status.ok()) return status.error;
  if ((status.value.attributes & FILE_ARCHIVE) == 0 || status.value.size > kLongestLinkFile) {
    return std::string();
  }
  std::string text;
  if (const Error error = files.ReadAll(path, text); !error.ok()) return error;
  const auto value = [&text](std::string_view key) {
    return FindProfileValue(text, "Desktop Entry", key).value_or("");
  };
  return value("Type") == "Link" ? PathOfAddress(value("URL")) : std::string();
}

class DesktopShell final : public Shell {
 public:
  Error Execute(ShellVerb verb, std::string_view target) override try {
    if (IsAddress(target)) {
      if (verb != ShellVerb::kOpen) return ErrorFromErrno(ENOSYS);
      return RunDesktopCommand({"xdg-open", std::string(target)});
    }
    const Result<std::string> path = AbsolutePath(target);
    if (!path.ok()) return path.error;
    std::error_code error;
    const fs::file_status status = fs::status(path.value, error);
    if (!exists(status)) return ErrorFromErrno(error ? error.value() : ENOENT);
    if (verb == ShellVerb::kPrint) return Print(path.value);
    if (verb == ShellVerb::kExplore && !is_directory(status)) return ErrorFromErrno(ENOTDIR);
    return RunDesktopCommand({"xdg-open", path.value});
  } catch (const std::exception&) {
    return ErrorOfException();
  }

  Result<std::string> ShortcutTarget(std::string_view path) override try {
    const Result<std::string> absolute = AbsolutePath(path);
    if (!absolute.ok()) return absolute.error;
    std::error_code error;
    const bool is_link = is_symlink(fs::symlink_status(absolute.value, error));
    std::string document = absolute.value;
    if (is_link) document = fs::canonical(document, error).string();
    if (error) return ErrorFromErrno(error.value());
    const std::size_t name_end = document.size() - std::min(document.size(), kLinkFile.size());
    if (!EqualIgnoringCase(std::string_view(document).substr(name_end), kLinkFile)) {
      return is_link ? document : std::string();
    }
    Result<std::string> target = TargetOfLinkFile(document);
    if (target.ok() && target.value.empty() && is_link) target.value = document;
    return target;
  } catch (const std::exception&) {
    return ErrorOfException();
  }
};

}  // namespace

Shell& SystemShell() {
  static DesktopShell& shell = *new DesktopShell;
  return shell;
}

}  // namespace dq::platform::posix
