"""What the checks share: the files of a tree, and C++ text without comments and literals."""

import os
import re
import sys

SOURCE_SUFFIXES = (".h", ".cpp")
SKIPPED = {".git", "build", "__pycache__"}


def root_argument():
    """The tree to look at: the only argument, or the working directory."""
    return sys.argv[1] if len(sys.argv) > 1 else "."


def files(root, suffixes=None, below=""):
    """Paths of the tree's files below a directory, relative to the root, with '/', sorted."""
    found = []
    for directory, subdirectories, names in os.walk(os.path.join(root, below)):
        subdirectories[:] = [d for d in subdirectories if d not in SKIPPED]
        for name in names:
            # In a second work tree ".git" is a file.
            if name not in SKIPPED and (suffixes is None or name.endswith(suffixes)):
                path = os.path.relpath(os.path.join(directory, name), root)
                found.append(path.replace(os.sep, "/"))
    return sorted(found)


def read(root, path):
    with open(os.path.join(root, path), encoding="utf-8", errors="replace", newline="") as file:
        return file.read()


_TOKEN = re.compile(
    r'//[^\n]*|/\*.*?\*/|(?<![0-9A-Za-z_])(?:u8|[uUL])?R"([^()\\ \n]*)\(.*?\)\1"'
    r'|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Za-z_])\'(?:\\.|[^\'\\\n])*\'',
    re.DOTALL,
)


def code_only(text, keep_strings=False):
    """C++ text with comments, and texts in quotes unless asked otherwise, blanked out.

    Line numbers stay, and so does the file name of an #include."""

    def blank(match):
        token = match.group(0)
        if not token.startswith(("//", "/*")):
            line_start = text.rfind("\n", 0, match.start()) + 1
            if keep_strings or re.match(r"\s*#\s*include\b", text[line_start:match.start()]):
                return token
        return re.sub(r"[^\n]", " ", token)

    return _TOKEN.sub(blank, text)


def literals(text):
    """A match for each text in quotes, and each character, outside of comments."""
    return (match for match in _TOKEN.finditer(text) if not match.group(0).startswith(("//", "/*")))


def includes(code):
    """(line number, file name, is in angle brackets) of each #include of `code_only` text."""
    for number, line in enumerate(code.split("\n"), 1):
        match = re.match(r'\s*#\s*include\s*(?:<([^>]*)>|"([^"]*)")', line)
        if match:
            yield number, match.group(1) or match.group(2), match.group(1) is not None


def read_levels(root):
    """Room name -> level, the lowest being 0."""
    text = read(root, "docs/architecture.md")
    match = re.search(r"<!-- levels -->\s*```\w*\n(.*?)```", text, re.DOTALL)
    if not match:
        sys.exit("docs/architecture.md: no list of levels behind '<!-- levels -->'")
    lines = [line for line in match.group(1).split("\n") if line.strip()]
    levels = {}
    for level, line in enumerate(reversed(lines)):
        for room in line.split("|"):
            levels[room.strip()] = level
    return levels


def finish(complaints):
    """Prints the complaints, one a line, and ends the program with 1 if there are any, else 0."""
    for complaint in complaints:
        print(complaint)
    sys.exit(1 if complaints else 0)
