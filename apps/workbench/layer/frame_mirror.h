// Top-level frames, with their main menu.

#pragma once

#include "apps/workbench/layer/menu_mirror.h"
#include "apps/workbench/layer/top_level_mirror.h"

class wxFrame;

namespace workbench {

class FrameMirror : public TopLevelMirror {
 public:
  FrameMirror(Layer& layer, dq::CWnd& window);
  ~FrameMirror() override;

  void Apply(const Changes& changes) override;
  /// A menu has changed; whether it is this frame's.
  bool MarkMenu(dq::HMENU menu) { return menu_ != nullptr && menu_->Mark(menu); }
  void UpdateMenu();
  /// Outside of the toolkit: drops down the menu of the main menu for which the owner takes a press
  /// of a key. False if there is none; the owner may have ended everything.
  bool TakeMenuKey(std::string_view character, _GdkEvent& press);

 protected:
  wxTopLevelWindow* MakeTopLevel(long style) override;
  Bars ShownBars() const override;

 private:
  wxFrame& frame() const;
  void ShowMenu();

  MenuMirror::Events events_{.scale = scale()};
  std::unique_ptr<MenuMirror> menu_;
};

/// What a frame has above its client area before it is shown.
Bars UsualBars(const dq::CWnd& window);

}  // namespace workbench
