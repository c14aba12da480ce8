// The library's own exchange of values between a dialog's controls and its variables, beside the
// framework's (`framework/controls/dialog_exchange.h`), whose rules hold here too: called in
// `CWnd::DoDataExchange`, throws `CNotSupportedException` for a control that isn't there or isn't
// of the kind, and shows what is entered wrongly before the exchange fails and leaves the variable.

#pragma once

#include <concepts>
#include <type_traits>

#include "dqlib/core/big_int.h"
#include "dqlib/framework/base/string_collections.h"
#include "dqlib/framework/controls/dialog_exchange.h"

namespace dq {

/// A decimal number in the control's text, read as `DDX_Text` does, but for one thing: nothing but
/// blanks and tabs is 0, because fields that a person leaves empty rely on it.
void DQDDX_Text(CDataExchange* exchange, int id, BYTE& value);
void DQDDX_Text(CDataExchange* exchange, int id, short& value);
void DQDDX_Text(CDataExchange* exchange, int id, int& value);
void DQDDX_Text(CDataExchange* exchange, int id, unsigned int& value);
void DQDDX_Text(CDataExchange* exchange, int id, long& value);
void DQDDX_Text(CDataExchange* exchange, int id, unsigned long& value);
void DQDDX_Text(CDataExchange* exchange, int id, long long& value);

/// A number of any length, of whose text at most 62 characters are read: digits and minus signs
/// only, so no blanks. A minus sign that isn't the first character passes, as the number's own
/// reading takes any character; "" is 0.
void DQDDX_Text(CDataExchange* exchange, int id, CDQBigInt& value);

namespace detail {
/// The integer types that `DQDDX_Text` takes.
template <typename Number>
concept ExchangedNumber = std::integral<Number> && !std::same_as<Number, bool> &&
                          requires(CDataExchange * exchange, Number& value) {
  DQDDX_Text(exchange, 0, value);
};
}  // namespace detail

/// As `DQDDX_Text`, for controls that write numbers in a way of their own.
template <detail::ExchangedNumber Number>
void DQDDX_CustomNumber(CDataExchange* exchange, int id, Number& value) {
  DQDDX_Text(exchange, id, value);
}

/// A check box; a mark that is undetermined counts as set.
void DQDDX_Check(CDataExchange* exchange, int id, bool& value);

/// The text of a combo box. To the control, the row with the text is chosen; without one, the text
/// goes to the edit part.
void DQDDX_CBStringExact(CDataExchange* exchange, int id, CString& value);

/// A whole text without white space at either end. If some is dropped and `warn` is set, the person
/// is told, with the text as it is kept.
void DQDDX_TextTrimRightLeftSpace(CDataExchange* exchange, int id, CString& text, bool warn);

/// All rows of a list box, in their order.
void DQDDX_StringList(CDataExchange* exchange, int id, CStringList& list);

/// The enumerator that is the index, from 0, of a combo box's chosen row, or of the marked radio
/// button in the group that begins with `id`. With nothing chosen the variable stays as it is, for
/// there is no enumerator for it.
template <typename Enum>
requires std::is_enum_v<Enum>
void DQDDX_CBEnum(CDataExchange* exchange, int id, Enum& value) {
  int index = static_cast<int>(value);
  DDX_CBIndex(exchange, id, index);
  if (index >= 0) value = static_cast<Enum>(index);
}
template <typename Enum>
requires std::is_enum_v<Enum>
void DQDDX_RadioEnum(CDataExchange* exchange, int id, Enum& value) {
  int index = static_cast<int>(value);
  DDX_Radio(exchange, id, index);
  if (index >= 0) value = static_cast<Enum>(index);
}

/// Fails the exchange for a value saved that isn't in the range, ends included. For the control
/// prepared last.
void DQDDV_MinMaxI64(CDataExchange* exchange, long long value, long long minimum,
                     long long maximum);

}  // namespace dq
