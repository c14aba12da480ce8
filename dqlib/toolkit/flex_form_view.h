// A form view whose controls stretch with it.

#pragma once

#include "dqlib/framework/windows/form_view.h"
#include "dqlib/toolkit/flex_host.h"

namespace dq {

/// The form as its template designs it is the smallest there is; a `CNSFlexMDIChildWnd` around it
/// is told so when the view is first brought up to date.
class CNSFlexFormView : public detail::FlexHost<CFormView> {
  DECLARE_DYNAMIC(CNSFlexFormView)
  using FlexHost::FlexHost;

  void OnInitialUpdate() override;
};

}  // namespace dq
