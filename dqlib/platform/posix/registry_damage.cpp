#include "dqlib/platform/posix/registry_damage.h"

#include <exception>
#include <fcntl.h>
#include <utility>

#include "dqlib/platform/posix/file_replacement.h"
#include "dqlib/platform/posix/registry_journal_file.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

constexpr int kMaxCopies = 1000;

Result<std::string> KeepCopy(SystemCalls& calls, const std::string& path) {
  FileDescriptor file;
  const Result<struct stat> opened = OpenStoreFile(calls, path, O_RDONLY, file);
  if (!opened.ok()) return opened.error;
  std::string bytes;
  const Error error =
      ReadFullyAt(calls, file.get(), static_cast<std::size_t>(opened.value.st_size), 0, bytes);
  if (!error.ok()) return error;
  return KeepBeside(calls, path + ".bad", [&](int fd) { return WriteFully(calls, fd, bytes); });
}

Error KeepFile(SystemCalls& calls, const std::string& path, FileDamage& damage) {
  if (!damage.is_found || damage.is_gone || !damage.copy.empty()) return {};
  Result<std::string> copy = KeepCopy(calls, path);
  if (copy.ok()) damage.copy = std::move(copy.value);
  return copy.error;
}

/// A notice of the damaged file; `left` and `kept` say where it is without and with a copy.
Notice NoticeOf(SeamTextId text, const std::string& path, const FileDamage& damage, SeamTextId left,
                SeamTextId kept) {
  const SeamTextId whereabouts = damage.copy.empty() ? left : kept;
  return {text, path, damage.is_gone ? IDS_NOTHING_TO_KEEP : whereabouts, damage.copy};
}

}  // namespace

std::string Notice::Text() const {
  const std::string second = whereabouts ? Filled(platform::Text(*whereabouts), {copy}) : "";
  return Filled(platform::Text(text), {path, second, third, fourth});
}

void FileDamage::Set(bool found, bool gone, bool foreign) {
  if (!found) {
    *this = {};
    return;
  }
  is_found = true;
  is_gone = gone;
  is_foreign = foreign;
}

Error StoreDamage::Keep(SystemCalls& calls, const std::string& snapshot_path,
                        const std::string& journal_path) {
  const Error error = KeepFile(calls, snapshot_path, snapshot);
  return error.ok() ? KeepFile(calls, journal_path, journal) : error;
}

void StoreDamage::Tell(const std::string& snapshot_path, const std::string& journal_path,
                       std::vector<Notice>& notices) {
  const auto is_news = [](const FileDamage& damage) { return damage.is_found && !damage.is_told; };
  if (is_news(snapshot) && snapshot.is_foreign) {
    notices.push_back(NoticeOf(IDS_SETTINGS_REPLACED, snapshot_path, snapshot, IDS_REPLACED_LEFT,
                               IDS_REPLACED_KEPT));
  } else if (is_news(snapshot)) {
    notices.push_back(NoticeOf(snapshot.is_gone ? IDS_SETTINGS_MISSING : IDS_SETTINGS_DAMAGED,
                               snapshot_path, snapshot, IDS_DAMAGED_LEFT, IDS_DAMAGED_KEPT));
    notices.back().third = std::to_string(values_kept);
    notices.back().fourth = std::to_string(lines_lost);
  }
  if (is_news(journal) && journal.is_foreign) {
    notices.push_back(
        NoticeOf(IDS_LATEST_OF_OTHER_TIME, journal_path, journal, IDS_OTHER_LEFT, IDS_OTHER_KEPT));
    notices.back().third = snapshot_path;
  } else if (is_news(journal)) {
    notices.push_back(NoticeOf(journal.is_gone ? IDS_LATEST_MISSING : IDS_LATEST_DAMAGED,
                               journal_path, journal, IDS_DAMAGED_LEFT, IDS_DAMAGED_KEPT));
  }
  snapshot.is_told = snapshot.is_found;
  journal.is_told = journal.is_found;
}

Result<std::string> KeepBeside(SystemCalls& calls, const std::string& name,
                               const std::function<Error(int fd)>& write) {
  for (int number = 0; number < kMaxCopies; ++number) {
    std::string path = name;
    if (number > 0) path += "." + std::to_string(number);
    const Result<int> fd = OpenFile(calls, path, O_WRONLY | O_CREAT | O_EXCL, kUserOnly);
    if (fd.error.kind == ErrorKind::kAlreadyExists) continue;
    if (!fd.ok()) return fd.error;
    const FileDescriptor file(calls, fd.value);
    Error error;
    try {
      error = GiveToOwnerOf(calls, file.get(), DirectoryOf(path));
      if (error.ok()) error = write(file.get());
    } catch (const std::exception&) {
      error = ErrorOfException();
    }
    if (error.ok()) error = SyncFile(calls, file.get());
    if (error.ok()) return path;
    // What it was to keep is still in its place; part of it is of no use.
    static_cast<void>(calls.Unlink(path.c_str()));
    return error;
  }
  return ErrorFromErrno(EEXIST);
}

}  // namespace dq::platform::posix
