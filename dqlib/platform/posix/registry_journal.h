// The journal of a registry root: a header, then one record for each change.
//
// All numbers are little-endian. The header is 64 bytes:
//
//    0  8 bytes "DQREGJ1\n"
//    8  u64 epoch: which journal this is; one more each time it is emptied
//   16  u64 the epoch of the journal that was emptied, 0 for a new one
//   24  u64 how many bytes that one had, header and all
//   32  u32 checksum of bytes 0 to 31
//   36  u32 checksum of bytes 0 to 31 and 56 to 63; else those name no snapshot
//   40  u64 generation: changes before every change of the file
//   48  u64 how many bytes the file had when all of it was taken over into another journal, because
//       this one was no longer at its path
//   56  u64 the epoch of the snapshot that this journal goes on from; 0 for none
//
// A record:
//
//    0  u32 bytes of content
//    4  u32 checksum of the content
//    8  u64 epoch of the journal
//   16  u64 place of the record in the file
//   24  u32 checksum of bytes 0 to 23
//   28  the content: u8 operation, u32 bytes of path, path, u32 bytes of name, name, u32 type, data
//
// Epoch and place make a record valid in its own journal and at its own place only, so that what
// is left from earlier use of the space, or stands inside a value, is never taken for a record.
//
// Replaying a whole journal over the state at any later moment of it gives the state at its end,
// because each record creates what it needs and deleting what isn't there is nothing. A snapshot
// may therefore be newer than the begin of its journal.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/posix/registry_tree.h"
#include "dqlib/platform/types.h"

namespace dq::platform::posix {

inline constexpr std::size_t kJournalHeaderSize = 64;
/// The part of the header that it can't be read without.
inline constexpr std::size_t kJournalHeadSize = 36;
inline constexpr std::size_t kJournalGenerationOffset = 40;
inline constexpr std::size_t kJournalTakenOverOffset = 48;

struct JournalHeader {
  std::uint64_t epoch = 0;
  std::uint64_t former_epoch = 0;
  std::uint64_t former_size = 0;
  std::uint64_t snapshot_epoch = 0;
};

/// The header of a journal with a generation, `kJournalHeaderSize` bytes.
std::string EncodeJournalHeader(const JournalHeader& header, std::uint64_t generation);
/// No value if the bytes are no header, or damaged.
std::optional<JournalHeader> DecodeJournalHead(std::string_view bytes);

std::string EncodeGeneration(std::uint64_t generation);
/// The generation in a header, which must be whole.
std::uint64_t DecodeGeneration(std::string_view header);
/// Whether a header, which must be whole, says that this many bytes were taken over.
bool IsTakenOver(std::string_view header, std::uint64_t size);

enum class JournalOperation : std::uint8_t {
  kCreateKey = 1,
  kDeleteKey = 2,
  kSetValue = 3,
  kDeleteValue = 4,
};

/// One change. `path` is from the root; what an operation doesn't need is empty.
struct JournalChange {
  JournalOperation operation = JournalOperation::kCreateKey;
  std::string_view path{};
  std::string_view name{};
  DWORD type = 0;
  std::string_view data{};
};

/// Replaces `bytes` by the record of a change at a place of a journal.
void EncodeJournalRecord(const JournalChange& change, std::uint64_t epoch, std::uint64_t place,
                         std::string& bytes);

/// Makes a change that has been checked or was read from a journal.
void ApplyChange(const JournalChange& change, RegistryTree& tree);

/// What reading records gave.
struct JournalReplay {
  /// Records that were applied.
  std::size_t records = 0;
  /// Where the next one goes, as a place in the file: behind the last of them and behind damage.
  std::uint64_t end = 0;
  /// Stretches of bytes that are damaged: between records, or behind the last one.
  std::size_t gaps = 0;
};

/// Applies the records in `bytes`, which begin at `place` of the file, to `tree`. After bytes that
/// are no record, the next valid record is looked for. Bytes behind the last one are no gap if they
/// are the begin of a record, which is a write that was never reported, or left from earlier use of
/// the space; a record that is all there and whose content has changed was reported. Any bytes are
/// safe, and take time in proportion to their number.
JournalReplay ReplayJournal(std::string_view bytes, std::uint64_t epoch, std::uint64_t place,
                            RegistryTree& tree);

/// The epoch of the first record in `bytes`, for a journal whose header is damaged.
std::optional<std::uint64_t> FindJournalEpoch(std::string_view bytes, std::uint64_t place);

}  // namespace dq::platform::posix
