"""scripts/install.sh, on a machine whose package tools are played by small scripts."""

import os
import re
import subprocess
import tempfile
import unittest

INSTALL = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", "..", "scripts",
                                        "install.sh"))

with open(INSTALL, encoding="utf-8") as script:
    BENCH = re.search(r"^ +bench\) echo (.*?) ;;$", script.read(),
                      re.MULTILINE | re.DOTALL)[1].replace("\\\n", " ").split()

# A package is installed if a file of its name is in $MACHINE/has; apt-get brings those of
# $MACHINE/offers, to which "update" adds those of $MACHINE/news.
DPKG_QUERY = """#!/bin/sh
for package; do :; done
[ -e "$MACHINE/has/$package" ] && printf installed
"""
APT_GET = """#!/bin/sh
echo "chatter on standard output"
[ "$DEBIAN_FRONTEND" = noninteractive ] || exit 9
for word; do
  case "$word" in
    update) echo update >>"$MACHINE/calls"; cp "$MACHINE"/news/* "$MACHINE/offers"; exit 0 ;;
    install) echo install >>"$MACHINE/calls" ;;
    -*|DPkg*) ;;
    *) cp "$MACHINE/offers/$word" "$MACHINE/has/$word" || exit 100 ;;
  esac
done
"""
SUDO = """#!/bin/sh
[ "$1" = -n ] && shift
exec "$@"
"""


class InstallTest(unittest.TestCase):
    def setUp(self):
        self.machine = self.enterContext(tempfile.TemporaryDirectory())
        for name, text in [("dpkg-query", DPKG_QUERY), ("apt-get", APT_GET), ("sudo", SUDO)]:
            os.chmod(self.put("bin/" + name, text), 0o700)
        for path in ["has/.keep", "offers/.keep", "news/.keep", "calls"]:
            self.put(path)
        # The machine has all packages of the group but one.
        for package in BENCH[:-1]:
            self.put("has/" + package)

    def put(self, name, text=""):
        path = os.path.join(self.machine, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="ascii") as file:
            file.write(text)
        return path

    def install(self, *groups):
        """Exit status, standard output and standard error, and what apt-get was called for."""
        path = os.path.join(self.machine, "bin") + ":" + os.environ["PATH"]
        result = subprocess.run([INSTALL, *groups], text=True, capture_output=True, check=False,
                                env={**os.environ, "PATH": path, "MACHINE": self.machine})
        with open(os.path.join(self.machine, "calls"), encoding="ascii") as file:
            return result.returncode, result.stdout, result.stderr, file.read().split()

    def test_installs_what_is_missing_and_then_nothing(self):
        self.put("offers/" + BENCH[-1])
        for said in [f"Installing {BENCH[-1]}\n", ""]:
            self.assertEqual(self.install("bench"), (0, "", said, ["install"]))

    def test_fetches_the_package_list_when_the_machine_has_none(self):
        self.put("news/" + BENCH[-1])
        status, _, _, calls = self.install("bench")
        self.assertEqual((status, calls), (0, ["install", "update", "install"]))

    def test_failure_shows_what_the_package_manager_said(self):
        status, out, err, _ = self.install("bench")
        self.assertEqual((status, out), (1, ""))
        self.assertIn("chatter", err)

    def test_unknown_group_is_wrong_usage(self):
        status, _, _, calls = self.install("bench", "nonsense")
        self.assertEqual((status, calls), (2, []))


if __name__ == "__main__":
    unittest.main()
