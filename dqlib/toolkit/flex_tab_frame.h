// A child frame whose views lie on tabs, which a person can drag to another such frame.

#pragma once

#include "dqlib/framework/base/array.h"
#include "dqlib/framework/windows/mdi_frame.h"
#include "dqlib/toolkit/flex_tab.h"
#include "dqlib/toolkit/flex_tab_drop_target.h"

namespace dq {

/// The frame fills itself with a tab window; where it is made for a class of views, the first tab
/// has a view of that class, and the document's title as its label. It takes tabs that are dragged
/// from other frames, and ends when its last tab is dragged away.
class CDQFlexTabFrame : public CMDIChildWnd {
  DECLARE_DYNCREATE(CDQFlexTabFrame)
  CDQFlexTabFrame() = default;
  ~CDQFlexTabFrame() override;

  /// Null while the frame has none.
  virtual CDQFlexTab* GetTabWnd();
  int GetTabCount();
  CDQFlexTabDropTarget* GetDropTarget() { return &m_dropTarget; }
  void ShowTabs(bool show);
  /// Makes a tab the active one. False if there is no such tab.
  bool SelectTab(int index);
  /// Makes the next tab active, or the one before it, from the end on at the other end. False
  /// without a tab.
  bool ShowNextTab(bool forward);

  /// Adds the open documents that have a view in the frame, by the order of the application's
  /// templates, and of a template's documents. Without `include_own` that of the frame's active
  /// view is left out.
  void GetDocuments(CTypedPtrArray<CObArray, CDocument*>& documents, bool include_own);
  /// Whether one of them all has been changed.
  bool ContainsModifiedDocs();
  bool IsFrameMaximized() const { return IsZoomed(); }

  /// The tab window has the first chance at each command. Before a command closes the active
  /// document, and with it the frames around its views, all others there ask to be saved; one that
  /// refuses keeps them all.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;
  void OnUpdateFrameTitle(bool add_document) override;

 protected:
  bool OnCreateClient(const CCreateContext* context) override;
  /// Each of the other documents asks to be saved first; one that refuses keeps the frame.
  void OnClose() override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  /// Menus that draw their items know their mnemonics.
  LRESULT OnMenuChar(WPARAM key, LPARAM menu);

  CDQFlexTab m_wndTab;
  CDQFlexTabDropTarget m_dropTarget;

 private:
  bool SaveDocuments(bool include_own, const CDocument* but = nullptr);
  bool CanCloseDocument();

  /// The first tab has no label yet: its document had no title.
  bool m_bLabelDue = false;
};

}  // namespace dq
