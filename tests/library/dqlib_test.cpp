#include "dqlib/dqlib.h"

#include "gtest/gtest.h"

namespace {

/// The header must serve alone, and the library attach itself in a program that names nothing of
/// its entry.
TEST(Dqlib, OneHeaderServesAHost) {
  const dq::CDQString line("name=value");
  const dq::CDQConsoleProgram program;
  dq::CWnd window;
  EXPECT_EQ(line.GetField("=", 1), "value");
  dq::CString text;
  EXPECT_NE(text.LoadString(dq::IDS_UNKNOWN_OS_ERROR), 0);
  EXPECT_EQ(text, "Unknown OS Error");
  EXPECT_EQ(window.GetSafeHwnd(), nullptr);
  EXPECT_NE(dq::platform::Current().clock, nullptr);
}

}  // namespace
