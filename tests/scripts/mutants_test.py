"""The small changes that ./mutate makes of a source."""

import os
import random
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "../../scripts"))
import mutants  # noqa: E402


class MutantsTest(unittest.TestCase):
    def test_each_kind(self):
        for line, *expected in [
            ("  x = a < b;", "comparison x = a <= b;"), ("  x = a != b;", "comparison x = a == b;"),
            ("  x = a - b;", "sign x = a + b;"), ("  ++x;", "sign --x;"),
            ("  x = a && b;", "condition x = a || b;"), ("  x = 9;", "constant x = 10;"),
            ("  return true;", "condition return false;"), ("  f(x);", "call ;"),
            ("  if (f(x)) return y;", "condition if (!(f(x))) return y;"),
            ("  a->b().f(x);", "call ;"), ("  f();\n  g();\n", "call ;", "call ;"),
            ("  x = f(a, b.c());", "arguments x = f(b.c(), a);"),
            ('  x = "a";', 'text x = "b";'), ('  x = "\\n-z";', 'text x = "\\n-a";'),
            # A comparison of two lines, named by both.
            ("  x = a >\n      b;",),
            # No code, or nothing that could be changed so.
            ("  // x = a < b;",), ("  std::vector<int> x;",), ("#if 3",),
            ("  if (int* x = f()) y();",), ("  Type x(y);",),
        ]:
            changes = sorted(f"{mutant.kind} {mutant.before_and_after(line)[1]}"
                             for mutant in mutants.mutants_of("a.cpp", line))
            self.assertEqual(changes, expected, line)

    def test_a_change_is_told_by_its_place(self):
        text = "int a;\nint b = 7;\n"
        (mutant,) = mutants.mutants_of("a.cpp", text)
        self.assertEqual((mutant.line(text), mutant.before_and_after(text), mutant.applied(text)),
                         (2, ("int b = 7;", "int b = 8;"), "int a;\nint b = 8;\n"))

    def test_kinds_take_turns(self):
        text = 'x("aaaaaaaaaa", 1, a < b);'
        drawn = list(mutants.draw(mutants.mutants_of("a.cpp", text), random.Random(1)))
        self.assertEqual([mutant.kind for mutant in drawn[:4]],
                         ["arguments", "comparison", "constant", "text"])
        self.assertEqual(len(drawn), 13)

    def test_equivalents(self):
        self.assertEqual(mutants.read_equivalents("a.cpp\n- x = 1;\n+ x = 2;\n# why\n\nb.cpp\n- y\n+ z\n"),
                         {("a.cpp", "x = 1;", "x = 2;"), ("b.cpp", "y", "z")})


unittest.main()
