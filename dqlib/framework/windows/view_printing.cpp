// Views: printing.

#include <algorithm>

#include "dqlib/framework/base/printer_dc.h"
#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/print_info.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/view.h"

namespace dq {

using detail::Watched;

namespace {

/// The framework's text for a job that can't be begun.
constexpr UINT kFailedToStart = 61702;

/// Tells the person why printing failed, where the system has said it.
void TellFailure(const PrinterDC& dc) {
  const CString why = dc.GetErrorText();
  if (why.IsEmpty()) {
    AfxMessageBox(kFailedToStart);
  } else {
    AfxMessageBox(why);
  }
}

}  // namespace

bool CView::OnPreparePrinting(CPrintInfo* info) { return DoPreparePrinting(info); }

bool CView::DoPreparePrinting(CPrintInfo* info) {
  info->dialog.SetPageRange(info->GetMinPage(), info->GetMaxPage());
  return info->dialog.DoModal() == IDOK;
}

void CView::OnPrepareDC(CDC*, CPrintInfo* info) {
  // Of a length that isn't known, there is one page.
  if (info != nullptr && info->GetMaxPage() == CPrintInfo::kUnknown && info->m_nCurPage > 1) {
    info->m_bContinuePrinting = false;
  }
}

void CView::OnPrint(CDC* dc, CPrintInfo*) { OnDraw(dc); }

bool CView::PrintPages(CDC& dc, CPrintInfo& info) {
  const Watched self(*this);
  const int last = std::min(info.GetToPage(), info.GetMaxPage());
  for (int page = std::max(info.GetFromPage(), info.GetMinPage()); page <= last; ++page) {
    info.m_nCurPage = page;
    OnPrepareDC(&dc, &info);
    if (!self.IsThere()) return false;
    if (!info.m_bContinuePrinting) return true;
    info.m_rectDraw = {0, 0, dc.GetDeviceCaps(HORZRES), dc.GetDeviceCaps(VERTRES)};
    if (dc.StartPage() < 0) return false;
    OnPrint(&dc, &info);
    if (!self.IsThere() || dc.EndPage() < 0) return false;
  }
  return true;
}

void CView::OnFilePrint() {
  const Watched self(*this);
  CPrintInfo info;
  if (!OnPreparePrinting(&info) || !self.IsThere()) return;
  platform::PrintJob job = info.dialog.GetPrintJob();
  // The view draws those pages alone that were chosen.
  job.first_page = 1;
  job.last_page = 0;
  PrinterDC dc(job);
  OnBeginPrinting(&dc, &info);
  if (!self.IsThere()) return;
  const CString title = m_pDocument == nullptr ? GetWindowText() : m_pDocument->GetTitle();
  bool done = false;
  try {
    done = dc.StartDoc(title.View()) >= 0 && PrintPages(dc, info);
  } catch (...) {
    if (self.IsThere()) OnEndPrinting(&dc, &info);
    throw;
  }
  if (!self.IsThere()) return;
  done = done && dc.EndDoc() >= 0;
  if (!done) TellFailure(dc);
  if (!done) dc.AbortDoc();
  if (self.IsThere()) OnEndPrinting(&dc, &info);
}

bool CView::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {CommandEntry<&CView::OnFilePrint>(ID_FILE_PRINT)};
  return CallEntry(kEntries, *this, key, arguments) || CWnd::CallMapped(key, arguments);
}

}  // namespace dq
