// The platform that a command's words name.

#pragma once

#include "apps/dqtool/command.h"
#include "dqlib/dbvocab/dbms.h"

namespace dqtool {

/// Takes the word behind `--platform`, which stands first, off the words. Throws `WrongUsage` if
/// there is none or it is no platform's.
dq::DBMS TakePlatform(Words& words);

}  // namespace dqtool
