#include "siblings/dberrors/errors.h"

#include "gtest/gtest.h"

namespace dq {
namespace {

TEST(Errors, AreTakenInOrderAndStayValid) {
  Errors errors;
  EXPECT_FALSE(errors.MoreErrors());
  errors.Add(std::make_unique<ErrorRecord>("first", 102, 7));
  errors.Add(nullptr);
  ASSERT_TRUE(errors.MoreErrors());
  const ErrorRecord& first = errors.GetNextError();
  EXPECT_FALSE(errors.MoreErrors());
  errors.Add(std::make_unique<ErrorRecord>("second"));
  ASSERT_TRUE(errors.MoreErrors());
  EXPECT_EQ(errors.GetNextError().GetErrorDescription(), "second");
  EXPECT_FALSE(errors.MoreErrors());
  EXPECT_EQ(first.GetErrorDescription(), "first");
  EXPECT_EQ(first.GetErrorCode(), 102);
  EXPECT_EQ(first.GetErrorLine(), 7);
}

}  // namespace
}  // namespace dq
