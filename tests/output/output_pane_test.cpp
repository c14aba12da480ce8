#include "tests/support/doubles.h"
#include "tests/support/own_settings.h"
#include "tests/support/registries.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

constexpr char kTime[] = "04:05:06.007";

/// A person who chooses this file.
struct FilePrompts : ScriptedPrompts {
  std::optional<platform::ChosenFiles> ChooseFile(const platform::FileQuestion& question) override {
    asked = question;
    if (chosen.paths.empty()) return {};
    return chosen;
  }
  std::optional<platform::PrintChoice> ChoosePrint(
      const platform::PrintQuestion& question) override {
    offers_selection += question.offer_selection ? "+" : "-";
    if (!prints) return {};
    return platform::PrintChoice();
  }
  platform::FileQuestion asked;
  platform::ChosenFiles chosen;
  std::string offers_selection;
  bool prints = false;
};

/// Keeps where menus are shown and what they hold, with "-" before what can't be chosen and "*"
/// before what is checked.
struct MenuLayer : RecordingObserver {
  UINT TrackMenu(HMENU menu, const MenuSpot& spot, CWnd&) override {
    CMenu* const shown = CMenu::FromHandle(menu);
    told = std::to_string(spot.at.x) + "," + std::to_string(spot.at.y) + ":";
    for (int at = 0; at < shown->GetMenuItemCount(); ++at) {
      const UINT state = shown->GetMenuState(static_cast<UINT>(at), MF_BYPOSITION);
      const UINT id = shown->GetMenuItemID(at);
      if (id == 0) continue;
      told += (state & MF_GRAYED) != 0 ? " -" : (state & MF_CHECKED) != 0 ? " *" : " ";
      told += std::to_string(id);
    }
    return 0;
  }
  std::string told;
};

/// On the text of a row.
void DoubleClick(CSftTree& tree, int row) {
  CRect text;
  EXPECT_TRUE(tree.GetCellRect(row, 2, &text));
  const CPoint at = tree.ClientToScreen(CPoint{text.left + 5, (text.top + text.bottom) / 2});
  MouseInput(WM_LBUTTONDOWN, MK_LBUTTON, at, &tree);
  MouseInput(WM_LBUTTONUP, 0, at, &tree);
  MouseInput(WM_LBUTTONDBLCLK, MK_LBUTTON, at, &tree);
}

struct OutputPaneTest : testing::Test {
  struct Tree : CDQTree {
    ~Tree() override { ++gone; }
    static inline int gone = 0;
  };
  struct Pane : CDQOutputWnd {
    ~Pane() override { EndInDestructor(); }
    CDQTree* CreateMessageTree() override { return new Tree; }
    using CDQOutputWnd::DefWindowProc;
  };

  OutputPaneTest() {
    app_.SetRegistryKey("Velmora");
    frame_.Create("Frame", "", {0, 0, 400, 300});
    frame_.EnableDocking(CBRS_ALIGN_ANY);
    pane_ = std::make_unique<Pane>();
    EXPECT_TRUE(pane_->Create(&frame_));
  }

  CDQTree& tree() { return *pane_->GetTreeWnd(); }
  /// Rows as "source|text", with "+" for the time before, if there is one.
  std::string Shown() {
    std::string rows;
    for (int row = 0; row < tree().GetCount(); ++row) {
      const std::string time = tree().CellText(row, 0);
      EXPECT_TRUE(time.empty() || time == kTime);
      rows += (time.empty() ? "" : "+") + std::string(tree().CellText(row, 1)) + "|" +
              tree().CellText(row, 2) + ";";
    }
    return rows;
  }
  void Choose(UINT command) { pane_->SendMessage(WM_COMMAND, command); }

  MemoryRegistry registry_;
  const platform::ScopedPlatform scope_{With(&platform::Platform::registry, &registry_)};
  CWinApp app_{"Output Test"};
  ManualClock clock_;
  TempDirectory files_;
  CFrameWnd frame_;
  std::unique_ptr<Pane> pane_;
};

TEST_F(OutputPaneTest, HasARowForEachLineOfAMessage) {
  for (const auto& [type, text, rows] :
       Rows<int, const char*, std::string>{{0, "one", "+Program|one;"},
                                           {5, "a\r\n\n  b \t\nc\td \n\t ", "+DBMS|a;|b;|c    d;"},
                                           {9, " \n ", "+Program|;"},
                                           {-1, nullptr, "+Program|;"},
                                           {6, "  x", "+Start Task: On 04:05:06.007|  x;"},
                                           {7, "x", "+End Task: On 04:05:06.007|x;"}}) {
    pane_->ClearTree();
    pane_->AddMessage(text, type);
    EXPECT_EQ(Shown(), rows);
    EXPECT_TRUE(tree().IsSelected(tree().GetCount() - 1) && tree().GetSelectedCount() == 1);
  }
}

TEST_F(OutputPaneTest, PushesTheFirstRowOutForEachThatComesWhenItIsFull) {
  EXPECT_EQ(pane_->GetMaxEntries(), 1400);
  pane_->SetMaxEntries(2);
  for (const auto& [text, rows] : Cases<2>(R"(a => +Program|a; ;; b => +Program|a;+Program|b;
           c => +Program|b;+Program|c; ;; d\ne => +Program|d;|e; ;; f\ng\nh => |g;|h;)")) {
    std::string lines = text;
    for (std::size_t at; (at = lines.find("\\n")) != lines.npos;) lines.replace(at, 2, "\n");
    pane_->AddMessage(lines.c_str(), 0);
    EXPECT_EQ(Shown(), rows);
  }
  // Fewer are kept than there are: one goes for one that comes.
  pane_->SetMaxEntries(0);
  pane_->AddMessage("i", 0);
  EXPECT_EQ(Shown(), "|h;+Program|i;");
  ScriptedPrompts prompts;
  pane_->OnDisplayMessage();
  tree().SetCaret(0);
  Choose(ID_OUTPUT_DISPLAY);
  pane_->OnClearAll();
  pane_->OnDisplayMessage();
  EXPECT_THAT(prompts.shown, testing::ElementsAre(ShownBox{"i", BOX_INFORMATION},
                                                  ShownBox{"f\ng\nh", BOX_INFORMATION}));
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  for (const auto& [option, entries] : {std::pair(7, 7), {0, 7}, {-3, 7}, {9, 9}}) {
    options.HoldValue(50144, std::to_string(option));
    pane_->OnRegistryChange();
    EXPECT_EQ(pane_->GetMaxEntries(), entries);
  }
  EXPECT_EQ(CDQOutputWnd().GetMaxEntries(), 9);
  options.UnsetValue(50144);
}

TEST_F(OutputPaneTest, AnErrorShowsTheBarIfItMay) {
  for (const bool may : {true, false}) {
    pane_->SetShowOnError(may);
    for (int type = 0; type < 9; ++type) {
      Choose(ID_OUTPUT_HIDE);
      EXPECT_FALSE(pane_->IsShown());
      pane_->AddMessage("x", type);
      EXPECT_EQ(pane_->IsShown(), may && (type == 2 || type == 5)) << type;
    }
  }
  Choose(ID_OUTPUT_FLOAT);
  EXPECT_TRUE(pane_->IsFloating());
  Choose(ID_OUTPUT_FLOAT);
  EXPECT_EQ(pane_->GetDockSide(), DockSide::kBottom);
  frame_.MoveWindow({0, 0, 400, 120});
  frame_.ShowControlBar(pane_.get(), true);
  EXPECT_EQ(tree().GetPlace(), (CRect{8, 5, 400, 120}));
  // It lies where it did, but the edge to size it by is the other one.
  frame_.DockControlBar(pane_.get(), DockSide::kTop);
  EXPECT_EQ(tree().GetPlace(), (CRect{8, 0, 400, 115}));
}

TEST_F(OutputPaneTest, ClearsSelectsCopiesAndSavesItsRows) {
  FilePrompts prompts;
  for (const char* text : {"a", "b", "c", "d"}) pane_->AddMessage(text, 0);
  tree().SelectRows(1, 1);
  Choose(ID_EDIT_COPY);
  EXPECT_EQ(tree().GetCopyText(), CString(kTime) + "\tProgram\tb\r\n" + kTime + "\tProgram\td\r\n");
  Choose(ID_EDIT_CLEAR);
  EXPECT_EQ(Shown(), "+Program|a;+Program|c;");
  Choose(ID_EDIT_SELECT_ALL);
  EXPECT_EQ(tree().GetSelectedCount(), 2);
  Choose(ID_OUTPUT_UNSELECT_ALL);
  EXPECT_EQ(tree().GetSelectedCount(), 0);
  pane_->SetFileSaveRegistrySection("Pane");
  prompts.chosen = {{files_ / "saved.txt"}, 2};
  Choose(ID_FILE_SAVE);
  std::string kinds;
  for (const auto& [name, patterns] : prompts.asked.kinds) kinds += name + '|' + patterns + '|';
  EXPECT_EQ(kinds, "Messages(*.MSG)|*.msg|Text(*.TXT)|*.txt|All Files(*.*)|*.*|");
  EXPECT_EQ(prompts.asked.extension, "MSG");
  EXPECT_EQ(files_.Get("saved.txt"),
            std::string(kTime) + "\tProgram\ta\r\n" + kTime + "\tProgram\tc\r\n");
  EXPECT_EQ(app_.GetProfileString("Pane", "LastSaveErrorFileExtension"), "txt");
  EXPECT_EQ(app_.GetProfileInt("Pane", "LastSaveErrorFilterIndex", 0), 2);
  EXPECT_EQ(app_.GetProfileString("Pane", "LastSaveErrorDirectory"), files_.path() + "/");
  tree().SetCaret(1);
  prompts.chosen = {};
  Choose(ID_FILE_SAVE);
  EXPECT_EQ(prompts.asked.folder + " " + prompts.asked.extension + " " +
                std::to_string(prompts.asked.kind),
            files_.path() + "/ txt 2");
  CDQOutputErrorDialog dialog(*pane_);
  dialog.Create(CDQOutputErrorDialog::kTemplateId, &frame_);
  EXPECT_STREQ(dialog.GetTree().CellText(1, 2), "c");
  EXPECT_STREQ(dialog.GetTree().CellText(1, 0), kTime);
  pane_->ClearTree();
  EXPECT_EQ(dialog.GetTree().GetSelectedCount(), 1);
  dialog.SendMessage(WM_COMMAND, CDQOutputErrorDialog::kDisplayId);
  DoubleClick(dialog.GetTree(), 1);
  EXPECT_THAT(prompts.shown,
              testing::ElementsAre(ShownBox{"c", BOX_INFORMATION}, ShownBox{"c", BOX_INFORMATION}));
  pane_.reset();
  EXPECT_EQ(Tree::gone > 0, true);
}

TEST_F(OutputPaneTest, IsAPlainListWithTheKeyboardAndAMenu) {
  frame_.RecalcLayout();
  FilePrompts prompts;
  MenuLayer layer;
  pane_->SendMessage(WM_CONTEXTMENU, 0, MakeLParam(30, 40));
  EXPECT_EQ(layer.told,
            "30,40: -45352 -57634 -57642 -45351 -57632 -57633 -57603 -57607 45353 45354");
  pane_->AddMessage("a", 0);
  pane_->AddMessage("b\nc", 5);
  tree().UnselectAll();
  pane_->SendMessage(WM_CONTEXTMENU, 0, -1);
  EXPECT_EQ(layer.told, "8,239: 45352 -57634 57642 -45351 -57632 57633 57603 57607 45353 45354")
      << "below the current row";
  tree().SelectRows(0, 0);
  Choose(ID_FILE_PRINT);
  tree().UnselectAll();
  Choose(ID_FILE_PRINT);
  EXPECT_EQ(prompts.offers_selection, "+-");
  ScriptedPrinting printing;
  prompts.prints = true;
  Choose(ID_FILE_PRINT);
  EXPECT_NE(printing.document.find("(Output Test Message Log     "), std::string::npos);
  Choose(ID_OUTPUT_FLOAT);
  tree().SetCaret(2);
  pane_->SendMessage(WM_CONTEXTMENU, 0, -1);
  EXPECT_EQ(layer.told, "0,234: 45352 -57634 57642 -45351 -57632 57633 57603 57607 *45353 45354");
  DoubleClick(tree(), 2);
  EXPECT_EQ(prompts.shown.back(), (ShownBox{"b\nc", BOX_INFORMATION}));
  pane_->SetFocus();
  EXPECT_EQ(CWnd::GetFocus(), &tree());
  EXPECT_TRUE(tree().IsMultiSelect() && !tree().GetAutoSort() && !tree().IsHeaderShown());
  RecordingDC dc;
  tree().Paint(dc);
  // Without titles, lines and buttons.
  EXPECT_TRUE(
      dc.Text().starts_with("fill 0,0 300,120 ffffff\npicture 0,1 16,17 of 16x16 2a82dece\n"
                            "text 21,2 \"04:05:06.007\"\n"))
      << dc.Text();
}

TEST_F(OutputPaneTest, MirrorsRowsToALogThatStartsOverAtItsLimit) {
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  EXPECT_THAT(std::string(options.GetString(50255).View()),
              testing::EndsWith("/OutputTest/Output TestOutput.log"));
  const std::string path = files_ / "log";
  options.HoldValue(50255, path);
  options.HoldValue(50257, "1");
  pane_->AddMessage("off", 0);
  options.HoldValue(50256, "1");
  pane_->SetMaxEntries(1);
  pane_->AddMessage("a\tb\nc", 4);
  const std::string rows = std::string(kTime) + " DBMS a    b\r\n  c\r\n";
  EXPECT_EQ(files_.Get("log"), rows);
  for (const auto& [size, expected] : {std::pair(1023, 1023 + rows.size()), {1024, rows.size()}}) {
    files_.Put("log", std::string(static_cast<std::size_t>(size), 'x'));
    pane_->AddMessage("a\tb\nc", 4);
    EXPECT_EQ(files_.Get("log").size(), expected);
  }
  options.HoldValue(50257, "0");
  files_.Put("log", std::string(5000, 'x'));
  pane_->AddMessage("a\tb\nc", 4);
  EXPECT_EQ(files_.Get("log").size(), 5000 + rows.size());
  // One that can't be written is told once for a message, whose rows are there all the same.
  ScriptedPrompts prompts;
  options.HoldValue(50255, files_.path());
  pane_->SetMaxEntries(9);
  pane_->AddMessage("a\nb", 0);
  EXPECT_EQ(prompts.shown.size(), 1u);
  EXPECT_THAT(Shown(), testing::EndsWith("+Program|a;|b;"));
  // So is one that can't start over, and behind the rows: the pane may end meanwhile.
  options.HoldValue(50257, "1");
  options.HoldValue(50255, path);
  CFile held(path.c_str(), CFile::modeWrite | CFile::shareDenyWrite);
  prompts.on_box = [&] {
    EXPECT_TRUE(pane_ == nullptr || Shown().ends_with("+Program|c;"));
    pane_.reset();
  };
  pane_->AddMessage("c", 0);
  EXPECT_EQ(pane_, nullptr);
  for (const int id : {50255, 50256, 50257}) options.UnsetValue(id);
}

TEST_F(OutputPaneTest, TakesTheSameTimeForAMessageHoweverManyRowsThereAre) {
  pane_->SetMaxEntries(1'000'000);
  const auto time_of = [&](int messages) {
    const std::clock_t start = std::clock();
    for (int i = 0; i < messages; ++i) pane_->AddMessage("a message", 0);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  };
  time_of(500);
  const double first = time_of(500);
  time_of(20'000);
  EXPECT_LT(time_of(500), 5 * first + 0.05);
  pane_->SetMaxEntries(21'500);
  EXPECT_LT(time_of(500), 5 * first + 0.05) << "when it is full";
}

TEST(ProgressDialog, NotesACancelThatThePersonAgreesTo) {
  MainWindow main;
  ScriptedPrompts prompts{BUTTON_NO, BUTTON_YES};
  CDQProgressDialog dialog("Export");
  dialog.SetText1("first");
  dialog.SetRange(0, 5);
  dialog.SetStepIncrement(2);
  dialog.SetPos(1);
  ASSERT_TRUE(dialog.Create(&main));
  EXPECT_EQ(dialog.GetWindowText() + dialog.GetDlgItemText(CDQProgressDialog::kTextId),
            "Exportfirst");
  dialog.StepIt();
  EXPECT_EQ(dialog.GetPos(), 3);
  for (const bool cancelled : {false, true}) {
    dialog.SendMessage(WM_COMMAND, IDCANCEL);
    EXPECT_EQ(dialog.GetCancelled(), cancelled);
  }
  EXPECT_EQ(prompts.shown.front().text, "Cancel Operation?");
  dialog.ResetCancelled();
  dialog.SetCancelOperationPrompt(nullptr);
  dialog.SendMessage(WM_COMMAND, IDCANCEL);
  EXPECT_TRUE(dialog.GetCancelled() && prompts.shown.size() == 2);
  EXPECT_FALSE(dialog.PlayAVI());
  dialog.SetPlayAVI(5);
  EXPECT_EQ(dialog.GetPlayAVI(), 0u);
  EXPECT_TRUE(dialog.PlayAVI() && dialog.GetPlayAVI() == 5);
  EXPECT_TRUE(dialog.GetDlgItem(CDQProgressDialog::kBarId)->IsShown());
  CDQMessageDialog message;
  ASSERT_TRUE(message.Create(&main));
  EXPECT_FALSE(message.GetDlgItem(CDQProgressDialog::kBarId)->IsShown());
}

TEST(ProgressBox, MovesWhileAThreadWorksAndKeepsItsOwnerDisabled) {
  MainWindow main;
  struct Bars : RecordingObserver {
    explicit Bars(CWnd& window) : owner(window) {}
    void OnWindowChange(CWnd& window, WindowChange change, const ChangedRange&) override {
      const auto* const bar = dynamic_cast<CProgressCtrl*>(&window);
      if (bar == nullptr || change != WindowChange::kContent) return;
      owner_is_disabled = !owner.IsWindowEnabled();
      position = bar->GetPos();
    }
    CWnd& owner;
    bool owner_is_disabled = false;
    std::atomic<int> position = 0;
  } bars(main);
  DQProgressBox box("Load", "rows");
  const auto work = [](DQProgressBox& own, void* parameter) -> UINT {
    const std::atomic<int>& position = *static_cast<std::atomic<int>*>(parameter);
    while (position < 20) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return own.GetCancelled() ? 0 : 7;
  };
  EXPECT_EQ(box.Run(&main, work, &bars.position), 7);
  EXPECT_TRUE(bars.owner_is_disabled && main.IsWindowEnabled());
  EXPECT_EQ(box.Run(nullptr, nullptr, nullptr), -1);
}

}  // namespace
}  // namespace dq::test
