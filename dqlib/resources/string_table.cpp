#include "dqlib/resources/string_table.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include "dqlib/framework/base/vector_picture.h"
#include "dqlib/platform/seam_texts.h"
#include "dqlib/resources/dialogs.h"
#include "dqlib/resources/menus.h"
#include "dqlib/resources/pictures.h"
#include "dqlib/resources/sql_word_lists.h"

namespace dq {
namespace {

constexpr StringRow kOwnTexts[] = {
    {IDS_FORMAT_CUSTOMIZE_TIP, "Switch between building a format and choosing a predefined one"},
    {IDS_FORMAT_CUSTOMIZE, "Cu&stomize"},
    {IDS_FORMAT_USE_PREDEFINED, "U&se Predefined"},
    {IDS_NETWORK_ROOT, "Network"},
    {IDS_TREE_SAVE_FILTER,
     "Comma Separated(*.CSV)|*.csv|Tab Delimited(*.TAB)|*.tab|All Files(*.*)|*.*|"},
    {IDS_NETWORK_ERROR, "Network error %ld.\r\n%s"},
    {IDS_NETWORK_PROVIDER_ERROR, "%s failed with error code%d.\r\n%s"},
    {IDS_DELETE_FOLDER,
     "Are you sure that you want to delete the folder '%s' and all of its contents?"},
    {IDS_DELETE_ITEM, "Are you sure that you want to delete the item '%s' ?"},
    {IDS_DELETE_ITEMS, "Are you sure that you want to delete these %d items?"},
    {IDS_NEW_FOLDER, "New Folder"},
    {IDS_NEW_ITEM, "New Item"},
    {IDS_MOVE_TO_SAME_FOLDER,
     "Cannot move %s: The destination folder is the same as the source folder."},
    {IDS_MOVE_TO_SUBFOLDER,
     "Cannot move %s: The destination folder is a subfolder of the source folder."},
    {IDS_ITEM_NAME_EMPTY, "Please enter a name for the item."},
    {IDS_TREE_STATE_VALUE, "TreeState"},
    {IDS_NETWORK_LAST_ERROR_FAILED, "WNetGetLastError failed with error %ld."},
    {IDS_TEMPLATE_MALFORMED_NAME,
     "DQTemplateEngine::SetVariable - Attempting to set malformed variable '%s'."},
    {IDS_TEMPLATE_MALFORMED_VARIABLE,
     "DQTemplateEngine::Process - Malformed variable encountered in input string '%s'."},
    {IDS_TEMPLATE_UNKNOWN_VARIABLE,
     "DQTemplateEngine::Process - Variable  '%s' is not in the dictionary."},
    {IDS_TEMPLATE_OPEN_FAILED, "Error:  Failed to open the template file '%s'."},
    {IDS_OBJECT_TYPE_NOT_VALID,
     "The object type '%s' is not valid for the currently selected platform (%s)."},
    {IDS_DIRECTORY_DOES_NOT_EXIST, "The directory %s does not exist.  Do you want to create it?"},
    {IDS_DIRECTORY_NOT_CREATED, "The directory %s could not be created."},
    {IDS_PRINT_MANY_PAGES,
     "The report desired will be about %d pages long.\nDo you want to continue?"},
    {IDS_REGISTRY_ROOT, "Software\\Velmora\\"},
    {IDS_OBJECT_MAP_CREATE_FAILED, "Error:  Failed to create object map file '%s'.\nCause: %s."},
    {IDS_OBJECT_MAP_OPEN_FAILED, "Error:  Failed to open object map file '%s'.\nCause: %s."},
    {IDS_OBJECT_MAP_READ_FAILED, "Error:  Failed to read object map file '%s'.\nCause: %s."},
    {IDS_OBJECT_MAP_WRITE_FAILED, "Error:  Failed to write object map file '%s'.\nCause: %s."},
    {IDS_WHITE_SPACE_TRIMMED, "Whitespace characters was trimmed from the string %s"},
    {IDS_APP_DELTA_KEEPER, "Velmora Delta Keeper"},
    {IDS_LUMEN_SQL_OPTIONS_FILE, "LumenSQL"},
    {IDS_QUILLBASE_OPTIONS_FILE, "Quill"},
    {IDS_PACER_OPTIONS_FILE, "DQPacer"},
    {IDS_APP_QUILLBASE, "Quillbase"},
    {IDS_APP_PACER, "Velmora Pacer"},
    {IDS_APP_LUMEN_SQL, "Lumen SQL"},
    {IDS_DEFAULT_KEYWORD, "DEFAULT"},
    {IDS_ORACLE_NAME_SYMBOLS, "_$#()"},
    {IDS_ORACLE_WORDS_DELIMITER, ","},
    {IDS_ORACLE_WORDS, kOracleWords},
    {IDS_SQL_SERVER_WORDS_DELIMITER, ","},
    {IDS_SQL_SERVER_WORDS, kSqlServerWords},
    {IDS_SYBASE_WORDS_DELIMITER, ","},
    {IDS_SYBASE_WORDS, kSybaseWords},
    {IDS_CREATE_STDIN_PIPE_FAILED, "Create STDIN pipe failed: "},
    {IDS_CREATE_STDOUT_PIPE_FAILED, "Create STDOUT pipe failed: "},
    {IDS_CREATE_PROCESS_FAILED, "Create process failed: "},
    {IDS_READ_PIPE_FAILED, "Read pipe failed: "},
    {IDS_UNKNOWN_OS_ERROR, "Unknown OS Error"},
    {IDS_VALUE_BETWEEN, "Enter a value between %s and %s\n"},
    {IDS_UNDER_CONSTRUCTION, "This Feature is Under Construction."},
    {IDS_LOG_OPEN_FAILED, "Unable to open Log file for writing"},
    {IDS_LOG_CAPTION, "Log"},
    {IDS_LOG_TOO_LONG, "Log file length has exceeded the maximum limit"},
    {IDS_LOG_WARNING_CAPTION, "Log- Warning"},
    {IDS_START_TASK, "Start Task: On %s"},
    {IDS_END_TASK, "End Task: On %s"},
    {IDS_OUTPUT_SAVE_FILTER, "Messages(*.MSG)|*.msg|Text(*.TXT)|*.txt|All Files(*.*)|*.*|"},
    {IDS_MESSAGE_LOG, " Message Log"},
    {IDS_CANCEL_OPERATION, "Cancel Operation?"},
    {IDS_SYSTEM_ERROR_WITH_FILE, "Error: %s\nFile: %s,  Line %d"},
    {IDS_SYSTEM_RESOURCES_LOW,
     "The system is critically low of %s resources.\r\n Close some windows and try the operation "
     "again."},
    {IDS_PRINTING_NO_PAGES, "Sending Blank Message Log to the Printer"},
    {IDS_PRINTING_PAGE, "Sending Message to the Printer"},
    {IDS_PRINTING_PAGES, "Sending Messages to the Printer"},
    {IDS_DAY_MONTH_ORDER,
     "The order of day and month is not correct. Data Editor will automatically change the "
     "order."},
    {IDS_OUTPUT_MESSAGE_OUT_OF_MEMORY, "Out of memory, could not create CDQOutputMessage.\n"},
    {IDS_OPTIONS_NO_COLOR, "Please enter a color as six hexadecimal digits, rrggbb, or nothing."},
    {IDS_OPTIONS_NO_BYTES, "Please enter bytes as pairs of hexadecimal digits."},
    {IDS_OPTIONS_NOT_KEPT, "The options could not be kept. They hold until the program is closed."},
    {IDS_OPTIONS_PAGE_EDITOR, "Editor"},
    {IDS_OPTIONS_PAGE_FORMATTER, "SQL Formatter"},
    {IDS_OPTIONS_PAGE_NAMES, "Names and Scripts"},
    {IDS_OPTIONS_PAGE_OUTPUT, "Output Pane"},
    {IDS_OPTIONS_PAGE_FAVORITES, "Favorites"},
    {IDS_OPTIONS_PAGE_JOBS, "Jobs"},
    {IDS_OPTIONS_CASES, "As written|Upper case|Lower case"},
    {IDS_OPTIONS_OVERWRITE_POLICIES, "Save it first|Discard it|Ask"},
    {IDS_SETTINGS_NOT_READ,
     "Settings could not be read. Until they can, their defaults hold.\nCause: %s."},
    {IDS_BUTTON_APPLY, "&Apply"},
    {IDS_SOURCE_PROGRAM, "Program"},
    {IDS_SOURCE_DBMS, "DBMS"},
    {IDS_CONSOLE_TEXT_CUT, "[%1 bytes of older text were removed]"},
    {IDS_UNKNOWN, "Unknown"},
    {44601, "Alias"},
    {44602, "Check Constraint"},
    {44603, "Cluster"},
    {44607, "Database"},
    {44609, "Database Link"},
    {44611, "User Datatype"},
    {44612, "Default"},
    {44614, "Function"},
    {44615, "Group"},
    {44616, "Index"},
    {44618, "Login"},
    {44619, "Package"},
    {44620, "Package Body"},
    {44621, "Procedure"},
    {44622, "Profile"},
    {44625, "Remote Server"},
    {44626, "Role"},
    {44627, "Rollback Segment"},
    {44628, "Rule"},
    {44630, "Segment"},
    {44631, "Sequence"},
    {44632, "Snapshot"},
    {44633, "Snapshot Log"},
    {44634, "Synonym"},
    {44635, "Table"},
    {44636, "Tablespace"},
    {44637, "Trigger"},
    {44638, "User"},
    {44640, "View"},
    {44641, "Buffer Pool"},
    {44642, "Nodegroup"},
    {44643, "Type"},
    {44644, "Type Body"},
    {44645, "Library"},
    {44646, "Directory"},
    {44648, "Extended Procedure"},
    {44649, "Anonymous Block"},
    {44650, "Foreign Key"},
    {44651, "Primary Key"},
    {44652, "Unique Key"},
    {44679, "Linked Server"},
    {44680, "Materialized View"},
    {44681, "Materialized View Log"},
    {44687, "Outlines"},
    {44688, "Redo Log Group"},
    {IDS_STOGROUP, "Stogroup"},
    {IDS_STRUCTURED_TYPE, "Structured Type"},
    {IDS_PACKAGE_HEADER, "Package Header"},
    {IDS_USER_MESSAGE, "User Message"},
    {IDS_PLATFORM_NONE, "None"},
    {IDS_PLATFORM_SYBASE, "Sybase"},
    {IDS_PLATFORM_SQLSERVER, "SQL Server"},
    {IDS_PLATFORM_DB2, "DB/2"},
    {IDS_PLATFORM_ORACLE, "Oracle"},
    {IDS_DATE_TIME_CELLS, "Single digit month of the year"},
    {44721, "Double digit month of the year"},
    {44722, "Three letter abbrev. of the month"},
    {44723, "Full name of the month"},
    {44724, "Single digit day of the month"},
    {44725, "Double digit day of the month"},
    {44726, "Three letter abbrev day of the week"},
    {44727, "Full name of the weekday"},
    {44728, "Number of days in the week"},
    {44729, "Number of days in the year"},
    {44730, "Last two digits of the year"},
    {44731, "Four digit year"},
    {44732, "Single digit hours of the day(1 to 12)"},
    {44733, "Double digit hours of the day(1 to 12)"},
    {44734, "Single digit hours of the day(0 to 23)"},
    {44735, "Double digit hours of the day(0 to 23)"},
    {44736, "Single digit minutes of the hour"},
    {44737, "Double digit minutes of the hour"},
    {44738, "Single digit seconds of the minute"},
    {44739, "Double digit seconds of the minute"},
    {44740, "Display AM or PM"},
    {44741, "Forward slash separator"},
    {44742, "Dash separator"},
    {44743, "Comma separator"},
    {44744, "Period separator"},
    {44745, "Semicolon separator"},
    {44746, "Blank space separator"},
    {44747, "Colon Time separator"},
    {IDS_CLOSE_TAB, "Close this tab window"},
    {IDS_CLOSE_ALL_TABS, "Close all tab windows"},
    {IDS_RENAME_TAB, "Rename..."},
    {IDS_TAB_NAME_BLANK,
     "The tab names must not be blank.  Enter a name at least one character in length."},
    {IDS_OUTPUT_COPY, "&Copy\tCtrl+C"},
    {IDS_OUTPUT_SELECT_ALL, "Select &All"},
    {IDS_OUTPUT_UNSELECT_ALL, "&Unselect All"},
    {IDS_OUTPUT_CLEAR, "C&lear"},
    {IDS_OUTPUT_CLEAR_ALL, "Clea&r All"},
    {IDS_OUTPUT_DISPLAY, "&Display Message"},
    {IDS_OUTPUT_SAVE, "&Save..."},
    {IDS_OUTPUT_PRINT, "&Print..."},
    {IDS_OUTPUT_FLOAT, "&Float"},
    {IDS_OUTPUT_HIDE, "&Hide"},
};

/// All strings of the module: the library's own and the seam's.
constexpr auto kStrings = [] {
  std::array<StringRow, std::size(kOwnTexts) + std::size(platform::kSeamTexts)> all{};
  std::ranges::merge(kOwnTexts, platform::kSeamTexts, all.begin(), {}, &StringRow::id,
                     &StringRow::id);
  return all;
}();

static_assert(IsStrictlySorted(kStrings), "strings are sorted by id, and no id stands twice");

}  // namespace

std::span<const StringRow> StringTable() { return kStrings; }

std::string_view EnglishText(UINT id) { return LibraryResources().String(id).value_or(""); }

const ResourceModule& LibraryResources() {
  static const ResourceModule& module = [] {
    ResourceModule& made = *new ResourceModule(kStrings);
    for (const DialogRow& row : DialogTable()) {
      made.AddResource(RESOURCE_DIALOG, row.id, std::string(row.text));
    }
    for (const PictureRow& row : PictureTable()) AddPicture(made, row.id, row.shapes);
    for (const WORD id : kMenuIds) made.AddResource(RESOURCE_MENU, id, MenuText(id, made));
    return std::ref(made);
  }();
  return module;
}

}  // namespace dq
