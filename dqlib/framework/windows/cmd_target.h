// Where commands go: targets that handle them, and the update of the items that show them.

#pragma once

#include "dqlib/framework/base/object.h"
#include "dqlib/framework/windows/message_map.h"

namespace dq {

class CMenu;
class CWnd;

/// Something that can handle commands: a window, a document, the application.
class CCmdTarget : public CObject {
  DECLARE_DYNAMIC(CCmdTarget)

  /// Handles a command or hands it on along the target's route. `code` is a `CommandCode`, a
  /// notification code, or that of `NotifyCode`. With `CN_UPDATE_COMMAND_UI`, `extra` is the
  /// `CCmdUI*`, with a `NotifyCode` the `AFX_NOTIFY*`. With a
  /// `handler_info` that isn't null nothing is called: it only asks whether there is a handler.
  /// Returns whether the command was, or would be, handled. A handler may end the windows on the
  /// route; one that does for its own mustn't decline.
  virtual BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info);

 protected:
  /// Calls the class's own handler for the key, or its base's; false if there is none or all
  /// decline. A class with handlers overrides it as `message_map.h` shows.
  virtual bool CallMapped(const HandlerKey& key, HandlerArguments& arguments);
};

/// An item that shows a command while it is brought up to date: a menu item, or a control, or for
/// classes derived from this one anything else. The handler states what is true by calling the
/// operations.
class CCmdUI {
 public:
  CCmdUI() = default;
  CCmdUI(const CCmdUI&) = delete;
  CCmdUI& operator=(const CCmdUI&) = delete;
  virtual ~CCmdUI();

  /// Enables the item, a check mark at it (0 none, 1 set, 2 undetermined), a radio mark, its text.
  virtual void Enable(BOOL on = 1);
  virtual void SetCheck(int check = 1);
  virtual void SetRadio(BOOL on = 1);
  virtual void SetText(const char* text);

  /// Has the target bring the item up to date. With `disable_if_no_handler`, an item whose update
  /// nobody handles is enabled if its command has a handler and disabled if not. The handler may
  /// end the target, if that is a window, and the item's menu or control. False if nobody handled
  /// the update.
  bool DoUpdate(CCmdTarget& target, bool disable_if_no_handler);
  /// Has the update go on to the next target of the route.
  void ContinueRouting() { m_bContinueRouting = true; }

  UINT m_nID = 0;
  /// Position in the menu or bar, and how many items it has.
  UINT m_nIndex = 0;
  UINT m_nIndexMax = 0;
  /// The menu with the item, or null; its submenu if the item is a popup. Not owned.
  CMenu* m_pMenu = nullptr;
  CMenu* m_pSubMenu = nullptr;
  /// The control with the command's id, or the bar; null if it is a menu. Not owned.
  CWnd* m_pOther = nullptr;
  /// Whether the handler has said if the item is enabled.
  bool m_bEnableChanged = false;
  bool m_bContinueRouting = false;
};

}  // namespace dq
