#include "dqlib/toolkit/flex_tab_data.h"

#include <cstring>
#include <random>

#include "dqlib/toolkit/flex_tab.h"

namespace dq {
namespace {

/// Handles of another process, which may be numbered alike, mean nothing here.
DWORD ProcessMark() {
  static const DWORD mark = std::random_device{}();
  return mark;
}

struct Block {
  HWND source;
  std::int32_t tab;
  DWORD process;
};
static_assert(sizeof(Block) == sizeof(std::uintptr_t) + 8);

}  // namespace

IMPLEMENT_DYNAMIC(CDQFlexTabData, CObject)

CDQFlexTab* CDQFlexTabData::GetSourceWnd() const {
  CWnd* const window = CWnd::FromHandle(m_hSourceWnd);
  return DYNAMIC_DOWNCAST(CDQFlexTab, window);
}

void CDQFlexTabData::SetSourceWnd(const CDQFlexTab* source) {
  m_hSourceWnd = source == nullptr ? nullptr : source->GetSafeHwnd();
}

std::string CDQFlexTabData::GetBytes() const {
  const Block block{m_hSourceWnd, m_nTab, ProcessMark()};
  return std::string(reinterpret_cast<const char*>(&block), sizeof block);
}

bool CDQFlexTabData::SetBytes(std::string_view bytes) {
  Block block;
  if (bytes.size() != sizeof block) return false;
  std::memcpy(&block, bytes.data(), sizeof block);
  if (block.process != ProcessMark()) return false;
  m_hSourceWnd = block.source;
  m_nTab = block.tab;
  return true;
}

}  // namespace dq
