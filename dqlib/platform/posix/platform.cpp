#include "dqlib/platform/platform.h"

#include <atomic>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform {
namespace {

std::atomic<const Platform*> g_current = nullptr;

}  // namespace

const Platform& System() {
  static const Platform system{
      .change_notifications = &posix::SystemChangeNotifications(),
      .clipboard = &posix::SystemClipboard(),
      .clock = &posix::SystemClock(),
      .color_scheme = &UsualColors(),
      .console = &posix::SystemConsole(),
      .files = &posix::SystemFiles(),
      .hot_keys = &posix::SystemHotKeys(),
      .locale = &posix::SystemLocale(),
      .mail = &posix::SystemMail(),
      .modules = &posix::SystemModules(),
      .network = &posix::SystemNetwork(),
      .printing = &posix::SystemPrinting(),
      .processes = &posix::SystemProcesses(),
      .profile_files = &posix::SystemProfileFiles(),
      .prompts = &posix::SystemPrompts(),
      .registry = &posix::SystemRegistry(),
      .shell = &posix::SystemShell(),
      .system_errors = &posix::SystemErrorTexts(),
      .system_facts = &posix::SystemFactsService(),
      .threads = &posix::SystemThreads(),
      .version_resources = &posix::SystemVersionResources(),
  };
  return system;
}

const Platform& Current() {
  const Platform* current = g_current.load(std::memory_order_acquire);
  return current == nullptr ? System() : *current;
}

ScopedPlatform::ScopedPlatform(const Platform& platform)
    : platform_(platform), former_(g_current.exchange(&platform_)) {}

ScopedPlatform::~ScopedPlatform() { g_current.store(former_); }

}  // namespace dq::platform
