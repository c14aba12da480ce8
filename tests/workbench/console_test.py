"""The console view and the output pane on the window layer, driven as a person does."""

import sys
import time
import unittest

from desktop import Desktop, leak_options

TESTBED = sys.argv.pop(1)
SHELL, PANE, TREE = 0xE900, 0xE820, 3070


def has_ended(process_id):
    for _ in range(1000):
        try:
            with open(f"/proc/{process_id}/stat", encoding="ascii") as file:
                if file.read().rpartition(")")[2].split()[0] == "Z":
                    return True
        except FileNotFoundError:
            return True
        time.sleep(0.01)
    return False


class ConsoleTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop())
        self.host = self.enterContext(self.desktop.start(TESTBED, SHELL="/bin/sh"))
        self.main = self.host.wait_for(caption="Testbed")
        self.host.keys("alt+o", "o")
        self.frame = self.host.wait_for(caption="Console and output")
        self.shell = self.host.find(under=self.frame, id=SHELL)

    def leave(self):
        self.host.wait_gone(self.frame)
        self.host.close(self.main)
        self.assertEqual(self.host.end(), (0, ""))

    def enter(self, text):
        self.host.type(text)
        self.host.keys("Return")

    def test_shell_is_typed_to_and_leaves(self):
        self.desktop.use_keyboard("de")
        self.host.wait_focus(self.shell)
        self.enter("echo Gr\u00f6\u00dfe")
        self.host.wait_value(self.shell, value="echo Gr\u00f6\u00dfe\r\nGr\u00f6\u00dfe\r\n")
        # Nothing is taken from what stands, and what is typed there goes to the end.
        self.host.keys("BackSpace", "Up", "Delete", "BackSpace")
        self.enter("cd /; pwd")
        self.host.wait_value(self.shell, value="echo Gr\u00f6\u00dfe\r\nGr\u00f6\u00dfe\r\ncd /; pwd\r\n/\r\n")
        self.enter("echo $$")
        self.host.wait(lambda: self.host.windows[self.shell["window"]]["value"].count("\n") == 6, "no number")
        child = int(self.host.windows[self.shell["window"]]["value"].split()[-1])
        self.enter("exit")
        self.leave()
        self.assertTrue(has_ended(child))

    def test_a_closed_view_ends_its_shell(self):
        self.enter("echo $$; yes")
        self.host.wait(lambda: "y\r\ny" in self.host.windows[self.shell["window"]]["value"], "no flood")
        child = int(self.host.windows[self.shell["window"]]["value"].split()[3])
        self.host.close(self.frame)
        self.leave()
        self.assertTrue(has_ended(child))

    def choose(self, *keys):
        """An item of the pane's context menu."""
        tree = self.host.find(id=TREE)
        self.host.drop_menu(lambda: self.host.click(tree, x=200, y=8, button=3))
        self.host.keys(*keys, "Return")

    def test_pane_shows_messages_and_has_a_menu(self):
        pane = self.host.find(under=self.frame, id=PANE)
        self.host.keys("alt+m", "Return")
        self.choose("Down")
        box = self.host.wait_for(caption="testbed")
        self.assertIn("3 rows affected", [window["text"] for window in self.host.all(under=box)])
        self.host.keys("Return")
        self.host.wait_gone(box)
        self.host.wait(lambda: self.host.active == self.frame["window"], "the frame isn't active again")
        self.choose("Down", "Down")
        self.host.click(self.shell)
        self.host.keys("ctrl+v")
        self.host.wait(lambda: self.host.windows[self.shell["window"]]["value"].endswith("\tProgram\t3 rows affected\r\n"),
                       "the row isn't copied")
        # The last item hides it, and an error brings it back.
        self.choose("Up")
        self.host.wait(lambda: not self.host.all(id=PANE), "the pane isn't hidden")
        self.host.keys("alt+m", "Down", "Down", "Return")
        self.host.wait(lambda: self.host.all(id=PANE), "no error shows the pane")
        for docked in (False, True):
            self.choose("Up", "Up")
            self.host.wait(lambda: (self.host.windows[pane["window"]]["parent"] == self.frame["window"]) == docked,
                           "the pane stays where it is")
        # Without rows the first item that can be chosen is the one to float.
        self.choose(*["Down"] * 6)
        self.choose("Down")
        self.host.wait(lambda: self.host.windows[pane["window"]]["parent"] != self.frame["window"], "there are rows")
        self.host.close(self.frame)
        self.leave()


if __name__ == "__main__":
    leak_options(__file__)
    unittest.main()
