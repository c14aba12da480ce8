"""Menus with pictures on the window layer, driven as a person does."""

import subprocess
import sys
import time
import unittest

from desktop import Desktop, leak_options

TESTBED = sys.argv.pop(1)
HAMMER, SAW, NAIL, DEEP = 32790, 32791, 32793, 32794
ROW = 17


class MenusTest(unittest.TestCase):
    def setUp(self):
        desktop = self.enterContext(Desktop())
        words = ["--drawn"] if "drawn" in self.id() else []
        self.host = self.enterContext(desktop.start(TESTBED, *words))
        self.frame = self.host.wait_for(caption="Testbed")
        self.canvas = self.host.find(id=0xE900)

    def told(self, command):
        """The one command that was chosen."""
        self.assertEqual(self.host.wait_line("popup")["number"], command)
        self.host.lines.clear()

    def wait_color(self, x, y, color):
        """The display's colour at a point."""
        for _ in range(100):
            pixel = subprocess.run(["import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "txt:-"],
                                   env=self.host.desktop.environment(), capture_output=True, text=True, check=True).stdout
            if color in pixel:
                return
            time.sleep(0.1)
        self.fail(f"not {color} but {pixel}")

    def drop(self):
        """The menu that is shown by itself: where its corner is."""
        self.host.click(self.canvas, x=310, y=30, button=3)
        x, y = self.host.place(self.canvas, 310, 30)
        self.wait_color(x + 12, y + 12, "#C04020")
        return x, y

    def leave(self):
        self.host.close(self.frame)
        self.assertEqual(self.host.end(), (0, ""))

    def test_keys_in_the_menu_bar(self):
        for keys, command in [
                (["n"], NAIL), (["S"], SAW), (["Down", "Return"], SAW), (["m", "d"], DEEP), (["Up", "Right", "Return"], DEEP),
                # What is disabled, or no key of the menu, does nothing; submenus are left.
                (["b", "x", "h"], HAMMER), (["m", "Left", "Up", "space"], NAIL), (["Down", "Down", "Return"], NAIL)]:
            self.host.keys("alt+t", *keys)
            self.told(command)
        self.host.keys("alt+t", "Escape", "Escape", "n")
        self.host.keys("alt+t", "h")
        self.told(HAMMER)
        self.leave()

    def test_keys_in_a_menu_bar_that_is_drawn(self):
        # What no menu has for its key does nothing.
        for keys, command in [(["alt+t", "n"], NAIL), (["alt+x", "alt+shift+t", "s"], SAW), (["alt+t", "m", "d"], DEEP)]:
            self.host.keys(*keys)
            self.told(command)
        self.leave()

    def test_mouse_and_keys_in_a_menu_by_itself(self):
        for row, command in [(0, HAMMER), (1, SAW)]:
            x, y = self.drop()
            self.host.xdotool("mousemove", x + 40, y + 12 + row * ROW, "click", 1)
            self.told(command)
        x, y = self.drop()
        # The picture of the row that is pointed at stands out, its text has another ground.
        self.host.xdotool("mousemove", x + 40, y + 12)
        self.wait_color(x + 80, y + 12, "#3584E4")
        self.wait_color(x + 12, y + 12, "#C04020")
        self.host.keys("m", "Return")
        self.told(DEEP)
        self.drop()
        self.host.keys("Escape")
        # In the menu bar.
        self.host.xdotool("mousemove", *self.host.place(self.canvas, 74, -12), "click", 1)
        x, y = self.host.place(self.canvas, 60, 0)
        self.wait_color(x + 2, y + 8, "#C04020")
        self.host.xdotool("mousemove", x + 20, y + 25, "click", 1)
        self.told(SAW)
        self.leave()


if __name__ == "__main__":
    leak_options(__file__)
    unittest.main()
