// The values of options, as the options server reads and changes them.

#include "dqlib/framework/base/error_text.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/platform/platform.h"
#include "siblings/options/option_store.h"
#include "siblings/options/options_server.h"

namespace dq {

DBMS CDQOptionsServer::PlatformFor(const CDQOption& option, DBMS platform) {
  return option.IsPerPlatform() && !PlatformWord(platform).empty() ? platform : DBMS_NONE;
}

OptionValue CDQOptionsServer::ValueOf(const CDQOption& option, DBMS platform) const {
  m_readError = {};
  return LookUp(option, platform);
}

OptionValue CDQOptionsServer::LookUp(const CDQOption& option, DBMS platform) const {
  const OptionDefinition& definition = option.GetDefinition();
  const DBMS own = PlatformFor(option, platform);
  if (const auto unkept = m_unkept.find({option.GetID(), own}); unkept != m_unkept.end()) {
    return unkept->second;
  }
  const auto found = [this](const detail::FoundOption& option_value) {
    if (!option_value.ok()) m_readError = option_value.error;
    return option_value.value;
  };
  if (const auto kept = found(detail::ReadKeptOption(definition, own))) return *kept;
  if (own != DBMS_NONE) {
    const auto fallback = definition.platform_fallbacks.find(own);
    return fallback == definition.platform_fallbacks.end() ? LookUp(option, DBMS_NONE)
                                                           : fallback->second;
  }
  return found(detail::ReadMachineOption(definition)).value_or(definition.fallback);
}

OptionValue CDQOptionsServer::GetValue(int id) {
  const CDQOption* const option = GetOptionByID(id);
  return option == nullptr ? OptionValue() : ValueOf(*option, m_ePlatform);
}

bool CDQOptionsServer::SetValue(int id, const OptionValue& value) {
  const CDQOption* const option = GetOptionByID(id);
  if (option == nullptr || !IsOptionValue(option->GetKind(), value)) return false;
  const DBMS platform = PlatformFor(*option, m_ePlatform);
  const bool unkept = m_unkept.contains({id, platform});
  if (!unkept && ValueOf(*option, platform) == value && m_readError.ok()) return true;
  const platform::Error error = detail::KeepOption(option->GetDefinition(), platform, value);
  if (error.ok()) {
    m_unkept.erase({id, platform});
    return true;
  }
  Hold(*option, platform, value);
  AfxTrace("Option " + std::to_string(id) + " could not be kept: " + detail::ErrorText(error) +
           "\n");
  return false;
}

bool CDQOptionsServer::UnsetValue(int id) {
  const CDQOption* const option = GetOptionByID(id);
  if (option == nullptr) return false;
  const DBMS platform = PlatformFor(*option, m_ePlatform);
  const platform::Error error = detail::ForgetOption(option->GetDefinition(), platform);
  if (!error.ok()) {
    AfxTrace("Option " + std::to_string(id) + " could not be reset: " + detail::ErrorText(error) +
             "\n");
    return false;
  }
  m_unkept.erase({id, platform});
  option->m_lastReading = {};
  return true;
}

void CDQOptionsServer::Hold(const CDQOption& option, DBMS platform, const OptionValue& value) {
  m_unkept[{option.GetID(), platform}] = value;
  option.m_lastReading = {};
}

bool CDQOptionsServer::HoldValue(int id, const OptionValue& value) {
  const CDQOption* const option = GetOptionByID(id);
  if (option == nullptr || !IsOptionValue(option->GetKind(), value)) return false;
  Hold(*option, PlatformFor(*option, m_ePlatform), value);
  return true;
}

int CDQOptionsServer::NumberOf(const CDQOption& option) const {
  CDQOption::Reading& last = option.m_lastReading;
  const DBMS own = PlatformFor(option, m_ePlatform);
  // Values of the machine are below another root.
  const bool is_user_only = option.GetDefinition().machine_key.empty();
  const std::uint64_t stamp = is_user_only ? platform::Current().registry->Stamp(kCurrentUser) : 0;
  if (stamp != 0 && last.stamp == stamp && last.platform == own &&
      detail::IsOptionRoot(last.root)) {
    m_readError = {};
    return last.value;
  }
  const int value = OptionNumber(ValueOf(option, m_ePlatform));
  if (stamp == 0 || !m_readError.ok()) return value;
  // What was changed since the stamp was taken changes the next one.
  last = {stamp, own, detail::OptionRoot(), value};
  return value;
}

bool CDQOptionsServer::GetBool(int id) { return GetInt(id) != 0; }

int CDQOptionsServer::GetInt(int id) {
  const CDQOption* const option = GetOptionByID(id);
  if (option == nullptr) return 0;
  const bool is_number =
      option->GetKind() == OptionKind::kBool || option->GetKind() == OptionKind::kInt;
  return is_number ? NumberOf(*option) : 0;
}

CString CDQOptionsServer::GetString(int id) {
  const CDQOption* const option = GetOptionByID(id);
  if (option == nullptr || option->GetKind() == OptionKind::kBinary) return {};
  return CString(ValueOf(*option, m_ePlatform));
}

bool CDQOptionsServer::GetBinary(int id, BYTE** data, UINT* size) {
  *data = nullptr;
  *size = 0;
  const CDQOption* const option = GetOptionByID(id);
  if (option == nullptr || option->GetKind() != OptionKind::kBinary) return false;
  OptionValue& bytes = m_binaries[id];
  bytes = ValueOf(*option, m_ePlatform);
  if (bytes.empty()) return false;
  *data = reinterpret_cast<BYTE*>(bytes.data());
  *size = static_cast<UINT>(bytes.size());
  return true;
}

bool CDQOptionsServer::SetOfKind(int id, OptionKind kind, const OptionValue& value) {
  const CDQOption* const option = GetOptionByID(id);
  return option != nullptr && option->GetKind() == kind && SetValue(id, value);
}

bool CDQOptionsServer::SetBool(int id, bool value) {
  return SetOfKind(id, OptionKind::kBool, value ? "1" : "0");
}

bool CDQOptionsServer::SetInt(int id, int value) {
  return SetOfKind(id, OptionKind::kInt, std::to_string(value));
}

bool CDQOptionsServer::SetString(int id, const char* value) {
  const CDQOption* const option = GetOptionByID(id);
  return option != nullptr && IsTextKind(option->GetKind()) &&
         SetValue(id, value == nullptr ? "" : value);
}

bool CDQOptionsServer::SetBinary(int id, const BYTE* data, UINT size) {
  const auto* const bytes = reinterpret_cast<const char*>(data);
  return SetOfKind(id, OptionKind::kBinary, OptionValue(bytes, data == nullptr ? 0 : size));
}

}  // namespace dq
