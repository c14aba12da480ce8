// What a window layer draws: one mirror for each window of the library, with a window of the
// toolkit.

#pragma once

#include <functional>
#include <memory>
#include <wx/window.h>

#include "apps/workbench/layer/changes.h"
#include "apps/workbench/layer/scale.h"
#include "dqlib/framework/windows/wnd.h"

namespace workbench {

class Layer;
class TraceLine;
struct KeyStroke;

/// The toolkit's side of a window. It holds nothing that the window holds too: `Apply` reads that
/// and puts the toolkit's window into the same state; what a person does to this one is posted to
/// the window as an act (see `NativeLoop`), and the toolkit's window is put right behind it.
///
/// It is made for a window that lives and dropped when that one has ended; only acts may change the
/// window.
class Mirror {
 public:
  Mirror(Layer& layer, dq::CWnd& window);
  Mirror(const Mirror&) = delete;
  Mirror& operator=(const Mirror&) = delete;
  /// Ends the toolkit's window, with those in it.
  virtual ~Mirror();

  /// Makes the toolkit's window in that of the parent, which is null for a top-level window.
  void Make(wxWindow* parent);

  dq::HWND handle() const { return handle_; }
  /// Only while the library's window lives.
  dq::CWnd& window() const { return *dq::CWnd::FromHandle(handle_); }
  wxWindow* native() const { return native_; }
  /// The window whose mirror this one lies in; null for a top-level window.
  const dq::CWnd* parent() const { return parent_; }

  /// Where the mirrors of the children lie; null if they aren't drawn.
  virtual wxWindow* Inside() { return nullptr; }
  /// What the mouse comes to for the window.
  wxWindow* Pointed() { return Inside() == nullptr ? native_ : Inside(); }
  /// What gets the keyboard for the window.
  virtual wxWindow* Focusable() { return native_; }
  /// Whether the keys and the mouse are the toolkit's control's; else they are the window's.
  virtual bool IsControl() const { return true; }
  /// As an act, on a key that nobody in the library has taken: handles it, if the toolkit's control
  /// wouldn't do so by itself. True if it did.
  virtual bool TakeKey(const KeyStroke& /*stroke*/) { return false; }
  /// Whether the toolkit's control has a use of its own for a tab or an arrow: else the toolkit
  /// would go to another control by it.
  virtual bool TakesMove(dq::WORD /*key*/) const { return false; }
  /// Whether this kind of mirror still serves the window, which has changed.
  virtual bool Serves(const dq::CWnd& /*window*/) const { return true; }

  /// Shows what has changed.
  virtual void Apply(const Changes& changes);
  /// Puts a top-level window up or takes it down, when all others are as they should be.
  virtual void ApplyShown() {}
  /// As an act: the person has worked with the toolkit's control, which has the keyboard.
  virtual void TakeIn() {}
  /// Tells where the parts of it are that a person can hit.
  virtual void Trace(TraceLine& /*line*/) const {}

 protected:
  virtual wxWindow* DoMake(wxWindow* parent) = 0;
  virtual void ShowPlace();
  void ShowFont();
  void ShowToolTip();
  virtual void ShowText() {}
  /// What a control holds: its content, selection or rows have changed.
  virtual void ShowContent(const Changes& /*changes*/) {}

  Layer& layer() const { return layer_; }
  const Scale& scale() const;
  /// Has the act done to the window outside of the toolkit, if the window and this mirror are still
  /// there then.
  void PostFact(std::function<void(dq::CWnd& window)> act);
  /// The same for what a person does: what the toolkit tells while mirrors put it right is no such
  /// thing, and is dropped.
  void Post(std::function<void(dq::CWnd& window)> act);
  /// The same for an act upon a kind of window.
  template <typename Class, typename Act>
  void PostTo(Act act) {
    Post([act](dq::CWnd& window) {
      if (Class* const control = dynamic_cast<Class*>(&window)) act(*control);
    });
  }
  /// The window as its kind; null if another kind of object has taken it over.
  template <typename Class>
  Class* As() const {
    return dynamic_cast<Class*>(&window());
  }
  /// Has the window get the focus when the toolkit's window gets the keyboard.
  void WatchFocus(wxWindow& focusable);

 private:
  Layer& layer_;
  dq::HWND handle_;
  wxWindow* native_ = nullptr;
  const dq::CWnd* parent_;
  /// It has got one of the library's.
  bool has_font_ = false;
};

/// The mirror of the kind that serves the window; null for windows that aren't drawn.
std::unique_ptr<Mirror> MakeMirror(Layer& layer, dq::CWnd& window);

}  // namespace workbench
