// Child frames of a main frame.

#pragma once

#include "apps/workbench/layer/plain_mirrors.h"

class wxDC;

namespace workbench {

/// A child frame: around what lies in it a border, by which a person sizes it, and a caption with
/// its text, by which they move it, and with buttons. Minimised it is a caption alone.
class ChildFrameMirror : public PlainMirror {
 public:
  using PlainMirror::PlainMirror;
  wxWindow* Inside() override { return inside_; }
  void Apply(const Changes& changes) override;
  void Trace(TraceLine& line) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowPlace() override;
  void ShowText() override;

 private:
  /// A sum of bits.
  enum Part : unsigned {
    kNothing = 0,
    kLeft = 1,
    kTop = 2,
    kRight = 4,
    kBottom = 8,
    kCaption = 16,
    kMinimize = 32,
    kMaximize = 64,
    kClose = 128,
  };
  static constexpr unsigned kEdges = kLeft | kTop | kRight | kBottom;

  wxRect ButtonRect(Part button) const;
  unsigned PartAt(const wxPoint& at) const;
  wxPoint InParent(const wxPoint& on_display) const;
  static dq::CRect Dragged(dq::CRect place, unsigned held, const dq::CPoint& way,
                           const dq::CSize& least);
  void OnPaint();
  void DrawButton(wxDC& context, Part button) const;
  void OnPress(const wxPoint& at);
  void OnMove(const wxPoint& at);
  void OnRelease(const wxPoint& at);
  void Push(unsigned part);

  wxWindow* inside_ = nullptr;
  /// What the person holds, since the pointer was at a place of the parent and the frame at
  /// another.
  unsigned held_ = kNothing;
  wxPoint from_;
  dq::CRect place_;
};

/// What is around a window in it, in pixels at 96 dots to the inch: nothing but for child frames.
dq::CRect ChildFrameWidths(const dq::CWnd& window);

}  // namespace workbench
