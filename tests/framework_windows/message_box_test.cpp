#include "dqlib/framework/windows/message_box.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"
#include "tests/support/scripted_prompts.h"

namespace dq {
namespace {

using ::testing::ElementsAre;
using testing::ScriptedPrompts;
using testing::ShownBox;

constexpr UINT kId = 50100;

TEST(MessageBox, ShowsATextOrTheStringOfAnIdWhichIsItsOwnHelpTopic) {
  ResourceModule module;
  module.AddString(kId, "100% done");
  const CDynLinkLibrary link(&module);
  ScriptedPrompts prompts = {BUTTON_NO};
  EXPECT_EQ(AfxMessageBox("Go on?", BOX_YES_NO | BOX_QUESTION, 77), BUTTON_NO);
  EXPECT_EQ(AfxMessageBox(static_cast<const char*>(nullptr)), BUTTON_OK);
  AfxMessageBox(kId, BOX_STOP);
  AfxMessageBox(kId, BOX_OK, 0);
  AfxMessageBox(kId + 1, BOX_OK, kNoHelp);
  EXPECT_THAT(prompts.shown,
              ElementsAre(ShownBox{"Go on?", BOX_YES_NO | BOX_QUESTION, 77}, ShownBox{"", 0, 0},
                          ShownBox{"100% done", BOX_STOP, kId}, ShownBox{"100% done", BOX_OK, 0},
                          ShownBox{"", BOX_OK, kId + 1}));
}

}  // namespace
}  // namespace dq
