// Splitters that hide a row or a column.

#pragma once

#include "dqlib/framework/windows/splitter_wnd.h"

namespace dq {

/// A splitter of which a row and a column can be hidden, one of each at a time, and whose panes can
/// be replaced by others. Rows and columns are counted among those in sight: what lies behind a
/// hidden one has a number less. The panes of a hidden one live on and end with the splitter.
class CDQSplitterWnd : public CSplitterWnd {
  DECLARE_DYNCREATE(CDQSplitterWnd)
  CDQSplitterWnd() = default;
  ~CDQSplitterWnd() override;

  /// Ends the pane of a cell and makes a view of the class in its place for the same document,
  /// which stays meanwhile; `size` becomes the ideal size of its column and row. If the former pane
  /// was the active one, or none was, the new one becomes it. It is brought up to date the first
  /// time.
  ///
  /// False if there is no such pane, or it is of the class already: then nothing has happened. A
  /// view that can't be made is traced and false too; the pane stays if that can be told before.
  bool ReplaceView(int row, int column, const CRuntimeClass* view_class, const CSize& size);

  /// Hides a column, whose neighbours take its room. If the active pane lies in it, the one in the
  /// next column becomes active, or behind the last one that in column 0. Nothing happens if one is
  /// hidden already, or it is the only one, or there is no such column. Rows alike.
  void HideColumn(int column) { Hide(Columns(), Rows(), column); }
  void HideRow(int row) { Hide(Rows(), Columns(), row); }
  /// Shows the hidden one where it was, as wide or high as it was.
  void ShowColumn() { Show(Columns(), Rows()); }
  void ShowRow() { Show(Rows(), Columns()); }
  /// Which one is hidden, or -1.
  int GetHiddenColumn() const { return m_nHiddenColumn; }
  int GetHiddenRow() const { return m_nHiddenRow; }

  /// Whether the panes follow the mouse while a bar is dragged; at first they don't.
  bool IsDynamic() const { return m_bDynamic; }
  void SetDynamic(bool dynamic) { m_bDynamic = dynamic; }

 protected:
  void MoveTracking(const CPoint& point) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  /// The columns or the rows.
  struct Lines {
    int& count;
    int& hidden;
    std::vector<CRowColInfo>& info;
    bool are_columns;

    bool CanHide(int line) const { return line >= 0 && line < count && hidden < 0 && count > 1; }
    int IdOf(int line, int across) const {
      return are_columns ? IdFromRowCol(across, line) : IdFromRowCol(line, across);
    }
    /// Where the panes of the hidden one are kept, of so many that there were with it.
    int SpareOf(int all) const { return are_columns && all == kMostLines ? all - 1 : all; }
  };

  Lines Columns() { return {m_nCols, m_nHiddenColumn, m_colInfo, true}; }
  Lines Rows() { return {m_nRows, m_nHiddenRow, m_rowInfo, false}; }
  /// All that there are, with the spare place of a hidden one at the end.
  static std::vector<int> PlacesOf(const Lines& lines);
  void Hide(const Lines& lines, const Lines& across, int line);
  void Show(const Lines& lines, const Lines& across);
  bool ShowPanesInSight(const std::vector<HWND>& panes);

  int m_nHiddenColumn = -1;
  int m_nHiddenRow = -1;
  bool m_bDynamic = false;
};

}  // namespace dq
