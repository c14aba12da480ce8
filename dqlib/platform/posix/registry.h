// The registry in files of the user's configuration directory.

#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "dqlib/platform/posix/lock_patience.h"
#include "dqlib/platform/posix/registry_handles.h"
#include "dqlib/platform/posix/registry_store.h"
#include "dqlib/platform/posix/system_calls.h"
#include "dqlib/platform/registry.h"

namespace dq::platform::posix {

/// All roots of the registry, each in a store of its own that is opened when it is first used. All
/// of them belong to the user. Damage that is found is told through the prompts of the platform in
/// force, after the call that found it has given back its locks.
class FileRegistry : public Registry {
 public:
  /// `directory` is made when it is first needed; without one, "", every call fails with
  /// `kNotFound`.
  explicit FileRegistry(std::string directory, SystemCalls& calls = RealSystemCalls());
  /// Leaves the stores.
  ~FileRegistry() override;

  Result<HKEY> OpenKey(HKEY key, std::string_view path) override;
  Result<HKEY> CreateKey(HKEY key, std::string_view path) override;
  void CloseKey(HKEY key) override;
  bool IsSameKey(HKEY one, HKEY other) override;
  Result<RegistryValueInfo> ReadValue(HKEY key, std::string_view name,
                                      std::span<char> data) override;
  Error SetValue(HKEY key, std::string_view name, DWORD type, std::string_view data) override;
  Error DeleteValue(HKEY key, std::string_view name) override;
  Error DeleteKey(HKEY key, std::string_view path) override;
  Result<RegistryValue> EnumValue(HKEY key, std::size_t index) override;
  Result<std::string> EnumKey(HKEY key, std::size_t index) override;
  std::uint64_t Stamp(HKEY key) override;
  Error Flush() override;

  /// Syncs and closes the files; the last user of a store folds its journal into the snapshot.
  /// Handles stay good, and the next call opens what it needs.
  Error Leave();

 private:
  static constexpr std::size_t kRoots = 3;
  /// Until when a call waits for other processes; none where it needn't ask them.
  using Deadline = std::optional<std::chrono::nanoseconds>;

  Result<HKEY> OpenBy(HKEY key, std::string_view path, Deadline deadline);
  /// Runs `read(key, root)` on an open key whose tree is up to date, with the mutex held.
  template <typename Read>
  auto WithKey(HKEY key, Read read, Deadline deadline = std::nullopt)
      -> decltype(read(std::declval<TreeKey&>(), 0));
  /// Plans a change below an open key with `plan(key, change)` and makes it.
  template <typename Plan>
  Error Change(HKEY key, Plan plan, const RegistryStore::Finisher& finish = nullptr,
               Deadline deadline = std::nullopt);
  Error Refresh(int root, Deadline deadline);
  void JoinUsers();
  void ShowNotices(RegistryStore& store);

  SystemCalls& calls_;
  LockPatience patience_;
  const std::string directory_;

  /// Guards the trees of the stores and the handles.
  std::mutex mutex_;
  RegistryHandles handles_;
  std::array<std::unique_ptr<RegistryStore>, kRoots> stores_;

  /// The directory, with a shared lock that all users of its stores have.
  std::mutex users_mutex_;
  FileDescriptor users_;
  unsigned users_forks_ = 0;
};

}  // namespace dq::platform::posix
