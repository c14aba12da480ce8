// Any bytes as a stream of objects, and as an object map, which stays as it is unless they are one.
// What loads is stored and loads the same again, and no single piece of memory is larger than what
// the stream accounts for.

#include "fuzzing/fuzzing.h"
#include "tests/support/serial_node.h"

namespace dq::fuzz {

/// The most that one piece of memory may have.
static std::size_t g_limit = SIZE_MAX;

/// Whether the stream could be loaded up to where `into` ends. The limit holds until something is
/// stored.
static bool Loads(std::string_view stream, auto& into) {
  constexpr std::size_t kBuffers = 16384;
  // The table of indices has an entry for two bytes, and doubles as it grows.
  constexpr std::size_t kMemoryPerByte = 64;
  g_limit = kBuffers + stream.size() * kMemoryPerByte;
  try {
    test::LoadFrom(stream, [&](CArchive& archive) { into.Serialize(archive); });
    return true;
  } catch (const CArchiveException&) {
    return false;
  }
}

static std::string Stored(auto& objects) {
  g_limit = SIZE_MAX;
  return test::Stored([&](CArchive& archive) { objects.Serialize(archive); });
}

struct Objects {
  void Serialize(CArchive& archive) {
    for (const auto& object : all) {
      // One that was met before is null here, since its first place owns it.
      if (object != nullptr) archive << object.get();
    }
    while (archive.IsLoading() && archive.Remaining() > 0) {
      test::SerialNode::Read(archive, nullptr, all.emplace_back());
    }
  }
  std::vector<std::unique_ptr<CObject>> all;
};

/// Loads objects up to the end or the first that doesn't fit, and stores them.
static std::string Again(std::string_view stream) {
  Objects objects;
  if (!Loads(stream, objects)) objects.all.pop_back();
  return Stored(objects);
}

}  // namespace dq::fuzz

// The form without a throw belongs to the same family, or the two would not fit together. Not
// inline, or the compiler sees memory of one kind given back as another.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return std::malloc(size);
}

[[gnu::noinline]] void* operator new(std::size_t size) {
  dq::fuzz::Require(size <= dq::fuzz::g_limit);
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

void dq::fuzz::Try(std::string_view bytes) {
  const std::string stored = Again(bytes);
  Require(Again(stored) == stored);
  // Entries of a bucket are stored the newest first, so that each pass turns them round.
  CDBObjectInfoMap map, once, twice;
  map.Insert("k", new CDBObjectInfo(OT_TABLE, "SCOTT", "EMP"));
  const std::string before = Stored(map);
  const bool loaded = Loads(bytes, map);
  const std::string after = Stored(map);
  Require(loaded || after == before);
  Require(Loads(after, once) && once.GetCount() == map.GetCount());
  Require(Loads(Stored(once), twice) && Stored(twice) == after);
}
