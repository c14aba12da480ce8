#include "dqlib/framework/windows/dialog_template.h"

#include <gtest/gtest.h>

namespace dq {
namespace {

TEST(DialogTemplate, TextGivesControlsAndABrokenOneNamesItsLine) {
  const auto dialog = ReadDialogTemplate(
      "caption \"A \\\"b\\\"\"\r\nsize 260 120\r\n# c\r\n\r\n"
      "edit 2757 \"x\\n\" 72 -8 120 14 limit=30 hidden\r\nclass \"Tree\" -1 \"\" 0 0 1 2\r\n");
  ASSERT_TRUE(dialog);
  EXPECT_EQ(dialog->caption, "A \"b\"");
  EXPECT_EQ(dialog->size, (CSize{260, 120}));
  ASSERT_EQ(dialog->controls.size(), 2U);
  const ControlTemplate& edit = dialog->controls[0];
  EXPECT_EQ(edit.window_class + edit.text + edit.word, "Editx\nedit");
  EXPECT_EQ(edit.place, (CRect{72, -8, 192, 6}));
  EXPECT_TRUE(edit.Has("hidden") && !edit.Has("limit"));
  EXPECT_EQ(edit.Number("limit", 0), 30);
  EXPECT_EQ(edit.Number("lim", 7), 7);
  EXPECT_EQ(dialog->controls[1].window_class, "Tree");

  for (const char* line :
       {"caption \"a\"", "size 1", "size 1 -1", "size 1 2", "tree 1 \"\" 0 0 0 0",
        "edit 1 \"\" 0 0 0", "edit 1 x 0 0 0 0", "edit 65536 \"\" 0 0 0 0",
        "edit 1 \"\" 0 0 0 40000", "edit 1 \"\" 0 0 0 0 limit=x", "edit 1 \"\" 0 0 0 0 shiny",
        "class \"\" 1 \"\" 0 0 0 0", "edit 1 \"\x01\" 0 0 0 0", "\"edit\" 1"}) {
    std::string error;
    EXPECT_FALSE(ReadDialogTemplate("caption \"\"\nsize 1 1\n" + std::string(line), &error))
        << line;
    EXPECT_TRUE(error.starts_with("line 3: ")) << error;
  }
  EXPECT_FALSE(ReadDialogTemplate("caption \"no size\"\n"));
}

}  // namespace
}  // namespace dq
