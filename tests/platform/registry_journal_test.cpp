#include "dqlib/platform/posix/registry_journal.h"

#include "dqlib/platform/checksum.h"
#include "dqlib/platform/posix/registry_snapshot.h"
#include "dqlib/platform/registry.h"
#include "tests/support/testing.h"

namespace dq::platform::posix {
namespace {

constexpr std::uint64_t kEpoch = 7;

std::string TextOf(const RegistryTree& tree,
                   const std::optional<SnapshotEpochs>& epochs = std::nullopt) {
  std::string text;
  const auto take = [&](std::string_view piece) {
    text += piece;
    return Error{};
  };
  EXPECT_TRUE(WriteSnapshot(tree, "ROOT", epochs, take).ok());
  return text;
}

/// Records of changes, one behind the other from the begin of a journal.
std::string Records(const std::vector<JournalChange>& changes) {
  std::string bytes;
  for (const JournalChange& change : changes) {
    std::string record;
    EncodeJournalRecord(change, kEpoch, kJournalHeaderSize + bytes.size(), record);
    bytes += record;
  }
  return bytes;
}

JournalReplay Replay(std::string_view bytes, RegistryTree& tree) {
  return ReplayJournal(bytes, kEpoch, kJournalHeaderSize, tree);
}

const std::vector<JournalChange> kChanges = {
    {JournalOperation::kCreateKey, "a\\b"},
    {JournalOperation::kSetValue, "a\\b", "v", 1, "one"},
    {JournalOperation::kSetValue, "a\\b", "V", 3, "two"},
    {JournalOperation::kDeleteValue, "a\\b", "v"},
    {JournalOperation::kSetValue, "a\\b", "w", 1, ""},
    {JournalOperation::kDeleteKey, "a\\b"},
    {JournalOperation::kCreateKey, "a\\B"},
    {JournalOperation::kSetValue, "A\\b", "x", 0xFFFFFFFF, "three"},
};

TEST(Checksum, IsTheCastagnoliOneInPiecesOfAnySize) {
  constexpr std::string_view kDigits = "123456789";
  EXPECT_EQ(Checksum(kDigits), 0xE3069283u);
  for (std::size_t cut = 0; cut <= kDigits.size(); ++cut) {
    EXPECT_EQ(Checksum(kDigits.substr(cut), Checksum(kDigits.substr(0, cut))), 0xE3069283u);
    EXPECT_EQ(ChecksumByTables(kDigits.substr(cut), ChecksumByTables(kDigits.substr(0, cut))),
              0xE3069283u);
  }
}

TEST(RegistryJournal, ADamagedByteCostsOneRecord) {
  const std::string records = Records(kChanges);
  for (std::size_t at = 0; at < records.size(); ++at) {
    std::string bytes = records;
    bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
    RegistryTree tree;
    const JournalReplay replay = Replay(bytes, tree);
    EXPECT_EQ(replay.records, kChanges.size() - 1) << at;
    EXPECT_EQ(replay.gaps, 1u) << at << ": it was reported, even as the last one";
    EXPECT_EQ(replay.end, 64 + records.size()) << at;
  }
}

TEST(RegistryJournal, RecordsCountInTheirOwnJournalAndPlaceOnly) {
  const std::string inner = Records({{JournalOperation::kCreateKey, "inner"}});
  const std::string outer = Records(
      {{JournalOperation::kSetValue, "k", "v", 1, inner}, {JournalOperation::kCreateKey, "last"}});
  // The record in the value must not come to light when the one around it is damaged.
  std::string bytes = outer;
  bytes[0] ^= 1;
  RegistryTree tree;
  EXPECT_EQ(Replay(bytes, tree).records, 1u);
  EXPECT_EQ(tree.FindKey(tree.root(), "inner"), nullptr);
  const JournalReplay former = ReplayJournal(outer, kEpoch + 1, kJournalHeaderSize, tree);
  EXPECT_EQ(former.records, 0u);
  EXPECT_EQ(former.gaps, 0u) << "what earlier use leaves behind is no damage";
  EXPECT_EQ(Replay(outer + std::string(5'000, '\0'), tree).gaps, 0u);
  EXPECT_EQ(ReplayJournal(outer, kEpoch, kJournalHeaderSize + 1, tree).records, 0u);
  EXPECT_EQ(FindJournalEpoch(bytes, kJournalHeaderSize), kEpoch);
}

TEST(RegistryJournal, BytesThatOverlapAsRecordsAreReadInLinearTime) {
  // Heads side by side, each with all the bytes behind it as content that isn't the right one: who
  // looked at all of it for each would take half an hour.
  constexpr std::size_t kSize = 4 << 20;
  std::string bytes;
  while (bytes.size() + 28 <= kSize) {
    const std::uint64_t head[]{kSize - bytes.size() - 28, kEpoch,
                               kJournalHeaderSize + bytes.size()};
    const std::string_view text(reinterpret_cast<const char*>(&head), sizeof head);
    const std::uint32_t sum = Checksum(text);
    bytes.append(text).append(reinterpret_cast<const char*>(&sum), sizeof sum);
  }
  RegistryTree tree;
  EXPECT_EQ(Replay(bytes, tree).records, 0u);
  EXPECT_FALSE(FindJournalEpoch(bytes, kJournalHeaderSize));
}

TEST(RegistryJournal, ReplayingOverAnyLaterStateGivesTheLastOne) {
  RegistryTree whole;
  Replay(Records(kChanges), whole);
  for (std::size_t count = 0; count <= kChanges.size(); ++count) {
    RegistryTree tree;
    for (std::size_t i = 0; i < count; ++i) ApplyChange(kChanges[i], tree);
    Replay(Records(kChanges), tree);
    EXPECT_EQ(TextOf(tree), TextOf(whole)) << count;
  }
}

TEST(RegistryJournal, AHeaderIsWholeOrNone) {
  const std::string header = EncodeJournalHeader({1, 2, 3, 4}, 5);
  ASSERT_EQ(header.size(), 64u);
  EXPECT_EQ(DecodeGeneration(header), 5u);
  EXPECT_EQ(DecodeJournalHead(header)->former_size, 3u);
  EXPECT_EQ(DecodeJournalHead(header)->snapshot_epoch, 4u);
  for (std::size_t at = 0; at < header.size(); ++at) {
    std::string damaged = header;
    damaged[at] = static_cast<char>(damaged[at] ^ 1);
    const auto read = DecodeJournalHead(damaged);
    const auto cut = DecodeJournalHead(header.substr(0, at));
    EXPECT_EQ(read.has_value(), at >= 36) << at;
    EXPECT_EQ(cut.has_value(), at >= 36) << at;
    if (!read || !cut) continue;
    // Generation and mark change alone; the snapshot is named by bytes that are all good or not.
    const bool is_apart = at >= 40 && at < 56;
    EXPECT_EQ(read->snapshot_epoch, is_apart ? 4u : 0u) << at;
    EXPECT_EQ(cut->snapshot_epoch, 0u) << at;
  }
}

TEST(RegistrySnapshot, TheSecondLineTellsItsEpochsAndOthersMayLackIt) {
  RegistryTree tree;
  RegistryTree::SetValue(tree.root(), "", REGISTRY_DWORD, "abcd");
  const std::string begin = "REGEDIT4\r\n";
  const std::string rest = "\r\n[ROOT]\r\n@=dword:64636261\r\n; 1 values, checksum ";
  const std::string text =
      TextOf(tree, SnapshotEpochs{0xFFFFFFFFFFFFFFFF, 0xA, 0x40, 0x123456789ABCDEF0});
  EXPECT_EQ(text,
            begin + "; epochs ffffffffffffffff a 40 123456789abcdef0\r\n" + rest + "8b75086b\r\n");
  const auto epochs = ReadSnapshot(text, "ROOT").epochs;
  ASSERT_TRUE(epochs);
  EXPECT_EQ(epochs->epoch, 0xFFFFFFFFFFFFFFFF);
  EXPECT_EQ(epochs->folded_epoch, 10u);
  EXPECT_EQ(epochs->folded_size, 64u);
  EXPECT_EQ(epochs->next_epoch, 0x123456789ABCDEF0u);
  const LoadedSnapshot former = ReadSnapshot(begin + rest + "8cf8ebe5\r\n", "ROOT");
  EXPECT_FALSE(former.damaged || former.epochs);
  for (const char* head : {"REGEDIT4", "REGEDIT4\r\n; epochs", "REGEDIT4\r\n; epochs 1 2 3",
                           "REGEDIT4\r\n; epochs 1 2 3 x", "REGEDIT4\r\n; epochs 1 2 3 4",
                           "REGEDIT4\r\n; epochs 1 2 3 11112222333344445\r\n"}) {
    EXPECT_FALSE(FindSnapshotEpochs(head)) << head;
  }
}

TEST(RegistrySnapshot, EveryMissingAndEveryChangedByteIsFound) {
  RegistryTree tree;
  TreeKey& key = tree.MakeKey(tree.root(), "Software\\Velmora");
  RegistryTree::SetValue(key, "Path", REGISTRY_STRING, std::string_view("C:\\x\0", 5));
  RegistryTree::SetValue(key, "Font", REGISTRY_BINARY, std::string(60, 'f'));
  RegistryTree::SetValue(tree.MakeKey(tree.root(), "Empty\\Key"), "", REGISTRY_DWORD, "abcd");
  const std::string text = TextOf(tree);
  const LoadedSnapshot loaded = ReadSnapshot(text, "ROOT");
  EXPECT_FALSE(loaded.damaged);
  EXPECT_EQ(TextOf(*loaded.tree), text);
  EXPECT_EQ(loaded.values, 3u);
  EXPECT_TRUE(ReadSnapshot(text, "OTHER").damaged);
  for (std::size_t at = 0; at < text.size(); ++at) {
    EXPECT_TRUE(ReadSnapshot(text.substr(0, at), "ROOT").damaged) << at;
    std::string changed = text;
    changed[at] = static_cast<char>(changed[at] ^ 4);
    const LoadedSnapshot salvaged = ReadSnapshot(changed, "ROOT");
    EXPECT_TRUE(salvaged.damaged) << at;
    EXPECT_GE(salvaged.values, 1u) << at;
  }
}

TEST(RegistrySnapshot, NamesAndPathsMadeToBeSlowTakeLinearTimeAndRoom) {
  // All names are of the same length and differ in nothing but the bit that tells cases apart.
  constexpr int kBits = 17;
  std::string text = "REGEDIT4\n[ROOT]\n";
  for (int number = 0; number < 1 << kBits; ++number) {
    text += '"';
    for (int bit = 0; bit < kBits; ++bit) text += (number >> bit & 1) != 0 ? '1' : '\x11';
    text += "\"=hex:\n";
  }
  EXPECT_EQ(ReadSnapshot(text, "ROOT").values, std::size_t{1} << kBits);

  RegistryTree deep;
  std::string path = "a";
  while (path.size() + 2 <= kMaxKeyPath) path += "\\a";
  EXPECT_EQ(RegistryTree::PathOf(deep.MakeKey(deep.root(), path)), path);
  EXPECT_LT(TextOf(deep).size(), path.size() + 100);
  deep.DeleteKey(*deep.FindKey(deep.root(), "a"));
  EXPECT_EQ(deep.root().children.size(), 0u);
}

}  // namespace
}  // namespace dq::platform::posix
