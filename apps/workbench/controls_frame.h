// A window in which the controls, bars and choosers that the dialogs don't have can be used.

#pragma once

#include <functional>
#include <string>

#include "dqlib/framework/windows/form_view.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/splitter_wnd.h"
#include "dqlib/framework/windows/status_bar.h"
#include "dqlib/framework/windows/tool_bar.h"

namespace workbench {

/// Draws texts, lines and pictures, and has a menu of its own at the right button of the mouse.
class DrawingView : public dq::CView {
 public:
  void OnDraw(dq::CDC* dc) override;
  bool OnPreparePrinting(dq::CPrintInfo* info) override;

 protected:
  dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override;
};

/// Controls of the kinds that the library's dialogs have none of.
class ControlsForm : public dq::CFormView {
 public:
  /// Told in a line what the person did.
  using Listener = std::function<void(const std::string& line)>;

  explicit ControlsForm(Listener listener);

 protected:
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override;

 private:
  void OnStep();
  void OnHotKey();
  void OnMoment(dq::NMHDR* told, dq::LRESULT* result);

  Listener listener_;
};

/// A frame with a splitter between a drawing and a form with controls, a tool bar that can be
/// docked anywhere and float, and a status bar with several panes. Its menu runs the choosers of
/// files, folders and printing.
class ControlsFrame : public dq::CFrameWnd {
 public:
  using Listener = ControlsForm::Listener;

  explicit ControlsFrame(Listener listener);
  ~ControlsFrame() override;

  /// Makes and shows it over its owner. False if it can't be made.
  bool Open(dq::CWnd& owner);

 protected:
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override;

 private:
  bool MakeBars();
  bool MakePanes();
  void OnOpen();
  void OnSave();
  void OnFolder();
  void OnLeave() { PostMessage(dq::WM_CLOSE); }
  void OnChoice(dq::UINT id);
  void Tell(const std::string& line);

  Listener listener_;
  dq::CMenu menu_;
  dq::CToolBar tools_;
  dq::CStatusBar status_;
  dq::CSplitterWnd splitter_;
  DrawingView drawing_;
  ControlsForm form_;
};

}  // namespace workbench
