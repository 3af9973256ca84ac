"""Files that go out, through tools that share nothing with the program, and come back: what was changed there is
changed, and nothing else."""
import csv
import importlib.util
import pathlib
import shutil
import subprocess
import unittest
import xml.etree.ElementTree as tree

import xliff_rules
from exchange import ENTRIES, ROWS, TRANSLATED, ExchangeCase, report, rows_of

LCONVERT = shutil.which("lconvert") or next((str(path) for path in (pathlib.Path("/usr/lib/qt6/bin/lconvert"),)
                                             if path.exists()), None)
UNTOUCHED = report(unchanged=TRANSLATED, skipped=ROWS - TRANSLATED), {}
ONE = report(changed=1, unchanged=TRANSLATED - 1, skipped=ROWS - TRANSLATED)
NEW = "Neu: \"ä\"\n<b>&amp;</b>\t\\ 日本"
ROW = ("lines", 0)  # what the tools change


def needs(what, found):
    return unittest.skipUnless(found, what + " is not installed; the other tools are tried all the same")


def has_module(name):
    return importlib.util.find_spec(name) is not None


class ForeignTools(ExchangeCase):
    def tool(self, *command):
        done = subprocess.run([str(word) for word in command], capture_output=True, cwd=self.folder, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return done.stdout.decode() + done.stderr.decode()

    def target(self, name):
        return self.folder / name

    @needs("gettext", shutil.which("msgfmt"))
    def test_gettext(self):
        path = self.export("po")
        self.assertEqual(self.tool("msgfmt", "-c", "--statistics", "-o", "out.mo", path),
                         "%d translated messages, %d untranslated messages.\n" % (TRANSLATED, ROWS - TRANSLATED))
        self.tool("msgfmt", "-c", "-o", "out.mo", self.export("pot"))
        for command in ("msgcat de.po", "msgcat --no-wrap de.po", "msgattrib de.po", "msgconv -t UTF-8 de.po",
                        "msgmerge -q de.po de.pot"):
            self.tool(*command.split(), "-o", "out.po")
            self.assertEqual(self.bring_back(self.target("out.po")), UNTOUCHED, command)
        for flag, count in ("--set-fuzzy", ROWS), ("--set-obsolete", TRANSLATED):
            self.tool("msgattrib", flag, "-o", "out.po", path)
            self.assertEqual(self.bring_back(self.target("out.po")), (report(skipped=count), {}), flag)

    @needs("gettext", shutil.which("msgmerge"))
    def test_gettext_makes_changed_texts_fuzzy(self):
        path = self.export("po")
        changed = [[name, [[platform, default.replace("Hello world", "Hello, world"), translated]
                           for platform, default, translated in rows]] for name, rows in ENTRIES]
        template = self.export("pot", changed)
        self.tool("msgmerge", "-q", "-o", "out.po", path, template)
        self.assertIn("fuzzy", self.target("out.po").read_text())
        self.assertEqual(self.bring_back(self.target("out.po")),
                         (report(unchanged=TRANSLATED - 1, skipped=ROWS - TRANSLATED + 1), {}))

    @needs("polib", has_module("polib"))
    def test_polib(self):
        import polib
        catalogue = polib.pofile(str(self.export("po")))
        self.assertEqual(catalogue.metadata["Language"], "de")
        self.assertEqual(len(catalogue), ROWS)
        catalogue.save(str(self.target("out.po")))
        self.assertEqual(self.bring_back(self.target("out.po")), UNTOUCHED)
        catalogue.find(ROW[0], by="msgctxt").msgstr = NEW
        catalogue.save(str(self.target("out.po")))
        self.assertEqual(self.bring_back(self.target("out.po")), (ONE, {ROW: NEW}))

    @needs("translate-toolkit", has_module("translate"))
    def test_translate_toolkit(self):
        from translate.storage import factory
        for ending in ("po", "xlf"):
            with self.subTest(ending):
                store = factory.getobject(str(self.export(ending)))
                out = self.target("out." + ending)
                store.savefile(str(out))
                self.assertEqual(self.bring_back(out), UNTOUCHED)
                units = [unit for unit in store.units if unit.source == "one\ntwo\n" and unit.istranslatable()]
                self.assertEqual([unit.target for unit in units], ["eins\nzwei\n"])
                units[0].target = NEW
                store.savefile(str(out))
                self.assertEqual(self.bring_back(out), (ONE, {ROW: NEW}))

    @needs("pofilter", shutil.which("pofilter"))
    def test_pofilter(self):
        """Its report is a catalogue of the entries that it complains about."""
        entries = [["good", [[0, "Open %1", "Öffne %1"]]], ["bad", [[0, "Open", "Öffne  es"]]],
                   ["escaped|x", [[1, "a (b", "a b"]]]]
        path = self.export("po", entries)
        self.tool("pofilter", "-t", "doublespacing", "-t", "brackets", path, "out.po")
        text = self.target("out.po").read_text()
        self.assertIn("doublespacing", text)
        self.assertNotIn("Open %1", text)
        self.target("out.po").write_text(text.replace("Öffne  es", "Öffne es"))
        self.assertEqual(self.bring_back(self.target("out.po")),
                         (report(changed=1, unchanged=1), {("bad", 0): "Öffne es"}))

    @needs("lconvert", LCONVERT)
    def test_lconvert(self):
        for ending in ("po", "xlf"):
            with self.subTest(ending):
                path, out = self.export(ending), self.target("out." + ending)
                self.tool(LCONVERT, path, "-o", out)
                self.assertEqual(self.bring_back(out), UNTOUCHED)
                text = out.read_text()
                self.assertEqual(text.count("Hallo Welt"), 1)
                out.write_text(text.replace("Hallo Welt", "Moin"))
                self.assertEqual(self.bring_back(out), (ONE, {("greeting", 0): "Moin"}))
        self.tool(LCONVERT, self.export("xlf"), "-o", "out.ts")
        self.assertIn("<translation", self.target("out.ts").read_text())

    def test_structure_of_xliff(self):
        root = xliff_rules.check_file(self.export("xlf", language="pt_BR"))
        file = root[0]
        self.assertEqual((file.get("original"), file.get("source-language"), file.get("target-language")),
                         ("de.kestrum_locale", "en", "pt-BR"))
        self.assertEqual(len(file[0]), ROWS)
        for language in ("", "de@latin"):
            root = xliff_rules.check_file(self.export("xliff", language=language))
            self.assertIsNone(root[0].get("target-language"))
        self.run_program("export", "de.kestrum_locale", "fr.xlf", "--source-language", "fr_CA")
        self.assertEqual(xliff_rules.check_file(self.target("fr.xlf"))[0].get("source-language"), "fr-CA")

    def test_xml_of_python(self):
        parsed = tree.parse(self.export("xlf"))
        units = list(parsed.getroot().iter(xliff_rules.SPACE + "trans-unit"))
        expected = [(name, default, translated) for name, rows in ENTRIES
                    for _, default, translated in sorted(rows)]
        self.assertEqual([(unit.get("resname"), unit[0].text or "", unit[1].text or "") for unit in units], expected)
        unit = next(unit for unit in units if unit.get("id") == ROW[0])
        unit[1].text = NEW
        parsed.write(self.target("out.xlf"), encoding="utf-16")
        self.assertEqual(self.bring_back(self.target("out.xlf")), (ONE, {ROW: NEW}))

    def test_csv_of_python(self):
        with open(self.export("csv"), newline="", encoding="utf-8") as file:
            records = list(csv.DictReader(file, strict=True))
        self.assertEqual([(row["identifier"], row["default"], row["translation"]) for row in records],
                         [(name, default, translated) for name, rows in ENTRIES
                          for _, default, translated in sorted(rows)])
        for options in ({}, {"quoting": csv.QUOTE_ALL, "lineterminator": "\n"}):
            changed = [dict(row, translation=NEW if row["identifier"] == ROW[0] else row["translation"])
                       for row in records]
            with open(self.target("out.csv"), "w", newline="", encoding="utf-8-sig") as file:
                writer = csv.DictWriter(file, records[0], **options)
                writer.writeheader()
                writer.writerows(changed)
            self.locale()
            self.assertEqual(self.bring_back(self.target("out.csv")),
                             (report(changed=1, unchanged=ROWS - 1), {ROW: NEW}))

    def test_delimited_text_by_hand(self):
        path = self.export("tsv")
        rows = [line.split("\t") for line in path.read_text().splitlines()]
        self.assertEqual(len(rows), ROWS)
        known = rows_of(self.target("de.kestrum_locale").read_bytes())
        self.assertEqual([row[0] for row in rows], [name for name, _ in known])
        path.write_text(path.read_text().replace("Hallo Welt", "").replace("\n", "\r\n"))
        self.assertEqual(self.bring_back(path),
                         (report(changed=1, unchanged=ROWS - 2, skipped=1), {("greeting", 0): ""}))


if __name__ == "__main__":
    unittest.main()
