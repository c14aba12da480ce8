#!/usr/bin/env python3
"""The tree speaks of the system only, never of the papers and places of those who write it.

The patterns are written so that they don't match themselves.
"""

import re

import _tree

PATTERNS = [
    r"\bthe spe[c]\b",
    r"specificatio[n]",
    r"\bspe[c]\.md",
    # With a capital, for any file may have a part 2.
    r"(?-i:\bParts? [1-9])",
    r"/wor[k]/",
    r"\bthe issu[e]\b",
    r"\bissu[e] #?[0-9]",
    r"\brulin[g]s?\b",
]
FORBIDDEN = re.compile("|".join(PATTERNS), re.IGNORECASE)


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
