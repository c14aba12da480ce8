// Journals of the registry: any bytes are replayed, as they are and with the checksums put right,
// so that what stands behind those is reached too.

#include <cstddef>

#include "dqlib/platform/checksum.h"
#include "dqlib/platform/posix/registry_journal.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

using dq::platform::posix::JournalReplay;
using dq::platform::posix::kJournalHeaderSize;
using dq::platform::posix::RegistryTree;

constexpr std::uint64_t kEpoch = 1;

void Put(std::uint64_t number, int bytes, std::string& text) {
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
}

/// Records whose contents are pieces of the input, each with its length before it.
std::string WithChecksums(std::string_view input) {
  std::string journal;
  while (!input.empty()) {
    const std::size_t size = static_cast<unsigned char>(input[0]);
    input.remove_prefix(1);
    const std::string_view content = input.substr(0, size);
    input.remove_prefix(content.size());
    std::string head;
    Put(content.size(), 4, head);
    Put(dq::platform::Checksum(content), 4, head);
    Put(kEpoch, 8, head);
    Put(kJournalHeaderSize + journal.size(), 8, head);
    Put(dq::platform::Checksum(head), 4, head);
    journal += head;
    journal += content;
  }
  return journal;
}

void Replay(std::string_view bytes) {
  RegistryTree tree;
  const JournalReplay replay = ReplayJournal(bytes, kEpoch, kJournalHeaderSize, tree);
  Require(replay.end >= kJournalHeaderSize && replay.end <= kJournalHeaderSize + bytes.size());
  // What stands behind the last record adds nothing.
  RegistryTree same;
  const std::string_view used = bytes.substr(0, replay.end - kJournalHeaderSize);
  Require(ReplayJournal(used, kEpoch, kJournalHeaderSize, same).records == replay.records);
}

}  // namespace

void Try(std::string_view bytes) {
  static_cast<void>(dq::platform::posix::DecodeJournalHead(bytes));
  const std::string_view records = bytes.substr(std::min(bytes.size(), kJournalHeaderSize));
  static_cast<void>(dq::platform::posix::FindJournalEpoch(records, kJournalHeaderSize));
  Replay(records);
  Replay(WithChecksums(bytes));
}

}  // namespace dq::fuzz
