// Tool bars: rows of buttons for commands.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/windows/control_bar.h"

namespace dq {

/// A tool bar as data of a resource of type 241: the words 1 (version), width and height of a
/// button's picture, count, and then as many commands, 0 for a separator. Words are little-endian.
struct ToolBarTemplate {
  CSize picture_size;
  std::vector<WORD> commands;
};

/// Reads the data of the resource; what stands behind it is ignored. No value if it is cut short or
/// of another version.
std::optional<ToolBarTemplate> ReadToolBarTemplate(std::string_view data);
/// Makes the data of the resource: "" if a number doesn't fit a word.
std::string WriteToolBarTemplate(const CSize& picture_size, std::span<const WORD> commands);

/// A button of a tool bar.
struct ToolBarButton {
  /// 0 for a separator.
  UINT command = 0;
  bool enabled = true;
  /// 0 no, 1 yes, 2 undetermined.
  int checked = 0;
  /// A person holds it down.
  bool pressed = false;

  friend bool operator==(const ToolBarButton&, const ToolBarButton&) = default;
};

/// A tool bar. Its buttons are there before its window is made; changes of them are
/// told as those of rows. Positions count from 0, separators too; for one that isn't there
/// operations do nothing and answer 0 or false.
class CToolBar : public CControlBar {
  DECLARE_DYNAMIC(CToolBar)

  /// Makes the window below `parent`, which gets the commands. A frame has it at the top at first.
  bool Create(CWnd* parent, int id = kToolBarId);

  /// Takes the buttons and their size from the tool bar resource with the id by the chain of
  /// resource modules. False, and no change, if there is none or its data are broken.
  bool LoadToolBar(UINT id);
  /// Replaces the buttons by new ones for the commands.
  void SetButtons(std::span<const WORD> commands);

  int GetItemCount() const { return static_cast<int>(buttons_.size()); }
  /// The button's command; 0 for a separator.
  UINT GetItemID(int position) const;
  /// The position of the first button for the command; -1 if there is none.
  int CommandToIndex(UINT command) const;
  /// In pixels; 16 by 15 at first.
  CSize GetPictureSize() const { return picture_size_; }
  void SetPictureSize(const CSize& size);

  /// How the button stands; a separator if there is none.
  ToolBarButton GetButton(int position) const;
  void EnableButton(int position, bool enable);
  /// `check` is 0, 1, or anything else for undetermined.
  void CheckButton(int position, int check);
  /// Shows the button held down, or not. A disabled one can't be.
  void PressButton(int position, bool press);
  /// Sends the parent the button's command, as a person does by a click. False if the button is
  /// disabled or a separator, or the bar has no parent.
  bool ClickButton(int position);

  /// Where a button lies, in client coordinates; empty if there is none. Buttons stand in a row, or
  /// in a column where the bar is vertical.
  CRect GetItemRect(int position) const;
  CSize CalcFixedLayout(const CSize& room, bool horizontal) override;
  CSize CalcFloatingLayout() override;
  /// Brings all buttons up to date by the handlers of `target` and its route. Handlers may replace
  /// the buttons, and end the bar, and `target` if that is a window.
  void OnUpdateCmdUI(CCmdTarget& target, bool disable_if_no_handler) override;

 private:
  bool IsButton(int position) const;
  CSize ButtonSize() const;
  LONG ExtentOf(int position) const;
  /// Puts the button in the state and tells the observer if that is another.
  void SetButton(int position, const ToolBarButton& state);

  std::vector<ToolBarButton> buttons_;
  CSize picture_size_{16, 15};
};

}  // namespace dq
