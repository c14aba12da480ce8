// What a person is told about an operation on a file that has failed.

#pragma once

#include "dqlib/framework/base/exception.h"

namespace dq {

/// The cause with the path in it, if the exception is one of files or archives whose cause has a
/// text; else the string of the id, with the path for a `%1` in it. `exception` may be null;
/// `saving` says what was tried.
CString DescribeFileFailure(const char* path, const CException* exception, bool saving,
                            UINT default_id);

}  // namespace dq
