// Where the rows of the tree control lie, and what of them is in sight.

#include <algorithm>

#include "dqlib/framework/controls/image_list.h"
#include "dqlib/framework/controls/tree_ctrl.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {
namespace {

/// Pixels by which each level stands farther right; the button lies there.
constexpr int kIndent = 19;
/// Of the usual pictures of states.
constexpr int kStateSize = 16;
/// Above and below the texts and pictures of a row, together.
constexpr int kRowGap = 4;
/// More of a text isn't shown.
constexpr int kShownBytes = 1024;

int WidthOf(const CImageList* images, int without) {
  return images == nullptr ? without : static_cast<int>(images->GetImageSize().cx);
}

}  // namespace

// ---- A row

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

// ---- What is in sight

int CTreeCtrl::GetPageRows() const {
  return std::max(1, static_cast<int>(GetClientRect().Height()) / GetRowHeight());
}

int CTreeCtrl::GetLastTop() const { return std::max(0, GetRowCount() - GetPageRows()); }

void CTreeCtrl::SetTopRow(int row) { ScrollTo(row, left_); }

/// Whether that changed anything.
bool CTreeCtrl::ScrollTo(int top, int left) {
  const int widest = std::max(0, content_width_ - static_cast<int>(GetClientRect().Width()));
  top = std::clamp(top, 0, GetLastTop());
  left = std::clamp(left, 0, widest);
  if (top == top_ && left == left_) return false;
  top_ = top;
  left_ = left;
  Measure(top_, top_ + GetPageRows() + 1);
  Invalidate();
  UpdateScrolling();
  return true;
}

/// Brings the scroll bars up to date. They may change the client area, which brings it here again.
void CTreeCtrl::UpdateScrolling() {
  if (GetSafeHwnd() == nullptr) return;
  const detail::Watched self(*this);
  SetScrollInfo(
      SB_VERT,
      {.nMin = 0, .nMax = std::max(0, GetRowCount() - 1), .nPage = GetPageRows(), .nPos = top_});
  if (!self.IsThere()) return;
  SetScrollInfo(SB_HORZ, {.nMin = 0,
                          .nMax = std::max(0, content_width_ - 1),
                          .nPage = std::max(1, static_cast<int>(GetClientRect().Width())),
                          .nPos = left_});
  if (self.IsThere()) ScrollTo(top_, left_);
}

bool CTreeCtrl::EnsureVisible(HTREEITEM item) {
  const Index found = items_.Find(item);
  if (found == kNone) return false;
  // From the top down, so that each comes into the rows once.
  std::vector<Index> above;
  for (Index each = items_[found].parent; each != kNone; each = items_[each].parent) {
    if (!items_.IsExpanded(each)) above.push_back(each);
  }
  for (; !above.empty(); above.pop_back()) SetExpanded(above.back(), TVE_EXPAND);
  const int row = items_.RowOf(found);
  if (row < top_) {
    SetTopRow(row);
  } else if (row >= top_ + GetPageRows()) {
    SetTopRow(row - GetPageRows() + 1);
  }
  return true;
}

int CTreeCtrl::RowAt(LONG y) const {
  return y < 0 ? -1 : top_ + static_cast<int>(y) / GetRowHeight();
}

HTREEITEM CTreeCtrl::HitTest(const CPoint& point, UINT* flags) const {
  const CRect client = GetClientRect();
  UINT where =
      (point.x < 0 ? UINT{TVHT_TOLEFT} : 0U) | (point.x >= client.right ? UINT{TVHT_TORIGHT} : 0U) |
      (point.y < 0 ? UINT{TVHT_ABOVE} : 0U) | (point.y >= client.bottom ? UINT{TVHT_BELOW} : 0U);
  const int row = where == 0 ? RowAt(point.y) : -1;
  const Index item = items_.AtRow(row);
  if (item != kNone) {
    const RowParts parts = PartsOf(item, row);
    where = parts.button.PtInRect(point)  ? TVHT_ONITEMBUTTON
            : parts.state.PtInRect(point) ? TVHT_ONITEMSTATEICON
            : parts.image.PtInRect(point) ? TVHT_ONITEMICON
            : parts.text.PtInRect(point)  ? TVHT_ONITEMLABEL
            : point.x >= parts.text.right ? TVHT_ONITEMRIGHT
                                          : TVHT_ONITEMINDENT;
  } else if (where == 0) {
    where = TVHT_NOWHERE;
  }
  if (flags != nullptr) *flags = where;
  return items_.HandleOf(item);
}

bool CTreeCtrl::GetItemRect(HTREEITEM item, CRect* rect, bool text_only) const {
  const Index found = items_.Find(item);
  const int row = items_.RowOf(found);
  if (row < 0 || rect == nullptr) return false;
  const RowParts parts = PartsOf(found, row);
  *rect = text_only ? parts.text : parts.row;
  return true;
}

bool CTreeCtrl::GetStateImageRect(HTREEITEM item, CRect* rect) const {
  const Index found = items_.Find(item);
  const int row = items_.RowOf(found);
  if (row < 0 || rect == nullptr) return false;
  *rect = PartsOf(found, row).state;
  return true;
}

}  // namespace dq
