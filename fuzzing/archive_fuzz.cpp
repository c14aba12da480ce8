// Any bytes as a stream of objects. What loads is stored and loads the same again, and no single
// piece of memory is larger than what the stream accounts for.

#include <memory>
#include <new>
#include <vector>

#include "fuzzing/fuzzing.h"
#include "tests/support/serial_node.h"

namespace dq::fuzz {
namespace {

using Objects = std::vector<std::unique_ptr<CObject>>;

/// The most that one piece of memory may have.
std::size_t g_limit = SIZE_MAX;

/// Loads objects up to the end or the first that doesn't fit.
Objects Load(std::string_view stream) {
  Objects objects;
  const bool whole = Loads(stream, [&](CArchive& archive) {
    while (archive.Remaining() > 0) {
      test::SerialNode::Read(archive, nullptr, objects.emplace_back());
    }
  });
  if (!whole) objects.pop_back();
  return objects;
}

std::string Store(const Objects& objects) {
  return Stored([&](CArchive& archive) {
    for (const auto& object : objects) {
      // One that was met before is null here, since its first place owns it.
      if (object != nullptr) archive << object.get();
    }
  });
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
  const Objects objects = Load(bytes);
  g_limit = SIZE_MAX;
  const std::string stored = Store(objects);
  Require(Store(Load(stored)) == stored);
}
