// For the testbed: a window with a tree of a million rows.

#pragma once

#include <chrono>

#include "apps/common/console.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/resources/library.h"
#include "dqlib/resources/pictures.h"
#include "dqlib/toolkit/tree.h"

namespace workbench {

/// Traces as "tree" what the tree shows when that has changed: the first row, the current row with
/// its text, how many are selected and shown, what it is sorted by; and as "page" how many
/// microseconds the longest painting has taken.
class MillionFrame : public dq::CFrameWnd {
 public:
  void Open() {
    Create("MillionFrame", "Tree", {100, 80, 1100, 880}, 0, nullptr, false);
    tree_.Create(0, {}, this, dq::kFirstPaneId);
    tree_.AddColumn("Name", 300);
    tree_.AddColumn("Kind", 200);
    tree_.AddColumn("Rows", 120, dq::kColumnNumber);
    for (int at = 0; at < 3; ++at) {
      pictures_[at].LoadBitmap(dq::DQLIB_GetInstanceHandle(), dq::IDB_LEAF + at);
    }
    tree_.SetRedraw(false);
    for (int row = 0; row < kRows; ++row) {
      const bool is_folder = row % kRowsOfFolder == 0;
      const std::string name = (is_folder ? "folder " : "leaf ") + std::to_string(kRows - row);
      tree_.AddRow(name.c_str(), is_folder ? 0 : 1);
      tree_.SetText(row, 1, is_folder ? "folder" : "leaf");
      tree_.SetText(row, 2, row);
    }
    tree_.SetDefaultPictures(pictures_[1].GetSafeHandle(), pictures_[2].GetSafeHandle(),
                             pictures_[0].GetSafeHandle());
    tree_.SetMultiSelect();
    tree_.AllowDrag(true);
    tree_.AllowRearranging(true);
    tree_.SetRedraw(true);
    RecalcLayout();
    ShowWindow(dq::SW_SHOW);
    tree_.SetFocus();
  }

 protected:
  dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message == dq::WM_APP) Tell();
    if (message == dq::WM_COMMAND && dq::HiWord(wparam) == dq::kTreeTextDoubleClick) {
      tree_.EditCell(-1, 0);
    }
    return CFrameWnd::DefWindowProc(message, wparam, lparam);
  }

 private:
  static constexpr int kRows = 1'000'000;
  static constexpr int kRowsOfFolder = 1000;

  struct Tree : dq::CDQTree {
    void OnPaint(dq::CDC& dc) override {
      const auto begin = std::chrono::steady_clock::now();
      CDQTree::OnPaint(dc);
      const std::chrono::microseconds taken = std::chrono::duration_cast<std::chrono::microseconds>(
          std::chrono::steady_clock::now() - begin);
      longest = std::max<long long>(longest, taken.count());
      GetParent()->PostMessage(dq::WM_APP);
    }
    long long longest = 0;
  };

  void Tell() {
    std::string text =
        std::to_string(tree_.GetTopRow()) + " " + std::to_string(tree_.GetCaret()) + " \"" +
        std::string(tree_.GetText(tree_.GetCaret()).View()) + "\" " +
        std::to_string(tree_.GetSelectedCount()) + " of " + std::to_string(tree_.GetShownCount()) +
        " " + std::to_string(tree_.GetSortMarkColumn()) + (tree_.IsSortMarkAscending() ? "+" : "-");
    if (text == told_) return;
    TraceLine line("tree");
    line.Add("text", text);
    line.Add("page", std::exchange(tree_.longest, 0));
    dqapps::PrintLine(line.Finish());
    told_ = std::move(text);
  }

  dq::CBitmap pictures_[3];
  Tree tree_;
  std::string told_;
};

}  // namespace workbench
