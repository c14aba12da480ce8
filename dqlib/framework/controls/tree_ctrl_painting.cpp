// How the tree control lays its rows out and draws them.

#include <algorithm>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/controls/image_list.h"
#include "dqlib/framework/controls/tree_ctrl.h"
#include "dqlib/framework/windows/screen.h"

namespace dq {
namespace {

/// Pixels by which each level stands farther right; the button lies there.
constexpr int kIndent = 19;
constexpr int kButtonSize = 9;
/// Of the usual pictures of states, and the boxes in them.
constexpr int kStateSize = 16;
constexpr int kBoxSize = 13;
/// Left and right of a text.
constexpr int kTextGap = 3;
/// Above and below the texts and pictures of a row, together.
constexpr int kRowGap = 4;
/// More of a text isn't shown.
constexpr int kShownBytes = 1024;

/// A square in the middle of a rectangle.
CRect Centered(const CRect& in, int size) {
  const LONG left = in.left + (in.Width() - size) / 2;
  const LONG top = in.top + (in.Height() - size) / 2;
  return {left, top, left + size, top + size};
}

int WidthOf(const CImageList* images, int without) {
  return images == nullptr ? without : static_cast<int>(images->GetImageSize().cx);
}

void Frame(CDC& dc, const CRect& rect, int color) {
  const COLORREF shade = GetSysColor(color);
  dc.Draw3dRect(rect, shade, shade);
}

}  // namespace

int CTreeCtrl::GetRowHeight() const {
  if (row_height_ == 0) {
    int content = std::max(kStateSize, static_cast<int>(GetTextExtent(*this, "X").cy));
    for (const CImageList* const images : {images_, state_images_}) {
      if (images != nullptr) content = std::max(content, int{images->GetImageSize().cy});
    }
    row_height_ = content + kRowGap;
  }
  return row_height_;
}

void CTreeCtrl::SetImageList(const CImageList* images, int which) {
  (which == TVSIL_STATE ? state_images_ : images_) = images;
  row_height_ = 0;
  Tell(WindowChange::kContent);
  Measure(top_, top_ + GetPageRows() + 1);
  Invalidate();
  UpdateScrolling();
}

const CImageList* CTreeCtrl::GetImageList(int which) const {
  return which == TVSIL_STATE ? state_images_ : images_;
}

std::string_view CTreeCtrl::ShownText(Index item) const {
  const std::string_view text = items_[item].text;
  return text.substr(0, static_cast<std::size_t>(detail::ClipToText(text, kShownBytes)));
}

CTreeCtrl::RowParts CTreeCtrl::PartsOf(Index item, int row) const {
  const detail::TreeItems::Node& node = items_[item];
  const LONG top = (row - top_) * GetRowHeight();
  RowParts parts;
  parts.row = {0, top, GetClientRect().right, top + GetRowHeight()};
  LONG left = node.level * kIndent - left_;
  const auto take = [&](int width) {
    left += width;
    return CRect{left - width, parts.row.top, left, parts.row.bottom};
  };
  const CRect button = take(kIndent);
  if (node.first_child != kNone) parts.button = button;
  if (StateImageOf(node.state) != 0) parts.state = take(WidthOf(state_images_, kStateSize));
  if (images_ != nullptr) parts.image = take(WidthOf(images_, 0));
  COLORREF color = 0;
  const CFont* const font = PickTextFont(items_.HandleOf(item), color);
  const std::string_view text = ShownText(item);
  const CSize extent =
      font == nullptr ? GetTextExtent(*this, text) : GetTextExtent(&font->GetLogFont(), text);
  parts.text = take(static_cast<int>(extent.cx) + 2 * kTextGap);
  return parts;
}

/// Takes into account how wide rows are that come into sight.
void CTreeCtrl::Measure(int first, int last) {
  if (GetSafeHwnd() == nullptr) return;
  for (int row = std::max(0, first); row < std::min(last, GetRowCount()); ++row) {
    const int width = static_cast<int>(PartsOf(items_.AtRow(row), row).text.right) + left_;
    content_width_ = std::max(content_width_, width);
  }
}

void CTreeCtrl::InvalidateRow(int row) {
  if (row < top_ || row > top_ + GetPageRows()) return;
  const LONG top = (row - top_) * GetRowHeight();
  InvalidateRect({0, top, GetClientRect().right, top + GetRowHeight()});
}

void CTreeCtrl::PickTextColors(HTREEITEM item, COLORREF& text, COLORREF& background) const {
  int text_color = IsWindowEnabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT;
  int background_color = COLOR_WINDOW;
  if (item != nullptr && item == GetSelectedItem()) {
    const bool has_focus = GetFocus() == this;
    if (IsWindowEnabled()) text_color = has_focus ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT;
    background_color = has_focus ? COLOR_HIGHLIGHT : COLOR_BTNFACE;
  }
  text = GetSysColor(text_color);
  background = GetSysColor(background_color);
}

/// The tree's font, or the dialogs' own, in bold.
CFont* CTreeCtrl::BoldFont() const {
  if (bold_ == nullptr) {
    const LOGFONT* const usual = GetStockFont(17);
    LOGFONT font = GetFont() != nullptr ? GetFont()->GetLogFont()
                   : usual != nullptr   ? *usual
                                        : LOGFONT{};
    font.lfWeight = 700;
    bold_ = std::make_unique<CFont>();
    bold_->CreateFontIndirect(font);
  }
  return bold_.get();
}

CFont* CTreeCtrl::PickTextFont(HTREEITEM item, COLORREF& /*text*/) const {
  return GetItemState(item, TVIS_BOLD) != 0 ? BoldFont() : GetFont();
}

void CTreeCtrl::OnPaint(CDC& dc) {
  const CRect clip = dc.GetClipBox();
  dc.FillSolidRect(Intersect(clip, GetClientRect()), GetSysColor(COLOR_WINDOW));
  if (clip.IsRectEmpty()) return;
  const int last = std::min(RowAt(clip.bottom - 1), GetRowCount() - 1);
  for (int row = RowAt(std::max<LONG>(0, clip.top)); row <= last; ++row) {
    PaintRow(dc, items_.AtRow(row), row);
  }
}

void CTreeCtrl::PaintRow(CDC& dc, Index item, int row) const {
  const detail::TreeItems::Node& node = items_[item];
  const HTREEITEM handle = items_.HandleOf(item);
  const RowParts parts = PartsOf(item, row);
  if (!parts.button.IsRectEmpty()) PaintButton(dc, parts.button, items_.IsExpanded(item));
  if (!parts.state.IsRectEmpty()) PaintState(dc, parts.state, StateImageOf(node.state));
  if (images_ != nullptr) {
    const CRect at = Centered(parts.image, static_cast<int>(images_->GetImageSize().cy));
    const int image = item == selected_ ? node.selected_image : node.image;
    images_->Draw(dc, image, {parts.image.left, at.top});
    if (const int overlay = OverlayImageOf(node.state); overlay != 0) {
      images_->Draw(dc, overlay, {parts.image.left, at.top});
    }
  }
  COLORREF text = 0;
  COLORREF background = 0;
  PickTextColors(handle, text, background);
  CFont* const former = dc.SelectObject(PickTextFont(handle, text));
  dc.FillSolidRect(parts.text, background);
  const COLORREF former_color = dc.SetTextColor(text);
  const int former_mode = dc.SetBkMode(TRANSPARENT);
  CRect label = parts.text;
  label.left += kTextGap;
  dc.DrawText(ShownText(item), label, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
  dc.SetBkMode(former_mode);
  dc.SetTextColor(former_color);
  dc.SelectObject(former);
  if (item == selected_ && GetFocus() == this) dc.DrawFocusRect(parts.text);
}

void CTreeCtrl::PaintButton(CDC& dc, const CRect& button, bool expanded) const {
  const CRect box = Centered(button, kButtonSize);
  const LONG half = kButtonSize / 2;
  const COLORREF sign = GetSysColor(COLOR_WINDOWTEXT);
  Frame(dc, box, COLOR_BTNSHADOW);
  dc.FillSolidRect({box.left + 2, box.top + half, box.right - 2, box.top + half + 1}, sign);
  if (expanded) return;
  dc.FillSolidRect({box.left + half, box.top + 2, box.left + half + 1, box.bottom - 2}, sign);
}

void CTreeCtrl::PaintState(CDC& dc, const CRect& place, int image) const {
  if (state_images_ != nullptr) {
    const CRect at = Centered(place, static_cast<int>(state_images_->GetImageSize().cy));
    state_images_->Draw(dc, image, {place.left, at.top});
    return;
  }
  const CRect box = Centered(place, kBoxSize);
  dc.FillSolidRect(box, GetSysColor(COLOR_WINDOW));
  Frame(dc, box, IsWindowEnabled() ? COLOR_3DDKSHADOW : COLOR_BTNSHADOW);
  const int mark_color = IsWindowEnabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT;
  if (image == 4) {
    dc.FillSolidRect({box.left + 3, box.top + 3, box.right - 3, box.bottom - 3},
                     GetSysColor(IsWindowEnabled() ? COLOR_3DDKSHADOW : COLOR_GRAYTEXT));
  } else if (image == 2) {
    CPen pen;
    pen.CreatePen(PS_SOLID, 2, GetSysColor(mark_color));
    CPen* const former = dc.SelectObject(&pen);
    dc.MoveTo(box.left + 3, box.top + 6);
    dc.LineTo(box.left + 5, box.top + 9);
    dc.LineTo(box.left + 10, box.top + 3);
    dc.SelectObject(former);
  }
}

}  // namespace dq
