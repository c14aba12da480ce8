// Prints rows of a tree, with a dialog by which the person can stop it.

#pragma once

#include <vector>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/windows/dialog.h"

namespace dq {

enum class PrintResult { kDone, kCancelled, kFailed };

/// Prints rows as a table. Each page has the header, the titles of the columns, at most 60 rows, in
/// letters so small that they fit the paper, and its number. Columns are as wide as they are in the
/// tree, but where the page isn't wide enough, none of them is wider than it can be so that all
/// fit. A cell that doesn't fit its column is cut and ends in "...".
class CDQPrintDlg : public CDialog {
  DECLARE_DYNAMIC(CDQPrintDlg)
  static constexpr int kRowsOfPage = 60;

  /// Rows that the tree doesn't have when their turn comes are blank. The device and the tree must
  /// outlive it; a tree whose window ends meanwhile ends the printing.
  CDQPrintDlg(CDC& dc, CSftTree& tree, std::vector<int> rows);

  /// What stands at the top of each page, and the document's title.
  void SetHeader(const char* header, const char* title);
  /// The pages that are printed, from 1; all at first. Those that aren't there are left out.
  void SetPageRange(int first, int last);
  /// The string that says what is done.
  void SetStatusText(UINT id) { m_nStatusText = id; }

  /// How many pages so many rows take, and its own.
  static int PagesOf(int rows) { return rows / kRowsOfPage + (rows % kRowsOfPage != 0 ? 1 : 0); }
  int GetPageCount() const { return PagesOf(static_cast<int>(m_rows.size())); }

  /// Prints, and handles the thread's messages meanwhile, while the tree's top-level window is
  /// disabled. What failed or was cancelled leaves nothing printed.
  PrintResult Print();

 protected:
  void OnCancel() override { m_bCancelled = true; }

 private:
  struct Layout;

  void OpenWindow();
  PrintResult PrintPages();
  void PrintPage(Layout& layout, int page);
  void PrintCells(const Layout& layout, int row, LONG top);

  CDC& m_dc;
  CSftTree& m_tree;
  std::vector<int> m_rows;
  CString m_strHeader;
  CString m_strTitle;
  int m_nFirstPage = 1;
  int m_nLastPage;
  UINT m_nStatusText = 0;
  bool m_bCancelled = false;
};

}  // namespace dq
