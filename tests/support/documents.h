// Documents with frames and views, at whose moments a test does what it likes, and a program for
// them. To be included by one source of a program.
//
//   Session session;
//   g_at["initial update"] = [] { AfxGetApp()->CloseAllDocuments(); };
//   EXPECT_EQ(session.New(), nullptr);

#pragma once

#include "tests/support/doubles.h"
#include "tests/support/own_settings.h"

namespace dq::test {

/// What happens at a moment in the life of a document, its frame or its view.
inline std::map<std::string, std::function<void()>> g_at;
/// How many documents, frames and views there are.
inline int g_alive = 0;

inline void At(const char* moment) {
  // It may change what happens.
  const auto action = g_at.contains(moment) ? g_at[moment] : std::function<void()>();
  if (action) action();
}

/// The action ends the moment.
inline void Once(const char* moment, void (*action)()) {
  g_at[moment] = [=] {
    const auto run = action;
    g_at.erase(moment);
    run();
  };
}

struct Counted {
  Counted() { ++g_alive; }
  ~Counted() { --g_alive; }
};

/// Holds a text, as it stands in its file. One with "!" is damaged.
struct Doc : CDocument, Counted {
  DECLARE_DYNCREATE(Doc)
  Doc() { last = this; }
  ~Doc() override { last = last == this ? nullptr : last; }
  void DeleteContents() override { text.Empty(); }
  void Serialize(CArchive& archive) override {
    At("serialize");
    if (archive.IsStoring()) return archive.Write(text, static_cast<UINT>(text.GetLength()));
    char bytes[20];
    text = CString(bytes, static_cast<int>(archive.Read(bytes, sizeof bytes)));
    if (text == "!") throw CArchiveException(CArchiveException::endOfFile);
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
  ~View() override { last = last == this ? nullptr : last; }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message == WM_CREATE) last = this, At("create");
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
  void OnUpdateFrameTitle(bool add_document) override {
    CMDIChildWnd::OnUpdateFrameTitle(add_document);
    At("title");
  }
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
    return chosen.empty() ? std::nullopt : std::optional(platform::ChosenFiles{{chosen}, 1});
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
  Doc* New() { return static_cast<Doc*>(kind->OpenDocumentFile(nullptr)); }
  Doc* Open(std::string_view name, std::string_view bytes = "") {
    return static_cast<Doc*>(kind->OpenDocumentFile(directory.Put(name, bytes).c_str()));
  }
  /// A path in the directory; "" for none.
  std::string Path(const std::string& name) {
    return name.empty() ? std::string() : directory / name;
  }
  void Command(int id) { main.SendMessage(WM_COMMAND, static_cast<WPARAM>(id)); }
  std::size_t Count() { return kind->GetDocuments().size(); }
  /// The texts of the boxes since the last call, with "%" for the directory.
  std::string Told() {
    std::string told;
    for (const ShownBox& box : prompts.shown) told += box.text + "|";
    prompts.shown.clear();
    return directory.Shortened(told, "%");
  }

  TempDirectory directory;
  ResourceModule module;
  CDynLinkLibrary link{&module};
  Prompts prompts;
  CWinApp app{"documents"};
  CMDIFrameWnd main;
  CMultiDocTemplate* kind = nullptr;
};

}  // namespace dq::test
