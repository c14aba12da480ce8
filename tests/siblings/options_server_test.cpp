#include "siblings/options/options_server.h"

#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/base/registry_key.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/win_app.h"
#include "siblings/options/option_data_array.h"
#include "tests/support/forked_process.h"
#include "tests/support/memory_registry.h"
#include "tests/support/own_service.h"
#include "tests/support/own_settings.h"
#include "tests/support/registry_dump.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kOptions[] =
    "dqoptions 1\n"
    "variable root directory \"../t\"\n"
    "variable word string \"w\"\n"
    "option 10 bool Flag\nlabel \"A flag\"\ndefault 1\n"
    "option 11 int number\nlabel \"l\"\ndefault -5\n"
    "option 12 string text\nlabel \"l\"\ndefault \"abc\"\ndefault oracle \"ora\"\n"
    "option 13 binary bytes\nlabel \"l\"\ndefault 4100\n"
    "option 14 directory place\nlabel \"l\"\ndefault \"\"\n"
    "option 15 color ink\nlabel \"l\"\ndefault 0102fF\n"
    "option 16 string shared\nlabel \"l\"\nmachine \"Software\\\\M\" \"Dir\"\ndefault \"none\"\n";

/// A server that reads options files of a directory of its own and keeps values in memory.
class OptionsServer : public ::testing::Test {
 protected:
  OptionsServer() : former_(SetTraceSink([this](std::string_view text) { traced += text; })) {
    server.SetOptionsDirectories({(directory / "none").c_str(), directory.path().c_str()});
    server.RemoveOptions("DQLib.dqo", 1, 99999);
    traced.clear();
    directory.Put("own.dqo", kOptions);
    EXPECT_TRUE(Add("own.dqo"));
  }
  ~OptionsServer() override { SetTraceSink(former_); }

  bool Add(const char* file, int first = 1, int last = 100, bool required = true,
           bool shared = false) {
    return server.AddOptions(file, first, last, required, shared);
  }
  /// The process's own server with the same options.
  CDQOptionsServer& ProcessServer() {
    CDQOptionsServer& process = *CDQOptionsServer::GetObject();
    process.SetOptionsDirectories({directory.path().c_str()});
    EXPECT_TRUE(process.AddOptions("own.dqo", 1, 100, true, false));
    return process;
  }
  test::RegistryDump Kept() { return test::Dump(registry); }
  static constexpr char kSection[] = "Software\\Velmora\\My Tool\\Options";

  CWinApp app{"My Tool"};
  test::TempDirectory directory;
  test::MemoryRegistry registry;
  platform::ScopedPlatform scope{test::With(&platform::Platform::registry, &registry)};
  std::string traced;
  CDQOptionsServer server;

 private:
  TraceSink former_;
};

TEST_F(OptionsServer, KeepsValuesByKindInTheRegistry) {
  EXPECT_TRUE(server.SetBool(10, false));
  EXPECT_TRUE(server.SetInt(11, -2));
  EXPECT_TRUE(server.SetString(12, "x"));
  EXPECT_TRUE(server.SetBinary(13, reinterpret_cast<const BYTE*>("\0\1"), 2));
  EXPECT_TRUE(server.SetString(14, nullptr)) << "which is no change";
  EXPECT_TRUE(server.SetString(15, "00ff00"));
  EXPECT_EQ(Kept()[kSection], (std::map<std::string, test::DumpedValue>{
                                  {"10", {REGISTRY_DWORD, std::string(4, '\0')}},
                                  {"11", {REGISTRY_DWORD, "\xFE\xFF\xFF\xFF"}},
                                  {"12", {REGISTRY_STRING, std::string("x\0", 2)}},
                                  {"13", {REGISTRY_BINARY, std::string("\0\1", 2)}},
                                  {"15", {REGISTRY_STRING, std::string("00ff00\0", 7)}},
                              }));
  CDQOptionsServer& other = ProcessServer();  // as after a restart
  EXPECT_TRUE(!other.GetBool(10) && other.GetInt(11) == -2 && other.GetString(12) == "x");
  BYTE* data = nullptr;
  UINT size = 0;
  ASSERT_TRUE(other.GetBinary(13, &data, &size));
  EXPECT_EQ(std::string(data, data + size), std::string("\0\1", 2));

  registry.changes = 0;
  EXPECT_TRUE(other.SetInt(11, -2));
  EXPECT_EQ(registry.changes, 0) << "the value in force is not written again";
  EXPECT_TRUE(other.UnsetValue(11) && other.UnsetValue(11) && !other.UnsetValue(99));
  EXPECT_FALSE(Kept()[kSection].contains("11"));
  EXPECT_EQ(other.GetInt(11), -5);
  EXPECT_FALSE(other.HoldValue(11, "x") || other.HoldValue(1, "1"));
  EXPECT_TRUE(other.HoldValue(11, "-2") && other.GetInt(11) == -2);
  EXPECT_EQ(server.GetInt(11), -5) << "it was kept";
  EXPECT_TRUE(other.UnsetValue(11));
  EXPECT_EQ(other.GetInt(11), -5);
}

TEST_F(OptionsServer, RefusesValuesOfAnotherKindAndUnknownIds) {
  EXPECT_FALSE(server.SetBool(11, true) || server.SetInt(10, 1) || server.SetString(11, "1") ||
               server.SetString(13, "41") || server.SetString(15, "12345g") ||
               server.SetBinary(12, nullptr, 0) || server.SetValue(10, "2") ||
               server.SetValue(12, std::string("a\0b", 3)) || server.SetInt(99, 1));
  EXPECT_EQ(registry.changes, 0);
  EXPECT_EQ(server.GetInt(12), 0);
}

TEST_F(OptionsServer, TakesDefaultsForValuesThatAreNone) {
  const HKEY key = registry.CreateKey(kCurrentUser, kSection).value;
  for (const auto& [id, type, data, fallback] : test::Rows<int, DWORD, std::string, std::string>{
           {10, REGISTRY_DWORD, std::string("\2\0\0\0", 4), "1"},
           {11, REGISTRY_DWORD, "123", "-5"},
           {12, REGISTRY_BINARY, "abd", "abc"},
           {13, REGISTRY_STRING, "x", std::string("A\0", 2)},
           {15, REGISTRY_STRING, "red", "0102fF"},
       }) {
    registry.SetValue(key, std::to_string(id), type, data);
    EXPECT_EQ(server.GetValue(id), fallback) << id;
  }
  // The zero behind a text need not be there, and a long text comes whole.
  registry.SetValue(key, "12", REGISTRY_STRING, std::string(5000, 'x'));
  EXPECT_EQ(server.GetString(12).GetLength(), 5000);
}

TEST_F(OptionsServer, GivesEachPlatformItsOwnValue) {
  server.SetString(12, "all");
  server.SetPlatform(DBMS_ORACLE);
  EXPECT_EQ(server.GetString(12), "ora");
  server.SetString(12, "mine");
  server.SetInt(11, 3);
  EXPECT_TRUE(Kept()[kSection].contains("12.oracle"));
  EXPECT_TRUE(Kept()[kSection].contains("11")) << "one value for all platforms";
  for (const auto& [platform, text] : {std::pair(DBMS_ORACLE, "mine"),
                                       {DBMS_SYBASE, "all"},
                                       {DBMS_NONE, "all"},
                                       {static_cast<DBMS>(99), "all"}}) {
    server.SetPlatform(platform);
    EXPECT_EQ(server.GetString(12), text) << platform;
  }
}

TEST_F(OptionsServer, ReadsTheMachinesValueBeforeTheDefault) {
  EXPECT_EQ(server.GetString(16), "none");
  const HKEY key = registry.CreateKey(kLocalMachine, "Software\\M").value;
  registry.SetValue(key, "Dir", REGISTRY_DWORD, "1234");
  EXPECT_EQ(server.GetString(16), "none");
  registry.SetValue(key, "Dir", REGISTRY_STRING, std::string("/opt\0", 5));
  EXPECT_EQ(server.GetString(16), "/opt");
  server.SetString(16, "/home");
  EXPECT_EQ(server.GetString(16), "/home");
}

TEST_F(OptionsServer, HoldsForTheProcessWhatTheRegistryRefuses) {
  registry.refusal = {platform::ErrorKind::kNoSpace, 28};
  EXPECT_FALSE(server.SetInt(11, 8));
  EXPECT_THAT(traced, HasSubstr("Option 11 could not be kept"));
  EXPECT_EQ(server.GetInt(11), 8);
  registry.refusal = {};
  EXPECT_TRUE(server.SetInt(11, 8));
  EXPECT_EQ(Kept()[kSection].count("11"), 1U);
}

TEST_F(OptionsServer, TellsOnceThatAValueCannotBeReadAndAsksAgain) {
  testing::ScriptedPrompts prompts;
  const testing::ShownBox told{
      "Settings could not be read. Until they can, their defaults hold.\n"
      "Cause: Device or resource busy.",
      BOX_EXCLAMATION};
  const RegistryKey machine(registry.CreateKey(kLocalMachine, "Software\\M"));
  registry.SetValue(machine.get(), "Dir", REGISTRY_STRING, "/opt");
  ASSERT_TRUE(server.SetInt(11, 8) && server.SetString(12, "x"));
  for (const std::size_t boxes : {2U, 4U}) {
    registry.unreadable = {platform::ErrorKind::kBusy, 16};
    EXPECT_EQ(server.GetString(12), "abc");
    EXPECT_EQ(server.GetReadError().code, 16U);
    EXPECT_EQ(server.GetInt(11), boxes == 2 ? -5 : 8) << "the last time it had not changed";
    EXPECT_EQ(app.GetProfileInt("Options", "11", 7), 7U);
    EXPECT_EQ(server.GetString(16), "none");
    EXPECT_EQ(server.GetReadError().code, 16U);
    registry.unreadable = {};
    EXPECT_EQ(server.GetInt(11), 8) << "a default was remembered";
    EXPECT_EQ(server.GetString(16), "/opt");
    EXPECT_TRUE(server.GetReadError().ok());
    EXPECT_EQ(prompts.shown, std::vector(boxes, told)) << "the user's part and the machine's";
  }
  registry.unreadable = {platform::ErrorKind::kBusy, 16};
  EXPECT_TRUE(server.SetString(12, "abc")) << "the default, which isn't known to be in force";
  registry.unreadable = {};
  EXPECT_EQ(Kept()[kSection].count("12"), 1U);
  EXPECT_EQ(server.GetString(12), "abc");
}

TEST_F(OptionsServer, RegistersARangeOfAFileOnceAndRemovesIt) {
  server.RemoveOptions("own.dqo", 11, 100);
  server.SetBool(10, false);
  EXPECT_THAT(server.GetOptionIDs(), ElementsAre(10));
  EXPECT_EQ(server.GetOptionIDByName("NUMBER"), -1);
  EXPECT_TRUE(Add("own.dqo", 11, 11) && Add("own.dqo", 10, 11, true, true));
  EXPECT_THAT(server.GetOptionIDs(), ElementsAre(10, 11));
  EXPECT_EQ(server.GetOptionIDByName("NUMBER"), 11);
  server.RemoveOptions("own.dqo", 1, 100);
  EXPECT_THAT(server.GetOptionIDs(), IsEmpty());
  EXPECT_TRUE(Add("own.dqo", 10, 11, true, true));
  EXPECT_FALSE(server.GetBool(10)) << "a removed option's value stays kept";
}

TEST_F(OptionsServer, ReadsAFileAnewUnlessItIsShared) {
  CDQOption* const flag = server.GetOptionByID(10);
  directory.Put("own.dqo",
                "dqoptions 1\n"
                "option 11 int Flag\nlabel \"l\"\ndefault 1\n"
                "option 10 bool number\nlabel \"changed\"\ndefault 0\n");
  Add("own.dqo", 1, 100, true, true);
  EXPECT_EQ(flag->GetShortName(), "A flag");
  Add("own.dqo");
  EXPECT_EQ(flag->GetShortName(), "changed");
  EXPECT_FALSE(flag->GetBool());
  EXPECT_EQ(server.GetOptionIDByName("flag"), 11);
  EXPECT_THAT(server.GetOptionIDs(), ElementsAre(10, 11)) << "the file has the others no longer";
}

TEST_F(OptionsServer, ChangesNothingForAFileItCannotTake) {
  directory.Put("broken.dqo", "dqoptions 1\noption 20 int a\nlabel \"l\"\ndefault 1\n\noption\n");
  directory.Put("taken.dqo",
                "dqoptions 1\noption 20 int a\nlabel \"l\"\ndefault 1\n"
                "option 10 int b\nlabel \"l\"\ndefault 1\n");
  directory.Put("named.dqo", "dqoptions 1\noption 20 int FLAG\nlabel \"l\"\ndefault 1\n");
  const std::string& path = directory.path();
  for (const auto& [file, reason] : test::Rows<const char*, std::string>{
           {"broken.dqo", path + "/broken.dqo(6): 'option' takes an id, a kind and a name\n"},
           {"taken.dqo", path + "/taken.dqo: option 10 is one of own.dqo\n"},
           {"named.dqo", path + "/named.dqo: option 20 has the name of option 10\n"},
           {"absent.dqo", "The options file 'absent.dqo' could not be found.\n"},
           {nullptr, "The options file '' could not be found.\n"},
           {path.c_str(), path + ": no options file\n"},
           {"/dev/zero", "/dev/zero: no options file\n"},
       }) {
    traced.clear();
    EXPECT_FALSE(Add(file)) << reason;
    EXPECT_EQ(traced, reason);
    EXPECT_EQ(server.GetOptionByID(20), nullptr);
  }
  EXPECT_TRUE(Add("absent.dqo", 1, 100, false));
  EXPECT_FALSE(Add("broken.dqo", 1, 100, false));
  EXPECT_TRUE(Add("taken.dqo", 1, 100, true, true));
  EXPECT_EQ(server.GetOptionByID(10)->GetKind(), OptionKind::kBool);
  EXPECT_EQ(server.GetInt(20), 1);
}

TEST_F(OptionsServer, SetsTheVariablesOfAFile) {
  EXPECT_EQ(server.ResolveVariableString("$$word$$ $$root$$/x"),
            ("w " + directory.path().substr(0, directory.path().rfind('/')) + "/t/x").c_str());
  server.SetVariable("$$word$$", "set");
  server.RemoveOptions("own.dqo", 1, 100);
  Add("own.dqo", 1, 100, true, true);
  EXPECT_EQ(server.ResolveVariableString("$$word$$"), "set");
  Add("own.dqo");
  EXPECT_EQ(server.ResolveVariableString("$$word$$"), "w");
}

TEST_F(OptionsServer, FindsAndMakesAppDirectories) {
  const test::ScopedVariable home("XDG_DATA_HOME", directory / "data");
  const test::ScopedVariable config("XDG_CONFIG_HOME", directory / "data");
  app.SetRegistryKey("Velmora");
  testing::ScriptedPrompts prompts;
  const std::string fallback = directory / "data/Velmora/MyTool/CFG/";
  for (const bool create : {false, true}) {
    EXPECT_EQ(server.GetAppDirectory(14, "CFG", "Label", create), fallback.c_str());
    EXPECT_EQ(directory.Mode("data/Velmora/MyTool/CFG") != 0, create);
  }

  server.SetVariable("$$here$$", directory.path().c_str());
  server.SetString(14, "$$here$$/a/b/");
  EXPECT_EQ(server.GetAppDirectory(14, "CFG", "Label", true), (directory / "a/b/").c_str());
  EXPECT_NE(directory.Mode("a/b"), 0U);

  server.SetString(14, "$$here$$/own.dqo/c");
  EXPECT_EQ(server.GetAppDirectory(14, "CFG", "Label", true), "");
  ASSERT_EQ(prompts.shown.size(), 1U);
  EXPECT_EQ(prompts.shown[0].text,
            "Label:\nThe directory " + (directory / "own.dqo/c/") + " could not be created.");
}

TEST_F(OptionsServer, ShowsATextOptionAsAColor) {
  CDQOptionsServer& process = ProcessServer();
  CDQStringOption ink(15);
  EXPECT_EQ(ink.GetColorRef(7), 7U);
  EXPECT_TRUE(ink.Load());
  EXPECT_EQ(ink.GetColorRef(7), RGB(0x01, 0x02, 0xFF));
  process.SetString(15, "");
  EXPECT_TRUE(!ink.Load() && ink.GetColorRef(7) == 7);
}

TEST_F(OptionsServer, SavesTheChangesOfADialogOnce) {
  CDQOptionsServer& process = ProcessServer();
  CDQOptionDataArrayList list;
  CDQOptionDataArray& array = *list.AddArray();
  process.SetPlatform(DBMS_ORACLE);
  EXPECT_TRUE(array.AddOption(11, true, false));
  EXPECT_TRUE(array.AddOption(12, false, true));
  EXPECT_FALSE(array.AddOption(12, true, true) || array.AddOption(99, true, true));
  process.SetPlatform(DBMS_NONE);
  EXPECT_FALSE(array.SetValue(0, "x"));
  EXPECT_TRUE(array.SetValue(1, "new"));
  EXPECT_EQ(process.GetString(12), "abc");
  registry.refusal = {platform::ErrorKind::kNoSpace, 28};
  EXPECT_FALSE(list.SaveOptions());
  registry.refusal = {};
  EXPECT_TRUE(list.SaveOptions());
  process.SetInt(11, 1);
  registry.changes = 0;
  EXPECT_TRUE(list.SaveOptions());
  EXPECT_EQ(registry.changes, 0);
  process.SetPlatform(DBMS_ORACLE);
  EXPECT_EQ(process.GetString(12), "new");
  process.SetPlatform(DBMS_NONE);
  EXPECT_EQ(process.GetString(12), "abc");
}

TEST_F(OptionsServer, HasTheShippedOptions) {
  CDQOptionsServer shipped;
  ASSERT_EQ(traced, "");
  ASSERT_TRUE(shipped.AddOptions("DQSyntax.Dqo", 52500, 52639, true, true)) << traced;
  for (const int id :
       {50135, 50139, 50144, 50180, 50181, 50182, 50183, 50184, 50185, 50186, 50194, 50198,
        50203, 50226, 50227, 50229, 50230, 50231, 50241, 50242, 50243, 50244, 50245, 50246,
        50247, 50248, 50249, 50255, 50256, 50257, 50270, 50274, 50311, 50326, 50327, 52500}) {
    EXPECT_NE(shipped.GetOptionByID(id), nullptr) << id;
  }
  CString delimiters;
  for (const DBMS platform :
       {DBMS_SYBASE, DBMS_SQLSERVER, DBMS_DB2, DBMS_ORACLE, DBMS_DB2OS390, DBMS_NONE}) {
    delimiters += shipped.GetCommandDelimiter(platform) + " ";
  }
  EXPECT_EQ(delimiters, "go go ; / ;  ");
  EXPECT_TRUE(shipped.ResolveVariableString("$$template_root$$").View().ends_with("/templates"));
}

TEST(OptionReading, ANumberIsNeverOlderThanTheLastChangeOfAnyProcess) {
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
  for (int round = 0; round < 2; ++round) {
    for (const bool value : {true, false}) {
      EXPECT_TRUE(server.SetBool(50270, value));
      EXPECT_EQ(server.GetBool(50270), value);
      test::ForkedProcess other([&] {
        if (!server.SetBool(50270, !value) || server.GetBool(50270) == value) std::_Exit(1);
      });
      ASSERT_TRUE(other.EndsWell());
      EXPECT_EQ(server.GetBool(50270), !value);
    }
  }
  ASSERT_TRUE(server.SetBool(50270, true));
  const CWinApp another("Another Tool");
  EXPECT_FALSE(server.GetBool(50270)) << "another application has options of its own";
}

}  // namespace
}  // namespace dq
