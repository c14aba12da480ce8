// Lists and trees: painting.

#include <algorithm>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/vector_picture.h"
#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/controls/tree_columns.h"
#include "dqlib/framework/controls/tree_rows.h"

namespace dq {
namespace {

/// Of a button's box, across.
constexpr LONG kButtonSize = 9;
/// Of a sort mark, from its base to its tip.
constexpr LONG kMarkHeight = 4;
/// Of a longer text the rest is never seen: no screen is as wide.
constexpr std::size_t kMostBytes = 1 << 14;

std::string_view SeenPart(std::string_view text) {
  return text.size() <= kMostBytes ? text
                                   : text.substr(0, multi_byte::CharacterStart(text, kMostBytes));
}

UINT AlignmentOf(UINT format) {
  if ((format & kColumnNumber) != 0) return DT_RIGHT;
  return (format & kColumnCentered) != 0 ? DT_CENTER : DT_LEFT;
}

CRect WithMargin(CRect rect, LONG margin) {
  rect.left += margin;
  rect.right -= margin;
  return rect;
}

COLORREF Chosen(COLORREF own, int usual) {
  return own == CellStyle::kNoColor ? GetSysColor(usual) : own;
}

void DrawPicture(CDC& dc, const CRect& place, HBITMAP picture) {
  if (picture == nullptr || place.IsRectEmpty()) return;
  const LONG top = place.top + (place.Height() - picture->size.cy) / 2;
  dc.DrawBitmap(CPoint{place.left, top}, picture, {.mask = kPictureMask});
}

/// A triangle that points up or down.
void DrawSortMark(CDC& dc, LONG middle, LONG top, bool up) {
  for (LONG line = 0; line < kMarkHeight; ++line) {
    const LONG half = up ? line : kMarkHeight - 1 - line;
    dc.FillSolidRect({middle - half, top + line, middle + half + 1, top + line + 1},
                     GetSysColor(COLOR_BTNSHADOW));
  }
}

void DrawButton(CDC& dc, const CRect& place, bool collapsed, COLORREF background) {
  const LONG left = place.left + (place.Width() - kButtonSize) / 2;
  const LONG top = place.top + (place.Height() - kButtonSize) / 2;
  const CRect box{left, top, left + kButtonSize, top + kButtonSize};
  dc.FillSolidRect(box, background);
  dc.Draw3dRect(box, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNSHADOW));
  const COLORREF sign = GetSysColor(COLOR_WINDOWTEXT);
  const LONG middle = kButtonSize / 2;
  dc.FillSolidRect({left + 2, top + middle, left + kButtonSize - 2, top + middle + 1}, sign);
  if (!collapsed) return;
  dc.FillSolidRect({left + middle, top + 2, left + middle + 1, top + kButtonSize - 2}, sign);
}

}  // namespace

/// What a row is painted in.
struct CSftTree::RowColors {
  COLORREF text;
  COLORREF background;
  /// Cells' own colours don't count.
  bool marked;
};

void CSftTree::OnPaint(CDC& dc) {
  const CRect body = GetBody();
  dc.SetBkMode(TRANSPARENT);
  dc.SelectObject(GetFont());
  if (body.top > 0 && dc.GetClipBox().top < body.top) PaintHeader(dc);
  const int saved = dc.SaveDC();
  dc.IntersectClipRect(body);
  const CRect clip = Intersect(dc.GetClipBox(), body);
  if (!clip.IsRectEmpty()) {
    dc.FillSolidRect(clip, GetBackground());
    PaintRows(dc, clip);
  }
  dc.RestoreDC(saved);
}

COLORREF CSftTree::GetBackground() const {
  return IsWindowEnabled() ? Chosen(colors_.background, COLOR_WINDOW) : GetSysColor(COLOR_BTNFACE);
}

void CSftTree::PaintHeader(CDC& dc) {
  const CRect client = GetClientRect();
  CRect rest{0, 0, client.right, GetHeaderHeight()};
  dc.SetTextColor(GetSysColor(IsWindowEnabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  for (int column = 0; column < columns_->GetCount(); ++column) {
    const CRect title = GetTitleRect(column);
    rest.left = std::max(rest.left, title.right);
    if (!Intersect(title, dc.GetClipBox()).IsRectEmpty()) PaintTitle(dc, column, title);
  }
  if (!rest.IsRectEmpty()) dc.DrawEdge(rest, BDR_RAISEDINNER, BF_RECT | BF_MIDDLE);
}

void CSftTree::PaintTitle(CDC& dc, int column, const CRect& title) {
  const bool pressed = column == pressed_title_;
  dc.DrawEdge(title, pressed ? BDR_SUNKENINNER : BDR_RAISEDINNER, BF_RECT | BF_MIDDLE);
  const detail::TreeColumn& shown = (*columns_)[column];
  CRect inside = WithMargin(title, kTitleMargin);
  if (pressed) inside.OffsetRect(1, 1);
  if (column == sort_mark_) {
    const LONG middle = inside.right - kMarkHeight;
    DrawSortMark(dc, middle, inside.top + (inside.Height() - kMarkHeight) / 2,
                 sort_mark_ascending_);
    inside.right = middle - 2 * kMarkHeight;
  }
  dc.DrawText(
      SeenPart(shown.title.View()), inside,
      DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS | AlignmentOf(shown.format));
}

void CSftTree::PaintRows(CDC& dc, const CRect& clip) {
  if (GetCount() == 0) return;
  const int height = GetRowHeight();
  const int top = rows_->CountShownBefore(GetTopRow());
  const int first = top + (clip.top - GetHeaderHeight()) / height;
  const int last =
      std::min(GetShownCount() - 1, top + (clip.bottom - 1 - GetHeaderHeight()) / height);
  for (int n = first; n <= last; ++n) {
    const LONG y = GetHeaderHeight() + (n - top) * height;
    PaintRow(dc, rows_->FindShown(n), {0, y, GetClientRect().right, y + height});
  }
}

CSftTree::RowColors CSftTree::GetRowColors(int row) const {
  const bool has_focus = GetFocus() == this;
  if (!IsWindowEnabled()) return {GetSysColor(COLOR_GRAYTEXT), GetSysColor(COLOR_BTNFACE), true};
  if (row == drop_target_ || (IsSelected(row) && has_focus)) {
    return {Chosen(colors_.selected_text, COLOR_HIGHLIGHTTEXT),
            Chosen(colors_.selected_background, COLOR_HIGHLIGHT), true};
  }
  if (IsSelected(row)) return {GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_BTNFACE), true};
  return {Chosen(colors_.text, COLOR_WINDOWTEXT), GetBackground(), false};
}

void CSftTree::PaintRow(CDC& dc, int row, const CRect& place) {
  const RowColors colors = GetRowColors(row);
  const CellParts first = PlaceCell(row, 0, place);
  const CRect marked{first.cell_picture.left, place.top, GetTotalWidth() - left_, place.bottom};
  if (colors.marked) dc.FillSolidRect(marked, colors.background);
  for (int column = 0; column < GetCellCount(); ++column) {
    const CellParts parts = column == 0 ? first : PlaceCell(row, column, place);
    if (Intersect(parts.cell, dc.GetClipBox()).IsRectEmpty()) continue;
    if (column == 0) PaintBranch(dc, row, parts);
    PaintCell(dc, row, column, parts, colors);
  }
  if (row == caret_ && GetFocus() == this) dc.DrawFocusRect(marked);
}

/// What stands before the text of the first column: lines, button and picture.
void CSftTree::PaintBranch(CDC& dc, int row, const CellParts& parts) {
  const int saved = dc.SaveDC();
  dc.IntersectClipRect(parts.cell);
  const bool has_children = rows_->HasChildren(row);
  if (lines_shown_) PaintLines(dc, row, parts);
  if (buttons_shown_ && has_children && !parts.button.IsRectEmpty()) {
    DrawButton(dc, parts.button, (*rows_)[row].collapsed, GetBackground());
  }
  DrawPicture(dc, parts.picture, GetShownPicture(row));
  dc.RestoreDC(saved);
}

void CSftTree::PaintLines(CDC& dc, int row, const CellParts& parts) {
  CPen pen;
  pen.CreatePen(PS_DOT, 1, GetSysColor(COLOR_BTNSHADOW));
  CPen* const former = dc.SelectObject(&pen);
  const auto draw = [&dc](LONG x, LONG y, LONG to_x, LONG to_y) {
    dc.MoveTo(x, y);
    dc.LineTo(to_x, to_y);
  };
  const CRect clip = Intersect(dc.GetClipBox(), parts.cell);
  const LONG middle = (parts.cell.top + parts.cell.bottom) / 2;
  const int own = (*rows_)[row].level;
  const std::int64_t left = parts.cell.left;
  // Levels whose lines can't be seen cost nothing.
  const auto first = std::max<std::int64_t>(0, (clip.left - left) / kLevelWidth);
  const auto last = std::min<std::int64_t>(own, (clip.right - left) / kLevelWidth);
  for (std::int64_t level = first; level <= last; ++level) {
    const LONG x = static_cast<LONG>(left + level * kLevelWidth + kLevelWidth / 2);
    const bool goes_on = rows_->HasNextAt(row, static_cast<int>(level));
    if (level == own) {
      const bool is_first = level == 0 && row == 0;
      draw(x, is_first ? middle : parts.cell.top, x, goes_on ? parts.cell.bottom : middle + 1);
      draw(x, middle, parts.button.right, middle);
    } else if (goes_on) {
      draw(x, parts.cell.top, x, parts.cell.bottom);
    }
  }
  dc.SelectObject(former);
}

void CSftTree::PaintCell(CDC& dc, int row, int column, const CellParts& parts,
                         const RowColors& colors) {
  const CellStyle* const style = rows_->Look(row).Find(column);
  const bool has_own = style != nullptr && !colors.marked;
  if (has_own && style->background != CellStyle::kNoColor) {
    CRect cell = parts.cell;
    cell.left = parts.cell_picture.left;
    dc.FillSolidRect(cell, style->background);
  }
  if (style != nullptr && style->picture != nullptr) {
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(parts.cell_picture);
    DrawPicture(dc, parts.cell_picture, style->picture);
    dc.RestoreDC(saved);
  }
  const std::string_view text = SeenPart(rows_->Text(row, column));
  const CRect inside = WithMargin(parts.inside, kTextMargin);
  if (text.empty() || inside.IsRectEmpty()) return;
  CFont font;
  const bool has_font = style != nullptr && style->font != nullptr;
  if (has_font) font.CreateFontIndirect(*style->font);
  CFont* const former = has_font ? dc.SelectObject(&font) : nullptr;
  dc.SetTextColor(has_own && style->text != CellStyle::kNoColor ? style->text : colors.text);
  const UINT format = columns_->Has(column) ? (*columns_)[column].format : 0;
  dc.DrawText(text, inside,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS | AlignmentOf(format));
  if (has_font) dc.SelectObject(former);
}

}  // namespace dq
