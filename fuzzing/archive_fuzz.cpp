// Any bytes as a stream of objects. What loads is stored and loads the same again, and no single
// piece of memory is larger than what the stream accounts for.

#include <memory>
#include <new>
#include <vector>

#include "fuzzing/fuzzing.h"
#include "tests/support/serial_node.h"

namespace dq::fuzz {
namespace {

using test::SerialNode;

/// The most that one piece of memory may have.
std::size_t g_limit = SIZE_MAX;

/// Loads objects up to the end or the first that doesn't fit.
std::vector<std::unique_ptr<CObject>> Load(std::string_view stream) {
  CMemFile file;
  file.Write(stream.data(), static_cast<UINT>(stream.size()));
  file.SeekToBegin();
  CArchive archive(&file, CArchive::load);
  std::vector<std::unique_ptr<CObject>> objects;
  try {
    while (archive.Remaining() > 0) SerialNode::Read(archive, nullptr, objects.emplace_back());
  } catch (const CArchiveException&) {
    objects.pop_back();
  }
  return objects;
}

std::string Store(const std::vector<std::unique_ptr<CObject>>& objects) {
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  for (const auto& object : objects) {
    // One that was met before is null here, since its first place owns it.
    if (object != nullptr) archive << object.get();
  }
  archive.Close();
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

}  // namespace
}  // namespace dq::fuzz

// The form without a throw belongs to the same family, or the two would not fit together.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size); }

void* operator new(std::size_t size) {
  dq::fuzz::Require(size <= dq::fuzz::g_limit);
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

void dq::fuzz::Try(std::string_view bytes) {
  constexpr std::size_t kBuffers = 16384;
  // The table of indices has an entry for two bytes, and doubles as it grows.
  constexpr std::size_t kMemoryPerByte = 64;
  g_limit = kBuffers + bytes.size() * kMemoryPerByte;
  const auto objects = Load(bytes);
  g_limit = SIZE_MAX;
  const std::string stored = Store(objects);
  Require(Store(Load(stored)) == stored);
}
