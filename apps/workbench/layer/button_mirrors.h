// Buttons by their kinds: pushed, marked, or a frame around others.

#pragma once

#include <array>
#include <wx/bitmap.h>

#include "apps/workbench/layer/mirror.h"
#include "dqlib/framework/controls/bitmap_button.h"

typedef struct _GtkWidget GtkWidget;

namespace workbench {

/// A button that is pushed; the default one has that look.
class PushButtonMirror : public Mirror {
 public:
  using Mirror::Mirror;
  bool Serves(const dq::CWnd& window) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowText() override;
  void ShowContent(const Changes& changes) override;
};

/// A button with a picture, and a text where there is room for both.
class BitmapButtonMirror : public PushButtonMirror {
 public:
  using PushButtonMirror::PushButtonMirror;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowPlace() override;
  void ShowText() override;
  void ShowContent(const Changes& changes) override;

 private:
  static void OnState(GtkWidget* widget, unsigned int former, void* self);
  /// Shows the picture for how the toolkit's button stands.
  void ShowLook();

  /// By look.
  std::array<wxBitmap, dq::CBitmapButton::kDisabled + 1> pictures_;
  wxBitmap shown_;
};

/// A check mark of two or three states.
class CheckBoxMirror : public Mirror {
 public:
  using Mirror::Mirror;
  bool Serves(const dq::CWnd& window) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowText() override;
  void ShowContent(const Changes& changes) override;

 private:
  dq::ButtonKind kind_ = dq::ButtonKind::kCheck;
};

/// A radio button. Which others lose their marks by it, the library decides.
class RadioButtonMirror : public Mirror {
 public:
  using Mirror::Mirror;
  ~RadioButtonMirror() override;
  bool Serves(const dq::CWnd& window) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowText() override;
  void ShowContent(const Changes& changes) override;

 private:
  /// Another button of its group, never shown, which has the mark when this one hasn't.
  GtkWidget* unmarked_ = nullptr;
};

/// A frame with a title around other controls.
class GroupMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Focusable() override { return nullptr; }
  bool Serves(const dq::CWnd& window) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowText() override;
};

std::unique_ptr<Mirror> MakeButtonMirror(Layer& layer, dq::CWnd& window);

}  // namespace workbench
