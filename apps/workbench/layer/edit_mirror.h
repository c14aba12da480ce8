// Edit controls.

#pragma once

#include <memory>

#include "apps/workbench/layer/edit_part.h"
#include "apps/workbench/layer/mirror.h"
#include "dqlib/framework/windows/window_messages.h"

namespace workbench {

class EditMirror : public Mirror {
 public:
  using Mirror::Mirror;
  bool Serves(const dq::CWnd& window) const override;
  bool TakesMove(dq::WORD key) const override {
    return lines_ || key == dq::VK_LEFT || key == dq::VK_RIGHT;
  }
  void TakeIn() override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowText() override;
  void ShowContent(const Changes& changes) override;

 private:
  wxTextCtrl& control() const { return static_cast<wxTextCtrl&>(*native()); }

  bool lines_ = false;
  bool password_ = false;
  std::unique_ptr<EditPart> part_;
};

}  // namespace workbench
