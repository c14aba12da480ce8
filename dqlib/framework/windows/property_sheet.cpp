#include "dqlib/framework/windows/property_sheet.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "dqlib/framework/windows/dialog_keys.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/dialog_view.h"
#include "dqlib/platform/seam_texts.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

using detail::Watched;

namespace {

// Pixels.
constexpr LONG kMargin = 6;
constexpr LONG kButtonWidth = 75;
constexpr LONG kButtonHeight = 23;
constexpr LONG kTabsHeight = 24;
constexpr LONG kPageBorder = 4;

CRect PagePlace(const CRect& tabs) {
  return {tabs.left + kPageBorder, tabs.top + kTabsHeight, tabs.right - kPageBorder,
          tabs.bottom - kPageBorder};
}

ControlTemplate Button(int id, UINT text_id, LONG left, LONG top) {
  ControlTemplate button;
  button.window_class = "Button";
  button.id = id;
  button.text = detail::LoadText(text_id).View();
  button.place = {left, top, left + kButtonWidth, top + kButtonHeight};
  button.word = id == IDOK ? "defbutton" : "button";
  if (id == ID_APPLY_NOW) button.flags = {"disabled"};
  return button;
}

}  // namespace

IMPLEMENT_DYNAMIC(CPropertyPage, CDialog)
IMPLEMENT_DYNAMIC(CPropertySheet, CDialog)

// ---- Pages

CPropertyPage::CPropertyPage(UINT template_id) : CDialog(template_id) {}

CPropertyPage::CPropertyPage(DialogTemplate page)
    : m_pTemplate(std::make_unique<DialogTemplate>(std::move(page))) {}

CPropertyPage::~CPropertyPage() {
  EndInDestructor();
  if (m_pSheet != nullptr) m_pSheet->Forget(this);
}

std::optional<DialogTemplate> CPropertyPage::Template() const {
  if (m_pTemplate != nullptr) return *m_pTemplate;
  return FindDialogTemplate(GetTemplateId());
}

void CPropertyPage::SetModified(BOOL modified) {
  const bool was_modified = std::exchange(m_bModified, modified != 0);
  if (m_pSheet == nullptr) return;
  if (m_bModified != was_modified) m_pSheet->CountModified(m_bModified);
  m_pSheet->ShowModified();
}

BOOL CPropertyPage::OnSetActive() {
  UpdateData(0);
  return 1;
}

BOOL CPropertyPage::OnKillActive() { return UpdateData(1); }

BOOL CPropertyPage::OnApply() {
  OnOK();
  return 1;
}

void CPropertyPage::OnOK() {}

void CPropertyPage::OnCancel() {}

// ---- The tabs

/// The tabs as one control. A person chooses a page by its name or its number from 1.
class CPropertySheet::Tabs : public CWnd {
 public:
  explicit Tabs(CPropertySheet& sheet) : sheet_(sheet) {}

  void Tell() { Changed(WindowChange::kSelection); }

  void Describe(platform::DialogControl& control) const override {
    control.kind = platform::DialogControlKind::kList;
    for (int i = 0; i < sheet_.GetPageCount(); ++i) {
      control.items.emplace_back(sheet_.GetPageCaption(i).View());
    }
    control.value = sheet_.GetPageCaption(sheet_.GetActiveIndex()).View();
  }

  bool Enter(std::string_view value) override {
    for (int i = 0; i < sheet_.GetPageCount(); ++i) {
      if (value == sheet_.GetPageCaption(i).View()) return Choose(i);
    }
    int number = 0;
    const char* const end = value.data() + value.size();
    const auto read = std::from_chars(value.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end) return false;
    return sheet_.GetPage(number - 1) != nullptr && Choose(number - 1);
  }

 private:
  /// The person has chosen, whether the pages agree or not.
  bool Choose(int index) {
    sheet_.SetActivePage(index);
    return true;
  }

  CPropertySheet& sheet_;
};

// ---- The sheet

CPropertySheet::CPropertySheet(const char* caption, CWnd* parent, int first_page)
    : m_strCaption(caption == nullptr ? "" : caption),
      m_pSheetParent(parent),
      m_nFirstPage(first_page) {}

CPropertySheet::~CPropertySheet() {
  // While the tabs are still there, and before the pages lose their sheet.
  EndInDestructor();
  for (CPropertyPage* const page : m_pages) page->m_pSheet = nullptr;
}

bool CPropertySheet::AddPage(CPropertyPage* page) {
  if (page == nullptr || page->m_pSheet != nullptr) return false;
  m_pages.push_back(page);
  page->m_pSheet = this;
  if (page->m_bModified) CountModified(true);
  return true;
}

void CPropertySheet::Forget(CPropertyPage* page) {
  if (m_pages.back() == page) {
    m_pages.pop_back();
  } else {
    m_pages.erase(std::find(m_pages.begin(), m_pages.end(), page));
  }
  if (page->m_bModified) CountModified(false);
  if (m_pActive == page) m_pActive = nullptr;
  ShowModified();
}

CPropertyPage* CPropertySheet::GetPage(int index) const {
  return index >= 0 && index < GetPageCount() ? m_pages[static_cast<std::size_t>(index)] : nullptr;
}

int CPropertySheet::GetPageIndex(const CPropertyPage* page) const {
  const auto found = std::find(m_pages.begin(), m_pages.end(), page);
  return found == m_pages.end() ? -1 : static_cast<int>(found - m_pages.begin());
}

CString CPropertySheet::GetPageCaption(int index) const {
  const CPropertyPage* const page = GetPage(index);
  if (page == nullptr) return {};
  if (page->GetSafeHwnd() != nullptr) return page->GetWindowText();
  const std::optional<DialogTemplate> pattern = page->Template();
  return pattern ? CString(pattern->caption.c_str()) : CString();
}

DialogTemplate CPropertySheet::Pattern(bool with_buttons) const {
  CSize page;
  for (const CPropertyPage* const each : m_pages) {
    const std::optional<DialogTemplate> pattern = each->Template();
    if (!pattern) continue;
    page.cx = std::max(page.cx, pattern->size.cx);
    page.cy = std::max(page.cy, pattern->size.cy);
  }
  if (with_buttons) page.cx = std::max(page.cx, 3 * (kButtonWidth + kMargin));
  const CRect tabs{kMargin, kMargin, kMargin + page.cx + 2 * kPageBorder,
                   kMargin + page.cy + kTabsHeight + kPageBorder};
  DialogTemplate sheet;
  sheet.caption = m_strCaption.View();
  sheet.size = {tabs.right + kMargin, tabs.bottom + kMargin};
  sheet.controls.push_back({"SysTabControl32", kTabControlId, "", tabs, "class", {}});
  if (!with_buttons) return sheet;
  LONG left = sheet.size.cx - 3 * (kButtonWidth + kMargin);
  for (const auto& [id, text_id] : {std::pair<int, UINT>(IDOK, IDS_BUTTON_OK),
                                    {IDCANCEL, IDS_BUTTON_CANCEL},
                                    {ID_APPLY_NOW, IDS_BUTTON_APPLY}}) {
    sheet.controls.push_back(Button(id, text_id, left, sheet.size.cy));
    left += kButtonWidth + kMargin;
  }
  sheet.size.cy += kButtonHeight + kMargin;
  return sheet;
}

int CPropertySheet::DoModal() {
  if (m_pages.empty() || GetSafeHwnd() != nullptr) return -1;
  InitModalIndirect(Pattern(true), m_pSheetParent);
  return CDialog::DoModal();
}

bool CPropertySheet::Create(CWnd* parent, bool child) {
  return CreateIndirect(Pattern(false), parent, child);
}

BOOL CPropertySheet::OnInitDialog() {
  const Watched self(*this);
  const BOOL choose_focus = CDialog::OnInitDialog();
  if (!self.IsThere()) return 0;
  m_pTabs = std::make_unique<Tabs>(*this);
  m_pTabs->SubclassDlgItem(kTabControlId, this);
  m_pActive = nullptr;
  // A page that refuses leaves the place to the next one.
  const int first = GetPage(m_nFirstPage) == nullptr ? 0 : m_nFirstPage;
  for (int i = 0; self.IsThere() && m_pActive == nullptr && i < GetPageCount(); ++i) {
    Activate(GetPage((first + i) % GetPageCount()));
  }
  return choose_focus;
}

CRect CPropertySheet::TabsPlace() const {
  const CRect client = GetClientRect();
  const LONG below = GetDlgItem(IDOK) == nullptr ? kMargin : kButtonHeight + 2 * kMargin;
  return {kMargin, kMargin, std::max(kMargin, client.right - kMargin),
          std::max(kMargin, client.bottom - below)};
}

void CPropertySheet::LayOutPages() {
  if (m_pTabs == nullptr || GetSafeHwnd() == nullptr) return;
  const Watched self(*this);
  const CRect tabs = TabsPlace();
  m_pTabs->MoveWindow(tabs);
  if (self.IsThere() && m_pActive != nullptr) m_pActive->MoveWindow(PagePlace(tabs));
}

bool CPropertySheet::SetActivePage(int index) {
  CPropertyPage* const page = GetPage(index);
  if (page == nullptr) return false;
  if (GetSafeHwnd() == nullptr) {
    m_nFirstPage = index;
    return true;
  }
  if (page == m_pActive) return true;
  const Watched self(*this);
  if (m_pActive != nullptr && m_pActive->OnKillActive() == 0) return false;
  return self.IsThere() && GetPageIndex(page) >= 0 && Activate(page);
}

void CPropertySheet::TurnPage(bool forward) {
  const int count = GetPageCount();
  const int from = GetActiveIndex();
  if (from < 0 || count < 2) return;
  const Watched self(*this);
  if (m_pActive->OnKillActive() == 0) return;
  // A page that refuses leaves the place to the next one.
  for (int step = 1; self.IsThere() && step < count; ++step) {
    CPropertyPage* const page = GetPage((from + (forward ? step : count - step)) % count);
    if (page == nullptr || Activate(page)) return;
  }
}

BOOL CPropertySheet::PreTranslateMessage(MSG* message) {
  const WPARAM key = message->wParam;
  if (message->message == WM_KEYDOWN && IsKeyDown(VK_CONTROL) &&
      (key == VK_TAB || key == VK_NEXT || key == VK_PRIOR)) {
    TurnPage(key == VK_TAB ? !IsKeyDown(VK_SHIFT) : key == VK_NEXT);
    return 1;
  }
  return CDialog::PreTranslateMessage(message);
}

bool CPropertySheet::OpenPage(CPropertyPage* page) {
  if (page->GetSafeHwnd() != nullptr) return true;
  const std::optional<DialogTemplate> pattern = page->Template();
  if (!pattern || !page->CreateIndirect(*pattern, this, true)) return false;
  // Its controls come before the sheet's buttons.
  page->SetWindowOrder(m_pTabs.get());
  return true;
}

bool CPropertySheet::Activate(CPropertyPage* page) {
  const Watched self(*this);
  const bool opened = OpenPage(page);
  if (!self.IsThere()) return false;
  const Watched wanted(*page);
  const bool agreed = opened && page->OnSetActive() != 0;
  if (!self.IsThere()) return false;
  if (agreed && wanted.IsThere()) return Show(page);
  if (m_pActive != nullptr) m_pActive->OnSetActive();
  return false;
}

bool CPropertySheet::Show(CPropertyPage* page) {
  const Watched self(*this);
  const Watched wanted(*page);
  const auto stays = [&] { return self.IsThere() && wanted.IsThere() && m_pActive == page; };
  CPropertyPage* const former = std::exchange(m_pActive, page);
  const CWnd* const focus = GetFocus();
  const bool had_focus = former != nullptr && (former == focus || former->IsChild(focus));
  if (former != nullptr) former->ShowWindow(SW_HIDE);
  if (stays()) LayOutPages();
  if (stays()) page->ShowWindow(SW_SHOW);
  // The page may have chosen a control itself.
  if (stays() && had_focus && !page->IsChild(GetFocus())) detail::FocusFirst(*page);
  if (!stays()) return false;
  m_pTabs->Tell();
  OnPageSetActive(page);
  return stays();
}

void CPropertySheet::OnPageSetActive(CPropertyPage*) {}

bool CPropertySheet::OnApply() {
  const Watched self(*this);
  if (m_pActive != nullptr && m_pActive->OnKillActive() == 0) return false;
  for (int i = 0; i < GetPageCount();) {
    CPropertyPage* const page = GetPage(i);
    const bool applied = page->GetSafeHwnd() == nullptr || page->OnApply() != 0;
    if (!self.IsThere()) return false;
    if (!applied) {
      if (GetPageIndex(page) >= 0 && page != m_pActive) Activate(page);
      return false;
    }
    // One that has dropped itself leaves its place to the next.
    if (GetPage(i) == page) ++i;
  }
  for (CPropertyPage* const page : m_pages) page->m_bModified = false;
  m_nModified = 0;
  SetModified(0);
  return self.IsThere();
}

void CPropertySheet::OnOK() {
  if (OnApply()) EndDialog(IDOK);
}

void CPropertySheet::OnApplyNow() {
  if (OnApply() && m_pActive != nullptr) m_pActive->OnSetActive();
}

void CPropertySheet::OnCancel() {
  const Watched self(*this);
  for (int i = 0; i < GetPageCount();) {
    CPropertyPage* const page = GetPage(i);
    if (page->GetSafeHwnd() != nullptr) page->OnCancel();
    if (!self.IsThere()) return;
    if (GetPage(i) == page) ++i;
  }
  CDialog::OnCancel();
}

void CPropertySheet::SetModified(BOOL modified) {
  m_bModified = modified != 0;
  ShowModified();
}

bool CPropertySheet::IsModified() const { return m_bModified || m_nModified > 0; }

void CPropertySheet::ShowModified() {
  if (CWnd* const button = GetDlgItem(ID_APPLY_NOW)) button->EnableWindow(IsModified());
}

bool CPropertySheet::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CPropertySheet::OnApplyNow>(ID_APPLY_NOW),
  };
  return CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
}

}  // namespace dq
