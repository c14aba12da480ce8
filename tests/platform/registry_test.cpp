#include "dqlib/platform/registry.h"

#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "dqlib/platform/posix/registry.h"
#include "tests/support/registry_dump.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"

namespace dq::platform::posix {
namespace {

using test::Dump;
using test::Read;
using test::RegistryDump;
using test::TempDirectory;

class RegistryTest : public ::testing::Test {
 protected:
  HKEY Make(std::string_view path) { return registry_.CreateKey(kCurrentUser, path).value; }

  TempDirectory directory_;
  std::string files_ = directory_ / "deep/er/registry";
  FileRegistry registry_{files_};
  /// Another opening of the same files, as another process has it.
  FileRegistry other_{files_};
};

TEST_F(RegistryTest, ValuesOfEveryTypeAndSizeComeBackAndStay) {
  std::string all_bytes;
  for (int i = 0; i < 256; ++i) all_bytes += static_cast<char>(i);
  const HKEY key = Make("Types");
  RegistryDump expected{{"", {}}, {"Types", {}}};
  const auto set = [&](const std::string& name, DWORD type, const std::string& data) {
    EXPECT_TRUE(registry_.SetValue(key, name, type, data).ok()) << name;
    EXPECT_EQ(Read(other_, other_.OpenKey(kCurrentUser, "types").value, name), data) << name;
    expected["Types"][name] = {type, data};
  };
  for (const DWORD type : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 11u, 99u, 0xFFFFFFFFu}) {
    set("all " + std::to_string(type), type, all_bytes);
    set("text " + std::to_string(type), type, std::string("abcd\0", 5));
  }
  for (const std::size_t size : {0, 259, 260, 261, 7680, 7681}) {
    set("size " + std::to_string(size), REGISTRY_BINARY, std::string(size, 'x'));
  }
  for (const char* name :
       {"", "%s%n%%", "gr\xFC\xDF \xE4\xB8\xAD", "a\"b\\c\\", "line\r\nend", "[x]=@"}) {
    set(name, REGISTRY_STRING, name);
  }
  set(std::string(16'383, 'n'), REGISTRY_STRING, "long name");
  EXPECT_EQ(Dump(registry_), expected);
  // From the journal, and then from the snapshot.
  EXPECT_EQ(Dump(*std::make_unique<FileRegistry>(files_)), expected);
  EXPECT_TRUE(registry_.Leave().ok());
  EXPECT_TRUE(other_.Leave().ok());
  EXPECT_EQ(std::filesystem::file_size(files_ + "/hkcu.journal"), 64u);
  testing::ScriptedPrompts prompts;
  EXPECT_EQ(Dump(*std::make_unique<FileRegistry>(files_)), expected);
  EXPECT_TRUE(prompts.shown.empty());
}

TEST_F(RegistryTest, PathsAndNamesAgainstTheRulesAreRefused) {
  const HKEY key = Make("k");
  const std::string zero("a\0b", 3);
  for (const std::string& path :
       {zero, std::string(256, 'k'), "a\\" + std::string(4'096, 'k'), std::string(20'000, '\\')}) {
    EXPECT_EQ(registry_.OpenKey(key, path).error.kind, ErrorKind::kInvalidArgument);
    EXPECT_EQ(registry_.CreateKey(key, path).error.kind, ErrorKind::kInvalidArgument);
    EXPECT_EQ(registry_.DeleteKey(key, path).kind, ErrorKind::kInvalidArgument);
  }
  for (const std::string& name : {zero, std::string(16'384, 'n')}) {
    EXPECT_EQ(registry_.SetValue(key, name, 1, "").kind, ErrorKind::kInvalidArgument);
    EXPECT_EQ(registry_.ReadValue(key, name, {}).error.kind, ErrorKind::kInvalidArgument);
    EXPECT_EQ(registry_.DeleteValue(key, name).kind, ErrorKind::kInvalidArgument);
  }
  const std::string large((std::size_t{64} << 20) + 1, 'x');
  EXPECT_EQ(registry_.SetValue(key, "v", 1, large).kind, ErrorKind::kInvalidArgument);
  for (const char* path : {"", "\\", "\\\\"}) {
    EXPECT_EQ(registry_.DeleteKey(key, path).kind, ErrorKind::kInvalidArgument);
  }
  EXPECT_EQ(Dump(registry_), (RegistryDump{{"", {}}, {"k", {}}}));
}

TEST_F(RegistryTest, LongAndShortPathsAreKeys) {
  std::string path = "a";
  while (path.size() < 4'096) path += "\\" + std::string(path.size() % 3 + 1, 'b');
  path.resize(4'096, 'c');
  EXPECT_TRUE(registry_.CreateKey(kCurrentUser, path).ok());
  EXPECT_TRUE(other_.OpenKey(kCurrentUser, path).ok());
  EXPECT_TRUE(registry_.CreateKey(kCurrentUser, "x").ok());
  // No key lies deeper than a path may be long, also when it is made in several steps.
  HKEY key = kCurrentUser;
  Result<HKEY> below;
  while ((below = registry_.CreateKey(key, std::string(255, 'd'))).ok()) key = below.value;
  EXPECT_EQ(below.error.kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(Dump(other_), Dump(registry_));
}

TEST_F(RegistryTest, HandlesAreNeverTheNumbersOfOthers) {
  const HKEY key = Make("a\\b");
  std::set<HKEY> numbers{kNoKey, kClassesRoot, kCurrentUser, kLocalMachine};
  for (int i = 0; i < 100; ++i) {
    const HKEY opened = registry_.OpenKey(kCurrentUser, "A\\B").value;
    EXPECT_TRUE(numbers.insert(opened).second);
    registry_.CloseKey(opened);
    EXPECT_EQ(Read(registry_, opened, "v"), "(error 1)");
    registry_.CloseKey(opened);
  }
  EXPECT_TRUE(registry_.SetValue(key, "v", 1, "x").ok());
  for (const HKEY root : {kNoKey, kCurrentUser, kLocalMachine}) registry_.CloseKey(root);
  EXPECT_EQ(Read(registry_, registry_.OpenKey(key, "").value, "V"), "x");
  for (const HKEY none :
       {kNoKey, HKEY{1}, kClassesRoot - 1, kLocalMachine + 1, ~HKEY{0}, key + 1}) {
    EXPECT_EQ(registry_.OpenKey(none, "").error.kind, ErrorKind::kNotFound);
    EXPECT_EQ(registry_.SetValue(none, "v", 1, "").kind, ErrorKind::kNotFound);
  }
}

TEST_F(RegistryTest, AHandleOfADeletedKeyStaysGoneWhoeverDeletesIt) {
  const HKEY here = Make("a\\b");
  const HKEY there = other_.OpenKey(kCurrentUser, "a\\b").value;
  EXPECT_TRUE(other_.SetValue(there, "v", 1, "with values").ok());
  EXPECT_EQ(other_.DeleteKey(kCurrentUser, "a").kind, ErrorKind::kBusy);
  EXPECT_TRUE(other_.DeleteKey(kCurrentUser, "A\\B").ok());
  EXPECT_EQ(other_.DeleteKey(kCurrentUser, "a\\b").kind, ErrorKind::kNotFound);
  const HKEY again = other_.CreateKey(kCurrentUser, "a\\b").value;
  for (const auto& [registry, key] : {std::pair{&registry_, here}, std::pair{&other_, there}}) {
    EXPECT_EQ(registry->SetValue(key, "v", 1, "").kind, ErrorKind::kNotFound);
    EXPECT_EQ(registry->CreateKey(key, "c").error.kind, ErrorKind::kNotFound);
    EXPECT_EQ(registry->EnumKey(key, 0).error.kind, ErrorKind::kNotFound);
  }
  EXPECT_EQ(Read(other_, again, "v"), "(error 1)");
}

TEST_F(RegistryTest, ABufferThatIsTooSmallIsLeftAloneAndToldTheSize) {
  const HKEY key = Make("k");
  EXPECT_TRUE(registry_.SetValue(key, "v", 42, "four").ok());
  std::string buffer = "abc";
  const Result<RegistryValueInfo> info = registry_.ReadValue(key, "v", buffer);
  EXPECT_EQ(info.error.kind, ErrorKind::kBufferTooSmall);
  EXPECT_EQ(info.value.type, 42u);
  EXPECT_EQ(info.value.size, 4u);
  EXPECT_EQ(buffer, "abc");
}

TEST_F(RegistryTest, EachRootIsATreeOfTheUsersOwn) {
  for (const HKEY root : {kClassesRoot, kCurrentUser, kLocalMachine}) {
    const HKEY key = registry_.CreateKey(root, "Same").value;
    EXPECT_TRUE(registry_.SetValue(key, "root", 3, std::to_string(root)).ok());
  }
  for (const HKEY root : {kClassesRoot, kCurrentUser, kLocalMachine}) {
    EXPECT_EQ(Read(other_, other_.OpenKey(root, "Same").value, "root"), std::to_string(root));
  }
  EXPECT_TRUE(registry_.Flush().ok());
  EXPECT_TRUE(other_.Leave().ok());
  EXPECT_TRUE(registry_.Leave().ok());
  const TempDirectory& d = directory_;
  EXPECT_EQ(d.Mode("deep"), 0700u);
  EXPECT_EQ(d.Mode("deep/er/registry"), 0700u);
  for (const char* file : {"hkcr.reg", "hkcu.reg", "hklm.journal"}) {
    EXPECT_EQ(d.Mode("deep/er/registry/" + std::string(file)), 0600u) << file;
  }
  std::string text = d.Get("deep/er/registry/hklm.reg");
  EXPECT_TRUE(text.starts_with("REGEDIT4\r\n; epochs "));
  text.erase(0, text.find("\r\n", 10));
  EXPECT_EQ(text.substr(0, text.size() - 10),
            "\r\n\r\n[HKEY_LOCAL_MACHINE\\Same]\r\n"
            "\"root\"=hex:32,31,34,37,34,38,33,36,35,30\r\n; 1 values, checksum ");
}

TEST_F(RegistryTest, ThreadsAndOtherOpeningsReadAndWriteAtOnce) {
  constexpr int kSteps = 300;
  const HKEY key = Make("shared");
  std::atomic<bool> is_done = false;
  std::vector<std::thread> threads;
  for (int writer = 0; writer < 3; ++writer) {
    threads.emplace_back([&, writer] {
      FileRegistry& registry = writer == 2 ? other_ : registry_;
      const HKEY own = registry.CreateKey(kCurrentUser, "shared\\w" + std::to_string(writer)).value;
      for (int i = 0; i < kSteps; ++i) {
        EXPECT_TRUE(
            registry.SetValue(own, "v" + std::to_string(i % 50), 1, std::to_string(i)).ok());
        if (i % 10 != 9) continue;
        EXPECT_TRUE(registry.DeleteValue(own, "v" + std::to_string(i % 50)).ok());
      }
    });
  }
  std::thread reader([&] {
    while (!is_done) {
      Read(registry_, key, "none");
      for (const auto& [path, values] : Dump(registry_, key)) EXPECT_LE(values.size(), 50u) << path;
    }
  });
  for (std::thread& thread : threads) thread.join();
  is_done = true;
  reader.join();
  const RegistryDump dump = Dump(registry_);
  EXPECT_EQ(dump, Dump(other_));
  for (const char* path : {"shared\\w0", "shared\\w1", "shared\\w2"}) {
    EXPECT_EQ(dump.at(path).size(), 45u);
    EXPECT_EQ(dump.at(path).at("v48").second, "298");
  }
}

}  // namespace
}  // namespace dq::platform::posix
