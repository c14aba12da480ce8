#include "dqlib/platform/posix/registry_page.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/mman.h>

namespace dq::platform::posix {
namespace {

/// More than the three stores of a registry, for programs that have several.
constexpr std::size_t kMaxPages = 256;

std::array<std::atomic<std::uintptr_t>, kMaxPages> g_pages;
static_assert(std::atomic<std::uintptr_t>::is_always_lock_free, "a signal handler reads it");

struct sigaction g_former;

/// Puts a page of zeros in the place of a guarded one that can't be read any more.
bool ReplacePage(const void* place) {
  const auto address = reinterpret_cast<std::uintptr_t>(place);
  for (const std::atomic<std::uintptr_t>& guarded : g_pages) {
    const std::uintptr_t page = guarded.load();
    if (page == 0 || address < page || address - page >= kMaxGuardedSize) continue;
    const void* const zeros = ::mmap(reinterpret_cast<void*>(page), kMaxGuardedSize, PROT_READ,
                                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
    return zeros != MAP_FAILED;
  }
  return false;
}

void OnBusError(int number, siginfo_t* info, void* context) {
  const int error = errno;
  const bool is_sent = info->si_code <= 0;
  if (!is_sent && ReplacePage(info->si_addr)) {
    errno = error;
    return;
  }
  if ((g_former.sa_flags & SA_SIGINFO) != 0) {
    g_former.sa_sigaction(number, info, context);
  } else if (g_former.sa_handler != SIG_DFL && g_former.sa_handler != SIG_IGN) {
    g_former.sa_handler(number);
  } else if (!is_sent || g_former.sa_handler == SIG_DFL) {
    // The fault comes again, and ends the process as if this handler weren't there.
    static_cast<void>(::sigaction(number, &g_former, nullptr));
    if (is_sent) static_cast<void>(::raise(number));
  }
  errno = error;
}

bool CatchBusErrors() {
  // Known before the first signal can ask for it.
  if (::sigaction(SIGBUS, nullptr, &g_former) != 0) return false;
  struct sigaction action {};
  action.sa_sigaction = OnBusError;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESTART;
  sigemptyset(&action.sa_mask);
  return ::sigaction(SIGBUS, &action, nullptr) == 0;
}

}  // namespace

bool GuardPage(void* page) {
  static const bool is_caught = CatchBusErrors();
  if (!is_caught) return false;
  for (std::atomic<std::uintptr_t>& place : g_pages) {
    std::uintptr_t none = 0;
    if (place.compare_exchange_strong(none, reinterpret_cast<std::uintptr_t>(page))) return true;
  }
  return false;
}

void UnguardPage(void* page) {
  for (std::atomic<std::uintptr_t>& place : g_pages) {
    std::uintptr_t guarded = reinterpret_cast<std::uintptr_t>(page);
    if (place.compare_exchange_strong(guarded, 0)) return;
  }
}

}  // namespace dq::platform::posix
