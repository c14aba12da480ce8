// A tree in a view, and what is dragged out of it and dropped on it.

#pragma once

#include "dqlib/framework/windows/drag_drop.h"
#include "dqlib/framework/windows/view.h"
#include "dqlib/toolkit/tree.h"

namespace dq {

/// The side of a drag that the tree is.
class CDQTreeDropSource : public COleDropSource {};

/// Takes texts and files that are dropped on a tree. The row under the pointer is marked meanwhile.
/// It acts on a `CSftTree` only; over any other window nothing is accepted.
class CDQTreeDropTarget : public COleDropTarget {
 public:
  UINT OnDragEnter(CWnd* window, COleDataObject* data, UINT keys, CPoint point) override;
  UINT OnDragOver(CWnd* window, COleDataObject* data, UINT keys, CPoint point) override;
  void OnDragLeave(CWnd* window) override;
  /// Gives a `CDQTree` the text, or the paths of the files: to `OnForeignDrop`, and if that doesn't
  /// take them, each to `CreateItem`, which makes it a row with that data below the marked folder
  /// or behind the marked leaf. The effect is "none" if nothing was taken.
  int OnDropEx(CWnd* window, COleDataObject* data, UINT offered, UINT effects,
               CPoint point) override;

  /// While rows of the tree are dragged: dropped on itself they are moved. Null when that is over.
  void SetDragged(const CDQTree* tree) { m_pDragged = tree; }

 private:
  const CDQTree* m_pDragged = nullptr;
};

/// A view that is filled by a tree.
class CDQTreeView : public CView {
  DECLARE_DYNCREATE(CDQTreeView)
  /// The id of its tree.
  static constexpr int kTreeId = 3070;

  CDQTreeView();
  ~CDQTreeView() override;

  /// The tree; null before the window is made, unless `SetTree` has set one.
  CDQTree* GetTree() const { return m_pTree.get(); }
  /// Takes over another tree in the place of the one there, which ends. Its window is made if it
  /// has none and the view has one.
  void SetTree(std::unique_ptr<CDQTree> tree);
  /// Whether texts can be dragged out of the tree and dropped on it. To be called at any time.
  void EnableDragging(bool enable);
  bool IsDraggingEnabled() const { return m_bDragging; }

  /// Prints the tree.
  void OnFilePrint() override;

 protected:
  /// Makes the tree, without its window. The base makes a plain one.
  virtual std::unique_ptr<CDQTree> CreateTreeControl();

  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  virtual void OnEditCut();
  virtual void OnEditCopy();
  virtual void OnEditPaste();
  virtual void OnEditClear();
  virtual void OnEditSelectAll();
  /// Enable a command where rows are selected, where the clipboard has a text, where there are
  /// rows.
  void OnUpdateNeedSel(CCmdUI* ui);
  void OnUpdateNeedClip(CCmdUI* ui);
  void OnUpdateNeedText(CCmdUI* ui);
  /// The tree's current row is dragged, by its first column as a text.
  virtual BOOL OnBeginDrag();

 private:
  LRESULT OnCreate(WPARAM wparam, LPARAM lparam);
  LRESULT OnSize(WPARAM wparam, LPARAM lparam);
  LRESULT OnSetFocus(WPARAM wparam, LPARAM lparam);
  bool MakeTreeWindow();
  void TakeDragging();

  std::unique_ptr<CDQTree> m_pTree;
  CDQTreeDropTarget m_dropTarget;
  COleDataSource m_dataSource;
  bool m_bDragging = false;
  /// Its rows may be dragged because of that alone.
  bool m_bDragAllowed = false;
};

}  // namespace dq
