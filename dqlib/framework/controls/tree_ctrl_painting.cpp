// How the tree control draws its rows.

#include <algorithm>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/controls/image_list.h"
#include "dqlib/framework/controls/tree_ctrl.h"
#include "dqlib/framework/windows/screen.h"

namespace dq {
namespace {

/// Pixels, across: of the box of a button, and of a check box.
constexpr int kButtonSize = 9;
constexpr int kBoxSize = 13;
/// The stock font of dialogs, and the weight of a bold one.
constexpr int kDialogFont = 17;
constexpr LONG kBold = 700;

/// A square in the middle of a rectangle.
CRect Centered(const CRect& in, int size) {
  const LONG left = in.left + (in.Width() - size) / 2;
  const LONG top = in.top + (in.Height() - size) / 2;
  return {left, top, left + size, top + size};
}

void Frame(CDC& dc, const CRect& rect, int color) {
  const COLORREF shade = GetSysColor(color);
  dc.Draw3dRect(rect, shade, shade);
}

}  // namespace

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
    const LOGFONT* const usual = GetStockFont(kDialogFont);
    LOGFONT font = GetFont() != nullptr ? GetFont()->GetLogFont()
                   : usual != nullptr   ? *usual
                                        : LOGFONT{};
    font.lfWeight = kBold;
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
