#include "apps/workbench/controls_frame.h"

#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/controls/date_time_ctrl.h"
#include "dqlib/framework/controls/edit.h"
#include "dqlib/framework/controls/hot_key.h"
#include "dqlib/framework/controls/progress.h"
#include "dqlib/framework/windows/file_dialog.h"
#include "dqlib/framework/windows/print_info.h"
#include "siblings/pictures/pictures.h"

namespace workbench {
namespace {

using dq::UINT;

enum Command : UINT {
  kOpen = 0x8201,
  kSave,
  kFolder,
  kLeave,
  /// Of the drawing's own menu, and of the tool bar's buttons.
  kFirstChoice = 0x8210,
  kLastChoice = 0x821F,
};

enum Control : int { kStep = 51, kProgress, kHotKey, kDate, kTime };

constexpr const char kMenu[] = R"(popup "&File"
item 33281 "&Open..."
item 33282 "&Save As..."
item 33283 "Select &Folder..."
item 57607 "&Print..."
separator
item 33284 "&Close"
end
popup "&View"
item 59392 "&Tool Bar"
item 59393 "&Status Bar"
end
)";

constexpr const char kDrawingMenu[] = R"(item 33296 "&First"
item 33297 "&Second" checked
)";

constexpr const char kForm[] = R"(size 300 170
text -1 "&Progress:" 12 14 80 14
progress 52 "" 96 12 120 18
class "BitmapButton" 51 "S&tep" 228 8 60 26 picture=3012
text -1 "&Hot key:" 12 48 80 14
hotkey 53 "" 96 45 190 20
text -1 "&Date:" 12 80 80 14
datetime 54 "" 96 77 190 20
text -1 "T&ime:" 12 112 80 14
datetime 55 "" 96 109 190 20 time optional
)";

constexpr dq::CRect kUsualPlace{160, 120, 800, 500};
constexpr int kDrawingWidth = 260;
constexpr int kLeast = 60;

}  // namespace

// ---- The drawing

void DrawingView::OnDraw(dq::CDC* dc) {
  constexpr UINT kPictures[] = {3000, 3001, 3002, 3003};
  constexpr int kEnlarged = 48;
  int left = 12;
  for (const UINT id : kPictures) {
    dq::CBitmap picture;
    if (!dq::DQRESOURCES_LoadBitmap(picture, id)) continue;
    dc->DrawBitmap(dq::CRect{left, 12, left + kEnlarged, 12 + kEnlarged}, picture.GetSafeHandle());
    left += kEnlarged + 8;
  }
  dc->TextOut(12, 72, "Text, lines and pictures");
  constexpr int kStyles[] = {dq::PS_SOLID, dq::PS_DASH, dq::PS_DOT};
  int top = 100;
  for (const int style : kStyles) {
    dq::CPen pen;
    pen.CreatePen(style, 1, dq::RGB(0x20, 0x40, 0xC0));
    dq::CPen* const former = dc->SelectObject(&pen);
    dc->MoveTo(12, top);
    dc->LineTo(220, top);
    dc->SelectObject(former);
    top += 10;
  }
  dc->FillSolidRect({12, 140, 112, 180}, dq::RGB(0xC0, 0x40, 0x20));
}

bool DrawingView::OnPreparePrinting(dq::CPrintInfo* info) {
  info->SetMaxPage(1);
  return CView::OnPreparePrinting(info);
}

dq::LRESULT DrawingView::DefWindowProc(UINT message, dq::WPARAM wparam, dq::LPARAM lparam) {
  if (message != dq::WM_CONTEXTMENU) return CView::DefWindowProc(message, wparam, lparam);
  dq::CMenu menu;
  menu.LoadMenuIndirect(kDrawingMenu);
  const bool is_key = lparam == -1;
  const dq::CPoint at = is_key ? ClientToScreen({}) : dq::PointOfParam(lparam);
  menu.TrackPopupMenu(0, at.x, at.y, GetParentFrame());
  return 0;
}

// ---- The form

ControlsForm::ControlsForm(Listener listener)
    : CFormView(dq::ReadDialogTemplate(kForm).value()), listener_(std::move(listener)) {}

bool ControlsForm::CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) {
  static constexpr dq::MessageMapEntry kEntries[] = {
      dq::CommandEntry<&ControlsForm::OnStep>(kStep),
      dq::ControlEntry<&ControlsForm::OnHotKey>(dq::EN_CHANGE, kHotKey),
      dq::NotificationEntry<&ControlsForm::OnMoment>(dq::DTN_DATETIMECHANGE, kDate),
      dq::NotificationEntry<&ControlsForm::OnMoment>(dq::DTN_DATETIMECHANGE, kTime),
  };
  return dq::CallEntry(kEntries, *this, key, arguments) || CFormView::CallMapped(key, arguments);
}

void ControlsForm::OnStep() {
  auto* const progress = dynamic_cast<dq::CProgressCtrl*>(GetDlgItem(kProgress));
  if (progress == nullptr) return;
  progress->StepIt();
  listener_(std::to_string(progress->GetPercent()) + " per cent");
}

void ControlsForm::OnHotKey() {
  listener_("hot key " + std::string(GetDlgItem(kHotKey)->GetWindowText().View()));
}

void ControlsForm::OnMoment(dq::NMHDR* told, dq::LRESULT*) {
  const dq::CWnd* const field = GetDlgItem(static_cast<int>(told->idFrom));
  if (field != nullptr) listener_("moment " + std::string(field->GetWindowText().View()));
}

// ---- The frame

ControlsFrame::ControlsFrame(Listener listener)
    : listener_(std::move(listener)), form_([this](const std::string& line) { Tell(line); }) {}

ControlsFrame::~ControlsFrame() { ControlsFrame::DestroyWindow(); }

bool ControlsFrame::Open(dq::CWnd& owner) {
  const dq::WindowCreation creation{.class_name = "ControlsFrame",
                                    .text = "Controls",
                                    .place = kUsualPlace,
                                    .owner = &owner,
                                    .visible = false};
  if (!CreateFrame(creation, 0, nullptr) || !menu_.LoadMenuIndirect(kMenu)) return false;
  SetMenu(&menu_);
  if (!MakeBars() || !MakePanes()) return false;
  RecalcLayout();
  InitialUpdateFrame(nullptr, true);
  return true;
}

bool ControlsFrame::MakeBars() {
  constexpr dq::WORD kButtons[] = {kOpen, kSave, 0, kFirstChoice, kFirstChoice + 1};
  constexpr UINT kPanes[] = {0, 0, 0};
  tools_.SetButtons(kButtons);
  if (!tools_.Create(this) || !status_.SetIndicators(kPanes) || !status_.Create(this)) return false;
  tools_.SetWindowText("Tools");
  tools_.EnableDocking(dq::CBRS_ALIGN_ANY);
  EnableDocking(dq::CBRS_ALIGN_ANY);
  constexpr int kPaneWidth = 90;
  status_.SetPaneInfo(1, 1, dq::SBPS_NORMAL, kPaneWidth);
  status_.SetPaneInfo(2, 2, dq::SBPS_POPOUT, kPaneWidth);
  status_.SetPaneText(1, "Framed");
  status_.SetPaneText(2, "Raised");
  return DockControlBar(&tools_, dq::DockSide::kTop);
}

bool ControlsFrame::MakePanes() {
  if (!splitter_.CreateStatic(this, 1, 2)) return false;
  splitter_.SetColumnInfo(0, kDrawingWidth, kLeast);
  splitter_.SetColumnInfo(1, 0, kLeast);
  const auto id = [](int column) { return dq::CSplitterWnd::IdFromRowCol(0, column); };
  if (!drawing_.Create(&splitter_, {}, id(0), static_cast<dq::CDocument*>(nullptr))) return false;
  return form_.Create(&splitter_, id(1), nullptr);
}

bool ControlsFrame::CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) {
  static constexpr dq::MessageMapEntry kEntries[] = {
      dq::CommandEntry<&ControlsFrame::OnOpen>(kOpen),
      dq::CommandEntry<&ControlsFrame::OnSave>(kSave),
      dq::CommandEntry<&ControlsFrame::OnFolder>(kFolder),
      dq::CommandEntry<&ControlsFrame::OnLeave>(kLeave),
      dq::CommandRangeEntry<&ControlsFrame::OnChoice>(kFirstChoice, kLastChoice),
  };
  return dq::CallEntry(kEntries, *this, key, arguments) || CFrameWnd::CallMapped(key, arguments);
}

void ControlsFrame::OnOpen() {
  dq::CFileDialog dialog(true, "sql", nullptr, dq::OFN_FILEMUSTEXIST,
                         "SQL File (*.sql)|*.sql|All Files (*.*)|*.*||", this);
  if (dialog.DoModal() == dq::IDOK) Tell("open " + std::string(dialog.GetPathName().View()));
}

void ControlsFrame::OnSave() {
  dq::CFileDialog dialog(false, "sql", nullptr, dq::OFN_OVERWRITEPROMPT,
                         "SQL File (*.sql)|*.sql|All Files (*.*)|*.*||", this);
  if (dialog.DoModal() == dq::IDOK) Tell("save " + std::string(dialog.GetPathName().View()));
}

void ControlsFrame::OnFolder() {
  const auto folder = dq::ChooseFolder(nullptr, nullptr);
  if (folder) Tell("folder " + std::string(folder->View()));
}

void ControlsFrame::OnChoice(UINT id) { Tell("choice " + std::to_string(id - kFirstChoice + 1)); }

void ControlsFrame::Tell(const std::string& line) {
  SetMessageText(line.c_str());
  listener_(line);
}

}  // namespace workbench
