#include "dqlib/framework/controls/bitmap_button.h"

#include <string>
#include <utility>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/dialog_controls.h"
#include "dqlib/framework/windows/screen.h"

namespace dq {

IMPLEMENT_DYNAMIC(CBitmapButton, CButton)

namespace {

// Pixels: the frame on each side, and what stands between the picture and the text.
constexpr LONG kFrame = 4;
constexpr LONG kGap = 4;

std::unique_ptr<const BitmapDescription> Load(UINT id) {
  return LoadImage(AfxFindResourceHandle(id, RESOURCE_BITMAP), id, IMAGE_MAP_3D_COLORS);
}

}  // namespace

bool CBitmapButton::LoadBitmaps(UINT up, UINT down, UINT focused, UINT disabled) {
  const UINT ids[] = {up, down, focused, disabled};
  Bitmaps loaded;
  for (std::size_t look = 0; look < loaded.size(); ++look) {
    if (ids[look] == 0) continue;
    loaded[look] = Load(ids[look]);
    if (loaded[look] == nullptr) return false;
  }
  bitmaps_ = std::move(loaded);
  Tell(WindowChange::kContent);
  return true;
}

bool CBitmapButton::AutoLoad(int id, CWnd* parent, UINT bitmap) {
  return SubclassDlgItem(id, parent) && LoadBitmaps(bitmap == 0 ? static_cast<UINT>(id) : bitmap);
}

void CBitmapButton::SizeToContent() {
  const HBITMAP picture = GetBitmap();
  if (picture == nullptr) return;
  const CRect& place = GetPlace();
  MoveWindow(place.left, place.top, detail::WrappingSum(picture->size.cx, 2 * kFrame),
             detail::WrappingSum(picture->size.cy, 2 * kFrame));
}

HBITMAP CBitmapButton::GetBitmap(Look look) const {
  return (bitmaps_[look] == nullptr ? bitmaps_[kUp] : bitmaps_[look]).get();
}

bool CBitmapButton::ShowsText() const {
  const CString text = GetWindowText();
  const HBITMAP picture = GetBitmap();
  if (text.IsEmpty() || picture == nullptr) return !text.IsEmpty();
  const std::string shown = detail::WithoutMnemonic(text.View());
  const long long wanted = 0LL + picture->size.cx + GetTextExtent(*this, shown).cx;
  return wanted + kGap + 2 * kFrame <= GetClientRect().Width();
}

void CBitmapButton::OnSubclassed(CWnd& former) {
  CButton::OnSubclassed(former);
  if (CBitmapButton* const button = DYNAMIC_DOWNCAST(CBitmapButton, &former)) {
    bitmaps_ = std::move(button->bitmaps_);
  }
}

}  // namespace dq
