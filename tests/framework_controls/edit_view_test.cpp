// What edits have beyond their control: keys, messages of other threads, and views that are one.

#include "tests/support/prompt_edit.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

TEST(Edit, MovesItsCaretAndDeletesByKeysOnlyWhereNoNativeControlDoes) {
  HeldKeys layer;
  ControlDialog dialog;
  CEdit& edit = dialog.edit();
  // What is selected in "ab\r\ncd"; the key, and what is held; what follows, and the text's length.
  std::istringstream rows(
      "0 0 39 0 1 1 6  2 2 39 0 4 4 6  6 6 39 0 6 6 6   4 4 37 0 2 2 6   0 0 37 0 0 0 6  "
      "1 5 37 0 1 1 6  1 5 39 0 5 5 6  2 5 39 16 2 6 6  5 2 37 16 1 5 6  5 5 36 0 4 4 6  "
      "5 5 36 17 0 0 6 1 1 35 0 2 2 6  1 1 35 17 6 6 6  5 5 35 16 5 6 6  2 2 46 0 2 2 4  "
      "1 5 46 0 1 1 2  6 6 46 0 6 6 6  1 5 46 16 1 5 6  1 1 38 0 1 1 6");
  for (int from, to, key, held, first, last, size;
       rows >> from >> to >> key >> held >> first >> last >> size;) {
    layer.held = {held};
    edit.SetWindowText("ab\r\ncd");
    edit.SetSel(from, to);
    edit.SendMessage(WM_KEYDOWN, static_cast<WPARAM>(key));
    DWORD ends[2];
    const auto place = reinterpret_cast<std::uintptr_t>(ends);
    EXPECT_EQ(edit.SendMessage(EM_GETSEL, place, place + sizeof *ends), first | last << 16);
    EXPECT_THAT(ends, testing::ElementsAre(first, last)) << from << ' ' << to << ' ' << key;
    EXPECT_EQ(edit.GetWindowTextLength(), size);
  }
  layer.held.clear();
  edit.SetWindowText("\xC3\xBC\xE2\x82\xAC\x82-");
  edit.SetSel(5, 5);
  edit.SendMessage(WM_CHAR, '\b');
  for (const UINT key : {VK_DELETE, VK_LEFT, VK_DELETE}) edit.SendMessage(WM_KEYDOWN, key);
  edit.SetReadOnly();
  edit.SendMessage(WM_KEYDOWN, VK_DELETE);
  EXPECT_TRUE(edit.Text() == "-" && !OfferKey({edit.GetSafeHwnd(), WM_CHAR, 'x', 1}));
}

TEST(EditView, OffersKeysToItsHandlersBeforeANativeControlGetsThem) {
  struct Terminal : PromptEdit<CEditView> {
    BOOL OnChildNotify(UINT, WPARAM wparam, LPARAM, LRESULT*) override {
      return codes += std::to_string(HiWord(wparam)) + " ", 0;
    }
    std::string codes;
  } view;
  MainWindow main;
  ASSERT_TRUE(view.Create(&main, {}, 7, static_cast<CDocument*>(nullptr)));
  view.SetFocus();
  view.ReplaceSel("> ");
  EXPECT_TRUE(view.GetModify() && std::exchange(view.codes, {}) == "256 1024 768 ");
  // Where the caret is put, the key or character, whether that was taken, and the text behind it.
  for (const auto& [caret, key, taken, text] : Cases<4>(R"(0 => char 97 => 1 => > a
           3 => char 98 => 1 => > ab ;; 1 => char 8 => 1 => > ab ;; 4 => char 8 => 1 => > a
           3 => char 3 => 0 => > a ;; 1 => down 46 => 1 => > a ;; 2 => down 46 => 0 => > a)")) {
    view.SetSel(std::stoi(caret), std::stoi(caret));
    const UINT message = key.starts_with("char") ? WM_CHAR : WM_KEYDOWN;
    EXPECT_EQ(OfferKey({view.GetSafeHwnd(), message, std::stoul(key.substr(5)), 1}), taken == "1");
    EXPECT_EQ(view.Text(), text);
  }
  view.SetSel(3, 3);
  KeyInput(WM_CHAR, '\r');
  view.SetSel(2, 2);
  KeyInput(WM_KEYDOWN, VK_DELETE);
  EXPECT_TRUE(view.line == "a\r\n" && view.Text() == "> \r\n") << "without a native control";
}

TEST(EditView, ShowsWhatAnotherThreadWritesByMessages) {
  MainWindow main;
  const CCreateContext context{.m_pNewViewClass = RUNTIME_CLASS(CEditView)};
  const HWND window = CView::MakeView(&main, {0, 0, 90, 90}, 7, &context)->GetSafeHwnd();
  std::string read;
  std::thread writer([&read, window] {
    const auto send = [window](UINT message, WPARAM wparam, const void* text) {
      return SendToWindow(window, message, wparam, reinterpret_cast<LPARAM>(text));
    };
    send(WM_SETTEXT, 0, "one");
    for (const char* more : {" two", " three"}) {
      const LRESULT end = send(WM_GETTEXTLENGTH, 0, nullptr);
      SendToWindow(window, EM_SETSEL, static_cast<WPARAM>(end), end);
      send(EM_REPLACESEL, 0, more);
    }
    char text[10];
    read = std::to_string(send(WM_GETTEXT, sizeof text, text)) + text;
    PostToWindow(window, WM_CLOSE, 0, 0);
  });
  PumpUntil([&] { return CWnd::FromHandle(window) == nullptr; });
  writer.join();
  EXPECT_EQ(read, "9one two t");
}

}  // namespace
}  // namespace dq::test
