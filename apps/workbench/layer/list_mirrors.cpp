#include "apps/workbench/layer/list_mirrors.h"

#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/tab_mirror.h"
#include "apps/workbench/layer/text.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/controls/list_box.h"
#include "dqlib/framework/controls/sft_tabs.h"

namespace workbench {

using dq::CCheckListBox;
using dq::CListBox;
using dq::CSftTabs;
using dq::CWnd;
using dq::WindowChange;

// ---- What all have in common

wxWindow* RowMirror::DoMake(wxWindow* parent) {
  const auto act = [this](void (RowMirror::*done)(int)) {
    return [this, done](int row) { Post([this, done, row](CWnd&) { (this->*done)(row); }); };
  };
  auto* const rows = new RowWindow(parent, *this,
                                   {.hit = act(&RowMirror::Hit),
                                    .mark = act(&RowMirror::HitMark),
                                    .double_hit = act(&RowMirror::HitTwice),
                                    .scrolled = act(&RowMirror::Scrolled)});
  FrameScrolled(*rows);
  return rows;
}

void RowMirror::ShowContent(const Changes& changes) {
  rows().ShowRows();
  if (changes.Has(WindowChange::kSelection, WindowChange::kRowsInserted,
                  WindowChange::kRowsChanged)) {
    rows().SetCaret(CurrentRow());
  }
}

bool RowMirror::TakeKey(const KeyStroke& stroke) {
  if (const auto row = rows().RowOfKey(stroke, rows().caret())) {
    if (*row < Count()) {
      rows().SetCaret(*row);
      GoTo(*row);
    }
    return true;
  }
  const bool types = !stroke.character.empty() && !stroke.modifiers.alt &&
                     !stroke.modifiers.control && stroke.key != dq::VK_SPACE;
  const int found = types ? FindRow(rows().caret(), stroke.character) : -1;
  if (found < 0) return false;
  rows().SetCaret(found);
  GoTo(found);
  return true;
}

void RowMirror::Trace(TraceLine& line) const {
  line.Add("rows", static_cast<long long>(Count()));
  line.Add("first", static_cast<long long>(rows().first()));
  line.Add("row_height", static_cast<long long>(rows().row_height()));
}

// ---- List boxes

int ListMirror::Count() const {
  const auto* const list = As<CListBox>();
  return list == nullptr ? 0 : list->GetCount();
}

wxString ListMirror::Text(int row) const { return ToNative(As<CListBox>()->GetText(row).View()); }

bool ListMirror::IsSelected(int row) const { return As<CListBox>()->GetSel(row) == 1; }

bool ListMirror::IsEnabled(int row) const {
  const auto* const marks = As<CCheckListBox>();
  return marks == nullptr || marks->IsEnabled(row);
}

int ListMirror::Mark(int row) const {
  const auto* const marks = As<CCheckListBox>();
  return marks == nullptr ? kNoMark : marks->GetCheck(row);
}

int ListMirror::CurrentRow() const {
  const auto* const list = As<CListBox>();
  return list == nullptr ? -1 : list->GetCurSel();
}

void ListMirror::ShowContent(const Changes& changes) {
  RowMirror::ShowContent(changes);
  const auto* const list = As<CListBox>();
  if (list != nullptr && changes.Has(WindowChange::kContent)) rows().SetFirst(list->GetTopIndex());
}

void ListMirror::GoTo(int row) {
  auto* const list = As<CListBox>();
  // With multiple selection going isn't choosing.
  if (list != nullptr && !list->IsMultiple()) list->Choose(row);
}

void ListMirror::Hit(int row) {
  if (auto* const list = As<CListBox>()) list->Choose(row);
}

void ListMirror::HitMark(int row) {
  GoTo(row);
  if (auto* const marks = As<CCheckListBox>()) marks->Toggle(row);
}

void ListMirror::HitTwice(int) {
  if (auto* const list = As<CListBox>()) list->Press();
}

void ListMirror::Scrolled(int first) {
  if (auto* const list = As<CListBox>()) list->SetTopIndex(first);
}

int ListMirror::FindRow(int after, const std::string& begin) const {
  const auto* const list = As<CListBox>();
  return list == nullptr ? -1 : list->FindString(after, begin.c_str());
}

bool ListMirror::TakeKey(const KeyStroke& stroke) {
  const int row = rows().caret();
  if (stroke.key != dq::VK_SPACE || row < 0) return RowMirror::TakeKey(stroke);
  if (As<CCheckListBox>() != nullptr) {
    HitMark(row);
  } else {
    Hit(row);
  }
  return true;
}

// ---- Tabs

bool TabListMirror::Serves(const CWnd& window) const {
  return !DrawsItsTabs(window) && window.GetPlace().Height() > window.GetPlace().Width();
}

int TabListMirror::Count() const {
  const auto* const tabs = As<CSftTabs>();
  return tabs == nullptr ? 0 : tabs->GetTabCount();
}

wxString TabListMirror::Text(int row) const {
  return ToNative(As<CSftTabs>()->GetTabLabel(row).View());
}

bool TabListMirror::IsSelected(int row) const { return row == CurrentRow(); }

bool TabListMirror::IsEnabled(int row) const { return As<CSftTabs>()->IsTabEnabled(row); }

int TabListMirror::CurrentRow() const {
  const auto* const tabs = As<CSftTabs>();
  return tabs == nullptr ? -1 : tabs->GetCurSel();
}

void TabListMirror::GoTo(int row) {
  // The parent may refuse; then the caret goes back.
  layer().Mark(window(), WindowChange::kSelection);
  if (auto* const tabs = As<CSftTabs>()) tabs->Choose(row);
}

}  // namespace workbench
