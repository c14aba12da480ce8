#!/usr/bin/env python3
"""Every test, fuzz target, benchmark and source of the tree is named in a CMake list.

A file that no list names is never compiled, and nobody misses it.
"""

import re

import _tree


def lists_of(root, path):
    """(function, words) of each call in a CMake file; none if the file isn't there."""
    try:
        text = _tree.read(root, path)
    except FileNotFoundError:
        return []
    text = re.sub(r"#[^\n]*", "", text)
    return [(match[1], match[2].split()) for match in re.finditer(r"(\w+)\s*\(([^()]*)\)", text)]


def tests(root):
    named = set()
    for function, words in lists_of(root, "tests/CMakeLists.txt"):
        if function == "dqlib_test":
            named.update(f"tests/{words[0]}/{word}" for word in words[1:])
        elif function == "dqlib_python_test":
            named.add(f"tests/{words[0]}")
        else:
            named.update(f"tests/{word}" for word in words)
    for path in _tree.files(root, (".cpp", "_test.py"), "tests"):
        if path not in named:
            yield path, "tests/CMakeLists.txt"


def fuzz_targets(root):
    named = {words[0] for function, words in lists_of(root, "fuzzing/CMakeLists.txt")
             if function == "dqlib_fuzz"}
    for path in _tree.files(root, ("_fuzz.cpp",), "fuzzing"):
        if path.split("/")[-1][: -len("_fuzz.cpp")] not in named:
            yield path, "fuzzing/CMakeLists.txt"


def sources(root):
    """Of the other directories: a source is named by the CMake list of its directory or above."""
    for top in ("dqlib", "siblings", "apps", "benchmarks"):
        for path in _tree.files(root, (".cpp",), top):
            parts = path.split("/")
            for depth in range(len(parts) - 1, 0, -1):
                own = "/".join(parts[:depth])
                rest = "/".join(parts[depth:])
                if any(rest in words for _, words in lists_of(root, f"{own}/CMakeLists.txt")):
                    break
            else:
                yield path, "a CMakeLists.txt"


def main():
    root = _tree.root_argument()
    _tree.finish([f"{path}: not named in {where}"
                  for kind in (tests, fuzz_targets, sources) for path, where in kind(root)])


main()
