#!/usr/bin/env python3
"""progress.py TITLE: shows how far a build or a test run has come that it reads from standard input.

The steps of ninja ("[3/40] ...") and of ctest ("3/40 Test ...") become a bar on standard error: one
line that moves on a terminal, elsewhere a line for each tenth. Everything else is passed through.
"""

import re
import sys
import time

STEP = re.compile(r"\[(\d+)/(\d+)\]|\s*(\d+)/(\d+) Test +#\d+: .* Passed ")
# What ctest says of each test besides, and where it is.
CHATTER = re.compile(r"\s+Start +\d+: |Internal ctest changing |Test project |ninja: Entering ")
WIDTH = 40


def main():
    title = sys.argv[1]
    moves = sys.stderr.isatty()
    began = time.monotonic()
    shown = None

    def show(done, of):
        nonlocal shown
        tenths = 10 * done // of
        if not moves and tenths == shown:
            return
        shown = tenths
        filled = WIDTH * done // of
        bar = "#" * filled + "." * (WIDTH - filled)
        line = f"{title} [{bar}] {done}/{of} {time.monotonic() - began:.0f} s"
        sys.stderr.write(f"\r\x1b[K{line}" if moves else line + "\n")
        sys.stderr.flush()

    for line in sys.stdin:
        step = STEP.match(line)
        if step:
            done, of = (int(group) for group in step.groups() if group is not None)
            show(done, of)
        elif not CHATTER.match(line):
            if moves and shown is not None:
                sys.stderr.write("\n")
                shown = None
            sys.stdout.write(line)
            sys.stdout.flush()
    if moves and shown is not None:
        sys.stderr.write("\n")


main()
