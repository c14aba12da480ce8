// A map from texts to objects.
//
//   CMapStringToOb map;
//   map.SetAt("emp", &object);
//   CObject* found = nullptr;
//   if (map.Lookup("emp", found)) ...

#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "dqlib/framework/base/object.h"
#include "dqlib/framework/base/string_collections.h"

namespace dq {

/// Objects, which it doesn't own, by texts whose case counts. Keys end at their first zero; a null
/// one is "". Archives and walks have the order of a table of 17 buckets, whatever the size: by the
/// bucket that the key falls into, the newest key of a bucket first. That keeps files equal byte
/// for byte to those of earlier releases; readers take any order.
class CMapStringToOb : public CObject {
  DECLARE_SERIAL(CMapStringToOb)
  CMapStringToOb() = default;

  int GetCount() const { return static_cast<int>(m_entries.size()); }
  bool IsEmpty() const { return m_entries.empty(); }

  /// True, and the object, if the key is there; else `object` stays what it was.
  bool Lookup(const char* key, CObject*& object) const;
  /// Adds the key, or gives one that is there another object and leaves it its place.
  void SetAt(const char* key, CObject* object);
  /// False if the key isn't there.
  bool RemoveKey(const char* key);
  void RemoveAll();
  /// Makes room for this many keys in all.
  void Reserve(std::size_t count);

  /// For walking: where to start, null if the map is empty; and the key and object at `position`,
  /// which moves on, to null behind the last. What was walked by may be removed meanwhile; keys
  /// that are added don't come up in walks under way. One walk at a time.
  POSITION GetStartPosition() const;
  void GetNextAssoc(POSITION& position, CString& key, CObject*& object) const;

  /// Stores the number of entries, then each one's key and object; loading adds them to those that
  /// are there, with objects that the caller owns from then on, however loading ends.
  void Serialize(CArchive& archive) override;

 protected:
  /// `SetAt`, which returns the object that the key had; null if it had none.
  CObject* Exchange(const char* key, CObject* object);
  /// `Exchange` for each key of another map, in the order in which they were added there; all of
  /// them or, if memory has no room, none. The other one keeps what was exchanged.
  void ExchangeAll(CMapStringToOb& other);
  /// Calls `visit(object)` for each object, in no order.
  template <typename Visit>
  void VisitObjects(Visit visit) const {
    for (const auto& [key, entry] : m_entries) visit(entry.object);
  }

 private:
  static constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

  struct Entry {
    CObject* object = nullptr;
    /// When the key was added.
    std::uint64_t number = 0;
    /// Where it stands in `m_order`.
    mutable std::size_t place = kNowhere;
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const {
      return std::hash<std::string_view>{}(key);
    }
  };
  using Entries = std::unordered_map<std::string, Entry, Hash, std::equal_to<>>;

  /// The entries in the order of buckets.
  std::vector<const Entries::value_type*> InOrder() const;

  Entries m_entries;
  std::uint64_t m_nNext = 0;
  /// Of the walk under way; null for what has been removed since it began.
  mutable std::vector<const Entries::value_type*> m_order;
};

}  // namespace dq
