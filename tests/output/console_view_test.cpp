#include "dqlib/output/console_text.h"
#include "tests/support/doubles.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

TEST(ConsoleText, IsTheSameWhereverItsBytesAreCut) {
  for (const auto& [page, bytes, text] : Rows<UINT, std::string, std::string>{
           {0, "a\nb\r\n\n\r\r\nc\r50%\r", "a\r\nb\r\n\r\n\r\r\nc\r50%\r"},
           {0, {"\0a\r\0\n\0", 6}, "a\r\n"},
           {0, "\xE2\x82\xAC\xC3\xBC\xF0\x9F\x98\x80\xE2\x82", "€ü😀\xE2\x82"},
           {0, "\xF0\x41\xC3\n\x80\x80\x80\x80\xFF\xED",
            "\xF0\x41\xC3\r\n\x80\x80\x80\x80\xFF\xED"},
           {932, "\x81\x5C\x81\x41\n\x81", "\x81\x5C\x81\x41\r\n\x81"}}) {
    ScriptedLocale locale;
    locale.SetCodePage(page);
    for (const std::size_t size : {1, 2, 3, 5, 99}) {
      detail::ConsoleText console;
      std::string shown;
      for (std::size_t at = 0; at < bytes.size(); at += size) {
        const std::string taken = console.Take(bytes.substr(at, size));
        EXPECT_FALSE(taken.ends_with("\xE2\x82") || taken.ends_with('\x81')) << "held back";
        shown += taken;
      }
      EXPECT_EQ(shown + console.Rest(), text) << size;
    }
  }
}

/// Every test ends with what it began with: no pipe, no process.
struct ConsoleViewTest : testing::Test {
  struct View : CDQConsoleProgramView {
    ~View() override { EndInDestructor(); }
    using CDQConsoleProgramView::CreateShellRedirect;
    void PostNcDestroy() override { last_text = Text(); }
    std::string last_text;
  };
  /// Told when the view's text changes.
  struct Parent : CWnd {
    BOOL OnCommand(WPARAM wparam, LPARAM) override {
      if (HiWord(wparam) == EN_CHANGE && on_change) on_change();
      return 1;
    }
    std::function<void()> on_change;
  };

  ConsoleViewTest() { parent_.CreateWnd({.class_name = "Parent", .parent = &main_}); }
  ~ConsoleViewTest() override {
    view_.DestroyWindow();
    EXPECT_TRUE(Eventually([] { return Children().empty(); })) << Children();
    EXPECT_TRUE(Eventually([this] { return OpenDescriptors() == descriptors_; }));
  }

  bool Open(const char* command) {
    view_.SetCommandLine(command);
    return view_.Create(&parent_, {0, 0, 90, 90}, 7, static_cast<CDocument*>(nullptr));
  }
  /// In the test's directory.
  bool OpenScript(const std::string& text) {
    return Open(("sh " + files_.Put("script", "cd " + files_.path() + "\n" + text)).c_str());
  }
  bool Await(std::string_view end) {
    return PumpUntil([&] { return view_.Text().ends_with(end); }, 60'000);
  }
  bool AwaitEnd() {
    return PumpUntil([&] { return view_.GetSafeHwnd() == nullptr; }, 60'000);
  }
  void Type(std::string_view keys) {
    for (const char key : keys) view_.SendMessage(WM_CHAR, static_cast<unsigned char>(key));
  }

  const std::ptrdiff_t descriptors_ = OpenDescriptors();
  TempDirectory files_;
  MainWindow main_;
  Parent parent_;
  View view_;
};

TEST_F(ConsoleViewTest, SendsWhatIsTypedBehindTheOutputOnceWithEachEnter) {
  ASSERT_TRUE(
      OpenScript("printf '> '; while read -r x; do printf '%s|' \"$x\" >>all\n"
                 "test \"$x\" = quiet || printf '(%s)\\n> ' \"$x\"; done; printf end"));
  ASSERT_TRUE(Await("> "));
  const LOGFONT& font = view_.GetFont()->GetLogFont();
  EXPECT_STREQ(font.lfFaceName, "FixedSys");
  EXPECT_TRUE(font.lfWeight == 400 && font.lfCharSet == 134);
  Type("\bquiex\bt\r");
  ASSERT_EQ(view_.Text(), "> quiet\r\n");
  Type("\b\xC3\xBC w\r");
  ASSERT_TRUE(Await("> "));
  EXPECT_EQ(view_.Text(), "> quiet\r\n\xC3\xBC w\r\n(\xC3\xBC w)\r\n> ") << "nothing is sent twice";
  const int end = view_.GetWindowTextLength();
  CString input;
  // What is selected, the key or character, and the text behind the prompt.
  for (const auto& [from, to, down, key, text] :
       Rows<int, int, bool, int, std::string>{{1, 1, false, '\b', ""},
                                              {0, end, false, '\b', ""},
                                              {0, 3, true, VK_DELETE, ""},
                                              {3, 5, false, 'a', "a"},
                                              {end, end + 1, false, 'b', "ab"},
                                              {0, end + 1, true, VK_DELETE, "a"},
                                              {end + 1, end + 1, false, 'c', "ac"}}) {
    view_.SetSel(from, to);
    view_.SendMessage(down ? WM_KEYDOWN : WM_CHAR, static_cast<WPARAM>(key));
    EXPECT_EQ(view_.Text().substr(static_cast<std::size_t>(end)), text);
  }
  view_.GetUserInput(input);
  EXPECT_EQ(input, "ac");
  view_.AddText(" & more");
  view_.CloseInput();
  Type("late\r");
  ASSERT_TRUE(AwaitEnd());
  EXPECT_TRUE(view_.last_text.ends_with("> ac & morelate\r\nend")) << view_.last_text;
}

TEST_F(ConsoleViewTest, SendsAllThatIsTypedWhateverIsCutBeforeIt) {
  ASSERT_TRUE(OpenScript("printf 'one two\\n> '; while read -r x; do printf '(%s)' \"$x\"; done"));
  ASSERT_TRUE(Await("> "));
  Type("ab");
  CString input;
  // What is replaced, by what, and what counts as typed then.
  for (const auto& [first, removed, text, typed] :
       Rows<int, int, const char*, std::string>{{0, 4, "", "ab"},
                                                {1, 1, "three", "ab"},
                                                {3, 4, "", "ab"},
                                                {5, 0, "x", "ab"},
                                                {8, 0, "y", "yab"},
                                                {8, 1, "", "ab"},
                                                {6, 3, "", "b"}}) {
    EXPECT_TRUE(view_.EditText(first, removed, text, first, first + CString(text).GetLength()));
    view_.SetSel(view_.GetWindowTextLength(), -1);
    view_.GetUserInput(input);
    EXPECT_EQ(std::string(input), typed) << view_.Text();
  }
  Type("c\r");
  ASSERT_TRUE(Await("(bc)"));
  view_.SetWindowText("");
  Type("d\r");
  ASSERT_TRUE(Await("(d)"));
  // Another program in the same window, which the first one's end doesn't close.
  view_.SetCommandLine("cat");
  ASSERT_TRUE(view_.CreateShellRedirect());
  PumpUntilIdle();
  Type("e\r");
  EXPECT_TRUE(Await("e\r\ne\r\n"));
}

TEST_F(ConsoleViewTest, EndsTheProgramWithItsGroupWhateverThatIgnores) {
  int ends = 0;
  for (const char* script : {"trap '' TERM HUP INT; sleep 600 & echo up; wait; wait",
                             "echo up; exec yes", "exec >&- 2>&-; sleep 600"}) {
    ASSERT_TRUE(OpenScript(script));
    if (++ends < 3) {
      ASSERT_TRUE(PumpUntil([&] { return view_.Text().starts_with("up"); }, 60'000));
    }
    view_.SendMessage(WM_CLOSE);
    EXPECT_EQ(view_.GetSafeHwnd(), nullptr);
    EXPECT_TRUE(Eventually([] { return Children().empty(); })) << script << Children();
  }
  // In the middle of its own output, for which the reading thread waits.
  parent_.on_change = [&] { view_.DestroyWindow(); };
  ASSERT_TRUE(Open("yes"));
  EXPECT_TRUE(AwaitEnd());
}

TEST_F(ConsoleViewTest, WorksWhileAProgramWritesForEverAndWhileOneNeverReads) {
  ASSERT_TRUE(Open("yes"));
  view_.SetMaxText(10'000);
  int turns = 0, timers = 0;
  main_.on_message = [&](const MSG&) { ++turns; };
  main_.SetTimer(1, 10);
  while (turns < 50 || view_.Text()[0] != '[') {
    main_.PostMessage(WM_APP);
    PumpUntilIdle();
    EXPECT_LT(view_.GetWindowTextLength(), 20'000);
  }
  timers = PumpUntil([&] { return !view_.Text().empty(); });
  EXPECT_TRUE(timers != 0 && view_.Text().ends_with("y\r\n"));
  EXPECT_THAT(view_.Text().substr(0, 60),
              testing::ContainsRegex("^\\[[0-9]+ bytes of older text were removed\\]\r\ny\r\n"));
  view_.DestroyWindow();
  // More than a pipe holds; the program takes it when it gets to it, in order.
  ASSERT_TRUE(OpenScript("read x; until test -e go; do sleep 0.01; done; wc -c"));
  const std::string line(1000, 'x');
  for (int i = 0; i < 1000; ++i) Type(line + '\r');
  EXPECT_GT(view_.GetUnwrittenInput(), 500'000u);
  files_.Put("go", "");
  view_.CloseInput();
  ASSERT_TRUE(AwaitEnd());
  EXPECT_TRUE(view_.last_text.ends_with("\n999999\r\n")) << view_.last_text.substr(1'000'000);
  ASSERT_TRUE(Open("sleep 600"));
  for (int i = 0; i < 200; ++i) Type(line + '\r');
}

TEST_F(ConsoleViewTest, RunsTheInterpreterOfTheEnvironmentOrTheUsersShell) {
  const std::string tool = files_.Put("a tool", "#!/bin/sh\nprintf '%s+' \"$0\" \"$@\"\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  for (const auto& [interpreter, output] : Rows<std::string, std::string>{
           {"/bin/echo", "/A\r\n"},
           {"/bin/echo " + std::string(300, 'x'), std::string(250, 'x') + " /A\r\n"}}) {
    const ScopedVariable variable("COMSPEC", interpreter);
    ASSERT_TRUE(Open("") && AwaitEnd());
    EXPECT_EQ(view_.last_text, output);
  }
  ScriptedPlatform platform;
  platform.facts.shell = tool;
  ASSERT_TRUE(Open("") && AwaitEnd());
  EXPECT_EQ(view_.last_text, tool + "+");
  platform.facts.shell = "";
  EXPECT_FALSE(Open(""));
  EXPECT_FALSE(Open("/no/such/program"));
  EXPECT_EQ(view_.GetStartError().kind, platform::ErrorKind::kNotFound);
  EXPECT_EQ(view_.GetSafeHwnd(), nullptr);
}

}  // namespace
}  // namespace dq::test
