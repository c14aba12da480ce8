// Lists and trees: painting.

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/controls/sft_tree.h"

namespace dq {

void CSftTree::OnPaint(CDC& /*dc*/) {}

}  // namespace dq
