// dqtool menu: the library's menus, and what the menus with pictures make of one.

#include <algorithm>
#include <optional>
#include <string>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "dqlib/framework/windows/window_messages.h"
#include "dqlib/resources/menus.h"
#include "dqlib/toolkit/cool_menu.h"

namespace dqtool {
namespace {

using dq::CDQCoolMenu;
using dq::CMenu;
using dq::UINT;

constexpr UINT kHighestId = 0xFFFF;
constexpr int kLastAscii = 0x7F;
constexpr char kPress[] = "--press";
constexpr char kInsert[] = "--insert";
constexpr char kExtend[] = "--extend";
constexpr char kClean[] = "--clean";

std::string TextAt(const CDQCoolMenu& menu, int position) {
  return std::string(menu.GetMenuItemText(static_cast<UINT>(position), true).View());
}

// ---- The library's menus

void ListItems(Listing& listing, dq::WORD id, const CDQCoolMenu& menu) {
  for (int position = 0; position < menu.GetMenuItemCount(); ++position) {
    const UINT command = menu.GetMenuItemID(position);
    const std::string text = TextAt(menu, position);
    const int mnemonic = CDQCoolMenu::ExtractMnemonic(text.c_str());
    const int picture = menu.GetMenuItemImageIndex(command);
    const bool is_command = command != 0 && command != dq::kPopupId;
    const std::string key = mnemonic == 0            ? ""
                            : mnemonic <= kLastAscii ? std::string(1, static_cast<char>(mnemonic))
                                                     : std::to_string(mnemonic);
    listing.Add({{"menu", id},
                 {"position", position},
                 {"id", is_command ? Value(command) : Value()},
                 {"picture", is_command && picture != dq::kNoImage ? Value(picture) : Value()},
                 {"mnemonic", key},
                 {"text", command == 0 ? Value("-") : Value(text)}});
  }
}

int PressKey(Listing& listing, const std::string& key) {
  const UINT ch = dq::MenuCharacter(key);
  const bool is_longer = ch <= kLastAscii && key.size() > 1;
  if (ch == 0 || is_longer) throw WrongUsage("CH is one character, not '" + key + "'");
  int status = kNo;
  for (const dq::WORD id : dq::kMenuIds) {
    CDQCoolMenu menu;
    CDQCoolMenu* const popup = menu.Coolify(id, true) ? menu.GetCoolSubMenu(0) : nullptr;
    if (popup == nullptr) continue;
    const auto answer = static_cast<dq::WPARAM>(CDQCoolMenu::OnMenuChar(ch, dq::MF_POPUP, popup));
    if (answer == 0) continue;
    const int position = dq::LoWord(answer);
    listing.Add({{"menu", id}, {"position", position}, {"text", TextAt(*popup, position)}});
    status = kYes;
  }
  return listing.End(status);
}

int RunLibrary(const Arguments& arguments) {
  Listing listing(arguments);
  if (const std::string* const key = arguments.Find(kPress)) return PressKey(listing, *key);
  for (const dq::WORD id : dq::kMenuIds) {
    CDQCoolMenu menu;
    if (!menu.Coolify(id, true) || menu.GetCoolSubMenu(0) == nullptr) {
      return Complain("menu " + std::to_string(id) + " can't be loaded");
    }
    ListItems(listing, id, *menu.GetCoolSubMenu(0));
  }
  return listing.End();
}

// ---- A menu in a file

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    switch (c) {
      case '\t':
        quoted += "\\t";
        break;
      case '\n':
        quoted += "\\n";
        break;
      case '"':
      case '\\':
        quoted += '\\';
        [[fallthrough]];
      default:
        quoted += c;
    }
  }
  return quoted + '"';
}

/// Prints the items in the form that they are read in; those that the menu draws with its records.
void Print(const CMenu& menu, int depth) {
  const auto* const cool = dynamic_cast<const CDQCoolMenu*>(&menu);
  for (int position = 0; position < menu.GetMenuItemCount(); ++position) {
    const auto at = static_cast<UINT>(position);
    const UINT id = menu.GetMenuItemID(position);
    const UINT state = menu.GetMenuState(at, dq::MF_BYPOSITION);
    std::string line(static_cast<std::size_t>(2 * depth), ' ');
    if (id == 0) {
      PrintLine(line + "separator");
      continue;
    }
    std::string text(menu.GetMenuString(at, dq::MF_BYPOSITION).View());
    if (text.empty() && cool != nullptr) text = TextAt(*cool, position);
    const CMenu* const popup = menu.GetSubMenu(position);
    line += popup == nullptr ? "item " + std::to_string(id) + ' ' : "popup ";
    line += Quoted(text);
    if ((state & dq::MF_CHECKED) != 0) line += " checked";
    if ((state & dq::MF_GRAYED) != 0) line += " grayed";
    PrintLine(line);
    if (popup == nullptr) continue;
    Print(*popup, depth + 1);
    PrintLine(std::string(static_cast<std::size_t>(2 * depth), ' ') + "end");
  }
}

/// Reads a menu and has it drawn. False, which has been said, if there is none.
bool Read(const std::string& path, CDQCoolMenu& menu) {
  const std::optional<std::string> text = dqapps::ReadContent(path);
  if (!text) return false;
  std::string error;
  if (!menu.LoadMenuIndirect(*text, &error)) {
    Complain(dqapps::NameOfInput(path) + ": " + error);
    return false;
  }
  menu.CoolifyExistingItems();
  return true;
}

/// The number behind the highest one of a command in the menu; the lowest free one once there is
/// none.
UINT FreeId(const CMenu& menu) {
  UINT highest = 0;
  for (int position = 0; position < menu.GetMenuItemCount(); ++position) {
    const UINT id = menu.GetMenuItemID(position);
    if (id <= kHighestId) highest = std::max(highest, id);
  }
  if (highest < kHighestId) return highest + 1;
  UINT free = 1;
  while (menu.GetMenuState(free, dq::MF_BYCOMMAND) != dq::kPopupId) ++free;
  return free;
}

int RunFile(const Arguments& arguments) {
  const std::string* const text = arguments.Find(kInsert);
  const std::string* const other_path = arguments.Find(kExtend);
  const bool cleans = arguments.Has(kClean);
  if ((text != nullptr) + (other_path != nullptr) + cleans > 1) {
    throw WrongUsage("only one of --insert, --extend and --clean");
  }
  CDQCoolMenu menu;
  if (other_path != nullptr && *other_path == "-" && arguments.words[0] == "-") {
    throw WrongUsage("standard input can be read once");
  }
  if (!Read(arguments.words[0], menu)) return kNo;
  CDQCoolMenu other;
  if (other_path != nullptr) {
    if (!Read(*other_path, other)) return kNo;
    menu.ExtendMenu(&other);
  }
  if (text != nullptr) menu.InsertItemInAlphabeticOrder(FreeId(menu), text->c_str());
  if (cleans) menu.CleanMenu();
  Print(menu, 0);
  return kYes;
}

const Command kMenu{
    "menu",
    "Shows the library's menus, and menus of files as menus with pictures have them.",
    "Without words prints a line MENU<TAB>POSITION<TAB>ID<TAB>PICTURE<TAB>MNEMONIC<TAB>TEXT for\n"
    "each item of the library's menus: PICTURE is the index of the command's picture, if it has\n"
    "one, MNEMONIC the key that chooses the item, as a number if it isn't ASCII, and the TEXT of\n"
    "a separator '-'. With '--press' prints a line MENU<TAB>POSITION<TAB>TEXT for each menu in\n"
    "which the key CH chooses an item; without one the status is 1.\n"
    "\n"
    "FILE, '-' for standard input, is a menu as a text:\n"
    "\n"
    "  popup \"&File\"\n"
    "    item 43538 \"&Open...\\tCtrl+O\"\n"
    "    separator\n"
    "    item 43539 \"E&xit\" checked grayed\n"
    "  end\n"
    "\n"
    "It is taken over, changed as an option says, and printed in the same form. IDs are 1 to\n"
    "65535. A new item has the id behind the highest one of the menu.\n"
    "\n"
    "JSON: [{\"menu\", \"position\", \"id\", \"picture\", \"mnemonic\", \"text\"}, ...], and with\n"
    "'--press' [{\"menu\", \"position\", \"text\"}, ...].\n",
    {{"", RunLibrary, {{kPress, "CH", "what the key CH chooses"}, kJson}},
     {"FILE",
      RunFile,
      {{kInsert, "TEXT", "inserts an item with the text in alphabetic order"},
       {kExtend, "FILE",
        "adds the items of another menu; a command whose text the menu has takes the\n"
        "place of that item"},
       {kClean, "", "gives the menu back as it was before it was taken over"}}}}};

}  // namespace
}  // namespace dqtool
