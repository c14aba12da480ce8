#include "dqlib/dbvocab/object_info_map.h"

#include <memory>
#include <utility>
#include <vector>

#include "dqlib/framework/base/archive.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

void ShowFailure(UINT text_id, const char* path, const CException& error) {
  char cause[255];
  error.GetErrorMessage(cause, sizeof(cause));
  CString text;
  text.Format(text_id, path, cause);
  AfxMessageBox(text, BOX_STOP);
}

struct LoadedEntry {
  CString key;
  std::unique_ptr<CDBObjectInfo> object;
};

std::vector<LoadedEntry> ReadEntries(CArchive& archive) {
  // A key and an object's tag are three bytes at least.
  constexpr std::uint64_t kSmallestEntry = 3;
  const DWORD count = archive.ReadCount();
  if (archive.Remaining() / kSmallestEntry < count) {
    throw CArchiveException(CArchiveException::endOfFile);
  }
  std::vector<LoadedEntry> entries;
  for (DWORD left = count; left > 0; --left) {
    // All that has been read stays, since a later entry may refer to it.
    LoadedEntry& entry = entries.emplace_back();
    archive >> entry.key;
    bool is_new = false;
    CObject* const read = archive.ReadObject(RUNTIME_CLASS(CDBObjectInfo), &is_new);
    auto* const object = static_cast<CDBObjectInfo*>(read);
    if (is_new) {
      entry.object.reset(object);
    } else if (object != nullptr) {
      entry.object = std::make_unique<CDBObjectInfo>(*object);
    }
  }
  return entries;
}

}  // namespace

CDBObjectInfoMap::~CDBObjectInfoMap() { CDBObjectInfoMap::RemoveAll(); }

void CDBObjectInfoMap::Insert(const char* key, CDBObjectInfo* object) {
  std::unique_ptr<CDBObjectInfo> owned(object);
  CObject* const former = Exchange(key, object);
  static_cast<void>(owned.release());
  // Last, for the key may be a part of it.
  if (former != object) delete former;
}

bool CDBObjectInfoMap::RemoveKey(const char* key) {
  CDBObjectInfo* former = nullptr;
  if (!Find(key, former)) return false;
  CMapStringToOb::RemoveKey(key);
  delete former;
  return true;
}

void CDBObjectInfoMap::RemoveAll() {
  VisitObjects([](CObject* object) { delete object; });
  CMapStringToOb::RemoveAll();
}

bool CDBObjectInfoMap::Find(const char* key, CDBObjectInfo*& object) const {
  CObject* found = nullptr;
  if (!Lookup(key, found)) return false;
  object = static_cast<CDBObjectInfo*>(found);
  return true;
}

void CDBObjectInfoMap::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    CMapStringToOb::Serialize(archive);
    return;
  }
  std::vector<LoadedEntry> entries = ReadEntries(archive);
  Reserve(static_cast<std::size_t>(GetCount()) + entries.size());
  for (LoadedEntry& entry : entries) Insert(entry.key, entry.object.release());
}

bool CDBObjectInfoMap::Save(const char* path) {
  CReplacingFile file;
  CFileException failure;
  constexpr UINT kFlags = CFile::modeCreate | CFile::shareExclusive | CFile::modeReadWrite;
  if (!file.Open(path, kFlags, &failure)) {
    ShowFailure(IDS_OBJECT_MAP_CREATE_FAILED, path, failure);
    return false;
  }
  return Write(file);
}

bool CDBObjectInfoMap::Load(const char* path) {
  CFile file;
  CFileException failure;
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite, &failure)) {
    if (failure.m_cause == CFileException::fileNotFound) return false;
    ShowFailure(IDS_OBJECT_MAP_OPEN_FAILED, path, failure);
    return false;
  }
  return Read(file);
}

bool CDBObjectInfoMap::Update(const char* path, const std::function<void()>& change) {
  CReplacingFile file;
  CFileException failure;
  constexpr UINT kFlags = CFile::modeCreate | CFile::modeNoTruncate | CFile::shareExclusive |
                          CFile::shareWait | CFile::modeReadWrite;
  if (!file.Open(path, kFlags, &failure)) {
    const bool missing = failure.m_cause == CFileException::fileNotFound;
    ShowFailure(missing ? IDS_OBJECT_MAP_CREATE_FAILED : IDS_OBJECT_MAP_OPEN_FAILED, path, failure);
    return false;
  }
  if (!Read(file)) return false;
  change();
  return Write(file);
}

bool CDBObjectInfoMap::Read(CFile& file) {
  try {
    if (file.GetLength() > 0) {
      CArchive archive(&file, CArchive::load);
      Serialize(archive);
    }
  } catch (const CException& error) {
    ShowFailure(IDS_OBJECT_MAP_READ_FAILED, file.GetFilePath(), error);
    return false;
  }
  m_bLoaded = true;
  return true;
}

bool CDBObjectInfoMap::Write(CReplacingFile& file) {
  try {
    CArchive archive(&file, CArchive::store);
    Serialize(archive);
    archive.Close();
    file.Close();
  } catch (const CException& error) {
    ShowFailure(IDS_OBJECT_MAP_WRITE_FAILED, file.GetFilePath(), error);
    return false;
  }
  return true;
}

}  // namespace dq
