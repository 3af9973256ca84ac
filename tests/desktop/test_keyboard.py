#!/usr/bin/env python3
"""A translator's hour without a mouse, in the real window. SORBEL names the executable."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from screen import PATIENCE, Screen, wait_for  # noqa: E402

PROGRAM = os.environ["SORBEL"]
SAMPLE = ROOT / "samples" / "Notizbuch.kestrum_locale"
NAME = SAMPLE.name
SCRIPT = 'CurrentRow = 1\nTranslatedText = "by the script"\n'


def read(path):
    """{(identifier, platform): [default value, translation]}"""
    reader = ROOT / "tests" / "tools" / "locale_reader.py"
    read = subprocess.run([sys.executable, "-B", reader, path], check=True, capture_output=True)
    return {tuple(entry[:2]): entry[2:] for entry in json.loads(read.stdout)["entries"]}


class KeyboardAlone(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        self.file = self.screen.home / NAME
        shutil.copy(SAMPLE, self.file)
        scripts = self.screen.home / "Documents" / "Kestrum" / "Sorbel" / "Scripts"
        scripts.mkdir(parents=True)
        (scripts / "Script.sorbel_script").write_text(SCRIPT)
        self.program = self.screen.start(PROGRAM, cwd=self.screen.home)
        self.screen.wait_for_windows("Welcome to Sorbel")
        self.screen.activate("Welcome to Sorbel")

    def choose(self, key, path):
        """A file, in the dialog that a key brings up."""
        front = self.screen.active_title()
        self.screen.key(key)
        wait_for("a dialog", lambda: self.screen.active_title() not in (None, front))
        self.screen.type(str(path))
        self.screen.key("Return")

    def open(self):
        self.choose("ctrl+o", self.file)
        self.screen.wait_for_windows(NAME)
        self.screen.activate(NAME)

    def wait_for_mark(self, modified):
        self.screen.wait_for_windows(NAME + "*" * modified)

    def replace(self, text):
        """The translation of the selected string, from the list."""
        self.screen.key("Return", "ctrl+a")
        self.screen.type(text)

    def end(self):
        self.screen.key("ctrl+s")
        self.wait_for_mark(False)
        self.screen.key("ctrl+q")
        self.assertEqual(self.program.wait(PATIENCE), 0)

    def test_search_translate_undo_and_step(self):
        self.open()
        self.screen.key("ctrl+f")
        self.screen.type("kMenuFileQuit")
        self.screen.key("Down")
        self.replace("Ende")
        self.wait_for_mark(True)
        self.screen.key(*["ctrl+z"] * 5)
        self.wait_for_mark(False)
        self.screen.key(*["ctrl+shift+z"] * 5)
        self.wait_for_mark(True)
        self.screen.key("alt+s", "Escape")
        self.screen.type("kMenuFileQuit")
        # To the Windows variant, and out of its field with a tab in its text.
        self.screen.key("Return", "Right", "Down", "Down", "F2", "ctrl+a")
        self.screen.type("Zu\t")
        self.screen.key("shift+Tab", "ctrl+bracketleft", "ctrl+bracketleft", "ctrl+Page_Down")
        self.end()
        old, new = read(SAMPLE), read(self.file)
        changed = {key: new[key][1] for key in new if new[key] != old.get(key)}
        self.assertEqual(changed, {("kMenuFileQuit", 0): "Ende", ("kMenuFileQuit", 2): "Zu\t"})

    def test_versions_import_export_and_a_script(self):
        self.open()
        versions = ("alt+s", "Tab", "Tab")
        self.screen.key(*versions, "End")  # the earliest
        self.screen.key("alt+s", "Down", "Down")  # the first one is new, the second one has changed
        self.screen.key(*versions, "Tab")
        self.assertEqual(self.screen.field(), "%1 matches were replaced.")
        self.screen.key(*versions, "Home")
        newer = self.screen.home / "newer.txt"
        newer.write_text("kMenuFileQuit\tAny\tQuit\tImportiert\n")
        self.choose("ctrl+i", newer)
        self.wait_for_mark(True)
        self.screen.key("ctrl+z")
        self.wait_for_mark(False)
        self.screen.key("ctrl+shift+z", "ctrl+1")
        self.wait_for_mark(True)
        application = self.screen.home / "Mine.app"
        (application / "Contents" / "Resources").mkdir(parents=True)
        self.choose("ctrl+e", application)
        made = application / "Contents" / "Resources" / "de.lproj" / "Localizable.strings"
        wait_for("the export", made.exists)
        self.end()
        texts = [entry[1] for entry in read(self.file).values()]
        self.assertIn("by the script", texts)
        self.assertIn("Importiert", texts)
        self.assertIn("by the script", made.read_bytes().decode("utf-16"))


if __name__ == "__main__":
    unittest.main()
