#include "apps/workbench/layer/drag_out.h"

#include <utility>
#include <wx/cursor.h>

#include "apps/workbench/layer/input.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/mouse.h"
#include "apps/workbench/layer/top_level_mirror.h"
#include "dqlib/platform/platform.h"

namespace workbench {
namespace {

using dq::DROPEFFECT_NONE;
using dq::UINT;

/// How long another program may take to say whether it takes a drop, and to take it: it may ask the
/// person first.
constexpr gint64 kLongestAnswer = 3 * G_TIME_SPAN_SECOND;
constexpr gint64 kLongestDrop = 5 * G_TIME_SPAN_MINUTE;
/// Whoever has moved the data asks for this.
constexpr const char* kDelete = "DELETE";

GdkAtom Selection() { return gdk_atom_intern_static_string("XdndSelection"); }

GdkSeat* Seat() { return gdk_display_get_default_seat(gdk_display_get_default()); }

std::vector<DataPiece> PiecesOf(const dq::COleDataObject& data) {
  std::vector<DataPiece> pieces;
  for (const UINT format : data.GetFormats()) {
    pieces.push_back({format, dq::platform::Current().clipboard->FormatName(format),
                      data.GetData(format).value_or(std::string())});
  }
  return pieces;
}

/// What the person asks another program to do, by the keys that are held.
GdkDragAction SuggestedAction(UINT keys, UINT effects) {
  const bool shift = (keys & dq::MK_SHIFT) != 0;
  const bool control = (keys & dq::MK_CONTROL) != 0;
  const UINT wanted = shift && control ? dq::DROPEFFECT_LINK
                      : control        ? dq::DROPEFFECT_COPY
                      : shift          ? dq::DROPEFFECT_MOVE
                                       : DROPEFFECT_NONE;
  if (shift || control) return ActionsOf(wanted & effects);
  for (const UINT usual : {dq::DROPEFFECT_COPY, dq::DROPEFFECT_MOVE, dq::DROPEFFECT_LINK}) {
    if ((effects & usual) != 0) return ActionsOf(usual);
  }
  return ActionsOf(DROPEFFECT_NONE);
}

const char* PointerName(UINT effect) {
  switch (effect) {
    case dq::DROPEFFECT_COPY:
      return "copy";
    case dq::DROPEFFECT_MOVE:
      return "move";
    case dq::DROPEFFECT_LINK:
      return "alias";
    default:
      return "no-drop";
  }
}

UINT KeyOfButton(guint button) {
  switch (button) {
    case GDK_BUTTON_PRIMARY:
      return dq::MK_LBUTTON;
    case GDK_BUTTON_MIDDLE:
      return dq::MK_MBUTTON;
    case GDK_BUTTON_SECONDARY:
      return dq::MK_RBUTTON;
    default:
      return 0;
  }
}

void OnAsked(GtkWidget*, GtkSelectionData* selection, guint index, guint, void* pieces) {
  const auto& offered = *static_cast<const std::vector<DataPiece>*>(pieces);
  if (index < offered.size()) {
    PutPiece(*selection, offered[index]);
  } else {
    // Deleted: whoever has begun the drag does that when it is over.
    constexpr gint kBitsOfByte = 8;
    gtk_selection_data_set(selection, gtk_selection_data_get_target(selection), kBitsOfByte,
                           nullptr, 0);
  }
}

}  // namespace

DragOut::DragOut(Layer& layer, const dq::COleDataObject& data, UINT effects,
                 dq::COleDropSource& source)
    : layer_(layer),
      effects_(effects),
      source_(source),
      pieces_(PiecesOf(data)),
      input_(data, effects),
      grabber_(gtk_invisible_new()) {
  gtk_widget_show(grabber_);
}

DragOut::~DragOut() {
  // Ending windows would call the toolkit.
  if (!layer_.RunsDialogs()) {
    static_cast<void>(context_.release());
    return;
  }
  Ungrab();
  if (context_ != nullptr) {
    g_signal_handlers_disconnect_by_data(context_.get(), this);
    if (!is_over_) gdk_drag_abort(context_.get(), time_);
  }
  gtk_widget_destroy(grabber_);
}

void DragOut::Begin() {
  const TargetTable table(pieces_);
  gtk_selection_add_targets(grabber_, Selection(), table.entries(), table.count());
  gtk_selection_add_target(grabber_, Selection(), gdk_atom_intern_static_string(kDelete),
                           static_cast<guint>(pieces_.size()));
  g_signal_connect(grabber_, "selection-get", G_CALLBACK(OnAsked), &pieces_);
  gtk_selection_owner_set(grabber_, Selection(), time_);
  GList* targets = nullptr;
  for (guint at = table.count(); at > 0; --at) {
    targets = g_list_prepend(targets, gdk_atom_intern(table.entries()[at - 1].target, FALSE));
  }
  context_.reset(gdk_drag_begin_for_device(window(), gdk_seat_get_pointer(Seat()), targets));
  g_list_free(targets);
  // The toolkit keeps the event to itself.
  g_signal_connect_swapped(context_.get(), "dnd-finished", G_CALLBACK(OnFinished), this);
  const GdkGrabStatus status = gdk_seat_grab(Seat(), window(), GDK_SEAT_CAPABILITY_ALL, FALSE,
                                             nullptr, nullptr, nullptr, nullptr);
  has_grab_ = status == GDK_GRAB_SUCCESS;
  if (!has_grab_) return End();
  keys_ = HeldMouseKeys();
  Move(PointerPlace(), time_);
  constexpr UINT kButtons = dq::MK_LBUTTON | dq::MK_RBUTTON | dq::MK_MBUTTON;
  // Let go already.
  if ((keys_ & kButtons) == 0) Ask(false);
}

bool DragOut::IsOver() const {
  return is_over_ || (deadline_ != 0 && g_get_monotonic_time() > deadline_);
}

void DragOut::End() {
  Ungrab();
  if (!std::exchange(is_over_, true)) gdk_drag_abort(context_.get(), time_);
}

void DragOut::Ungrab() {
  if (std::exchange(has_grab_, false)) gdk_seat_ungrab(Seat());
}

// ---- Events

void DragOut::OnFinished(DragOut* self) {
  self->effect_ =
      gdk_drag_drop_succeeded(self->context_.get()) != 0 ? self->dropped_ : UINT{DROPEFFECT_NONE};
  self->is_over_ = true;
}

bool DragOut::Take(const GdkEvent& event) {
  if (event.any.window == nullptr || event.any.window != window()) {
    return false;
  }
  switch (event.type) {
    case GDK_MOTION_NOTIFY:
    case GDK_BUTTON_PRESS:
    case GDK_BUTTON_RELEASE:
    case GDK_KEY_PRESS:
    case GDK_KEY_RELEASE:
    case GDK_GRAB_BROKEN:
    case GDK_DRAG_STATUS:
      break;
    default:
      return false;
  }
  const std::shared_ptr<GdkEvent> held(gdk_event_copy(&event), gdk_event_free);
  layer_.Post([held, weak = std::weak_ptr<DragOut*>(self_)] {
    const std::shared_ptr<DragOut*> self = weak.lock();
    if (self != nullptr) (*self)->Handle(held);
  });
  return true;
}

/// One event behind the other, though a handler may run a message loop.
void DragOut::Handle(const std::shared_ptr<GdkEvent>& event) {
  held_.push_back(event);
  if (std::exchange(is_busy_, true)) return;
  struct Rest {
    ~Rest() { is_busy = false; }
    bool& is_busy;
  } const rest{is_busy_};
  while (!held_.empty() && !is_over_) {
    const std::shared_ptr<GdkEvent> next = held_.front();
    held_.erase(held_.begin());
    Deliver(*next);
  }
}

void DragOut::Deliver(const GdkEvent& event) {
  const guint32 time = gdk_event_get_time(&event);
  switch (event.type) {
    case GDK_DRAG_STATUS:
      if (resend_) resend_ = Send();
      if (!over_own_) Feedback();
      if (dropping_) TryDrop();
      return;
    case GDK_GRAB_BROKEN:
      if (!dropping_) End();
      return;
    default:
      break;
  }
  if (dropping_) return;
  if (event.type == GDK_KEY_PRESS || event.type == GDK_KEY_RELEASE) {
    keys_ = HeldMouseKeys();
    Move(at_, time);
    return Ask(event.type == GDK_KEY_PRESS && event.key.keyval == GDK_KEY_Escape);
  }
  GdkModifierType state{};
  gdk_event_get_state(&event, &state);
  keys_ = MouseKeysOf(state);
  // The state is that of before.
  if (event.type == GDK_BUTTON_PRESS) keys_ |= KeyOfButton(event.button.button);
  if (event.type == GDK_BUTTON_RELEASE) keys_ &= ~KeyOfButton(event.button.button);
  double x = 0;
  double y = 0;
  gdk_event_get_root_coords(&event, &x, &y);
  Move(wxPoint(static_cast<int>(x), static_cast<int>(y)), time);
  if (event.type != GDK_MOTION_NOTIFY) Ask(false);
}

// ---- The way

dq::CPoint DragOut::Place() const { return layer_.scale().ToLogical(at_); }

dq::CWnd* DragOut::Taker() const {
  GdkWindow* const window = gdk_drag_context_get_dest_window(context_.get());
  return window == nullptr ? nullptr : TakerAt(Input::MirrorOf(*window), Place());
}

void DragOut::Move(const wxPoint& at, guint32 time) {
  at_ = at;
  time_ = time;
  resend_ = Send();
  dq::CWnd* const taker = Taker();
  if (taker == nullptr && over_own_) input_.Leave();
  over_own_ = taker != nullptr;
  if (over_own_) own_effect_ = input_.Move(taker, keys_, Place());
  Feedback();
}

/// Tells the window under the pointer; true if it is still about to answer to what it was told
/// before, and is to be told anew then.
bool DragOut::Send() {
  GdkWindow* window = nullptr;
  GdkDragProtocol protocol{};
  gdk_drag_find_window_for_screen(context_.get(), nullptr, gdk_screen_get_default(), at_.x, at_.y,
                                  &window, &protocol);
  const bool is_waiting =
      gdk_drag_motion(context_.get(), window, protocol, at_.x, at_.y,
                      SuggestedAction(keys_, effects_), ActionsOf(effects_), time_) != 0;
  if (window != nullptr) g_object_unref(window);
  return is_waiting;
}

UINT DragOut::Effect() const {
  if (over_own_) return own_effect_;
  return EffectsOf(gdk_drag_context_get_selected_action(context_.get())) & effects_;
}

void DragOut::Feedback() {
  if (is_over_ || dropping_ || source_.GiveFeedback(Effect())) return;
  GdkCursor* const pointer =
      gdk_cursor_new_from_name(gdk_display_get_default(), PointerName(Effect()));
  gdk_window_set_cursor(window(), pointer);
  if (pointer != nullptr) g_object_unref(pointer);
}

void DragOut::SetPointer(dq::PointerShape shape) {
  if (!has_grab_) return;
  gdk_window_set_cursor(window(), ToNativePointer(shape).GetCursor());
}

void DragOut::Ask(bool escape) {
  switch (source_.QueryContinueDrag(escape, keys_)) {
    case dq::DragStep::kGoOn:
      return;
    case dq::DragStep::kGiveUp:
      return End();
    case dq::DragStep::kDrop:
      dropping_ = true;
      Ungrab();
      return TryDrop();
  }
}

// ---- The drop

void DragOut::TryDrop() {
  if (!over_own_) return DropBeyond();
  // The target may have come to its end meanwhile.
  dq::CWnd* const taker = Taker();
  End();
  effect_ = input_.Drop(taker, keys_, Place());
}

/// Into a window that isn't this program's, or the toolkit's own control, once it has answered to
/// where the drag is.
void DragOut::DropBeyond() {
  const bool has_window = gdk_drag_context_get_dest_window(context_.get()) != nullptr;
  if (has_window && dropped_ == DROPEFFECT_NONE && Send()) {
    deadline_ = g_get_monotonic_time() + kLongestAnswer;
    return;
  }
  if (dropped_ != DROPEFFECT_NONE) return;
  dropped_ = Effect();
  if (!has_window || dropped_ == DROPEFFECT_NONE) return End();
  deadline_ = g_get_monotonic_time() + kLongestDrop;
  gdk_drag_drop(context_.get(), time_);
}

}  // namespace workbench
