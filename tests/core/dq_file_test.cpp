#include "dqlib/core/dq_file.h"

#include "dqlib/core/lob_reader.h"
#include "dqlib/framework/base/file.h"
#include "tests/support/joined.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using test::TempDirectory;

TEST(DQFile, LinesLoseTheirEndsAndLongOnesComeInPieces) {
  const TempDirectory directory;
  const std::string x9999(9999, 'x');
  const std::string x10000(10000, 'x');
  for (const auto& [contents, lines] : test::Rows<std::string, std::string>{
           {"", ""},
           {"\n", "|"},
           {"a\r\nb\rc\n\nd", "a|b\rc||d|"},
           {"a\r", "a\r|"},
           {"a\r\r\n", "a\r|"},
           {x9999 + "\r\ny", x9999 + "|y|"},
           {x10000 + "\ny", x10000 + "||y|"},
           {x10000 + x10000 + "y\n", x10000 + "|" + x10000 + "|y|"}}) {
    CDQFile file(directory.Put("f", contents).c_str(), FILE_OPEN_READ);
    EXPECT_TRUE(file.Open());
    CStringList list;
    EXPECT_TRUE(file.GetTextList(list));
    EXPECT_EQ(test::Joined(list), lines) << contents.substr(0, 20);
  }
}

TEST(DQFile, ResultsAreCharactersAndPositionsMove) {
  const TempDirectory directory;
  CDQFile file(directory.Put("f", "ab\r\n\ncdef").c_str(), FILE_OPEN_READ);
  CString text = "old";
  EXPECT_EQ(file.ReadLine(text), 0);
  EXPECT_EQ(text, "");
  ASSERT_TRUE(file.Open());
  EXPECT_TRUE(file.Open());
  EXPECT_EQ(file.ReadLine(text), 2);
  EXPECT_EQ(file.ReadLine(text), 0);
  EXPECT_EQ(file.Read(text, 2), 2);
  EXPECT_EQ(text, "cd");
  char buffer[8] = {};
  EXPECT_EQ(file.ReadBytes(buffer, sizeof buffer), 2);
  EXPECT_STREQ(buffer, "ef");
  EXPECT_EQ(file.fseek(-4, 2), 0);
  EXPECT_EQ(file.Read(text, 0x7FFFFFFF), 4);
  EXPECT_EQ(file.Read(text, -1), 0);
  EXPECT_NE(file.fseek(-1, 0), 0);
  EXPECT_NE(file.fseek(0, 3), 0);
  EXPECT_FALSE(file.Write("x")) << "it is open for reading";
  EXPECT_TRUE(file.Close());
}

TEST(DQFile, WritesNumbersTextsAndLineEndsOfBothKinds) {
  const TempDirectory directory;
  CDQFile file((directory / "f").c_str(), FILE_OPEN_WRITE);
  ASSERT_TRUE(file.Open());
  EXPECT_TRUE(file.Write(-1) && file.Write(2L) && file.Write(0.5) && file.WriteLine(","));
  file.SetUseCarrageReturnLineFeed(true);
  EXPECT_TRUE(file.WriteLine("100%s") && file.WriteLine(""));
  EXPECT_FALSE(file.Write(static_cast<const char*>(nullptr)));
  CString whole;
  EXPECT_TRUE(file.FileToString(whole));
  EXPECT_EQ(whole, "-120.500000,\n100%s\r\n\r\n") << "which was not on the disk yet";
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(directory.Get("f"), std::string(whole.View()));

  CDQFile full("/dev/full", FILE_OPEN_WRITE);
  ASSERT_TRUE(full.Open());
  full.Write("lost");
  EXPECT_FALSE(full.Close());
  EXPECT_FALSE(full.IsOpen());
  for (const FileOpenMode mode : {FILE_OPEN_READ, FILE_OPEN_WRITE}) {
    EXPECT_FALSE(CDQFile((directory / "no/f").c_str(), mode).Open());
  }
}

TEST(DQFile, WholeFilesAndAttributes) {
  const TempDirectory directory;
  CDQFile file(directory.Put("f", "a\r\nb").c_str(), FILE_OPEN_READ);
  directory.Put("g", "overwritten");
  CString text;
  EXPECT_TRUE(file.FileToString(text) && text == "a\r\nb");
  EXPECT_TRUE(file.FastFileCopy((directory / "g").c_str()));
  EXPECT_EQ(directory.Get("g"), "a\r\nb");
  EXPECT_FALSE(file.FastFileCopy((directory / "no/g").c_str()));
  EXPECT_TRUE(file.ChangeModeReadOnly() && file.IsReadOnly());
  EXPECT_EQ(file.GetAttributes(), DWORD{FILE_ARCHIVE | FILE_READ_ONLY});
  EXPECT_TRUE(file.ChangeModeWriteable() && !file.IsReadOnly());
  EXPECT_EQ(CDQFile((directory / "none").c_str(), FILE_OPEN_READ).GetAttributes(), 0u);
}

TEST(LobReader, OneOpeningServesOneRead) {
  const TempDirectory directory;
  const std::string path = directory.Put("f", "0123456789");
  for (const auto& [chunk, expected] :
       {std::pair{4, "0123"}, {0, ""}, {-1, "0123456789"}, {0x7FFFFFFF, "0123456789"}}) {
    CDQLobReader reader(path.c_str(), chunk, false);
    CString text = "old";
    EXPECT_FALSE(reader.GetData(text));
    ASSERT_TRUE(reader.Open());
    EXPECT_TRUE(reader.GetData(text));
    EXPECT_EQ(text, expected);
    EXPECT_EQ(reader.GetReadLength(), text.GetLength());
    EXPECT_FALSE(reader.GetData(text));
  }
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  { const CDQLobReader deleting(path.c_str(), 1, true); }
  EXPECT_EQ(directory.Count(), 1u) << "a read-only file stays";
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  EXPECT_TRUE(CDQLobReader(path.c_str(), 1, true).Open());
  EXPECT_EQ(directory.Count(), 0u) << "even if it was open";
}

}  // namespace
}  // namespace dq
