// Files in memory that can be kept in the host's profile or in an archive.

#pragma once

#include "dqlib/framework/base/archive.h"
#include "dqlib/framework/base/file.h"

namespace dq {

/// A file in memory that can keep its bytes in the host's profile or in an archive.
class CXMemFile : public CMemFile {
 public:
  /// Replaces the contents by the binary profile value and goes to the start. False, and no change,
  /// if there is none.
  bool ReadRegistry(const char* section, const char* entry);
  /// Writes the contents as one binary profile value.
  bool WriteRegistry(const char* section, const char* entry);
  /// A 32-bit length and the bytes.
  void Serialize(CArchive& archive) override;
  /// The bytes; valid until the file changes.
  char* GetBuffer() { return m_bytes.data(); }
};

}  // namespace dq
