// What a program is, and what it tells: its identity and version, and messages of its own, of the
// system and of the database to the main window and in boxes.

#include "tests/support/doubles.h"
#include "tests/support/failing_memory.h"
#include "tests/support/forwarding_files.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// An identity on a host whose version resource holds the texts.
struct ApplicationInfo : testing::Test {
  ~ApplicationInfo() override {
    CDQApplicationInfo::SetAppCode("");
    SetVersion({});
  }
  static void SetVersion(const platform::VersionTable& table) {
    platform::Current().version_resources->SetTable("/opt/host", table);
  }
  /// Long, medium and short version, major and minor version and build number.
  static std::string Versions(const CDQApplicationInfo& info) {
    std::ostringstream told;
    told << info.GetLongVersionNumber().View() << ' ' << info.GetMediumVersionNumber().View() << '|'
         << info.GetShortVersionNumber().View() << '|' << info.GetMajorVersionNumber() << '|'
         << info.GetMinorVersionNumber() << '|' << info.GetBuildNumber();
    return told.str();
  }
  /// Directory, key and options file.
  static std::string Places(CDQApplicationInfo& info) {
    return std::string(info.GetExecutableDirectory() + "|" + info.GetRegistryKey() + "|" +
                       info.GetOptionsFile() + "|");
  }
  ScriptedPlatform platform;
};

TEST_F(ApplicationInfo, VersionNumbersAreCutAtTheDots) {
  for (const std::string row :
       {"7.1.2.3 7.1.2|7.1|7|1|3", "7.10.5.44 7.10.5|7.10|7|0|44", "7.1 ||7|0|0", " ||0|0|0",
        "1..2.3.4 1..2|1.|1|0|3", "12.3.4 |12.3|12|3|0"}) {
    SetVersion({{"FileVersion", row.substr(0, row.find(' '))}});
    EXPECT_EQ(Versions(CDQApplicationInfo()), row);
  }
}

TEST_F(ApplicationInfo, TheExecutableGivesDirectoryKeyAndOptionsFileUnlessTheCodeDoes) {
  CWinApp app("name");
  // The code and the path; directory, key, options file, and which of the applications it is.
  for (const auto& [code, path, told] : Cases<3>(R"(=> c:\bin\TOOL.EXE => c:\bin|TOOL|TOOL.dqo|0000
      => \\server\share\a.v2.exe => \\server\share|a.v2|a.v2.dqo|0000
      Lumen SQL => /tmp/tool => /tmp|tool|LumenSQL.dqo|1000
      Velmora Delta Keeper => tool => |tool|tool.dqo|0100 ;; LumenSQL => tool => |tool|tool.dqo|0000
      velmora pacer => tool => |tool|DQPacer.dqo|0001 ;; QUILLBASE => tool => |tool|Quill.dqo|0010
      lUMEN sql => /tool => |tool|LumenSQL.dqo|1000)")) {
    app.SetExecutablePath(path.c_str());
    CDQApplicationInfo::SetAppCode(code.c_str());
    CDQApplicationInfo info;
    std::ostringstream all;
    all << Places(info) << info.IsAppLumenSql() << info.IsAppDeltaKeeper() << info.IsAppQuillbase()
        << info.IsAppDQPacer();
    EXPECT_EQ(all.str(), told);
    info.SetOptionsFile("own.dqo");
    EXPECT_STREQ(info.GetOptionsFile(), "own.dqo");
  }
  app.SetExecutablePath(std::string(300, 'x').c_str());
  EXPECT_EQ(CDQApplicationInfo().GetExecutablePath().GetLength(), 259);
}

TEST_F(ApplicationInfo, RunsFromTheNetworkWhereTheDriveOrTheNearestDirectoryIsRemoteOrUnknown) {
  struct : ForwardingFiles {
    UINT KindOfDrive(std::string_view place) override {
      return place.size() > 4 ? UINT{DRIVE_KIND_NO_ROOT} : kind;
    }
    UINT kind = 0;
  } files;
  const platform::ScopedPlatform scope{With(&platform::Platform::files, &files)};
  CWinApp app("name");
  for (const char* path : {"c:\\bin\\tool.exe", "/tmp/none/tool"}) {
    app.SetExecutablePath(path);
    std::string told;
    for (files.kind = 0; files.kind < 7; ++files.kind) {
      told += CDQApplicationInfo().RunningFromNetwork() ? '1' : '0';
    }
    EXPECT_EQ(told, "1100100") << path;
  }
}

TEST_F(ApplicationInfo, VersionTextsAreThoseOfTheFirstTranslationAndNotAssigned) {
  platform::VersionTable table = {{"Translation", "0407,04e4"}, {"Comments", "c"}};
  for (const char* name : {"CompanyName", "FileDescription", "LegalCopyright", "LegalTrademarks",
                           "OriginalFileName", "ProductVersion"}) {
    table[name] = name;
  }
  SetVersion(table);
  CDQApplicationInfo info;
  EXPECT_EQ(info.GetLanguageString() + info.GetCompanyName() + info.GetInternalName() +
                info.GetFileDescription() + info.GetLegalCopyright() + info.GetLegalTrademarks() +
                info.GetOriginalFileName() + info.GetProductVersion(),
            "040704e4CompanyNameFileDescriptionLegalCopyrightLegalTrademarks"
            "OriginalFileNameProductVersion");
  SetVersion({{"FileVersion", "5.6.7.8"}, {"Comments", "new"}, {"ProductName", "sold"}});
  CWinApp app("name");
  app.SetExecutablePath("/bin/tool");
  CDQApplicationInfo source;
  source.SetTitle("title");
  source.SetSplashIDB(9);
  EXPECT_EQ(source.GetProductName() + Places(source).c_str(), "sold/bin|tool|tool.dqo|");
  app.SetExecutablePath("/else/where");
  info = source;
  EXPECT_EQ(Versions(info) + Places(info), "5.6.7.8 5.6.7|5.6|5|6|8/bin|tool|tool.dqo|");
  EXPECT_EQ(info.GetTitle() + info.GetExecutablePath() + info.GetProductName() + info.GetComments(),
            "title/bin/toolsoldc");
  EXPECT_EQ(info.GetSplashIDB(), 9U);
  // The file is looked for, and then its resource read, before which the former one goes.
  for (int number = 1; !info.GetComments().IsEmpty(); ++number) {
    ASSERT_LT(number, 100);
    FailAllocation(number);
    try {
      info.GetVersionInfo();
    } catch (const std::bad_alloc&) {
    }
    AllocationFailed();
  }
  platform::Current().version_resources->SetTable(std::string(259, 'x'), {{"Comments", "of x"}});
  platform.modules.path.assign(300, 'x');
  EXPECT_EQ(CDQVersionInfo().GetComments(), "of x");
  SetVersion({});
  CDQVersionInfo none("/opt/host");
  EXPECT_TRUE(none.GetVersionInfo() == 0 && none.GetLanguageString() == "00000000");
}

TEST(OutputMessageTraits, TellSourceAndKind) {
  std::string told;
  for (int type = -1; type < 9; ++type) {
    const OutputMessageTraits& traits = GetOutputMessageTraits(type);
    told += std::to_string(static_cast<int>(traits.kind)) + std::string(CString(traits.family)) +
            std::to_string(traits.source_id) + " ";
  }
  EXPECT_EQ(told,
            "0Program0 0Program0 1Program0 2Program0 0DBMS0 1DBMS0 2DBMS0 344030 444031 "
            "0Program0 ");
}

TEST(CDQOutputMessage, IsNullAndTracedWhenMemoryRunsOut) {
  std::string traced;
  traced.reserve(100);
  const TraceSink former = SetTraceSink([&](std::string_view text) { traced += text; });
  FailAllocation(1);
  EXPECT_EQ(CDQOutputMessage::CreateOutputMessage(OUTPUT_DBMS_INFO, "text", false), nullptr);
  EXPECT_TRUE(AllocationFailed());
  SetTraceSink(former);
  EXPECT_EQ(traced, "Out of memory, could not create CDQOutputMessage.\n");
}

/// The output message of a send that is under way.
CDQOutputMessage& Output(const MSG& sent) {
  return *reinterpret_cast<CDQOutputMessage*>(sent.lParam);
}

/// The number and the arguments; of an output message, its type, text and target.
std::string Told(const MSG& sent) {
  std::string told = std::to_string(sent.message) + " " + std::to_string(sent.wParam) + " ";
  if (sent.message != 33801) return told + std::to_string(sent.lParam) + "; ";
  const CDQOutputMessage& output = Output(sent);
  told += std::to_string(output.GetType()) + " ";
  return told.append((output.GetText() + "|" + output.GetTarget() + "; ").View());
}

TEST(CDQOutputMessage, IsWithTheMainWindowWhichMayDeleteItWhenTheSendReturns) {
  CDQOutputMessage message(static_cast<OutputMessageType>(8), "old");
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO);
  message.SendErrorMessage(static_cast<const char*>(nullptr), "no window");
  EXPECT_EQ(message.GetText() + "|" + message.GetTarget(), "|no window");
  message.SetType(static_cast<OutputMessageType>(-1));
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO);
  MainWindow window;
  std::string told;
  window.on_message = [&](const MSG& sent) {
    EXPECT_EQ(&Output(sent), &message);
    told += Told(sent);
  };
  message.SendErrorMessage("first", "kept");
  message.SendInfoMessage("hello");
  message.SendInfoMessage(IDS_UNKNOWN_OS_ERROR);
  message.SendErrorMessage("bad", nullptr);
  message.SendErrorMessage(message.GetTarget(), message.GetText());
  message.SendErrorMessage("of more bytes than before", message.GetText());
  message.SendErrorMessage(IDS_UNKNOWN_OS_ERROR, "T");
  message.SendErrorMessage("bad", "");
  EXPECT_EQ(told,
            "33801 1 2 first|kept; 33801 0 0 hello|kept; 33801 0 0 Unknown OS Error|kept; "
            "33801 0 2 bad|kept; 33801 1 2 kept|bad; 33801 1 2 of more bytes than before|kept; "
            "33801 1 2 Unknown OS Error|T; 33801 1 2 bad|; ");
  window.on_message = [&](const MSG& sent) {
    told = Told(sent) + (Output(sent).GetAutoDelete() ? "deleted" : "kept");
    delete &Output(sent);
  };
  CDQOutputMessage::CreateOutputMessage(OUTPUT_DBMS_INFO, "x", true)->SendErrorMessage("end", "T");
  EXPECT_EQ(told, "33801 1 2 end|T; deleted");
}

TEST(CDQSystemErrorMsg, ReadsTheLastErrorOnceAndShowsThePlaceIfThereIsOne) {
  ScriptedPlatform platform;
  ScriptedPrompts prompts;
  platform.errors.last = 2;
  platform.errors.texts = {{2, "100%s\r\n"}, {3, "three\r\n"}};
  CDQSystemErrorMsg message;
  EXPECT_EQ(message.GetErrorMessage(), "100%s\r\n");
  platform.errors.last = 3;
  EXPECT_EQ(message.GetErrorCode(), 2);
  message.SetErrorCode(4);
  EXPECT_EQ(message.GetErrorMessage() + RetrieveOSErrorMessage(2) + RetrieveOSErrorMessage(4),
            "100%s\r\nUnknown OS Error");
  platform.errors.last = 2;
  CDQSystemErrorMsg("a%d.cpp", 7).Show();
  CDQSystemErrorMsg("a.cpp", -1).Show();
  CDQSystemErrorMsg("", 7).Show();
  CDQSystemErrorMsg(3).Show();
  CDQSystemErrorMsg(4).Show();
  const char* const placed = "Error: 100%s\r\n\nFile: a%d.cpp,  Line 7";
  EXPECT_EQ(prompts.shown,
            (std::vector<ShownBox>{
                {placed, 48}, {"100%s\r\n", 48}, {"100%s\r\n", 48}, {"three\r\n", 48}, {"", 48}}));
}

TEST(NetworkErrorHandler, ShowsWhatItCanFindOut) {
  using platform::NetworkError;
  const std::string cut = "%d %s" + std::string(250, 'x');
  const Rows<DWORD, platform::Result<NetworkError>, int, std::string> rows = {
      {0xFFFFFFFF, NetworkError{9, "unused", "unused"}, 1, "Network error -1.\r\n"},
      {1208, NetworkError{9, "route", "Acme"}, 1, "Acme failed with error code9.\r\nroute"},
      {1208, NetworkError{0xFFFFFFFF, cut + "x", cut + "x"}, 1,
       cut + " failed with error code-1.\r\n" + cut},
      {1208, platform::Error{platform::ErrorKind::kNotFound, 61}, 0,
       "WNetGetLastError failed with error 61."}};
  for (const auto& [code, last, result, text] : rows) {
    ScriptedPlatform platform;
    ScriptedPrompts prompts;
    platform.network.last = last;
    EXPECT_EQ(NetworkErrorHandler(code), result) << text;
    EXPECT_EQ(prompts.shown, (std::vector<ShownBox>{{text, 16, 0}}));
  }
}

TEST(DQDBErrorHandler, OpensThePaneBeforeEachLineAndEndsSilently) {
  struct BrokenRecord : ErrorRecord {
    BrokenRecord() : ErrorRecord("") {}
    CString GetErrorDescription() const override { throw 7; }
  };
  Errors errors;
  for (const char* text : {"one", "100%s", "lost"}) errors.Add(std::make_unique<ErrorRecord>(text));
  errors.Add(std::make_unique<BrokenRecord>());
  errors.Add(std::make_unique<ErrorRecord>("behind"));
  MainWindow window;
  std::string told;
  window.on_message = [&](const MSG& sent) {
    told += Told(sent);
    if (told.find("100%s") == std::string::npos) return;
    window.DestroyWindow();
    window.app.m_pMainWnd = nullptr;
  };
  EXPECT_NO_THROW(DQLIB_DQDBErrorHandler(errors));
  EXPECT_EQ(told, "33818 0 1; 33801 0 5 one|; 33818 0 1; 33801 0 5 100%s|; ");
  ASSERT_TRUE(errors.MoreErrors());
  EXPECT_EQ(errors.GetNextError().GetErrorDescription(), "behind");
}

}  // namespace
}  // namespace dq::test
