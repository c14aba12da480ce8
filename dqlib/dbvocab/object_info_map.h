// Objects by key, kept in a file.
//
//   CDBObjectInfoMap map;
//   if (map.Load(path)) map.Insert("1", new CDBObjectInfo(OT_TABLE, "SCOTT", "EMP"));
//   map.Save(path);

#pragma once

#include <functional>

#include "dqlib/dbvocab/object_info.h"
#include "dqlib/framework/base/file.h"
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

  /// The base's operations, which delete what they drop; `SetAt` is `Insert`. The base's own,
  /// called through a `CMapStringToOb`, would lose it.
  void SetAt(const char* key, CDBObjectInfo* object) { Insert(key, object); }
  bool RemoveKey(const char* key);
  void RemoveAll();

  /// Whether a `Load` has succeeded, ever.
  bool IsLoaded() const { return m_bLoaded; }

  /// Write the file anew, and read one into the map. Keys of the file replace equal ones of the
  /// map. An empty file is a map without entries. If the file can't be read to its end, or has
  /// anything but such objects, the map stays as it is; if it can't be written, the file does,
  /// whatever happens meanwhile. On failure the person is told why, with false for result; a file
  /// to load that isn't there is told by the result alone.
  bool Save(const char* path);
  bool Load(const char* path);

  /// Reads the file as `Load` does, if there is one, calls `change`, and saves. Nobody else who
  /// keeps to share modes reads or writes the file meanwhile; others are waited for, some 20
  /// seconds at most. If the file can't be read `change` isn't called and the file stays.
  bool Update(const char* path, const std::function<void()>& change);

  /// As the base's; loading is all or nothing. Where one object stands under several keys, each but
  /// the first gets a copy.
  void Serialize(CArchive& archive) override;

 private:
  bool Read(CFile& file, const char* path);
  bool Write(CReplacingFile& file, const char* path);

  bool m_bLoaded = false;
};

}  // namespace dq
