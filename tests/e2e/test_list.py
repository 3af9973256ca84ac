import unittest

from driver import Case
from locale_file import ENTRIES

TEXT, DISABLED, FAINT, SELECTED = "#111111", "#777777", "#AAAAAA", "#FEFEFE"
CHILDREN = [(1, "OS-Mac"), (2, "OS-Windows"), (3, "OS-Linux")]


def shape(reply):
    return [(row["identifier"], row["platform"], row["folder"]) for row in reply["rows"]]


class List(Case):
    def test_rows_are_painted_from_the_document(self):
        program = self.program(self.write())
        program.select(0)
        reply = program.paint()
        mac = {"name": "OS-Mac", "x": 284, "y": 0, "tint": TEXT}
        windows = {"name": "OS-Windows", "x": 300, "y": 0, "tint": FAINT}
        expected = [("Hallo Welt", SELECTED, False, False, []), ("Exit", DISABLED, True, False, [mac, windows]),
                    ("(blank)", None, False, True, []), ("(dock)", None, False, True, [mac])]
        self.assertEqual([(c["text"], c["color"], c["bold"], c["italic"], c["icons"]) for c in reply["cells"]], expected)
        self.assertTrue(all(cell["drawn"] for cell in reply["cells"]))
        self.assertEqual([row["text"] for row in program.rows()["rows"]], [text for text, *_ in expected])
        icon = program.paint(width=100, **{"from": 1, "count": 1})["cells"][0]["icons"][0]
        self.assertEqual(icon["x"], 44)

    def test_folders_open_and_close_around_the_selection(self):
        program = self.program(self.write())
        program.select(3)
        program.expand(1)
        reply = program.rows()
        self.assertEqual((reply["index"], reply["total"]), (6, 7))
        self.assertTrue(reply["rows"][1]["expanded"])
        self.assertEqual([(row["platform"], row["picture"]) for row in reply["rows"][2:5]], CHILDREN)
        self.assertEqual({(row["identifier"], row["depth"], row["folder"]) for row in reply["rows"][2:5]},
                         {("leave", 1, False)})
        self.assertEqual(program.paint()["cells"][4]["text"], "(No platform-specific value)")
        program.select(3)
        program.collapse(1)
        self.assertEqual((program.rows()["index"], program.rows()["total"]), (1, 4))
        self.assertEqual(program.panes()["NameField"]["text"], "leave")

    def test_next_and_previous_string(self):
        program = self.program(self.write())
        seen = []
        for command in ["PreviousSring", "NextItem", "PreviousSring", "NextItem", "NextItem", "NextItem", "NextItem"]:
            self.assertTrue(program.menu("Localization" + command)["handled"])
            seen.append(program.rows()["index"])
        self.assertEqual(seen, [-1, 0, 0, 1, 2, 3, 3])

    def test_a_click_selects_what_stands_there_after_it(self):
        program = self.program(self.write())
        program.menu("LocalizationOnlyShowNonlocalizedStrings")
        program.click(0)
        for platform, row in ((0, 0), (2, 2)):
            program.expand(0)
            program.select(row)
            program.type("x")
        self.assertEqual(program.identifiers()[0], "leave")
        program.click(0)
        self.assertEqual((program.identifiers(), program.rows()["index"]), (["blank"], 0))
        self.assertEqual(program.panes()["NameField"]["text"], "blank")
        program.click(-1)
        self.assertEqual(program.panes()["NameField"]["text"], "(No Selection)")

    def test_search_and_its_scopes(self):
        program = self.program(self.write())
        program.search(" EXIT ")
        self.assertEqual(shape(program.rows()), [("leave", 0, False), ("leave", 2, False)])
        self.assertEqual(program.rows()["index"], 1)
        program.search("dock")
        self.assertEqual(shape(program.rows()), [("dock", 0, True)])
        reply = program.scope("Name")
        self.assertEqual(reply["items"], [{"text": text, "checked": True}
                                          for text in ("Name", "Default Value", "Translated Value")])
        window, button = program.windows()[0], program.panes()["SearchOptionsMenu"]
        self.assertEqual((reply["x"], reply["y"]), (window["left"] + button["left"],
                                                    window["top"] + button["top"] + button["height"]))
        self.assertEqual(shape(program.rows()), [("dock", 1, False)])
        program.scope("Default Value")
        self.assertEqual(program.rows()["total"], 1)
        program.scope("Translated Value")
        self.assertEqual(program.rows()["total"], 0)
        self.assertEqual({item["checked"] for item in program.scope(None)["items"]}, {False})
        program.search("  ")
        self.assertEqual(program.identifiers(), [name for name, _ in ENTRIES])

    def test_a_version_shows_what_has_changed(self):
        older = [["greeting", [[0, "Hello there world", ""]]], ["leave", ENTRIES[1][1]], ["blank", ENTRIES[2][1]]]
        program = self.program(self.write(history=[("2000-12-31 23:00:00", older)]))
        versions = program.versions()
        self.assertEqual((versions["items"], versions["index"], versions["enabled"]),
                         (["All Strings", "December 31, 2000"], 0, True))
        program.version(1)
        self.assertEqual(program.identifiers(), ["greeting", "dock"])
        program.select(0)
        panes = program.panes()
        self.assertEqual(panes["HistoryDefaultValueLabel"]["text"], "December 31, 2000 Value:")
        runs = [(run["text"], run["color"]) for run in panes["HistoryDefaultValueFieldLong"]["runs"]]
        self.assertEqual(runs[-1][1], "#AA0000")
        self.assertEqual("".join(text for text, _ in runs), "Hello there world")
        self.assertEqual(panes["DefaultValueFieldLong"]["runs"][-1], {"text": "world", "color": "#00AA00"})
        program.version(0)
        self.assertFalse(program.panes()["HistoryDefaultValueFieldLong"]["visible"])
        self.assertEqual(len(program.identifiers()), 4)

    def test_layout_follows_splitters_and_size(self):
        program = self.program(self.write())
        program.drag("SimpleSplitter1", -1000, 0)
        panes = program.panes()
        self.assertEqual((panes["SimpleSplitter1"]["left"], panes["ListBox1"]["width"]), (104, 82))
        program.drag("SimpleSplitter2", 0, 10)
        self.assertEqual(program.panes()["SimpleSplitter2"]["top"], 186)
        program.resize(900, 700)
        panes = program.panes()
        field = panes["LocalizedValueField"]
        self.assertEqual((field["left"] + field["width"], field["top"] + field["height"]), (880, 680))
        program.accelerator("StaticText3")
        self.assertEqual([name for name, pane in program.panes().items() if pane["focus"]], ["SearchField"])

    def test_a_hundred_thousand_rows(self):
        count = 100000
        program = self.program(self.write(entries=[["id%d" % i, [[0, "Text %d" % i, ""]]] for i in range(count)]))
        reply = program.paint()
        self.assertEqual((reply["total"], len(reply["rows"]), len(reply["cells"])), (count, count, count))
        self.assertEqual(reply["cells"][-1]["text"], "Text 99999")


if __name__ == "__main__":
    unittest.main()
