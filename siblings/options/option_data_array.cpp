#include "siblings/options/option_data_array.h"

#include <algorithm>

namespace dq {
namespace {

/// Puts a platform in force for a scope.
class ScopedPlatformChoice {
 public:
  ScopedPlatformChoice(CDQOptionsServer& server, DBMS platform)
      : server_(server), former_(server.GetPlatform()) {
    server_.SetPlatform(platform);
  }
  ScopedPlatformChoice(const ScopedPlatformChoice&) = delete;
  ScopedPlatformChoice& operator=(const ScopedPlatformChoice&) = delete;
  ~ScopedPlatformChoice() { server_.SetPlatform(former_); }

 private:
  CDQOptionsServer& server_;
  DBMS former_;
};

CDQOptionsServer& Server() { return *CDQOptionsServer::GetObject(); }

}  // namespace

bool CDQOptionDataArray::AddOption(int id, bool first_flag, bool second_flag) {
  if (Server().GetOptionByID(id) == nullptr) return false;
  if (std::ranges::find(m_entries, id, &Entry::id) != m_entries.end()) return false;
  m_entries.push_back(
      {id, Server().GetPlatform(), first_flag, second_flag, Server().GetValue(id), false});
  return true;
}

bool CDQOptionDataArray::SetValue(int index, const OptionValue& value) {
  Entry& entry = m_entries[static_cast<std::size_t>(index)];
  const CDQOption* const option = Server().GetOptionByID(entry.id);
  if (option == nullptr || !IsOptionValue(option->GetKind(), value)) return false;
  entry.changed = entry.changed || entry.value != value;
  entry.value = value;
  return true;
}

void CDQOptionDataArray::LoadOptions() {
  for (Entry& each : m_entries) {
    const ScopedPlatformChoice choice(Server(), each.platform);
    each.value = Server().GetValue(each.id);
    each.changed = false;
  }
}

bool CDQOptionDataArray::SaveOptions() {
  bool saved = true;
  for (Entry& each : m_entries) {
    if (!each.changed) continue;
    const ScopedPlatformChoice choice(Server(), each.platform);
    each.changed = !Server().SetValue(each.id, each.value);
    saved = saved && !each.changed;
  }
  return saved;
}

CDQOptionDataArray* CDQOptionDataArrayList::AddArray() {
  return m_arrays.emplace_back(std::make_unique<CDQOptionDataArray>()).get();
}

CDQOptionDataArray* CDQOptionDataArrayList::GetArray(int index) const {
  return index >= 0 && index < GetSize() ? m_arrays[static_cast<std::size_t>(index)].get()
                                         : nullptr;
}

bool CDQOptionDataArrayList::SaveOptions() {
  bool saved = true;
  for (const auto& each : m_arrays) saved = each->SaveOptions() && saved;
  return saved;
}

}  // namespace dq
