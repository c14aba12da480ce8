// Any text as a server's version on every platform. Input: the text.

#include <cmath>

#include "dqlib/dbvocab/version_string.h"
#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  const std::string text(input);
  for (const dq::DBMS platform : {dq::DBMS_NONE, dq::DBMS_SYBASE, dq::DBMS_SQLSERVER, dq::DBMS_DB2,
                                  dq::DBMS_ORACLE, dq::DBMS_DB2OS390}) {
    const dq::CDQDBVersionString version(text.c_str(), platform);
    Require(version.View().size() <= text.size());
    const double number = static_cast<double>(version);
    Require(std::isfinite(number));
    for (const double other : {number, 0.0, 6.5, 8.1, 1e300, -0.5}) {
      const int holds = (version < other) + (version == other) + (version > other);
      Require(holds == 1);
      Require((version == other) != (version != other));
    }
  }
}
