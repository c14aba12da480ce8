#include "dqlib/frame/system_error_msg.h"

#include "gtest/gtest.h"
#include "tests/support/main_window.h"
#include "tests/support/scripted_platform.h"

namespace dq {
namespace {

using test::Box;

TEST(CDQSystemErrorMsg, ReadsTheLastErrorOnce) {
  test::ScriptedPlatform platform;
  platform.errors.last = 2;
  platform.errors.texts = {{2, "two\r\n"}, {3, "three\r\n"}};
  CDQSystemErrorMsg message;
  EXPECT_EQ(message.GetErrorMessage(), "two\r\n");
  platform.errors.last = 3;
  EXPECT_EQ(message.GetErrorCode(), 2);
  EXPECT_EQ(CDQSystemErrorMsg("a.cpp", 7).GetErrorCode(), 3);
  EXPECT_EQ(CDQSystemErrorMsg(0).GetErrorCode(), 0);
  message.SetErrorCode(4);
  EXPECT_EQ(message.GetErrorMessage(), "");
}

TEST(CDQSystemErrorMsg, ShowsThePlaceOnlyIfThereIsOne) {
  test::ScriptedPlatform platform;
  platform.errors.last = 2;
  platform.errors.texts = {{2, "100%s\r\n"}};
  const std::pair<CDQSystemErrorMsg, const char*> cases[] = {
      {CDQSystemErrorMsg("a%d.cpp", 7), "Error: 100%s\r\n\nFile: a%d.cpp,  Line 7"},
      {CDQSystemErrorMsg("a.cpp", 0), "Error: 100%s\r\n\nFile: a.cpp,  Line 0"},
      {CDQSystemErrorMsg("a.cpp", -1), "100%s\r\n"},
      {CDQSystemErrorMsg("", 7), "100%s\r\n"},
      {CDQSystemErrorMsg(nullptr, 7), "100%s\r\n"},
      {CDQSystemErrorMsg(2), "100%s\r\n"},
      {CDQSystemErrorMsg(3), ""},
  };
  for (const auto& [message, text] : cases) {
    CDQSystemErrorMsg(message).Show();
    EXPECT_EQ(platform.prompts.boxes.back(), (Box{text, 48, 0}));
  }
}

TEST(RetrieveOSErrorMessage, HasATextForEveryCode) {
  test::ScriptedPlatform platform;
  platform.errors.texts = {{2, "two\r\n"}, {0xFFFFFFFF, "all ones\r\n"}};
  EXPECT_EQ(RetrieveOSErrorMessage(2), "two\r\n");
  EXPECT_EQ(RetrieveOSErrorMessage(0xFFFFFFFF), "all ones\r\n");
  EXPECT_EQ(RetrieveOSErrorMessage(3), "Unknown OS Error");
}

TEST(NetworkErrorHandler, ShowsWhatItCanFindOut) {
  using platform::ErrorKind;
  using platform::NetworkError;
  const std::string long_text(300, 'x');
  const std::string cut(255, 'x');
  const struct {
    DWORD code;
    platform::Result<NetworkError> last;
    int result;
    std::string text;
  } cases[] = {
      {5, NetworkError{9, "unused", "unused"}, 1, "Network error 5.\r\n"},
      {0xFFFFFFFF, {}, 1, "Network error -1.\r\n"},
      {1208, NetworkError{9, "no %s route", "Acme%d"}, 1,
       "Acme%d failed with error code9.\r\nno %s route"},
      {1208, NetworkError{0xFFFFFFFF, long_text, long_text}, 1,
       cut + " failed with error code-1.\r\n" + cut},
      {1208, NetworkError{}, 1, " failed with error code0.\r\n"},
      {1208, platform::Error{ErrorKind::kNotFound, 61}, 0,
       "WNetGetLastError failed with error 61."},
  };
  for (const auto& row : cases) {
    test::ScriptedPlatform platform;
    platform.network.last = row.last;
    EXPECT_EQ(NetworkErrorHandler(row.code), row.result) << row.text;
    EXPECT_EQ(platform.prompts.boxes, (std::vector<Box>{{row.text, 16, 0}}));
  }
}

class BrokenRecord : public ErrorRecord {
 public:
  BrokenRecord() : ErrorRecord("") {}
  CString GetErrorDescription() const override { throw 7; }
};

TEST(DQDBErrorHandler, OpensThePaneBeforeEachLine) {
  test::MainWindow window;
  std::vector<std::string> lines;
  window.on_message = [&](const test::SentMessage& sent) {
    EXPECT_EQ(sent.first, 0U);
    if (sent.message == DQM_SHOW_OUTPUT_PANE) {
      EXPECT_EQ(sent.second, 1);
      lines.emplace_back("(open)");
      return;
    }
    const CDQOutputMessage& message = test::MainWindow::Output(sent);
    EXPECT_EQ(sent.message, 33801U);
    EXPECT_EQ(message.GetType(), 5);
    EXPECT_FALSE(message.GetAutoDelete());
    lines.emplace_back(message.GetText());
  };
  Errors errors;
  for (const char* text : {"first", "100%s"}) errors.Add(std::make_unique<ErrorRecord>(text));
  DQLIB_DQDBErrorHandler(errors);
  EXPECT_EQ(lines, (std::vector<std::string>{"(open)", "first", "(open)", "100%s"}));
  EXPECT_FALSE(errors.MoreErrors());
}

TEST(DQDBErrorHandler, EndsSilentlyAtAnException) {
  test::MainWindow window;
  Errors errors;
  errors.Add(std::make_unique<BrokenRecord>());
  errors.Add(std::make_unique<ErrorRecord>("second"));
  EXPECT_NO_THROW(DQLIB_DQDBErrorHandler(errors));
  EXPECT_TRUE(window.messages.empty());
  EXPECT_TRUE(errors.MoreErrors());
}

TEST(DQDBErrorHandler, SurvivesALostMainWindow) {
  Errors errors;
  for (int i = 0; i < 3; ++i) errors.Add(std::make_unique<ErrorRecord>("text"));
  test::MainWindow window;
  window.on_message = [&](const test::SentMessage&) {
    window.DestroyWindow();
    window.app.m_pMainWnd = nullptr;
  };
  DQLIB_DQDBErrorHandler(errors);
  EXPECT_EQ(window.messages.size(), 1U);
  EXPECT_FALSE(errors.MoreErrors());
}

}  // namespace
}  // namespace dq
