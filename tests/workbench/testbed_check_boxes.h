// For the testbed: a window with a tree of items with check boxes beside one of rows with them.

#pragma once

#include "apps/common/console.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/toolkit/check_list_tree.h"
#include "dqlib/toolkit/tree_ctrl_ex.h"

namespace workbench {

class CheckModel : public dq::CDQCheckBoxTreeItemModel {
 public:
  explicit CheckModel(const char* name) : name_(name) {}
  dq::CString GetItemText() const override { return name_; }
  int GetCheckState() const override { return state_; }
  void SetCheckState(int state) override { state_ = state; }

 private:
  const char* name_;
  int state_ = 0;
};

/// Becomes the program's main window. Traces each tree when it has changed, as "checks" with its
/// number: for each row in sight its name, state and, in client coordinates, the middle of its box,
/// with "*" behind the selected one; and what the second tree notifies, as "told".
class ChecksFrame : public dq::CFrameWnd {
 public:
  void Open() {
    Create("ChecksFrame", "Checks", {200, 120, 760, 420}, 0, nullptr, false);
    FillItems();
    FillRows();
    dq::AfxGetApp()->m_pMainWnd = this;
    ShowWindow(dq::SW_SHOW);
    items_.SetFocus();
  }

 protected:
  dq::BOOL OnCommand(dq::WPARAM wparam, dq::LPARAM lparam) override {
    Trace("told", dq::HiWord(wparam), "");
    return CFrameWnd::OnCommand(wparam, lparam);
  }
  dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message == dq::WM_IDLEUPDATECMDUI) TellTrees();
    return CFrameWnd::DefWindowProc(message, wparam, lparam);
  }

 private:
  static void Trace(const char* event, long long number, const std::string& text) {
    TraceLine line(event);
    line.Add("number", number);
    line.Add("text", text);
    dqapps::PrintLine(line.Finish());
  }
  static std::string Row(std::string_view name, int state, const dq::CPoint& at, bool selected) {
    return std::string(name) + "," + std::to_string(state) + "," + std::to_string(at.x) + "," +
           std::to_string(at.y) + (selected ? "*;" : ";");
  }

  void FillItems() {
    items_.SetController(&controller_);
    items_.Create(this, {10, 10, 260, 260}, 70);
    root_.reset(controller_.CreateTreeItem(&server_));
    for (CheckModel* model : {new CheckModel("Tables"), new CheckModel("Views")}) {
      server_.AddChild(model);
      auto* const item = controller_.CreateTreeItem(model);
      root_->AddChild(item);
      for (const char* name : {"EMPLOYEES", "JOBS"}) {
        auto* const leaf = new CheckModel(name);
        model->AddChild(leaf);
        item->AddChild(controller_.CreateTreeItem(leaf));
      }
    }
    items_.ExpandToLevel(items_.LoadTree(root_.get(), dq::TVI_ROOT, 9), 1);
  }
  void FillRows() {
    rows_.Create(0, {280, 10, 530, 260}, this, 71);
    rows_.AddColumn("Object", 200);
    for (std::size_t state = 0; state < 3; ++state) {
      dq::BitmapDescription picture{{13, 13}, std::vector<dq::COLORREF>(169, 0xFFFFFF)};
      for (std::size_t at = 0; at < 169; ++at) {
        const bool edge = at < 13 || at >= 156 || at % 13 == 0 || at % 13 == 12;
        const bool inside = at / 13 > 3 && at / 13 < 9 && at % 13 > 3 && at % 13 < 9;
        if (edge || (inside && state > 0)) picture.pixels[at] = state == 1 ? 0xA0A0A0 : 0;
      }
      pictures_[state].Attach(std::make_unique<const dq::BitmapDescription>(std::move(picture)));
    }
    rows_.Initialize(&pictures_[0], &pictures_[1], &pictures_[2], false, true);
    const std::pair<const char*, int> rows[] = {
        {"Server", 0}, {"Tables", 1}, {"EMPLOYEES", 2}, {"JOBS", 2}, {"Views", 1}};
    for (const auto& [name, level] : rows) rows_.SetLevel(rows_.AddString(name), level);
  }

  std::string ItemsText() {
    std::string text;
    for (int row = 0; row < items_.GetRowCount(); ++row) {
      const dq::HTREEITEM item = items_.GetRowItem(row);
      dq::CRect box;
      items_.GetStateImageRect(item, &box);
      const int image = dq::StateImageOf(items_.GetItemState(item, dq::TVIS_STATEIMAGEMASK));
      text += Row(items_.GetItemText(item).View(), image, {box.left + 8, box.top + 8},
                  item == items_.GetSelectedItem());
    }
    return text;
  }
  std::string RowsText() {
    std::string text;
    for (int row = 0; row < rows_.GetCount(); ++row) {
      dq::CRect cell;
      rows_.GetCellRect(row, -1, &cell);
      dq::CPoint at{0, cell.top + 8};
      while (at.x < cell.right && rows_.HitTest(at).part != dq::TreePart::kPicture) ++at.x;
      const dq::HBITMAP picture = rows_.GetRowPicture(row);
      int state = 0;
      while (state < 3 && picture != pictures_[state].GetSafeHandle()) ++state;
      text += Row(rows_.CellText(row, 0), state, {at.x + 6, at.y}, row == rows_.GetCaret());
    }
    return text;
  }
  void TellTrees() {
    const std::string texts[] = {ItemsText(), RowsText()};
    for (std::size_t tree = 0; tree < 2; ++tree) {
      if (texts[tree] == told_[tree]) continue;
      told_[tree] = texts[tree];
      Trace("checks", static_cast<long long>(tree), texts[tree]);
    }
  }

  dq::CDQCheckBoxTreeController controller_;
  CheckModel server_{"Server"};
  std::unique_ptr<dq::CDQTreeItemBase> root_;
  dq::CDQTreeCtrlEx items_;
  dq::CBitmap pictures_[3];
  dq::CDQCheckListTree rows_;
  std::string told_[2];
};

}  // namespace workbench
