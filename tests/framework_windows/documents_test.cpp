// Documents with their files, templates, frames and views: how they are made, saved and closed, in
// whatever order that happens.

#include "tests/support/documents.h"

#include "tests/support/forwarding_files.h"
#include "tests/support/registries.h"

namespace dq::test {
namespace {

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
  Doc* const doc = session.New();
  doc->Change("abc");
  EXPECT_TRUE(doc->DoSave(path.c_str()) && doc->IsModified() == 0);
  EXPECT_EQ(doc->GetTitle() + doc->GetPathName(), "a.txt" + path);
  EXPECT_TRUE(session.directory.Mode("a.txt") == 0640 && session.directory.Count() == 1);

  FailingFiles files;
  for (const auto& [fails, told] : Rows<std::function<void()>, std::string>{
           {[] { throw CFileException(CFileException::accessDenied); },
            "@ can not be written.  It is protected or in use.|"},
           {[] { throw CArchiveException(CArchiveException::badClass); },
            "@ does not have the expected format.|"},
           {[] { throw CArchiveException(CArchiveException::writeOnly); },
            "Failed to save document.|"},
           {[] { throw std::bad_alloc(); }, "Failed to save document.|"},
           {[] { throw CUserException(); }, ""},
           {[&] {
              files.refusal = {platform::ErrorKind::kNoSpace, 28};
            },
            "There is no room left on the disk for @.|"}}) {
    for (const std::string name : {"a.txt", "new.txt"}) {
      g_at["serialize"] = fails;
      doc->Change("lost");
      EXPECT_FALSE(doc->DoSave(session.Path(name).c_str()));
      std::string expected = told;
      if (const auto at = told.find('@'); at != told.npos) expected.replace(at, 1, "%/" + name);
      EXPECT_EQ(session.Told(), expected);
      EXPECT_EQ(session.directory.Get("a.txt") + session.directory.Get("new.txt"), "abc(none)");
      EXPECT_TRUE(doc->IsModified() && doc->GetPathName() == path && doc->text == "lost");
    }
  }
  // One that is begun by other means than the archive's goes too.
  g_at["serialize"] = [&] { session.directory.Put("begun", "half"), throw CUserException(); };
  EXPECT_FALSE(doc->DoSave(session.Path("begun").c_str()));
  EXPECT_EQ(session.directory.Get("begun"), "(none)");
  // Begun anew, nothing is left of what it was.
  EXPECT_TRUE(doc->OnNewDocument() != 0 && !doc->IsModified());
  EXPECT_EQ(doc->GetPathName() + doc->text, "");
}

TEST(Documents, AreLoadedOrToldAndDamagedFilesLeaveThemEmpty) {
  Session session;
  Doc* const doc = session.New();
  session.directory.Put("empty", "");
  session.directory.Put("damaged", "!");
  session.directory.Put("whole", "abc");
  for (const auto& [name, text, told] : Cases<3>(R"(
      whole => abc => ;; none => kept => %/none@The path or the file name is not valid.|
      empty => => ;; damaged => => %/damaged does not have the expected format.|)")) {
    doc->Change("kept");
    EXPECT_EQ(doc->OnOpenDocument(session.Path(name).c_str()), told.empty() ? 1 : 0);
    std::string shown = session.Told();
    std::ranges::replace(shown, '\n', '@');
    EXPECT_EQ(shown + static_cast<const char*>(doc->text), told + text);
    EXPECT_EQ(doc->IsModified(), text == "kept" ? 1 : 0);
  }
}

TEST(Documents, AskToBeSavedWhereThePersonWantsIt) {
  // Its path, of which "r" is read-only, the one that is chosen and the answer; then whether it may
  // be closed, its path, and what is asked about.
  for (const auto& [path, chosen, answer, may_close, now, asked] : Cases<6>(R"(
      => b => Yes => 1 => b => Text1   ;; => => Yes => 0 => => Text1
      a => b => Yes => 1 => a => %/a   ;; r => b => Yes => 1 => b => %/r
      r => => Yes => 0 => r => %/r     ;; a => => No => 1 => a => %/a
      a => b => Cancel => 0 => a => %/a)")) {
    const BoxButton button = answer == "Yes"  ? BUTTON_YES
                             : answer == "No" ? BUTTON_NO
                                              : BUTTON_CANCEL;
    Session session({button});
    Doc* const doc = session.New();
    EXPECT_TRUE(doc->SaveModified()) << "it hasn't been changed";
    session.directory.Put("r", "");
    std::filesystem::permissions(session.Path("r"), std::filesystem::perms{0400});
    if (!path.empty()) doc->SetPathName(session.Path(path).c_str());
    session.prompts.chosen = session.Path(chosen);
    doc->Change("x");
    EXPECT_EQ(doc->SaveModified(), may_close == "1" ? 1 : 0);
    ASSERT_EQ(session.prompts.shown.size(), 1U);
    EXPECT_EQ(session.prompts.shown[0].type, BOX_YES_NO_CANCEL | BOX_EXCLAMATION);
    EXPECT_EQ(session.Told(), "Save changes to " + asked + "?|");
    const bool saved = may_close == "1" && button == BUTTON_YES;
    EXPECT_TRUE(doc->GetPathName() == session.Path(now) && doc->IsModified() == (saved ? 0 : 1));
    EXPECT_EQ(session.directory.Get(saved ? now : "none"), saved ? "x" : "(none)");
  }
}

TEST(Documents, ProposeAPathOfTheirKindAndACopyLeavesThemAsTheyAre) {
  Session session;
  Doc* const doc = session.New();
  doc->SetTitle("My/ text: 1");
  EXPECT_FALSE(doc->DoSave(nullptr));
  const platform::FileQuestion& asked = session.prompts.file;
  EXPECT_EQ(asked.title + "|" + asked.name + "|" + asked.extension, "Save As|My text 1.txt|txt");
  ASSERT_TRUE(!asked.open && asked.ask_to_replace && asked.kinds.size() == 2U);
  EXPECT_EQ(asked.kinds[0].patterns + asked.kinds[1].name, "*.txt;*.LOGAll Files (*.*)");
  doc->Change("x");
  EXPECT_TRUE(doc->DoSave(session.Path("copy").c_str(), 0));
  EXPECT_EQ(doc->GetTitle() + doc->GetPathName() + session.directory.Get("copy").c_str(),
            "My/ text: 1x");
}

/// Keeps what it is given, and the bytes of its files, and answers as it is told to.
struct ScriptedMail : platform::Mail {
  platform::Result<platform::MailOutcome> Send(const platform::MailMessage& message) override {
    got = message.subject + "|";
    for (const auto& [path, name] : message.attachments) {
      std::string bytes;
      EXPECT_TRUE(platform::Current().files->ReadAll(paths.emplace_back(path), bytes).ok());
      got += name + "=" + bytes;
    }
    return answer;
  }
  std::string got;
  std::vector<std::string> paths;
  platform::Result<platform::MailOutcome> answer{platform::MailOutcome::kHandedOver};
};

TEST(Documents, AreMailedAsTheyStandByTheirOwnFileOrATemporaryOne) {
  Session session;
  ScriptedMail mail;
  const platform::ScopedPlatform scope(With(&platform::Platform::mail, &mail));
  Doc* const doc = session.New();
  doc->text = "new";
  session.Command(ID_FILE_SEND_MAIL);
  EXPECT_EQ(mail.got, "Text1|Text1.txt=new");
  EXPECT_TRUE(doc->DoSave(session.Path("a").c_str()));
  session.Command(ID_FILE_SEND_MAIL);
  EXPECT_EQ(mail.got + mail.paths[1], "a|a=new" + session.Path("a"));
  doc->Change("more");
  mail.answer = platform::MailOutcome::kNoProgram;
  session.Command(ID_FILE_SEND_MAIL);
  mail.answer = platform::Error{platform::ErrorKind::kNotFound, 2};
  session.Command(ID_FILE_SEND_MAIL);
  EXPECT_EQ(mail.got + session.Told(),
            "a|a=moreThere is no mail program.|"
            "The mail could not be sent: No such file or directory.|");
  EXPECT_TRUE(doc->IsModified() && doc->GetPathName() == session.Path("a"));
  EXPECT_EQ(session.directory.Get("a"), "new");
  for (const int at : {0, 2, 3}) EXPECT_FALSE(std::filesystem::exists(mail.paths[at]));
  g_at["serialize"] = [] { throw CUserException(); };
  session.Command(ID_FILE_SEND_MAIL);
  EXPECT_EQ(mail.paths.size(), 4U) << "what can't be saved isn't sent";
}

TEST(DocTemplate, KnowsItsFilesAndLeavesNothingOfWhatCannotBeMade) {
  Session session;
  CString text;
  EXPECT_TRUE(session.kind->GetDocString(text, CDocTemplate::regFileTypeName) && text == "A Text");
  EXPECT_FALSE(
      CMultiDocTemplate(1, nullptr, nullptr, nullptr).GetDocString(text, CDocTemplate::docName));
  Doc* const open = session.Open("o.x");
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
  using Class = const CRuntimeClass*;
  const Class kDoc = RUNTIME_CLASS(Doc), kFrame = RUNTIME_CLASS(Child), kView = RUNTIME_CLASS(View);
  const Class kNone = nullptr, kAbstract = RUNTIME_CLASS(CView);
  for (const auto& [of_document, of_frame, of_view] :
       Rows<Class, Class, Class>{{kNone, kFrame, kView},
                                 {kView, kFrame, kView},
                                 {kDoc, kNone, kView},
                                 {kDoc, kDoc, kView},
                                 {kDoc, kFrame, kDoc},
                                 {kDoc, kFrame, kAbstract}}) {
    CMultiDocTemplate broken(129, of_document, of_frame, of_view);
    EXPECT_EQ(broken.OpenDocumentFile(nullptr), nullptr);
    EXPECT_EQ(session.Told(), "Failed to create empty document.|");
    EXPECT_TRUE(broken.GetDocuments().empty() && g_alive == before);
  }
  // A frame without views leaves a document that fails neither.
  g_at["refuse"] = {};
  CMultiDocTemplate bare(129, kDoc, kFrame, nullptr);
  EXPECT_TRUE(session.New() == nullptr && bare.OpenDocumentFile(nullptr) == nullptr);
  EXPECT_EQ(session.Open("damaged", "!"), nullptr);
  EXPECT_TRUE(g_alive == before && session.Count() == 1);
}

CFrameWnd* LastFrame() { return View::last == nullptr ? nullptr : View::last->GetParentFrame(); }

/// What handlers may do to the last document that was made.
const std::pair<const char*, void (*)()> kActions[] = {
    {"document", [] { Doc::last ? Doc::last->OnCloseDocument() : void(); }},
    {"frame", [] { LastFrame() ? void(LastFrame()->DestroyWindow()) : void(); }},
    {"asked frame", [] { LastFrame() ? void(LastFrame()->SendMessage(WM_CLOSE)) : void(); }},
    {"view", [] { View::last ? void(View::last->DestroyWindow()) : void(); }},
    {"all", [] { AfxGetApp()->CloseAllDocuments(); }},
    {"main", [] { AfxGetMainWnd()->SendMessage(WM_CLOSE); }}};

TEST(DocTemplate, WhateverClosesWhatIsBeingMadeNothingOfItIsLeft) {
  for (const char* const moment : {"view", "new", "open", "initial update", "activate"}) {
    for (const auto& [what, action] : kActions) {
      for (const CRuntimeClass* const frame : {RUNTIME_CLASS(Child), RUNTIME_CLASS(Top)}) {
        SCOPED_TRACE(std::string(moment) + ", " + what + ", " + frame->m_lpszClassName);
        Session session({}, frame);
        Once(moment, action);
        const Doc* const made = moment == std::string("new") ? session.New() : session.Open("a");
        EXPECT_TRUE(made == nullptr && session.Count() == 0);
      }
    }
    // One whose template goes lives on without it.
    Session session;
    g_at[moment] = [&] { static_cast<Manager&>(*session.app.m_pDocManager).Clear(); };
    const Doc* const made = moment == std::string("new") ? session.New() : session.Open("a");
    EXPECT_TRUE(made != nullptr && made->GetDocTemplate() == nullptr) << moment;
  }
}

TEST(DocTemplate, WhateverClosesWhatCloses) {
  for (const int way : {int{ID_FILE_CLOSE}, int{ID_APP_EXIT}, 0, 1}) {
    for (const char* const moment : {"box", "before close", "view", "activate"}) {
      for (const auto& [what, action] : kActions) {
        SCOPED_TRACE(std::to_string(way) + ", " + moment + ", " + what);
        Session session({BUTTON_YES, BUTTON_NO, BUTTON_YES, BUTTON_NO});
        session.prompts.on_box = [] { At("box"); };
        for (const char* const name : {"a", "b", "c"}) session.Open(name)->Change(name);
        Once(moment, action);
        if (way == 0) session.app.CloseAllDocuments();
        way == 1 ? LastFrame()->SendMessage(WM_CLOSE) : session.main.SendMessage(WM_COMMAND, way);
        EXPECT_LT(session.Count(), 3U);
      }
    }
  }
}

TEST(DocTemplate, AHandlerThatThrowsLeavesNoDocumentThatNobodyEnds) {
  for (const char* const moment : {"create", "view", "new", "initial update", "title"}) {
    Session session;
    Once(moment, [] { throw CUserException(); });
    EXPECT_THROW(session.New(), CUserException);
    EXPECT_TRUE(session.Count() == 0 && g_alive == 0) << moment;
  }
  for (const char* const moment : {"before close", "view"}) {
    Session session;
    Doc* const doc = session.Open("a");
    g_at[moment] = [] { throw CUserException(); };
    EXPECT_THROW(doc->OnCloseDocument(), CUserException);
    g_at.clear();
    if (session.Count() == 1) doc->Frame().DestroyWindow();
    EXPECT_TRUE(session.Count() == 0 && g_alive == 0) << moment;
  }
}

TEST(DocTemplate, AViewKnowsNoDocumentThatWasClosedWhileItWasMade) {
  Session session;
  Doc* const doc = session.New();
  Once("create", [] { AfxGetApp()->CloseAllDocuments(); });
  EXPECT_EQ(session.kind->CreateNewFrame(doc, nullptr)->GetActiveDocument(), nullptr);
}

TEST(DocTemplate, SeveralFramesOfADocumentAreNumberedAndOnlyTheLastAsks) {
  Session session({BUTTON_CANCEL, BUTTON_NO});
  Doc* const doc = session.New();
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
  EXPECT_EQ(first.GetWindowText() + session.Told().c_str(), "Text1");
  session.Command(ID_FILE_CLOSE);
  EXPECT_TRUE(doc->GetViews().size() == 1 && doc->text == "x" && told == 1);
  session.Command(ID_FILE_CLOSE);
  EXPECT_TRUE(session.Count() == 0 && told == 2 && g_alive == 0);
  EXPECT_EQ(session.main.GetWindowText() + session.Told().c_str(),
            "ToolSave changes to Text1?|Save changes to Text1?|");
}

TEST(DocTemplate, FramesMayEndWhileOthersOfTheDocumentAreNumbered) {
  for (const bool all : {false, true}) {
    Session session;
    Doc* const doc = session.New();
    std::vector<CFrameWnd*> frames{&doc->Frame()};
    while (frames.size() < 4) frames.push_back(session.kind->CreateNewFrame(doc, nullptr));
    g_at["title"] = [&] {
      g_at.clear();
      all ? doc->OnCloseDocument() : void(frames[1]->DestroyWindow());
    };
    doc->SetTitle("x");
    if (all) continue;
    const CString titles = frames[0]->GetWindowText() + frames[2]->GetWindowText();
    EXPECT_EQ(titles + frames[3]->GetWindowText(), "x:1x:2x:3");
  }
}

TEST(DocTemplate, ShowsItsMenuAndTakesItsKeysWhileADocumentIsActive) {
  Session session;
  CFrameWnd* const plain = session.kind->CreateNewFrame(nullptr, nullptr);
  plain->InitialUpdateFrame(nullptr, true);
  const auto shown = [&] { return session.main.GetMenu()->GetMenuItemID(0); };
  std::string menus = std::to_string(shown());
  Doc* const doc = session.New();
  menus += " " + std::to_string(shown());
  MSG key{.hwnd = session.main.GetSafeHwnd(), .message = WM_KEYDOWN, .wParam = VK_F1 + 5};
  EXPECT_TRUE(doc->GetDefaultAccelerators() != nullptr && PreTranslateInput(key));
  EXPECT_EQ(session.Count(), 0U) << "the key closes it";
  menus += " " + std::to_string(shown());
  session.New();
  static_cast<Manager&>(*session.app.m_pDocManager).Clear();
  EXPECT_EQ(menus + " " + std::to_string(shown()), "40002 40001 40002 40002");
  plain->DestroyWindow();
}

TEST(Application, ClosesOnlyWhenAllThatWasChangedIsSavedOrGivenUp) {
  // Whether it goes on, and the files.
  for (const auto& [first, second, fails, goes_on, files] :
       Rows<BoxButton, BoxButton, bool, bool, const char*>{
           {BUTTON_YES, BUTTON_YES, false, false, "AB"},
           {BUTTON_NO, BUTTON_YES, false, false, "B"},
           {BUTTON_NO, BUTTON_NO, false, false, ""},
           {BUTTON_YES, BUTTON_CANCEL, false, true, "A"},
           {BUTTON_CANCEL, BUTTON_NO, false, true, ""},
           {BUTTON_NO, BUTTON_YES, true, true, ""}}) {
    Session session({first, second});
    FailingFiles failing;
    if (fails) failing.refusal = {platform::ErrorKind::kNoSpace, 28};
    Doc *const a = session.Open("a"), *const b = session.Open("b");
    a->Change("A");
    b->Change("B");
    session.Command(ID_APP_EXIT);
    EXPECT_EQ(session.main.GetSafeHwnd() != nullptr, goes_on);
    EXPECT_EQ(session.directory.Get("a") + session.directory.Get("b"), files);
    EXPECT_EQ(session.Count(), goes_on ? 2U : 0U);
    EXPECT_TRUE(!goes_on || (a->text == "A" && b->text == "B"));
  }
  // A main frame with a document of its own asks for that one once.
  Session session({BUTTON_NO, BUTTON_NO, BUTTON_CANCEL}, RUNTIME_CLASS(Top));
  for (const char* const text : {"A", "B"}) session.New()->Change(text);
  session.app.m_pMainWnd = &Doc::last->Frame();
  session.app.m_pMainWnd->SendMessage(WM_CLOSE);
  EXPECT_EQ(session.Told(), "Save changes to Text2?|Save changes to Text1?|");
  EXPECT_EQ(session.Count(), 0U);
  session.app.m_pMainWnd = &session.main;
}

TEST(Application, AnotherMainFrameAsksOnlyForTheDocumentsThatGoWithIt) {
  Session session({BUTTON_CANCEL, BUTTON_NO});
  CMDIFrameWnd other;
  other.Create("Main", "Other", {0, 0, 400, 300}, 128);
  Doc* const both = session.Open("both");
  other.SetActiveWindow();
  Doc* const there = session.Open("there");
  CFrameWnd* const second = session.kind->CreateNewFrame(both, nullptr);
  EXPECT_TRUE(other.IsChild(second) && other.IsChild(&there->Frame()) &&
              session.main.IsChild(&both->Frame()));
  session.app.OpenDocumentFile(both->GetPathName());
  EXPECT_EQ(CWnd::GetActiveWindow(), &session.main);
  session.app.OpenDocumentFile(there->GetPathName());
  EXPECT_EQ(CWnd::GetActiveWindow(), &other) << "the frame that shows the document";
  EXPECT_EQ(other.GetMenu()->GetMenuItemID(0), 40001U);
  both->Change("x");
  there->Change("y");
  std::string told;
  g_at["before close"] = [&] { told += '!'; };
  for (int times = 0; times < 2; ++times) {
    other.SendMessage(WM_CLOSE);
    told += session.Told() + std::to_string(session.Count());
  }
  EXPECT_EQ(told, "Save changes to %/there?|2!!Save changes to %/there?|1");
  EXPECT_TRUE(other.GetSafeHwnd() == nullptr && both->GetViews().size() == 1);
}

TEST(Application, EndsItsSessionByAskingAndThenWithoutQuestionsAndIdlesWithItsDocuments) {
  Session session({BUTTON_CANCEL, BUTTON_NO});
  session.New()->Change("a");
  session.New();
  std::string idle;
  g_at["idle"] = [&] { idle += '.'; };
  PumpUntilIdle();
  g_at["idle"] = [&] { idle += ':', session.app.CloseAllDocuments(); };
  EXPECT_EQ(session.main.SendMessage(WM_QUERYENDSESSION), 0);
  EXPECT_EQ(session.main.SendMessage(WM_QUERYENDSESSION), 1);
  EXPECT_EQ(session.main.SendMessage(WM_ENDSESSION, 0), 0);
  EXPECT_EQ(session.app.m_pDocManager->GetOpenDocumentCount(), 2);
  PumpUntilIdle();
  session.New()->Change("b");
  session.main.SendMessage(WM_ENDSESSION, 1);
  EXPECT_EQ(session.app.m_pDocManager->GetOpenDocumentCount(), 0);
  EXPECT_EQ(idle + session.Told(), "..:Save changes to Text1?|Save changes to Text1?|");
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
    EXPECT_EQ(session.Told(), log.size() < 2 ? "Failed to open document.|" : "");
  }
  int read = 0;
  g_at["open"] = [&] { ++read; };
  const std::string path = session.directory.Put("a.txt", "x");
  CDocument* const doc = session.app.OpenDocumentFile(path.c_str());
  session.New();
  CFrameWnd* const frame = doc->GetFirstView()->GetParentFrame();
  for (CFrameWnd* const each : {frame, static_cast<CFrameWnd*>(&session.main)}) {
    each->ShowWindow(SW_SHOWMINIMIZED);
  }
  session.prompts.chosen = path;
  session.Command(ID_FILE_OPEN);
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
    session.Command(ID_FILE_NEW);
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
  struct Button : CCmdUI {
    void Enable(BOOL on) override { enabled = on; }
    BOOL enabled = -1;
  };
  const auto is_enabled = [&] {
    Button button;
    session.app.m_pRecentFileList->UpdateMenu(&button);
    return button.enabled;
  };
  EXPECT_EQ(items(), "57616Recent-|");
  EXPECT_EQ(is_enabled(), 0);
  for (const auto& [path, shown] : Cases<2>(R"(
      /a => 57616&1 /a|
      /b/../b&b => 57616&1 /b&&b|57617&2 /a|
      /a => 57616&1 /a|57617&2 /b&&b|
      /a long directory/another one/file.txt => 57616&1 /.../another one/file.txt|57617&2 /a|57618&3 /b&&b|
      /a_name_without_room_for_any_directory => 57616&1 a_name_without_room_for_any_directory|57617&2 /.../another one/file.txt|57618&3 /a|)")) {
    session.app.AddToRecentFileList(path.c_str());
    EXPECT_EQ(items(), shown);
    EXPECT_EQ(is_enabled(), 1);
  }
}

TEST(RecentFiles, OpenByTheirCommandsAndLeaveTheListWhenTheyAreGone) {
  Session session;
  session.app.LoadStdProfileSettings(99);
  const CRecentFileList& recent = *session.app.m_pRecentFileList;
  session.Open("a")->OnCloseDocument();
  const std::string path = session.Path("a");
  session.app.AddToRecentFileList(session.Path("gone").c_str());
  session.Command(ID_FILE_MRU_FIRST);
  EXPECT_EQ(session.Told(), "%/gone\nThe path or the file name is not valid.|");
  EXPECT_TRUE(recent.GetSize() == 16 && recent.GetCount() == 1 && recent[0] == path);
  for (const int offset : {1, 0}) {
    session.Command(ID_FILE_MRU_FIRST + offset);
    EXPECT_EQ(session.Count(), offset == 0 ? 1U : 0U);
  }
  CRecentFileList kept(0, "Recent File List", "File%d", 4), unnamed(0, "", "File%d", 4),
      unnumbered(0, "Recent File List", "File", 4);
  for (CRecentFileList* const each : {&kept, &unnamed, &unnumbered}) each->ReadList();
  EXPECT_TRUE(kept.GetCount() == 1 && kept[0] == path && kept[1].IsEmpty());
  EXPECT_TRUE(unnamed.GetCount() + unnumbered.GetCount() == 0 && unnumbered.WriteList());
}

}  // namespace
}  // namespace dq::test
