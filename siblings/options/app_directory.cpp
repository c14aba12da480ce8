// The directories that options name.

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"
#include "siblings/options/options_server.h"

namespace dq {
namespace {

/// Where the application keeps files of the user; "" if the user has no such place.
std::string ApplicationData() {
  std::string directory = platform::Current().system_facts->FolderPath(FOLDER_APPDATA);
  const CWinApp* const app = AfxGetApp();
  if (directory.empty() || app == nullptr) return directory;
  std::string name = app->GetAppName();
  std::erase_if(name,
                [](char each) { return multi_byte::IsSpace(static_cast<unsigned char>(each)); });
  directory = platform::JoinPath(directory, app->GetRegistryKeyName());
  return platform::JoinPath(directory, name);
}

/// Makes a directory with all that lead to it. True if it exists then.
bool MakeDirectories(std::string_view path) {
  platform::Files& files = *platform::Current().files;
  const auto exists = [&] {
    const auto status = files.Status(path);
    return status.ok() && (status.value.attributes & FILE_DIRECTORY) != 0;
  };
  if (exists()) return true;
  for (std::size_t end = 0; end < path.size();) {
    end = std::min(platform::FindSeparator(path, end + 1), path.size());
    // Those that lead to it may exist already; whether the last one does is asked in the end.
    files.MakeDirectory(path.substr(0, end));
  }
  return exists();
}

void TellNotMade(const char* label, const std::string& directory) {
  CString message;
  message.Format(IDS_DIRECTORY_NOT_CREATED, directory.c_str());
  if (label != nullptr && *label != '\0') message = CString(label) + ":\n" + message;
  AfxMessageBox(message, BOX_EXCLAMATION);
}

}  // namespace

CString CDQOptionsServer::GetAppDirectory(int id, const char* subdirectory, const char* label,
                                          bool create) {
  std::string directory(ResolveVariableString(GetString(id)).View());
  if (directory.empty()) {
    directory = ApplicationData();
    if (directory.empty()) return {};
    if (subdirectory != nullptr && *subdirectory != '\0') {
      directory = platform::JoinPath(directory, subdirectory);
    }
  }
  if (!platform::IsSeparator(directory.back())) directory += platform::SeparatorFor(directory);
  if (create && !MakeDirectories(directory)) {
    TellNotMade(label, directory);
    return {};
  }
  return CString(std::move(directory));
}

}  // namespace dq
