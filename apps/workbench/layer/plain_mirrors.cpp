#include "apps/workbench/layer/plain_mirrors.h"

#include <wx/stattext.h>

#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/text.h"

namespace workbench {

wxWindow* PlainMirror::DoMake(wxWindow* parent) {
  return new wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS);
}

wxWindow* LabelMirror::DoMake(wxWindow* parent) {
  auto* const label = new wxStaticText(parent, wxID_ANY, wxString(), wxDefaultPosition,
                                       wxDefaultSize, wxST_NO_AUTORESIZE);
  WrapLabel(*label);
  return label;
}

void LabelMirror::ShowText() { native()->SetLabel(ToNative(window().GetWindowText().View())); }

}  // namespace workbench
