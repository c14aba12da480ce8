"""The dialog command of dqtool, answered by scripts, on settings of its own.

dqtool_dialog_test.py DQTOOL
"""

import os
import sys
import tempfile
import unittest

import dqtool_runner

OPTIONS = "44510"
BUILDER = "44530"


class DialogTest(unittest.TestCase):
    def setUp(self):
        self.directory = self.enterContext(tempfile.TemporaryDirectory())
        self.environment = {**os.environ, "HOME": self.directory,
                            "XDG_CONFIG_HOME": os.path.join(self.directory, "config")}

    def dqtool(self, *words):
        return dqtool_runner.dqtool(*words, cwd=self.directory, env=self.environment)

    def play(self, *steps, dialog=OPTIONS):
        with open(os.path.join(self.directory, "script"), "w", encoding="ascii") as file:
            file.write("".join(step + "\n" for step in steps))
        return self.dqtool("dialog", dialog, "--script", "script")

    def value(self, option):
        return self.dqtool("option", "get", option)[1].decode().rstrip("\n")

    def test_every_option_but_bytes_is_on_a_page_and_is_kept(self):
        self.assertEqual(self.dqtool("dialog", "--list"),
                         (0, b"2712\tObject Type Information\n44510\tOptions\n"
                             b"44530\tDate/Time Format Builder\n", b""))
        given = {"bool": "1", "string": "a b", "directory": "/tmp", "color": "00ff80"}
        numbers = {"50198": ("Discard it", "1"), "50241": ("3", "2"), "50242": ("Upper case", "1"),
                   "50244": ("1", "0"), "50245": ("Lower case", "2")}
        pages = {"Editor": [(50180, 50229)],
                 "SQL Formatter": [(50241, 50249), (50311, 50327)],
                 "Names and Scripts": [(50270, 50274), (50390, 50390)],
                 "Output Pane": [(50144, 50144), (50255, 50257)],
                 "Favorites": [(50135, 50139)], "Jobs": [(50230, 50231)]}
        steps, wanted = {page: [] for page in pages}, {"50391": "5"}
        for line in self.dqtool("option", "list")[1].decode().splitlines():
            option, kind = line.split("\t")[:2]
            number = int(option)
            if kind == "binary" or number >= 50391:
                continue
            shown, wanted[option] = numbers.get(option, (given.get(kind, " +07 "),
                                                         given.get(kind, "7")))
            page = next(name for name, ranges in pages.items()
                        if any(first <= number <= last for first, last in ranges))
            steps[page].append(f"{option}={shown}")
        script = [step for page, own in steps.items() for step in (f"2900={page}", *own)]
        self.assertEqual(self.play(*script, "press 1"), (0, b"ok\n", b""))
        self.assertEqual({option: self.value(option) for option in wanted}, wanted)
        # It opens with the page that it was closed with.
        self.assertEqual(self.play("50231=/x", "press 1"), (0, b"ok\n", b""))

    def test_nothing_is_kept_of_a_dialog_that_is_not_left_by_ok(self):
        number = b"dqtool: Please enter an integer.\n"
        for steps, complaint in (
                (["50183=9", "2900=2", "press 2"], b""),
                (["50183=9", "2900=2"], b""),
                (["50183=9", "2900=2", "50246=x", "press 1"], number),
                (["50183=x", "2900=2"],
                 number + b"dqtool: dialog: script:3: control 2900 isn't there or doesn't take the "
                          b"value\n"),
                (["50183=9", "50246=1"],
                 b"dqtool: dialog: script:3: control 50246 isn't there or doesn't take the "
                 b"value\n"),
                (["50183=9", "press 2", "# end", "press 1"],
                 b"dqtool: dialog: script: the dialog was closed before the script's end\n")):
            self.assertEqual(self.play("2900=Editor", *steps), (1, b"cancel\n", complaint), steps)
            self.assertEqual(self.value("50183"), "4", steps)

    def test_the_format_builder_prints_the_format_that_is_built_or_chosen(self):
        for steps, printed in (
                (["44531=1993-4-3 5:34:00 PM", "press 1"], "YYYY-mm-dd hh12:MI:SS AM"),
                (["press 44552", "44532=DD", "44539=-", "44533=MON", "44540= ", "44542=1",
                  "44535=HH24", "press 1"], "DD-MON YYYY HH24:MI:SS")):
            self.assertEqual(self.play(*steps, dialog=BUILDER),
                             (0, f"ok\n{printed}\n".encode(), b""), steps)
        self.assertEqual(self.play("press 2", dialog=BUILDER), (1, b"cancel\n", b""))

    def test_what_makes_no_sense_opens_nothing(self):
        self.assertEqual(self.play("50183=9", "what"),
                         (1, b"", b"dqtool: dialog: script:2: neither 'id=value' nor 'press id'\n"))
        for words, status in ((["1"], 2), (["x"], 2), ([], 2), ([OPTIONS, "--what"], 2),
                              ([OPTIONS, "--script"], 2), ([OPTIONS, "1"], 2),
                              ([OPTIONS, "--script", "none"], 1)):
            found, out, err = self.dqtool("dialog", *words)
            self.assertEqual((found, out, err.startswith(b"dqtool: dialog: ")), (status, b"", True))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
