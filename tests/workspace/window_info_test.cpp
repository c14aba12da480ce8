#include "dqlib/workspace/window_info.h"

#include "tests/support/testing.h"

namespace dq {
namespace {

/// A file of given bytes.
struct Bytes : CMemFile {
  explicit Bytes(const std::string& bytes = {}) {
    Write(bytes.data(), static_cast<UINT>(bytes.size()));
    Seek(0, 0);
  }
  std::string Text() const { return {m_bytes.begin(), m_bytes.end()}; }
};

template <typename Value>
std::string Stored(Value& value) {
  Bytes file;
  CArchive archive(&file, CArchive::store);
  value.Serialize(archive);
  archive.Close();
  return file.Text();
}

template <typename Value>
void Load(const std::string& bytes, Value& value) {
  Bytes file(bytes);
  CArchive archive(&file, CArchive::load);
  value.Serialize(archive);
}

std::unique_ptr<CDQWindowInfo> Sample() {
  auto info = std::make_unique<CDQWindowInfo>(3, -2, "n");
  info->SetUserData("ab");
  info->SetWndPlacement({.length = 1,
                         .flags = 2,
                         .showCmd = SW_SHOWMAXIMIZED,
                         .ptMinPosition = {-1, 5},
                         .ptMaxPosition = {6, 7},
                         .rcNormalPosition = {8, 9, 10, 0x01020304}});
  info->SetActive(true);
  return info;
}

TEST(WindowInfo, FormIsExactAndItsLengthAlwaysThatOfAPlacement) {
  using namespace std::string_literals;
  const std::string expected =
      "\3\0\0\0\xFE\xFF\xFF\xFF\1n\2ab\0\x2C\0\0\0\2\0\0\0\3\0\0\0\xFF\xFF\xFF\xFF\5\0\0\0"
      "\6\0\0\0\7\0\0\0\x8\0\0\0\x9\0\0\0\xA\0\0\0\4\3\2\1\1"s;
  const auto info = Sample();
  EXPECT_EQ(Stored(*info), expected);
  EXPECT_TRUE(info->Zoomed() && !info->Iconized());
  CDQWindowInfo loaded;
  std::string other_length = expected;
  other_length[14] = 99;
  Load(other_length, loaded);
  EXPECT_EQ(Stored(loaded), expected) << "whatever length is stored, it is 44 afterwards";
}

TEST(WindowInfoArray, RefusesTornStreamsAndWhatIsNoneOfItsRecords) {
  CDQWindowInfoArray infos;
  infos.Add(Sample());
  infos.Add(std::make_unique<CDQWindowInfo>());
  const std::string bytes = Stored(infos);
  CDQWindowInfoArray loaded;
  loaded.Add(Sample());
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_THROW(Load(bytes.substr(0, size), loaded), CArchiveException) << size;
  }
  // The second object is the first one again, then null.
  const std::size_t second = bytes.size() - 58;
  ASSERT_EQ(bytes.substr(second, 2), "\x01\x80");
  for (const char* tag : {"\2", "\0"}) {
    EXPECT_THROW(Load(bytes.substr(0, second) + tag[0] + std::string(70, '\0'), loaded),
                 CArchiveException);
  }
  EXPECT_EQ(loaded.GetSize(), 1);
  Load(bytes, loaded);
  EXPECT_EQ(Stored(loaded), bytes);
  loaded.RemoveAt(0);
  EXPECT_TRUE(loaded.GetSize() == 1 && loaded[0]->GetType() == -1);
}

}  // namespace
}  // namespace dq
