"""Each static check is silent on a clean tree and names file and line of what breaks its rule."""

import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
KEPT = {path: (ROOT / path).read_text(encoding="utf-8")
        for path in ("docs/architecture.md", ".clang-format")}


class CheckTest(unittest.TestCase):
    def check(self, tree):
        """(exit status, lines said) of the check a test is named for, on a tree of path -> text."""
        with tempfile.TemporaryDirectory() as root:
            for path, text in (KEPT | tree).items():
                pathlib.Path(root, path).parent.mkdir(parents=True, exist_ok=True)
                pathlib.Path(root, path).write_text(text, encoding="utf-8")
            (script,) = ROOT.glob(f"scripts/checks/{self._testMethodName[len('test_'):]}.*")
            result = subprocess.run([script, root], text=True, capture_output=True, check=False)
            self.assertEqual(result.stderr, "")
            return result.returncode, result.stdout.splitlines()

    def expect(self, tree, *starts):
        """Exactly one line for each of `starts`, in order; without any the tree is clean."""
        status, lines = self.check(tree)
        self.assertEqual((status, len(lines)), (bool(starts), len(starts)), (tree, lines))
        self.assertEqual([line[:len(start)] for line, start in zip(lines, starts)], list(starts))

    def test_include_direction(self):
        self.expect({"dqlib/core/a.h": '// #include "dqlib/output/b.h"\n'})
        self.expect({"dqlib/odd/a.h": ""}, "dqlib/odd/a.h: stands in no room")
        # A source and what it may include, or, behind a "!", may not.
        for line in """dqlib/core/a.h dqlib/frame/b.h dqlib/core/b.h !dqlib/output/b.h !b.h;
                dqlib/core/a.h !dqlib/nowhere/b.h !tests/support/b.h;
                dqlib/framework/base/a.h !dqlib/framework/windows/b.h;
                dqlib/framework/windows/a.h dqlib/framework/base/b.h;
                dqlib/frame/a.h siblings/pictures/pictures.h; dqlib/editor/a.h !dqlib/workspace/b.h;
                siblings/options/a.h !siblings/pictures/b.h !dqlib/frame/b.h;
                dqlib/scheduler/jobserver/a.h dqlib/scheduler/b.h; apps/common/a.cpp !apps/b/b.h;
                apps/dqtool/a.cpp dqlib/editor/b.h dqlib/dqlib.h apps/common/b.h !apps/b/b.h;
                dqlib/platform/clock.h dqlib/dbvocab/dbms.h;
                dqlib/output/a.h !dqlib/dbvocab/object_type.h !dqlib/dqlib.h""".split(";"):
            path, *includes = line.split()
            for include in includes:
                tree = {path: f'\n  #  include "{include.strip("!")}"\n'}
                self.expect(tree, *[f"{path}:2: "] * include.startswith("!"))

    def test_platform_only(self):
        bad = "#include <unistd.h>\n#ifdef __linux__\n#endif\nint a = fork();\n"
        self.expect({"dqlib/platform/posix/a.cpp": bad, "tests/platform/a_test.cpp": bad,
                     "tests/support/a.h": bad})
        for path in "dqlib/core/a.cpp siblings/options/a.cpp apps/b/a.cpp tests/core/a.cpp".split():
            self.expect({path: bad}, f"{path}:1: <unistd.h>", f"{path}:2: #if on __linux__",
                        f"{path}:4: the call fork")
        good = ("#include <vector>\n#include <cstdio>\n// fork() and <unistd.h>\n"
                'const char* a = "getenv(" ;\nclock->time(); Store::remove(x);\n'
                "#if DQ_FEATURE && __has_include(<format>)\n#endif\nint n = 1'000'000;\n"
                'auto b = R"(#ifdef _WIN32\nfork())";\nchar c = \'"\'; bool isatty_ = true;\n')
        of_test = "#include <gtest/gtest.h>\n#include <filesystem>\n"
        self.expect({"dqlib/core/a.cpp": good, "tests/core/a_test.cpp": of_test})
        for line in """#include <filesystem>; #include <sys/stat.h>; #include <gtest/gtest.h>;
                auto a = std::getenv("HOME"); int a = system("ls"); auto a = ::getpid();
                auto a = std::chrono::steady_clock::now(); #if defined(_WIN32);
                #ifdef __GLIBC__; #if __GLIBC_PREREQ(2, 34); #if __has_include(<unistd.h>);
                #elif defined(__APPLE__)""".split(";"):
            text = f"#if 0\n#endif\n{line.strip()}\n"
            self.expect({"dqlib/core/a.cpp": text}, "dqlib/core/a.cpp:3: ")
        of_layer = "#include <wx/app.h>\n#include <gtk/gtk.h>\n"
        self.expect({"apps/workbench/layer/a.cpp": of_layer})
        self.expect({"apps/workbench/a.cpp": of_layer}, "apps/workbench/a.cpp:2: <gtk/gtk.h>")

    def test_build_lists(self):
        tree = {
            "tests/CMakeLists.txt": "dqlib_test(core SOURCES a_test.cpp # b_test.cpp\n)\n"
                                    "dqlib_python_test(apps/c_test.py)\n",
            "fuzzing/CMakeLists.txt": "dqlib_fuzz(d LIBS x)\n",
            "dqlib/CMakeLists.txt": "dqlib_room(NAME core SOURCES core/e.cpp)\n",
        } | dict.fromkeys("""tests/core/a_test.cpp tests/apps/c_test.py fuzzing/d_fuzz.cpp
                             dqlib/core/e.cpp""".split(), "")
        self.expect(tree)
        for path in """tests/core/b_test.cpp tests/output/a_test.cpp tests/apps/d_test.py
                       tests/core/helper.cpp fuzzing/e_fuzz.cpp dqlib/core/f.cpp
                       dqlib/frame/core/e.cpp benchmarks/g.cpp""".split():
            self.expect({**tree, path: ""}, f"{path}: not named in ")

    def test_public_headers(self):
        umbrella = "dqlib/dqlib.h"
        tree = {umbrella: '#include "dqlib/core/a.h"\n#include "siblings/options/b.h"\n',
                "dqlib/core/a.h": "", "siblings/options/b.h": "", "dqlib/core/a.cpp": "",
                "dqlib/framework/base/text.h": "", "dqlib/platform/posix/c.h": ""}
        self.expect(tree)
        for path in ["dqlib/core/c.h", "siblings/pictures/c.h", "dqlib/platform/posix.h"]:
            self.expect({**tree, path: ""}, f"{path}: neither included by")
        tree[umbrella] += '#include "dqlib/framework/base/text.h"\n'
        self.expect(tree, f"{umbrella}: includes dqlib/framework/base/text.h")

    def test_text_ids(self):
        ids, table = "dqlib/resources/string_ids.h", "dqlib/resources/string_table.cpp"
        framework, lost = "dqlib/framework/base/framework_strings.cpp", f"{ids}:3: IDS_B (2) has no"
        seam = "dqlib/platform/seam_texts.h"
        tree = {
            ids: "enum StringId : UINT {\n  IDS_A = 1,\n  IDS_B = 0x2,  // IDS_C = 2\n};\n",
            table: '    {IDS_A, "a {1, \\"x\\"}"},\n    {IDS_B,\n     "b"},\n',
            framework: '    {57344, "c"},\n    {57345, "d"},\n',
            seam: 'enum I {\n  IDS_S = 7,\n};\n{IDS_S, "s"},\n',
        }
        for path, old, new, *starts in [
            (ids, "}", "  IDS_HOST = 57346,\n}"),
            (ids, "0x2,", "1,", f"{ids}:3: text id 1 (IDS_B) is defined",
             f"{table}:2: text id 1 has a text"),
            (ids, "};", "  IDS_D = 4,\n};", f"{ids}:4: IDS_D (4) has no text"),
            (table, "{IDS_B,", "{IDS_A,", f"{table}:2: text id 1 has a text", lost),
            (framework, "57345", "57344", f"{framework}:2: text id 57344 has a text"),
            (framework, "57345", "0x2", f"{table}:2: text id 2 has a text"),
            (seam, "{IDS_S", "{IDS_A", f"{table}:1: text id 1 has", f"{seam}:2: IDS_S (7) has no"),
            (table, "{IDS_B,", "{IDS_D,", f"{table}:2: IDS_D is no known", lost),
        ]:
            self.expect({**tree, path: tree[path].replace(old, new)}, *starts)

    def test_shown_texts(self):
        for path, text, *starts in [
            ("dqlib/core/a.cpp", '// "No file."\nShow("Yes", "a b");\nAfxTrace("No file.");\n'),
            ("dqlib/resources/string_table.cpp", '{1, "No file."},\n'),
            ("apps/dqtool/a.cpp", 'Complain("No file.");\n'),
            ("dqlib/core/a.cpp", 'Trace("No a");\nShow("\\n",\n     "No, no.");\n',
             'dqlib/core/a.cpp:3: "No, no." stands in no'),
        ]:
            self.expect({path: text}, *starts)

    def test_forbidden_words(self):
        self.expect({"a.h": "// special parts 12, part 6 of the specimen, work/\n"})
        # Put together here, so that the check doesn't find them in this file.
        for words in """the sp|ec says; Specifi|cation; sp|ec.md; Par|t 1.2; Par|ts 4.1 and 4.2;
                        Par|t 6; THE SP|EC; /wo|rk/main; the is|sue; is|sue 7; a rul|ing""".split(";"):
            self.expect({"docs/a.md": "\n" + words.strip().replace("|", "")}, "docs/a.md:2: ")
        self.expect({"sp" + "ec.md": ""}, "sp" + "ec.md: the name")

    def test_test_share(self):
        code = {"dqlib/core/a.h": "int a;\n" * 6, "apps/b.py": "b = 1\n" * 4}
        for line, count, status in [("int t;\n\n// t\n", 3, 0), ("int t;\n", 4, 1)]:
            tree = {"tests/core/a_test.cpp": line * (count - 1), "fuzzing/a.py": "t = 1\n# t\n"}
            said = f"tests and fuzz targets: {count} lines to 10 of code, 0.{count}00"
            self.assertEqual(self.check(code | tree),
                             (status, [said + ", more than one to 3" * status]))

    def test_format(self):
        self.expect({"dqlib/core/a.h": "int a = 1;\n"})
        status, lines = self.check({"dqlib/core/a.h": "int  a=1;\n"})
        self.assertEqual(status, 1)
        self.assertIn("+int a = 1;", lines)


unittest.main()
