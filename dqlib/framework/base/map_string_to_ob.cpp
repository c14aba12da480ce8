#include "dqlib/framework/base/map_string_to_ob.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "dqlib/framework/base/archive.h"
#include "dqlib/framework/base/text.h"

namespace dq {
namespace {

constexpr std::size_t kBuckets = 17;

std::size_t BucketOf(std::string_view key) {
  std::uint32_t hash = 0;
  for (const char character : key) {
    // Bytes count with a sign, as they did where the files come from.
    // NOLINTNEXTLINE(bugprone-signed-char-misuse)
    const auto value = static_cast<std::int32_t>(static_cast<signed char>(character));
    hash = hash * 33 + static_cast<std::uint32_t>(value);
  }
  return hash % kBuckets;
}

// A position is one more than a place in the order, so that it is never null.
POSITION ToPosition(std::size_t place) { return reinterpret_cast<POSITION>(place + 1); }
std::size_t ToPlace(POSITION position) { return reinterpret_cast<std::size_t>(position) - 1; }

}  // namespace

IMPLEMENT_SERIAL(CMapStringToOb, CObject, 0)

bool CMapStringToOb::Lookup(const char* key, CObject*& object) const {
  const auto found = m_entries.find(detail::OrEmpty(key));
  if (found == m_entries.end()) return false;
  object = found->second.object;
  return true;
}

void CMapStringToOb::SetAt(const char* key, CObject* object) { Exchange(key, object); }

CObject* CMapStringToOb::Exchange(const char* key, CObject* object) {
  const auto [entry, is_new] =
      m_entries.try_emplace(std::string(detail::OrEmpty(key)), Entry{object, m_nNext, kNowhere});
  if (!is_new) return std::exchange(entry->second.object, object);
  ++m_nNext;
  return nullptr;
}

void CMapStringToOb::ExchangeAll(CMapStringToOb& other) {
  m_entries.reserve(m_entries.size() + other.m_entries.size());
  // From here on nothing needs memory.
  for (auto& [key, entry] : other.m_entries) entry.number += m_nNext;
  m_nNext += other.m_nNext;
  m_entries.merge(other.m_entries);
  for (auto& [key, entry] : other.m_entries) {
    std::swap(m_entries.find(key)->second.object, entry.object);
  }
}

bool CMapStringToOb::RemoveKey(const char* key) {
  const auto found = m_entries.find(detail::OrEmpty(key));
  if (found == m_entries.end()) return false;
  if (found->second.place != kNowhere) m_order[found->second.place] = nullptr;
  m_entries.erase(found);
  return true;
}

void CMapStringToOb::RemoveAll() {
  m_entries.clear();
  std::ranges::fill(m_order, nullptr);
}

void CMapStringToOb::Reserve(std::size_t count) { m_entries.reserve(count); }

std::vector<const CMapStringToOb::Entries::value_type*> CMapStringToOb::InOrder() const {
  // With their numbers, so that sorting stays within the buckets.
  using Numbered = std::pair<std::uint64_t, const Entries::value_type*>;
  std::array<std::vector<Numbered>, kBuckets> buckets;
  for (const auto& entry : m_entries) {
    buckets[BucketOf(entry.first)].emplace_back(entry.second.number, &entry);
  }
  std::vector<const Entries::value_type*> order;
  order.reserve(m_entries.size());
  for (auto& bucket : buckets) {
    std::ranges::sort(bucket, std::greater(), &Numbered::first);
    for (const Numbered& each : bucket) order.push_back(each.second);
  }
  return order;
}

POSITION CMapStringToOb::GetStartPosition() const {
  m_order = InOrder();
  for (std::size_t place = 0; place < m_order.size(); ++place) m_order[place]->second.place = place;
  return m_order.empty() ? nullptr : ToPosition(0);
}

void CMapStringToOb::GetNextAssoc(POSITION& position, CString& key, CObject*& object) const {
  std::size_t place = ToPlace(position);
  key = m_order[place]->first;
  object = m_order[place]->second.object;
  do {
    ++place;
  } while (place < m_order.size() && m_order[place] == nullptr);
  position = place < m_order.size() ? ToPosition(place) : nullptr;
}

void CMapStringToOb::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive.WriteCount(static_cast<DWORD>(GetCount()));
    for (const auto* entry : InOrder()) archive << CString(entry->first) << entry->second.object;
    return;
  }
  for (DWORD left = archive.ReadCount(); left > 0; --left) {
    CString key;
    archive >> key;
    SetAt(key, archive.ReadObject(nullptr));
  }
}

}  // namespace dq
