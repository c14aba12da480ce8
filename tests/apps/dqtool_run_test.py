"""dqtool run: the program's lines, how its run ends, and what is left of it.

dqtool_run_test.py DQTOOL
"""

import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from dqtool_runner import DQTOOL, dqtool


def is_running(process_id):
    """Whether the process exists and is no zombie."""
    try:
        with open(f"/proc/{process_id}/stat", encoding="ascii") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


def wait_until(condition):
    """Whether the condition came true within some seconds."""
    for _ in range(1000):
        if condition():
            return True
        time.sleep(0.01)
    return False


class RunTest(unittest.TestCase):
    def setUp(self):
        self.directory = os.path.realpath(self.enterContext(tempfile.TemporaryDirectory()))

    def script(self, text):
        """A program that does what the shell script says."""
        path = os.path.join(self.directory, "program")
        with open(path, "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\n" + text)
        os.chmod(path, 0o700)
        return path

    def start(self, program, **options):
        return subprocess.Popen([DQTOOL, "run", program], stdin=subprocess.DEVNULL,
                                stderr=subprocess.PIPE, **options)

    def test_prints_the_masked_command_line_and_then_the_output(self):
        for words, expected in [
            (["echo", "-Usa -Psecret -Sserver"],
             b"echo -Usa -P****** -Sserver\n-Usa -Psecret -Sserver\n"),
            (["echo", "scott/tiger@ora1"], b"echo scott/****@ora1\nscott/tiger@ora1\n"),
            (["echo"], b"echo \n"),
            (["--", "echo", "--dir"], b"echo --dir\n--dir\n"),
            (["echo", "--keep-left"], b"echo --keep-left\n--keep-left\n"),
        ]:
            with self.subTest(words=words):
                self.assertEqual(dqtool("run", *words), (0, expected, b""))

    def test_directory_and_left_blanks(self):
        program = self.script("pwd; printf '  a\\n\\n  b\\n  c'")
        header = f"{program} \n".encode()
        elsewhere = os.path.join(self.directory, "sub")
        os.mkdir(elsewhere)
        self.assertEqual(dqtool("run", "--dir", elsewhere, program),
                         (0, header + elsewhere.encode() + b"\na\nb\n  c\n", b""))
        self.assertEqual(dqtool("run", "--keep-left", "--dir", elsewhere, program),
                         (0, header + elsewhere.encode() + b"\n  a\n  b\n  c\n", b""))

    def test_status_is_0_whatever_the_programs_own_is(self):
        for end in ["exit 3", "kill -9 $$"]:
            with self.subTest(end=end):
                program = self.script(f"echo said; echo too >&2; {end}")
                self.assertEqual(dqtool("run", program),
                                 (0, f"{program} \nsaid\ntoo\n".encode(), b""))

    def test_a_failure_is_told_with_code_and_text(self):
        missing = os.path.join(self.directory, "missing")
        plain = os.path.join(self.directory, "plain")
        with open(plain, "w", encoding="ascii"):
            pass
        failed = b"dqtool: -3: Create process failed: "
        for words, err in [
            ([missing], failed + b"No such file or directory\n"),
            ([plain], failed + b"Permission denied\n"),
            (["--dir", missing, "echo"], failed + b"No such file or directory\n"),
        ]:
            with self.subTest(words=words):
                self.assertEqual(dqtool("run", *words),
                                 (1, words[-1].encode() + b" \n", err))
        self.assertEqual(dqtool("run", ""), (1, b"", b"dqtool: -6: No program to run\n"))

    def test_lines_come_as_they_are_printed(self):
        program = self.script("echo one; echo two; sleep 60")
        process = self.start(program, stdout=subprocess.PIPE)
        try:
            self.assertEqual(process.stdout.readline(), f"{program} \n".encode())
            # "two" has come, so "one" is a line; "two" itself waits for what follows.
            self.assertEqual(process.stdout.readline(), b"one\n")
        finally:
            process.terminate()
            process.communicate()

    def test_bytes_from_80h_on_and_long_lines_arrive_whole(self):
        data = os.path.join(self.directory, "data")
        lines = [bytes(range(0x80, 0x100)), b"x" * 1_000_000, "Größe €".encode(), b"end"]
        with open(data, "wb") as file:
            file.write(b"\n".join(lines) + b"\n")
        status, out, err = dqtool("run", "cat", data)
        self.assertEqual((status, err), (0, b""))
        self.assertEqual(out.splitlines()[1:], lines)

    def test_a_request_to_stop_ends_the_program_with_its_children(self):
        ids = os.path.join(self.directory, "ids")
        program = self.script(f"sleep 300 & echo $! $$ >{ids}.new; mv {ids}.new {ids}\n"
                              "echo begun; echo more; wait")
        for number in [signal.SIGINT, signal.SIGQUIT, signal.SIGTERM, signal.SIGHUP]:
            with self.subTest(signal=number):
                process = self.start(program, stdout=subprocess.PIPE)
                self.assertTrue(wait_until(lambda: os.path.exists(ids)))
                with open(ids, encoding="ascii") as file:
                    children = file.read().split()
                os.remove(ids)
                process.send_signal(number)
                _, err = process.communicate(timeout=60)
                self.assertEqual((process.returncode, err), (1, b"dqtool: run: stopped\n"))
                for child in children:
                    self.assertTrue(wait_until(lambda: not is_running(child)), child)

    def test_output_that_nobody_reads_ends_the_program(self):
        ids = os.path.join(self.directory, "ids")
        program = self.script(f"echo $$ >{ids}; while echo flood; do :; done; sleep 300")
        process = self.start(program, stdout=subprocess.PIPE)
        process.stdout.readline()
        process.stdout.close()
        _, err = process.communicate(timeout=60)
        self.assertEqual((process.returncode, err),
                         (1, b"dqtool: standard output: Broken pipe\n"))
        with open(ids, encoding="ascii") as file:
            child = file.read().strip()
        self.assertTrue(wait_until(lambda: not is_running(child)))

    def test_closed_standard_streams_are_no_trap(self):
        # With number 1 free, the first file that is opened would be taken for standard output.
        def status(redirection, *words):
            return subprocess.run(["sh", "-c", f'"$@" {redirection}', "sh", DQTOOL, *words],
                                  capture_output=True, timeout=60, check=False)
        closed = status(">&-", "run", "echo", "hello")
        self.assertEqual((closed.returncode, closed.stderr),
                         (1, b"dqtool: standard output: Bad file descriptor\n"))
        for redirection in ["<&-", "2>&-", "<&- 2>&-"]:
            with self.subTest(redirection=redirection):
                fine = status(redirection, "run", "echo", "hello")
                self.assertEqual((fine.returncode, fine.stdout), (0, b"echo hello\nhello\n"))
        self.assertEqual(status(">&- 2>&- <&-", "text", "44020").returncode, 1)
        full = status(">/dev/full", "text", "44020")
        self.assertEqual((full.returncode, full.stderr),
                         (1, b"dqtool: standard output: No space left on device\n"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
