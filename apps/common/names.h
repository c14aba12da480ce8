// Names that a person types: in any case, and what may have been meant by one that is none.

#pragma once

#include <span>
#include <string>
#include <string_view>

namespace dqapps {

/// "; did you mean 'NAME'?" with the one of the names that is nearest to the word, whatever the
/// case; "" if none is near.
std::string DidYouMean(std::string_view word, std::span<const std::string> names);

}  // namespace dqapps
