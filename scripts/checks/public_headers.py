#!/usr/bin/env python3
"""dqlib/dqlib.h includes every header of dqlib/ and siblings/ but the internal ones, and only those.

Internal are the headers and directories that docs/architecture.md lists behind '<!-- internal -->'.
"""

import re
import sys

import _tree

UMBRELLA = "dqlib/dqlib.h"
LIST = "docs/architecture.md"


def read_internal(root):
    match = re.search(r"<!-- internal -->\s*```\w*\n(.*?)```", _tree.read(root, LIST), re.DOTALL)
    if not match:
        sys.exit(f"{LIST}: no list of headers behind '<!-- internal -->'")
    return match.group(1).split()


def main():
    root = _tree.root_argument()
    internal = read_internal(root)
    headers = [path for top in ("dqlib", "siblings") for path in _tree.files(root, (".h",), top)
               if path != UMBRELLA]
    if not headers:
        return
    included = {name for _, name, _ in _tree.includes(_tree.code_only(_tree.read(root, UMBRELLA)))}
    complaints = []
    for path in headers:
        is_internal = any(path == line or (line.endswith("/") and path.startswith(line))
                          for line in internal)
        if is_internal and path in included:
            complaints.append(f"{UMBRELLA}: includes {path}, which {LIST} lists as internal")
        elif not is_internal and path not in included:
            complaints.append(f"{path}: neither included by {UMBRELLA} nor listed in {LIST}")
    _tree.finish(complaints)


main()
