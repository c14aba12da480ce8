// How a store's journal is folded into a new snapshot.

#include <algorithm>
#include <cerrno>
#include <exception>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

#include "dqlib/platform/posix/file_replacement.h"
#include "dqlib/platform/posix/registry_store.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {

bool RegistryStore::HasGrown() const {
  return end_ > std::max({kFoldSize, snapshot_size_, next_fold_});
}

Error RegistryStore::Fold() try {
  if (const Error error = CheckSnapshot(); !error.ok()) return error;
  if (const Error error = KeepDamaged(); !error.ok()) return error;
  TellOfDamage();
  if (const Error error = WriteSnapshotFile(); !error.ok()) return error;
  if (const Error error = CheckJournalIsInPlace(); !error.ok()) {
    // Who has begun another may not have seen this snapshot.
    must_fold_ = true;
    return error;
  }
  if (const Error error = EmptyJournal(); !error.ok()) return error;
  damage_ = {};
  must_fold_ = false;
  has_merged_ = false;
  next_fold_ = 0;
  return {};
} catch (const std::exception&) {
  // The change before it is made all the same.
  return ErrorOfException();
}

Error RegistryStore::CheckSnapshot() {
  if (damage_.snapshot.is_found) return {};
  FileDescriptor file;
  const Result<struct stat> opened = OpenStoreFile(calls_, FilePath(kSnapshot), O_RDONLY, file);
  // One that is gone takes nothing with it that the tree hasn't got.
  if (opened.error.code == ENOENT) return {};
  if (!opened.ok()) return opened.error;
  std::string head;
  const Error error = ReadFullyAt(calls_, file.get(), kSnapshotHeadSize, 0, head);
  if (!error.ok()) return error;
  const std::optional<SnapshotEpochs> epochs = FindSnapshotEpochs(head);
  // It may be that of a fold of this journal which was broken off.
  const bool is_known = epochs ? epochs->epoch == snapshot_epoch_ || epochs->folded_epoch == epoch_
                               : snapshot_epoch_ == 0;
  if (!is_known) damage_.snapshot.Set(true, false, true);
  return {};
}

Error RegistryStore::CheckJournalIsInPlace() const {
  const Result<JournalFile::Status> status = journal_.GetStatus();
  if (!status.ok()) return status.error;
  return status.value.displaced ? ErrorFromErrno(kDisplaced) : Error{};
}

Result<struct stat> RegistryStore::OwnerOfSnapshot() const {
  struct stat status;
  if (calls_.LinkStatus(FilePath(kSnapshot).c_str(), &status) != 0) {
    if (errno != ENOENT) return ErrorFromErrno(errno);
    if (calls_.Status(FilePath(kJournal).c_str(), &status) != 0) {
      return ErrorFromErrno(errno == ENOENT ? kDisplaced : errno);
    }
  }
  status.st_mode = S_ISREG(status.st_mode) ? status.st_mode & kUserOnly : kUserOnly;
  return status;
}

Error RegistryStore::GiveTo(const struct stat& owner, int fd) {
  if (::geteuid() != 0 || owner.st_uid == 0) return {};
  return calls_.ChangeOwner(fd, owner.st_uid, owner.st_gid) == 0 ? Error{} : ErrorFromErrno(errno);
}

std::uint64_t RegistryStore::NextEpoch() const {
  // Others at the end of this epoch have the same tree, unless it has been merged: then nobody has.
  return has_merged_ ? epoch_ + 2 : epoch_ + 1;
}

Error RegistryStore::WriteSnapshotFile() {
  DecodeTree();
  const Result<struct stat> owner = OwnerOfSnapshot();
  if (!owner.ok()) return owner.error;
  // Under a name that is made up, because others may have made a file of any that is known.
  const Replacement replacement{.target = FilePath(kSnapshot),
                                .temporary = {},
                                .stem = TemporaryStem(),
                                .old = owner.value,
                                .mode = kUserOnly,
                                // Others may have begun a journal in the place of a displaced one,
                                // and folded it: their snapshot has what this one lacks.
                                .permission = [&] { return CheckJournalIsInPlace(); }};
  std::uint64_t size = 0;
  const SnapshotEpochs epochs{FreshNumber(), epoch_, end_, NextEpoch()};
  // The journal must not be emptied before the disk has the snapshot under its name.
  const Error error = ReplaceFile(calls_, replacement, [&](int fd) -> Error {
    // An administrator's snapshot would lock out the user whose settings they are.
    if (const Error given = GiveTo(owner.value, fd); !given.ok()) return given;
    return WriteSnapshot(*tree_, names_.root, epochs, [&](std::string_view piece) {
      size += piece.size();
      // It could be written, but not read again.
      return size > kMaxStoreFile ? ErrorFromErrno(EFBIG) : WriteFully(calls_, fd, piece);
    });
  });
  if (!error.ok()) return error;
  snapshot_size_ = size;
  snapshot_epoch_ = epochs.epoch;
  directory_needs_sync_ = false;
  return {};
}

Error RegistryStore::EmptyJournal() {
  const JournalHeader header{.epoch = NextEpoch(),
                             .former_epoch = has_merged_ ? merged_epoch_ : epoch_,
                             .former_size = has_merged_ ? merged_end_ : end_,
                             .snapshot_epoch = snapshot_epoch_};
  if (must_fold_) {
    // There may be no header whose generation could be counted up.
    if (const Error error = WriteHeader(header); !error.ok()) return error;
  } else if (const Error error = AnnounceChange(); !error.ok()) {
    return error;
  } else {
    const std::uint64_t generation = seen_generation_;
    const Error written = journal_.Write(0, EncodeJournalHeader(header, generation));
    if (!written.ok()) {
      // The snapshot has all records, and those to come stand behind them. A header that is torn
      // now, and can't be written again either, is found to be damaged and its epoch in the
      // records.
      static_cast<void>(journal_.Write(0, EncodeJournalHeader({.epoch = epoch_}, generation)));
      return written;
    }
  }
  epoch_ = header.epoch;
  end_ = kJournalHeaderSize;
  // Records that stay are none of this epoch, and the next writer cuts them off.
  journal_.Truncate(end_);
  // Lost, this leaves the old journal, all of which the snapshot has.
  needs_sync_ = !journal_.Sync().ok();
  return {};
}

void RegistryStore::Repair() {
  const bool is_kept = journal_.is_writable() && KeepDamaged().ok();
  TellOfDamage();
  // Everything is in the tree; if the files can't be written now, the next fold writes them.
  if (is_kept) static_cast<void>(Fold());
}

Error RegistryStore::KeepDamaged() {
  return damage_.Keep(calls_, FilePath(kSnapshot), FilePath(kJournal));
}

void RegistryStore::TellOfDamage() {
  damage_.Tell(FilePath(kSnapshot), FilePath(kJournal), notices_);
}

}  // namespace dq::platform::posix
