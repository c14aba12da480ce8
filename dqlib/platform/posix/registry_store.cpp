#include "dqlib/platform/posix/registry_store.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <exception>
#include <utility>

#include "dqlib/platform/posix/file_replacement.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// How many times a journal may have been emptied while someone slept. An epoch that is further
/// away is that of a journal which was begun anew, because those begin with the time.
constexpr std::uint64_t kManyEpochs = std::uint64_t{1} << 12;
/// Someone who deletes the journal as often as this while one call opens it won't stop.
constexpr int kOpenAttempts = 100;
/// The generation of a store that nobody can change.
constexpr std::uint64_t kFixedGeneration = 1;

}  // namespace

std::uint64_t RegistryStore::FreshNumber() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
             std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()) |
         std::uint64_t{1} << 62;
}

/// Gives the journal's lock back at the end of its scope.
class RegistryStore::Hold {
 public:
  explicit Hold(RegistryStore& store) : store_(store) {}
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;
  /// Leaves the lock to a later hold.
  void Keep() { is_kept_ = true; }
  ~Hold() {
    if (is_kept_) return;
    // A lock that can't be given back goes with the file: else it would stop everyone.
    if (store_.journal_.is_open() && !store_.journal_.Unlock().ok()) store_.CloseJournal();
  }

 private:
  RegistryStore& store_;
  bool is_kept_ = false;
};

RegistryStore::RegistryStore(SystemCalls& calls, LockPatience& patience, RegistryStoreNames names,
                             std::mutex& tree_mutex, TreeReplaced tree_replaced)
    : calls_(calls),
      patience_(patience),
      names_(std::move(names)),
      tree_mutex_(tree_mutex),
      tree_replaced_(std::move(tree_replaced)),
      journal_(calls, patience),
      tree_(std::make_unique<RegistryTree>()),
      forks_(ForkCount()) {}

RegistryStore::~RegistryStore() = default;

bool RegistryStore::IsCurrent() const {
  const std::uint64_t seen = seen_generation_.load(std::memory_order_acquire);
  if (seen == 0) return false;
  if (journal_.is_open()) return journal_.Generation() == seen;
  struct stat status;
  return is_without_journal_ && calls_.Status(FilePath(kJournal).c_str(), &status) != 0 &&
         errno == ENOENT;
}

std::uint64_t RegistryStore::Stamp() {
  static std::atomic<std::uint64_t> last_stamp = 0;
  if (!journal_.is_open() || !IsCurrent()) return 0;
  const std::uint64_t generation = seen_generation_.load(std::memory_order_acquire);
  if (stamped_generation_ != generation) {
    stamped_generation_ = generation;
    stamp_ = ++last_stamp;
  }
  return stamp_;
}

template <typename Work>
Error RegistryStore::Run(std::chrono::nanoseconds deadline, Work work) {
  const std::lock_guard files(file_mutex_);
  // Who had the mutex may have waited in vain.
  deadline_ = std::min(deadline, patience_.Deadline());
  try {
    return work();
  } catch (const std::exception&) {
    // The tree may have half of what was read. The journal stays open: it may be all that there is
    // of the changes.
    is_loaded_ = is_loaded_ && must_fold_;
    seen_generation_ = 0;
    return ErrorOfException();
  }
}

template <typename Work>
Error RegistryStore::WithJournal(bool writing, Work work) {
  for (int attempt = 0;; ++attempt) {
    if (const Error error = Begin(writing); !error.ok()) return error;
    const Hold hold(*this);
    const Error error = work();
    if (error.code != kDisplaced || attempt == kOpenAttempts) return error;
  }
}

Error RegistryStore::Refresh(std::chrono::nanoseconds deadline) {
  return Run(deadline, [&] {
    const Error error = Begin(false);
    if (error.ok()) Hold hold(*this);
    return error;
  });
}

Error RegistryStore::Change(const Planner& plan, const Finisher& finish,
                            std::chrono::nanoseconds deadline) {
  bool is_displaced = false;
  const auto work = [&]() -> Error {
    if (must_fold_) {
      if (const Error error = Fold(); !error.ok()) return error;
    }
    JournalChange change;
    const Result<bool> is_needed = plan(*tree_, change);
    if (!is_needed.ok()) return is_needed.error;
    if (is_needed.value) {
      if (const Error error = Append(change); !error.ok()) return error;
    }
    if (finish) {
      const std::lock_guard tree(tree_mutex_);
      finish(*tree_);
    }
    // The change is made whether the fold succeeds or not; a fold that fails leaves it in the
    // journal.
    if (!HasGrown()) return {};
    const Error folded = Fold();
    if (!folded.ok()) next_fold_ = 2 * end_;
    is_displaced = folded.code == kDisplaced;
    return {};
  };
  return Run(deadline, [&] {
    const Error error = WithJournal(true, work);
    // The change is where nobody else looks; it needn't wait for the next one.
    if (is_displaced) static_cast<void>(WithJournal(true, [] { return Error{}; }));
    return error;
  });
}

Error RegistryStore::Flush(std::chrono::nanoseconds deadline) {
  return Run(deadline, [&]() -> Error {
    // Others' changes too, which this process has seen and may have reported.
    if (!journal_.is_open() && !needs_sync_ && !directory_needs_sync_ && !must_fold_) return {};
    return WithJournal(false, [&] { return SyncAll(); });
  });
}

Error RegistryStore::Leave(bool last_user, std::chrono::nanoseconds deadline) {
  return Run(deadline, [&]() -> Error {
    const bool owes = needs_sync_ || directory_needs_sync_ || must_fold_;
    if (!journal_.is_open() && !owes) return {};
    Error error;
    // Who owes nothing waits for nobody.
    if (last_user || owes) {
      error = WithJournal(false, [&]() -> Error {
        if (last_user && journal_.is_writable() && end_ > kJournalHeaderSize) {
          const Error folded = Fold();
          if (folded.code == kDisplaced) return folded;
          // What else it doesn't do is in the journal, and synced next.
        }
        return needs_sync_ || directory_needs_sync_ || must_fold_ ? SyncAll() : Error{};
      });
    }
    CloseJournal();
    return error;
  });
}

Error RegistryStore::SyncAll() {
  if (!journal_.is_writable()) return {};
  if (must_fold_) return Fold();
  if (const Error error = journal_.Sync(); !error.ok()) return error;
  needs_sync_ = false;
  if (!directory_needs_sync_) return {};
  const Error error = SyncDirectory(calls_, names_.directory);
  directory_needs_sync_ = !error.ok();
  return error;
}

std::vector<Notice> RegistryStore::TakeNotices() {
  const std::lock_guard files(file_mutex_);
  return std::exchange(notices_, {});
}

void RegistryStore::ReturnNotices(std::vector<Notice> notices) {
  const std::lock_guard files(file_mutex_);
  notices_.swap(notices);
}

std::string RegistryStore::FilePath(std::string_view extension) const {
  std::string path = names_.directory;
  path += '/';
  path += names_.file;
  path += extension;
  return path;
}

std::string RegistryStore::TemporaryStem() const { return kTemporaryStem + names_.file + '-'; }

Error RegistryStore::Begin(bool writing) {
  Error error = OpenUpToDate(writing);
  // A file that can't be had doesn't mean that what it holds doesn't exist. Without a home there
  // is nothing.
  if (error.kind == ErrorKind::kNotFound && !names_.directory.empty()) {
    error.kind = ErrorKind::kOther;
  }
  return error;
}

Error RegistryStore::OpenUpToDate(bool writing) {
  if (forks_ != ForkCount()) {
    // The lock of the open file is the parent's as well.
    CloseJournal();
    forks_ = ForkCount();
  }
  for (int attempt = 0; attempt < kOpenAttempts; ++attempt) {
    if (!journal_.is_open() || (writing && !journal_.is_writable())) {
      const Error error = OpenJournal(writing);
      if (!error.ok() || is_without_journal_) return error;
    }
    if (const Error error = journal_.Lock(deadline_); !error.ok()) return error;
    Hold hold(*this);
    const Result<JournalFile::Status> status = journal_.GetStatus();
    if (!status.ok()) return status.error;
    if (status.value.displaced) {
      if (const Error error = TakeOver(status.value.size); !error.ok()) return error;
      continue;
    }
    const Error error = Synchronise(status.value.size);
    if (error.ok()) hold.Keep();
    return error;
  }
  return ErrorFromErrno(EBUSY);
}

Error RegistryStore::TakeOver(std::uint64_t size) {
  if (!journal_.is_writable() || (!is_loaded_ && size < kJournalHeaderSize)) {
    // Who only reads has changed nothing, and those who write see to what is in this journal.
    CloseJournal();
    return {};
  }
  const Result<bool> is_taken_over = journal_.IsTakenOver(size);
  if (!is_taken_over.ok()) return is_taken_over.error;
  if (is_taken_over.value && !must_fold_) {
    is_loaded_ = false;
    CloseJournal();
    return {};
  }
  if (size >= kJournalHeaderSize && !is_taken_over.value) {
    const bool is_known = is_loaded_;
    if (const Error error = TakeInJournal(size); !error.ok()) return error;
    if (!is_known && damage_.journal.is_foreign) {
      // The snapshot is later than this journal, and who has changed it sees to what is in it.
      is_loaded_ = must_fold_ = false;
      damage_ = {};
      CloseJournal();
      return {};
    }
  }
  // What was in a snapshot that is gone too, another one may still know.
  const bool is_complete = !damage_.snapshot.is_gone;
  if (!is_complete) epoch_ = FreshNumber();
  JournalFile displaced(calls_, patience_);
  {
    const std::lock_guard tree(tree_mutex_);
    journal_.MoveTo(displaced);
    seen_generation_ = 0;
  }
  // Its lock is held on, so that no two go over at once.
  must_fold_ = true;
  if (const Error error = MakeJournal(); !error.ok()) return error;
  if (const Error error = journal_.Lock(deadline_); !error.ok()) return error;
  const Hold hold(*this);
  const Result<JournalFile::Status> status = journal_.GetStatus();
  if (!status.ok()) return status.error;
  if (status.value.displaced) return {};  // once more, from there
  if (const Error error = Synchronise(status.value.size); !error.ok()) return error;
  // As long as that isn't written, the tree has it, and so has everyone else's.
  return must_fold_ || !is_complete ? Error{} : displaced.SetTakenOver(size);
}

Error RegistryStore::OpenJournal(bool writing) {
  if (names_.directory.empty()) return ErrorFromErrno(ENOENT);
  Error error = OpenJournalFile(true);
  if (error.code == ENOENT) {
    if (!writing && !(is_loaded_ && HasState())) {
      struct stat status;
      const bool has_snapshot = calls_.LinkStatus(FilePath(kSnapshot).c_str(), &status) == 0;
      if (!has_snapshot && errno != ENOENT) return ErrorFromErrno(errno);
      // Who only reads leaves nothing where nothing is.
      if (!has_snapshot) return LoadWithoutJournal();
    }
    error = MakeJournal();
  }
  if (error.ok() || writing || error.kind != ErrorKind::kAccessDenied) return error;
  const Error read_error = OpenJournalFile(false);
  // Whoever hands over settings that can't be written needn't give a journal.
  return read_error.code == ENOENT ? LoadWithoutJournal() : read_error;
}

Error RegistryStore::LoadWithoutJournal() {
  if (const Error error = Load(0); !error.ok()) return error;
  damage_.journal = {};
  TellOfDamage();
  const std::lock_guard tree(tree_mutex_);
  is_without_journal_ = true;
  seen_generation_ = kFixedGeneration;
  return {};
}

Error RegistryStore::OpenJournalFile(bool writable) {
  CloseJournal();
  const std::lock_guard tree(tree_mutex_);
  return journal_.Open(FilePath(kJournal), writable);
}

Error RegistryStore::MakeJournal() {
  CloseJournal();
  const std::string path = FilePath(kJournal);
  // Who folds the journal that was here before would put its snapshot over one of the new journal.
  const Error awaited =
      AwaitReplacements(calls_, patience_, names_.directory, TemporaryStem(), deadline_);
  if (!awaited.ok()) return awaited;
  const auto make = [&] {
    const std::lock_guard tree(tree_mutex_);
    return journal_.Make(path);
  };
  Error error = make();
  if (error.code != ENOENT) return error;
  error = MakeDirectories(calls_, names_.directory);
  return error.ok() ? make() : error;
}

void RegistryStore::CloseJournal() {
  const std::lock_guard tree(tree_mutex_);
  journal_.Close();
  is_without_journal_ = false;
  seen_generation_ = 0;
}

Error RegistryStore::Synchronise(std::uint64_t size) {
  const std::uint64_t generation = journal_.Generation();
  if (is_loaded_ && generation != 0 && generation == seen_generation_ && size == end_ &&
      !must_fold_) {
    return {};
  }
  if (size >= kJournalHeaderSize) {
    if (const Error error = TakeInJournal(size); !error.ok()) return error;
  } else if (is_loaded_ && HasState()) {
    damage_.journal.Set(true, size == 0);
    must_fold_ = true;
  } else if (const Error error = Load(size); !error.ok()) {
    return error;
  } else if (journal_.is_writable()) {
    must_fold_ = damage_.any();
    if (!must_fold_) {
      if (const Error made = WriteHeader({.epoch = epoch_}); !made.ok()) return made;
      directory_needs_sync_ = true;
    }
  }
  if (journal_.is_writable() && size > end_ && !damage_.any()) {
    // The end of a write that was never reported. One that stays is written over.
    journal_.Truncate(end_);
  }
  if (must_fold_ || !damage_.is_told()) Repair();
  const std::uint64_t now = journal_.Generation();
  if (now != 0) {
    const std::lock_guard tree(tree_mutex_);
    journal_.MapGeneration();
  }
  seen_generation_ = now;
  return {};
}

Error RegistryStore::TakeInJournal(std::uint64_t size) {
  if (!is_loaded_) return Load(size);
  const Result<Sequel> sequel = FollowHeader(size);
  if (!sequel.ok()) return sequel.error;
  if (sequel.value != Sequel::kGoesOn) return Load(size, sequel.value == Sequel::kIsForeign);
  if (size < end_) {
    damage_.journal.Set(true, false);
    must_fold_ = true;
    return {};
  }
  std::string bytes;
  if (const Error error = journal_.Read(end_, size - end_, bytes); !error.ok()) return error;
  const std::lock_guard tree(tree_mutex_);
  const JournalReplay replay = ReplayJournal(bytes, epoch_, end_, *tree_);
  end_ = replay.end;
  if (replay.gaps > 0) damage_.journal.Set(true, false);
  return {};
}

Result<RegistryStore::Sequel> RegistryStore::FollowHeader(std::uint64_t& size) {
  std::string bytes;
  if (const Error error = journal_.Read(0, kJournalHeaderSize, bytes); !error.ok()) return error;
  const std::optional<JournalHeader> header = DecodeJournalHead(bytes);
  if (header) return Compare(*header);
  if (const Error error = journal_.Read(0, size, bytes); !error.ok()) return error;
  const auto records = std::string_view(bytes).substr(std::min(bytes.size(), kJournalHeaderSize));
  const std::optional<std::uint64_t> epoch = FindJournalEpoch(records, kJournalHeaderSize);
  if (epoch && *epoch != epoch_) return Sequel::kIsForeign;
  if (!epoch) size = 0;
  damage_.journal.Set(true, false);
  must_fold_ = true;
  return Sequel::kGoesOn;
}

RegistryStore::Sequel RegistryStore::Compare(const JournalHeader& header) {
  if (header.epoch == epoch_) return Sequel::kGoesOn;
  const bool is_next = header.former_epoch == epoch_;
  // A merge leaves one epoch out, because nobody else has its tree.
  const bool is_same_tree = is_next && header.epoch == epoch_ + 1;
  const bool is_later = header.epoch > epoch_ && header.epoch - epoch_ < kManyEpochs;
  if (is_next ? end_ < header.former_size : is_later || !HasState()) return Sequel::kIsLater;
  if (is_next && end_ == header.former_size && !is_same_tree) return Sequel::kIsLater;
  // What was begun without knowledge and not folded since has all its changes.
  const bool is_anew = header.former_epoch == 0 || header.former_size == kJournalHeaderSize;
  if (!is_same_tree && !is_anew) return Sequel::kIsForeign;
  if (!is_next || end_ > header.former_size) {
    // Someone who had seen less than this tree has begun the journal that was lost anew. What has
    // been added since goes on top of what is here.
    damage_.journal.Set(true, false);
    must_fold_ = true;
    BeginMerge();
  }
  // Else the tree is the one that went into the snapshot.
  snapshot_epoch_ = header.snapshot_epoch;
  epoch_ = header.epoch;
  end_ = kJournalHeaderSize;
  return Sequel::kGoesOn;
}

void RegistryStore::BeginMerge() {
  if (std::exchange(has_merged_, true)) return;
  merged_epoch_ = epoch_;
  merged_end_ = end_;
}

bool RegistryStore::HasState() const {
  return snapshot_size_ > 0 || end_ > kJournalHeaderSize || must_fold_;
}

Error RegistryStore::WriteHeader(const JournalHeader& header) {
  const std::uint64_t generation = FreshNumber();
  const Error error = journal_.Write(0, EncodeJournalHeader(header, generation));
  // What was written of it is overwritten by the next one to come.
  if (!error.ok()) journal_.Truncate(0);
  if (error.ok()) seen_generation_ = generation;
  return error;
}

Error RegistryStore::AnnounceChange() {
  const std::uint64_t generation = journal_.Generation();
  if (generation == 0) return ErrorFromErrno(EIO);
  // First here and then in the file, so that this process doesn't take the change for another's.
  seen_generation_ = generation + 1;
  return journal_.SetGeneration(generation + 1);
}

Error RegistryStore::Append(const JournalChange& change) {
  EncodeJournalRecord(change, epoch_, end_, record_);
  if (end_ + record_.size() > kMaxStoreFile) return ErrorFromErrno(EFBIG);
  Error error = AnnounceChange();
  if (error.ok()) {
    error = journal_.Write(end_, record_);
    // Part of a record is none, and is overwritten by the next one, if it must stay.
    if (!error.ok()) journal_.Truncate(end_);
  }
  if (!error.ok()) return error;
  needs_sync_ = true;
  try {
    const std::lock_guard tree(tree_mutex_);
    // The change has been announced, and some thread may have asked for a stamp already.
    stamped_generation_ = 0;
    ApplyChange(change, *tree_);
  } catch (const std::exception&) {
    // Nobody has read the record yet, because that takes the lock.
    journal_.Truncate(end_);
    throw;
  }
  end_ += record_.size();
  // An assignment would keep the memory.
  if (record_.capacity() > kFoldSize) std::string().swap(record_);
  return {};
}

}  // namespace dq::platform::posix
