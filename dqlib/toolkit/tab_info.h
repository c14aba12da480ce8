// The tabs of a tab view: what each shows, and its view once there is one.

#pragma once

#include <memory>
#include <string>

#include "dqlib/framework/base/array.h"
#include "dqlib/framework/controls/sft_tabs.h"
#include "dqlib/framework/windows/view.h"

namespace dq {

/// A tab's label with its flags, as it is handed to the control.
struct CTabData {
  CTabData() = default;
  /// For a control of a style (`TabsStyle`): the character behind the first "&" that isn't the last
  /// one is the mnemonic, and the "&" is taken out for styles that don't underline it. A null label
  /// counts as "".
  CTabData(const char* label, int style);

  std::string m_strLabel;
  /// `CSftTabs::TabFlag` bits.
  BYTE m_nFlags = 0;
  /// In upper case; 0 without one, or where it takes more than a byte.
  char m_cMnemonic = 0;
};

/// One tab.
class CTabInfo : public CObject {
  DECLARE_DYNAMIC(CTabInfo)
  /// With a label as it is passed, which may be null.
  explicit CTabInfo(const char* label, char mnemonic = 0, int data = 0);

  /// Notes what view is to be made when it is asked for: of the class, for the document, in the
  /// parent, with the child id `kFirstTabViewId` and the index. None of them is owned; a document
  /// that has gone by then counts as null.
  void delayCreation(const CRuntimeClass* view_class, CDocument* document, CWnd* parent,
                     bool has_border, int index);
  /// The tab's view. If there is none, it is made where `place` lies in the parent, hidden, and
  /// with `initial_update` brought up to date the first time; `ahead`: the frame isn't complete yet
  /// (see `CView::InitialUpdateAhead`). It deletes itself when its window ends; then there is none
  /// again. Null if it can't be made.
  CView* getView(bool initial_update, const CRect& place = {}, bool ahead = false);
  /// The view, if there is one.
  CView* GetExistingView() const;
  bool IsCreated() const { return GetExistingView() != nullptr; }

  void SetLabel(const char* label, char mnemonic);
  /// As it was passed.
  const char* GetLabel() const { return m_pszLabel.get(); }
  char GetMnemonic() const { return m_cMnemonic; }
  int GetData() const { return m_nData; }
  bool HasBorder() const { return m_bBorder; }
  int GetIndex() const { return m_nIndex; }
  /// Null if it has gone.
  CDocument* GetDocument() const { return m_life.expired() ? nullptr : m_pDocument; }

  static constexpr int kFirstTabViewId = 0xE901;

 private:
  CView* m_pView = nullptr;
  /// The view was made; its window tells whether it is still there.
  bool m_bCreated = false;
  HWND m_hView = nullptr;
  int m_nData = 0;
  std::unique_ptr<char[]> m_pszLabel;
  char m_cMnemonic = 0;
  const CRuntimeClass* m_pViewClass = nullptr;
  CDocument* m_pDocument = nullptr;
  std::weak_ptr<const void> m_life;
  CWnd* m_pParent = nullptr;
  bool m_bBorder = false;
  bool m_bMaking = false;
  int m_nIndex = -1;
};

/// Tabs, which it owns.
class CTabArray : public CTypedPtrArray<CObArray, CTabInfo*> {
 public:
  ~CTabArray() override;
  void RemoveAll() override;
};

}  // namespace dq
