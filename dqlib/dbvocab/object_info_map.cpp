#include "dqlib/dbvocab/object_info_map.h"

#include <memory>
#include <new>
#include <system_error>
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

/// Whether `work` came to its end; if not, the person is told why.
template <typename Work>
bool Tried(UINT text_id, const char* path, Work work) {
  try {
    work();
    return true;
  } catch (const CException& error) {
    ShowFailure(text_id, path, error);
  } catch (const std::bad_alloc&) {
    constexpr auto kNoMemory = static_cast<LONG>(std::errc::not_enough_memory);
    ShowFailure(text_id, path, CFileException(CFileException::generic, kNoMemory));
  }
  return false;
}

/// Opens a file or tells why it can't be; 0 for what is told of one that isn't there tells nothing.
bool Opened(CFile& file, const char* path, UINT flags, UINT text_id, UINT missing_id) {
  CFileException failure;
  BOOL opened = 0;
  if (!Tried(text_id, path, [&] { opened = file.Open(path, flags, &failure); })) return false;
  if (opened) return true;
  const bool missing = failure.m_cause == CFileException::fileNotFound;
  const UINT told = missing ? missing_id : text_id;
  if (told != 0) ShowFailure(told, path, failure);
  return false;
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
  CDBObjectInfoMap loaded;
  loaded.Reserve(entries.size());
  for (LoadedEntry& entry : entries) loaded.Insert(entry.key, entry.object.release());
  ExchangeAll(loaded);
}

bool CDBObjectInfoMap::Save(const char* path) {
  CReplacingFile file;
  constexpr UINT kFlags = CFile::modeCreate | CFile::shareExclusive | CFile::modeReadWrite;
  constexpr UINT kFailed = IDS_OBJECT_MAP_CREATE_FAILED;
  return Opened(file, path, kFlags, kFailed, kFailed) && Write(file, path);
}

bool CDBObjectInfoMap::Load(const char* path) {
  CFile file;
  constexpr UINT kFlags = CFile::modeRead | CFile::shareDenyWrite;
  return Opened(file, path, kFlags, IDS_OBJECT_MAP_OPEN_FAILED, 0) && Read(file, path);
}

bool CDBObjectInfoMap::Update(const char* path, const std::function<void()>& change) {
  CReplacingFile file;
  constexpr UINT kFlags = CFile::modeCreate | CFile::modeNoTruncate | CFile::shareExclusive |
                          CFile::shareWait | CFile::modeReadWrite;
  if (!Opened(file, path, kFlags, IDS_OBJECT_MAP_OPEN_FAILED, IDS_OBJECT_MAP_CREATE_FAILED) ||
      !Read(file, path)) {
    return false;
  }
  change();
  return Write(file, path);
}

bool CDBObjectInfoMap::Read(CFile& file, const char* path) {
  const auto read = [&] {
    if (file.GetLength() == 0) return;
    CArchive archive(&file, CArchive::load);
    Serialize(archive);
  };
  if (!Tried(IDS_OBJECT_MAP_READ_FAILED, path, read)) return false;
  m_bLoaded = true;
  return true;
}

bool CDBObjectInfoMap::Write(CReplacingFile& file, const char* path) {
  return Tried(IDS_OBJECT_MAP_WRITE_FAILED, path, [&] {
    CArchive archive(&file, CArchive::store);
    Serialize(archive);
    archive.Close();
    file.Close();
  });
}

}  // namespace dq
