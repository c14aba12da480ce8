// An edit with handlers of its own, as a terminal has them.

#pragma once

#include "dqlib/framework/controls/edit_model.h"

namespace dq::test {

/// Keeps what stands before `start` from a person, who types behind it, and the last line entered.
template <typename Edit>
struct PromptEdit : Edit {
  int Caret() const { return static_cast<int>(this->GetSel() >> 16); }
  LRESULT OnChar(WPARAM character, LPARAM lparam) {
    if (character == '\b' && Caret() <= start) return 0;
    if (Caret() < start) this->SetSel(this->GetWindowTextLength(), -1);
    this->DefWindowProc(WM_CHAR, character, lparam);
    if (character == '\r') line = this->Text().substr(start, Caret() - start);
    return 0;
  }
  LRESULT OnKeyDown(WPARAM key, LPARAM lparam) {
    return key == VK_DELETE && Caret() < start ? 0 : this->DefWindowProc(WM_KEYDOWN, key, lparam);
  }
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    static constexpr MessageMapEntry kEntries[] = {
        MessageEntry<&PromptEdit::OnChar>(WM_CHAR),
        MessageEntry<&PromptEdit::OnKeyDown>(WM_KEYDOWN)};
    return CallEntry(kEntries, *this, key, arguments) || Edit::CallMapped(key, arguments);
  }
  int start = 2;
  std::string line;
};

}  // namespace dq::test
