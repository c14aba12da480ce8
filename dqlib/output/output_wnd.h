// The output pane: a bar with a tree of messages, a row for each line, and a log that mirrors it.
//
//   CDQOutputWnd pane;
//   pane.Create(&main_frame);
//   pane.AddMessage("3 rows affected", OUTPUT_DBMS_INFO);

#pragma once

#include <array>
#include <memory>
#include <string_view>

#include "dqlib/frame/output_message.h"
#include "dqlib/framework/windows/control_bar.h"
#include "dqlib/toolkit/tree.h"

namespace dq {

namespace detail {
class SharedMessage;
}

/// The pane. It is docked below the view at first, can be docked at any edge that its frame allows,
/// and floats. A host's main window hands it the `CDQOutputMessage` objects that it gets by
/// `DQM_ADD_OUTPUT_MESSAGE`. All of it is for the user-interface thread; other threads send that
/// message.
///
/// These options count: 50144, the most rows; and at each message 50256, whether a log file gets
/// the rows too, 50255, its path, and 50257, the kilobytes from which on it starts over (0 or less:
/// never).
class CDQOutputWnd : public CControlBar {
  DECLARE_DYNAMIC(CDQOutputWnd)
  /// The id that it has in its frame, which is the command to show and hide it too, and that of its
  /// tree.
  static constexpr int kBarId = 0xE820;
  static constexpr int kTreeId = 3070;
  static constexpr int kUsualMaxEntries = 1400;

  /// Takes option 50144 over, and names a log file in option 50255 if that is "": below the
  /// application's data, "<application's name>Output.log".
  CDQOutputWnd();
  /// Frees the rows.
  ~CDQOutputWnd() override;

  /// Makes the bar with its tree. False if the frame isn't made.
  bool Create(CFrameWnd* frame, int id = kBarId);

  /// The tree, made by `CreateMessageTree` when it is needed first. Each row has three columns:
  /// time, source, text. Its data is a `CString`, the message that it is of, which the rows of one
  /// message share; rows that others add have none.
  CDQTree* GetTreeWnd();

  /// How many rows are kept; below 1 counts as 1.
  int GetMaxEntries() const { return m_nMaxEntries; }
  void SetMaxEntries(int entries) { m_nMaxEntries = entries < 1 ? 1 : entries; }
  /// Whether an error (types 2 and 5) shows the bar. At first it does.
  bool GetShowOnError() const { return m_bShowOnError; }
  void SetShowOnError(bool show) { m_bShowOnError = show; }
  /// The section of the program's profile that keeps what was chosen where to save; "", as at
  /// first, keeps nothing. Null counts as "".
  void SetFileSaveRegistrySection(const char* section) { m_strSaveSection = section; }

  /// Adds a row for each line of the text, the first one with the time and the source that the type
  /// (an `OutputMessageType`) stands for, and selects the last one. For each row that comes when
  /// the tree is full, the first one goes. Tabs become four blanks; blanks around lines go, and so
  /// do blank lines but for a whole text of them, which is one empty row. Null counts as "". Takes
  /// time that grows with the text, and not with the rows there are.
  void AddMessage(const char* text, int type);
  /// How many rows so far were to go to the log and aren't there. Of a log that can't be opened the
  /// user has been told.
  std::size_t GetLostRows() const { return m_nLostRows; }

  // Commands of the context menu.

  /// Shows the message of the current row, as it came, in a box.
  virtual void OnDisplayMessage();
  /// Delete the selected rows, and all.
  virtual void OnClear();
  virtual void OnClearAll();
  void ClearTree();
  virtual void OnSelectAll();
  virtual void OnUnselectAll();
  virtual void OnCopy();
  /// Has the person choose a file, and writes all rows to it, with tabs between the columns. What
  /// fails is told in a box.
  virtual void OnSave();
  /// Has the person choose how to print, and prints all rows or the selected ones.
  virtual void OnPrint();
  virtual void OnToggleFloatDock();
  virtual void OnHideMessage();
  /// Takes option 50144 over, if it is above 0.
  virtual void OnRegistryChange();

 protected:
  /// Makes the object of the tree, without a window or columns, by `new`. The base makes a
  /// `CDQTree`.
  virtual CDQTree* CreateMessageTree();
  /// Shows the menu `IDM_OUTPUT` at a point of the screen.
  virtual void OnContextMenu(CWnd* window, CPoint point);

  /// Frees the data of a row of the tree.
  static void DeleteCallback(CSftTree& tree, int row, std::uintptr_t data);

  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  void LayOutInside() override;

 private:
  /// One message on its way into the tree.
  struct Adding;

  void AddLine(Adding& adding, const CString& time, const CString& source, std::string_view line);
  void WidenFor(std::string_view text);
  void ShowLastRow(int row);
  void ShowForError();
  /// Of a known type.
  HBITMAP PictureOf(int type);
  bool HasRows();

  LRESULT OnCreate(WPARAM, LPARAM);
  LRESULT OnSetFocus(WPARAM wparam, LPARAM lparam);
  LRESULT OnContextMenuMessage(WPARAM window, LPARAM point);
  void OnUpdateNeedsCurrent(CCmdUI* ui);
  void OnUpdateNeedsSelection(CCmdUI* ui);
  void OnUpdateNeedsRows(CCmdUI* ui);
  void OnUpdateFloat(CCmdUI* ui);

  std::unique_ptr<CDQTree> m_pTree;
  std::array<CBitmap, OUTPUT_TASK_END + 1> m_pictures;
  CString m_strSaveSection;
  int m_nMaxEntries = kUsualMaxEntries;
  std::size_t m_nLostRows = 0;
  bool m_bShowOnError = true;
};

}  // namespace dq
