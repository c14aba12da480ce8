#include "dqlib/toolkit/combo_box.h"

namespace dq {
namespace {

/// Pixels of a character, and those beside a row's text: both edges and the scroll bar.
constexpr int kCharacterWidth = 7;
constexpr int kBesideText = 24;

}  // namespace

IMPLEMENT_DYNAMIC(CDQComboBox, CComboBox)
IMPLEMENT_DYNAMIC(CDQAutoDropWidthCombo, CDQComboBox)

int CDQComboBox::AddItem(const char* text, std::uintptr_t data) {
  const int index = AddString(text);
  if (index < 0) return -1;
  SetItemData(index, data);
  OnItemAdded(index);
  return index;
}

void CDQAutoDropWidthCombo::OnItemAdded(int index) {
  const int wanted = GetLBTextLen(index) * kCharacterWidth + kBesideText;
  if (wanted > GetDroppedWidth()) SetDroppedWidth(static_cast<UINT>(wanted));
}

}  // namespace dq
