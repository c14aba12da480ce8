#include "dqlib/toolkit/check_box_tree_item_model.h"

#include <atomic>
#include <limits>

#include "dqlib/framework/base/trace.h"

namespace dq {
namespace {

constexpr auto kNow = std::numeric_limits<std::uint64_t>::max();

std::uint64_t NextMoment() {
  static std::atomic<std::uint64_t> last = 0;
  return ++last;
}

}  // namespace

IMPLEMENT_DYNAMIC(CDQCheckBoxTreeItemModel, CDQTreeItemModel)

CDQCheckBoxTreeItemModel::CDQCheckBoxTreeItemModel(InitialCheckState initial)
    : m_eInitialState(initial) {}

bool CDQCheckBoxTreeItemModel::Takes(CDQTreeItemModel* child) const {
  return dynamic_cast<CDQCheckBoxTreeItemModel*>(child) != nullptr;
}

CDQCheckBoxTreeItemModel* CDQCheckBoxTreeItemModel::Parent() const {
  // It may stand in a tree of another kind.
  return dynamic_cast<CDQCheckBoxTreeItemModel*>(GetParent());
}

CDQCheckBoxTreeItemModel* CDQCheckBoxTreeItemModel::Child(int index) const {
  return static_cast<CDQCheckBoxTreeItemModel*>(GetChild(index));
}

bool CDQCheckBoxTreeItemModel::TakeIn(CDQTreeItemModel* child, bool is_in) {
  if (!is_in) return false;
  auto& node = static_cast<CDQCheckBoxTreeItemModel&>(*child);
  node.m_nAdded = NextMoment();
  node.InitCheck();
  return true;
}

bool CDQCheckBoxTreeItemModel::AddChild(CDQTreeItemModel* child) {
  return TakeIn(child, CDQTreeItemModel::AddChild(child));
}

bool CDQCheckBoxTreeItemModel::InsertChild(int index, CDQTreeItemModel* child) {
  return TakeIn(child, CDQTreeItemModel::InsertChild(index, child));
}

void CDQCheckBoxTreeItemModel::InitCheck() {
  const CDQCheckBoxTreeItemModel* const parent = Parent();
  if (m_eInitialState == kInheritCheckState && parent != nullptr) {
    const int state = parent->GetCheckState();
    if (state != GetCheckState()) CountAbove();
    SetCheckState(state);
  }
  UpdateChildCount();
}

// ---- Counting

/// Counts the nodes below that had come in by then, by their states now.
CDQCheckBoxTreeItemModel::Counts CDQCheckBoxTreeItemModel::CountBelow(Moment as_of) const {
  Counts counts;
  if (GetChildCount() == 0) return counts;
  std::vector<const CDQCheckBoxTreeItemModel*> open = {this};
  while (!open.empty()) {
    const CDQCheckBoxTreeItemModel& node = *open.back();
    open.pop_back();
    for (int at = 0; at < node.GetChildCount(); ++at) {
      const CDQCheckBoxTreeItemModel* const child = node.Child(at);
      if (child->m_nAdded > as_of) continue;
      ++(child->GetCheckState() == 1 ? counts.checked : counts.unchecked);
      if (child->GetChildCount() > 0) open.push_back(child);
    }
  }
  return counts;
}

int CDQCheckBoxTreeItemModel::CountCheckedChildren(const CDQCheckBoxTreeItemModel* node) const {
  return node == nullptr ? 0 : node->CountBelow(kNow).checked;
}

int CDQCheckBoxTreeItemModel::CountUncheckedChildren(const CDQCheckBoxTreeItemModel* node) const {
  return node == nullptr ? 0 : node->CountBelow(kNow).unchecked;
}

const CDQCheckBoxTreeItemModel::Counts& CDQCheckBoxTreeItemModel::CurrentCounts() const {
  if (m_nDue != 0) m_counts = CountBelow(m_nDue);
  m_nDue = 0;
  return m_counts;
}

void CDQCheckBoxTreeItemModel::SetCounts(const Counts& counts) {
  m_counts = counts;
  m_nDue = 0;
}

/// What is still to be counted above goes by the states before a change of this node's or below. It
/// is none of theirs if it came in later.
void CDQCheckBoxTreeItemModel::CountAbove() const {
  for (const auto* above = Parent(); above != nullptr; above = above->Parent()) {
    if (above->m_nDue >= m_nAdded) above->CurrentCounts();
  }
}

void CDQCheckBoxTreeItemModel::UpdateChildCount() {
  if (GetChildCount(true) <= kCountedAtOnce) {
    SetCounts(CountBelow(kNow));
  } else {
    m_nDue = NextMoment();
  }
  TraceCounts();
}

void CDQCheckBoxTreeItemModel::TraceCounts() const {
  if (!IsDebugTraced()) return;
  const auto [checked, unchecked] = CurrentCounts();
  CString line;
  line.Format("%s Checked: %d Unchecked: %d\n", static_cast<const char*>(GetItemText()), checked,
              unchecked);
  AfxDebugTrace(line.View());
}

CString CDQCheckBoxTreeItemModel::GetTraceText() const {
  const auto [checked, unchecked] = CurrentCounts();
  CString text;
  text.Format("%s, Checked: %d Unchecked: %d", static_cast<const char*>(GetItemText()), checked,
              unchecked);
  return text;
}

bool CDQCheckBoxTreeItemModel::HasOnlyCheckedChildren() const {
  return CurrentCounts().checked == GetChildCount(true);
}

bool CDQCheckBoxTreeItemModel::HasOnlyUncheckedChildren() const {
  return CurrentCounts().unchecked == GetChildCount(true);
}

// ---- Changes

int CDQCheckBoxTreeItemModel::ToggleCheckState() {
  const int state = GetCheckState() == 1 ? 0 : 1;
  SetCheckState(state);
  UpdateAllChildren(state);
  UpdateParents();
  return state;
}

/// Each node before those below it.
std::vector<CDQCheckBoxTreeItemModel*> CDQCheckBoxTreeItemModel::SelfAndBelow() {
  std::vector<CDQCheckBoxTreeItemModel*> nodes = {this};
  nodes.reserve(static_cast<std::size_t>(GetChildCount(true)) + 1);
  for (std::size_t next = 0; next < nodes.size(); ++next) {
    CDQCheckBoxTreeItemModel& node = *nodes[next];
    for (int at = 0; at < node.GetChildCount(); ++at) nodes.push_back(node.Child(at));
  }
  return nodes;
}

void CDQCheckBoxTreeItemModel::UpdateAllChildren(int state) {
  const bool checked = state != 0;
  CountAbove();
  for (CDQCheckBoxTreeItemModel* const node : SelfAndBelow()) {
    if (node != this) node->SetCheckState(checked ? 1 : 0);
    const int below = node->GetChildCount(true);
    node->SetCounts(checked ? Counts{below, 0} : Counts{0, below});
  }
}

void CDQCheckBoxTreeItemModel::CheckAllBelow(bool checked, int Counts::*counted) {
  const auto nodes = SelfAndBelow();
  CountAbove();
  for (const CDQCheckBoxTreeItemModel* const node : nodes) node->CurrentCounts();
  for (CDQCheckBoxTreeItemModel* const node : nodes) {
    if (node != this) node->SetCheckState(checked ? 1 : 0);
    node->m_counts.*counted = node->GetChildCount(true);
  }
}

void CDQCheckBoxTreeItemModel::AllCheckedChildren() { CheckAllBelow(true, &Counts::checked); }
void CDQCheckBoxTreeItemModel::AllUncheckedChildren() { CheckAllBelow(false, &Counts::unchecked); }

void CDQCheckBoxTreeItemModel::ZeroAllBelow(int Counts::*counted) {
  for (CDQCheckBoxTreeItemModel* const node : SelfAndBelow()) {
    node->CurrentCounts();
    node->m_counts.*counted = 0;
  }
}

void CDQCheckBoxTreeItemModel::ZeroCheckedChildren() { ZeroAllBelow(&Counts::checked); }
void CDQCheckBoxTreeItemModel::ZeroUncheckedChildren() { ZeroAllBelow(&Counts::unchecked); }

void CDQCheckBoxTreeItemModel::UpdateParents() {
  Counts below = CountBelow(kNow);
  const CDQCheckBoxTreeItemModel* from = this;
  for (CDQCheckBoxTreeItemModel* node = Parent(); node != nullptr; node = node->Parent()) {
    // What is below the node from which it comes has just been counted.
    for (int at = 0; at < node->GetChildCount(); ++at) {
      const CDQCheckBoxTreeItemModel* const child = node->Child(at);
      ++(child->GetCheckState() == 1 ? below.checked : below.unchecked);
      if (child == from) continue;
      const Counts more = child->CountBelow(kNow);
      below.checked += more.checked;
      below.unchecked += more.unchecked;
    }
    node->SetCounts(below);
    node->TraceCounts();
    node->SetCheckState(below.checked > 0 ? 1 : 0);
    from = node;
  }
}

void CDQCheckBoxTreeItemModel::Change(int Counts::*counted, int by) {
  for (CDQCheckBoxTreeItemModel* node = this; node != nullptr; node = node->Parent()) {
    const int count = node->CurrentCounts().*counted;
    if (by > 0 ? count >= node->GetChildCount(true) : count <= 0) return;
    node->m_counts.*counted = count + by;
  }
}

void CDQCheckBoxTreeItemModel::IncrementCheckedChildren() { Change(&Counts::checked, 1); }
void CDQCheckBoxTreeItemModel::DecrementCheckedChildren() { Change(&Counts::checked, -1); }
void CDQCheckBoxTreeItemModel::IncrementUncheckedChildren() { Change(&Counts::unchecked, 1); }
void CDQCheckBoxTreeItemModel::DecrementUncheckedChildren() { Change(&Counts::unchecked, -1); }

}  // namespace dq
