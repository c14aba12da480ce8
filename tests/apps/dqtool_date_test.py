"""The date command of dqtool.

dqtool_date_test.py DQTOOL
"""

import sys
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
            (["notation", "--from", "ole", "--to", "locale", "%d.%m.%Y"], 0, "dd.MM.yyyy"),
            (["notation", "--from", "display", "--to", "ole", "MM/\udcff"], 1, None),
            (["valid", "MM/dd/yyyy hh:mm:ss tt"], 0, "true"),
            (["valid", "hh:mm:ss", "--notation", "display"], 1, "false"),
            (["valid", ""], 1, "false"),
            (["part", "--code", "26", "MM/DD/YYYY HH12:MI:SS AM"], 0, "HH12:MI:SS AM"),
            (["part", "--code", "7", "MM"], 0, ""),
        ]:
            found = date(*words)
            self.assertEqual(found[:2], (status, "" if out is None else out + "\n"), words)
            self.assertEqual(out is None, found[2].startswith("dqtool: date: can't be"), words)

    def test_senseless_words_are_refused(self):
        for words in [[], ["x"], ["cells", "x"], ["valid"], ["valid", "a", "b"],
                      ["valid", "MM", "--notation"], ["valid", "MM", "--notation", "win"],
                      ["notation", "--from", "ole", "%m"], ["part", "MM"],
                      ["part", "--code", "99999999999", "MM"], ["part", "--code", "-1", "MM"]]:
            status, out, err = date(*words)
            self.assertEqual((status, out), (2, ""), words)
            self.assertTrue(err.startswith("dqtool: date: "), err)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
