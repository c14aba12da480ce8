// The stores and the files when there is no memory: each allocation of each operation fails once.

#include <unistd.h>

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/failing_memory.h"
#include "tests/support/registry_user.h"
#include "tests/support/scripted_prompts.h"

namespace dq::platform::posix {
namespace {

using test::MemoryDirectory;

/// A store, and a profile.
struct Fixture {
  /// As the files are to begin with.
  explicit Fixture(const MemoryDirectory& prepared) {
    std::filesystem::copy(prepared.path(), directory / "registry");
    directory.Put("a.ini", "; c\n[s]\nk=old\n");
    key = registry.OpenKey(kCurrentUser, "k").value;
  }
  /// All files but the store's, and what a program finds in the store if this one is killed now.
  std::string State() const {
    std::string state = test::Found(directory / "registry");
    for (const char* name : {"a.ini", "made"}) state += std::string(name) + directory.Get(name);
    return state + std::to_string(directory.Count());
  }

  const MemoryDirectory directory;
  test::RegistryUser registry{directory / "registry"};
  Files& files = *System().files;
  ProfileFiles& profiles = *System().profile_files;
  HKEY key = kNoKey;
  // Made before any allocation fails.
  const std::string large = std::string(9'000, 'n');
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
    {"fold", [](auto& f) { return f.registry.SetValue(f.key, "v", 1, f.large); }},
    {"create", [](auto& f) { return f.registry.CreateKey(f.key, "a\\b").error; }},
    {"set", [](auto& f) { return f.registry.SetValue(f.key, "new", 1, f.large); }},
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

TEST(WantOfMemory, IsAnErrorThatChangesNothing) {
  const dq::testing::ScriptedPrompts prompts;
  for (const auto& [what, run] : kOperations) {
    // A journal that the next change folds, or a small one.
    const MemoryDirectory work;
    const MemoryDirectory prepared;
    test::RegistryUser user(work.path());
    user.Do(what == std::string("fold") ? "l=#1040000 -l v=old +k\\sub" : "v=old +k\\sub");
    std::filesystem::copy(work.path(), prepared.path());
    std::string before;
    bool failed = true;
    for (int allocation = 1; failed; ++allocation) {
      SCOPED_TRACE(::testing::Message() << what << " at " << allocation);
      Fixture fixture(prepared);
      if (before.empty()) before = fixture.State();
      test::FailAllocation(allocation);
      const Error error = run(fixture);
      failed = test::AllocationFailed();
      EXPECT_TRUE(failed || error.ok());
      if (error.ok()) continue;
      EXPECT_EQ(error.code, DWORD{ENOMEM});
      // What a removed journal had is in the program that knew it.
      EXPECT_TRUE(fixture.State() == before || !fixture.registry.Flush().ok() ||
                  fixture.State() == before);
      EXPECT_TRUE(run(fixture).ok());
    }
  }
}

}  // namespace
}  // namespace dq::platform::posix
