// Buttons with pictures.

#pragma once

#include <array>
#include <memory>

#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/controls/button.h"

namespace dq {

/// A button that shows a picture, and its text behind it where there is room for both. The text is
/// the button's name in any case. Window class "BitmapButton"; a template's flag `picture=N` names
/// the picture.
class CBitmapButton : public CButton {
  DECLARE_DYNAMIC(CBitmapButton)
  using CButton::CButton;

  /// How the button stands when a picture is shown.
  enum Look { kUp, kDown, kFocused, kDisabled };

  /// Loads pictures by their ids by the chain of resource modules, with the greys of buttons in the
  /// desktop's colours (`IMAGE_MAP_3D_COLORS`); 0 is none. False, and no change, if one isn't
  /// there.
  bool LoadBitmaps(UINT up, UINT down = 0, UINT focused = 0, UINT disabled = 0);
  /// Takes the place of the parent's button with the id and loads a picture: without an id for it,
  /// that with the button's. False if there is no such button, or no picture: then it is without.
  bool AutoLoad(int id, CWnd* parent, UINT bitmap = 0);
  /// Makes the window as large as the first picture with the frame of buttons around it. Without a
  /// picture the size stays.
  void SizeToContent();

  /// The picture for a look, or else the first one; null if there is none. It is the button's own
  /// until others are loaded.
  HBITMAP GetBitmap(Look look = kUp) const;
  /// Whether a window layer has to show the first picture embossed while the button is disabled,
  /// because it has none for that.
  bool IsEmbossed() const { return !IsWindowEnabled() && bitmaps_[kDisabled] == nullptr; }
  /// Whether there is room for the text behind the picture.
  bool ShowsText() const;

 protected:
  void OnSubclassed(CWnd& former) override;

 private:
  using Bitmaps = std::array<std::unique_ptr<const BitmapDescription>, kDisabled + 1>;

  Bitmaps bitmaps_;
};

}  // namespace dq
