#include "dqlib/resources/menus.h"

#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

// Commands of the framework; see `framework/windows/window_messages.h`, which lies above.
constexpr WORD kFileSave = 57603;
constexpr WORD kFilePrint = 57607;
constexpr WORD kEditClear = 57632;
constexpr WORD kEditClearAll = 57633;
constexpr WORD kEditCopy = 57634;
constexpr WORD kEditSelectAll = 57642;

/// One item; a separator without a command.
struct ItemRow {
  WORD menu;
  WORD command;
  UINT text;
};

constexpr ItemRow kItems[] = {
    {IDM_TAB_WINDOW, ID_TAB_CLOSE, IDS_CLOSE_TAB},
    {IDM_TAB_WINDOW, ID_TAB_CLOSE_ALL, IDS_CLOSE_ALL_TABS},
    {IDM_TAB_WINDOW, 0, 0},
    {IDM_TAB_WINDOW, ID_TAB_RENAME, IDS_RENAME_TAB},
    {IDM_OUTPUT, ID_OUTPUT_DISPLAY, IDS_OUTPUT_DISPLAY},
    {IDM_OUTPUT, 0, 0},
    {IDM_OUTPUT, kEditCopy, IDS_OUTPUT_COPY},
    {IDM_OUTPUT, kEditSelectAll, IDS_OUTPUT_SELECT_ALL},
    {IDM_OUTPUT, ID_OUTPUT_UNSELECT_ALL, IDS_OUTPUT_UNSELECT_ALL},
    {IDM_OUTPUT, 0, 0},
    {IDM_OUTPUT, kEditClear, IDS_OUTPUT_CLEAR},
    {IDM_OUTPUT, kEditClearAll, IDS_OUTPUT_CLEAR_ALL},
    {IDM_OUTPUT, 0, 0},
    {IDM_OUTPUT, kFileSave, IDS_OUTPUT_SAVE},
    {IDM_OUTPUT, kFilePrint, IDS_OUTPUT_PRINT},
    {IDM_OUTPUT, 0, 0},
    {IDM_OUTPUT, ID_OUTPUT_FLOAT, IDS_OUTPUT_FLOAT},
    {IDM_OUTPUT, ID_OUTPUT_HIDE, IDS_OUTPUT_HIDE},
};

/// A text as the form writes it.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '\t') {
      quoted += "\\t";
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

}  // namespace

std::string MenuText(WORD id, const ResourceModule& strings) {
  std::string data;
  for (const ItemRow& item : kItems) {
    if (item.menu != id) continue;
    if (data.empty()) data = "popup \"\"\n";
    if (item.command == 0) {
      data += "separator\n";
    } else {
      data += "item " + std::to_string(item.command) + ' ' +
              Quoted(strings.String(item.text).value_or("")) + '\n';
    }
  }
  return data.empty() ? data : data + "end\n";
}

}  // namespace dq
