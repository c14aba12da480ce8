#include "dqlib/frame/resource_manager.h"

#include "dqlib/frame/cleaner.h"
#include "dqlib/frame/gdi_dispenser.h"
#include "dqlib/platform/checksum.h"
#include "siblings/pictures/pictures.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

/// The ids of the pictures that an operation gives for the indices 0 to `count` - 1, each followed
/// by a blank.
template <typename Get>
std::string PictureIds(int count, Get get) {
  std::map<const CBitmap*, UINT> ids;
  for (UINT id = 3000; id <= 3222; ++id) {
    ids[CGDIDispenser::g_.GetResourceBitmap(id, DQRESOURCES_GetInstanceHandle())] = id;
  }
  std::string list;
  for (int index = 0; index < count; ++index) list += std::to_string(ids[get(index)]) + ' ';
  return list;
}

TEST(CDQResourceManager, HasTheFamilysPicturesAndFonts) {
  CDQResourceManager* const manager = CDQResourceManager::GetInstance();
  const std::string pictures = PictureIds(134, [&](int i) { return manager->GetBitmap(i); });
  const std::string alerts = PictureIds(5, [&](int i) { return manager->GetAlertBitmap(i); });
  EXPECT_EQ(alerts, "3075 3001 3010 3011 3099 ");
  EXPECT_EQ(platform::Checksum(pictures + alerts), 0x79B1E734U) << pictures;
  EXPECT_EQ(manager->GetFont(0), CGDIDispenser::g_.GetDefaultFont(FONT_BOLD));
  EXPECT_EQ(manager->GetFont(1), CGDIDispenser::g_.GetDefaultFont(FONT_UNDERLINE));
}

TEST(CDQResourceManager, MapsObjectTypesToPictures) {
  CDQResourceManager* const manager = CDQResourceManager::GetInstance();
  EXPECT_EQ(manager->GetObjectBitmap(88), manager->GetBitmap(132));
  std::string indices;
  for (int type = -1; type < 100; ++type) {
    indices += std::to_string(manager->GetObjectBitmapIndex(type)) + ' ';
  }
  EXPECT_EQ(platform::Checksum(indices), 0xE7308C1EU) << indices;
}

TEST(Cleaners, DeleteTheirObjectAndSoDoCopies) {
  struct Counted : CObject {
    explicit Counted(int& deleted) : deleted_(deleted) {}
    ~Counted() override { ++deleted_; }
    int& deleted_;
  };
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
