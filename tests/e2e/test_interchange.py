import json
import os
import pathlib
import resource
import shutil
import signal
import unittest

import locale_file
from driver import Case
from locale_file import ENTRIES, changed

ROOT = pathlib.Path(__file__).parents[2]
SAMPLES = ROOT / "samples"
WRONG_TARGET = ("Unable to export to application.\n\nBe sure to select a version of your application that was built "
                "with dynamic constants.")
NOT_UPDATED = {"kind": "MsgBox", "text": "Could not update application."}
QUESTION = {
    "kind": "MessageDialog", "within": True,
    "message": "The file selected is not the same language as the current file.",
    "explanation": "The current file is German (de) but the file being imported is Zyphe (). Select which language to "
                   "use, or click cancel to cancel the import.",
    "action": "German (de)", "cancel": "Cancel", "alternate": "Zyphe ()"}


def failure(name):
    return {"kind": "MsgBox", "text": "The file \"%s\" could not be imported.\r\rThe format of the file is not one "
                                      "that Sorbel can import." % name}


def translations(document):
    return {(identifier, values[0]): values[2] for identifier, platforms in document["entries"] for values in platforms}


class Interchange(Case):
    def imports(self, program, path, shown=1, **options):
        program.answer_file(path)
        reply = program.call("menu", shown, name="FileImportExistingFile", **options)
        self.assertEqual(reply["shown"][0], {
            "kind": "OpenDialog", "filter": "Norvane Locale;Tab Delimited;KestrumLocale", "prompt": "", "within": True,
            "chosen": path and str(path)})
        return reply["shown"][1:]

    def exports(self, program, path, shown=1):
        program.answer_file(path)
        reply = program.menu("ExportExporttoApplication", shown)
        self.assertEqual(reply["shown"][0], {
            "kind": "OpenDialog", "filter": "Application", "within": True, "chosen": path and str(path),
            "prompt": "Select the application for this localization:"})
        self.assertEqual(reply["launched"], [])
        return reply["shown"][1:]

    def sample(self):
        path = self.folder / "Notizbuch.kestrum_locale"
        shutil.copy(SAMPLES / path.name, path)
        return self.program(path)

    def bundle(self, name="My App.app", inside="Contents/Resources"):
        (self.folder / name / inside).mkdir(parents=True)
        return self.folder / name

    def undoes_and_redoes(self, program, before, after):
        seen = program.rows()["rows"]
        program.menu("EditUndo")
        undone = program.document()
        self.assertEqual(undone["history"], before["history"])
        old = translations(before)
        for key, text in translations(undone).items():
            self.assertEqual(text, old.get(key, ""), key)
        self.assertFalse(undone["dirty"])
        program.menu("EditRedo")
        redone = program.document()
        self.assertEqual(redone, after)
        self.assertEqual(program.rows()["rows"], seen)

    # --- Import ---
    def test_a_newer_locale_file_is_merged_as_one_step(self):
        program = self.sample()
        before = program.document()
        self.assertEqual(self.imports(program, SAMPLES / "Notizbuch newer.kestrum_locale"), [])
        after = program.document()
        old = translations(before)
        new = translations(after)
        self.assertEqual([e[0] for e in after["entries"]], [e[0] for e in before["entries"]])
        self.assertGreater(sum(old.get(key) != text for key, text in new.items()), 5)
        self.assertEqual((after["descriptions"], after["dirty"], after["internalChange"]), (["Import"], True, 0))
        self.assertEqual(after["history"][:-1], before["history"])
        self.assertEqual(after["history"][-1]["entries"], before["entries"])
        self.assertEqual(len(program.versions()["items"]), len(after["history"]) + 1)
        self.undoes_and_redoes(program, before, after)

    def test_the_sample_of_delimited_text(self):
        program = self.sample()
        before = program.document()
        path = SAMPLES / "Notizbuch translations.txt"
        self.assertEqual(self.imports(program, path), [])
        after = program.document()
        new = translations(after)
        platforms = {"Any": 0, "Mac OS": 1, "Windows": 2, "Linux": 3}
        for row in path.read_text("utf-8").splitlines():
            identifier, platform, _, text = row.split("\t")
            if identifier in dict(before["entries"]):
                self.assertEqual(new[identifier, platforms[platform]], json.loads('"%s"' % text), row)
        self.assertNotEqual(after["entries"], before["entries"])
        self.assertEqual((after["descriptions"], after["history"]), (["Import"], before["history"]))
        self.undoes_and_redoes(program, before, after)

    def test_another_language_is_asked_about(self):
        other = self.write("other.nvl", [["greeting", [[0, "Hello", "new"]]]], language="")
        for button, language, text in [("cancel", "de", "Hallo Welt"), ("action", "de", "new"), ("alternate", "", "new")]:
            with self.subTest(button=button):
                program = self.program(self.write())
                program.expand(0)
                program.answer(button)
                self.assertEqual(self.imports(program, other, shown=2), [{**QUESTION, "pressed": button}])
                document = program.document()
                self.assertEqual((document["language"], document["entries"][0][1][0][2]), (language, text))
                self.assertEqual(document["dirty"], button != "cancel")
                self.assertEqual(program.panes()["TranslationText"]["text"], "German &Translation:")
                program.menu("EditUndo")
                self.assertEqual(program.document()["language"], language)
        program = self.program(self.write())
        self.assertEqual(self.imports(program, self.write("same.nvl", [], language="DE")), [])
        document = program.document()
        self.assertEqual((document["entries"], document["dirty"], len(document["history"])), (ENTRIES, True, 1))

    def test_what_cannot_be_imported_changes_nothing(self):
        program = self.program(self.write())
        before = program.document()
        self.assertEqual(self.imports(program, None), [])
        locale = self.write("cut.nvl").read_bytes()
        for name, contents in [("cut.nvl", locale[:-1]), ("empty.txt", b""), ("words.strings", b"no delimiter\na\tb\n")]:
            (self.folder / name).write_bytes(contents)
            self.assertEqual(self.imports(program, self.folder / name, shown=2), [failure(name)])
        for name in ("pipe.nvl", "pipe.txt", "pipe.csv"):
            os.mkfifo(self.folder / name)
        for path in (self.folder, *(self.folder / name for name in ("missing.txt", "pipe.nvl", "pipe.txt", "pipe.csv"))):
            self.assertEqual(self.imports(program, path, shown=2), [failure(path.name)])
        short = self.folder / "short.txt"
        short.write_bytes(b"greeting\tAny\t\tnew\ngreeting\tAny\tthree\n")
        self.imports(program, short, shown=2, unhandled="OutOfBoundsException")
        self.assertEqual(program.document(), before)
        # Not of the type whose rows are checked: the short one is skipped.
        self.assertEqual(self.imports(program, short.rename(self.folder / "short.csv")), [])
        self.assertEqual(program.document()["entries"], changed(ENTRIES, "greeting", 0, "new"))

    # --- Export ---
    def test_delimited_text_goes_out_and_comes_back(self):
        entries = [["k \"1\"", [[0, "a\tb\\n", "\r\n\"ü𝄞\u200b\\"], [3, "", ""]]], ["k\t2", [[0, "", "lost"]]]]
        program = self.program(self.write(entries=entries))
        out = self.folder / "rows"
        program.answer_file(None)
        program.menu("ExportExportTabDelimited", shown=1)
        program.answer_file(out)
        self.assertEqual(program.menu("ExportExportTabDelimited", shown=1)["shown"], [{
            "kind": "SaveDialog", "filter": "Tab Delimited", "defaultName": "strings.kestrum_locale.txt",
            "chosen": str(out)}])
        self.assertEqual(out.read_text("utf-8"), 'k "1"\tAny\ta\\tb\\\\n\t\\r\\n\\"ü𝄞\u200b\\\\\nk "1"\tLinux\t\t\n'
                                                 "k\t2\tAny\t\tlost\n")
        program.select(0)
        program.type("other")
        self.assertEqual(self.imports(program, out), [])
        document = program.document()
        self.assertEqual(document["entries"], entries)
        program.answer_file(self.folder)
        program.call("menu", 2, "IOException", name="ExportExportTabDelimited")
        self.assertEqual(program.document(), document)

    def test_a_mac_application_is_updated_and_run(self):
        resources = self.folder / "data"
        resources.mkdir()
        (resources / "de.strings").write_bytes(b"\xfe\xff\xd8odd\0")
        path = self.write(entries=[["a", [[0, "", "x\r\ny"], [1, "", ""]]], ["b\"\t", [[1, "", "\"ü𝄞"], [0, "", "any"]]],
                                   ["c", [[2, "", "Windows"]]]])
        program = self.program(path, arguments=("--resources", str(resources)))
        self.assertEqual(program.enabled("ExportExportandRun"), [False])
        self.assertEqual(self.exports(program, None), [])
        self.assertIsNone(program.document()["application"])
        bundle = self.bundle()
        self.assertEqual(self.exports(program, bundle), [])
        folder = bundle / "Contents" / "Resources" / "de.lproj"
        expected = b"\xfe\xff" + '"a" = "x\\ny";\n"b"\t" = "\\"ü𝄞";\n'.encode("utf-16-be")
        self.assertEqual((folder / "Localizable.strings").read_bytes(), expected)
        self.assertEqual((folder / "NVFramework.strings").read_bytes(), b"\xfe\xff\xd8odd\0")
        self.assertFalse(program.document()["dirty"])

        # The target is saved with the next change, and exporting goes on from there.
        program.select(0)
        program.type("z")
        program.menu("FileSave")
        program.close()
        program.open(path)
        self.assertEqual(program.document()["application"], str(bundle))
        reply = program.menu("ExportExportandRun")
        self.assertEqual((reply["launched"], reply["shown"]), ([str(bundle)], []))
        self.assertEqual((folder / "Localizable.strings").read_bytes(),
                         expected.replace("x\\ny".encode("utf-16-be"), "z".encode("utf-16-be")))

    def test_a_windows_application_is_updated_and_not_run(self):
        program = self.program(self.write())
        resources = self.folder / "Resources"
        (self.folder / "a.EXE").touch()
        (self.folder / "folder.exe").mkdir()
        for target in ("a.EXE", "folder.exe"):
            resources.mkdir()
            (resources / "de.mo").write_bytes(b"an older and longer one" * 9)
            self.assertEqual(self.exports(program, self.folder / target), [])
            self.assertEqual((resources / "de.mo").read_bytes()[44:], b"greeting\0Hallo Welt\0")
            self.assertEqual(program.menu("ExportExportandRun")["launched"], [])
            shutil.rmtree(resources)
            reply = program.menu("ExportExportandRun", shown=1)
            self.assertEqual((reply["launched"], reply["shown"], resources.exists()), ([], [NOT_UPDATED], False))

    def test_targets_that_cannot_be_updated(self):
        program = self.program(self.write())
        plain = self.folder / "plain.app"
        plain.touch()
        for wrong in (plain, self.folder / "missing.app", self.folder, self.folder / "linux"):
            self.assertEqual(self.exports(program, wrong, shown=2), [{"kind": "MsgBox", "text": WRONG_TARGET}])
            self.assertEqual(program.menu("ExportExportandRun", shown=1)["launched"], [])
        taken = self.bundle("taken.APP")
        (taken / "Contents/Resources/de.lproj").touch()
        occupied = self.bundle("occupied.app", "Contents/Resources/de.lproj/Localizable.strings")
        half = self.bundle("half.app", "Contents/Resources/de.lproj/NVFramework.strings")
        for broken in (self.bundle("no contents.app", "."), self.bundle("no resources.app", "Contents"), taken, occupied,
                       half):
            before = sorted(broken.rglob("*"))
            self.assertEqual(self.exports(program, broken, shown=2), [NOT_UPDATED], broken.name)
            reply = program.menu("ExportExportandRun", shown=1)
            self.assertEqual((reply["launched"], reply["shown"]), ([str(broken)], [NOT_UPDATED]))
            strings = half / "Contents/Resources/de.lproj/Localizable.strings"
            self.assertEqual([path for path in broken.rglob("*") if path not in before], [strings] * (broken == half))
        document = program.document()
        self.assertEqual((document["entries"], document["dirty"], document["internalChange"]), (ENTRIES, False, 0))

    def test_pipes_and_devices_are_not_written(self):
        program = self.program(self.write())
        mac = self.bundle("odd.app", "Contents/Resources/de.lproj")
        (self.folder / "Resources").mkdir()
        pipe = self.folder / "Resources/de.mo"
        os.mkfifo(pipe)
        (mac / "Contents/Resources/de.lproj/Localizable.strings").symlink_to("/dev/full")
        for target in (mac, self.folder / "odd.exe"):
            self.assertEqual(self.exports(program, target, shown=2), [NOT_UPDATED])
        for path in ("/dev/full", pipe):
            program.answer_file(path)
            program.call("menu", shown=2, unhandled="IOException", name="ExportExportTabDelimited")
        self.assertEqual(program.document()["entries"], ENTRIES)

    def test_a_limit_for_the_size_of_files_leaves_the_old_bytes(self):
        document, out = self.write(), self.folder / "out.txt"
        before = document.read_bytes()
        out.write_bytes(b"old")
        program = self.program(document)
        program.select(0)
        program.type("longer " * 9)
        limit = len(before)
        resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE, (limit, limit))
        program.menu("FileSave")
        self.assertEqual(document.read_bytes(), before)
        program.type("l" * limit)
        for path in (out, self.folder / "new.txt"):
            program.answer_file(path)
            program.call("menu", shown=2, unhandled="IOException", name="ExportExportTabDelimited")
        self.assertEqual((out.read_bytes(), path.exists()), (b"old", False))
        program.process.send_signal(signal.SIGXFSZ)  # as from a write elsewhere
        self.assertEqual(len(program.windows()), 1)

    def test_the_language_names_the_folder(self):
        for language, folder in [("pt_BR", "pt_BR.lproj"), ("", ".lproj"), ("../x", None)]:
            program = self.program(self.write(entries=[], language=language))
            bundle = self.bundle(language.replace("/", "") + ".app")
            self.assertEqual(self.exports(program, bundle, shown=1 if folder else 2), [] if folder else [NOT_UPDATED])
            made = os.listdir(bundle / "Contents" / "Resources")
            self.assertEqual(made, [folder] if folder else [])
            if folder:
                strings = bundle / "Contents" / "Resources" / folder / "Localizable.strings"
                self.assertEqual(strings.read_bytes(), b"\xfe\xff")


if __name__ == "__main__":
    unittest.main()
