#include "dqlib/toolkit/tree_item_model.h"

#include <algorithm>
#include <string>

#include "dqlib/framework/base/trace.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQTreeItemModel, CObject)

void CDQTreeItemModel::TraceDump(long level) {
  if (!IsDebugTraced()) return;
  m_nTraceLevel = level;
  std::vector<CDQTreeItemModel*> open = {this};
  while (!open.empty()) {
    CDQTreeItemModel& node = *open.back();
    open.pop_back();
    std::string line(static_cast<std::size_t>(std::max(0L, node.m_nTraceLevel)), '\t');
    line += node.GetTraceText().View();
    AfxDebugTrace(line + '\n');
    for (int at = node.GetChildCount(); at-- > 0;) {
      open.push_back(node.GetChild(at));
      open.back()->m_nTraceLevel = node.m_nTraceLevel + 1;
    }
  }
}

}  // namespace dq
