// Tables of cases whose columns need no type of their own:
//
//   for (const auto& [text, length] : Rows<const char*, int>{{"", 0}, {"a", 1}}) ...

#pragma once

#include <initializer_list>
#include <tuple>

namespace dq::test {

template <typename... Columns>
using Rows = std::initializer_list<std::tuple<Columns...>>;

}  // namespace dq::test
