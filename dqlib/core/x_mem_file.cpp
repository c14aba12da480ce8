#include "dqlib/core/x_mem_file.h"

#include "dqlib/framework/windows/win_app.h"

namespace dq {

bool CXMemFile::ReadRegistry(const char* section, const char* entry) {
  CWinApp* const app = AfxGetApp();
  BYTE* data = nullptr;
  UINT size = 0;
  if (app == nullptr || !app->GetProfileBinary(section, entry, &data, &size)) return false;
  const std::unique_ptr<BYTE[]> owner(data);
  SetLength(0);
  Write(data, size);
  SeekToBegin();
  return true;
}

bool CXMemFile::WriteRegistry(const char* section, const char* entry) {
  CWinApp* const app = AfxGetApp();
  if (app == nullptr) return false;
  SeekToBegin();
  return app->WriteProfileBinary(section, entry, reinterpret_cast<const BYTE*>(m_bytes.data()),
                                 static_cast<UINT>(m_bytes.size())) == 1;
}

void CXMemFile::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive << static_cast<DWORD>(m_bytes.size());
    archive.Write(m_bytes.data(), static_cast<UINT>(m_bytes.size()));
    return;
  }
  DWORD length = 0;
  archive >> length;
  if (length > archive.Remaining()) throw CArchiveException(CArchiveException::endOfFile);
  SetLength(length);
  if (archive.Read(m_bytes.data(), length) != length) {
    throw CArchiveException(CArchiveException::endOfFile);
  }
}

}  // namespace dq
