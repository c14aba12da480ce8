#include "dqlib/core/clipboard_writer.h"

#include "dqlib/framework/windows/wnd.h"
#include "tests/support/own_service.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

struct ScriptedClipboard : platform::Clipboard {
  platform::Error Set(UINT data_format, std::string_view bytes) override {
    if (refusal.ok()) {
      format = data_format;
      data = bytes;
    }
    return refusal;
  }
  std::optional<std::string> Get(UINT) override { return data; }
  platform::Error refusal;
  UINT format = 0;
  std::string data;
};

struct CountingWriter : CDQClipboardWriter {
  using CDQClipboardWriter::CDQClipboardWriter;
  void OnFailedToOpenClipBoard() override { failures += GetOwner() == nullptr ? 100 : 1; }
  int failures = 0;
};

TEST(ClipboardWriter, PostsAllThatWasWrittenAndKeepsWhatWasRefused) {
  ScriptedClipboard clipboard;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::clipboard, &clipboard));
  CWnd owner;
  CountingWriter writer(&owner, 49'161);
  for (const char* const text : {"one,", static_cast<const char*>(nullptr), "two"}) {
    writer.Write(text);
  }
  clipboard.refusal.kind = platform::ErrorKind::kBusy;
  EXPECT_FALSE(writer.PostData());
  clipboard.refusal = {};
  EXPECT_TRUE(writer.PostData());
  EXPECT_EQ(clipboard.data, std::string("one,two\0", 8));
  EXPECT_EQ(clipboard.format, 49'161U);
  EXPECT_TRUE(writer.PostData());
  EXPECT_EQ(clipboard.data, std::string(1, '\0'));
  EXPECT_EQ(writer.failures, 1);
}

TEST(ClipboardWriter, TheProcessesOwnClipboardHoldsOneFormat) {
  platform::Clipboard& clipboard = *platform::System().clipboard;
  EXPECT_TRUE(clipboard.Set(CLIPBOARD_TEXT, "text").ok());
  EXPECT_EQ(clipboard.Get(CLIPBOARD_TEXT), "text");
  EXPECT_TRUE(clipboard.Set(77, "").ok());
  EXPECT_EQ(clipboard.Get(CLIPBOARD_TEXT), std::nullopt);
  EXPECT_EQ(clipboard.Get(77), "");
}

}  // namespace
}  // namespace dq
