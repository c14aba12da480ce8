"""The date command of dqtool.

dqtool_date_test.py DQTOOL
"""

import os
import subprocess
import sys
import tempfile
import unittest

import dqtool_runner


def date(*words):
    status, out, err = dqtool_runner.dqtool("date", *words)
    return status, out.decode(), err.decode(errors="replace")


class DateTest(unittest.TestCase):
    def test_lists_have_a_row_a_line(self):
        for name, count, lines in [
            ("cells", 28, {0: "1\tmm\t%#m\tM\tSingle digit month of the year\t7",
                           8: "9\tD\t%w\t\tNumber of days in the week\t3",
                           27: "8\t:\t:\t:\tColon Time separator\t"}),
            ("formats", 23, {11: "5\t4/3/1993\tMM/DD/YYYY\t%m/%d/%Y\tMM/dd/yyyy",
                             17: "5\t03-Apr-93\tDD-MON-YY HH12:MI:SS AM\t%d-%b-%y\tdd-MMM-yy",
                             22: "26\t17:4:3\thh24:mi:ss\t%I:%M:%S %p\thh:mm:ss tt"}),
        ]:
            status, out, err = date(name)
            found = out.split("\n")[:-1]
            self.assertEqual((status, len(found), err), (0, count, ""))
            self.assertEqual({number: found[number] for number in lines}, lines)

    def test_formats_are_translated_judged_and_cut(self):
        for words, status, out in [
            (["notation", "--from", "locale", "--to", "display", "dddd, MMMM d"], 0,
             "DAY,D MONTH dd"),
            (["notation", "--from", "display", "--to", "ole", "--", "-MM"], 1, None),
            (["notation", "--from", "display", "--to", "ole", "MM/\udcff"], 1, None),
            (["valid", "hh:mm:ss"], 0, "true"),
            (["valid", "hh:mm:ss", "--notation", "display"], 1, "false"),
            (["part", "--code", "26", "MM/DD/YYYY HH12:MI:SS AM"], 0, "HH12:MI:SS AM"),
            (["part", "--code", "20005", "MM"], 0, ""),
        ]:
            found = date(*words)
            self.assertEqual(found[:2], (status, "" if out is None else out + "\n"), words)
            self.assertEqual(out is None, found[2].startswith("dqtool: date: can't be"), words)

    def test_values_are_converted_by_the_platforms_habits(self):
        us, iso = "MM/DD/YYYY HH12:MI:SS AM", "YYYY-MM-DD HH24:MI:SS"
        for platform, code, formats, values, status, out in [
            ("oracle", [], (us, iso), ["04/03/1993 05:34:00 PM", "x", "[NULL]"], 1,
             ["1993-04-03 17:34:00", "x", "[NULL]"]),
            ("db2", ["--code", "5"], (us, iso), ["04/03/1993"], 0, ["1993-04-03"]),
            ("sqlserver", [], (iso, us), ["1993-04-03 17:34:00.5"], 0,
             ["04/03/1993 05:34:00.5 PM"]),
        ]:
            with tempfile.TemporaryDirectory() as directory:
                words = ["convert", "--platform", platform, *code, "--in", formats[0], "--out",
                         formats[1]]
                env = {**os.environ, "XDG_CONFIG_HOME": directory}
                expected = (status, "".join(line + "\n" for line in out).encode(), b"")
                self.assertEqual(dqtool_runner.dqtool("date", *words, *values, env=env), expected)
                lines = subprocess.run([dqtool_runner.DQTOOL, "date", *words], env=env,
                                       input="\n".join(values).encode(), capture_output=True,
                                       timeout=60)
                self.assertEqual((lines.returncode, lines.stdout, lines.stderr), expected)

    def test_the_locales_format_is_kept_in_the_option(self):
        with tempfile.TemporaryDirectory() as directory:
            env = {**os.environ, "XDG_CONFIG_HOME": directory, "LC_ALL": "C"}
            for kept, chosen in [(None, "mm/dd/YYYY hh12:MI:SS AM"), ("DD.MM.YY", "DD.MM.YY"),
                                 ("no format", "YYYY-MM-DD HH24:MI:SS")]:
                if kept is not None:
                    dqtool_runner.dqtool("option", "set", "60000", kept, env=env)
                status, out, err = dqtool_runner.dqtool("date", "default", "--platform", "db2",
                                                        env=env)
                self.assertEqual((status, out.decode(), err), (
                    0, f"current\t{chosen}\nsaved\t{chosen}\ndefault\tYYYY-MM-DD HH24:MI:SS\n",
                    b""))
                self.assertEqual(dqtool_runner.dqtool("option", "get", "60000", env=env)[1],
                                 (kept or chosen).encode() + b"\n")

    def test_senseless_words_are_refused(self):
        for words in [[], ["x"], ["cells", "x"], ["valid"], ["valid", "a", "b"],
                      ["valid", "MM", "--notation"], ["valid", "MM", "--notation", "win"],
                      ["notation", "--from", "ole", "%m"], ["part", "MM"],
                      ["part", "--code", "99999999999", "MM"], ["part", "--code", "5x", "MM"],
                      ["default"], ["default", "--platform", "x"],
                      ["default", "--platform", "db2", "x"],
                      ["convert", "--platform", "db2", "--in", "MM"],
                      ["convert", "--in", "MM", "--out", "MM", "1"]]:
            with tempfile.TemporaryDirectory() as directory:
                env = {**os.environ, "XDG_CONFIG_HOME": directory}
                status, out, err = dqtool_runner.dqtool("date", *words, env=env)
                self.assertEqual((status, out), (2, b""), words)
                self.assertTrue(err.startswith(b"dqtool: date: "), err)
                self.assertEqual(dqtool_runner.dqtool("option", "get", "60000", env=env)[1],
                                 b"\n", words)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
