#include "dqlib/framework/windows/window_hot_keys.h"

#include <bit>
#include <utility>
#include <vector>

#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/per_thread.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

/// Those that the thread's windows have.
struct HotKeysOfWindows {
  std::vector<std::pair<HWND, int>> entries;
};

platform::Error GiveBack(HWND window, int id) {
  return platform::Current().hot_keys->Unregister(std::bit_cast<std::uintptr_t>(window), id);
}

}  // namespace

platform::Error RegisterHotKey(const CWnd& window, int id, UINT modifiers, UINT key) {
  const HWND handle = window.GetSafeHwnd();
  auto* const kept = platform::PerThread<HotKeysOfWindows>();
  if (kept == nullptr || MessageQueue::FindOwnWindow(handle) != &window) {
    return {platform::ErrorKind::kInvalidArgument, 0};
  }
  // First, so that there is room for what is registered.
  kept->entries.emplace_back(handle, id);
  const auto post = [=] {
    // Without effect if the window has ended.
    PostToWindow(handle, WM_HOTKEY, static_cast<WPARAM>(id),
                 MakeLParam(static_cast<LONG>(modifiers), static_cast<LONG>(key)));
  };
  const platform::Error error = platform::Current().hot_keys->Register(
      {std::bit_cast<std::uintptr_t>(handle), id, modifiers, key}, post);
  if (!error.ok()) kept->entries.pop_back();
  return error;
}

platform::Error UnregisterHotKey(const CWnd& window, int id) {
  const HWND handle = window.GetSafeHwnd();
  auto* const kept = platform::PerThread<HotKeysOfWindows>();
  if (kept == nullptr || std::erase(kept->entries, std::pair(handle, id)) == 0) {
    return {platform::ErrorKind::kNotFound, 0};
  }
  return GiveBack(handle, id);
}

void detail::EndHotKeys(HWND window) {
  auto* const kept = platform::PerThread<HotKeysOfWindows>();
  if (kept == nullptr) return;
  std::erase_if(kept->entries, [window](const std::pair<HWND, int>& entry) {
    // One that the system has taken back by itself is as good.
    if (entry.first == window) static_cast<void>(GiveBack(window, entry.second));
    return entry.first == window;
  });
}

}  // namespace dq
