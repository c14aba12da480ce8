"""Frames with tabs on the window layer, driven as a person does."""

import sys
import time
import unittest

from desktop import Desktop, leak_options

TESTBED = sys.argv.pop(1)
STRIP = 0xE8FF
NAME, OK = 45345, 1
BLANK = "The tab names must not be blank.  Enter a name at least one character in length."


class Tabs:
    """A program with the two frames, as a person works with it."""

    def __init__(self, test, desktop):
        host = self.host = test.enterContext(desktop.start(TESTBED))
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
        self.host.drop_menu(lambda: self.press(frame, tab, button=3))
        self.host.keys(*keys, "Return")

    def change(self, frame):
        """The document that the frame shows, by a click."""
        x, y = self.place(frame, 0)
        self.host.xdotool("mousemove", x, y + 100, "click", 1)

    def drag(self, frame, tab, end):
        start = self.place(frame, tab)

        def rest():
            """The toolkit must have the target's answer before the drop."""
            for by in (1, 2, 3):
                time.sleep(0.2)
                self.host.xdotool("mousemove", end[0] + by, end[1])
            time.sleep(0.2)
        self.host.drag(start, [till - at for at, till in zip(start, end)], meanwhile=rest)

    def move(self, frame, tab, end, labels):
        """Drags it until the frame has those tabs: a busy display may take a drop before its answer."""
        for _ in range(4):
            self.drag(frame, tab, end)
            with self.host.changed:
                if self.host.changed.wait_for(lambda: " ".join(tab[0] for tab in self.tabs(frame)[0]) == labels, 15):
                    break
        self.wait_tabs(frame, labels)

    def leave(self, test):
        self.host.close(self.window)
        test.assertEqual(self.host.end(), (0, ""))


class TabsTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop())
        self.program = Tabs(self, self.desktop)

    def test_tabs_are_chosen_closed_and_renamed(self):
        program, host = self.program, self.program.host
        program.press(0, 1)
        program.wait_tabs(0, "one two* three")
        program.choose(0, 2, "Up")
        dialog = host.wait_for(caption="Rename Tab")
        host.keys("BackSpace", "Return")
        host.find(under=host.wait_for(caption="testbed"), text=BLANK)
        host.keys("Return")
        host.wait_focus(host.find(under=dialog, id=NAME))
        host.type("last")
        host.click(host.find(under=dialog, id=OK))
        host.wait_gone(dialog)
        program.wait_tabs(0, "one two* last")
        # "Close all" leaves the first one, which can't be closed, and what the person keeps.
        program.change(0)
        program.choose(0, 2, "Down", "Down")
        host.wait_for(caption="testbed")
        host.keys("Escape")
        program.wait_tabs(0, "one two*")
        program.choose(0, 1, "Down")
        host.wait_for(caption="testbed")
        host.keys("alt+n")
        program.wait_tabs(0, "one*")
        self.assertEqual(len(host.all(id=STRIP)), 1)
        program.leave(self)

    def test_keys_go_to_the_other_frame_and_close_one(self):
        program, host = self.program, self.program.host
        for keys, title in [("ctrl+Tab", "three"), ("ctrl+F6", "tres"), ("ctrl+shift+Tab", "three")]:
            host.keys(keys)
            host.wait_for(caption=f"{title} - Tabs")
        host.keys("ctrl+F4")
        host.wait_for(caption="tres - Tabs")
        program.wait_tabs(0, "gone")
        program.leave(self)

    def test_tabs_are_dragged_to_the_other_frame_and_nowhere_else(self):
        program, host = self.program, self.program.host
        other = Tabs(self, self.desktop)
        other.host.drag(other.host.place(other.window, 300, -10), (60, 400))
        other.host.wait(lambda: other.host.windows[other.window["window"]]["origin"][1] > 500, "the frame hasn't moved")
        # Where the other program's windows leave it in sight, a click brings it to the top.
        host.click(program.window, x=500, y=-10)
        in_first, in_second, in_other = program.place(0, 0), program.place(1, 0), other.place(1, 0)
        for refused in (in_first, in_other):
            program.drag(0, 1, (refused[0], refused[1] + 100))
            program.wait_tabs(0, "one two* three")
        program.move(0, 2, in_second, "one two*")
        program.wait_tabs(1, "uno a label that is long tres three*")
        program.move(0, 0, (in_second[0], in_second[1] + 100), "two*")
        program.wait_tabs(1, "uno a label that is long tres three one*")
        other.wait_tabs(1, "uno a label that is long tres*")
        program.leave(self)


if __name__ == "__main__":
    leak_options(__file__)
    unittest.main()
