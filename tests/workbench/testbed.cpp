// A host with one window of each kind for the tests of the window layer. Its menu opens them; each
// dialog that was left is traced as "left" with its result, and `--grow N` opens one so many times.

#include <iterator>
#include <limits>

#include "apps/common/console.h"
#include "apps/workbench/console_frame.h"
#include "apps/workbench/layer/desktop_services.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/controls/button.h"
#include "dqlib/framework/controls/edit.h"
#include "dqlib/framework/controls/list_box.h"
#include "dqlib/framework/controls/tool_tip.h"
#include "dqlib/framework/windows/drag_drop.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/toolkit/flex_dialog.h"
#include "dqlib/toolkit/flex_property_page.h"
#include "dqlib/toolkit/flex_property_sheet.h"
#include "dqlib/toolkit/tool_tip_combo_box.h"
#include "tests/support/prompt_edit.h"
#include "tests/workbench/testbed_check_boxes.h"
#include "tests/workbench/testbed_menus.h"
#include "tests/workbench/testbed_tabs.h"
#include "tests/workbench/testbed_tree.h"
#include "tests/workbench/testbed_views.h"

namespace workbench {
namespace {

using dq::CWnd;
using dq::UINT;

struct Printer : Trace {
  void Write(const TraceLine& line) override { dqapps::PrintLine(line.Finish()); }
};

void Tell(std::string_view event, long long number, std::string_view text = {}) {
  TraceLine line(event);
  line.Add("number", number);
  line.Add("text", text);
  dqapps::PrintLine(line.Finish());
}

constexpr const char kControls[] = R"(caption "Controls"
size 440 300
text -1 "&Line:" 8 10 50 14
edit 11 "" 60 8 120 18 limit=8
text -1 "&Number:" 8 34 50 14
edit 12 "5" 60 32 60 18 number
spin 13 "" 120 32 14 18 buddy
text -1 "&Word:" 8 58 50 14
edit 14 "" 60 56 120 18 password
edit 15 "first" 8 80 172 60 multiline
check 16 "&Check" 8 146 80 14
check 17 "&Three" 96 146 80 14
group 20 "Group" 8 164 172 42
radio 18 "&One" 16 182 60 14 group
radio 19 "&Two" 80 182 60 14
list 21 "" 192 8 100 90 group
list 22 "" 300 8 100 90 multiple
checklist 23 "" 192 104 100 60
combo 24 "" 300 104 100 120
combo 25 "" 300 130 100 120 droplist
button 26 "&Add rows" 192 172 84 24
button 27 "Th&row" 284 172 84 24
button 28 "&Disable" 192 200 84 24
defbutton 1 "OK" 252 260 84 24
button 2 "Cancel" 344 260 84 24
)";

dq::DialogTemplate Read(const char* text) { return dq::ReadDialogTemplate(text).value(); }

/// One control of each kind.
class ControlsDialog : public dq::CDialog {
 public:
  explicit ControlsDialog(CWnd* owner = nullptr) { InitModalIndirect(Read(kControls), owner); }
  /// Closes as soon as it is shown, so many times.
  static inline int closing = 0;

 protected:
  dq::BOOL OnInitDialog() override {
    Get<dq::CButton>(17).SetKind(dq::ButtonKind::kThreeState);
    for (const int id : {21, 22, 23, 24}) {
      for (const char* text : {"Red", "Green", "Blue", "Gold"}) {
        dynamic_cast<dq::CListBox*>(GetDlgItem(id)) != nullptr
            ? Get<dq::CListBox>(id).AddString(text)
            : Get<dq::CComboBox>(id).AddString(text);
      }
    }
    Get<dq::CCheckListBox>(23).Enable(2, false);
    SetDlgItemText(15, "f\xC3\xBCrst\r\nsecond");
    codes_.SubclassDlgItem(25, this);
    for (const char* code : {"T", "V", "I"}) codes_.AddString(code, "A tip of a row");
    tips_.Create(this);
    tips_.AddTool(GetDlgItem(11), "A tip of a control");
    if (closing > 0) PostMessage(dq::WM_COMMAND, dq::IDCANCEL);
    return CDialog::OnInitDialog();
  }
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override {
    static constexpr dq::MessageMapEntry kEntries[] = {
        dq::CommandEntry<&ControlsDialog::OnAddRows>(26),
        dq::CommandEntry<&ControlsDialog::OnThrow>(27),
        dq::CommandEntry<&ControlsDialog::OnDisable>(28),
    };
    return dq::CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
  }

 private:
  template <typename Class>
  Class& Get(int id) {
    return dynamic_cast<Class&>(*GetDlgItem(id));
  }
  void OnAddRows() {
    auto& list = Get<dq::CListBox>(21);
    for (int row = 0; row < 100'000; ++row) list.AddString("A row among many");
  }
  void OnThrow() { throw std::runtime_error("thrown by a button"); }
  void OnDisable() {
    for (const int id : {11, 16, 18, 21, 25}) {
      CWnd* const control = GetDlgItem(id);
      control->EnableWindow(!control->IsWindowEnabled());
    }
  }

  dq::CToolTipComboBox codes_{{.list_only = true}};
  dq::CToolTipCtrl tips_;
};

/// A dialog that a person sizes; its controls stretch.
class StretchDialog : public dq::CNSFlexDialog {
 public:
  StretchDialog() {
    InitModalIndirect(
        Read("caption \"Stretch\"\nsize 200 100\nedit 31 \"\" 8 8 184 50 multiline\n"
             "defbutton 1 \"OK\" 108 68 84 24\n"));
    AddFlexConstraint(31, dq::NSFlexExpandRight, dq::NSFlexExpandDown);
    AddFlexConstraint(1, dq::NSFlexShiftRight, dq::NSFlexShiftDown);
  }

 protected:
  dq::BOOL OnInitDialog() override {
    prompt_.SubclassDlgItem(31, this);
    prompt_.SetWindowText("> ");
    return CNSFlexDialog::OnInitDialog();
  }

 private:
  dq::test::PromptEdit<dq::CEdit> prompt_;
};

class Page : public dq::CNSFlexPropertyPage {
 public:
  explicit Page(const char* text) : CNSFlexPropertyPage(Read(text)) {}
  /// Keeps a person on the page until the text is right.
  dq::BOOL OnKillActive() override {
    const CWnd* const edit = GetDlgItem(41);
    return edit == nullptr || edit->GetWindowText() != "wrong" ? CPropertyPage::OnKillActive() : 0;
  }
};

struct Sheet : dq::CNSFlexPropertySheet {
  Sheet() : CNSFlexPropertySheet("Sheet") {
    AddPage(&first);
    AddPage(&second);
  }
  Page first{"caption \"First\"\nsize 220 60\nedit 41 \"\" 8 8 120 18\n"};
  Page second{"caption \"Second\"\nsize 220 60\ncheck 42 \"&Mark\" 8 8 120 14\n"};
};

/// A window that tells what the mouse and the keys do, draws itself and scrolls.
class Canvas : public dq::CView {
 public:
  dq::LRESULT WindowProc(UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    const bool is_mouse = message >= dq::WM_LBUTTONDOWN && message <= dq::WM_MOUSEWHEEL;
    const bool is_key = message == dq::WM_KEYDOWN || message == dq::WM_CHAR;
    if (is_mouse || is_key) Tell("canvas", message, (wparam & dq::MK_SHIFT) != 0 ? "aside" : "");
    if (message == dq::WM_VSCROLL) {
      Tell("canvas", message, std::to_string(dq::ScrollPositionOf(wparam)));
    }
    if (message == dq::WM_LBUTTONDOWN) SetCapture();
    if (message == dq::WM_LBUTTONUP) ReleaseCapture();
    return CView::WindowProc(message, wparam, lparam);
  }
  void OnDraw(dq::CDC* dc) override {
    dc->FillSolidRect({10, 10, 60, 60}, dq::RGB(0x20, 0x40, 0xC0));
    dc->TextOut(10, 70, "drawn");
  }
};

/// One of those that cover each other; a press on it brings it to the top.
class Card : public CWnd {
 public:
  void Open(CWnd* parent, int id, const dq::CRect& place) {
    CreateWnd({.class_name = "Card", .place = place, .parent = parent, .id = id});
  }
  dq::LRESULT WindowProc(UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message == dq::WM_LBUTTONDOWN) {
      Tell("card", GetDlgCtrlID());
      SetWindowOrder(nullptr);
    }
    return CWnd::WindowProc(message, wparam, lparam);
  }

 protected:
  void OnPaint(dq::CDC& dc) override {
    dc.FillSolidRect(GetClientRect(), dq::RGB(0x40, GetDlgCtrlID() == 51 ? 0xC0 : 0x40, 0x20));
  }
};

/// Gives and takes what is dragged: by the left button three formats, by the right one too, but
/// then the window ends meanwhile.
class Shelf : public CWnd {
 public:
  void Open(CWnd* parent, int id, const dq::CRect& place) {
    CreateWnd({.class_name = "Shelf", .place = place, .parent = parent, .id = id});
    target_.Register(this);
  }
  dq::LRESULT WindowProc(UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message == dq::WM_TIMER) DestroyWindow();
    if (message == dq::WM_RBUTTONDOWN) SetTimer(1, 200);
    if (message == dq::WM_LBUTTONDOWN || message == dq::WM_LBUTTONDBLCLK ||
        message == dq::WM_RBUTTONDOWN) {
      dq::COleDataSource data;
      data.CacheGlobalData(Private(), std::string_view("\0private", 8));
      data.CacheGlobalData(dq::CLIPBOARD_TEXT, "f\xC3\xBCrst\r\nline");
      const std::string files[] = {"/a b", "/c"};
      data.CacheGlobalData(dq::CLIPBOARD_FILES, dq::platform::FileListData(files));
      Tell("dragged", data.DoDragDrop(*this, dq::DROPEFFECT_COPY | dq::DROPEFFECT_MOVE));
    }
    return CWnd::WindowProc(message, wparam, lparam);
  }

 private:
  static UINT Private() { return dq::platform::Current().clipboard->RegisterFormat("* Testbed *"); }

  struct Target : dq::COleDropTarget {
    UINT OnDragOver(CWnd*, dq::COleDataObject* data, UINT keys, dq::CPoint) override {
      if (!data->IsDataAvailable(dq::CLIPBOARD_TEXT)) return dq::DROPEFFECT_NONE;
      return (keys & dq::MK_CONTROL) != 0 ? dq::DROPEFFECT_COPY : dq::DROPEFFECT_MOVE;
    }
    void OnDragLeave(CWnd*) override { Tell("left", 0); }
    dq::BOOL OnDrop(CWnd*, dq::COleDataObject* data, UINT effect, dq::CPoint) override {
      std::string text;
      for (const UINT format : {Private(), UINT{dq::CLIPBOARD_TEXT}}) {
        text += data->GetData(format).value_or("none") + "|";
      }
      const std::string files = data->GetData(dq::CLIPBOARD_FILES).value_or("");
      for (const std::string& path : dq::platform::ReadFileList(files)) text += path + "|";
      Tell("dropped", effect, text);
      return 1;
    }
  } target_;
};

class Frame : public dq::CFrameWnd {
 public:
  void Open() {
    Create("TestFrame", "Testbed", {60, 40, 660, 440}, 0, nullptr, false);
    menu_.LoadMenuIndirect(
        "popup \"&Open\"\nitem 32769 \"&Controls\"\nitem 32770 \"&Stretch\"\n"
        "item 32771 \"S&heet\"\nitem 32772 \"&Question\"\nitem 32774 \"C&onsole\"\n"
        "item 32775 \"Check &boxes\"\nitem 32776 \"&Views\"\nitem 32777 \"&Workbook\"\n"
        "item 32778 \"T&ree\"\nitem 32773 \"&Tabs\"\nend\n" +
        std::string(MenuResources::kText));
    menu_.CoolifyPopup(1, MenuResources::kMenu);
    SetMenu(&menu_);
    tools_.Coolify(MenuResources::kMenu, true);
    popup_.LoadMenuIndirect("item 32780 \"&Alpha\\tCtrl+A\"\nitem 32781 \"&Beta\" checked\n");
    canvas_.Create(this, dq::CRect(), dq::kFirstPaneId, static_cast<dq::CDocument*>(nullptr));
    upper_.Open(&canvas_, 51, {300, 10, 400, 60});
    lower_.Open(&canvas_, 52, {350, 10, 450, 60});
    left_.Open(&canvas_, 53, {300, 80, 360, 130});
    right_.Open(&canvas_, 54, {400, 80, 460, 130});
    canvas_.SetScrollInfo(dq::SB_VERT, {0, std::numeric_limits<int>::max(), 10, 0});
    RecalcLayout();
    ShowWindow(dq::SW_SHOW);
    SetActiveView(&canvas_);
  }
  void DrawMenuBar() { menu_.CoolifyExistingItems(); }

 protected:
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override {
    static constexpr dq::MessageMapEntry kEntries[] = {
        dq::CommandRangeEntry<&Frame::OnOpen>(32769, 32778),
        dq::CommandRangeEntry<&Frame::OnPopup>(32780, 32791),
        dq::CommandRangeEntry<&Frame::OnPopup>(32793, 32794),
    };
    return dq::CallEntry(kEntries, *this, key, arguments) || CFrameWnd::CallMapped(key, arguments);
  }
  dq::LRESULT DefWindowProc(UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message == dq::WM_MENUCHAR) {
      dq::CMenu* const menu = dq::CMenu::FromHandle(reinterpret_cast<dq::HMENU>(lparam));
      return dq::CDQCoolMenu::OnMenuChar(dq::LoWord(wparam), dq::HiWord(wparam), menu);
    }
    if (message != dq::WM_CONTEXTMENU) return CFrameWnd::DefWindowProc(message, wparam, lparam);
    const dq::CPoint at = dq::PointOfParam(lparam);
    const bool is_card = reinterpret_cast<dq::HWND>(wparam) == upper_.GetSafeHwnd();
    if (is_card) return tools_.GetCoolSubMenu(0)->TrackPopupMenu(0, at.x, at.y, this);
    return popup_.TrackPopupMenu(0, at.x, at.y, this);
  }

 private:
  void OnOpen(UINT id) {
    switch (id) {
      case 32769:
        return Tell("left", ControlsDialog().DoModal());
      case 32770:
        return Tell("left", StretchDialog().DoModal());
      case 32771:
        return Tell("left", Sheet().DoModal());
      case 32773:
        return tabs_.emplace().Open();
      case 32775:
        return checks_.emplace().Open();
      case 32778:
        return tree_.emplace().Open();
      case 32776:
        return views_.emplace().Open();
      case 32777:
        return book_.emplace().Open();
      case 32774:
        return static_cast<void>(console_.emplace().Open(*this));
      default:
        return Tell("left", dq::platform::Current().prompts->Show(
                                "Q & A", "Ampersands && blanks?",
                                dq::BOX_YES_NO | dq::BOX_QUESTION | dq::BOX_DEFAULT_SECOND, 0));
    }
  }
  void OnPopup(UINT id) { Tell("popup", id); }

  const MenuResources resources_;
  dq::CDQCoolMenu menu_;
  dq::CDQCoolMenu tools_;
  dq::CMenu popup_;
  Canvas canvas_;
  Card upper_;
  Card lower_;
  std::optional<TabsFrame> tabs_;
  std::optional<ChecksFrame> checks_;
  std::optional<MillionFrame> tree_;
  Shelf left_;
  Shelf right_;
  std::optional<ViewsFrame> views_;
  std::optional<BookFrame> book_;
  std::optional<ConsoleFrame> console_;
};

void Grow(int times) {
  for (ControlsDialog::closing = 1; ControlsDialog::closing <= times; ++ControlsDialog::closing) {
    ControlsDialog().DoModal();
    if (ControlsDialog::closing % 100 == 0) Tell("grown", ControlsDialog::closing);
  }
}

int Run(int argc, char** argv) {
  dq::CWinApp app("testbed");
  Printer printer;
  std::optional<Frame> frame;
  Layer layer({.trace = &printer, .when_lost = [] {
                 Tell("lost", 0);
                 dq::PostQuitMessage(3);
               }});
  const DesktopServices services(layer);
  app.m_pMainWnd = &frame.emplace();
  frame->Open();
  if (argc > 2 && std::string_view(argv[2]) == "--drawn") frame->DrawMenuBar();
  if (argc > 3) Grow(std::atoi(argv[3]));
  for (;;) {
    try {
      return app.Run();
    } catch (const std::exception& thrown) {
      Tell("thrown", 0, thrown.what());
    }
  }
}

}  // namespace
}  // namespace workbench

int main(int argc, char** argv) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  return workbench::Run(argc, argv);
}
