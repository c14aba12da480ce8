#include "dqlib/frame/version_info.h"

#include "dqlib/framework/base/little_endian.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr int kLongestPath = 259;

platform::VersionResources& Versions() { return *platform::Current().version_resources; }

}  // namespace

CDQVersionInfo::CDQVersionInfo() : CDQVersionInfo(static_cast<HINSTANCE>(nullptr)) {}

CDQVersionInfo::CDQVersionInfo(HINSTANCE module) {
  SetFileName(CString(platform::Current().modules->FileName(module)).Left(kLongestPath));
}

CDQVersionInfo::CDQVersionInfo(const char* file_name) { SetFileName(file_name); }

CDQVersionInfo::~CDQVersionInfo() { delete[] m_pVersionBlock; }

void CDQVersionInfo::InitMembers() {
  m_dwTranslation = 0;
  m_pVersionBlock = nullptr;
  m_nVersionBlockSize = 0;
}

void CDQVersionInfo::SetFileName(const char* file_name) {
  m_strFileName = file_name;
  GetVersionInfo();
}

BOOL CDQVersionInfo::GetVersionInfo() {
  const auto drop_block = [this] {
    delete[] m_pVersionBlock;
    m_pVersionBlock = nullptr;
    m_nVersionBlockSize = 0;
  };
  drop_block();
  m_nVersionBlockSize = Versions().Size(m_strFileName.View());
  m_pVersionBlock = std::make_unique<char[]>(m_nVersionBlockSize).release();
  if (!Versions().Fetch(m_strFileName.View(), {m_pVersionBlock, m_nVersionBlockSize})) {
    drop_block();
    return 0;
  }
  const auto translation =
      Versions().Query({m_pVersionBlock, m_nVersionBlockSize}, "\\VarFileInfo\\Translation");
  if (!translation || translation->size() < sizeof(DWORD)) return 0;
  m_dwTranslation = detail::FromLittleEndian<DWORD>(*translation);
  return 1;
}

CString CDQVersionInfo::GetLanguageString() const {
  CString text;
  text.Format("%04x%04x", m_dwTranslation & 0xFFFF, m_dwTranslation >> 16);
  return text;
}

CString CDQVersionInfo::GetString(const char* key) const {
  if (m_pVersionBlock == nullptr) return {};
  const CString query = "\\StringFileInfo\\" + GetLanguageString() + "\\" + key;
  const auto text = Versions().Query({m_pVersionBlock, m_nVersionBlockSize}, query.View());
  return CString(text.value_or(""));
}

CString CDQVersionInfo::GetProductName() { return GetString("ProductName"); }

}  // namespace dq
