#include "dqlib/framework/windows/win_app.h"

#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "dqlib/framework/base/registry_key.h"
#include "tests/support/own_settings.h"
#include "tests/support/registry_dump.h"

namespace dq {
namespace {

using test::own_settings;

/// The profile in the registry (true) or, without a registry key, in a profile file.
class Profile : public testing::TestWithParam<bool> {
 protected:
  Profile() {
    if (GetParam()) app.SetRegistryKey("Velmora");
  }
  ~Profile() override {
    DeleteRegistryTree(kCurrentUser, "Software\\Velmora");
    std::filesystem::remove(own_settings.directory / "velmora/tool.ini");
  }

  std::vector<BYTE> Binary(const char* section, const char* entry) {
    BYTE* data = nullptr;
    UINT size = 1;
    const BOOL found = app.GetProfileBinary(section, entry, &data, &size);
    const std::unique_ptr<BYTE[]> owner(data);
    EXPECT_EQ(found != 0, data != nullptr);
    return {data, data + size};
  }

  CWinApp app{"tool"};
};
INSTANTIATE_TEST_SUITE_P(Stores, Profile, testing::Bool());

TEST_P(Profile, ValuesComeBackAndAbsentOnesGiveTheFallback) {
  EXPECT_EQ(app.GetProfileInt("s", "n", -7), static_cast<UINT>(-7));
  EXPECT_EQ(app.GetProfileString("s", "n", "none"), "none");
  EXPECT_EQ(app.GetProfileString("s", "n"), "");
  for (const int number : {0, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_TRUE(app.WriteProfileInt("s", "n", number));
    EXPECT_EQ(app.GetProfileInt("S", "N", 5), static_cast<UINT>(number));
  }
  EXPECT_TRUE(app.WriteProfileString("Search\\Find What", "Find0", "a=b \xC3\xA4"));
  EXPECT_EQ(app.GetProfileString("Search\\Find What", "Find0"), "a=b \xC3\xA4");
  for (const std::vector<BYTE>& bytes :
       {std::vector<BYTE>{}, std::vector<BYTE>{0, 0x1F, 0xFF}, std::vector<BYTE>(7681, 0xA5)}) {
    EXPECT_TRUE(app.WriteProfileBinary("s", "b", bytes.data(), static_cast<UINT>(bytes.size())));
    EXPECT_EQ(Binary("s", "b"), bytes);
  }
  EXPECT_EQ(Binary("s", "missing"), std::vector<BYTE>{});
}

TEST_P(Profile, NullsDeleteAnEntryOrASectionAndNeverAllOfIt) {
  for (const char* section : {"a", "b"}) {
    for (const char* entry : {"x", "y"}) app.WriteProfileString(section, entry, "2");
  }
  app.WriteProfileString("a\\deep", "z", "3");
  for (int twice = 0; twice < 2; ++twice) EXPECT_TRUE(app.WriteProfileString("a", "x", nullptr));
  EXPECT_EQ(app.GetProfileString("a", "x", "gone") + app.GetProfileString("a", "y"), "gone2");
  for (int twice = 0; twice < 2; ++twice) {
    EXPECT_TRUE(app.WriteProfileString("a", nullptr, nullptr));
  }
  EXPECT_EQ(app.GetProfileString("a", "y", "gone"), "gone");
  // In the registry a section nests; in a file its name is only a name.
  EXPECT_EQ(app.GetProfileString("a\\deep", "z", "gone"), GetParam() ? "gone" : "3");
  for (const char* nothing : {static_cast<const char*>(nullptr), "", "\\"}) {
    EXPECT_FALSE(app.WriteProfileString(nothing, nullptr, nullptr));
  }
  EXPECT_EQ(app.GetProfileString("b", "y"), "2");
}

TEST(ProfileInRegistry, StandsUnderTheApplicationsKeyInTheKindsThatCallersKnow) {
  CWinApp app("tool");
  app.SetRegistryKey("Velmora");
  EXPECT_EQ(AppRegistryRoot(), "Software\\Velmora\\tool\\");
  app.WriteProfileInt("s", "n", -2);
  app.WriteProfileString("s", "t", "x");
  app.WriteProfileBinary("s", "b", reinterpret_cast<const BYTE*>("y"), 1);
  platform::Registry& registry = *platform::Current().registry;
  const HKEY key = registry.OpenKey(kCurrentUser, (AppRegistryRoot() + "s").View()).value;
  const test::RegistryDump expected = {{"",
                                        {{"n", {REGISTRY_DWORD, "\xFE\xFF\xFF\xFF"}},
                                         {"t", {REGISTRY_STRING, std::string("x\0", 2)}},
                                         {"b", {REGISTRY_BINARY, "y"}}}}};
  EXPECT_EQ(test::Dump(registry, key), expected);
  registry.CloseKey(key);
  EXPECT_EQ(app.GetProfileInt("s", "t", 3), 3u) << "a value of another kind isn't there";
  EXPECT_EQ(app.GetProfileString("s", "n", "none"), "none");
  EXPECT_EQ(own_settings.directory.Mode("velmora/registry/hkcu.journal"), 0600u);
  DeleteRegistryTree(kCurrentUser, "Software\\Velmora");
}

TEST(ProfileInFile, TextsThatArentNumbersOrBytes) {
  std::filesystem::create_directory(own_settings.directory / "velmora");
  own_settings.directory.Put("velmora/tool.ini",
                             "[s]\r\nn= -12x\r\nm=x\r\nw=4294967297\r\nb=A\r\nc=Az\r\n");
  CWinApp app("tool");
  EXPECT_EQ(app.GetProfileInt("s", "n", 5), static_cast<UINT>(-12));
  EXPECT_EQ(app.GetProfileInt("s", "m", 5), 0u);
  EXPECT_EQ(app.GetProfileInt("s", "w", 5), 1u);
  BYTE* data = nullptr;
  UINT size = 1;
  for (const char* entry : {"b", "c"}) {
    EXPECT_FALSE(app.GetProfileBinary("s", entry, &data, &size));
  }
  EXPECT_EQ(size, 0u);
  std::filesystem::remove(own_settings.directory / "velmora/tool.ini");
}

}  // namespace
}  // namespace dq
