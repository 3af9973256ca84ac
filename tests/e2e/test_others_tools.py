"""What the program writes, read by tools that share nothing with it."""
import gettext
import json
import pathlib
import re
import subprocess
import sys

import polib

import locale_file
from driver import Case, unittest

ROOT = pathlib.Path(__file__).parents[2]
TEXTS = {"Zebra": "Z", "alpha": "multi\nline\r\n\rtext", "Äpfel": "Ä \"quoted\" \\n and \\ alone", "zero\u200bwidth": "\u200b",
         "𝄞 clef": "𝄞\ttab", "a.b": "x", "a_b": "y", "é": "日本語", "e\u0301": "combining"}
ENTRIES = [[identifier, [[0, "default", text]]] for identifier, text in TEXTS.items()] + [
    ["own", [[0, "", "any"], [1, "", "Mac"], [2, "", "Windows"]]], ["out", [[0, "default", ""], [3, "", "Linux"]]]]


def pairs(own, ending):
    """What is to arrive, with the line ends of the platform."""
    return {**{key: re.sub("\r\n|\r|\n", ending, text) for key, text in TEXTS.items()}, "own": own}


def output(*command, **options):
    done = subprocess.run([str(part) for part in command], capture_output=True, timeout=60, **options)
    if done.returncode:
        raise AssertionError("%s: exit status %d, %r" % (command[0], done.returncode, done.stderr))
    return done


def read_string_table(data):
    """The second reader: `"key" = "value";` a line, with the escapes of C."""
    plain = {"n": "\n", "r": "\r", "t": "\t"}
    table = {}
    for line in data.decode("utf-16").splitlines():
        key, value = re.fullmatch(r'"(.*)" = "((?:[^"\\]|\\.)*)";', line).groups()
        table[key] = re.sub(r"\\(.)", lambda found: plain.get(found[1], found[1]), value)
    return table


class OthersTools(Case):
    def export(self, entries, target, result):
        program = self.program(self.write(entries=entries))
        (self.folder / result).parent.mkdir(parents=True)
        program.answer_file(self.folder / target)
        program.menu("ExportExporttoApplication", shown=1)
        return self.folder / result

    def test_catalogue(self):
        path = self.export(ENTRIES, "a.exe", "Resources/de.mo")
        output("msgunfmt", path)  # order and structure; values beyond ASCII it drops, for want of a header entry
        found = polib.mofile(str(path))
        expected = pairs("Windows", "\r\n")
        self.assertEqual([(entry.msgid, entry.msgstr) for entry in found],
                         sorted(expected.items(), key=lambda pair: pair[0].encode()))

    def test_catalogue_of_plain_text(self):
        # Without a header entry these two take ASCII alone.
        entries = [[key, values] for key, values in ENTRIES if key.isascii() and values[0][2].isascii()]
        path = self.export(entries, "a.exe", "Resources/de.mo")
        expected = {key: text for key, text in pairs("Windows", "\r\n").items() if [key] in [e[:1] for e in entries]}
        written = output("msgunfmt", "--no-wrap", path).stdout.decode()
        self.assertEqual([entry.msgid for entry in polib.pofile(written)], sorted(expected))
        with open(path, "rb") as file:
            catalogue = gettext.GNUTranslations(file)
        self.assertEqual({key: catalogue.gettext(key) for key in expected}, expected)

    def test_string_table(self):
        path = self.export(ENTRIES, "a.app", "a.app/Contents/Resources/de.lproj/Localizable.strings")
        done = output("/usr/bin/sfparse", path)
        self.assertIn(b"seems ok (%d entries)" % (len(TEXTS) + 1), done.stdout + done.stderr)
        self.assertEqual(read_string_table(path.read_bytes()), pairs("Mac", "\n"))

    def test_file_saved_after_imports(self):
        path = self.write(entries=ENTRIES)
        program = self.program(path)
        rows = self.folder / "rows.txt"
        rows.write_text("own\tLinux\t\t𝄞\\n\\\"\nalpha\tAny\t\t\n", "utf-8")
        newer = self.write("newer.nvl", [["Zebra", [[2, "new default", "\u200b"]]]])
        for file in (rows, newer):
            program.answer_file(file)
            program.menu("FileImportExistingFile", shown=1)
        program.menu("FileSave")
        saved = json.loads(output(sys.executable, "-B", ROOT / "tests" / "tools" / "locale_reader.py", path).stdout)
        expected = [[e[0], *values] for e in ENTRIES for values in e[1]]
        expected[1][3] = ""
        expected.insert(1, ["Zebra", 2, "new default", "\u200b"])
        expected.insert(next(i for i, e in enumerate(expected) if e[0] == "out"), ["own", 3, "", "𝄞\n\""])
        self.assertEqual(saved["entries"], expected)
        snapshot = [e for e in expected if e[:2] != ["Zebra", 2]]
        self.assertEqual([version["entries"] for version in saved["history"]], [snapshot])


if __name__ == "__main__":
    unittest.main()
