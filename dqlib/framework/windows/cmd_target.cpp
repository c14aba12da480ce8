#include "dqlib/framework/windows/cmd_target.h"

#include <utility>

#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

bool CallEntry(std::span<const MessageMapEntry> entries, CCmdTarget& target, const HandlerKey& key,
               HandlerArguments& arguments) {
  for (const MessageMapEntry& entry : entries) {
    if (entry.message != key.message || entry.code != key.code) continue;
    if (key.id < entry.first_id || key.id > entry.last_id) continue;
    if (arguments.only_ask || entry.call(target, key.id, arguments)) return true;
  }
  return false;
}

bool CCmdTarget::CallMapped(const HandlerKey&, HandlerArguments&) { return false; }

BOOL CCmdTarget::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  HandlerArguments arguments;
  arguments.only_ask = handler_info != nullptr;
  if (code != CN_UPDATE_COMMAND_UI) {
    HandlerKey key{WM_COMMAND, code, id};
    AFX_NOTIFY* const notify = code > 0xFFFF ? static_cast<AFX_NOTIFY*>(extra) : nullptr;
    if (code > 0xFFFF) {
      if (notify == nullptr && !arguments.only_ask) return 0;
      key.message = HiWord(static_cast<WPARAM>(code));
      key.code = LoWord(static_cast<WPARAM>(code));
    }
    if (notify != nullptr) arguments.header = notify->pNMHDR;
    const bool handled = CallMapped(key, arguments);
    if (handled && notify != nullptr) *notify->pResult = arguments.result;
    return handled ? 1 : 0;
  }
  arguments.ui = static_cast<CCmdUI*>(extra);
  // Without an item there is nothing that a handler could bring up to date.
  if (arguments.ui == nullptr && !arguments.only_ask) return 0;
  if (arguments.ui != nullptr) arguments.ui->m_bContinueRouting = false;
  if (!CallMapped({WM_COMMAND, code, id}, arguments)) return 0;
  const bool goes_on =
      arguments.ui != nullptr && std::exchange(arguments.ui->m_bContinueRouting, false);
  return goes_on ? 0 : 1;
}

CCmdUI::~CCmdUI() = default;

void CCmdUI::Enable(BOOL on) {
  m_bEnableChanged = true;
  if (m_pMenu != nullptr) {
    if (m_pSubMenu != nullptr) return;
    m_pMenu->EnableMenuItem(m_nIndex,
                            MF_BYPOSITION | (on != 0 ? MF_ENABLED : MF_DISABLED | MF_GRAYED));
  } else if (m_pOther != nullptr) {
    m_pOther->EnableWindow(on != 0);
  }
}

void CCmdUI::SetCheck(int check) {
  if (m_pMenu != nullptr) {
    if (m_pSubMenu != nullptr) return;
    m_pMenu->CheckMenuItem(m_nIndex, MF_BYPOSITION | (check != 0 ? MF_CHECKED : MF_UNCHECKED));
  } else if (m_pOther != nullptr) {
    m_pOther->SendMessage(BM_SETCHECK, static_cast<WPARAM>(check));
  }
}

void CCmdUI::SetRadio(BOOL on) {
  if (m_pMenu != nullptr && m_pSubMenu == nullptr && on != 0) {
    m_pMenu->CheckMenuRadioItem(m_nIndex, m_nIndex, m_nIndex, MF_BYPOSITION);
  } else {
    SetCheck(on != 0 ? 1 : 0);
  }
}

void CCmdUI::SetText(const char* text) {
  if (m_pMenu != nullptr) {
    if (m_pSubMenu != nullptr) return;
    const UINT state = m_pMenu->GetMenuState(m_nIndex, MF_BYPOSITION);
    const UINT kept = state & (MF_CHECKED | MF_RADIOCHECK | MF_DISABLED | MF_GRAYED);
    m_pMenu->ModifyMenu(m_nIndex, MF_BYPOSITION | MF_STRING | kept, m_nID, text);
  } else if (m_pOther != nullptr) {
    m_pOther->SetWindowText(text);
  }
}

bool CCmdUI::DoUpdate(CCmdTarget& target, bool disable_if_no_handler) {
  m_bEnableChanged = false;
  const detail::Watched route(target);
  const HMENU menu = m_pMenu == nullptr ? nullptr : m_pMenu->GetSafeHmenu();
  const HWND other = m_pOther == nullptr ? nullptr : m_pOther->GetSafeHwnd();
  const bool updated = target.OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this, nullptr) != 0;
  if (m_pMenu != nullptr && CMenu::FromHandle(menu) != m_pMenu) return updated;
  if (other != nullptr && CWnd::FromHandle(other) != m_pOther) return updated;
  if (disable_if_no_handler && !m_bEnableChanged && route.IsThere()) {
    int asked = 0;
    Enable(target.OnCmdMsg(m_nID, CN_COMMAND, nullptr, &asked));
  }
  return updated;
}

}  // namespace dq
