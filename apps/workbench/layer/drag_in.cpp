#include "apps/workbench/layer/drag_in.h"

#include <utility>

#include "apps/workbench/layer/input.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/top_level_mirror.h"
#include "dqlib/platform/platform.h"

namespace workbench {
namespace {

using dq::DROPEFFECT_NONE;
using dq::UINT;

std::vector<OfferedFormat> FormatsOf(GdkDragContext& context) {
  std::vector<GdkAtom> targets;
  for (const GList* each = gdk_drag_context_list_targets(&context); each != nullptr;
       each = each->next) {
    targets.push_back(static_cast<GdkAtom>(each->data));
  }
  return workbench::FormatsOf(targets, [](std::string_view name) {
    return dq::platform::Current().clipboard->RegisterFormat(name);
  });
}

}  // namespace

DragIn::~DragIn() {
  // Ending a window would call the toolkit.
  if (asker_ != nullptr && layer_.RunsDialogs()) gtk_widget_destroy(asker_);
}

bool DragIn::Take(const GdkEvent& event) {
  switch (event.type) {
    case GDK_DRAG_ENTER:
    case GDK_DRAG_MOTION:
    case GDK_DRAG_LEAVE:
    case GDK_DROP_START:
      break;
    default:
      return false;
  }
  if (event.dnd.window == nullptr || Input::MirrorOf(*event.dnd.window) == nullptr) return false;
  const std::shared_ptr<GdkEvent> held(gdk_event_copy(&event), gdk_event_free);
  layer_.Post([this, held] { Deliver(*held); });
  return true;
}

/// To the toolkit.
void DragIn::Pass(GdkEvent& event) {
  layer_.Update();
  if (gdk_window_is_destroyed(event.dnd.window) == 0) gtk_main_do_event(&event);
}

void DragIn::Deliver(GdkEvent& event) {
  GdkDragContext* const context = event.dnd.context;
  if (visit_ == nullptr || visit_->context.get() != context) {
    Leave();
    visit_ = std::make_shared<Visit>();
    visit_->context.reset(static_cast<GdkDragContext*>(g_object_ref(context)));
    visit_->is_own = own_ != nullptr && gdk_drag_context_get_source_window(context) == own_;
  }
  switch (event.type) {
    case GDK_DRAG_MOTION:
      return Move(event);
    case GDK_DROP_START:
      if (!visit_->over_own) return Pass(event);
      visit_->is_dropped = true;
      visit_->time = event.dnd.time;
      if (visit_->input != nullptr) Answer(visit_);
      return;
    case GDK_DRAG_LEAVE:
      Leave();
      return Pass(event);
    default:
      return Pass(event);
  }
}

void DragIn::Move(GdkEvent& event) {
  const std::shared_ptr<Visit> visit = visit_;
  const TopLevelMirror* const top =
      gdk_window_is_destroyed(event.dnd.window) != 0 ? nullptr : Input::MirrorOf(*event.dnd.window);
  visit->at = layer_.scale().ToLogical(wxPoint(event.dnd.x_root, event.dnd.y_root));
  visit->time = event.dnd.time;
  if (top == nullptr || top->IsBlocked()) {
    Leave();
    return gdk_drag_status(visit->context.get(), GdkDragAction(), visit->time);
  }
  if (TakerAt(top, visit->at) == nullptr) {
    Leave();
    return Pass(event);
  }
  if (!std::exchange(visit->over_own, true)) {
    // From the toolkit's control, if it was over one.
    const std::unique_ptr<GdkEvent, void (*)(GdkEvent*)> left(gdk_event_copy(&event),
                                                              gdk_event_free);
    left->dnd.type = GDK_DRAG_LEAVE;
    Pass(*left);
  }
  if (visit->is_own) {
    gdk_drag_status(visit->context.get(), GdkDragAction(), visit->time);
  } else if (visit->input != nullptr) {
    Answer(visit);
  } else {
    Fetch(visit);
  }
}

/// It is over no taker any more.
void DragIn::Leave() {
  const std::shared_ptr<Visit> visit = visit_;
  if (visit == nullptr || visit->is_dropped || !std::exchange(visit->over_own, false)) return;
  if (visit->input != nullptr) visit->input->Leave();
}

// ---- The data

/// Has the data asked for, if they aren't.
void DragIn::Fetch(const std::shared_ptr<Visit>& visit) {
  if (std::exchange(visit->has_begun, true)) return;
  visit->formats = FormatsOf(*visit->context);
  const bool is_asking = fetching_ != nullptr;
  fetching_ = visit;
  if (!is_asking) AskNext();
}

/// One format behind the other, as the toolkit answers one question at a time.
void DragIn::AskNext() {
  const std::shared_ptr<Visit> visit = fetching_;
  if (asker_ == nullptr) {
    asker_ = gtk_invisible_new();
    gtk_widget_show(asker_);
    g_signal_connect(asker_, "selection-received", G_CALLBACK(OnReceived), this);
  }
  while (visit->asked < visit->formats.size()) {
    if (gtk_selection_convert(asker_, gdk_drag_get_selection(visit->context.get()),
                              visit->formats[visit->asked].target, visit->time) != 0) {
      return;
    }
    ++visit->asked;
  }
  fetching_ = nullptr;
  layer_.Post([this, visit] {
    visit->input = std::make_unique<dq::DragInput>(
        visit->data, EffectsOf(gdk_drag_context_get_actions(visit->context.get())));
    if (visit->over_own) Answer(visit);
  });
}

void DragIn::OnReceived(GtkWidget*, GtkSelectionData* selection, guint, void* self) {
  auto& own = *static_cast<DragIn*>(self);
  const std::shared_ptr<Visit> visit = own.fetching_;
  if (visit == nullptr) return;
  // Of a drag that has left meanwhile the answer may be to an earlier question.
  const bool is_asked =
      visit->asked < visit->formats.size() &&
      visit->formats[visit->asked].target == gtk_selection_data_get_target(selection);
  if (is_asked) {
    const dq::UINT format = visit->formats[visit->asked].format;
    if (const auto bytes = BytesOf(*selection, format)) visit->data.SetData(format, *bytes);
    ++visit->asked;
  }
  own.layer_.Post([&own] {
    if (own.fetching_ != nullptr) own.AskNext();
  });
}

// ---- What the targets say

/// Tells the program that drags what would become of it here, or has become of it.
void DragIn::Answer(std::shared_ptr<Visit> visit) {
  GdkWindow* const window = gdk_drag_context_get_dest_window(visit->context.get());
  const TopLevelMirror* const top = window == nullptr || gdk_window_is_destroyed(window) != 0
                                        ? nullptr
                                        : Input::MirrorOf(*window);
  dq::CWnd* const taker = TakerAt(top, visit->at);
  if (visit->is_dropped) return Drop(std::move(visit), taker);
  const UINT effect = visit->input->Move(taker, HeldMouseKeys(), visit->at);
  gdk_drag_status(visit->context.get(), ActionsOf(effect), visit->time);
}

/// The target may end what else holds the visit.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void DragIn::Drop(std::shared_ptr<Visit> visit, dq::CWnd* taker) {
  // The source waits for an answer whatever the target does.
  struct Finish {
    ~Finish() {
      gtk_drag_finish(visit.context.get(), effect == DROPEFFECT_NONE ? FALSE : TRUE,
                      effect == dq::DROPEFFECT_MOVE ? TRUE : FALSE, visit.time);
    }
    const Visit& visit;
    UINT effect = DROPEFFECT_NONE;
  } finish{*visit};
  if (visit_ == visit) visit_ = nullptr;
  finish.effect = visit->input->Drop(taker, HeldMouseKeys(), visit->at);
}

}  // namespace workbench
