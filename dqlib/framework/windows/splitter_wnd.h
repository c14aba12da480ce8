// Splitters: windows whose client area is divided into rows and columns of panes.

#pragma once

#include <vector>

#include "dqlib/framework/windows/control_bar.h"
#include "dqlib/framework/windows/view.h"

namespace dq {

/// A splitter with a fixed number of rows and columns. In each cell lies a pane, a window with the
/// id `IdFromRowCol`; between them are bars, which a person drags. In a frame it has the id
/// `kFirstPaneId` and fills what the control bars leave; in another splitter it is a pane itself.
///
/// Rows and columns count from 0; for one that isn't there operations do nothing and answer false,
/// null or 0. What panes notify by `WM_COMMAND` and `WM_NOTIFY` goes on to the splitter's parent.
class CSplitterWnd : public CWnd {
  DECLARE_DYNCREATE(CSplitterWnd)
  CSplitterWnd() = default;
  ~CSplitterWnd() override;

  /// The most rows, and columns.
  static constexpr int kMostLines = 16;

  /// Makes the window, without panes. False for numbers below 1 or above `kMostLines`, and if there
  /// would be just one pane.
  bool CreateStatic(CWnd* parent, int rows, int columns, int id = kFirstPaneId);

  /// Makes a view in a cell, which deletes itself when its window ends; `size` becomes the ideal
  /// size of its column and row. Without a context it is for the document of the active view. The
  /// first view becomes the frame's active one. False if the cell is taken, the class is none of a
  /// view or the window can't be made.
  virtual bool CreateView(int row, int column, const CRuntimeClass* view_class, const CSize& size,
                          const CCreateContext* context = nullptr);
  /// Ends the pane of a cell; if it was the active one, the next one becomes active.
  virtual void DeleteView(int row, int column);

  int GetRowCount() const { return m_nRows; }
  int GetColumnCount() const { return m_nCols; }
  static constexpr int IdFromRowCol(int row, int column) {
    return kFirstPaneId + row * kMostLines + column;
  }
  /// The window in a cell, or null.
  CWnd* GetPane(int row, int column) const;
  /// Whether a window is a pane, and in which row and column; either may be null, and is -1 if not.
  bool IsChildPane(const CWnd* window, int* row = nullptr, int* column = nullptr) const;

  /// The pane with the frame's active view or, if the frame has none, with the focus; itself or the
  /// splitter around it. Null if there is none here. Row and column as above.
  CWnd* GetActivePane(int* row = nullptr, int* column = nullptr) const;
  /// Makes the view of a cell the frame's active one, or gives another window there the focus.
  virtual void SetActivePane(int row, int column);
  /// Makes the next pane active, or the previous one: row by row, from the end on at the beginning.
  /// False if there is no other one.
  virtual bool ActivateNext(bool previous = false);

  /// The height of a row that `RecalcLayout` shall give it, and the least one, in pixels; below 0
  /// counts as 0. `GetRowInfo` tells the height it has. Columns alike.
  void SetRowInfo(int row, int ideal, int least);
  void GetRowInfo(int row, int& current, int& least) const;
  void SetColumnInfo(int column, int ideal, int least);
  void GetColumnInfo(int column, int& current, int& least) const;

  /// Lays out the panes: from the first on, each row gets its ideal height as far as there is room,
  /// and the last what is left. One that would be lower than its least height is closed to 0, and
  /// the last that is open takes the rest. Columns alike. Called when the size changes and when a
  /// pane is made.
  virtual void RecalcLayout();

  /// Bars at a point: that below a row, that to the right of a column, or where both cross. -1 is
  /// none.
  struct Bars {
    int row = -1;
    int column = -1;

    bool IsNone() const { return row < 0 && column < 0; }
    friend bool operator==(const Bars&, const Bars&) = default;
  };
  /// Which bars lie at a point of the client area.
  Bars HitTest(const CPoint& point) const;
  /// Where the bar below a row lies, or to the right of a column.
  CRect GetRowBarRect(int row) const;
  CRect GetColumnBarRect(int column) const;

  /// A person drags bars with the mouse. Meanwhile the splitter has it captured, and the bars are
  /// shown where they would come to lie: `GetTrackedRowBar` and `GetTrackedColumnBar` tell where,
  /// empty if that one isn't dragged, and each change is told as one of content. Letting go has
  /// them take their place; Escape and the loss of the capture leave all as it was.
  bool IsTracking() const { return !tracked_.IsNone(); }
  CRect GetTrackedRowBar() const;
  CRect GetTrackedColumnBar() const;

 protected:
  /// A row or a column.
  struct CRowColInfo {
    int nMinSize = 0;
    int nIdealSize = 0;
    int nCurSize = 0;

    friend bool operator==(const CRowColInfo&, const CRowColInfo&) = default;
  };

  /// Begins the dragging of bars at a point of the client area.
  virtual void StartTracking(const Bars& bars, const CPoint& point);
  /// The mouse is moved while bars are dragged. The base moves where they are shown.
  virtual void MoveTracking(const CPoint& point);
  /// Ends it. With `accept` the rows or columns beside the bars get the sizes that were dragged; if
  /// not, those they had when it began.
  virtual void StopTracking(bool accept);
  /// Gives the rows or columns beside the bars the sizes that were dragged so far, for panes that
  /// follow the mouse.
  void TakeTrackedSizes();

  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnPaint(CDC& dc) override;

  /// The rows and columns in sight; there may be information on more, behind them.
  int m_nRows = 0;
  int m_nCols = 0;
  std::vector<CRowColInfo> m_rowInfo;
  std::vector<CRowColInfo> m_colInfo;

 private:
  Bars tracked_;
  /// Where the mouse was pressed, how far the bars are from there, and the ideal sizes then.
  CPoint tracking_from_;
  CSize tracked_by_;
  std::vector<CRowColInfo> former_rows_;
  std::vector<CRowColInfo> former_columns_;
};

}  // namespace dq
