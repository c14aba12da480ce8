// A page of a property sheet whose controls stretch with it.

#pragma once

#include "dqlib/framework/windows/property_sheet.h"
#include "dqlib/framework/windows/view.h"
#include "dqlib/toolkit/flex_host.h"

namespace dq {

class CNSFlexPropertyPage : public detail::FlexHost<CPropertyPage> {
  DECLARE_DYNAMIC(CNSFlexPropertyPage)
  using FlexHost::FlexHost;

  /// The view that the page's sheet lies in, and that view's document; null if the sheet is a
  /// dialog, or the page has no window yet.
  CView* GetView() const;
  CDocument* GetDocument() const;

  /// The document of the page's view has changed; see `CDocument::UpdateAllViews`. The base does
  /// nothing.
  virtual void OnUpdate(CView* sender, LPARAM hint, CObject* object);

 protected:
  BOOL OnInitDialog() override;
};

}  // namespace dq
