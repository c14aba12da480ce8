// The stores and the files when there is no memory: each allocation of each operation fails once.

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <new>
#include <unistd.h>

#include "dqlib/platform/posix/registry.h"
#include "dqlib/platform/posix/system_services.h"
#include "tests/support/registry_dump.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"

namespace {

/// The allocation of this thread that fails, counted down; 0 for none.
thread_local int t_countdown = 0;
thread_local bool t_failed = false;

void* Allocate(std::size_t size) noexcept {
  if (t_countdown > 0 && --t_countdown == 0) {
    t_failed = true;
    return nullptr;
  }
  return std::malloc(size > 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// Not inline, or the compiler sees memory of one kind given back as another.
[[gnu::noinline]] void* operator new(std::size_t size) { return AllocateOrThrow(size); }
[[gnu::noinline]] void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete[](void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace dq::platform::posix {
namespace {

using test::TempDirectory;

const std::string kLong(99, 'n');
const std::string kLarge(1'100'000, 'x');

struct Fixture {
  TempDirectory directory;
  FileRegistry registry{directory / "registry"};
  Files& files = *System().files;
  ProfileFiles& profiles = *System().profile_files;
  HKEY key = registry.CreateKey(kCurrentUser, "k").value;
  // Made before any allocation fails.
  const std::string old = directory / "a.ini";
  const std::string made = directory / "made";
  const std::string all = directory / "*";
  const std::string journal = directory / "registry/hkcu.journal";
};

Error OpenAndClose(Files& files, std::string_view path, const OpenOptions& options) {
  const Result<HANDLE> file = files.Open(path, options);
  if (file.ok()) files.Close(file.value);
  return file.error;
}
Error TakeOver(Fixture& f) {
  ::unlink(f.journal.c_str());
  return f.registry.SetValue(f.key, "new", 1, "n");
}

const std::pair<const char*, std::function<Error(Fixture&)>> kOperations[] = {
    {"create", [](auto& f) { return f.registry.CreateKey(f.key, "a\\b").error; }},
    {"set", [](auto& f) { return f.registry.SetValue(f.key, "new", 1, kLong); }},
    {"change", [](auto& f) { return f.registry.SetValue(f.key, "v", 1, kLarge); }},
    {"delete value", [](auto& f) { return f.registry.DeleteValue(f.key, "v"); }},
    {"delete key", [](auto& f) { return f.registry.DeleteKey(kCurrentUser, "k\\sub"); }},
    {"leave", [](auto& f) { return f.registry.Leave(); }},
    {"take over", TakeOver},
    {"profile", [](auto& f) { return f.profiles.Write(f.old, "s", "k", "new"); }},
    {"new profile", [](auto& f) { return f.profiles.Write(f.made, "s", "k", "new"); }},
    {"replace", [](auto& f) { return f.files.Replace(f.old, "new", false); }},
    {"copy", [](auto& f) { return f.files.Copy(f.old, f.made, false); }},
    {"rename", [](auto& f) { return f.files.Rename(f.old, f.made); }},
    {"delete", [](auto& f) { return f.files.Delete(f.old); }},
    {"find", [](auto& f) { return f.files.Find(f.all).error; }},
    {"open",
     [](auto& f) { return OpenAndClose(f.files, f.made, {.write = true, .create = true}); }},
    {"empty",
     [](auto& f) { return OpenAndClose(f.files, f.old, {.write = true, .truncate = true}); }},
};

/// All files but the store's, and what a program finds in the store if this one is killed now.
std::map<std::string, std::string> State(const Fixture& fixture) {
  std::map<std::string, std::string> state;
  for (const auto& entry : std::filesystem::directory_iterator(fixture.directory.path())) {
    const std::string name = entry.path().filename().string();
    state[name] = entry.is_directory() ? "" : fixture.directory.Get(name);
  }
  const TempDirectory copy;
  std::filesystem::copy(fixture.directory / "registry", copy.path());
  for (const auto& [path, values] : test::Dump(*std::make_unique<FileRegistry>(copy.path()))) {
    state[path + "\\"] = "";
    for (const auto& [name, value] : values) state[path + "\\" + name] = value.second;
  }
  return state;
}

TEST(WantOfMemory, IsAnErrorThatChangesNothing) {
  dq::testing::ScriptedPrompts prompts;
  for (const auto& [what, run] : kOperations) {
    bool failed = true;
    for (int allocation = 1; failed; ++allocation) {
      SCOPED_TRACE(::testing::Message() << what << " at " << allocation);
      Fixture fixture;
      fixture.directory.Put("a.ini", "; c\n[s]\nk=old\n");
      EXPECT_TRUE(fixture.registry.SetValue(fixture.key, "v", 1, "old").ok());
      EXPECT_TRUE(fixture.registry.CreateKey(fixture.key, "sub").ok());
      const auto before = State(fixture);
      t_failed = false;
      t_countdown = allocation;
      const Error error = run(fixture);
      t_countdown = 0;
      failed = t_failed;
      EXPECT_TRUE(failed || error.ok());
      if (!error.ok()) {
        EXPECT_EQ(error.code, DWORD{ENOMEM});
        // What a removed journal had is in the program that knew it.
        const auto now = State(fixture);
        EXPECT_TRUE(now == before || !fixture.registry.Flush().ok() || State(fixture) == before);
        EXPECT_TRUE(run(fixture).ok());
      }
    }
  }
}

}  // namespace
}  // namespace dq::platform::posix
