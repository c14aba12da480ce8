# dqtool_run_test.py DQTOOL
"""dqtool run: the program's lines, how its run ends, and what is left of it."""

import os
import signal
import subprocess
import time

import transcript


def has_ended(process_id):
    """Whether the process is gone, or a zombie, within some seconds."""
    for _ in range(1000):
        try:
            with open(f"/proc/{process_id}/stat", encoding="ascii") as file:
                if file.read().rpartition(")")[2].split()[0] == "Z":
                    return True
        except FileNotFoundError:
            return True
        time.sleep(0.01)
    return False


class RunTest(transcript.TranscriptTest):
    def script(self, text, name="program"):
        """A program that does what the shell script says."""
        os.chmod(self.path(name, b"#!/bin/sh\n" + text.encode()), 0o700)
        return self.path(name)

    def start(self, text):
        return subprocess.Popen([transcript.DQTOOL, "run", self.script(text)], stdout=subprocess.PIPE,
                                stdin=subprocess.DEVNULL, stderr=subprocess.PIPE)

    def test_lines_masks_and_ends(self):
        os.mkdir(self.path("sub"))
        self.script("pwd; printf '  a\\n\\n  b\\n  c'", "blanks")
        self.script("echo said; echo too >&2; exit 3", "three")
        self.script("echo said; kill -9 $$", "killed")
        self.script("exit 255", "last")
        self.path("plain", b"")
        self.play(r"""
            [run]
            echo '-Usa -Psecret -Sserver' => echo -Usa -P****** -Sserver\n-Usa -Psecret -Sserver
            echo scott/tiger@ora1 => echo scott/****@ora1\nscott/tiger@ora1
            -- echo --dir => echo --dir\n--dir ;; echo --keep-left => echo --keep-left\n--keep-left
            echo -- => echo --\n-- ;; --dir=sub $D/blanks => $D/blanks\x20\n$D/sub\na\nb\n  c
            --keep-left --dir $D/sub $D/blanks => $D/blanks\x20\n$D/sub\n  a\n  b\n  c
            sh '-c "exit 1"' =>1 sh -c "exit 1" ;; '' =>1 ! -6: No program to run
            --dir '' true =>2 ! DIR is empty ;; =>2 ! a PROGRAM is needed
            echo two words =>2 ! ARGUMENTS is one text; put it in quotes
            --password-file =>2 ! --password-file needs an F
            --kep-left echo =>2 ! no option --kep-left; did you mean '--keep-left'?
            --auth 5 true =>2 ! MODE is a number from 0 to 4, not '5'
            --password-file none --user u echo =>1 ! cannot read none: No such file or directory
            zero := ab\0c\n
            --password-file zero --user u echo =>1 ! the password in zero has a zero byte
            --password-file - --user u echo < => echo u\x20\nu
            --password-file - --user u echo < tiger\nx => echo u/****\x20\nu/tiger
            secret := tiger@/x\r\nsecond line\n ;; length := for last; do :; done; echo "${#last}"\n
            --user scott sh length => sh length scott\x20\n5
            --user scott --password-file secret sh length => sh length scott/****\x20\n14
            --user=scott --password-file secret --datasource ora1 --auth 2 sh length => sh length 'scott/****@ora1 AS SYSDBA'\x20\n29
            $D/three =>3 $D/three\x20\nsaid\ntoo ;; $D/killed =>137 $D/killed\x20\nsaid
            $D/last =>255 $D/last\x20
            '$D/missing -Psecret' =>127 $D/missing -P******\x20 ! -3: Create process failed: No such file or directory: '$D/missing' in '$D'
            $D/plain =>126 $D/plain\x20 ! -3: Create process failed: Permission denied: '$D/plain' in '$D'
            --dir $D/missing $D/three =>127 $D/three\x20 ! -3: Create process failed: No such file or directory: '$D/three' in '$D/missing'
            """)

    def test_lines_come_as_they_are_printed_and_whole(self):
        process = self.start("echo one; echo two; sleep 60")
        try:
            # "two" has come, so "one" is a line; "two" itself waits for what follows.
            self.assertEqual([process.stdout.readline(), process.stdout.readline()],
                             [f"{self.path('program')} \n".encode(), b"one\n"])
        finally:
            process.terminate()
            process.communicate()
        lines = [bytes(range(0x80, 0x100)), b"x" * 1_000_000, "Größe €".encode(), b"end"]
        status, out, err = self.dqtool("run", "cat", self.path("data", b"\n".join(lines) + b"\n"))
        self.assertEqual((status, out.splitlines()[1:], err), (0, lines, b""))

    def test_a_request_to_stop_ends_the_program_with_its_children(self):
        for number in [signal.SIGINT, signal.SIGQUIT, signal.SIGTERM, signal.SIGHUP]:
            process = self.start("sleep 300 & echo $! $$; echo more; wait")
            process.stdout.readline()
            children = process.stdout.readline().split()
            process.send_signal(number)
            _, err = process.communicate(timeout=60)
            self.assertEqual((process.returncode, err), (1, b"dqtool: run: stopped\n"), number)
            self.assertEqual(len(children), 2)
            for child in children:
                self.assertTrue(has_ended(int(child)), child)

    def test_output_that_nobody_reads_ends_the_program(self):
        process = self.start("echo $$; while echo flood; do :; done; sleep 300")
        process.stdout.readline()
        child = int(process.stdout.readline())
        process.stdout.close()
        self.assertEqual((process.stderr.read(), process.wait(60)), (b"", 141))
        process.stderr.close()
        self.assertTrue(has_ended(child))


if __name__ == "__main__":
    transcript.main()
