#include "dqlib/platform/registry_text.h"

#include "dqlib/platform/registry.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

using namespace std::string_literals;

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

TEST(RegistryText, EveryValueIsWrittenInItsFormAndReadBack) {
  for (const auto& [name, type, data, line] :
       test::Rows<std::string, DWORD, std::string, std::string>{
           {"", REGISTRY_STRING, "x\0"s, "@=\"x\""},
           {"a", REGISTRY_STRING, "\0"s, "\"a\"=\"\""},
           {"q\"\\%\xE4\n\r", 1, "C:\\\"d\"\t%\0"s,
            "\"q\\\"\\\\%\xE4\\n\\r\"=\"C:\\\\\\\"d\\\"\t%\""},
           // Texts that quotes can't give back byte for byte.
           {"a", REGISTRY_STRING, "", "\"a\"=hex(1):"},
           {"a", REGISTRY_STRING, "x", "\"a\"=hex(1):78"},
           {"a", REGISTRY_STRING, "x\0\0"s, "\"a\"=hex(1):78,00,00"},
           {"a", REGISTRY_STRING, "\r\n\0"s, "\"a\"=hex(1):0d,0a,00"},
           {"a", REGISTRY_DWORD, "\x2A\0\0\xFF"s, "\"a\"=dword:ff00002a"},
           {"a", REGISTRY_DWORD, "123", "\"a\"=hex(4):31,32,33"},
           {"a", REGISTRY_BINARY, "\x01\xFF", "\"a\"=hex:01,ff"},
           {"a", REGISTRY_NONE, "", "\"a\"=hex(0):"},
           {"a", REGISTRY_QWORD, "12345678", "\"a\"=hex(b):31,32,33,34,35,36,37,38"},
           {"a", 0xFFFFFFFF, "1", "\"a\"=hex(ffffffff):31"},
           {"a", REGISTRY_BINARY, "abcdefghijklmnopqrstuvwxyz",
            "\"a\"=hex:61,62,63,64,65,66,67,68,69,6a,6b,6c,6d,6e,6f,70,71,72,73,74,75,76,77,78,79,"
            "\\\r\n  7a"}}) {
    std::string text = "REGEDIT4\r\n[k]\r\n";
    AppendRegistryValue(name, type, data, text);
    EXPECT_EQ(text, "REGEDIT4\r\n[k]\r\n" + line + "\r\n");
    const Listing listing(text);
    EXPECT_FALSE(listing.damage.any()) << line;
    EXPECT_EQ(listing.found, "key k~" + name + "|" + std::to_string(type) + "|" + data + "~");
  }
}

TEST(RegistryText, KeysKeepBracketsBlanksAndLineEnds) {
  for (const std::string path :
       {"HKEY_CURRENT_USER", "H\\a]b[", "H\\ a ", "H\\\nn\\n\\a\r\n", "H\\;\"@="}) {
    std::string text = "REGEDIT4\r\n";
    AppendRegistryKey(path, text);
    const Listing listing(text);
    EXPECT_TRUE(listing.found == "key " + path + "~" && !listing.damage.any()) << text;
  }
}

TEST(RegistryText, WhatOthersWriteIsUnderstoodAndLinesWithoutSenseAreLeftOutAndCounted) {
  for (const auto& [lines, found] : test::Rows<std::string, std::string>{
           {"\n ; note\n[-H\\gone]\n", "comment  note~no key H\\gone~"},
           {"  \"a\" = \"x\" \n\"b\"=-\n", "a|1|x\0~no value b~"s},
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

}  // namespace
}  // namespace dq::platform
