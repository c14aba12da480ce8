"""The commands of dqtool for names, versions and words: quote, split-name, version, words.

dqtool_names_test.py DQTOOL
"""

import os
import subprocess
import sys
import tempfile
import unittest

from dqtool_runner import DQTOOL, dqtool


class NamesTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.environment = {**os.environ, "LC_ALL": "C", "XDG_CONFIG_HOME": directory.name}

    def check(self, words, status, out, err=b""):
        with self.subTest(words=[word[:80] for word in words]):
            result = dqtool(*words, env=self.environment)
            self.assertEqual(result[:2], (status, out))
            self.assertTrue(result[2].startswith(err) and (err or not result[2]), result[2][:200])

    def test_good_and_bad_input_of_each(self):
        quote = ["quote", "--platform"]
        version = ["version", "--platform"]
        for words, status, out, err in [
            (quote + ["sybase", "a", "a b", "order", "n\u00e4"], 0,
             'a\n"a b"\n"order"\n"n\u00e4"\n'.encode(), b""),
            (quote + ["sqlserver", "--version", "6.50.201", "1x"], 0, b'"1x"\n', b""),
            (quote + ["sqlserver", "--version", "08.00.0194", "1x", "a]b", ""], 0,
             b"[1x]\n[a]b]\n\n", b""),
            (quote + ["oracle", "--case-sensitive", "emp", "EMP"], 0, b'"emp"\nEMP\n', b""),
            (quote + ["db2", "--no-quoting", "emp", "--", "--"], 0, b"emp\n--\n--\n", b""),
            (quote + ["db2", "--", "--x"], 0, b'"--x"\n', b""),
            (quote + ["db2"], 0, b"", b""),
            (quote + ["none", "x"], 2, b"", b"dqtool: quote: the platform none quotes no names\n"),
            (quote + ["db3", "x"], 2, b"", b"dqtool: quote: no platform db3\n"),
            (quote, 2, b"", b"dqtool: quote: --platform needs a P\n"),
            (quote + ["db2", "--version"], 2, b"", b"dqtool: quote: --version needs a V\n"),
            (quote + ["db2", "--loud"], 2, b"", b"dqtool: quote: no option --loud\n"),
            (["quote", "x"], 2, b"", b"dqtool: quote: --platform P is needed\n"),
            (["split-name", "a.b"], 0, b"a\nb\n", b""),
            (["split-name", "a"], 1, b"", b""),
            (["split-name"], 2, b"", b"dqtool: split-name: one NAME is needed\n"),
            (version + ["oracle", "Oracle8i Release 8.1.7.0.0"], 0, b"8.170\n", b""),
            (version + ["oracle", "8.1.7", ">=", "8.1"], 0, b"true\n", b""),
            (version + ["oracle", "8.1.7", ">", "8.1"], 1, b"false\n", b""),
            (version + ["db2", "?", "==", "0"], 0, b"true\n", b""),
            (version + ["db2", "8.1", "=", "8"], 2, b"", b"dqtool: version: no operator '='\n"),
            (version + ["db2", "8.1", "<", "8x"], 2, b"", b"dqtool: version: NUMBER is a decimal"),
            (version + ["db2", "8.1", "<", "nan"], 2, b"", b"dqtool: version: NUMBER is a deci"),
            (version + ["db2"], 2, b"", b"dqtool: version: what is needed is TEXT, or"),
            (["version", "8.1"], 2, b"", b"dqtool: version: --platform P is needed first\n"),
            (["words", "m_pszof"], 0, b"OF\n", b""),
            (["words", "of"], 1, b"", b"dqtool: words: no word is named of\n"),
            (["words", "a", "b"], 2, b"", b"dqtool: words: one NAME is enough"),
        ]:
            self.check(words, status, out, err)

    def test_names_come_from_standard_input_a_line_each(self):
        result = subprocess.run([DQTOOL, "quote", "--platform", "db2"], input=b"A\na\n\nB\0\nlast",
                                capture_output=True, env=self.environment, timeout=60)
        self.assertEqual((result.returncode, result.stdout, result.stderr),
                         (0, b'A\n"a"\n\n"B\0"\n"last"\n', b""))
        directory = os.open("/", os.O_RDONLY)
        self.addCleanup(os.close, directory)
        result = subprocess.run([DQTOOL, "quote", "--platform", "db2"], stdin=directory,
                                capture_output=True, env=self.environment, timeout=60)
        self.assertEqual((result.returncode, result.stdout, result.stderr),
                         (1, b"", b"dqtool: quote: cannot read standard input\n"))

    def test_options_hold_for_one_run_and_those_the_user_keeps_for_all(self):
        quote = ["quote", "--platform", "oracle", "emp"]
        self.check(quote[:3] + ["--case-sensitive", "emp"], 0, b'"emp"\n')
        self.check(quote, 0, b"emp\n")
        self.check(["option", "get", "50270"], 0, b"0\n")
        self.check(["option", "set", "50270", "1"], 0, b"")
        self.check(quote, 0, b'"emp"\n')
        kept = os.path.join(self.environment["XDG_CONFIG_HOME"], "velmora", "registry", "hkcu.reg")
        for name in os.listdir(os.path.dirname(kept)):
            if name.startswith("hkcu"):
                os.remove(os.path.join(os.path.dirname(kept), name))
        os.mkdir(kept)
        for words in [["list"], ["get", "50270"]]:
            status, out, err = dqtool("option", *words, env=self.environment)
            self.assertEqual((status, out), (1, b""), words)
            self.assertEqual(err.count(b"Settings could not be read"), 1, err)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
