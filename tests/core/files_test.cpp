#include "tests/support/forked_process.h"
#include "tests/support/forwarding_files.h"
#include "tests/support/temp_directory.h"

namespace dq::test {
namespace {

namespace fs = std::filesystem;
using Utility = CDQFileUtility;
using namespace platform;
using Text = const char*;

/// A test with a directory of its own.
struct FileUtility : testing::Test {
  const TempDirectory directory;
};
using DQFile = FileUtility;

TEST_F(FileUtility, RelativePathsAndBack) {
  // A path without a drive contains none.
  for (const auto& [base, path, relative, absolute] : Cases<4>(R"(
=> C:\X => c:\x => c:\x ;; c:\data => /home/User/c:/X => /home/User/c:/X => /home/User/c:/X
c:\data => C:\Data\sql\a.sql => .\sql\a.sql => c:\data\sql\a.sql ;; \\S\Sh => D:\X => d:\x => d:\x
c:\data\app => C:\other\a => ..\other\a => c:\other\a ;; c:\d\app => C:ot => ..\ot => c:\ot
c:\app => c:\application\x => .lication\x => c:\application\x ;; /D => C:\D\X => c:\d\x => c:\d\x
\\Srv\Share => \\SRV\share\X => .\x => \\srv\share\x ;; /da/Ap => /da/ap/x => /da/ap/x => /da/ap/x
/data/App => /data/App/Sql/A.sql => ./Sql/A.sql => /data/App/Sql/A.sql)")) {
    EXPECT_EQ(Utility::AbsolutePathToRelative(base.c_str(), path.c_str()), relative) << path;
    EXPECT_EQ(Utility::RelativePathToAbsolute(base.c_str(), relative.c_str()), absolute);
  }
  EXPECT_EQ(Utility::RelativePathToAbsolute("C:\\Data", ".\\Sub\\A"), "c:\\data\\sub\\a");
  EXPECT_EQ(Utility::RelativePathToAbsolute("/Data", ".\\Sub"), "/Data\\Sub");
  EXPECT_EQ(Utility::AbsolutePathToRelative(nullptr, nullptr), "");
  EXPECT_EQ(Utility::RelativePathToAbsolute(nullptr, nullptr), "");
}

TEST_F(FileUtility, TakesItsOwnTexts) {
  Utility utility("c:\\data\\a.sql");
  EXPECT_EQ(utility.GetDrive() + utility.GetFileName() + utility.GetExtension(), "c:a.sql");
  utility.SetFullPath(utility.GetDirectory());
  utility.SetFullPath(utility.GetFullPath());
  EXPECT_EQ(utility.GetFullPath() + '|' + utility.GetDirectory(), "\\data\\|\\data\\");
}

TEST_F(FileUtility, UniversalNamesAreAdministrativeSharesOfDrives) {
  struct Shares : ForwardingFiles {
    Result<std::string> UniversalName(std::string_view path) override {
      if (path.starts_with("z:")) return "\\\\files\\all" + std::string(path.substr(2));
      return Error{ErrorKind::kUnsupported, 0};
    }
  } files;
  const ScriptedPlatform platform;
  for (const auto& [path, expected] : Cases<2>(R"(=> ;; plain => plain ;; /home/a:b => /home/a:b
       c:\a:b => \\TIGER\c$\a:b ;; z:\x => \\files\all\x)")) {
    EXPECT_EQ(Utility::GetUniversalName(path.c_str()), expected);
  }
  EXPECT_EQ(Utility::GetUniversalName(nullptr), "");
}

TEST_F(FileUtility, NamesOfTemporaryFilesDontCollide) {
  const char* const place = directory.path().c_str();
  const CString made = Utility::CreateTempFile("prefix", place);
  EXPECT_TRUE(Utility(made).GetFileName().Left(3) == "pre" && DQLIB_FileExists(made));
  EXPECT_EQ(Utility::CreateTempFile("x", (directory / "none").c_str()), "");
  EXPECT_EQ(Utility(Utility::CreateTempFile(nullptr, place)).GetFileName().Left(3), "TMP");

  ManualClock clock;
  clock.seconds = 77;
  for (const Text name : {"TMP122.sql", "TMP123.sql", "TMP124.sql"}) {
    const CString path = Utility::CreateTempFile("", place, "sql");
    EXPECT_TRUE(path == directory / name && !DQLIB_FileExists(path)) << "in one second " << path;
    Utility::CreateFile(path);
  }
  EXPECT_STREQ(Utility::CreateTempFile("p", "c:\\t", "x").Left(6), "c:\\t\\p");
}

TEST_F(FileUtility, DirectoriesAreMadeFromTheOutside) {
  const std::string path = directory / "a//b/c/";
  const std::string question =
      "The directory " + directory / "a//b/c" + " does not exist.  Do you want to create it?";
  {
    ScriptedPrompts prompts{BUTTON_NO, BUTTON_YES};
    CStringArray created;
    EXPECT_FALSE(Utility::CreateDirectory(path.c_str(), true, &created) || created.GetSize() > 0);
    for (int round = 0; round < 2; ++round) {
      EXPECT_TRUE(Utility::CreateDirectory(path.c_str(), true, &created));
      ASSERT_EQ(created.GetSize(), 3);
    }
    EXPECT_TRUE(created[0] == directory / "a" && created[2] == directory / "a/b/c");
    created.Add(path + "d/e/f/g");
    EXPECT_TRUE(Utility::CreateDirectory(created[3], false, &created) && created.GetSize() == 8);
    EXPECT_TRUE(fs::exists(path + "d/e/f/g")) << "a text of the array it adds to";
    EXPECT_EQ(prompts.shown, (std::vector(2, ShownBox{question, BOX_YES_NO})));
  }
  for (const Text at : {"c:", "c:\\", "/"}) EXPECT_TRUE(Utility::CreateDirectory(at, true)) << at;
  EXPECT_TRUE(Utility::CreateDirectory(("/" + directory / "d/e").c_str(), false)) << "no share";
  const std::string file = directory.Put("file", "");
  ScriptedPrompts prompts;
  for (const auto& [wanted, level] : Cases<2>(file + "/x/y => " + file + R"(
       c:\x\y => c:\x ;; \\srv\share\x\y => \\srv\share\x ;; \\srv\share => \\srv\share)")) {
    EXPECT_FALSE(Utility::CreateDirectory(wanted.c_str(), false)) << wanted;
    EXPECT_EQ(prompts.shown.back().text, "The directory " + level + " could not be created.");
  }
  EXPECT_EQ(prompts.shown.size(), 4U);
}

TEST_F(FileUtility, WritesReplaceOrAppendAndReportTheTextsLength) {
  const std::string path = directory / "f", zero("a\0b", 3);
  const Rows<Text, int, bool, bool, int, std::string> rows = {
      {"one", -1, false, true, 3, "one\r\n"},
      {"two", 2, false, false, 2, "one\r\ntw"},
      {"", -1, true, true, 0, "\r\n"},
      {"a\0b", 3, true, false, 3, zero},
      {nullptr, 9, true, false, 0, ""}};
  for (const auto& [text, length, replace, add_line_end, result, contents] : rows) {
    EXPECT_EQ(Utility::WriteFile(path.c_str(), text, length, replace, add_line_end), result);
    EXPECT_EQ(directory.Get("f"), contents);
  }
  CString text = "all";
  for (const Text to : {path.c_str(), "/dev/null"}) EXPECT_EQ(Utility::WriteFile(to, text), 3);
  EXPECT_FALSE(fs::is_regular_file("/dev/null"));
  EXPECT_TRUE(Utility::ReadFile(text, path.c_str()) && text == "all");
  EXPECT_FALSE(Utility::ReadFile(text, directory.path().c_str()) || text != "");
  const auto open = OpenDescriptors();
  EXPECT_TRUE(Utility::GetFileSize(path.c_str()) == 3 && OpenDescriptors() == open);
  EXPECT_EQ(Utility::GetFileSize((directory / "none").c_str()) + Utility::GetFileSize(nullptr), 0);
}

TEST_F(FileUtility, ADiskThatFillsUpLeavesTheFormerContents) {
  struct FullDisk : ForwardingFiles {
    Error Replace(std::string_view path, std::string_view bytes, bool only) override {
      if (in_place) ForwardingFiles::Replace(path, bytes, only);
      return error;
    }
    Error Write(HANDLE file, std::string_view bytes) override {
      if (bytes == "too much") return {ErrorKind::kNoSpace, ENOSPC};
      return ForwardingFiles::Write(file, bytes);
    }
    Error error;
    bool in_place = false;
  } files;
  directory.Put("f", "old");
  using enum ErrorKind;
  for (const auto& [name, text, kind, in_place, written, contents] :
       Rows<Text, Text, ErrorKind, bool, int, Text>{
           {"f", "new", kNoSpace, false, 0, "old"},
           {"g", "new", kNoSpace, false, 0, "(none)"},
           {"g", "new", kNoSpace, true, 0, "new"},        // but its directory can't be synced
           {"f", "new", kAccessDenied, false, 3, "new"},  // in a directory that takes no new file
           {"f", "too much", kAccessDenied, false, 0, "new"}}) {  // put back
    files.error.kind = kind;
    files.in_place = in_place;
    EXPECT_EQ(Utility::WriteFile((directory / name).c_str(), text, -1, true, false), written);
    EXPECT_EQ(directory.Get(name), contents) << name << text;
  }
}

TEST_F(FileUtility, FailedOpensAreToldWithTheirCause) {
  const std::string missing = directory / "no/f", file = directory.Put("f", "x");
  CFile held(file.c_str(), CFile::modeWrite | CFile::shareExclusive);
  ScriptedPrompts prompts;
  EXPECT_EQ(Utility::WriteFile(missing.c_str(), "x", -1, true, false), 0);
  EXPECT_FALSE(Utility::EmptyFile(file.c_str()));
  EXPECT_EQ(Utility::OpenFile(file.c_str(), CFile::modeRead, true), nullptr);
  EXPECT_EQ(Utility::OpenFile(file.c_str(), CFile::modeRead, false), nullptr);
  std::string shown;
  for (const ShownBox& box : prompts.shown) shown += box.text + "|";
  EXPECT_EQ(shown, missing + "\nThe path or the file name is not valid.\n|" + file +
                       " can not be written.  It is protected or in use.\n|" + file +
                       " can not be read.  It is protected or in use.|");
  EXPECT_EQ(directory.Get("f"), "x");
  held.Close();
  EXPECT_TRUE(Utility::EmptyFile(file.c_str()) && directory.Get("f").empty());
  EXPECT_NE(Utility::OpenFile(file.c_str(), CFile::modeRead, true), nullptr);
}

TEST_F(FileUtility, MessagesTellTheCauseOrWhatWasTried) {
  std::string all;
  for (const int cause :
       {CFileException::none, CFileException::badPath, CFileException::diskFull,
        CFileException::accessDenied, CFileException::lockViolation, CFileException::hardIO}) {
    const CFileException error(cause);
    all += Utility::GetExceptionErrorMessage("p", &error, true, 61697) + "|" +
           Utility::GetExceptionErrorMessage("p", &error, false, 61697) + "\n";
  }
  EXPECT_EQ(all, R"(Failed to open document.|Failed to open document.
p
The path or the file name is not valid.|p
The path or the file name is not valid.
There is no room left on the disk for p.|There is no room left on the disk for p.
p can not be written.  It is protected or in use.|p can not be read.  It is protected or in use.
p can not be written.  It is protected or in use.|p can not be read.  It is protected or in use.
An error occurred while p was written.|An error occurred while p was read.
)");
  const CArchiveException other;
  EXPECT_EQ(Utility::GetExceptionErrorMessage("p", &other, true, 61696), "Invalid filename.");
  EXPECT_EQ(Utility::GetExceptionErrorMessage("p", nullptr, true, 61696), "Invalid filename.");
}

TEST_F(FileUtility, ListsHaveTheEntriesWithAnyOfTheAttributes) {
  for (const Text name : {"a.SQL", "b", ".hidden"}) directory.Put(name, "");
  fs::create_directory(directory / "dir");
  fs::permissions(directory / "b", fs::perms::owner_read);
  // 1 is read-only, 2 hidden, 16 a directory and 32 a file.
  for (const auto& [pattern, attributes, found, names] : Cases<4>(R"(
       /*.* => 32 => 1 => .hidden|a.SQL|b| ;; \* => 16 => 1 => dir| ;; /*.* => 3 => 1 => .hidden|b|
       /a* => 16 => 1 => ;; /x* => 32 => 0 =>)")) {
    CStringList list;
    const DWORD any = static_cast<DWORD>(std::stoi(attributes));
    EXPECT_EQ(Utility::ListFiles((directory.path() + pattern).c_str(), list, any), found == "1");
    EXPECT_EQ(Joined(list), names) << pattern;
    EXPECT_FALSE(Utility::ListFiles(nullptr, list, any));
  }
}

TEST_F(FileUtility, DeletingTakesReadOnlyFilesAndLeavesWhatLinksLeadTo) {
  const std::string tree = directory / "tree";
  for (const Text name : {"tree/sub/deep/.hidden", "tree/read_only", "kept", "outside/file",
                          "hostile/..\\outside/x", "hostile/..\\outside\\file"}) {
    fs::create_directories(fs::path(directory / name).parent_path());
    directory.Put(name, "o");
  }
  fs::permissions(tree + "/read_only", fs::perms::owner_read);
  fs::permissions(directory / "kept", fs::perms::owner_read);
  fs::create_directory_symlink(directory / "outside", tree + "/link");
  fs::create_symlink(directory / "kept", tree + "/file_link");
  EXPECT_FALSE(Utility::DeleteDirectory(directory / "hostile", true));
  EXPECT_TRUE(Utility::DeleteFiles(directory / "hostile/*", ~DWORD{0}));
  EXPECT_EQ(directory.Get("outside/file"), "o") << "names with a separator lead elsewhere";
  EXPECT_FALSE(Utility::DeleteDirectory(tree, false)) << "it isn't empty";
  EXPECT_TRUE(Utility::DeleteDirectory(tree, true) && !fs::exists(tree));
  EXPECT_TRUE(DQLIB_FileReadOnly((directory / "kept").c_str()));
  const auto here = fs::current_path();
  fs::current_path(directory / "outside");
  EXPECT_FALSE(Utility::DeleteDirectory("", true)) << "no name is not the current directory";
  fs::current_path(here);
  for (const Text link : {"itself", "itself/"}) {
    fs::create_directory_symlink(directory / "outside", directory / "itself");
    EXPECT_TRUE(Utility::DeleteDirectory(directory / link, true)) << link;
    EXPECT_FALSE(fs::is_symlink(directory / "itself")) << link;
  }
  EXPECT_EQ(directory.Get("outside/file"), "o");

  struct Stubborn : ForwardingFiles {
    Error Delete(std::string_view path) override {
      if (path.ends_with("2")) return {ErrorKind::kAccessDenied, EACCES};
      return ForwardingFiles::Delete(path);
    }
  } files;
  for (const Text name : {"f1", "f2", "f3"}) directory.Put(name, name);
  EXPECT_FALSE(Utility::DeleteFiles(directory / "f*", FILE_ARCHIVE));
  EXPECT_EQ(directory.Get("f1") + directory.Get("f2") + directory.Get("f3"), "(none)f2(none)");
  EXPECT_TRUE(Utility::DeleteFiles(directory / "x*", FILE_ARCHIVE));
}

TEST_F(FileUtility, AFailureIsNeitherAnAbsenceNorASuccess) {
  struct Broken : ForwardingFiles {
    static Error Fails() { return {ErrorKind::kOther, EIO}; }
    Result<FileStatus> Status(std::string_view) override { return Fails(); }
    Result<std::vector<FoundFile>> Find(std::string_view) override { return Fails(); }
    Result<std::size_t> Read(HANDLE, std::span<char>) override { return Fails(); }
    Error ReadAll(std::string_view, std::string&) override { return Fails(); }
    Error Replace(std::string_view, std::string_view, bool) override { return Fails(); }
  } files;
  const std::string path = directory.Put("f", "old");
  EXPECT_TRUE(!Utility::WriteFile(path.c_str(), "new", -1, true, false) &&
              directory.Get("f") == "old");
  EXPECT_EQ(Utility::CreateTempFile("x", directory.path().c_str(), "sql"), "");
  EXPECT_FALSE(Utility::DeleteFiles(directory / "*", FILE_ARCHIVE));
  CDQFile file(path, FILE_OPEN_READ);
  CStringList lines;
  EXPECT_TRUE(file.Open() && !file.GetTextList(lines));
}

TEST_F(FileUtility, NamesForDisplayKeepRootAndLastDirectories) {
  for (const auto& [length, at_least_name, path, shown] : Cases<4>(R"(
20 => 1 => c:\one\two\three.sql => c:\one\two\three.sql ;; 7 => 1 => c:\one\two\three.sq => three.sq
20 => 1 => c:\first\two\three.sql => c:\...\two\three.sql ;; 8 => 0 => c:\one\two\three.sql =>
18 => 1 => c:\one\two\three.sql => c:\...\three.sql ;; 9 => 0 => c:\one\two\three.sql => three.sql
17 => 0 => /one/two/three.sql => /.../three.sql ;; -1 => 0 => a =>
20 => 0 => \\srv\all\first\x.sql => \\srv\all\...\x.sql)")) {
    std::string name = path;
    Utility::AbbreviateName(name.data(), std::stoi(length), std::stoi(at_least_name));
    EXPECT_STREQ(name.c_str(), shown.c_str()) << length;
  }
}

TEST_F(FileUtility, ModulesAndLineEnds) {
  const ScriptedPlatform platform;
  CString place = "old", drive = "old";
  DQLIB_GetModuleDirectory(nullptr, place);
  DQLIB_GetModuleDriveSpec(nullptr, drive);
  EXPECT_EQ(place + "," + drive, "/opt,");
  const Rows<Text, int> rows = {{"", -1},   {"abc", 2}, {"a\nb", 1},  {"a\r\n\f\x1Ay\n", 4},
                                {"\nb", 0}, {"a\n", 1}, {nullptr, -1}};
  for (const auto& [text, at] : rows) EXPECT_EQ(GetEndOfLinePosition(text), at) << at;
}

TEST_F(DQFile, LinesLoseTheirEndsAndLongOnesComeInPiecesAndPositionsMove) {
  const std::string most(10000, 'x'), less = most.substr(1);
  const Rows<std::string, std::string> rows = {
      {"", ""},          {"a\r\nb\rc\n\nd", "a|b\rc||d|"},
      {"\n", "|"},       {less + "\r\ny", less + "|y|"},
      {"a\r", "a\r|"},   {most + "\ny", most + "||y|"},
      {"\r\r\n", "\r|"}, {most + most + "y\n", most + "|" + most + "|y|"}};
  for (const auto& [contents, lines] : rows) {
    CDQFile file(directory.Put("f", contents), FILE_OPEN_READ);
    CStringList list;
    EXPECT_TRUE(file.Open() && file.GetTextList(list) && Joined(list) == lines) << Joined(list);
  }
  CDQFile file(directory.Put("f", "ab\r\n\ncdef"), FILE_OPEN_READ);
  CString text = "old";
  char buffer[8] = {};
  EXPECT_TRUE(file.ReadLine(text) == 0 && text == "" && file.ReadBytes(buffer, 1) == 0);
  ASSERT_TRUE(file.Open() && file.Open());
  EXPECT_TRUE(file.ReadLine(text) == 2 && file.ReadLine(text) == 0);
  EXPECT_TRUE(file.Read(text, 2) == 2 && text == "cd");
  EXPECT_TRUE(file.ReadBytes(buffer, sizeof buffer) == 2 && CString(buffer) == "ef");
  EXPECT_TRUE(file.fseek(7, 0) == 0 && file.fseek(-2, 1) == 0 && file.Read(text, 1) == 1);
  EXPECT_TRUE(file.fseek(-4, 2) == 0 && file.Read(text, INT_MAX) == 4 && file.Read(text, -1) == 0);
  EXPECT_TRUE(file.fseek(-1, 0) != 0 && file.fseek(0, 3) != 0 && file.fseek(0, -1) != 0);
  EXPECT_FALSE(file.Write("x")) << "it is open for reading";
  EXPECT_TRUE(file.Close());
}

TEST_F(DQFile, WritesNumbersTextsAndLineEndsOfBothKindsAndTextsToStandardOutput) {
  CDQFile file(directory / "f", FILE_OPEN_WRITE);
  ASSERT_TRUE(file.Open());
  EXPECT_TRUE(file.Write(-1) && file.Write(2L) && file.Write(0.5) && file.WriteLine(","));
  file.SetUseCarrageReturnLineFeed(true);
  EXPECT_TRUE(file.WriteLine("100%s") && file.WriteLine(""));
  EXPECT_FALSE(file.Write(static_cast<const char*>(nullptr)));
  CString whole;
  EXPECT_TRUE(file.FileToString(whole));
  EXPECT_EQ(whole, "-120.500000,\n100%s\r\n\r\n") << "which was not on the disk yet";
  EXPECT_TRUE(file.Close() && directory.Get("f") == std::string(whole.View()));

  CDQFile full("/dev/full", FILE_OPEN_WRITE);
  EXPECT_TRUE(full.Open() && full.Write("lost") && !full.Close() && full.fseek(0, 0) == -1);
  const std::string no = directory / "no/f";
  EXPECT_FALSE(CDQFile(no, FILE_OPEN_READ).Open() || CDQFile(no, FILE_OPEN_WRITE).Open());

  testing::internal::CaptureStdout();
  CDQFile output("", FILE_OPEN_STDOUT);
  EXPECT_TRUE(output.Open() && output.Write("one") && output.WriteLine("!"));
  EXPECT_TRUE(output.ReadLine(whole) == 0 && whole == "" && output.fseek(0, 0) == -1);
  char byte = 0;
  EXPECT_TRUE(output.ReadBytes(&byte, 1) == 0 && output.Close());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "one!\n");
}

TEST_F(DQFile, WholeFilesAndAttributes) {
  CDQFile file(directory.Put("f", "a\r\nb"), FILE_OPEN_READ);
  directory.Put("g", "overwritten");
  CString text;
  EXPECT_TRUE(file.FileToString(text) && text == "a\r\nb");
  EXPECT_TRUE(file.FastFileCopy((directory / "g").c_str()) && directory.Get("g") == "a\r\nb");
  EXPECT_FALSE(file.FastFileCopy((directory / "no/g").c_str()));
  EXPECT_TRUE(file.ChangeModeReadOnly() && file.IsReadOnly());
  EXPECT_EQ(file.GetAttributes(), DWORD{FILE_ARCHIVE | FILE_READ_ONLY});
  EXPECT_TRUE(file.ChangeModeWriteable() && !file.IsReadOnly());
  EXPECT_EQ(CDQFile(directory / "none", FILE_OPEN_READ).GetAttributes(), 0u);
}

TEST_F(DQFile, OneOpeningOfALobReaderServesOneRead) {
  const std::string path = directory.Put("f", "0123456789");
  for (const auto& [chunk, expected] :
       {std::pair{4, "0123"}, {0, ""}, {-1, "0123456789"}, {0x7FFFFFFF, "0123456789"}}) {
    CDQLobReader reader(path, chunk, false);
    CString text = "old";
    EXPECT_TRUE(!reader.GetData(text) && reader.Open() && reader.GetData(text));
    EXPECT_TRUE(text == expected && reader.GetReadLength() == text.GetLength()) << text;
    EXPECT_FALSE(reader.GetData(text));
  }
  fs::permissions(path, fs::perms::owner_read);
  { const CDQLobReader deleting(path, 1, true); }
  EXPECT_EQ(directory.Count(), 1u) << "a read-only file stays";
  fs::permissions(path, fs::perms::owner_all);
  EXPECT_TRUE(CDQLobReader(path, 1, true).Open());
  EXPECT_EQ(directory.Count(), 0u) << "even if it was open";
}

}  // namespace
}  // namespace dq::test
