#!/usr/bin/env python3
"""Sentences stand in the string tables, where a translation finds them, and not where they are shown.

A sentence is a text that begins with a capital letter and goes on with another word. Traces, and
what only a programmer sees, may have theirs.
"""

import re

import _tree

SENTENCE = re.compile(r'"\s*[A-Z][a-z]*,? [a-z]{2}')
TABLES = ("string_table.cpp", "_strings.cpp", "_texts.h", "resources/dialogs.cpp")
OTHERS = re.compile(r"(Trace|static_assert|Fail|logic_error)\s*\(")


def main():
    root = _tree.root_argument()
    complaints = []
    for top in ("dqlib", "siblings"):
        for path in _tree.files(root, _tree.SOURCE_SUFFIXES, top):
            if path.endswith(TABLES):
                continue
            text = _tree.read(root, path)
            for match in _tree.literals(text):
                statement = re.split(r"[;{}]", text[:match.start()])[-1]
                if SENTENCE.match(match[0]) and not OTHERS.search(statement):
                    line = text.count("\n", 0, match.start()) + 1
                    complaints.append(f"{path}:{line}: {match[0]} stands in no string table")
    _tree.finish(complaints)


main()
