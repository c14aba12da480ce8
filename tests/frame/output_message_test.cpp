#include "dqlib/frame/output_message.h"

#include "dqlib/framework/base/text.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/resources/string_ids.h"
#include "tests/support/failing_memory.h"
#include "tests/support/main_window.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

TEST(OutputMessageTraits, TellSourceAndKind) {
  std::string told;
  for (int type = -1; type < 9; ++type) {
    const OutputMessageTraits& traits = GetOutputMessageTraits(type);
    told += std::to_string(static_cast<int>(traits.kind)) +
            std::string(detail::OrEmpty(traits.family)) + std::to_string(traits.source_id) + " ";
  }
  EXPECT_EQ(
      told,
      "0Program0 0Program0 1Program0 2Program0 0DBMS0 1DBMS0 2DBMS0 344030 444031 0Program0 ");
}

TEST(CDQOutputMessage, IsNullAndTracedWhenMemoryRunsOut) {
  std::string traced;
  traced.reserve(100);
  const TraceSink former = SetTraceSink([&](std::string_view text) { traced += text; });
  test::FailAllocation(1);
  EXPECT_EQ(CDQOutputMessage::CreateOutputMessage(OUTPUT_DBMS_INFO, "text", false), nullptr);
  EXPECT_TRUE(test::AllocationFailed());
  SetTraceSink(former);
  EXPECT_EQ(traced, "Out of memory, could not create CDQOutputMessage.\n");
}

TEST(CDQOutputMessage, IsWithTheMainWindowWhenTheSendReturns) {
  CDQOutputMessage alone(static_cast<OutputMessageType>(8), "old");
  EXPECT_EQ(alone.GetType(), OUTPUT_PROGRAM_INFO);
  alone.SendErrorMessage(static_cast<const char*>(nullptr), "table T");
  EXPECT_EQ(alone.GetText() + "|" + alone.GetTarget(), "|table T");
  alone.SetType(static_cast<OutputMessageType>(-1));
  EXPECT_EQ(alone.GetType(), OUTPUT_PROGRAM_INFO);
  using Send = void (*)(CDQOutputMessage&);
  constexpr UINT kId = IDS_UNKNOWN_OS_ERROR;
  for (const auto& [send, first, type, text, target] :
       test::Rows<Send, WPARAM, int, const char*, const char*>{
           {[](auto& m) { m.SendInfoMessage("hello"); }, 0, 0, "hello", "kept"},
           {[](auto& m) { m.SendInfoMessage(kId); }, 0, 0, "Unknown OS Error", "kept"},
           {[](auto& m) { m.SendErrorMessage("bad", ""); }, 1, 2, "bad", ""},
           {[](auto& m) { m.SendErrorMessage("bad", nullptr); }, 0, 2, "bad", "kept"},
           {[](auto& m) { m.SendErrorMessage(kId, "T"); }, 1, 2, "Unknown OS Error", "T"},
           {[](auto& m) { m.SendErrorMessage(m.GetTarget(), m.GetText()); }, 1, 2, "kept", "first"},
           {[](auto& m) { m.SendErrorMessage("of more bytes than before", m.GetText()); }, 1, 2,
            "of more bytes than before", "first"},
       }) {
    testing::MainWindow window;
    CDQOutputMessage message(OUTPUT_DBMS_ERROR, "old");
    message.SendErrorMessage("first", "kept");
    send(message);
    ASSERT_EQ(window.messages.size(), 2U) << text;
    const testing::SentMessage& sent = window.messages[1];
    EXPECT_EQ(&testing::MainWindow::Output(sent), &message) << text;
    EXPECT_EQ(std::tuple(sent.message, sent.first), std::tuple(33801U, first)) << text;
    EXPECT_EQ(message.GetType(), type) << text;
    EXPECT_EQ(message.GetText() + "|" + message.GetTarget(), CString(text) + "|" + target);
  }
}

TEST(CDQOutputMessage, FromAWorkerWaitsAndMayBeDeletedByItsReceiver) {
  testing::MainWindow window;
  std::atomic<bool> sent = false;
  window.on_message = [&](const testing::SentMessage& message) {
    EXPECT_FALSE(sent);
    CDQOutputMessage* const output = &testing::MainWindow::Output(message);
    EXPECT_EQ(output->GetText(), "from below");
    if (output->GetAutoDelete()) delete output;
  };
  WorkerThread worker = AfxBeginThread(
      [](void* parameter) {
        CDQOutputMessage::CreateOutputMessage(OUTPUT_PROGRAM_INFO, nullptr, true)
            ->SendErrorMessage("from below", "T");
        *static_cast<std::atomic<bool>*>(parameter) = true;
        return 0U;
      },
      &sent);
  while (PumpSentMessages() == 0) std::this_thread::yield();
  worker.Join();
  EXPECT_TRUE(sent);
}

}  // namespace
}  // namespace dq
