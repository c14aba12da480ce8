// The texts that the seam itself shows to a person: the terminal's questions, choices of files and
// of what to print, what has happened to the files of settings, and why nothing was printed.
//
// They stand here once. The library's string table has them among its own, so a module that
// translates the library translates them too.

#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq {

/// A string of a constant table.
struct StringRow {
  UINT id;
  std::string_view text;
};

/// Numbers of the seam's texts, among those that are given out in `resources/string_ids.h`.
enum SeamTextId : UINT {
  // The buttons of message boxes, in the order of `BoxButton`.
  IDS_BUTTON_OK = 44560,
  IDS_BUTTON_CANCEL = 44561,
  IDS_BUTTON_ABORT = 44562,
  IDS_BUTTON_RETRY = 44563,
  IDS_BUTTON_IGNORE = 44564,
  IDS_BUTTON_YES = 44565,
  IDS_BUTTON_NO = 44566,
  // Questions about the controls of dialogs.
  IDS_MARK_YES = 44567,
  IDS_MARK_NO = 44568,
  IDS_MARK_UNDETERMINED = 44569,
  IDS_ITEMS_IN_ALL = 44570,
  IDS_NOT_POSSIBLE = 44571,
  // The files of settings.
  IDS_SETTINGS_REPLACED = 44572,
  IDS_SETTINGS_DAMAGED = 44573,
  IDS_SETTINGS_MISSING = 44574,
  IDS_LATEST_OF_OTHER_TIME = 44575,
  IDS_LATEST_DAMAGED = 44576,
  IDS_LATEST_MISSING = 44577,
  IDS_NOTHING_TO_KEEP = 44578,
  IDS_REPLACED_LEFT = 44579,
  IDS_REPLACED_KEPT = 44580,
  IDS_DAMAGED_LEFT = 44581,
  IDS_DAMAGED_KEPT = 44582,
  IDS_OTHER_LEFT = 44583,
  IDS_OTHER_KEPT = 44584,
  IDS_SETTINGS_UNITED = 44585,
  IDS_FORMER_KEPT = 44586,
  // What is wrong with the script of a dialog.
  IDS_SCRIPT_NO_STEP = 44587,
  IDS_SCRIPT_NO_ID = 44588,
  IDS_SCRIPT_BACKSLASH = 44589,
  IDS_SCRIPT_NOT_PRESSED = 44590,
  IDS_SCRIPT_NOT_TAKEN = 44591,
  // Why nothing was printed.
  IDS_NO_PRINT_COMMAND = 44592,
  IDS_PRINT_COMMAND_FAILED = 44593,
  // Choices of files, of a folder and of what to print.
  IDS_OPEN_FILE = 44770,
  IDS_SAVE_FILE = 44771,
  IDS_CHOOSE_FOLDER = 44772,
  IDS_PRINT = 44773,
  IDS_LOOK_IN = 44774,
  IDS_SAVE_IN = 44775,
  IDS_FILE_NAME = 44776,
  IDS_FILE_NAMES = 44777,
  IDS_FILES_OF_TYPE = 44778,
  IDS_FOLDER = 44779,
  IDS_PRINTER = 44780,
  IDS_PRINT_ALL = 44781,
  IDS_PRINT_SELECTION = 44782,
  IDS_PRINT_PAGES = 44783,
  IDS_FROM_PAGE = 44784,
  IDS_TO_PAGE = 44785,
  IDS_COPIES = 44786,
  IDS_PRINT_TO_FILE = 44787,
  IDS_FILE_NOT_THERE = 44788,
  IDS_FOLDER_NOT_THERE = 44789,
  IDS_REPLACE_FILE = 44790,
  IDS_PAGES_OUT_OF_RANGE = 44791,
  IDS_COPIES_OUT_OF_RANGE = 44792,
  /// Of the file that is printed into.
  IDS_PRINT_FILE_FILTER = 44793,
};

namespace platform {

/// The English texts, sorted by id.
inline constexpr StringRow kSeamTexts[] = {
    {IDS_BUTTON_OK, "OK"},
    {IDS_BUTTON_CANCEL, "Cancel"},
    {IDS_BUTTON_ABORT, "Abort"},
    {IDS_BUTTON_RETRY, "Retry"},
    {IDS_BUTTON_IGNORE, "Ignore"},
    {IDS_BUTTON_YES, "Yes"},
    {IDS_BUTTON_NO, "No"},
    {IDS_MARK_YES, "yes"},
    {IDS_MARK_NO, "no"},
    {IDS_MARK_UNDETERMINED, "undetermined"},
    {IDS_ITEMS_IN_ALL, "  ... %1 in all"},
    {IDS_NOT_POSSIBLE, "Not possible."},
    {IDS_SETTINGS_REPLACED,
     "The file %1 of your settings was replaced while a program used it, by one of another time. "
     "The settings that the program knew hold.\n\n%2"},
    {IDS_SETTINGS_DAMAGED,
     "The file %1 of your settings was damaged. What could be read of it is kept: %3 values. %4 "
     "lines could not be read.\n\n%2"},
    {IDS_SETTINGS_MISSING,
     "The file %1 of your settings was missing. What could be read of it is kept: %3 values. %4 "
     "lines could not be read.\n\n%2"},
    {IDS_LATEST_OF_OTHER_TIME,
     "The file %1 of your latest settings and the file %3 are of different times, as if one of "
     "them came from a backup. The settings of %3 hold, and none of the other file is mixed into "
     "them.\n\n%2"},
    {IDS_LATEST_DAMAGED,
     "The file %1 of your latest settings was damaged. The changes that could be read of it, or "
     "that this program knew, are kept.\n\n%2"},
    {IDS_LATEST_MISSING,
     "The file %1 of your latest settings was missing. The changes that could be read of it, or "
     "that this program knew, are kept.\n\n%2"},
    {IDS_NOTHING_TO_KEEP, "There was nothing of the file to keep."},
    {IDS_REPLACED_LEFT, "The replaced file is still in its place."},
    {IDS_REPLACED_KEPT, "The replaced file has been kept as %1."},
    {IDS_DAMAGED_LEFT, "The damaged file is still in its place."},
    {IDS_DAMAGED_KEPT, "The damaged file has been kept as %1."},
    {IDS_OTHER_LEFT, "The other file is still in its place."},
    {IDS_OTHER_KEPT, "The other file has been kept as %1."},
    {IDS_SETTINGS_UNITED,
     "The files of your settings beside %1 were replaced while a program used them. The settings "
     "of both are kept; where they differ, those of the new files hold.\n\n%2"},
    {IDS_FORMER_KEPT, "The former settings have been kept as %1."},
    {IDS_SCRIPT_NO_STEP, "neither 'id=value' nor 'press id'"},
    {IDS_SCRIPT_NO_ID, "a control's id is a number"},
    {IDS_SCRIPT_BACKSLASH, "a backslash before none of 'n', 't' and '\\'"},
    {IDS_SCRIPT_NOT_PRESSED, "control %1 can't be pressed"},
    {IDS_SCRIPT_NOT_TAKEN, "control %1 isn't there or doesn't take the value"},
    {IDS_NO_PRINT_COMMAND, "This system has no command to print with: neither lp nor lpr."},
    {IDS_PRINT_COMMAND_FAILED, "The system's print command failed with the code %1."},
    {IDS_OPEN_FILE, "Open"},
    {IDS_SAVE_FILE, "Save As"},
    {IDS_CHOOSE_FOLDER, "Select Folder"},
    {IDS_PRINT, "Print"},
    {IDS_LOOK_IN, "Look in"},
    {IDS_SAVE_IN, "Save in"},
    {IDS_FILE_NAME, "File name"},
    {IDS_FILE_NAMES, "File names"},
    {IDS_FILES_OF_TYPE, "Files of type"},
    {IDS_FOLDER, "Folder"},
    {IDS_PRINTER, "Printer"},
    {IDS_PRINT_ALL, "All"},
    {IDS_PRINT_SELECTION, "Selection"},
    {IDS_PRINT_PAGES, "Pages"},
    {IDS_FROM_PAGE, "From page"},
    {IDS_TO_PAGE, "To page"},
    {IDS_COPIES, "Number of copies"},
    {IDS_PRINT_TO_FILE, "Print to file"},
    {IDS_FILE_NOT_THERE, "%1\nThere is no such file."},
    {IDS_FOLDER_NOT_THERE, "%1\nThere is no such folder."},
    {IDS_REPLACE_FILE, "%1\nThe file exists already. Do you want to replace it?"},
    {IDS_PAGES_OUT_OF_RANGE, "Enter pages from %1 to %2."},
    {IDS_COPIES_OUT_OF_RANGE, "Enter from 1 to %1 copies."},
    {IDS_PRINT_FILE_FILTER, "PDF (*.pdf)|*.pdf||"},
};

/// Gives the text with the id as it is to be shown, which stays valid; no value if it has none. Any
/// thread calls it.
using TextSource = std::optional<std::string_view> (*)(UINT id);

/// Sets who is asked for texts first; null asks nobody. Any thread.
void SetTextSource(TextSource source);

/// The seam's text with the id: the source's, or else the English one. Any thread.
std::string_view Text(SeamTextId id);
/// The English one, whatever is shown: what answers may always be given by.
std::string_view EnglishText(SeamTextId id);

/// The pattern with its places filled, `%1` to `%9` as far as there are texts, in one pass: what is
/// inserted is not looked at again, and every other `%` stays.
std::string Filled(std::string_view pattern, std::initializer_list<std::string_view> texts);

}  // namespace platform
}  // namespace dq
