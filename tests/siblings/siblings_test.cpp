#include <regex>

#include "dqlib/platform/checksum.h"
#include "tests/support/doubles.h"
#include "tests/support/failing_memory.h"
#include "tests/support/forked_process.h"
#include "tests/support/own_settings.h"
#include "tests/support/registries.h"

namespace dq::test {
namespace {

using namespace std::string_literals;

struct TemplateEngine : testing::Test {
  TemplateEngine() {
    engine.SetReportSink([this](const CString& message) { reports += (message + "\n").View(); });
  }
  /// The reports since the last time, each as "[unknown name|malformed text|malformed name]".
  std::string Told() {
    const std::regex form(
        "DQTemplateEngine::(Process - Variable  '(.*)' is not in the dictionary|"
        "Process - Malformed variable encountered in input string '(.*)'|"
        "SetVariable - Attempting to set malformed variable '(.*)')\\.\n");
    return std::regex_replace(std::exchange(reports, ""), form, "[$2|$3|$4]");
  }
  CDQTemplateEngine engine;
  std::string reports;
};

TEST_F(TemplateEngine, ReplacesVariablesAndReportsTheRest) {
  for (const auto& [name, value] :
       Cases<2>("$$name$$ => old ;; $$name$$ => EMP ;; $$self$$ => $$name$$ ;; $$$x$$ => dollar")) {
    EXPECT_TRUE(engine.SetVariable(name.c_str(), value.c_str())) << name;
  }
  EXPECT_TRUE(engine.SetVariable("$$null$$", nullptr));
  EXPECT_EQ(engine.ResolveVariableString(nullptr), "");
  for (const auto& [text, result, told] : Cases<3>(R"(no marks, $1 $ each => no marks, $1 $ each =>
      1 $$5 and $$name$$ => 1 $$5 and $$name$$ => [$$5 and $$||][|1 $$5 and $$name$$|]
      $$a$$ $$name$$ $$b$$ => $$a$$ EMP $$b$$ => [$$a$$||][$$b$$||] ;; $$$$$ => $$$$$ => [$$$$||]
      $$name$$ $$open => EMP $$open => [|$$name$$ $$open|] ;; $$Name$$ => $$Name$$ => [$$Name$$||]
      <$$name$$$$name$$.$$null$$> => <EMPEMP.> => ;; $$$$ => $$$$ => [$$$$||] ;; $$$x$$ => dollar
      $$self$$ => $$name$$ => ;; $$$ => $$$ => [|$$$|])")) {
    EXPECT_EQ(engine.ResolveVariableString(text.c_str()).View(), result);
    EXPECT_EQ(Told(), told) << text;
  }
}

TEST_F(TemplateEngine, StoresOnlyUnderNamesThatATextCanNeed) {
  for (const char* name : {"$$name", "name$$", "$$$", "", " $$name$$", "$$a$$b$$", "$$$$$"}) {
    EXPECT_FALSE(engine.SetVariable(name, "value") || engine.HasVariable(name)) << name;
    EXPECT_EQ(Told(), "[||" + std::string(name) + "]");
  }
  EXPECT_TRUE(!engine.SetVariable(nullptr, "value") && engine.SetVariable("$$$$", "empty name"));
  EXPECT_EQ(engine.ResolveVariableString("<$$$$>"), "<empty name>");
}

TEST_F(TemplateEngine, ASinkMayPutAnotherOneInItsPlace) {
  TemplateReportSink former = engine.SetReportSink(nullptr);
  engine.SetReportSink([this, former](const CString& message) {
    engine.SetReportSink(former);
    reports += "once ";
    former(message);
  });
  // In linear time.
  const std::string marks(1 << 20, '$');
  EXPECT_EQ(engine.ResolveVariableString(marks.c_str()).View(), marks);
  EXPECT_EQ(std::ranges::count(reports, '\n'), 1 << 18);
  reports.erase(reports.find('\n', 100) + 1);
  EXPECT_EQ(Told(), "once [$$$$||][$$$$||]");
}

/// A text in which ";" ends each line.
std::string Lines(std::string text) {
  std::ranges::replace(text, ';', '\n');
  return text;
}

TEST(OptionsFile, ReadsEveryKindOfValue) {
  OptionsFile file;
  const auto error = ReadOptionsText(
      Lines("# first a remark\r;;dqoptions 1\r;"
            R"(variable root directory "../templates";variable maker string "V\\\"\n\x41";)"
            "option 7 bool On;\tlabel \"An \xC3\xA4 on\";\tdefault 1;"
            R"(option 8 int low;label "";default -2147483648;range -2147483648 5;)"
            R"(option 9 string end;machine "Software\\V" "End";label "l";default oracle "/";)"
            R"(default "# no remark";option 10 color ink;label "l";default oracle none;)"
            R"(default 0aF1c2;option 11 binary font;label "l";default db2 0b;default none;)"
            R"(option 2147483647 directory last;label "l";default "$$root$$")"),
      file);
  ASSERT_FALSE(error) << error->line << ": " << error->text;
  std::ostringstream read;
  for (const auto& [name, value, is_directory] : file.variables) {
    read << name << (is_directory ? "/=" : "=") << value << '|';
  }
  for (const auto& option : file.options) {
    read << '\n' << option.id << option.name << ',' << option.label << ',' << option.fallback;
    for (const auto& [dbms, value] : option.platform_fallbacks) read << ',' << dbms << '=' << value;
    read << ',' << option.machine_key << ',' << option.machine_value;
  }
  EXPECT_EQ(read.str(),
            "root/=../templates|maker=V\\\"\nA|\n7On,An \xC3\xA4 on,1,,\n8low,,-2147483648,,\n"
            "9end,l,# no remark,5=/,Software\\V,End\n10ink,l,0aF1c2,5=,,\n"
            "11font,l,,4=\x0b,,\n2147483647last,l,$$root$$,,");
  EXPECT_TRUE(IsValueOf(file.options[1], "5") && !IsValueOf(file.options[1], "6") &&
              IsValueOf(file.options[1], "-2147483648") && !IsValueOf(file.options[1], "x") &&
              !IsValueOf(file.options[0], "5"));
}

/// Refuses each text with a complaint that begins so.
void ExpectRefused(const std::string& before, const std::string& table) {
  for (const auto& [text, expected] : Cases<2>(table)) {
    OptionsFile file;
    const auto error = ReadOptionsText(Lines(before + text), file);
    ASSERT_TRUE(error) << text;
    const std::string complaint = std::to_string(error->line) + ": " + error->text;
    EXPECT_TRUE(complaint.starts_with(expected)) << text << " but " << complaint;
    EXPECT_TRUE(file.options.empty() && file.variables.empty()) << text;
  }
}

TEST(OptionsFile, RefusesWhatBreaksTheFormAndSaysWhere) {
  ExpectRefused("",
                "=> 1: no options file: the line 'dqoptions 1' is missing ;; option 7 int n => 1: "
                "no options file ;; "
                "dqoptions 2 => 1: a version of the form that is not known here ;; dqoptions 1 1 "
                "=> 1: a version ;; "
                "\xEF\xBB\xBFx => 1: a character that no word has");
  ExpectRefused("dqoptions 1;", R"(
    variable a string "1";variable a string "2" => 3: a second variable with the name
    option 7 color n;default 12345 => 3: no value of the kind color
    option 7 int 7n => 2: a name is letters, digits and '_', at most 63
    option 7 binary n;default 123 => 3: no value of the kind binary
    option 0 int n => 2: an id is a number from 1 to 2147483647
    option 7 bool n;range 0 1 => 3: a range without its option, which is of the kind int
    option 7 int => 2: 'option' takes an id, a kind and a name
    option 7 binary n;machine "K" "v" => 3: 'machine' takes a key and a value's name, and no binary option has it
    options => 2: unknown word 'options'
    variable a directory b => 2: 'variable' takes a name, 'string' or 'directory', and a text
    label "l" => 2: a label without its option
    default 1 => 2: a default without its option ;; variable a int "1" => 2: 'variable' takes
    "option" 7 int n => 2: a text where a word is expected ;; option 7 float n => 2: unknown kind
    option 7 "int" n => 2: unknown kind ;; option 2147483648 int n => 2: an id)");
  ExpectRefused("dqoptions 1;option 7 int n;", R"(default "1" => 3: no value of the kind int
    machine "k" "v";machine "k" "v" => 4: a value of the machine without its option
    label "l";option 8 int m => 4: option n has no default ;; default 1 => 4: option n has no label
    label "l";label "l" => 4: a label without its option ;; default 1 # remark => 3: a character
    machine "" "v" => 3: 'machine' takes ;; label l => 3: 'label' takes a text)");
  ExpectRefused("dqoptions 1;option 7 int n;label \"l\";default 1;", R"(
    default oracle 2;default oracle 2 => 6: a second default for the platform
    range 0 1;default oracle 2 => 7: option n has a default out of its range
    range 2 3 => 6: option n has a default out of its range ;; default acme 2 => 5: unknown platform
    range 0 1;range 0 1 => 6: a range without its option
    default a b c => 5: 'default' takes a platform, if the value is one platform's, and a value
    option 8 int N => 5: a second option with the name ;; default 2 => 5: a second default
    option 7 int m => 5: a second option with the id ;; range 0 x => 5: 'range' takes two numbers
    range 1 0 => 5: a range that holds no number ;; range 1 => 5: 'range' takes)");
  ExpectRefused(
      "dqoptions 1;option 7 string n;default ",
      R"("\x4" => 3: an unknown escape in a text ;; "a => 3: a text without its closing quote ;; )"
      "\"a\"\"b\" => 3: a blank is missing ;; \"\x1b\" => 3: a control character in a text ;; "
      "\"\x7f\" => 3: a control");
}

constexpr char kOptions[] = R"(dqoptions 1;variable root directory "../t";variable word string "w"
option 10 bool Flag;label "A flag";default 1;option 11 int number;label "l";default -5
option 12 string text;label "l";default "abc";default oracle "ora";option 13 binary bytes;label "l"
default 4100;option 14 directory place;label "l";default "";option 15 color ink;label "l"
default 0102fF;option 16 string shared;label "l";machine "Software\\M" "Dir";default "none")";

/// A server that reads options files of a directory of its own and keeps values in memory.
struct OptionsServer : testing::Test {
  OptionsServer() {
    app.SetRegistryKey("Velmora");
    server.SetOptionsDirectories({(directory / "none").c_str(), directory.path().c_str()});
    server.RemoveOptions("DQLib.dqo", 1, 99999);
    traced.clear();
    directory.Put("own.dqo", Lines(kOptions));
    EXPECT_TRUE(Add("own.dqo"));
  }
  ~OptionsServer() override { SetTraceSink(former); }

  bool Add(const char* file, int from = 1, int to = 100, bool needed = true, bool shared = false) {
    return server.AddOptions(file, from, to, needed, shared);
  }
  /// The process's own server with the same options.
  CDQOptionsServer& ProcessServer() {
    CDQOptionsServer& process = *CDQOptionsServer::GetObject();
    process.SetOptionsDirectories({directory.path().c_str()});
    EXPECT_TRUE(process.AddOptions("own.dqo", 1, 100, true, false));
    return process;
  }
  /// The values in the registry: "id=type:data ...".
  std::string Kept() {
    std::string kept;
    const auto values = Dump(registry)[kSection];
    for (const auto& [name, value] : values) {
      kept += name + "=" + std::to_string(value.first) + ":" + value.second + " ";
    }
    return kept;
  }
  std::string Ids() { return testing::PrintToString(server.GetOptionIDs()); }
  static constexpr char kSection[] = "Software\\Velmora\\My Tool\\Options";

  CWinApp app{"My Tool"};
  TempDirectory directory;
  MemoryRegistry registry;
  std::string traced;
  TraceSink former = SetTraceSink([this](std::string_view text) { traced += text; });
  CDQOptionsServer server;
};

TEST_F(OptionsServer, KeepsValuesByKindInTheRegistry) {
  EXPECT_TRUE(server.SetBool(10, false) && server.SetInt(11, -2) && server.SetString(12, "x") &&
              server.SetString(15, "00ff00"));
  EXPECT_TRUE(server.SetBinary(13, reinterpret_cast<const BYTE*>("\0\1"), 2));
  EXPECT_TRUE(server.SetString(14, nullptr)) << "which is no change";
  EXPECT_EQ(Kept(), "10=4:\0\0\0\0 11=4:\xFE\xFF\xFF\xFF 12=1:x\0 13=3:\0\1 15=1:00ff00\0 "s);
  CDQOptionsServer& other = ProcessServer();  // as after a restart
  EXPECT_TRUE(!other.GetBool(10) && other.GetInt(11) == -2 && other.GetString(12) == "x");
  BYTE* data = nullptr;
  UINT size = 0;
  ASSERT_TRUE(other.GetBinary(13, &data, &size));
  EXPECT_EQ(std::string(data, data + size), "\0\1"s);

  registry.changes = 0;
  EXPECT_TRUE(other.SetInt(11, -2) && registry.changes == 0) << "it is in force already";
  EXPECT_TRUE(other.UnsetValue(11) && other.UnsetValue(11) && !other.UnsetValue(99));
  EXPECT_TRUE(other.GetInt(11) == -5 && Kept().find("11=") == std::string::npos);
  EXPECT_FALSE(other.HoldValue(11, "x") || other.HoldValue(1, "1"));
  EXPECT_TRUE(other.HoldValue(11, "-2") && other.GetInt(11) == -2);
  EXPECT_EQ(server.GetInt(11), -5) << "it was kept";
  EXPECT_TRUE(other.UnsetValue(11) && other.GetInt(11) == -5);
}

TEST_F(OptionsServer, RefusesValuesOfAnotherKindAndHoldsThoseThatTheRegistryRefuses) {
  EXPECT_FALSE(server.SetBool(11, true) || server.SetInt(10, 1) || server.SetString(11, "1") ||
               server.SetString(13, "41") || server.SetString(15, "12345g") ||
               server.SetBinary(12, nullptr, 0) || server.SetValue(10, "2") ||
               server.SetValue(12, "a\0b"s) || server.SetInt(99, 1));
  EXPECT_TRUE(traced.empty() && registry.changes == 0 && server.GetInt(12) == 0);
  registry.refusal = {platform::ErrorKind::kNoSpace, 28};
  EXPECT_FALSE(server.SetInt(11, 8));
  EXPECT_EQ(traced, "Option 11 could not be kept: No space left on device\n");
  EXPECT_TRUE(server.GetInt(11) == 8 && Kept().empty());
  registry.refusal = {};
  EXPECT_TRUE(server.SetInt(11, 8));
  registry.refusal = {platform::ErrorKind::kNoSpace, 28};
  EXPECT_TRUE(!server.UnsetValue(11) && server.GetInt(11) == 8);
  EXPECT_TRUE(traced.ends_with("\nOption 11 could not be reset: No space left on device\n"));
  EXPECT_EQ(Kept(), "11=4:\b\0\0\0 "s);
}

TEST_F(OptionsServer, ReadsItsOwnValueThenTheMachinesThenTheDefault) {
  const HKEY user = registry.CreateKey(kCurrentUser, kSection).value;
  const HKEY machine = registry.CreateKey(kLocalMachine, "Software\\M").value;
  for (const auto& [key, name, type, data, id, value] :
       Rows<HKEY, const char*, DWORD, std::string, int, std::string>{
           {user, "10", REGISTRY_DWORD, "\2\0\0\0"s, 10, "1"},
           {user, "11", REGISTRY_DWORD, "123", 11, "-5"},
           {user, "12", REGISTRY_BINARY, "abd", 12, "abc"},
           {user, "13", REGISTRY_STRING, "x", 13, "A\0"s},
           {user, "15", REGISTRY_STRING, "red", 15, "0102fF"},
           // The zero behind a text need not be there, and a long text comes whole.
           {user, "12", REGISTRY_STRING, std::string(5000, 'x'), 12, std::string(5000, 'x')},
           {machine, "Dir", REGISTRY_DWORD, "1234", 16, "none"},
           {machine, "Dir", REGISTRY_STRING, "/opt\0"s, 16, "/opt"},
           {user, "16", REGISTRY_STRING, "/home", 16, "/home"}}) {
    registry.SetValue(key, name, type, data);
    EXPECT_EQ(server.GetValue(id), value) << id;
  }
}

TEST_F(OptionsServer, GivesEachPlatformItsOwnValue) {
  server.SetString(12, "all");
  server.SetPlatform(DBMS_ORACLE);
  EXPECT_EQ(server.GetString(12), "ora");
  server.SetString(12, "mine");
  server.SetInt(11, 3);
  EXPECT_EQ(Kept(), "11=4:\3\0\0\0 12=1:all\0 12.oracle=1:mine\0 "s);
  for (const DBMS platform : {DBMS_ORACLE, DBMS_SYBASE, DBMS_NONE, static_cast<DBMS>(99)}) {
    server.SetPlatform(platform);
    EXPECT_EQ(server.GetString(12), platform == DBMS_ORACLE ? "mine" : "all") << platform;
  }
}

TEST_F(OptionsServer, TellsOnceThatAValueCannotBeReadAndAsksAgain) {
  ScriptedPrompts prompts;
  const ShownBox told{
      "Settings could not be read. Until they can, their defaults hold.\n"
      "Cause: in use by another program.",
      BOX_EXCLAMATION};
  const HKEY machine = registry.CreateKey(kLocalMachine, "Software\\M").value;
  registry.SetValue(machine, "Dir", REGISTRY_STRING, "/opt");
  ASSERT_TRUE(server.SetInt(11, 8) && server.SetString(12, "x"));
  for (const std::size_t boxes : {2U, 4U}) {
    registry.unreadable = {platform::ErrorKind::kBusy, 16};
    EXPECT_TRUE(server.GetString(12) == "abc" && server.GetReadError().code == 16);
    EXPECT_EQ(server.GetInt(11), boxes == 2 ? -5 : 8) << "the last time it had not changed";
    EXPECT_EQ(app.GetProfileInt("Options", "11", 7), 7U);
    EXPECT_TRUE(server.GetString(16) == "none" && server.GetReadError().code == 16);
    registry.unreadable = {};
    EXPECT_EQ(server.GetInt(11), 8) << "a default was remembered";
    EXPECT_TRUE(server.GetString(16) == "/opt" && server.GetReadError().ok());
    EXPECT_EQ(prompts.shown, std::vector(boxes, told)) << "the user's part and the machine's";
  }
  registry.unreadable = {platform::ErrorKind::kBusy, 16};
  EXPECT_TRUE(server.SetString(12, "abc")) << "the default, which isn't known to be in force";
  registry.unreadable = {};
  EXPECT_EQ(Kept(), "11=4:\b\0\0\0 12=1:abc\0 "s);
}

TEST_F(OptionsServer, RegistersARangeOfAFileOnceAndRemovesIt) {
  server.RemoveOptions("own.dqo", 11, 100);
  server.SetBool(10, false);
  EXPECT_TRUE(Ids() == "{ 10 }" && server.GetOptionIDByName("NUMBER") == -1);
  EXPECT_TRUE(Add("own.dqo", 11, 11) && Add("own.dqo", 10, 11, true, true));
  EXPECT_TRUE(Ids() == "{ 10, 11 }" && server.GetOptionIDByName("NUMBER") == 11);
  EXPECT_EQ(server.GetOptionNameByID(11) + server.GetOptionNameByID(12), "number");
  server.RemoveOptions(server.GetOptionByID(10)->GetFile(), 1, 100);
  EXPECT_EQ(Ids(), "{}");
  EXPECT_TRUE(Add("own.dqo", 10, 11, true, true));
  EXPECT_FALSE(server.GetBool(10)) << "a removed option's value stays kept";
}

TEST_F(OptionsServer, GivesTheMemoryOfARemovedOptionsBytesBack) {
  const auto allocations_to_read = [this] {
    BYTE* data = nullptr;
    UINT size = 0;
    const int before = t_countdown;
    return server.GetBinary(13, &data, &size) ? before - t_countdown : 0;
  };
  allocations_to_read();
  const int again = allocations_to_read();
  server.RemoveOptions("own.dqo", 1, 100);
  EXPECT_TRUE(Add("own.dqo") && allocations_to_read() > again) << "they need a place anew";
}

TEST_F(OptionsServer, ReadsAFileAnewUnlessItIsShared) {
  EXPECT_EQ(server.ResolveVariableString("$$word$$ $$root$$/x"),
            ("w " + directory.path().substr(0, directory.path().rfind('/')) + "/t/x").c_str());
  server.SetVariable("$$word$$", "set");
  server.RemoveOptions("own.dqo", 1, 100);
  Add("own.dqo", 1, 100, true, true);
  EXPECT_EQ(server.ResolveVariableString("$$word$$"), "set");
  Add("own.dqo");
  EXPECT_EQ(server.ResolveVariableString("$$word$$"), "w");

  CDQOption* const flag = server.GetOptionByID(10);
  directory.Put("own.dqo", Lines(R"(dqoptions 1;option 11 int Flag;label "l";default 1;)"
                                 R"(option 10 bool number;label "changed";default 0)"));
  Add("own.dqo", 1, 100, true, true);
  EXPECT_EQ(flag->GetShortName(), "A flag");
  Add("own.dqo");
  EXPECT_TRUE(flag->GetShortName() == "changed" && !flag->GetBool());
  EXPECT_EQ(server.GetOptionIDByName("flag"), 11);
  EXPECT_EQ(Ids(), "{ 10, 11 }") << "the file has the others no longer";
}

TEST_F(OptionsServer, ChangesNothingForAFileItCannotTake) {
  directory.Put("broken.dqo", Lines(R"(dqoptions 1;option 20 int a;label "l";default 1;;option;)"));
  directory.Put("taken.dqo", Lines(R"(dqoptions 1;option 20 int a;label "l";default 1;)"
                                   R"(option 10 int b;label "l";default 1)"));
  directory.Put("named.dqo", Lines(R"(dqoptions 1;option 20 int FLAG;label "l";default 1)"));
  const std::string path = directory.path(), endless = path + "/" + std::string(300, 'x');
  for (const auto& [file, reason] : Rows<const char*, std::string>{
           {"broken.dqo", path + "/broken.dqo(6): 'option' takes an id, a kind and a name\n"},
           {"taken.dqo", path + "/taken.dqo: option 10 is one of own.dqo\n"},
           {"named.dqo", path + "/named.dqo: option 20 has the name of option 10\n"},
           {"absent.dqo", "The options file 'absent.dqo' could not be found.\n"},
           {nullptr, "The options file '' could not be found.\n"},
           {path.c_str(), path + ": no options file\n"},
           {"/dev/zero", "/dev/zero: no options file\n"},
           {endless.c_str(), endless + ": File name too long\n"}}) {
    traced.clear();
    EXPECT_TRUE(!Add(file) && !server.GetOptionByID(20)) << reason;
    EXPECT_EQ(traced, reason);
  }
  EXPECT_TRUE(Add("absent.dqo", 1, 100, false) && !Add("broken.dqo", 1, 100, false));
  EXPECT_TRUE(Add("taken.dqo", 1, 100, true, true));
  EXPECT_TRUE(server.GetOptionByID(10)->GetKind() == OptionKind::kBool && server.GetInt(20) == 1);
}

TEST_F(OptionsServer, FindsAndMakesAppDirectories) {
  const ScopedVariable config("XDG_CONFIG_HOME", directory / "data");
  ScriptedPrompts prompts;
  const std::string fallback = directory / "data/Velmora/MyTool/CFG/";
  for (const bool create : {false, true}) {
    EXPECT_EQ(server.GetAppDirectory(14, "CFG", "Label", create), fallback.c_str());
    EXPECT_EQ(directory.Mode("data/Velmora/MyTool/CFG") != 0, create);
  }

  server.SetVariable("$$here$$", directory.path().c_str());
  server.SetString(14, "$$here$$/a/b/");
  EXPECT_EQ(server.GetAppDirectory(14, "CFG", "Label", true), (directory / "a/b/").c_str());

  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(directory.path());
  server.SetString(14, "r/s");
  EXPECT_STREQ(server.GetAppDirectory(14, "CFG", "Label", true), "r/s/");
  std::filesystem::current_path(before);
  EXPECT_NE(directory.Mode("r/s"), 0u);

  server.SetString(14, "$$here$$/own.dqo/c");
  EXPECT_EQ(server.GetAppDirectory(14, "CFG", "Label", true), "");
  EXPECT_EQ(prompts.shown.at(0).text,
            "Label:\nThe directory " + (directory / "own.dqo/c/") + " could not be created.");
  for (const char* none : {"", static_cast<const char*>(nullptr)}) {
    server.SetString(14, "$$here$$/own.dqo/c");
    server.GetAppDirectory(14, "CFG", none, true);
    EXPECT_TRUE(prompts.shown.back().text.starts_with("The directory "));
    server.SetString(14, "");
    EXPECT_EQ(server.GetAppDirectory(14, none, "Label", false).View(),
              directory / "data/Velmora/MyTool/");
  }
  const ScriptedPlatform nowhere;
  EXPECT_EQ(server.GetAppDirectory(14, "CFG", "Label", false), "") << "of a user without a place";
}

TEST_F(OptionsServer, ShowsATextOptionAsAColorAndSavesTheChangesOfADialogOnce) {
  CDQOptionsServer& process = ProcessServer();
  CDQStringOption ink(15);
  EXPECT_EQ(ink.GetColorRef(7), 7U);
  EXPECT_TRUE(ink.Load() && ink.GetColorRef(7) == RGB(0x01, 0x02, 0xFF));
  process.SetString(15, "");
  EXPECT_TRUE(!ink.Load() && ink.GetColorRef(7) == 7);

  CDQOptionDataArrayList list;
  CDQOptionDataArray& array = *list.AddArray();
  process.SetPlatform(DBMS_ORACLE);
  EXPECT_TRUE(array.AddOption(11, true, false) && array.AddOption(12, false, true));
  EXPECT_FALSE(array.AddOption(12, true, true) || array.AddOption(99, true, true));
  EXPECT_TRUE(array.GetFirstFlag(0) && !array.GetFirstFlag(1) && array.GetSecondFlag(1));
  EXPECT_TRUE(list.GetArray(0) == &array && !list.GetArray(-1) && !list.GetArray(1));
  process.SetPlatform(DBMS_NONE);
  EXPECT_TRUE(!array.SetValue(0, "x") && array.SetValue(1, "new"));
  for (const bool refused : {true, false}) {
    registry.refusal = {refused ? platform::ErrorKind::kNoSpace : platform::ErrorKind::kNone, 28};
    EXPECT_EQ(list.SaveOptions(), !refused) << "and once more if it was";
  }
  process.SetInt(11, 1);
  EXPECT_TRUE(list.SaveOptions() && process.GetInt(11) == 1) << "only what was changed";
  EXPECT_EQ(process.GetString(12), "abc");
  process.SetPlatform(DBMS_ORACLE);
  EXPECT_EQ(process.GetString(12), "new");
  process.SetPlatform(DBMS_NONE);
  array.SetValue(0, "9");
  array.LoadOptions();
  EXPECT_EQ(array.GetValue(0) + array.GetValue(1), "1new");
  process.SetInt(11, 2);
  EXPECT_TRUE(list.SaveOptions() && process.GetInt(11) == 2) << "there is no change any more";
}

TEST_F(OptionsServer, HasTheShippedOptions) {
  CDQOptionsServer shipped;
  ASSERT_EQ(traced, "");
  ASSERT_TRUE(shipped.AddOptions("DQSyntax.Dqo", 52500, 52639, true, true)) << traced;
  CString delimiters;
  for (const DBMS platform :
       {DBMS_SYBASE, DBMS_SQLSERVER, DBMS_DB2, DBMS_ORACLE, DBMS_DB2OS390, DBMS_NONE}) {
    delimiters += shipped.GetCommandDelimiter(platform) + " ";
  }
  EXPECT_EQ(delimiters, "go go ; / ;  ");
  EXPECT_EQ(shipped.GetOptionIDByName("syntax_coloring"), 52500);

  // An installed program has them beside its own directory.
  ScriptedPlatform platform;
  platform.modules.path = directory / "bin/tool";
  std::filesystem::create_directories(directory / "bin");
  std::filesystem::create_directories(directory / "share/dqlib/options");
  directory.Put("share/dqlib/options/DQLib.dqo",
                Lines(R"(dqoptions 1;option 7 int n;label "l";default 1)"));
  EXPECT_EQ(CDQOptionsServer().GetOptionIDs(), std::vector{7});
}

TEST(OptionReading, ANumberIsNeverOlderThanTheLastChangeOfAnyProcess) {
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
  for (const bool value : {true, false, true}) {
    EXPECT_TRUE(server.SetBool(50270, value) && server.GetBool(50270) == value);
    ForkedProcess other([&] {
      if (!server.SetBool(50270, !value) || server.GetBool(50270) == value) std::_Exit(1);
    });
    ASSERT_TRUE(other.EndsWell());
    EXPECT_EQ(server.GetBool(50270), !value);
  }
  ASSERT_TRUE(server.SetBool(50270, true));
  const CWinApp another("Another Tool");
  EXPECT_FALSE(server.GetBool(50270)) << "another application has options of its own";
}

TEST(Pictures, CanAllBeToldApart) {
  std::string all;
  std::set<std::string> seen;
  CBitmap bitmap;
  for (UINT id = 3000; id <= 3222; ++id) {
    ASSERT_TRUE(DQRESOURCES_LoadBitmap(bitmap, id)) << id;
    const auto [picture, is_new] = seen.insert(WriteDib(*bitmap.GetSafeHandle()));
    EXPECT_TRUE(is_new) << id;
    all += *picture;
    ASSERT_NE(DQRESOURCES_LoadCursor(id), nullptr) << id;
  }
  EXPECT_EQ(platform::Checksum(all), 0xFB798C05U) << "what they show";
  const HBITMAP last = bitmap.GetSafeHandle();
  EXPECT_FALSE(DQRESOURCES_LoadBitmap(bitmap, 3223));
  EXPECT_EQ(bitmap.GetSafeHandle(), last);
}

}  // namespace
}  // namespace dq::test
