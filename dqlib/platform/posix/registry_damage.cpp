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

/// Where the file is that was damaged, or whatever `what` calls it.
std::string KeptAs(const FileDamage& damage, const std::string& what) {
  if (damage.is_gone) return "There was nothing of the file to keep.";
  return "The " + what + " file " +
         (damage.copy.empty() ? "is still in its place." : "has been kept as " + damage.copy + ".");
}

}  // namespace

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
                       std::vector<std::string>& notices) {
  const auto is_news = [](const FileDamage& damage) { return damage.is_found && !damage.is_told; };
  if (is_news(snapshot) && snapshot.is_foreign) {
    notices.push_back("The file " + snapshot_path +
                      " of your settings was replaced while a program used it, by one of another "
                      "time. The settings that the program knew hold.\n\n" +
                      KeptAs(snapshot, "replaced"));
  } else if (is_news(snapshot)) {
    notices.push_back("The file " + snapshot_path + " of your settings was " +
                      (snapshot.is_gone ? "missing" : "damaged") +
                      ". What could be read of it is kept: " + std::to_string(values_kept) +
                      " values. " + std::to_string(lines_lost) + " lines could not be read.\n\n" +
                      KeptAs(snapshot, "damaged"));
  }
  if (is_news(journal) && journal.is_foreign) {
    notices.push_back("The file " + journal_path + " of your latest settings and the file " +
                      snapshot_path +
                      " are of different times, as if one of them came from a backup. The settings "
                      "of " +
                      snapshot_path + " hold, and none of the other file is mixed into them.\n\n" +
                      KeptAs(journal, "other"));
  } else if (is_news(journal)) {
    notices.push_back("The file " + journal_path + " of your latest settings was " +
                      (journal.is_gone ? "missing" : "damaged") +
                      ". The changes that could be read of it, or that this program knew, are "
                      "kept.\n\n" +
                      KeptAs(journal, "damaged"));
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
