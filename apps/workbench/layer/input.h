// The person's keys and clicks, before the toolkit's windows see them.

#pragma once

#include <memory>

#include "apps/workbench/layer/drag_in.h"
#include "apps/workbench/layer/keys.h"
#include "dqlib/framework/windows/wnd.h"

class wxTopLevelWindow;
typedef union _GdkEvent GdkEvent;

namespace workbench {

class DragOut;
class Layer;
class TopLevelMirror;

/// Looks at the display's events first, for its lifetime; there is one.
///
/// A key is held back and posted as an act: the message that it makes is offered to the library
/// (`PreTranslateInput`, `OfferKey`), and what nobody takes there goes on to the toolkit's control,
/// or as messages to a window that has none. What is done to a window that can't be used, because a
/// dialog over it is to be answered, is dropped. Drags it hands on to who reports them.
class Input {
 public:
  explicit Input(Layer& layer);
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;
  ~Input();

  /// From now on, and until it ends, the window is the mirror's.
  static void SetMirror(wxTopLevelWindow& window, TopLevelMirror& mirror);

  /// The mirror of a window of the display; null for one that is no top-level window or not the
  /// library's.
  static TopLevelMirror* MirrorOf(GdkWindow& window);

  /// The drag that is under way from this program, which gets its events; null for none.
  void SetDrag(DragOut* drag);
  DragOut* drag() const { return drag_; }

  /// As `dq::GetKeyState`, at the last event.
  int GetKeyState(int key) const;

 private:
  static void OnEvent(GdkEvent* event, void* input);
  bool Take(const GdkEvent& event);
  void Hold(const GdkEvent& event, TopLevelMirror& mirror);
  void Deliver(GdkEvent& event, dq::HWND top_level);
  bool Offer(dq::HWND target, const KeyStroke& stroke, bool is_control) const;
  void Send(dq::HWND target, const KeyStroke& stroke, bool is_down) const;

  Layer& layer_;
  DragOut* drag_ = nullptr;
  DragIn drag_in_;
  Modifiers modifiers_;
  /// Keys that are down, by their numbers.
  bool down_[256] = {};
};

}  // namespace workbench
