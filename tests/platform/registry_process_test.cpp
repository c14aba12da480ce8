// The registry among processes: killed writers, many writers at once, readers in other processes.

#include <array>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <random>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "dqlib/platform/posix/registry.h"
#include "tests/support/registry_dump.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"

namespace dq::platform::posix {
namespace {

using test::Dump;
using test::RegistryDump;
using test::TempDirectory;

/// A pipe whose ends are closed as the test goes on.
struct Pipe {
  Pipe() { EXPECT_EQ(::pipe(ends), 0); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    CloseReader();
    CloseWriter();
  }
  void CloseReader() { Close(ends[0]); }
  void CloseWriter() { Close(ends[1]); }
  void Send(std::string_view text = "") const {
    Message message{};
    text.copy(message.data(), message.size() - 1);
    if (::write(ends[1], message.data(), message.size()) != kMessageSize) ::_exit(3);
  }
  /// False at the end of the pipe.
  bool Receive() const {
    Message message;
    return ::read(ends[0], message.data(), message.size()) == kMessageSize;
  }
  std::string ReceiveText() const {
    Message message{};
    if (::read(ends[0], message.data(), message.size()) != kMessageSize) return "";
    return message.data();
  }
  /// Lets the sender be only a few messages ahead.
  void KeepShort() const { EXPECT_GE(::fcntl(ends[1], F_SETPIPE_SZ, 4'096), 0); }
  int ends[2];

 private:
  static constexpr ssize_t kMessageSize = 256;
  using Message = std::array<char, kMessageSize>;

  static void Close(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
  }
};

/// Runs `work` in a child, which ends with its result.
template <typename Work>
pid_t Fork(Work work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

int Wait(pid_t child) {
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return status;
}

/// One call that changes the registry.
struct Change {
  enum { kCreate, kSet, kDeleteValue, kDeleteKey } kind;
  std::string key;
  std::string name;
  std::string data;
};

/// A change made to a dump instead.
void Apply(const Change& change, RegistryDump& dump) {
  switch (change.kind) {
    case Change::kCreate:
      dump[change.key];
      break;
    case Change::kSet:
      dump[change.key][change.name] = {REGISTRY_BINARY, change.data};
      break;
    case Change::kDeleteValue:
      dump[change.key].erase(change.name);
      break;
    case Change::kDeleteKey:
      dump.erase(change.key);
      break;
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
  const test::ScopedVariable in_memory("TMPDIR",
                                       ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp");
  const TempDirectory directory;
  dq::testing::ScriptedPrompts prompts;
  RegistryDump state{{"", {}}};
  int killed_at_work = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    Plan plan(state);
    const std::size_t length = 1 + random() % 150;
    while (plan.changes.size() < length) plan.Add(random);
    Pipe reports;
    reports.KeepShort();
    const pid_t writer = Fork([&] {
      {
        FileRegistry registry(directory.path());
        for (const Change& change : plan.changes) {
          if (!Apply(change, registry)) return 1;
          reports.Send();
        }
      }
      // Left in peace, unless the kill meets the fold of the last user.
      for (;;) ::pause();
    });
    reports.CloseWriter();
    // A moment during the opening, any of the changes, or the end.
    const std::size_t patience = random() % (length + 10);
    std::size_t reported = 0;
    pollfd ready{reports.ends[0], POLLIN, 0};
    while (reported < patience && ::poll(&ready, 1, 20) == 1 && reports.Receive()) ++reported;
    const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 200);
    while (std::chrono::steady_clock::now() < until) std::this_thread::yield();
    ASSERT_EQ(::kill(writer, SIGKILL), 0);
    ASSERT_EQ(Wait(writer), SIGKILL) << "a call of the writer failed";
    while (reports.Receive()) ++reported;
    killed_at_work += reported < plan.changes.size() ? 1 : 0;

    for (std::size_t i = 0; i < reported; ++i) Apply(plan.changes[i], state);
    // The next writer opens the files as they were left.
    const TempDirectory copy;
    std::filesystem::copy(directory.path(), copy.path());
    const RegistryDump dump = Dump(*std::make_unique<FileRegistry>(copy.path()));
    if (dump != state && reported < plan.changes.size()) {
      Apply(plan.changes[reported], state);  // done, and not reported any more
    }
    ASSERT_EQ(dump, state) << "kill " << kill << " of seed " << kSeed << " after " << reported;
  }
  EXPECT_GT(killed_at_work, kKills / 2);
  EXPECT_TRUE(prompts.shown.empty());
}

TEST(RegistryProcess, NothingIsLostAmongEightWriters) {
  constexpr int kWriters = 8;
  constexpr int kValues = 1'000;
  const TempDirectory directory;
  Pipe ready;
  Pipe go;
  std::vector<pid_t> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.push_back(Fork([&] {
      FileRegistry registry(directory.path());
      const HKEY key = registry.CreateKey(kCurrentUser, "Shared\\Key").value;
      for (int i = 0; i < kValues; ++i) {
        const std::string name = std::to_string(writer) + "_" + std::to_string(i);
        if (!registry.SetValue(key, name, REGISTRY_STRING, name).ok()) return 1;
      }
      ready.Send();
      if (!go.Receive()) return 2;
      // All the others are done: everything is there, in a process that was there all the time.
      return Dump(registry, key)[""].size() == kWriters * kValues ? 0 : 3;
    }));
  }
  for (int writer = 0; writer < kWriters; ++writer) EXPECT_TRUE(ready.Receive());
  for (int writer = 0; writer < kWriters; ++writer) go.Send();
  for (const pid_t writer : writers) EXPECT_EQ(Wait(writer), 0);
  FileRegistry registry(directory.path());
  EXPECT_EQ(Dump(registry)["Shared\\Key"].size(), std::size_t{kWriters * kValues});
}

/// A process with a registry of its own that does what it is told.
class Worker {
 public:
  explicit Worker(const std::string& directory) {
    id_ = Fork([&] {
      FileRegistry registry(directory);
      std::string command;
      while (!(command = orders_.ReceiveText()).empty()) {
        const HKEY key = registry.CreateKey(kCurrentUser, "k").value;
        const bool deletes = command[0] == '-';
        const Error error = deletes ? registry.DeleteValue(key, command.substr(1))
                                    : registry.SetValue(key, command, 1, command);
        registry.CloseKey(key);
        reports_.Send(error.ok() ? "done" : "failed");
      }
      return 0;
    });
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker() {
    orders_.Send("");
    EXPECT_EQ(Wait(id_), 0);
  }
  /// Sets a value of this name, or deletes it behind a `-`.
  void Do(const std::string& command) {
    orders_.Send(command);
    EXPECT_EQ(reports_.ReceiveText(), "done") << command;
  }

 private:
  Pipe orders_;
  Pipe reports_;
  pid_t id_;
};

TEST(RegistryProcess, AJournalRemovedUnderSeveralProgramsLosesNothingOfAny) {
  dq::testing::ScriptedPrompts prompts;
  const char* const removals[] = {"hkcu.journal", "hkcu.reg", "moved"};
  const int orders[][3] = {{0, 1, 2}, {2, 1, 0}, {1, 0, 2}, {1, 2, 0}};
  for (const char* removal : removals) {
    for (const auto& order : orders) {
      SCOPED_TRACE(::testing::Message() << removal << order[0] << order[1]);
      const TempDirectory directory;
      {
        std::vector<std::unique_ptr<Worker>> workers;
        for (int i = 0; i < 3; ++i) workers.push_back(std::make_unique<Worker>(directory.path()));
        // The first one is behind, and the last one ahead of all.
        workers[0]->Do("a");
        workers[1]->Do("b");
        workers[2]->Do("c");
        workers[2]->Do("gone");
        workers[2]->Do("-gone");
        std::filesystem::rename(directory / "hkcu.journal", directory / "moved");
        if (removal != removals[2]) std::filesystem::remove(directory / "moved");
        if (removal == removals[1]) std::filesystem::remove(directory / "hkcu.reg");
        {
          Worker stranger(directory.path());
          stranger.Do("new");
          stranger.Do("-new");
          for (const int each : order) {
            workers[static_cast<std::size_t>(each)]->Do("then" + std::to_string(each));
          }
          stranger.Do("last");
        }
      }
      FileRegistry registry(directory.path());
      std::string names;
      const RegistryDump dump = Dump(registry);
      for (const auto& [name, value] : dump.at("k")) names += name.substr(0, 5) + " ";
      EXPECT_EQ(names, "a b c last then0 then1 then2 ");
    }
  }
}

TEST(RegistryProcess, AJournalRemovedAgainAndAgainUnderWritersLosesNothing) {
  constexpr int kWriters = 4;
  constexpr int kValues = 400;
  const TempDirectory directory;
  Pipe ready;
  Pipe go;
  std::vector<pid_t> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.push_back(Fork([&] {
      dq::testing::ScriptedPrompts prompts;
      FileRegistry registry(directory.path());
      const HKEY key = registry.CreateKey(kCurrentUser, "k").value;
      for (int i = 0; i < kValues; ++i) {
        const std::string name = std::to_string(writer) + "_" + std::to_string(i);
        if (!registry.SetValue(key, name, REGISTRY_STRING, name).ok()) return 1;
        if (writer == 0 && i % 40 == 20) {
          std::filesystem::remove(directory / "hkcu.journal");
        }
      }
      ready.Send();
      if (!go.Receive()) return 2;
      return registry.Leave().ok() ? 0 : 3;
    }));
  }
  for (int writer = 0; writer < kWriters; ++writer) EXPECT_TRUE(ready.Receive());
  for (int writer = 0; writer < kWriters; ++writer) go.Send();
  for (const pid_t writer : writers) EXPECT_EQ(Wait(writer), 0);
  dq::testing::ScriptedPrompts prompts;
  FileRegistry registry(directory.path());
  EXPECT_EQ(Dump(registry)["k"].size(), std::size_t{kWriters * kValues});
}

TEST(RegistryProcess, AChangeThatIsReportedIsSeenByOthersAtOnce) {
  constexpr int kRounds = 500;
  const TempDirectory directory;
  FileRegistry registry(directory.path());
  const HKEY key = registry.CreateKey(kCurrentUser, "k").value;
  Pipe there;
  Pipe back;
  // Each answers the other's number with the next one; neither ever finds an old one.
  const pid_t child = Fork([&] {
    FileRegistry own(directory.path());
    const HKEY own_key = own.OpenKey(kCurrentUser, "k").value;
    for (int i = 0; i < kRounds; ++i) {
      if (!there.Receive() || test::Read(own, own_key, "n") != std::to_string(2 * i)) return 1;
      if (!own.SetValue(own_key, "n", 1, std::to_string(2 * i + 1)).ok()) return 2;
      back.Send();
    }
    return 0;
  });
  back.CloseWriter();
  for (int i = 0; i < kRounds; ++i) {
    ASSERT_TRUE(registry.SetValue(key, "n", 1, std::to_string(2 * i)).ok());
    there.Send();
    ASSERT_TRUE(back.Receive()) << i;
    ASSERT_EQ(test::Read(registry, key, "n"), std::to_string(2 * i + 1));
  }
  EXPECT_EQ(Wait(child), 0);
}

TEST(RegistryProcess, AChildOfAForkIsAUserOfItsOwn) {
  constexpr int kValues = 3'000;
  const TempDirectory directory;
  Pipe ready;
  auto registry = std::make_unique<FileRegistry>(directory.path());
  const HKEY key = registry->CreateKey(kCurrentUser, "k").value;
  const auto set_all = [&](const std::string& who) {
    for (int i = 0; i < kValues; ++i) {
      if (!registry->SetValue(key, who + std::to_string(i), 1, who).ok()) return 1;
    }
    return 0;
  };
  const pid_t child = Fork([&] {
    ready.Send();
    const int result = set_all("child");
    registry.reset();
    return result;
  });
  EXPECT_TRUE(ready.Receive());
  EXPECT_EQ(set_all("parent"), 0);
  EXPECT_EQ(Wait(child), 0);
  EXPECT_EQ(Dump(*registry, key)[""].size(), std::size_t{2 * kValues});
  // The child's leaving took nothing from the parent.
  EXPECT_TRUE(registry->SetValue(key, "last", 1, "x").ok());
  EXPECT_EQ(Dump(*std::make_unique<FileRegistry>(directory.path())), Dump(*registry));
}

}  // namespace
}  // namespace dq::platform::posix
