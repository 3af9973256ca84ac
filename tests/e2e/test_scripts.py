"""Scripts: the folder, its menu, what a script reaches, and how errors are told."""
import os
import unittest

import driver

ENTRIES = [["first", [[0, "one", "eins"]]], ["second", [[0, "two", "zwei"]]], ["third", [[0, "three", ""]]]]
SAMPLES = ["Loop Sample.sorbel_script", "Sample.sorbel_script"]


class Scripts(driver.Case):
    def start(self, *files):
        return self.program(*files, arguments=["--documents", str(self.folder)])

    @property
    def scripts(self):
        return self.folder / "Kestrum" / "Sorbel" / "Scripts"

    def install(self, name, text="Beep"):
        self.scripts.mkdir(parents=True, exist_ok=True)
        (self.scripts / name).write_text(text, "utf-8")

    def menu(self, program):
        items = program.item("ScriptsMenu")["items"]
        self.assertEqual({item["name"] for item in items}, {""})
        return [(item["text"], item["shortcut"]) for item in items]

    def translations(self, program):
        return [platforms[0][2] for _, platforms in program.document()["entries"]]

    def shown_by(self, program, source):
        """The values that a script gives out, one message dialog each."""
        reply = program.raw("run", source=source)
        self.assertTrue(reply["ok"], reply)
        return [dialog.get("message", dialog.get("text")) for dialog in reply["shown"]]

    def test_samples_come_with_the_first_refresh_and_come_back(self):
        program = self.start(self.write(entries=ENTRIES))
        self.assertEqual(self.menu(program), [("Show Scripts Folder", "")])
        samples = self.scripts / "Samples"
        self.assertEqual(sorted(path.name for path in samples.iterdir()), SAMPLES)
        (samples / SAMPLES[0]).write_text("mine")
        (samples / SAMPLES[1]).unlink()
        program.menus()
        self.assertEqual((samples / SAMPLES[0]).read_text(), "mine")
        text = (samples / SAMPLES[1]).read_bytes()
        self.assertTrue(text.startswith(b"//  Reverses the text in the TranslatedText field\n\nif ShowDialog("))
        self.assertTrue(text.endswith(b'TranslatedText = default + ": " + newString\n'))

    def test_both_samples_run_unchanged(self):
        program = self.start(self.write(entries=ENTRIES))
        program.menus()
        for name in SAMPLES:
            self.install(name, (self.scripts / "Samples" / name).read_text("utf-8"))
        program.select(1)
        program.answer("action")
        question = program.call("menu", shown=1, script="Sample")["shown"][0]
        self.assertEqual((question["message"], question["action"], question["cancel"], question["alternate"]),
                         ("Are you sure you want to reverse this translated string?", "No", "Yes", "Maybe"))
        self.assertEqual(self.translations(program), ["eins", "zwei", ""])
        program.answer("cancel")
        program.call("menu", shown=1, script="Sample")
        self.assertEqual(self.translations(program), ["eins", "two: iewz", ""])
        self.assertTrue(program.call("menu", script="Loop Sample")["handled"])
        self.assertEqual(self.translations(program), ["one: snie", "two: zwei :owt", "three: "])
        self.assertEqual(program.rows()["index"], 1)
        document = program.document()
        # The second row's two changes follow within half a second, but another row's lies between them.
        self.assertEqual((document["dirty"], document["undo"], document["internalChange"]), (True, 4, 0))
        for _ in range(4):
            program.menu("EditUndo")
        self.assertEqual((self.translations(program), program.document()["dirty"]), (["eins", "zwei", ""], False))

    def test_the_menu_mirrors_the_folder(self):
        for number in range(10, 30):
            self.install("s%d.sorbel_script" % number)
        self.install("Fix.all.SORBEL_SCRIPT")
        self.install("report.sorbel_script.bak")
        self.install("sorbel_script")
        (self.scripts / "folder").mkdir()
        program = self.start(self.write(entries=ENTRIES))
        names = ["Fix"] + ["s%d" % number for number in range(10, 30)] + ["sorbel_script"]
        keys = ["CMD + %d" % n for n in range(1, 10)] + ["CMD + SHIFT+%d" % n for n in range(9)] + [""] * 4
        self.assertEqual(self.menu(program), list(zip(names, keys)) + [("-", ""), ("Show Scripts Folder", "")])
        self.assertEqual(program.call("menu", script="s12")["beeps"], 1)
        (self.scripts / "s12.sorbel_script").unlink()
        program.error("menu", script="s12")
        (self.scripts / "s13.sorbel_script").unlink()
        (self.scripts / "s13.sorbel_script").mkdir()
        reply = program.call("menu", shown=1, script="s13")
        self.assertEqual((reply["handled"], reply["shown"][0]["text"]),
                         (False, 'Could not open the script file named "s13.sorbel_script".'))
        self.assertEqual(program.call("menu", script="Show Scripts Folder")["launched"], [str(self.scripts)])

    def test_a_mark_of_utf8_is_skipped_and_a_pipe_is_not_waited_for(self):
        program = self.start(self.write(entries=ENTRIES))
        self.install("marked.sorbel_script", "\ufeffBeep")
        os.mkfifo(self.scripts / "pipe.sorbel_script")
        program.menus()
        self.assertEqual(program.call("menu", script="marked")["beeps"], 1)
        self.assertEqual(program.call("menu", shown=1, script="pipe")["shown"][0]["text"],
                         'Could not open the script file named "pipe.sorbel_script".')

    def test_a_document_is_reached_by_rows_from_1(self):
        program = self.start(self.write(entries=ENTRIES))
        show = 'call ShowDialog(str(FirstRow) + "/" + str(LastRow) + "/" + str(CurrentRow), "", "", "")\n'
        self.assertEqual(self.shown_by(program, show), ["1/3/0"])
        rows = "".join("CurrentRow = %s\n%s" % (row, show) for row in ("100000", "2", "-5", "1", "0"))
        self.assertEqual(self.shown_by(program, rows), ["1/3/3", "1/3/2", "1/3/0", "1/3/1", "1/3/0"])
        # Without a selection the texts are empty, whatever the panes say, and an assignment does nothing.
        texts = 'call ShowDialog("[" + DefaultText + "|" + Translatedtext + "]", "", "", "")\n'
        self.assertEqual(self.shown_by(program, 'TRANSLATEDTEXT = "x"\n' + texts + "CurrentRow = 2\n" + texts),
                         ["[|]", "[two|zwei]"])
        self.assertFalse(program.document()["dirty"])
        program.search("zzz")
        self.assertEqual(self.shown_by(program, show), ["0/0/0"])
        program.menu("AboutSorbel")
        program.call("activate", index=0)
        self.assertEqual(self.shown_by(program, "CurrentRow = 3\n" + show), ["0/0/0"])

    def test_without_a_document_there_is_nothing_to_change(self):
        program = self.start()
        source = ('CurrentRow = 1\nTranslatedText = "x"\nBeep\n'
                  'call ShowDialog(str(CurrentRow) + str(FirstRow) + str(LastRow) + DefaultText, "", " A ", "B", "C", 7)')
        program.answer("alternate")
        reply = program.call("run", shown=2, source=source + '\nif ShowDialog("", "", "", "") = "OK" then beep')
        first, second = reply["shown"]
        self.assertEqual([first[key] for key in ("message", "action", "cancel", "alternate", "within", "pressed")],
                         ["-100", " A ", "B", "C", False, "alternate"])
        # Blank captions leave the buttons as a new dialog has them.
        self.assertEqual((second["action"], second["cancel"], second["alternate"]), ("OK", None, None))
        self.assertEqual(reply["beeps"], 2)

    def test_errors_are_told_in_words_and_change_nothing(self):
        program = self.start(self.write(entries=ENTRIES))
        program.select(0)
        self.assertEqual(self.shown_by(program, 'TranslatedText = "x"\n\nunknown = 3'),
                         ["Undefined identifier.\nLine 3"])
        self.assertEqual(self.shown_by(program, "dim a as integer\n#pragma error \"no\""),
                         ['Custom error created using "Error" pragma.\nLine 2'])
        self.assertEqual(self.shown_by(program, "Beep(1, 2)")[0].split("\n")[-1], "Line 1")
        document = program.document()
        self.assertEqual((document["undo"], document["dirty"]), (0, False))

    def test_a_failure_at_run_time_keeps_what_was_done(self):
        program = self.start(self.write(entries=ENTRIES))
        program.select(0)
        told = self.shown_by(program, 'TranslatedText = "x"\ndim a(1) as integer\na(2) = 1\nTranslatedText = "y"')
        self.assertEqual(len(told), 1)
        self.assertRegex(told[0], r"^OutOfBoundsException.*\nLine 3$")
        self.assertEqual(self.translations(program)[0], "x")
        program.menu("EditUndo")
        self.assertEqual(self.translations(program)[0], "eins")

    def test_a_stopped_script_runs_none_of_its_code_and_keeps_what_it_changed(self):
        program = self.start(self.write(entries=ENTRIES))
        program.select(0)
        source = ('TranslatedText = "done"\nClass Last\nSub Destructor()\nTranslatedText = "gone"\nEnd Sub\nEnd Class\n'
                  'Dim held As New Last\nTry\nWhile True\nCurrentRow = 2\nCurrentRow = 1\nWend\n'
                  'Catch e\nTranslatedText = "caught"\nFinally\nTranslatedText = "last"\nEnd Try')
        for jumps in (1, 2, 1000):
            reply = program.raw("run", source=source, stopAfter=jumps)
            self.assertEqual([(box["kind"], box["text"]) for box in reply["shown"]],
                             [("MsgBox", "The script was stopped.\nLine 10")])
            self.assertEqual(self.translations(program)[0], "done")
        program.menu("EditUndo")
        self.assertEqual(self.translations(program)[0], "eins")
        reply = program.raw("run", source="For i As Integer = 1 To 3\nNext\nCurrentRow = 1\nTranslatedText = \"end\"", stopAfter=3)
        self.assertEqual((reply["shown"], self.translations(program)[0]), ([], "end"))
        self.assertFalse(program.raw("run", source="Beep", stopAfter="soon")["ok"])


if __name__ == "__main__":
    unittest.main()
