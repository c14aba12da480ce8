"""The workbench: its dialogs, filled and left as a person does, and how it starts and ends."""

import os
import subprocess
import sys
import unittest

from desktop import Desktop, leak_options

WORKBENCH, DQTOOL = sys.argv.pop(1), sys.argv.pop(1)
CAPTIONS = {2712: "Object Type Information", 44510: "Options", 44530: "Date/Time Format Builder"}
OK, CANCEL = 1, 2


class WorkbenchTest(unittest.TestCase):
    maxDiff = None
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.__exit__)

    def start(self, desktop=None, **variables):
        host = self.enterContext((desktop or self.desktop).start(WORKBENCH, **variables))
        host.frame = host.wait_for(caption="Workbench")
        return host

    def open(self, host, number):
        """The dialog, by its button in the tool bar, and a function that finds its controls."""
        bar = host.find(id=0xE800)
        _, x, y = bar["buttons"][list(CAPTIONS).index(number)]
        host.click(bar, x=x, y=y)
        dialog = host.wait_for(caption=CAPTIONS[number])
        return dialog, lambda control: host.find(under=dialog, id=control)

    def leave(self, host):
        host.keys("alt+f", "Return")
        self.assertEqual(host.end(), (0, ""))

    def test_dialogs_hold_what_a_script_enters(self):
        # What a person does to each dialog, and the steps of a script that do the same.
        acts = {
            2712: ([(2754, ["Down", "Down"]), (2756, ["s", "c"]), (2757, ["n"] * 35)],
                   "2754=2\n2756=sc\n2757=" + "n" * 30 + "\npress 1\n"),
            44530: ([(44552, []), (44546, []), (44549, []), (44539, ["End", "Home"])],
                    "press 44552\n44546=1\n44549=1\n44539=1\npress 1\n"),
        }
        host = self.start()
        for count, (number, (steps, script)) in enumerate(acts.items(), 1):
            dialog, control = self.open(host, number)
            for each, keys in steps:
                host.click(control(each), x=8, y=8)
                if control(each)["class"] == "ComboBox":
                    host.keys("Escape")
                host.keys(*keys)
            held = {each["id"]: each["value"] for each in host.all(under=dialog) if each["value"]}
            host.click(control(OK))
            told = host.wait_line("outcome", count)
            self.assertEqual(told["dialog"], number)
            words = [DQTOOL, "dialog", str(number), "--script", "-"]
            answer = subprocess.run(words, input=script, capture_output=True, text=True, check=True,
                                    env=self.desktop.environment())
            self.assertEqual(told["lines"] + "\n", answer.stdout)
            if number == 2712:
                self.assertEqual(held, {2754: "Table", 2756: "sc", 2757: "n" * 30})
        self.leave(host)

    def test_options_are_kept_and_bad_ones_refused(self):
        host = self.start()

        def tabs(control, row):
            height = control(2900)["row_height"]
            host.click(control(2900), x=20, y=row * height + height // 2)
        dialog, control = self.open(host, 44510)
        edits = [each for each in host.all(under=dialog) if each["class"] == "Edit"]
        checks = [each for each in host.all(under=dialog) if each["class"] == "Button"]
        size, check = edits[0], next(each for each in checks if each["value"] == "0")
        host.click(check)
        host.wait_value(check, value="1")
        host.click(size)
        host.keys("ctrl+a", "x")
        host.wait_value(size, value="x")
        # By leaving the page, and by OK: a box tells why, and the page stays.
        for act in (lambda: tabs(control, 2), lambda: host.keys("Return")):
            act()
            box = host.wait_for(caption="workbench")
            self.assertEqual(host.find(under=box, id=0xFFFF)["text"], "Please enter an integer.")
            host.keys("Return")
            host.wait_gone(box)
            host.wait_focus(size)
            host.wait_value(control(2900), value="Editor")
        host.keys("ctrl+a", "7")
        host.wait_value(size, value="7")
        tabs(control, 2)
        host.wait_value(control(2900), value="Names and Scripts")
        host.keys("Return")
        self.assertEqual(host.wait_line("outcome")["lines"], "ok")
        dialog, control = self.open(host, 44510)
        host.wait_value(control(2900), value="Names and Scripts")
        tabs(control, 0)
        host.wait_value(control(2900), value="Editor")
        self.assertEqual((control(size["id"])["value"], control(check["id"])["value"]), ("7", "1"))
        host.keys("Escape")
        host.wait_gone(dialog)
        self.leave(host)

    def test_ways_to_leave(self):
        ways = [("ok", lambda host, dialog: host.click(host.find(under=dialog, id=OK))),
                ("cancel", lambda host, dialog: host.click(host.find(under=dialog, id=CANCEL))),
                ("cancel", lambda host, dialog: host.keys("Escape")), ("cancel", lambda host, dialog: host.close(dialog))]
        host = self.start()
        count = 0
        for number in CAPTIONS:
            for result, leave in ways:
                dialog, _ = self.open(host, number)
                # Its frame can be dragged, but for the edges.
                left, top, *size = dialog["rect"]
                host.drag(host.corner(dialog), (40, 30))
                host.drag((left + 60, top + 8), (-30, 20))
                host.wait_value(dialog, rect=[left - 30, top + 20, *size])
                leave(host, dialog)
                count += 1
                self.assertEqual(host.wait_line("outcome", count)["lines"].split("\n")[0], result)
                host.wait_gone(dialog)
                host.wait(lambda: host.active == host.frame["window"], "the frame isn't active")
        self.leave(host)

    def test_placement_comes_back(self):
        def drag_to(host, x, y):
            left, top = host.place(host.frame, 200, -35)
            host.drag((left, top), (x - left, y - top))
        with Desktop() as desktop:
            host = self.start(desktop)
            usual = host.frame["rect"]
            drag_to(host, 500, 200)
            host.wait(lambda: host.windows[host.frame["window"]]["rect"][0] > usual[0] + 100,
                      "it isn't moved")
            moved = host.windows[host.frame["window"]]["rect"]
            self.leave(host)
            host = self.start(desktop)
            self.assertEqual(host.windows[host.frame["window"]]["rect"], moved)
            # Beyond the right edge, but for a corner of it.
            drag_to(host, 1279, 500)
            host.wait(lambda: host.windows[host.frame["window"]]["rect"][0] > 900, "it isn't moved")
            moved = host.windows[host.frame["window"]]["rect"]
            # The display is gone, and what was is kept.
            self.open(host, 2712)
            desktop.server.terminate()
            status, complaints = host.end()
            self.assertEqual((status, complaints), (1, "workbench: the display is gone\n"))
            with Desktop(home=desktop.home) as again:
                host = self.start(again)
                self.assertEqual(host.windows[host.frame["window"]]["rect"], moved)
                self.leave(host)
            # Wholly off a smaller screen, it comes up where it usually does.
            with Desktop(home=desktop.home, size="800x600") as small:
                host = self.start(small)
                self.assertEqual(host.frame["rect"][:2], usual[:2])

    def test_command_line(self):
        def run(*words, **variables):
            environment = {**self.desktop.environment(), **variables}
            done = subprocess.run([WORKBENCH, *words], env=environment, capture_output=True,
                                  text=True, check=False)
            return done.returncode, done.stdout.split("\n")[0], done.stderr.split("\n")[0]
        for words, variables, answer in [
                (["--version"], {}, (0, "workbench 7.1.0", "")),
                (["--help"], {}, (0, "usage: workbench [--trace]", "")),
                (["--wrong"], {}, (2, "", "workbench: no option '--wrong'; 'workbench --help' shows those there are")),
                ([], {"DISPLAY": ""}, (1, "", "workbench: there is no display: DISPLAY isn't set")),
                ([], {"DISPLAY": ":64999"}, (1, "", "workbench: there is no display: the display :64999 can't be opened"))]:
            self.assertEqual(run(*words, **variables), answer)


if __name__ == "__main__":
    leak_options(__file__)
    os.umask(0o077)
    unittest.main()
