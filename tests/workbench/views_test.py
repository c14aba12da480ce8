"""Views behind tabs, a splitter that hides a column, and a workbook on the window layer, driven as a person does."""

import sys
import unittest

from desktop import Desktop, leak_options

TESTBED = sys.argv.pop(1)
STRIP, SHEETS = 0xE900, 0xEA00


class ViewsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.__exit__)

    def start(self, letter, caption):
        host = self.host = self.enterContext(self.desktop.start(TESTBED))
        host.wait_for(caption="Testbed")
        host.keys("alt+o", letter)
        self.window = host.wait_for(caption=caption)

    def pane(self, name, **facts):
        """The view of a window class in sight, once it is as it should be."""
        def found():
            views = self.host.all(under=self.window, **{"class": name}, **facts)
            return views if len(views) == 1 else None
        return self.host.wait(found, f"no {name} is {facts}")[0]

    def wait_gone(self, name):
        self.host.wait(lambda: not self.host.all(under=self.window, **{"class": name}), f"{name} is still seen")

    def click_tab(self, strip, index):
        x, y, width, height = self.host.wait_key(strip, "tabs")[index]
        self.host.click(strip, x=x + width // 2, y=y + height // 2)

    def column(self, letter):
        self.host.keys("alt+c", letter)

    def leave(self):
        self.host.close(self.window)
        self.assertEqual(self.host.end(), (0, ""))

    def switched(self, *tabs):
        self.host.wait(lambda: [line["number"] for line in self.host.lines if line["event"] == "switched"] == list(tabs),
                       f"not switched to {tabs}, but {self.host.lines}")

    def test_tabs_show_their_views(self):
        self.start("v", "Views")
        host = self.host
        strip = self.pane("TabStrip", id=STRIP)
        self.switched(0)
        host.wait_focus(self.pane("Red"))
        self.click_tab(strip, 1)
        self.switched(0, 1)
        host.wait_focus(self.pane("Green"))
        self.wait_gone("Red")
        # What can't be made, or be chosen, leaves all as it is.
        for index in (2, 3):
            self.click_tab(strip, index)
        host.keys("alt+o", "alt+n", "alt+r")
        self.switched(0, 1, 0)
        host.wait_focus(self.pane("Red"))
        # The mnemonics are those of the view that the person works in.
        host.click(self.pane("Blue"))
        host.wait_focus(self.pane("Blue"))
        host.keys("alt+g")
        self.click_tab(strip, 0)
        host.wait_focus(self.pane("Red"))
        host.keys("alt+g")
        self.switched(0, 1, 0, 1)
        host.wait_focus(self.pane("Green"))
        self.leave()

    def test_a_column_is_hidden_and_comes_back(self):
        self.start("v", "Views")
        host = self.host
        blue = self.pane("Blue")
        width = blue["rect"][0] + blue["rect"][2]
        self.assertEqual(blue["rect"][0], 246)
        # The bar is dragged, and follows the mouse only when it is let go.
        host.xdotool("mousemove", *host.place(blue, x=-3), "mousedown", 1, "mousemove", *host.place(blue, x=37))
        host.wait(lambda: host.windows[blue["window"]]["rect"][0] == 246, "the pane follows the mouse")
        host.xdotool("mouseup", 1)
        self.pane("Blue", rect=[286, *blue["rect"][1:2], width - 286, blue["rect"][3]])
        self.column("h")
        self.wait_gone("Pages")
        self.pane("Blue", rect=[0, 0, width, blue["rect"][3]])
        host.wait_focus(self.pane("Blue"))
        self.column("r")
        self.wait_gone("Blue")
        host.wait_focus(self.pane("Green"))
        # Menus are gone when what the last of them does is seen.
        self.column("d")
        self.column("s")
        pages = self.pane("Pages", rect=[0, 0, 280, blue["rect"][3]])
        x, y = host.place(pages, x=283)
        host.xdotool("mousemove", x, y, "mousedown", 1)
        for way in (50, 100):
            host.xdotool("mousemove", x - way, y)
            self.pane("Pages", rect=[0, 0, 280 - way, blue["rect"][3]])
        host.keys("Escape")
        self.pane("Pages", rect=[0, 0, 280, blue["rect"][3]])
        host.xdotool("mouseup", 1)
        self.column("h")
        self.wait_gone("Pages")
        self.leave()

    def test_sheets_have_tabs(self):
        self.start("w", "Book")
        host = self.host
        strip = host.find(under=self.window, id=SHEETS)
        host.wait_focus(self.pane("Blue"))
        x, y = host.place(strip, x=20, y=12)
        host.xdotool("mousemove", x, y, "click", 1)
        host.wait_focus(self.pane("Red"))
        host.xdotool("mousemove", x + 100, y, "click", 1)
        host.wait_focus(self.pane("Green"))
        host.click(self.pane("Blue"), x=270, y=130)
        host.wait_focus(self.pane("Blue"))
        self.leave()

    def test_sheets_are_moved_sized_and_closed_by_their_frames(self):
        self.start("w", "Book")
        host = self.host
        sheet = host.windows[self.pane("Blue")["parent"]]

        def is_at(*rect):
            host.wait_value(sheet, rect=list(rect))

        def press(place, times=1):
            """A button by its place from the right."""
            host.click(sheet, x=host.windows[sheet["window"]]["rect"][2] - 4 - 20 * place + 10, y=14, times=times)
        is_at(80, 60, 300, 180)
        for x, y, way, rect in [(50, 14, (30, -20), (110, 40, 300, 180)), (298, 178, (40, 10), (110, 40, 340, 190)),
                                # No smaller than its buttons, and never out of sight.
                                (1, 100, (300, 0), (354, 40, 96, 190)), (30, 14, (0, -56), (354, -14, 96, 190))]:
            # A busy display may take the press for a window that lay there a moment before.
            before = host.windows[sheet["window"]]["rect"]
            for _ in range(3):
                host.drag(host.place(sheet, x=x, y=y), way)
                with host.changed:
                    if host.changed.wait_for(lambda: host.windows[sheet["window"]]["rect"] != before, 10):
                        break
            is_at(*rect)
        # Minimised by the button, and restored by two clicks on the caption and by the button.
        for place, times, rect in [(3, 1, (354, -14, 96, 28)), (4, 2, (354, -14, 96, 190)), (3, 1, (354, -14, 96, 28)),
                                   (3, 1, (354, -14, 96, 190))]:
            press(place, times)
            is_at(*rect)
        press(4, times=2)
        host.wait(lambda: host.windows[sheet["window"]]["rect"][:2] == [0, 0], "it isn't maximised")
        press(2)
        is_at(354, -14, 96, 190)
        press(1)
        self.wait_gone("Blue")
        host.wait_focus(self.pane("Green"))
        host.click(self.pane("Red"), x=10, y=100)
        host.wait_focus(self.pane("Red"))
        self.leave()


if __name__ == "__main__":
    leak_options(__file__)
    unittest.main()
