# sales_test.py DQTOOL
"""The sales example: every line of the client arrives through dqtool, and the password doesn't."""

import os
import re
import subprocess
import sys
import tempfile
import unittest

DQTOOL = sys.argv[1]
SALES = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "sales")


def run_example(directory, dqtool=DQTOOL):
    return subprocess.run([os.path.join(SALES, "run.sh"), dqtool, directory],
                          capture_output=True, text=True)


class SalesTest(unittest.TestCase):
    def setUp(self):
        self.directory = self.enterContext(tempfile.TemporaryDirectory())

    def test_each_query_shows_what_the_client_alone_prints_but_no_password(self):
        result = run_example(self.directory)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        by_script = dict(re.findall(r'".print end of (\S+)"\n(.*?)(?=^sqlite3 |\Z)', result.stdout,
                                    re.DOTALL | re.MULTILINE))
        self.assertEqual(sorted(by_script), sorted(os.listdir(os.path.join(SALES, "queries"))))
        for script, shown in by_script.items():
            # The login is known already, so the client needs none to run the script itself.
            alone = subprocess.run(["sqlite3", "-batch", "-bail", "sales.db", f".read {script}",
                                    f".print end of {script}"],
                                   cwd=self.directory, capture_output=True, text=True, check=True)
            expected = [line.rstrip() for line in alone.stdout.splitlines() if line.strip()]
            self.assertEqual(shown.splitlines(), expected, script)
            self.assertGreater(len(expected), 8, script)
        # It is masked but reaches the client.
        self.assertEqual(result.stdout.count(":login 'clerk/****@ledger'"), 4)
        self.assertNotIn("harvest-moon", result.stdout + result.stderr)
        sessions = subprocess.run(["sqlite3", "sales.db", "select clerk from session"],
                                  cwd=self.directory, capture_output=True, text=True, check=True)
        self.assertEqual(sessions.stdout, "clerk\n" * 4)

    def test_fails_when_a_statement_fails(self):
        # Stands for dqtool and breaks a query behind the back of the example.
        breaker = os.path.join(self.directory, "breaker.sh")
        work = os.path.join(self.directory, "work")
        with open(breaker, "w", encoding="ascii") as file:
            file.write(f"#!/bin/sh\necho 'select * from nowhere;' >{work}/by_region.sql\n"
                       f'exec "{os.path.realpath(DQTOOL)}" "$@"\n')
        os.chmod(breaker, 0o700)
        result = run_example(work, breaker)
        self.assertEqual(result.returncode, 1)
        self.assertIn("no such table: nowhere", result.stdout)
        self.assertIn("has not come to its end", result.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
