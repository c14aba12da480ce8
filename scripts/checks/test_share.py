#!/usr/bin/env python3
"""Tests and fuzz targets keep to their share of the lines of the code that they test.

Counted are lines that are neither blank nor comment, in C++ and Python. More lines seldom catch
more: rows of a table do.
"""

import _tree

# Lines of code to one of the tests, at least.
LEAST = 3
SUFFIXES = _tree.SOURCE_SUFFIXES + (".py",)


def lines_of(root, path):
    text = _tree.read(root, path)
    if path.endswith(".py"):
        return sum(1 for line in text.split("\n") if line.strip() and line.strip()[0] != "#")
    return sum(1 for line in _tree.code_only(text, keep_strings=True).split("\n") if line.strip())


def lines_below(root, *directories):
    return sum(lines_of(root, path) for top in directories for path in _tree.files(root, SUFFIXES, top))


def main():
    root = _tree.root_argument()
    code = lines_below(root, "dqlib", "siblings", "apps")
    tests = lines_below(root, "tests", "fuzzing")
    said = f"tests and fuzz targets: {tests} lines to {code} of code, {tests / max(code, 1):.3f}"
    if code < LEAST * tests:
        _tree.finish([f"{said}, more than one to {LEAST}"])
    print(said)


main()
