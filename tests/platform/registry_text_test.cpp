#include "dqlib/platform/registry_text.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "dqlib/platform/registry.h"
#include "tests/support/rows.h"

namespace dq::platform {
namespace {

/// Writes down what a reader finds, one line each.
class Listing : public RegistryTextSink {
 public:
  bool OnKey(std::string_view path) override { return Add("key ", path); }
  bool OnDeletedKey(std::string_view path) override { return Add("no key ", path); }
  bool OnDeletedValue(std::string_view name) override { return Add("no value ", name); }
  bool OnValue(std::string_view name, DWORD type, std::string_view data) override {
    return Add("value ", std::string(name) + "|" + std::to_string(type) + "|" + std::string(data));
  }
  void OnComment(std::string_view comment) override { Add("comment ", comment); }

  std::vector<std::string> found;

 private:
  bool Add(const char* what, std::string_view rest) {
    found.push_back(what + std::string(rest));
    return true;
  }
};

const test::Rows<std::string_view, DWORD, std::string_view, const char*> kWritten = {
    {"", REGISTRY_STRING, {"x\0", 2}, "@=\"x\"\r\n"},
    {"a", REGISTRY_STRING, {"\0", 1}, "\"a\"=\"\"\r\n"},
    {"q\"\\%\xE4\n\r",
     REGISTRY_STRING,
     {"C:\\\"d\"\t%\0", 9},
     "\"q\\\"\\\\%\xE4\\n\\r\"=\"C:\\\\\\\"d\\\"\t%\"\r\n"},
    // Texts that quotes can't give back byte for byte.
    {"a", REGISTRY_STRING, "", "\"a\"=hex(1):\r\n"},
    {"a", REGISTRY_STRING, "x", "\"a\"=hex(1):78\r\n"},
    {"a", REGISTRY_STRING, {"x\0\0", 3}, "\"a\"=hex(1):78,00,00\r\n"},
    {"a", REGISTRY_STRING, {"\r\n\0", 3}, "\"a\"=hex(1):0d,0a,00\r\n"},
    {"a", REGISTRY_DWORD, {"\x2A\0\0\xFF", 4}, "\"a\"=dword:ff00002a\r\n"},
    {"a", REGISTRY_DWORD, "123", "\"a\"=hex(4):31,32,33\r\n"},
    {"a", REGISTRY_BINARY, "\x01\xFF", "\"a\"=hex:01,ff\r\n"},
    {"a", REGISTRY_NONE, "", "\"a\"=hex(0):\r\n"},
    {"a", REGISTRY_QWORD, "12345678", "\"a\"=hex(b):31,32,33,34,35,36,37,38\r\n"},
    {"a", 0xFFFFFFFF, "1", "\"a\"=hex(ffffffff):31\r\n"},
    {"a", REGISTRY_BINARY, "abcdefghijklmnopqrstuvwxyz",
     "\"a\"=hex:61,62,63,64,65,66,67,68,69,6a,6b,6c,6d,6e,6f,70,71,72,73,74,75,76,77,78,79,\\\r\n"
     "  7a\r\n"},
};

TEST(RegistryText, EveryValueIsWrittenInItsFormAndReadBack) {
  for (const auto& [name, type, data, expected_line] : kWritten) {
    std::string line;
    AppendRegistryValue(name, type, data, line);
    EXPECT_EQ(line, expected_line);
    Listing listing;
    EXPECT_FALSE(ReadRegistryText("REGEDIT4\r\n[k]\r\n" + line, listing).any()) << line;
    const std::string expected =
        "value " + std::string(name) + "|" + std::to_string(type) + "|" + std::string(data);
    ASSERT_EQ(listing.found.size(), 2u) << line;
    EXPECT_EQ(listing.found[1], expected);
  }
}

TEST(RegistryText, KeysKeepBracketsBlanksAndLineEnds) {
  for (const char* path :
       {"HKEY_CURRENT_USER", "H\\a]b[", "H\\ a ", "H\\\nn\\n\\a\r\n", "H\\;\"@="}) {
    std::string text = "REGEDIT4\r\n";
    AppendRegistryKey(path, text);
    Listing listing;
    EXPECT_FALSE(ReadRegistryText(text, listing).any()) << text;
    EXPECT_EQ(listing.found, std::vector<std::string>{"key " + std::string(path)});
  }
}

TEST(RegistryText, WhatOthersWriteIsUnderstood) {
  Listing listing;
  const RegistryTextDamage damage = ReadRegistryText(
      "REGEDIT4\n\n ; note\n[-H\\gone]\n[H\\k]\n  \"a\" = \"x\" \n\"b\"=-\n@=dword:1\n"
      "\"c\"=HEX:\n\"d\"=hex:0A,\\\n0b, 0c",
      listing);
  const std::vector<std::string> expected = {
      "comment  note",   "no key H\\gone",
      "key H\\k",        std::string("value a|1|x\0", 12),
      "no value b",      std::string("value |4|\1\0\0\0", 13),
      "value d|3|\n\v\f"};
  EXPECT_EQ(listing.found, expected);
  EXPECT_EQ(damage.lost_lines, 1u) << "kinds of data are in small letters";
}

TEST(RegistryText, LinesWithoutSenseAreLeftOutAndCounted) {
  std::vector<std::string> lines = {"\"a",         "\"a\"", "\"a\"x",   "\"a\"=\"x", "\"a\"=\"x\"y",
                                    "\"a\"=\"x\\", "[HKEY", "nonsense", "\xFF\xFE"};
  for (const char* value :
       {"dword:", "dword:123456789", "dword:0x1", "dword:-1", "hex:1", "hex:01,", "hex:0102",
        "hex:0g", "hex(:01", "hex(1 :01", "hex()01", "hex:01,\\"}) {
    lines.push_back(std::string("\"a\"=") + value);
  }
  for (const std::string& line : lines) {
    Listing listing;
    const std::string text = "REGEDIT4\n[H]\n" + line + "\n[H\\b]\n@=\"y\"\n";
    EXPECT_EQ(ReadRegistryText(text, listing).lost_lines, 1u) << line;
    const std::vector<std::string> expected = {"key H", "key H\\b",
                                               std::string("value |1|y\0", 11)};
    EXPECT_EQ(listing.found, expected) << line;
  }
  Listing listing;
  const RegistryTextDamage damage = ReadRegistryText("@=\"no key\"\n[H]\n@=\"y\"", listing);
  EXPECT_TRUE(damage.no_header);
  EXPECT_EQ(damage.lost_lines, 1u);
  EXPECT_EQ(listing.found.size(), 2u);
}

}  // namespace
}  // namespace dq::platform
