"""Runs sorbel-exchange on locale files in a folder of its own, and reads what is in them."""
import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "e2e"))
import locale_file  # noqa: E402

PROGRAM = os.environ["SORBEL_EXCHANGE"]

ENTRIES = locale_file.ENTRIES + [
    ["lines", [[0, "one\ntwo\n", "eins\nzwei\n"]]],
    ["bar|and\\slash", [[0, "say \"q\"\t<b>&amp;</b> \\n", "sag „q“\t<b>&amp;</b> \\n"]]],
    ["order", [[2, "Windows", "Fenster"], [0, "Any", "Alle"], [7, "Seven", "Sieben"]]],
    ["ends", [[0, "old\rends\r\n", "alte\rEnden\r\n"]]],
    ["Größe", [[0, "size", "日本 \U0001F600"]]],
]
ROWS = sum(len(platforms) for _, platforms in ENTRIES)
TRANSLATED = sum(bool(row[2]) for _, platforms in ENTRIES for row in platforms)


def report(changed=0, unchanged=0, unknown=0, skipped=0):
    return "%d changed, %d unchanged, %d unknown, %d skipped\n" % (changed, unchanged, unknown, skipped)


def rows_of(data):
    """{(identifier, platform): (default, translation)} of a locale file without a history."""
    rows, at = {}, 8
    while at < len(data):
        tag, length = data[at:at + 4], struct.unpack(">i", data[at + 4:at + 8])[0]
        if tag == b"enty":
            fields, place, end = {}, at + 8, at + 8 + length
            while place < end:
                size = struct.unpack(">i", data[place + 12:place + 16])[0]
                fields[data[place:place + 4]] = data[place + 16:place + 16 + size]
                place += 16 + size
            key = fields[b"idnt"].decode(), struct.unpack(">i", fields[b"plat"])[0]
            rows[key] = fields[b"oval"].decode(), fields[b"tval"].decode()
        at += 8 + length
    return rows


class ExchangeCase(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name) / "files"
        self.state = pathlib.Path(folder.name) / "state"
        self.folder.mkdir()

    def write(self, name, data):
        path = self.folder / name
        path.write_bytes(data if isinstance(data, bytes) else data.encode())
        return path

    def locale(self, entries=ENTRIES, name="de.kestrum_locale", **fields):
        return self.write(name, locale_file.to_bytes(entries, **fields))

    def run_program(self, *words, status=0, stdin=b"", **options):
        done = subprocess.run([PROGRAM, *map(str, words)], input=stdin, capture_output=True, cwd=self.folder,
                              timeout=60, env={**os.environ, "XDG_STATE_HOME": str(self.state)}, **options)
        self.assertEqual(done.returncode, status, done.stderr.decode(errors="replace"))
        return done.stdout.decode(errors="replace"), done.stderr.decode()

    def refused(self, *words, status=3, **options):
        """The one line of an error."""
        shown, error = self.run_program(*words, status=status, **options)
        self.assertEqual(shown, "")
        self.assertTrue(error.startswith("sorbel-exchange: "), error)
        self.assertEqual(error.count("\n"), 1 if status == 3 else 2, error)
        return error[len("sorbel-exchange: "):].split("\n")[0]

    def export(self, ending, entries=ENTRIES, **fields):
        """A file exported from a document."""
        path = self.folder / ("de." + ending)
        self.assertEqual(self.run_program("export", self.locale(entries, **fields), path), ("", ""))
        return path

    def bring_back(self, path):
        """What the import of a file into the same document reports, and {row: translation} that it changed."""
        locale = self.folder / "de.kestrum_locale"
        before = locale.read_bytes()
        shown, error = self.run_program("import", locale, path)
        self.assertEqual(error, "")
        old, new = rows_of(before), rows_of(locale.read_bytes())
        self.assertEqual(list(old), list(new))
        self.assertEqual([row[0] for row in old.values()], [row[0] for row in new.values()])
        return shown, {row: new[row][1] for row in new if new[row] != old[row]}
