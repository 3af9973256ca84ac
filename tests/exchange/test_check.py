"""What check finds and stats counts, and how they end."""
import json
import unittest

from exchange import ExchangeCase, locale_file

CLEAN = [
    ["open", [[0, "&Open %1...", "%1 ö&ffnen …"]]],
    ["quit", [[0, "Quit", "Beenden"], [2, "Quit", "Schließen"]]],
    ["nothing", [[0, "", ""]]],
]
FAULTY = [
    ["bar|slash\\", [[2, "&Exit", "Beenden"], [0, "&Exit now.", "&Jetzt  gehen."]]],
    ["two\nlines\x1b", [[0, "%1 of <0>", "%1"]]],
    ["quit", [[0, "Save", "Sichern"], [7, "Save", ""]]],
    ["save", [[0, "Save", "Speichern"], [1, "OK", "OK"]]],
]
FOUND = [("bar\\|slash\\\\", "doubled-blank"), ("bar\\|slash\\\\|Windows", "mnemonic"), ("two\nlines\x1b", "placeholder"),
         ("quit|7", "untranslated"), ("save", "inconsistent")]


class Check(ExchangeCase):
    def found(self, *words, status=1):
        """[(key, rule)] of the findings."""
        text, error = self.run_program("check", "--format", "json", *words, status=status)
        self.assertEqual(error, "")
        findings = json.loads(text)
        for finding in findings:
            self.assertEqual(list(finding), ["file", "key", "rule", "message"])
        return [(finding["key"], finding["rule"]) for finding in findings]

    def test_a_clean_file_prints_nothing(self):
        locale = self.locale(CLEAN)
        before = locale.read_bytes()
        self.assertEqual(self.run_program("check", locale, locale), ("", ""))
        self.assertEqual(self.found(locale, status=0), [])
        self.assertEqual(locale.read_bytes(), before)

    def test_findings_are_lines_in_the_order_of_the_file(self):
        locale = self.locale(FAULTY)
        self.assertEqual(self.found(locale), FOUND)
        lines = self.run_program("check", locale.name, status=1)[0].splitlines()
        shown = [(key.replace("\n", "\\n").replace("\x1b", "\ufffd"), rule) for key, rule in FOUND]
        self.assertEqual([line.rsplit(": ", 1)[0] for line in lines],
                         ["de.kestrum_locale:%s: %s" % pair for pair in shown])
        self.assertEqual(lines[2].rsplit(": ", 1)[1], "the translation lacks <0>")
        self.assertIn('"Sichern" at quit', lines[4])

    def test_files_are_checked_one_by_one(self):
        clean, faulty = self.locale(CLEAN, "clean.x"), self.locale(FAULTY)
        findings = json.loads(self.run_program("check", "--format=json", faulty, clean, faulty, status=1)[0])
        self.assertEqual([finding["file"] for finding in findings], [str(faulty)] * 2 * len(FOUND))

    def test_rules_are_chosen(self):
        locale = self.locale(FAULTY)
        self.assertEqual(self.found("--rule", "same", "--rule", "mnemonic", locale), [FOUND[1], ("save|Mac OS", "same")])
        self.assertEqual(self.found("--no-rule", "mnemonic", "--no-rule", "untranslated", locale),
                         [FOUND[0], FOUND[2], FOUND[4]])
        self.assertEqual(self.found("--longest", "2.2", "--rule", "same", "--no-rule", "same", locale),
                         [("save", "length")])
        self.assertEqual(self.found("--rule", "edges", locale, status=0), [])

    def test_wrong_use(self):
        locale = self.locale()
        for words in (("check",), ("stats",), ("check", "--rule", "what", locale), ("check", "--no-rule", "", locale),
                      ("check", "--rule", "length", locale), ("check", "--format", "xml", locale),
                      ("stats", "--rule", "same", locale)):
            self.refused(*words, status=2)
        for factor in ("", "x", "0", "-1", "2x", "inf", "nan", "1e999"):
            self.refused("check", "--longest", factor, locale, status=2)

    def test_nothing_is_told_if_a_file_is_unreadable(self):
        good, bad = self.locale(FAULTY), self.write("bad", "no locale")
        for command in ("check", "stats"):
            self.assertEqual(self.refused(command, good, bad), "%s: not a valid locale file" % bad)
            self.assertIn("gone: ", self.refused(command, "--format", "json", good, "gone"))

    def test_any_bytes(self):
        data = locale_file.to_bytes([["kXX", [[0, "Save YY", "  Save YY"]]]])
        locale = self.write("de.kestrum_locale", data.replace(b"XX", b"\xff\xc3").replace(b"YY", b"\xe2\x82"))
        self.assertEqual(self.found(locale), [("k\ufffd\ufffd", "edges"), ("k\ufffd\ufffd", "doubled-blank")])
        self.assertIn("k\ufffd\ufffd: edges: ", self.run_program("check", locale, status=1)[0])
        self.assertIn(" 1 words, 0 words to do\n", self.run_program("stats", locale)[0])


class Stats(ExchangeCase):
    def test_a_line_for_each_file(self):
        first, second = self.locale(CLEAN), self.locale(FAULTY, "other", language="")
        text = self.run_program("stats", first.name, second.name)[0]
        self.assertEqual(text.splitlines(), [
            "de.kestrum_locale: de, 3 strings, 4 rows, 3 translated (75 %), 4 words, 0 words to do",
            "other: no language, 4 strings, 7 rows, 6 translated (85 %), 10 words, 1 words to do"])
        self.assertEqual(json.loads(self.run_program("stats", "--format", "json", first.name)[0]), [
            {"file": "de.kestrum_locale", "language": "de", "strings": 3, "rows": 4, "translated": 3, "percent": 75,
             "words": 4, "words_to_do": 0}])


if __name__ == "__main__":
    unittest.main()
