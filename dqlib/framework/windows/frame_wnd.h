// Frames: windows with a main menu whose commands go to what is active in them.

#pragma once

#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

/// A frame. Commands go to its active view first, then to the frame, then to the application.
class CFrameWnd : public CWnd {
  DECLARE_DYNCREATE(CFrameWnd)
  CFrameWnd() = default;
  ~CFrameWnd() override;

  /// Makes a top-level frame with the menu of the id (0 for none) by the chain of resource modules.
  bool Create(const char* class_name, const char* caption, const CRect& place, UINT menu_id = 0);

  /// The view that works in the frame, or null. A view that ends stops being the active one.
  CWnd* GetActiveView() const;
  virtual void SetActiveView(CWnd* view);
  /// The active child frame, or the frame itself.
  virtual CFrameWnd* GetActiveFrame() { return this; }

  /// Key combinations of the frame; see `PreTranslateMessage`.
  bool LoadAccelTable(UINT id) { return accelerators_.Load(id); }
  const AcceleratorTable& GetAccelTable() const { return accelerators_; }

  /// The text in the frame's message line, or "".
  const CString& GetMessageText() const { return message_text_; }
  void SetMessageText(const char* text);
  void SetMessageText(UINT string_id);

  /// Brings the menu's items up to date.
  void UpdateMenu();

  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;

 private:
  HWND active_view_ = nullptr;
  CMenu own_menu_;
  AcceleratorTable accelerators_;
  CString message_text_;
};

class CMDIChildWnd;

/// A frame with child frames in its client window, one of them active.
class CMDIFrameWnd : public CFrameWnd {
  DECLARE_DYNCREATE(CMDIFrameWnd)

  /// The window that the child frames lie in; made with the first of them.
  CWnd* GetMDIClient();
  /// The active child frame, or null.
  CMDIChildWnd* MDIGetActive() const;
  /// Makes the child frame the active one: the former gets `WM_MDIACTIVATE` and then the new one,
  /// each with the handles of both, former first.
  void MDIActivate(CMDIChildWnd* child);
  /// The next child frame in order becomes active.
  void MDINext();
  CFrameWnd* GetActiveFrame() override;

  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;

 private:
  friend class CMDIChildWnd;
  CWnd client_;
  HWND active_child_ = nullptr;
};

/// A child frame.
class CMDIChildWnd : public CFrameWnd {
  DECLARE_DYNCREATE(CMDIChildWnd)

  /// Makes it in the parent's client window and makes it the active one.
  bool Create(const char* class_name, const char* caption, const CRect& place,
              CMDIFrameWnd* parent);
  CMDIFrameWnd* GetMDIFrame() const;
  /// Ends the child frame; the next one becomes active.
  void MDIDestroy();
  void MDIActivate();

  BOOL DestroyWindow() override;
};

}  // namespace dq
