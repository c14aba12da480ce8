#include "dqlib/platform/registry.h"

#include "tests/support/forked_process.h"
#include "tests/support/registry_user.h"
#include "tests/support/scripted_prompts.h"

namespace dq::platform::posix {
namespace {

using test::Dump;
using test::Read;
using test::RegistryDump;

struct RegistryTest : ::testing::Test {
  HKEY Make(std::string_view path) { return registry_.CreateKey(kCurrentUser, path).value; }

  test::TempDirectory directory_;
  std::string files_ = directory_ / "deep/er/registry";
  test::RegistryUser registry_{files_};
  /// Another opening of the same files, as another process has it.
  test::RegistryUser other_{files_};
};

TEST_F(RegistryTest, ValuesOfEveryTypeAndSizeComeBackAndStay) {
  std::string all_bytes(256, '\0');
  std::iota(all_bytes.begin(), all_bytes.end(), '\0');
  const HKEY key = Make("Types");
  RegistryDump expected{{"", {}}, {"Types", {}}};
  const auto set = [&](const std::string& name, DWORD type, const std::string& data) {
    EXPECT_TRUE(registry_.SetValue(key, name, type, data).ok()) << name;
    const HKEY there = other_.OpenKey(kCurrentUser, "types").value;
    EXPECT_EQ(Read(other_, there, name), data) << name;
    // A buffer that is too small is left alone and told the size.
    char small[] = "abc";
    const auto info = other_.ReadValue(there, name, std::span(small).first(3));
    EXPECT_TRUE(info.value.type == type && info.value.size == data.size()) << name;
    EXPECT_TRUE(data.size() <= 3 ||
                (info.error.kind == ErrorKind::kBufferTooSmall && small == std::string("abc")))
        << name;
    expected["Types"][name] = {type, data};
  };
  for (const DWORD type : {0u, 1u, 2u, 3u, 4u, 7u, 11u, 0xFFFFFFFFu}) {
    set("all " + std::to_string(type), type, all_bytes);
    set("text " + std::to_string(type), type, std::string("abcd\0", 5));
  }
  for (const char* name : {"", "%s%n%%", "\xFC\xDF \xE4", "a\"b\\c\\", "line\r\nend", "[x]=@", "[",
                           "{", "@", "`", "\xC4", "\xE4", "a ", " a", "a"}) {
    set(name, REGISTRY_STRING, name);
  }
  EXPECT_TRUE(registry_.SetValue(key, "A", 42, "A").ok());
  expected["Types"]["a"] = {42, "A"};
  set(std::string(16'383, 'n'), REGISTRY_STRING, "long name");
  EXPECT_EQ(Dump(registry_), expected);
  // From the journal, and then from the snapshot.
  EXPECT_EQ(Dump(*std::make_unique<FileRegistry>(files_)), expected);
  EXPECT_TRUE(registry_.Leave().ok() && other_.Leave().ok());
  EXPECT_EQ(std::filesystem::file_size(files_ + "/hkcu.journal"), 64u);
  testing::ScriptedPrompts prompts;
  EXPECT_EQ(Dump(*std::make_unique<FileRegistry>(files_)), expected);
  EXPECT_TRUE(prompts.shown.empty());
}

TEST_F(RegistryTest, PathsAndNamesAgainstTheRulesAreRefused) {
  constexpr ErrorKind kInvalid = ErrorKind::kInvalidArgument;
  const HKEY key = Make("k");
  const std::string zero("a\0b", 3);
  for (const std::string& path :
       {zero, std::string(256, 'k'), "a\\" + std::string(256, 'k'), std::string(16'384, '\\')}) {
    for (const Error& error :
         {registry_.OpenKey(key, path).error, registry_.CreateKey(key, path).error,
          registry_.DeleteKey(key, path)}) {
      EXPECT_EQ(error.kind, kInvalid);
    }
  }
  for (const std::string& name : {zero, std::string(16'384, 'n')}) {
    EXPECT_EQ(registry_.SetValue(key, name, 1, "").kind, kInvalid);
    EXPECT_EQ(registry_.ReadValue(key, name, {}).error.kind, kInvalid);
    EXPECT_EQ(registry_.DeleteValue(key, name).kind, kInvalid);
  }
  const std::string large((std::size_t{64} << 20) + 1, 'x');
  EXPECT_EQ(registry_.SetValue(key, "v", 1, large).kind, kInvalid);
  for (const char* path : {"", "\\\\"}) EXPECT_EQ(registry_.DeleteKey(key, path).kind, kInvalid);
  // No key lies deeper than a path may be long, also when it is made in several steps.
  HKEY deep = key;
  Result<HKEY> below;
  int levels = 0;
  for (; (below = registry_.CreateKey(deep, std::string(255, 'd'))).ok(); ++levels) {
    deep = below.value;
  }
  EXPECT_EQ(below.error.kind, kInvalid);
  EXPECT_EQ(levels, 63);
  EXPECT_TRUE(registry_.CreateKey(deep, std::string(253, 'e')).ok()) << "16383 in all";
  EXPECT_EQ(registry_.CreateKey(deep, std::string(254, 'f')).error.kind, kInvalid);
  EXPECT_EQ(Dump(other_).size(), 66u);
}

TEST_F(RegistryTest, HandlesAreNeverTheNumbersOfOthers) {
  const HKEY key = Make("a\\b");
  std::set<HKEY> numbers{kNoKey, kClassesRoot, kCurrentUser, kLocalMachine, key};
  for (int i = 0; i < 100; ++i) {
    const HKEY opened = registry_.OpenKey(kCurrentUser, "A\\B").value;
    EXPECT_TRUE(numbers.insert(opened).second && registry_.IsSameKey(key, opened));
    for (int twice = 0; twice < 2; ++twice) registry_.CloseKey(opened);
    EXPECT_EQ(Read(registry_, opened, "v"), "(error 1)");
  }
  for (const HKEY root : {kNoKey, kCurrentUser, kLocalMachine}) registry_.CloseKey(root);
  EXPECT_FALSE(registry_.IsSameKey(kCurrentUser, kLocalMachine));
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

TEST_F(RegistryTest, EachRootIsATreeOfTheUsersOwn) {
  constexpr HKEY kRoots[] = {kClassesRoot, kCurrentUser, kLocalMachine};
  for (const HKEY root : kRoots) {
    const HKEY key = registry_.CreateKey(root, "Same").value;
    EXPECT_TRUE(registry_.SetValue(key, "root", 3, std::to_string(root)).ok());
  }
  for (const HKEY root : kRoots) {
    EXPECT_EQ(Read(other_, other_.OpenKey(root, "Same").value, "root"), std::to_string(root));
  }
  EXPECT_TRUE(registry_.Flush().ok() && other_.Leave().ok() && registry_.Leave().ok());
  EXPECT_EQ(test::Shell(files_, "stat -c %a .. . hkcr.reg hkcu.reg hklm.journal"),
            "700\n700\n600\n600\n600\n");
  std::string text = directory_.Get("deep/er/registry/hklm.reg");
  EXPECT_TRUE(text.starts_with("REGEDIT4\r\n; epochs "));
  text.erase(0, text.find("\r\n", 10));
  EXPECT_EQ(text.substr(0, text.size() - 10),
            "\r\n\r\n[HKEY_LOCAL_MACHINE\\Same]\r\n"
            "\"root\"=hex:32,31,34,37,34,38,33,36,35,30\r\n; 1 values, checksum ");
}

TEST_F(RegistryTest, ThreadsAndOtherOpeningsReadAndWriteAtOnce) {
  std::atomic<bool> is_done = false;
  std::thread reader([&] {
    while (!is_done) EXPECT_FALSE(registry_.All().starts_with('('));
  });
  std::vector<std::thread> writers;
  for (const std::string key : {"w0", "w1", "w2"}) {
    writers.emplace_back([&, key] {
      for (int i = 0; i < 300; ++i) {
        const std::string value = key + "\\v" + std::to_string(i % 50);
        const std::string step = value + "=" + std::to_string(i);
        (key == "w2" ? other_ : registry_).Do(i % 10 == 9 ? step + " -" + value : step);
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  is_done = true;
  reader.join();
  EXPECT_EQ(registry_.All(), other_.All());
  RegistryDump dump = Dump(registry_);
  for (const char* key : {"w0", "w1", "w2"}) {
    EXPECT_TRUE(dump[key].size() == 45 && dump[key]["v48"].second == "298") << key;
  }
}

TEST_F(RegistryTest, AFoldAndTheFirstReadsOfASnapshotGoOnAtOnce) {
  constexpr int kKeys = 300;
  for (int i = 0; i < kKeys; ++i) {
    const HKEY key = Make("shared\\k" + std::to_string(i));
    EXPECT_TRUE(registry_.SetValue(key, "a \"name\"", 1, {"a \"text\"\0", 9}).ok());
    registry_.CloseKey(key);
  }
  EXPECT_TRUE(registry_.Leave().ok());
  const std::string large(1'100'000, 'x');
  FileRegistry fresh(files_);
  const HKEY key = fresh.OpenKey(kCurrentUser, "shared").value;
  std::thread folder([&] { EXPECT_TRUE(fresh.SetValue(key, "", 3, large).ok()); });
  RegistryDump dump = Dump(fresh, key);
  folder.join();
  dump.erase("");
  EXPECT_EQ(dump.size(), std::size_t{kKeys});
  const test::DumpedValue expected(1, {"a \"text\"\0", 9});
  for (const auto& [path, values] : dump) EXPECT_EQ(values.at("a \"name\""), expected) << path;
}

}  // namespace
}  // namespace dq::platform::posix
