"""dqtool as a shell sees it: standard output, standard error, exit status.

dqtool_test.py DQTOOL
"""

import os
import re
import sys
import tempfile
import unittest

from dqtool_runner import dqtool


class UsageTest(unittest.TestCase):
    def test_wrong_usage_is_status_2_and_says_why_on_standard_error_only(self):
        for words, complaint in [
            ([], b"dqtool: a COMMAND is needed\n"),
            (["nonsense"], b"dqtool: no command named nonsense\n"),
            (["help", "nonsense"], b"dqtool: no command named nonsense\n"),
            (["help", "run", "text"], b"dqtool: help is for one COMMAND at a time\n"),
            (["--help", "run", "text"], b"dqtool: help is for one COMMAND at a time\n"),
            (["no\x1b[2J\n\x7f"], b"dqtool: no command named no\\x1b[2J\\x0a\\x7f\n"),
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
        self.assertEqual(dqtool("run", "--keep-left", "-h"), dqtool("run", "--help"))


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
            (["61714", "1", "9"], "Please enter an integer between 1 and 9.\n"),
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


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
