// The desktop's clipboard in the library's formats.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/workbench/layer/gtk_formats.h"

namespace workbench {

/// Offers the pieces, the best one first, to whoever asks; none empties the clipboard.
void OfferOnClipboard(std::vector<DataPiece> pieces);

/// What the clipboard holds in a format, in the library's form; no value if nothing. What this
/// program has offered comes back as it was.
std::optional<std::string> TakeFromClipboard(dq::UINT format, const std::string& name);

/// The formats that can be taken. `number_of` gives the number of a registered one.
std::vector<dq::UINT> ClipboardFormats(
    const std::function<dq::UINT(std::string_view name)>& number_of);

}  // namespace workbench
