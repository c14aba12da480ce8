// Lists and trees: columns, rows, levels and looks.

#include "dqlib/framework/controls/sft_tree.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "dqlib/framework/base/text.h"
#include "dqlib/framework/controls/tree_columns.h"
#include "dqlib/framework/controls/tree_rows.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {
namespace {

using detail::OrEmpty;

/// Where a row is that was at an index before an insertion or a deletion, -1 for none.
int Inserted(int row, int index, int count) { return row >= index ? row + count : row; }
int Erased(int row, int first, int count) {
  return row < first ? row : row < first + count ? -1 : row - count;
}

}  // namespace

IMPLEMENT_DYNCREATE(CSftTree, CWnd)

CSftTree::CSftTree()
    : rows_(std::make_unique<detail::TreeRows>()),
      columns_(std::make_unique<detail::TreeColumns>()) {}

CSftTree::~CSftTree() {
  EndInDestructor();
  detail::Guarded([this] { TellErased(0, GetCount()); });
}

bool CSftTree::Create(CWnd* parent, const CRect& place, int id) {
  return CreateWnd({.class_name = "SftTree", .place = place, .parent = parent, .id = id});
}

void CSftTree::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  auto* const tree = DYNAMIC_DOWNCAST(CSftTree, &former);
  if (tree == nullptr || rows_->GetCount() > 0 || columns_->GetCount() > 0) return;
  std::swap(rows_, tree->rows_);
  std::swap(columns_, tree->columns_);
  std::swap(delete_callback_, tree->delete_callback_);
  std::swap(caret_, tree->caret_);
  std::swap(top_, tree->top_);
  multi_selection_ = tree->multi_selection_;
  header_shown_ = tree->header_shown_;
}

// ---- Columns

int CSftTree::AddColumn(const char* title, int width, UINT format) {
  columns_->Add({CString(OrEmpty(title)), std::max(0, width), format, {}});
  LayoutChanged();
  return columns_->GetCount() - 1;
}

int CSftTree::GetColumnCount() const { return columns_->GetCount(); }

int CSftTree::GetCellCount() const { return std::max(1, columns_->GetCount()); }

CString CSftTree::GetColumnTitle(int column) const {
  return columns_->Has(column) ? (*columns_)[column].title : CString();
}

void CSftTree::SetColumnTitle(int column, const char* title) {
  if (!columns_->Has(column)) return;
  (*columns_)[column].title = OrEmpty(title);
  InvalidateHeader();
}

UINT CSftTree::GetColumnFormat(int column) const {
  return columns_->Has(column) ? (*columns_)[column].format : 0;
}

void CSftTree::SetColumnFormat(int column, UINT format) {
  if (!columns_->Has(column)) return;
  (*columns_)[column].format = format;
  Redraw();
}

int CSftTree::GetColumnWidth(int column) const {
  return columns_->Has(column) ? (*columns_)[column].width : 0;
}

void CSftTree::SetColumnWidth(int column, int width) {
  if (!columns_->Has(column)) return;
  (*columns_)[column].widths.reset();
  ChangeWidth(column, width);
}

void CSftTree::FitColumn(int column) {
  if (!columns_->Has(column)) return;
  detail::TreeColumn& fitted = (*columns_)[column];
  if (!fitted.widths) {
    std::unordered_map<int, int> counts;
    for (int row = 0; row < GetCount(); ++row) ++counts[GetNeededWidth(row, column)];
    detail::CellWidths widths(GetCount());
    for (const auto& [width, cells] : counts) widths.Add(width, cells);
    columns_->KeepWidths(column, std::move(widths));
  }
  ChangeWidth(column, std::max(GetTitleWidth(column), fitted.widths->GetWidest()));
}

void CSftTree::ShowHeader(bool show) {
  if (header_shown_ == show) return;
  header_shown_ = show;
  LayoutChanged();
}

void CSftTree::ResetHeader() {
  if (std::exchange(pressed_title_, -1) >= 0) InvalidateHeader();
}

void CSftTree::SetSortMark(int column, bool ascending) {
  sort_mark_ = columns_->Has(column) ? column : -1;
  sort_mark_ascending_ = ascending;
  InvalidateHeader();
}

// ---- Rows

int CSftTree::GetCount() const { return rows_->GetCount(); }

int CSftTree::AddRow(const char* text, int level) { return InsertRow(-1, text, level); }

int CSftTree::AddRow(std::span<const char* const> texts, int level) {
  return InsertRow(-1, texts, level);
}

int CSftTree::InsertRow(int index, const char* text, int level) {
  return InsertRow(index, std::span(&text, 1), level);
}

int CSftTree::InsertRow(int index, std::span<const char* const> texts, int level) {
  if (index == -1) index = GetCount();
  if (index < 0 || index > GetCount()) return -1;
  const auto cells = static_cast<std::size_t>(GetCellCount());
  const int end = rows_->Insert(index, texts.first(std::min(texts.size(), cells)), level);
  const bool cut = end > index + 1;
  MoveMarks([=](int mark) { return Inserted(mark, index, 1); });
  // One that comes in where the first row in sight is becomes that itself.
  const bool is_above = index < top_;
  if (is_above) ++top_;
  if (columns_->HasWidths()) {
    if (cut) columns_->ForgetWidths();
    CountWidths(index, index + 1, true);
  }
  Tell(WindowChange::kRowsInserted, {index, 1});
  if (cut) Tell(WindowChange::kRowsChanged, {index + 1, end - index - 1});
  if (m_hWnd == nullptr) return index;
  if (is_above && !cut) {
    UpdateScroll(top_, left_);
  } else {
    const int linked = rows_->GetPrevLinked(index);
    RowsChanged(linked >= 0 ? linked : index);
  }
  return index;
}

bool CSftTree::DeleteRow(int row) {
  if (!rows_->Has(row)) return false;
  EraseRows(row, rows_->GetEnd(row) - row);
  return true;
}

void CSftTree::ResetContent() {
  if (GetCount() > 0) EraseRows(0, GetCount());
}

void CSftTree::EraseRows(int first, int count) {
  detail::TellNewRows();
  TellErased(first, count);
  const bool all = count == GetCount();
  if (all) {
    columns_->ForgetWidths();
  } else if (columns_->HasWidths()) {
    CountWidths(first, first + count, false);
  }
  const int linked = rows_->GetPrevLinked(first);
  if (all) {
    rows_->Clear();
  } else {
    rows_->Erase(first);
  }
  const bool had_caret = caret_ >= first && caret_ < first + count;
  const bool is_above = first + count <= top_;
  MoveMarks([=](int mark) { return Erased(mark, first, count); });
  if (top_ > first) top_ = std::max(first, top_ - count);
  Tell(WindowChange::kRowsRemoved, {first, count});
  if (had_caret) Tell(WindowChange::kSelection);
  if (is_above) {
    UpdateScroll(top_, left_);
  } else {
    RowsChanged(linked >= 0 ? linked : first);
  }
}

void CSftTree::TellErased(int first, int count) {
  if (delete_callback_ == nullptr) return;
  for (int row = first; row < first + count; ++row) delete_callback_(*this, row, GetRowData(row));
}

int CSftTree::MoveRow(int row, int before, int level) {
  if (!rows_->Has(row) || before < 0 || before > GetCount()) return -1;
  const int count = rows_->GetEnd(row) - row;
  const auto [to, end] = rows_->Move(row, before, level);
  if (to < 0) return -1;
  MoveMarks([row, count, place = to](int mark) {
    const int kept = Erased(mark, row, count);
    return kept >= 0 ? Inserted(kept, place, count) : mark < 0 ? mark : mark - row + place;
  });
  top_ = std::min(top_, GetCount() - 1);
  columns_->ForgetWidths();
  const int first = std::min(row, to);
  Tell(WindowChange::kRowsChanged, {first, end - first});
  LayoutChanged();
  return to;
}

const char* CSftTree::CellText(int row, int column) const {
  return HasCell(row, column) ? rows_->Text(row, column) : "";
}

void CSftTree::ForEachText(int column, const std::function<void(const char* text)>& visit) const {
  if (HasCell(0, column)) rows_->ForEachText(column, [&visit](const char* text) { visit(text); });
}

bool CSftTree::SetCellText(int row, int column, const char* text) {
  return ChangeCell(row, column, [&] { return rows_->SetText(row, column, OrEmpty(text)); });
}

std::uintptr_t CSftTree::GetRowData(int row) const {
  return rows_->Has(row) ? (*rows_)[row].GetData() : 0;
}

bool CSftTree::SetRowData(int row, std::uintptr_t data) {
  if (!rows_->Has(row)) return false;
  rows_->SetData(row, data);
  return true;
}

bool CSftTree::HasCell(int row, int column) const {
  return rows_->Has(row) && (column == 0 || columns_->Has(column));
}

template <typename Change>
bool CSftTree::ChangeCell(int row, int column, Change change) {
  if (!HasCell(row, column)) return false;
  const bool is_fitted = columns_->Has(column) && (*columns_)[column].widths.has_value();
  if (is_fitted) CountWidth(row, column, false);
  const bool changed = change();
  if (is_fitted) CountWidth(row, column, true);
  if (!changed) return false;
  Tell(WindowChange::kRowsChanged, {row, 1});
  InvalidateRow(row);
  // A picture that comes or goes leaves another place for the text.
  if (row == followed_row_) OnLayoutChanged();
  return true;
}

void CSftTree::CountWidth(int row, int column, bool add) {
  std::optional<detail::CellWidths>& widths = (*columns_)[column].widths;
  if (!widths) return;
  const int width = GetNeededWidth(row, column);
  if (!(add ? widths->Add(width) : widths->Remove(width))) widths.reset();
}

void CSftTree::CountWidths(int first, int last, bool add) {
  for (int column = 0; column < columns_->GetCount(); ++column) {
    for (int row = first; row < last && (*columns_)[column].widths; ++row) {
      CountWidth(row, column, add);
    }
  }
}

// ---- Levels

int CSftTree::GetLevel(int row) const { return rows_->Has(row) ? (*rows_)[row].level : -1; }

bool CSftTree::SetLevel(int row, int level) {
  if (!rows_->Has(row)) return false;
  const int end = rows_->SetLevel(row, level);
  if (end == row) return true;
  columns_->ForgetWidths();
  Tell(WindowChange::kRowsChanged, {row, end - row});
  LayoutChanged();
  return true;
}

int CSftTree::GetParentRow(int row) const { return rows_->Has(row) ? rows_->GetParent(row) : -1; }

int CSftTree::GetNextSibling(int row) const {
  return rows_->Has(row) ? rows_->GetNextSibling(row) : -1;
}

int CSftTree::GetPrevSibling(int row) const {
  return rows_->Has(row) ? rows_->GetPrevSibling(row) : -1;
}

bool CSftTree::HasChildren(int row) const { return rows_->Has(row) && rows_->HasChildren(row); }

int CSftTree::GetChildCount(int row) const {
  return rows_->Has(row) ? rows_->CountChildren(row) : 0;
}

int CSftTree::GetDescendantCount(int row) const {
  return rows_->Has(row) ? rows_->GetEnd(row) - row - 1 : 0;
}

bool CSftTree::Expand(int row, bool expand, bool deep) {
  if (!rows_->Has(row)) return false;
  if (!rows_->Expand(row, expand, deep)) return true;
  Tell(WindowChange::kRowsChanged, {row, deep ? GetDescendantCount(row) + 1 : 1});
  RowsChanged(row);
  return true;
}

bool CSftTree::IsExpanded(int row) const { return rows_->Has(row) && !(*rows_)[row].collapsed; }

bool CSftTree::IsRowShown(int row) const { return rows_->Has(row) && rows_->IsShown(row); }

int CSftTree::GetShownCount() const { return rows_->CountShown(); }

int CSftTree::GetShownRow(int n) const {
  return n >= 0 && n < GetShownCount() ? rows_->FindShown(n) : -1;
}

int CSftTree::GetShownIndex(int row) const {
  return IsRowShown(row) ? rows_->CountShownBefore(row) : -1;
}

// ---- Order

detail::SiblingGroups CSftTree::GetSiblingGroups() const {
  return detail::SiblingGroups(rows_->GetLevels());
}

void CSftTree::TakeOrder(const std::vector<int>& order) {
  // A comparison that has changed the rows has spoilt its own sort.
  if (order.empty() || order.size() != static_cast<std::size_t>(GetCount())) return;
  const int scrolled = top_ < 0 ? 0 : rows_->CountShownBefore(top_);
  rows_->Permute(order);
  MoveMarks([&order](int row) {
    if (row < 0) return row;
    return static_cast<int>(std::find(order.begin(), order.end(), row) - order.begin());
  });
  if (top_ >= 0) top_ = rows_->FindShown(scrolled);
  Tell(WindowChange::kRowsChanged, {0, GetCount()});
  LayoutChanged();
}

// ---- Looks

HBITMAP CSftTree::GetRowPicture(int row) const {
  return rows_->Has(row) ? rows_->Look(row).picture : nullptr;
}

bool CSftTree::SetRowPicture(int row, HBITMAP picture) {
  return ChangeCell(row, 0, [&] {
    detail::RowLook look = rows_->Look(row);
    look.picture = picture;
    rows_->SetLook(row, look);
    return true;
  });
}

CellStyle CSftTree::GetCellStyle(int row, int column) const {
  const CellStyle* const style = HasCell(row, column) ? rows_->Look(row).Find(column) : nullptr;
  return style == nullptr ? CellStyle{} : *style;
}

bool CSftTree::SetCellStyle(int row, int column, const CellStyle& style) {
  return ChangeCell(row, column, [&] {
    detail::RowLook look = rows_->Look(row);
    look.Set(column, style);
    rows_->SetLook(row, look);
    return true;
  });
}

void CSftTree::SetDefaultPictures(HBITMAP collapsed, HBITMAP expanded, HBITMAP leaf) {
  default_pictures_ = {collapsed, expanded, leaf};
  columns_->ForgetWidths();
  LayoutChanged();
}

void CSftTree::SetColors(COLORREF text, COLORREF background, COLORREF selected_text,
                         COLORREF selected_background) {
  colors_ = {text, background, selected_text, selected_background};
  Redraw();
}

void CSftTree::ShowTreeLines(bool show) {
  lines_shown_ = show;
  columns_->ForgetWidths();
  LayoutChanged();
}

void CSftTree::ShowButtons(bool show) {
  buttons_shown_ = show;
  columns_->ForgetWidths();
  LayoutChanged();
}

void CSftTree::SetDropTarget(int row) {
  const int former = std::exchange(drop_target_, rows_->Has(row) ? row : -1);
  if (former == drop_target_) return;
  InvalidateRow(former);
  InvalidateRow(drop_target_);
}

}  // namespace dq
