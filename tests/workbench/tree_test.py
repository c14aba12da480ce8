"""A tree of a million rows, as a person works with it."""

import sys
import unittest

from desktop import Desktop, leak_options

TESTBED = sys.argv.pop(1)


class TreeTest(unittest.TestCase):
    def test_mouse_and_keyboard(self):
        host = self.enterContext(self.enterContext(Desktop()).start(TESTBED))
        host.wait_for(caption="Testbed")
        host.keys("alt+o", "r")
        window = host.wait_for(caption="Tree")
        tree = host.find(under=window, **{"class": "SftTree"})

        def told(text):
            """First row, current row, how many are selected and shown, what it is sorted by."""
            host.wait(lambda: [line["text"] for line in host.lines if line["event"] == "tree"][-1:] == [text],
                      f"not {text} but {host.lines[-1:]}")

        def press(row, held=None, **how):
            """A row by its place from the top, with a key held."""
            if held:
                host.xdotool("keydown", held)
            host.click(tree, x=100, y=22 + 18 * row + 9, **how)
            if held:
                host.xdotool("keyup", held)
        press(4)
        told('0 4 "leaf 999996" 1 of 1000000 -1+')
        for key, text in [("Down", '0 5 "leaf 999995" 1 of 1000000 -1+'), ("End", '999959 999999 "leaf 1" 1 of 1000000 -1+'),
                          ("Home", '0 0 "folder 1000000" 1 of 1000000 -1+'), ("Left", '0 0 "folder 1000000" 1 of 999001 -1+'),
                          ("Right", '0 0 "folder 1000000" 1 of 1000000 -1+')]:
            host.keys(key)
            told(text)
        host.click(tree, x=8, y=31)
        told('0 0 "folder 1000000" 1 of 999001 -1+')
        host.click(tree, x=100, y=8)
        told('0 3000 "folder 1000000" 1 of 999001 0+')
        host.click(tree, x=100, y=300, button=5)
        told('3 3000 "folder 1000000" 1 of 999001 0+')
        press(1)
        press(3, held="shift")
        told('3 6 "leaf 103" 3 of 999001 0+')
        press(5, held="ctrl")
        told('3 8 "leaf 105" 4 of 999001 0+')


if __name__ == "__main__":
    leak_options(__file__)
    unittest.main()
