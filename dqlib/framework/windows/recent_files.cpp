#include "dqlib/framework/windows/recent_files.h"

#include <algorithm>
#include <string>

#include "dqlib/framework/windows/doc_manager.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/paths.h"

namespace dq {
namespace {

constexpr std::string_view kNumber = "%d";

}  // namespace

CRecentFileList::CRecentFileList(UINT start, const char* section, const char* entry_format,
                                 int size, int longest_shown)
    : m_nStart(start),
      m_strSectionName(section),
      m_strEntryFormat(entry_format),
      m_nSize(std::max(size, 0)),
      m_nLongestShown(std::max(longest_shown, 0)) {}

CRecentFileList::~CRecentFileList() = default;

CString CRecentFileList::operator[](int index) const {
  return index < 0 || index >= GetCount() ? CString() : m_arrNames[static_cast<std::size_t>(index)];
}

int CRecentFileList::Find(const char* path) const {
  const CString wanted = Canonical(path);
  const auto is_same = [&](const CString& each) { return IsSame(each, wanted); };
  const auto found = std::ranges::find_if(m_arrNames, is_same);
  return found == m_arrNames.end() ? -1 : static_cast<int>(found - m_arrNames.begin());
}

void CRecentFileList::Add(const char* path) {
  const CString name = Canonical(path);
  if (name.IsEmpty() || m_nSize == 0) return;
  std::erase_if(m_arrNames, [&](const CString& each) { return IsSame(each, name); });
  m_arrNames.insert(m_arrNames.begin(), name);
  if (GetCount() > m_nSize) m_arrNames.pop_back();
}

void CRecentFileList::Remove(int index) {
  if (index >= 0 && index < GetCount()) m_arrNames.erase(m_arrNames.begin() + index);
}

bool CRecentFileList::IsSame(const CString& left, const CString& right) const {
  return platform::IsSamePath(left.View(), right.View());
}

CString CRecentFileList::Canonical(const char* path) const {
  return CDocManager::CanonicalPath(path);
}

// ---- The profile

bool CRecentFileList::IsStored() const {
  return AfxGetApp() != nullptr && !m_strSectionName.IsEmpty() &&
         m_strEntryFormat.View().find(kNumber) != std::string_view::npos;
}

CString CRecentFileList::EntryName(int index) const {
  std::string name(m_strEntryFormat.View());
  const int number = index + 1 + static_cast<int>(m_nStart);
  return CString(name.replace(name.find(kNumber), kNumber.size(), std::to_string(number)));
}

void CRecentFileList::ReadList() {
  if (!IsStored()) return;
  m_arrNames.clear();
  for (int index = 0; index < m_nSize; ++index) {
    const CString name = AfxGetApp()->GetProfileString(m_strSectionName, EntryName(index));
    if (!name.IsEmpty()) m_arrNames.push_back(name);
  }
}

bool CRecentFileList::WriteList() {
  if (!IsStored()) return true;
  bool written = true;
  for (int index = 0; index < m_nSize; ++index) {
    const CString name = (*this)[index];
    const char* const value = index < GetCount() ? static_cast<const char*>(name) : nullptr;
    written &= AfxGetApp()->WriteProfileString(m_strSectionName, EntryName(index), value) != 0;
  }
  return written;
}

// ---- The menu

CString CRecentFileList::GetDisplayName(int index) const {
  // The tenth has 0 for its mnemonic, those behind it none.
  const int number = index + 1 + static_cast<int>(m_nStart);
  const std::string digits = std::to_string(number);
  std::string text = number < 10 ? "&" + digits : number == 10 ? "1&0" : digits;
  text += ' ';
  for (const char each : platform::AbbreviatePath(
           (*this)[index].View(), static_cast<std::size_t>(m_nLongestShown), true)) {
    text.append(each == '&' ? 2 : 1, each);
  }
  return CString(text);
}

void CRecentFileList::UpdateMenu(CCmdUI* ui) {
  CMenu* const menu = ui->m_pMenu;
  if (menu == nullptr || ui->m_pSubMenu != nullptr) {
    ui->Enable(GetCount() > 0 ? 1 : 0);
    return;
  }
  if (m_strOriginal.IsEmpty()) m_strOriginal = menu->GetMenuString(ui->m_nIndex, MF_BYPOSITION);
  const UINT first_id = ui->m_nID;
  const auto item_id = [&](UINT index) {
    return menu->GetMenuItemID(static_cast<int>(ui->m_nIndex + index));
  };
  const UINT shown = static_cast<UINT>(std::max(GetCount(), 1));
  while (item_id(shown) > first_id && item_id(shown) < first_id + static_cast<UINT>(m_nSize)) {
    menu->DeleteMenu(ui->m_nIndex + shown, MF_BYPOSITION);
  }
  if (GetCount() == 0) {
    ui->SetText(m_strOriginal);
    ui->Enable(0);
  }
  for (UINT index = 0; index < static_cast<UINT>(GetCount()); ++index) {
    const CString text = GetDisplayName(static_cast<int>(index));
    const UINT position = ui->m_nIndex + index;
    if (item_id(index) == first_id + index) {
      menu->ModifyMenu(position, MF_BYPOSITION | MF_STRING, first_id + index, text);
    } else {
      menu->InsertMenu(position, MF_BYPOSITION | MF_STRING, first_id + index, text);
    }
  }
  // The update goes on behind them.
  ui->m_nIndex += shown - 1;
  ui->m_nID = first_id + shown - 1;
  ui->m_nIndexMax = static_cast<UINT>(menu->GetMenuItemCount());
  ui->m_bEnableChanged = true;
}

}  // namespace dq
