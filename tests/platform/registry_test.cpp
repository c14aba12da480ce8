// The registry's rules, and what its files are made of: texts, snapshots and journals.

#include "dqlib/platform/checksum.h"
#include "dqlib/platform/posix/registry_journal.h"
#include "dqlib/platform/posix/registry_snapshot.h"
#include "dqlib/platform/registry_text.h"
#include "tests/support/doubles.h"
#include "tests/support/forked_process.h"
#include "tests/support/registries.h"

namespace dq::platform::posix {
namespace {

using namespace std::string_literals;
using namespace test;
using enum ErrorKind;

/// The most bytes that a value has.
constexpr std::size_t kLargest = std::size_t{64} << 20;

struct RegistryTest : testing::Test {
  HKEY Make(std::string_view path) { return registry_.CreateKey(kCurrentUser, path).value; }

  TempDirectory directory_;
  std::string files_ = directory_ / "deep/er/registry";
  RegistryUser registry_{files_};
  /// Another opening of the same files, as another process has it.
  RegistryUser other_{files_};
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
    EXPECT_EQ(info.error.kind, data.size() > 3 ? kBufferTooSmall : kNone) << name;
    EXPECT_TRUE(data.size() <= 3 || small == "abc"s) << name;
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
  set(std::string(16'383, 'n'), REGISTRY_STRING, "long name");
  EXPECT_TRUE(registry_.SetValue(key, "A", 42, "A").ok());
  expected["Types"]["a"] = {42, "A"};
  // From the journal, and then from the snapshot.
  const ScriptedPrompts prompts;
  for (int twice = 0; twice < 2; ++twice) {
    EXPECT_EQ(Dump(*std::make_unique<FileRegistry>(files_)), expected);
    EXPECT_TRUE(registry_.Leave().ok() && other_.Leave().ok() && prompts.shown.empty());
  }
}

TEST_F(RegistryTest, PathsAndNamesAgainstTheRulesAreRefused) {
  const HKEY key = Make("k");
  const std::string zero("a\0b", 3);
  ExpectEach(kInvalidArgument, {registry_.DeleteKey(key, ""), registry_.DeleteKey(key, "\\\\"),
                                registry_.SetValue(key, "v", 1, std::string(kLargest + 1, 'x'))});
  for (const std::string& path :
       {zero, std::string(256, 'k'), "a\\" + std::string(256, 'k'), std::string(16'384, '\\')}) {
    ExpectEach(kInvalidArgument,
               {registry_.OpenKey(key, path).error, registry_.DeleteKey(key, path),
                registry_.CreateKey(key, path).error});
  }
  for (const std::string& name : {zero, std::string(16'384, 'n')}) {
    ExpectEach(kInvalidArgument,
               {registry_.SetValue(key, name, 1, ""), registry_.DeleteValue(key, name),
                registry_.ReadValue(key, name, {}).error});
  }
  // No key lies deeper than a path may be long, also when it is made in several steps.
  HKEY deep = key;
  Result<HKEY> next;
  int count = 0;
  for (; (next = registry_.CreateKey(deep, std::string(255, 'd'))).ok(); ++count) deep = next.value;
  EXPECT_TRUE(count == 63 && next.error.kind == kInvalidArgument) << count;
  EXPECT_TRUE(registry_.CreateKey(deep, std::string(253, 'e')).ok()) << "16383 in all";
  next = registry_.CreateKey(deep, std::string(254, 'f'));
  EXPECT_TRUE(next.error.kind == kInvalidArgument && Dump(other_).size() == 66);
}

TEST_F(RegistryTest, HandlesAreNeverTheNumbersOfOthersAndGoWithTheirKeys) {
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
  for (const HKEY no : {kNoKey, HKEY{1}, kClassesRoot - 1, kLocalMachine + 1, ~HKEY{0}, key + 1}) {
    ExpectEach(kNotFound, {registry_.OpenKey(no, "").error, registry_.SetValue(no, "v", 1, "")});
  }
  // That of a deleted key stays gone, whoever deletes it.
  const HKEY here = Make("a\\b"), there = other_.OpenKey(kCurrentUser, "a\\b").value;
  EXPECT_TRUE(other_.SetValue(there, "v", 1, "with values").ok());
  EXPECT_EQ(other_.DeleteKey(kCurrentUser, "a").kind, ErrorKind::kBusy);
  EXPECT_TRUE(other_.DeleteKey(kCurrentUser, "A\\B").ok());
  const Error twice = other_.DeleteKey(kCurrentUser, "a\\b");
  const HKEY again = other_.CreateKey(kCurrentUser, "a\\b").value;
  ExpectEach(kNotFound,
             {twice, registry_.SetValue(here, "v", 1, ""), other_.SetValue(there, "v", 1, ""),
              registry_.CreateKey(here, "c").error, other_.EnumKey(there, 0).error});
  EXPECT_EQ(Read(other_, again, "v"), "(error 1)");
}

TEST_F(RegistryTest, EachRootIsATreeOfTheUsersOwn) {
  for (const HKEY root : {kClassesRoot, kCurrentUser, kLocalMachine}) {
    const std::string number = std::to_string(root);
    const HKEY key = registry_.CreateKey(root, "Same").value;
    EXPECT_EQ(Read(other_, other_.OpenKey(root, "Same").value, "root"), "(error 1)");
    EXPECT_TRUE(registry_.SetValue(key, "root", 3, number).ok());
    EXPECT_EQ(Read(other_, other_.OpenKey(root, "Same").value, "root"), number);
  }
  EXPECT_TRUE(registry_.Flush().ok() && other_.Leave().ok() && registry_.Leave().ok());
  EXPECT_EQ(RunShell(files_,
                     "stat -c %a .. . hkcr.reg hkcu.reg hklm.journal;"
                     "grep -h '^[[\"]' hk*.reg | tr -d '\\r' | cut -d, -f1,9-"),
            "700\n700\n600\n600\n600\n[HKEY_CLASSES_ROOT\\Same]\n\"root\"=hex:32,34,38\n"
            "[HKEY_CURRENT_USER\\Same]\n\"root\"=hex:32,34,39\n"
            "[HKEY_LOCAL_MACHINE\\Same]\n\"root\"=hex:32,35,30\n");
}

TEST_F(RegistryTest, ThreadsAndOtherOpeningsReadWriteAndFoldAtOnce) {
  std::string steps, all = "k: ";
  for (int i = 100; i < 400; ++i) {
    steps += "k\\" + std::to_string(i) + "\\a\"b=c ";
    all += "k\\" + std::to_string(i) + ": a\"b=c ";
  }
  registry_.Do(steps + "leave");
  // One that has read the snapshot, and not yet its values.
  RegistryUser fresh(files_);
  EXPECT_TRUE(fresh.OpenKey(kCurrentUser, "k").ok());
  std::atomic<int> writing = 3;
  std::vector<std::thread> writers;
  writers.emplace_back([&] { fresh.Do("large\\l=#1100000 -large\\l"); });
  for (const std::string key : {"w0", "w1", "w2"}) {
    writers.emplace_back([&, key] {
      for (int i = 0; i < 300; ++i) {
        const std::string value = key + "\\v" + std::to_string(i % 5);
        const std::string step = value + "=" + std::to_string(i);
        (key == "w2" ? other_ : fresh).Do(i % 5 == 4 ? step + " -" + value : step);
      }
      --writing;
    });
  }
  while (writing > 0) EXPECT_FALSE(fresh.All().starts_with('('));
  for (std::thread& writer : writers) writer.join();
  all += "large: ";
  for (const std::string key : {"w0", "w1", "w2"}) all += key + ": v0=295 v1=296 v2=297 v3=298 ";
  EXPECT_TRUE(fresh.All() == all && other_.All() == all);
}

/// Writes down what a reader finds, with "~" behind each.
struct Listing : RegistryTextSink {
  explicit Listing(std::string_view text) { damage = ReadRegistryText(text, *this); }

  bool OnKey(std::string_view path) override { return Add("key ", path); }
  bool OnDeletedKey(std::string_view path) override { return Add("no key ", path); }
  bool OnDeletedValue(std::string_view name) override { return Add("no value ", name); }
  bool OnValue(std::string_view name, DWORD type, std::string_view data) override {
    return Add(name, "|" + std::to_string(type) + "|" + std::string(data));
  }
  void OnComment(std::string_view comment) override { Add("comment ", comment); }
  void OnLostLine(std::size_t number) override { Add("lost ", std::to_string(number)); }

  RegistryTextDamage damage;
  std::string found;

 private:
  bool Add(std::string_view what, std::string_view rest) {
    found.append(what).append(rest) += "~";
    return true;
  }
};

TEST(RegistryText, EveryKeyAndValueIsWrittenInItsFormAndReadBack) {
  using Text = std::string;
  // Some texts quotes can't give back byte for byte.
  std::vector<std::tuple<DWORD, Text, Text>> values = {
      {0, "", "hex(0):"},           {1, "x\0\0"s, "hex(1):78,00,00"},
      {1, "", "hex(1):"},           {4, "123", "hex(4):31,32,33"},
      {1, "\0"s, "\"\""},           {4, "\x2A\0\0\xFF"s, "dword:ff00002a"},
      {1, "x\0"s, "\"x\""},         {1, "\r\n\0"s, "hex(1):0d,0a,00"},
      {1, "x", "hex(1):78"},        {~0u, "1", "hex(ffffffff):31"},
      {3, "\x01\xFF", "hex:01,ff"}, {1, "\\\"\t%\0"s, "\"\\\\\\\"\t%\""},
      {2, "x", "hex(2):78"},        {11, "1234", "hex(b):31,32,33,34"}};
  values.emplace_back(
      3, "abcdefghijklmnopqrstuvwxyz",
      "hex:61,62,63,64,65,66,67,68,69,6a,6b,6c,6d,6e,6f,70,71,72,73,74,75,76,77,78,79,\\\r\n  7a");
  for (const Text path :
       {"HKEY_CURRENT_USER", "H\\a]b[", "H\\ a ", "H\\\nn\\n\\a\r\n", "H\\;\"@="}) {
    for (const auto& [name, form] : Rows<Text, Text>{
             {"", "@"}, {"a", "\"a\""}, {"q\"\\%\xE4\n\r", "\"q\\\"\\\\%\xE4\\n\\r\""}}) {
      for (const auto& [type, data, value] : values) {
        std::string text = "REGEDIT4\r\n";
        AppendRegistryKey(path, text);
        AppendRegistryValue(name, type, data, text);
        EXPECT_TRUE(text.ends_with("]\r\n" + form + "=" + value + "\r\n")) << text;
        const Listing listing(text);
        EXPECT_FALSE(listing.damage.any()) << text;
        EXPECT_EQ(listing.found,
                  "key " + path + "~" + name + "|" + std::to_string(type) + "|" + data + "~");
      }
    }
  }
}

TEST(RegistryText, WhatOthersWriteIsUnderstoodAndLinesWithoutSenseAreLeftOutAndCounted) {
  for (const auto& [lines, found] : Rows<std::string, std::string>{
           {"\n ; note\n[-H\\gone]\n", "comment  note~no key H\\gone~"},
           {"  \"a\\s\" = \"\\x\" \n\"b\"=-\n", "as|1|x\0~no value b~"s},
           {"@=dword:1\n\"d\"=hex: 0A\t,\\\n\t0b, 0c \n", "|4|\1\0\0\0~d|3|\n\v\f~"s}}) {
    const Listing listing("REGEDIT4\n[H]\n" + lines);
    EXPECT_TRUE(listing.found == "key H~" + found && !listing.damage.any()) << listing.found;
  }
  for (const std::string line :
       {"\"a",         "\"a\"",     "\"a\"x",    "\"a\"=\"x",  "\"a\"=\"x\"y",      "\"a\"=\"x\\",
        "[HKEY",       "nonsense",  "\xFF\xFE",  "@=dword:",   "@=dword:123456789", "@=dword:0x1",
        "@=dword:-1",  "@=hex:1",   "@=hex:01,", "@=hex:0102", "@=hex:0g",          "@=hex(:01",
        "@=hex(1 :01", "@=hex()01", "@=HEX:",    "@=hex:01,\\"}) {
    const Listing listing("REGEDIT4\n[H]\n" + line + "\n[H\\b]\n@=\"y\"\n");
    EXPECT_EQ(listing.damage.lost_lines, 1u) << line;
    EXPECT_EQ(listing.found, "key H~lost 3~key H\\b~|1|y\0~"s) << line;
  }
  const Listing headless("@=\"no key\"\n[H]\n@=\"y\"");
  EXPECT_TRUE(headless.damage.no_header && headless.damage.lost_lines == 1);
  EXPECT_EQ(headless.found, "lost 1~key H~|1|y\0~"s);
}

using enum JournalOperation;

constexpr std::uint64_t kEpoch = 7;

std::string TextOf(const RegistryTree& tree, const std::optional<SnapshotEpochs>& epochs = {}) {
  std::string text;
  const auto take = [&](std::string_view piece) { return text += piece, Error{}; };
  EXPECT_TRUE(WriteSnapshot(tree, "ROOT", epochs, take).ok());
  return text;
}

/// The other way round, from the lines behind the header.
std::unique_ptr<RegistryTree> TreeOf(const std::string& lines) {
  return ReadSnapshot("REGEDIT4\n" + lines, "ROOT").tree;
}

/// Records of changes, one behind the other from the begin of a journal.
std::string Records(const std::vector<JournalChange>& changes) {
  std::string bytes;
  for (const JournalChange& change : changes) {
    std::string record;
    EncodeJournalRecord(change, kEpoch, kJournalHeaderSize + bytes.size(), record);
    bytes += record;
  }
  return bytes;
}

JournalReplay Replay(std::string_view bytes, RegistryTree& tree) {
  return ReplayJournal(bytes, kEpoch, kJournalHeaderSize, tree);
}

TEST(Checksum, IsTheCastagnoliOneInPiecesOfAnySize) {
  constexpr std::string_view kDigits = "123456789";
  for (std::size_t cut = 0; cut <= kDigits.size(); ++cut) {
    EXPECT_EQ(Checksum(kDigits.substr(cut), Checksum(kDigits.substr(0, cut))), 0xE3069283u);
    EXPECT_EQ(ChecksumByTables(kDigits.substr(cut), ChecksumByTables(kDigits.substr(0, cut))),
              0xE3069283u);
  }
}

TEST(RegistryJournal, ADamagedByteCostsOneRecordAndWhatIsFromElsewhereIsNone) {
  // Those that have nothing to delete count like the others, and the root stays.
  const std::string records = Records({{kCreateKey, "a\\b"},
                                       {kSetValue, "a\\b", "v", 1, "one"},
                                       {kDeleteValue, "a\\b", "v"},
                                       {kDeleteKey, "a\\b"},
                                       {kDeleteValue, "none", "v"},
                                       {kDeleteKey, "none"},
                                       {kDeleteKey, "\\"}});
  for (std::size_t at = 0; at < records.size(); ++at) {
    std::string bytes = records;
    bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
    RegistryTree tree;
    const JournalReplay replay = Replay(bytes, tree);
    EXPECT_TRUE(replay.records == 6 && tree.root().id != 0) << at;
    EXPECT_EQ(replay.gaps, 1u) << at << ": it was reported, even as the last one";
    EXPECT_EQ(replay.end, 64 + records.size()) << at;
  }
  // Records count in their own journal and place only.
  const std::string inner = Records({{kCreateKey, "inner"}});
  const std::string outer = Records({{kSetValue, "k", "v", 1, inner}, {kCreateKey, "last"}});
  // The record in the value must not come to light when the one around it is damaged.
  std::string bytes = outer;
  bytes[0] ^= 1;
  RegistryTree tree;
  EXPECT_TRUE(Replay(bytes, tree).records == 1 && tree.FindKey(tree.root(), "inner") == nullptr);
  const JournalReplay former = ReplayJournal(outer, kEpoch + 1, kJournalHeaderSize, tree);
  EXPECT_EQ(former.records + former.gaps, 0u) << "what earlier use leaves behind is no damage";
  EXPECT_EQ(Replay(outer + std::string(5'000, '\0'), tree).gaps, 0u);
  EXPECT_EQ(ReplayJournal(outer, kEpoch, kJournalHeaderSize + 1, tree).records, 0u);
  EXPECT_EQ(FindJournalEpoch(bytes, kJournalHeaderSize), kEpoch);
  std::string large(kLargest, 'x');
  const std::string name(16'383, 'n');
  EXPECT_EQ(Replay(Records({{kSetValue, "k", name, 1, large}}), tree).records, 1u);
  EXPECT_EQ(Replay(Records({{kSetValue, "k", name, 1, large += 'x'}}), tree).records, 0u);
}

TEST(RegistryJournal, BytesThatOverlapAsRecordsAreReadInLinearTime) {
  // Heads side by side, each with all the bytes behind it as content that isn't the right one: who
  // looked at all of it for each would take half an hour.
  constexpr std::size_t kEnd = 4 << 20;
  std::string bytes;
  while (bytes.size() + 28 <= kEnd) {
    const std::uint64_t head[]{kEnd - bytes.size() - 28, kEpoch, kJournalHeaderSize + bytes.size()};
    const std::string_view text(reinterpret_cast<const char*>(&head), sizeof head);
    const std::uint32_t sum = Checksum(text);
    bytes.append(text).append(reinterpret_cast<const char*>(&sum), sizeof sum);
  }
  RegistryTree tree;
  EXPECT_TRUE(Replay(bytes, tree).records == 0 && !FindJournalEpoch(bytes, kJournalHeaderSize));
}

TEST(RegistryJournal, AHeaderIsWholeOrNone) {
  const std::string header = EncodeJournalHeader({1, 2, 3, 4}, 5);
  ASSERT_EQ(header.size(), 64u);
  EXPECT_TRUE(DecodeGeneration(header) == 5 && DecodeJournalHead(header)->former_size == 3);
  EXPECT_EQ(DecodeJournalHead(header)->snapshot_epoch, 4u);
  // The snapshot that each names, "-" for none that can be read.
  std::string damaged, cut;
  const auto tell = [](std::string_view bytes) {
    const auto head = DecodeJournalHead(bytes);
    return head ? std::to_string(head->snapshot_epoch) : "-";
  };
  for (std::size_t at = 0; at < header.size(); ++at) {
    std::string changed = header;
    changed[at] = static_cast<char>(changed[at] ^ 1);
    damaged += tell(changed);
    cut += tell(header.substr(0, at));
  }
  // Generation and mark change alone; the snapshot is named by bytes that are all good or not.
  EXPECT_EQ(damaged, std::string(36, '-') + "0000" + std::string(16, '4') + "00000000");
  EXPECT_EQ(cut, std::string(36, '-') + std::string(28, '0'));
}

TEST(RegistrySnapshot, TheSecondLineTellsItsEpochsAndOthersMayLackIt) {
  const auto tree = TreeOf("[ROOT]\n@=dword:64636261\n");
  const std::string begin = "REGEDIT4\r\n";
  const std::string rest = "\r\n[ROOT]\r\n@=dword:64636261\r\n; 1 values, checksum ";
  const std::string text = TextOf(*tree, SnapshotEpochs{~0ull, 0xA, 0x40, 0x123456789ABCDEF0});
  EXPECT_EQ(text,
            begin + "; epochs ffffffffffffffff a 40 123456789abcdef0\r\n" + rest + "8b75086b\r\n");
  EXPECT_EQ(TextOf(*tree, ReadSnapshot(text, "ROOT").epochs), text);
  const LoadedSnapshot former = ReadSnapshot(begin + rest + "8cf8ebe5\r\n", "ROOT");
  EXPECT_FALSE(former.damaged || former.epochs);
  for (const char* head : {"REGEDIT4", "REGEDIT4\r\n; epochs", "REGEDIT4\r\n; epochs 1 2 3",
                           "REGEDIT4\r\n; epochs 1 2 3 x", "REGEDIT4\r\n; epochs 1 2 3 4",
                           "REGEDIT4\r\n; epochs 1 2 3 11112222333344445\r\n"}) {
    EXPECT_FALSE(FindSnapshotEpochs(head)) << head;
  }
}

TEST(RegistrySnapshot, EveryMissingAndEveryChangedByteIsFound) {
  const auto tree = TreeOf("[ROOT\\a\\b]\n\"Path\"=\"C:\\\\x\"\n[ROOT\\Empty\\Key]\n@=dword:1\n");
  // With a value that takes several lines.
  RegistryTree::SetValue(tree->MakeKey(tree->root(), "Font"), "Face", 3, std::string(60, 'f'));
  const std::string text = TextOf(*tree);
  const LoadedSnapshot loaded = ReadSnapshot(text, "ROOT");
  EXPECT_TRUE(!loaded.damaged && TextOf(*loaded.tree) == text && loaded.values == 3);
  EXPECT_TRUE(ReadSnapshot(text, "OTHER").damaged);
  for (std::size_t at = 0; at < text.size(); ++at) {
    EXPECT_TRUE(ReadSnapshot(text.substr(0, at), "ROOT").damaged) << at;
    std::string changed = text;
    changed[at] = static_cast<char>(changed[at] ^ 4);
    const LoadedSnapshot salvaged = ReadSnapshot(changed, "ROOT");
    EXPECT_TRUE(salvaged.damaged) << at;
    EXPECT_GE(salvaged.values, 1u) << at;
  }
}

TEST(RegistrySnapshot, NamesAndPathsMadeToBeSlowTakeLinearTimeAndRoom) {
  // All names are of the same length and differ in nothing but the bit that tells cases apart.
  constexpr int kBits = 17;
  std::string text = "REGEDIT4\n[ROOT]\n";
  for (int number = 0; number < 1 << kBits; ++number) {
    text += '"';
    for (int bit = 0; bit < kBits; ++bit) text += (number >> bit & 1) != 0 ? '1' : '\x11';
    text += "\"=hex:\n";
  }
  EXPECT_EQ(ReadSnapshot(text, "ROOT").values, std::size_t{1} << kBits);

  RegistryTree deep;
  std::string path = "a";
  while (path.size() + 2 <= kMaxKeyPath) path += "\\a";
  EXPECT_EQ(RegistryTree::PathOf(deep.MakeKey(deep.root(), path)), path);
  EXPECT_LT(TextOf(deep).size(), path.size() + 100);
  deep.DeleteKey(*deep.FindKey(deep.root(), "a"));
  EXPECT_EQ(deep.root().children.size(), 0u);
}

TEST(RegistryTree, ManyRandomChangesGiveWhatAMapGives) {
  std::mt19937 random(20'240);
  RegistryTree tree;
  TreeKey& key = tree.MakeKey(tree.root(), "k");
  std::map<std::string, std::string> model;
  for (int step = 0; step < 12'000; ++step) {
    // The number of names swells and shrinks, so that the index is built and left again.
    const unsigned names = step % 4000 < 2000 ? 300 : 6;
    const std::string number = std::to_string(random() % names);
    const std::string name = (random() % 2 ? "VALUE AZ " : "Value az ") + number;
    if (random() % 3 != 0 && names > 6) {
      RegistryTree::SetValue(key, name, 1, std::to_string(step));
      model[number] = std::to_string(step);
    } else {
      const bool is_first = random() % 2 && key.values.size() > 0;
      const std::string doomed(is_first ? key.values[0].name : name);
      EXPECT_EQ(RegistryTree::DeleteValue(key, doomed), model.erase(doomed.substr(9)) > 0);
    }
    ASSERT_EQ(key.values.size(), model.size()) << step;
    if (step % 100 != 0) continue;
    for (const auto& [known, data] : model) {
      const TreeValue* const value = RegistryTree::FindValue(key, "vaLue aZ " + known);
      ASSERT_TRUE(value != nullptr && value->data == data) << known << " at step " << step;
    }
  }
}

TEST(RegistryTree, WhatIsMissingIsAddedAndWhatDiffersIsCounted) {
  const std::string same = "[ROOT]\r\n\"same\"=hex:78\r\n";
  const std::string added = "\r\n[ROOT\\a\\b]\r\n\"new\"=hex:78\r\n";
  const auto tree = TreeOf(same + "\"type\"=hex:78\n\"data\"=hex:78\n");
  const auto other = TreeOf(same + "\"type\"=hex(0):78\n\"data\"=hex:79\n" + added);
  EXPECT_EQ(tree->AddMissing(*other), 5u) << "two keys, their value, and two that differ";
  EXPECT_EQ(tree->AddMissing(*other), 2u);
  EXPECT_THAT(TextOf(*tree),
              testing::HasSubstr(same + "\"type\"=hex:78\r\n\"data\"=hex:78\r\n" + added));
}

}  // namespace
}  // namespace dq::platform::posix
