// The exchange of values between controls and variables, called in `CWnd::DoDataExchange`; see
// `data_exchange.h`.
//
// All take the control by its id. With `m_bSaveAndValidate` they move the control's value to the
// variable, and else the variable to the control. A control that isn't there, or isn't of the kind
// that the function is for, throws `CNotSupportedException`. What a person has entered wrongly is
// shown in a message box, and then the exchange fails: the variable stays what it was.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/c_time.h"
#include "dqlib/framework/base/ole_date_time.h"
#include "dqlib/framework/controls/control_classes.h"
#include "dqlib/framework/windows/data_exchange.h"

namespace dq {

/// Has the variable's object take the place of the control, the first time: see
/// `CWnd::SubclassDlgItem`.
void DDX_Control(CDataExchange* exchange, int id, CWnd& control);

/// A text, or a decimal number, with blanks and tabs around it; a zero doesn't have a sign. At most
/// 32 characters are read, as a `long`, for types without a sign as an `unsigned long`, both of 32
/// bits here, or as a `long long`: a number beyond that is the range's end. A short or a byte
/// beyond its own range is refused. Types without a sign take a number below 0 modulo 2^32, as they
/// always have. An empty text isn't a number.
void DDX_Text(CDataExchange* exchange, int id, CString& value);
void DDX_Text(CDataExchange* exchange, int id, BYTE& value);
void DDX_Text(CDataExchange* exchange, int id, short& value);
void DDX_Text(CDataExchange* exchange, int id, int& value);
void DDX_Text(CDataExchange* exchange, int id, UINT& value);
void DDX_Text(CDataExchange* exchange, int id, long& value);
void DDX_Text(CDataExchange* exchange, int id, unsigned long& value);
void DDX_Text(CDataExchange* exchange, int id, long long& value);

/// The mark of a check box: 0, 1 or 2.
void DDX_Check(CDataExchange* exchange, int id, int& value);
/// Which radio button of the group that begins with `id` is marked, from 0, or -1 for none.
void DDX_Radio(CDataExchange* exchange, int id, int& value);

/// The text of a combo box. To the control, the first row that begins with the text
/// (`DDX_CBString`) or is the text, case ignored, is chosen; without one, the text goes to the edit
/// part.
void DDX_CBString(CDataExchange* exchange, int id, CString& value);
void DDX_CBStringExact(CDataExchange* exchange, int id, CString& value);
/// The chosen row, or -1.
void DDX_CBIndex(CDataExchange* exchange, int id, int& value);

/// The text of a list box's selected row, or ""; to the control, the first row that begins with the
/// text is selected, if there is one.
void DDX_LBString(CDataExchange* exchange, int id, CString& value);
void DDX_LBIndex(CDataExchange* exchange, int id, int& value);

/// The value of a date and time control; where it has none, the variable's status is null. To the
/// control, a variable that is null takes its value away, if it may have none; it keeps what it has
/// for one that isn't valid or lies out of its range.
void DDX_DateTimeCtrl(CDataExchange* exchange, int id, COleDateTime& value);
/// The same where none is a time that isn't valid, and so is one that `CTime` doesn't have.
void DDX_DateTimeCtrl(CDataExchange* exchange, int id, CTime& value);

/// Fails the exchange for a value saved that isn't in the range, ends included. For the control
/// prepared last.
void DDV_MinMaxInt(CDataExchange* exchange, int value, int minimum, int maximum);
/// Fails the exchange for a saved text of more bytes. To the control, its edit control takes no
/// more from a person.
void DDV_MaxChars(CDataExchange* exchange, const CString& value, int most);

}  // namespace dq
