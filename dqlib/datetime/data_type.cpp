#include "dqlib/datetime/data_type.h"

#include <algorithm>
#include <iterator>

namespace dq {
namespace {

constexpr int kQuotedTypes[] = {4, 5, 6, 10, 11, 12, 19, 20, 25, 26, 30};

constexpr const char* kFragments[kSqlFragments] = {
    "NULL",
    "[NULL]",
    "IS NULL",
    "DEFAULT",
    "=",
    " AND",
    "(",
    ")",
    " ",
    ".",
    ",",
    "'",
    ";",
    "USE",
    "BEGIN TRAN",
    "COMMIT TRAN",
    "ROLLBACK",
    "ROLLBACK TRAN",
    "BEGIN",
    "END",
    "COMMIT",
    "INSERT",
    "INSERT INTO",
    "UPDATE",
    "DELETE",
    "SELECT",
    "SET",
    "WHERE",
    "FROM",
    "VALUES",
    "NCHAR",
    "VARCHAR",
    "NVARCHAR",
    "VARCHAR2",
    "ID",
    "EMPID",
    "TID",
    "TIMESTAMP",
    "TIMESTAMP WITH TIME ZONE",
    "TIMESTAMP WITH LOCAL TIME ZONE",
};

}  // namespace

bool CDQDataType::DataTypeNeedQuote(int code) {
  return std::ranges::find(kQuotedTypes, code) != std::end(kQuotedTypes);
}

int detail::DateTimeClassOf(int code) {
  switch (code) {
    case DATATYPE_DATE:
    case DATATYPE_DATE_ONLY:
      return DATATYPE_DATE;
    case DATATYPE_TIME:
      return DATATYPE_TIME;
    case DATATYPE_DATETIME:
    case DATATYPE_TIMESTAMP:
    case DATATYPE_DATETIME_TIMESTAMP:
      return DATATYPE_DATETIME;
    default:
      return 0;
  }
}

const char* GetSqlFragment(int position) {
  return position < 0 || position >= kSqlFragments ? nullptr : kFragments[position];
}

}  // namespace dq
