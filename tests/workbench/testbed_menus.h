// Menus with pictures, for the testbed: in the menu bar and by themselves.

#pragma once

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"
#include "dqlib/framework/windows/tool_bar.h"
#include "dqlib/toolkit/cool_menu.h"

namespace workbench {

/// The resources of the menu 32800: its commands 32790 to 32794, and a tool bar for two of them.
class MenuResources {
 public:
  static constexpr dq::WORD kMenu = 32800;
  static constexpr const char* kText =
      "popup \"&Tools\"\nitem 32790 \"&Hammer\\tCtrl+H\"\nitem 32791 \"&Saw\"\nseparator\n"
      "item 32792 \"&Broken\" grayed\nitem 32793 \"&Nail\" checked\n"
      "popup \"&More\"\nitem 32794 \"&Deep\"\nend\nend\n";

  MenuResources() {
    module_.AddResource(dq::RESOURCE_MENU, kMenu, kText);
    const dq::WORD commands[] = {32790, 0, 32791};
    module_.AddResource(dq::RESOURCE_TOOLBAR, kMenu, dq::WriteToolBarTemplate({16, 15}, commands));
    dq::BitmapDescription strip{.size = {32, 15}, .pixels = {}};
    for (int at = 0; at < 32 * 15; ++at) {
      const int x = at % 16, y = at / 32;
      const bool is_inside = x > 2 && x < 13 && y > 2 && y < 12;
      const bool is_first = at % 32 < 16;
      const dq::COLORREF color = is_first ? dq::RGB(0xC0, 0x40, 0x20) : dq::RGB(0x20, 0x80, 0x40);
      strip.pixels.push_back(is_inside ? color : dq::CDQCoolMenu::kMaskColor);
    }
    module_.AddResource(dq::RESOURCE_BITMAP, kMenu, dq::WriteDib(strip));
  }

 private:
  dq::ResourceModule module_;
  dq::CDynLinkLibrary link_{&module_};
};

}  // namespace workbench
