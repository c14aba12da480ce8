#include "dqlib/dqlib.h"

#include "gtest/gtest.h"

/// The header must serve alone, and the library attach itself in a program that names nothing of
/// its entry.
TEST(Dqlib, OneHeaderServesAHost) {
  const dq::CDQConsoleProgram program;
  dq::CString text;
  EXPECT_NE(text.LoadString(dq::IDS_UNKNOWN_OS_ERROR), 0);
  EXPECT_EQ(text, "Unknown OS Error");
}
