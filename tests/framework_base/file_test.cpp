#include "dqlib/framework/base/file.h"

#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using test::TempDirectory;

/// The cause of what `operation` throws, `none` if it doesn't.
int CauseOf(const std::function<void()>& operation) try {
  operation();
  return CFileException::none;
} catch (const CFileException& error) {
  return error.m_cause;
}

TEST(File, OpenFlagsMakeEmptyKeepAndShare) {
  const TempDirectory directory;
  const std::string path = directory / "f";
  CFileException error;
  CFile file;
  EXPECT_FALSE(file.Open(path.c_str(), CFile::modeRead, &error) || file.Open(nullptr, 0));
  EXPECT_TRUE(error.m_cause == CFileException::fileNotFound && error.m_lOsError == ENOENT);

  directory.Put("f", "old");
  {
    CFile kept(path.c_str(), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite);
    EXPECT_EQ(kept.GetLength(), 3);
    CFile appender(path.c_str(), CFile::modeWrite | CFile::modeAppend);
    kept.SeekToEnd();
    kept.Write("er", 2);
    appender.Write("!", 1);
  }
  EXPECT_EQ(directory.Get("f"), "older!");
  CFile alone(path.c_str(), 0x1021);
  EXPECT_EQ(directory.Get("f"), "");
  EXPECT_EQ(CauseOf([&] { CFile second(path.c_str(), CFile::modeWrite); }),
            CFileException::sharingViolation);
}

TEST(File, PositionsLengthsAndBadSeeks) {
  const TempDirectory directory;
  CFile on_disk((directory / "f").c_str(), CFile::modeCreate | CFile::modeReadWrite);
  CMemFile in_memory;
  for (CFile* file : {&on_disk, static_cast<CFile*>(&in_memory)}) {
    file->Write("0123456789", 10);
    EXPECT_EQ(file->Seek(-4, CFile::end), 6);
    char buffer[16] = {};
    EXPECT_EQ(file->Read(buffer, sizeof buffer), 4u);
    EXPECT_STREQ(buffer, "6789");
    EXPECT_EQ(CauseOf([&] { file->Seek(-1, CFile::begin); }), CFileException::badSeek);
    EXPECT_EQ(file->GetPosition(), 10);
    file->Seek(2, CFile::end);
    file->Write("x", 1);
    EXPECT_EQ(file->GetLength(), 13);
    file->SetLength(3);
    EXPECT_EQ(file->GetPosition(), 3);
  }
  constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max();
  in_memory.Seek(kFar, CFile::begin);
  EXPECT_EQ(CauseOf([&] { in_memory.Seek(1, CFile::current); }), CFileException::badSeek);
  EXPECT_EQ(CauseOf([&] { in_memory.Write("x", 1); }), CFileException::diskFull);
  EXPECT_EQ(CauseOf([&] { in_memory.SetLength(kFar); }), CFileException::diskFull);
  char byte = 0;
  EXPECT_EQ(in_memory.Read(&byte, 1), 0u);
  EXPECT_EQ(in_memory.GetLength(), 3);
}

TEST(StdioFile, LinesEndInLfOrCrLfAcrossBuffers) {
  const TempDirectory directory;
  const std::string wide(65535, 'x');
  const std::string path = directory.Put("f", wide + "\r\n\r\na\rb\n\r\r\nlast\r");
  CStdioFile file(path.c_str(), CFile::modeRead);
  CString line;
  for (const char* const expected : {wide.c_str(), "", "a\rb", "\r", "last\r"}) {
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_EQ(line, expected);
  }
  EXPECT_FALSE(file.ReadString(line));
  EXPECT_TRUE(line.IsEmpty());
}

TEST(StdioFile, ReadsAndWritesMixAtOnePosition) {
  const TempDirectory directory;
  const std::string path = directory.Put("f", "one\ntwo\nthree\n");
  {
    CStdioFile file(path.c_str(), CFile::modeReadWrite);
    CString line;
    file.ReadString(line);
    EXPECT_EQ(file.GetPosition(), 4);
    file.WriteString("2");
    EXPECT_EQ(file.PeekByte(), 'w');
    EXPECT_EQ(file.ReadByte(), 'w');
    file.SeekToEnd();
    file.WriteString("four");
    EXPECT_EQ(file.GetLength(), 18);
  }
  EXPECT_EQ(directory.Get("f"), "one\n2wo\nthree\nfour") << "what is dropped unclosed is written";
}

}  // namespace
}  // namespace dq
