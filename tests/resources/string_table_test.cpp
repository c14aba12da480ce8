#include "dqlib/resources/string_table.h"

#include "gtest/gtest.h"

namespace dq {
namespace {

TEST(StringTable, HasTheTextsOfOutputMessages) {
  constexpr StringRow kRows[] = {
      {44030, "Start Task: On %s"},
      {44031, "End Task: On %s"},
      {44500, "Out of memory, could not create CDQOutputMessage.\n"},
  };
  for (const auto& [id, text] : kRows) EXPECT_EQ(LibraryResources().String(id), text);
}

}  // namespace
}  // namespace dq
