// Any text as a server's version on every platform. Input: the text.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "dqlib/dbvocab/version_string.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (const dq::DBMS platform : {dq::DBMS_NONE, dq::DBMS_SYBASE, dq::DBMS_SQLSERVER, dq::DBMS_DB2,
                                  dq::DBMS_ORACLE, dq::DBMS_DB2OS390}) {
    const dq::CDQDBVersionString version(text.c_str(), platform);
    if (version.View().size() > size) std::abort();
    const double number = static_cast<double>(version);
    if (!std::isfinite(number)) std::abort();
    for (const double other : {number, 0.0, 6.5, 8.1, 1e300, -0.5}) {
      const int holds = (version < other) + (version == other) + (version > other);
      if (holds != 1) std::abort();
      if ((version == other) == (version != other)) std::abort();
    }
  }
  return 0;
}
