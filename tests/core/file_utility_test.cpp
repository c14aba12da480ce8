#include "dqlib/core/file_utility.h"

#include "dqlib/core/dq_file.h"
#include "dqlib/core/system_info.h"
#include "dqlib/framework/base/random.h"
#include "tests/support/forwarding_files.h"
#include "tests/support/joined.h"
#include "tests/support/manual_clock.h"
#include "tests/support/own_service.h"
#include "tests/support/own_settings.h"
#include "tests/support/registry_dump.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

namespace fs = std::filesystem;
using Utility = CDQFileUtility;
using test::Rows;
using test::TempDirectory;
using testing::ScriptedPrompts;
using testing::ShownBox;

/// What a scope puts in place of the files.
constexpr auto kFiles = &platform::Platform::files;

TEST(FileUtility, RelativePathsAndBack) {
  using Text = const char*;
  for (const auto& [base, path, relative, absolute] : Rows<Text, Text, Text, Text>{
           {"c:\\data", "C:\\Data\\sql\\a.sql", ".\\sql\\a.sql", "c:\\data\\sql\\a.sql"},
           {"c:\\data\\app", "C:\\other\\a", "..\\other\\a", "c:\\other\\a"},
           {"c:\\data\\app", "C:other", "..\\other", "c:\\other"},
           {"c:\\app", "c:\\application\\x", ".lication\\x", "c:\\application\\x"},
           {"c:\\data\\app", "", "", ""},
           {"", "C:\\X", "c:\\x", "c:\\x"},
           // Without a drive there is none that a path could contain.
           {"\\\\Server\\Share", "D:\\X", "d:\\x", "d:\\x"},
           {"\\\\Server\\Share", "\\\\SERVER\\share\\X", ".\\x", "\\\\server\\share\\x"},
           {"/data/App", "/data/App/Sql/A.sql", "./Sql/A.sql", "/data/App/Sql/A.sql"},
           {"/data/App", "/data/app/x", "/data/app/x", "/data/app/x"},
       }) {
    EXPECT_STREQ(Utility::AbsolutePathToRelative(base, path), relative) << path;
    EXPECT_STREQ(Utility::RelativePathToAbsolute(base, relative), absolute) << path;
  }
  EXPECT_STREQ(Utility::AbsolutePathToRelative("c:\\data", "/home/User/c:/X"), "/home/User/c:/X");
  EXPECT_STREQ(Utility::RelativePathToAbsolute("c:\\data", "/home/User/X"), "/home/User/X");
  EXPECT_STREQ(Utility::AbsolutePathToRelative("/Data", "C:\\Data\\X"), "c:\\data\\x");
  EXPECT_STREQ(Utility::RelativePathToAbsolute("C:\\Data", ".\\Sub\\A"), "c:\\data\\sub\\a");
  EXPECT_STREQ(Utility::RelativePathToAbsolute("/Data", ".\\Sub"), "/Data\\Sub");
  EXPECT_STREQ(Utility::AbsolutePathToRelative(nullptr, nullptr), "");
}

TEST(FileUtility, TakesItsOwnTextsAndThoseItAddsTo) {
  Utility utility("c:\\data\\a.sql");
  utility.SetFullPath(utility.GetDirectory());
  EXPECT_EQ(utility.GetFullPath() + '|' + utility.GetDirectory(), "\\data\\|\\data\\");
  utility.SetFullPath(utility.GetFullPath());
  EXPECT_EQ(utility.GetFullPath(), "\\data\\");

  const TempDirectory directory;
  platform::Files& files = *platform::Current().files;
  const std::string former = files.CurrentDirectory();
  ASSERT_TRUE(files.SetCurrentDirectory(directory.path()).ok());
  CStringArray created;
  created.Add("a/b/c/d");
  EXPECT_TRUE(Utility::CreateDirectory(created[0], false, &created));
  EXPECT_EQ(created.GetSize(), 5);
  EXPECT_TRUE(DQLIB_FileExists((directory / "a/b/c/d").c_str()));
  EXPECT_TRUE(files.SetCurrentDirectory(former).ok());
}

TEST(FileUtility, UniversalNamesAreAdministrativeSharesOfDrives) {
  struct Shares : test::ForwardingFiles {
    platform::Result<std::string> UniversalName(std::string_view path) override {
      if (path.starts_with("z:")) return "\\\\files\\all" + std::string(path.substr(2));
      return platform::Error{platform::ErrorKind::kUnsupported, 0};
    }
  } files;
  const platform::ScopedPlatform scope(test::With(kFiles, &files));
  const CString machine = CDQSystemInfo::GetComputerName();
  EXPECT_EQ(machine.Left(2), "\\\\");
  for (const auto& [path, expected] :
       {std::pair<const char*, CString>{"c:\\a:b", machine + "\\c$\\a:b"},
        {"z:\\x", "\\\\files\\all\\x"},
        {"\\\\server\\share\\x", "\\\\server\\share\\x"},
        {"/home/a:b", "/home/a:b"},
        {nullptr, ""}}) {
    EXPECT_EQ(Utility::GetUniversalName(path), expected);
  }
}

TEST(FileUtility, NamesOfTemporaryFilesDontCollide) {
  const TempDirectory directory;
  const char* const place = directory.path().c_str();
  const CString made = Utility::CreateTempFile("prefix", place);
  EXPECT_EQ(Utility(made).GetFileName().Left(3), "pre");
  EXPECT_TRUE(DQLIB_FileExists(made));
  EXPECT_EQ(Utility::CreateTempFile("x", (directory / "none").c_str()), "");
  EXPECT_EQ(Utility(Utility::CreateTempFile(nullptr, place)).GetFileName().Left(3), "TMP");

  testing::ManualClock clock;
  clock.seconds = 77;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::clock, &clock));
  SeedRandom(77);
  const int number = NextRandom();
  for (int taken = 0; taken < 3; ++taken) {
    char name[32];
    std::snprintf(name, sizeof name, "TMP%X.sql", static_cast<unsigned>(number + taken));
    const CString path = Utility::CreateTempFile("", place, "sql");
    EXPECT_EQ(path.View(), directory / name) << "in one second";
    EXPECT_FALSE(DQLIB_FileExists(path)) << "only the name is made";
    Utility::CreateFile(path);
  }
  EXPECT_STREQ(Utility::CreateTempFile("p", "c:\\t", "x").Left(6), "c:\\t\\p");
}

TEST(FileUtility, DirectoriesAreMadeFromTheOutside) {
  const TempDirectory directory;
  const std::string path = directory / "a//b/c/";
  const std::string question =
      "The directory " + directory / "a//b/c" + " does not exist.  Do you want to create it?";
  {
    ScriptedPrompts prompts{BUTTON_NO, BUTTON_YES};
    CStringArray created;
    EXPECT_FALSE(Utility::CreateDirectory(path.c_str(), true, &created));
    EXPECT_EQ(created.GetSize(), 0);
    for (int round = 0; round < 2; ++round) {
      EXPECT_TRUE(Utility::CreateDirectory(path.c_str(), true, &created));
      ASSERT_EQ(created.GetSize(), 3);
    }
    EXPECT_EQ(created[0].View(), directory / "a");
    EXPECT_EQ(created[2].View(), directory / "a/b/c");
    EXPECT_EQ(prompts.shown, (std::vector(2, ShownBox{question, BOX_YES_NO})));
  }
  for (const char* nothing : {"c:", "c:\\", "/"}) {
    EXPECT_TRUE(Utility::CreateDirectory(nothing, true)) << nothing;
  }
  EXPECT_TRUE(Utility::CreateDirectory(("/" + directory / "d/e").c_str(), false)) << "no share";
  const std::string file = directory.Put("file", "");
  for (const auto& [wanted, level] :
       {std::pair{file + "/x/y", file},
        {std::string("c:\\x\\y"), std::string("c:\\x")},
        {std::string("\\\\srv\\share\\x\\y"), std::string("\\\\srv\\share\\x")}}) {
    ScriptedPrompts prompts;
    EXPECT_FALSE(Utility::CreateDirectory(wanted.c_str(), false));
    ASSERT_EQ(prompts.shown.size(), 1u);
    EXPECT_EQ(prompts.shown[0].text, "The directory " + level + " could not be created.");
  }
}

TEST(FileUtility, WritesReplaceOrAppendAndReportTheTextsLength) {
  const TempDirectory directory;
  const std::string path = directory / "f";
  for (const auto& [text, length, replace, add_line_end, result, contents] :
       Rows<const char*, int, bool, bool, int, std::string>{
           {"one", -1, false, true, 3, "one\r\n"},
           {"two", 2, false, false, 2, "one\r\ntw"},
           {"", -1, true, true, 0, "\r\n"},
           {"a\0b", 3, true, false, 3, std::string("a\0b", 3)},
           {nullptr, 9, true, false, 0, ""}}) {
    EXPECT_EQ(Utility::WriteFile(path.c_str(), text, length, replace, add_line_end), result);
    EXPECT_EQ(directory.Get("f"), contents);
  }
  CString text = "all";
  EXPECT_EQ(Utility::WriteFile(path.c_str(), text), 3);
  EXPECT_EQ(Utility::WriteFile("/dev/null", text), 3);
  EXPECT_FALSE(fs::is_regular_file("/dev/null"));
  EXPECT_TRUE(Utility::ReadFile(text, path.c_str()) && text == "all");
  EXPECT_FALSE(Utility::ReadFile(text, directory.path().c_str()) || text != "");
  EXPECT_EQ(Utility::GetFileSize(path.c_str()), 3);
  EXPECT_EQ(Utility::GetFileSize((directory / "none").c_str()), 0);
  EXPECT_EQ(Utility::GetFileSize(nullptr), 0);
}

TEST(FileUtility, ADiskThatFillsUpLeavesTheFormerContents) {
  struct FullDisk : test::ForwardingFiles {
    platform::Error Replace(std::string_view path, std::string_view bytes, bool only) override {
      if (in_place) ForwardingFiles::Replace(path, bytes, only);
      return error;
    }
    platform::Error error;
    bool in_place = false;
  } files;
  const platform::ScopedPlatform scope(test::With(kFiles, &files));
  const TempDirectory directory;
  directory.Put("f", "old");
  const platform::Error full{platform::ErrorKind::kNoSpace, ENOSPC};
  const platform::Error denied{platform::ErrorKind::kAccessDenied, EACCES};
  for (const auto& [name, error, in_place, written, contents] :
       Rows<const char*, platform::Error, bool, int, const char*>{
           {"f", full, false, 0, "old"},
           {"g", full, false, 0, "(none)"},
           {"g", full, true, 0, "new"},        // whole, but its directory can't be synced
           {"f", denied, false, 3, "new"}}) {  // in a directory that takes no new file
    files.error = error;
    files.in_place = in_place;
    EXPECT_EQ(Utility::WriteFile((directory / name).c_str(), "new", -1, true, false), written);
    EXPECT_EQ(directory.Get(name), contents) << name;
  }
}

TEST(FileUtility, FailedOpensAreToldWithTheirCause) {
  const TempDirectory directory;
  const std::string missing = directory / "no/f";
  const std::string file = directory.Put("f", "x");
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

  const CArchiveException other;
  EXPECT_EQ(Utility::GetExceptionErrorMessage("p", &other, true, 61697),
            "Failed to open document.");
  EXPECT_EQ(Utility::GetExceptionErrorMessage("p", nullptr, true, 61696), "Invalid filename.");
  held.Close();
  EXPECT_TRUE(Utility::EmptyFile(file.c_str()));
  EXPECT_NE(Utility::OpenFile(file.c_str(), CFile::modeRead, true), nullptr);
  EXPECT_EQ(directory.Get("f"), "");
}

TEST(FileUtility, ListsHaveTheEntriesWithAnyOfTheAttributes) {
  const TempDirectory directory;
  for (const char* name : {"a.SQL", "b", ".hidden"}) directory.Put(name, "");
  fs::create_directory(directory / "dir");
  fs::permissions(directory / "b", fs::perms::owner_read);
  CStringList list;
  for (const auto& [pattern, attributes, found, names] :
       Rows<const char*, DWORD, bool, const char*>{
           {"/*.*", FILE_ARCHIVE, true, ".hidden|a.SQL|b|"},
           {"\\*", FILE_DIRECTORY, true, "dir|"},
           {"/*.sql", FILE_ARCHIVE, true, "a.SQL|"},
           {"/*.*", FILE_READ_ONLY | FILE_HIDDEN, true, ".hidden|b|"},
           {"/a*", FILE_DIRECTORY, true, ""},
           {"/x*", FILE_ARCHIVE, false, ""}}) {
    list.RemoveAll();
    EXPECT_EQ(Utility::ListFiles((directory.path() + pattern).c_str(), list, attributes), found);
    EXPECT_EQ(test::Joined(list), names) << pattern;
  }
  EXPECT_FALSE(Utility::ListFiles(nullptr, list, FILE_ARCHIVE));
}

TEST(FileUtility, DeletingTakesReadOnlyFilesAndLeavesWhatLinksLeadTo) {
  const TempDirectory directory;
  const std::string tree = directory / "tree";
  for (const char* name : {"tree/sub/deep", "outside", "hostile/..\\outside"}) {
    fs::create_directories(directory / name);
  }
  for (const char* name : {"tree/sub/deep/.hidden", "tree/read_only", "kept", "outside/file",
                           "hostile/..\\outside\\file"}) {
    directory.Put(name, "o");
  }
  fs::permissions(tree + "/read_only", fs::perms::owner_read);
  fs::permissions(directory / "kept", fs::perms::owner_read);
  fs::create_directory_symlink(directory / "outside", tree + "/link");
  fs::create_symlink(directory / "kept", tree + "/file_link");
  EXPECT_FALSE(Utility::DeleteDirectory((directory / "hostile").c_str(), true));
  EXPECT_TRUE(Utility::DeleteFiles((directory / "hostile/*").c_str(), ~DWORD{0}));
  EXPECT_EQ(directory.Get("outside/file"), "o") << "names with a separator lead elsewhere";
  EXPECT_FALSE(Utility::DeleteDirectory(tree.c_str(), false)) << "it isn't empty";
  EXPECT_TRUE(Utility::DeleteDirectory(tree.c_str(), true));
  EXPECT_FALSE(DQLIB_FileExists(tree.c_str()));
  EXPECT_TRUE(DQLIB_FileReadOnly((directory / "kept").c_str()));
  const fs::path here = fs::current_path();
  fs::current_path(directory / "outside");
  EXPECT_FALSE(Utility::DeleteDirectory("", true)) << "no name is not the current directory";
  fs::current_path(here);
  for (const char* const link : {"itself", "itself/"}) {
    fs::create_directory_symlink(directory / "outside", directory / "itself");
    EXPECT_TRUE(Utility::DeleteDirectory((directory / link).c_str(), true)) << link;
    EXPECT_FALSE(fs::is_symlink(directory / "itself")) << link;
  }
  EXPECT_EQ(directory.Get("outside/file"), "o");

  struct Stubborn : test::ForwardingFiles {
    platform::Error Delete(std::string_view path) override {
      if (path.ends_with("2")) return {platform::ErrorKind::kAccessDenied, EACCES};
      return ForwardingFiles::Delete(path);
    }
  } files;
  const platform::ScopedPlatform scope(test::With(kFiles, &files));
  for (const char* name : {"f1", "f2", "f3"}) directory.Put(name, "");
  EXPECT_FALSE(Utility::DeleteFiles((directory / "f*").c_str(), FILE_ARCHIVE));
  EXPECT_EQ(directory.Get("f1") + directory.Get("f2") + directory.Get("f3"), "(none)(none)");
  EXPECT_TRUE(Utility::DeleteFiles((directory / "x*").c_str(), FILE_ARCHIVE));
}

TEST(FileUtility, AFailureIsNeitherAnAbsenceNorASuccess) {
  struct Broken : test::ForwardingFiles {
    static platform::Error Fails() { return {platform::ErrorKind::kOther, EIO}; }
    platform::Result<platform::FileStatus> Status(std::string_view) override { return Fails(); }
    platform::Result<std::vector<platform::FoundFile>> Find(std::string_view) override {
      return Fails();
    }
    platform::Result<std::size_t> Read(HANDLE, std::span<char>) override { return Fails(); }
    platform::Error ReadAll(std::string_view, std::string&) override { return Fails(); }
    platform::Error Replace(std::string_view, std::string_view, bool) override { return Fails(); }
  } files;
  const platform::ScopedPlatform scope(test::With(kFiles, &files));
  const TempDirectory directory;
  const std::string path = directory.Put("f", "old");
  EXPECT_EQ(Utility::WriteFile(path.c_str(), "new", -1, true, false), 0);
  EXPECT_EQ(directory.Get("f"), "old");
  EXPECT_EQ(Utility::CreateTempFile("x", directory.path().c_str(), "sql"), "");
  EXPECT_FALSE(Utility::DeleteFiles((directory / "*").c_str(), FILE_ARCHIVE));
  CDQFile file(path.c_str(), FILE_OPEN_READ);
  CStringList lines;
  EXPECT_TRUE(file.Open());
  EXPECT_FALSE(file.GetTextList(lines));
}

TEST(FileUtility, NamesForDisplayKeepRootAndLastDirectories) {
  for (const auto& [path, length, at_least_name, expected] :
       Rows<const char*, int, int, const char*>{
           {"c:\\one\\two\\three.sql", 20, 1, "c:\\one\\two\\three.sql"},
           {"c:\\first\\two\\three.sql", 21, 1, "c:\\...\\two\\three.sql"},
           {"c:\\one\\two\\three.sql", 18, 1, "c:\\...\\three.sql"},
           {"c:\\one\\two\\three.sql", 5, 1, "three.sql"},
           {"c:\\one\\two\\three.sql", 5, 0, ""},
           {"/one/two/three.sql", 17, 0, "/.../three.sql"},
           {"\\\\srv\\all\\first\\x.sql", 20, 0, "\\\\srv\\all\\...\\x.sql"},
           {"", -1, 1, ""}}) {
    std::string name = path;
    Utility::AbbreviateName(name.data(), length, at_least_name);
    EXPECT_STREQ(name.c_str(), expected) << length;
  }
}

TEST(FileUtility, FileTypesAreRegisteredUpToTheFirstRefusal) {
  const testing::ScriptedPlatform platform;
  platform::Registry& registry = *platform::Current().registry;
  EXPECT_TRUE(Utility::RegisterFileType("DQScript", "SQL Script", ""));
  EXPECT_FALSE(Utility::RegisterFileType("DQScript", "SQL Script", "sql"));
  EXPECT_FALSE(Utility::RegisterFileType(nullptr, "SQL Script", ".sql"));
  EXPECT_FALSE(Utility::RegisterFileType("", "SQL Script", ".sql"));
  EXPECT_TRUE(Utility::RegisterFileType("DQScript", "SQL Script", ".sql"));
  const auto text = [](const char* bytes) {
    return std::map<std::string, test::DumpedValue>{
        {"", {REGISTRY_STRING, std::string(bytes) + '\0'}}};
  };
  const test::RegistryDump expected = {{"", {}},
                                       {"DQScript", text("SQL Script")},
                                       {"DQScript\\shell", {}},
                                       {"DQScript\\shell\\open", {}},
                                       {"DQScript\\shell\\open\\ddeexec", text("[open(\"%1\")]")},
                                       {"DQScript\\shell\\open\\command", text("/opt/host \"%1\"")},
                                       {".sql", text("DQScript")}};
  EXPECT_EQ(test::Dump(registry, kClassesRoot), expected);

  testing::ScriptedModules modules;
  modules.path = "/opt/my host";
  const platform::ScopedPlatform scope(test::With(&platform::Platform::modules, &modules));
  EXPECT_TRUE(Utility::RegisterFileType("DQScript", "SQL Script", ""));
  EXPECT_EQ(test::Dump(registry, kClassesRoot)["DQScript\\shell\\open\\command"],
            text("\"/opt/my host\" \"%1\""));
}

TEST(FileUtility, ModulesAndLineEnds) {
  const testing::ScriptedPlatform platform;
  CString directory = "old";
  CString drive = "old";
  DQLIB_GetModuleDirectory(nullptr, directory);
  DQLIB_GetModuleDriveSpec(nullptr, drive);
  EXPECT_EQ(directory + "," + drive, "/opt,");
  for (const auto& [text, position] : {std::pair{"", -1},
                                       {"abc", 2},
                                       {"a\nb", 1},
                                       {"a\r\n\f\x1Ay\n", 4},
                                       {"\nb", 0},
                                       {"a\n", 1},
                                       {static_cast<const char*>(nullptr), -1}}) {
    EXPECT_EQ(GetEndOfLinePosition(text), position);
  }
}

}  // namespace
}  // namespace dq
