// Any bytes as an object map: either the map stays as it is, or what has been loaded is stored and
// loads the same again.

#include "dqlib/dbvocab/object_info_map.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

bool Load(CDBObjectInfoMap& map, std::string_view stream) {
  return Loads(stream, [&](CArchive& archive) { map.Serialize(archive); });
}

std::string Store(CDBObjectInfoMap& map) {
  return Stored([&](CArchive& archive) { map.Serialize(archive); });
}

}  // namespace

void Try(std::string_view bytes) {
  // Entries of a bucket are stored the newest first, so that each pass turns them round.
  CDBObjectInfoMap map;
  map.Insert("k", new CDBObjectInfo(OT_TABLE, "SCOTT", "EMP"));
  const std::string before = Store(map);
  const bool loaded = Load(map, bytes);
  const std::string stored = Store(map);
  Require(loaded || stored == before);
  CDBObjectInfoMap once;
  Require(Load(once, stored) && once.GetCount() == map.GetCount());
  CDBObjectInfoMap twice;
  Require(Load(twice, Store(once)) && Store(twice) == stored);
}

}  // namespace dq::fuzz
