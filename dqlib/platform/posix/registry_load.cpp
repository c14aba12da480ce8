// How a store's tree is loaded from its files, and united with what a program knew.

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <utility>

#include "dqlib/platform/posix/registry_store.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// The place of the first record of a journal that its snapshot doesn't have; no value if the two
/// are of different times.
std::optional<std::uint64_t> FirstRecord(const LoadedSnapshot& snapshot, std::uint64_t epoch,
                                         const std::optional<JournalHeader>& header) {
  // What can't be read of a damaged snapshot may be its epochs.
  if (snapshot.damaged) return kJournalHeaderSize;
  constexpr std::optional<std::uint64_t> kFromTheBegin = kJournalHeaderSize;
  const std::uint64_t named = header ? header->snapshot_epoch : 0;
  if (!snapshot.epochs) {
    // There is none, or it is one of an earlier version, whose journals name none.
    return named != 0 && snapshot.is_there ? std::nullopt : kFromTheBegin;
  }
  const SnapshotEpochs& epochs = *snapshot.epochs;
  if (epoch == epochs.next_epoch) {
    return header && named != epochs.epoch ? std::nullopt : kFromTheBegin;
  }
  if (epoch != epochs.folded_epoch) return std::nullopt;
  return std::max<std::uint64_t>(epochs.folded_size, kJournalHeaderSize);
}

/// Replays what of a journal counts.
JournalReplay Replay(std::string_view journal, std::optional<std::uint64_t> first,
                     std::uint64_t epoch, RegistryTree& tree) {
  if (first && *first < journal.size()) {
    return ReplayJournal(journal.substr(*first), epoch, *first, tree);
  }
  return {.end = first.value_or(kJournalHeaderSize)};
}

}  // namespace

Error RegistryStore::Load(std::uint64_t journal_size, bool unites) {
  LoadedSnapshot loaded;
  if (const Error error = LoadSnapshot(loaded); !error.ok()) return error;
  std::string journal;
  if (journal_size >= kJournalHeaderSize) {
    if (const Error error = journal_.Read(0, journal_size, journal); !error.ok()) return error;
  }
  const std::optional<JournalHeader> header = DecodeJournalHead(journal);
  const std::string_view records =
      std::string_view(journal).substr(std::min(journal.size(), kJournalHeaderSize));
  const std::optional<std::uint64_t> known =
      header ? header->epoch : FindJournalEpoch(records, kJournalHeaderSize);
  const std::uint64_t epoch = known.value_or(FreshNumber());
  // Where nothing tells which journal it is, nothing of it can be used.
  const std::optional<std::uint64_t> first =
      known ? FirstRecord(loaded, epoch, header) : kJournalHeaderSize;
  const JournalReplay replay = Replay(journal, first, epoch, *loaded.tree);
  // A journal that was emptied has its snapshot, and a snapshot its journal, which is older.
  const bool is_snapshot_lost =
      snapshot_size_ == 0 && header && (header->former_epoch != 0 || header->snapshot_epoch != 0);
  // A fold was broken off, and of its journal less has reached the disk than of its snapshot. New
  // records would stand where those stood that the snapshot has.
  must_fold_ = first && *first > kJournalHeaderSize && journal.size() < *first;
  if (is_loaded_ && (unites || is_snapshot_lost || !first)) {
    if (const Error error = Unite(*loaded.tree); !error.ok()) return error;
  }
  has_merged_ = false;
  if (must_fold_ || !first) BeginMerge();
  if (!first) {
    // Whoever has the tree of the journal that is set aside must take over the snapshot.
    must_fold_ = true;
    merged_epoch_ = epoch;
    merged_end_ = 0;
  }
  epoch_ = first ? epoch : FreshNumber();
  end_ = replay.end;
  snapshot_epoch_ = loaded.epochs ? loaded.epochs->epoch : 0;
  is_loaded_ = true;
  const bool is_journal_lost = snapshot_size_ > 0 && journal_size < kJournalHeaderSize;
  damage_.snapshot.Set(loaded.damaged || is_snapshot_lost, !loaded.damaged);
  damage_.journal.Set(replay.gaps > 0 || (!journal.empty() && !header) || is_journal_lost || !first,
                      journal_size == 0, !first);
  damage_.values_kept = loaded.values;
  damage_.lines_lost = loaded.lost_lines;

  const std::lock_guard tree(tree_mutex_);
  stamped_generation_ = 0;
  if (tree_replaced_) tree_replaced_(*tree_, *loaded.tree);
  tree_ = std::move(loaded.tree);
  return {};
}

void RegistryStore::DecodeTree() {
  const std::lock_guard tree(tree_mutex_);
  tree_->Decode();
}

Error RegistryStore::Unite(RegistryTree& loaded) {
  DecodeTree();
  if (loaded.AddMissing(*tree_) == 0) return {};
  const std::string path = FilePath(kSnapshot);
  Notice notice{.text = IDS_SETTINGS_UNITED, .path = path, .whereabouts = {}, .copy = {}};
  if (journal_.is_writable()) {
    Result<std::string> former = KeepBeside(calls_, path + ".former", [&](int fd) {
      return WriteSnapshot(*tree_, names_.root, std::nullopt,
                           [&](std::string_view piece) { return WriteFully(calls_, fd, piece); });
    });
    if (!former.ok()) return former.error;
    notice.whereabouts = IDS_FORMER_KEPT;
    notice.copy = std::move(former.value);
  }
  notices_.push_back(std::move(notice));
  must_fold_ = true;
  return {};
}

Error RegistryStore::LoadSnapshot(LoadedSnapshot& loaded) {
  FileDescriptor file;
  const Result<struct stat> opened = OpenStoreFile(calls_, FilePath(kSnapshot), O_RDONLY, file);
  if (opened.error.code == ENOENT) {
    loaded.tree = std::make_unique<RegistryTree>();
    snapshot_size_ = 0;
    return {};
  }
  if (!opened.ok()) return opened.error;
  std::string text;
  const Error error =
      ReadFullyAt(calls_, file.get(), static_cast<std::size_t>(opened.value.st_size), 0, text);
  if (!error.ok()) return error;
  snapshot_size_ = text.size();
  loaded = ReadSnapshot(std::move(text), names_.root);
  loaded.is_there = true;
  return {};
}

}  // namespace dq::platform::posix
