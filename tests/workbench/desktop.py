"""A display in memory with a window manager, and a host with windows on it, driven as a person does.

    with Desktop() as desktop, desktop.start("build/check/bin/workbench") as host:
        host.keys("alt+d", "Down", "Return")
        dialog = host.wait_for(caption="Options")
        host.click(host.find(under=dialog, id=2))
        host.wait_gone(dialog)

Each wait is for a condition, and fails after a minute with what is on the display.
"""

import json
import os
import shutil
import subprocess
import tempfile
import threading

LONGEST_WAIT = 60


def leak_options(beside):
    """Has LeakSanitizer leave out what is the toolkit's own."""
    path = os.path.join(os.path.dirname(os.path.abspath(beside)), "leaks.supp")
    os.environ["LSAN_OPTIONS"] = f"suppressions={path}:print_suppressions=0"


class Desktop:
    """The display, and a home directory, of its own or another one's. With `manager` false there is no
    window manager on it."""

    def __init__(self, manager=True, size="1280x1024", home=None):
        self.own_home = None if home else tempfile.mkdtemp(prefix="workbench-")
        self.home = home or self.own_home
        self.processes, self.hosts = [], []
        ready, told = os.pipe()
        self.server = self.run(["Xvfb", "-displayfd", str(told), "-screen", "0", size + "x24",
                                "-nolisten", "tcp"], pass_fds=[told])
        os.close(told)
        with os.fdopen(ready) as numbers:
            self.display = ":" + numbers.readline().strip()
        if manager:
            ready = os.path.join(self.home, "ready" + self.display)
            os.mkfifo(ready)
            self.run(["openbox", "--startup", f"sh -c 'echo > {ready}'"])
            with open(ready, encoding="utf-8") as line:
                line.readline()
            os.unlink(ready)

    def environment(self):
        return {**os.environ, "DISPLAY": getattr(self, "display", ""), "HOME": self.home,
                "XDG_CONFIG_HOME": self.home, "XDG_RUNTIME_DIR": self.home, "NO_AT_BRIDGE": "1",
                "GSETTINGS_BACKEND": "memory", "LANG": "C.UTF-8"}

    def run(self, words, **options):
        process = subprocess.Popen(words, env=self.environment(), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    def use_keyboard(self, layout):
        """One with the keys for what is typed: `xdotool` gives others keys for a moment, in which a busy host
        may not ask for their meaning."""
        subprocess.run(["setxkbmap", layout], env=self.environment(), check=True)

    def start(self, program, *words, **variables):
        self.hosts.append(Host(self, program, words, variables))
        return self.hosts[-1]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        """Ends all that is left: hosts first, which may write into the home directory."""
        for host in self.hosts:
            host.__exit__()
        for process in reversed(self.processes):
            process.terminate()
            process.wait()
        if self.own_home:
            shutil.rmtree(self.own_home)


class Host:
    """A program that traces its windows, started with `--trace`."""

    def __init__(self, desktop, program, words, variables):
        self.desktop = desktop
        self.windows = {}
        self.lines = []
        self.batch = []
        self.focus = self.active = 0
        self.changed = threading.Condition()
        self.process = subprocess.Popen(
            [program, "--trace", *words], env={**desktop.environment(), **variables},
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.complaints = ""
        self.readers = [threading.Thread(target=self.read), threading.Thread(target=self.read_errors)]
        for reader in self.readers:
            reader.start()

    def read(self):
        for text in self.process.stdout:
            with self.changed:
                self.take(json.loads(text))
                self.changed.notify_all()
        with self.changed:
            self.lines.append({"event": "end"})
            self.changed.notify_all()

    def read_errors(self):
        self.complaints = self.process.stderr.read()

    def take(self, line):
        event = line["event"]
        if event in ("window", "gone"):
            self.batch.append(line)
        elif event == "settled":
            for each in self.batch:
                self.windows.pop(each["window"], None)
                if each["event"] == "window":
                    self.windows[each["window"]] = each
            self.batch = []
            self.focus, self.active = line["focus"], line["active"]
        else:
            self.lines.append(line)

    # What there is.

    def top(self, window):
        while window["parent"]:
            window = self.windows[window["parent"]]
        return window

    def is_seen(self, window):
        while window is not None and window["shown"]:
            if not window["parent"]:
                return True
            window = self.windows.get(window["parent"])
        return False

    def all(self, under=None, caption=None, **facts):
        found = []
        for window in self.windows.values():
            if not self.is_seen(window) or any(window.get(name) != fact
                                               for name, fact in facts.items()):
                continue
            if caption is not None and (window["parent"] or window["text"] != caption):
                continue
            if under is not None and self.top(window)["window"] != under["window"]:
                continue
            found.append(window)
        return found

    def find(self, **facts):
        """The one window that there is, or soon will be."""
        return self.wait(lambda: [found] if len(found := self.all(**facts)) == 1 else None,
                         f"no window, or several, are {facts}")[0][0]

    def wait(self, condition, what):
        with self.changed:
            value = self.changed.wait_for(lambda: condition() or self.process.poll() is not None,
                                          LONGEST_WAIT) and condition()
        assert value, f"{what}: {self.show()}\n{self.complaints}"
        return value

    def wait_for(self, **facts):
        """A top-level window, by its caption, when the person can work with it."""
        def found():
            windows = self.all(**facts)
            return windows if "caption" not in facts or windows and (
                self.active == windows[0]["window"]) else []
        return self.wait(found, f"no window is {facts}")[0]

    def wait_gone(self, window):
        self.wait(lambda: window["window"] not in self.windows, f"{window['text']} is still there")

    def wait_line(self, event, count=1):
        """The last of so many lines of an event."""
        def lines():
            return [line for line in self.lines if line["event"] == event][count - 1:count]
        return self.wait(lines, f"no {event}")[0]

    def wait_value(self, window, **facts):
        number = window["window"]
        self.wait(lambda: all(self.windows[number].get(name) == fact
                              for name, fact in facts.items()),
                  f"{window['class']} {window['id']} isn't {facts}")
        return self.windows[number]

    def wait_key(self, window, name):
        """What a window's line has under a name, once it has it."""
        number = window["window"]
        self.wait(lambda: name in self.windows[number], f"{window['id']} has no {name}")
        return self.windows[number][name]

    def wait_focus(self, window):
        self.wait(lambda: self.focus == window["window"], f"no focus in {window['id']}")

    def show(self):
        return "\n".join(json.dumps(window) for window in self.windows.values())

    # What a person does.

    def place(self, window, x=None, y=None):
        """A point of the display: the window's middle, or so far from its corner."""
        window = self.windows[window["window"]]
        left, top, width, height = window["rect"]
        x = width // 2 if x is None else x
        y = height // 2 if y is None else y
        while window["parent"]:
            x, y = x + left, y + top
            window = self.windows[window["parent"]]
            left, top = (sum(each) for each in zip(window["rect"], window.get("inset", (0, 0))))
        return window["origin"][0] + x, window["origin"][1] + y

    def xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.desktop.environment(), check=True,
                       stdout=subprocess.DEVNULL)

    def click(self, window, x=None, y=None, button=1, times=1):
        self.xdotool("mousemove", *self.place(window, x, y), "click", "--repeat", times, button)

    def press_until(self, press, done, what):
        """Presses again what the window manager has kept to itself, since it still moved a window."""
        for _ in range(5):
            press()
            with self.changed:
                if self.changed.wait_for(lambda: done() or self.process.poll() is not None, LONGEST_WAIT / 6):
                    return
        raise AssertionError(f"{what}: {self.show()}\n{self.complaints}")

    def drop_menu(self, press):
        """Has the person press for a menu by itself, and waits until it takes keys."""
        def dropped():
            return sum(line["event"] == "dropped" for line in self.lines)
        before = dropped()
        self.press_until(press, lambda: dropped() > before, "no menu")

    def drag(self, start, way, button=1, meanwhile=lambda: None):
        """From a point of the display by so many pixels to the right and down; `meanwhile` there, before the
        button is let go."""
        self.xdotool("mousemove", *start, "mousedown", button)
        for step in range(1, 5):
            self.xdotool("mousemove", *(int(at + by * step / 4) for at, by in zip(start, way)))
        meanwhile()
        self.xdotool("mouseup", button)

    def corner(self, window):
        """Within the frame, at the right and the bottom."""
        left, top, width, height = self.windows[window["window"]]["rect"]
        return left + width - 2, top + height - 2

    def close(self, window):
        """By the button of its frame, until a window has gone or come."""
        def seen():
            return {each["window"] for each in self.all()}

        def press():
            left, top, width, _ = self.windows.get(window["window"], window)["rect"]
            self.xdotool("mousemove", left + width - 10, top + 10, "click", 1)
        with self.changed:
            before = seen()
        self.press_until(press, lambda: seen() != before, "not closed")

    def keys(self, *names):
        if names:
            self.xdotool("key", *names)

    def type(self, text):
        self.xdotool("type", text)

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", path], env=self.desktop.environment(),
                       check=True)

    # How it ends.

    def end(self):
        """The exit status, and what it has complained of."""
        self.process.wait(LONGEST_WAIT)
        for reader in self.readers:
            reader.join()
        return self.process.returncode, self.complaints

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.end()
        self.process.stdout.close()
        self.process.stderr.close()
