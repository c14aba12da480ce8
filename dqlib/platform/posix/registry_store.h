// One root of the registry, kept in files: a snapshot and a journal of the changes since.
//
// The state is that of the snapshot with the journal replayed over it. A change is one record,
// appended in one write under the journal's lock; it is reported only then, so that it survives the
// death of the process. Every change first counts up the generation in the journal's header, which
// all others watch through a mapping, so that they notice it at their next call without asking the
// system. When the journal has grown it is folded: a new snapshot is written beside the old one,
// synced and renamed over it, and the journal is emptied under a new epoch. Death at any moment of
// that leaves a snapshot and a journal that give the same state.
//
// A journal that was deleted, moved or replaced is still shared by those who have it open. Whoever
// of them notices first, under its lock, reads it to its end, puts all of it into the journal that
// is at the path now, and marks the old one as taken over; the others find the mark and load. So
// it doesn't matter who of them knew how much, nor what was begun anew meanwhile. A journal that
// was begun anew and never folded has all changes since, which go on top. Where it has been folded,
// both states are united: the newer file's values stand, the older state is kept as a file beside,
// and the person is told.
//
// Files that are damaged, cut short or deleted from outside are no reason to forget anything: what
// can still be read is kept, a store that has the changes in memory writes them back, the damaged
// file stays beside the new one as a copy, and the person is told.

#pragma once

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/error.h"
#include "dqlib/platform/posix/lock_patience.h"
#include "dqlib/platform/posix/registry_damage.h"
#include "dqlib/platform/posix/registry_journal.h"
#include "dqlib/platform/posix/registry_journal_file.h"
#include "dqlib/platform/posix/registry_snapshot.h"
#include "dqlib/platform/posix/registry_tree.h"
#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// Where a store's files lie and what its root is called.
struct RegistryStoreNames {
  std::string directory;
  /// Without extension.
  std::string file;
  std::string root;
};

/// The files of one root and the tree they hold. Any thread.
///
/// The tree is guarded by a mutex of the owner's, which guards the owner's references into the tree
/// as well: whoever reads the tree holds it, and the store holds it while it changes the tree. It
/// is never held during a system call other than a read of the generation.
class RegistryStore {
 public:
  /// Called with the mutex held when the tree is another one from now on.
  using TreeReplaced = std::function<void(RegistryTree& from, RegistryTree& to)>;
  /// Called when the tree is up to date and no one else can change it, without the mutex. Fills in
  /// the change to make; false if there is none to make. Texts it fills in must last until the end
  /// of `Change`.
  using Planner = std::function<Result<bool>(RegistryTree& tree, JournalChange& change)>;
  /// Called with the mutex held once the change is made.
  using Finisher = std::function<void(RegistryTree& tree)>;

  /// `patience` is shared by all stores of a registry.
  RegistryStore(SystemCalls& calls, LockPatience& patience, RegistryStoreNames names,
                std::mutex& tree_mutex, TreeReplaced tree_replaced);
  RegistryStore(const RegistryStore&) = delete;
  RegistryStore& operator=(const RegistryStore&) = delete;
  ~RegistryStore();

  /// With the mutex held.
  RegistryTree& tree() { return *tree_; }
  /// Whether the tree has everything that anyone has reported. With the mutex held.
  bool IsCurrent() const;
  /// A number that only this state of the tree has in the process; 0 unless the tree is current by
  /// the journal. With the mutex held.
  std::uint64_t Stamp();

  // Each of these waits for others' locks until its deadline, or until then not at all if that was
  // in vain shortly before; then it fails with `kBusy`.

  /// Opens the store if need be and takes in what others have changed. Makes no files where there
  /// is nothing to read.
  Error Refresh(std::chrono::nanoseconds deadline);
  Error Change(const Planner& plan, const Finisher& finish, std::chrono::nanoseconds deadline);
  /// Puts everything reported on the disk.
  Error Flush(std::chrono::nanoseconds deadline);
  /// Syncs and closes the files, folds the journal first if no one else uses it. The next call
  /// opens them again.
  Error Leave(bool last_user, std::chrono::nanoseconds deadline);

  /// What the person must be told of, each once.
  std::vector<Notice> TakeNotices();
  /// Takes back those that could not be told.
  void ReturnNotices(std::vector<Notice> notices);

 private:
  class Hold;

  static constexpr std::string_view kSnapshot = ".reg";
  static constexpr std::string_view kJournal = ".journal";
  /// A journal that is shorter isn't worth writing a snapshot for.
  static constexpr std::uint64_t kFoldSize = std::uint64_t{1} << 20;
  /// The code of an error.
  static constexpr int kDisplaced = ESTALE;
  /// A number that no earlier journal, snapshot or generation of these files had.
  static std::uint64_t FreshNumber();

  /// Runs one of the operations. One that there is no memory for leaves the files as they are and
  /// is an error.
  template <typename Work>
  Error Run(std::chrono::nanoseconds deadline, Work work);
  /// Does the work with the lock and an up-to-date tree, again if the journal it was begun with was
  /// displaced before a snapshot of it could be put in place.
  template <typename Work>
  Error WithJournal(bool writing, Work work);
  std::string FilePath(std::string_view extension) const;
  /// What the names of snapshots begin with while they are written.
  std::string TemporaryStem() const;

  /// Locks the journal and brings the tree up to date; for `writing`, the journal can be written
  /// then. `Hold` gives the lock back.
  Error Begin(bool writing);
  Error OpenUpToDate(bool writing);
  Error OpenJournal(bool writing);
  Error OpenJournalFile(bool writable);
  Error MakeJournal();
  /// For who only reads, where there is no journal and none may be made.
  Error LoadWithoutJournal();
  void CloseJournal();

  /// With the lock.
  Error Synchronise(std::uint64_t size);
  Error TakeInJournal(std::uint64_t size);
  /// How the journal goes on from what the tree has.
  enum class Sequel {
    /// From `end_` on.
    kGoesOn,
    /// The files have all that the tree has.
    kIsLater,
    /// Both have what the other one may lack.
    kIsForeign,
  };
  /// Sets from where it goes on, and `size` to 0 if nothing of the journal can be read.
  Result<Sequel> FollowHeader(std::uint64_t& size);
  Sequel Compare(const JournalHeader& header);
  /// The state of a tree that others had at the end of an epoch.
  void BeginMerge();
  bool HasState() const;
  Error WriteHeader(const JournalHeader& header);
  /// `unites`: with what the tree has and the files haven't.
  Error Load(std::uint64_t journal_size, bool unites = false);
  Error Unite(RegistryTree& loaded);
  /// Before the tree is read without the mutex, which others may do at the same time.
  void DecodeTree();
  /// With the lock of a journal that is displaced: goes over to the one at its path.
  Error TakeOver(std::uint64_t size);
  Error LoadSnapshot(LoadedSnapshot& loaded);
  Error AnnounceChange();
  Error Append(const JournalChange& change);

  bool HasGrown() const;
  /// Fails with `kDisplaced` if somebody has displaced the journal meanwhile: what is at its path
  /// now must be taken in first.
  Error Fold();
  Error CheckJournalIsInPlace() const;
  /// Finds out whether somebody has put another snapshot in the place of the one that is known.
  Error CheckSnapshot();
  /// Whose a new snapshot is, and who may read and write it: as the former one, else the journal.
  Result<struct stat> OwnerOfSnapshot() const;
  Error GiveTo(const struct stat& owner, int fd);
  /// `snapshot_epoch` is then that of the new one.
  Error WriteSnapshotFile();
  std::uint64_t NextEpoch() const;
  Error SyncAll();
  Error EmptyJournal();

  void Repair();
  Error KeepDamaged();
  void TellOfDamage();

  SystemCalls& calls_;
  LockPatience& patience_;
  const RegistryStoreNames names_;
  std::mutex& tree_mutex_;
  const TreeReplaced tree_replaced_;

  /// Guards all below; taken before the tree's mutex.
  std::mutex file_mutex_;
  /// Until when the operation that runs waits for others.
  std::chrono::nanoseconds deadline_{};
  /// Opened and closed with both mutexes held.
  JournalFile journal_;
  /// Changed with both mutexes held.
  std::unique_ptr<RegistryTree> tree_;
  /// There is no journal, and nothing or only a snapshot to read. Changed with both mutexes held.
  bool is_without_journal_ = false;
  /// The generation that the tree is up to date with; 0 for none.
  std::atomic<std::uint64_t> seen_generation_ = 0;
  /// The number that was given to the state of the tree, and the generation it was given at; 0 if
  /// the tree has changed since. Changed with the mutex held.
  std::uint64_t stamp_ = 0;
  std::uint64_t stamped_generation_ = 0;
  /// The journal that the tree is up to date with, and up to which of its bytes.
  std::uint64_t epoch_ = 0;
  std::uint64_t end_ = 0;
  bool is_loaded_ = false;
  /// The tree has what the files have lost; nothing is appended before a fold has written it.
  bool must_fold_ = false;
  /// The tree has changes that two journals had, so that no other process has the same one.
  bool has_merged_ = false;
  /// What this one's was before that.
  std::uint64_t merged_epoch_ = 0;
  std::uint64_t merged_end_ = 0;
  bool needs_sync_ = false;
  bool directory_needs_sync_ = false;
  std::uint64_t snapshot_size_ = 0;
  /// That of the snapshot; 0 if there is none or it doesn't tell.
  std::uint64_t snapshot_epoch_ = 0;
  /// A fold that failed is tried again when the journal is longer than this.
  std::uint64_t next_fold_ = 0;
  unsigned forks_;
  std::string record_;
  StoreDamage damage_;
  std::vector<Notice> notices_;
};

}  // namespace dq::platform::posix
