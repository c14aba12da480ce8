// Choices of files, of a folder and of what to print: what is asked for, and what was chosen.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dq::platform {

class Prompts;

/// A kind of files, as "SQL File (*.SQL)" with the patterns "*.SQL", between which stand
/// semicolons.
struct FileKind {
  std::string name = {};
  std::string patterns = {};
};

struct FileQuestion {
  /// A file to be read, else one to be written.
  bool open = true;
  /// "" for the usual one.
  std::string title = {};
  /// Where to begin; "" for the current directory.
  std::string folder = {};
  /// What is proposed: a name, or a path.
  std::string name = {};
  std::vector<FileKind> kinds = {};
  /// The kind that is chosen at first, from 1.
  int kind = 1;
  /// What a name without one gets, unless a file to be read has just that name; without a dot.
  std::string extension = {};
  bool file_must_exist = false;
  bool folder_must_exist = false;
  /// Before a file that exists is chosen to be written.
  bool ask_to_replace = false;
  /// Several files to be read.
  bool multiple = false;
};

struct ChosenFiles {
  /// From the root; at least one, one only unless several were asked for.
  std::vector<std::string> paths = {};
  /// From 1.
  int kind = 1;
};

enum class PrintedPart { kAll, kSelection, kPages };

/// What to print, and where.
struct PrintChoice {
  PrintedPart part = PrintedPart::kAll;
  /// The first and the last page, for `kPages`.
  int from = 1;
  int to = 1;
  int copies = 1;
  /// "" if there is none to choose from.
  std::string printer = {};
  /// Into a file, which is asked for by whoever prints.
  bool to_file = false;
};

struct PrintQuestion {
  /// "" for the usual one.
  std::string title = {};
  std::vector<std::string> printers = {};
  bool offer_selection = false;
  bool offer_pages = false;
  bool offer_file = false;
  /// The pages that there are.
  int first_page = 1;
  int last_page = 0xFFFF;
  /// What is chosen at first.
  PrintChoice choice = {};
};

/// Controls of the dialogs in which prompts without something better of their own ask: what a
/// script answers them by. OK and Cancel are 1 and 2.
enum ChooserControl : int {
  CHOOSER_PRINT_TO_FILE = 1040,
  CHOOSER_PRINT_ALL = 1056,
  CHOOSER_PRINT_SELECTION = 1057,
  CHOOSER_PRINT_PAGES = 1058,
  CHOOSER_PLACE = 1088,
  CHOOSER_FILE_KIND = 1136,
  CHOOSER_PRINTER = 1139,
  /// The name of a file, names of several, one a line, or the path of a folder.
  CHOOSER_NAME = 1152,
  CHOOSER_FROM_PAGE = 1153,
  CHOOSER_TO_PAGE = 1154,
  CHOOSER_COPIES = 1155,
};

/// Most copies that are printed at once.
inline constexpr int kMostCopies = 9999;

/// The path with the extension, where its name has none.
std::string WithDefaultExtension(std::string path, std::string_view extension);

/// What `Prompts` does for its questions of these names, in dialogs of lines that `prompts` runs.
/// The name of a directory leads into it.
std::optional<ChosenFiles> ChooseFileByDialog(Prompts& prompts, const FileQuestion& question);
std::optional<std::string> ChooseFolderByDialog(Prompts& prompts, std::string_view title,
                                                std::string_view start);
std::optional<PrintChoice> ChoosePrintByDialog(Prompts& prompts, const PrintQuestion& question);

}  // namespace dq::platform
