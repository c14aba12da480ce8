"""The example host: what it prints, and that a project outside the tree can take the tree in.

host_test.py PROGRAM SOURCE_DIRECTORY GENERATOR COMPILER BUILD_TREE

The build tree is "no" if its archives can't be linked without flags of their own.
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM, SOURCE, GENERATOR, COMPILER, TREE = sys.argv[1:6]

# Each before those that it needs.
ROOMS = """workspace datetime dbvocab output toolkit core frame options pictures dberrors
           framework_controls framework_windows resources framework_base platform""".split()

BY_HAND = """
#include <cstdio>
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/resources/string_ids.h"
#include "dqlib/toolkit/dialog.h"
int main() {
  dq::CWinApp app("by_hand");
  dq::CString text;
  text.LoadString(dq::IDS_UNKNOWN_OS_ERROR);
  dq::CDQDialog dialog(2712);
  if (!dialog.Create(2712, nullptr)) return 1;
  const auto kind = [&](int id) { return dialog.GetDlgItem(id)->GetRuntimeClass()->m_lpszClassName; };
  std::printf("%s, %s, %s, %s", static_cast<const char*>(text), kind(2754), kind(2756), kind(1));
}
"""

# A program with the translation that the guide to hosts shows.
GUIDE = pathlib.Path(SOURCE, "../../docs/hosting.md").read_text()
TRANSLATED = """
#include <cstdio>
#include "dqlib/dqlib.h"
int main() {%s
  dq::CDQDialog dialog(2712);
  if (!dialog.Create(2712, nullptr)) return 1;
  const dq::CString later = dq::LoadStringA(dq::DQLIB_GetInstanceHandle(), dq::IDS_UNDER_CONSTRUCTION);
  const dq::CString table = dq::GetObjectTypeText(dq::OT_TABLE, dq::DBMS_ORACLE);
  const dq::CString view = dq::GetObjectTypeText(dq::OT_VIEW, dq::DBMS_ORACLE);
  for (const dq::CString& each : {dq::CString(dialog.GetWindowText()), later, table, view,
                                  dq::CString(dq::platform::Text(dq::IDS_BUTTON_YES))}) {
    std::puts(each);
  }
}
""" % GUIDE.split("## Translating")[1].split("```")[1].removeprefix("cpp")


def run(*command, read=None):
    """What a command that succeeds prints."""
    return subprocess.run(command, capture_output=True, text=True, check=True, input=read).stdout


class HostTest(unittest.TestCase):
    def test_prints_its_own_string_and_one_of_the_library(self):
        self.assertEqual(run(PROGRAM),
                         "host_example is ready.\nThis Feature is Under Construction.\n")

    def test_configures_by_itself_with_neither_tests_nor_hosts(self):
        with tempfile.TemporaryDirectory() as tree:
            run("cmake", "-S", SOURCE, "-B", tree, "-G", GENERATOR,
                f"-DCMAKE_CXX_COMPILER={COMPILER}")
            build = ["cmake", "--build", tree, "--target"]
            targets = run(*build, "help")
            # A dry run, since all of it is compiled by the tree's own build.
            commands = run(*build, "host_example", "--verbose", "--", "-n")
        self.assertIn("-Wall", commands)
        for text, word in ((commands, "-Werror"), (targets, "dqtool"), (targets, "_test")):
            self.assertNotIn(word, text)

    @unittest.skipIf(TREE == "no", "the archives need flags of their own")
    def test_has_texts_and_controls_if_linked_by_hand(self):
        archives = {path.stem.removeprefix("libdqlib_"): path for top in ("dqlib", "siblings")
                    for path in pathlib.Path(TREE, top).rglob("libdqlib_*.a")}
        self.assertEqual(set(archives) - set(ROOMS), set(), "name the new room")
        ordered = [archives[room] for room in ROOMS]
        group = ["-Wl,--start-group", *sorted(ordered), "-Wl,--end-group"]
        with tempfile.TemporaryDirectory() as directory:
            made, program = directory + "/main.o", directory + "/program"
            for source, libraries, told in (
                (BY_HAND, [group, ordered], "Unknown OS Error, CComboBox, CEdit, CButton"),
                (TRANSLATED, [group], "Objekt\nDas gibt es noch nicht.\nTabelle\nView\nJa\n"),
            ):
                run(COMPILER, "-std=c++20", "-I", SOURCE + "/../..", "-xc++", "-c", "-", "-o", made,
                    read=source)
                for each in libraries:
                    run(COMPILER, made, *each, "-o", program)
                    self.assertEqual(run(program), told)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
