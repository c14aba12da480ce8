// Trees: how single cells look, and their pictures.

#include <algorithm>
#include <cstring>

#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/toolkit/tree.h"

namespace dq {

using detail::Watched;

namespace {

constexpr int kBoldWeight = 700;
/// The stock font of dialogs.
constexpr int kDialogFont = 17;
constexpr CSize kUsualBitmap{16, 16};

/// The picture with the index of a strip whose pictures are so wide; null if it has none such.
std::unique_ptr<const BitmapDescription> CutPicture(const BitmapDescription& strip,
                                                    const CSize& size, int index) {
  const long long left = static_cast<long long>(size.cx) * index;
  if (index < 0 || size.cx <= 0 || size.cy <= 0 || left + size.cx > strip.size.cx) {
    return nullptr;
  }
  auto picture = std::make_unique<BitmapDescription>();
  picture->size = {size.cx, std::min(size.cy, strip.size.cy)};
  for (LONG y = 0; y < picture->size.cy; ++y) {
    const auto row = strip.pixels.begin() + static_cast<std::ptrdiff_t>(y) * strip.size.cx + left;
    picture->pixels.insert(picture->pixels.end(), row, row + size.cx);
  }
  return picture;
}

}  // namespace

template <typename Call>
bool CDQTree::ForCells(int row, int column, Call call) {
  if (!HasCell(row, column == -1 ? 0 : column)) return false;
  const int last = column < 0 ? GetCellCount() - 1 : column;
  for (int at = column < 0 ? 0 : column; at <= last; ++at) {
    CellStyle style = GetCellStyle(row, at);
    call(style);
    SetCellStyle(row, at, style);
  }
  return true;
}

bool CDQTree::SetItemColor(int row, int column, COLORREF text, COLORREF background) {
  return ForCells(row, column, [&](CellStyle& style) {
    style.text = text;
    style.background = background;
  });
}

COLORREF CDQTree::GetItemColor(int row, int column) const { return GetCellStyle(row, column).text; }

bool CDQTree::SetItemFont(int row, int column, CFont* font) {
  const LOGFONT* const description = font == nullptr ? nullptr : &font->GetLogFont();
  if (font != nullptr) m_fonts[description] = font;
  return ForCells(row, column, [&](CellStyle& style) { style.font = description; });
}

CFont* CDQTree::GetItemFont(int row, int column) const {
  const auto found = m_fonts.find(GetCellStyle(row, column).font);
  return found == m_fonts.end() ? nullptr : found->second;
}

bool CDQTree::SetItemBold(int row, int column, bool bold) {
  return SetItemFont(row, column, bold ? GetBoldFont() : nullptr);
}

CFont* CDQTree::GetBoldFont() {
  if (m_pBoldFont == nullptr) m_pBoldFont = std::make_unique<CFont>();
  const LOGFONT* const stock = GetStockFont(kDialogFont);
  LOGFONT description = stock == nullptr ? LOGFONT() : *stock;
  if (GetFont() != nullptr) description = GetFont()->GetLogFont();
  description.lfWeight = kBoldWeight;
  if (std::memcmp(&description, &m_pBoldFont->GetLogFont(), sizeof description) != 0) {
    m_pBoldFont->CreateFontIndirect(description);
  }
  return m_pBoldFont.get();
}

void CDQTree::RegisterColumnBitmapSize(int column, const CSize& size) {
  m_bitmapSizes[column] = size;
}

bool CDQTree::SetColumnBitmap(int row, int column, const CBitmap* bitmap) {
  return SetCellPicture(row, column, PictureOf(bitmap));
}

bool CDQTree::SetCellPicture(int row, int column, HBITMAP picture) {
  if (column == 0) return SetRowPicture(row, picture);
  return ForCells(row, column, [&](CellStyle& style) { style.picture = picture; });
}

HBITMAP CDQTree::GetColumnBitmap(int row, int column) const {
  return column == 0 ? GetRowPicture(row) : GetCellStyle(row, column).picture;
}

bool CDQTree::SetIndexedBitmap(int row, int column, const CBitmap& strip, int index) {
  const HBITMAP whole = strip.GetSafeHandle();
  if (whole == nullptr) return false;
  const auto size = m_bitmapSizes.find(column);
  const CSize cut = size == m_bitmapSizes.end() ? kUsualBitmap : size->second;
  auto& picture = m_indexedBitmaps[{whole, index, cut.cx, cut.cy}];
  if (picture == nullptr) picture = CutPicture(*whole, cut, index);
  return picture != nullptr && SetCellPicture(row, column, picture.get());
}

void CDQTree::SetBitmaps(CBitmap* leaf, CBitmap* folder, CBitmap* open_folder, CBitmap* root) {
  m_pLeafBitmap = leaf;
  m_pFolderBitmap = folder;
  m_pOpenFolderBitmap = open_folder == nullptr ? folder : open_folder;
  m_pRootBitmap = root;
  const Watched self(*this);
  SetDefaultPictures(PictureOf(m_pFolderBitmap), PictureOf(m_pOpenFolderBitmap),
                     PictureOf(m_pLeafBitmap));
  for (int row = 0; self.IsThere() && row < GetCount(); ++row) PickBitmap(row);
}

/// Gives a row a picture of its own where the control wouldn't show the right one by itself.
void CDQTree::PickBitmap(int row) {
  if (!HasRow(row)) return;
  const Watched self(*this);
  HBITMAP picture = nullptr;
  if (IsRoot(row)) picture = PictureOf(m_pRootBitmap);
  if (picture == nullptr && IsLeaf(row)) {
    picture = PictureOf(OverrideLeafBitmap(row));
    if (!self.IsThere()) return;
    // One with children has the picture of a folder otherwise.
    if (picture == nullptr && HasChildren(row)) picture = PictureOf(m_pLeafBitmap);
  } else if (picture == nullptr && !HasChildren(row)) {
    picture = PictureOf(m_pFolderBitmap);
  }
  if (GetRowPicture(row) != picture) SetRowPicture(row, picture);
}

CBitmap* CDQTree::OverrideLeafBitmap(int) { return nullptr; }

void CDQTree::SetSelectedItemBitmaps(CBitmap* bitmap) {
  const Watched self(*this);
  for (const int row : GetSelectedRows()) {
    if (!self.IsThere()) return;
    if (bitmap == nullptr) {
      PickBitmap(row);
    } else {
      SetRowPicture(row, PictureOf(bitmap));
    }
  }
}

bool CDQTree::GetCellInfo(tagCellInfoParm* info) const {
  if (info == nullptr || !HasCell(info->row, info->column)) return false;
  const CellStyle style = GetCellStyle(info->row, info->column);
  if ((info->flags & CELLINFO_TEXT) != 0) info->text = CellText(info->row, info->column);
  if ((info->flags & CELLINFO_COLOR) != 0) info->color = style.text;
  if ((info->flags & CELLINFO_BACKGROUND) != 0) info->background = style.background;
  if ((info->flags & CELLINFO_FONT) != 0) info->font = style.font;
  if ((info->flags & CELLINFO_BITMAP) != 0) {
    info->bitmap = GetColumnBitmap(info->row, info->column);
  }
  return true;
}

bool CDQTree::SetCellInfo(const tagCellInfoParm* info) {
  if (info == nullptr || info->column < 0) return false;
  const bool done = ForCells(info->row, info->column, [&](CellStyle& style) {
    if ((info->flags & CELLINFO_COLOR) != 0) style.text = info->color;
    if ((info->flags & CELLINFO_BACKGROUND) != 0) style.background = info->background;
    if ((info->flags & CELLINFO_FONT) != 0) style.font = info->font;
  });
  if (!done) return false;
  if ((info->flags & CELLINFO_TEXT) != 0) SetText(info->row, info->column, info->text);
  if ((info->flags & CELLINFO_BITMAP) != 0) {
    SetCellPicture(info->row, info->column, info->bitmap);
  }
  return true;
}

}  // namespace dq
