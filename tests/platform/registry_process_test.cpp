// The registry among processes: killed writers, many writers at once, readers in other processes.

#include <future>
#include <unistd.h>

#include "tests/support/doubles.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/registries.h"

namespace dq::platform::posix {
namespace {

namespace fs = std::filesystem;

using test::Eventually;
using test::RegistryUser;
using test::ScriptedPrompts;
using TempDirectory = test::MemoryDirectory;

/// Keys, and sizes of their values.
struct Model {
  std::map<std::string, std::map<std::string, std::string>> keys;

  std::string All() const {
    std::string all;
    for (const auto& [key, values] : keys) {
      all += key + ": ";
      for (const auto& [name, size] : values) all += name + "=" + size + " ";
    }
    return all;
  }
  /// Makes a change that is possible, and returns it.
  std::string Change(std::mt19937& random) {
    const std::string key = "k" + std::to_string(random() % 6);
    const std::string name = "v" + std::to_string(random() % 12);
    if (keys.try_emplace(key).second) return "+" + key;
    if (random() % 12 == 0) return keys.erase(key) > 0 ? "!" + key : "";
    if (random() % 4 == 0 && keys[key].erase(name) > 0) return "-" + key + "\\" + name;
    // Large ones now and then, so that journals grow until they are folded.
    keys[key][name] = "#" + std::to_string(100 + random() % (random() % 30 == 0 ? 150'000 : 300));
    return key + "\\" + name + "=" + keys[key][name];
  }
};

TEST(RegistryProcess, WhatAKilledWriterHadReportedIsThere) {
  constexpr int kKills = 100;
  constexpr unsigned kSeed = 4'711;
  std::mt19937 random(kSeed);
  const TempDirectory directory;
  ScriptedPrompts prompts;
  const bool is_given = ::chown(directory.path().c_str(), 1'234, 1'234) == 0;
  std::atomic<int>& reported = test::MakeSharedCount();
  std::atomic<int>& seen = test::MakeSharedCount();
  Model model;
  std::string former = "(none)";
  int killed_at_work = 0;
  int set_aside = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    const int length = 1 + static_cast<int>(random() % 60);
    std::vector<Model> states{model};
    std::vector<std::string> steps;
    for (int i = 0; i < length; ++i) {
      steps.push_back(model.Change(random));
      states.push_back(model);
    }
    reported = seen = 0;
    test::ForkedProcess writer([&] {
      {
        RegistryUser user(directory.path());
        for (const std::string& step : steps) {
          if (!user.Try(step).ok()) return;
          // Only a few changes ahead of who counts them.
          for (++reported; reported > seen + 16;) std::this_thread::yield();
        }
      }
      // Left in peace, unless the kill meets the fold of the last user.
      for (;;) ::pause();
    });
    // A moment during the opening, any of the changes, or the end.
    const int patience[] = {0, static_cast<int>(random() % static_cast<unsigned>(length)), length};
    const int least = patience[kill % 3];
    EXPECT_TRUE(Eventually([&] { return (seen = reported.load()) >= least; }));
    ::usleep(static_cast<useconds_t>(random() % (least < length ? 200 : 2'000)));
    ASSERT_TRUE(writer.Kill()) << "a call of the writer failed";
    const auto done = static_cast<std::size_t>(reported);
    killed_at_work += reported < length ? 1 : 0;
    // One more may be done, and not reported any more.
    const std::string found = test::Found(directory.path());
    model = states[done];
    if (found != model.All() && reported < length) model = states[done + 1];
    ASSERT_EQ(found, model.All()) << "kill " << kill << " of seed " << kSeed << " after " << done;
    ASSERT_TRUE(prompts.shown.empty());
    // A snapshot that was being written is the writer's up to then.
    const char* const strangers = "find . ! -uid 1234 ! -name '*.tmp' 2> /dev/null";
    EXPECT_TRUE(!is_given || test::Shell(directory.path(), strangers).empty());
    // A snapshot of another time stays as it is: nothing of the journal gets into it.
    const std::string snapshot = directory.Get("hkcu.reg");
    if (kill % 6 != 0 || snapshot == former) continue;
    if (former != "(none)") {
      const TempDirectory mixed;
      mixed.Put("hkcu.reg", former);
      const std::string alone = test::Found(mixed.path());
      mixed.Put("hkcu.journal", directory.Get("hkcu.journal"));
      prompts.shown.clear();
      const std::string both = test::Found(mixed.path());
      // Unless the kill met the fold of the journal that follows the former snapshot.
      if (both == found && prompts.shown.empty()) continue;
      EXPECT_EQ(both, alone) << kill;
      EXPECT_EQ(prompts.shown.size(), 1u);
      ++set_aside;
    }
    prompts.shown.clear();
    former = snapshot;
  }
  EXPECT_GT(set_aside, 5);
  EXPECT_GT(killed_at_work, kKills / 4);
}

TEST(RegistryProcess, NothingIsLostAmongWritersNorWhenTheJournalIsRemovedAgainAndAgain) {
  for (const auto& [writers, values, removes] :
       test::Rows<int, int, bool>{{8, 500, false}, {4, 400, true}}) {
    const auto total = static_cast<std::size_t>(writers * values);
    const TempDirectory directory;
    const ScriptedPrompts prompts;
    std::atomic<int>& ready = test::MakeSharedCount();
    const auto count = [](RegistryUser& user) { return test::Dump(user)["k"].size(); };
    const auto write = [&, writers = writers, values = values, removes = removes](int writer) {
      RegistryUser user(directory.path());
      for (int i = 0; i < values; ++i) {
        user.Do(std::to_string(writer) + "_" + std::to_string(i) + "=x");
        if (removes && writer == 0 && i % 40 == 20) fs::remove(directory / "hkcu.journal");
      }
      ++ready;
      EXPECT_TRUE(Eventually([&] { return ready == writers; }));
      // All the others are done: everything is there, in a process that was there all the time.
      EXPECT_TRUE(removes || count(user) == total);
      user.Do("leave");
    };
    EXPECT_TRUE(test::AllEndWell(writers, write));
    RegistryUser user(directory.path());
    EXPECT_EQ(count(user), total);
  }
}

TEST(RegistryProcess, AFoldWhoseJournalIsRemovedMeanwhileTakesNothingFromWhoeverFollows) {
  struct : test::FailingSystemCalls {
    int LinkStatus(const char* path, struct stat* status) override {
      return Count(), FailingSystemCalls::LinkStatus(path, status);
    }
    int Sync(int fd) override { return Count(), FailingSystemCalls::Sync(fd); }
    int Rename(const char* from, const char* to) override {
      return Count(), FailingSystemCalls::Rename(from, to);
    }
    void Count() {
      if (--left == 0) happens();
    }
    int left = 0;
    std::function<void()> happens;
  } calls;
  const ScriptedPrompts prompts;
  const std::string large = "l=#345000 l=#345000 l=#345000 l=#345000 ";
  for (const std::string& ending : {std::string("l=#345000 leave"), large, large + "leave"}) {
    bool is_met = true;
    for (int moment = 1; is_met; ++moment) {
      SCOPED_TRACE(ending + std::to_string(moment));
      const TempDirectory directory;
      RegistryUser user(directory.path(), calls);
      user.Do("mine=1");
      std::future<void> theirs;
      calls.happens = [&] {
        fs::remove(directory / "hkcu.journal");
        theirs = std::async(std::launch::async, [&] {
          RegistryUser(directory.path()).Do("theirs=2 " + large + "leave");
        });
        // Before this one's snapshot is in place, unless they wait for it.
        theirs.wait_for(std::chrono::milliseconds(30));
      };
      calls.left = moment;
      user.Do(ending);
      is_met = std::exchange(calls.left, 0) < 1;
      if (!is_met) continue;
      theirs.get();
      EXPECT_EQ(test::Found(directory.path()), "k: l=#345000 mine=1 theirs=2 ");
      user.Do("leave");
      EXPECT_EQ(user.All(), "k: l=#345000 mine=1 theirs=2 ");
    }
  }
}

TEST(RegistryProcess, AChangeThatIsReportedIsSeenByOthersAtOnce) {
  const TempDirectory directory;
  RegistryUser user(directory.path());
  user.Do("n=-1");
  std::atomic<int>& turn = test::MakeSharedCount();
  // Each answers the other's number with the next one; neither ever finds an old one.
  const auto play = [&turn](RegistryUser& own, int first) {
    for (int i = first; i < 600; i += 2) {
      ASSERT_TRUE(Eventually([&] { return turn == i; })) << i;
      ASSERT_EQ(own.All(), "k: n=" + std::to_string(i - 1) + " ");
      own.Do("n=" + std::to_string(i));
      ++turn;
    }
  };
  test::ForkedProcess child([&] { play(*std::make_unique<RegistryUser>(directory.path()), 1); });
  play(user, 0);
  EXPECT_TRUE(child.EndsWell());
}

TEST(RegistryProcess, AChildOfAForkIsAUserOfItsOwn) {
  constexpr int kValues = 1'500;
  const TempDirectory directory;
  auto user = std::make_unique<RegistryUser>(directory.path());
  user->Do("+k");
  const auto set_all = [&](const std::string& who) {
    for (int i = 0; i < kValues; ++i) user->Do(who + std::to_string(i) + "=x");
  };
  test::ForkedProcess child([&] {
    set_all("child");
    user.reset();
  });
  set_all("parent");
  EXPECT_TRUE(child.EndsWell());
  EXPECT_EQ(test::Dump(*user)["k"].size(), std::size_t{2 * kValues});
  // The child's leaving took nothing from the parent.
  user->Do("last=x");
  EXPECT_EQ(RegistryUser(directory.path()).All(), user->All());
}

}  // namespace
}  // namespace dq::platform::posix
