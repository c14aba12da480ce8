"""dqtool as a shell sees it: standard output, standard error, exit status.

dqtool_test.py DQTOOL
"""

import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest

DQTOOL = os.path.realpath(sys.argv[1])


def dqtool(*words, **options):
    """(exit status, standard output, standard error) as bytes, for lines are 8-bit."""
    result = subprocess.run([DQTOOL, *words], stdin=subprocess.DEVNULL, capture_output=True,
                            timeout=60, **options)
    return result.returncode, result.stdout, result.stderr


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


class UsageTest(unittest.TestCase):
    def test_wrong_usage_is_status_2_and_says_why_on_standard_error_only(self):
        for words, complaint in [
            ([], b"dqtool: a COMMAND is needed\n"),
            (["nonsense"], b"dqtool: no command named nonsense\n"),
            (["help", "nonsense"], b"dqtool: no command named nonsense\n"),
            (["run"], b"dqtool: run: a PROGRAM is needed\n"),
            (["run", "--dir"], b"dqtool: run: --dir needs a DIR\n"),
            (["run", "--loud", "echo"], b"dqtool: run: no option --loud\n"),
            (["run", "echo", "two", "words"], b"dqtool: run: ARGUMENTS is one text"),
            (["text"], b"dqtool: text: an ID is needed\n"),
            (["text", "12x"], b"dqtool: text: ID is a number, not '12x'\n"),
            (["text", "-1"], b"dqtool: text: ID is a number, not '-1'\n"),
            (["text", "44020", "more"], b"dqtool: text: 1 ARG more than the string has places\n"),
        ]:
            with self.subTest(words=words):
                status, out, err = dqtool(*words)
                self.assertEqual((status, out), (2, b""))
                self.assertTrue(err.startswith(complaint), err)
                for line in err.splitlines():
                    self.assertTrue(line.startswith(b"dqtool: "), line)

    def test_help_lists_the_commands_and_each_command_has_its_own(self):
        status, listing, err = dqtool("--help")
        self.assertEqual((status, err), (0, b""))
        self.assertEqual(dqtool("help"), (0, listing, b""))
        commands = re.findall(rb"^  (\w+) ", listing, re.MULTILINE)
        self.assertEqual(commands, sorted(commands))
        self.assertLessEqual({b"run", b"text"}, set(commands))
        for command in commands:
            status, out, err = dqtool(command.decode(), "--help")
            self.assertEqual((status, err), (0, b""))
            self.assertTrue(out.startswith(b"usage: dqtool " + command), out)
            self.assertEqual(dqtool("help", command.decode()), (0, out, b""))


class TextTest(unittest.TestCase):
    def test_prints_a_string_with_its_places_filled_in_turn(self):
        for words, expected in [
            (["44020"], "This Feature is Under Construction.\n"),
            (["44030", "ora1"], "Start Task: On ora1\n"),
            (["44030"], "Start Task: On %s\n"),
            (["44030", ""], "Start Task: On \n"),
            (["44030", "%d%s"], "Start Task: On %d%s\n"),
            (["23550", "not a number"], "WNetGetLastError failed with error not a number.\n"),
            (["23528", "net", "5"], "net failed with error code5.\r\n%s\n"),
            (["44088", "a", "b", "7"], "Error: a\nFile: b,  Line 7\n"),
        ]:
            with self.subTest(words=words):
                self.assertEqual(dqtool("text", *words), (0, expected.encode(), b""))

    def test_unknown_id_is_no(self):
        for number in ["0", "1", "4294967295", "4294967296", "99999999999999999999"]:
            with self.subTest(number=number):
                self.assertEqual(dqtool("text", number),
                                 (1, b"", f"dqtool: no string with id {number}\n".encode()))


class OptionTest(unittest.TestCase):
    def test_a_value_that_is_set_is_there_in_the_next_process(self):
        with tempfile.TemporaryDirectory() as config:
            environment = {**os.environ, "XDG_CONFIG_HOME": config}
            for words, status, out in [
                (["get", "50144"], 0, b"1400\n"),
                (["set", "50144", "12"], 0, b""),
                (["get", "50144"], 0, b"12\n"),
                (["set", "50144", "x"], 1, b""),
                (["set", "50144", "2147483648"], 1, b""),
                (["set", "1", "12"], 1, b""),
                (["get", "99999999999"], 1, b""),
                (["set", "50186", "0aF"], 1, b""),
                (["set", "50186", "0aFf"], 0, b""),
                (["get", "50186"], 0, b"0aff\n"),
                (["get", "x"], 2, b""),
                (["--platform", "acme", "list"], 2, b""),
                (["--platform", "oracle", "get", "50390"], 0, b"/\n"),
                (["set", "50255", "a\tb\nc"], 0, b""),
                (["get", "50255"], 0, b"a\tb\nc\n"),
            ]:
                with self.subTest(words=words):
                    result = dqtool("option", *words, env=environment)
                    self.assertEqual(result[:2], (status, out))
                    self.assertEqual(result[2].startswith(b"dqtool: "), status != 0)
            listing = dqtool("option", "list", env=environment)[1].splitlines()
            self.assertIn(b"50255\tstring\toutput_log_file\ta\\x09b\\x0ac", listing)
            self.assertIn(b"52500\tbool\tsyntax_coloring\t1", listing)


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
        for number in [signal.SIGINT, signal.SIGTERM]:
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
