// The controls of a dialog: made from its template, and described to the person who answers. For
// the framework's own sources.

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/windows/dialog_template.h"
#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/dialog_view.h"

namespace dq::detail {

/// Makes the controls in `dialog` and puts their objects into `controls`. A window class that
/// nobody has registered makes a plain window. False if a handler has ended the dialog.
bool MakeControls(const DialogTemplate& pattern, CWnd& dialog,
                  std::vector<std::unique_ptr<CWnd>>& controls);

/// Every control, those of child dialogs in their places. Labels of controls without a text of
/// their own are the texts before them. Whoever is hidden or disabled with its parent counts so.
std::vector<platform::DialogControl> DescribeControls(const CWnd& dialog);

/// A label as it is shown: without the "&" before its mnemonic, and with one for two.
std::string WithoutMnemonic(std::string_view label);

/// The first control with the id, in the dialog or in those child dialogs of it that are visible.
CWnd* FindControl(const CWnd& dialog, int id);

}  // namespace dq::detail
