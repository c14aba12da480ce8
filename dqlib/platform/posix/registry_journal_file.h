// The open journal of a registry root: its lock, its generation and its bytes.

#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "dqlib/platform/error.h"
#include "dqlib/platform/posix/lock_patience.h"
#include "dqlib/platform/posix/registry_journal.h"
#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// The largest file that a store reads or writes.
inline constexpr std::uint64_t kMaxStoreFile = std::uint64_t{1} << 30;

/// Opens a file of a store, and takes from it all rights but the user's to read and write. Fails
/// with `kInvalidArgument` for what is no ordinary file, and with `kOther` for a larger one than
/// any store has; `file` is the open file otherwise.
Result<struct stat> OpenStoreFile(SystemCalls& calls, const std::string& path, int flags,
                                  FileDescriptor& file);

/// One opening of a journal. The file stays the same as long as the store lives: it is emptied and
/// never replaced, so that its lock and its mapped generation mean the same to everyone. If someone
/// else removes it, those who have it open still share it.
///
/// One thread at a time, except `Generation`, which any thread may call while no other opens or
/// closes the file.
class JournalFile {
 public:
  JournalFile(SystemCalls& calls, LockPatience& patience) : calls_(calls), patience_(patience) {}
  JournalFile(const JournalFile&) = delete;
  JournalFile& operator=(const JournalFile&) = delete;
  ~JournalFile();

  /// Opens the file.
  Error Open(const std::string& path, bool writable);
  /// Opens it for writing, and makes it if it isn't there, for the owner of its directory.
  Error Make(const std::string& path);
  /// Closes it, which gives back its lock too.
  void Close();
  /// Gives up the file with its lock to `other`, which is closed first.
  void MoveTo(JournalFile& other);
  bool is_open() const { return file_.is_open(); }
  bool is_writable() const { return writable_; }

  /// Waits until nobody else has the journal, or until nobody writes it where it can only be read;
  /// at the deadline `kBusy`.
  Error Lock(std::chrono::nanoseconds deadline);
  Error Unlock();

  struct Status {
    std::uint64_t size = 0;
    /// Someone deleted or moved the file, or put another in its place: what is written to it is
    /// seen only by those who have it open.
    bool displaced = false;
  };
  Result<Status> GetStatus() const;

  /// Tells all who have a displaced file open, whose lock is held, that another journal has all of
  /// it now; or asks whether that is so.
  Error SetTakenOver(std::uint64_t size);
  Result<bool> IsTakenOver(std::uint64_t size) const;

  /// Makes the generation readable without a system call, where the system can. The file must have
  /// its header. Should someone cut the file short later, the generation reads as 0.
  void MapGeneration();
  /// The number that tells whether others have changed the file; needs no lock. 0 if it can't be
  /// read, which is no generation.
  std::uint64_t Generation() const;
  /// Tells the others that a change comes. Only with the lock.
  Error SetGeneration(std::uint64_t generation);

  Error Read(std::uint64_t place, std::uint64_t size, std::string& bytes) const;
  Error Write(std::uint64_t place, std::string_view bytes);
  /// Cuts off what is behind. What stays because that can't be done is read as the end of a write
  /// that was never reported.
  void Truncate(std::uint64_t size);
  Error Sync();

 private:
  void UnmapGeneration();
  std::uint64_t MappedGeneration() const;

  SystemCalls& calls_;
  LockPatience& patience_;
  FileDescriptor file_;
  std::string path_;
  bool writable_ = false;
  /// The first page of the file, or null.
  void* page_ = nullptr;
};

}  // namespace dq::platform::posix
