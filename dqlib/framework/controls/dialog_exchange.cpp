#include "dqlib/framework/controls/dialog_exchange.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

#include "dqlib/framework/controls/button.h"
#include "dqlib/framework/controls/combo_box.h"
#include "dqlib/framework/controls/date_time_ctrl.h"
#include "dqlib/framework/controls/edit.h"
#include "dqlib/framework/controls/list_box.h"
#include "dqlib/framework/windows/message_box.h"

namespace dq {
namespace {

/// What is shown to the person who has entered something wrong.
enum FailureText : UINT {
  kNoInteger = 61712,
  kNotInRange = 61714,
  kTooLong = 61716,
  kNoByte = 61718,
  kNotPositive = 61719,
};

constexpr int kNumberCharacters = 32;

std::string_view SkipBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

/// A sign and its number, or the largest one for a number beyond that.
struct ReadNumber {
  bool negative = false;
  unsigned long long magnitude = 0;
};

/// As the run-time's reading of a number has always done it, so white space of any kind may stand
/// between the blanks and the sign. No value for a text that is no number.
std::optional<ReadNumber> Read(std::string_view text) {
  text = SkipBlanks(text);
  const bool begins_with_zero = text.starts_with('0');
  text = text.substr(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  ReadNumber number;
  number.negative = text.starts_with('-');
  if (number.negative || text.starts_with('+')) text.remove_prefix(1);
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number.magnitude);
  if (error == std::errc::result_out_of_range) {
    number.magnitude = std::numeric_limits<unsigned long long>::max();
  } else if (error != std::errc() || (number.magnitude == 0 && !begins_with_zero)) {
    return std::nullopt;
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  if (!SkipBlanks(text).empty()) return std::nullopt;
  return number;
}

/// The number as the run-time gives it: beyond the range of `Range` its end, and for types without
/// a sign always the upper one.
template <typename Range>
Range Saturated(const ReadNumber& number) {
  using Limits = std::numeric_limits<Range>;
  using Unsigned = std::make_unsigned_t<Range>;
  const bool below = std::is_signed_v<Range> && number.negative;
  const unsigned long long most = static_cast<Unsigned>(Limits::max()) + (below ? 1ULL : 0ULL);
  if (number.magnitude > most) return below ? Limits::min() : Limits::max();
  const auto value = static_cast<Unsigned>(number.magnitude);
  return static_cast<Range>(number.negative ? Unsigned{0} - value : value);
}

[[noreturn]] void Fail(CDataExchange& exchange, UINT text_id) {
  AfxMessageBox(text_id);
  exchange.Fail();
}

void SetTextIfOther(CWnd& control, std::string_view text) {
  const CString wanted(text);
  if (control.GetWindowText() != wanted) control.SetWindowText(wanted);
}

/// Exchanges a number that is read in the range of `Range`, and refused if it is none of `Value`.
template <typename Range, typename Value>
void ExchangeNumber(CDataExchange& exchange, int id, Value& value, UINT failure_text) {
  CWnd* const control = exchange.PrepareEditCtrl(id);
  if (!exchange.m_bSaveAndValidate) {
    SetTextIfOther(*control, std::to_string(static_cast<Range>(value)));
    return;
  }
  const std::optional<ReadNumber> read =
      Read(control->GetWindowText().View().substr(0, kNumberCharacters));
  if (!read) Fail(exchange, failure_text);
  const Range number = Saturated<Range>(*read);
  if (!std::in_range<Value>(number)) Fail(exchange, failure_text);
  value = static_cast<Value>(number);
}

/// The control of the kind.
template <typename Class>
Class& Prepare(CDataExchange& exchange, int id) {
  auto* const control = dynamic_cast<Class*>(exchange.PrepareCtrl(id));
  if (control == nullptr) throw CNotSupportedException();
  return *control;
}

}  // namespace

void DDX_Control(CDataExchange* exchange, int id, CWnd& control) {
  if (control.GetSafeHwnd() != nullptr) return;
  exchange->PrepareCtrl(id);
  if (!control.SubclassDlgItem(id, exchange->m_pDlgWnd)) throw CNotSupportedException();
}

void DDX_Text(CDataExchange* exchange, int id, CString& value) {
  CWnd* const control = exchange->PrepareEditCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    value = control->GetWindowText();
  } else {
    SetTextIfOther(*control, value.View());
  }
}

void DDX_Text(CDataExchange* exchange, int id, BYTE& value) {
  ExchangeNumber<UINT>(*exchange, id, value, kNoByte);
}

void DDX_Text(CDataExchange* exchange, int id, short& value) {
  ExchangeNumber<LONG>(*exchange, id, value, kNoInteger);
}

void DDX_Text(CDataExchange* exchange, int id, int& value) {
  ExchangeNumber<LONG>(*exchange, id, value, kNoInteger);
}

void DDX_Text(CDataExchange* exchange, int id, UINT& value) {
  ExchangeNumber<UINT>(*exchange, id, value, kNotPositive);
}

void DDX_Text(CDataExchange* exchange, int id, long& value) {
  ExchangeNumber<LONG>(*exchange, id, value, kNoInteger);
}

void DDX_Text(CDataExchange* exchange, int id, unsigned long& value) {
  ExchangeNumber<DWORD>(*exchange, id, value, kNotPositive);
}

void DDX_Text(CDataExchange* exchange, int id, long long& value) {
  ExchangeNumber<long long>(*exchange, id, value, kNoInteger);
}

void DDX_Check(CDataExchange* exchange, int id, int& value) {
  auto& button = Prepare<CButton>(*exchange, id);
  if (exchange->m_bSaveAndValidate) {
    value = button.GetCheck();
  } else {
    button.SetCheck(value);
  }
}

void DDX_Radio(CDataExchange* exchange, int id, int& value) {
  const std::vector<CButton*> buttons = Prepare<CButton>(*exchange, id).GroupButtons();
  if (exchange->m_bSaveAndValidate) value = -1;
  int index = 0;
  for (CButton* button : buttons) {
    if (!exchange->m_bSaveAndValidate) {
      button->SetCheck(index == value ? 1 : 0);
    } else if (value < 0 && button->GetCheck() == 1) {
      value = index;
    }
    ++index;
  }
}

void DDX_CBString(CDataExchange* exchange, int id, CString& value) {
  auto& combo = Prepare<CComboBox>(*exchange, id);
  if (exchange->m_bSaveAndValidate) {
    value = combo.GetWindowText();
  } else if (combo.SelectString(-1, value) < 0) {
    SetTextIfOther(combo, value.View());
  }
}

void DDX_CBStringExact(CDataExchange* exchange, int id, CString& value) {
  auto& combo = Prepare<CComboBox>(*exchange, id);
  if (exchange->m_bSaveAndValidate) {
    value = combo.GetWindowText();
    return;
  }
  const int row = combo.FindStringExact(-1, value);
  if (row >= 0) {
    combo.SetCurSel(row);
  } else {
    SetTextIfOther(combo, value.View());
  }
}

void DDX_CBIndex(CDataExchange* exchange, int id, int& value) {
  auto& combo = Prepare<CComboBox>(*exchange, id);
  if (exchange->m_bSaveAndValidate) {
    value = combo.GetCurSel();
  } else {
    combo.SetCurSel(value);
  }
}

void DDX_LBString(CDataExchange* exchange, int id, CString& value) {
  auto& list = Prepare<CListBox>(*exchange, id);
  if (exchange->m_bSaveAndValidate) {
    value = list.GetText(list.GetCurSel());
  } else {
    list.SelectString(-1, value);
  }
}

void DDX_LBIndex(CDataExchange* exchange, int id, int& value) {
  auto& list = Prepare<CListBox>(*exchange, id);
  if (exchange->m_bSaveAndValidate) {
    value = list.GetCurSel();
  } else {
    list.SetCurSel(value);
  }
}

void DDX_DateTimeCtrl(CDataExchange* exchange, int id, COleDateTime& value) {
  auto& control = Prepare<CDateTimeCtrl>(*exchange, id);
  if (!exchange->m_bSaveAndValidate) {
    // One that the control refuses leaves it as it is.
    static_cast<void>(value.GetStatus() == COleDateTime::null ? control.SetTime(nullptr)
                                                              : control.SetTime(value));
  } else if (!control.GetTime(value)) {
    value.SetStatus(COleDateTime::null);
  }
}

void DDX_DateTimeCtrl(CDataExchange* exchange, int id, CTime& value) {
  auto& control = Prepare<CDateTimeCtrl>(*exchange, id);
  if (!exchange->m_bSaveAndValidate) {
    static_cast<void>(value.IsValid() ? control.SetTime(value) : control.SetTime(nullptr));
  } else if (!control.GetTime(value)) {
    value = CTime();
  }
}

void DDV_MinMaxInt(CDataExchange* exchange, int value, int minimum, int maximum) {
  if (!exchange->m_bSaveAndValidate || (value >= minimum && value <= maximum)) return;
  CString text;
  AfxFormatString2(text, kNotInRange, std::to_string(minimum).c_str(),
                   std::to_string(maximum).c_str());
  AfxMessageBox(text, BOX_EXCLAMATION, kNotInRange);
  exchange->Fail();
}

void DDV_MaxChars(CDataExchange* exchange, const CString& value, int most) {
  if (!exchange->m_bSaveAndValidate) {
    CWnd* const control = CWnd::FromHandle(exchange->m_hWndLastControl);
    const UINT limit = static_cast<UINT>(std::max(0, most));
    if (CEdit* const edit = DYNAMIC_DOWNCAST(CEdit, control)) edit->LimitText(limit);
    return;
  }
  if (value.GetLength() <= most) return;
  CString text;
  AfxFormatString1(text, kTooLong, std::to_string(most).c_str());
  AfxMessageBox(text, BOX_EXCLAMATION, kTooLong);
  exchange->Fail();
}

}  // namespace dq
