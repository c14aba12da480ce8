// Files, profiles and the registry when calls of the system fail, when there is no memory, and when
// programs are killed or write all at once.

#include <future>

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/doubles.h"
#include "tests/support/failing_memory.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/registries.h"

namespace dq::platform::posix {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

using namespace test;
using TempDirectory = MemoryDirectory;
using User = RegistryUser;

TEST(Failures, ChangesOfFilesAreDoneOrNotWhateverFails) {
  FailingSystemCalls calls;
  const std::unique_ptr<Files> files = MakeFiles(calls);
  const std::unique_ptr<ProfileFiles> profiles = MakeProfileFiles(calls);
  // All that takes memory of the test's own.
  const TempDirectory dir;
  const ScopedVariable config("XDG_CONFIG_HOME", dir / "made");
  const std::string a = dir / "a", b = dir / "b", link = dir / "link", made = dir / "made";
  const std::string sub = dir / "sub", all = dir / "*", large(700'000, 'n');
  const std::string larger = dir.Put("larger", large);
  std::size_t entries = 0;
  fs::create_symlink("a", link);

  using Work = std::function<Error(HANDLE)>;
  const auto open = [&](const std::string& path, const OpenOptions& options, const Work& work) {
    const Result<HANDLE> file = files->Open(path, options);
    const Error error = file.ok() ? work(file.value) : file.error;
    files->Close(file.value);
    return error;
  };
  const OpenOptions to_replace{.write = true, .create = true, .deny_read = true, .replace = true};
  const OpenOptions to_append{.write = true, .append = true, .deny_write = true};
  const Work append = [&](HANDLE file) { return files->Write(file, "+"); };
  const Work replace = [&](HANDLE file) { return files->ReplaceAndClose(file, large); };
  const Work replace_by = [&](HANDLE file) {
    const Work by = [&](HANDLE source) { return files->ReplaceByAndClose(file, source); };
    return open(larger, {.read = true}, by);
  };
  const Work nothing = [](HANDLE) { return Error{}; };
  const auto to_other_volume = [&] {
    calls.FailEach("RenameToNew", EXDEV, "", 1);
    return files->Rename(a, b);
  };
  const auto in_two_steps = [&] {
    calls.FailEach("RenameToNew", EINVAL, "", 1);
    return files->Rename(a, b);
  };
  const auto find_all = [&] {
    const auto found = files->Find(all);
    EXPECT_TRUE(!found.ok() || found.value.size() == entries) << "a list lacks no entry";
    return found.error;
  };
  const std::pair<std::function<Error()>, std::string> rows[] = {
      {[&] { return open(a, to_append, append); }, "a+,(none)"},
      {[&] { return open(link, to_replace, replace); }, large + ",(none)"},
      {[&] { return open(b, to_replace, replace); }, "a," + large},
      {[&] { return open(b, to_replace, replace_by); }, "a," + large},
      {[&] { return open(b, {.write = true, .create = true}, nothing); }, "a,"},
      {[&] { return open(a, {.write = true, .truncate = true}, nothing); }, ",(none)"},
      {[&] { return files->Rename(a, b); }, "(none),a"},
      {to_other_volume, "(none),a"},
      {in_two_steps, "(none),a"},
      {[&] { return files->Copy(a, b, false); }, "a,a"},
      {[&] { return files->Copy(larger, a, true); }, large + ",(none)"},
      {[&] { return files->Replace(link, large, false); }, large + ",(none)"},
      {[&] { return files->MakeDirectory(made); }, "a,(none)"},
      {[&] { return files->MakeTempFile(dir.path(), "x").error; }, "a,(none)"},
      {find_all, "a,(none)"},
      {[&] { return files->Volume(dir.path()).error; }, "a,(none)"},
      {[&] { return files->Delete(a); }, "(none),(none)"},
      {[&] { return files->SetModified(a, 1000); }, "a,(none)"},
      {[&] { return files->SetAttributes(a, FILE_READ_ONLY); }, "a,(none)"},
      {[&] { return files->RemoveDirectory(sub); }, "a,(none)"},
      {[&] { return profiles->Write(link, "s", "k", "v"); }, "a\r\n[s]\r\nk=v\r\n,(none)"},
      {[&] { return profiles->Write(b, "s", "k", "v"); }, "a,[s]\r\nk=v\r\n"},
      {[&] { return profiles->Write("own.ini", "s", "k", "v"); }, "a,(none)"}};
  for (const auto& row : rows) {
    for (const int error : {EIO, EACCES, EINTR, ENOMEM}) {
      bool failed = true;
      for (int number = 1; failed; ++number) {
        SCOPED_TRACE(testing::Message() << &row - rows << ", error " << error << " at " << number);
        for (const std::string& path : {a, b, made}) fs::remove_all(path);
        dir.Put("a", "a");
        fs::create_directory(sub);
        entries = dir.Count() + 2;
        error == ENOMEM ? FailAllocation(number) : calls.Fail(number, error);
        const Error result = row.first();
        failed = AllocationFailed() || calls.failed();
        calls.Fail(0, 0);
        const std::string now = dir.Get("a") + "," + dir.Get("b");
        // One that was made to be filled, and may not be removed, stays as an empty file.
        EXPECT_TRUE(now == row.second || (!result.ok() && (now == "a,(none)" || now == "a,")));
        EXPECT_TRUE(fs::is_symlink(link) && (result.ok() || (failed && int(result.code) == error)));
        EXPECT_TRUE(failed || number > 1) << "no call is made";
        EXPECT_TRUE(files->Find(dir / ".dq*").value.empty()) << "temporary files are left";
        EXPECT_TRUE(result.ok() || now == "a," || row.first().ok()) << "when it is made again";
      }
    }
  }
  calls.WriteAtMost(1000);
  EXPECT_TRUE(files->Replace(b, large, false).ok() && dir.Get("b") == large);
  for (const auto& [error, is_told] : {std::pair(EINTR, 0), {EIO, EIO}}) {
    std::string bytes;
    calls.FailEach("Read", error, "", 1);
    EXPECT_EQ(int(files->Copy(b, a, true).code), is_told);
    calls.FailEach("Read", error, "", 1);
    EXPECT_EQ(int(files->ReadAll(b, bytes).code), is_told);
  }
}

TEST(Failures, AProfileThatAnotherWriterHasFilledStays) {
  struct : FailingSystemCalls {
    int RenameToNew(const char* from, const char* to) override {
      const int renamed = FailingSystemCalls::RenameToNew(from, to);
      happens();
      return renamed;
    }
    std::function<void()> happens;
  } calls;
  const TempDirectory directory;
  calls.happens = [&] {
    directory.Put("b.ini", "[s]\r\nother=1\r\n");
    calls.LeaveRoom(0);
  };
  const auto profiles = MakeProfileFiles(calls);
  EXPECT_EQ(profiles->Write(directory / "b.ini", "s", "k", "v").kind, ErrorKind::kNoSpace);
  EXPECT_EQ(directory.Get("b.ini"), "[s]\r\nother=1\r\n");
}

/// A write that fails has written a half.
struct TearingSystemCalls : FailingSystemCalls {
  ssize_t PositionedWrite(int fd, const void* data, std::size_t size, off_t at) override {
    const ssize_t count = FailingSystemCalls::PositionedWrite(fd, data, size, at);
    const int error = errno;
    if (count < 0) SystemCalls::PositionedWrite(fd, data, size / 2, at);
    errno = error;
    return count;
  }
};

/// Does steps for which there may be no memory.
Error Try(User& user, const std::string& steps) try {
  return user.Try(steps);
} catch (const std::bad_alloc&) {
  return ErrorFromErrno(ENOMEM);
}

TEST(Failures, ChangesOfTheRegistryAreDoneOrNotWhateverFails) {
  ScriptedPrompts prompts;
  for (const auto& [what, step, values] : Cases<3>(R"(
           fold => v=#9000 => k: v=#9000 k\sub: ;; create => +k\a\b => k: v=old k\a: k\a\b: k\sub:
           set => new=#9000 => k: new=#9000 v=old k\sub: ;; delete value => -v => k: k\sub:
           delete key => !k\sub => k: v=old ;; flush => flush => k: v=old k\sub:
           leave => leave => k: v=old k\sub: ;; take over => n=n => k: n=n v=old k\sub:
           open => ?k => k: v=old k\sub: ;; make => +k => k:)")) {
    const bool makes = what == "make";
    const std::string before = makes ? "" : "k: v=old k\\sub: ", after = values + ' ';
    // A journal that the next change folds, or a small one.
    const TempDirectory prepared;
    Fill(prepared.path(), (what == "fold" ? "l=#1040000 -l " : "") + "v=old +k\\sub"s);
    for (const int error : {EIO, EACCES, ENOMEM}) {
      int number = 0;
      for (bool failed = true; failed;) {
        SCOPED_TRACE(testing::Message() << what << ", error " << error << " at " << ++number);
        TearingSystemCalls calls;
        const TempDirectory directory;
        fs::copy(prepared.path(), directory.path());
        const std::string files = makes ? directory / "made/registry" : directory.path();
        User user(files, calls);
        if (!makes && what != "open") user.Do("?k");
        if (what == "take over") fs::remove(directory / "hkcu.journal");
        error == ENOMEM ? FailAllocation(number) : calls.Fail(number, error);
        const Error result = Try(user, step);
        failed = AllocationFailed() || calls.failed();
        calls.Fail(0, 0);
        EXPECT_TRUE(result.ok() || (failed && int(result.code) == error)) << result.code;
        // What a removed journal had is in the program that knew it.
        const auto is_as_before = [&] { return Found(files) == before; };
        EXPECT_TRUE(result.ok() || is_as_before() || !user.Flush().ok() || is_as_before());
        EXPECT_TRUE(result.ok() || user.All() == before) << user.All();
        EXPECT_TRUE(result.ok() || user.Try(step).ok());
        EXPECT_TRUE(Found(files) == after && user.All() == after) << user.All();
        EXPECT_TRUE(prompts.shown.empty() || what == "take over");
        prompts.shown.clear();
      }
      EXPECT_TRUE(number > 3 || error == ENOMEM) << what << number;
    }
  }
}

/// Sets values until there is no room, and checks that those reported are there, also for others.
/// Returns how many there are.
int FillUp(const std::string& files, SystemCalls& calls) {
  User user(files, calls);
  Error error;
  std::string all = "k: ";
  int count = -1;
  for (; error.ok() && count < 10'000; ++count) {
    const std::string value = std::to_string(100'001 + count) + "=#1000 ";
    error = user.Try(value);
    if (error.ok()) all += value;
  }
  EXPECT_EQ(error.kind, ErrorKind::kNoSpace);
  // Without room for a journal not even reading has an answer.
  EXPECT_TRUE(count == 0 || (user.All() == all && Found(files) == all)) << count;
  return count;
}

TEST(Failures, AFullDiskIsToldAndLosesNothing) {
  // At each byte that a write can end at: in the header, the generation, and the first records.
  FailingSystemCalls disk;
  for (std::size_t room = 0; room < 2'000; room += room < 230 ? 1 : 97) {
    const TempDirectory directory;
    disk.LeaveRoom(room);
    FillUp(directory.path(), disk);
    disk.LeaveRoom(1 << 20);
    User(directory.path(), disk).Do("again=x");
    EXPECT_NE(User(directory.path()).All().find("again=x "), std::string::npos) << room;
  }
  // In the middle of folds, whose snapshots have no room any more.
  disk.LeaveRoom(std::size_t{3} << 20);
  const TempDirectory directory;
  EXPECT_GT(FillUp(directory.path(), disk), 990);
}

TEST(Failures, WhatAFullDiskRefusesToAppendLeavesNothing) {
  const TempDirectory dir;
  FailingSystemCalls calls;
  const std::unique_ptr<Files> full = MakeFiles(calls);
  for (const auto& [most, room, other, left] :
       Rows<std::size_t, std::size_t, const char*, std::string>{
           {2, 5, "", "old,"}, {9, 0, "", "old,"}, {9, 5, "other's ", "old,lost other's "}}) {
    const std::string path = dir.Put("log", "old,");
    const HANDLE file = full->Open(path, {.read = false, .write = true, .append = true}).value;
    calls.WriteAtMost(most);
    calls.LeaveRoom(room);
    calls.AfterWrites([&, text = other] { std::ofstream(path, std::ios::app) << text; });
    EXPECT_EQ(full->WriteAndTell(file, "lost line").error.kind, ErrorKind::kNoSpace);
    calls.LeaveRoom(1 << 20);
    EXPECT_EQ(dir.Get("log"), left) << most << ' ' << room;
    EXPECT_EQ(full->WriteAndTell(file, "kept").value, left.size() + 4);
    EXPECT_EQ(dir.Get("log"), left + "kept");
    full->Close(file);
  }
}

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
  std::atomic<int>& reported = MakeSharedCount();
  std::atomic<int>& seen = MakeSharedCount();
  Model model;
  int killed_at_work = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    const int length = 1 + static_cast<int>(random() % 60);
    std::vector<Model> states{model};
    std::vector<std::string> steps;
    for (int i = 0; i < length; ++i) {
      steps.push_back(model.Change(random));
      states.push_back(model);
    }
    reported = seen = 0;
    ForkedProcess writer([&] {
      auto user = std::make_unique<User>(directory.path());
      for (const std::string& step : steps) {
        if (!user->Try(step).ok()) return;
        // Only a few changes ahead of who counts them.
        for (++reported; reported > seen + 16;) std::this_thread::yield();
      }
      user.reset();
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
    const std::string found = Found(directory.path());
    model = states[done];
    if (found != model.All() && reported < length) model = states[done + 1];
    ASSERT_EQ(found, model.All()) << "kill " << kill << " of seed " << kSeed << " after " << done;
    ASSERT_TRUE(prompts.shown.empty());
    // A snapshot that was being written is the writer's up to then.
    const char* const strangers = "find . ! -uid 1234 ! -name '*.tmp' 2> /dev/null";
    EXPECT_TRUE(!is_given || RunShell(directory.path(), strangers).empty());
  }
  EXPECT_GT(killed_at_work, kKills / 4);
}

TEST(RegistryProcess, NothingIsLostAmongWritersNorWhenTheJournalIsRemovedAgainAndAgain) {
  for (const auto& [writers, values, removes] :
       Rows<int, int, bool>{{8, 500, false}, {4, 400, true}}) {
    const auto total = static_cast<std::size_t>(writers * values);
    const TempDirectory directory;
    const ScriptedPrompts prompts;
    std::atomic<int>& ready = MakeSharedCount();
    const auto count = [](User& user) { return Dump(user)["k"].size(); };
    const auto write = [&, writers = writers, values = values, removes = removes](int writer) {
      User user(directory.path());
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
    EXPECT_TRUE(AllEndWell(writers, write));
    User user(directory.path());
    EXPECT_EQ(count(user), total);
  }
}

TEST(RegistryProcess, AFoldWhoseJournalIsRemovedMeanwhileTakesNothingFromWhoeverFollows) {
  struct : SystemCalls {
    int LinkStatus(const char* a, struct stat* b) override {
      return Count(), SystemCalls::LinkStatus(a, b);
    }
    int Sync(int fd) override { return Count(), SystemCalls::Sync(fd); }
    int Rename(const char* a, const char* b) override { return Count(), SystemCalls::Rename(a, b); }
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
      User user(directory.path(), calls);
      user.Do("mine=1");
      std::future<void> theirs;
      calls.happens = [&] {
        fs::remove(directory / "hkcu.journal");
        theirs = std::async(std::launch::async,
                            [&] { User(directory.path()).Do("theirs=2 " + large + "leave"); });
        // Before this one's snapshot is in place, unless they wait for it.
        theirs.wait_for(std::chrono::milliseconds(30));
      };
      calls.left = moment;
      user.Do(ending);
      is_met = std::exchange(calls.left, 0) < 1;
      if (!is_met) continue;
      theirs.get();
      EXPECT_EQ(Found(directory.path()), "k: l=#345000 mine=1 theirs=2 ");
      user.Do("leave");
      EXPECT_EQ(user.All(), "k: l=#345000 mine=1 theirs=2 ");
    }
  }
}

TEST(RegistryProcess, AChangeThatIsReportedIsSeenByOthersAtOnce) {
  const TempDirectory directory;
  User user(directory.path());
  user.Do("n=-1");
  std::atomic<int>& turn = MakeSharedCount();
  // Each answers the other's number with the next one; neither ever finds an old one.
  const auto play = [&turn](User& own, int first) {
    for (int i = first; i < 600; i += 2) {
      ASSERT_TRUE(Eventually([&] { return turn == i; })) << i;
      ASSERT_EQ(own.All(), "k: n=" + std::to_string(i - 1) + " ");
      own.Do("n=" + std::to_string(i));
      ++turn;
    }
  };
  ForkedProcess child([&] { play(*std::make_unique<User>(directory.path()), 1); });
  play(user, 0);
  EXPECT_TRUE(child.EndsWell());
}

TEST(RegistryProcess, AChildOfAForkIsAUserOfItsOwn) {
  constexpr int kValues = 1'500;
  const TempDirectory directory;
  auto user = std::make_unique<User>(directory.path());
  user->Do("+k");
  const auto set_all = [&](const std::string& who) {
    for (int i = 0; i < kValues; ++i) user->Do(who + std::to_string(i) + "=x");
  };
  ForkedProcess child([&] {
    set_all("child");
    user.reset();
  });
  set_all("parent");
  EXPECT_TRUE(child.EndsWell() && Dump(*user)["k"].size() == 2 * kValues);
  // The child's leaving took nothing from the parent.
  user->Do("last=x");
  EXPECT_EQ(User(directory.path()).All(), user->All());
}

}  // namespace
}  // namespace dq::platform::posix
