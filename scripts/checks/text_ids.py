#!/usr/bin/env python3
"""No string id is defined twice, and every named id of the library has its text.

From 57344 on texts are the framework's, and a few of them are left to the host. Looks at the
enumerators of *_ids.h and the rows of the string tables of library and framework; *_texts.h has
both.
"""

import re

import _tree

FIRST_OF_FRAMEWORK = 57344

ENUMERATOR = re.compile(r"^\s*(IDS_\w+)\s*=\s*(0[xX][0-9a-fA-F]+|\d+)\s*,?", re.MULTILINE)
ROW = re.compile(r'\{\s*(IDS_\w+|0[xX][0-9a-fA-F]+|\d+)\s*,\s*(?:R?"|\w+\s*\})')


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def main():
    root = _tree.root_argument()
    complaints = []
    numbers = {}  # enumerator -> number
    places = {}  # number -> where its enumerator stands
    for path in _tree.files(root, ("_ids.h", "_texts.h"), "dqlib"):
        text = _tree.code_only(_tree.read(root, path))
        for match in ENUMERATOR.finditer(text):
            name, number = match[1], int(match[2], 0)
            where = f"{path}:{line_of(text, match.start(1))}"
            if number in places:
                complaints.append(f"{where}: text id {number} ({name}) is defined at "
                                  f"{places[number]} too")
            places.setdefault(number, where)
            numbers[name] = number

    rows = {}  # number -> where its row stands
    for path in _tree.files(root, ("string_table.cpp", "_strings.cpp", "_texts.h"), "dqlib"):
        text = _tree.code_only(_tree.read(root, path), keep_strings=True)
        for match in ROW.finditer(text):
            where = f"{path}:{line_of(text, match.start(1))}"
            key = match[1]
            number = numbers.get(key) if key.startswith("IDS_") else int(key, 0)
            if number is None:
                complaints.append(f"{where}: {key} is no known text id")
            elif number in rows:
                complaints.append(f"{where}: text id {number} has a text at {rows[number]} too")
            else:
                rows[number] = where

    complaints += [f"{places[number]}: {name} ({number}) has no text"
                   for name, number in numbers.items()
                   if number not in rows and number < FIRST_OF_FRAMEWORK]
    _tree.finish(complaints)


main()
