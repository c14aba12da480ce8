"""Small changes of C++ sources that a test should notice."""

import os
import re
import sys
from dataclasses import dataclass

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "checks"))
import _tree  # noqa: E402

read_levels = _tree.read_levels


@dataclass(frozen=True)
class Mutant:
    """One change: the text from `start` to `end` of a file becomes `new`."""

    path: str
    kind: str
    start: int
    end: int
    new: str

    def applied(self, text):
        return text[: self.start] + self.new + text[self.end :]

    def line(self, text):
        return text.count("\n", 0, self.start) + 1

    def before_and_after(self, text):
        """The changed lines as they are and as they become, without blanks around."""
        first = text.rfind("\n", 0, self.start) + 1
        last = text.find("\n", self.end)
        last = len(text) if last < 0 else last
        after = text[first : self.start] + self.new + text[self.end : last]
        return (" ".join(text[first:last].split()), " ".join(after.split()))


_OPPOSITES = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
              "+": "-", "-": "+", "+=": "-=", "-=": "+=", "++": "--", "--": "++",
              "&&": "||", "||": "&&", "true": "false", "false": "true"}
_TOKENS = [
    ("comparison", re.compile(r"(?<= )(<=|>=|==|!=|<|>)(?= )")),
    ("sign", re.compile(r"(?<=[\w)\]] )(\+|-|\+=|-=)(?= )|(?<![+-])(\+\+|--)(?![+-])")),
    ("condition", re.compile(r"(?<= )(&&|\|\|)(?=\s)|\b(true|false)\b")),
]
_NUMBER = re.compile(r"(?<![\w.'])(\d+)(?![\w.'])")
_IF = re.compile(r"\b(?:if|while) \(")
_CALL = re.compile(r"^ +(?!return\b|throw\b|delete\b|else\b|using\b|case\b|static_assert\b|goto\b)"
                   r"[\w:.\[\]*]+(?:->[\w:.\[\]]+|\(\)[.\->]+\w+)*\([^{};]*\);$", re.MULTILINE)
_ARGUMENTS = re.compile(r"(?<=[\w>]\()([\w.:\"]+(?:\(\))?), ([\w.:\"]+(?:\(\))?)(?=[,)])")
_NO_CODE = re.compile(r"^\s*(#|static_assert\b|template\b|using\b|namespace\b).*$", re.MULTILINE)


def _blank(match):
    return re.sub(r"[^\n]", " ", match.group(0))


def _closing(code, start):
    """The position of the parenthesis that closes the one at `start`, or -1."""
    depth = 0
    for position in range(start, len(code)):
        depth += {"(": 1, ")": -1}.get(code[position], 0)
        if depth == 0:
            return position
    return -1


def _conditions(code):
    for match in _IF.finditer(code):
        start = match.end()
        end = _closing(code, start - 1)
        condition = code[start:end]
        # What declares a variable can't be negated in place.
        if end > 0 and ";" not in condition and not re.search(r"[^=!<>]=[^=]", condition):
            yield start, end


def _letters(text, code):
    """Positions of the letters and digits inside of texts in quotes."""
    for match in _tree.literals(text):
        if code[match.start()] != '"' and 'R"' not in match.group(0)[:4]:
            continue
        begin = text.index('"', match.start()) + 1
        for position in range(begin, match.end() - 1):
            if text[position].isalnum() and text[position - 1] != "\\":
                yield position


def _next_letter(letter):
    return {"z": "a", "Z": "A", "9": "0"}.get(letter, chr(ord(letter) + 1))


def mutants_of(path, text):
    """All changes of a source, whatever a compiler thinks of them."""
    quoted = _NO_CODE.sub(_blank, _tree.code_only(text, keep_strings=True))
    code = _NO_CODE.sub(_blank, _tree.code_only(text))
    for kind, pattern in _TOKENS:
        for match in pattern.finditer(code):
            yield Mutant(path, kind, match.start(), match.end(), _OPPOSITES[match.group(0)])
    for match in _NUMBER.finditer(code):
        yield Mutant(path, "constant", match.start(), match.end(), str(int(match.group(0)) + 1))
    for start, end in _conditions(code):
        yield Mutant(path, "condition", start, end, f"!({text[start:end]})")
    for match in _CALL.finditer(code):
        yield Mutant(path, "call", match.start(), match.end(), ";")
    for match in _ARGUMENTS.finditer(quoted):
        if match[1] != match[2]:
            yield Mutant(path, "arguments", match.start(), match.end(), f"{match[2]}, {match[1]}")
    for position in _letters(text, quoted):
        yield Mutant(path, "text", position, position + 1, _next_letter(text[position]))


def read_equivalents(text):
    """(path, before, after) of each change that was set aside by hand.

    The file has blocks: a path, "- " and the lines as they are, "+ " and what they become, "# " and
    why nothing can notice."""
    found = set()
    path = before = None
    for line in text.split("\n"):
        if line.startswith("- "):
            before = line[2:]
        elif line.startswith("+ "):
            found.add((path, before, line[2:]))
        elif line and not line.startswith("#"):
            path = line
    return found


def draw(mutants, random):
    """All mutants in the order in which they are taken: one of each kind, then again.

    Without this, rooms of long tables would see nothing but letters and numbers."""
    kinds = {}
    for mutant in mutants:
        kinds.setdefault(mutant.kind, []).append(mutant)
    for each in kinds.values():
        random.shuffle(each)
    while kinds:
        for kind in sorted(kinds):
            yield kinds[kind].pop()
            if not kinds[kind]:
                del kinds[kind]
