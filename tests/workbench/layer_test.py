"""The window layer, driven as a person does, on windows of each kind."""

import os
import subprocess
import sys
import time
import unittest

from desktop import Desktop, leak_options

TESTBED, CONFORMANCE = sys.argv.pop(1), sys.argv.pop(1)
MENU = ["Controls", "Stretch", "Sheet", "Q & A"]
OK, CANCEL = 1, 2


class LayerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.__exit__)

    def start(self, desktop=None, **variables):
        host = self.enterContext((desktop or self.desktop).start(TESTBED, **variables))
        host.frame = host.wait_for(caption="Testbed")
        return host

    def open(self, host, caption):
        """The dialog, and a function that finds its controls by their ids."""
        host.keys("alt+o", *["Down"] * MENU.index(caption), "Return")
        dialog = host.wait_for(caption=caption)
        return dialog, lambda number: host.find(under=dialog, id=number)

    def leave(self, host, status=0):
        host.wait(lambda: host.active == host.frame["window"] and len(host.all(parent=0)) == 1, "a dialog is left")
        host.close(host.frame)
        self.assertEqual(host.end(), (status, ""))

    def test_conformance(self):
        done = subprocess.run([CONFORMANCE], env=self.desktop.environment(), capture_output=True,
                              text=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)

    def test_controls(self):
        host = self.start()
        dialog, control = self.open(host, "Controls")
        # Keys to type in a control that is clicked, and what the library's then holds.
        for number, keys, value in [
                (11, ["a", "b", "Left", "X", "End", "c", "d", "e", "f", "g", "h"], "aXbcdefg"),
                (11, ["Home", "shift+Right", "shift+Right", "Delete", "z"], "zbcdefg"),
                (11, ["ctrl+a", "ctrl+c", "End", "BackSpace", "ctrl+a", "ctrl+v"], "zbcdefg"),
                (12, ["ctrl+a", "1", "x", "2"], "12"),
                (14, ["s", "e"], ""),
                (15, ["ctrl+End", "Return", "t"], "fürst\r\nsecond\r\nt"),
                (15, ["ctrl+Home", "Right", "Delete", "o", "Down", "BackSpace"], "forst\r\nscond\r\nt"),
                (16, [], "1"), (16, ["space"], "1"), (17, [], "1"), (17, [], "2"), (17, [], "0"),
                (18, [], "1"), (19, [], "1"), (19, ["Up"], "0"),
                (24, ["a", "b"], "ab"), (24, ["Down"], "Red"), (24, ["Down", "End", "z"], "Greenz"),
                (25, ["Return"], ""), (25, ["Escape", "Down", "Down"], "V"), (25, ["Escape", "i"], "I")]:
            host.click(control(number), x=8, y=8)
            host.keys(*keys)
            host.wait_value(control(number), value=value)
        self.assertNotIn("text", control(14))
        host.wait_value(control(18), value="1")
        # Rows by the mouse, the wheel and keys.
        for number, row, x, keys, value in [
                (21, 1, 30, [], "Green"), (21, 0, 30, ["Down", "Down"], "Blue"), (21, 0, 30, ["g", "g"], "Gold"),
                (22, 1, 30, [], "Green"), (22, 3, 30, [], "Green\nGold"), (22, 1, 30, ["Up", "space"], "Red\nGold"),
                (23, 0, 5, [], "Red"), (23, 2, 5, [], "Red"), (23, 1, 30, ["space"], "Red\nGreen"), (23, 0, 5, [], "Green")]:
            height = control(number)["row_height"]
            host.click(control(number), x=x, y=row * height + height // 2)
            host.keys(*keys)
            host.wait_value(control(number), value=value)
        # A list that is dropped down: chosen from by the mouse, and left.
        host.click(control(25))
        left, top, _, _ = host.wait_key(control(25), "list")
        host.xdotool("mousemove", left + 20, top + 8, "click", 1)
        host.wait_value(control(25), value="T", list=None)
        host.click(control(24), x=90)
        host.wait_key(control(24), "list")
        host.click(dialog, x=300, y=250)
        host.wait_value(control(24), list=None, value="Greenz")
        # The spin's upper arrow, held down, and its lower one.
        host.xdotool("mousemove", *host.place(control(13), y=4), "mousedown", 1)
        host.wait(lambda: int(control(12)["value"]) >= 15, "the spin doesn't step again")
        host.xdotool("mouseup", 1)
        number = int(control(12)["value"])
        host.click(control(13), y=14)
        host.wait_value(control(12), value=str(number - 1))
        # A hundred thousand rows come in at once.
        host.keys("alt+a")
        host.wait_value(control(21), rows=100004)
        host.click(control(21))
        host.keys("End")
        host.wait_value(control(21), first=100004 - 90 // control(21)["row_height"])
        # What is disabled takes nothing.
        host.keys("alt+d")
        host.wait_value(control(25), enabled=False)
        for number in (16, 18, 25):
            host.click(control(number))
        host.keys("alt+c")
        host.keys("alt+d")
        host.wait_value(control(25), enabled=True, value="T")
        self.assertEqual([control(number)["value"] for number in (16, 18)], ["1", "1"])
        host.click(control(OK))
        self.assertEqual(host.wait_line("left")["number"], OK)
        host.wait_gone(dialog)
        self.leave(host)

    def test_focus_goes_by_keys(self):
        host = self.start()
        _, control = self.open(host, "Controls")
        order = [11, 12, 14, 15, 16, 17, 18, 21, 22, 23, 24, 25, 26, 27, 28, 1, 2, 11]
        for number in order:
            host.wait_focus(control(number))
            host.keys("Tab")
        for keys, number in [("shift+Tab", 11), ("shift+Tab", 2), ("alt+w", 14), ("alt+n", 12)]:
            host.keys(keys)
            host.wait_focus(control(number))
        host.keys("Escape")
        self.assertEqual(host.wait_line("left")["number"], CANCEL)
        self.leave(host)

    def test_sheet(self):
        host = self.start()
        dialog, control = self.open(host, "Sheet")

        def click_tab(index):
            x, y, width, height = control(0x3020)["tabs"][index]
            host.click(control(0x3020), x=x + width // 2, y=y + height // 2)
        host.click(control(41))
        host.type("wrong")
        host.wait_value(control(41), value="wrong")
        click_tab(1)
        host.wait_value(control(0x3020), value="First")
        host.click(control(41))
        host.keys("BackSpace")
        click_tab(1)
        host.wait_for(under=dialog, id=42)
        host.keys("alt+m")
        host.wait_value(control(42), value="1")
        host.click(control(OK))
        self.assertEqual(host.wait_line("left")["number"], OK)
        self.leave(host)

    def test_sizes_and_places(self):
        for scale in ("1", "1.5"):
            host = self.start(GDK_DPI_SCALE=scale)
            dialog, control = self.open(host, "Stretch")
            number = dialog["window"]
            factor = float(scale)
            edit, button = control(31)["rect"], control(OK)["rect"]
            self.assertEqual(edit, [round(length * factor) for length in (8, 8, 184, 50)])
            host.drag(host.corner(dialog), (90, 60))
            host.wait(lambda: control(31)["rect"][2:] == [edit[2] + 90, edit[3] + 60] and control(OK)["rect"][:2] == [
                button[0] + 90, button[1] + 60] or None, "the controls haven't stretched")
            # Not below the design's size, and where it was dragged to.
            host.drag(host.corner(dialog), (-300, -300))
            host.wait_value(control(31), rect=edit)
            host.wait_value(control(OK), rect=button)
            left, top = host.windows[number]["origin"]
            host.drag((left + 60, top - 10), (-50, 40))
            host.wait_value(dialog, origin=[left - 50, top + 40])
            # The frame's own button closes it.
            host.close(dialog)
            self.assertEqual(host.wait_line("left")["number"], CANCEL)
            self.leave(host)

    def test_owner_and_other_programs(self):
        host = self.start()
        dialog, control = self.open(host, "Controls")
        # The window that the dialog belongs to takes nothing meanwhile, and isn't closed.
        host.click(host.frame, x=20, y=300)
        host.click(host.frame, x=20, y=-30)
        host.click(control(11))
        host.type("me")
        host.wait_value(control(11), value="me")
        self.assertEqual(host.lines, [])
        other = self.start()
        other.drag((other.place(other.frame, 300, -30)), (400, 400))
        host.wait(lambda: host.active == 0 and host.focus == 0, "the other program isn't active")
        other.wait(lambda: other.focus, "the other program has no focus")
        host.click(dialog, x=200, y=240)
        host.wait_focus(control(11))
        other.wait(lambda: other.active == 0 and other.focus == 0, "both are active")
        host.keys("Escape")
        host.wait_gone(dialog)
        self.leave(host)

    def test_question(self):
        for keys, answer in [(["Return"], 7), (["alt+y"], 6), (["Escape", "Left", "Tab", "space"], 6)]:
            host = self.start()
            dialog, _ = self.open(host, "Q & A")
            host.keys(*keys)
            self.assertEqual(host.wait_line("left")["number"], answer)
            self.leave(host)

    def test_handlers_come_before_the_control(self):
        host = self.start()
        _, control = self.open(host, "Stretch")
        host.click(control(31), x=8, y=8)
        for keys, value in [(["ctrl+Home", "BackSpace", "Delete", "a"], "> a"), (["Left", "b"], "> ba"),
                            (["Return", "udiaeresis", "Delete"], "> b\r\nü"),
                            (["ctrl+a", "ctrl+c", "ctrl+End", "ctrl+v", "BackSpace"], "> b\r\nü> b\r\n")]:
            host.keys(*keys)
            host.wait_value(control(31), value=value)
        host.click(control(OK))
        self.leave(host)

    def test_window_without_control(self):
        host = self.start()
        canvas = host.find(id=0xE900)

        def told(*messages):
            host.wait(lambda: [line["number"] for line in host.lines if "number" in line] == list(messages) or None,
                      f"not {messages} but {host.lines}")
            host.lines.clear()
        host.click(canvas, x=100, y=100)
        told(0x201, 0x202)
        for button, aside in ((5, ""), (6, "aside")):
            host.click(canvas, x=100, y=100, button=button)
            self.assertEqual(host.wait_line("canvas")["text"], aside)
            told(0x20A)
        host.click(canvas, x=150, y=180, times=2)
        told(0x201, 0x202, 0x203, 0x202)
        host.keys("a")
        told(0x100, 0x102)
        host.click(canvas, x=canvas["rect"][2] - 5, y=300)
        host.wait(lambda: host.lines and host.lines[0]["number"] == 0x115, "the scroll bar is dead")
        self.assertGreater(int(host.lines[0]["text"]), 2 ** 20)
        time.sleep(0.2)
        host.lines.clear()
        # Of windows that cover each other the topmost is hit, and a press brings one there.
        for x, card in ((375, 51), (425, 52), (375, 52)):
            host.click(canvas, x=x, y=30)
            told(card)
        # A menu of its own: the second item by keys, the first by the mouse.
        host.drop_menu(lambda: host.click(canvas, x=100, y=100, button=3))
        told(0x204, 0x205)
        host.keys("Down", "Down", "Return")
        told(32781)
        host.drop_menu(lambda: host.click(canvas, x=100, y=160, button=3))
        told(0x204, 0x205)
        x, y = host.place(canvas, 100, 160)
        host.xdotool("mousemove", x + 30, y + 15, "click", 1)
        told(32780)
        self.leave(host)

    def test_drag_and_drop(self):
        host, other = self.start(), self.start()
        other.drag(other.place(other.frame, 300, -30), (500, 400))
        other.wait(lambda: other.windows[other.frame["window"]]["origin"][0] > 500, "the frame hasn't moved")
        shelf, copy, move = host.find(id=53), 1, 2

        def drag(to, target, told, effect, **how):
            """What the target is told last, and the effect that the source gets."""
            start, end = host.place(shelf), to.place(target)
            host.drag(start, [till - at for at, till in zip(start, end)], **how)
            self.assertEqual(host.wait_line("dragged")["number"], effect)
            self.assertEqual([line["text"] for line in to.lines if line["event"] == "dropped"], told)
            host.lines.clear()
            to.lines.clear()
        everything = ["\0private|fürst\r\nline|/a b|/c|"]
        drag(host, host.find(id=54), everything, move)
        host.xdotool("keydown", "ctrl")
        drag(host, host.find(id=54), everything, copy)
        host.xdotool("keyup", "ctrl")
        for target in (host.find(id=54), other.find(id=54)):
            drag(host if target is host.find(id=54) else other, target, [], 0, meanwhile=lambda: host.keys("Escape"))
        drag(host, host.find(id=51), [], 0)
        drag(other, other.find(id=54), everything, move)
        # An edit takes text by itself; the window around the dialog takes nothing meanwhile.
        other.click(other.frame, x=100, y=300)
        _, control = self.open(other, "Controls")
        drag(other, control(15), [], copy)
        other.wait_value(control(15), value="fürst\r\nsecondfürst\r\nline")
        drag(other, other.find(id=53), [], 0)
        # Out of an edit, with what the toolkit does by itself.
        other.click(control(11))
        other.keys("alt+l", "w", "o", "ctrl+a")
        start, end = other.place(control(11), 12, 8), host.place(host.find(id=54))

        def go_on():
            """The toolkit's drag begins behind the first steps, and must have its answer before the drop."""
            for by in (1, 2, 3):
                time.sleep(0.2)
                other.xdotool("mousemove", end[0] + by, end[1])
            time.sleep(0.2)
        other.drag(start, [till - at for at, till in zip(start, end)], meanwhile=go_on)
        self.assertEqual(host.wait_line("dropped")["text"], "none|wo|")
        host.lines.clear()
        # The window that drags ends meanwhile.
        drag(host, host.find(id=54), everything, move, button=3, meanwhile=lambda: host.wait_gone(shelf))
        other.click(control(CANCEL))
        self.leave(other)
        host.click(host.frame, x=100, y=300)
        self.leave(host)

    def test_handler_throws(self):
        host = self.start()
        dialog, _ = self.open(host, "Controls")
        host.keys("alt+r")
        self.assertEqual(host.wait_line("thrown")["text"], "thrown by a button")
        host.wait_gone(dialog)
        self.open(host, "Stretch")
        host.keys("Escape")
        host.wait_line("left")
        self.leave(host)

    def test_without_window_manager(self):
        with Desktop(manager=False) as desktop:
            host = self.start(desktop)
            dialog, control = self.open(host, "Controls")
            host.click(control(16))
            host.keys("alt+l", "o", "k")
            host.wait_value(control(11), value="ok")
            host.wait_value(control(16), value="1")
            host.keys("Return")
            self.assertEqual(host.wait_line("left")["number"], OK)
            host.wait_gone(dialog)
            host.process.terminate()

    def test_display_vanishes(self):
        with Desktop() as desktop:
            host = self.start(desktop)
            self.open(host, "Controls")
            desktop.server.terminate()
            self.assertEqual(host.wait_line("left")["number"], CANCEL)
            host.wait_line("lost")
            status, complaints = host.end()
            self.assertEqual((status, complaints), (3, ""))

    def test_memory_stays(self):
        def memory():
            with open(f"/proc/{host.process.pid}/status", encoding="utf-8") as lines:
                return next(int(line.split()[1]) for line in lines if line.startswith("VmRSS"))
        # A sanitizer keeps what was freed, but needn't keep much.
        options = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1"
        host = self.enterContext(self.desktop.start(TESTBED, "--grow", "1000", ASAN_OPTIONS=options))
        host.wait_line("grown", 1)
        hundredth = memory()
        host.wait_line("grown", 10)
        self.assertLess(memory() - hundredth, 3000)
        host.frame = host.wait_for(caption="Testbed")
        self.leave(host)


if __name__ == "__main__":
    leak_options(__file__)
    unittest.main()
