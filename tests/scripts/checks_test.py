"""Each static check is silent on a clean tree and names file and line of what breaks its rule."""

import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
KEPT = {path: (ROOT / path).read_text(encoding="utf-8")
        for path in ("docs/architecture.md", ".clang-format")}


class CheckTest(unittest.TestCase):
    def check(self, script, tree):
        """(exit status, lines said) of a check on a tree of path -> text."""
        with tempfile.TemporaryDirectory() as root:
            for path, text in (KEPT | tree).items():
                pathlib.Path(root, path).parent.mkdir(parents=True, exist_ok=True)
                pathlib.Path(root, path).write_text(text, encoding="utf-8")
            result = subprocess.run([ROOT / "scripts" / "checks" / script, root], text=True,
                                    capture_output=True, check=False)
            self.assertEqual(result.stderr, "")
            return result.returncode, result.stdout.splitlines()

    def expect_clean(self, script, tree):
        self.assertEqual(self.check(script, tree), (0, []), tree)

    def expect_complaint(self, script, tree, *starts):
        """Exactly one line for each of `starts`, in order."""
        status, lines = self.check(script, tree)
        self.assertEqual((status, len(lines)), (1, len(starts)), (tree, lines))
        self.assertEqual([line[:len(start)] for line, start in zip(lines, starts)], list(starts))

    def test_include_direction(self):
        script = "include_direction.py"
        self.expect_clean(script, {
            "dqlib/core/a.cpp": '#include "dqlib/frame/b.h"\n#include "dqlib/core/b.h"\n',
            "dqlib/core/a.h": '// #include "dqlib/output/b.h"\n',
            "dqlib/frame/a.h": '#include "siblings/pictures/pictures.h"\n',
            "dqlib/framework/windows/a.h": '#include "dqlib/framework/base/b.h"\n',
            "dqlib/scheduler/jobserver/a.h": '#include "dqlib/scheduler/b.h"\n',
            "dqlib/platform/clock.h": '#include "dqlib/dbvocab/dbms.h"\n',
            "apps/dqtool/a.cpp": '#include "dqlib/editor/b.h"\n#include "dqlib/dqlib.h"\n',
            "apps/dqtool/b.cpp": '#include "apps/common/b.h"\n'})
        for path, includes in {
            "dqlib/core/a.h": "dqlib/output/b.h dqlib/nowhere/b.h tests/support/b.h b.h",
            "dqlib/framework/base/a.h": "dqlib/framework/windows/b.h",
            "dqlib/editor/a.h": "dqlib/workspace/b.h",
            "siblings/options/a.h": "siblings/pictures/b.h dqlib/frame/b.h",
            "apps/dqtool/a.cpp": "apps/jobserver/b.h", "apps/common/a.cpp": "apps/dqtool/b.h",
            "dqlib/output/a.h": "dqlib/dbvocab/object_type.h dqlib/dqlib.h",
        }.items():
            for include in includes.split():
                self.expect_complaint(script, {path: f'\n  #  include "{include}"\n'}, f"{path}:2: ")
        self.expect_complaint(script, {"dqlib/odd/a.h": ""}, "dqlib/odd/a.h: stands in no room")

    def test_platform_only(self):
        script = "platform_only.py"
        bad = "#include <unistd.h>\n#ifdef __linux__\n#endif\nint a = fork();\n"
        self.expect_clean(script, {"dqlib/platform/posix/a.cpp": bad,
                                   "tests/platform/a_test.cpp": bad, "tests/support/a.h": bad})
        for path in ["dqlib/core/a.cpp", "siblings/options/a.cpp", "apps/dqtool/a.cpp",
                     "tests/core/a_test.cpp"]:
            self.expect_complaint(script, {path: bad}, f"{path}:1: <unistd.h>",
                                  f"{path}:2: #if on __linux__", f"{path}:4: the call fork")
        texts = ("#include <vector>\n#include <cstdio>\n", "// fork() and <unistd.h>\n",
                 'const char* a = "getenv(" ;\n', "clock->time(); Store::remove(x);\n",
                 "#if DQ_FEATURE && __has_include(<format>)\n#endif\n",
                 'auto b = R"(#ifdef _WIN32\nfork())";\n',
                 "int n = 1'000'000; char c = '\"'; bool isatty_ = true;\n")
        self.expect_clean(script, {f"dqlib/core/{i}.cpp": text for i, text in enumerate(texts)} | {
            "tests/core/a_test.cpp": "#include <gtest/gtest.h>\n#include <filesystem>\n"})
        for line in """#include <filesystem>; #include <sys/stat.h>; #include <gtest/gtest.h>
                auto a = std::getenv("HOME"); int a = system("ls"); auto a = ::getpid();
                auto a = std::chrono::steady_clock::now(); #if defined(_WIN32)
                #ifdef __GLIBC__; #if __GLIBC_PREREQ(2, 34); #if __has_include(<unistd.h>)
                #elif defined(__APPLE__)""".replace("\n", ";").split(";"):
            if line := line.strip():
                self.expect_complaint(script, {"dqlib/core/a.cpp": f"#if 0\n#endif\n{line}\n"},
                                      "dqlib/core/a.cpp:3: ")

    def test_build_lists(self):
        script = "build_lists.py"
        tree = {
            "tests/CMakeLists.txt": "dqlib_test(core SOURCES a_test.cpp # b_test.cpp\n)\n"
                                    "dqlib_python_test(apps/c_test.py)\n",
            "fuzzing/CMakeLists.txt": "dqlib_fuzz(d LIBS x)\n",
            "dqlib/CMakeLists.txt": "dqlib_room(NAME core SOURCES core/e.cpp)\n",
        } | dict.fromkeys("""tests/core/a_test.cpp tests/apps/c_test.py fuzzing/d_fuzz.cpp
                             dqlib/core/e.cpp""".split(), "")
        self.expect_clean(script, tree)
        for path in """tests/core/b_test.cpp tests/output/a_test.cpp tests/apps/d_test.py
                       tests/core/helper.cpp fuzzing/e_fuzz.cpp dqlib/core/f.cpp
                       dqlib/frame/core/e.cpp benchmarks/g.cpp""".split():
            self.expect_complaint(script, {**tree, path: ""}, f"{path}: not named in ")

    def test_public_headers(self):
        script, umbrella = "public_headers.py", "dqlib/dqlib.h"
        tree = {umbrella: '#include "dqlib/core/a.h"\n#include "siblings/options/b.h"\n',
                "dqlib/core/a.h": "", "siblings/options/b.h": "", "dqlib/core/a.cpp": "",
                "dqlib/framework/base/text.h": "", "dqlib/platform/posix/c.h": ""}
        self.expect_clean(script, tree)
        for path in ["dqlib/core/c.h", "siblings/pictures/c.h", "dqlib/platform/posix.h"]:
            self.expect_complaint(script, {**tree, path: ""}, f"{path}: neither included by")
        self.expect_complaint(
            script, {**tree, umbrella: tree[umbrella] + '#include "dqlib/framework/base/text.h"\n'},
            f"{umbrella}: includes dqlib/framework/base/text.h")

    def test_text_ids(self):
        script = "text_ids.py"
        ids, table = "dqlib/resources/string_ids.h", "dqlib/resources/string_table.cpp"
        framework = "dqlib/framework/base/framework_strings.cpp"
        tree = {
            ids: "enum StringId : UINT {\n  IDS_A = 1,\n  IDS_B = 0x2,  // IDS_C = 2\n};\n",
            table: '    {IDS_A, "a {1, \\"x\\"}"},\n    {IDS_B,\n     "b"},\n',
            framework: '    {57344, "c"},\n    {57345, "d"},\n',
        }
        self.expect_clean(script, tree)
        self.expect_clean(script, {**tree, ids: tree[ids].replace("}", "  IDS_HOST = 57346,\n}")})

        def changed(path, old, new):
            self.assertIn(old, tree[path])
            return {**tree, path: tree[path].replace(old, new)}

        for path, old, new, start in [
            (ids, "0x2,", "1,", f"{ids}:3: text id 1 (IDS_B) is defined"),
            (table, "{IDS_B,", "{IDS_A,", f"{table}:2: text id 1 has a text"),
            (framework, "57345", "57344", f"{framework}:2: text id 57344 has a text"),
            (framework, "57345", "0x2", f"{table}:2: text id 2 has a text"),
            (table, "{IDS_B,", "{IDS_D,", f"{table}:2: IDS_D is no known"),
        ]:
            status, lines = self.check(script, changed(path, old, new))
            self.assertEqual((status, lines[0][:len(start)]), (1, start))
        self.expect_complaint(script, changed(ids, "};", "  IDS_D = 4,\n};"),
                              f"{ids}:4: IDS_D (4) has no text")

    def test_forbidden_words(self):
        script = "forbidden_words.py"
        self.expect_clean(script, {"a.h": "// special parts 12, part 6 of the specimen, work/\n"})
        # Put together here, so that the check doesn't find them in this file.
        for words in """the sp|ec says; Specifi|cation; sp|ec.md; Par|t 1.2; Par|ts 4.1 and 4.2;
                        Par|t 6; THE SP|EC; /wo|rk/main; the is|sue; is|sue 7; a rul|ing""".split(";"):
            text = "\n" + words.strip().replace("|", "") + "\n"
            self.expect_complaint(script, {"docs/a.md": text}, "docs/a.md:2: ")
        self.expect_complaint(script, {"sp" + "ec.md": ""}, "sp" + "ec.md: the name")

    def test_test_share(self):
        code = {"dqlib/core/a.h": "int a;\n" * 6, "apps/b.py": "b = 1\n" * 4}
        for line, count, status in [("int t;\n\n// t\n", 3, 0), ("int t;\n", 4, 1)]:
            tree = {"tests/core/a_test.cpp": line * (count - 1), "fuzzing/a.py": "t = 1\n# t\n"}
            said = f"tests and fuzz targets: {count} lines to 10 of code, 0.{count}00"
            self.assertEqual(self.check("test_share.py", code | tree),
                             (status, [said + ", more than 0.37" * status]))

    def test_format(self):
        self.expect_clean("format.sh", {"dqlib/core/a.h": "int a = 1;\n"})
        status, lines = self.check("format.sh", {"dqlib/core/a.h": "int  a=1;\n"})
        self.assertEqual(status, 1)
        self.assertIn("+int a = 1;", lines)


if __name__ == "__main__":
    unittest.main()
