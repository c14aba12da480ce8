#include "apps/workbench/layer/layer.h"

#include <algorithm>
#include <functional>
#include <utility>
#include <wx/toplevel.h>
#include <wx/utils.h>

#include "apps/workbench/layer/frame_mirror.h"
#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/menu_mirror.h"
#include "apps/workbench/layer/pictures.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/top_level_mirror.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/platform/dialog_view.h"

namespace workbench {

using dq::CWnd;
using dq::HWND;
using dq::WindowChange;

namespace {

long long NumberOf(HWND handle) {
  return static_cast<long long>(reinterpret_cast<std::uintptr_t>(handle));
}

/// What the line of a window tells of it. Its rectangle is in the display's pixels, within the
/// window that it lies in.
void TraceWindow(const Mirror& mirror, TraceLine& line) {
  const CWnd& window = mirror.window();
  const CWnd* const parent = window.GetParent();
  dq::platform::DialogControl control;
  window.Describe(control);
  line.Add("window", NumberOf(mirror.handle()));
  line.Add("parent", NumberOf(parent == nullptr ? nullptr : parent->GetSafeHwnd()));
  line.Add("class", window.GetWindowClass());
  line.Add("id", static_cast<long long>(window.GetDlgCtrlID()));
  // What a person mustn't see, nobody should.
  if (!control.secret) line.Add("text", window.GetWindowText().View());
  line.Add("value", control.value);
  line.Add("shown", window.IsShown());
  line.Add("enabled", window.IsWindowEnabled());
  const wxRect place = mirror.native()->GetRect();
  line.Add("rect", {place.x, place.y, place.width, place.height});
  mirror.Trace(line);
}

}  // namespace

Layer::Layer(Host host)
    : host_(std::move(host)),
      toolkit_([this] { loop_.LoseDisplay(); }),
      loop_({.update = [this] { Update(); },
             .handled = [this] { TakeIn(); },
             .settled = [this] { Settle(); },
             .lost = [this] { LoseDisplay(); }}),
      scale_(DisplayScale()),
      frame_extents_{AskFrameExtents(false), AskFrameExtents(true)} {
  InstallDialogStyle(scale_);
  session_.emplace([this] { Post([this] { EndSession(); }); });
  dq::SetScreenSize(scale_.ToLogical(DisplaySize()));
  former_ = dq::SetWindowObserver(this);
}

Layer::~Layer() {
  dq::SetWindowObserver(former_);
  for (auto& [handle, entry] : entries_) {
    if (entry.mirror != nullptr) ended_.push_back(std::move(entry.mirror));
  }
  if (loop_.HasDisplay()) {
    // While all that mirrors know of the layer is there.
    DropEnded();
    return;
  }
  // Ending windows would call the toolkit. They stay until the process ends.
  static auto& kept = *new std::vector<std::unique_ptr<Mirror>>;
  static auto& kept_outlines = *new std::vector<std::unique_ptr<Outline>>;
  for (auto& mirror : ended_) kept.push_back(std::move(mirror));
  for (auto& outline : outlines_) kept_outlines.push_back(std::move(outline));
}

/// The toolkit isn't called any more, so it couldn't tell of signals either.
void Layer::LoseDisplay() {
  session_.reset();
  host_.when_lost();
}

/// Every top-level window is asked, and one that says no keeps the program; else all are told that
/// the session ends, and so does the message loop.
void Layer::EndSession() {
  std::vector<HWND> windows;
  for (const auto& [handle, entry] : entries_) {
    if (entry.window->GetParent() == nullptr) windows.push_back(handle);
  }
  std::ranges::sort(windows);
  bool ends = true;
  std::size_t asked = 0;
  while (ends && asked < windows.size()) {
    CWnd* const window = CWnd::FromHandle(windows[asked++]);
    ends = window == nullptr || window->SendMessage(dq::WM_QUERYENDSESSION) != 0;
  }
  windows.resize(asked);
  for (const HWND each : windows) {
    CWnd* const window = CWnd::FromHandle(each);
    if (window != nullptr) window->SendMessage(dq::WM_ENDSESSION, ends ? 1 : 0);
  }
  if (ends) dq::PostQuitMessage(0);
}

// ---- What the library tells

Layer::Entry& Layer::EntryOf(CWnd& window) {
  const HWND handle = window.GetSafeHwnd();
  const auto [found, is_new] = entries_.try_emplace(handle, Entry{&window, nullptr, {}});
  Entry& entry = found->second;
  if (is_new) {
    entry.changes = Changes::All();
    changed_.push_back(handle);
  } else if (entry.window != &window) {
    handles_.erase(entry.window);
    entry.window = &window;
  }
  handles_[&window] = handle;
  return entry;
}

void Layer::Mark(const CWnd& window, WindowChange change) {
  const auto found = entries_.find(window.GetSafeHwnd());
  if (found == entries_.end()) return;
  Changes& changes = found->second.changes;
  if (changes.empty()) changed_.push_back(found->first);
  changes.Add(change);
}

void Layer::OnWindowChange(CWnd& window, WindowChange change, const dq::ChangedRange&) {
  if (change == WindowChange::kDestroyed) {
    Forget(window);
    return;
  }
  EntryOf(window);
  if (change == WindowChange::kFocus) ShowFocus();
  if (change == WindowChange::kActive) show_active_ = true;
  if (change == WindowChange::kReplaced) {
    MarkAll(window);
  } else {
    Mark(window, change);
  }
}

/// The handle is dead already, and the object perhaps about to be.
void Layer::Forget(const CWnd& window) {
  const auto handle = handles_.find(&window);
  if (handle == handles_.end()) return;
  const auto entry = entries_.find(handle->second);
  if (entry->second.mirror != nullptr) ended_.push_back(std::move(entry->second.mirror));
  if (host_.trace != nullptr) gone_.push_back(entry->first);
  entries_.erase(entry);
  handles_.erase(handle);
}

void Layer::OnMenuChange(dq::HMENU menu, dq::MenuChange, const dq::ChangedRange&) {
  for (FrameMirror* const frame : frames_) show_menus_ = frame->MarkMenu(menu) || show_menus_;
  if (tracked_menu_ != nullptr) show_menus_ = tracked_menu_->Mark(menu) || show_menus_;
}

/// The layer is set, perhaps again: it hasn't been told of windows that have ended meanwhile.
dq::NativeEvents* Layer::GetEvents() {
  for (auto each = entries_.begin(); each != entries_.end();) {
    Entry& entry = each->second;
    if (CWnd::FromHandle(each->first) == entry.window) {
      ++each;
      continue;
    }
    if (entry.mirror != nullptr) ended_.push_back(std::move(entry.mirror));
    handles_.erase(entry.window);
    each = entries_.erase(each);
  }
  return &loop_;
}

// ---- What the toolkit shows

void Layer::Update() {
  showing_ = true;
  ShowChanges();
  UpdateActive();
  // Behind the others, so that the keyboard goes straight to the window that has it next.
  DropEnded();
  if (outlined_ != nullptr && Find(outlined_) == nullptr) ShowOutlines(outlined_, {});
  UpdateFocus();
  UpdateCapture();
  if (std::exchange(show_menus_, false)) {
    for (FrameMirror* const frame : frames_) frame->UpdateMenu();
    if (tracked_menu_ != nullptr) tracked_menu_->Update();
  }
  showing_ = false;
}

/// Those of windows before those around them, whose ends would end the toolkit's windows in them.
void Layer::DropEnded() {
  const auto depth = [](const std::unique_ptr<Mirror>& mirror) {
    int above = 0;
    for (const wxWindow* at = mirror->native(); at != nullptr; at = at->GetParent()) ++above;
    return above;
  };
  std::ranges::stable_sort(ended_, std::greater<>(), depth);
  for (auto& mirror : ended_) mirror.reset();
  ended_.clear();
}

void Layer::ShowChanges() {
  std::vector<HWND> top_level;
  while (!changed_.empty()) {
    for (const HWND handle : std::exchange(changed_, {})) {
      const auto found = entries_.find(handle);
      if (found == entries_.end()) continue;
      ShowWindow(found->second);
      if (found->second.window->GetParent() == nullptr) top_level.push_back(handle);
    }
  }
  for (const HWND handle : top_level) {
    if (Mirror* const mirror = Find(handle)) mirror->ApplyShown();
  }
}

void Layer::ShowWindow(Entry& entry) {
  Changes changes = std::exchange(entry.changes, {});
  if (changes.empty()) return;
  CWnd& window = *entry.window;
  // A top-level window is made with all in it when it is shown.
  if (entry.mirror == nullptr && !IsDrawn(window)) return;
  NoteTraced(window.GetSafeHwnd());
  const bool is_moved = changes.Has(WindowChange::kOrder) && entry.mirror != nullptr &&
                        entry.mirror->parent() != window.GetParent();
  if (entry.mirror != nullptr && (is_moved || !entry.mirror->Serves(window))) {
    DropMirrors(window);
    changes = Changes::All();
  }
  Mirror* const mirror = MirrorOf(entry);
  if (mirror == nullptr) return;
  mirror->Apply(changes);
  if (changes.Has(WindowChange::kOrder)) RaiseInOrder(window);
}

void Layer::RaiseInOrder(CWnd& window) const {
  if (window.GetParent() == nullptr) return;
  for (CWnd* each = &window; each != nullptr; each = each->GetPrevWindow()) {
    const Mirror* const mirror = Find(each);
    if (mirror != nullptr && !mirror->IsControl()) mirror->native()->Raise();
  }
}

/// Makes it, and those of the windows around it.
Mirror* Layer::MirrorOf(Entry& entry) {
  if (entry.mirror != nullptr) return entry.mirror.get();
  CWnd& window = *entry.window;
  wxWindow* inside = nullptr;
  if (CWnd* const parent = window.GetParent()) {
    Entry& above = EntryOf(*parent);
    Mirror* const mirror = MirrorOf(above);
    inside = mirror == nullptr ? nullptr : mirror->Inside();
    if (inside == nullptr) return nullptr;
  }
  std::unique_ptr<Mirror> made = MakeMirror(*this, window);
  if (made == nullptr) return nullptr;
  made->Make(inside);
  Mirror* const mirror = made.get();
  entry.mirror = std::move(made);
  if (window.GetParent() == nullptr) MarkChildren(window);
  return mirror;
}

/// Marks all that the windows in it have to show.
void Layer::MarkChildren(CWnd& window) {
  for (CWnd* child = window.GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
    MarkAll(*child);
    MarkChildren(*child);
  }
}

void Layer::MarkAll(CWnd& window) {
  Entry& entry = EntryOf(window);
  if (entry.changes.empty()) changed_.push_back(window.GetSafeHwnd());
  entry.changes = Changes::All();
}

bool Layer::IsDrawn(CWnd& window) const {
  CWnd* const top = window.GetTopLevelParent();
  return top->IsShown() || Find(top) != nullptr;
}

/// Drops the mirrors of the window and of those in it, which are to be made anew.
void Layer::DropMirrors(CWnd& window) {
  for (CWnd* child = window.GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
    DropMirrors(*child);
  }
  EntryOf(window).mirror.reset();
  MarkAll(window);
}

Mirror* Layer::Find(const CWnd* window) const {
  return window == nullptr ? nullptr : Find(window->GetSafeHwnd());
}

Mirror* Layer::Find(HWND window) const {
  const auto found = entries_.find(window);
  return found == entries_.end() ? nullptr : found->second.mirror.get();
}

void Layer::Post(HWND window, std::function<void(CWnd&)> act) {
  loop_.Post([window, act = std::move(act)] {
    if (CWnd* const live = CWnd::FromHandle(window)) act(*live);
  });
}

/// What the person has done to the control that has the keyboard.
void Layer::TakeIn() {
  if (Mirror* const mirror = Find(CWnd::GetFocus())) mirror->TakeIn();
}

// ---- The active window and the focus

void Layer::NoteActive(HWND window, bool is_active) {
  if (!is_active) {
    if (active_ == window) active_ = nullptr;
    left_ = true;
    return;
  }
  active_ = window;
  left_ = false;
  // Only now the window manager has put it where it is.
  NoteTraced(window);
  Post(window, [this](CWnd& live) {
    if (live.IsWindowEnabled()) {
      live.SetActiveWindow(wxGetMouseState().LeftIsDown());
    } else {
      // The dialog above it is to be answered first.
      show_active_ = true;
    }
    ShowFocus();
  });
}

void Layer::UpdateActive() {
  if (!std::exchange(show_active_, false)) return;
  const auto* const mirror = dynamic_cast<TopLevelMirror*>(Find(CWnd::GetActiveWindow()));
  if (mirror == nullptr || !mirror->top_level()->IsShown()) return;
  if (!IsActive(*mirror->top_level())) Activate(*mirror->top_level());
}

void Layer::UpdateFocus() {
  if (!std::exchange(show_focus_, false)) return;
  const CWnd* const focus = CWnd::GetFocus();
  Mirror* const mirror = Find(focus);
  wxWindow* const native = mirror == nullptr ? nullptr : mirror->Focusable();
  if (native != nullptr && !HasKeyboard(*native)) GrabKeyboard(*native);
}

void Layer::UpdateCapture() {
  const CWnd* const capture = CWnd::GetCapture();
  const HWND now = capture == nullptr ? nullptr : capture->GetSafeHwnd();
  const HWND former = std::exchange(captured_, now);
  if (former == now) return;
  Mirror* const released = Find(former);
  if (released != nullptr && released->Pointed()->HasCapture()) released->Pointed()->ReleaseMouse();
  Mirror* const taker = Find(now);
  if (taker != nullptr && !taker->Pointed()->HasCapture()) taker->Pointed()->CaptureMouse();
}

void Layer::Settle() {
  // Only now, for the next window may have become active behind the former one.
  if (std::exchange(left_, false) && active_ == nullptr) {
    Post([] { CWnd::LeaveActiveWindow(); });
  }
  if (host_.trace != nullptr) WriteTrace();
}

void Layer::RefuseInput() {
  wxBell();
  show_active_ = true;
}

/// Who reads the trace uses the mouse next, where all is to be as it tells.
void Layer::LayOutTraced() const {
  for (const HWND handle : traced_) {
    const Mirror* const mirror = Find(handle);
    if (mirror == nullptr) continue;
    const auto* const top =
        dynamic_cast<TopLevelMirror*>(Find(mirror->window().GetTopLevelParent()));
    if (top != nullptr) LayOutNow(*top->top_level());
  }
  SyncDisplay();
}

void Layer::WriteTrace() {
  const CWnd* const focus = CWnd::GetFocus();
  const HWND now = focus == nullptr ? nullptr : focus->GetSafeHwnd();
  const bool is_other = traced_focus_ != now || traced_active_ != active_;
  if (gone_.empty() && traced_.empty() && !is_other) return;
  LayOutTraced();
  // What has come into sight may have to be brought in order. Then the loop comes back here; once,
  // for there may be work without end.
  if (loop_.HasWork() && !std::exchange(trace_waits_, true)) return;
  trace_waits_ = false;
  traced_focus_ = now;
  traced_active_ = active_;
  for (const HWND handle : std::exchange(gone_, {})) {
    TraceLine line("gone");
    line.Add("window", NumberOf(handle));
    host_.trace->Write(line);
  }
  for (const HWND handle : std::exchange(traced_, {})) {
    const Mirror* const mirror = Find(handle);
    if (mirror == nullptr) continue;
    TraceLine line("window");
    TraceWindow(*mirror, line);
    host_.trace->Write(line);
  }
  TraceLine line("settled");
  line.Add("focus", NumberOf(now));
  line.Add("active", NumberOf(active_));
  host_.trace->Write(line);
}

void Layer::ShowOutlines(HWND window, const std::vector<dq::CRect>& places) {
  if (places.empty() && outlined_ != window) return;
  outlined_ = window;
  outlines_.resize(places.size());
  for (std::size_t at = 0; at < places.size(); ++at) {
    if (outlines_[at] == nullptr) outlines_[at] = std::make_unique<Outline>();
    outlines_[at]->Show(scale_.ToNative(places[at]));
  }
}

const wxBitmap& Layer::PictureOf(dq::UINT command, const wxSize& size, bool enabled) {
  const auto [found, is_new] = pictures_.try_emplace({command, size.x, size.y, enabled});
  if (is_new) found->second = ToCommandPicture(host_.picture_of(command), size, enabled);
  return found->second;
}

}  // namespace workbench
