// What makes the display items of a tree for its models.

#pragma once

#include "dqlib/toolkit/check_box_tree_item.h"

namespace dq {

/// Makes items of the class `T`, which derives from `CDQTreeItemBase`. All of them serve as that of
/// the base too, which is what a tree has (`CDQTreeCtrlEx::SetController`).
template <typename T>
class CDQTreeController_T;

template <>
class CDQTreeController_T<CDQTreeItemBase> {
 public:
  CDQTreeController_T() = default;
  CDQTreeController_T(const CDQTreeController_T&) = delete;
  CDQTreeController_T& operator=(const CDQTreeController_T&) = delete;
  virtual ~CDQTreeController_T() = default;

  /// A new item that shows the model; the caller owns it. Null if the model is of a class that the
  /// items can't show.
  virtual CDQTreeItemBase* CreateTreeItem(CDQTreeItemModel* model) {
    return new CDQTreeItemBase(model);
  }
};

template <typename T>
class CDQTreeController_T : public CDQTreeController_T<CDQTreeItemBase> {
 public:
  T* CreateTreeItem(CDQTreeItemModel* model) override = 0;
};

/// Makes items with check boxes for `CDQCheckBoxTreeItemModel`s.
class CDQCheckBoxTreeController : public CDQTreeController_T<CDQCheckBoxTreeItem> {
 public:
  CDQCheckBoxTreeItem* CreateTreeItem(CDQTreeItemModel* model) override {
    auto* const shown = dynamic_cast<CDQCheckBoxTreeItemModel*>(model);
    return shown == nullptr ? nullptr : new CDQCheckBoxTreeItem(shown);
  }
};

}  // namespace dq
