#!/usr/bin/env python3
"""Includes point down the list of levels in docs/architecture.md, and rooms of a level keep apart.

Checks dqlib/, siblings/ and apps/. Each line of the list is a level, its rooms separated by "|".
"""

import _tree

# The platform enumeration alone, which every room may name.
FREE = {"dqlib/dbvocab/dbms.h"}
# Everything that a host may see; only hosts include it.
UMBRELLA = "dqlib/dqlib.h"


def room_of(path, levels):
    """(level, room) of a file, or None. Each sibling and each host is a room of its own, some with
    a level of its own."""
    parts = path.split("/")
    if parts[0] in ("siblings", "apps"):
        room = "/".join(parts[:2])
        return levels.get(room, levels[parts[0]]), room
    if parts[0] != "dqlib" or len(parts) < 3:
        return None
    room = "/".join(parts[1:3]) if parts[1] == "framework" else parts[1]
    return (levels[room], room) if room in levels else None


def main():
    root = _tree.root_argument()
    levels = _tree.read_levels(root)
    complaints = []
    for top in ("dqlib", "siblings", "apps"):
        for path in _tree.files(root, _tree.SOURCE_SUFFIXES, top):
            if path == UMBRELLA:
                continue
            own = room_of(path, levels)
            if own is None:
                complaints.append(f"{path}: stands in no room of docs/architecture.md")
                continue
            for line, name, angled in _tree.includes(_tree.code_only(_tree.read(root, path))):
                where = f"{path}:{line}"
                if angled or name in FREE:
                    continue
                if name == UMBRELLA:
                    if top != "apps":
                        complaints.append(f"{where}: {name} is for hosts only")
                    continue
                if "/" not in name or name.startswith("."):
                    complaints.append(f"{where}: name {name} from the root of the tree")
                    continue
                other = room_of(name, levels)
                if other is None:
                    complaints.append(f"{where}: {name} is in no room that may be included here")
                elif other[1] != own[1] and other[0] >= own[0]:
                    relation = "beside" if other[0] == own[0] else "above"
                    complaints.append(
                        f"{where}: {own[1]} must not include {other[1]}, which is {relation} it")
    _tree.finish(complaints)


main()
