"""dqtool's words for platforms and objects, and programs run with a connection.

dqtool_objects_test.py DQTOOL
"""

import os
import sys
import tempfile
import unittest

from dqtool_runner import dqtool


class ObjectsTest(unittest.TestCase):
    def setUp(self):
        self.directory = self.enterContext(tempfile.TemporaryDirectory())

    def path(self, name, text=None):
        path = os.path.join(self.directory, name)
        if text is not None:
            with open(path, "wb") as file:
                file.write(text)
        return path

    def test_texts_and_words(self):
        for words, status, out in [
            (["platform-text", "sqlserver"], 0, b"SQL Server\n"),
            (["platform-text", "db2os390"], 0, b"DB/2\n"),
            (["platform-text", "mysql"], 2, b""),
            (["platform-text"], 2, b""),
            (["type-text", "42", "--platform", "db2os390"], 0, b"Stogroup\n"),
            (["type-text", "-1"], 0, b"Unknown\n"),
            (["type-text", "1x"], 2, b""),
            (["words", "m_pszEndOfLn"], 0, b"\\x0d\\x0a\n"),
            (["types"], 2, b""),
            (["types", "--platform", "oracle", "--version", "new"], 2, b""),
            (["creation-template", "--platform", "oracle"], 2, b""),
        ]:
            with self.subTest(words=words):
                self.assertEqual(dqtool(*words)[:2], (status, out))
        lines = dqtool("words")[1].splitlines()
        self.assertEqual((len(lines), lines[0], lines[-1]),
                         (198, b"m_pszMlsLabel\tMLSLABEL", b"m_pszYes\tY"))

    def test_types(self):
        def types(*words):
            return dqtool("types", "--platform", *words)[1].splitlines()
        self.assertEqual(types("db2os390", "--reduced")[-4:],
                         [b"7\tDatabase", b"42\tStogroup", b"36\tTablespace", b"34\tSynonym"])
        for version in ["8.17", "8.1.7", "Oracle8i Release 8.1.7.0.0"]:
            self.assertIn(b"80\tMaterialized View", types("oracle", "--version", version))
        self.assertIn(b"88\tRedo Log Group", types("oracle"))
        code = dqtool("text", "43913")[1].decode().strip()
        self.assertNotIn(b"88\tRedo Log Group", types("oracle", "--app", code), code)

    def test_object_map_file(self):
        path = self.path("map")
        self.assertEqual(dqtool("objects", path, "list")[0], 1)
        for words in [["r", "35", "O", "N"], ["a", "40", "own", "a\tb"], ["r", "16", "P", "Q"]]:
            self.assertEqual(dqtool("objects", path, "add", *words), (0, b"", b""))
        self.assertEqual(dqtool("objects", path, "list"),
                         (0, b"a\t40\town\ta\\x09b\nr\t16\tP\tQ\n", b""))
        bad = self.path("bad", b"\1\0\1")
        status, out, err = dqtool("objects", bad, "add", "k", "1", "o", "n")
        self.assertEqual((status, out), (1, b""))
        self.assertIn(b"Failed to read object map file", err)
        self.assertEqual(os.path.getsize(bad), 3)
        loop = self.path("loop")
        os.symlink("loop", loop)
        for words in [["list"], ["add", "k", "1", "o", "n"]]:
            status, out, err = dqtool("objects", loop, *words)
            self.assertEqual((status, out), (1, b""), words)
            self.assertIn(b"Failed to open object map file", err)
            self.assertNotIn(b"there is no file", err)

    def test_creation_template(self):
        os.mkdir(self.path("Oracle"))
        self.path("Oracle/CRTable.tpl", b"CREATE TABLE $$object_owner$$.$$object_name$$\n")
        self.path("Oracle/CRProc.tpl", b"")
        def template(*words):
            return dqtool("creation-template", "--platform", "oracle", "--name", "EMP",
                          "--root", self.directory, *words)
        self.assertEqual(template("--type", "35", "--owner", "SCOTT"),
                         (0, b"CREATE TABLE SCOTT.EMP\n", b""))
        for words in [["--type", "35"], ["--type", "1", "--owner", "O"],
                      ["--type", "40", "--owner", "O"], ["--type", "21", "--owner", "O"]]:
            status, out, err = template(*words)
            self.assertEqual((status, out, err.count(b"\n")), (1, b"", 1), words)

    def test_dialog_of_objects(self):
        script = self.path("script", b"2754=Table\n2756=O\n2757=T\npress 1\n")
        self.assertEqual(dqtool("dialog", "2712", "--script", script), (0, b"ok\n", b""))
        self.assertIn(b"2712\tObject Type Information\n", dqtool("dialog", "--list")[1])

    def test_run_with_a_connection_never_shows_the_password(self):
        secret = self.path("secret", b"tiger@/x\r\nsecond line\n")
        length = self.path("length.sh", b'for last; do :; done; echo "${#last}"\n')
        for words, end in [
            (["--user", "scott"], b" scott \n5\n"),
            (["--user", "scott", "--password-file", secret], b" scott/**** \n14\n"),
            (["--user", "scott", "--password-file", secret, "--datasource", "ora1", "--auth", "2"],
             b"@ora1 AS SYSDBA' \n29\n"),
        ]:
            with self.subTest(words=words):
                status, out, err = dqtool("run", *words, "sh", length)
                self.assertEqual((status, err), (0, b""))
                self.assertNotIn(b"tiger", out)
                self.assertTrue(out.endswith(end), out)
        self.assertEqual(dqtool("run", "--password-file", self.path("empty", b""), "--user", "u",
                                "echo"), (0, b"echo u \nu\n", b""))
        for path in ["", self.path("none"), self.directory, self.path("zero", b"ab\0c\n")]:
            status, out, err = dqtool("run", "--password-file", path, "--user", "u", "echo")
            self.assertEqual((status, out, err.count(b"\n")), (1, b"", 1), path)
        self.assertEqual(dqtool("run", "--auth", "high", "true")[0], 2)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
