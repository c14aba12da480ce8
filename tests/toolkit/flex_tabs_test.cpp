// Tabs that are closed, renamed and dragged from one frame to another.

#include "tests/support/documents.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

constexpr GUID kExtra{1};

/// Shows menus and drags as a test says.
struct Layer : RecordingObserver {
  UINT TrackMenu(HMENU menu, const MenuSpot&, CWnd&) override {
    CMenu* const shown = CMenu::FromHandle(menu);
    for (int at = 0; at < shown->GetMenuItemCount(); ++at) {
      const bool grayed =
          (shown->GetMenuState(static_cast<UINT>(at), MF_BYPOSITION) & MF_GRAYED) != 0;
      items += (grayed ? "-" : "") + std::to_string(shown->GetMenuItemID(at)) + " ";
    }
    return 0;
  }
  UINT StartDrag(CWnd&, const COleDataObject& data, UINT effects, COleDropSource&) override {
    return drag ? drag(data, effects) : 0;
  }
  std::string items;
  std::function<UINT(const COleDataObject&, UINT)> drag;
};

/// A document with a frame of tabs, of which the first shows it.
struct Frames : Session {
  explicit Frames(std::initializer_list<BoxButton> script = {})
      : Session(script, RUNTIME_CLASS(CDQFlexTabFrame)) {}
  CDQFlexTabFrame& NewFrame() { return static_cast<CDQFlexTabFrame&>(New()->Frame()); }
  /// Adds a tab with a document of its own, or of the given one.
  static Doc& Add(CDQFlexTabFrame& frame, const char* label, CDocument* document, int at = -1,
                  bool activate = true) {
    CCreateContext context{.m_pCurrentDoc = document};
    CDQFlexTab& tabs = *frame.GetTabWnd();
    EXPECT_TRUE(tabs.InsertFlexTabEx(at < 0 ? frame.GetTabCount() : at, RUNTIME_CLASS(View), label,
                                     &context, 7, activate, &kExtra));
    return static_cast<Doc&>(*document);
  }
  Doc& AddNew(CDQFlexTabFrame& frame, const char* label) {
    return Add(frame, label, kind->CreateNewDocument());
  }
  static void Press(CDQFlexTabFrame& frame, int tab, LPARAM out_of = MakeLParam(390, 290)) {
    CDQFlexTabCtrl& strip = frame.GetTabWnd()->GetFlexTabCtrl();
    const CPoint at = strip.GetTabRect(tab).TopLeft();
    strip.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(at.x + 3, at.y + 3));
    strip.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MakeLParam(at.x + 5, at.y + 3));
    strip.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, out_of);
  }
  /// The items of a tab's context menu; the one that is chosen there is done then. Where there is
  /// no such tab, it is asked for behind the last one.
  static std::string Menu(CDQFlexTabFrame& frame, int tab, UINT chosen = 0) {
    Layer layer;
    CDQFlexTabCtrl& strip = frame.GetTabWnd()->GetFlexTabCtrl();
    const CRect at = strip.GetTabRect(tab);
    strip.SendMessage(WM_RBUTTONUP, 0, MakeLParam(at.IsRectEmpty() ? 290 : at.left + 3, 3));
    frame.GetTabWnd()->SendMessage(WM_COMMAND, chosen);
    return layer.items;
  }
};

/// The labels, "*" before the active one, "!" before those that can't be closed.
std::string Tabs(CDQFlexTabFrame& frame) {
  std::string all;
  const CDQFlexTab& tabs = *frame.GetTabWnd();
  for (int at = 0; at < tabs.GetTabCount(); ++at) {
    all += (tabs.IsTabClosable(at) ? "" : "!") + std::string(at == tabs.GetActiveTab() ? "*" : "") +
           std::string(tabs.GetLabel(at).View()) + " ";
  }
  return all + (tabs.AreTabsShown() ? "shown" : "hidden");
}

TEST(FlexTabs, MarksMoveWithTheirTabsAndTheStripIsThereForMoreThanOne) {
  Frames session;
  CDQFlexTabFrame& frame = session.NewFrame();
  CDQFlexTab& tabs = *frame.GetTabWnd();
  EXPECT_EQ(Tabs(frame), "!*Text1 hidden");
  EXPECT_FALSE(tabs.CloseFlexTab(0, false) || tabs.CloseFlexTab(1, true));
  session.AddNew(frame, "b");
  EXPECT_EQ(Tabs(frame), "!Text1 !*b shown");
  for (int twice = 0; twice < 2; ++twice) tabs.SetTabClosable(0, false);
  tabs.SetTabDragable(1, false);
  Frames::Add(frame, "c", session.kind->CreateNewDocument(), 0, false);
  EXPECT_EQ(Tabs(frame), "c !Text1 *b shown");
  EXPECT_FALSE(tabs.IsTabDragable(2) || tabs.IsTabDragable(3) || tabs.IsTabClosable(-1));
  // One that can't be made is closed again, and the marks stay where they were.
  CCreateContext context;
  EXPECT_FALSE(tabs.InsertFlexTab(1, RUNTIME_CLASS(CDocument), "x", &context, 0, true));
  EXPECT_FALSE(tabs.InsertFlexTab(5, RUNTIME_CLASS(View), "x", &context, 0, true));
  EXPECT_EQ(Tabs(frame), "c !Text1 *b shown");
  EXPECT_TRUE(tabs.CloseFlexTab(0, false));
  EXPECT_EQ(Tabs(frame), "!Text1 *b shown");
  EXPECT_FALSE(tabs.IsTabDragable(1));
  EXPECT_TRUE(tabs.CloseFlexTab(1, false));
  EXPECT_EQ(Tabs(frame), "!*Text1 hidden");
  tabs.SetTabClosable(0, true);
  EXPECT_FALSE(tabs.IsTabClosable(0));
  EXPECT_EQ(session.Count(), 1U);
  EXPECT_TRUE(tabs.CloseFlexTab(0, true));
  EXPECT_EQ(Tabs(frame), "hidden");
  EXPECT_FALSE(frame.ShowNextTab(true) || frame.SelectTab(0));
}

TEST(FlexTabs, TheStripComesBackAsItWasOrInTheStyleForAll) {
  Frames session;
  CDQFlexTab& tabs = *session.NewFrame().GetTabWnd();
  tabs.ShowTabs(false);
  for (const auto& [global, ignore, style] :
       Rows<unsigned long, bool, DWORD>{{-1UL, false, TWS_TABS_ON_TOP},
                                        {TWS_TABS_ON_BOTTOM, true, TWS_TABS_ON_TOP},
                                        {TWS_TABS_ON_BOTTOM, false, TWS_TABS_ON_BOTTOM}}) {
    CDQFlexTab::SetTabStyleOnShow(global);
    tabs.SetIgnorGlobalStyle(ignore);
    tabs.ShowTabs(true);
    EXPECT_EQ(tabs.GetTabSizes(), (SECTabSizes{24, 2, style}));
    for (int twice = 0; twice < 2; ++twice) tabs.ShowTabs(false);
    EXPECT_EQ(tabs.GetTabSizes(), SECTabSizes{});
  }
  CDQFlexTab::SetTabStyleOnShow(-1UL);
  // Hidden, it is made without its strip.
  CDQFlexTab early;
  early.ShowTabs(false);
  for (int life = 0; life < 2; ++life) {
    early.Create(tabs.GetParent(), 7);
    EXPECT_EQ(early.GetTabSizes(), SECTabSizes{});
    early.DestroyWindow();
  }
  early.Create(tabs.GetParent(), 7);
  early.ShowTabs(true);
  EXPECT_EQ(early.GetTabSizes(), (SECTabSizes{24, 2, TWS_TABS_ON_TOP}));
}

TEST(FlexTabs, ThePersonClosesAndRenamesByTheMenuOfATab) {
  Frames session{BUTTON_OK, BUTTON_CANCEL, BUTTON_NO};
  CDQFlexTabFrame& frame = session.NewFrame();
  CDQFlexTab& tabs = *frame.GetTabWnd();
  Doc& first = static_cast<Doc&>(*frame.GetActiveDocument());
  for (const char* label : {"b", "c", "d"}) session.AddNew(frame, label);
  EXPECT_EQ(session.Menu(frame, 1, 45341), "-45341 45342 0 45343 ");
  EXPECT_EQ(Tabs(frame), "!Text1 !b !c !*d shown");
  tabs.SetTabClosable(0, false);
  EXPECT_EQ(session.Menu(frame, 1, 45341), "45341 45342 0 45343 ");
  EXPECT_EQ(session.Menu(frame, 0), "-45341 45342 0 45343 ");
  EXPECT_EQ(Tabs(frame), "!Text1 c *d shown");
  CDQCoolMenu cool;
  cool.CreatePopupMenu();
  cool.AddItem(9, "&Run");
  for (CWnd* const asked : {static_cast<CWnd*>(&frame), static_cast<CWnd*>(&tabs)}) {
    EXPECT_EQ(asked->SendMessage(WM_MENUCHAR, MakeWParam('r', MF_POPUP),
                                 reinterpret_cast<LPARAM>(cool.m_hMenu)),
              0x20000);
  }
  // Behind the last tab there is no menu.
  EXPECT_EQ(session.Menu(frame, 9), "");
  session.prompts.on_dialog = [&](platform::DialogView& dialog) {
    EXPECT_EQ(dialog.Caption(), "Rename Tab");
    for (const char* name : {"", " new"}) {
      dialog.Enter(45345, name);
      dialog.Press(1);
    }
  };
  // By the key; the tab that is renamed moves meanwhile.
  CDQFlexTabCtrl& strip = tabs.GetFlexTabCtrl();
  tabs.ActivateTab(0);
  strip.SetFocus();
  strip.SendMessage(WM_KEYDOWN, VK_APPS);
  tabs.ActivateTab(2);
  session.prompts.on_box = [&] { Frames::Add(frame, "0", &first, 0, false); };
  tabs.SendMessage(WM_COMMAND, 45343);
  session.prompts.on_box = nullptr;
  tabs.CloseFlexTab(0, true);
  EXPECT_EQ(session.Told(),
            "The tab names must not be blank.  Enter a name at least one character in length.|");
  EXPECT_EQ(Tabs(frame), "! new c *d shown");
  EXPECT_EQ(first.GetTitle(), " new");
  // One document refuses, and the walk goes on.
  static_cast<Doc*>(frame.GetActiveDocument())->Change("x");
  session.Menu(frame, 1, 45342);
  EXPECT_EQ(Tabs(frame), "! new *d shown");
  session.Menu(frame, 1, 45342);
  EXPECT_EQ(Tabs(frame), "!* new hidden");
}

TEST(FlexTabs, ATabThatIsDraggedToAnotherFrameTakesItsDocumentAlong) {
  Frames session;
  CDQFlexTabFrame& from = session.NewFrame();
  CDQFlexTabFrame& to = session.NewFrame();
  Doc& dragged = session.AddNew(from, "b");
  from.GetTabWnd()->SetTabClosable(1, false);
  Layer layer;
  CWnd* over = &from;
  int drags = 0;
  layer.drag = [&](const COleDataObject& data, UINT effects) {
    ++drags;
    EXPECT_FALSE(from.GetTabWnd()->GetTabControl().IsTabSelected(1));
    return DragInput(data, effects).Drop(over, 0, {});
  };
  // A tab stays within its frame, where it is not to be dragged, and where nobody takes it or who
  // does leaves it.
  std::function<UINT(const COleDataObject&, UINT)> leave = [](const COleDataObject&, UINT effects) {
    return effects;
  };
  Frames::Press(from, 1);
  from.GetTabWnd()->SetTabDragable(1, false);
  over = &to;
  Frames::Press(from, 1);
  from.GetTabWnd()->SetTabDragable(1, true);
  to.GetDropTarget()->AcceptDropData(false);
  Frames::Press(from, 1);
  Frames::Press(from, 1, MakeLParam(-1, -1));
  EXPECT_EQ(std::exchange(drags, 0), 3);
  std::swap(layer.drag, leave);
  Frames::Press(from, 0);
  EXPECT_TRUE(from.GetTabWnd()->GetTabControl().IsTabSelected(0));
  Frames::Press(from, 1);
  std::swap(layer.drag, leave);
  EXPECT_TRUE(from.GetTabWnd()->GetTabControl().IsTabSelected(1));
  EXPECT_EQ(Tabs(from), "Text1 !*b shown");
  to.GetDropTarget()->AcceptDropData(true);
  Frames::Press(from, 1);
  EXPECT_EQ(Tabs(from) + " " + Tabs(to), "!*Text1 hidden !Text2 !*b shown");
  EXPECT_EQ(session.main.MDIGetActive(), &to);
  EXPECT_EQ(&dragged.Frame(), &to);
  EXPECT_TRUE(dragged.m_bAutoDelete);
  EXPECT_EQ(to.GetTabWnd()->GetTabIcon(1), 7U);
  EXPECT_EQ(to.GetTabWnd()->GetExtraPtr(1), nullptr);
  // The frame goes with its last tab, and the document lives on.
  const HWND gone = from.GetSafeHwnd();
  layer.drag = [&](const COleDataObject& data, UINT effects) {
    return DragInput(data, effects).Drop(&to, 0, {});
  };
  from.ShowTabs(true);
  Frames::Press(from, 0);
  EXPECT_EQ(CWnd::FromHandle(gone), nullptr);
  EXPECT_EQ(Tabs(to), "!Text2 !b !*Text1 shown");
  EXPECT_EQ(session.Count(), 3U);
}

TEST(FlexTabs, AnotherWindowIsToldOfATabThatIsDroppedOnIt) {
  struct Taker : CWnd {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      if (message != 0x3D09) return CWnd::WindowProc(message, wparam, lparam);
      extra = reinterpret_cast<const GUID*>(wparam);
      document = reinterpret_cast<CDocument*>(lparam);
      return answer;
    }
    const GUID* extra = nullptr;
    CDocument* document = nullptr;
    LRESULT answer = 1;
  };
  Frames session;
  CDQFlexTabFrame& frame = session.NewFrame();
  Taker taker;
  taker.CreateWnd("Taker");
  CDQFlexTabDropTarget target;
  target.Register(&taker);
  for (const LRESULT answer : {1, 0}) {
    Doc& document = session.AddNew(frame, "b");
    taker.answer = answer;
    COleDataObject data;
    data.SetData(CDQFlexTabDropTarget::GetClipboardFormat(),
                 CDQFlexTabData(frame.GetTabWnd(), 1).GetBytes());
    EXPECT_EQ(DragInput(data, DROPEFFECT_MOVE).Drop(&taker, 0, {}),
              answer == 1 ? DROPEFFECT_MOVE : DROPEFFECT_NONE);
    EXPECT_TRUE(taker.extra == &kExtra && taker.document == &document);
    EXPECT_EQ(Tabs(frame), "!*Text1 hidden");
    document.OnCloseDocument();
  }
}

TEST(FlexTabs, APayloadThatLiesIsRefused) {
  Frames session;
  CDQFlexTabFrame& to = session.NewFrame();
  CDQFlexTab& source = *session.NewFrame().GetTabWnd();
  const auto accepts = [&](const std::string& bytes) {
    COleDataObject data;
    data.SetData(CDQFlexTabDropTarget::GetClipboardFormat(), bytes);
    const bool accepted = to.GetDropTarget()->AcceptData(&data, &to);
    return accepted || to.GetDropTarget()->DropTab(&to, &data, DROPEFFECT_MOVE, {});
  };
  const std::string good = CDQFlexTabData(&source, 0).GetBytes();
  for (const std::string& bytes :
       {std::string(), good.substr(1), good + good, std::string(good.size(), '\xFF'),
        good.substr(0, good.size() - 1) + static_cast<char>(good.back() + 1),
        CDQFlexTabData(&source, 1).GetBytes(), CDQFlexTabData(&source, -1).GetBytes(),
        CDQFlexTabData(nullptr, 0).GetBytes(), CDQFlexTabData(to.GetTabWnd(), 0).GetBytes()}) {
    EXPECT_FALSE(accepts(bytes));
  }
  COleDataObject none;
  EXPECT_FALSE(to.GetDropTarget()->AcceptData(&none, &to) ||
               to.GetDropTarget()->AcceptData(nullptr, &to));
  EXPECT_FALSE(to.GetDropTarget()->RemoveTab(1, &to, to.GetTabWnd(), nullptr, nullptr));
  COleDataObject data;
  data.SetData(CDQFlexTabDropTarget::GetClipboardFormat(), good);
  EXPECT_EQ(to.GetDropTarget()->OnDragOver(&to, &data, 0, {}), DROPEFFECT_MOVE);
  source.GetParentFrame()->DestroyWindow();
  EXPECT_FALSE(accepts(good));
}

TEST(FlexTabs, AFrameAsksAllItsDocumentsBeforeItCloses) {
  Frames session{BUTTON_CANCEL, BUTTON_NO};
  session.New();
  CDQFlexTabFrame& frame = session.NewFrame();
  Doc& other = session.AddNew(frame, "b");
  frame.SelectTab(0);
  EXPECT_TRUE(frame.ShowNextTab(false));
  EXPECT_EQ(Tabs(frame), "!Text2 !*b shown");
  EXPECT_TRUE(frame.ShowNextTab(true));
  EXPECT_EQ(frame.GetActiveDocument()->GetTitle(), "Text2");
  for (const bool own : {false, true}) {
    CTypedPtrArray<CObArray, CDocument*> documents;
    frame.GetDocuments(documents, own);
    EXPECT_EQ(documents.GetSize(), own ? 2 : 1);
    EXPECT_EQ(documents[documents.GetSize() - 1], &other);
  }
  EXPECT_FALSE(frame.ContainsModifiedDocs() || frame.IsFrameMaximized());
  frame.GetActiveDocument()->SetModifiedFlag(1);
  EXPECT_TRUE(frame.ContainsModifiedDocs());
  frame.GetActiveDocument()->SetModifiedFlag(0);
  int handler = 0;
  EXPECT_TRUE(frame.OnCmdMsg(ID_TAB_CLOSE, CN_COMMAND, nullptr, &handler)) << "the tabs have it";
  other.Change("x");
  EXPECT_TRUE(frame.ContainsModifiedDocs());
  const HWND window = frame.GetSafeHwnd();
  for (const std::size_t left : {3U, 1U}) {
    SendToWindow(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(session.Count(), left);
  }
  EXPECT_EQ(CWnd::FromHandle(window), nullptr);
}

TEST(FlexTabs, ADocumentThatIsClosedTakesNoOtherAlongUnasked) {
  Frames session{BUTTON_CANCEL, BUTTON_CANCEL, BUTTON_NO};
  CDQFlexTabFrame& frame = session.NewFrame();
  CDQFlexTabFrame& second = session.NewFrame();
  session.AddNew(second, "b").Change("x");
  Frames::Add(second, "c", frame.GetActiveDocument());
  for (const auto& [active, left] :
       Rows<CDQFlexTabFrame*, std::size_t>{{&second, 3U}, {&frame, 3U}, {&frame, 0U}}) {
    active->MDIActivate();
    session.main.SendMessage(WM_COMMAND, ID_FILE_CLOSE);
    EXPECT_EQ(session.Count(), left);
  }
}

TEST(FlexTabs, HandlersMayEndTheFrameWhileATabComesOrGoes) {
  for (const char* moment : {"create", "initial update", "activate", "title"}) {
    Frames session;
    CDQFlexTabFrame& frame = session.NewFrame();
    g_at[moment] = [&] { g_at.clear(), frame.DestroyWindow(); };
    CCreateContext context{.m_pCurrentDoc = session.kind->CreateNewDocument()};
    CDocument* const made = context.m_pCurrentDoc;
    const bool ended = moment != std::string_view("title");
    EXPECT_EQ(frame.GetTabWnd()->AddFlexTab(RUNTIME_CLASS(View), "x", &context, 0, true), !ended);
    g_at.clear();
    // One that no view has been made for is left.
    if (Doc::last == made && made->GetFirstView() == nullptr) made->OnCloseDocument();
  }
  Frames session{BUTTON_NO};
  CDQFlexTabFrame& frame = session.NewFrame();
  session.AddNew(frame, "b").Change("x");
  frame.GetTabWnd()->SetTabClosable(0, false);
  session.prompts.on_box = [&] { frame.DestroyWindow(); };
  frame.GetTabWnd()->CloseAllFlexTabs();
  EXPECT_EQ(session.main.MDIGetActive(), nullptr);
}

TEST(TabControlBar, HoldsWindowsOnTabs) {
  ResourceModule module;
  CDynLinkLibrary link{&module};
  module.AddString(900, "From a string");
  BarFrame frame;
  CWnd page;
  page.CreateWnd({.class_name = "Page", .parent = &frame, .id = 5});
  CDQTabControlBar bar;
  bar.SetBarSize({0, 100});
  EXPECT_EQ(bar.AddTab(&page, "early"), -1);
  ASSERT_TRUE(bar.Create(&frame, 0xE810));
  frame.RecalcLayout();
  bar.EnableSizing(true);
  EXPECT_EQ(bar.AddTab(&page, 900U), 0);
  EXPECT_EQ(bar.InsertTab(0, RUNTIME_CLASS(CSplitterWnd), "x"), 0);
  EXPECT_TRUE(bar.ActivateTab(1));
  EXPECT_EQ(bar.GetTabs().GetLabel(1), "From a string");
  EXPECT_EQ(bar.GetCurrentTabWnd(), &page);
  EXPECT_EQ(Text(page.GetPlace()), "0,24-400,95");
  EXPECT_TRUE(bar.DeleteTab(0));
  EXPECT_EQ(bar.GetCurrentTab() + bar.GetTabCount(), 1);
  // With a second tab the strip is there again, unless it isn't wanted.
  for (const bool wanted : {true, false}) {
    EXPECT_FALSE(bar.GetTabs().AreTabsShown());
    EXPECT_EQ(bar.AddTab(RUNTIME_CLASS(CSplitterWnd), "y"), 1);
    EXPECT_EQ(bar.GetTabs().AreTabsShown(), wanted);
    bar.ShowTabs(false);
    bar.DeleteTab(1);
  }
  struct Failing : CDQTabControlBar {
    bool CreateTabWnd() override { return false; }
  } failing;
  std::string traced;
  const TraceSink former = SetTraceSink([&](std::string_view text) { traced += text; });
  EXPECT_FALSE(failing.Create(&frame, 0xE811));
  SetTraceSink(former);
  EXPECT_EQ(traced, "CDQTabControlBarWnd::OnCreate - Failed to create Tab Window\n");
}

}  // namespace
}  // namespace dq::test
