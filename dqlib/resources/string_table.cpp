#include "dqlib/resources/string_table.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include "dqlib/platform/seam_texts.h"
#include "dqlib/resources/dialogs.h"
#include "dqlib/resources/sql_word_lists.h"

namespace dq {
namespace {

constexpr StringRow kOwnTexts[] = {
    {IDS_FORMAT_CUSTOMIZE_TIP, "Switch between building a format and choosing a predefined one"},
    {IDS_FORMAT_CUSTOMIZE, "Cu&stomize"},
    {IDS_FORMAT_USE_PREDEFINED, "U&se Predefined"},
    {IDS_NETWORK_ERROR, "Network error %ld.\r\n%s"},
    {IDS_NETWORK_PROVIDER_ERROR, "%s failed with error code%d.\r\n%s"},
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
    {IDS_SYSTEM_ERROR_WITH_FILE, "Error: %s\nFile: %s,  Line %d"},
    {IDS_SYSTEM_RESOURCES_LOW,
     "The system is critically low of %s resources.\r\n Close some windows and try the operation "
     "again."},
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

const ResourceModule& LibraryResources() {
  static const ResourceModule& module = [] {
    ResourceModule& made = *new ResourceModule(kStrings);
    for (const DialogRow& row : DialogTable()) {
      made.AddResource(RESOURCE_DIALOG, row.id, std::string(row.text));
    }
    return std::ref(made);
  }();
  return module;
}

}  // namespace dq
