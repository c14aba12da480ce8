// Names as SQL text has them: wrapped in quotes, and qualified by names with dots between.

#pragma once

#include "dqlib/dbvocab/dbms.h"
#include "dqlib/framework/base/c_string.h"

namespace dq {

class CDQDBVersionString;

/// True if the text's first byte is `first` and its last byte is `last`. A text of one byte that is
/// both is wrapped; a null or empty one never is.
bool IsWrappedWithChars(const char* text, char first, char last);

/// The text without its first and last byte if it is wrapped, else the text; "" for null. A wrapped
/// text of one byte becomes "".
CString RemoveWrappingChar(const char* text, char first, char last);

/// Sets the characters that a quoted name stands between on the platform: "[" and "]" on SQL Server
/// above version 6.5, a double quote twice elsewhere. A number that is no platform, and
/// `DBMS_NONE`, leave both as they are.
void GetIdentifierQuoteChars(const CDQDBVersionString& version, DBMS platform, char& open,
                             char& close);

/// Cuts off and returns what stands before the first delimiter, which is dropped. Without one the
/// result is "" and `text` stays.
CString ParseDelimString(CString& text, char delimiter);

/// True, and the parts, if the name has three that aren't empty; false, and no change, else. All
/// behind the second dot is the third part, further dots included. Dots inside quotes separate like
/// all others. The name may be one of the outputs.
bool GetThreePartName(const CString& name, CString& first, CString& second, CString& third);

/// The same for two parts, and false if there are two dots or more. With fewer, the outputs are set
/// even if a part is empty and the result false: of a name without a dot the second is all of it,
/// which is how callers get at an unqualified one.
bool GetTwoPartName(const CString& name, CString& first, CString& second);

}  // namespace dq
