// The texts of a list as one text.

#pragma once

#include "dqlib/framework/base/string_collections.h"

namespace dq::test {

/// From head to tail, with "|" behind each.
inline std::string Joined(const CStringList& list) {
  std::string joined;
  for (POSITION position = list.GetHeadPosition(); position != nullptr;) {
    joined += list.GetNext(position).View();
    joined += '|';
  }
  return joined;
}

}  // namespace dq::test
