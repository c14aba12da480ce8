// Large values that a tool has spooled to a file.

#pragma once

#include "dqlib/core/dq_file.h"

namespace dq {

/// Reads a large value that a tool has spooled to a file.
class CDQLobReader : public CDQFile {
 public:
  /// `chunkSize` below 0 reads the whole file at once. With `deleteFile` the destructor deletes the
  /// file unless it is read-only.
  CDQLobReader(const CString& path, int chunkSize, bool deleteFile);
  ~CDQLobReader() override;

  /// Reads at most the chunk size, or the whole file, and closes the file, so that one opening
  /// serves one read. False if the file isn't open.
  virtual bool GetData(CString& out);
  long GetReadLength() const { return m_nReadLength; }

 private:
  long m_nReadLength = 0;
  int m_nChunkSize;
  bool m_bDelete;
};

}  // namespace dq
