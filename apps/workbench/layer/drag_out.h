// A drag that begins in one of the program's windows.

#pragma once

#include <functional>
#include <gtk/gtk.h>
#include <memory>
#include <vector>
#include <wx/gdicmn.h>

#include "apps/workbench/layer/gtk_drag.h"
#include "apps/workbench/layer/gtk_formats.h"
#include "dqlib/framework/windows/drag_drop.h"
#include "dqlib/framework/windows/screen.h"

namespace workbench {

class Layer;

/// Has the pointer and the keyboard, from `Begin` until it is over. Over windows of this program
/// with a target of drops the data go straight to that; to all others, those of other programs and
/// the toolkit's own controls, by the display's protocol. Nothing in it is the dragging window's,
/// which may end meanwhile.
class DragOut {
 public:
  /// The source lives longer.
  DragOut(Layer& layer, const dq::COleDataObject& data, dq::UINT effects,
          dq::COleDropSource& source);
  DragOut(const DragOut&) = delete;
  DragOut& operator=(const DragOut&) = delete;
  /// Gives it up, if it isn't over.
  ~DragOut();

  /// As an act. What is thrown by the source or a target goes on to the caller, here and in the
  /// acts that follow.
  void Begin();
  bool IsOver() const;
  /// That which has the pointer meanwhile.
  GdkWindow* window() const { return gtk_widget_get_window(grabber_); }
  /// The effect of the drop; `DROPEFFECT_NONE` if there was none.
  dq::UINT effect() const { return effect_; }

  /// Whether the event is the drag's, which handles it in an act.
  bool Take(const GdkEvent& event);
  /// The source or a target has chosen the pointer's shape.
  void SetPointer(dq::PointerShape shape);

 private:
  static void OnFinished(DragOut* self);
  void Handle(const std::shared_ptr<GdkEvent>& event);
  void Deliver(const GdkEvent& event);
  void Move(const wxPoint& at, guint32 time);
  bool Send();
  void Feedback();
  void Ask(bool escape);
  void TryDrop();
  void DropBeyond();
  void End();
  void Ungrab();
  dq::UINT Effect() const;
  dq::CPoint Place() const;
  dq::CWnd* Taker() const;

  Layer& layer_;
  dq::UINT effects_;
  dq::COleDropSource& source_;
  std::vector<DataPiece> pieces_;
  /// The drag over windows of this program.
  dq::DragInput input_;
  /// The window that has the pointer and offers the data.
  GtkWidget* grabber_;
  std::unique_ptr<GdkDragContext, ContextDeleter> context_;
  wxPoint at_;
  guint32 time_ = GDK_CURRENT_TIME;
  dq::UINT keys_ = 0;
  /// Whether it is over a taker of this program, and what that one would do.
  bool over_own_ = false;
  dq::UINT own_effect_ = dq::DROPEFFECT_NONE;
  /// Where it was sent last it has gone on.
  bool resend_ = false;
  bool has_grab_ = false;
  bool dropping_ = false;
  bool is_over_ = false;
  dq::UINT effect_ = dq::DROPEFFECT_NONE;
  /// What another program is doing with what was dropped there.
  dq::UINT dropped_ = dq::DROPEFFECT_NONE;
  /// Until when another program has time to answer; 0 for no limit.
  gint64 deadline_ = 0;
  /// Events that came while one is handled.
  bool is_busy_ = false;
  std::vector<std::shared_ptr<GdkEvent>> held_;
  /// Acts that come behind the drag's end find it gone.
  std::shared_ptr<DragOut*> self_ = std::make_shared<DragOut*>(this);
};

}  // namespace workbench
