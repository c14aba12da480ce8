#include "apps/workbench/tree_frame.h"

#include "dqlib/frame/resource_manager.h"

namespace workbench {
namespace {

constexpr dq::CSize kSize{600, 500};
constexpr int kUsers = 10;
constexpr int kTables = 100;

}  // namespace

bool TreeFrame::Open(dq::CWnd& owner) {
  const dq::CPoint at = owner.ClientToScreen({60, 60});
  const bool made = CreateFrame({.class_name = "TreeFrame",
                                 .text = "Tree",
                                 .place = {at.x, at.y, at.x + kSize.cx, at.y + kSize.cy},
                                 .owner = &owner,
                                 .visible = false},
                                0, nullptr);
  if (!made || !tree_.Create(0, {}, this, dq::kFirstPaneId)) return false;
  tree_.AddColumn("Name", 260);
  tree_.AddColumn("Kind", 140);
  tree_.AddColumn("Rows", 100, dq::kColumnNumber);
  tree_.SetMultiSelect();
  tree_.AllowDrag(true);
  tree_.AllowRearranging(true);
  tree_.SetRedraw(false);
  Fill();
  tree_.SetRedraw(true);
  RecalcLayout();
  ShowWindow(dq::SW_SHOW);
  tree_.SetFocus();
  return true;
}

/// Adds a row with the picture of its type.
void TreeFrame::Add(const std::string& name, int level, dq::OBJECTTYPES type, int rows) {
  const int row = tree_.AddRow(name.c_str(), level);
  tree_.SetText(row, 1, dq::GetObjectTypeText(type, dq::DBMS_ORACLE));
  tree_.SetText(row, 2, rows);
  tree_.SetColumnBitmap(row, 0, dq::CDQResourceManager::GetInstance()->GetObjectBitmap(type));
}

void TreeFrame::Fill() {
  for (int user = 1; user <= kUsers; ++user) {
    const std::string name = "USER_" + std::to_string(user);
    Add(name, 0, dq::OT_USER, kTables);
    for (int table = 1; table <= kTables; ++table) {
      const std::string number = std::to_string(table);
      Add("TABLE_" + number, 1, dq::OT_TABLE, table * user);
      Add("PK_" + number, 2, dq::OT_PRIMARY_KEY, 1);
      Add("IX_" + number, 2, dq::OT_INDEX, table);
      Add("TR_" + number, 2, dq::OT_TRIGGER, 0);
    }
    for (const dq::OBJECTTYPES type :
         {dq::OT_VIEW, dq::OT_SEQUENCE, dq::OT_SYNONYM, dq::OT_PROCEDURE, dq::OT_FUNCTION,
          dq::OT_PACKAGE, dq::OT_TYPE, dq::OT_DATABASE_LINK, dq::OT_SNAPSHOT}) {
      Add(name + "_" + std::to_string(type), 1, type, 0);
    }
  }
}

dq::LRESULT TreeFrame::DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) {
  if (message == dq::WM_COMMAND && dq::HiWord(wparam) == dq::kTreeTextDoubleClick) {
    tree_.EditCell(-1, 0);
  }
  return CFrameWnd::DefWindowProc(message, wparam, lparam);
}

}  // namespace workbench
