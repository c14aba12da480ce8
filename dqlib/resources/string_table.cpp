#include "dqlib/resources/string_table.h"

namespace dq {
namespace {

constexpr StringRow kStrings[] = {
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
    {IDS_DIRECTORY_DOES_NOT_EXIST, "The directory %s does not exist.  Do you want to create it?"},
    {IDS_DIRECTORY_NOT_CREATED, "The directory %s could not be created."},
    {IDS_REGISTRY_ROOT, "Software\\Velmora\\"},
    {IDS_APP_DELTA_KEEPER, "Velmora Delta Keeper"},
    {IDS_LUMEN_SQL_OPTIONS_FILE, "LumenSQL"},
    {IDS_QUILLBASE_OPTIONS_FILE, "Quill"},
    {IDS_PACER_OPTIONS_FILE, "DQPacer"},
    {IDS_APP_QUILLBASE, "Quillbase"},
    {IDS_APP_PACER, "Velmora Pacer"},
    {IDS_APP_LUMEN_SQL, "Lumen SQL"},
    {IDS_CREATE_STDIN_PIPE_FAILED, "Create STDIN pipe failed: "},
    {IDS_CREATE_STDOUT_PIPE_FAILED, "Create STDOUT pipe failed: "},
    {IDS_CREATE_PROCESS_FAILED, "Create process failed: "},
    {IDS_READ_PIPE_FAILED, "Read pipe failed: "},
    {IDS_UNKNOWN_OS_ERROR, "Unknown OS Error"},
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
    {IDS_OUTPUT_MESSAGE_OUT_OF_MEMORY, "Out of memory, could not create CDQOutputMessage.\n"},
};

static_assert(IsStrictlySorted(kStrings), "strings are sorted by id, and no id stands twice");

}  // namespace

std::span<const StringRow> StringTable() { return kStrings; }

const ResourceModule& LibraryResources() {
  static const ResourceModule* const module = new ResourceModule(kStrings);
  return *module;
}

}  // namespace dq
