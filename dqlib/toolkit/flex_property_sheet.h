// Property sheets that stretch with their pages, as a dialog and as a view.

#pragma once

#include "dqlib/framework/windows/property_sheet.h"
#include "dqlib/framework/windows/view.h"
#include "dqlib/toolkit/flex_host.h"

namespace dq {

/// A sheet that edits a subject. The tabs and the active page fill it, its buttons stay at its
/// bottom right corner, and a size grip lies in that corner.
class CNSFlexPropertySheet : public detail::FlexHost<CPropertySheet> {
  DECLARE_DYNAMIC(CNSFlexPropertySheet)
  using FlexHost::FlexHost;

  /// What the sheet edits, or null. Not owned.
  void* GetSubject() const { return m_pSubject; }
  void SetSubject(void* subject) { m_pSubject = subject; }

  /// Where a window layer draws the size grip and lets a person drag it, in client coordinates;
  /// empty while the sheet is maximised or minimised. A change is told to the window observer as
  /// one of the content.
  const CRect& GetSizeGripRect() const { return m_rectGrip; }

 protected:
  BOOL OnInitDialog() override;
  void OnSize(UINT type, int cx, int cy) override;
  void OnPageSetActive(CPropertyPage* page) override;
  /// The background is to be drawn: the size grip goes with it.
  virtual void OnEraseBkgnd();

  /// Has the pages apply their values, and then the changes applied to the subject.
  bool OnApply() override;
  /// Applies what the pages hold to the subject. The base does nothing.
  virtual void OnApplyChanges(void* subject);

 private:
  void* m_pSubject = nullptr;
  CRect m_rectGrip;
};

/// A view that is filled by a property sheet.
class CNSFlexPropertySheetView : public detail::FlexHost<CView> {
  DECLARE_DYNAMIC(CNSFlexPropertySheetView)
  CNSFlexPropertySheetView();
  ~CNSFlexPropertySheetView() override;

  /// The sheet; add its pages before the first update. Its window is made by that.
  CNSFlexPropertySheet& GetSheet() { return m_sheet; }
  /// The sheet's size grip, in the view's client coordinates.
  CRect GetSizeGripRect() const;

  /// Makes the sheet and takes the size that it needs, which is the smallest there is; the frame
  /// around the view is told so.
  void OnInitialUpdate() override;

 protected:
  void OnSize(UINT type, int cx, int cy) override;
  /// Tells the pages that have been active, too.
  void OnUpdate(CView* sender, LPARAM hint, CObject* object) override;

 private:
  CNSFlexPropertySheet m_sheet{nullptr};
};

}  // namespace dq
