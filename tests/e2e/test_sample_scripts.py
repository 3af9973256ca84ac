"""The scripts in samples/scripts do what their first line says."""
import pathlib
import unittest

import driver

FOLDER = pathlib.Path(__file__).parents[2] / "samples" / "scripts"
ENTRIES = [
    ["fine", [[0, "Open %1 files now", "Jetzt %1 Dateien öffnen"]]],
    ["placeholder", [[0, "%1 of %2", "%2 von %2"]]],
    ["mnemonic", [[0, "Cut && &paste", "Ausschneiden"]]],
    ["doubled", [[0, "Two words", "Zwei   Wörter  hier"]]],
    ["blanks", [[0, "Ends", " Enden\t"]]],
    ["ending", [[0, "Print...", "Drucken"]]],
    ["dots", [[0, "Save as...", "Sichern unter…"]]],
    ["long", [[0, "Hello there", "Guten Tag allerseits und auch sonst"]]],
    ["platforms", [[0, "Quit", "Beenden"], [2, "Quit", ""]]],
    ["empty", [[0, "Not yet", ""]]],
    ["nothing", [[0, "", ""]]],
]
NAMES = [name for name, _ in ENTRIES]


class SampleScripts(driver.Case):
    def setUp(self):
        super().setUp()
        self.driven = self.program(self.write(entries=ENTRIES))

    def run_script(self, name):
        """The dialog that it ends in, or None."""
        reply = self.driven.raw("run", source=(FOLDER / (name + ".sorbel_script")).read_text("utf-8"))
        self.assertTrue(reply["ok"])
        self.assertNotIn("MsgBox", [dialog["kind"] for dialog in reply["shown"]], reply)
        self.assertLessEqual(len(reply["shown"]), 1)
        return reply["shown"][0] if reply["shown"] else None

    def translation(self, name, platform=0):
        for identifier, platforms in self.driven.document()["entries"]:
            if identifier == name:
                return {values[0]: values[2] for values in platforms}.get(platform)

    def selected(self):
        row = self.driven.rows()
        return row["rows"][row["index"]]["identifier"] if row["index"] >= 0 else None

    def test_checks_report_and_select_the_first_row(self):
        for script, row in [("Check Placeholders", "placeholder"), ("Check Mnemonics", "mnemonic"),
                            ("Check Endings", "ending")]:
            report = self.run_script(script)["explanation"]
            self.assertEqual(report.count("\n"), 1, report)
            self.assertTrue(report.startswith("Row %d: " % (NAMES.index(row) + 1)), report)
            self.assertEqual(self.selected(), row)
        self.assertFalse(self.driven.document()["dirty"])

    def test_checks_know_what_only_looks_like_a_fault(self):
        """As the checks of the command line do: each row's letter tells whether it is one."""
        cases = {
            "Check Mnemonics": [
                ("+", "&File", "&Da&tei"), ("-", "the '&' key && more", "die Taste & so"), ("-", "&Help", "&?"),
                ("-", "&Open...", "開く(&O)..."), ("+", "&&&&Cut", "&Ausschneiden")],
            "Check Placeholders": [
                ("+", "%1", "%10"), ("-", "%1s left", "noch %1 s"), ("-", "100% safe", "100%ige Sicherheit"),
                ("-", "5% discount", "5%-os kedvezmény"), ("-", "50 % off", "%50 indirim"), ("+", "%d", "%s"),
                ("+", "%ld bytes", "%d Byte"), ("-", "%s in %d", "%2$d mit %1$s"),
                ("+", "%1$@ %2$@", "%1$@ %1$@"), ("+", "<0>Read</0> on", "<0>Weiter<0>"), ("-", "<none>", "<keine>"),
                ("-", "{0:N2} and {name}", "{name} und {0:N2}"), ("+", "{name}", "{Name}"), ("-", "%%d", "%% d"),
                ("-", "%free", "% frei"), ("+", "%5.1f", "viel"), ("+", "Page %L1", "Seite")],
            "Check Endings": [
                ("-", "Name:", "名前："), ("-", "Really?", "هل أنت متأكد؟"), ("-", "Loading...", "Laden …"),
                ("+", "Loading...", "Laden.."), ("-", "What?!", "Was!?"), ("-", "Open...", "開く...(&O)"),
                ("-", "Sure?", "Σίγουρα;"), ("+", "Sure?", "Sicher;"), ("-", "Use \":\"", "„:“ verwenden"),
                ("-", "Can't open “%1.”", "„%1“ geht nicht auf."), ("+", "Done.", "Fertig"), ("-", "Go", "Los")]}
        for number, (script, rows) in enumerate(cases.items()):
            self.driven = self.program(self.write("cases%d.kestrum_locale" % number, entries=[
                ["%02d" % row, [[0, *texts]]] for row, (_, *texts) in enumerate(rows)]))
            report = self.run_script(script)["explanation"]
            found = [int(line.split(":")[0].split()[1]) - 1 for line in report.splitlines()]
            self.assertEqual(found, [row for row, (kind, *_) in enumerate(rows) if kind == "+"], report)

    def test_searches_go_on_below_and_begin_again(self):
        for script, row in [("Find Doubled Blanks", "doubled"), ("Find Long Translations", "long"),
                            ("Next Untranslated", "empty")]:
            for start in (0, len(NAMES) - 1):
                self.driven.select(start)
                self.assertIsNone(self.run_script(script))
                self.assertEqual(self.selected(), row, script)
        self.assertFalse(self.driven.document()["dirty"])

    def test_changes_are_undone_one_by_one(self):
        self.driven.select(1)
        self.assertEqual(self.run_script("Fill Empty Translations")["message"], "1 translations filled.")
        self.run_script("Remove Doubled Blanks")
        self.run_script("Trim Translations")
        self.assertEqual([self.translation(name) for name in ("empty", "doubled", "blanks", "nothing")],
                         ["Not yet", "Zwei Wörter hier", "Enden", ""])
        self.assertEqual((self.selected(), self.driven.document()["undo"]), ("placeholder", 3))
        for _ in range(3):
            self.driven.menu("EditUndo")
        self.assertEqual(self.driven.document()["entries"], ENTRIES)

    def test_a_translation_goes_to_the_platforms_that_lack_one(self):
        row = NAMES.index("platforms")
        self.driven.expand(row)
        self.driven.select(row)
        self.run_script("Copy to Same Texts")
        self.assertEqual([self.translation("platforms", platform) for platform in range(4)], ["Beenden"] * 4)
        self.assertEqual(self.driven.rows()["index"], row)

    def test_checks_compare_words_across_rows(self):
        self.driven = self.program(self.write("terms.kestrum_locale", entries=[
            ["a", [[0, "Save file", "Datei sichern"]]],
            ["b", [[0, "SAVE FILE", "Akte sichern"]]],
            ["c", [[0, "Window", "fenster"]]]]))
        for script, report in [("Check Same Texts", "Save file: Datei sichern / Akte sichern\n"),
                               ("Check Terms", 'Row 2: file is not "Datei": Akte sichern\n')]:
            self.assertEqual(self.run_script(script)["explanation"], report)
            self.assertEqual(self.selected(), "b")
        self.assertFalse(self.driven.document()["dirty"])

    def test_statistics_and_nothing_left_untried(self):
        dialog = self.run_script("Statistics")
        self.assertEqual(dialog["message"], "9 of 11 rows are translated (82 %).")
        self.assertEqual(dialog["explanation"], "Words: 21 in the default texts, 22 in the translations.")
        text = pathlib.Path(__file__).read_text("utf-8")
        for script in FOLDER.iterdir():
            self.assertIn('"%s"' % script.stem, text)


if __name__ == "__main__":
    unittest.main()
