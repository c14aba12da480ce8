#include "dqlib/platform/posix/registry.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <sys/file.h>
#include <utility>

#include "dqlib/platform/platform.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

struct Root {
  const char* file;
  const char* name;
};

/// In the order of the roots' numbers.
constexpr Root kRootNames[] = {
    {"hkcr", "HKEY_CLASSES_ROOT"},
    {"hkcu", "HKEY_CURRENT_USER"},
    {"hklm", "HKEY_LOCAL_MACHINE"},
};

Error NotFound() { return ErrorFromErrno(ENOENT); }
Error Invalid() { return ErrorFromErrno(EINVAL); }

/// The path from the root of what lies at `path` below a key.
std::string Below(const TreeKey& key, std::string_view path) {
  std::string whole = RegistryTree::PathOf(key);
  for (std::string_view name = TakeKeyName(path); !name.empty(); name = TakeKeyName(path)) {
    if (!whole.empty()) whole += '\\';
    whole += name;
  }
  return whole;
}

}  // namespace

FileRegistry::FileRegistry(std::string directory, SystemCalls& calls)
    : calls_(calls), patience_(calls), directory_(std::move(directory)) {
  for (std::size_t root = 0; root < kRoots; ++root) {
    stores_[root] = std::make_unique<RegistryStore>(
        calls, patience_,
        RegistryStoreNames{directory_, kRootNames[root].file, kRootNames[root].name}, mutex_,
        [this, root](RegistryTree&, RegistryTree& to) {
          handles_.Move(static_cast<int>(root), to);
        });
  }
}

FileRegistry::~FileRegistry() {
  // Nobody is left to tell: what was reported is in the journals in any case.
  static_cast<void>(Leave());
}

template <typename Read>
auto FileRegistry::WithKey(HKEY key, Read read, Deadline deadline)
    -> decltype(read(std::declval<TreeKey&>(), 0)) {
  std::unique_lock lock(mutex_);
  const int root = handles_.RootOf(key);
  if (root < 0) return NotFound();
  RegistryStore& store = *stores_[static_cast<std::size_t>(root)];
  if (!store.IsCurrent()) {
    lock.unlock();
    if (const Error error = Refresh(root, deadline); !error.ok()) return error;
    lock.lock();
  }
  TreeKey* const found = handles_.Find(key, store.tree());
  if (found == nullptr) return NotFound();
  return read(*found, root);
}

template <typename Plan>
Error FileRegistry::Change(HKEY key, Plan plan, const RegistryStore::Finisher& finish,
                           Deadline deadline) {
  std::unique_lock lock(mutex_);
  const int root = handles_.RootOf(key);
  lock.unlock();
  if (root < 0) return NotFound();
  RegistryStore& store = *stores_[static_cast<std::size_t>(root)];
  const auto planner = [&](RegistryTree& tree, JournalChange& change) -> Result<bool> {
    const std::lock_guard handles(mutex_);
    TreeKey* const found = handles_.Find(key, tree);
    if (found == nullptr) return NotFound();
    return plan(tree, *found, change);
  };
  const Error error =
      store.Change(std::cref(planner), finish, deadline ? *deadline : patience_.Deadline());
  JoinUsers();
  ShowNotices(store);
  return error;
}

Error FileRegistry::Refresh(int root, Deadline deadline) {
  RegistryStore& store = *stores_[static_cast<std::size_t>(root)];
  const Error error = store.Refresh(deadline ? *deadline : patience_.Deadline());
  JoinUsers();
  ShowNotices(store);
  return error;
}

void FileRegistry::JoinUsers() {
  const std::lock_guard lock(users_mutex_);
  if (users_.is_open() && users_forks_ == ForkCount()) return;
  users_forks_ = ForkCount();
  // Who can't join is not waited for when others leave, which folds a journal a little early.
  users_ = FileDescriptor();
  const Result<int> fd = OpenFile(calls_, directory_, O_RDONLY | O_DIRECTORY);
  if (!fd.ok()) return;
  users_ = FileDescriptor(calls_, fd.value);
  struct stat status;
  if (calls_.StatusOf(users_.get(), &status) == 0 && (status.st_mode & 077) != 0) {
    // Another owner's can't be changed.
    static_cast<void>(calls_.ChangeMode(users_.get(), status.st_mode & 0700));
  }
  static_cast<void>(calls_.Lock(users_.get(), LOCK_SH | LOCK_NB));
}

void FileRegistry::ShowNotices(RegistryStore& store) {
  std::vector<Notice> notices = store.TakeNotices();
  try {
    while (!notices.empty()) {
      Current().prompts->Show("", notices.front().Text(), BOX_OK | BOX_EXCLAMATION, 0);
      notices.erase(notices.begin());
    }
  } catch (const std::exception&) {
    // What the call has done is done; the next one tells it.
    store.ReturnNotices(std::move(notices));
  }
}

Result<HKEY> FileRegistry::OpenBy(HKEY key, std::string_view path, Deadline deadline) {
  if (!IsKeyPath(path)) return Invalid();
  const auto open = [&](TreeKey& from, int root) -> Result<HKEY> {
    TreeKey* const found = stores_[static_cast<std::size_t>(root)]->tree().FindKey(from, path);
    if (found == nullptr) return NotFound();
    const HKEY number = handles_.Open(root, *found);
    if (number == kNoKey) return ErrorFromErrno(EMFILE);
    return number;
  };
  return WithKey(key, open, deadline);
}

Result<HKEY> FileRegistry::OpenKey(HKEY key, std::string_view path) try {
  return OpenBy(key, path, std::nullopt);
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<HKEY> FileRegistry::CreateKey(HKEY key, std::string_view path) try {
  const Deadline deadline = patience_.Deadline();
  Result<HKEY> opened = OpenBy(key, path, deadline);
  if (opened.error.kind != ErrorKind::kNotFound) return opened;
  std::string whole;
  int root = 0;
  const Error error = Change(
      key,
      [&](RegistryTree& tree, TreeKey& from, JournalChange& change) -> Result<bool> {
        root = handles_.RootOf(key);
        whole = Below(from, path);
        if (whole.size() > kMaxKeyPath) return Invalid();
        // A key that is made must be had too.
        if (!handles_.Reserve()) return ErrorFromErrno(EMFILE);
        change = {.operation = JournalOperation::kCreateKey, .path = whole};
        return tree.FindKey(from, path) == nullptr;
      },
      [&](RegistryTree& tree) {
        opened.value = handles_.Open(root, *tree.FindKey(tree.root(), whole));
      },
      deadline);
  if (!error.ok()) return error;
  if (opened.value == kNoKey) return ErrorFromErrno(EMFILE);
  return opened.value;
} catch (const std::exception&) {
  return ErrorOfException();
}

void FileRegistry::CloseKey(HKEY key) {
  const std::lock_guard lock(mutex_);
  handles_.Close(key);
}

bool FileRegistry::IsSameKey(HKEY one, HKEY other) try {
  return WithKey(one,
                 [&](const TreeKey& key, int root) -> Result<bool> {
                   const auto& store = stores_[static_cast<std::size_t>(root)];
                   return handles_.RootOf(other) == root &&
                          handles_.Find(other, store->tree()) == &key;
                 })
      .value;
} catch (const std::exception&) {
  return false;
}

Result<RegistryValueInfo> FileRegistry::ReadValue(HKEY key, std::string_view name,
                                                  std::span<char> data) try {
  if (!IsValueName(name)) return Invalid();
  return WithKey(key, [&](TreeKey& from, int) -> Result<RegistryValueInfo> {
    const TreeValue* const value = RegistryTree::FindValue(from, name);
    if (value == nullptr) return NotFound();
    Result<RegistryValueInfo> info = RegistryValueInfo{value->type, value->data.size()};
    if (value->data.size() > data.size()) {
      info.error = {ErrorKind::kBufferTooSmall, ERANGE};
    } else if (!value->data.empty()) {
      std::memcpy(data.data(), value->data.data(), value->data.size());
    }
    return info;
  });
} catch (const std::exception&) {
  return ErrorOfException();
}

Error FileRegistry::SetValue(HKEY key, std::string_view name, DWORD type,
                             std::string_view data) try {
  if (!IsValueName(name) || data.size() > kMaxValueData) return Invalid();
  std::string path;
  return Change(key, [&](RegistryTree&, TreeKey& from, JournalChange& change) -> Result<bool> {
    path = RegistryTree::PathOf(from);
    change = {JournalOperation::kSetValue, path, name, type, data};
    return true;
  });
} catch (const std::exception&) {
  return ErrorOfException();
}

Error FileRegistry::DeleteValue(HKEY key, std::string_view name) try {
  if (!IsValueName(name)) return Invalid();
  const Deadline deadline = patience_.Deadline();
  // What isn't there leaves no files where nothing is.
  const auto find = [&](const TreeKey& from, int) {
    return RegistryTree::FindValue(from, name) != nullptr ? Error{} : NotFound();
  };
  if (const Error error = WithKey(key, find, deadline); !error.ok()) return error;
  std::string path;
  const auto plan = [&](RegistryTree&, TreeKey& from, JournalChange& change) -> Result<bool> {
    if (RegistryTree::FindValue(from, name) == nullptr) return NotFound();
    path = RegistryTree::PathOf(from);
    change = {.operation = JournalOperation::kDeleteValue, .path = path, .name = name};
    return true;
  };
  return Change(key, plan, nullptr, deadline);
} catch (const std::exception&) {
  return ErrorOfException();
}

Error FileRegistry::DeleteKey(HKEY key, std::string_view path) try {
  std::string_view rest = path;
  if (!IsKeyPath(path) || TakeKeyName(rest).empty()) return Invalid();
  const Deadline deadline = patience_.Deadline();
  const auto find = [&](TreeKey& from, int root) {
    const RegistryTree& tree = stores_[static_cast<std::size_t>(root)]->tree();
    return tree.FindKey(from, path) != nullptr ? Error{} : NotFound();
  };
  if (const Error error = WithKey(key, find, deadline); !error.ok()) return error;
  std::string whole;
  const auto plan = [&](RegistryTree& tree, TreeKey& from, JournalChange& change) -> Result<bool> {
    const TreeKey* const doomed = tree.FindKey(from, path);
    if (doomed == nullptr) return NotFound();
    if (doomed->children.size() > 0) return ErrorFromErrno(EBUSY);
    whole = RegistryTree::PathOf(*doomed);
    change = {.operation = JournalOperation::kDeleteKey, .path = whole};
    return true;
  };
  return Change(key, plan, nullptr, deadline);
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<RegistryValue> FileRegistry::EnumValue(HKEY key, std::size_t index) try {
  return WithKey(key, [&](TreeKey& from, int) -> Result<RegistryValue> {
    if (index >= from.values.size()) return NotFound();
    const TreeValue& value = from.values[index];
    return RegistryValue{std::string(value.name), value.type, std::string(value.data)};
  });
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::string> FileRegistry::EnumKey(HKEY key, std::size_t index) try {
  return WithKey(key, [&](TreeKey& from, int) -> Result<std::string> {
    if (index >= from.children.size()) return NotFound();
    return std::string(from.children[index].name);
  });
} catch (const std::exception&) {
  return ErrorOfException();
}

std::uint64_t FileRegistry::Stamp(HKEY key) {
  const std::lock_guard lock(mutex_);
  const int root = handles_.RootOf(key);
  return root < 0 ? 0 : stores_[static_cast<std::size_t>(root)]->Stamp();
}

Error FileRegistry::Flush() {
  const std::chrono::nanoseconds deadline = patience_.Deadline();
  Error first;
  for (const auto& store : stores_) {
    const Error error = store->Flush(deadline);
    if (first.ok()) first = error;
  }
  return first;
}

Error FileRegistry::Leave() {
  bool is_last = false;
  {
    const std::lock_guard lock(users_mutex_);
    // Over a fork the lock is the parent's, who is still there.
    if (users_.is_open() && users_forks_ == ForkCount()) {
      is_last = calls_.Lock(users_.get(), LOCK_EX | LOCK_NB) == 0;
      static_cast<void>(calls_.Lock(users_.get(), LOCK_UN));
    }
    users_ = FileDescriptor();
  }
  const std::chrono::nanoseconds deadline = patience_.Deadline();
  Error first;
  for (const auto& store : stores_) {
    const Error error = store->Leave(is_last, deadline);
    if (first.ok()) first = error;
    ShowNotices(*store);
  }
  return first;
}

Registry& SystemRegistry() {
  // Never deleted, because others may use it to the end of the process; what they do after it was
  // left is in the journal.
  static FileRegistry& registry = *[] {
    const Result<std::string> config = UserConfigDirectory();
    static FileRegistry* made =
        new FileRegistry(config.ok() ? config.value + "/velmora/registry" : std::string());
    std::atexit([] { static_cast<void>(made->Leave()); });
    return made;
  }();
  return registry;
}

}  // namespace dq::platform::posix
