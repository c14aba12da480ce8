// Documents with their files, templates, frames and views: how they are made, saved and closed, in
// whatever order that happens.

#include "tests/support/forwarding_files.h"
#include "tests/support/own_settings.h"
#include "tests/support/registries.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// What happens at a moment in the life of a document, its frame or its view.
std::map<std::string, std::function<void()>> g_at;
/// How many documents, frames and views there are.
int g_alive = 0;

void At(const char* moment) {
  // It may change what happens.
  const auto action = g_at.contains(moment) ? g_at[moment] : std::function<void()>();
  if (action) action();
}

struct Counted {
  Counted() { ++g_alive; }
  ~Counted() { --g_alive; }
};

/// Holds a text.
struct Doc : CDocument, Counted {
  DECLARE_DYNCREATE(Doc)
  Doc() { last = this; }
  void DeleteContents() override { text.Empty(); }
  void Serialize(CArchive& archive) override {
    At("serialize");
    archive.IsStoring() ? archive << text : archive >> text;
  }
  BOOL OnNewDocument() override {
    const BOOL made = CDocument::OnNewDocument() && !g_at.contains("refuse");
    At("new");
    return made;
  }
  BOOL OnOpenDocument(const char* path) override {
    const BOOL opened = CDocument::OnOpenDocument(path);
    At("open");
    return opened;
  }
  void OnChangedViewList() override {
    CDocument::OnChangedViewList();
    At("view");
  }
  void PreCloseFrame(CFrameWnd*) override { At("before close"); }
  void OnIdle() override { At("idle"); }
  void Change(const char* to) {
    text = to;
    SetModifiedFlag();
  }
  CFrameWnd& Frame() { return *GetFirstView()->GetParentFrame(); }

  CString text;
  static inline Doc* last;
};

struct View : CView, Counted {
  DECLARE_DYNCREATE(View)
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message == WM_CREATE) last = this;
    return CView::WindowProc(message, wparam, lparam);
  }
  void OnInitialUpdate() override {
    CView::OnInitialUpdate();
    At("initial update");
  }
  void OnActivateView(bool on, CView* now, CView* former) override {
    CView::OnActivateView(on, now, former);
    if (on) At("activate");
  }
  static inline View* last;
};

struct Child : CMDIChildWnd, Counted {
  DECLARE_DYNCREATE(Child)
};
struct Top : CFrameWnd, Counted {
  DECLARE_DYNCREATE(Top)
};

IMPLEMENT_DYNCREATE(Doc, CDocument)
IMPLEMENT_DYNCREATE(View, CView)
IMPLEMENT_DYNCREATE(Child, CMDIChildWnd)
IMPLEMENT_DYNCREATE(Top, CFrameWnd)

struct Prompts : ScriptedPrompts {
  using ScriptedPrompts::ScriptedPrompts;
  std::optional<platform::ChosenFiles> ChooseFile(const platform::FileQuestion& asked) override {
    file = asked;
    if (chosen.empty()) return std::nullopt;
    return platform::ChosenFiles{{chosen}, 1};
  }
  /// The texts of the boxes since the last call.
  std::string Told() {
    std::string told;
    for (const ShownBox& box : shown) told += box.text + "|";
    shown.clear();
    return told;
  }
  platform::FileQuestion file;
  std::string chosen;
};

struct Manager : CDocManager {
  void Clear() { m_templates.clear(); }
};

/// A program with one kind of documents. What it has made is gone when it ends.
struct Session {
  explicit Session(std::initializer_list<BoxButton> script = {},
                   const CRuntimeClass* frame = RUNTIME_CLASS(Child))
      : prompts(script) {
    module.AddString(129, "Tool\nText\nText File\nTexts (*.txt)\n.txt;*.LOG ;\nTool.Text\nA Text");
    module.AddResource(RESOURCE_MENU, 129, "item 40001 \"Text\"\n");
    module.AddResource(RESOURCE_MENU, 128, "item 40002 \"Main\"\nitem 57616 \"Recent\"\n");
    module.AddResource(RESOURCE_ACCELERATOR, 129, "F6 57602\n");
    main.Create("Main", "Tool", {0, 0, 400, 300}, 128);
    app.m_pMainWnd = &main;
    app.WriteProfileString("Recent File List", nullptr, nullptr);
    app.m_pDocManager = std::make_unique<Manager>();
    kind = Add(frame);
  }
  ~Session() {
    g_at.clear();
    main.DestroyWindow();
    app.Run();
    EXPECT_EQ(std::exchange(g_alive, 0), 0);
  }
  CMultiDocTemplate* Add(const CRuntimeClass* frame, UINT id = 129) {
    auto made =
        std::make_unique<CMultiDocTemplate>(id, RUNTIME_CLASS(Doc), frame, RUNTIME_CLASS(View));
    app.AddDocTemplate(made.get());
    return made.release();
  }
  Doc* Open(const char* path = nullptr) { return static_cast<Doc*>(kind->OpenDocumentFile(path)); }

  TempDirectory directory;
  ResourceModule module;
  CDynLinkLibrary link{&module};
  Prompts prompts;
  CWinApp app{"documents"};
  CMDIFrameWnd main;
  CMultiDocTemplate* kind = nullptr;
};

/// Fails to put a file in the place of another while it is told to.
struct FailingFiles : ForwardingFiles {
  platform::Error ReplaceAndClose(HANDLE file, View bytes) override {
    if (refusal.ok()) return target.ReplaceAndClose(file, bytes);
    target.Close(file);
    return refusal;
  }
  platform::Error refusal;
};

TEST(Documents, AreSavedInThePlaceOfTheFormerFileWhichSurvivesEveryFailure) {
  Session session;
  const std::string path = session.directory.Put("a.txt", "former");
  std::filesystem::permissions(path, std::filesystem::perms{0640});
  Doc* const doc = session.Open();
  doc->Change("abc");
  EXPECT_TRUE(doc->DoSave((session.directory / "x/../a.txt").c_str()) == 0) << "no directory x";
  EXPECT_TRUE(doc->DoSave(path.c_str()) && doc->IsModified() == 0);
  EXPECT_EQ(session.directory.Get("a.txt") + doc->GetTitle() + "|" + doc->GetPathName(),
            "\x03"
            "abca.txt|" +
                path);
  EXPECT_TRUE(session.directory.Mode("a.txt") == 0640 && session.directory.Count() == 1);
  session.prompts.Told();

  FailingFiles files;
  const auto full = [&] { files.refusal = {platform::ErrorKind::kNoSpace, 28}; };
  using Told = const char*;
  for (const auto& [fails, told] : Rows<std::function<void()>, Told>{
           {[] { throw CFileException(CFileException::accessDenied); },
            "% can not be written.  It is protected or in use.|"},
           {[] { throw CArchiveException(CArchiveException::badClass); },
            "% does not have the expected format.|"},
           {[] { throw CArchiveException(CArchiveException::writeOnly); },
            "Failed to save document.|"},
           {[] { throw std::bad_alloc(); }, "Failed to save document.|"},
           {[] { throw CUserException(); }, ""},
           {full, "There is no room left on the disk for %.|"}}) {
    for (const char* const name : {"a.txt", "new.txt"}) {
      const std::string to = session.directory / name;
      g_at["serialize"] = fails;
      doc->Change("lost");
      EXPECT_FALSE(doc->DoSave(to.c_str()));
      std::string expected = told;
      if (const auto at = expected.find('%'); at != expected.npos) expected.replace(at, 1, to);
      EXPECT_EQ(session.prompts.Told(), expected);
      EXPECT_EQ(session.directory.Get("a.txt") + session.directory.Get("new.txt"),
                "\x03"
                "abc(none)");
      EXPECT_TRUE(doc->IsModified() && doc->GetPathName() == path && doc->text == "lost");
    }
  }
  // One that is begun by other means than the archive's goes too.
  files.refusal = {};
  g_at["serialize"] = [&] { session.directory.Put("begun", "half"), throw CUserException(); };
  EXPECT_TRUE(!doc->DoSave((session.directory / "begun").c_str()));
  EXPECT_EQ(session.directory.Get("begun"), "(none)");
}

TEST(Documents, AreLoadedOrToldAndDamagedFilesLeaveThemEmpty) {
  Session session;
  Doc* const doc = session.Open();
  for (const auto& [bytes, result, text, told] : Rows<std::string, int, const char*, const char*>{
           {"\x03"
            "abc",
            1, "abc", ""},
           {"", 1, "", ""},
           {"\x05"
            "ab",
            0, "", "% does not have the expected format.|"},
           {"(none)", 0, "kept", "%\nThe path or the file name is not valid.|"}}) {
    const std::string path =
        bytes == "(none)" ? session.directory / "none" : session.directory.Put("a", bytes);
    doc->Change("kept");
    EXPECT_EQ(doc->OnOpenDocument(path.c_str()), result);
    std::string expected = told;
    if (!expected.empty()) expected.replace(0, 1, path);
    EXPECT_EQ(session.prompts.Told() + "=" + static_cast<const char*>(doc->text),
              expected + "=" + text);
    EXPECT_EQ(doc->IsModified(), *text == 'k' ? 1 : 0);
  }
}

TEST(Documents, AskToBeSavedWhereThePersonWantsIt) {
  constexpr BoxButton kYes = BUTTON_YES, kNo = BUTTON_NO, kCancel = BUTTON_CANCEL;
  // Which path it has ("r" is read-only) and which one is chosen; then the results.
  for (const auto& [path, chosen, answer, saved, now, shown] :
       Rows<std::string, std::string, BoxButton, int, const char*, const char*>{
           {"", "b", kYes, 1, "b", "Save changes to Text1?|"},
           {"", "", kYes, 0, "", "Save changes to Text1?|"},
           {"a", "b", kYes, 1, "a", "Save changes to %/a?|"},
           {"r", "b", kYes, 1, "b", "Save changes to %/r?|"},
           {"r", "", kYes, 0, "r", "Save changes to %/r?|"},
           {"a", "", kNo, 1, "a", "Save changes to %/a?|"},
           {"a", "b", kCancel, 0, "a", "Save changes to %/a?|"}}) {
    Session session({answer});
    const auto in_directory = [&](const std::string& name) {
      return name.empty() ? std::string() : session.directory / name;
    };
    Doc* const doc = session.Open();
    EXPECT_TRUE(doc->SaveModified()) << "it hasn't been changed";
    session.directory.Put("r", "");
    std::filesystem::permissions(session.directory / "r", std::filesystem::perms{0400});
    if (!path.empty()) doc->SetPathName(in_directory(path).c_str());
    session.prompts.chosen = in_directory(chosen);
    doc->Change("x");
    EXPECT_EQ(doc->SaveModified(), saved);
    std::string told = shown;
    if (const auto at = told.find('%'); at != told.npos) {
      told.replace(at, 1, session.directory.path());
    }
    ASSERT_EQ(session.prompts.shown.size(), 1U);
    EXPECT_EQ(session.prompts.shown[0].type, BOX_YES_NO_CANCEL | BOX_EXCLAMATION);
    EXPECT_EQ(session.prompts.Told(), told);
    EXPECT_EQ(doc->GetPathName(), in_directory(now));
    EXPECT_EQ(doc->IsModified(), saved && answer == kYes ? 0 : 1);
    EXPECT_EQ(session.directory.Get(answer == kYes && saved ? now : "none"),
              answer == kYes && saved ? "\x01x" : "(none)");
  }
}

TEST(Documents, ProposeAPathOfTheirKindAndACopyLeavesThemAsTheyAre) {
  Session session;
  Doc* const doc = session.Open();
  doc->SetTitle("My/ text: 1");
  EXPECT_FALSE(doc->DoSave(nullptr));
  const platform::FileQuestion& asked = session.prompts.file;
  EXPECT_EQ(asked.title + "|" + asked.name + "|" + asked.extension, "Save As|My text 1.txt|txt");
  ASSERT_TRUE(!asked.open && asked.ask_to_replace && asked.kinds.size() == 2U);
  EXPECT_EQ(asked.kinds[0].patterns + asked.kinds[1].name, "*.txt;*.LOGAll Files (*.*)");
  doc->Change("x");
  EXPECT_TRUE(doc->DoSave((session.directory / "copy").c_str(), 0));
  EXPECT_EQ(doc->GetTitle() + doc->GetPathName() + session.directory.Get("copy").c_str(),
            "My/ text: 1\x01x");
}

TEST(DocTemplate, KnowsItsFilesAndLeavesNothingOfWhatCannotBeMade) {
  Session session;
  CString text;
  EXPECT_TRUE(session.kind->GetDocString(text, CDocTemplate::regFileTypeName) && text == "A Text");
  EXPECT_FALSE(
      CMultiDocTemplate(1, nullptr, nullptr, nullptr).GetDocString(text, CDocTemplate::docName));
  Doc* const open = session.Open(session.directory.Put("o.x", "").c_str());
  CDocument* found = nullptr;
  std::string matches;
  for (const char* const path : {"/a.TXT", "/a.log", "/a.txt/b", "/a.sql", "", "/a"}) {
    matches += std::to_string(session.kind->MatchDocType(path, found)) + " ";
  }
  EXPECT_EQ(matches, "4 4 3 3 0 3 ");
  EXPECT_TRUE(found == nullptr && session.kind->MatchDocType(open->GetPathName(), found) == 5);
  EXPECT_EQ(found, open);
  open->SetPathName("c:/Data/A.b");
  EXPECT_EQ(session.kind->MatchDocType("C:\\data\\a.B", found), CDocTemplate::yesAlreadyOpen);

  const int before = g_alive;
  const CRuntimeClass* const kDoc = RUNTIME_CLASS(Doc);
  const CRuntimeClass* const kFrame = RUNTIME_CLASS(Child);
  const CRuntimeClass* const kView = RUNTIME_CLASS(View);
  for (const auto& [of_document, of_frame, of_view] :
       Rows<const CRuntimeClass*, const CRuntimeClass*, const CRuntimeClass*>{
           {nullptr, kFrame, kView},
           {kView, kFrame, kView},
           {kDoc, nullptr, kView},
           {kDoc, kDoc, kView},
           {kDoc, kFrame, kDoc},
           {kDoc, RUNTIME_CLASS(CView), kView}}) {
    CMultiDocTemplate broken(129, of_document, of_frame, of_view);
    EXPECT_EQ(broken.OpenDocumentFile(nullptr), nullptr);
    EXPECT_EQ(session.prompts.Told(), "Failed to create empty document.|");
    EXPECT_TRUE(broken.GetDocuments().empty() && g_alive == before);
  }
  g_at["refuse"] = {};
  EXPECT_TRUE(session.Open() == nullptr && g_alive == before);
  EXPECT_EQ(session.Open((session.directory / "none").c_str()), nullptr);
  EXPECT_TRUE(g_alive == before && session.kind->GetDocuments().size() == 1U);
  // A frame without views leaves a document that fails too.
  CMultiDocTemplate bare(129, kDoc, kFrame, nullptr);
  EXPECT_TRUE(bare.OpenDocumentFile(nullptr) == nullptr && g_alive == before);
}

TEST(DocTemplate, WhateverClosesWhatIsBeingMadeNothingOfItIsLeft) {
  const std::pair<const char*, std::function<void()>> kActions[] = {
      {"document", [] { Doc::last->OnCloseDocument(); }},
      {"frame", [] { View::last->GetParentFrame()->DestroyWindow(); }},
      {"asked frame", [] { View::last->GetParentFrame()->SendMessage(WM_CLOSE); }},
      {"view", [] { View::last->DestroyWindow(); }},
      {"all", [] { AfxGetApp()->CloseAllDocuments(); }},
      {"main", [] { AfxGetMainWnd()->SendMessage(WM_CLOSE); }}};
  for (const char* const moment : {"view", "new", "open", "initial update", "activate"}) {
    for (const auto& [what, action] : kActions) {
      for (const CRuntimeClass* const frame : {RUNTIME_CLASS(Child), RUNTIME_CLASS(Top)}) {
        SCOPED_TRACE(std::string(moment) + ", " + what + ", " + frame->m_lpszClassName);
        Session session({}, frame);
        const std::string path = session.directory.Put("a", "");
        bool once = true;
        g_at[moment] = [&once, run = action] {
          if (std::exchange(once, false)) run();
        };
        const Doc* const made = session.Open(moment == std::string("new") ? nullptr : path.c_str());
        EXPECT_TRUE(made == nullptr && session.kind->GetDocuments().empty()) << moment << what;
      }
    }
    // One whose template goes lives on without it.
    Session session;
    g_at[moment] = [&] { static_cast<Manager&>(*session.app.m_pDocManager).Clear(); };
    const std::string path = session.directory.Put("a", "");
    Doc* const made = session.Open(moment == std::string("new") ? nullptr : path.c_str());
    EXPECT_TRUE(made != nullptr && made->GetDocTemplate() == nullptr) << moment;
  }
}

TEST(DocTemplate, SeveralFramesOfADocumentAreNumberedAndOnlyTheLastAsks) {
  Session session({BUTTON_CANCEL, BUTTON_NO});
  Doc* const doc = session.Open();
  CFrameWnd& first = doc->Frame();
  CFrameWnd* const second = session.kind->CreateNewFrame(doc, &first);
  ASSERT_NE(second, nullptr);
  session.kind->InitialUpdateFrame(second, doc);
  EXPECT_EQ(first.GetWindowText() + second->GetWindowText() + session.main.GetWindowText(),
            "Text1:1Text1:2Text1 - Tool");
  doc->Change("x");
  int told = 0;
  g_at["before close"] = [&] { ++told; };
  second->SendMessage(WM_CLOSE);
  EXPECT_EQ(first.GetWindowText() + session.prompts.Told().c_str(), "Text1");
  session.main.SendMessage(WM_COMMAND, ID_FILE_CLOSE);
  EXPECT_TRUE(doc->GetViews().size() == 1 && doc->text == "x" && told == 1);
  session.main.SendMessage(WM_COMMAND, ID_FILE_CLOSE);
  EXPECT_TRUE(session.kind->GetDocuments().empty() && told == 2 && g_alive == 0);
  EXPECT_EQ(session.main.GetWindowText() + session.prompts.Told().c_str(),
            "ToolSave changes to Text1?|Save changes to Text1?|");
}

TEST(DocTemplate, ShowsItsMenuAndTakesItsKeysWhileADocumentIsActive) {
  Session session;
  CFrameWnd* const plain = session.kind->CreateNewFrame(nullptr, nullptr);
  plain->InitialUpdateFrame(nullptr, true);
  const auto shown = [&] { return session.main.GetMenu()->GetMenuItemID(0); };
  std::string menus = std::to_string(shown());
  Doc* const doc = session.Open();
  menus += " " + std::to_string(shown());
  MSG key{.hwnd = session.main.GetSafeHwnd(), .message = WM_KEYDOWN, .wParam = VK_F1 + 5};
  EXPECT_TRUE(doc->GetDefaultAccelerators() != nullptr && PreTranslateInput(key));
  EXPECT_TRUE(session.kind->GetDocuments().empty()) << "the key closes it";
  menus += " " + std::to_string(shown());
  session.Open();
  static_cast<Manager&>(*session.app.m_pDocManager).Clear();
  EXPECT_EQ(menus + " " + std::to_string(shown()), "40002 40001 40002 40002");
  plain->DestroyWindow();
}

TEST(Application, ClosesOnlyWhenAllThatWasChangedIsSavedOrGivenUp) {
  // The answers, and then whether the program goes on, and the files.
  for (const auto& [first, second, fails, goes_on, files] :
       Rows<BoxButton, BoxButton, bool, bool, const char*>{
           {BUTTON_YES, BUTTON_YES, false, false,
            "\x01"
            "A\x01"
            "B"},
           {BUTTON_NO, BUTTON_YES, false, false,
            "\x01"
            "B"},
           {BUTTON_NO, BUTTON_NO, false, false, ""},
           {BUTTON_YES, BUTTON_CANCEL, false, true,
            "\x01"
            "A"},
           {BUTTON_CANCEL, BUTTON_NO, false, true, ""},
           {BUTTON_NO, BUTTON_YES, true, true, ""}}) {
    Session session({first, second});
    FailingFiles failing;
    if (fails) failing.refusal = {platform::ErrorKind::kNoSpace, 28};
    Doc* const a = session.Open(session.directory.Put("a", "").c_str());
    Doc* const b = session.Open(session.directory.Put("b", "").c_str());
    a->Change("A");
    b->Change("B");
    session.main.SendMessage(WM_COMMAND, ID_APP_EXIT);
    EXPECT_EQ(session.main.GetSafeHwnd() != nullptr, goes_on);
    EXPECT_EQ(session.directory.Get("a") + session.directory.Get("b"), files);
    EXPECT_EQ(session.kind->GetDocuments().size(), goes_on ? 2U : 0U);
    EXPECT_TRUE(!goes_on || (a->text == "A" && b->text == "B"));
  }
  // A main frame with a document of its own asks for that one once.
  Session session({BUTTON_NO, BUTTON_NO, BUTTON_CANCEL}, RUNTIME_CLASS(Top));
  for (const char* const text : {"A", "B"}) session.Open()->Change(text);
  session.app.m_pMainWnd = &Doc::last->Frame();
  session.app.m_pMainWnd->SendMessage(WM_CLOSE);
  EXPECT_EQ(session.prompts.Told(), "Save changes to Text2?|Save changes to Text1?|");
  EXPECT_TRUE(session.kind->GetDocuments().empty());
  session.app.m_pMainWnd = &session.main;
}

TEST(Application, EndsItsSessionByAskingAndThenWithoutQuestionsAndIdlesWithItsDocuments) {
  Session session({BUTTON_CANCEL, BUTTON_NO});
  session.Open()->Change("a");
  std::string idle;
  g_at["idle"] = [&] { idle += '.'; };
  Doc* const other = session.Open();
  PumpUntilIdle();
  g_at["idle"] = [&] { idle += ':', session.app.CloseAllDocuments(); };
  EXPECT_EQ(session.main.SendMessage(WM_QUERYENDSESSION), 0);
  EXPECT_EQ(session.main.SendMessage(WM_QUERYENDSESSION), 1);
  EXPECT_EQ(session.main.SendMessage(WM_ENDSESSION, 0), 0);
  EXPECT_EQ(session.app.m_pDocManager->GetOpenDocumentCount(), 2);
  PumpUntilIdle();
  EXPECT_EQ(idle, "..:");
  session.Open()->Change("b");
  session.main.SendMessage(WM_ENDSESSION, 1);
  EXPECT_TRUE(session.app.m_pDocManager->GetOpenDocumentCount() == 0 && other == other);
  EXPECT_EQ(session.prompts.Told(), "Save changes to Text1?|Save changes to Text1?|");
}

struct Stub : CDocTemplate {
  Stub(int answer, std::string& names)
      : CDocTemplate(1, nullptr, nullptr, nullptr), match(answer), log(names) {}
  Confidence MatchDocType(const char*, CDocument*&) override {
    log += '?';
    return static_cast<Confidence>(match);
  }
  CDocument* OpenDocumentFile(const char* path, bool) override {
    log += std::to_string(match) + (path == nullptr ? "" : path);
    return nullptr;
  }
  void SetDefaultTitle(CDocument*) override {}
  int match;
  std::string& log;
};

TEST(DocManager, OpensAFileByTheSurestTemplateAndOnceOnly) {
  Session session;
  for (const auto& [answers, log] :
       Cases<2>("0 => ? ;; 1 3 2 => ???3/d/a b ;; 3 4 4 => ???4/d/a b ;; => ")) {
    CDocManager manager;
    std::string got;
    for (const char each : answers) {
      if (each != ' ') manager.AddDocTemplate(std::make_unique<Stub>(each - '0', got).release());
    }
    EXPECT_EQ(manager.OpenDocumentFile("\"/d/x/../a b\" more"), nullptr);
    EXPECT_EQ(got, log);
    EXPECT_EQ(session.prompts.Told(), log.size() < 2 ? "Failed to open document.|" : "");
  }
  int read = 0;
  g_at["open"] = [&] { ++read; };
  const std::string path = session.directory.Put("a.txt", "\x01x");
  CDocument* const doc = session.app.OpenDocumentFile(path.c_str());
  session.Open();
  CFrameWnd* const frame = doc->GetFirstView()->GetParentFrame();
  for (CFrameWnd* const each : {frame, static_cast<CFrameWnd*>(&session.main)}) {
    each->ShowWindow(SW_SHOWMINIMIZED);
  }
  session.prompts.chosen = path;
  session.main.SendMessage(WM_COMMAND, ID_FILE_OPEN);
  EXPECT_TRUE(session.prompts.file.open && session.prompts.file.file_must_exist);
  EXPECT_TRUE(read == 1 && session.main.MDIGetActive() == frame);
  EXPECT_FALSE(frame->IsIconic() || session.main.IsIconic());
}

TEST(DocManager, AsksWhichKindOfDocumentToMakeWhereThereAreSeveral) {
  Session session;
  session.module.AddString(130, "\nNote\nNote File\n\n\n\n");
  session.module.AddString(131, "\nHidden\n\n\n\n\n");
  CMultiDocTemplate* const notes = session.Add(RUNTIME_CLASS(Child), 130);
  session.Add(RUNTIME_CLASS(Child), 131);
  for (const auto& [entered, button, made] :
       Rows<const char*, int, const char*>{{"", IDOK, "Text1"},
                                           {"2", IDOK, "Note1"},
                                           {"2", 100, "Note2"},
                                           {"2", IDCANCEL, ""},
                                           {"Text File", IDOK, "Text2"}}) {
    std::string offered;
    session.prompts.on_dialog = [&, text = entered, by = button](platform::DialogView& view) {
      offered = view.Caption();
      const auto controls = view.Controls();
      for (const std::string& item : controls[1].items) offered += "|" + item;
      if (*text != '\0') view.Enter(100, text);
      EXPECT_TRUE(view.Press(by));
    };
    Doc::last = nullptr;
    session.main.SendMessage(WM_COMMAND, ID_FILE_NEW);
    EXPECT_EQ(offered, "New|Text File|Note File");
    EXPECT_EQ(Doc::last == nullptr ? CString() : Doc::last->GetTitle(), made);
  }
  EXPECT_EQ(notes->GetDocuments().size(), 2U);
}

TEST(DocManager, EntersFileTypesForTheDesktopButTakesNoExtensionFromAnother) {
  Session session;
  ScriptedPlatform platform;
  MemoryRegistry registry;
  const platform::ScopedPlatform scope(With(&platform::Platform::registry, &registry));
  SetRegistryText(kClassesRoot, ".LOG", "", "Other.Log");
  for (const int compatibility : {0, 1}) {
    session.app.m_pDocManager->RegisterShellFileTypes(compatibility);
    std::string entered;
    for (const auto& [key, values] : Dump(registry, kClassesRoot)) {
      for (const auto& [name, value] : values) {
        entered += key + "=" + name + value.second.c_str() + "\n";
      }
    }
    const std::string print = R"(Tool.Text\shell\print\command=/opt/host /p "%1"
Tool.Text\shell\printto\command=/opt/host /pt "%1" "%2" "%3" "%4"
)";
    EXPECT_EQ(entered, R"(.LOG=Other.Log
.txt=Tool.Text
Tool.Text=A Text
Tool.Text\DefaultIcon=/opt/host,0
Tool.Text\shell\open\command=/opt/host "%1"
)" + (compatibility == 0 ? "" : print));
  }
}

TEST(RecentFiles, StandInTheProfileAndTheMenuTheLatestFirst) {
  Session session;
  session.app.LoadStdProfileSettings(3);
  CMenu* const menu = session.main.GetMenu();
  const auto items = [&] {
    session.main.UpdateMenu();
    std::string texts;
    for (int at = 1; at < menu->GetMenuItemCount(); ++at) {
      const UINT position = static_cast<UINT>(at);
      const bool gray = (menu->GetMenuState(position, MF_BYPOSITION) & MF_GRAYED) != 0;
      texts += std::to_string(menu->GetMenuItemID(at)) + menu->GetMenuString(position, 0x400) +
               (gray ? "-|" : "|");
    }
    return texts;
  };
  EXPECT_EQ(items(), "57616Recent-|");
  for (const auto& [path, shown] : Cases<2>(R"(
      /a => 57616&1 /a|
      /b/../b&b => 57616&1 /b&&b|57617&2 /a|
      /a => 57616&1 /a|57617&2 /b&&b|
      /a long directory/another one/file.txt => 57616&1 /.../another one/file.txt|57617&2 /a|57618&3 /b&&b|
      /a_name_without_room_for_any_directory => 57616&1 a_name_without_room_for_any_directory|57617&2 /.../another one/file.txt|57618&3 /a|)")) {
    session.app.AddToRecentFileList(path.c_str());
    EXPECT_EQ(items(), shown);
  }
}

TEST(RecentFiles, OpenByTheirCommandsAndLeaveTheListWhenTheyAreGone) {
  Session session;
  session.app.LoadStdProfileSettings(99);
  CRecentFileList& recent = *session.app.m_pRecentFileList;
  EXPECT_EQ(recent.GetSize(), 16);
  while (recent.GetCount() > 0) recent.Remove(0);
  const std::string path = session.directory.Put("a", "");
  session.Open(path.c_str())->OnCloseDocument();
  session.app.AddToRecentFileList((session.directory / "gone").c_str());
  session.main.SendMessage(WM_COMMAND, ID_FILE_MRU_FIRST);
  EXPECT_EQ(session.prompts.Told(),
            session.directory / "gone" + "\nThe path or the file name is not valid.|");
  EXPECT_TRUE(recent.GetCount() == 1 && recent[0] == path && recent.Find(path.c_str()) == 0);
  for (const int offset : {1, 0}) {
    session.main.SendMessage(WM_COMMAND, static_cast<WPARAM>(ID_FILE_MRU_FIRST + offset));
    EXPECT_EQ(session.kind->GetDocuments().size(), offset == 0 ? 1U : 0U);
  }
  CRecentFileList kept(0, "Recent File List", "File%d", 4);
  kept.ReadList();
  EXPECT_TRUE(kept.GetCount() == 1 && kept[0] == path && kept[1].IsEmpty());
  CRecentFileList unnamed(0, "", "File%d", 4), unnumbered(0, "Recent File List", "File", 4);
  for (CRecentFileList* const each : {&unnamed, &unnumbered}) {
    each->ReadList();
    EXPECT_TRUE(each->GetCount() == 0 && each->WriteList());
  }
}

}  // namespace
}  // namespace dq::test
