#include "dqlib/platform/posix/registry_tree.h"

#include "tests/support/testing.h"

namespace dq::platform::posix {
namespace {

TEST(RegistryTree, NamesDifferInAnythingButTheCaseOfAsciiLetters) {
  RegistryTree tree;
  TreeKey& root = tree.root();
  for (const char* name : {"a", "[", "{", "@", "`", "\xC4", "\xE4", "a ", " a", "a%b", "a\"b"}) {
    RegistryTree::SetValue(root, name, 1, name);
  }
  RegistryTree::SetValue(root, "A", 1, "A");
  EXPECT_EQ(root.values.size(), 11u);
  const TreeValue* const value = RegistryTree::FindValue(root, "a");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(std::string(value->name).append(value->data), "aA")
      << "a value keeps the spelling it was made with";
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
  RegistryTree tree;
  RegistryTree other;
  for (const char* name : {"same", "type", "data"}) {
    RegistryTree::SetValue(tree.root(), name, 1, "x");
    RegistryTree::SetValue(other.root(), name, name[0] == 't' ? 3 : 1, name[0] == 'd' ? "y" : "x");
  }
  RegistryTree::SetValue(other.MakeKey(other.root(), "a\\b"), "new", 1, "x");
  EXPECT_EQ(tree.AddMissing(other), 5u) << "two keys, their value, and two that differ";
  EXPECT_EQ(tree.AddMissing(other), 2u);
  EXPECT_EQ(RegistryTree::FindValue(tree.root(), "data")->data, "x");
  EXPECT_NE(RegistryTree::FindValue(*tree.FindKey(tree.root(), "a\\b"), "new"), nullptr);
}

TEST(RegistryTree, ADeletedKeyIsNoOtherKeyThatIsMadeLater) {
  RegistryTree tree;
  TreeKey& doomed = tree.MakeKey(tree.root(), "\\a\\\\b\\c\\");
  EXPECT_EQ(RegistryTree::PathOf(doomed), "a\\b\\c");
  const std::uint64_t id = doomed.id;
  tree.DeleteKey(*tree.FindKey(tree.root(), "A\\B"));
  EXPECT_EQ(tree.FindKey(tree.root(), "a\\b\\c"), nullptr);
  for (const char* path : {"x", "y", "a\\b", "a\\b\\c"}) tree.MakeKey(tree.root(), path);
  EXPECT_NE(doomed.id, id);
}

}  // namespace
}  // namespace dq::platform::posix
