#include "dqlib/toolkit/network_tree.h"

#include <string_view>

#include "dqlib/frame/resources.h"
#include "dqlib/frame/system_error_msg.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/library.h"
#include "dqlib/resources/pictures.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDQNetworkTree, CDQTree)

namespace {

/// The network, closed and open, and a machine.
constexpr UINT kPictureIds[] = {IDB_NETWORK, IDB_NETWORK_GROUP, IDB_MACHINE};
constexpr std::string_view kMachinePrefix = "\\\\";
constexpr int kNetworkRow = 0;

}  // namespace

CDQNetworkTree::CDQNetworkTree() = default;

CDQNetworkTree::~CDQNetworkTree() { EndInDestructor(); }

void CDQNetworkTree::Initialize(int several) {
  for (std::size_t i = 0; i < std::size(kPictureIds); ++i) {
    m_pictures[i].LoadBitmap(DQLIB_GetInstanceHandle(), kPictureIds[i]);
  }
  ResetContent();
  m_bEnumerated = false;
  if (several != 0) {
    SetMultiSelect();
  } else {
    SetSingleSelect();
  }
  if (GetColumnCount() == 0) AddColumn("", GetClientRect().Width());
  CString network;
  network.LoadString(IDS_NETWORK_ROOT);
  AddString(network);
  SetBitmaps(&m_pictures[2], &m_pictures[0], &m_pictures[1]);
  if (!m_bEnumerated) SetColumnBitmap(kNetworkRow, 0, &m_pictures[0]);
}

bool CDQNetworkTree::EnumerateMachines() {
  if (GetCount() == 0) return false;
  const detail::Watched self(*this);
  const auto machines = [] {
    const CWaitCursor wait;
    return platform::Current().network->Machines();
  }();
  if (!machines.ok()) {
    NetworkErrorHandler(machines.error.code);
    return false;
  }
  for (int row = GetCount() - 1; row > kNetworkRow; --row) DeleteRow(row);
  for (std::string_view name : machines.value) {
    if (name.starts_with(kMachinePrefix)) name.remove_prefix(kMachinePrefix.size());
    AddRow(std::string(name).c_str(), 1);
  }
  // It looks as folders do, once it is one.
  SetColumnBitmap(kNetworkRow, 0, HasChildren(kNetworkRow) ? nullptr : &m_pictures[0]);
  m_bEnumerated = true;
  return true;
}

BOOL CDQNetworkTree::OnLButtonExpandCollapse() {
  if (GetHandleExpandCollapse() && GetCaret() == kNetworkRow && !m_bEnumerated) {
    if (EnumerateMachines()) Expand(kNetworkRow, true);
    return 1;
  }
  return CDQTree::OnLButtonExpandCollapse();
}

int CDQNetworkTree::GetSelectedMachines(CStringArray& names) {
  names.RemoveAll();
  for (const int row : GetSelectedRows()) {
    if (row != kNetworkRow) names.Add(GetText(row));
  }
  return names.GetSize();
}

int CDQNetworkTree::GetMachineCount() {
  return GetSelectedCount() - (IsSelected(kNetworkRow) ? 1 : 0);
}

int CDQNetworkTree::NetworkErrorHandler(DWORD code) { return dq::NetworkErrorHandler(code); }

}  // namespace dq
