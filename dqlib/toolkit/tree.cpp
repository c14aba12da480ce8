#include "dqlib/toolkit/tree.h"

#include <charconv>
#include <cstring>
#include <utility>

#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNCREATE(CDQTree, CSftTree)

namespace {

constexpr int kBoldWeight = 700;
/// The stock font of dialogs.
constexpr int kDialogFont = 17;
constexpr CSize kUsualBitmap{16, 16};

HBITMAP PictureOf(const CBitmap* bitmap) {
  return bitmap == nullptr ? nullptr : bitmap->GetSafeHandle();
}

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

CDQTree::CDQTree() = default;

CDQTree::~CDQTree() { EndInDestructor(); }

bool CDQTree::Create(DWORD style, const CRect& rect, CWnd* parent, UINT id) {
  if (!CreateWnd({.class_name = "SftTree",
                  .place = rect,
                  .parent = parent,
                  .id = static_cast<int>(id),
                  .enabled = (style & kDisabledStyle) == 0})) {
    return false;
  }
  const Watched self(*this);
  SetDefaultStyle();
  if (self.IsThere()) SetDefaultFont();
  return self.IsThere();
}

bool CDQTree::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CDQTree::OnFileSave>(ID_FILE_SAVE),
      CommandEntry<&CDQTree::OnFilePrint>(ID_FILE_PRINT),
      CommandEntry<&CDQTree::OnEditCopy>(ID_EDIT_COPY),
      ReflectedEntry<&CDQTree::OnLButtonExpandCollapse>(kTreeButtonDown),
      ReflectedEntry<&CDQTree::OnLButtonExpandCollapse>(kTreeButtonDoubleClick),
      ReflectedEntry<&CDQTree::OnLButtonExpandCollapse>(kTreePictureDoubleClick),
      ReflectedEntry<&CDQTree::OnLButtonExpandCollapse>(kTreeTextDoubleClick),
      ReflectedEntry<&CDQTree::OnHeaderButtonDown>(kTreeHeaderDown),
      ReflectedEntry<&CDQTree::OnDragging>(kTreeBeginDrag),
      ReflectedEntry<&CDQTree::OnDragging>(kTreeDragging),
      ReflectedEntry<&CDQTree::OnEndDrag>(kTreeEndDrag),
      ReflectedEntry<&CDQTree::OnCancelDrag>(kTreeCancelDrag),
      ReflectedEntry<&CDQTree::OnQuitEdit>(kTreeQuitEdit),
      ReflectedEntry<&CDQTree::OnValidateEdit>(kTreeValidateEdit),
      MessageEntry<&CDQTree::OnReflectedCommand>(kTreeReflectedCommand),
      MessageEntry<&CDQTree::OnKeyToItem>(kTreeKeyToItem),
      MessageEntry<&CDQTree::OnKeyDown>(WM_KEYDOWN),
      MessageEntry<&CDQTree::OnSetCaret>(kTreeSetCaret),
      MessageEntry<&CDQTree::OnPlaceEditor>(kTreePlaceEditor),
  };
  return CallEntry(kEntries, *this, key, arguments) || CSftTree::CallMapped(key, arguments);
}

LRESULT CDQTree::OnReflectedCommand(WPARAM wparam, LPARAM lparam) {
  LRESULT result = 0;
  return OnChildNotify(WM_COMMAND, wparam, lparam, &result);
}

LRESULT CDQTree::OnKeyToItem(WPARAM wparam, LPARAM) {
  // The row has all the bits behind those of the key.
  return VKeyToItem(LoWord(wparam), static_cast<UINT>(wparam >> 16));
}

int CDQTree::VKeyToItem(UINT key, UINT) {
  int code = 0;
  if (key == VK_INSERT) code = kTreeInsertKey;
  if (key == VK_DELETE || key == VK_SUBTRACT) code = kTreeDeleteKey;
  if (key == VK_ADD) code = kTreeExpandKey;
  if (code == 0) return -1;
  NotifyParent(code);
  return -2;
}

LRESULT CDQTree::OnKeyDown(WPARAM key, LPARAM lparam) {
  const Watched self(*this);
  const bool control = (GetKeyState(VK_CONTROL) & kKeyDown) != 0;
  const bool shift = (GetKeyState(VK_SHIFT) & kKeyDown) != 0;
  if (control && !shift && (key == VK_INSERT || key == 'C' || key == 'c')) Copy();
  return self.IsThere() ? CSftTree::DefWindowProc(WM_KEYDOWN, key, lparam) : 0;
}

LRESULT CDQTree::OnSetCaret(WPARAM row, LPARAM) {
  const int caret = static_cast<int>(row);
  if (caret >= 0 && caret < GetCount()) {
    SetCaret(caret);
    if (IsRowShown(caret)) EnsureRowVisible(caret);
  }
  return 0;
}

void CDQTree::SetDefaultStyle() {
  ShowTreeLines(true);
  ShowButtons(true);
  ShowHeader(true);
}

void CDQTree::SetDefaultFont(CFont* font) {
  SetFont(font);
  // Cells have it by its address.
  if (m_pBoldFont != nullptr) GetBoldFont();
}

void CDQTree::SetColors(COLORREF text, COLORREF background, COLORREF selected_text,
                        COLORREF selected_background) {
  m_textColor = text;
  CSftTree::SetColors(text, background, selected_text, selected_background);
}

bool CDQTree::IsLeaf(int row) const { return row >= 0 && row < GetCount() && !IsFolder(row); }

bool CDQTree::IsFolder(int row) const { return HasChildren(row); }

bool CDQTree::IsRoot(int row) const { return row >= 0 && row < GetCount() && GetLevel(row) == 0; }

BOOL CDQTree::OnLButtonExpandCollapse() {
  const int row = GetCaret();
  if (!m_bHandleExpandCollapse || !HasChildren(row)) return 0;
  const bool expanded = IsExpanded(row);
  if (!m_bDragAllowed && expanded && GetLevel(row) == 0) return 1;
  Expand(row, !expanded, (GetKeyState(VK_CONTROL) & kKeyDown) != 0);
  return 1;
}

// Texts.

int CDQTree::AddString(const char* text) { return AddRow(text); }

int CDQTree::AddString(int number) { return AddString(std::to_string(number).c_str()); }

bool CDQTree::GetText(int row, int column, CString& text) const {
  if (row < 0 || row >= GetCount() || column < 0 || column >= GetCellCount()) return false;
  text = CellText(row, column);
  return true;
}

bool CDQTree::GetText(int row, int column, int& number) const {
  CString text;
  if (!GetText(row, column, text)) return false;
  const auto [begin, end] = std::pair(text.View().data(), text.View().data() + text.GetLength());
  if (std::from_chars(begin, end, number).ec != std::errc()) number = 0;
  return true;
}

bool CDQTree::SetText(int row, int column, const char* text) {
  return SetCellText(row, column, text);
}

bool CDQTree::SetText(int row, int column, int number) {
  return SetText(row, column, std::to_string(number).c_str());
}

int CDQTree::FindTextA(int column, const char* text) const {
  if (text == nullptr || column < 0 || column >= GetCellCount()) return -1;
  const int count = GetCount();
  for (int row = 0; row < count; ++row) {
    if (std::strcmp(CellText(row, column), text) == 0) return row;
  }
  return -1;
}

// Looks of cells.

template <typename Call>
bool CDQTree::ForCells(int row, int column, Call call) {
  const int columns = GetCellCount();
  if (row < 0 || row >= GetCount() || column < -1 || column >= columns) return false;
  const int last = column < 0 ? columns - 1 : column;
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
  SetDefaultPictures(PictureOf(m_pFolderBitmap), PictureOf(m_pOpenFolderBitmap),
                     PictureOf(m_pLeafBitmap));
  const Watched self(*this);
  for (int row = 0; self.IsThere() && row < GetCount(); ++row) PickBitmap(row);
}

/// Gives a row a picture of its own where the control wouldn't show the right one by itself.
void CDQTree::PickBitmap(int row) {
  if (row < 0 || row >= GetCount()) return;
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
  for (const int row : GetSelectedRows()) {
    if (bitmap == nullptr) {
      PickBitmap(row);
    } else {
      SetRowPicture(row, PictureOf(bitmap));
    }
  }
}

bool CDQTree::GetCellInfo(tagCellInfoParm* info) const {
  if (info == nullptr || info->row < 0 || info->row >= GetCount() || info->column < 0 ||
      info->column >= GetCellCount()) {
    return false;
  }
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
