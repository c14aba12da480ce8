#include "dqlib/datetime/format_dialog.h"

#include <iterator>

#include "dqlib/datetime/data_type.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/frame/resources.h"
#include "dqlib/framework/base/ole_date_time.h"
#include "dqlib/framework/controls/dialog_exchange.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

constexpr UINT kTimer = 1;
/// Milliseconds: often enough for an example that shows seconds.
constexpr UINT kInterval = 250;

}  // namespace

CLGDateTimeFormatDlg::CLGDateTimeFormatDlg(CLGDateTimeFormat* format, int code, CWnd* parent)
    : CDQDialog(kTemplateId, parent), m_pFormat(format), m_nCode(code) {}

void CLGDateTimeFormatDlg::DoDataExchange(CDataExchange* exchange) {
  for (int at = 0; at < kCombos; ++at) DDX_Control(exchange, kPredefined + at, m_combos[at]);
}

bool CLGDateTimeFormatDlg::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  using Self = CLGDateTimeFormatDlg;
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&Self::OnExpand>(kCustomize),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kPredefined),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kDay),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kMonth),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kYear),
      ControlEntry<&Self::OnSelChangeHourFmt>(CBN_SELCHANGE, kHour),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kMinute),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kSecond),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kAMPM),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kDaySeparator),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kMonthSeparator),
      ControlEntry<&Self::OnSelChange>(CBN_SELCHANGE, kYearSeparator),
      MessageEntry<&Self::OnTimer>(WM_TIMER),
      MessageEntry<&Self::OnDestroy>(WM_DESTROY),
  };
  return CallEntry(kEntries, *this, key, arguments) || CDQDialog::CallMapped(key, arguments);
}

// ---- Opening

BOOL CLGDateTimeFormatDlg::OnInitDialog() {
  CDQDialog::OnInitDialog();
  m_nLargeHeight = GetClientRect().Height();
  m_tips.Create(this);
  InitMember();
  for (CToolTipComboBox& combo : m_combos) ShowTip(combo);
  SetTimer(kTimer, kInterval);
  OnTimer(kTimer, 0);
  return 1;
}

void CLGDateTimeFormatDlg::InitMember() {
  m_bCustomize = false;
  m_definitions.RemoveAll();
  if (m_pFormat == nullptr) {
    InitExpandDialog(IDS_FORMAT_CUSTOMIZE, IDS_FORMAT_USE_PREDEFINED, IDS_FORMAT_CUSTOMIZE_TIP);
    GetDlgItem(kCustomize)->EnableWindow(false);
    return;
  }
  InitCustomizedCtrls();
  InitPredefinedCtrls();
}

void CLGDateTimeFormatDlg::InitCustomizedCtrls() {
  InitExpandDialog(IDS_FORMAT_CUSTOMIZE, IDS_FORMAT_USE_PREDEFINED, IDS_FORMAT_CUSTOMIZE_TIP);
  const detail::DictionaryUse<CLGDateTimeFmtDictionary> dictionary;
  for (POSITION position = dictionary->GetFirstEntry(); position != nullptr;) {
    const CLGDateTimeFmtCell& cell = *dictionary->GetNext(position);
    const DATETIMETYPE kind = cell.GetDateTimeElementType();
    const auto add = [&cell](CToolTipComboBox& combo) {
      combo.AddString(cell.GetDetail(), cell.GetDescription());
    };
    if (kind <= DTT_AMPM) {
      add(ElementCombo(kind));
    } else if (kind == DTT_DATESEP) {
      for (int at = 0; at < detail::DateTimeFmtParts::kSeparators; ++at) add(SeparatorCombo(at));
    }
  }
  LoadDefaultDateTimeCombo();
}

void CLGDateTimeFormatDlg::LoadDefaultDateTimeCombo() {
  using detail::DateTimeFmtParts;
  DateTimeFmtParts parts;
  if (const CLGDateTimeFmtDef* const current =
          m_pFormat->GetDateTimeFmtPtr(CLGDateTimeFormat::DFK_CURRENT)) {
    parts = DateTimeFmtParts::Of(current->GetFmtElementList());
  }
  for (int kind = 0; kind < DateTimeFmtParts::kElements; ++kind) {
    ElementCombo(kind).SelectCode(parts.elements[kind].View());
  }
  for (int kind = 0; kind < DateTimeFmtParts::kSeparators; ++kind) {
    SeparatorCombo(kind).SelectCode(parts.separators[kind].View());
  }
  CheckRadioButton(kFirstDateOrder, kLastDateOrder,
                   parts.date_order < 0 ? 0 : kFirstDateOrder + parts.date_order);
  CheckRadioButton(kDateTime, kTimeDate, parts.time_first ? kTimeDate : kDateTime);
}

void CLGDateTimeFormatDlg::InitPredefinedCtrls() {
  const CLGDateTimeFormat& format = *m_pFormat;
  const CLGDateTimeFmtDef* const current = format.GetDateTimeFmtPtr(CLGDateTimeFormat::DFK_CURRENT);
  CToolTipComboBox& combo = Combo(kPredefined);
  const int wanted = detail::DateTimeClassOf(m_nCode);
  int chosen = -1;
  int same_text = -1;
  std::uintptr_t index = 0;
  for (const CLGDateTimeFmtDefList* const list :
       {&format.GetPredefinedDateTimeFmtList(), &format.GetCustomizedDateTimeFmtList()}) {
    CConstPtrArrayIterT<CLGDateTimeFmtDef> walk(*list);
    for (; const CLGDateTimeFmtDef* const def = walk.Next(); ++index) {
      if (wanted == 0 || detail::DateTimeClassOf(def->GetDateTimeType()) != wanted) continue;
      m_definitions.AddTail(std::make_unique<CLGDateTimeFmtDef>(*def).release());
      const CString title = def->GetFmtDefTitle();
      const CString& text = def->GetFmtDateTime(DTF_DISP);
      const int row = combo.AddString(title.IsEmpty() ? text : title, def->GetFmtExample(), index);
      if (def == current) chosen = row;
      if (current == nullptr || same_text >= 0) continue;
      if (current->GetFmtDateTime(DTF_DISP) == text) same_text = row;
    }
  }
  // The current one may be a copy of the platform's default, which lies in neither list.
  combo.SetCurSel(chosen >= 0 ? chosen : same_text);
}

CLGDateTimeFmtDef* CLGDateTimeFormatDlg::DefinitionOfRow(int row) const {
  if (m_pFormat == nullptr || row < 0 || row >= m_definitions.GetSize()) return nullptr;
  CLGDateTimeFmtDefList& predefined = m_pFormat->GetPredefinedDateTimeFmtList();
  CLGDateTimeFmtDefList& customized = m_pFormat->GetCustomizedDateTimeFmtList();
  int index = static_cast<int>(m_combos[0].GetItemData(row));
  if (index < predefined.GetSize()) return predefined.GetAt(index);
  index -= predefined.GetSize();
  return index < customized.GetSize() ? customized.GetAt(index) : nullptr;
}

// ---- Small and large

void CLGDateTimeFormatDlg::InitExpandDialog(UINT small_text, UINT large_text, UINT tip) {
  CWnd* const button = GetDlgItem(kCustomize);
  CString text;
  DQLoadString(text, m_bCustomize ? large_text : small_text, ResourceModule());
  button->SetWindowText(text);
  DQLoadString(text, tip, ResourceModule());
  m_tips.AddTool(button, text);
  const LONG edge = GetDlgItem(kCustomizeFrame)->GetPlace().top;
  for (CWnd* child = GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
    if (child->GetPlace().top >= edge) child->ShowWindow(m_bCustomize ? SW_SHOW : SW_HIDE);
  }
  const LONG height = m_bCustomize ? m_nLargeHeight : edge;
  const CRect place = GetPlace();
  MoveWindow(place.left, place.top, place.Width(),
             place.Height() + height - GetClientRect().Height());
}

void CLGDateTimeFormatDlg::OnExpand() {
  m_bCustomize = !m_bCustomize;
  InitExpandDialog(IDS_FORMAT_CUSTOMIZE, IDS_FORMAT_USE_PREDEFINED, IDS_FORMAT_CUSTOMIZE_TIP);
  Combo(kPredefined).EnableWindow(!m_bCustomize);
  if (!m_bCustomize) return;
  const auto disable = [this](int first, int last) {
    for (int id = first; id <= last; ++id) GetDlgItem(id)->EnableWindow(false);
  };
  // Only these two: on other columns of dates, what is chosen of the time just isn't built.
  if (m_nCode == DATATYPE_TIME) {
    disable(kDay, kYear);
    disable(kDaySeparator, kTimeDate);
  } else if (m_nCode == DATATYPE_DATE) {
    disable(kHour, kAMPM);
    disable(kDateTime, kTimeDate);
  }
  ValidateAMPMFmt();
}

void CLGDateTimeFormatDlg::ValidateAMPMFmt() {
  const CString hour = Combo(kHour).GetWindowText();
  Combo(kAMPM).EnableWindow(hour != "HH24" && hour != "hh24");
}

void CLGDateTimeFormatDlg::OnSelChange(UINT id) { ShowTip(Combo(static_cast<ControlId>(id))); }

void CLGDateTimeFormatDlg::OnSelChangeHourFmt(UINT id) {
  OnSelChange(id);
  ValidateAMPMFmt();
}

void CLGDateTimeFormatDlg::ShowTip(CToolTipComboBox& combo) {
  m_tips.AddTool(&combo, combo.GetItemTip(combo.GetCurSel()));
}

// ---- The format that is built

detail::DateTimeFmtParts CLGDateTimeFormatDlg::GetParts() const {
  detail::DateTimeFmtParts parts;
  for (int kind = 0; kind < parts.kElements; ++kind) {
    parts.elements[kind] = GetDlgItemText(kDay + kind);
  }
  for (int kind = 0; kind < parts.kSeparators; ++kind) {
    parts.separators[kind] = GetDlgItemText(kDaySeparator + kind);
  }
  const int order = GetCheckedRadioButton(kFirstDateOrder, kLastDateOrder);
  parts.date_order = order == 0 ? -1 : order - kFirstDateOrder;
  parts.time_first = IsDlgButtonChecked(kTimeDate) != 0;
  return parts;
}

LRESULT CLGDateTimeFormatDlg::OnTimer(WPARAM id, LPARAM) {
  if (id != kTimer) return 0;
  UpdateFormat();
  UpdateExample();
  return 0;
}

void CLGDateTimeFormatDlg::UpdateFormat() { ShowText(kFormat, GenerateDateTimeFmt()); }

void CLGDateTimeFormatDlg::UpdateExample() {
  CString ole;
  CString example;
  // Elements that aren't chosen may leave two separators side by side, which can't be printed.
  if (CLGDateTimeFmtDef::GetDateTimeFmt(DTF_DISP, GenerateDateTimeFmt(), DTF_OLE, ole)) {
    example = COleDateTime::GetCurrentTime().Format(ole);
  }
  ShowText(kExample, example);
}

void CLGDateTimeFormatDlg::ShowText(ControlId id, const CString& text) {
  if (GetDlgItemText(id) != text) SetDlgItemText(id, text);
}

// ---- Leaving

void CLGDateTimeFormatDlg::OnOK() {
  constexpr auto kCurrent = CLGDateTimeFormat::DFK_CURRENT;
  if (m_bCustomize && m_pFormat != nullptr) {
    const CString fmt = GenerateDateTimeFmt();
    m_pFormat->InsertCustomizedDateTimeFmt(fmt);
    m_pFormat->SetDateTimeFmt(fmt, kCurrent);
  } else if (CLGDateTimeFmtDef* const def = DefinitionOfRow(Combo(kPredefined).GetCurSel())) {
    m_pFormat->SetDateTimeFmt(def, kCurrent);
  } else {
    EndDialog(IDCANCEL);
    return;
  }
  CDQDialog::OnOK();
}

LRESULT CLGDateTimeFormatDlg::OnDestroy(WPARAM, LPARAM) {
  KillTimer(kTimer);
  return DefWindowProc(WM_DESTROY, 0, 0);
}

}  // namespace dq
