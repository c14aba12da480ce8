#include "dqlib/framework/windows/registered_message.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "dqlib/platform/ascii.h"

namespace dq {
namespace {

constexpr UINT kFirst = 0xC000;
constexpr std::size_t kCount = 0x4000;

struct Registered {
  std::mutex mutex;
  std::map<std::string, UINT, std::less<>> numbers;
};

/// Never taken down: static objects may register in their constructors and be told in their
/// destructors.
Registered& All() {
  static Registered& all = *new Registered;
  return all;
}

}  // namespace

UINT RegisterWindowMessage(const char* name) {
  if (name == nullptr || *name == '\0') return 0;
  std::string key(name);
  for (char& character : key) character = platform::AsciiLower(character);
  Registered& all = All();
  const std::lock_guard lock(all.mutex);
  if (const auto found = all.numbers.find(key); found != all.numbers.end()) return found->second;
  if (all.numbers.size() == kCount) return 0;
  const UINT number = kFirst + static_cast<UINT>(all.numbers.size());
  all.numbers.emplace(std::move(key), number);
  return number;
}

}  // namespace dq
