#include "dqlib/toolkit/print_dlg.h"

#include <algorithm>
#include <string>
#include <utility>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_thread.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNAMIC(CDQPrintDlg, CDialog)

namespace {

constexpr UINT kTemplate = 44710;
constexpr int kStatusId = 44711;
constexpr int kPageId = 44712;
constexpr int kBoldWeight = 700;
constexpr BYTE kSwissFamily = 0x20;

/// Header and titles with a blank line between, the rows, and the number below another one.
constexpr int kLinesAbove = 3;
constexpr int kLinesBelow = 2;
constexpr int kLinesOfPage = kLinesAbove + CDQPrintDlg::kRowsOfPage + kLinesBelow;

/// Rows that lie deeper are printed as if they lay so deep.
constexpr int kMostIndents = 40;

/// No column is so wide that more bytes of a text could be seen.
constexpr std::size_t kMostBytes = 1 << 14;

std::string_view SeenPart(std::string_view text) {
  if (text.size() <= kMostBytes) return text;
  return text.substr(0, multi_byte::CharacterStart(text.substr(0, kMostBytes + 4), kMostBytes));
}

/// How wide columns may be so that all of them fit the page.
double WidestThatFits(std::vector<double> widths, double page) {
  std::ranges::sort(widths);
  double left = page;
  for (std::size_t at = 0; at < widths.size(); ++at) {
    const double share = left / static_cast<double>(widths.size() - at);
    if (widths[at] > share) return share;
    left -= widths[at];
  }
  return page;
}

CString PageText(int page, int pages) {
  return CString(std::to_string(page) + " / " + std::to_string(pages));
}

}  // namespace

/// Where things are on a page, in pixels of the device.
struct CDQPrintDlg::Layout {
  struct Column {
    int index;
    LONG left;
    LONG right;
    UINT flags;
  };
  Layout(const CDC& dc, const CSftTree& tree);

  const LONG width;
  const LONG line;
  std::vector<Column> columns;
  CFont font;
  CFont bold;

  CRect Line(int number) const { return {0, number * line, width, (number + 1) * line}; }
};

CDQPrintDlg::CDQPrintDlg(CDC& dc, CSftTree& tree, std::vector<int> rows)
    : CDialog(kTemplate, &tree), m_dc(dc), m_tree(tree), m_rows(std::move(rows)) {
  m_nLastPage = GetPageCount();
}

void CDQPrintDlg::SetHeader(const char* header, const char* title) {
  m_strHeader = header;
  m_strTitle = title;
}

void CDQPrintDlg::SetPageRange(int first, int last) {
  m_nFirstPage = std::max(first, 1);
  m_nLastPage = std::min(last, GetPageCount());
}

void CDQPrintDlg::OpenWindow() {
  // Without one nobody looks on.
  if (m_tree.GetSafeHwnd() == nullptr) return;
  if (!Create(kTemplate, m_tree.GetTopLevelParent())) return;
  CString status;
  status.LoadString(m_nStatusText);
  SetDlgItemText(kStatusId, status);
  ShowWindow(SW_SHOW);
}

PrintResult CDQPrintDlg::Print() {
  m_bCancelled = false;
  CWnd* const top = m_tree.GetSafeHwnd() == nullptr ? nullptr : m_tree.GetTopLevelParent();
  const HWND owner = top == nullptr ? nullptr : top->GetSafeHwnd();
  const bool disables = top != nullptr && top->IsWindowEnabled();
  OpenWindow();
  if (disables) top->EnableWindow(false);
  PrintResult result = PrintResult::kFailed;
  const auto close = [&] {
    // The owner first, so that it becomes active when this window ends.
    CWnd* const still = FromHandle(owner);
    if (disables && still != nullptr) still->EnableWindow();
    DestroyWindow();
  };
  try {
    result = PrintPages();
    if (result != PrintResult::kDone) m_dc.AbortDoc();
  } catch (...) {
    m_dc.AbortDoc();
    close();
    throw;
  }
  close();
  return result;
}

PrintResult CDQPrintDlg::PrintPages() {
  const Watched tree(m_tree);
  const HWND self = GetSafeHwnd();
  if (m_dc.StartDoc(m_strTitle.View()) < 0) return PrintResult::kFailed;
  Layout layout(m_dc, m_tree);
  const int pages = GetPageCount();
  for (int page = m_nFirstPage; page <= m_nLastPage; ++page) {
    if (self != nullptr) {
      SetDlgItemText(kPageId, PageText(page, pages));
      PumpUntilIdle();
    }
    if (m_bCancelled || !tree.IsThere() || GetSafeHwnd() != self) return PrintResult::kCancelled;
    if (m_dc.StartPage() < 0) return PrintResult::kFailed;
    PrintPage(layout, page);
    if (m_dc.EndPage() < 0) return PrintResult::kFailed;
  }
  return m_dc.EndDoc() < 0 ? PrintResult::kFailed : PrintResult::kDone;
}

CDQPrintDlg::Layout::Layout(const CDC& dc, const CSftTree& tree)
    : width(dc.GetDeviceCaps(HORZRES)),
      line(std::max(dc.GetDeviceCaps(VERTRES) / kLinesOfPage, 1)) {
  LOGFONT description;
  description.lfHeight = std::max<LONG>(line * 4 / 5, 1);
  description.lfPitchAndFamily = kSwissFamily;
  font.CreateFontIndirect(description);
  description.lfWeight = kBoldWeight;
  bold.CreateFontIndirect(description);

  // As wide to the letters as on the screen.
  const double scale =
      static_cast<double>(description.lfHeight) / std::max<LONG>(GetTextExtent(tree, "X").cy, 1);
  std::vector<double> widths;
  widths.reserve(static_cast<std::size_t>(tree.GetColumnCount()));
  for (int column = 0; column < tree.GetColumnCount(); ++column) {
    widths.push_back(tree.GetColumnWidth(column) * scale);
  }
  // Without columns rows have one text all the same.
  if (widths.empty()) widths.push_back(width);
  const double widest = WidestThatFits(widths, width);
  double left = 0;
  for (int column = 0; column < tree.GetCellCount(); ++column) {
    const double right = left + std::min(widths[static_cast<std::size_t>(column)], widest);
    const UINT format = tree.GetColumnFormat(column);
    const UINT align = (format & kColumnNumber) != 0     ? DT_RIGHT
                       : (format & kColumnCentered) != 0 ? DT_CENTER
                                                         : DT_LEFT;
    const LONG gap = line / 4;
    columns.push_back({column, static_cast<LONG>(left), static_cast<LONG>(right) - gap,
                       align | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS});
    left = right;
  }
}

void CDQPrintDlg::PrintPage(Layout& layout, int page) {
  constexpr UINT kLine = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;
  m_dc.SaveDC();
  m_dc.SetBkMode(TRANSPARENT);
  m_dc.SelectObject(&layout.bold);
  m_dc.DrawText(m_strHeader.View(), layout.Line(0), kLine);
  for (const auto& [column, left, right, flags] : layout.columns) {
    const CString title = m_tree.GetColumnTitle(column);
    CRect place = layout.Line(kLinesAbove - 1);
    place.left = left;
    place.right = right;
    m_dc.DrawText(SeenPart(title.View()), place, flags);
  }
  const LONG rule = layout.Line(kLinesAbove).top;
  m_dc.FillSolidRect({0, rule - std::max<LONG>(layout.line / 20, 1), layout.width, rule},
                     m_dc.GetTextColor());
  m_dc.SelectObject(&layout.font);
  const auto first = static_cast<std::size_t>(page - 1) * kRowsOfPage;
  for (std::size_t at = 0; at < kRowsOfPage && first + at < m_rows.size(); ++at) {
    PrintCells(layout, m_rows[first + at], layout.Line(kLinesAbove + static_cast<int>(at)).top);
  }
  m_dc.DrawText(PageText(page, GetPageCount()).View(), layout.Line(kLinesOfPage - 1),
                kLine | DT_CENTER);
  m_dc.RestoreDC(-1);
}

void CDQPrintDlg::PrintCells(const Layout& layout, int row, LONG top) {
  for (const auto& [column, left, right, flags] : layout.columns) {
    const LONG indent = column > 0 ? 0 : std::min(m_tree.GetLevel(row), kMostIndents) * layout.line;
    const CRect place{left + indent, top, right, top + layout.line};
    m_dc.DrawText(SeenPart(m_tree.CellText(row, column)), place, flags);
  }
}

}  // namespace dq
