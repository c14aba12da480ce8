"""Frames with tabs on the window layer, driven as a person does."""

import sys
import unittest

from desktop import Desktop, leak_options

TESTBED = sys.argv.pop(1)
STRIP = 0xE8FF
NAME, OK = 45345, 1
BLANK = "The tab names must not be blank.  Enter a name at least one character in length."


class TabsTest(unittest.TestCase):
    def setUp(self):
        desktop = self.enterContext(Desktop())
        host = self.host = self.enterContext(desktop.start(TESTBED))
        host.wait_for(caption="Testbed")
        host.keys("alt+o", "Up", "Return")
        self.window = host.wait_for(caption="tres - Tabs")
        self.wait_tabs(0, "one two three*")
        self.wait_tabs(1, "uno a label that is long tres*")

    def tabs(self, frame):
        """The tabs that the frame has told last: label, the active one with "*", and their ends."""
        told = [line["text"] for line in self.host.lines if line["event"] == "tabs" and line["number"] == frame]
        cells = [each.rsplit(",", 2) for each in told[-1].split(";")[:-1]] if told else []
        return [(label + ("*" if right.endswith("*") else ""), int(left), int(right.rstrip("*")))
                for label, left, right in cells], told[-1:]

    def wait_tabs(self, frame, labels):
        self.host.wait(lambda: " ".join(tab[0] for tab in self.tabs(frame)[0]) == labels or self.tabs(frame)[1] == [labels],
                       f"frame {frame} hasn't {labels}, but {self.tabs(frame)}")

    def place(self, frame, tab):
        """The middle of a tab on the display."""
        strips = self.host.wait(lambda: self.host.all(id=STRIP), "there is no strip")
        strip = sorted(strips, key=self.host.place)[frame if len(strips) > 1 else 0]
        _, left, right = self.tabs(frame)[0][tab]
        return self.host.place(strip, x=(left + right) // 2, y=14)

    def press(self, frame, tab, button=1):
        self.host.xdotool("mousemove", *self.place(frame, tab), "click", button)

    def choose(self, frame, tab, *keys):
        """An item of the tab's context menu, by keys."""
        self.press(frame, tab, button=3)
        self.host.keys(*keys, "Return")

    def change(self, frame):
        """The document that the frame shows, by a click."""
        x, y = self.place(frame, 0)
        self.host.xdotool("mousemove", x, y + 100, "click", 1)

    def test_tabs_are_chosen_closed_and_renamed(self):
        self.press(0, 1)
        self.wait_tabs(0, "one two* three")
        self.choose(0, 2, "Up")
        dialog = self.host.wait_for(caption="Rename Tab")
        self.host.keys("BackSpace", "Return")
        self.host.wait(lambda: any(window["text"] == BLANK for window in self.host.windows.values()), "no complaint")
        self.host.keys("Return")
        self.host.wait_focus(self.host.find(under=dialog, id=NAME))
        self.host.type("last")
        self.host.click(self.host.find(under=dialog, id=OK))
        self.host.wait_gone(dialog)
        self.wait_tabs(0, "one two* last")
        # "Close all" leaves the first one, which can't be closed, and what the person keeps.
        self.change(0)
        self.choose(0, 2, "Down", "Down")
        self.host.wait(lambda: len(self.host.all(parent=0)) == 3, "nobody asks")
        self.host.keys("Escape")
        self.wait_tabs(0, "one two*")
        self.choose(0, 1, "Down")
        self.host.wait(lambda: len(self.host.all(parent=0)) == 3, "nobody asks")
        self.host.keys("alt+n")
        self.wait_tabs(0, "one*")
        self.assertEqual(len(self.host.all(id=STRIP)), 1)
        self.host.close(self.window)
        self.assertEqual(self.host.end(), (0, ""))


if __name__ == "__main__":
    leak_options(__file__)
    unittest.main()
