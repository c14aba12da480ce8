#include "dqlib/toolkit/dialog.h"

#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/resources/library.h"

namespace dq {
namespace {

/// Where the help contexts of dialogs begin.
constexpr DWORD kDialogContexts = 0x20000;

}  // namespace

IMPLEMENT_DYNAMIC(CDQDialog, CDialog)

CDQDialog::CDQDialog(UINT template_id, CWnd* parent)
    : CDialog(template_id, parent),
      m_nHelpContext(template_id == 0 ? 0 : kDialogContexts + template_id) {}

HINSTANCE CDQDialog::ResourceModule() const {
  return m_hModule != nullptr ? m_hModule : DQLIB_GetInstanceHandle();
}

int CDQDialog::DoModal() {
  const CDQSwitchResourceHandle scope(ResourceModule());
  return CDialog::DoModal();
}

bool CDQDialog::Create(UINT template_id, CWnd* parent, bool child) {
  const CDQSwitchResourceHandle scope(ResourceModule());
  return CDialog::Create(template_id, parent, child);
}

BOOL CDQDialog::OnInitDialog() {
  if (!m_strCaption.IsEmpty()) SetWindowText(m_strCaption);
  return CDialog::OnInitDialog();
}

bool CDQDialog::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CDQDialog::OnHelp>(ID_HELP),
      CommandEntry<&CDQDialog::OnHelp>(kHelpCommand),
      MessageEntry<&CDQDialog::OnHelpKey>(WM_HELP),
  };
  return CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
}

LRESULT CDQDialog::OnHelpKey(WPARAM, LPARAM) {
  OnHelp();
  return 1;
}

void CDQDialog::OnHelp() {
  CWnd* const main = AfxGetMainWnd();
  if (m_nHelpContext == 0 || main == nullptr) return;
  main->SendMessage(WM_COMMANDHELP, 0, static_cast<LPARAM>(m_nHelpContext));
}

int DQDoModalDialog(CDQDialog& dialog, HINSTANCE module) {
  struct Scope {
    CDQDialog& dialog;
    HINSTANCE former = dialog.m_hModule;
    ~Scope() { dialog.m_hModule = former; }
  };
  const CDQSwitchResourceHandle resources(module);
  const Scope scope{dialog};
  if (module != nullptr) dialog.m_hModule = module;
  return dialog.DoModal();
}

}  // namespace dq
