#include "dqlib/frame/cleaner.h"

#include "gtest/gtest.h"

namespace dq {
namespace {

int g_deleted = 0;

class Counted : public CObject {
 public:
  ~Counted() override { ++g_deleted; }
};

TEST(Cleaners, DeleteWhatTheyHoldAtTheirEnd) {
  g_deleted = 0;
  {
    CDQObjCleaner empty;
    CDQGlobalResourceCleaner<Counted> empty_typed;
    CDQObjCleaner cleaner;
    CDQGlobalResourceCleaner<Counted> typed;
    cleaner.SetObject(new Counted);
    typed.SetObject(new Counted);
    EXPECT_EQ(g_deleted, 0);
  }
  EXPECT_EQ(g_deleted, 2);
}

TEST(Cleaners, ACopyDeletesTheSameObject) {
  g_deleted = 0;
  CDQObjCleaner original;
  original.SetObject(new Counted);
  {
    CDQObjCleaner copy(original);
    CDQObjCleaner assigned;
    assigned = copy;
    copy.SetObject(nullptr);
  }
  EXPECT_EQ(g_deleted, 1);
  original.SetObject(nullptr);
}

}  // namespace
}  // namespace dq
