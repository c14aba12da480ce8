#include "dqlib/core/x_mem_file.h"

#include "dqlib/framework/base/registry_key.h"
#include "dqlib/framework/windows/win_app.h"
#include "tests/support/own_settings.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

std::string Bytes(CXMemFile& file) {
  return {file.GetBuffer(), static_cast<std::size_t>(file.GetLength())};
}

TEST(XMemFile, TheProfileKeepsItsBytes) {
  CXMemFile file;
  EXPECT_FALSE(file.WriteRegistry("s", "b")) << "without an application";
  CWinApp app("tool");
  app.SetRegistryKey("Velmora");
  file.Write("a\0b", 3);
  EXPECT_FALSE(file.ReadRegistry("s", "b"));
  EXPECT_EQ(file.GetPosition(), 3) << "a failure leaves the file as it is";
  EXPECT_TRUE(file.WriteRegistry("s", "b"));
  CXMemFile other;
  other.Write("longer than that", 16);
  EXPECT_TRUE(other.ReadRegistry("s", "b"));
  EXPECT_EQ(other.GetPosition(), 0);
  EXPECT_EQ(Bytes(other), std::string("a\0b", 3));
  DeleteRegistryTree(kCurrentUser, "Software\\Velmora");
}

TEST(XMemFile, AnArchiveKeepsALengthAndTheBytes) {
  CXMemFile file;
  file.Write("xyz", 3);
  CMemFile stream;
  CArchive storing(&stream, CArchive::store);
  file.Serialize(storing);
  storing << DWORD{0xFFFFFFFF} << BYTE{'x'};
  storing.Close();
  EXPECT_EQ(stream.GetLength(), 4 + 3 + 5);
  stream.SeekToBegin();
  CArchive loading(&stream, CArchive::load);
  CXMemFile loaded;
  loaded.Write("former", 6);
  loaded.Serialize(loading);
  EXPECT_EQ(Bytes(loaded), "xyz");
  EXPECT_THROW(loaded.Serialize(loading), CArchiveException) << "a length past the end";
  EXPECT_EQ(Bytes(loaded), "xyz");
}

}  // namespace
}  // namespace dq
