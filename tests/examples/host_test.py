"""The example host: what it prints, and that a project outside the tree can take the tree in.

host_test.py PROGRAM SOURCE_DIRECTORY GENERATOR COMPILER
"""

import subprocess
import sys
import tempfile
import unittest

PROGRAM, SOURCE, GENERATOR, COMPILER = sys.argv[1:5]


class HostTest(unittest.TestCase):
    def test_prints_its_own_string_and_one_of_the_library(self):
        result = subprocess.run([PROGRAM], capture_output=True, text=True, check=True)
        self.assertEqual(result.stdout,
                         "host_example is ready.\nThis Feature is Under Construction.\n")

    def test_configures_by_itself_with_neither_tests_nor_hosts(self):
        with tempfile.TemporaryDirectory() as tree:
            subprocess.run(["cmake", "-S", SOURCE, "-B", tree, "-G", GENERATOR,
                            f"-DCMAKE_CXX_COMPILER={COMPILER}"],
                           capture_output=True, text=True, check=True)
            build = ["cmake", "--build", tree, "--target"]
            targets = subprocess.run([*build, "help"], capture_output=True, text=True,
                                     check=True).stdout
            # A dry run, since all of it is compiled by the tree's own build.
            subprocess.run([*build, "host_example", "--", "-n"], capture_output=True, check=True)
        self.assertNotIn("dqtool", targets)
        self.assertNotIn("_test", targets)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
