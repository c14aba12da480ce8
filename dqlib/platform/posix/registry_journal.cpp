#include "dqlib/platform/posix/registry_journal.h"

#include "dqlib/platform/checksum.h"

namespace dq::platform::posix {
namespace {

constexpr std::string_view kMagic = "DQREGJ1\n";
constexpr std::size_t kRecordHeadSize = 28;
constexpr std::size_t kJournalSnapshotOffset = 56;
constexpr std::size_t kMaxContent = kMaxValueData + kMaxValueName + kMaxKeyPath + 64;

template <typename Number>
void PutNumber(Number number, std::string& bytes) {
  for (std::size_t i = 0; i < sizeof number; ++i) {
    bytes += static_cast<char>(static_cast<unsigned char>(number >> (8 * i)));
  }
}

template <typename Number>
Number NumberAt(std::string_view bytes, std::size_t offset) {
  Number number = 0;
  for (std::size_t i = 0; i < sizeof number; ++i) {
    number |= static_cast<Number>(static_cast<unsigned char>(bytes[offset + i])) << (8 * i);
  }
  return number;
}

void OverwriteNumber(std::uint32_t number, std::size_t offset, std::string& bytes) {
  std::string field;
  PutNumber(number, field);
  bytes.replace(offset, field.size(), field);
}

/// Takes a number, and then that many bytes, off the front of `bytes`.
bool TakeSized(std::string_view& bytes, std::string_view& field) {
  if (bytes.size() < 4) return false;
  const std::size_t size = NumberAt<std::uint32_t>(bytes, 0);
  bytes.remove_prefix(4);
  if (size > bytes.size()) return false;
  field = bytes.substr(0, size);
  bytes.remove_prefix(size);
  return true;
}

std::optional<JournalChange> DecodeContent(std::string_view content) {
  JournalChange change;
  if (content.empty()) return std::nullopt;
  const auto operation = static_cast<unsigned char>(content[0]);
  if (operation < 1 || operation > 4) return std::nullopt;
  change.operation = JournalOperation{operation};
  content.remove_prefix(1);
  if (!TakeSized(content, change.path) || !TakeSized(content, change.name)) return std::nullopt;
  if (content.size() < 4) return std::nullopt;
  change.type = NumberAt<std::uint32_t>(content, 0);
  change.data = content.substr(4);
  if (!IsKeyPath(change.path) || !IsValueName(change.name)) return std::nullopt;
  if (change.data.size() > kMaxValueData) return std::nullopt;
  return change;
}

/// What stands at a place of a journal.
struct Found {
  enum {
    kNothing,
    /// A head whose content isn't all there: the begin of a record.
    kTorn,
    /// A whole record of another epoch, left from earlier use of the space.
    kForeign,
    /// As long as a record, and its content is not what was written.
    kDamaged,
    kRecord,
  } kind = kNothing;
  std::uint64_t epoch = 0;
  std::string_view content{};
};

/// Looks at the front of `bytes`; no epoch means any. The contents of others aren't looked at.
Found FindAt(std::string_view bytes, std::optional<std::uint64_t> epoch, std::uint64_t place) {
  if (bytes.size() < kRecordHeadSize || NumberAt<std::uint64_t>(bytes, 16) != place ||
      NumberAt<std::uint32_t>(bytes, 24) != Checksum(bytes.substr(0, 24))) {
    return {};
  }
  const std::size_t size = NumberAt<std::uint32_t>(bytes, 0);
  if (size > kMaxContent) return {};
  Found found{.epoch = NumberAt<std::uint64_t>(bytes, 8)};
  if (size > bytes.size() - kRecordHeadSize) {
    found.kind = Found::kTorn;
    return found;
  }
  found.content = bytes.substr(kRecordHeadSize, size);
  if (epoch && *epoch != found.epoch) {
    found.kind = Found::kForeign;
  } else {
    const bool is_good = NumberAt<std::uint32_t>(bytes, 4) == Checksum(found.content);
    found.kind = is_good ? Found::kRecord : Found::kDamaged;
  }
  return found;
}

/// Whether bytes that aren't empty, with no record in them, are what a write that was never
/// reported or a journal that was emptied may leave: less than a head, a head without all of its
/// content, room that the system hadn't filled yet, or records of another epoch.
bool IsHarmlessTail(std::string_view bytes, std::uint64_t epoch, std::uint64_t place) {
  if (bytes.size() < kRecordHeadSize) return true;
  const Found found = FindAt(bytes, epoch, place);
  return found.kind == Found::kTorn || found.kind == Found::kForeign ||
         bytes.find_first_not_of('\0') == std::string_view::npos;
}

}  // namespace

std::string EncodeJournalHeader(const JournalHeader& header, std::uint64_t generation) {
  std::string bytes(kMagic);
  PutNumber(header.epoch, bytes);
  PutNumber(header.former_epoch, bytes);
  PutNumber(header.former_size, bytes);
  std::string snapshot;
  PutNumber(header.snapshot_epoch, snapshot);
  const std::uint32_t checksum = Checksum(bytes);
  PutNumber(checksum, bytes);
  PutNumber(Checksum(snapshot, checksum), bytes);
  PutNumber(generation, bytes);
  bytes.resize(kJournalSnapshotOffset);
  return bytes + snapshot;
}

std::optional<JournalHeader> DecodeJournalHead(std::string_view bytes) {
  if (bytes.size() < kJournalHeadSize || !bytes.starts_with(kMagic)) return std::nullopt;
  const std::uint32_t checksum = Checksum(bytes.substr(0, 32));
  if (NumberAt<std::uint32_t>(bytes, 32) != checksum) return std::nullopt;
  JournalHeader header{NumberAt<std::uint64_t>(bytes, 8), NumberAt<std::uint64_t>(bytes, 16),
                       NumberAt<std::uint64_t>(bytes, 24)};
  // Whoever knows nothing of snapshots that are named leaves these bytes as they are.
  if (bytes.size() >= kJournalHeaderSize &&
      NumberAt<std::uint32_t>(bytes, kJournalHeadSize) ==
          Checksum(bytes.substr(kJournalSnapshotOffset, 8), checksum)) {
    header.snapshot_epoch = NumberAt<std::uint64_t>(bytes, kJournalSnapshotOffset);
  }
  return header;
}

std::string EncodeGeneration(std::uint64_t generation) {
  std::string bytes;
  PutNumber(generation, bytes);
  return bytes;
}

std::uint64_t DecodeGeneration(std::string_view header) {
  return NumberAt<std::uint64_t>(header, kJournalGenerationOffset);
}

bool IsTakenOver(std::string_view header, std::uint64_t size) {
  return NumberAt<std::uint64_t>(header, kJournalTakenOverOffset) == size;
}

void EncodeJournalRecord(const JournalChange& change, std::uint64_t epoch, std::uint64_t place,
                         std::string& bytes) {
  bytes.assign(kRecordHeadSize, '\0');
  bytes += static_cast<char>(change.operation);
  PutNumber(static_cast<std::uint32_t>(change.path.size()), bytes);
  bytes += change.path;
  PutNumber(static_cast<std::uint32_t>(change.name.size()), bytes);
  bytes += change.name;
  PutNumber(change.type, bytes);
  bytes += change.data;
  const std::string_view content = std::string_view(bytes).substr(kRecordHeadSize);
  OverwriteNumber(static_cast<std::uint32_t>(content.size()), 0, bytes);
  OverwriteNumber(Checksum(std::string_view(bytes).substr(kRecordHeadSize)), 4, bytes);
  std::string where;
  PutNumber(epoch, where);
  PutNumber(place, where);
  bytes.replace(8, where.size(), where);
  OverwriteNumber(Checksum(std::string_view(bytes).substr(0, 24)), 24, bytes);
}

void ApplyChange(const JournalChange& change, RegistryTree& tree) {
  const auto find = [&] { return tree.FindKey(tree.root(), change.path); };
  switch (change.operation) {
    case JournalOperation::kCreateKey:
      tree.MakeKey(tree.root(), change.path);
      break;
    case JournalOperation::kDeleteKey:
      if (TreeKey* const key = find(); key != nullptr && key != &tree.root()) tree.DeleteKey(*key);
      break;
    case JournalOperation::kSetValue:
      RegistryTree::SetValue(tree.MakeKey(tree.root(), change.path), change.name, change.type,
                             change.data);
      break;
    case JournalOperation::kDeleteValue:
      if (TreeKey* const key = find()) RegistryTree::DeleteValue(*key, change.name);
      break;
  }
}

JournalReplay ReplayJournal(std::string_view bytes, std::uint64_t epoch, std::uint64_t place,
                            RegistryTree& tree) {
  JournalReplay replay;
  replay.end = place;
  std::size_t whole = 0;
  for (std::size_t at = 0; at < bytes.size();) {
    const Found found = FindAt(bytes.substr(at), epoch, place + at);
    const std::size_t next = at + kRecordHeadSize + found.content.size();
    if (found.kind == Found::kRecord) {
      if (const std::optional<JournalChange> change = DecodeContent(found.content)) {
        if (at > whole) ++replay.gaps;
        ApplyChange(*change, tree);
        ++replay.records;
        whole = next;
      }
    }
    // A head that is good tells where the next one is, even if its content isn't. No byte of a
    // content is then looked at twice, whatever the bytes are.
    at = found.kind == Found::kRecord || found.kind == Found::kDamaged ? next : at + 1;
  }
  replay.end = place + whole;
  if (whole < bytes.size() && !IsHarmlessTail(bytes.substr(whole), epoch, replay.end)) {
    ++replay.gaps;
    replay.end = place + bytes.size();
  }
  return replay;
}

std::optional<std::uint64_t> FindJournalEpoch(std::string_view bytes, std::uint64_t place) {
  for (std::size_t at = 0; at < bytes.size();) {
    const Found found = FindAt(bytes.substr(at), std::nullopt, place + at);
    if (found.kind == Found::kRecord) return found.epoch;
    at += found.kind == Found::kDamaged ? kRecordHeadSize + found.content.size() : 1;
  }
  return std::nullopt;
}

}  // namespace dq::platform::posix
