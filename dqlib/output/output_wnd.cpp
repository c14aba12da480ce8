#include "dqlib/output/output_wnd.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "dqlib/core/dq_string.h"
#include "dqlib/core/file_utility.h"
#include "dqlib/core/system_info.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/file_dialog.h"
#include "dqlib/framework/windows/file_failure.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/output/message_rows.h"
#include "dqlib/resources/library.h"
#include "dqlib/resources/menus.h"
#include "dqlib/resources/pictures.h"
#include "siblings/options/options_server.h"

namespace dq {
namespace {

constexpr int kMaxEntriesOption = 50144;
constexpr int kLogPathOption = 50255;
constexpr int kLogOption = 50256;
constexpr int kLogLimitOption = 50257;

constexpr char kSaveFolder[] = "LastSaveErrorDirectory";
constexpr char kSaveExtension[] = "LastSaveErrorFileExtension";
constexpr char kSaveFilter[] = "LastSaveErrorFilterIndex";

/// The next line, without the blanks behind it; `rest` goes on at the next text.
std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  const std::string_view line = multi_byte::TrimRight(rest.substr(0, end));
  rest = multi_byte::TrimLeft(rest.substr(end));
  return line;
}

/// Writes what the pane shows to the log too, if there is one, as the options say now. The first
/// row that can't be written ends it. Returns how many rows are missing there.
std::size_t MirrorRows(const std::vector<CString>& rows) {
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  const CString path = options.GetString(kLogPathOption);
  if (!options.GetBool(kLogOption) || path.IsEmpty()) return 0;
  const long long limit = options.GetInt(kLogLimitOption) * 1024LL;
  if (limit > 0 && DQLIB_FileExists(path) && CDQFileUtility::GetFileSize(path) >= limit) {
    CDQFileUtility::EmptyFile(path);
  }
  // A row is never empty.
  const auto lost = std::ranges::find_if(rows, [&path](const CString& row) {
    return CDQFileUtility::WriteFile(path, row, -1, false, true) <= 0;
  });
  return static_cast<std::size_t>(rows.end() - lost);
}

}  // namespace

IMPLEMENT_DYNAMIC(CDQOutputWnd, CControlBar)

CDQOutputWnd::CDQOutputWnd() : CControlBar(DockSide::kBottom) {
  constexpr CSize kUsualSize{300, 120};
  constexpr CSize kLeastSize{60, 40};
  SetMinBarSize(kLeastSize);
  SetBarSize(kUsualSize);
  EnableSizing(true);
  EnableDocking(CBRS_ALIGN_ANY);
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  if (options.GetString(kLogPathOption).IsEmpty()) {
    const CString folder = CDQSystemInfo::GetAppDataPath(true);
    // Without a folder there is no place to name.
    if (!folder.IsEmpty()) {
      options.SetString(kLogPathOption, folder + AfxGetAppName() + "Output.log");
    }
  }
  CDQOutputWnd::OnRegistryChange();
}

CDQOutputWnd::~CDQOutputWnd() { EndInDestructor(); }

bool CDQOutputWnd::Create(CFrameWnd* frame, int id) {
  if (frame == nullptr) return false;
  const CString title = detail::LoadText(IDS_OPTIONS_PAGE_OUTPUT);
  return CreateWnd({.class_name = "OutputBar", .text = title.View(), .parent = frame, .id = id});
}

CDQTree* CDQOutputWnd::CreateMessageTree() { return new CDQTree; }

CDQTree* CDQOutputWnd::GetTreeWnd() {
  if (m_pTree == nullptr) {
    m_pTree.reset(CreateMessageTree());
    detail::MakeMessageTree(*m_pTree);
    m_pTree->SetDeleteCallback(&DeleteCallback);
  }
  return m_pTree.get();
}

void CDQOutputWnd::DeleteCallback(CSftTree& tree, int row, std::uintptr_t data) {
  detail::SharedMessage::FreeRow(tree, row, data);
}

// ---- Messages

struct CDQOutputWnd::Adding {
  CDQTree& tree;
  detail::SharedMessage::Maker message;
  HBITMAP picture;
  bool keeps_rows;
  /// Each row as the log has it, if there is one.
  std::vector<CString> rows{};
  std::string_view longest{};
  int last = -1;
};

void CDQOutputWnd::AddLine(Adding& adding, const CString& time, const CString& source,
                           std::string_view line) {
  CDQTree& tree = adding.tree;
  if (tree.GetCount() >= m_nMaxEntries) tree.DeleteRow(0);
  const CString text(line);
  if (line.size() > adding.longest.size()) adding.longest = line;
  adding.last = tree.AddRow(detail::MessageTexts{time, source, text});
  tree.SetRowPicture(adding.last, adding.picture);
  adding.message->AddRow(tree, adding.last);
  if (adding.keeps_rows) adding.rows.push_back(time + ' ' + source + ' ' + text);
}

void CDQOutputWnd::AddMessage(const char* text, int type) {
  type = KnownOutputMessageType(type);
  const OutputMessageTraits& traits = GetOutputMessageTraits(type);
  const CString time = CDQSystemInfo::GetTickCount();
  CString source;
  source.Format(traits.source_id, static_cast<const char*>(time));
  CDQString shown(text);
  shown.FindReplace("\t", "    ");
  Adding adding{.tree = *GetTreeWnd(),
                .message = detail::SharedMessage::Make(text),
                .picture = PictureOf(type),
                .keeps_rows = CDQOptionsServer::GetObject()->GetBool(kLogOption)};
  std::string_view rest = multi_byte::TrimRight(shown.View());
  AddLine(adding, time, source, TakeLine(rest));
  while (!rest.empty()) AddLine(adding, "", "", TakeLine(rest));
  const detail::Watched self(*this);
  WidenFor(adding.longest);
  ShowLastRow(adding.last);
  const bool is_error = traits.kind == OutputMessageKind::kError;
  if (self.IsThere() && is_error && m_bShowOnError) ShowForError();
  if (!adding.keeps_rows) return;
  const std::size_t lost = MirrorRows(adding.rows);
  if (self.IsThere()) m_nLostRows += lost;
  // The rows hold the message.
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
}

/// Makes the column of texts as wide as one needs, so that a person can scroll to its end. Beyond
/// its first bytes they have the whole of it shown in a box.
void CDQOutputWnd::WidenFor(std::string_view text) {
  constexpr std::size_t kMostMeasured = 2000;
  constexpr int kMargin = 12;
  const CFont* const font = m_pTree->GetFont();
  const LOGFONT* const description = font == nullptr ? nullptr : &font->GetLogFont();
  const LONG width = GetTextExtent(description, text.substr(0, kMostMeasured)).cx + kMargin;
  if (width > m_pTree->GetColumnWidth(detail::kTextColumn)) {
    m_pTree->SetColumnWidth(detail::kTextColumn, static_cast<int>(width));
  }
}

void CDQOutputWnd::ShowLastRow(int row) {
  CDQTree& tree = *m_pTree;
  // One selected row, the usual case, is found at once.
  const int former = tree.GetCaret();
  if (tree.IsSelected(former)) tree.SelectRows(former, former, false);
  if (tree.GetSelectedCount() > 0) tree.SelectRows(0, tree.GetCount() - 1, false);
  tree.SelectRows(row, row);
  tree.SetCaret(row);
  tree.FitColumn(detail::kTimeColumn);
  tree.FitColumn(detail::kSourceColumn);
  tree.EnsureRowVisible(row);
}

void CDQOutputWnd::ShowForError() {
  if (GetSafeHwnd() == nullptr || IsShown()) return;
  const detail::Watched self(*this);
  if (CFrameWnd* const frame = GetDockingFrame()) {
    frame->ShowControlBar(this, true);
  } else {
    ShowWindow(SW_SHOWNA);
  }
  if (self.IsThere()) Invalidate();
}

HBITMAP CDQOutputWnd::PictureOf(int type) {
  CBitmap& picture = m_pictures[static_cast<std::size_t>(type)];
  if (picture.GetSafeHandle() == nullptr) {
    picture.LoadBitmap(DQLIB_GetInstanceHandle(), IDB_PROGRAM_INFO + static_cast<UINT>(type));
  }
  return picture.GetSafeHandle();
}

// ---- Commands

void CDQOutputWnd::OnDisplayMessage() { detail::ShowCurrentMessage(*GetTreeWnd()); }

void CDQOutputWnd::OnClear() {
  CDQTree& tree = *GetTreeWnd();
  if (tree.GetSelectedCount() == tree.GetCount()) return ClearTree();
  const std::vector<int> rows = tree.GetSelectedRows();
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) tree.DeleteRow(*row);
}

void CDQOutputWnd::OnClearAll() { ClearTree(); }

void CDQOutputWnd::ClearTree() { GetTreeWnd()->ResetContent(); }

void CDQOutputWnd::OnSelectAll() { GetTreeWnd()->SelectAll(); }

void CDQOutputWnd::OnUnselectAll() { GetTreeWnd()->UnselectAll(); }

void CDQOutputWnd::OnCopy() { GetTreeWnd()->Copy(); }

void CDQOutputWnd::OnSave() {
  CWinApp* const app = m_strSaveSection.IsEmpty() ? nullptr : AfxGetApp();
  CString extension("MSG");
  const CString filter = detail::LoadText(IDS_OUTPUT_SAVE_FILTER);
  if (app != nullptr) extension = app->GetProfileString(m_strSaveSection, kSaveExtension, "MSG");
  CFileDialog dialog(false, extension, nullptr, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, filter,
                     this);
  if (app != nullptr) {
    dialog.SetInitialFolder(app->GetProfileString(m_strSaveSection, kSaveFolder));
    dialog.SetFilterIndex(static_cast<int>(app->GetProfileInt(m_strSaveSection, kSaveFilter, 1)));
  }
  const detail::Watched self(*this);
  if (dialog.DoModal() != IDOK || !self.IsThere()) return;
  const CString path = dialog.GetPathName();
  if (app != nullptr) {
    const CString name = dialog.GetFileName();
    const CString folder = path.Left(path.GetLength() - name.GetLength());
    app->WriteProfileString(m_strSaveSection, kSaveFolder, folder);
    app->WriteProfileString(m_strSaveSection, kSaveExtension, dialog.GetFileExt());
    app->WriteProfileInt(m_strSaveSection, kSaveFilter, dialog.GetFilterIndex());
  }
  try {
    GetTreeWnd()->Save(path, "\t", "\r\n");
  } catch (const CFileException& failure) {
    AfxMessageBox(DescribeFileFailure(path, &failure, true, IDS_SAVE_FAILED), BOX_EXCLAMATION);
  }
}

void CDQOutputWnd::OnPrint() {
  CDQTree& tree = *GetTreeWnd();
  tree.SetPrintHeaderPrefix(AfxGetAppName() + detail::LoadText(IDS_MESSAGE_LOG));
  tree.AllowPrintSelection(true);
  tree.OnFilePrint();
}

void CDQOutputWnd::OnToggleFloatDock() { ToggleFloating(); }

void CDQOutputWnd::OnHideMessage() {
  if (CFrameWnd* const frame = GetDockingFrame()) {
    frame->ShowControlBar(this, false);
  } else {
    ShowWindow(SW_HIDE);
  }
}

void CDQOutputWnd::OnRegistryChange() {
  const int entries = CDQOptionsServer::GetObject()->GetInt(kMaxEntriesOption);
  if (entries > 0) SetMaxEntries(entries);
}

bool CDQOutputWnd::HasRows() { return GetTreeWnd()->GetCount() > 0; }

void CDQOutputWnd::OnUpdateNeedsCurrent(CCmdUI* ui) { ui->Enable(GetTreeWnd()->GetCaret() >= 0); }

void CDQOutputWnd::OnUpdateNeedsSelection(CCmdUI* ui) {
  ui->Enable(GetTreeWnd()->GetSelectedCount() > 0);
}

void CDQOutputWnd::OnUpdateNeedsRows(CCmdUI* ui) { ui->Enable(HasRows()); }

void CDQOutputWnd::OnUpdateFloat(CCmdUI* ui) { ui->SetCheck(IsFloating() ? 1 : 0); }

void CDQOutputWnd::OnContextMenu(CWnd*, CPoint point) {
  CMenu menu;
  if (!menu.LoadMenu(IDM_OUTPUT)) return;
  CMenu* const popup = menu.GetSubMenu(0);
  if (popup == nullptr) return;
  popup->UpdateItems(*this, false);
  popup->TrackPopupMenu(TPM_RIGHTBUTTON, point.x, point.y, this);
}

// ---- The window

LRESULT CDQOutputWnd::OnCreate(WPARAM wparam, LPARAM lparam) {
  const LRESULT result = DefWindowProc(WM_CREATE, wparam, lparam);
  CDQTree& tree = *GetTreeWnd();
  const bool made = result != -1 && detail::CreateMessageTree(tree, GetInsideRect(), this, kTreeId);
  return made ? result : -1;
}

void CDQOutputWnd::LayOutInside() {
  if (m_pTree != nullptr && m_pTree->GetSafeHwnd() != nullptr) m_pTree->MoveWindow(GetInsideRect());
}

LRESULT CDQOutputWnd::OnSetFocus(WPARAM wparam, LPARAM lparam) {
  const LRESULT result = DefWindowProc(WM_SETFOCUS, wparam, lparam);
  GetTreeWnd()->SetFocus();
  return result;
}

LRESULT CDQOutputWnd::OnContextMenuMessage(WPARAM window, LPARAM point) {
  CPoint screen = PointOfParam(point);
  if (point == -1) {
    // By the keyboard: below the current row.
    CDQTree& tree = *GetTreeWnd();
    CRect row;
    const bool in_sight = tree.GetCellRect(tree.GetCaret(), -1, &row);
    screen = tree.ClientToScreen(in_sight ? CPoint{row.left, row.bottom} : CPoint{});
  }
  OnContextMenu(FromHandle(reinterpret_cast<HWND>(window)), screen);
  return 0;
}

bool CDQOutputWnd::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  using Self = CDQOutputWnd;
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&Self::OnDisplayMessage>(ID_OUTPUT_DISPLAY),
      UpdateEntry<&Self::OnUpdateNeedsCurrent>(ID_OUTPUT_DISPLAY),
      ControlEntry<&Self::OnDisplayMessage>(kTreeTextDoubleClick, kTreeId),
      CommandEntry<&Self::OnCopy>(ID_EDIT_COPY),
      UpdateEntry<&Self::OnUpdateNeedsSelection>(ID_EDIT_COPY),
      CommandEntry<&Self::OnSelectAll>(ID_EDIT_SELECT_ALL),
      UpdateEntry<&Self::OnUpdateNeedsRows>(ID_EDIT_SELECT_ALL),
      CommandEntry<&Self::OnUnselectAll>(ID_OUTPUT_UNSELECT_ALL),
      UpdateEntry<&Self::OnUpdateNeedsSelection>(ID_OUTPUT_UNSELECT_ALL),
      CommandEntry<&Self::OnClear>(ID_EDIT_CLEAR),
      UpdateEntry<&Self::OnUpdateNeedsSelection>(ID_EDIT_CLEAR),
      CommandEntry<&Self::OnClearAll>(ID_EDIT_CLEAR_ALL),
      UpdateEntry<&Self::OnUpdateNeedsRows>(ID_EDIT_CLEAR_ALL),
      CommandEntry<&Self::OnSave>(ID_FILE_SAVE),
      UpdateEntry<&Self::OnUpdateNeedsRows>(ID_FILE_SAVE),
      CommandEntry<&Self::OnPrint>(ID_FILE_PRINT),
      UpdateEntry<&Self::OnUpdateNeedsRows>(ID_FILE_PRINT),
      CommandEntry<&Self::OnToggleFloatDock>(ID_OUTPUT_FLOAT),
      UpdateEntry<&Self::OnUpdateFloat>(ID_OUTPUT_FLOAT),
      CommandEntry<&Self::OnHideMessage>(ID_OUTPUT_HIDE),
      MessageEntry<&Self::OnCreate>(WM_CREATE),
      MessageEntry<&Self::OnSetFocus>(WM_SETFOCUS),
      MessageEntry<&Self::OnContextMenuMessage>(WM_CONTEXTMENU),
  };
  return CallEntry(kEntries, *this, key, arguments) || CControlBar::CallMapped(key, arguments);
}

}  // namespace dq
