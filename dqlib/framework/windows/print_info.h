// What a view knows of a print job while it prints.

#pragma once

#include "dqlib/framework/windows/print_dialog.h"

namespace dq {

/// A print job of a view. Pages count from 1.
struct CPrintInfo {
  /// Of a length that isn't known.
  static constexpr int kUnknown = 0xFFFF;

  /// The pages that the view has. The last one may be unknown: then printing goes on until
  /// `OnPrepareDC` says otherwise.
  int GetMinPage() const { return min_page_; }
  int GetMaxPage() const { return max_page_; }
  void SetMinPage(int page) { min_page_ = page; }
  void SetMaxPage(int page) { max_page_ = page; }
  /// Those that the person wants; all, unless they chose some in the dialog.
  int GetFromPage() const { return dialog.PrintRange() ? dialog.GetFromPage() : min_page_; }
  int GetToPage() const { return dialog.PrintRange() ? dialog.GetToPage() : max_page_; }

  /// Where the person chooses; its flags may be set before `CView::DoPreparePrinting`.
  CPrintDialog dialog{PD_ALLPAGES | PD_NOSELECTION};
  /// The page under way, and what of it can be drawn on, in pixels of the device.
  int m_nCurPage = 1;
  CRect m_rectDraw;
  /// Set to false by `OnPrepareDC` where there is no such page any more.
  bool m_bContinuePrinting = true;

 private:
  int min_page_ = 1;
  int max_page_ = kUnknown;
};

}  // namespace dq
