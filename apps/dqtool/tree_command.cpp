// dqtool tree: rows in a tree, sorted, copied, saved and printed.

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "dqlib/frame/system_error_msg.h"
#include "dqlib/framework/base/exception.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/platform.h"
#include "dqlib/toolkit/tree.h"

namespace dqtool {
namespace {

constexpr char kTypes[] = "--types";
constexpr char kSort[] = "--sort";
constexpr char kDescending[] = "--descending";
constexpr char kCopy[] = "--copy";
constexpr char kSave[] = "--save";
constexpr char kPrint[] = "--print";

constexpr int kUsualWidth = 80;

/// Prints into a file, and takes the questions about it for answered.
class FilePrompts : public dq::platform::Prompts {
 public:
  explicit FilePrompts(const std::string& path) : path_(path) {}

  int Show(std::string_view, std::string_view text, dq::UINT type, dq::UINT) override {
    if (dq::BoxButtons(type).size() > 1) return dq::IDYES;
    Complain("cannot print into " + path_ + ": " + std::string(text));
    failed_ = true;
    return dq::DefaultBoxButton(type);
  }
  void RunDialog(dq::platform::DialogView&) override {}
  std::optional<dq::platform::PrintChoice> ChoosePrint(
      const dq::platform::PrintQuestion& question) override {
    dq::platform::PrintChoice choice = question.choice;
    choice.part = dq::platform::PrintedPart::kAll;
    choice.to_file = true;
    return choice;
  }
  std::optional<dq::platform::ChosenFiles> ChooseFile(
      const dq::platform::FileQuestion& question) override {
    return dq::platform::ChosenFiles{.paths = {path_}, .kind = question.kind};
  }

  bool failed() const { return failed_; }

 private:
  const std::string& path_;
  bool failed_ = false;
};

std::vector<dq::UINT> ReadTypes(const std::string& words) {
  const std::vector<std::string> names = {"text", "number", "datetime"};
  constexpr dq::UINT kFormats[] = {dq::kColumnText, dq::kColumnNumber, dq::kColumnDateTime};
  std::vector<dq::UINT> types;
  for (std::size_t at = 0; at <= words.size();) {
    const std::size_t end = std::min(words.find(',', at), words.size());
    const std::string word = words.substr(at, end - at);
    const auto name = std::ranges::find_if(names, [&word](const std::string& each) {
      return dq::platform::EqualIgnoringCase(each, word);
    });
    if (name == names.end()) {
      throw WrongUsage("a type is text, number or datetime, not '" + word + "'" +
                       DidYouMean(word, names));
    }
    types.push_back(kFormats[name - names.begin()]);
    at = end + 1;
  }
  return types;
}

struct Line {
  int level;
  std::string_view cells;
};

/// The lines of the text; tabs before one are its level.
std::vector<Line> CutLines(std::string_view text) {
  std::vector<Line> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view cells = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (cells.ends_with('\r')) cells.remove_suffix(1);
    const std::size_t level = std::min(cells.find_first_not_of('\t'), cells.size());
    lines.push_back({static_cast<int>(level), cells.substr(level)});
  }
  return lines;
}

void Fill(dq::CDQTree& tree, const std::vector<Line>& lines, const std::vector<dq::UINT>& types) {
  std::size_t columns = types.size();
  for (const Line& line : lines) {
    columns = std::max(columns, static_cast<std::size_t>(std::ranges::count(line.cells, '\t')) + 1);
  }
  for (std::size_t column = 0; column < columns; ++column) {
    tree.AddColumn("", kUsualWidth, column < types.size() ? types[column] : dq::kColumnText);
  }
  std::string cells;
  std::vector<const char*> texts;
  for (const Line& line : lines) {
    cells = line.cells;
    texts.assign(1, cells.c_str());
    for (char& character : cells) {
      if (character != '\t') continue;
      character = '\0';
      texts.push_back(&character + 1);
    }
    tree.AddRow(texts, line.level);
  }
}

/// As many clicks on the title as it takes.
bool Sort(dq::CDQTree& tree, const Arguments& arguments) {
  const std::string* const word = arguments.Find(kSort);
  if (word == nullptr) return true;
  const int column = ReadNumber<int>(*word, "COLUMN", 0);
  if (column >= tree.GetColumnCount()) {
    Complain("no column " + *word + ": there are " + std::to_string(tree.GetColumnCount()) +
             ", counted from 0");
    return false;
  }
  tree.SortByColumn(column);
  if (arguments.Has(kDescending)) tree.SortByColumn(column);
  return true;
}

int Copy(dq::CDQTree& tree) {
  tree.SetMultiSelect();
  tree.SelectAll();
  const dq::CString text = tree.GetCopyText();
  // The last line feed comes with the line.
  if (!text.IsEmpty()) PrintLine(text.View().substr(0, text.View().size() - 1));
  return kYes;
}

int Save(dq::CDQTree& tree, const std::string& path) try {
  tree.Save(path.c_str(), ",", "\r\n");
  return kYes;
} catch (const dq::CFileException& failure) {
  const dq::CString reason = dq::CDQSystemErrorMsg(failure.m_lOsError).GetErrorMessage();
  return Complain("cannot write " + path + ": " + std::string(reason.View()));
}

int Print(dq::CDQTree& tree, const std::string& path) {
  if (tree.GetCount() == 0) return Complain("there is nothing to print");
  for (int column = 0; column < tree.GetColumnCount(); ++column) tree.FitColumn(column);
  FilePrompts prompts(path);
  dq::platform::Platform services = dq::platform::Current();
  services.prompts = &prompts;
  const dq::platform::ScopedPlatform scope(services);
  tree.OnFilePrint();
  return prompts.failed() ? kNo : kYes;
}

void CheckOptions(const Arguments& arguments) {
  const int actions = static_cast<int>(arguments.Has(kCopy)) +
                      static_cast<int>(arguments.Has(kSave)) +
                      static_cast<int>(arguments.Has(kPrint));
  if (actions > 1) throw WrongUsage("either --copy, --save or --print");
  if (arguments.Has(kDescending) && !arguments.Has(kSort)) {
    throw WrongUsage("--descending is for --sort");
  }
  for (const char* const option : {kSave, kPrint}) {
    const std::string* const path = arguments.Find(option);
    if (path != nullptr && path->empty()) throw WrongUsage("FILE is empty");
  }
}

int RunTree(const Arguments& arguments) {
  CheckOptions(arguments);
  const std::string& path = arguments.words[0];
  const std::string* const words = arguments.Find(kTypes);
  const std::vector<dq::UINT> types =
      words == nullptr ? std::vector<dq::UINT>() : ReadTypes(*words);
  if (const std::string* const column = arguments.Find(kSort))
    ReadNumber<int>(*column, "COLUMN", 0);
  const std::optional<std::string> text = dqapps::ReadContent(path);
  if (!text) return kNo;
  if (text->find('\0') != text->npos) return Complain("no text: " + dqapps::NameOfInput(path));
  const auto tree = std::make_unique<dq::CDQTree>();
  Fill(*tree, CutLines(*text), types);
  if (!Sort(*tree, arguments)) return kNo;
  if (const std::string* const file = arguments.Find(kSave)) return Save(*tree, *file);
  if (const std::string* const file = arguments.Find(kPrint)) return Print(*tree, *file);
  return Copy(*tree);
}

const Command kTree{
    "tree",
    "Sorts the rows of a tree, and copies, saves or prints them.",
    "FILE has a row on each line: its level as so many tabs, and its columns with a tab between.\n"
    "A row is at most one level below the row before. There are as many columns as the widest\n"
    "row or the types have. FILE may be '-', standard input.\n"
    "\n"
    "Rows are sorted within the row that they are below, as by a click on the column's title. A\n"
    "column of numbers takes ' MB' for a thousand ' KB'; without a type a column is text, in\n"
    "which case doesn't count.\n",
    {{"FILE",
      RunTree,
      {{kTypes, "T,T...", "what the columns are: text, number or datetime"},
       {kSort, "COLUMN", "the column to sort by, from 0"},
       {kDescending, "", "sort by a second click, the greatest first"},
       {kCopy, "",
        "print what goes to the clipboard when all is selected; also without any action"},
       {kSave, "FILE", "write the rows to FILE, with commas between the columns"},
       {kPrint, "FILE.pdf", "print the rows into FILE.pdf, 60 a page"}}}}};

}  // namespace
}  // namespace dqtool
