#include "dqlib/toolkit/tab_strip.h"

namespace dq {
namespace {

/// Bit of a row's flags.
constexpr BYTE kDisabled = 1;

}  // namespace

IMPLEMENT_DYNAMIC(CDQTabStrip, CWnd)

bool CDQTabStrip::SetCurSel(int index) {
  if (index != -1 && !rows_.Has(index)) return false;
  current_ = index;
  Tell(WindowChange::kSelection);
  return true;
}

bool CDQTabStrip::IsTabEnabled(int index) const {
  return rows_.Has(index) && (rows_[index].flags & kDisabled) == 0;
}

void CDQTabStrip::EnableTab(int index, bool enable) {
  if (!rows_.Has(index)) return;
  rows_[index].flags = enable ? 0 : kDisabled;
  Tell(WindowChange::kRowsChanged, {index, 1});
}

bool CDQTabStrip::Choose(int index) {
  if (!TakesInput() || !IsTabEnabled(index)) return false;
  wished_ = index;
  return Notify(kTabWished) && current_ == index;
}

void CDQTabStrip::Describe(platform::DialogControl& control) const {
  control.kind = platform::DialogControlKind::kList;
  control.items = rows_.Texts();
  control.value = rows_.Text(current_);
}

bool CDQTabStrip::Enter(std::string_view value) { return Choose(rows_.FindNamed(value)); }

namespace detail {

void RegisterTabStrip() {
  static const bool registered = [] {
    RegisterControlClass("TabStrip", [](const ControlTemplate&) -> std::unique_ptr<CWnd> {
      return std::make_unique<CDQTabStrip>();
    });
    return true;
  }();
  static_cast<void>(registered);
}

}  // namespace detail
}  // namespace dq
