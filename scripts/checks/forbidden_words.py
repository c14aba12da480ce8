#!/usr/bin/env python3
"""The tree speaks of the system only, never of the papers and places of those who write it.

The patterns are written so that they don't match themselves.
"""

import re

import _tree

PATTERNS = [
    r"\b[Tt]he spe[c]\b",
    r"[Ss]pecificatio[n]",
    r"\bspe[c]\.md",
    r"\bParts? [1-9]\.[0-9]",
    r"/wor[k]/",
    r"\b[Tt]he issu[e]\b",
    r"\b[Ii]ssu[e] #?[0-9]",
    r"\b[Rr]ulin[g]s?\b",
]
FORBIDDEN = re.compile("|".join(PATTERNS))


def main():
    root = _tree.root_argument()
    complaints = []
    for path in _tree.files(root):
        if FORBIDDEN.search("/" + path):
            complaints.append(f"{path}: the name has a word that doesn't belong into the tree")
        text = _tree.read(root, path)
        for match in FORBIDDEN.finditer(text):
            line = text.count("\n", 0, match.start()) + 1
            complaints.append(f"{path}:{line}: '{match[0]}' doesn't belong into the tree")
    _tree.finish(complaints)


main()
