"""Transcripts: what dqtool answers to command lines, a row each."""

#     WORDS [< INPUT] => [STATUS] [OUTPUT] [! COMPLAINT]
#     FILE := CONTENT
#     [COMMAND]
#
# The first kind runs dqtool in a directory and with settings of its own. The status stands right
# behind "=>" unless it is 0. Output and complaint are without their last line end, a complaint without
# "dqtool: COMMAND: " before each line, unless it begins with "dqtool: ", and "..." is any rest. With
# status 2 it is the first line, before how to use the command. The second kind makes a file. Below the
# third its words aren't told again, but for rows that begin with "dqtool". Short rows share a line,
# with " ;; " between. Words are cut as by a shell; Python's escapes are bytes, $D is the directory,
# $STAMP any date and time, "" an empty line, and output behind "~" an expression that matches it.


import codecs
import os
import shlex
import subprocess
import sys
import tempfile
import unittest

DQTOOL = os.path.realpath(sys.argv[1])
STAMP = r"[0-9]{1,2}/[0-9]{1,2}/[0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{3}"


class TranscriptTest(unittest.TestCase):
    def setUp(self):
        self.directory = os.path.realpath(self.enterContext(tempfile.TemporaryDirectory()))
        self.environment = {**os.environ, "HOME": self.directory, "LC_ALL": "C", "TZ": "UTC",
                            "XDG_CONFIG_HOME": os.path.join(self.directory, "config")}

    def dqtool(self, *words, **options):
        """(exit status, standard output, standard error) as bytes, for lines are 8-bit."""
        if "stdin" not in options:
            options.setdefault("input", b"")
        result = subprocess.run([DQTOOL, *words], capture_output=True, timeout=60,
                                cwd=self.directory, env=self.environment, **options)
        return result.returncode, result.stdout, result.stderr

    def path(self, name, content=None):
        path = os.path.join(self.directory, name)
        if content is not None:
            with open(path, "wb") as file:
                file.write(content)
        return path

    def content(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def filled_in(self, text):
        text = text.replace("$STAMP", STAMP).replace("$DQTOOL", DQTOOL)
        return text.replace("$D", self.directory).encode()

    def decoded(self, text):
        return codecs.escape_decode(self.filled_in(text))[0]

    def play(self, transcript):
        command = []
        for row in transcript.strip().replace(" ;; ", "\n").splitlines():
            row = row.strip()
            with self.subTest(row[:150]):
                if row.startswith("["):
                    command = row[1:-1].split()
                elif " :=" in row:
                    name, _, content = row.partition(" :=")
                    self.path(name, self.decoded(content.removeprefix(" ")))
                elif row.startswith("dqtool "):
                    self.play_row([], row.removeprefix("dqtool "))
                else:
                    self.play_row(command, row)

    def play_row(self, command, row):
        line, _, expected = (" " + row).partition(" =>")
        line, _, given = (line + " ").partition(" < ")
        words = [self.decoded(word) for word in command + shlex.split(line)]
        status, _, expected = expected.partition(" ")
        out, _, complaint = (" " + expected).partition(" ! ")
        found = self.dqtool(*words, input=self.decoded(given.removesuffix(" ")))
        out = out.strip(" ")
        if out.startswith("~"):
            self.assertRegex(found[1], rb"(?s)\A" + self.filled_in(out[1:]) + rb"\n\Z")
        else:
            out = b"\n" if out == '""' else self.decoded(out) + b"\n" if out else b""
            self.assertEqual(found[1], out, found[2])
        self.assertEqual(found[0], int(status or 0))
        told = found[2].removesuffix(b"\n").split(b"\n") if found[2] else []
        self.assertTrue(all(each.startswith(b"dqtool: ") for each in told), told)
        if status == "2":
            self.assertGreater(len(told), 1)
            told = told[:1]
        prefix = b"dqtool: " + words[0] + b": "
        told = b"\n".join(each.removeprefix(prefix) for each in told)
        wanted = self.decoded(complaint)
        if wanted.endswith(b"..."):
            told = told[:len(wanted) - 3] + b"..."
        self.assertEqual(told, wanted)


def main():
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
