
#include "dqlib/framework/windows/win_app.h"
#include "siblings/options/options_server.h"
#include "tests/support/forked_process.h"
#include "tests/support/own_settings.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

constexpr int kOption = 50270;

TEST(OptionReading, ANumberIsNeverOlderThanTheLastChangeOfAnyProcess) {
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
  for (int round = 0; round < 2; ++round) {
    for (const bool value : {true, false}) {
      EXPECT_TRUE(server.SetBool(kOption, value));
      EXPECT_EQ(server.GetBool(kOption), value);
      test::ForkedProcess other([&] {
        if (!server.SetBool(kOption, !value) || server.GetBool(kOption) == value) std::_Exit(1);
      });
      ASSERT_TRUE(other.EndsWell());
      EXPECT_EQ(server.GetBool(kOption), !value);
    }
  }
  ASSERT_TRUE(server.SetBool(kOption, true));
  const CWinApp another("Another Tool");
  EXPECT_FALSE(server.GetBool(kOption)) << "another application has options of its own";
}

TEST(OptionReading, AHeldValueHoldsUntilOneIsKept) {
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
  ASSERT_TRUE(server.SetBool(kOption, false));
  EXPECT_TRUE(server.HoldValue(kOption, "1"));
  EXPECT_TRUE(server.GetBool(kOption));
  EXPECT_FALSE(CDQOptionsServer().GetBool(kOption)) << "it was kept";
  EXPECT_FALSE(server.HoldValue(kOption, "x") || server.HoldValue(1, "1"));
  EXPECT_TRUE(server.SetBool(kOption, false));
  EXPECT_FALSE(server.GetBool(kOption));
}

}  // namespace
}  // namespace dq
