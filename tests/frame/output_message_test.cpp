#include "dqlib/frame/output_message.h"

#include <atomic>
#include <thread>

#include "dqlib/framework/base/trace.h"
#include "dqlib/resources/string_ids.h"
#include "gtest/gtest.h"
#include "tests/support/failing_memory.h"
#include "tests/support/main_window.h"

namespace dq {
namespace {

TEST(CDQOutputMessage, TakesUnknownTypesAsProgramInformation) {
  for (int type : {-1, 8, 33801}) {
    CDQOutputMessage message(static_cast<OutputMessageType>(type));
    EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO) << type;
    message.SetType(OUTPUT_TASK_END);
    EXPECT_EQ(message.GetType(), OUTPUT_TASK_END);
    message.SetType(static_cast<OutputMessageType>(type));
    EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO) << type;
  }
}

TEST(CDQOutputMessage, WithoutAMainWindowJustSetsItsFields) {
  CDQOutputMessage message(OUTPUT_DBMS_WARNING, "old");
  message.SendErrorMessage("failed", "table T");
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_ERROR);
  EXPECT_EQ(message.GetText(), "failed");
  EXPECT_EQ(message.GetTarget(), "table T");
  message.SendInfoMessage(static_cast<const char*>(nullptr));
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO);
  EXPECT_EQ(message.GetText(), "");
}

TEST(CDQOutputMessage, IsWithTheMainWindowWhenTheSendReturns) {
  const struct {
    const char* name;
    std::function<void(CDQOutputMessage&)> send;
    WPARAM first;
    OutputMessageType type;
    const char* text;
    const char* target;
  } cases[] = {
      {"info", [](auto& m) { m.SendInfoMessage("hello"); }, 0, OUTPUT_PROGRAM_INFO, "hello",
       "kept"},
      {"info by id", [](auto& m) { m.SendInfoMessage(IDS_UNKNOWN_OS_ERROR); }, 0,
       OUTPUT_PROGRAM_INFO, "Unknown OS Error", "kept"},
      {"error", [](auto& m) { m.SendErrorMessage("bad", "T"); }, 1, OUTPUT_PROGRAM_ERROR, "bad",
       "T"},
      {"error with an empty target", [](auto& m) { m.SendErrorMessage("bad", ""); }, 1,
       OUTPUT_PROGRAM_ERROR, "bad", ""},
      {"error without a target", [](auto& m) { m.SendErrorMessage("bad", nullptr); }, 0,
       OUTPUT_PROGRAM_ERROR, "bad", "kept"},
      {"error by id", [](auto& m) { m.SendErrorMessage(IDS_UNKNOWN_OS_ERROR, "T"); }, 1,
       OUTPUT_PROGRAM_ERROR, "Unknown OS Error", "T"},
      {"error by unknown id", [](auto& m) { m.SendErrorMessage(1U, nullptr); }, 0,
       OUTPUT_PROGRAM_ERROR, "", "kept"},
      {"its own texts", [](auto& m) { m.SendErrorMessage(m.GetTarget(), m.GetTarget()); }, 1,
       OUTPUT_PROGRAM_ERROR, "kept", "kept"},
  };
  for (const auto& row : cases) {
    test::MainWindow window;
    CDQOutputMessage message(OUTPUT_DBMS_ERROR, "old");
    message.SendErrorMessage("first", "kept");
    row.send(message);
    ASSERT_EQ(window.messages.size(), 2U) << row.name;
    EXPECT_EQ(window.messages[1].message, 33801U) << row.name;
    EXPECT_EQ(window.messages[1].first, row.first) << row.name;
    EXPECT_EQ(&test::MainWindow::Output(window.messages[1]), &message) << row.name;
    EXPECT_EQ(message.GetType(), row.type) << row.name;
    EXPECT_EQ(message.GetText(), row.text) << row.name;
    EXPECT_EQ(message.GetTarget(), row.target) << row.name;
  }
}

TEST(CDQOutputMessage, MayBeDeletedByItsReceiver) {
  test::MainWindow window;
  window.on_message = [](const test::SentMessage& sent) {
    CDQOutputMessage* const message = &test::MainWindow::Output(sent);
    if (message->GetAutoDelete()) delete message;
  };
  CDQOutputMessage* const message =
      CDQOutputMessage::CreateOutputMessage(OUTPUT_PROGRAM_INFO, nullptr, true);
  message->SendErrorMessage("gone", "T");
  EXPECT_EQ(window.messages.size(), 1U);
}

TEST(CDQOutputMessage, FromAWorkerWaitsForTheMainWindow) {
  test::MainWindow window;
  std::atomic<bool> sent = false;
  window.on_message = [&](const test::SentMessage& message) {
    EXPECT_FALSE(sent);
    EXPECT_EQ(test::MainWindow::Output(message).GetText(), "from below");
  };
  WorkerThread worker = AfxBeginThread(
      [](void* parameter) {
        CDQOutputMessage().SendInfoMessage("from below");
        *static_cast<std::atomic<bool>*>(parameter) = true;
        return 0U;
      },
      &sent);
  while (PumpSentMessages() == 0) std::this_thread::yield();
  worker.Join();
  EXPECT_TRUE(sent);
  EXPECT_EQ(window.messages.size(), 1U);
}

TEST(CDQOutputMessage, TracesThatMemoryRanOut) {
  char traced[100] = {};
  TraceSink former = SetTraceSink([&](std::string_view text) { text.copy(traced, 99); });
  const CDQOutputMessage* message = nullptr;
  {
    const test::FailingMemory failing;
    message = CDQOutputMessage::CreateOutputMessage(OUTPUT_PROGRAM_INFO, "text", false);
  }
  SetTraceSink(std::move(former));
  EXPECT_EQ(message, nullptr);
  EXPECT_STREQ(traced, "Out of memory, could not create CDQOutputMessage.\n");
}

}  // namespace
}  // namespace dq
