// Trees: what is selected, deleted and moved.

#include <utility>
#include <vector>

#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/resources/string_ids.h"
#include "dqlib/toolkit/tree.h"

namespace dq {

using detail::Watched;

namespace {

/// Asks by a string with one argument; No is the usual answer.
template <typename Argument>
bool Ask(UINT id, Argument argument) {
  CString question;
  question.Format(id, argument);
  return AfxMessageBox(question, BOX_YES_NO | BOX_QUESTION | BOX_DEFAULT_SECOND) == IDYES;
}

/// Where a row is after `count` rows from `first` on, it not among them, were moved to `now`.
int AfterMove(int row, int first, int count, int now) {
  if (row >= first + count) row -= count;
  return row >= now ? row + count : row;
}

}  // namespace

// Selection.

void CDQTree::SelectAll(bool, bool) {
  if (IsMultiSelection() && GetCount() > 0) SelectRows(0, GetCount() - 1);
}

void CDQTree::UnselectAll() {
  if (IsMultiSelection() && GetCount() > 0) SelectRows(0, GetCount() - 1, false);
}

int CDQTree::GetSelections() {
  ClearSelections();
  if (IsMultiSelection()) {
    for (const int row : GetSelectedRows()) m_selections.Add(static_cast<UINT>(row));
  } else if (GetCaret() >= 0) {
    m_selections.Add(static_cast<UINT>(GetCaret()));
  }
  return m_selections.GetSize();
}

/// The same, as what they are now.
std::vector<int> CDQTree::CollectSelections() {
  std::vector<int> rows(static_cast<std::size_t>(GetSelections()));
  for (int at = 0; at < m_selections.GetSize(); ++at) {
    rows[static_cast<std::size_t>(at)] = GetSelection(at);
  }
  return rows;
}

int CDQTree::GetSelection(int index) const {
  return index >= 0 && index < m_selections.GetSize() ? static_cast<int>(m_selections[index]) : -1;
}

int CDQTree::GetSelectedItems(CUIntArray& rows, int) {
  rows.RemoveAll();
  GetSelections();
  for (int at = 0; at < m_selections.GetSize(); ++at) rows.Add(m_selections[at]);
  return rows.GetSize();
}

void CDQTree::AdjustSelections(ItemOperation operation, int row, int to) {
  AdjustIndices(m_selections, operation, row, to);
}

void CDQTree::AdjustIndices(CUIntArray& rows, ItemOperation operation, int row, int to) {
  const int inserted_at = operation == ITEM_MOVED ? to : row;
  const bool deletes = operation != ITEM_INSERTED && row >= 0;
  const bool inserts = operation != ITEM_DELETED && inserted_at >= 0;
  int kept = 0;
  for (int at = 0; at < rows.GetSize(); ++at) {
    int index = static_cast<int>(rows[at]);
    if (deletes && index == row) continue;
    if (deletes && index > row) --index;
    if (inserts && index >= inserted_at) ++index;
    rows[kept++] = static_cast<UINT>(index);
  }
  rows.SetSize(kept);
}

// Deletion.

CString CDQTree::GetItemName(void*) { return {}; }

CString CDQTree::NameOf(int row) {
  const Watched self(*this);
  const CString name = GetItemName(reinterpret_cast<void*>(GetRowData(row)));
  return name.IsEmpty() && self.IsThere() ? GetText(row) : name;
}

bool CDQTree::DeleteSelectedItemsMsg(int count) { return Ask(IDS_DELETE_ITEMS, count); }

bool CDQTree::DeleteItemMsg(bool is_folder, const char* name) {
  return Ask(is_folder ? IDS_DELETE_FOLDER : IDS_DELETE_ITEM, name == nullptr ? "" : name);
}

void CDQTree::DeleteSelectedItems() {
  const Watched self(*this);
  std::vector<int> rows;
  // Others may have come while the person was asked: then they are asked about those.
  for (;;) {
    std::vector<int> selected = CollectSelections();
    if (selected.empty()) return;
    if (selected == rows) break;
    rows = std::move(selected);
    bool agreed = false;
    if (rows.size() > 1) {
      agreed = DeleteSelectedItemsMsg(static_cast<int>(rows.size()));
    } else {
      const CString name = NameOf(rows.front());
      agreed = self.IsThere() && DeleteItemMsg(IsFolder(rows.front()), name);
    }
    if (!self.IsThere()) return;
    if (!agreed) {
      SetFocus();
      return;
    }
  }
  // From the bottom up, so that indexes stay right.
  for (auto row = rows.rbegin(); self.IsThere() && row != rows.rend(); ++row) DeleteRow(*row);
  if (self.IsThere()) ClearSelections();
}

void CDQTree::Cut() {
  // What isn't on the clipboard would be lost.
  if (Copy()) DeleteSelectedItems();
}

// New rows.

void* CDQTree::CreateItem(const char*, bool) { return nullptr; }

int CDQTree::CreateNewFolder() { return CreateNewRow(IDS_NEW_FOLDER, true); }

int CDQTree::CreateNewItem() { return CreateNewRow(IDS_NEW_ITEM, false); }

int CDQTree::CreateNewRow(UINT name_id, bool is_folder) {
  const Watched self(*this);
  const int current = GetCaret();
  CString name;
  name.LoadString(name_id);
  void* const data = CreateItem(name, is_folder);
  if (!self.IsThere()) return -1;
  const int row = InsertItem(current, name, data);
  if (!self.IsThere()) return -1;
  EnsureRowVisible(row);
  if (self.IsThere()) SetCaret(row);
  if (self.IsThere()) EditCell(row, 0);
  return self.IsThere() ? row : -1;
}

/// Below a folder, or behind a leaf, or behind all where there is none.
int CDQTree::InsertItem(int near, const char* text, void* data) {
  const Watched self(*this);
  int row = -1;
  if (!HasRow(near)) {
    row = AddRow(text);
  } else {
    const int level = GetLevel(near) + (IsFolder(near) ? 1 : 0);
    row = InsertRow(EndOfBranch(near), text, level);
  }
  if (!self.IsThere()) return -1;
  SetRowData(row, reinterpret_cast<std::uintptr_t>(data));
  // A folder that was empty isn't any more.
  PickBitmap(GetParentRow(row));
  if (self.IsThere()) PickBitmap(row);
  if (self.IsThere()) AdjustItemLines(row);
  return row;
}

// Moves.

/// Behind all that is below a row, or behind all rows with -1.
int CDQTree::EndOfBranch(int row) const {
  return row < 0 ? GetCount() : row + 1 + GetDescendantCount(row);
}

bool CDQTree::TypesEqual(int a, int b) const {
  return (IsFolder(a) && IsFolder(b)) || (IsLeaf(a) && IsLeaf(b));
}

/// Tells the person if the row can't be moved into the folder.
bool CDQTree::RefuseMove(int row, int folder) {
  const bool below = folder > row && folder <= row + GetDescendantCount(row);
  if (!below && folder != row && GetParentRow(row) != folder) return false;
  CString message;
  message.Format(below ? IDS_MOVE_TO_SUBFOLDER : IDS_MOVE_TO_SAME_FOLDER,
                 static_cast<const char*>(NameOf(row)));
  AfxMessageBox(message, BOX_EXCLAMATION);
  return true;
}

int CDQTree::InsertNode(int row, int folder, int before) {
  if (!HasRow(row) || (folder != -1 && !HasRow(folder))) return -1;
  if (before != -1 && (!HasRow(before) || GetParentRow(before) != folder)) return -1;
  const Watched self(*this);
  if (RefuseMove(row, folder) || !self.IsThere()) return -1;
  if (before == -1) before = EndOfBranch(folder);
  const int former = GetParentRow(row);
  const int count = GetDescendantCount(row) + 1;
  const int now = MoveRow(row, before, folder < 0 ? 0 : GetLevel(folder) + 1);
  if (now < 0 || !self.IsThere()) return -1;
  // A folder may be empty now, or not any more.
  if (former >= 0) PickBitmap(AfterMove(former, row, count, now));
  if (self.IsThere() && folder >= 0) PickBitmap(AfterMove(folder, row, count, now));
  if (self.IsThere()) PickBitmap(now);
  if (self.IsThere()) AdjustItemLines(now);
  return now;
}

int CDQTree::MoveFolder(int row, int folder) { return InsertNode(row, folder, -1); }

int CDQTree::MoveItem(int row, int folder) { return InsertNode(row, folder, -1); }

int CDQTree::RearrangeItem(int row, int before) {
  if (!HasRow(row) || before >= GetCount()) return -1;
  const int parent = GetParentRow(row);
  if (before >= 0 && (before == row || GetParentRow(before) != parent)) return -1;
  if (before < 0) before = EndOfBranch(parent);
  const Watched self(*this);
  const int now = MoveRow(row, before, GetLevel(row));
  if (self.IsThere() && now >= 0) AdjustItemLines(now);
  return self.IsThere() ? now : -1;
}

bool CDQTree::MoveSelItems(int target) {
  if (target != -1 && !HasRow(target)) return false;
  const Watched self(*this);
  const bool into = target >= 0 && IsFolder(target);
  const int folder = into ? target : target < 0 ? -1 : GetParentRow(target);
  const bool arranges = m_bAllowRearranging && !into;
  struct Moved {
    int row;
    int count;
    bool within_folder;
  };
  std::vector<Moved> moves;
  for (const int row : CollectSelections()) {
    // What is below the row before goes with it.
    if (!moves.empty() && row < moves.back().row + moves.back().count) continue;
    if (row == target) return false;
    const bool within =
        arranges && GetParentRow(row) == folder && (target < 0 || TypesEqual(row, target));
    // None is moved where one can't be.
    if (!within && (RefuseMove(row, folder) || !self.IsThere())) return false;
    moves.push_back({row, GetDescendantCount(row) + 1, within});
  }
  // They keep their order before the target, or behind all in the folder. Those from above it leave
  // its index alone, but not those of each other.
  const int place = arranges && target >= 0 ? target : EndOfBranch(folder);
  int from_above = 0;
  int from_below = 0;
  int above_folder = 0;
  bool moved = false;
  for (const auto& [row, count, within] : moves) {
    const int now_at = row < place ? row - from_above : row;
    const int before = arranges && target >= 0 ? place + from_below : -1;
    const int into_folder = folder < 0 ? -1 : folder - above_folder;
    const int now = within             ? RearrangeItem(now_at, before)
                    : before >= 0      ? InsertNode(now_at, into_folder, before)
                    : IsFolder(now_at) ? MoveFolder(now_at, into_folder)
                                       : MoveItem(now_at, into_folder);
    if (!self.IsThere()) return false;
    if (now < 0) continue;
    moved = true;
    (row < place ? from_above : from_below) += count;
    if (row < folder) above_folder += count;
  }
  return moved;
}

// Drags within the tree, and out of it.

void CDQTree::AllowDrag(bool allow) {
  m_bDragAllowed = allow;
  EnableDrag(allow);
}

LRESULT CDQTree::OnForeignDrop(CWnd*, const CStringArray*) { return 0; }

LRESULT CDQTree::OnForeignDrag(CWnd*) { return 0; }

/// The window that rows are dragged over, if it isn't the tree.
CWnd* CDQTree::ForeignUnderPointer() {
  const CPoint place = ClientToScreen(GetPressPoint());
  if (GetClientRect().PtInRect(GetPressPoint())) return nullptr;
  CWnd* const under = GetTopLevelParent()->WindowAt(place);
  return under == this ? nullptr : under;
}

BOOL CDQTree::OnDragging() {
  if (CWnd* const foreign = ForeignUnderPointer()) {
    const Watched self(*this);
    OnForeignDrag(foreign);
    if (self.IsThere()) SetDropTarget(-1);
  } else {
    SetDropTarget(HitTest(GetPressPoint()).row);
  }
  // The beginning is the parent's business too, which may make something else of it.
  return 0;
}

/// Whether rows can be dropped there: on a row, or below all of them.
bool CDQTree::IsForRows(const TreeHit& hit) const {
  return hit.part != TreePart::kHeader && hit.part != TreePart::kHeaderDivider &&
         GetClientRect().PtInRect(GetPressPoint());
}

BOOL CDQTree::OnEndDrag() {
  const Watched self(*this);
  SetDropTarget(-1);
  if (CWnd* const foreign = ForeignUnderPointer()) {
    OnForeignDrop(foreign);
  } else if (const TreeHit hit = HitTest(GetPressPoint()); IsForRows(hit)) {
    MoveSelItems(hit.row);
  }
  if (self.IsThere()) PostDrag();
  return 1;
}

BOOL CDQTree::OnCancelDrag() {
  SetDropTarget(-1);
  return 1;
}

}  // namespace dq
