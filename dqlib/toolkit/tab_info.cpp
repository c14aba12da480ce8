#include "dqlib/toolkit/tab_info.h"

#include <algorithm>
#include <cstring>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

CTabData::CTabData(const char* label, int style) : m_strLabel(detail::OrEmpty(label)) {
  const std::size_t mark = m_strLabel.find('&');
  if (mark == m_strLabel.npos || mark + 1 == m_strLabel.size()) return;
  const std::string_view behind = std::string_view(m_strLabel).substr(mark + 1);
  const std::size_t size = multi_byte::CurrentCodePage().CharacterSize(behind);
  const std::string upper = size == 1 ? multi_byte::Upper(behind.substr(0, 1)) : std::string();
  if (upper.size() == 1) m_cMnemonic = upper.front();
  if (CSftTabs::IsFlat(style)) m_strLabel.erase(mark, 1);
}

IMPLEMENT_DYNAMIC(CTabInfo, CObject)

CTabInfo::CTabInfo(const char* label, char mnemonic, int data) : m_nData(data) {
  SetLabel(label, mnemonic);
}

void CTabInfo::SetLabel(const char* label, char mnemonic) {
  m_cMnemonic = mnemonic;
  std::unique_ptr<char[]> copy;
  if (label != nullptr) {
    const std::size_t size = std::strlen(label) + 1;
    copy = std::make_unique<char[]>(size);
    std::copy_n(label, size, copy.get());
  }
  m_pszLabel = std::move(copy);
}

void CTabInfo::delayCreation(const CRuntimeClass* view_class, CDocument* document, CWnd* parent,
                             bool has_border, int index) {
  m_pViewClass = view_class;
  m_pDocument = document;
  m_life = document == nullptr ? std::weak_ptr<const void>() : document->GetLife();
  m_pParent = parent;
  m_bBorder = has_border;
  m_nIndex = index;
}

CView* CTabInfo::GetExistingView() const {
  return m_bCreated && CWnd::FromHandle(m_hView) == m_pView ? m_pView : nullptr;
}

CView* CTabInfo::getView(bool initial_update, const CRect& place, bool ahead) {
  if (CView* const view = GetExistingView()) return view;
  // A view that asks for itself while it is made doesn't get another one.
  if (m_bMaking || m_pParent == nullptr || m_pParent->GetSafeHwnd() == nullptr) return nullptr;
  const CCreateContext context{.m_pNewViewClass = m_pViewClass, .m_pCurrentDoc = GetDocument()};
  const detail::Watched parent(*m_pParent);
  const detail::SetWhile making(*m_pParent, m_bMaking);
  CView* const made = CView::MakeView(m_pParent, place, kFirstTabViewId + m_nIndex, &context);
  // With the parent, which has the tabs, this one may have gone.
  if (made == nullptr || !parent.IsThere()) return nullptr;
  const HWND handle = made->GetSafeHwnd();
  m_pView = made;
  m_hView = handle;
  m_bCreated = true;
  made->ShowWindow(SW_HIDE);
  if (!parent.IsThere()) return nullptr;
  if (initial_update && ahead && GetExistingView() != nullptr) {
    made->InitialUpdateAhead();
  } else if (initial_update) {
    SendToWindow(handle, WM_INITIALUPDATE, 0, 0);
    if (CWnd* const there = CWnd::FromHandle(handle)) {
      there->SendMessageToDescendants(WM_INITIALUPDATE);
    }
  }
  return parent.IsThere() ? GetExistingView() : nullptr;
}

CTabArray::~CTabArray() { CTabArray::RemoveAll(); }

void CTabArray::RemoveAll() {
  for (int at = 0; at < GetSize(); ++at) delete GetAt(at);
  CTypedPtrArray::RemoveAll();
}

}  // namespace dq
