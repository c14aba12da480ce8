"""Trees with check boxes on the window layer, driven as a person does."""

import sys
import unittest

from desktop import Desktop, leak_options

TESTBED = sys.argv.pop(1)
ITEMS, ROWS = 70, 71


class CheckBoxesTest(unittest.TestCase):
    def setUp(self):
        desktop = self.enterContext(Desktop())
        host = self.host = self.enterContext(desktop.start(TESTBED))
        host.wait_for(caption="Testbed")
        host.keys("alt+o", "b")
        self.window = host.wait_for(caption="Checks")

    def rows(self, tree):
        """What the tree has told last: name, state, where its box is, and whether it is selected."""
        told = [line["text"] for line in self.host.lines if line["event"] == "checks" and line["number"] == tree - ITEMS]
        return [row.split(",") for row in told[-1].split(";")[:-1]] if told else []

    def wait_states(self, tree, states, selected=None):
        def is_so():
            rows = self.rows(tree)
            chosen = [row[0] for row in rows if row[3].endswith("*")]
            return "".join(row[1] for row in rows) == states and (selected is None or chosen == [selected])
        self.host.wait(is_so, f"{tree} isn't {states}, {selected}, but {self.rows(tree)}")

    def press(self, tree, row, right=0):
        _, _, x, y = self.rows(tree)[row]
        self.host.click(self.host.find(id=tree), x=int(x) + right, y=int(y.rstrip("*")))

    def told(self):
        return [line["number"] for line in self.host.lines if line["event"] == "told"]

    def test_boxes_toggle_by_the_mouse_alone(self):
        # A server with tables, of which there are two, and views, which are collapsed.
        self.wait_states(ITEMS, "111")
        self.press(ITEMS, 1, right=30)
        self.wait_states(ITEMS, "111", "Tables")
        self.host.keys("Right")
        self.wait_states(ITEMS, "11111", "Tables")
        self.press(ITEMS, 2)
        self.wait_states(ITEMS, "44211", "Tables")
        self.host.keys("Down", "space", "Down")
        self.wait_states(ITEMS, "44211", "JOBS")
        self.press(ITEMS, 3)
        self.wait_states(ITEMS, "42221", "JOBS")
        self.press(ITEMS, 0)
        self.wait_states(ITEMS, "11111", "JOBS")

        self.wait_states(ROWS, "00000")
        self.press(ROWS, 2)
        self.wait_states(ROWS, "11200", "EMPLOYEES")
        self.host.wait(lambda: self.told().count(0x1E) == 1, "the parent isn't told")
        self.host.keys("Down", "space")
        self.host.wait(lambda: self.told().count(0x2C) == 1, "the parent isn't told of the space bar")
        self.wait_states(ROWS, "11200", "JOBS")
        self.press(ROWS, 0)
        self.wait_states(ROWS, "22222", "Server")
        self.host.close(self.window)
        self.assertEqual(self.host.end(), (0, ""))


if __name__ == "__main__":
    leak_options(__file__)
    unittest.main()
