// Streams of values and objects, in the framework's own form, byte for byte: files made by earlier
// releases load.
//
// Everything is little-endian. A count is a WORD, or FFFFh and a DWORD from 65,535 on. A text is
// its length (one byte below 255, else FFh and a WORD below FFFEh, else FFh FFFFh and a DWORD) and
// its bytes. An object is a tag: 0 for null; the index of an object already in the stream; 8000h
// with the index of a class already in the stream; or FFFFh, its schema (WORD), the length of its
// class's name (WORD) and the name for a new class. Classes and objects share one count of indices
// from 1; 7FFFh introduces an index of 32 bits.
//
// Loading trusts nothing: every length is checked against what is left of the stream before memory
// is taken for it, and a stream that doesn't fit throws a `CArchiveException`. Objects that were
// read whole before it threw stay with whoever read them; one that wasn't is deleted. Objects nest
// at most 1,000 deep, both ways, so that no stream exhausts the stack.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "dqlib/framework/base/exception.h"
#include "dqlib/framework/base/file.h"

namespace dq {

/// Stores to or loads from a file that is open and outlives it. Not for several threads at once.
class CArchive {
 public:
  enum Mode : UINT { store = 0, load = 1 };

  CArchive(CFile* file, UINT mode);
  CArchive(const CArchive&) = delete;
  CArchive& operator=(const CArchive&) = delete;
  /// Writes what is buffered, unless an exception is under way; without a throw.
  ~CArchive();

  bool IsLoading() const { return m_bLoading; }
  bool IsStoring() const { return !m_bLoading; }
  CFile* GetFile() const { return m_pFile; }

  /// Bytes as they stand. `Read` returns how many there were; fewer only at the end.
  UINT Read(void* buffer, UINT count);
  void Write(const void* buffer, UINT count);
  /// Writes what is buffered to the file.
  void Flush();
  /// Flushes and lets go of the file, which stays open. Nothing is called on the archive
  /// afterwards.
  void Close();

  CArchive& operator<<(BYTE value);
  CArchive& operator<<(WORD value);
  CArchive& operator<<(LONG value);
  CArchive& operator<<(DWORD value);
  CArchive& operator<<(std::int64_t value);
  CArchive& operator<<(float value);
  CArchive& operator<<(double value);
  CArchive& operator<<(const CString& text);
  CArchive& operator<<(const CObject* object);
  CArchive& operator>>(BYTE& value);
  CArchive& operator>>(WORD& value);
  CArchive& operator>>(LONG& value);
  CArchive& operator>>(DWORD& value);
  CArchive& operator>>(std::int64_t& value);
  CArchive& operator>>(float& value);
  CArchive& operator>>(double& value);
  CArchive& operator>>(CString& text);

  /// The number of things that follow, each of which takes at least one byte: reading throws
  /// `endOfFile` for a count that the rest of the stream can't hold.
  void WriteCount(DWORD count);
  DWORD ReadCount();

  /// Objects of serial classes, each once however often it is met. Writing throws `badClass` for
  /// one that isn't of a serial class, which could not be read back. Reading gives an object that
  /// the caller owns if it was new in the stream, which `is_new`, if not null, tells, and throws
  /// `badClass` unless it is of `runtime_class` (null allows any), which includes every class the
  /// program doesn't know.
  void WriteObject(const CObject* object);
  CObject* ReadObject(const CRuntimeClass* runtime_class, bool* is_new = nullptr);

  /// The schema with which the object being loaded was stored.
  UINT GetObjectSchema() const { return m_nObjectSchema; }

  /// Bytes that can still be read.
  std::uint64_t Remaining() const;

 private:
  void Need(std::uint64_t bytes) const;
  void WriteClass(const CRuntimeClass* runtime_class);
  const CRuntimeClass* ReadNewClass();
  void WriteIndex(DWORD index, bool is_class);
  CObject* ReadNewObject(const CRuntimeClass* runtime_class, UINT schema);

  CFile* m_pFile;
  bool m_bLoading;
  UINT m_nObjectSchema = 0;
  int m_nDepth = 0;
  std::string m_buffer;
  std::size_t m_nNext = 0;
  /// What indices stand for: an object or a class each.
  struct Entry {
    CObject* object = nullptr;
    const CRuntimeClass* runtime_class = nullptr;
    UINT schema = 0;
  };
  std::vector<Entry> m_loaded;
  std::unordered_map<const void*, DWORD> m_stored;
  DWORD m_nNextIndex = 1;
};

}  // namespace dq
