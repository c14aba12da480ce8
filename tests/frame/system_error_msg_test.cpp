#include "dqlib/frame/system_error_msg.h"

#include "tests/support/main_window.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using testing::ShownBox;

TEST(CDQSystemErrorMsg, ReadsTheLastErrorOnceAndShowsThePlaceIfThereIsOne) {
  testing::ScriptedPlatform platform;
  testing::ScriptedPrompts prompts;
  platform.errors.last = 2;
  platform.errors.texts = {{2, "100%s\r\n"}, {3, "three\r\n"}};
  CDQSystemErrorMsg message;
  EXPECT_EQ(message.GetErrorMessage(), "100%s\r\n");
  platform.errors.last = 3;
  EXPECT_EQ(message.GetErrorCode(), 2);
  message.SetErrorCode(4);
  EXPECT_EQ(message.GetErrorMessage(), "");
  EXPECT_EQ(RetrieveOSErrorMessage(2), "100%s\r\n");
  EXPECT_EQ(RetrieveOSErrorMessage(4), "Unknown OS Error");
  platform.errors.last = 2;
  const std::pair<CDQSystemErrorMsg, const char*> cases[] = {
      {CDQSystemErrorMsg("a%d.cpp", 7), "Error: 100%s\r\n\nFile: a%d.cpp,  Line 7"},
      {CDQSystemErrorMsg("a.cpp", -1), "100%s\r\n"},
      {CDQSystemErrorMsg("", 7), "100%s\r\n"},
      {CDQSystemErrorMsg(3), "three\r\n"},
      {CDQSystemErrorMsg(4), ""},
  };
  for (const auto& [shown, text] : cases) {
    CDQSystemErrorMsg(shown).Show();
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

TEST(DQDBErrorHandler, OpensThePaneBeforeEachLineAndEndsSilently) {
  struct BrokenRecord : ErrorRecord {
    BrokenRecord() : ErrorRecord("") {}
    CString GetErrorDescription() const override { throw 7; }
  };
  Errors errors;
  for (const char* text : {"first", "100%s", "unseen"}) {
    errors.Add(std::make_unique<ErrorRecord>(text));
  }
  errors.Add(std::make_unique<BrokenRecord>());
  errors.Add(std::make_unique<ErrorRecord>("behind"));
  testing::MainWindow window;
  std::ostringstream told;
  window.on_message = [&](const testing::SentMessage& sent) {
    told << sent.message << ' ' << sent.first << ' ';
    if (sent.message == 33818) {
      told << sent.second << ", ";
      return;
    }
    const CDQOutputMessage& line = testing::MainWindow::Output(sent);
    told << line.GetType() << ' ' << line.GetText().View() << '\n';
    if (line.GetText() == "first") return;
    window.DestroyWindow();
    window.app.m_pMainWnd = nullptr;
  };
  EXPECT_NO_THROW(DQLIB_DQDBErrorHandler(errors));
  EXPECT_EQ(told.str(), "33818 0 1, 33801 0 5 first\n33818 0 1, 33801 0 5 100%s\n");
  ASSERT_TRUE(errors.MoreErrors());
  EXPECT_EQ(errors.GetNextError().GetErrorDescription(), "behind");
}

}  // namespace
}  // namespace dq
