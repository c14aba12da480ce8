// Objects by key, kept in a file.
//
//   CDBObjectInfoMap map;
//   if (map.Load(path)) map.Insert("1", new CDBObjectInfo(OT_TABLE, "SCOTT", "EMP"));
//   map.Save(path);

#pragma once

#include "dqlib/dbvocab/object_info.h"
#include "dqlib/framework/base/map_string_to_ob.h"

namespace dq {

/// A map that owns its objects, any of which may be null. The file has the base's archive form.
class CDBObjectInfoMap : public CMapStringToOb {
 public:
  CDBObjectInfoMap() = default;
  ~CDBObjectInfoMap() override;

  /// Takes the object over, and deletes the one that the key had. An object is in one map, under
  /// one key.
  void Insert(const char* key, CDBObjectInfo* object);
  /// True, and the object, which stays the map's, if the key is there; else `object` stays what it
  /// was.
  bool Find(const char* key, CDBObjectInfo*& object) const;

  /// Whether a `Load` has succeeded, ever.
  bool IsLoaded() const { return m_bLoaded; }

  /// Write the file anew, and read one into the map. Keys of the file replace equal ones of the
  /// map. An empty file is a map without entries. If the file can't be read to its end, or has
  /// anything but such objects, the map stays as it is. On failure the person is told why, with
  /// false for result; a file to load that isn't there is told by the result alone.
  bool Save(const char* path);
  bool Load(const char* path);

  /// As the base's; loading is all or nothing. Where one object stands under several keys, each but
  /// the first gets a copy.
  void Serialize(CArchive& archive) override;

 private:
  // These would lose what the map owns.
  using CMapStringToOb::RemoveAll;
  using CMapStringToOb::RemoveKey;
  using CMapStringToOb::SetAt;

  bool m_bLoaded = false;
};

}  // namespace dq
