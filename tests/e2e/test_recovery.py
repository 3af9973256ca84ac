"""What was not saved when the program died is offered again."""
import json
import os
import signal
import unittest

import driver
import locale_file

DATE = "January 31, 2026, 12:00."


class RecoveryTest(driver.Case):
    def run_program(self, *files, answers=(), now="2026-01-31 12:00:00"):
        """A run that has been started, and the reply to its start."""
        program = driver.Program(start=False, arguments=("--state", self.folder / "state", "--now", now))
        for answer in answers:
            program.answer(answer)
        reply = program.raw("start", files=[os.fspath(f) for f in files])
        self.assertTrue(reply["ok"], reply)
        return program, reply

    def die(self, program):
        program.process.send_signal(signal.SIGKILL)
        program.process.communicate()

    def journals(self):
        return sorted((self.folder / "state").glob("*"))

    def typed(self, path):
        """A program in which two strings were translated, and died; the document that it had."""
        program, reply = self.run_program(path)
        self.assertEqual(reply["shown"], [])
        program.select(0)
        program.type("Neu")
        program.tick(60)
        program.select(1)
        program.type("Verlassen")
        document = program.document()
        self.die(program)
        return document

    def test_restores_as_one_undoable_step(self):
        path = self.write()
        lost = self.typed(path)
        program, reply = self.run_program(path, answers=["action"])
        question = reply["shown"][0]
        self.assertEqual(question, {
            "kind": "MessageDialog", "message": "Restore unsaved changes?",
            "explanation": "Changes to “strings.kestrum_locale” were not saved when Sorbel last ended, 2 in all, "
                           "the last on " + DATE,
            "action": "Restore", "cancel": "Not Now", "alternate": "Discard", "within": True, "pressed": "action"})
        document = program.document()
        self.assertEqual(document["entries"], lost["entries"])
        self.assertEqual((document["descriptions"], document["dirty"]), (["Restore"], True))
        program.menu("EditUndo")
        self.assertEqual(program.document()["entries"], locale_file.ENTRIES)
        program.menu("EditRedo")
        program.menu("FileSave")
        self.assertEqual(path.read_bytes(), locale_file.to_bytes(lost["entries"]))
        program.end()
        self.assertEqual(self.journals(), [])

    def test_words_of_the_question(self):
        path = self.write()
        program, _ = self.run_program(path)
        program.select(0)
        program.type("Neu")
        self.die(program)
        path.write_bytes(path.read_bytes() + locale_file.number(b"vers", 0))
        program, reply = self.run_program(path, answers=["cancel"])
        program.end()
        self.assertEqual(reply["shown"][0]["explanation"].splitlines(), [
            "A change to “strings.kestrum_locale” was not saved when Sorbel last ended, on " + DATE,
            "The file has been changed since."])

    def test_asks_until_it_is_answered(self):
        path = self.write()
        self.typed(path)
        program, reply = self.run_program(path, answers=["cancel"])
        program.select(3)
        program.type("Leer")
        self.die(program)
        self.assertEqual(len(self.journals()), 2)
        program, reply = self.run_program(path, answers=["alternate", "action"])
        self.assertIn("2 in all", reply["shown"][0]["explanation"])
        self.assertIn("A change to", reply["shown"][1]["explanation"])
        self.assertEqual(program.document()["undo"], 1)
        self.die(program)
        program, reply = self.run_program(path, answers=["alternate"])
        self.assertEqual(len(reply["shown"]), 1)
        program.end()
        self.assertEqual(self.journals(), [])

    def test_offers_documents_at_a_start_without_files(self):
        first, second = self.write("a.kestrum_locale"), self.write("b.kestrum_locale")
        self.typed(first)
        self.typed(second)
        program, reply = self.run_program(answers=["cancel"])
        self.assertEqual([(d["message"], d["explanation"]) for d in reply["shown"]],
                         [("There are changes that were not saved.", "They can be restored in 2 documents.")])
        self.assertEqual([w["class"] for w in program.windows()], ["LaunchWindow"])
        program.end()
        second.unlink()
        program, reply = self.run_program(answers=["action", "action"])
        self.assertEqual(reply["shown"][0]["explanation"], "They can be restored in 1 document.")
        self.assertEqual([w["title"] for w in program.windows()], ["a.kestrum_locale"])
        program.end()
        program, _ = self.run_program(first, answers=["alternate"], now="2026-05-02 12:00:00")
        program.end()
        self.assertEqual(self.journals(), [], "of a file that is gone, and older than 90 days")

    def test_keeps_the_changes_of_a_save_that_failed(self):
        folder = self.folder / "work"
        folder.mkdir()
        path = self.write("work/strings.kestrum_locale")
        before = path.read_bytes()
        program, _ = self.run_program(path)
        program.select(0)
        program.type("Neu")
        path.unlink()
        folder.rmdir()
        reply = program.menu("FileSave")
        self.assertEqual(reply["notices"], [{
            "title": "“strings.kestrum_locale” could not be saved",
            "text": "No such file or directory. Your changes are kept and can be restored when it is opened "
                    "again."}])
        self.assertFalse(program.document()["dirty"])
        program.end()
        folder.mkdir()
        path.write_bytes(before)
        program, reply = self.run_program(path, answers=["action"])
        self.assertEqual(program.document()["entries"][0][1][0][2], "Neu")
        program.end()

    def test_imports_and_versions_come_back(self):
        path = self.write()
        newer = [[name, [[platform, default + "!", text + "?"] for platform, default, text in platforms]]
                 for name, platforms in locale_file.ENTRIES]
        other = self.write("newer.kestrum_locale", entries=newer, language="fr")
        program, _ = self.run_program(path)
        program.answer_file(other)
        program.answer("alternate")
        program.menu("FileImportExistingFile", shown=2)
        document = program.document()
        self.die(program)
        program, _ = self.run_program(path, answers=["action"])
        restored = program.document()
        for part in ("entries", "history", "language", "application"):
            self.assertEqual(restored[part], document[part], part)
        self.die(program)
        program, _ = self.run_program(path, answers=["action"])
        self.assertEqual(program.document()["history"], document["history"])
        program.end()

    def test_ends_by_a_signal_without_a_question(self):
        for ending in (signal.SIGTERM, signal.SIGHUP, signal.SIGINT):
            path = self.write(ending.name + ".kestrum_locale")
            program, _ = self.run_program(path)
            program.select(0)
            program.type("Neu")
            endless = json.dumps({"op": "run", "source": "While True\nWend"}).encode("ascii")
            program.process.stdin.write(endless + b"\n")
            program.process.stdin.flush()
            program.process.send_signal(ending)
            program.process.communicate(timeout=60)
            self.assertEqual(program.process.returncode, -ending)
            program, reply = self.run_program(path, answers=["action"])
            self.assertEqual(len(reply["shown"]), 1)
            self.assertEqual(program.document()["entries"][0][1][0][2], "Neu")
            self.die(program)

    def test_says_once_that_nothing_can_be_kept(self):
        (self.folder / "state").write_text("in the way")
        program, _ = self.run_program(self.write())
        program.select(0)
        reply = program.call("type", text="a")
        self.assertEqual(reply["notices"],
                         [{"title": "Unsaved changes are not protected", "text": "Not a directory."}])
        self.assertEqual(program.call("type", text="ab")["notices"], [])
        self.assertEqual(program.menu("FileSave")["notices"], [])
        program.end()


if __name__ == "__main__":
    unittest.main()
