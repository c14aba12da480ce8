// What is stored in an archive and loaded from one, and an object for them: a value, a text, bytes
// and two more objects. To be included by one source of a program.

#pragma once

#include "dqlib/dqlib.h"

namespace dq::test {

/// What `write(archive)` stores.
std::string Stored(const auto& write) {
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  write(archive);
  archive.Close();
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

/// Runs `read(archive)` on a stream.
void LoadFrom(std::string_view stream, const auto& read) {
  CMemFile file;
  file.Write(stream.data(), static_cast<UINT>(stream.size()));
  file.SeekToBegin();
  CArchive archive(&file, CArchive::load);
  read(archive);
}

class SerialNode : public CObject {
  DECLARE_SERIAL(SerialNode)
 public:
  void Serialize(CArchive& archive) override {
    if (archive.IsStoring()) {
      archive << number << text;
      archive.WriteCount(static_cast<DWORD>(bytes.size()));
      archive.Write(bytes.data(), static_cast<UINT>(bytes.size()));
      archive << next << other;
      return;
    }
    schema = archive.GetObjectSchema();
    archive >> number >> text;
    bytes.resize(archive.ReadCount());
    for (char& byte : bytes) archive >> reinterpret_cast<BYTE&>(byte);
    next = static_cast<SerialNode*>(Read(archive, RUNTIME_CLASS(SerialNode), next_owner));
    other = Read(archive, nullptr, other_owner);
  }

  /// Reads an object and keeps it in `owner` if it was new in the stream.
  static CObject* Read(CArchive& archive, const CRuntimeClass* expected,
                       std::unique_ptr<CObject>& owner) {
    bool is_new = false;
    CObject* const object = archive.ReadObject(expected, &is_new);
    if (is_new) owner.reset(object);
    return object;
  }

  WORD number = 0;
  CString text;
  std::string bytes;
  SerialNode* next = nullptr;
  CObject* other = nullptr;
  UINT schema = 0;
  std::unique_ptr<CObject> next_owner;
  std::unique_ptr<CObject> other_owner;
};
IMPLEMENT_SERIAL(SerialNode, CObject, VERSIONABLE_SCHEMA | 3)

}  // namespace dq::test
