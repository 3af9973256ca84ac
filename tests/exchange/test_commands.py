"""What the commands do with files, and how they end."""
import os
import resource
import shutil
import stat
import subprocess
import unittest

from exchange import ENTRIES, PROGRAM, ROWS, TRANSLATED, ExchangeCase, locale_file, report, rows_of

STRACE_WORKS = shutil.which("strace") and subprocess.run(["strace", "-o", "/dev/null", "true"],
                                                         capture_output=True).returncode == 0
FORMATS = ("po", "pot", "xlf", "xliff", "tsv", "csv")


class Commands(ExchangeCase):
    def test_help_and_version(self):
        text, _ = self.run_program("--help")
        self.assertLessEqual(text.count("\n"), 24)
        self.assertLessEqual(max(map(len, text.split("\n"))), 100)
        for word in ("export", "import", "merge", "app", "--strict", "--lossy", "--source-language"):
            self.assertIn(word, text)
        self.assertRegex(self.run_program("--version")[0], r"^sorbel-exchange \d+\.\d+\n$")

    def test_wrong_use(self):
        locale = self.locale()
        for words in ((), ("what",), ("export",), ("export", locale), ("export", locale, "a.po", "b.po"),
                      ("export", locale, "a.doc"), ("export", locale, "po"), ("export", locale, "-"),
                      ("export", locale, "-", "--to", "doc"), ("export", locale, "a.po", "--what"),
                      ("export", locale, "a.po", "--to"), ("import", locale, "a.pot"), ("import", locale, "a.txt"),
                      ("export", locale, "a.xlf", "--source-language", "a b"), ("--version", "x")):
            with self.subTest(words):
                self.refused(*words, status=2)
        self.assertEqual(os.listdir(self.folder), ["de.kestrum_locale"])

    def test_untouched_files_keep_every_byte(self):
        # As older programs wrote it: another version, fields that a save writes anew, a row twice.
        data = locale_file.to_bytes(ENTRIES, history=[("2000-01-01 00:00:00", ENTRIES[:2])])
        data = data[:24] + b"\0\0\0\7" + data[28:]
        locale = self.write("de.kestrum_locale", data)
        for ending in FORMATS:
            out = self.folder / ("out." + ending)
            self.assertEqual(self.run_program("export", locale, out), ("", ""))
            if ending == "pot":
                continue
            keeps_empty = ending in ("tsv", "csv")
            rows = ROWS - 1 if ending == "tsv" else ROWS if keeps_empty else TRANSLATED  # 7 has no word there
            expected = report(unchanged=rows, skipped=ROWS - rows), ""
            self.assertEqual(self.run_program("import", locale, out), expected, ending)
            self.assertEqual(locale.read_bytes(), data)
            self.assertEqual(self.run_program("import", locale, out, "-o", "copy"), expected)
            self.assertEqual((self.folder / "copy").read_bytes(), data)

    def test_streams(self):
        locale = self.locale()
        text, _ = self.run_program("export", locale, "-", "--to", "csv")
        self.assertEqual(text.split("\n")[0], "identifier,platform,default,translation\r")
        changed = text.replace("Hallo Welt", "Moin").encode()
        self.assertEqual(self.run_program("import", locale, "-", "--from", "csv", stdin=changed)[0],
                         report(changed=1, unchanged=ROWS - 1))
        self.assertEqual(rows_of(locale.read_bytes())["greeting", 0], ("Hello world", "Moin"))
        done = self.run_program("import", locale, "-", "--from", "csv", "-o", "-", stdin=text.encode())
        self.assertEqual(done[1], report(changed=1, unchanged=ROWS - 1))
        self.assertTrue(done[0].startswith("nvlocale"))

    def test_saves_in_place(self):
        locale = self.locale()
        self.write("in.csv", "identifier,platform,default,translation\ngreeting,Any,Hello world,Moin\n")
        os.chmod(locale, 0o640)
        os.link(locale, self.folder / "hard")
        os.symlink("de.kestrum_locale", self.folder / "soft")
        self.run_program("import", "soft", "in.csv")
        self.assertEqual(locale.read_bytes(), locale_file.to_bytes(
            locale_file.changed(ENTRIES, "greeting", 0, "Moin")))
        self.assertTrue((self.folder / "soft").is_symlink())
        self.assertTrue(os.path.samefile(locale, self.folder / "hard"))
        self.assertEqual(stat.S_IMODE(locale.stat().st_mode), 0o640)

    @unittest.skipUnless(STRACE_WORKS, "strace, which ends the program in the middle, does not work here")
    def test_a_save_that_was_interrupted_is_completed(self):
        locale = self.locale()
        long = locale.stat().st_size
        self.write("in.csv", "identifier,platform,default,translation\ngreeting,Any,Hello world,H\n")
        subprocess.run(["strace", "-f", "-qq", "-o", "/dev/null", "-e", "inject=ftruncate:signal=KILL:when=1", PROGRAM,
                        "import", locale, "in.csv"], cwd=self.folder, timeout=60,
                       env={**os.environ, "XDG_STATE_HOME": str(self.state)}, stdout=subprocess.DEVNULL)
        saved = locale_file.to_bytes(locale_file.changed(ENTRIES, "greeting", 0, "H"))
        self.assertEqual(locale.stat().st_size, long, "it ended before the file was cut to its new length")
        self.assertTrue(locale.read_bytes().startswith(saved))
        shown, error = self.run_program("export", locale, "out.po")
        self.assertIn("is now complete", error)
        self.assertEqual(locale.read_bytes(), saved)

    def test_nothing_is_written_after_an_error(self):
        locale = self.locale()
        before = locale.read_bytes()
        bad = {"bad.po": "msgid \"\"\nmsgstr \"\"\n\nmsgctxt \"greeting\"\nmsgid \"Hello world\"\nmsgstr \"x\"\nfoo\n",
               "bad.xlf": "<xliff version='1.2'><file><body>\n<trans-unit id='greeting'><source>Hello world</source>"
                          "<target>x</target></trans-unit>\n</file>",
               "bad.csv": "identifier,platform,default,translation\ngreeting,Any,Hello world,x\n\"\n"}
        for (name, text), line in zip(bad.items(), (7, 3, 3)):
            self.write(name, text)
            for out in ((), ("-o", "out")):
                self.assertTrue(self.refused("import", locale, name, *out).startswith("%s: line %d: " % (name, line)))
        self.assertEqual(self.refused("import", locale, "none.po"), "none.po: No such file or directory")
        self.assertEqual(self.refused("import", locale, ".", "--from", "po"), ".: Is a directory")
        self.write("broken", before[:-3])
        self.assertEqual(self.refused("export", "broken", "out.po"), "broken: not a valid locale file")
        self.refused("export", "none", "out.po")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "export", locale, "-", "--to", "po"], stdout=full, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr), (3, b"sorbel-exchange: -: No space left on device\n"))
        self.assertIn("none/out.po: ", self.refused("export", locale, "none/out.po"))
        self.write("out.po", "old")
        small = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (200, 200))}
        self.assertIn("out.po: ", self.refused("export", locale, "out.po", **small))
        self.write("in.csv", "identifier,platform,default,translation\ngreeting,Any,Hello world,Moin\n")
        self.assertIn("de.kestrum_locale: ", self.refused("import", "de.kestrum_locale", "in.csv", **small))
        self.assertEqual((self.folder / "out.po").read_bytes(), b"old")
        self.assertEqual(locale.read_bytes(), before)
        self.assertEqual(sorted(os.listdir(self.folder)),
                         sorted([*bad, "de.kestrum_locale", "broken", "out.po", "in.csv"]))

    def test_what_a_format_cannot_hold(self):
        locale = self.locale([["good", [[0, "d", "t"]]], ["bad\udcff", [[0, "d", "t"], [1, "d", "t"]]]])
        for ending in ("po", "pot", "xlf", "csv"):
            self.assertIn("\"bad\ufffd\"", self.refused("export", locale, "out." + ending))
            shown, error = self.run_program("export", "--lossy", locale, "out." + ending)
            self.assertEqual((shown, error), ("", "sorbel-exchange: %s: 2 rows left out\n" % locale))
            self.assertIn(b"good", (self.folder / ("out." + ending)).read_bytes())
        self.assertEqual(self.run_program("export", locale, "out.tsv"), ("", ""))
        self.assertIn(b"bad\xff\tMac OS\t", (self.folder / "out.tsv").read_bytes())

    def test_rows_that_do_not_fit(self):
        locale = self.locale()
        self.write("in.csv", "identifier,platform,default,translation\nnobody,Any,,x\nleave,Linux,,x\n"
                             "greeting,Any,Hello,Moin\nleave,Any,Exit,Ende\n")
        remarks = "nobody: unknown\nleave|Linux: unknown\ngreeting: default text differs\n"
        self.assertEqual(self.run_program("import", locale, "in.csv", "-o", "strict", "--strict"),
                         (report(changed=1, unknown=2, skipped=1), remarks))
        self.assertEqual(rows_of((self.folder / "strict").read_bytes())["greeting", 0][1], "Hallo Welt")
        self.assertEqual(self.run_program("import", locale, "in.csv"), (report(changed=2, unknown=2), remarks))
        self.assertEqual(rows_of(locale.read_bytes())["greeting", 0], ("Hello world", "Moin"))

    def test_merge(self):
        locale = self.locale()
        newer = [["greeting", [[0, "Hello", ""]]], ["leave", [[3, "", "Tux"]]], ["nobody", [[0, "x", "y"]]]]
        self.locale(newer, "newer.nvl", date="2002-02-02 02:02:02")
        self.assertEqual(self.run_program("merge", locale, "newer.nvl", "-o", "out"), ("", ""))
        merged = [["greeting", [[0, "Hello", ""]]], ["leave", ENTRIES[1][1] + [[3, "Exit", "Tux"]]], *ENTRIES[2:]]
        self.assertEqual((self.folder / "out").read_bytes(),
                         locale_file.to_bytes(merged, history=[(locale_file.DATE, ENTRIES)]))
        self.write("rows.txt", "greeting\tAny\tignored\tMoin\\n\n")
        self.assertEqual(self.run_program("merge", locale, "rows.txt"), ("", ""))
        self.assertEqual(locale.read_bytes(), locale_file.to_bytes(
            locale_file.changed(ENTRIES, "greeting", 0, "Moin\n")))
        self.locale(newer, "fr.nvl", language="fr")
        _, error = self.run_program("merge", locale, "fr.nvl")
        self.assertIn("\"de\" stays", error)
        self.assertIn(b"lang\0\0\0\x0astrn\0\0\0\2de", locale.read_bytes()[:120])
        before = locale.read_bytes()
        for name, text in (("short.txt", "a\tb\n"), ("other", "nothing")):
            self.write(name, text)
            self.assertTrue(self.refused("merge", locale, name).startswith(name + ": "))
        self.assertEqual(locale.read_bytes(), before)

    def test_application(self):
        locale = self.locale()
        self.write("some.exe", "")
        self.assertIn("some.exe: ", self.refused("app", locale, "some.exe"))
        (self.folder / "Resources").mkdir()
        self.assertEqual(self.run_program("app", locale, "some.exe"), ("", ""))
        self.assertEqual((self.folder / "Resources/de.mo").read_bytes()[:4], b"\xde\x12\x04\x95")
        (self.folder / "some.app/Contents/Resources").mkdir(parents=True)
        self.assertEqual(self.run_program("app", locale, "some.app"), ("", ""))
        folder = self.folder / "some.app/Contents/Resources/de.lproj"
        self.assertIn("\"greeting\" = \"Hallo Welt\";", (folder / "Localizable.strings").read_bytes().decode("utf-16"))
        self.assertTrue((folder / "NVFramework.strings").exists())
        self.write("program", "")
        self.assertIn("Unable to export", self.refused("app", locale, "program"))


if __name__ == "__main__":
    unittest.main()
