// Any text as a server's version on every platform. Input: the text.

#include <cmath>

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  const std::string text(input);
  for (int platform = DBMS_NONE; platform <= DBMS_DB2OS390; ++platform) {
    const CDQDBVersionString version(text.c_str(), static_cast<DBMS>(platform));
    Require(version.View().size() <= text.size());
    const double number = static_cast<double>(version);
    Require(std::isfinite(number));
    for (const double other : {number, 0.0, 6.5, 8.1, 1e300, -0.5}) {
      Require((version < other) + (version == other) + (version > other) == 1);
      Require((version == other) != (version != other));
    }
  }
}
