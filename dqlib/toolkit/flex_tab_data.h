// What is dragged when a person drags a tab.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/framework/base/object.h"

namespace dq {

class CDQFlexTab;

/// A tab of a tab window, as it is dragged. The window is kept by its handle, so one that ends
/// meanwhile is found out.
class CDQFlexTabData : public CObject {
  DECLARE_DYNAMIC(CDQFlexTabData)
  CDQFlexTabData() = default;
  CDQFlexTabData(const CDQFlexTab* source, int tab) : m_nTab(tab) { SetSourceWnd(source); }

  /// The tab window that the drag began in; null without one, and once it has ended.
  CDQFlexTab* GetSourceWnd() const;
  void SetSourceWnd(const CDQFlexTab* source);
  /// The tab's index; whether there is such a tab nobody knows.
  int GetTab() const { return m_nTab; }
  void SetTab(int tab) { m_nTab = tab; }

  /// The bytes in which it is dragged. They are good within this process only.
  std::string GetBytes() const;
  /// Takes over such bytes. False, and no change, for any others, and for those of another process.
  bool SetBytes(std::string_view bytes);

 private:
  HWND m_hSourceWnd = nullptr;
  int m_nTab = -1;
};

}  // namespace dq
