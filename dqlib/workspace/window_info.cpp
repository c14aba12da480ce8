#include "dqlib/workspace/window_info.h"

#include <array>
#include <utility>

namespace dq {
namespace {

constexpr DWORD kPlacementSize = 44;

/// The numbers between the length and the end of a stored placement, in their order.
constexpr std::size_t kPlacementNumbers = 10;

std::array<LONG, kPlacementNumbers> NumbersOf(const WINDOWPLACEMENT& wp) {
  const CRect& normal = wp.rcNormalPosition;
  return {static_cast<LONG>(wp.flags),
          static_cast<LONG>(wp.showCmd),
          wp.ptMinPosition.x,
          wp.ptMinPosition.y,
          wp.ptMaxPosition.x,
          wp.ptMaxPosition.y,
          normal.left,
          normal.top,
          normal.right,
          normal.bottom};
}

WINDOWPLACEMENT PlacementOf(const std::array<LONG, kPlacementNumbers>& numbers) {
  WINDOWPLACEMENT wp;
  wp.length = kPlacementSize;
  wp.flags = static_cast<UINT>(numbers[0]);
  wp.showCmd = static_cast<UINT>(numbers[1]);
  wp.ptMinPosition = {numbers[2], numbers[3]};
  wp.ptMaxPosition = {numbers[4], numbers[5]};
  wp.rcNormalPosition = {numbers[6], numbers[7], numbers[8], numbers[9]};
  return wp;
}

}  // namespace

IMPLEMENT_SERIAL(CDQWindowInfo, CObject, 1)

CDQWindowInfo::CDQWindowInfo(int type, int subtype, const char* name)
    : m_nType(type), m_nSubtype(subtype), m_strName(name) {}

void CDQWindowInfo::SetWndPlacement(const WINDOWPLACEMENT& placement) {
  m_placement = placement;
  m_placement.length = kPlacementSize;
}

void CDQWindowInfo::Serialize(CArchive& archive) {
  if (archive.IsLoading()) {
    Load(archive);
    return;
  }
  archive << LONG{m_nType} << LONG{m_nSubtype} << m_strName << m_strUserData << m_strUserData2;
  archive << kPlacementSize;
  for (const LONG number : NumbersOf(m_placement)) archive << number;
  archive << BYTE{m_bActive};
}

void CDQWindowInfo::Load(CArchive& archive) {
  archive >> m_nType >> m_nSubtype >> m_strName >> m_strUserData >> m_strUserData2;
  DWORD length = 0;
  archive >> length;
  std::array<LONG, kPlacementNumbers> numbers{};
  for (LONG& number : numbers) archive >> number;
  m_placement = PlacementOf(numbers);
  BYTE active = 0;
  archive >> active;
  m_bActive = active != 0;
}

int CDQWindowInfoArray::Add(std::unique_ptr<CDQWindowInfo> info) {
  m_infos.push_back(std::move(info));
  return GetSize() - 1;
}

void CDQWindowInfoArray::RemoveAt(int index, int count) {
  m_infos.erase(m_infos.begin() + index, m_infos.begin() + index + count);
}

void CDQWindowInfoArray::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive.WriteCount(static_cast<DWORD>(m_infos.size()));
    for (const auto& info : m_infos) archive.WriteObject(info.get());
    return;
  }
  std::vector<std::unique_ptr<CDQWindowInfo>> loaded;
  for (DWORD left = archive.ReadCount(); left > 0; --left) {
    bool is_new = false;
    CObject* const object = archive.ReadObject(RUNTIME_CLASS(CDQWindowInfo), &is_new);
    if (object == nullptr) throw CArchiveException(CArchiveException::badClass);
    // A record that stands in the stream twice can't be owned twice.
    if (!is_new) throw CArchiveException(CArchiveException::badIndex);
    loaded.emplace_back(static_cast<CDQWindowInfo*>(object));
  }
  m_infos = std::move(loaded);
}

}  // namespace dq
