#include "dqlib/core/lob_reader.h"

#include "dqlib/platform/platform.h"

namespace dq {

CDQLobReader::CDQLobReader(const CString& path, int chunkSize, bool deleteFile)
    : CDQFile(path, FILE_OPEN_READ), m_nChunkSize(chunkSize), m_bDelete(deleteFile) {}

CDQLobReader::~CDQLobReader() {
  if (!m_bDelete || IsReadOnly()) return;
  Close();
  // A spool file that can't be deleted is left to the next cleaning of its directory.
  platform::Current().files->Delete(m_strFilePath.View());
}

bool CDQLobReader::GetData(CString& out) {
  if (!IsOpen()) return false;
  if (m_nChunkSize >= 0) {
    m_nReadLength = Read(out, m_nChunkSize);
  } else {
    FileToString(out);
    m_nReadLength = out.GetLength();
  }
  Init(m_strFilePath, m_eMode);  // Which closes.
  return true;
}

}  // namespace dq
