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
  platform::FileQuestion file;
  std::optional<platform::ChosenFiles> chosen;
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

}  // namespace
}  // namespace dq::test
