// The library's menus. Their texts stand in the string table, and their form as a resource is told
// in `framework/windows/menu.h`.

#pragma once

#include <string>

#include "dqlib/framework/base/resource_module.h"

namespace dq {

/// Menus by number, each with one popup, which is shown by itself; and the commands in them that
/// the framework has no number for.
enum MenuId : WORD {
  IDM_TAB_WINDOW = 45340,
  ID_TAB_CLOSE = 45341,
  ID_TAB_CLOSE_ALL = 45342,
  ID_TAB_RENAME = 45343,
  IDM_OUTPUT = 45350,
  ID_OUTPUT_UNSELECT_ALL = 45351,
  ID_OUTPUT_DISPLAY = 45352,
  ID_OUTPUT_FLOAT = 45353,
  ID_OUTPUT_HIDE = 45354,
};

inline constexpr WORD kMenuIds[] = {IDM_TAB_WINDOW, IDM_OUTPUT};

/// The data of a menu's resource, with its texts as `strings` has them; "" for a number that is
/// none of `kMenuIds`.
std::string MenuText(WORD id, const ResourceModule& strings);

}  // namespace dq
