// Windows that come up over others for a moment, as the list of a combo box does.

#pragma once

#include <functional>
#include <wx/popupwin.h>

namespace workbench {

/// While it is shown, a press anywhere else goes to it and is told; the keys stay where they are.
class PopupWindow : public wxPopupWindow {
 public:
  /// `pressed_outside` is told from within the toolkit.
  PopupWindow(wxWindow* parent, std::function<void()> pressed_outside);
  ~PopupWindow() override;

  /// Shows it below a rectangle of the screen, or above where there is more room.
  void ShowAt(const wxRect& below, const wxSize& size);
  void Hide();

 private:
  bool shown_ = false;
};

}  // namespace workbench
