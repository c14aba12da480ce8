// Any bytes as an object map: either the map stays as it is, or what has been loaded is stored and
// loads the same again.

#include "dqlib/dbvocab/object_info_map.h"
#include "dqlib/framework/base/archive.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

bool Load(CDBObjectInfoMap& map, std::string_view stream) {
  CMemFile file;
  file.Write(stream.data(), static_cast<UINT>(stream.size()));
  file.SeekToBegin();
  CArchive archive(&file, CArchive::load);
  try {
    map.Serialize(archive);
    return true;
  } catch (const CArchiveException&) {
    return false;
  }
}

std::string Store(CDBObjectInfoMap& map) {
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  map.Serialize(archive);
  archive.Close();
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

/// "key=type,owner,name " for each entry, in order.
std::string Contents(const CDBObjectInfoMap& map) {
  std::string contents;
  for (POSITION position = map.GetStartPosition(); position != nullptr;) {
    CString key;
    CObject* object = nullptr;
    map.GetNextAssoc(position, key, object);
    contents += std::string(key.View()) + '=';
    if (auto* const info = DYNAMIC_DOWNCAST(CDBObjectInfo, object)) {
      contents += std::to_string(info->GetObjectType()) + ',';
      contents += std::string(info->GetOwner().View()) + ',' + std::string(info->GetName().View());
    }
    contents += ' ';
  }
  return contents;
}

}  // namespace

void Try(std::string_view bytes) {
  CDBObjectInfoMap map;
  map.Insert("k", new CDBObjectInfo(OT_TABLE, "SCOTT", "EMP"));
  const std::string before = Contents(map);
  if (!Load(map, bytes)) {
    Require(Contents(map) == before);
    return;
  }
  // Entries of a bucket are stored the newest first, so that each pass turns them round.
  const std::string stored = Store(map);
  CDBObjectInfoMap once;
  Require(Load(once, stored) && once.GetCount() == map.GetCount());
  CDBObjectInfoMap twice;
  Require(Load(twice, Store(once)) && Contents(twice) == Contents(map));
}

}  // namespace dq::fuzz
