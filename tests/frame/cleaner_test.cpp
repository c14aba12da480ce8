#include "dqlib/frame/cleaner.h"

#include "gtest/gtest.h"

namespace dq {
namespace {

struct Counted : CObject {
  explicit Counted(int& deleted) : deleted_(deleted) {}
  ~Counted() override { ++deleted_; }
  int& deleted_;
};

TEST(Cleaners, DeleteTheirObjectAndSoDoCopies) {
  int deleted = 0;
  CDQObjCleaner original;
  original.SetObject(new Counted(deleted));
  {
    CDQObjCleaner copy(original);
    CDQObjCleaner assigned;
    original.SetObject(new Counted(deleted));
    assigned = original;
    CDQGlobalResourceCleaner<Counted> typed;
    typed.SetObject(new Counted(deleted));
    original.SetObject(nullptr);
    EXPECT_EQ(deleted, 0);
  }
  EXPECT_EQ(deleted, 3);
}

}  // namespace
}  // namespace dq
