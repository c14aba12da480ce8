// The texts of a tree's rows, packed.

#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dq::detail {

/// Where the texts of a row lie: one behind the other, each with a zero behind it, up to the last
/// one that isn't empty. All 0 for a row without any. The offset has 16 bits.
struct TextRun {
  std::uint32_t chunk = 0;
  std::uint32_t offset = 0;
  std::uint32_t size = 0;
};

/// Holds runs of texts in chunks. The run that was added last grows in place; others that grow move
/// to the end, and what they leave counts as garbage until its chunk is empty or their owner packs
/// all anew.
class TreeTexts {
 public:
  /// The text of a column, zero-ended; good until a run changes.
  const char* Cell(const TextRun& run, int column) const;
  /// Fetches a run to where it is read fast, which pays some runs ahead of reading it.
  void Prefetch(const TextRun& run) const {
    if (run.size == 0) return;
    __builtin_prefetch(At(run));
    __builtin_prefetch(At(run) + run.size - 1);
  }
  /// Replaces the text of a column, which may be one of these texts and has no zeros. False, and no
  /// change, if the row's texts would be longer than 2^31 - 1 bytes together.
  bool SetCell(TextRun& run, int column, std::string_view text);
  /// A new run with the texts of the first columns, null for an empty one; each may be one of these
  /// texts. Without any if they would be longer than 2^31 - 1 bytes together.
  TextRun Add(std::span<const char* const> texts);
  void Free(const TextRun& run);
  /// Copies a run of another store to this one.
  TextRun Copy(const TreeTexts& from, const TextRun& run);

  /// Whether more than half of the room is garbage, and it pays to copy what is in use.
  bool IsWasteful() const { return garbage_ > kLeastGarbage && garbage_ > room_ / 2; }
  /// Bytes that are held.
  std::size_t GetRoom() const { return room_; }

 private:
  struct Chunk {
    std::unique_ptr<char[]> bytes;
    std::uint32_t capacity = 0;
    std::uint32_t used = 0;
    /// Of those, how many are in use.
    std::uint32_t live = 0;
  };
  static constexpr std::uint32_t kNoChunk = 0xFFFFFFFF;
  static constexpr std::size_t kLeastGarbage = std::size_t{1} << 16;

  char* At(const TextRun& run) const { return chunks_[run.chunk].bytes.get() + run.offset; }
  std::string_view View(const TextRun& run) const {
    return run.size == 0 ? std::string_view() : std::string_view(At(run), run.size);
  }
  bool GrowInPlace(TextRun& run, int column, std::string_view text);
  void Replace(TextRun& run, std::string_view texts);
  TextRun Take(std::uint32_t size);
  void DropChunk(std::uint32_t chunk);

  std::vector<Chunk> chunks_;
  std::vector<std::uint32_t> free_chunks_;
  /// The one that is filled at present, or `kNoChunk`.
  std::uint32_t current_ = kNoChunk;
  std::size_t room_ = 0;
  std::size_t garbage_ = 0;
  /// A row's texts while they are put together.
  std::string scratch_;
};

}  // namespace dq::detail
