// The machines of the network, to choose some.

#pragma once

#include "dqlib/toolkit/tree.h"

namespace dq {

/// A tree with a row for the network and, once that is opened, one for each machine below it.
class CDQNetworkTree : public CDQTree {
  DECLARE_DYNCREATE(CDQNetworkTree)
  CDQNetworkTree();
  ~CDQNetworkTree() override;

  /// Loads the pictures and adds the row of the network, in the place of all rows. With `several`
  /// not 0 more than one machine can be selected.
  void Initialize(int several);
  /// Adds the machines below the first row, by their names without the leading backslashes, and
  /// returns whether the network could be asked; else the person is told why not. Those that are
  /// there already go first.
  bool EnumerateMachines();
  /// The names of the selected machines in the place of what `names` holds; their number.
  int GetSelectedMachines(CStringArray& names);
  /// How many machines are selected.
  int GetMachineCount();
  /// Tells the person of an error of the network; see `dq::NetworkErrorHandler`.
  int NetworkErrorHandler(DWORD code);

 protected:
  BOOL OnLButtonExpandCollapse() override;

 private:
  CBitmap m_pictures[3];
  bool m_bEnumerated = false;
};

}  // namespace dq
