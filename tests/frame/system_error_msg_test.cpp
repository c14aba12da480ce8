#include "dqlib/frame/system_error_msg.h"

#include <sstream>

#include "gtest/gtest.h"
#include "tests/support/main_window.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/scripted_prompts.h"

namespace dq {
namespace {

using testing::ShownBox;

TEST(CDQSystemErrorMsg, ReadsTheLastErrorOnce) {
  testing::ScriptedPlatform platform;
  platform.errors.last = 2;
  platform.errors.texts = {{2, "two\r\n"}, {3, "three\r\n"}};
  CDQSystemErrorMsg message;
  EXPECT_EQ(message.GetErrorMessage(), "two\r\n");
  platform.errors.last = 3;
  EXPECT_EQ(message.GetErrorCode(), 2);
  EXPECT_EQ(CDQSystemErrorMsg("a.cpp", 7).GetErrorCode(), 3);
  message.SetErrorCode(4);
  EXPECT_EQ(message.GetErrorMessage(), "");
  EXPECT_EQ(RetrieveOSErrorMessage(2), "two\r\n");
  EXPECT_EQ(RetrieveOSErrorMessage(4), "Unknown OS Error");
}

TEST(CDQSystemErrorMsg, ShowsThePlaceOnlyIfThereIsOne) {
  testing::ScriptedPlatform platform;
  testing::ScriptedPrompts prompts;
  platform.errors.last = 2;
  platform.errors.texts = {{2, "100%s\r\n"}};
  const std::pair<CDQSystemErrorMsg, const char*> cases[] = {
      {CDQSystemErrorMsg("a%d.cpp", 7), "Error: 100%s\r\n\nFile: a%d.cpp,  Line 7"},
      {CDQSystemErrorMsg("a.cpp", -1), "100%s\r\n"},
      {CDQSystemErrorMsg("", 7), "100%s\r\n"},
      {CDQSystemErrorMsg(2), "100%s\r\n"},
      {CDQSystemErrorMsg(3), ""},
  };
  for (const auto& [message, text] : cases) {
    CDQSystemErrorMsg(message).Show();
    EXPECT_EQ(prompts.shown.back(), (ShownBox{text, 48, 0}));
  }
}

TEST(NetworkErrorHandler, ShowsWhatItCanFindOut) {
  using platform::ErrorKind;
  using platform::NetworkError;
  const std::string long_text(256, 'x');
  const std::string cut(255, 'x');
  for (const auto& [code, last, result, text] :
       test::Rows<DWORD, platform::Result<NetworkError>, int, std::string>{
           {5, NetworkError{9, "unused", "unused"}, 1, "Network error 5.\r\n"},
           {0xFFFFFFFF, {}, 1, "Network error -1.\r\n"},
           {1208, NetworkError{9, "no %s route", "Acme%d"}, 1,
            "Acme%d failed with error code9.\r\nno %s route"},
           {1208, NetworkError{0xFFFFFFFF, long_text, long_text}, 1,
            cut + " failed with error code-1.\r\n" + cut},
           {1208, platform::Error{ErrorKind::kNotFound, 61}, 0,
            "WNetGetLastError failed with error 61."},
       }) {
    testing::ScriptedPlatform platform;
    testing::ScriptedPrompts prompts;
    platform.network.last = last;
    EXPECT_EQ(NetworkErrorHandler(code), result) << text;
    EXPECT_EQ(prompts.shown, (std::vector<ShownBox>{{text, 16, 0}}));
  }
}

class BrokenRecord : public ErrorRecord {
 public:
  BrokenRecord() : ErrorRecord("") {}
  CString GetErrorDescription() const override { throw 7; }
};

TEST(DQDBErrorHandler, OpensThePaneBeforeEachLine) {
  testing::MainWindow window;
  std::ostringstream told;
  window.on_message = [&](const testing::SentMessage& sent) {
    told << sent.message << ' ' << sent.first << ' ';
    if (sent.message == 33818) {
      told << sent.second << ", ";
    } else {
      const CDQOutputMessage& line = testing::MainWindow::Output(sent);
      told << line.GetType() << ' ' << line.GetText().View() << '\n';
    }
  };
  Errors errors;
  for (const char* text : {"first", "100%s"}) errors.Add(std::make_unique<ErrorRecord>(text));
  DQLIB_DQDBErrorHandler(errors);
  EXPECT_EQ(told.str(), "33818 0 1, 33801 0 5 first\n33818 0 1, 33801 0 5 100%s\n");
}

TEST(DQDBErrorHandler, EndsSilentlyAndSurvivesALostMainWindow) {
  Errors errors;
  for (int i = 0; i < 3; ++i) errors.Add(std::make_unique<ErrorRecord>("text"));
  errors.Add(std::make_unique<BrokenRecord>());
  errors.Add(std::make_unique<ErrorRecord>("behind"));
  testing::MainWindow window;
  window.on_message = [&](const testing::SentMessage&) {
    window.DestroyWindow();
    window.app.m_pMainWnd = nullptr;
  };
  EXPECT_NO_THROW(DQLIB_DQDBErrorHandler(errors));
  EXPECT_EQ(window.messages.size(), 1U);
  ASSERT_TRUE(errors.MoreErrors());
  EXPECT_EQ(errors.GetNextError().GetErrorDescription(), "behind");
}

}  // namespace
}  // namespace dq
