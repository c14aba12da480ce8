// The registry among processes: killed writers, many writers at once, readers in other processes.

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "dqlib/platform/posix/registry.h"
#include "tests/support/forked_process.h"
#include "tests/support/own_process.h"
#include "tests/support/registry_dump.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"

namespace dq::platform::posix {
namespace {

using test::Dump;
using test::Eventually;
using test::RegistryDump;
using TempDirectory = test::MemoryDirectory;

/// One call that changes the registry.
struct Change {
  enum { kCreate, kSet, kDeleteValue, kDeleteKey } kind;
  std::string key;
  std::string name;
  std::string data;
};

/// A change made to a dump instead.
void Apply(const Change& change, RegistryDump& dump) {
  if (change.kind == Change::kDeleteKey) {
    dump.erase(change.key);
  } else if (change.kind == Change::kDeleteValue) {
    dump[change.key].erase(change.name);
  } else {
    auto& values = dump[change.key];
    if (change.kind == Change::kSet) values[change.name] = {REGISTRY_BINARY, change.data};
  }
}

bool Apply(const Change& change, FileRegistry& registry) {
  if (change.kind == Change::kDeleteKey) return registry.DeleteKey(kCurrentUser, change.key).ok();
  const Result<HKEY> key = change.kind == Change::kCreate
                               ? registry.CreateKey(kCurrentUser, change.key)
                               : registry.OpenKey(kCurrentUser, change.key);
  Error error = key.error;
  if (change.kind == Change::kSet) {
    error = registry.SetValue(key.value, change.name, REGISTRY_BINARY, change.data);
  } else if (change.kind == Change::kDeleteValue) {
    error = registry.DeleteValue(key.value, change.name);
  }
  registry.CloseKey(key.value);
  return error.ok();
}

/// Makes up changes that are possible one behind the other: values set and deleted, keys moved.
class Plan {
 public:
  explicit Plan(RegistryDump state) : state_(std::move(state)) {}

  void Add(std::mt19937& random) {
    const std::string key = "k" + std::to_string(random() % 6);
    const std::string name = "v" + std::to_string(random() % 12);
    if (!state_.contains(key)) return Do({Change::kCreate, key, "", ""});
    switch (random() % 8) {
      case 0:
        if (state_[key].contains(name)) Do({Change::kDeleteValue, key, name, ""});
        break;
      case 1:
        Move(key, "k" + std::to_string(random() % 6));
        break;
      default:
        // Large ones now and then, so that journals grow until they are folded.
        Do({Change::kSet, key, name,
            std::string(random() % 4 == 0 ? random() % 20'000 : random() % 100, 'a')});
    }
  }

  std::vector<Change> changes;

 private:
  void Do(Change change) {
    Apply(change, state_);
    changes.push_back(std::move(change));
  }
  void Move(const std::string& from, const std::string& to) {
    if (from == to) return;
    Do({Change::kCreate, to, "", ""});
    while (!state_[from].empty()) {
      const auto [name, value] = *state_[from].begin();
      Do({Change::kSet, to, name, value.second});
      Do({Change::kDeleteValue, from, name, ""});
    }
    Do({Change::kDeleteKey, from, "", ""});
  }

  RegistryDump state_;
};

TEST(RegistryProcess, WhatAKilledWriterHadReportedIsThere) {
  constexpr int kKills = 300;
  constexpr unsigned kSeed = 4'711;
  std::mt19937 random(kSeed);
  const TempDirectory directory;
  dq::testing::ScriptedPrompts prompts;
  RegistryDump state{{"", {}}};
  const bool is_given = ::chown(directory.path().c_str(), 1'234, 1'234) == 0;
  std::string former;
  std::atomic<int>& reported = test::MakeSharedCount();
  std::atomic<int>& seen = test::MakeSharedCount();
  int killed_at_work = 0;
  int set_aside = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    Plan plan(state);
    const std::size_t least = 1 + random() % 150;
    while (plan.changes.size() < least) plan.Add(random);
    const int length = static_cast<int>(plan.changes.size());
    reported = seen = 0;
    test::ForkedProcess writer([&] {
      {
        FileRegistry registry(directory.path());
        for (const Change& change : plan.changes) {
          if (!Apply(change, registry)) return;
          // Only a few changes ahead of who counts them.
          for (++reported; reported > seen + 16;) std::this_thread::yield();
        }
      }
      // Left in peace, unless the kill meets the fold of the last user.
      for (;;) ::pause();
    });
    // A moment during the opening, any of the changes, or the end.
    const int patience = static_cast<int>(random() % (least + 10));
    EXPECT_TRUE(Eventually([&] { return (seen = reported.load()) >= std::min(patience, length); }));
    ::usleep(static_cast<useconds_t>(random() % (patience < length ? 200 : 20'000)));
    ASSERT_TRUE(writer.Kill()) << "a call of the writer failed";
    killed_at_work += reported < length ? 1 : 0;
    const auto next = plan.changes.begin() + reported;
    for (auto each = plan.changes.begin(); each != next; ++each) Apply(*each, state);
    // The next writer opens the files as they were left.
    const TempDirectory copy;
    std::filesystem::copy(directory.path(), copy.path());
    const RegistryDump dump = Dump(*std::make_unique<FileRegistry>(copy.path()));
    // One more may be done, and not reported any more.
    if (dump != state && next != plan.changes.end()) Apply(*next, state);
    ASSERT_EQ(dump, state) << "kill " << kill << " of seed " << kSeed << " after " << reported;
    ASSERT_TRUE(prompts.shown.empty());
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
      struct stat status {};
      ASSERT_EQ(::lstat(entry.path().c_str(), &status), 0);
      // A snapshot that was being written is the writer's up to then.
      const bool is_whole = entry.path().extension() != ".tmp";
      EXPECT_TRUE(!is_given || !is_whole || status.st_uid == 1'234u) << entry.path();
    }
    // A snapshot of another time stays as it is: nothing of the journal gets into it.
    const std::string snapshot = directory.Get("hkcu.reg");
    if (kill % 10 != 0 || snapshot == former) continue;
    if (kill > 0 && former != "(none)") {
      const TempDirectory mixed;
      mixed.Put("hkcu.reg", former);
      const RegistryDump alone = Dump(*std::make_unique<FileRegistry>(mixed.path()));
      mixed.Put("hkcu.reg", former);
      mixed.Put("hkcu.journal", directory.Get("hkcu.journal"));
      prompts.shown.clear();
      EXPECT_EQ(Dump(*std::make_unique<FileRegistry>(mixed.path())), alone) << kill;
      EXPECT_EQ(prompts.shown.size(), 1u);
      ++set_aside;
    }
    prompts.shown.clear();
    former = snapshot;
  }
  EXPECT_GT(set_aside, 5);
  EXPECT_GT(killed_at_work, kKills / 2);
  EXPECT_TRUE(prompts.shown.empty());
}

TEST(RegistryProcess, NothingIsLostAmongWritersNorWhenTheJournalIsRemovedAgainAndAgain) {
  for (const auto& [writers, values, removes] :
       test::Rows<int, int, bool>{{8, 1'000, false}, {4, 400, true}}) {
    const auto total = static_cast<std::size_t>(writers * values);
    const TempDirectory directory;
    const dq::testing::ScriptedPrompts prompts;
    std::atomic<int>& ready = test::MakeSharedCount();
    const auto write = [&, writers = writers, values = values, removes = removes](int writer) {
      FileRegistry registry(directory.path());
      const HKEY key = registry.CreateKey(kCurrentUser, "Shared\\Key").value;
      for (int i = 0; i < values; ++i) {
        const std::string name = std::to_string(writer) + "_" + std::to_string(i);
        ASSERT_TRUE(registry.SetValue(key, name, REGISTRY_STRING, name).ok());
        if (removes && writer == 0 && i % 40 == 20) {
          std::filesystem::remove(directory / "hkcu.journal");
        }
      }
      ++ready;
      EXPECT_TRUE(Eventually([&] { return ready == writers; }));
      // All the others are done: everything is there, in a process that was there all the time.
      EXPECT_TRUE(removes || Dump(registry, key)[""].size() == total);
      EXPECT_TRUE(registry.Leave().ok());
    };
    EXPECT_TRUE(test::AllEndWell(writers, write));
    FileRegistry registry(directory.path());
    EXPECT_EQ(Dump(registry)["Shared\\Key"].size(), total);
  }
}

TEST(RegistryProcess, AChangeThatIsReportedIsSeenByOthersAtOnce) {
  const TempDirectory directory;
  FileRegistry registry(directory.path());
  const HKEY key = registry.CreateKey(kCurrentUser, "k").value;
  EXPECT_TRUE(registry.SetValue(key, "n", 1, "-1").ok());
  std::atomic<int>& turn = test::MakeSharedCount();
  // Each answers the other's number with the next one; neither ever finds an old one.
  const auto play = [&turn](FileRegistry& own, int first) {
    const HKEY own_key = own.OpenKey(kCurrentUser, "k").value;
    for (int i = first; i < 1'000; i += 2) {
      ASSERT_TRUE(Eventually([&] { return turn == i; })) << i;
      ASSERT_EQ(test::Read(own, own_key, "n"), std::to_string(i - 1));
      ASSERT_TRUE(own.SetValue(own_key, "n", 1, std::to_string(i)).ok());
      ++turn;
    }
  };
  test::ForkedProcess child([&] { play(*std::make_unique<FileRegistry>(directory.path()), 1); });
  play(registry, 0);
  EXPECT_TRUE(child.EndsWell());
}

TEST(RegistryProcess, AChildOfAForkIsAUserOfItsOwn) {
  constexpr int kValues = 3'000;
  const TempDirectory directory;
  auto registry = std::make_unique<FileRegistry>(directory.path());
  const HKEY key = registry->CreateKey(kCurrentUser, "k").value;
  const auto set_all = [&](const std::string& who) {
    for (int i = 0; i < kValues; ++i) {
      ASSERT_TRUE(registry->SetValue(key, who + std::to_string(i), 1, who).ok());
    }
  };
  test::ForkedProcess child([&] {
    set_all("child");
    registry.reset();
  });
  set_all("parent");
  EXPECT_TRUE(child.EndsWell());
  EXPECT_EQ(Dump(*registry, key)[""].size(), std::size_t{2 * kValues});
  // The child's leaving took nothing from the parent.
  EXPECT_TRUE(registry->SetValue(key, "last", 1, "x").ok());
  EXPECT_EQ(Dump(*std::make_unique<FileRegistry>(directory.path())), Dump(*registry));
}

}  // namespace
}  // namespace dq::platform::posix
