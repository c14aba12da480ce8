# dqtool_run_test.py DQTOOL
"""dqtool run and console: what the program prints, how it ends, and what is left of it."""

import os
import pty
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

    def start(self, text, command="run"):
        return subprocess.Popen([transcript.DQTOOL, command, self.script(text)], stdout=subprocess.PIPE,
                                stdin=subprocess.PIPE, stderr=subprocess.PIPE)

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
            command = "console" if number == signal.SIGHUP else "run"
            process = self.start("trap '' TERM HUP; sleep 300 & echo $! $$; echo more; wait", command)
            if command == "run":
                process.stdout.readline()
            children = process.stdout.readline().split()
            process.send_signal(number)
            _, err = process.communicate(timeout=60)
            self.assertEqual((process.returncode, err), (1, f"dqtool: {command}: stopped\n".encode()), number)
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

    def test_console_types_standard_input_and_prints_what_comes(self):
        self.script("echo $0 $#", "shell")
        self.environment["SHELL"] = self.path("shell")
        self.play(r"""
            [console]
            cat < one\r\ntwo\n\xc3\xbc\x1b\t.\n => one\ntwo\n\xc3\xbc\x1b\t.
            'wc -c' < no => 2
            cat < a\0b\n => ab ! zero bytes can't be typed and are left out
            sh < x=5\necho $x\nexit 3\n => 5 ;; => $D/shell 0 ;; '' =>2 ! COMMAND is empty
            none =>1 ! cannot start 'none': No such file or directory
            """)
        lines = b"x" * 100_000 + b"\n" + b"y\n" * 50_000
        self.assertEqual(self.dqtool("console", "cat", input=lines), (0, lines, b""))

    def test_console_ends_though_nobody_takes_its_output_or_gives_it_input(self):
        process = self.start("echo $$; exec yes", "console")
        child = int(process.stdout.readline())
        time.sleep(0.2)
        process.terminate()
        self.assertEqual(process.wait(60), 1)
        self.assertTrue(has_ended(child))
        process.communicate()
        process = self.start("echo done", "console")
        self.assertEqual((process.wait(60), process.communicate()), (0, (b"done\n", b"")))

    def test_console_echoes_nothing_that_the_terminal_echoes(self):
        child, terminal = pty.fork()
        if child == 0:
            os.execv(transcript.DQTOOL, ["dqtool", "console", "cat"])
        os.write(terminal, b"word\n")
        shown = b""
        while shown.count(b"word") < 2:
            shown += os.read(terminal, 1000)
        os.write(terminal, b"\x04")
        self.assertEqual((os.waitpid(child, 0)[1], shown), (0, b"word\r\nword\r\n"))
        os.close(terminal)


if __name__ == "__main__":
    transcript.main()
