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

    def wait_frame(self, host):
        """Until the person can work with the frame: the dialog that was left is gone only behind its outcome."""
        host.wait(lambda: host.active == host.frame["window"], "the frame isn't active")

    def open(self, host, number):
        """The dialog, by its button in the tool bar, and a function that finds its controls."""
        self.wait_frame(host)
        bar = host.find(id=0xE800)
        _, x, y = bar["buttons"][list(CAPTIONS).index(number)]
        host.click(bar, x=x, y=y)
        dialog = host.wait_for(caption=CAPTIONS[number])
        return dialog, lambda control: host.find(under=dialog, id=control)

    def leave(self, host):
        self.wait_frame(host)
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
        self.leave(host)

    def open_controls(self, host):
        """The window with the controls, a function that finds them, and one that waits for what is told of them."""
        host.keys("alt+v", "Return")
        window = host.wait_for(caption="Controls")

        def told(line):
            host.wait_value(host.output, value=host.output["value"] + line + "\r\n")
            host.output = host.windows[host.output["window"]]
        host.output = host.find(under=host.frame, id=0xE900)
        return window, lambda **facts: host.find(under=window, **facts), told

    def test_controls(self):
        host = self.start()
        window, find, told = self.open_controls(host)
        for number, x, keys, line in [
                (51, None, [], "10 per cent"), (53, 8, ["ctrl+shift+F5"], "hot key Ctrl+Shift+F5"),
                (54, 8, ["1", "2", "Right", "1", "5", "Right", "2", "0", "2", "4", "Tab"], "moment 12/15/2024"),
                (55, 8, [], "moment "), (55, 8, ["Tab"], None)]:
            host.click(find(id=number), x=x)
            host.keys(*keys)
            if number == 54:
                host.wait_value(find(id=54), value="12/15/2024")
                host.output = host.windows[host.output["window"]]
            elif line:
                told(line)
        # A day in the calendar; a press outside closes it.
        date = find(id=54)
        host.click(date, x=date["rect"][2] - 8)
        left, top, width, height = host.wait_key(date, "list")
        host.xdotool("mousemove", left + width // 2, top + height // 2, "click", 1)
        host.wait(lambda: find(id=54)["value"] != "12/15/2024", "no day is chosen")
        host.click(window, x=300, y=300)
        host.wait_value(date, list=None)
        host.output = host.windows[host.output["window"]]
        # The splitter's bar.
        view = find(**{"class": "View"})
        host.drag(host.place(view, x=view["rect"][2] + 2), (40, 0))
        host.wait(lambda: find(**{"class": "View"})["rect"][2] == view["rect"][2] + 40, "the splitter stays")
        # The tool bar floats, works, is docked at another edge and goes.
        host.drag(host.place(find(id=0xE800), x=4), (150, 150))
        host.wait(lambda: host.all(id=0xE800) and len(host.all(caption="Tools")) == 1, "the bar doesn't float")
        bar = host.find(caption="Tools")
        buttons = host.find(under=bar, id=0xE800)
        _, x, y = buttons["buttons"][-1]
        host.press_until(lambda: host.click(buttons, x=x, y=y),
                         lambda: host.windows[host.output["window"]] != host.output, "the bar does nothing")
        told("choice 2")
        host.close(bar)
        host.wait(lambda: not host.all(caption="Tools"), "the bar stays")
        host.click(view, x=100, y=100, button=3)
        host.keys("Down", "Return")
        told("choice 1")
        host.process.terminate()
        self.assertEqual(host.end(), (0, ""))

    def test_choosers(self):
        host = self.start()
        window, find, told = self.open_controls(host)

        def choose(key, title, path, is_done):
            """By the toolkit's window, which takes its time to become ready."""
            host.click(find(**{"class": "View"}))
            host.keys("alt+f", key)
            host.xdotool("search", "--sync", "--onlyvisible", "--name", title)
            for count in range(20):
                if count % 4 == 0:
                    host.keys("ctrl+a", "BackSpace")
                    host.type(path)
                # What it proposes for the text takes a key too.
                host.keys("Return")
                with host.changed:
                    if host.changed.wait_for(is_done, 1):
                        return
            self.fail(f"{title} stays: {host.show()}")

        def has(line):
            return lambda: host.windows[host.output["window"]]["value"].endswith(line + "\r\n")
        path = os.path.join(self.desktop.home, "script")
        choose("s", "^Save As$", path, has("save " + path + ".sql"))
        with open(path + ".sql", "w", encoding="utf-8"):
            pass
        # Refused to be replaced, and left.
        choose("s", "^Save As$", path, lambda: host.all(caption="Save As"))
        host.wait_for(caption="Save As")
        host.keys("Return")
        host.wait(lambda: not host.all(caption="Save As"), "the question stays")
        host.wait(lambda: host.keys("Escape") or host.active == window["window"], "the chooser stays")
        choose("o", "^Open$", path + ".sql", has("open " + path + ".sql"))
        # A number of copies that can't be is told, and the dialog stays.
        host.click(find(**{"class": "View"}))
        host.keys("alt+f", "p")
        printing = host.wait_for(caption="Print")
        host.click(host.find(under=printing, id=1155))
        host.keys("ctrl+a", "0", "Return")
        host.wait(lambda: len(host.all(caption="Print")) == 2 and host.active not in (0, printing["window"]), "no box")
        host.keys("Return")
        host.wait(lambda: len(host.all(caption="Print")) == 1, "the box stays")
        host.process.terminate()
        self.assertEqual(host.end(), (0, ""))

    def test_placement_comes_back(self):
        def drag_to(host, x, y):
            left, top = host.place(host.frame, 200, -35)
            host.drag((left, top), (x - left, y - top))
        with Desktop() as desktop:
            host = self.start(desktop)
            usual = host.frame["rect"]
            # Maximised and restored, by two clicks on its title.
            for corner in ((400, 10), (700, 8)):
                rect = host.windows[host.frame["window"]]["rect"]
                host.xdotool("mousemove", max(0, rect[0]) + corner[0], max(0, rect[1]) + corner[1], "click", "--repeat", 2, 1)
                host.wait(lambda: (host.windows[host.frame["window"]]["rect"] == usual) == (corner[0] == 700), "it isn't another size")
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
