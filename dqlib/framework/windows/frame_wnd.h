// Frames: windows with a main menu, bars and a view, whose commands go to what is active in them.

#pragma once

#include "dqlib/framework/windows/control_bar.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/view.h"

namespace dq {

class CStatusBar;

/// A frame. Commands go to its active view first, then to the frame, then to the application. A
/// frame that a document template has made deletes itself when its window ends; any other one is
/// its maker's. The thread of the application ends with its main window, if that is a frame.
class CFrameWnd : public CWnd {
  DECLARE_DYNCREATE(CFrameWnd)
  CFrameWnd() = default;
  ~CFrameWnd() override;

  /// Makes a top-level frame with the menu of the id (0 for none) by the chain of resource modules,
  /// and what `OnCreateClient` makes in it for the context, which may be null. It is laid out then.
  bool Create(const char* class_name, const char* caption, const CRect& place, UINT menu_id = 0,
              const CCreateContext* context = nullptr, bool visible = true);
  /// Makes the frame, hidden, with the menu, the key combinations and the title of one id: the
  /// title is the first part of the string up to "\n". What isn't there is left out.
  virtual bool LoadFrame(UINT resource_id, CWnd* parent = nullptr,
                         const CCreateContext* context = nullptr);

  /// Makes the view of the context's class, and has it delete itself with its window. Null if the
  /// class is none of a view or the window can't be made.
  CView* CreateView(const CCreateContext* context, int id = kFirstPaneId);

  /// The view that works in the frame, or null. A view that ends stops being the active one.
  CView* GetActiveView() const;
  /// Makes a view of the frame the active one, or none with null. The former one and, if `notify`,
  /// the new one are told by `CView::OnActivateView`.
  virtual void SetActiveView(CView* view, bool notify = true);
  /// The document of the active view, or null.
  virtual CDocument* GetActiveDocument();
  /// The active child frame, or the frame itself.
  virtual CFrameWnd* GetActiveFrame() { return this; }
  /// Whether no other child frame is active in its place.
  virtual bool IsActiveFrame() const { return true; }

  /// Lays out the frame's client area: its visible bars take their edges in the order of the
  /// children, but those that can be docked behind the others; the child `kFirstPaneId` fills the
  /// rest. Called when the size changes and a bar
  /// comes, goes or changes; calls within it are put off to its end.
  virtual void RecalcLayout();
  /// Has that done when the thread is idle next.
  void DelayRecalcLayout() { layout_due_ = true; }
  /// What the bars left when it was done last, in client coordinates.
  const CRect& GetViewRect() const { return view_rect_; }

  // Control bars. Those of the frame are its children and those that float in windows that it owns.

  /// The first of them with the id, or null. A command that is the id of one, from `kToolBarId` to
  /// `kLastBarId`, shows or hides it, and has a check mark while it is shown.
  CControlBar* GetControlBar(UINT id) const;
  void ShowControlBar(CControlBar* bar, bool show);
  /// Lets bars be docked at the edges of the `BarAlignment` bits; at first there are none.
  void EnableDocking(UINT sides) { dock_sides_ = sides; }
  /// Whether the bar and the frame allow it.
  bool CanDock(const CControlBar& bar, DockSide side) const;
  /// Docks a bar of the frame, floating or not, at an edge, `kNone` being the one where it was
  /// last: farther out than `before`, if that isn't null, or else next to the view. False, and no
  /// change, if it can't be docked there.
  bool DockControlBar(CControlBar* bar, DockSide side = DockSide::kNone,
                      CControlBar* before = nullptr);
  /// Has a bar that can be docked float: in a small frame of that place on the screen, or with an
  /// empty rectangle from its top left corner on, as large as the bar wants. One that floats
  /// already is moved. False if it can't. What floats is disabled while the frame is.
  bool FloatControlBar(CControlBar* bar, const CRect& place);
  /// Writes to a section of the program's profile how each bar of the frame stands, and brings them
  /// back. Values are integers, named after the bar's id, which no two may share:
  /// "bar59392.order", its place among the bars, and so on with "visible", "side" (1 top, 2 bottom,
  /// 3 left, 4 right), "floating", "width" and "height", and "left", "top", "right" and "bottom" of
  /// the place where it floats. A bar without values stays as it is; one that would float out of
  /// sight floats over the frame. Without an application nothing happens.
  void SaveBarState(const char* section) const;
  void LoadBarState(const char* section);

  /// Sends the views below `WM_INITIALUPDATE`, brings the title up to date and shows the frame, if
  /// `visible`. The first view becomes the active one if there is none.
  void InitialUpdateFrame(CDocument* document, bool visible);
  /// Shows the frame, restored if it is minimised, and makes it the active one; -1 shows it as it
  /// is.
  virtual void ActivateFrame(int show_command = -1);
  /// The title: that of the frame, or "<document> - <frame>" with `add_document` and an active
  /// document.
  virtual void OnUpdateFrameTitle(bool add_document);
  const CString& GetTitle() const { return title_; }
  void SetTitle(const char* title) { title_ = title; }

  /// Key combinations of the frame; see `AcceleratorTable::Translate`.
  bool LoadAccelTable(UINT id) { return accelerators_.Load(id); }
  const AcceleratorTable& GetAccelTable() const { return accelerators_; }
  AcceleratorTable& GetAccelTable() { return accelerators_; }

  /// The status bar that shows the frame's messages: its own one, or that of the frame around it;
  /// null if there is none.
  CStatusBar* GetMessageBar() const;
  /// The text in the frame's message line, or "". The message bar shows it. In a frame of the top
  /// level that nobody has given one, and when the help on a menu's item ends, it is the
  /// framework's "Ready" as soon as the thread is idle.
  const CString& GetMessageText() const { return message_text_; }
  void SetMessageText(const char* text);
  /// The first part of the string up to "\n".
  void SetMessageText(UINT string_id);

  /// Brings the menu's items up to date.
  void UpdateMenu();

  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;
  /// Key combinations of the frame become commands; Escape ends what a person does with the mouse
  /// while a window of the frame has it captured.
  BOOL PreTranslateMessage(MSG* message) override;
  bool IsSizable() const override { return true; }

 protected:
  friend class CDocTemplate;

  /// Makes what fills the client area. The base makes the view of the context's class, if it has
  /// one. False refuses, and the frame ends.
  virtual bool OnCreateClient(const CCreateContext* context);
  /// Lays out what fills the part of the client area that the bars leave. The base gives all of it
  /// to the child `kFirstPaneId`.
  virtual void LayOutView(const CRect& room);
  /// The person, or the system, closes the frame. The base asks the active document whether it can
  /// close, and if this is the application's main window, all documents; then it closes the
  /// document, if the frame has the only views of it and it is deleted with them, or ends the
  /// frame.
  virtual void OnClose();

  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  void PostNcDestroy() override;
  /// Who gets the commands of its key combinations.
  virtual CWnd& KeyTarget() { return *this; }

  /// Whether it is the application's main window.
  bool IsMainWindow() const;
  /// The body of creation, where the window is made by `creation`.
  bool CreateFrame(const WindowCreation& creation, UINT menu_id, const CCreateContext* context);
  bool LoadMenuBar(UINT menu_id);
  /// A frame that was made by `new` deletes itself with its window.
  void DeleteWithWindow() { deletes_itself_ = true; }

 private:
  friend class CControlBar;
  struct BarState;
  /// Where a bar that is dragged would lie: before which other one, and the place on the screen.
  struct DockTarget {
    DockSide side = DockSide::kNone;
    CControlBar* before = nullptr;
    CRect place;
  };

  void ShowMenuHelp(UINT id, UINT flags, bool in_menu);
  /// All bars: those that can't be docked, which lie farthest out, the others, and the floating.
  std::vector<HWND> ControlBars() const;
  DockTarget TargetOf(CControlBar& bar, const CPoint& from, const CPoint& screen) const;
  std::vector<BarState> ReadBarStates(const char* section) const;
  void OnBarCheck(UINT id);
  void OnUpdateBarCheck(CCmdUI* ui);
  void UpdateFloatingBars(WPARAM disable_if_no_handler);
  void EnableFloatingBars(bool enable);
  /// `FloatControlBar`, where `of_bar` says that the place is the bar's own and the small frame
  /// lies around it.
  bool Float(CControlBar* bar, const CRect& place, bool of_bar);

  HWND active_view_ = nullptr;
  CMenu own_menu_;
  AcceleratorTable accelerators_;
  CString message_text_;
  CString title_;
  CRect view_rect_;
  UINT dock_sides_ = 0;
  /// The frames of its floating bars, and maybe some that have ended.
  std::vector<HWND> floating_;
  bool layout_due_ = false;
  /// The message line is to say that the frame is ready.
  bool ready_due_ = false;
  bool laying_out_ = false;
  bool lay_out_again_ = false;
  bool deletes_itself_ = false;
};

}  // namespace dq
