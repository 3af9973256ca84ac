"""Filters, scrolling and selection across rebuilds of the list, and what several windows share."""
import unittest

import driver

MANY = [["kFile%02d" % i, [[0, "File %d" % i, "Datei %d" % i if i % 2 else ""]]] for i in range(60)]


class Filters(driver.Case):
    def test_the_scroll_position_of_the_latest_click_comes_back(self):
        program = self.program(self.write(entries=MANY))
        program.scroll(10)
        program.click(12)
        program.scroll(30)
        program.search("file")
        self.assertEqual(program.rows()["scroll"], 10)
        program.search("file 1")
        self.assertEqual((program.rows()["total"], program.rows()["scroll"]), (11, 10))
        program.search("file 11")
        self.assertEqual(program.rows()["scroll"], 0)
        program.search("")
        self.assertEqual(program.rows()["scroll"], 10)

    def test_selection_is_kept_by_the_text_that_was_shown(self):
        entries = [["alpha", [[0, "beta", ""]]], ["BETA", [[0, "gamma", ""]]], ["beta2", [[0, "x", ""]]]]
        program = self.program(self.write(entries=entries))
        program.paint()
        program.click(0)
        program.search("a")
        # The row clicked showed "beta", and the name match of that name, in any letter case, is what stays selected.
        self.assertEqual(program.panes()["NameField"]["text"], "BETA")
        program.search("zz")
        self.assertEqual(program.panes()["NameField"]["text"], "(No Selection)")

    def test_open_folders_survive_a_rebuild_but_no_search(self):
        program = self.program(self.write(entries=MANY[:3]))
        program.expand(1)
        program.menu("LocalizationOnlyShowNonlocalizedStrings")
        program.menu("LocalizationOnlyShowNonlocalizedStrings")
        self.assertEqual([row["expanded"] for row in program.rows()["rows"]], [False] * 3)
        program.expand(0)
        program.menu("LocalizationOnlyShowNonlocalizedStrings")
        self.assertEqual([row["expanded"] for row in program.rows()["rows"]], [True, False, False, False, False])
        program.search("file")
        program.search(" ")
        self.assertEqual([row["expanded"] for row in program.rows()["rows"]], [False, False])

    def test_the_reduced_list_is_one_state_of_the_program(self):
        program = self.program(self.write("a.nvl", MANY[:4]), self.write("b.nvl", MANY[:6]))
        program.menu("LocalizationOnlyShowNonlocalizedStrings")
        self.assertEqual(program.rows()["total"], 3)
        program.activate(1)
        self.assertTrue(program.item("LocalizationOnlyShowNonlocalizedStrings")["checked"])
        self.assertEqual(program.rows()["total"], 4)
        program.click(-1)
        self.assertEqual(program.rows()["total"], 2)
        program.open(self.write("c.nvl", MANY[:8]))
        self.assertEqual(program.rows()["total"], 4)
        # A search looks at all strings, and the mark stays.
        program.search("datei")
        self.assertEqual(program.identifiers(), ["kFile01", "kFile03", "kFile05", "kFile07"])
        program.search("")
        self.assertEqual(program.rows()["total"], 4)

    def test_a_search_looks_only_through_what_a_version_shows(self):
        older = [[name, platforms] for name, platforms in MANY[:4] if name != "kFile02"]
        program = self.program(self.write(entries=MANY[:4], history=[("2000-12-31 23:00:00", older)]))
        program.version(1)
        program.search("kFile")
        self.assertEqual(program.identifiers(), ["kFile02"])
        program.menu("LocalizationOnlyShowNonlocalizedStrings")
        program.search("")
        self.assertEqual(program.identifiers(), ["kFile02"])
        self.assertEqual(program.panes()["HistoryDefaultValueFieldLong"]["visible"], True)

    def test_a_change_of_appearance_leaves_everything_in_place(self):
        program = self.program(self.write(entries=MANY))
        program.click(3)
        before = program.rows(), program.panes()
        program.appearance()
        self.assertEqual((program.rows(), program.panes()), before)


if __name__ == "__main__":
    unittest.main()
