#!/usr/bin/env python3
"""mutate.py [ROOM...] [--count N] [--seed S]: which small changes of a room no test notices.

Works on copies of the tree under build/mutate, one for each processor, built without sanitizers and
with a shared library for each room, so that a change costs a compilation and a link. The tests run
where they can write nowhere but to a /tmp of their own. A room's own test program comes first, then
those of the rooms above it; a test that runs into its time limit counts as one that noticed.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import queue
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import mutants as mutation

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), ".."))
TREES = os.path.join(ROOT, "build", "mutate")
EQUIVALENTS = os.path.join("scripts", "equivalent_mutants.txt")
SLOW_SECONDS = 1.0
MEMORY_BYTES = 16 << 30


class Failure(Exception):
    """What ends the whole run."""


def git_files():
    listed = subprocess.run(["git", "-C", ROOT, "ls-files", "-coz", "--exclude-standard"],
                            check=True, capture_output=True).stdout
    return {os.fsdecode(path) for path in listed.split(b"\0") if path}


def directory_of(room):
    """Where a room's sources are, relative to the root; None if there is no such room."""
    for directory in (f"dqlib/{room}", "dqlib/" + room.replace("_", "/", 1), f"apps/{room}", room):
        if os.path.isdir(os.path.join(ROOT, directory)):
            return directory
    return None


def prepare():
    """Done in the process of a test: what it may use, and the signals as a terminal's user has them."""
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGQUIT):
        signal.signal(number, signal.SIG_DFL)


class Program:
    """A test program, or a test in Python: its command, its tests, and which of them are slow."""

    def __init__(self, name, command, environment, source):
        self.name = name
        self.source = source  # of the copy that the command names
        self.command = command
        self.environment = environment
        self.is_python = any(word.endswith(".py") for word in command)
        self.is_gtest = name.endswith("_test") and not self.is_python
        self.tests = []
        self.slow = []
        self.failing = []
        self.runs = True
        self.seconds = {"quick": 0.0, "slow": 0.0}

    def target(self):
        """What is built for it."""
        return "dqtool" if self.is_python else f"bin/{self.name}"

    def filtered(self, part):
        if self.is_python:
            return self.command + ["--failfast"]
        if not self.is_gtest:
            return self.command
        if part == "slow":
            return self.command + ["--gtest_filter=" + ":".join(self.slow)]
        return self.command + ["--gtest_filter=-" + ":".join(self.slow + self.failing)]


def tests_of(report):
    """(name, what is told) of each test in a report of GoogleTest."""
    with open(report, encoding="utf-8") as file:
        for suite in json.load(file)["testsuites"]:
            for test in suite["testsuite"]:
                yield f"{suite['name']}.{test['name']}", test


class Copy:
    """A copy of the tree with a build of its own."""

    def __init__(self, number):
        self.home = os.path.join(TREES, str(number))
        self.source = os.path.join(self.home, "src")
        self.tree = os.path.join(self.source, "build", "mutate")
        self.environment = dict(
            os.environ, CCACHE_BASEDIR=self.home, CCACHE_NOHASHDIR="1",
            CCACHE_SLOPPINESS="pch_defines,time_macros")

    def refresh(self, wanted):
        """Makes the copied sources those of the tree; what is the same stays untouched."""
        os.makedirs(self.source, exist_ok=True)
        for path in wanted:
            self.write(path, open(os.path.join(ROOT, path), "rb").read())
            shutil.copymode(os.path.join(ROOT, path), os.path.join(self.source, path))
        for directory, directories, names in os.walk(self.source):
            if directory == self.source and "build" in directories:
                directories.remove("build")
            for name in names:
                path = os.path.relpath(os.path.join(directory, name), self.source)
                if path not in wanted:
                    os.remove(os.path.join(directory, name))
        if not os.path.exists(os.path.join(self.tree, "build.ninja")):
            done = self.run(["cmake", "--preset", "mutate"], self.source)
            if done.returncode != 0:
                raise Failure(done.stdout)

    def write(self, path, content):
        full = os.path.join(self.source, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        if not os.path.exists(full) or open(full, "rb").read() != content:
            with open(full, "wb") as file:
                file.write(content)

    def run(self, command, where):
        return subprocess.run(command, cwd=where, env=self.environment, text=True, errors="replace",
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False)

    def build(self, *targets, jobs=1):
        return self.run(["ninja", "-C", self.tree, f"-j{jobs}", *targets], self.home)

    def test(self, program, part, limit, noticed):
        """Whether a part of a program's tests passes within so many seconds. With `noticed`, all of
        its tests run, and the names of those that fail are put in."""
        command = [word.replace(program.source, self.source) for word in program.filtered(part)]
        report = os.path.join(self.home, "report.json")
        if program.is_gtest and noticed is not None:
            command = command + ["--gtest_brief=1", "--gtest_output=json:" + report]
            if os.path.exists(report):
                os.remove(report)
        elif program.is_gtest:
            command = command + ["--gtest_fail_fast", "--gtest_brief=1"]
        environment = {name: value.replace(program.source, self.source)
                       for name, value in program.environment.items()}
        passes = self.confined(command, environment, limit) == 0
        # What ends the program leaves no report.
        if noticed is not None and not passes and os.path.exists(report):
            noticed.update(name for name, test in tests_of(report) if test.get("failures"))
        return passes

    def confined(self, command, environment, limit):
        """The exit status of a command that can write to this copy and to a new /tmp only, and of
        which nothing is left behind; None if it had no end within the limit."""
        if os.geteuid() == 0:
            # The shell stays: the first process of a namespace is deaf to signals and gets orphans.
            script = ('mount --bind "$0" "$0" && mount -t tmpfs tmpfs /tmp && '
                      'mount -o remount,bind,ro / && cd "$1" && shift && HOME=/tmp "$@"; '
                      'status=$?; exit $status')
            command = ["unshare", "-mpf", "--kill-child", "--mount-proc", "sh", "-c", script,
                       self.home, self.tree, *command]
        try:
            return subprocess.run(
                command, cwd=self.tree, env={**os.environ, **environment}, timeout=limit,
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                preexec_fn=prepare, check=False).returncode
        except subprocess.TimeoutExpired:
            return None

    def programs(self):
        """The test programs of the tree in ctest's order, without the tests of the scripts."""
        listed = json.loads(self.run(["ctest", "--show-only=json-v1"], self.tree).stdout)
        found = {}
        for test in listed["tests"]:
            command = test.get("command")
            if not command:
                continue
            python = next((word for word in command[:2] if word.endswith(".py")), None)
            if python and "/tests/apps/" not in python:
                continue
            name = os.path.basename(python or command[0])
            words = command if python or not name.endswith("_test") else command[:1]
            set_to = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
            variables = dict(word.split("=", 1) for word in set_to.get("ENVIRONMENT", []))
            found.setdefault(name, Program(name, words, variables, self.source))
        return list(found.values())


def measure(copy, programs):
    """Runs everything once and notes what takes long, and what can't pass in this confinement."""
    for program in programs:
        command = list(program.command)
        report = os.path.join(copy.home, "report.json")
        if os.path.exists(report):
            os.remove(report)
        if program.is_gtest:
            command += ["--gtest_output=json:" + report, "--gtest_brief=1"]
        began = time.monotonic()
        status = copy.confined(command, program.environment, 900)
        program.runs = status == 0 or (program.is_gtest and os.path.exists(report))
        if not program.runs and program.is_gtest:
            raise Failure(f"{program.name} ends without a report in the unchanged tree")
        if not program.runs:
            print(f"left out, since it fails in the unchanged tree: {program.name}", file=sys.stderr)
            continue
        program.seconds["quick"] = time.monotonic() - began
        if program.is_gtest:
            for name, test in tests_of(report):
                seconds = float(test["time"].rstrip("s"))
                program.tests.append(name)
                if test.get("failures"):
                    program.failing.append(name)
                    print(f"left out, since it fails in the unchanged tree: {name}", file=sys.stderr)
                elif seconds > SLOW_SECONDS:
                    program.slow.append(name)
                    program.seconds["slow"] += seconds
            program.seconds["quick"] -= program.seconds["slow"]


def tests_for(room, programs, levels):
    """The room's own programs, and all that could notice, the own ones first. A host's own are the
    tests in Python, those first that are called like one."""
    heights = {name.replace("/", "_"): height for name, height in levels.items()}

    def level(name):
        return heights.get(name, heights["siblings"])

    is_host = directory_of(room).startswith("apps")
    own = ([program for program in programs if program.name == room + "_test"] if not is_host else
           sorted((program for program in programs if program.is_python),
                  key=lambda program: not program.name.startswith("dqtool_test")))
    others = [program for program in programs if program not in own]
    height = 99 if is_host else level(room)
    above = [program for program in others
             if program.is_python or level(program.name.removesuffix("_test")) >= height]
    return own, own + above


def steps_for(programs):
    """(program, part) in the order in which they are asked."""
    return ([(program, "quick") for program in programs if program.runs] +
            [(program, "slow") for program in programs if program.slow])


def fate(copy, mutant, text, own, steps, noticed):
    """"killed by ...", "survived", or "invalid" where it doesn't compile. `noticed`, if not None,
    gets the names of the room's own tests that notice."""
    copy.write(mutant.path, mutant.applied(text).encode("utf-8", "surrogateescape"))
    try:
        targets = sorted({program.target() for program in own}) or ["all"]
        if copy.build(*targets).returncode != 0:
            return "invalid"
        everything = not own
        for program, part in steps:
            if program not in own and not everything:
                if copy.build("all").returncode != 0:
                    return "invalid"
                everything = True
            if not copy.test(program, part, 10 + 4 * program.seconds[part],
                             noticed if program in own else None):
                return f"killed by {program.name}"
        return "survived"
    finally:
        copy.write(mutant.path, text.encode("utf-8", "surrogateescape"))


def print_tests(own, tallies):
    """Which of the room's own tests noticed how many changes, and how many of them alone."""
    for program in own:
        for name in program.tests:
            alone = sum(1 for tally in tallies if tally == {name})
            print(f"{sum(name in tally for tally in tallies):5}{alone:5} alone  {name}")


def mutate_room(room, copies, programs, levels, words, seed, equivalents):
    count = words.count
    directory = directory_of(room)
    paths = sorted(path for path in git_files()
                   if path.startswith(directory + "/") and path.endswith((".h", ".cpp")))
    texts = {path: open(os.path.join(ROOT, path), encoding="utf-8",
                        errors="surrogateescape").read() for path in paths}
    candidates = mutation.draw(
        [mutant for path in paths for mutant in mutation.mutants_of(path, texts[path])
         if (path, *mutant.before_and_after(texts[path])) not in equivalents],
        random.Random(seed))
    own, noticing = tests_for(room, programs, levels)
    steps = steps_for(noticing)
    free = queue.SimpleQueue()
    for copy in copies:
        free.put(copy)
    fates = collections.Counter()
    survivors = []
    tallies = []

    def try_one(mutant):
        copy = free.get()
        try:
            noticed = set() if words.tests else None
            end = fate(copy, mutant, texts[mutant.path], own, steps, noticed)
            if noticed:
                tallies.append(noticed)
            return mutant, end
        finally:
            free.put(copy)

    with concurrent.futures.ThreadPoolExecutor(len(copies)) as pool:
        running = set()
        while True:
            # As many as are still wanted, if all of them compile.
            while len(running) < min(len(copies), count - fates["killed"] - fates["survived"]):
                mutant = next(candidates, None)
                if mutant is None:
                    break
                running.add(pool.submit(try_one, mutant))
            if not running:
                break
            done, running = concurrent.futures.wait(
                running, return_when=concurrent.futures.FIRST_COMPLETED)
            for future in done:
                mutant, end = future.result()
                fates[end.split()[0]] += 1
                text = texts[mutant.path]
                if end == "survived":
                    survivors.append(mutant)
                if end != "invalid":
                    print(f"{room} {fates['killed'] + fates['survived']}/{count} "
                          f"{mutant.path}:{mutant.line(text)} {mutant.kind}: {end}",
                          file=sys.stderr, flush=True)
    tried = fates["killed"] + fates["survived"]
    for mutant in sorted(survivors, key=lambda each: (each.path, each.start)):
        before, after = mutant.before_and_after(texts[mutant.path])
        print(f"{mutant.path}:{mutant.line(texts[mutant.path])}: {mutant.kind}\n- {before}\n+ {after}")
    if words.tests:
        print_tests(own, tallies)
    rate = 100 * fates["killed"] // tried if tried else 100
    print(f"{room}: {tried} mutants, {fates['killed']} killed, {fates['survived']} survived: "
          f"{rate} in 100", flush=True)


def main():
    parser = argparse.ArgumentParser(prog="mutate", description="Small changes, and who notices.")
    parser.add_argument("rooms", nargs="*", metavar="ROOM",
                        help="a room by the name of its library, as core or framework_base, or a host")
    parser.add_argument("--count", type=int, default=50, help="mutants of each room (50)")
    parser.add_argument("--seed", type=int, help="draws the same mutants again")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1,
                        help="how many at a time (one for each processor)")
    parser.add_argument("--tests", action="store_true",
                        help="tells of each test of the room how many changes it notices")
    words = parser.parse_args()
    for room in words.rooms:
        if directory_of(room) is None:
            parser.error(f"no room named {room}")
    seed = words.seed if words.seed is not None else random.SystemRandom().randrange(10000)

    copies = [Copy(number) for number in range(words.jobs)]
    wanted = git_files()
    wanted = {path for path in wanted if os.path.isfile(os.path.join(ROOT, path))}
    # All at once, so that they are alike even if somebody works on the tree.
    for copy in copies:
        copy.refresh(wanted)
    only_hosts = words.rooms and all(directory_of(room).startswith("apps") for room in words.rooms)
    for copy in copies:
        built = copy.build("dqtool" if only_hosts else "all", jobs=len(copies))
        if built.returncode != 0:
            raise Failure(built.stdout)
    programs = copies[0].programs()
    rooms = words.rooms or [program.name.removesuffix("_test") for program in programs
                            if program.is_gtest and directory_of(
                                program.name.removesuffix("_test"))] + ["common", "dqtool"]
    levels = mutation.read_levels(ROOT)
    measure(copies[0], {program.name: program for room in rooms
                        for program in tests_for(room, programs, levels)[1]}.values())
    listed = os.path.join(ROOT, EQUIVALENTS)
    equivalents = set()
    if os.path.exists(listed):
        equivalents = mutation.read_equivalents(open(listed, encoding="utf-8").read())
    print(f"seed {seed}", flush=True)
    for room in rooms:
        mutate_room(room, copies, programs, levels, words, seed, equivalents)


try:
    main()
except Failure as failure:
    sys.exit(f"mutate: {failure}")
except KeyboardInterrupt:
    sys.exit(130)
