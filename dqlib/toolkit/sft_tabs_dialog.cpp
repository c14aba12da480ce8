#include "dqlib/toolkit/sft_tabs_dialog.h"

#include <algorithm>

#include "dqlib/frame/resources.h"
#include "dqlib/framework/controls/sft_tabs.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQSftTabsPage, CDQChildDialog)
IMPLEMENT_DYNAMIC(CDQSftTabsDialog, CDQDialog)

CDQSftTabsPage::CDQSftTabsPage(UINT template_id, const char* title)
    : CDQChildDialog(template_id), m_strTitle(title) {}

CDQSftTabsPage::CDQSftTabsPage(UINT template_id, UINT title_id)
    : CDQChildDialog(template_id), m_nTitleID(title_id) {}

CDQSftTabsPage::~CDQSftTabsPage() {
  if (m_pDialog != nullptr) m_pDialog->RemovePage(*this);
}

CString CDQSftTabsPage::GetTitle() const {
  if (m_nTitleID == 0) return m_strTitle;
  CString title;
  DQLoadString(title, m_nTitleID, ResourceModule());
  return title;
}

bool CDQSftTabsPage::ClosePossible() { return GetSafeHwnd() == nullptr || UpdateData(1) != 0; }

CDQSftTabsDialog::CDQSftTabsDialog(UINT template_id, CWnd* parent, int tabs_id, int place_id)
    : CDQDialog(template_id, parent), m_nTabsID(tabs_id), m_nPlaceID(place_id) {}

CDQSftTabsDialog::~CDQSftTabsDialog() {
  for (const Entry& each : m_pages) each.page->m_pDialog = nullptr;
}

int CDQSftTabsDialog::AddPage(CDQSftTabsPage& page) {
  if (page.m_pDialog != nullptr || GetSafeHwnd() != nullptr) return -1;
  page.m_pDialog = this;
  m_pages.push_back({&page});
  return GetPageCount() - 1;
}

void CDQSftTabsDialog::RemovePage(const CDQSftTabsPage& page) {
  const auto found = m_pages.back().page == &page ? m_pages.end() - 1
                                                  : std::ranges::find(m_pages, &page, &Entry::page);
  const int index = static_cast<int>(found - m_pages.begin());
  m_pages.erase(found);
  if (CSftTabs* const tabs = Tabs()) tabs->DeleteTab(index);
  if (m_nActive == index) m_nActive = -1;
  if (m_nActive > index) --m_nActive;
}

CDQSftTabsPage* CDQSftTabsDialog::GetPage(int index) const {
  return index >= 0 && index < GetPageCount() ? m_pages[static_cast<std::size_t>(index)].page
                                              : nullptr;
}

CSftTabs* CDQSftTabsDialog::Tabs() const { return dynamic_cast<CSftTabs*>(GetDlgItem(m_nTabsID)); }

bool CDQSftTabsDialog::IsTabEnabled(int index) const {
  return GetPage(index) != nullptr && m_pages[static_cast<std::size_t>(index)].enabled;
}

void CDQSftTabsDialog::EnableTab(int index, bool enable) {
  if (GetPage(index) == nullptr) return;
  m_pages[static_cast<std::size_t>(index)].enabled = enable;
  if (CSftTabs* const tabs = Tabs()) tabs->EnableTab(index, enable);
}

BOOL CDQSftTabsDialog::OnInitDialog() {
  const HWND self = GetSafeHwnd();
  const BOOL focus = CDQDialog::OnInitDialog();
  if (!IsStill(self)) return 0;
  if (CSftTabs* const tabs = Tabs()) {
    tabs->DeleteAllTabs();
    for (int at = 0; at < GetPageCount(); ++at) {
      tabs->AddTab(GetPage(at)->GetTitle());
      tabs->EnableTab(at, IsTabEnabled(at));
    }
  }
  m_bSwitching = false;
  int first = m_nActive;
  m_nActive = -1;
  for (int at = 0; at < GetPageCount() && !IsTabEnabled(first); ++at) first = at;
  if (IsTabEnabled(first)) Open(first);
  return focus;
}

bool CDQSftTabsDialog::SetActivePage(int index) {
  if (!IsTabEnabled(index)) return false;
  if (GetSafeHwnd() == nullptr) {
    m_nActive = index;
    return true;
  }
  if (m_bSwitching) return false;
  return m_nActive == index || (Leave() && Open(index));
}

/// Whether the active page, if there is one, agrees; it is there then.
bool CDQSftTabsDialog::Leave() {
  CDQSftTabsPage* const present = GetPage(m_nActive);
  if (present == nullptr) return true;
  const HWND self = GetSafeHwnd();
  const detail::SetWhile switching(*this, m_bSwitching);
  const bool possible = present->SwitchPossible();
  return IsStill(self) && possible;
}

bool CDQSftTabsDialog::Open(int index) {
  // A page that was asked may have taken itself or others out.
  if (GetPage(index) == nullptr) return false;
  CDQSftTabsPage& page = *GetPage(index);
  const HWND self = GetSafeHwnd();
  const bool made = page.CreateIn(this, m_nPlaceID);
  if (!IsStill(self) || !made) return false;
  CDQSftTabsPage* const former = GetPage(m_nActive);
  m_nActive = index;
  if (CSftTabs* const tabs = Tabs()) tabs->SetCurSel(index);
  const auto stays = [&] { return IsStill(self) && GetPage(m_nActive) == &page; };
  if (former != nullptr) former->ShowWindow(SW_HIDE);
  if (stays()) page.ShowWindow(SW_SHOW);
  if (stays()) page.ActivatePage();
  return stays();
}

template <typename Call>
bool CDQSftTabsDialog::ForEachPage(Call call) {
  const HWND self = GetSafeHwnd();
  for (int at = 0; at < GetPageCount();) {
    const CDQSftTabsPage* const page = GetPage(at);
    const bool go_on = !IsTabEnabled(at) || call(at);
    if (!IsStill(self) || !go_on) return false;
    // One that has dropped itself leaves its place to the next.
    if (GetPage(at) == page) ++at;
  }
  return true;
}

void CDQSftTabsDialog::OnOK() {
  const bool possible = ForEachPage([this](int at) {
    const HWND self = GetSafeHwnd();
    if (GetPage(at)->ClosePossible()) return true;
    if (IsStill(self) && m_nActive != at) Open(at);
    return false;
  });
  if (!possible || UpdateData(1) == 0) return;
  const bool told = ForEachPage([this](int at) {
    GetPage(at)->OnOK();
    return true;
  });
  if (told) EndDialog(IDOK);
}

void CDQSftTabsDialog::OnCancel() {
  const bool told = ForEachPage([this](int at) {
    GetPage(at)->OnCancel();
    return true;
  });
  if (told) EndDialog(IDCANCEL);
}

bool CDQSftTabsDialog::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  if (key.message == WM_COMMAND && key.code == CSftTabs::kTabWished &&
      key.id == static_cast<UINT>(m_nTabsID) && !arguments.only_ask) {
    OnTabWished();
    return true;
  }
  return CDQDialog::CallMapped(key, arguments);
}

void CDQSftTabsDialog::OnTabWished() {
  if (const CSftTabs* const tabs = Tabs()) SetActivePage(tabs->GetWished());
}

void CDQSftTabsDialog::OnHelp() {
  CDQSftTabsPage* const active = GetPage(m_nActive);
  if (active != nullptr && active->GetHelpContext() != 0) {
    active->OnHelp();
  } else {
    CDQDialog::OnHelp();
  }
}

}  // namespace dq
