// Journals of the registry: any bytes are replayed, as they are and with the checksums put right,
// so that what stands behind those is reached too.

#include "dqlib/platform/checksum.h"
#include "dqlib/platform/posix/registry_journal.h"
#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view bytes) {
  using namespace platform::posix;
  constexpr std::uint64_t kEpoch = 1;
  const auto replay = [&](std::string_view records) {
    RegistryTree tree, same;
    const JournalReplay all = ReplayJournal(records, kEpoch, kJournalHeaderSize, tree);
    Require(all.end >= kJournalHeaderSize && all.end <= kJournalHeaderSize + records.size());
    // What stands behind the last record adds nothing.
    const std::string_view used = records.substr(0, all.end - kJournalHeaderSize);
    Require(ReplayJournal(used, kEpoch, kJournalHeaderSize, same).records == all.records);
  };
  static_cast<void>(DecodeJournalHead(bytes));
  const std::string_view records = bytes.substr(std::min(bytes.size(), kJournalHeaderSize));
  static_cast<void>(FindJournalEpoch(records, kJournalHeaderSize));
  replay(records);

  // Records whose contents are pieces of the input, each with its length before it.
  std::string journal;
  const auto put = [&journal](std::uint64_t number, int size) {
    for (int i = 0; i < size; ++i) journal += static_cast<char>(number >> (8 * i) & 0xFF);
  };
  while (!bytes.empty()) {
    const std::string_view content = bytes.substr(1, static_cast<unsigned char>(bytes[0]));
    bytes.remove_prefix(1 + content.size());
    const std::size_t place = journal.size();
    put(content.size(), 4);
    put(platform::Checksum(content), 4);
    put(kEpoch, 8);
    put(kJournalHeaderSize + place, 8);
    put(platform::Checksum(std::string_view(journal).substr(place)), 4);
    journal += content;
  }
  replay(journal);
}
