// The window layer: draws the library's windows by observing them.

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_map>
#include <vector>
#include <wx/bitmap.h>

#include "apps/workbench/layer/changes.h"
#include "apps/workbench/layer/display.h"
#include "apps/workbench/layer/gtk_outline.h"
#include "apps/workbench/layer/input.h"
#include "apps/workbench/layer/mirror.h"
#include "apps/workbench/layer/native_loop.h"
#include "apps/workbench/layer/scale.h"
#include "apps/workbench/layer/session.h"
#include "dqlib/framework/base/drawing.h"

namespace workbench {

class FrameMirror;
class MenuMirror;
class Trace;

/// The observer of the user-interface thread for its lifetime. It marks what it is told, and shows
/// it when the message loop next takes in native events; so whatever happens to a window in
/// between, the toolkit's one is changed once, and nothing of the toolkit runs while the library
/// does. `docs/window-layer.md` tells more.
class Layer : public dq::WindowObserver {
 public:
  struct Host {
    /// Null for none; not owned.
    Trace* trace = nullptr;
    /// The picture of a command, for tool bars; null for none. Not owned.
    std::function<dq::HBITMAP(dq::UINT command)> picture_of = [](dq::UINT) { return nullptr; };
    /// The display is gone: dialogs are cancelled, and nothing is drawn any more.
    std::function<void()> when_lost = [] {};
  };

  /// Throws `std::runtime_error` if the toolkit can't be started; see `WhyNoDisplay`.
  explicit Layer(Host host);
  ~Layer() override;

  void OnWindowChange(dq::CWnd& window, dq::WindowChange change,
                      const dq::ChangedRange& range) override;
  void OnMenuChange(dq::MenuHandle* menu, dq::MenuChange change,
                    const dq::ChangedRange& range) override;
  bool RunsDialogs() const override { return loop_.HasDisplay(); }
  dq::NativeEvents* GetEvents() override;
  dq::CRect GetFrameWidths(const dq::CWnd& window) override;
  int GetMetric(int metric, int usual) override;
  dq::CSize MeasureText(const dq::LOGFONT* font, std::string_view text,
                        const dq::CSize& usual) override;
  void SetPointer(dq::PointerShape shape) override;
  void ShowWaitPointer(bool show) override;
  dq::UINT TrackMenu(dq::MenuHandle* menu, const dq::MenuSpot& spot, dq::CWnd& owner) override;
  dq::UINT StartDrag(dq::CWnd& from, const dq::COleDataObject& data, dq::UINT effects,
                     dq::COleDropSource& source) override;
  void Beep(dq::UINT type) override;
  dq::CPoint GetPointer() override;
  int GetKeyState(int key) override { return input_.GetKeyState(key); }

  // For the mirrors.

  const Scale& scale() const { return scale_; }
  /// Has the act done to the window outside of the toolkit; dropped if it has ended by then.
  void Post(dq::HWND window, std::function<void(dq::CWnd& window)> act);
  void Post(NativeLoop::Act act) { loop_.Post(std::move(act)); }
  /// The mouse is over the window: the pointer's shape is for it.
  void SetPointed(dq::HWND window) { pointed_ = window; }
  /// Brings the toolkit's windows up to what the library's are.
  void Update();
  /// A person has tried to use a window that they can't use at present.
  void RefuseInput();
  /// Has the window's line traced anew, for it lies elsewhere or has changed.
  void NoteTraced(dq::HWND window) {
    if (host_.trace != nullptr) traced_.insert(window);
  }
  /// Whether mirrors are being put right: what the toolkit tells then isn't a person's doing.
  bool IsShowing() const { return showing_; }
  /// Marks the window as changed, for a mirror that finds itself out of date.
  void Mark(const dq::CWnd& window, dq::WindowChange change);
  /// The mirror of a window, or null.
  Mirror* Find(const dq::CWnd* window) const;
  Mirror* Find(dq::HWND window) const;

  /// Puts a child window, if it is on the display, over those behind it. Controls beside one
  /// another don't cover each other.
  void RaiseInOrder(dq::CWnd& window) const;

  /// The picture of a command in a size of the display's pixels; none if the host has none.
  const wxBitmap& PictureOf(dq::UINT command, const wxSize& size, bool enabled);
  /// Shows where something of the window would come to lie that a person drags, on the screen,
  /// instead of what was shown before for it; nothing if there are no places.
  void ShowOutlines(dq::HWND window, const std::vector<dq::CRect>& places);
  /// Has menus that are marked shown.
  void ShowMenus() { show_menus_ = true; }
  /// The frames that are drawn, for changes of their menus.
  void AddFrame(FrameMirror& frame) { frames_.push_back(&frame); }
  void RemoveFrame(FrameMirror& frame) { std::erase(frames_, &frame); }
  /// Has the keyboard given to what has the focus.
  void ShowFocus() { show_focus_ = true; }
  /// What the window manager puts around windows that aren't shown yet.
  const FrameExtents& FrameExtentsOf(const dq::CWnd& window) const {
    return frame_extents_[window.IsSizable() ? 1 : 0];
  }
  void SetFrameExtents(const dq::CWnd& window, const FrameExtents& extents) {
    frame_extents_[window.IsSizable() ? 1 : 0] = extents;
  }
  /// The person begins to work with a top-level window, or no longer does.
  void NoteActive(dq::HWND window, bool is_active);

 private:
  struct Entry {
    dq::CWnd* window;
    std::unique_ptr<Mirror> mirror;
    Changes changes;
  };

  void LoseDisplay();
  void EndSession();
  Entry& EntryOf(dq::CWnd& window);
  void Forget(const dq::CWnd& window);
  void DropEnded();
  void ShowChanges();
  void ShowWindow(Entry& entry);
  Mirror* MirrorOf(Entry& entry);
  void MarkChildren(dq::CWnd& window);
  void MarkAll(dq::CWnd& window);
  bool IsDrawn(dq::CWnd& window) const;
  void DropMirrors(dq::CWnd& window);
  void UpdateActive();
  void UpdateFocus();
  void UpdateCapture();
  void TakeIn();
  void Settle();
  void LayOutTraced() const;
  void WriteTrace();

  Host host_;
  Toolkit toolkit_;
  NativeLoop loop_;
  Input input_{*this};
  std::optional<SessionWatch> session_;
  Scale scale_;
  /// Of windows that a person can't size, and that they can.
  FrameExtents frame_extents_[2];
  std::unordered_map<dq::HWND, Entry> entries_;
  std::unordered_map<const dq::CWnd*, dq::HWND> handles_;
  /// Those with changes, in the order in which they were told first.
  std::vector<dq::HWND> changed_;
  std::vector<std::unique_ptr<Mirror>> ended_;
  std::vector<FrameMirror*> frames_;
  /// The menu that is shown by itself, or null.
  MenuMirror* tracked_menu_ = nullptr;
  /// By command, width, height and whether they are enabled.
  std::map<std::tuple<dq::UINT, int, int, bool>, wxBitmap> pictures_;
  std::vector<std::unique_ptr<Outline>> outlines_;
  /// Whose they are.
  dq::HWND outlined_ = nullptr;
  bool showing_ = false;
  bool show_menus_ = false;
  bool show_focus_ = false;
  bool show_active_ = false;
  dq::HWND pointed_ = nullptr;
  /// What has the mouse captured in the toolkit.
  dq::HWND captured_ = nullptr;
  /// The top-level window that the person works with; null while that is another program's.
  dq::HWND active_ = nullptr;
  /// It was active when the person went to another program, and hasn't been told yet.
  bool left_ = false;
  /// What is to be traced when all has come to rest, and what was traced last.
  std::set<dq::HWND> traced_;
  std::vector<dq::HWND> gone_;
  dq::HWND traced_focus_ = nullptr;
  dq::HWND traced_active_ = nullptr;
  /// The trace is written when the loop comes back.
  bool trace_waits_ = false;
  dq::WindowObserver* former_ = nullptr;
};

}  // namespace workbench
