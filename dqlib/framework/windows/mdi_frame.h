// Frames with child frames.

#pragma once

#include "dqlib/framework/windows/frame_wnd.h"

namespace dq {

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
  /// handle. It comes before its siblings. Then the former child frame and the new one get that
  /// message with the handles of both, the former first; the new one takes the focus then. If the
  /// former is maximised, it is restored and the new one maximised.
  void MDIActivate(CMDIChildWnd* child);
  /// The next child frame in order that is shown and enabled becomes active, and the former one
  /// goes behind all.
  void MDINext();
  /// The one before in order, or else the last, that is shown and enabled becomes active.
  void MDIPrev();
  CFrameWnd* GetActiveFrame() override;
  /// That of the active child frame.
  CDocument* GetActiveDocument() override;
  /// Shows the menu of the active document, or without one the menu that the frame has had itself:
  /// called when another child frame or document becomes active.
  virtual void OnUpdateFrameMenu();

  /// Commands go to the active child frame first.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;
  /// Behind the key combinations of the frames, and Ctrl+Tab behind that of a property sheet:
  /// Ctrl+F4 asks the active child frame to close, Ctrl+F6 and Ctrl+Tab go on to the next one, with
  /// Shift back.
  BOOL PreTranslateMessage(MSG* message) override;

 protected:
  /// Another main frame than the application's asks for, and closes, the documents that are shown
  /// nowhere else.
  void OnClose() override;

 private:
  friend class CMDIChildWnd;
  class Client;

  void Activate(CMDIChildWnd* child);
  bool CloseOwnDocuments();
  bool TurnByKey(WPARAM key);

  std::unique_ptr<Client> client_;
  HWND active_child_ = nullptr;
  /// While a document's menu is shown: that one, and the frame's own.
  CMenu* document_menu_ = nullptr;
  CMenu* own_menu_ = nullptr;
};

/// A child frame. Commands sent to it go where those of any frame do; those of the main frame come
/// to the application first by the active child frame, then by the main frame itself. While it is
/// maximised it fills the client window, whatever size that has.
class CMDIChildWnd : public CFrameWnd {
  DECLARE_DYNCREATE(CMDIChildWnd)
  CMDIChildWnd() = default;
  ~CMDIChildWnd() override;

  /// Makes it in the parent's client window and makes it the active one.
  bool Create(const char* class_name, const char* caption, const CRect& place, CMDIFrameWnd* parent,
              const CCreateContext* context = nullptr);
  /// Makes it, hidden, in the client window of `parent`, or without one of the active main frame or
  /// the application's, a place behind the child frame before; the menu is the template's.
  bool LoadFrame(UINT resource_id, CWnd* parent = nullptr,
                 const CCreateContext* context = nullptr) override;
  CMDIFrameWnd* GetMDIFrame() const;
  /// Ends the child frame by sending the client window `WM_MDIDESTROY` with its handle; the next
  /// one becomes active.
  void MDIDestroy();
  void MDIActivate();

  void SetActiveView(CView* view, bool notify = true) override;
  bool IsActiveFrame() const override;
  void ActivateFrame(int show_command = -1) override;
  /// The title of the active document, with its number where several frames show the document.
  void OnUpdateFrameTitle(bool add_document) override;
  /// Which of the frames with its document it is, from 1; 0 if it is the only one.
  int GetWindowNumber() const { return window_number_; }
  void SetWindowNumber(int number) { window_number_ = number; }

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  /// It becomes the active one.
  void OnTurnTo(CWnd& window) override;
  /// The main frame, from which they come to this one first.
  CWnd& KeyTarget() override;

 private:
  int window_number_ = 0;
};

}  // namespace dq
