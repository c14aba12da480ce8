#include "dqlib/core/guid.h"

#include <gtest/gtest.h>

namespace dq {
namespace {

TEST(Guid, ShowsItsForms) {
  const CDQGuid guid("0012abCD-0234-F678-9abc-def01234567f");
  EXPECT_STREQ(guid.GetODLString(), "0012ABCD-0234-F678-9ABC-DEF01234567F");
  EXPECT_STREQ(guid.GetStructString(),
               "0X0012ABCD, 0X0234, 0XF678, 0X9A, 0XBC, 0XDE, 0XF0, 0X12, 0X34, 0X56, 0X7F");
  EXPECT_STREQ(guid.GetRegistryString(), "{0012ABCD-0234-F678-9ABC-DEF01234567F}");
  EXPECT_STREQ(guid, guid.GetRegistryString());
  EXPECT_EQ(guid.GetGUID(),
            (GUID{0x12ABCD, 0x234, 0xF678, {0x9A, 0xBC, 0xDE, 0xF0, 0x12, 0x34, 0x56, 0x7F}}));
  EXPECT_STREQ(CDQGuid(guid.GetGUID()), guid);
  EXPECT_TRUE(CDQGuid(guid.GetGUID()) == guid && guid == CString(guid) && CDQGuid() < guid);
  EXPECT_TRUE(guid == "{0012ABCD-0234-F678-9ABC-DEF01234567F}" && guid > "{0012" && "{1" > guid);
  EXPECT_STREQ(CDQGuid(), "{00000000-0000-0000-0000-000000000000}");
}

TEST(Guid, OtherTextsLeaveTheValue) {
  CDQGuid guid("0012ABCD-0234-F678-9ABC-DEF01234567F");
  const GUID value = guid.GetGUID();
  for (const char* const text :
       {"{11111111-1111-1111-1111-111111111111}", "11111111-1111-1111-1111-11111111111g",
        static_cast<const char*>(nullptr)}) {
    guid.SetGUID(text);
    EXPECT_EQ(guid.GetGUID(), value);
  }
}

}  // namespace
}  // namespace dq
