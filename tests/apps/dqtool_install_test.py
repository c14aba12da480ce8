# dqtool_install_test.py CMAKE BUILD_TREE
"""An installed dqtool, and where it looks for the options files."""

import os
import subprocess
import sys
import tempfile
import unittest

CMAKE, BUILD_TREE = sys.argv[1:3]
OPTION = "dqoptions 1\noption 7 string " + "w" * 63 + "\nlabel \"l\"\ndefault \"%s\"\n"


class InstallTest(unittest.TestCase):
    def test_options_are_those_beside_the_program_then_the_installed_then_the_trees(self):
        prefix = self.enterContext(tempfile.TemporaryDirectory())
        subprocess.run([CMAKE, "--install", BUILD_TREE, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)

        def option(*words):
            result = subprocess.run([os.path.join(prefix, "bin", "dqtool"), "option", *words],
                                    cwd="/", capture_output=True, text=True, check=False, env={
                                        **os.environ, "HOME": prefix, "XDG_CONFIG_HOME": prefix})
            return result.stdout + result.stderr

        def place(directory, default):
            with open(os.path.join(prefix, directory, "DQLib.dqo"), "w", encoding="ascii") as file:
                file.write(OPTION % default)

        listed = option("list")
        self.assertIn("50144\tint\toutput_pane_entries\t1400\n", listed)
        self.assertIn("52500\tbool\tsyntax_coloring\t1\n", listed)
        place("share/dqlib/options", "installed")
        self.assertEqual(option("get", "7"), "installed\n")
        place("bin", "beside")
        self.assertEqual(option("get", "7"), "beside\n")
        # Words of more than 64 letters are no misspelt names.
        self.assertIn("did you mean", option("get", "w" * 64))
        self.assertNotIn("did you mean", option("get", "w" * 65))
        for directory in ["bin", "share/dqlib/options"]:
            os.remove(os.path.join(prefix, directory, "DQLib.dqo"))
        self.assertEqual(option("list"), listed)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
