import os
import unittest

import locale_file
from driver import Case

UNREADABLE = [{"kind": "MsgBox", "text": "The file could not be opened."}]


def classes(program):
    return [window["class"] for window in program.windows()]


class Windows(Case):
    def test_launch_window_gives_way_to_a_document(self):
        program = self.program()
        self.assertEqual(classes(program), ["LaunchWindow"])
        self.assertEqual((program.windows()[0]["path"], program.windows()[0]["changed"]), (None, None))
        program.press("PushButton1", shown=1)
        self.assertEqual(classes(program), ["LaunchWindow"])
        path = self.write()
        program.answer_file(path)
        self.assertEqual(program.press("PushButton1", shown=1)["shown"], [{
            "kind": "OpenDialog", "filter": "KestrumLocale;Norvane Locale", "prompt": "", "within": True,
            "chosen": str(path)}])
        window = program.windows()[0]
        self.assertEqual((window["class"], window["title"], window["path"], window["changed"]),
                         ("MainWindow", path.name, str(path), False))
        self.assertEqual(len(program.windows()), 1)

    def test_unreadable_files_and_reopening(self):
        path = self.write()
        broken = self.folder / "broken.nvl"
        dateless = self.write("date.nvl", date="yesterday")
        broken.write_bytes(path.read_bytes() + b"odd!\0\0\0\0")
        program = self.program()
        pipe = self.folder / "pipe.nvl"
        os.mkfifo(pipe)
        endless = self.folder / "endless.nvl"
        endless.symlink_to("/dev/zero")
        for bad in (broken, dateless, self.folder / "missing.nvl", self.folder, pipe, endless):
            with self.subTest(file=bad.name):
                self.assertEqual(program.open(bad, shown=1)["shown"], UNREADABLE)
                self.assertEqual(classes(program), [])
        self.assertTrue(program.reopen())
        self.assertEqual(classes(program), ["LaunchWindow"])
        program.open(path)
        program.open(broken, shown=1)
        self.assertTrue(program.reopen())
        self.assertEqual(classes(program), ["MainWindow"])
        self.assertTrue(program.menu("FileClose")["handled"])
        self.assertEqual(classes(program), [])
        self.assertEqual(program.enabled("FileOpen", "FileClose", "FileSave", "LocalizationNextItem"),
                         [True, False, False, False])

    def test_two_windows_on_one_file_are_independent(self):
        path = self.write()
        program = self.program(path, path)
        program.select(0)
        program.type("x")
        self.assertEqual([window["changed"] for window in program.windows()], [True, False])
        self.assertEqual(program.enabled("EditUndo", "FileSave"), [True, True])
        program.activate(1)
        self.assertEqual([window["changed"] for window in program.windows()], [False, True])
        self.assertEqual(program.enabled("EditUndo", "FileSave"), [False, False])
        self.assertEqual(program.document()["entries"], locale_file.ENTRIES)
        self.assertFalse(program.menu("EditUndo")["enabled"])

        program.menu("LocalizationOnlyShowNonlocalizedStrings")
        self.assertEqual(program.identifiers(), ["leave", "blank"])
        program.activate(1)
        self.assertTrue(program.item("LocalizationOnlyShowNonlocalizedStrings")["checked"])
        self.assertEqual(len(program.identifiers()), 4)
        program.click(-1)
        self.assertEqual(program.identifiers(), ["leave", "blank"])

    def test_quit_stops_at_a_refusal(self):
        paths = [self.write("%d.nvl" % index) for index in range(4)]
        program = self.program(*paths)
        for index in (1, 3):
            program.activate(index)
            program.select(0)
            program.type("x")
        titles = [window["title"] for window in program.windows()]
        self.assertEqual(titles, ["0.nvl", "2.nvl", "3.nvl", "1.nvl"])
        program.answer("alternate")
        program.answer("cancel")
        self.assertFalse(program.quit(shown=2))
        self.assertEqual([window["title"] for window in program.windows()], ["2.nvl", "3.nvl", "1.nvl"])
        program.answer("action")
        self.assertTrue(program.quit(shown=1))
        self.assertEqual(program.windows(), [])
        self.assertEqual(paths[0].read_bytes(), paths[1].read_bytes())
        self.assertEqual(paths[2].read_bytes(),
                         locale_file.to_bytes(locale_file.changed(locale_file.ENTRIES, "greeting", 0, "x")))

    def test_about_window_stands_above_the_document(self):
        program = self.program(self.write())
        for leave in (lambda: program.key("a"), lambda: program.press("Canvas1"), lambda: program.press("StaticText1"),
                      program.close):
            program.menu("AboutSorbel")
            self.assertEqual(classes(program), ["AboutWindow", "MainWindow"])
            self.assertRegex(program.panes()["StaticText1"]["text"], r"^\d+\.\d")
            self.assertEqual(program.rows()["total"], 4)
            leave()
            self.assertEqual(classes(program), ["MainWindow"])

    def test_menus_as_on_screen(self):
        menus = self.program(self.write()).menus()
        self.assertEqual([menu["text"] for menu in menus], ["&File", "&Edit", "Scripts", "Localization"])
        self.assertEqual([(item["name"], item["shortcut"]) for item in menus[3]["items"]],
                         [("LocalizationOnlyShowNonlocalizedStrings", "Cmd+K"), ("LocalizationNextItem", "Cmd+]"),
                          ("LocalizationPreviousSring", "Cmd+["), ("UntitledSeparator", ""), ("AboutSorbel", "")])


if __name__ == "__main__":
    unittest.main()
