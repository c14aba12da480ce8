#include "dqlib/toolkit/tree_state.h"

#include <algorithm>

#include "dqlib/core/x_mem_file.h"
#include "dqlib/framework/base/archive.h"
#include "dqlib/framework/base/array.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/resources/string_ids.h"
#include "dqlib/toolkit/tree.h"

namespace dq {
namespace {

/// The highest row that the form has room for.
constexpr int kLastExpanded = 0xFFFF;

CString ValueName() {
  CString name;
  name.LoadString(IDS_TREE_STATE_VALUE);
  return name;
}

}  // namespace

void WriteTreeState(const TreeState& state, CFile& file) {
  CArchive archive(&file, CArchive::store);
  archive << state.current << static_cast<LONG>(state.selected.size());
  for (const LONG row : state.selected) archive << row;
  CWordArray expanded;
  for (const WORD row : state.expanded) expanded.Add(row);
  expanded.Serialize(archive);
  archive.Close();
}

std::optional<TreeState> ReadTreeState(CFile& file) {
  try {
    CArchive archive(&file, CArchive::load);
    TreeState state;
    LONG count = 0;
    archive >> state.current >> count;
    if (count < 0 || static_cast<std::uint64_t>(count) > archive.Remaining() / sizeof(LONG)) {
      return {};
    }
    state.selected.resize(static_cast<std::size_t>(count));
    for (LONG& row : state.selected) archive >> row;
    CWordArray expanded;
    expanded.Serialize(archive);
    for (int at = 0; at < expanded.GetSize(); ++at) state.expanded.push_back(expanded[at]);
    return state;
  } catch (const CArchiveException&) {
    return {};
  } catch (const CFileException&) {
    return {};
  }
}

bool CDQTree::SaveState(const char* key) {
  TreeState state;
  state.current = GetCaret();
  const std::vector<int> selected = CollectSelections();
  state.selected.assign(selected.begin(), selected.end());
  const int behind = std::min(GetCount(), kLastExpanded + 1);
  for (int row = 0; row < behind; ++row) {
    if (HasChildren(row) && IsExpanded(row)) state.expanded.push_back(static_cast<WORD>(row));
  }
  CXMemFile file;
  WriteTreeState(state, file);
  return file.WriteRegistry(key, ValueName());
}

bool CDQTree::RestoreState(const char* key) {
  CXMemFile file;
  if (!file.ReadRegistry(key, ValueName()) || file.GetLength() == 0) return false;
  const std::optional<TreeState> state = ReadTreeState(file);
  if (!state) return false;
  TakeState(*state);
  return true;
}

void CDQTree::TakeState(const TreeState& state) {
  const detail::Watched self(*this);
  PostMessage(kTreeSetCaret,
              static_cast<WPARAM>(static_cast<std::make_unsigned_t<LONG>>(state.current)));
  for (const LONG row : state.selected) {
    if (self.IsThere()) SelectRow(row);
  }
  auto next = state.expanded.begin();
  for (int row = 0; self.IsThere() && row < GetCount(); ++row) {
    if (!HasChildren(row)) continue;
    const bool expanded = next != state.expanded.end() && *next == row;
    if (expanded) ++next;
    Expand(row, expanded);
  }
}

}  // namespace dq
