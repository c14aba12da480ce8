// Frames: windows with a main menu whose commands go to what is active in them.

#pragma once

#include <memory>

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

  /// Key combinations of the frame; see `AcceleratorTable::Translate`.
  bool LoadAccelTable(UINT id) { return accelerators_.Load(id); }
  const AcceleratorTable& GetAccelTable() const { return accelerators_; }

  /// The text in the frame's message line, or "".
  const CString& GetMessageText() const { return message_text_; }
  void SetMessageText(const char* text);
  void SetMessageText(UINT string_id);

  /// Brings the menu's items up to date.
  void UpdateMenu();

  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;
  /// Key combinations of the frame become commands.
  BOOL PreTranslateMessage(MSG* message) override;

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
  CMDIFrameWnd();
  ~CMDIFrameWnd() override;

  /// The window that the child frames lie in; made with the first of them.
  CWnd* GetMDIClient();
  /// The active child frame, or null.
  CMDIChildWnd* MDIGetActive() const;
  /// Makes the child frame the active one, by sending the client window `WM_MDIACTIVATE` with its
  /// handle. Then the former child frame and the new one get that message with the handles of both,
  /// the former first.
  void MDIActivate(CMDIChildWnd* child);
  /// The next child frame in order becomes active.
  void MDINext();
  CFrameWnd* GetActiveFrame() override;

  /// Commands go to the active child frame first.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  friend class CMDIChildWnd;
  class Client;

  void Activate(CMDIChildWnd* child);

  std::unique_ptr<Client> client_;
  HWND active_child_ = nullptr;
};

/// A child frame. Commands sent to it go where those of any frame do; those of the main frame come
/// to the application first by the active child frame, then by the main frame itself.
class CMDIChildWnd : public CFrameWnd {
  DECLARE_DYNCREATE(CMDIChildWnd)
  CMDIChildWnd() = default;
  ~CMDIChildWnd() override;

  /// Makes it in the parent's client window and makes it the active one.
  bool Create(const char* class_name, const char* caption, const CRect& place,
              CMDIFrameWnd* parent);
  CMDIFrameWnd* GetMDIFrame() const;
  /// Ends the child frame by sending the client window `WM_MDIDESTROY` with its handle; the next
  /// one becomes active.
  void MDIDestroy();
  void MDIActivate();

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
};

}  // namespace dq
