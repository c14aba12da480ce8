// Dialogs that are the platform's: for files, for folders and for printing.

#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// Keeps what is asked, and answers nothing until it is told to.
struct ChoosingPrompts : ScriptedPrompts {
  std::optional<platform::ChosenFiles> ChooseFile(const platform::FileQuestion& asked) override {
    file = asked;
    return chosen;
  }
  std::optional<std::string> ChooseFolder(std::string_view title, std::string_view start) override {
    return title.empty() ? std::nullopt : std::optional(std::string(title) + std::string(start));
  }
  std::optional<platform::PrintChoice> ChoosePrint(const platform::PrintQuestion& asked) override {
    print = asked;
    return printed;
  }
  platform::FileQuestion file;
  std::optional<platform::ChosenFiles> chosen;
  platform::PrintQuestion print;
  std::optional<platform::PrintChoice> printed;
};

TEST(FileDialog, AsksByItsFlagsAndFilterAndGivesThePartsOfWhatWasChosen) {
  ChoosingPrompts prompts;
  for (const auto& [open, flags, bits] : Rows<bool, DWORD, const char*>{{true, 4, "10000"},
                                                                        {false, 2, "00010"},
                                                                        {true, 0x200, "10001"},
                                                                        {true, 0x800, "10100"},
                                                                        {true, 0x1000, "11100"}}) {
    EXPECT_EQ(CFileDialog(open, nullptr, nullptr, flags).DoModal(), IDCANCEL);
    std::string asked;
    for (const bool bit :
         {prompts.file.open, prompts.file.file_must_exist, prompts.file.folder_must_exist,
          prompts.file.ask_to_replace, prompts.file.multiple}) {
      asked += bit ? '1' : '0';
    }
    EXPECT_EQ(asked, bits) << flags;
  }
  for (const auto& [filter, kinds] : Cases<2>(R"(
      A (*.a)|*.a|B|*.b;*.c|| => A (*.a)>*.a B>*.b;*.c ;; A|*.a|All|*.*| => A>*.a All>*.*
      A|*.a => A>*.a ;; A|*.a|B => A>*.a ;; || => ;; => )")) {
    EXPECT_EQ(CFileDialog(true, nullptr, nullptr, 0, filter.c_str()).DoModal(), IDCANCEL);
    std::string asked;
    for (const platform::FileKind& kind : prompts.file.kinds) {
      asked += (asked.empty() ? "" : " ") + kind.name + ">" + kind.patterns;
    }
    EXPECT_EQ(asked, kinds) << filter;
  }

  CFileDialog dialog(false, "sql", "a/proposed.x", 0, "A|*.a|B|*.b|");
  dialog.SetTitle("T");
  dialog.SetInitialFolder("/f");
  dialog.SetFilterIndex(3);
  const auto parts = [&dialog] {
    CStringArray paths;
    paths.Add("former");
    dialog.GetPathNames(paths);
    return dialog.GetPathName() + "|" + dialog.GetFileName() + "|" + dialog.GetFileExt() + "|" +
           dialog.GetFileTitle() + "|" + std::to_string(paths.GetSize()).c_str() + "|" +
           std::to_string(dialog.GetFilterIndex()).c_str();
  };
  EXPECT_EQ(parts(), "a/proposed.x|proposed.x|x|proposed|0|3");
  prompts.chosen = {.paths = {"/d.d/one", "/two.b"}, .kind = 2};
  EXPECT_EQ(dialog.DoModal(), IDOK);
  const platform::FileQuestion& asked = prompts.file;
  EXPECT_EQ(asked.title + asked.folder + asked.name + asked.extension, "T/fa/proposed.xsql");
  EXPECT_EQ(parts(), "/d.d/one|one||one|2|2");
  prompts.chosen.reset();
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(parts(), "/d.d/one|one||one|2|2");
  EXPECT_EQ(ChooseFolder("T", "/f"), CString("T/f"));
  EXPECT_EQ(ChooseFolder(nullptr, nullptr), std::nullopt);
}

/// Printers that can't be printed on.
struct KnownPrinters : platform::Printing {
  platform::Result<std::vector<std::string>> Printers() override { return known; }
  platform::Result<std::string> DefaultPrinter() override { return std::string("two"); }
  platform::PrintOutcome Print(const platform::PrintJob&,
                               const platform::DocumentReader&) override {
    return {};
  }
  std::vector<std::string> known{"one", "two"};
};

TEST(PrintDialog, AsksByItsFlagsAndMakesAJobOfWhatWasChosen) {
  ChoosingPrompts prompts;
  KnownPrinters printers;
  const platform::ScopedPlatform scope(With(&platform::Platform::printing, &printers));
  for (const auto& [flags, offers] : Cases<2>(R"(
      0 => 0 selection pages file ;; 5 => 1 pages file ;; 10 => 2 selection file
      1048610 => 2 selection pages to)")) {
    EXPECT_EQ(CPrintDialog(static_cast<DWORD>(std::stoul(flags))).DoModal(), IDCANCEL);
    const platform::PrintQuestion& print = prompts.print;
    EXPECT_EQ(std::to_string(static_cast<int>(print.choice.part)) +
                  (print.offer_selection ? " selection" : "") +
                  (print.offer_pages ? " pages" : "") + (print.offer_file ? " file" : "") +
                  (print.choice.to_file ? " to" : ""),
              offers);
  }
  CPrintDialog dialog(0);
  dialog.SetPageRange(2, 8);
  // The printer and the file, copies, the job's pages, the dialog's, and whether all are printed,
  // some, or the selection.
  const auto state = [&dialog] {
    const platform::PrintJob job = dialog.GetPrintJob();
    std::string text = std::string(dialog.GetDeviceName().View()) + job.to_file;
    for (const int number : {dialog.GetCopies(), job.first_page, job.last_page,
                             dialog.GetFromPage(), dialog.GetToPage(), int{dialog.PrintAll()},
                             int{dialog.PrintRange()}, int{dialog.PrintSelection()}}) {
      text += " " + std::to_string(number);
    }
    EXPECT_TRUE(job.printer == dialog.GetDeviceName() && job.copies == dialog.GetCopies());
    return text;
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(state(), "two 1 1 0 -1 -1 1 0 0");
  const platform::PrintQuestion& asked = prompts.print;
  EXPECT_TRUE(asked.printers.size() == 2 && asked.first_page == 2 && asked.last_page == 8);
  EXPECT_TRUE(asked.choice.from == 2 && asked.choice.to == 8);
  prompts.printed = {platform::PrintedPart::kPages, 3, 4, 2, "one", true};
  EXPECT_EQ(dialog.DoModal(), IDCANCEL) << "without a file";
  EXPECT_EQ(state(), "two 1 1 0 -1 -1 1 0 0");
  prompts.chosen = {.paths = {"/f.pdf"}};
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(state(), "one/f.pdf 2 3 4 3 4 0 1 0");
  EXPECT_TRUE(!prompts.file.open && prompts.file.ask_to_replace && prompts.file.extension == "pdf");
  prompts.printed = {.part = platform::PrintedPart::kSelection};
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(asked.choice.printer, "one") << "begins with what was chosen";
  EXPECT_EQ(state(), " 1 1 0 -1 -1 0 0 1");
  printers.known.clear();
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(asked.choice.printer, "") << "none to choose from";
}

/// Three pages, of which the steps are logged.
struct PrintedView : CView {
  bool OnPreparePrinting(CPrintInfo* info) override {
    if (pages > 0) info->SetMaxPage(pages);
    return DoPreparePrinting(info);
  }
  void OnBeginPrinting(CDC*, CPrintInfo*) override { log += "begin "; }
  void OnEndPrinting(CDC*, CPrintInfo*) override { log += "end "; }
  void OnPrint(CDC* dc, CPrintInfo* info) override {
    log += std::to_string(info->m_nCurPage) + " ";
    dc->TextOut(0, 0, "Page " + std::to_string(info->m_nCurPage));
    EXPECT_EQ(info->m_rectDraw.right, dc->GetDeviceCaps(HORZRES));
    if (fails) throw std::exception();
    if (ends) DestroyWindow();
  }
  std::string Print() {
    SendMessage(WM_COMMAND, ID_FILE_PRINT);
    return std::exchange(log, {});
  }
  int pages = 3;
  bool ends = false, fails = false;
  std::string log;
};

TEST(ViewPrinting, PrintsTheChosenPagesAndTellsWhatFails) {
  ChoosingPrompts prompts;
  ScriptedPrinting printing;
  PrintedView view;
  view.CreateWnd({.class_name = "View", .text = "Title"});
  EXPECT_EQ(view.Print(), "") << "nothing was chosen";
  EXPECT_EQ(prompts.print.last_page, 3);
  prompts.printed = platform::PrintChoice{.copies = 2};
  EXPECT_EQ(view.Print(), "begin 1 2 3 end ");
  EXPECT_TRUE(printing.printed == 1 && printing.job.copies == 2 && printing.job.title == "Title");
  prompts.printed = {.part = platform::PrintedPart::kPages, .from = 2, .to = 9};
  EXPECT_EQ(view.Print(), "begin 2 3 end ");
  EXPECT_NE(printing.document.find("(Page 3)"), std::string::npos);
  prompts.printed = platform::PrintChoice{};
  view.pages = 0;
  EXPECT_EQ(view.Print(), "begin 1 end ") << "a length that isn't known is one page";
  printing.outcome = {platform::Error{platform::ErrorKind::kOther, 5}, "out of paper"};
  EXPECT_EQ(view.Print(), "begin 1 end ");
  ASSERT_EQ(prompts.shown.size(), 1U);
  EXPECT_EQ(prompts.shown[0].text, "out of paper");
  view.fails = true;
  EXPECT_THROW(view.Print(), std::exception);
  EXPECT_EQ(std::exchange(view.log, {}), "begin 1 end ");
  view.fails = !(view.ends = true);
  EXPECT_EQ(view.Print(), "begin 1 ");
  EXPECT_EQ(printing.printed, 4) << "what isn't whole isn't printed";
}

}  // namespace
}  // namespace dq::test
