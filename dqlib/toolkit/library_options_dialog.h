// The options dialog that the library brings with it.

#pragma once

#include <memory>

#include "dqlib/toolkit/options_dialog.h"

namespace dq {

/// The dialog for the options of the library's own file: its switches, numbers, texts and colors.
/// A host may add pages. Values are those of the platform in force.
class CDQLibraryOptionsDlg : public CDQOptionsDlg {
 public:
  static constexpr UINT kTemplateId = 44510;

  explicit CDQLibraryOptionsDlg(CWnd* parent = nullptr);
  ~CDQLibraryOptionsDlg() override;

 private:
  std::vector<std::unique_ptr<CDQOptionsPage>> m_ownPages;
};

}  // namespace dq
