"""The settings, ini, identity and path commands of dqtool, on settings of their own.

dqtool_settings_test.py DQTOOL
"""

import os
import resource
import signal
import stat
import sys
import tempfile
import unittest

import dqtool_runner


class OwnSettings(unittest.TestCase):
    def setUp(self):
        self.directory = os.path.realpath(self.enterContext(tempfile.TemporaryDirectory()))
        self.environment = {**os.environ, "HOME": self.directory,
                            "XDG_CONFIG_HOME": os.path.join(self.directory, "config")}

    def dqtool(self, *words):
        return dqtool_runner.dqtool(*words, cwd=self.directory, env=self.environment)

    def prints(self, words, lines):
        """Whether it succeeds with these lines."""
        text = "".join(line + "\n" for line in lines).encode()
        self.assertEqual(self.dqtool(*words), (0, text, b""), words)

    def refuses(self, words, complaint, status=1):
        """Whether it prints nothing and begins its complaint so."""
        found, out, err = self.dqtool(*words)
        self.assertEqual((found, out), (status, b""), words)
        self.assertTrue(err.startswith(b"dqtool: " + complaint.encode()), err)
        return err.decode().splitlines()

    def put(self, name, text):
        path = os.path.join(self.directory, name)
        with open(path, "wb") as file:
            file.write(text)
        return path


class SettingsTest(OwnSettings):
    def test_values_are_set_listed_and_deleted_by_either_separator(self):
        self.prints(["settings", "list"], [])
        self.prints(["settings", "set", "Soft/Tool", "Name", "C:\\data"], [])
        self.prints(["settings", "set", "\\Soft\\tool\\", "", "a\tb\nc"], [])
        self.prints(["settings", "set", "Soft\\Tool/Sub", "x", ""], [])
        self.prints(["settings", "list"], ["[Soft]"])
        self.prints(["settings", "list", "soft/TOOL"],
                    ["\tstring\ta\\x09b\\x0ac", "Name\tstring\tC:\\data", "[Sub]"])
        self.prints(["settings", "get", "Soft/Tool", "NAME"], ["C:\\data"])
        self.prints(["settings", "get", "Soft/Tool", ""], ["a\tb", "c"])
        self.refuses(["settings", "get", "Soft/Tool", "none"],
                     "settings: no value none in Soft\\Tool")
        self.refuses(["settings", "list", "none"], "settings: no key none")
        self.prints(["settings", "delete", "Soft/Tool", "Name"], [])
        self.refuses(["settings", "delete", "Soft/Tool", "Name"], "settings: no value Name")
        self.prints(["settings", "delete", "Soft"], [])
        self.refuses(["settings", "delete", "Soft"], "settings: no key Soft")
        self.prints(["settings", "list"], [])
        registry = os.path.join(self.directory, "config", "velmora", "registry")
        for name in os.listdir(registry):
            mode = stat.S_IMODE(os.stat(os.path.join(registry, name)).st_mode)
            self.assertEqual(mode, 0o600, name)

    def test_every_kind_is_imported_listed_and_exported_again(self):
        text = (b"REGEDIT4\r\n\r\n[HKEY_CURRENT_USER]\r\n\r\n[HKEY_CURRENT_USER\\K]\r\n"
                b'"a"="text"\r\n"b"=hex(2):25,48,25,00\r\n"c"=hex:00,ff\r\n"d"=dword:fffffffe\r\n'
                b'"e"=hex(b):01,00,00,00,00,00,00,80\r\n"f"=hex(7):78,00,79,00,00\r\n'
                b'"g"=hex(0):\r\n"h"=hex(1234):41\r\n"i"=hex(4):01\r\n')
        self.prints(["settings", "import", self.put("f.reg", text)], [])
        self.prints(["settings", "list", "K"],
                    ["a\tstring\ttext", "b\texpand\t%H%", "c\tbinary\t00ff", "d\tdword\t4294967294",
                     "e\tqword\t9223372036854775809", "f\tmulti\tx\ty", "g\tnone\t", "h\t4660\t41",
                     "i\tdword\t01"])
        self.prints(["settings", "get", "K", "f"], ["x", "y"])
        self.assertEqual(self.dqtool("settings", "export"), (0, text, b""))
        self.prints(["settings", "import", self.put("g.reg", b"REGEDIT4\n[HKEY_CURRENT_USER\\K]\n"
                     b'"a"=-\n"none"=-\n[-HKEY_CURRENT_USER\\None]\n[HKEY_CURRENT_USER\\L\\M]\n'
                     b"[-HKEY_CURRENT_USER\\L]\n")], [])
        self.refuses(["settings", "get", "K", "a"], "settings: no value")
        self.prints(["settings", "list"], ["[K]"])

    def test_bad_lines_are_told_by_number_and_nothing_is_imported(self):
        bad = self.put("f.reg", b'REGEDIT4\n[HKEY_CURRENT_USER\\K]\n"a"="x"\nnonsense\n'
                       b'"b"=hex:01,\\\n  02,\\\n  0g\n"c"=hex:1\n[HKEY_LOCAL_MACHINE\\K]\n"d"="x"\n'
                       b"[-HKEY_CURRENT_USER]\n[HKEY_CURRENT_USER\\" + b"n" * 256 + b"]\n")
        complaints = self.refuses(["settings", "import", bad], "settings: ")
        self.assertEqual([line.split("line ")[1].split(" ")[0] for line in complaints[:-1]],
                         ["4", "5", "8", "9", "10", "11", "12"])
        self.assertEqual(complaints[-1], "dqtool: settings: nothing was imported")
        headless = self.put("g.reg", b'[HKEY_CURRENT_USER\\K]\n"a"="x"\n')
        self.refuses(["settings", "import", headless], f"settings: {headless}: line 1: the header")
        self.refuses(["settings", "import", "none.reg"], "settings: none.reg: No such file")
        self.prints(["settings", "list"], [])

    def test_an_import_that_the_store_refuses_in_the_middle_is_undone(self):
        self.prints(["settings", "import", self.put("f.reg", b"REGEDIT4\n[HKEY_CURRENT_USER\\K]\n"
                     b'"a"="1"\n"b"=hex:01\n[HKEY_CURRENT_USER\\D\\Sub]\n"x"=dword:7\n'
                     b"[HKEY_CURRENT_USER\\D\\Empty]\n")], [])
        before = self.dqtool("settings", "export")
        much = self.put("g.reg", b"REGEDIT4\n[HKEY_CURRENT_USER\\K]\n"
                        b'"a"="2"\n"A"="3"\n"b"=-\n"none"=-\n"new"="n"\n'
                        b"[-HKEY_CURRENT_USER\\D]\n[HKEY_CURRENT_USER\\D\\Sub]\n\"y\"=\"y\"\n"
                        b'[HKEY_CURRENT_USER\\N\\M]\n"c"="c"\n"much"="' + b"x" * 100000 + b'"\n')

        def small_files():
            # What the store writes past that is refused instead of ending the program.
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (50000, 50000))

        status, out, err = dqtool_runner.dqtool(
            "settings", "import", much, cwd=self.directory, env=self.environment,
            preexec_fn=small_files, restore_signals=False)
        self.assertEqual((status, out, err.decode()),
                         (1, b"", f"dqtool: settings: {much}: File too large\n"
                          "dqtool: settings: nothing was imported\n"))
        self.assertEqual(self.dqtool("settings", "export"), before)
        self.prints(["settings", "import", much], [])
        self.prints(["settings", "get", "K", "a"], ["3"])
        self.prints(["settings", "list", "D/Sub"], ["y\tstring\ty"])

    def test_keys_are_renamed_moved_and_merged_unless_that_would_lose_values(self):
        self.prints(["settings", "set", "A/Old/Sub", "x", "1"], [])
        self.prints(["settings", "rename", "a/old", "New"], [])
        self.prints(["settings", "rename", "A/New", "NEW"], [])
        self.prints(["settings", "list", "A"], ["[NEW]"])
        self.prints(["settings", "set", "B", "kept", "2"], [])
        self.prints(["settings", "rename", "A\\New", "/B"], [])
        self.prints(["settings", "list", "B"], ["kept\tstring\t2", "[Sub]"])
        self.prints(["settings", "get", "B/Sub", "x"], ["1"])
        self.refuses(["settings", "rename", "A\\New", "C"], "settings: no key A\\New")
        self.refuses(["settings", "rename", "B", "B/Sub"], "settings: B could not be renamed")
        self.prints(["settings", "set", "B/Sub", "much", "x" * 7680], [])
        self.refuses(["settings", "rename", "B", "C"],
                     "settings: B\\Sub holds a value that is too large")
        self.prints(["settings", "list", "B"], ["kept\tstring\t2", "[Sub]"])


class IniTest(OwnSettings):
    def test_keys_and_sections_of_a_file_in_the_current_directory(self):
        self.prints(["ini", "f.ini", "sections"], [])
        self.prints(["ini", "f.ini", "set", "S", "K", "one\r\ntwo"], [])
        self.prints(["ini", "f.ini", "set", "T", "L", ""], [])
        with open(os.path.join(self.directory, "f.ini"), "rb") as file:
            self.assertEqual(file.read(), b"[S]\r\nK=one</N/>two\r\n[T]\r\nL=\r\n")
        self.prints(["ini", "f.ini", "get", "s", "k"], ["one", "two"])
        self.prints(["ini", "f.ini", "get", "T", "L"], [""])
        self.prints(["ini", "f.ini", "sections"], ["S", "T"])
        self.prints(["ini", "f.ini", "keys", "S"], ["K"])
        self.prints(["ini", "f.ini", "delete-key", "S", "K"], [])
        self.prints(["ini", "f.ini", "get", "S", "K"], ["0"])
        self.prints(["ini", "f.ini", "delete-section", "S"], [])
        self.refuses(["ini", "f.ini", "get", "S", "K"], "ini: no key K in section S")
        for value in ["0", "1"]:
            self.prints(["ini", "f.ini", "set", "T", "L", value], [])
            self.prints(["ini", "f.ini", "get", "T", "L"], [value])

    def test_files_that_cant_be_read_or_written_are_told(self):
        self.refuses(["ini", "none/f.ini", "set", "S", "K", "V"], "ini: none/f.ini: No such file")
        long_name = "x" * 5000
        for words in [["set", "S", "K", "V"], ["sections"], ["get", "S", "K"]]:
            self.refuses(["ini", long_name, *words], f"ini: {long_name}: File name too long")
        self.refuses(["ini", "/dev/full", "set", "S", "K", "V"], "ini: /dev/full: ")
        for words in [["set", "S", "K", "V"], ["sections"], ["keys", "S"], ["get", "S", "K"]]:
            self.refuses(["ini", self.directory, *words], f"ini: {self.directory}: ")
        self.refuses(["ini", "f.ini", "set", "S]\n[T", "K", "V"], "ini: f.ini: Invalid argument")


class IdentityTest(OwnSettings):
    def identity(self, *words):
        status, out, err = self.dqtool("identity", *words)
        self.assertEqual((status, err), (0, b""))
        return dict(line.split("\t") for line in out.decode().splitlines())

    def test_getters_in_their_order(self):
        lines = self.identity("--app", "QUILLBASE", "--exe", "C:\\Bin\\Tool.exe",
                              "--file-version", "7.12.3.4")
        self.assertEqual(list(lines.items()), [
            ("LanguageString", "040904b0"), ("VersionString", "7.12.3.4"), ("Comments", ""),
            ("CompanyName", ""), ("FileDescription", ""), ("InternalName", ""),
            ("LegalCopyright", ""), ("LegalTrademarks", ""), ("OriginalFileName", ""),
            ("ProductVersion", ""), ("AppCode", "QUILLBASE"), ("Title", ""),
            ("ExecutablePath", "C:\\Bin\\Tool.exe"), ("ExecutableDirectory", "C:\\Bin"),
            ("RunningFromNetwork", "false"), ("OptionsFile", "Quill.dqo"), ("RegistryKey", "Tool"),
            ("ProductName", ""), ("SplashIDB", "0"), ("LongVersionNumber", "7.12.3.4"),
            ("MediumVersionNumber", "7.12.3"), ("ShortVersionNumber", "7.12"),
            ("MajorVersionNumber", "7"), ("MinorVersionNumber", "2"), ("BuildNumber", "4"),
            ("IsAppLumenSql", "false"), ("IsAppDeltaKeeper", "false"),
            ("IsAppQuillbase", "true"), ("IsAppDQPacer", "false")])

    def test_the_program_itself_and_a_file_of_version_texts(self):
        self.assertEqual(self.identity()["ExecutablePath"], dqtool_runner.DQTOOL)
        self.assertEqual(self.identity()["OptionsFile"], "dqtool.dqo")
        tool = self.put("tool", b"")
        self.put("tool.version", b"FileVersion=1.2.3.4\nProductName=The Tool\n"
                 b"LegalCopyright=Ours\nTranslation=0407,04e4\n")
        lines = self.identity("--exe", tool)
        self.assertEqual((lines["ProductName"], lines["ShortVersionNumber"], lines["OptionsFile"],
                          lines["RunningFromNetwork"]), ("The Tool", "1.2", "tool.dqo", "false"))
        self.assertEqual((lines["LanguageString"], lines["LegalCopyright"]), ("040704e4", "Ours"))


class PathTest(OwnSettings):
    def test_other_forms_of_a_path(self):
        for words, expected in [
            (["relative", "c:\\data\\app", "C:\\Data\\App\\sql\\a.sql"], ".\\sql\\a.sql"),
            (["relative", "c:\\data\\app", "C:\\other\\a.sql"], "..\\other\\a.sql"),
            (["absolute", "c:\\data\\app", "..\\other\\a.sql"], "c:\\other\\a.sql"),
            (["relative", "/data/App", "/data/App/A.sql"], "./A.sql"),
            (["universal", "/data/App"], "/data/App"),
            (["universal", ""], ""),
        ]:
            self.prints(["path", *words], [expected])
        _, out, _ = self.dqtool("path", "universal", "c:\\data")
        self.assertRegex(out.decode(), r"^\\\\[^\\]+\\c\$\\data\n$")


class UsageTest(OwnSettings):
    def test_words_that_make_no_sense_change_nothing(self):
        for words in [["settings"], ["settings", "set", "K", "N"], ["settings", "delete", "/"],
                      ["settings", "rename", "", "X"], ["settings", "rename", "K", "\\"],
                      ["settings", "export", "K"], ["settings", "clear"], ["ini"], ["ini", "f"],
                      ["ini", "f", "get", "S"], ["ini", "f", "set", "", "K", "V"],
                      ["ini", "f", "clear"], ["identity", "--exe"], ["identity", "x"], ["path"],
                      ["path", "relative", "x"], ["path", "universal", "x", "y"], ["path", "x"]]:
            self.refuses(words, words[0] + ": ", 2)
        self.assertEqual(os.listdir(self.directory), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
