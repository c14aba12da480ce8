#include "dqlib/toolkit/menu_item_info.h"

#include <algorithm>

#include "dqlib/framework/base/text.h"

namespace dq {

CMenuItemInfo::CMenuItemInfo(UINT id, int image, const char* text)
    : m_nID(id), m_nImage(image), m_strText(text) {}

CMenuItemInfoArray::~CMenuItemInfoArray() = default;

CMenuItemInfo* CMenuItemInfoArray::AddOrReplace(UINT id, int image, const char* text) {
  CMenuItemInfo* const known = Find(id);
  if (known == nullptr) return Add(id, image, text);
  // The text may be the record's own.
  const CString copy(text);
  known->m_nImage = image;
  known->m_strText = copy;
  return known;
}

CMenuItemInfo* CMenuItemInfoArray::AddItem(const char* text) {
  return Add(kPopupId, kNoImage, text);
}

CMenuItemInfo* CMenuItemInfoArray::Add(UINT id, int image, const char* text) {
  CMenuItemInfo* const added =
      records_.emplace_back(std::make_unique<CMenuItemInfo>(id, image, text)).get();
  first_of_id_.try_emplace(id, added);
  addresses_.insert(added);
  return added;
}

bool CMenuItemInfoArray::Delete(UINT id) { return Delete(Find(id)); }

bool CMenuItemInfoArray::Delete(const char* text) {
  const std::string_view wanted = detail::OrEmpty(text);
  return Erase(std::ranges::find_if(
      records_, [wanted](const auto& record) { return record->m_strText.View() == wanted; }));
}

bool CMenuItemInfoArray::Delete(const CMenuItemInfo* record) {
  return Erase(std::ranges::find(records_, record, &std::unique_ptr<CMenuItemInfo>::get));
}

bool CMenuItemInfoArray::Erase(Records::iterator place) {
  if (place == records_.end()) return false;
  const std::unique_ptr<CMenuItemInfo> erased = std::move(*place);
  records_.erase(place);
  addresses_.erase(erased.get());
  const auto first = first_of_id_.find(erased->m_nID);
  if (first->second != erased.get()) return true;
  const auto next =
      std::ranges::find(records_, erased->m_nID, [](const auto& record) { return record->m_nID; });
  if (next == records_.end()) {
    first_of_id_.erase(first);
  } else {
    first->second = next->get();
  }
  return true;
}

void CMenuItemInfoArray::RemoveAll() {
  records_.clear();
  first_of_id_.clear();
  addresses_.clear();
}

CMenuItemInfo* CMenuItemInfoArray::Find(UINT id) const {
  const auto found = first_of_id_.find(id);
  return found == first_of_id_.end() ? nullptr : found->second;
}

CMenuItemInfo* CMenuItemInfoArray::Find(const void* data) const {
  if (!addresses_.contains(data)) return nullptr;
  return const_cast<CMenuItemInfo*>(static_cast<const CMenuItemInfo*>(data));
}

}  // namespace dq
