// A window with a shell in a console view, and the output pane docked below it.

#pragma once

#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/status_bar.h"
#include "dqlib/output/console_program_view.h"
#include "dqlib/output/output_wnd.h"

namespace workbench {

/// The user's shell, or what COMSPEC names. Its frame closes with it.
class ShellView : public dq::CDQConsoleProgramView {
 public:
  ~ShellView() override { EndInDestructor(); }

  dq::LRESULT WindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override;
};

/// Its menu puts messages of each type into the pane, and shows and hides that.
class ConsoleFrame : public dq::CFrameWnd {
 public:
  ~ConsoleFrame() override { EndInDestructor(); }

  /// Makes and shows it over its owner. False if it can't be made, or no shell be started.
  bool Open(dq::CWnd& owner);

 protected:
  dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override;
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override;

 private:
  bool MakeMenu();
  void OnMessage(dq::UINT id);
  void OnManyMessages();
  void OnLeave() { PostMessage(dq::WM_CLOSE); }

  dq::CMenu menu_;
  dq::CStatusBar status_;
  dq::CDQOutputWnd pane_;
  ShellView shell_;
};

}  // namespace workbench
