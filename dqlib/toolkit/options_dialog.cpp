#include "dqlib/toolkit/options_dialog.h"

#include <algorithm>
#include <string>

#include "dqlib/frame/resources.h"
#include "dqlib/framework/controls/combo_box.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

// How a page lays itself out, in pixels.
constexpr int kMargin = 8;
constexpr int kRow = 22;
constexpr int kLine = 14;
constexpr int kPageWidth = 406;
constexpr int kLabelWidth = 230;
/// Characters of a label that go on a line.
constexpr int kLabelLine = 40;
constexpr int kListHeight = 90;

CDQOptionsServer& Server() { return *CDQOptionsServer::GetObject(); }

/// The controls of one option, from `top` down. Returns where the next one goes.
LONG AddControls(const CDQOption& option, bool named, LONG top, DialogTemplate& page) {
  const std::string label(option.GetShortName().View());
  const int id = option.GetID();
  if (option.GetKind() == OptionKind::kBool) {
    page.controls.push_back(
        {"Button", id, label, {kMargin, top, kPageWidth - kMargin, top + kLine}, "check", {}});
    return top + kRow;
  }
  const LONG lines = (option.GetShortName().GetLength() + kLabelLine - 1) / kLabelLine;
  const LONG height = std::max<LONG>(1, lines) * kLine;
  page.controls.push_back(
      {"Static", -1, label + ":", {kMargin, top, kLabelWidth, top + height}, "text", {}});
  CRect place{kLabelWidth + kMargin, top, kPageWidth - kMargin, top + kLine};
  if (named) {
    place.bottom = top + kListHeight;
    page.controls.push_back({"ComboBox", id, "", place, "combo", {"droplist"}});
  } else {
    page.controls.push_back({"Edit", id, "", place, "edit", {}});
  }
  return top + height + kRow - kLine;
}

}  // namespace

IMPLEMENT_DYNAMIC(CDQOptionsPage, CDQSftTabsPage)
IMPLEMENT_DYNAMIC(CDQOptionsDlg, CDQSftTabsDialog)

CDQOptionsPage::CDQOptionsPage(DQOptionsPageType type, const char* title, UINT template_id)
    : CDQSftTabsPage(template_id, title), m_eType(type) {}

CDQOptionsPage::CDQOptionsPage(DQOptionsPageType type, UINT title_id, UINT template_id)
    : CDQSftTabsPage(template_id, title_id), m_eType(type) {}

std::optional<DialogTemplate> CDQOptionsPage::MakeTemplate() {
  if (GetTemplateId() != 0) return CDQSftTabsPage::MakeTemplate();
  DialogTemplate page;
  LONG top = kMargin;
  for (int at = 0; at < m_options.GetSize(); ++at) {
    const int id = m_options.GetID(at);
    if (const CDQOption* const option = Server().GetOptionByID(id)) {
      top = AddControls(*option, m_names.contains(id), top, page);
    }
  }
  page.size = {kPageWidth, top + kMargin};
  return page;
}

BOOL CDQOptionsPage::OnInitDialog() {
  m_bOnlyCheck = false;
  m_options.LoadOptions();
  for (const auto& [id, names_id] : m_names) {
    auto* const combo = dynamic_cast<CComboBox*>(GetDlgItem(id));
    if (combo == nullptr) continue;
    CStringList names;
    DQLIB_LoadResourceList(ResourceModule(), names_id, "|", names);
    combo->ResetContent();
    // The list is in reverse order.
    for (POSITION at = names.GetTailPosition(); at != nullptr;) {
      combo->AddString(names.GetPrev(at));
    }
  }
  return CDQSftTabsPage::OnInitDialog();
}

void CDQOptionsPage::DoDataExchange(CDataExchange* exchange) {
  CDQSftTabsPage::DoDataExchange(exchange);
  m_options.DoDataExchange(exchange, this);
  // What can't be kept is told in `OnOK`, which tries again.
  if (exchange->m_bSaveAndValidate && !m_bOnlyCheck) m_options.SaveOptions();
}

bool CDQOptionsPage::ClosePossible() {
  const detail::SetWhile checking(*this, m_bOnlyCheck);
  return CDQSftTabsPage::ClosePossible();
}

void CDQOptionsPage::OnOK() {
  if (GetSafeHwnd() != nullptr) UpdateData(1);
  if (!m_options.SaveOptions()) AfxMessageBox(IDS_OPTIONS_NOT_KEPT, BOX_EXCLAMATION);
}

CDQOptionsDlg::CDQOptionsDlg(UINT template_id, int page_option_id, CWnd* parent)
    : CDQSftTabsDialog(template_id, parent), m_nPageOptionID(page_option_id) {}

bool CDQOptionsDlg::DisplayPage(DQOptionsPageType type) {
  for (int at = 0; at < GetPageCount(); ++at) {
    const auto* const page = dynamic_cast<CDQOptionsPage*>(GetPage(at));
    if (page == nullptr || page->GetType() != type) continue;
    if (!SetActivePage(at)) return false;
    m_bDisplayed = GetSafeHwnd() == nullptr;
    return true;
  }
  return false;
}

int CDQOptionsDlg::DoModal() {
  const int kept = OptionNumber(Server().GetValue(m_nPageOptionID));
  if (!m_bDisplayed && !DisplayPage(static_cast<DQOptionsPageType>(kept))) SetActivePage(0);
  m_bDisplayed = false;
  const int result = CDQSftTabsDialog::DoModal();
  if (result == -1) return result;
  if (const auto* const page = dynamic_cast<CDQOptionsPage*>(GetPage(GetActivePage()))) {
    // The page is a convenience: one that can't be kept, as the trace log tells, isn't worth a box.
    Server().SetValue(m_nPageOptionID, std::to_string(page->GetType()));
  }
  if (CWnd* const main = AfxGetMainWnd()) main->SendMessage(DQM_OPTIONS_CHANGED, 0, 0);
  return result;
}

}  // namespace dq
