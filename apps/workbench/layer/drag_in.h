// Drags that other programs, and the toolkit's own controls, bring over the program's windows.

#pragma once

#include <gtk/gtk.h>
#include <memory>
#include <string_view>
#include <vector>
#include <wx/gdicmn.h>

#include "apps/workbench/layer/gtk_drag.h"
#include "apps/workbench/layer/gtk_formats.h"
#include "dqlib/framework/windows/drag_drop.h"

namespace workbench {

class Layer;

/// Reports drags over windows with a target of drops as `dq::DragInput`, with the data, which it
/// fetches when a drag first comes over one; what is dragged over others it leaves to the toolkit's
/// controls.
class DragIn {
 public:
  explicit DragIn(Layer& layer) : layer_(layer) {}
  DragIn(const DragIn&) = delete;
  DragIn& operator=(const DragIn&) = delete;
  ~DragIn();

  /// The window that a drag of this program's comes from, null for none: that reports it itself.
  void SetOwn(GdkWindow* source) { own_ = source; }

  /// Whether the event is one of a drag over a top-level window of the program, which is handled in
  /// an act.
  bool Take(const GdkEvent& event);

 private:
  /// One drag over one top-level window.
  struct Visit {
    std::unique_ptr<GdkDragContext, ContextDeleter> context;
    std::vector<OfferedFormat> formats;
    /// The format that is asked for.
    std::size_t asked = 0;
    dq::COleDataObject data;
    /// Once the data are there.
    std::unique_ptr<dq::DragInput> input;
    /// Where it is.
    dq::CPoint at;
    guint32 time = GDK_CURRENT_TIME;
    bool is_own = false;
    bool has_begun = false;
    bool over_own = false;
    bool is_dropped = false;
  };

  void Deliver(GdkEvent& event);
  void Pass(GdkEvent& event);
  void Move(GdkEvent& event);
  void Leave();
  void Fetch(const std::shared_ptr<Visit>& visit);
  void AskNext();
  void Answer(std::shared_ptr<Visit> visit);
  void Drop(std::shared_ptr<Visit> visit, dq::CWnd* taker);
  static void OnReceived(GtkWidget* widget, GtkSelectionData* selection, guint time, void* self);

  Layer& layer_;
  GdkWindow* own_ = nullptr;
  /// Asks for data; null until then.
  GtkWidget* asker_ = nullptr;
  std::shared_ptr<Visit> visit_;
  /// Whose data are asked for.
  std::shared_ptr<Visit> fetching_;
};

}  // namespace workbench
