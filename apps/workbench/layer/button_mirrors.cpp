#include "apps/workbench/layer/button_mirrors.h"

#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/statbox.h>

#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/pictures.h"
#include "apps/workbench/layer/text.h"

namespace workbench {
namespace {

using dq::ButtonKind;
using dq::CBitmapButton;
using dq::CButton;
using dq::CWnd;

ButtonKind KindOf(const CWnd& window) {
  const auto* const button = dynamic_cast<const CButton*>(&window);
  return button == nullptr ? ButtonKind::kPush : button->GetKind();
}

bool IsPushed(ButtonKind kind) { return kind == ButtonKind::kPush || kind == ButtonKind::kDefault; }

wxString TextOf(const CWnd& window) { return ToNative(window.GetWindowText().View()); }

void Press(CButton& button) { button.Press(); }

}  // namespace

std::unique_ptr<Mirror> MakeButtonMirror(Layer& layer, CWnd& window) {
  switch (KindOf(window)) {
    case ButtonKind::kCheck:
    case ButtonKind::kThreeState:
      return std::make_unique<CheckBoxMirror>(layer, window);
    case ButtonKind::kRadio:
      return std::make_unique<RadioButtonMirror>(layer, window);
    case ButtonKind::kGroup:
      return std::make_unique<GroupMirror>(layer, window);
    case ButtonKind::kPush:
    case ButtonKind::kDefault:
      break;
  }
  return std::make_unique<PushButtonMirror>(layer, window);
}

// ---- Push buttons

wxWindow* PushButtonMirror::DoMake(wxWindow* parent) {
  // With a text, lest the toolkit takes one of its own.
  auto* const button = new wxButton(parent, wxID_ANY, " ");
  button->Bind(wxEVT_BUTTON,
               [this](wxCommandEvent&) { Post([](CWnd& window) { window.Press(); }); });
  return button;
}

bool PushButtonMirror::Serves(const CWnd& window) const { return IsPushed(KindOf(window)); }

void PushButtonMirror::ShowText() { native()->SetLabel(TextOf(window())); }

void PushButtonMirror::ShowContent(const Changes&) {
  GtkWidget* const widget = native()->m_widget;
  const bool is_default = KindOf(window()) == ButtonKind::kDefault;
  gtk_widget_set_can_default(widget, is_default ? TRUE : FALSE);
  GtkWidget* const top = gtk_widget_get_toplevel(widget);
  if (!GTK_IS_WINDOW(top)) return;
  GtkWidget* const former = gtk_window_get_default_widget(GTK_WINDOW(top));
  if (is_default && former != widget) gtk_window_set_default(GTK_WINDOW(top), widget);
  if (!is_default && former == widget) gtk_window_set_default(GTK_WINDOW(top), nullptr);
}

void BitmapButtonMirror::ShowPlace() {
  PushButtonMirror::ShowPlace();
  // There may be room for the text now, or not.
  ShowText();
}

void BitmapButtonMirror::ShowText() {
  const auto* const button = As<CBitmapButton>();
  const bool has_text = button == nullptr || button->ShowsText();
  native()->SetLabel(has_text ? TextOf(window()) : wxString());
}

void BitmapButtonMirror::ShowContent(const Changes& changes) {
  PushButtonMirror::ShowContent(changes);
  const auto* const own = As<CBitmapButton>();
  if (own == nullptr) return;
  for (std::size_t look = 0; look < pictures_.size(); ++look) {
    const dq::HBITMAP picture = own->GetBitmap(static_cast<CBitmapButton::Look>(look));
    pictures_[look] = picture == nullptr
                          ? wxBitmap()
                          : ToNativePicture(*picture, scale().ToNative(picture->size));
  }
  ShowLook();
}

wxWindow* BitmapButtonMirror::DoMake(wxWindow* parent) {
  wxWindow* const button = PushButtonMirror::DoMake(parent);

  // By the toolkit itself, whose wrapper wants all looks before the first is shown.
  gtk_button_set_always_show_image(GTK_BUTTON(button->m_widget), TRUE);
  g_signal_connect(button->m_widget, "state-flags-changed", G_CALLBACK(OnState), this);
  return button;
}

void BitmapButtonMirror::OnState(GtkWidget*, unsigned int, void* self) {
  static_cast<BitmapButtonMirror*>(self)->ShowLook();
}

void BitmapButtonMirror::ShowLook() {
  GtkWidget* const button = native()->m_widget;
  const GtkStateFlags state = gtk_widget_get_state_flags(button);
  const auto look = (state & GTK_STATE_FLAG_INSENSITIVE) != 0 ? CBitmapButton::kDisabled
                    : (state & GTK_STATE_FLAG_ACTIVE) != 0    ? CBitmapButton::kDown
                    : (state & GTK_STATE_FLAG_FOCUSED) != 0   ? CBitmapButton::kFocused
                                                              : CBitmapButton::kUp;
  const wxBitmap& picture = pictures_[look];
  if (picture.IsSameAs(shown_)) return;
  shown_ = picture;
  GtkWidget* const image =
      picture.IsOk() ? gtk_image_new_from_pixbuf(picture.GetPixbuf()) : nullptr;
  gtk_button_set_image(GTK_BUTTON(button), image);
}

// ---- Check boxes

wxWindow* CheckBoxMirror::DoMake(wxWindow* parent) {
  kind_ = KindOf(window());
  const long style = kind_ == ButtonKind::kThreeState
                         ? wxCHK_3STATE | wxCHK_ALLOW_3RD_STATE_FOR_USER
                         : wxCHK_2STATE;
  auto* const box = new wxCheckBox(parent, wxID_ANY, " ", wxDefaultPosition, wxDefaultSize, style);
  box->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) {
    PostTo<CButton>(Press);
    layer().Mark(window(), dq::WindowChange::kContent);
  });
  return box;
}

bool CheckBoxMirror::Serves(const CWnd& window) const { return KindOf(window) == kind_; }

void CheckBoxMirror::ShowText() { native()->SetLabel(TextOf(window())); }

void CheckBoxMirror::ShowContent(const Changes&) {
  const auto* const button = As<CButton>();
  auto* const box = static_cast<wxCheckBox*>(native());
  if (button == nullptr) return;
  if (!box->Is3State()) {
    box->SetValue(button->GetCheck() != 0);
  } else {
    constexpr wxCheckBoxState kStates[] = {wxCHK_UNCHECKED, wxCHK_CHECKED, wxCHK_UNDETERMINED};
    box->Set3StateValue(kStates[button->GetCheck()]);
  }
}

// ---- Radio buttons

wxWindow* RadioButtonMirror::DoMake(wxWindow* parent) {
  auto* const button =
      new wxRadioButton(parent, wxID_ANY, " ", wxDefaultPosition, wxDefaultSize, wxRB_SINGLE);
  // The toolkit takes the mark from a button only by giving it to another one of its group.
  unmarked_ = gtk_radio_button_new_from_widget(GTK_RADIO_BUTTON(button->m_widget));
  g_object_ref_sink(unmarked_);
  button->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) {
    PostTo<CButton>(Press);
    layer().Mark(window(), dq::WindowChange::kContent);
  });
  return button;
}

RadioButtonMirror::~RadioButtonMirror() {
  if (unmarked_ == nullptr) return;
  gtk_widget_destroy(unmarked_);
  g_object_unref(unmarked_);
}

bool RadioButtonMirror::Serves(const CWnd& window) const {
  return KindOf(window) == ButtonKind::kRadio;
}

void RadioButtonMirror::ShowText() { native()->SetLabel(TextOf(window())); }

void RadioButtonMirror::ShowContent(const Changes&) {
  const auto* const button = As<CButton>();
  if (button == nullptr) return;
  GtkWidget* const marked = button->GetCheck() != 0 ? native()->m_widget : unmarked_;
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(marked), TRUE);
}

// ---- Groups

wxWindow* GroupMirror::DoMake(wxWindow* parent) {
  return new wxStaticBox(parent, wxID_ANY, wxString());
}

bool GroupMirror::Serves(const CWnd& window) const { return KindOf(window) == ButtonKind::kGroup; }

void GroupMirror::ShowText() { native()->SetLabel(TextOf(window())); }

}  // namespace workbench
