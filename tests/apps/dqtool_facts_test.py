"""The small commands of dqtool: bigint, template, log, system, guid.

dqtool_facts_test.py DQTOOL
"""

import os
import re
import sys
import tempfile
import unittest

from dqtool_runner import dqtool

ENVIRONMENT = {**os.environ, "LC_ALL": "C", "TZ": "UTC"}
STAMP = rb"\d{1,2}/\d{1,2}/\d{4} \d\d:\d\d:\d\d\.\d{3}"
GUID = "0012abcd-0234-F678-9abc-def01234567f"
UNKNOWN = "dqtool: DQTemplateEngine::Process - Variable  '%s' is not in the dictionary.\n"
MALFORMED = "dqtool: DQTemplateEngine::Process - Malformed variable encountered in input string '%s'.\n"


class FactsTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        self.log = os.path.join(self.directory, "x.log")

    def check(self, words, status, out, err=""):
        with self.subTest(words=[word[:80] for word in words]):
            result = dqtool(*words, env=ENVIRONMENT)
            self.assertEqual((result[0], result[1].decode()), (status, out))
            first = result[2].decode().partition("usage")[0]
            self.assertTrue(first.startswith(err) if status == 2 else first == err, first[:200])

    def test_good_and_bad_input_of_each(self):
        wide = "123456789012345678901234567890"
        path = os.path.join(self.directory, "t.sql")
        with open(path, "wb") as file:
            file.write(b"DROP $$a$$;\n$$a$$\n")
        zeros = os.path.join(self.directory, "zeros")
        with open(zeros, "wb") as file:
            file.write(b"a\0b")
        for words, status, out, err in [
            (["bigint", wide, "+", "1"], 0, wide[:-1] + "1\n", ""),
            (["bigint", "-5", "-", "-5"], 0, "0\n", ""),
            (["bigint", wide, "*", "-10"], 0, f"-{wide}0\n", ""),
            (["bigint", "-7", "/", "2"], 0, "-3\n", ""),
            (["bigint", "3", "%", "5"], 0, "5\n", ""),
            (["bigint", "7", "%", "-7"], 0, "-0\n", ""),
            (["bigint", "-2", "<", "1"], 0, "true\n", ""),
            (["bigint", "1", "<", "1"], 1, "false\n", ""),
            (["bigint", "-0", "=", "000"], 0, "true\n", ""),
            (["bigint", "-1234567", "int"], 0, "-234567\n", ""),
            (["bigint", "1", "/", "-0"], 1, "", "dqtool: bigint: division by zero\n"),
            (["bigint", "0", "%", "0"], 1, "", "dqtool: bigint: division by zero\n"),
            (["bigint", "1-2", "+", "1"], 1, "", "dqtool: bigint: no number: '1-2'\n"),
            (["bigint", "1", "+", "-"], 1, "", "dqtool: bigint: no number: '-'\n"),
            (["bigint", "", "int"], 1, "", "dqtool: bigint: no number: ''\n"),
            (["bigint", "1", "^", "1"], 2, "", "dqtool: bigint: what is needed is A,"),
            (["bigint", "1"], 2, "", "dqtool: bigint: what is needed is A,"),
            (["template", "--set", "a=x=y", "<$$a$$$$a$$>"], 0, "<x=yx=y>\n", ""),
            (["template", "--set", "a=B", "--file", path], 0, "DROP B;\nB\n", ""),
            (["template", "--", "--set"], 0, "--set\n", ""),
            (["template", "--set", "a=B", "$$A$$ $$a$$"], 1, "$$A$$ B\n", UNKNOWN % "$$A$$"),
            (["template", "cost $$5"], 1, "cost $$5\n", MALFORMED % "cost $$5"),
            (["template", "--set", "a$$b=B", "x"], 1, "x\n",
             "dqtool: DQTemplateEngine::SetVariable - Attempting to set malformed variable"
             " '$$a$$b$$'.\n"),
            (["template", "--file", zeros], 1, "", f"dqtool: template: no text: {zeros}\n"),
            (["template", "--file", path + "x"], 1, "",
             f"dqtool: template: cannot read {path}x: No such file or directory\n"),
            (["template", "--set", "a", "x"], 2, "", "dqtool: template: --set needs NAME=VALUE"),
            (["template"], 2, "", "dqtool: template: either a TEXT or --file is needed\n"),
            (["guid", GUID], 0, f"{GUID.upper()}\n0X0012ABCD, 0X0234, 0XF678, 0X9A, 0XBC, 0XDE,"
             f" 0XF0, 0X12, 0X34, 0X56, 0X7F\n{{{GUID.upper()}}}\n", ""),
            (["guid", "{" + GUID + "}"], 1, "", "dqtool: guid: no identifier: '{" + GUID + "}'\n"),
            (["guid", ""], 1, "", "dqtool: guid: no identifier: ''\n"),
            (["guid"], 2, "", "dqtool: guid: one TEXT is needed\n"),
            (["log", self.log], 2, "", "dqtool: log: a FILE and a TEXT are needed\n"),
            (["log", self.log, "x", "--max", "-1"], 2, "", "dqtool: log: KB is a number from 0 to"),
            (["log", "--once", self.directory, "x"], 1, "",
             f"dqtool: log: cannot write {self.directory}\n"),
            (["log", "--once", self.log, ""], 0, "", ""),
            (["log", self.log, ""], 0, "", ""),
            (["log", self.log, "two words"], 0, "", ""),
            (["system", "x"], 2, "", "dqtool: system: it takes no words\n"),
        ]:
            self.check(words, status, out, err)
        # Without its locale a program writes as in the United States.
        odd = {**ENVIRONMENT, "LC_ALL": "xx_YY.UTF-8"}
        self.assertEqual(dqtool("log", self.log, "no locale", env=odd), (0, b"", b""))
        with open(self.log, "rb") as file:
            self.assertRegex(file.read(),
                             rb"\A" + STAMP + rb"\r\n\r\n" + STAMP + rb"  two words\r\n" + STAMP +
                             rb"  no locale\r\n\Z")

    def test_a_log_grows_beyond_its_maximum_and_one_written_at_once_starts_over(self):
        with open(self.log, "wb") as file:
            file.write(b"-" * 1024)
        status, _, err = dqtool("log", "--max", "1", self.log, "text", env=ENVIRONMENT)
        self.assertEqual(status, 0)
        self.assertIn(b"Log file length has exceeded the maximum limit", err)
        self.assertGreater(os.path.getsize(self.log), 1024)
        self.check(["log", "--once", "--max", "1", self.log, "text"], 0, "")
        with open(self.log, "rb") as file:
            self.assertRegex(file.read(), rb"\A" + STAMP + rb"\r\ntext\r\n\Z")
        status, _, err = dqtool("log", self.directory, "x", env=ENVIRONMENT)
        self.assertEqual(status, 1)
        self.assertIn(b"Unable to open Log file for writing", err)
        if os.path.exists("/dev/full"):
            self.check(["log", "/dev/full", "x"], 1, "",
                       "dqtool: log: cannot write /dev/full: No space left on device\n")

    def test_system_is_a_name_and_a_value_a_line(self):
        home = {**ENVIRONMENT, "XDG_CONFIG_HOME": self.directory}
        status, out, err = dqtool("system", env=home)
        self.assertEqual((status, err), (0, b""))
        facts = dict(line.split(b"\t") for line in out.splitlines())
        self.assertEqual(len(facts), 22)
        self.assertEqual(facts[b"SpecialFolderPath"], self.directory.encode())
        self.assertEqual(facts[b"ComputerName"][:2], b"\\\\")
        self.assertRegex(facts[b"CurrentDateTime"], rb"\A" + STAMP + rb"\Z")
        self.assertEqual(facts[b"MilliSecPos"], b"-1")
        self.assertEqual((facts[b"IsWindows95"], facts[b"IsWindowsNT"]), (b"false", b"true"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
