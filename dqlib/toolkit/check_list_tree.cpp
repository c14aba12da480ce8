#include "dqlib/toolkit/check_list_tree.h"

#include <string>
#include <utility>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

namespace {

std::size_t At(CHECK_STATE state) { return static_cast<std::size_t>(state); }

/// Remarks what a test of a row has come to, and returns it.
bool Remark(const char* name, bool holds, const char* end) {
  if (IsDebugTraced()) AfxDebugTrace(std::string(name) + (holds ? "[x]" : "[ ]") + end);
  return holds;
}

}  // namespace

IMPLEMENT_DYNCREATE(CDQCheckListTree, CDQTree)

CDQCheckListTree::CDQCheckListTree() = default;
CDQCheckListTree::~CDQCheckListTree() { EndInDestructor(); }

/// Rows that have a state keep it.
void CDQCheckListTree::ReplacePictures(const std::array<CBitmap*, 3>& pictures) {
  for (int row = 0; row < GetCount(); ++row) {
    const CHECK_STATE state = GetItemCheckState(row);
    if (state != CHECK_STATE_UNKNOWN) SetColumnBitmap(row, 0, pictures[At(state)]);
  }
  m_pictures = pictures;
}

void CDQCheckListTree::Initialize(CBitmap* clear, CBitmap* mixed, CBitmap* checked,
                                  bool toggle_by_text, bool bold_checked) {
  ReplacePictures({clear, mixed, checked});
  m_pLoaded = nullptr;
  m_bToggleByText = toggle_by_text;
  m_bBoldChecked = bold_checked;
}

bool CDQCheckListTree::LoadCheckStateBitmaps(UINT clear_id, UINT mixed_id, UINT checked_id) {
  auto loaded = std::make_unique<std::array<CBitmap, 3>>();
  auto& [clear, mixed, checked] = *loaded;
  for (const auto& [bitmap, id] :
       {std::pair(&clear, clear_id), {&mixed, mixed_id}, {&checked, checked_id}}) {
    if (!bitmap->LoadBitmap(AfxFindResourceHandle(id, RESOURCE_BITMAP), id)) return false;
  }
  Initialize(&clear, &mixed, &checked, m_bToggleByText, m_bBoldChecked);
  m_pLoaded = std::move(loaded);
  return true;
}

int CDQCheckListTree::AddString(const char* text) {
  const int row = CDQTree::AddString(text);
  SetCheck(row, false);
  return row;
}

int CDQCheckListTree::AddString(int number) { return AddString(std::to_string(number).c_str()); }

// ---- States

CHECK_STATE CDQCheckListTree::GetItemCheckState(int row) const {
  const HBITMAP picture = HasRow(row) ? GetColumnBitmap(row, 0) : nullptr;
  for (const CHECK_STATE state : {CHECK_STATE_CLEAR, CHECK_STATE_CHECKED, CHECK_STATE_MIXED}) {
    if (picture != nullptr && picture == PictureOf(m_pictures[At(state)])) return state;
  }
  return CHECK_STATE_UNKNOWN;
}

bool CDQCheckListTree::GetCheck(int row) const {
  return GetItemCheckState(row) == CHECK_STATE_CHECKED;
}

/// The row alone, with its font.
void CDQCheckListTree::ShowState(int row, bool check) {
  SetColumnBitmap(row, 0, m_pictures[At(check ? CHECK_STATE_CHECKED : CHECK_STATE_CLEAR)]);
  if (m_bBoldChecked) SetItemFont(row, -1, check ? GetBoldFont() : nullptr);
}

void CDQCheckListTree::SetCheck(int row, bool check) {
  if (!HasRow(row)) return;
  if (m_bSingleCheck && check) UnselectAll();
  ShowState(row, check);
  UpdateSubItemState(row, check);
  UpdateParentItemState(row);
}

void CDQCheckListTree::UpdateItemCheckbox(int row) {
  if (!HasRow(row)) return;
  const CHECK_STATE state = GetItemCheckState(row);
  if (m_bSingleCheck && state != CHECK_STATE_CHECKED) UnselectAll();
  if (state != CHECK_STATE_UNKNOWN) {
    const bool check = state != CHECK_STATE_CHECKED;
    ShowState(row, check);
    UpdateSubItemState(row, check);
  }
  UpdateParentItemState(row);
}

void CDQCheckListTree::UpdateSubItemState(int row, bool check) {
  // They stand right behind it.
  const int last = row + GetDescendantCount(row);
  for (int below = row + 1; HasRow(row) && below <= last; ++below) ShowState(below, check);
}

GROUP_STATE CDQCheckListTree::GetSiblingGroupState(int row) const {
  if (!HasRow(row)) return GROUP_STATE_UNKNOWN;
  bool any_checked = false;
  bool any_other = false;
  // The first of them stands right behind the parent, which is -1 for the first row of all.
  for (int at = GetParentRow(row) + 1; at >= 0; at = GetNextSibling(at)) {
    const CHECK_STATE state = GetItemCheckState(at);
    (state == CHECK_STATE_CHECKED ? any_checked : any_other) = true;
    if (state == CHECK_STATE_MIXED || (any_checked && any_other)) return GROUP_STATE_MIXED;
  }
  return any_checked ? GROUP_STATE_ALL : GROUP_STATE_NONE;
}

void CDQCheckListTree::UpdateParentItemState(int row) {
  for (int parent = GetParentRow(row); parent >= 0; parent = GetParentRow(row)) {
    // The numbers of both kinds of state are the same.
    SetColumnBitmap(parent, 0, m_pictures[static_cast<std::size_t>(GetSiblingGroupState(row))]);
    row = parent;
  }
}

int CDQCheckListTree::GetCheckedCount() const {
  int count = 0;
  for (int row = 0; row < GetCount(); ++row) count += GetCheck(row) ? 1 : 0;
  return count;
}

void CDQCheckListTree::SetTopCheckedIndex() {
  for (int row = 0; row < GetCount(); ++row) {
    if (GetCheck(row)) return SetTopRow(row);
  }
}

/// All rows that have a state: what each would become by `SetCheck`, in one go.
void CDQCheckListTree::ShowAll(bool check) {
  const CHECK_STATE done = check ? CHECK_STATE_CHECKED : CHECK_STATE_CLEAR;
  for (int row = 0; row < GetCount(); ++row) {
    const CHECK_STATE state = GetItemCheckState(row);
    if (state == CHECK_STATE_UNKNOWN || (state == done && !m_bBoldChecked)) continue;
    ShowState(row, check);
  }
}

void CDQCheckListTree::SelectAll(bool /*first*/, bool /*second*/) {
  if (!m_bSingleCheck) ShowAll(true);
}

void CDQCheckListTree::UnselectAll() { ShowAll(false); }

int CDQCheckListTree::GetSelectedItems(CUIntArray& rows, int /*flags*/) {
  rows.RemoveAll();
  for (int row = 0; row < GetCount(); ++row) {
    if (GetCheck(row)) rows.Add(static_cast<UINT>(row));
  }
  return rows.GetSize();
}

bool CDQCheckListTree::IsItemLeaf(int row) const {
  return Remark("leaf", HasRow(row) && !HasChildren(row), " ");
}

bool CDQCheckListTree::IsItemParent(int row) const {
  return Remark("parent", HasChildren(row), " ");
}

bool CDQCheckListTree::IsItemRoot(int row) const {
  return Remark("root", HasRow(row) && GetParentRow(row) < 0, "\n");
}

// ---- What a person does

bool CDQCheckListTree::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      ReflectedEntry<&CDQCheckListTree::OnLButtonDownCheck>(kTreePictureDown),
      ReflectedEntry<&CDQCheckListTree::OnLButtonDownText>(kTreeTextDown),
  };
  return CallEntry(kEntries, *this, key, arguments) || CDQTree::CallMapped(key, arguments);
}

/// Tells the parent, unless whoever looks at messages first takes the press.
void CDQCheckListTree::TellToggled() {
  const CPoint& point = GetPressPoint();
  MSG press{GetSafeHwnd(), WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(point.x, point.y)};
  const Watched self(*this);
  if (PreTranslateMessage(&press) == 0 && self.IsThere()) NotifyParent(kCheckListToggled);
}

BOOL CDQCheckListTree::OnLButtonDownCheck() {
  const int row = GetCaret();
  if (GetItemCheckState(row) != CHECK_STATE_UNKNOWN) UpdateItemCheckbox(row);
  TellToggled();
  return 0;
}

BOOL CDQCheckListTree::OnLButtonDownText() { return m_bToggleByText ? OnLButtonDownCheck() : 0; }

LRESULT CDQCheckListTree::OnKeyDown(WPARAM key, LPARAM lparam) {
  if (key != VK_SPACE) return CDQTree::OnKeyDown(key, lparam);
  NotifyParent(kCheckListSpace);
  return 0;
}

}  // namespace dq
