#include "dqlib/toolkit/tree_view.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/platform.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNCREATE(CDQTreeView, CView)

namespace {

bool OffersRows(const COleDataObject* data) {
  return data != nullptr &&
         (data->IsDataAvailable(CLIPBOARD_TEXT) || data->IsDataAvailable(CLIPBOARD_FILES));
}

/// What is dropped: paths of files, or one text.
void ReadDropped(const COleDataObject& data, CStringArray& texts) {
  if (const auto files = data.GetData(CLIPBOARD_FILES)) {
    for (const std::string& path : platform::ReadFileList(*files)) texts.Add(CString(path));
  } else if (const auto text = data.GetData(CLIPBOARD_TEXT)) {
    // The zero behind it is no part of it.
    texts.Add(CString(text->c_str()));
  }
}

}  // namespace

UINT CDQTreeDropTarget::OnDragEnter(CWnd* window, COleDataObject* data, UINT keys, CPoint point) {
  return OnDragOver(window, data, keys, point);
}

UINT CDQTreeDropTarget::OnDragOver(CWnd* window, COleDataObject* data, UINT, CPoint point) {
  CSftTree* const tree = DYNAMIC_DOWNCAST(CSftTree, window);
  if (tree == nullptr) return DROPEFFECT_NONE;
  tree->SetDropTarget(tree->HitTest(point).row);
  if (!OffersRows(data)) return DROPEFFECT_NONE;
  return tree == m_pDragged ? DROPEFFECT_MOVE : DROPEFFECT_COPY;
}

void CDQTreeDropTarget::OnDragLeave(CWnd* window) {
  if (CSftTree* const tree = DYNAMIC_DOWNCAST(CSftTree, window)) tree->SetDropTarget(-1);
}

int CDQTreeDropTarget::OnDropEx(CWnd* window, COleDataObject* data, UINT, UINT effects,
                                CPoint point) {
  OnDragLeave(window);
  CDQTree* const tree = DYNAMIC_DOWNCAST(CDQTree, window);
  if (tree == nullptr || !OffersRows(data)) return DROPEFFECT_NONE;
  const Watched there(*tree);
  const int row = tree->HitTest(point).row;
  if (tree == m_pDragged) {
    if (point.y < tree->GetHeaderHeight()) return DROPEFFECT_NONE;
    const bool moved = tree->MoveSelItems(row);
    if (there.IsThere()) tree->PostDrag();
    return moved ? DROPEFFECT_MOVE : DROPEFFECT_NONE;
  }
  const int taken = (effects & DROPEFFECT_COPY) != 0 ? DROPEFFECT_COPY : DROPEFFECT_MOVE;
  CStringArray texts;
  ReadDropped(*data, texts);
  if (tree->OnForeignDrop(tree, &texts) != 0) return taken;
  int effect = DROPEFFECT_NONE;
  int near = row;
  for (int at = 0; there.IsThere() && at < texts.GetSize(); ++at) {
    void* const item = tree->CreateItem(texts[at], false);
    if (item == nullptr || !there.IsThere()) continue;
    const int added = tree->InsertItem(near, texts[at], item);
    // The next one comes behind it, but not into it.
    if (there.IsThere() && (near < 0 || !tree->IsFolder(near))) near = added;
    effect = taken;
  }
  return effect;
}

CDQTreeView::CDQTreeView() = default;

CDQTreeView::~CDQTreeView() { EndInDestructor(); }

bool CDQTreeView::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      MessageEntry<&CDQTreeView::OnCreate>(WM_CREATE),
      MessageEntry<&CDQTreeView::OnSize>(WM_SIZE),
      MessageEntry<&CDQTreeView::OnSetFocus>(WM_SETFOCUS),
      CommandEntry<&CDQTreeView::OnEditCut>(ID_EDIT_CUT),
      CommandEntry<&CDQTreeView::OnEditCopy>(ID_EDIT_COPY),
      CommandEntry<&CDQTreeView::OnEditPaste>(ID_EDIT_PASTE),
      CommandEntry<&CDQTreeView::OnEditClear>(ID_EDIT_CLEAR),
      CommandEntry<&CDQTreeView::OnEditSelectAll>(ID_EDIT_SELECT_ALL),
      UpdateEntry<&CDQTreeView::OnUpdateNeedSel>(ID_EDIT_CUT),
      UpdateEntry<&CDQTreeView::OnUpdateNeedSel>(ID_EDIT_COPY),
      UpdateEntry<&CDQTreeView::OnUpdateNeedClip>(ID_EDIT_PASTE),
      UpdateEntry<&CDQTreeView::OnUpdateNeedSel>(ID_EDIT_CLEAR),
      UpdateEntry<&CDQTreeView::OnUpdateNeedText>(ID_EDIT_SELECT_ALL),
      ControlEntry<&CDQTreeView::OnBeginDrag>(kTreeBeginDrag, kTreeId),
  };
  return CallEntry(kEntries, *this, key, arguments) || CView::CallMapped(key, arguments);
}

std::unique_ptr<CDQTree> CDQTreeView::CreateTreeControl() { return std::make_unique<CDQTree>(); }

LRESULT CDQTreeView::OnCreate(WPARAM wparam, LPARAM lparam) {
  const Watched self(*this);
  if (CView::DefWindowProc(WM_CREATE, wparam, lparam) == -1) return -1;
  if (!self.IsThere()) return -1;
  if (m_pTree == nullptr) m_pTree = CreateTreeControl();
  return MakeTreeWindow() ? 0 : -1;
}

bool CDQTreeView::MakeTreeWindow() {
  if (m_pTree == nullptr || m_pTree->GetSafeHwnd() != nullptr) return m_pTree != nullptr;
  const Watched self(*this);
  if (!m_pTree->Create(0, GetClientRect(), this, kTreeId) || !self.IsThere()) return false;
  TakeDragging();
  return true;
}

void CDQTreeView::SetTree(std::unique_ptr<CDQTree> tree) {
  const Watched self(*this);
  m_dropTarget.Revoke();
  m_bDragAllowed = false;
  m_pTree = std::move(tree);
  if (!self.IsThere() || GetSafeHwnd() == nullptr || m_pTree == nullptr) return;
  if (m_pTree->GetSafeHwnd() != nullptr) {
    m_pTree->SetParent(this);
    m_pTree->SetDlgCtrlID(kTreeId);
    m_pTree->MoveWindow(GetClientRect());
    if (self.IsThere()) TakeDragging();
  } else {
    MakeTreeWindow();
  }
}

void CDQTreeView::EnableDragging(bool enable) {
  m_bDragging = enable;
  TakeDragging();
}

void CDQTreeView::TakeDragging() {
  m_dropTarget.Revoke();
  if (m_pTree == nullptr) return;
  if (m_bDragging) {
    m_bDragAllowed = m_bDragAllowed || !m_pTree->IsDragAllowed();
    m_pTree->AllowDrag(true);
    m_dropTarget.Register(m_pTree.get());
  } else if (std::exchange(m_bDragAllowed, false)) {
    m_pTree->AllowDrag(false);
  }
}

LRESULT CDQTreeView::OnSize(WPARAM wparam, LPARAM lparam) {
  const Watched self(*this);
  const LRESULT result = CView::DefWindowProc(WM_SIZE, wparam, lparam);
  if (self.IsThere() && m_pTree != nullptr) m_pTree->MoveWindow(GetClientRect());
  return result;
}

LRESULT CDQTreeView::OnSetFocus(WPARAM, LPARAM) {
  if (m_pTree != nullptr) m_pTree->SetFocus();
  return 0;
}

void CDQTreeView::OnFilePrint() {
  if (m_pTree != nullptr) m_pTree->OnFilePrint();
}

void CDQTreeView::OnEditCut() {
  if (m_pTree != nullptr) m_pTree->Cut();
}

void CDQTreeView::OnEditCopy() {
  if (m_pTree != nullptr) m_pTree->Copy();
}

void CDQTreeView::OnEditPaste() {
  if (m_pTree != nullptr) m_pTree->Paste();
}

void CDQTreeView::OnEditClear() {
  if (m_pTree != nullptr) m_pTree->Clear();
}

void CDQTreeView::OnEditSelectAll() {
  if (m_pTree != nullptr) m_pTree->SelectAll();
}

void CDQTreeView::OnUpdateNeedSel(CCmdUI* ui) {
  ui->Enable(m_pTree != nullptr && m_pTree->GetSelectedCount() > 0);
}

void CDQTreeView::OnUpdateNeedClip(CCmdUI* ui) {
  const std::vector<UINT> formats = platform::Current().clipboard->Formats();
  ui->Enable(std::ranges::find(formats, CLIPBOARD_TEXT) != formats.end());
}

void CDQTreeView::OnUpdateNeedText(CCmdUI* ui) {
  ui->Enable(m_pTree != nullptr && m_pTree->GetCount() > 0);
}

BOOL CDQTreeView::OnBeginDrag() {
  if (!m_bDragging || m_pTree == nullptr) return 0;
  CDQTree& tree = *m_pTree;
  const Watched self(*this);
  const Watched there(tree);
  tree.CancelMode();
  tree.SetDropTarget(-1);
  const int row = tree.GetCaret();
  if (row < 0) return 1;
  m_dataSource.Empty();
  m_dataSource.CacheGlobalData(CLIPBOARD_TEXT, std::string_view(tree.GetText(row)));
  m_dropTarget.SetDragged(&tree);
  CDQTreeDropSource source;
  m_dataSource.DoDragDrop(tree, DROPEFFECT_COPY | DROPEFFECT_MOVE, &source);
  if (self.IsThere()) m_dropTarget.SetDragged(nullptr);
  return 1;
}

}  // namespace dq
