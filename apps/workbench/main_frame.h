// The workbench's main window.

#pragma once

#include <functional>
#include <memory>

#include "apps/common/dialogs.h"
#include "apps/workbench/console_frame.h"
#include "apps/workbench/controls_frame.h"
#include "apps/workbench/tree_frame.h"
#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/controls/edit.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/status_bar.h"
#include "dqlib/framework/windows/tool_bar.h"

namespace workbench {

/// The frame around the library's dialogs: its menu opens them, and its window shows how they were
/// left. It comes up where it was when the program ended last, and ends the message loop with it.
class MainFrame : public dq::CFrameWnd {
 public:
  /// Told of each dialog that was left.
  using Listener = std::function<void(const dqapps::LibraryDialog& dialog,
                                      const dqapps::DialogOutcome& outcome)>;

  explicit MainFrame(Listener listener);
  ~MainFrame() override;

  /// Makes and shows it. False if it can't be made.
  bool Open();
  /// Keeps where it is for the next start.
  void KeepPlacement();
  /// The picture of a command on its button; null for none.
  static dq::HBITMAP PictureOf(dq::UINT command);

 protected:
  dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override;
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override;

 private:
  void OnExit();
  void OnDialog(dq::UINT id);
  void OnAbout();
  void OnControls();
  void OnConsole();
  void OnTree();
  template <typename Frame, typename... Arguments>
  void Show(std::unique_ptr<Frame>& frame, Arguments&&... arguments);
  bool MakeMenu();
  bool MakeBars();
  void Tell(const std::string& text);

  /// For buttons with pictures.
  dq::CDynLinkLibrary pictures_;
  Listener listener_;
  dq::CMenu menu_;
  dq::CToolBar tools_;
  dq::CStatusBar status_;
  std::unique_ptr<ControlsFrame> controls_;
  std::unique_ptr<ConsoleFrame> console_;
  std::unique_ptr<TreeFrame> tree_;
  dq::CEdit output_{{.multi_line = true, .read_only = true}};
};

}  // namespace workbench
