#include "apps/workbench/layer/mirror.h"

#include <utility>

#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/text.h"

namespace workbench {

using dq::WindowChange;

Mirror::Mirror(Layer& layer, dq::CWnd& window)
    : layer_(layer), handle_(window.GetSafeHwnd()), parent_(window.GetParent()) {}

Mirror::~Mirror() {
  wxWindow* const capture = wxWindow::GetCapture();
  if (native_ != nullptr && native_->IsDescendant(capture)) capture->ReleaseMouse();
  // Not by its `Destroy`, which would keep a top-level window until the toolkit is idle.
  delete native_;
}

void Mirror::Make(wxWindow* parent) {
  native_ = DoMake(parent);
  if (Focusable() != nullptr) WatchFocus(*Focusable());
}

const Scale& Mirror::scale() const { return layer_.scale(); }

void Mirror::Apply(const Changes& changes) {
  if (changes.Has(WindowChange::kRectangle)) ShowPlace();
  if (changes.Has(WindowChange::kFont)) ShowFont();
  if (changes.Has(WindowChange::kText)) ShowText();
  if (changes.Has(WindowChange::kContent, WindowChange::kSelection, WindowChange::kRowsInserted,
                  WindowChange::kRowsRemoved, WindowChange::kRowsChanged)) {
    ShowContent(changes);
  }
  if (changes.Has(WindowChange::kToolTip)) ShowToolTip();
  if (window().GetParent() == nullptr) return;
  if (changes.Has(WindowChange::kEnabled)) native_->Enable(window().IsWindowEnabled());
  if (changes.Has(WindowChange::kShown)) native_->Show(window().IsShown());
}

void Mirror::ShowPlace() { native_->SetSize(scale().ToNative(window().GetPlace())); }

void Mirror::ShowFont() {
  const dq::CFont* const font = window().GetFont();
  if (font == nullptr && !has_font_) return;
  has_font_ = font != nullptr;
  SetNativeFont(*native_, font);
}

void Mirror::ShowToolTip() {
  const wxString tip = ToNative(window().GetToolTip().View());
  if (tip.empty()) {
    native_->UnsetToolTip();
  } else {
    native_->SetToolTip(tip);
  }
}

void Mirror::PostFact(std::function<void(dq::CWnd&)> act) {
  layer_.Post(handle_, [self = this, &layer = layer_, handle = handle_,
                        act = std::move(act)](dq::CWnd& window) {
    if (layer.Find(handle) == self) act(window);
  });
}

void Mirror::Post(std::function<void(dq::CWnd&)> act) {
  if (!layer_.IsShowing()) PostFact(std::move(act));
}

void Mirror::WatchFocus(wxWindow& focusable) {
  focusable.Bind(wxEVT_SET_FOCUS, [this, &focusable](wxFocusEvent& event) {
    event.Skip();
    PostFact([this, &focusable](dq::CWnd& window) {
      // The window may refuse, and the toolkit's one may have lost the keyboard again.
      layer_.ShowFocus();
      if (HasKeyboard(focusable)) window.SetFocus();
    });
  });
}

}  // namespace workbench
