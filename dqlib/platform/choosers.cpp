#include "dqlib/platform/choosers.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/seam_texts.h"

namespace dq::platform {
namespace {

using Kind = DialogControlKind;

std::string Named(SeamTextId id) { return std::string(Text(id)); }

/// A number without a sign; -1 for what is none.
int ReadNumber(std::string_view text) {
  int number = -1;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc{} && stop == end ? number : -1;
}

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t\r"), text.size());
  return text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
}

Files& TheFiles() { return *Current().files; }

/// Whether there is such a directory; an error that isn't its absence is told by `error`.
bool IsDirectory(const std::string& path, Error& error) {
  const Result<FileStatus> status = TheFiles().Status(path);
  error = status.error;
  return status.ok() && (status.value.attributes & FILE_DIRECTORY) != 0;
}

std::string ParentOf(const std::string& path) {
  const PathParts parts = SplitPath(path);
  return parts.drive + parts.directory;
}

/// A dialog of controls that hold values, with OK and Cancel.
class Chooser : public DialogView {
 public:
  Chooser(Prompts& prompts, std::string_view title, SeamTextId usual_title)
      : prompts_(prompts), caption_(title.empty() ? Text(usual_title) : title) {}

  /// Whether it was left by OK.
  bool Run() {
    Add({.id = BUTTON_OK,
         .kind = Kind::kButton,
         .label = Named(IDS_BUTTON_OK),
         .is_default = true});
    Add({.id = BUTTON_CANCEL, .kind = Kind::kButton, .label = Named(IDS_BUTTON_CANCEL)});
    prompts_.RunDialog(*this);
    return accepted_;
  }

  std::string Caption() override { return caption_; }
  std::vector<DialogControl> Controls() override { return controls_; }
  bool Enter(int id, std::string_view value) override;
  bool Press(int id) override;
  bool IsOpen() override { return open_; }

 protected:
  /// Takes the answers; false if they can't be, which has been told, and the dialog stays.
  virtual bool Accept() = 0;

  void Add(DialogControl control) { controls_.push_back(std::move(control)); }
  /// Of a control that there is.
  std::string& Value(int id) { return Find(id)->value; }
  bool Show(const std::string& text, UINT type = BOX_OK | BOX_EXCLAMATION) {
    return prompts_.Show(caption_, text, type, 0) == BUTTON_YES;
  }
  /// Tells why a path can't be taken.
  void ShowError(SeamTextId absent, const std::string& path, Error error);

 private:
  DialogControl* Find(int id) {
    const auto found = std::ranges::find(controls_, id, &DialogControl::id);
    return found == controls_.end() ? nullptr : &*found;
  }

  Prompts& prompts_;
  std::string caption_;
  std::vector<DialogControl> controls_;
  bool open_ = true;
  bool accepted_ = false;
};

bool Chooser::Enter(int id, std::string_view value) {
  DialogControl* const control = Find(id);
  if (control == nullptr || !control->enabled) return false;
  if (control->kind == Kind::kEdit) {
    control->value = value;
    return true;
  }
  if (control->kind == Kind::kCombo) {
    const std::vector<std::string>& items = control->items;
    const auto same = std::ranges::find(items, value);
    const int number = ReadNumber(value);
    if (same == items.end() && (number < 1 || std::cmp_greater(number, items.size()))) return false;
    control->value = same == items.end() ? items[static_cast<std::size_t>(number - 1)] : *same;
    return true;
  }
  const bool is_radio = control->kind == Kind::kRadio;
  if ((control->kind != Kind::kCheck && !is_radio) || (value != "0" && value != "1")) return false;
  // A radio button loses its mark to another one only.
  if (is_radio && value == "0") return control->value == value;
  for (DialogControl& each : controls_) {
    if (is_radio && each.kind == Kind::kRadio) each.value = "0";
  }
  control->value = value;
  return true;
}

bool Chooser::Press(int id) {
  if (id != BUTTON_OK && id != BUTTON_CANCEL) return false;
  accepted_ = id == BUTTON_OK && Accept();
  open_ = id == BUTTON_OK && !accepted_;
  return true;
}

void Chooser::ShowError(SeamTextId absent, const std::string& path, Error error) {
  const auto described = Current().system_errors->Describe(error.code);
  const bool is_absent = error.kind == ErrorKind::kNone || error.kind == ErrorKind::kNotFound;
  Show(is_absent || !described ? Filled(Text(absent), {path}) : path + "\n" + *described);
}

class FileChooser : public Chooser {
 public:
  FileChooser(Prompts& prompts, const FileQuestion& question);

  ChosenFiles Take() { return std::move(chosen_); }

 private:
  bool Accept() override;
  /// Adds the file of that name to what is chosen; false if it can't be.
  bool Take(std::string_view name);
  /// Goes into a directory.
  void Enter(const std::string& directory) {
    folder_ = directory;
    Value(CHOOSER_PLACE) = directory;
    Value(CHOOSER_NAME).clear();
  }
  using Chooser::Enter;

  const FileQuestion& question_;
  std::string folder_;
  ChosenFiles chosen_;
};

FileChooser::FileChooser(Prompts& prompts, const FileQuestion& question)
    : Chooser(prompts, question.title, question.open ? IDS_OPEN_FILE : IDS_SAVE_FILE),
      question_(question),
      folder_(FullPath(question.folder, TheFiles().CurrentDirectory())) {
  const bool multiple = question.open && question.multiple;
  Add({.id = CHOOSER_PLACE,
       .kind = Kind::kText,
       .label = Named(question.open ? IDS_LOOK_IN : IDS_SAVE_IN),
       .value = folder_});
  Add({.id = CHOOSER_NAME,
       .kind = Kind::kEdit,
       .label = Named(multiple ? IDS_FILE_NAMES : IDS_FILE_NAME),
       .value = question.name,
       .multiple = multiple});
  DialogControl kinds = {
      .id = CHOOSER_FILE_KIND, .kind = Kind::kCombo, .label = Named(IDS_FILES_OF_TYPE)};
  for (const FileKind& kind : question.kinds) kinds.items.push_back(kind.name);
  if (kinds.items.empty()) return;
  const int chosen = std::clamp(question.kind, 1, static_cast<int>(kinds.items.size()));
  kinds.value = kinds.items[static_cast<std::size_t>(chosen - 1)];
  Add(std::move(kinds));
}

bool FileChooser::Accept() {
  chosen_.paths.clear();
  const std::string names = Value(CHOOSER_NAME);
  for (std::string_view left = names; !left.empty();) {
    const std::size_t end = question_.multiple ? left.find('\n') : std::string_view::npos;
    const std::string_view name = WithoutBlanks(left.substr(0, end));
    left.remove_prefix(std::min(end, left.size() - 1) + 1);
    if (!name.empty() && !Take(name)) return false;
  }
  if (!question_.kinds.empty()) {
    const auto kind = std::ranges::find(question_.kinds, Value(CHOOSER_FILE_KIND), &FileKind::name);
    chosen_.kind = static_cast<int>(kind - question_.kinds.begin()) + 1;
  }
  return !chosen_.paths.empty();
}

bool FileChooser::Take(std::string_view name) {
  std::string path = FullPath(name, folder_);
  Error error;
  bool is_directory = IsDirectory(path, error);
  if (!is_directory && (!question_.open || !error.ok())) {
    path = WithDefaultExtension(path, question_.extension);
    is_directory = IsDirectory(path, error);
  }
  if (is_directory) {
    Enter(path);
    return false;
  }
  const bool is_new = error.kind == ErrorKind::kNotFound;
  if (!error.ok() && (!is_new || (question_.open && question_.file_must_exist))) {
    ShowError(IDS_FILE_NOT_THERE, path, error);
    return false;
  }
  const std::string parent = ParentOf(path);
  if (Error absent; question_.folder_must_exist && !IsDirectory(parent, absent)) {
    ShowError(IDS_FOLDER_NOT_THERE, parent, absent);
    return false;
  }
  if (!question_.open && question_.ask_to_replace && !is_new &&
      !Show(Filled(Text(IDS_REPLACE_FILE), {path}),
            BOX_YES_NO | BOX_EXCLAMATION | BOX_DEFAULT_SECOND)) {
    return false;
  }
  chosen_.paths.push_back(std::move(path));
  return true;
}

class FolderChooser : public Chooser {
 public:
  FolderChooser(Prompts& prompts, std::string_view title, std::string_view start)
      : Chooser(prompts, title, IDS_CHOOSE_FOLDER),
        start_(FullPath(start, TheFiles().CurrentDirectory())) {
    Add({.id = CHOOSER_NAME, .kind = Kind::kEdit, .label = Named(IDS_FOLDER), .value = start_});
  }

  std::string Take() { return FullPath(WithoutBlanks(Value(CHOOSER_NAME)), start_); }

 private:
  bool Accept() override {
    Error error;
    const std::string path = Take();
    if (IsDirectory(path, error)) return true;
    ShowError(IDS_FOLDER_NOT_THERE, path, error);
    return false;
  }

  std::string start_;
};

class PrintChooser : public Chooser {
 public:
  PrintChooser(Prompts& prompts, const PrintQuestion& question);

  PrintChoice Take();

 private:
  bool Accept() override;
  void AddMark(int id, Kind kind, SeamTextId label, bool marked, bool enabled) {
    Add({.id = id,
         .kind = kind,
         .label = Named(label),
         .value = marked ? "1" : "0",
         .enabled = enabled});
  }
  void AddNumber(int id, SeamTextId label, int number, bool enabled) {
    Add({.id = id,
         .kind = Kind::kEdit,
         .label = Named(label),
         .value = std::to_string(number),
         .enabled = enabled});
  }
  int Number(int id) { return ReadNumber(WithoutBlanks(Value(id))); }

  const PrintQuestion& question_;
};

PrintChooser::PrintChooser(Prompts& prompts, const PrintQuestion& question)
    : Chooser(prompts, question.title, IDS_PRINT), question_(question) {
  const PrintChoice& choice = question.choice;
  const auto chosen = std::ranges::find(question.printers, choice.printer);
  DialogControl printers = {.id = CHOOSER_PRINTER,
                            .kind = Kind::kCombo,
                            .label = Named(IDS_PRINTER),
                            .items = question.printers,
                            .enabled = !question.printers.empty()};
  if (printers.enabled) {
    printers.value = chosen == question.printers.end() ? question.printers.front() : *chosen;
  }
  Add(std::move(printers));
  const bool selection = choice.part == PrintedPart::kSelection && question.offer_selection;
  const bool pages = choice.part == PrintedPart::kPages && question.offer_pages;
  AddMark(CHOOSER_PRINT_ALL, Kind::kRadio, IDS_PRINT_ALL, !selection && !pages, true);
  AddMark(CHOOSER_PRINT_SELECTION, Kind::kRadio, IDS_PRINT_SELECTION, selection,
          question.offer_selection);
  AddMark(CHOOSER_PRINT_PAGES, Kind::kRadio, IDS_PRINT_PAGES, pages, question.offer_pages);
  AddNumber(CHOOSER_FROM_PAGE, IDS_FROM_PAGE, choice.from, question.offer_pages);
  AddNumber(CHOOSER_TO_PAGE, IDS_TO_PAGE, choice.to, question.offer_pages);
  AddNumber(CHOOSER_COPIES, IDS_COPIES, choice.copies, true);
  AddMark(CHOOSER_PRINT_TO_FILE, Kind::kCheck, IDS_PRINT_TO_FILE,
          choice.to_file && question.offer_file, question.offer_file);
}

PrintChoice PrintChooser::Take() {
  const auto is_marked = [this](int id) { return Value(id) == "1"; };
  return {.part = is_marked(CHOOSER_PRINT_SELECTION) ? PrintedPart::kSelection
                  : is_marked(CHOOSER_PRINT_PAGES)   ? PrintedPart::kPages
                                                     : PrintedPart::kAll,
          .from = Number(CHOOSER_FROM_PAGE),
          .to = Number(CHOOSER_TO_PAGE),
          .copies = Number(CHOOSER_COPIES),
          .printer = Value(CHOOSER_PRINTER),
          .to_file = is_marked(CHOOSER_PRINT_TO_FILE)};
}

bool PrintChooser::Accept() {
  const PrintChoice choice = Take();
  const bool in_order = question_.first_page <= choice.from && choice.from <= choice.to &&
                        choice.to <= question_.last_page;
  if (choice.part == PrintedPart::kPages && !in_order) {
    Show(Filled(Text(IDS_PAGES_OUT_OF_RANGE),
                {std::to_string(question_.first_page), std::to_string(question_.last_page)}));
    return false;
  }
  if (choice.copies >= 1 && choice.copies <= kMostCopies) return true;
  Show(Filled(Text(IDS_COPIES_OUT_OF_RANGE), {std::to_string(kMostCopies)}));
  return false;
}

}  // namespace

std::string WithDefaultExtension(std::string path, std::string_view extension) {
  const PathParts parts = SplitPath(path);
  if (extension.empty() || parts.name.empty() || !parts.extension.empty()) return path;
  return path.append(1, '.').append(extension);
}

std::optional<ChosenFiles> ChooseFileByDialog(Prompts& prompts, const FileQuestion& question) {
  FileChooser chooser(prompts, question);
  return chooser.Run() ? std::optional(chooser.Take()) : std::nullopt;
}

std::optional<std::string> ChooseFolderByDialog(Prompts& prompts, std::string_view title,
                                                std::string_view start) {
  FolderChooser chooser(prompts, title, start);
  return chooser.Run() ? std::optional(chooser.Take()) : std::nullopt;
}

std::optional<PrintChoice> ChoosePrintByDialog(Prompts& prompts, const PrintQuestion& question) {
  PrintChooser chooser(prompts, question);
  return chooser.Run() ? std::optional(chooser.Take()) : std::nullopt;
}

}  // namespace dq::platform
