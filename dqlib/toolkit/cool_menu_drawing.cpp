// Menus with pictures: how large items are, and how they look.

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/owner_draw.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/resources/pictures.h"
#include "dqlib/toolkit/cool_menu.h"

namespace dq {
namespace {

/// The stock font of menus.
constexpr int kMenuFont = 17;
/// Pixels between a picture and the text, and before the keys if an item has some.
constexpr int kTextGap = 4;
constexpr int kKeysGap = 10;

constexpr UINT kInactive = ODS_GRAYED | ODS_DISABLED;

/// A text up to its first tab, and what stands behind it.
std::pair<std::string_view, std::string_view> LabelAndKeys(std::string_view text) {
  const std::size_t tab = text.find('\t');
  if (tab == text.npos) return {text, {}};
  return {text.substr(0, tab), text.substr(tab + 1)};
}

/// Of items, or of default items; null if there is none.
CFont* MenuFont(bool is_default) {
  static CFont* const fonts = new CFont[2];
  CFont& font = fonts[is_default ? 1 : 0];
  const LOGFONT* const stock = GetStockFont(kMenuFont);
  if (!font.IsCreated() && stock != nullptr) {
    constexpr LONG kBold = 700;
    LOGFONT wanted = *stock;
    if (is_default) wanted.lfWeight = kBold;
    font.CreateFontIndirect(wanted);
  }
  return font.IsCreated() ? &font : nullptr;
}

LONG WidthOf(std::string_view text, const CFont* font) {
  return GetTextExtent(font == nullptr ? nullptr : &font->GetLogFont(), text).cx;
}

/// The list with the two check marks, or null.
const CImageList* CheckMarks() {
  static const CImageList* marks = nullptr;
  if (marks != nullptr) return marks;
  CBitmap strip;
  const HINSTANCE module = AfxFindResourceHandle(IDB_CHECK_MARKS, RESOURCE_BITMAP);
  if (!strip.LoadBitmap(module, IDB_CHECK_MARKS)) return nullptr;
  marks = CImageListInfoArray::Shared().FindOrCreate(
      IDB_CHECK_MARKS, strip.GetSafeHandle()->size.cx / 2, CDQCoolMenu::kMaskColor);
  return marks;
}

LONG Middle(const CRect& row, LONG height) { return row.top + (row.Height() - height) / 2; }

}  // namespace

void CDQCoolMenu::CalculateMaxItemWidth() {
  measured_default_ = GetDefaultItem(true);
  const CMenuItemInfo* const chosen = RecordAt(static_cast<int>(measured_default_));
  LONG label_width = 0;
  LONG keys_width = 0;
  bool has_keys = false;
  for (int index = 0; index < items_.GetSize(); ++index) {
    const CFont* const font = MenuFont(items_[index] == chosen);
    const auto [label, keys] = LabelAndKeys(items_[index]->m_strText.View());
    label_width = std::max(label_width, WidthOf(label, font));
    if (keys.empty()) continue;
    has_keys = true;
    keys_width = std::max(keys_width, WidthOf(keys, font));
  }
  accelerator_offset_ = image_size_.cx + label_width + kTextGap + (has_keys ? kKeysGap : 0);
  max_width_ = accelerator_offset_ + keys_width;
}

void CDQCoolMenu::MeasureItems() {
  if (max_width_ < 0 || measured_default_ != GetDefaultItem(true)) CalculateMaxItemWidth();
}

int CDQCoolMenu::GetMaxItemWidth() {
  MeasureItems();
  return max_width_;
}

int CDQCoolMenu::GetAcceleratorOffset() {
  MeasureItems();
  return accelerator_offset_;
}

void CDQCoolMenu::MeasureItem(MEASUREITEMSTRUCT* item) {
  if (item == nullptr) return;
  if (item->itemData == 0) {
    item->itemWidth = 0;
    item->itemHeight = static_cast<UINT>(GetSystemMetrics(SM_CYMENU) / 2);
  } else {
    item->itemWidth = static_cast<UINT>(GetMaxItemWidth());
    item->itemHeight = static_cast<UINT>(image_size_.cy);
  }
}

void CDQCoolMenu::DrawItem(DRAWITEMSTRUCT* item) {
  if (item == nullptr || item->pDC == nullptr) return;
  CDC& dc = *item->pDC;
  const CRect& row = item->rcItem;
  const int saved = dc.SaveDC();
  dc.FillSolidRect(row, GetSysColor(COLOR_MENU));
  const CMenuItemInfo* const record = items_.Find(reinterpret_cast<const void*>(item->itemData));
  if (item->itemData == 0) {
    const LONG line = Middle(row, 2);
    dc.DrawEdge({row.left, line, row.right, line + 2}, EDGE_ETCHED, BF_TOP);
  } else if (record != nullptr) {
    const UINT state =
        item->itemState | ((item->itemState & kInactive) != 0 ? UINT{ODS_DISABLED} : 0);
    CPoint at{row.left, Middle(row, image_size_.cy)};
    const int image = look_.shows_pictures ? record->m_nImage : kNoImage;
    const bool has_mark = (state & ODS_CHECKED) != 0;
    const CImageList* const marks = image == kNoImage && has_mark ? CheckMarks() : nullptr;
    if (marks != nullptr) {
      // In the middle of the room for pictures, whose size is another one.
      at.x += (image_size_.cx - marks->GetImageSize().cx) / 2;
      at.y = Middle(row, marks->GetImageSize().cy);
    }
    CRect selected = row;
    // Beside a picture, which stands out by its frame.
    if (!look_.selects_whole_row && image != kNoImage)
      selected.left += image_size_.cx + kTextGap / 2;
    if ((state & ODS_SELECTED) != 0) dc.FillSolidRect(selected, GetSysColor(COLOR_HIGHLIGHT));
    if (image != kNoImage && has_mark) {
      dc.DrawEdge({at.x, at.y, at.x + image_size_.cx, at.y + image_size_.cy}, BDR_SUNKENOUTER,
                  BF_RECT);
    }
    DrawImage(dc, at, image, state);
    DrawItemText(dc, row, *record, state);
  }
  dc.RestoreDC(saved);
}

bool CDQCoolMenu::DrawImage(CDC& dc, const CPoint& at, int image, UINT state) {
  const bool is_selected = (state & ODS_SELECTED) != 0;
  if (image == kNoImage) {
    const CImageList* const marks = (state & ODS_CHECKED) != 0 ? CheckMarks() : nullptr;
    return marks != nullptr && marks->Draw(dc, is_selected ? 1 : 0, at);
  }
  if ((state & ODS_DISABLED) != 0) {
    DrawEmbossed(dc, at, image);
    return true;
  }
  if (image_list_ != nullptr) image_list_->Draw(dc, image, at);
  if (is_selected) {
    const CRect frame{at.x, at.y, at.x + image_size_.cx, at.y + image_size_.cy};
    dc.DrawEdge(frame, BDR_RAISEDINNER, BF_RECT);
  }
  return true;
}

void CDQCoolMenu::DrawEmbossed(CDC& dc, const CPoint& at, int image) {
  if (image_list_ != nullptr) image_list_->Draw(dc, image, at, true);
}

void CDQCoolMenu::DrawItemText(CDC& dc, const CRect& row, const CMenuItemInfo& record, UINT state) {
  const auto [label, keys] = LabelAndKeys(record.m_strText.View());
  const bool is_selected = (state & ODS_SELECTED) != 0;
  const bool is_disabled = (state & ODS_DISABLED) != 0;
  const std::string_view texts[] = {label, keys};
  const LONG starts[] = {row.left + image_size_.cx + kTextGap, row.left + GetAcceleratorOffset()};
  dc.SelectObject(MenuFont((state & ODS_DEFAULT) != 0));
  dc.SetBkMode(TRANSPARENT);
  const auto draw = [&](LONG moved, int color) {
    dc.SetTextColor(GetSysColor(color));
    for (int part = 0; part < 2; ++part) {
      CRect place = row;
      place.left = starts[part];
      place.OffsetRect(moved, moved);
      const UINT prefix = part == 0 ? 0 : UINT{DT_NOPREFIX};
      dc.DrawText(texts[part], place, DT_SINGLELINE | DT_VCENTER | prefix);
    }
  };
  // In relief, which wouldn't be seen on the colour of what is selected.
  if (is_disabled && !is_selected && !look_.plain_disabled) draw(1, COLOR_BTNHIGHLIGHT);
  draw(0, is_disabled ? COLOR_GRAYTEXT : is_selected ? COLOR_HIGHLIGHTTEXT : COLOR_MENUTEXT);
}

}  // namespace dq
