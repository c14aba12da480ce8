"""scripts/install.sh, on a machine whose package tools are played by small scripts."""

import os
import pathlib
import subprocess
import tempfile
import unittest

INSTALL = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "install.sh"

# The machine has all packages but one, which comes with $MACHINE/has. apt-get brings it if there
# is $MACHINE/offers, which "update" makes of $MACHINE/news.
TOOLS = {"dpkg-query": """#!/bin/sh
for package; do :; done
[ "$package" != ccache ] || [ -e "$MACHINE/has" ] && printf installed
""", "apt-get": """#!/bin/sh
echo "chatter on standard output"
[ "$DEBIAN_FRONTEND" = noninteractive ] || exit 9
for word; do
  case "$word" in
    update) echo update >>"$MACHINE/calls"; cp "$MACHINE/news" "$MACHINE/offers"; exit 0 ;;
    install) echo install >>"$MACHINE/calls" ;;
    -*|DPkg*) ;;
    ccache) cp "$MACHINE/offers" "$MACHINE/has" || exit 100 ;;
    *) exit 8 ;;
  esac
done
""", "sudo": """#!/bin/sh
[ "$1" = -n ] && shift
exec "$@"
"""}


class InstallTest(unittest.TestCase):
    def setUp(self):
        self.machine = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        for name, text in TOOLS.items():
            (self.machine / name).write_text(text, encoding="ascii")
            (self.machine / name).chmod(0o700)

    def install(self, *groups):
        """Exit status, standard output and standard error, and what apt-get was called for."""
        calls = self.machine / "calls"
        calls.write_text("", encoding="ascii")
        environment = {**os.environ, "MACHINE": str(self.machine),
                       "PATH": f"{self.machine}:{os.environ['PATH']}"}
        result = subprocess.run([INSTALL, *groups], text=True, capture_output=True, check=False,
                                env=environment)
        return (result.returncode, result.stdout, result.stderr,
                calls.read_text(encoding="ascii").split())

    def test_installs_what_is_missing_and_then_nothing(self):
        every = ["install", "update", "install"]
        status, out, err, calls = self.install("build")
        self.assertEqual((status, out, calls), (1, "", every))
        self.assertIn("chatter", err, "what the package manager said")
        (self.machine / "news").touch()
        said = "Installing ccache\n"
        self.assertEqual(self.install("build"), (0, "", said, every))
        (self.machine / "has").unlink()
        self.assertEqual(self.install("check", "build"), (0, "", said, ["install"]))
        self.assertEqual(self.install("build"), (0, "", "", []))

    def test_unknown_group_is_wrong_usage(self):
        status, _, _, calls = self.install("build", "nonsense")
        self.assertEqual((status, calls), (2, []))


if __name__ == "__main__":
    unittest.main()
