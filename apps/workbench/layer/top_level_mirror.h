// Top-level windows: dialogs, and the base of frames.

#pragma once

#include <optional>

#include "apps/workbench/layer/display.h"
#include "apps/workbench/layer/mirror.h"

class wxTopLevelWindow;

namespace workbench {

/// Height of what stands above a window's client area, in the display's pixels.
struct Bars {
  int above = 0;

  friend bool operator==(const Bars&, const Bars&) = default;
};

class TopLevelMirror : public Mirror {
 public:
  using Mirror::Mirror;

  wxWindow* Inside() override { return inside_; }
  wxWindow* Focusable() override { return inside_; }
  bool IsControl() const override { return false; }
  void Apply(const Changes& changes) override;
  void ApplyShown() override;
  void Trace(TraceLine& line) const override;

  wxTopLevelWindow* top_level() const;
  /// The window manager's frame around it, and the bars inside of that.
  const FrameExtents& frame_extents() const { return extents_; }
  const Bars& bars() const { return bars_; }
  /// Whether the person can't use it at present, so that what they do to it is lost.
  bool IsBlocked() const { return blocked_; }

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowPlace() override;
  void ShowText() override;

  virtual wxTopLevelWindow* MakeTopLevel(long style);
  /// As they are while the window is shown.
  virtual Bars ShownBars() const { return {}; }

 private:
  void Watch(wxTopLevelWindow& native);
  void ShowState();
  void ShowRestoredPlace();
  /// As acts: the person, or the window manager, has moved or sized the window.
  void TakePlace(dq::CWnd& window);
  void TakeState(dq::CWnd& window);
  void TakeFrame(dq::CWnd& window);
  void TakeLimits(dq::CWnd& window);

  wxWindow* inside_ = nullptr;
  FrameExtents extents_;
  /// As they were when it was last neither maximised nor minimised.
  FrameExtents restored_;
  Bars bars_;
  bool blocked_ = false;
  /// The place that the window got from here: the toolkit's window has it already.
  std::optional<dq::CRect> taken_;
};

}  // namespace workbench
