// The database platforms. Any part of the library may include this.

#pragma once

namespace dq {

/// A platform by the number that files and settings keep. No other value is in use.
enum DBMS : int {
  DBMS_NONE = 0,
  DBMS_SYBASE = 2,
  DBMS_SQLSERVER = 3,
  DBMS_DB2 = 4,
  DBMS_ORACLE = 5,
  DBMS_DB2OS390 = 10,
};

}  // namespace dq
