// Lists and trees: where everything lies, and scrolling.

#include <algorithm>
#include <utility>

#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/controls/tree_columns.h"
#include "dqlib/framework/controls/tree_rows.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {
namespace {

/// Between the parts of a cell.
constexpr LONG kGap = 2;
/// What the sort mark takes of a title.
constexpr LONG kMarkWidth = 14;
/// Of rows' pictures as they usually are.
constexpr LONG kPictureHeight = 16;
/// How far from a divider it can be taken.
constexpr int kDividerReach = 4;
/// Of a horizontal scroll by a line.
constexpr int kLineScroll = 16;

LONG WidthOf(HBITMAP picture) { return picture == nullptr ? 0 : picture->size.cx + kGap; }

/// A coordinate that may be far off the screen.
LONG Coordinate(std::int64_t at) {
  constexpr std::int64_t kFar = 1 << 30;
  return static_cast<LONG>(std::clamp(at, -kFar, kFar));
}

}  // namespace

// ---- Sizes

int CSftTree::GetRowHeight() const {
  if (row_height_ == 0) {
    const LONG text = GetTextExtent(*this, "Xg").cy;
    row_height_ = std::max<int>(text, kPictureHeight) + 2;
  }
  return row_height_;
}

int CSftTree::GetHeaderHeight() const {
  return header_shown_ && columns_->GetCount() > 0 ? GetRowHeight() + 4 : 0;
}

/// What the titles leave for rows.
CRect CSftTree::GetBody() const {
  CRect body = GetClientRect();
  body.top = GetHeaderHeight();
  return body;
}

int CSftTree::GetPageRows() const {
  return std::max(1, (GetClientRect().bottom - GetHeaderHeight()) / GetRowHeight());
}

int CSftTree::GetTotalWidth() const {
  return columns_->GetCount() > 0 ? columns_->GetLeft(columns_->GetCount())
                                  : std::max<int>(1, GetClientRect().right);
}

int CSftTree::GetIndent(int row) const {
  const int own = lines_shown_ || buttons_shown_ ? 1 : 0;
  return static_cast<int>(
      Coordinate((std::int64_t{(*rows_)[row].level} + own) * std::int64_t{kLevelWidth}));
}

HBITMAP CSftTree::GetShownPicture(int row) const {
  const HBITMAP own = rows_->Look(row).picture;
  if (own != nullptr) return own;
  if (!rows_->HasChildren(row)) return default_pictures_[kLeafPicture];
  return default_pictures_[(*rows_)[row].collapsed ? kCollapsedPicture : kExpandedPicture];
}

int CSftTree::GetPictureWidth(int row) const {
  const HBITMAP own = rows_->Look(row).picture;
  if (own != nullptr) return WidthOf(own);
  // The same for all kinds of rows, so that texts don't move when a branch is expanded.
  LONG width = 0;
  for (const HBITMAP picture : default_pictures_) width = std::max(width, WidthOf(picture));
  return width;
}

int CSftTree::GetNeededWidth(int row, int column) const {
  const CellStyle* const style = rows_->Look(row).Find(column);
  const std::string_view text = rows_->Text(row, column);
  std::int64_t width = 2 * kTextMargin;
  if (style != nullptr) width += WidthOf(style->picture);
  if (column == 0) width += std::int64_t{GetIndent(row)} + GetPictureWidth(row);
  if (!text.empty()) {
    const bool has_font = style != nullptr && style->font != nullptr;
    width += (has_font ? GetTextExtent(style->font, text) : GetTextExtent(*this, text)).cx;
  }
  return Coordinate(width);
}

int CSftTree::GetTitleWidth(int column) const {
  if (!header_shown_) return 0;
  const LONG mark = column == sort_mark_ ? kMarkWidth : 0;
  return GetTextExtent(*this, (*columns_)[column].title.View()).cx + 2 * kTitleMargin + mark;
}

CRect CSftTree::GetTitleRect(int column) const {
  const LONG left = columns_->GetLeft(column) - left_;
  return {left, 0, left + (*columns_)[column].width, GetHeaderHeight()};
}

/// A row that is shown, wherever it lies.
CRect CSftTree::PlaceRow(int row) const {
  const std::int64_t n = rows_->CountShownBefore(row);
  const std::int64_t top = (n - rows_->CountShownBefore(GetTopRow())) * GetRowHeight();
  const LONG at = Coordinate(top + GetHeaderHeight());
  return {0, at, GetClientRect().right, at + GetRowHeight()};
}

CSftTree::CellParts CSftTree::PlaceCell(int row, int column, const CRect& row_place) const {
  const bool has_columns = columns_->GetCount() > 0;
  const LONG left = (has_columns ? columns_->GetLeft(column) : 0) - left_;
  const LONG width = has_columns ? (*columns_)[column].width : GetTotalWidth();
  CellParts parts;
  parts.cell = {left, row_place.top, left + width, row_place.bottom};
  LONG at = left;
  const auto take = [&](LONG part) {
    const LONG from = std::exchange(at, std::min(left + width, at + part));
    return CRect{from, row_place.top, at, row_place.bottom};
  };
  if (column == 0) {
    const LONG indent = GetIndent(row);
    const LONG button = buttons_shown_ || lines_shown_ ? kLevelWidth : 0;
    take(indent - button);
    parts.button = take(button);
    parts.picture = take(GetPictureWidth(row));
  }
  const CellStyle* const style = rows_->Look(row).Find(column);
  parts.cell_picture = take(style == nullptr ? 0 : WidthOf(style->picture));
  parts.inside = {at, row_place.top, left + width, row_place.bottom};
  return parts;
}

// ---- What lies where

bool CSftTree::GetCellRect(int row, int column, CRect* rect, bool inside) const {
  if (rect == nullptr || !IsRowShown(row)) return false;
  if (column != -1 && !HasCell(row, column)) return false;
  const CRect place = PlaceRow(row);
  CRect cell{-left_, place.top, -left_ + GetTotalWidth(), place.bottom};
  if (column != -1) {
    const CellParts parts = PlaceCell(row, column, place);
    cell = inside ? parts.inside : parts.cell;
  }
  if (Intersect(cell, GetBody()).IsRectEmpty()) return false;
  *rect = cell;
  return true;
}

TreeHit CSftTree::HitTest(const CPoint& point) const {
  TreeHit hit;
  const CRect client = GetClientRect();
  if (!client.PtInRect(point)) return hit;
  const int x = point.x + left_;
  hit.column = columns_->GetCount() > 0 ? columns_->FindAt(x) : 0;
  if (point.y < GetHeaderHeight()) {
    const int divider = columns_->FindEdge(x, kDividerReach);
    hit.part = divider >= 0 ? TreePart::kHeaderDivider : TreePart::kHeader;
    if (divider >= 0) hit.column = divider;
    return hit;
  }
  hit.row = RowAt(point.y);
  if (hit.row < 0) {
    hit.column = -1;
    return hit;
  }
  if (hit.column < 0) return hit;
  const CellParts parts = PlaceCell(hit.row, hit.column, PlaceRow(hit.row));
  hit.part = TreePart::kCell;
  if (parts.button.PtInRect(point) && buttons_shown_ && rows_->HasChildren(hit.row)) {
    hit.part = TreePart::kButton;
  } else if (parts.picture.PtInRect(point)) {
    hit.part = TreePart::kPicture;
  } else if (hit.column == 0 && point.x < parts.picture.left) {
    hit.part = TreePart::kIndent;
  }
  return hit;
}

/// The row at a height of the client area, below the titles; -1 below the last one.
int CSftTree::RowAt(LONG y) const {
  if (GetCount() == 0) return -1;
  return GetShownRow(rows_->CountShownBefore(GetTopRow()) +
                     (y - GetHeaderHeight()) / GetRowHeight());
}

// ---- Scrolling

int CSftTree::GetTopRow() const {
  if (GetCount() == 0) return -1;
  return rows_->GetShownAncestor(std::clamp(top_, 0, GetCount() - 1));
}

void CSftTree::SetTopRow(int row) {
  if (!rows_->Has(row)) return;
  const int former = std::exchange(top_, row);
  UpdateScroll(former, left_);
}

void CSftTree::SetHorizontalPos(int left) {
  const int former = std::exchange(left_, left);
  UpdateScroll(top_, former);
}

void CSftTree::EnsureRowVisible(int row) {
  if (!rows_->Has(row)) return;
  const detail::Watched self(*this);
  // From the outermost one down.
  while (!rows_->IsShown(row)) {
    Expand(rows_->GetShownAncestor(row), true);
    if (!self.IsThere() || !rows_->Has(row)) return;
  }
  const int n = rows_->CountShownBefore(row);
  const int top = rows_->CountShownBefore(GetTopRow());
  if (n < top) {
    SetTopRow(row);
  } else if (n >= top + GetPageRows()) {
    SetTopRow(rows_->FindShown(n - GetPageRows() + 1));
  }
}

void CSftTree::EnsureCellVisible(int row, int column) {
  if (!HasCell(row, column)) return;
  const detail::Watched self(*this);
  EnsureRowVisible(row);
  if (!self.IsThere() || !columns_->Has(column)) return;
  const int left = columns_->GetLeft(column);
  const int right = left + (*columns_)[column].width;
  const int width = GetClientRect().right;
  if (left < left_ || right - left >= width) {
    SetHorizontalPos(left);
  } else if (right > left_ + width) {
    SetHorizontalPos(right - width);
  }
}

/// Keeps what is in sight within the rows and columns; the former row at the top and position say
/// what is on the screen.
void CSftTree::UpdateScroll(int former_top, int former_left) {
  if (!redraw_ || m_hWnd == nullptr) return;
  const int page = GetPageRows();
  const int shown = GetShownCount();
  left_ = std::clamp(left_, 0, std::max<int>(0, GetTotalWidth() - GetClientRect().right));
  int first = 0;
  top_ = GetTopRow();
  if (top_ >= 0) {
    first = std::clamp(rows_->CountShownBefore(top_), 0, std::max(0, shown - page));
    top_ = rows_->FindShown(first);
  }
  if (top_ != former_top || left_ != former_left) Redraw();
  const detail::Watched self(*this);
  // A bar that comes or goes makes another client size, and with that this is called again.
  SetScrollInfo(SB_VERT, {0, std::max(0, shown - 1), page, first});
  if (!self.IsThere()) return;
  const int width = std::max<int>(0, GetClientRect().right);
  SetScrollInfo(SB_HORZ, {0, std::max(0, GetTotalWidth() - 1), width, left_});
  if (self.IsThere()) OnLayoutChanged();
}

void CSftTree::ScrollBy(ScrollBar bar, WPARAM wparam) {
  const SCROLLINFO info = GetScrollInfo(bar);
  const int line = bar == SB_VERT ? 1 : kLineScroll;
  const int page = std::max(1, info.nPage - (bar == SB_VERT ? 1 : kLineScroll));
  const int to = detail::ScrolledPosition(info, wparam, line, page);
  if (to != info.nPos) ScrollTo(bar, to);
}

void CSftTree::ScrollTo(ScrollBar bar, int position) {
  if (bar == SB_HORZ) {
    SetHorizontalPos(position);
  } else if (GetShownCount() > 0) {
    SetTopRow(rows_->FindShown(std::clamp(position, 0, GetShownCount() - 1)));
  }
}

// ---- Drawing anew

void CSftTree::Redraw() {
  if (redraw_) Invalidate();
}

void CSftTree::SetRedraw(bool redraw) {
  if (redraw_ == redraw) return;
  redraw_ = redraw;
  if (redraw) LayoutChanged();
}

void CSftTree::InvalidateHeader() {
  if (!redraw_ || m_hWnd == nullptr) return;
  CRect header = GetClientRect();
  header.bottom = GetHeaderHeight();
  InvalidateRect(header);
}

void CSftTree::InvalidateRows(int first, int last) {
  if (!redraw_ || m_hWnd == nullptr || !rows_->Has(first) || !rows_->Has(last)) return;
  const CRect body = GetBody();
  // Of rows that are hidden those after the first one that isn't count.
  const int before = rows_->CountShownBefore(first);
  const int behind = rows_->CountShownBefore(last) + (rows_->IsShown(last) ? 1 : 0);
  const std::int64_t top = rows_->CountShownBefore(GetTopRow());
  const auto y = [&](int n) { return Coordinate(body.top + (n - top) * GetRowHeight()); };
  const CRect rows = Intersect({0, y(before), body.right, y(behind)}, body);
  if (!rows.IsRectEmpty()) InvalidateRect(rows);
}

void CSftTree::InvalidateFrom(int row) {
  if (!redraw_ || m_hWnd == nullptr) return;
  CRect body = GetBody();
  if (rows_->Has(row)) {
    const int shown = rows_->GetShownAncestor(row);
    body.top = std::max(body.top, PlaceRow(shown).top);
  } else if (GetCount() > 0) {
    body.top = std::max(body.top, PlaceRow(GetShownRow(GetShownCount() - 1)).bottom);
  }
  if (!body.IsRectEmpty()) InvalidateRect(body);
}

void CSftTree::RowsChanged(int first) {
  const detail::Watched self(*this);
  UpdateScroll(top_, left_);
  if (self.IsThere()) InvalidateFrom(first);
}

void CSftTree::LayoutChanged() {
  Redraw();
  UpdateScroll(top_, left_);
}

void CSftTree::ChangeWidth(int column, int width) {
  width = std::clamp(width, 0, detail::TreeColumns::kWidest);
  if (std::exchange((*columns_)[column].width, width) != width) LayoutChanged();
}

}  // namespace dq
