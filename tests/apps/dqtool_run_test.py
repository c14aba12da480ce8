# dqtool_run_test.py DQTOOL
"""dqtool run: the program's lines, how its run ends, and what is left of it."""

import os
import signal
import subprocess
import time

import transcript


def is_running(process_id):
    """Whether the process exists and is no zombie."""
    try:
        with open(f"/proc/{process_id}/stat", encoding="ascii") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


def wait_until(condition):
    """Whether the condition came true within some seconds."""
    for _ in range(1000):
        if condition():
            return True
        time.sleep(0.01)
    return False


class RunTest(transcript.TranscriptTest):
    def script(self, text, name="program"):
        """A program that does what the shell script says."""
        return self.path(name, b"#!/bin/sh\n" + text.encode(), 0o700)

    def start(self, program):
        return subprocess.Popen([transcript.DQTOOL, "run", program], stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def test_lines_masks_and_ends(self):
        os.mkdir(self.path("sub"))
        self.script("pwd; printf '  a\\n\\n  b\\n  c'", "blanks")
        self.script("echo said; echo too >&2; exit 3", "three")
        self.script("echo said; kill -9 $$", "killed")
        self.script("exit 255", "last")
        self.path("plain", b"")
        self.play(r"""
            run echo '-Usa -Psecret -Sserver' => echo -Usa -P****** -Sserver\n-Usa -Psecret -Sserver
            run echo '-Usa -P secret' => echo -Usa -P secret\n-Usa -P secret
            run echo '-psecret --password=secret' => echo -psecret --password=secret\n-psecret --password=secret
            run echo '-Pone -Ptwo a/b@c d/e@f' => echo -P*** -Ptwo a/****@c d/e@f\n-Pone -Ptwo a/b@c d/e@f
            run echo scott/tiger@ora1 => echo scott/****@ora1\nscott/tiger@ora1
            run -- echo --dir => echo --dir\n--dir
            run echo --keep-left => echo --keep-left\n--keep-left
            run echo -- => echo --\n--
            run --dir=sub $D/blanks => $D/blanks\x20\n$D/sub\na\nb\n  c
            run --keep-left --dir $D/sub $D/blanks => $D/blanks\x20\n$D/sub\n  a\n  b\n  c
            run sh '-c "exit 1"' =>1 sh -c "exit 1"
            run '' =>1 ! -6: No program to run
            run --dir '' true =>2 ! DIR is empty
            run --kep-left echo =>2 ! no option --kep-left; did you mean '--keep-left'?
            run --auth 5 true =>2 ! MODE is a number from 0 to 4, not '5'
            run --password-file none --user u echo =>1 ! cannot read none: No such file or directory
            zero := ab\0c\n
            run --password-file zero --user u echo =>1 ! the password in zero has a zero byte
            run --password-file - --user u echo < => echo u\x20\nu
            run --password-file - --user u echo < tiger\nx => echo u/****\x20\nu/tiger
            secret := tiger@/x\r\nsecond line\n
            length := for last; do :; done; echo "${#last}"\n
            run --user scott sh length => sh length scott\x20\n5
            run --user scott --password-file secret sh length => sh length scott/****\x20\n14
            run --user=scott --password-file secret --datasource ora1 --auth 2 sh length => sh length 'scott/****@ora1 AS SYSDBA'\x20\n29
            run $D/three =>3 $D/three\x20\nsaid\ntoo
            run $D/killed =>137 $D/killed\x20\nsaid
            run $D/last =>255 $D/last\x20
            run '$D/missing -Psecret' =>127 $D/missing -P******\x20 ! -3: Create process failed: No such file or directory: '$D/missing' in '$D'
            run $D/plain =>126 $D/plain\x20 ! -3: Create process failed: Permission denied: '$D/plain' in '$D'
            run --dir $D/missing $D/three =>127 $D/three\x20 ! -3: Create process failed: No such file or directory: '$D/three' in '$D/missing'
            """)

    def test_lines_come_as_they_are_printed_and_whole(self):
        program = self.script("echo one; echo two; sleep 60")
        process = self.start(program)
        try:
            self.assertEqual(process.stdout.readline(), f"{program} \n".encode())
            # "two" has come, so "one" is a line; "two" itself waits for what follows.
            self.assertEqual(process.stdout.readline(), b"one\n")
        finally:
            process.terminate()
            process.communicate()
        lines = [bytes(range(0x80, 0x100)), b"x" * 1_000_000, "Größe €".encode(), b"end"]
        status, out, err = self.dqtool("run", "cat", self.path("data", b"\n".join(lines) + b"\n"))
        self.assertEqual((status, out.splitlines()[1:], err), (0, lines, b""))

    def test_a_request_to_stop_ends_the_program_with_its_children(self):
        ids = self.path("ids")
        program = self.script(f"sleep 300 & echo $! $$ >{ids}.new; mv {ids}.new {ids}\n"
                              "echo begun; echo more; wait")
        for number in [signal.SIGINT, signal.SIGQUIT, signal.SIGTERM, signal.SIGHUP]:
            process = self.start(program)
            self.assertTrue(wait_until(lambda: os.path.exists(ids)))
            children = self.content(ids).decode().split()
            os.remove(ids)
            process.send_signal(number)
            _, err = process.communicate(timeout=60)
            self.assertEqual((process.returncode, err), (1, b"dqtool: run: stopped\n"), number)
            for child in children:
                self.assertTrue(wait_until(lambda: not is_running(child)), child)

    def test_output_that_nobody_reads_ends_the_program(self):
        ids = self.path("ids")
        process = self.start(self.script(f"echo $$ >{ids}; while echo flood; do :; done; sleep 300"))
        process.stdout.readline()
        process.stdout.close()
        err = process.stderr.read()
        process.stderr.close()
        self.assertEqual((process.wait(60), err), (141, b""))
        child = self.content(ids).decode().strip()
        self.assertTrue(wait_until(lambda: not is_running(child)))


if __name__ == "__main__":
    transcript.main()
