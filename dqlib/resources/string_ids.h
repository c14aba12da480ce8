// Numbers of the library's strings. Their texts stand in `string_table.cpp`.

#pragma once

#include "dqlib/platform/types.h"

namespace dq {

enum StringId : UINT {
  IDS_NETWORK_ERROR = 23527,
  IDS_NETWORK_PROVIDER_ERROR = 23528,
  IDS_NETWORK_LAST_ERROR_FAILED = 23550,
  IDS_CREATE_STDIN_PIPE_FAILED = 43994,
  IDS_CREATE_STDOUT_PIPE_FAILED = 43995,
  IDS_CREATE_PROCESS_FAILED = 43996,
  IDS_READ_PIPE_FAILED = 43997,
  IDS_UNKNOWN_OS_ERROR = 43998,
  IDS_UNDER_CONSTRUCTION = 44020,
  IDS_START_TASK = 44030,
  IDS_END_TASK = 44031,
  IDS_SYSTEM_ERROR_WITH_FILE = 44088,

  // 44500 to 44799: numbers assigned here to texts that had none.
  IDS_OUTPUT_MESSAGE_OUT_OF_MEMORY = 44500,
};

}  // namespace dq
