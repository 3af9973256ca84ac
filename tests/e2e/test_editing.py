import json
import pathlib
import shutil
import subprocess
import sys
import unittest

import locale_file
from driver import Case
from locale_file import ENTRIES, changed

ROOT = pathlib.Path(__file__).parents[2]
UNDO_STATE = ("EditUndo", "EditRedo", "FileSave")


def read(path):
    """The file as a reader sees it that shares nothing with the program."""
    command = [sys.executable, "-B", ROOT / "tests" / "tools" / "locale_reader.py", path]
    return json.loads(subprocess.run(command, check=True, capture_output=True).stdout)


class Editing(Case):
    def test_the_sample_keeps_all_but_the_one_value(self):
        path = self.folder / "sample.kestrum_locale"
        shutil.copy(ROOT / "samples" / "Notizbuch.kestrum_locale", path)
        expected = read(path)
        program = self.program(path)
        entry = next(e for e in expected["entries"] if e[1] == 0 and e[3] == "")
        program.select(program.identifiers().index(entry[0]))
        program.type("Übersetzt \"1\"")
        program.menu("EditUndo")
        program.menu("EditRedo")
        program.menu("FileSave")
        program.close()
        self.assertNotEqual(read(path), expected)
        entry[3] = "Übersetzt \"1\""
        self.assertEqual(read(path), expected)

    def test_translate_undo_redo_save_close(self):
        path = self.write(tool="5.1", history=[("2000-01-01 00:00:00", ENTRIES[:1])])
        program = self.program(path)
        before = program.document()
        self.assertEqual((before["entries"], before["language"], before["toolVersion"]), (ENTRIES, "de", "5.1"))
        self.assertEqual(before["history"], [{"date": "2000-01-01 00:00:00", "entries": ENTRIES[:1]}])
        self.assertEqual(program.enabled(*UNDO_STATE), [False, False, False])

        program.select(1)
        self.assertTrue(program.type("Verlassen"))
        after = changed(ENTRIES, "leave", 0, "Verlassen")
        document = program.document()
        self.assertEqual((document["entries"], document["dirty"], document["undo"]), (after, True, 1))
        self.assertEqual(program.enabled(*UNDO_STATE), [True, False, True])
        self.assertTrue(program.windows()[0]["changed"])

        program.menu("EditUndo")
        self.assertEqual(program.document()["entries"], ENTRIES)
        self.assertEqual(program.enabled(*UNDO_STATE), [False, True, False])
        self.assertFalse(program.windows()[0]["changed"])
        program.menu("EditRedo")
        self.assertEqual(program.document()["entries"], after)
        self.assertEqual(path.read_bytes(), locale_file.to_bytes(ENTRIES, tool="5.1",
                                                                 history=[("2000-01-01 00:00:00", ENTRIES[:1])]))

        self.assertTrue(program.menu("FileSave")["enabled"])
        self.assertEqual(path.read_bytes(), locale_file.to_bytes(after, tool="5.1",
                                                                 history=[("2000-01-01 00:00:00", ENTRIES[:1])]))
        document = program.document()
        self.assertEqual((document["dirty"], document["savePoint"], document["undo"]), (False, 0, 1))
        self.assertEqual(program.enabled(*UNDO_STATE), [True, False, False])
        self.assertTrue(program.close()["closed"])
        self.assertEqual(program.windows(), [])

    def test_closing_an_edited_document_asks(self):
        for button, closes, translation in [("cancel", False, ""), ("alternate", True, ""), ("action", True, "x")]:
            with self.subTest(button=button):
                path = self.write(button + ".nvl")
                program = self.program(path)
                program.select(1)
                program.type("x")
                program.answer(button)
                reply = program.close(shown=1)
                self.assertEqual(reply["shown"], [{
                    "kind": "MessageDialog", "message": "Do you want to save changes?", "explanation": "",
                    "action": "&Save", "cancel": "Cancel", "alternate": "&Don't Save", "within": True,
                    "pressed": button}])
                self.assertEqual((reply["closed"], len(program.windows())), (closes, 0 if closes else 1))
                self.assertEqual(path.read_bytes(), locale_file.to_bytes(changed(ENTRIES, "leave", 0, translation)))
                if not closes:
                    self.assertTrue(program.document()["dirty"])

    def test_keystrokes_join_until_half_a_second_passes(self):
        program = self.program(self.write())
        program.select(0)
        for ticks, text, undo in [(0, "a", 1), (29, "ab", 1), (29, "abc", 1), (30, "abcd", 2), (0, "abcd", 2)]:
            program.tick(ticks)
            program.type(text)
            self.assertEqual(program.document()["undo"], undo, text)
        program.menu("EditUndo")
        self.assertEqual(program.document()["entries"][0][1][0][2], "abc")
        program.menu("EditUndo")
        self.assertEqual(program.document()["entries"], ENTRIES)
        self.assertFalse(program.menu("EditUndo")["enabled"])

    def test_typing_needs_a_selection_and_makes_missing_platforms(self):
        program = self.program(self.write())
        self.assertFalse(program.type("x"))
        self.assertEqual(program.document()["undo"], 0)
        program.expand(0)
        program.select(3)
        self.assertEqual(program.panes()["DefaultValueFieldLong"]["text"], "Hello world")
        program.type("Tux")
        self.assertEqual(program.document()["entries"][0][1],
                         [[0, "Hello world", "Hallo Welt"], [3, "Hello world", "Tux"]])
        self.assertEqual(program.document()["internalChange"], 0)

    def test_saving_and_undoing_makes_the_document_dirty_again(self):
        program = self.program(self.write())
        program.select(0)
        program.type("x")
        program.menu("FileSave")
        program.menu("EditUndo")
        self.assertEqual(program.enabled(*UNDO_STATE), [False, True, True])
        program.menu("EditRedo")
        self.assertEqual(program.enabled(*UNDO_STATE), [True, False, False])


if __name__ == "__main__":
    unittest.main()
