// Trees: rows as delimited text, copied, saved and printed.

#include <numeric>
#include <utility>
#include <vector>

#include "dqlib/core/clipboard_writer.h"
#include "dqlib/core/system_info.h"
#include "dqlib/framework/base/file.h"
#include "dqlib/framework/base/printer_dc.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/file_dialog.h"
#include "dqlib/framework/windows/file_failure.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/print_dialog.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/resources/string_ids.h"
#include "dqlib/toolkit/print_dlg.h"
#include "dqlib/toolkit/tree.h"

namespace dq {

using detail::OrEmpty;
using detail::Watched;

namespace {

constexpr const char* kHeaderGap = "     ";
/// The framework's text for a job that can't be begun.
constexpr UINT kFailedToStart = 61702;

void AppendDelimited(std::string& out, const CDQTree& tree, int row, std::string_view delimiter) {
  const int columns = tree.GetCellCount();
  for (int column = 0; column < columns; ++column) {
    if (column > 0) out += delimiter;
    out += tree.CellText(row, column);
  }
}

UINT StatusTextOf(int pages) {
  if (pages == 0) return IDS_PRINTING_NO_PAGES;
  return pages == 1 ? IDS_PRINTING_PAGE : IDS_PRINTING_PAGES;
}

bool AskForPages(int pages) {
  CString question;
  question.Format(IDS_PRINT_MANY_PAGES, pages);
  return AfxMessageBox(question, BOX_YES_NO | BOX_QUESTION) == IDYES;
}

}  // namespace

void CDQTree::GetDelimitedText(int row, CString& out, const char* delimiter) const {
  std::string text;
  if (HasRow(row)) AppendDelimited(text, *this, row, OrEmpty(delimiter));
  out = text;
}

bool CDQTree::SetDelimitedText(int row, const char* text, const char* delimiter) {
  if (!HasRow(row)) return false;
  const std::string_view mark = OrEmpty(delimiter);
  std::string_view rest = OrEmpty(text);
  const int columns = GetCellCount();
  for (int column = 0; column < columns; ++column) {
    const std::size_t end = mark.empty() ? rest.npos : rest.find(mark);
    SetText(row, column, std::string(rest.substr(0, end)).c_str());
    rest.remove_prefix(end == rest.npos ? rest.size() : end + mark.size());
  }
  return true;
}

CString CDQTree::GetCopyText() const {
  std::string text;
  for (const int row : GetSelectedRows()) {
    text.append(static_cast<std::size_t>(GetLevel(row)), '\t');
    AppendDelimited(text, *this, row, "\t");
    text += "\r\n";
  }
  return CString(text);
}

bool CDQTree::Copy() {
  if (GetSelectedCount() == 0) return true;
  const CWaitCursor wait;
  CDQClipboardWriter writer(this);
  writer.Write(GetCopyText());
  return writer.PostData();
}

void CDQTree::Save(const char* file, const char* delimiter, const char* line_end) {
  const CWaitCursor wait;
  CReplacingFile out;
  CFileException error;
  if (!out.Open(file, CFile::modeCreate | CFile::modeReadWrite | CFile::shareExclusive, &error)) {
    throw error;
  }
  const int count = GetCount();
  std::string line;
  for (int row = 0; row < count; ++row) {
    line.clear();
    AppendDelimited(line, *this, row, OrEmpty(delimiter));
    line += OrEmpty(line_end);
    out.Write(line.data(), static_cast<UINT>(line.size()));
  }
  out.Close();
}

void CDQTree::OnFileSave() {
  const Watched self(*this);
  CString filter;
  filter.LoadString(IDS_TREE_SAVE_FILTER);
  CFileDialog dialog(false, "CSV", nullptr, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, filter, this);
  if (dialog.DoModal() != IDOK || !self.IsThere()) return;
  const CString path = dialog.GetPathName();
  try {
    Save(path, ",", "\r\n");
  } catch (const CFileException& error) {
    AfxMessageBox(DescribeFileFailure(path, &error, true, IDS_SAVE_FAILED), BOX_EXCLAMATION);
  }
}

void CDQTree::OnFilePrint() {
  if (GetCount() == 0) return;
  const Watched self(*this);
  const int selected = GetSelections();
  const bool offers_selection = m_bAllowPrintSelection && selected > 0;
  int pages = CDQPrintDlg::PagesOf(GetCount());
  DWORD flags = PD_RETURNDC | PD_USEDEVMODECOPIES;
  if (!offers_selection) flags |= PD_NOSELECTION;
  if (offers_selection && selected > 1) flags |= PD_SELECTION;
  CPrintDialog dialog(flags, this);
  dialog.SetPageRange(1, pages);
  if (dialog.DoModal() != IDOK || !self.IsThere()) return;
  std::vector<int> rows;
  if (dialog.PrintSelection()) {
    rows = CollectSelections();
    pages = CDQPrintDlg::PagesOf(static_cast<int>(rows.size()));
  } else {
    rows.resize(static_cast<std::size_t>(GetCount()));
    std::iota(rows.begin(), rows.end(), 0);
  }
  if (pages > 1 && (!AskForPages(pages) || !self.IsThere())) return;
  CString header =
      m_strPrintHeaderPrefix.IsEmpty() ? CString(AfxGetAppName()) : m_strPrintHeaderPrefix;
  const CString title = header;
  header += kHeaderGap + CDQSystemInfo::GetCurrentDate(DATE_SHORT);
  header += kHeaderGap + CDQSystemInfo::GetTickCount();

  platform::PrintJob job = dialog.GetPrintJob();
  // Those pages alone are drawn that were chosen.
  job.first_page = 1;
  job.last_page = 0;
  PrinterDC dc(job);
  CDQPrintDlg printing(dc, *this, std::move(rows));
  printing.SetHeader(header, title);
  if (dialog.PrintRange()) printing.SetPageRange(dialog.GetFromPage(), dialog.GetToPage());
  printing.SetStatusText(StatusTextOf(pages));
  if (printing.Print() == PrintResult::kFailed) {
    const CString why = dc.GetErrorText();
    if (why.IsEmpty()) {
      AfxMessageBox(kFailedToStart);
    } else {
      AfxMessageBox(why);
    }
  }
}

}  // namespace dq
