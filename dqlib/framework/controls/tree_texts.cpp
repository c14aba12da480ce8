#include "dqlib/framework/controls/tree_texts.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace dq::detail {
namespace {

constexpr std::uint32_t kLeastChunk = 1 << 10;
constexpr std::uint32_t kUsualChunk = 1 << 16;
/// A run that is larger has a chunk of its own.
constexpr std::uint32_t kLargeRun = kUsualChunk / 4;
constexpr std::size_t kMostBytes = 0x7FFFFFFF;

/// Where the text of a column begins, or the end of the texts; `columns` is how many stand before.
const char* FindCell(std::string_view texts, int column, int& columns) {
  const char* at = texts.data();
  const char* const end = at + texts.size();
  for (columns = 0; columns < column && at != end; ++columns) {
    at = static_cast<const char*>(std::memchr(at, 0, static_cast<std::size_t>(end - at))) + 1;
  }
  return at;
}

}  // namespace

const char* TreeTexts::Cell(const TextRun& run, int column) const {
  if (run.size == 0) return "";
  const std::string_view texts = View(run);
  int columns = 0;
  const char* const at = FindCell(texts, column, columns);
  return at == texts.data() + texts.size() ? "" : at;
}

TextRun TreeTexts::Add(std::span<const char* const> texts) {
  // Of the first texts the lengths are kept from counting to copying.
  constexpr std::size_t kKept = 16;
  std::size_t lengths[kKept];
  const auto length = [&](std::size_t at) {
    return texts[at] == nullptr ? 0 : std::strlen(texts[at]);
  };
  std::size_t size = 0;
  std::size_t used = 0;
  std::size_t count = 0;
  for (std::size_t at = 0; at < texts.size(); ++at) {
    const std::size_t bytes = length(at);
    if (at < kKept) lengths[at] = bytes;
    size += bytes + 1;
    if (size > kMostBytes) return {};
    if (bytes == 0) continue;
    used = size;
    count = at + 1;
  }
  if (used == 0) return {};
  const TextRun run = Take(static_cast<std::uint32_t>(used));
  char* to = At(run);
  for (std::size_t at = 0; at < count; ++at) {
    const std::size_t bytes = at < kKept ? lengths[at] : length(at);
    if (bytes > 0) std::memcpy(to, texts[at], bytes);
    to += bytes;
    *to++ = '\0';
  }
  return run;
}

bool TreeTexts::SetCell(TextRun& run, int column, std::string_view text) {
  if (GrowInPlace(run, column, text)) return true;
  const std::string_view texts = View(run);
  int columns = 0;
  const char* const cell = FindCell(texts, column, columns);
  const auto start = static_cast<std::size_t>(cell - texts.data());
  const bool is_there = start < texts.size();
  const std::string_view former = is_there ? std::string_view(cell) : std::string_view();
  if (former == text) return true;
  const auto missing = static_cast<std::size_t>(column - columns);
  if (texts.size() - former.size() + missing + text.size() + 1 > kMostBytes) return false;
  scratch_.assign(texts.substr(0, start)).append(missing, '\0').append(text).push_back('\0');
  if (is_there) scratch_.append(texts.substr(start + former.size() + 1));
  // Empty texts at the end aren't held.
  std::size_t size = scratch_.size();
  while (size > 0 && scratch_[size - 1] == '\0' && (size == 1 || scratch_[size - 2] == '\0')) {
    --size;
  }
  Replace(run, std::string_view(scratch_).substr(0, size));
  if (scratch_.capacity() > kUsualChunk) scratch_ = {};
  return true;
}

bool TreeTexts::GrowInPlace(TextRun& run, int column, std::string_view text) {
  if (text.empty() || text.size() >= kLargeRun || current_ == kNoChunk) return false;
  Chunk& chunk = chunks_[current_];
  if (run.size == 0) {
    run = {current_, chunk.used, 0};
  } else if (run.chunk != current_ || run.offset + run.size != chunk.used) {
    return false;
  }
  int columns = 0;
  if (run.size > 0 && FindCell(View(run), column, columns) != At(run) + run.size) return false;
  const auto missing = static_cast<std::size_t>(column - columns);
  const std::size_t added = missing + text.size() + 1;
  if (added > chunk.capacity - chunk.used) {
    if (run.size == 0) run = {};
    return false;
  }
  char* const end = chunk.bytes.get() + chunk.used;
  std::memset(end, 0, missing);
  std::memmove(end + missing, text.data(), text.size());
  end[added - 1] = '\0';
  run.size += static_cast<std::uint32_t>(added);
  chunk.used += static_cast<std::uint32_t>(added);
  chunk.live += static_cast<std::uint32_t>(added);
  return true;
}

void TreeTexts::Replace(TextRun& run, std::string_view texts) {
  const auto size = static_cast<std::uint32_t>(texts.size());
  // A chunk that one large run leaves nearly empty isn't kept.
  if (size > 0 && size <= run.size && (run.size <= kLargeRun || size > run.size / 2)) {
    std::memcpy(At(run), texts.data(), size);
    chunks_[run.chunk].live -= run.size - size;
    garbage_ += run.size - size;
    run.size = size;
    return;
  }
  TextRun moved;
  if (size > 0) {
    moved = Take(size);
    std::memcpy(At(moved), texts.data(), size);
  }
  Free(run);
  run = moved;
}

TextRun TreeTexts::Take(std::uint32_t size) {
  const bool is_large = size > kLargeRun;
  if (!is_large && current_ != kNoChunk) {
    Chunk& chunk = chunks_[current_];
    if (size <= chunk.capacity - chunk.used) {
      const TextRun taken{current_, chunk.used, size};
      chunk.used += size;
      chunk.live += size;
      return taken;
    }
  }
  std::uint32_t capacity = size;
  if (!is_large) {
    const std::size_t wanted = std::clamp<std::size_t>(room_, kLeastChunk, kUsualChunk);
    capacity = std::max(size, static_cast<std::uint32_t>(wanted));
  }
  auto bytes = std::make_unique_for_overwrite<char[]>(capacity);
  auto index = static_cast<std::uint32_t>(chunks_.size());
  if (free_chunks_.empty()) {
    // Room for all of them to become free, so that freeing needs no memory.
    free_chunks_.reserve(chunks_.size() + 1);
    chunks_.emplace_back();
  } else {
    index = free_chunks_.back();
    free_chunks_.pop_back();
  }
  chunks_[index] = {std::move(bytes), capacity, size, size};
  room_ += capacity;
  if (!is_large) {
    const std::uint32_t former = std::exchange(current_, index);
    if (former != kNoChunk && chunks_[former].live == 0) DropChunk(former);
  }
  return {index, 0, size};
}

void TreeTexts::Free(const TextRun& run) {
  if (run.size == 0) return;
  Chunk& chunk = chunks_[run.chunk];
  chunk.live -= run.size;
  garbage_ += run.size;
  if (chunk.live > 0) return;
  if (run.chunk != current_) {
    DropChunk(run.chunk);
    return;
  }
  garbage_ -= chunk.used;
  chunk.used = 0;
}

void TreeTexts::DropChunk(std::uint32_t index) {
  Chunk& chunk = chunks_[index];
  garbage_ -= chunk.used;
  room_ -= chunk.capacity;
  chunk = {};
  free_chunks_.push_back(index);
}

TextRun TreeTexts::Copy(const TreeTexts& from, const TextRun& run) {
  if (run.size == 0) return {};
  const TextRun taken = Take(run.size);
  std::memcpy(At(taken), from.At(run), run.size);
  return taken;
}

}  // namespace dq::detail
