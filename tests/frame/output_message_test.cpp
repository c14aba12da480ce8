#include "dqlib/frame/output_message.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>
#include <utility>

#include "dqlib/framework/base/text.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/resources/string_ids.h"
#include "gtest/gtest.h"
#include "tests/support/main_window.h"
#include "tests/support/rows.h"

namespace {

/// The next allocation of the thread fails, once.
thread_local bool t_fails_next_new = false;

}  // namespace

// Not inlined, lest the compiler takes one without the other for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (!std::exchange(t_fails_next_new, false)) {
    if (void* const memory = std::malloc(std::max<std::size_t>(size, 1))) return memory;
  }
  throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace dq {
namespace {

TEST(OutputMessageTraits, TellSourceAndKind) {
  using enum OutputMessageKind;
  for (const auto& [type, kind, family, id] :
       test::Rows<int, OutputMessageKind, std::string_view, UINT>{
           {2, kError, "Program", 0},
           {4, kWarning, "DBMS", 0},
           {7, kTaskEnd, "", 44031},
           {-1, kInformation, "Program", 0},
           {8, kInformation, "Program", 0},
       }) {
    const OutputMessageTraits& traits = GetOutputMessageTraits(type);
    EXPECT_TRUE(traits.kind == kind && traits.source_id == id) << type;
    EXPECT_EQ(detail::OrEmpty(traits.family), family) << type;
  }
}

TEST(CDQOutputMessage, IsNullAndTracedWhenMemoryRunsOut) {
  std::string traced;
  traced.reserve(100);
  const TraceSink former = SetTraceSink([&](std::string_view text) { traced += text; });
  t_fails_next_new = true;
  EXPECT_EQ(CDQOutputMessage::CreateOutputMessage(OUTPUT_DBMS_INFO, "text", false), nullptr);
  SetTraceSink(former);
  EXPECT_FALSE(t_fails_next_new);
  EXPECT_EQ(traced, "Out of memory, could not create CDQOutputMessage.\n");
}

TEST(CDQOutputMessage, WithoutAMainWindowJustSetsItsFields) {
  CDQOutputMessage message(static_cast<OutputMessageType>(8), "old");
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO);
  message.SetType(static_cast<OutputMessageType>(-1));
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO);
  message.SendErrorMessage(static_cast<const char*>(nullptr), "table T");
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_ERROR);
  EXPECT_EQ(message.GetText(), "");
  EXPECT_EQ(message.GetTarget(), "table T");
}

TEST(CDQOutputMessage, IsWithTheMainWindowWhenTheSendReturns) {
  using Send = void (*)(CDQOutputMessage&);
  constexpr UINT kId = IDS_UNKNOWN_OS_ERROR;
  for (const auto& [send, first, type, text, target] :
       test::Rows<Send, WPARAM, int, const char*, const char*>{
           {[](auto& m) { m.SendInfoMessage("hello"); }, 0, 0, "hello", "kept"},
           {[](auto& m) { m.SendInfoMessage(kId); }, 0, 0, "Unknown OS Error", "kept"},
           {[](auto& m) { m.SendErrorMessage("bad", ""); }, 1, 2, "bad", ""},
           {[](auto& m) { m.SendErrorMessage("bad", nullptr); }, 0, 2, "bad", "kept"},
           {[](auto& m) { m.SendErrorMessage(kId, "T"); }, 1, 2, "Unknown OS Error", "T"},
           {[](auto& m) { m.SendErrorMessage(m.GetTarget(), m.GetTarget()); }, 1, 2, "kept",
            "kept"},
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
