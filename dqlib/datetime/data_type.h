// Facts about data types, and the data editors' words of SQL.

#pragma once

namespace dq {

/// What is known of a data type by its code.
class CDQDataType {
 public:
  /// Whether values of the type stand in quotes in a statement; false for a code that is none.
  static bool DataTypeNeedQuote(int code);
};

/// Codes of data types that hold dates and times.
enum DateTimeCode : int {
  DATATYPE_DATE = 5,
  DATATYPE_DATETIME = 6,
  DATATYPE_DATE_ONLY = 19,
  DATATYPE_TIMESTAMP = 20,
  DATATYPE_TIME = 26,
  DATATYPE_DATETIME_TIMESTAMP = 27,
};

namespace detail {

/// What columns of a data type hold: `DATATYPE_DATE`, `DATATYPE_TIME` or `DATATYPE_DATETIME`; 0 for
/// a code that is none of dates and times.
int DateTimeClassOf(int code);

}  // namespace detail

/// Positions in the table of words that the library itself reads.
enum SqlFragment : int { SQL_FRAGMENT_NULL_TEXT = 1, SQL_FRAGMENT_BLANK = 8 };

/// How many words the table has.
inline constexpr int kSqlFragments = 40;

/// A word of the data editors by its position, from 0 below `kSqlFragments`; null for any other.
const char* GetSqlFragment(int position);

}  // namespace dq
