#!/usr/bin/env python3
"""Goes through the program's main job on a virtual screen, with real keys and clicks on a copy of the sample.

usage: tour.py PROGRAM FOLDER [--guide]      Leaves a picture of each step in FOLDER. Ends with 1 at the first step
without its effect. What a step has done is told by the window's title, the text copied from a field, the picture, and
in the end the saved file, read by a program that shares nothing with this one. --guide renews the pictures of
docs/guide.md.
"""
import json
import pathlib
import re
import shutil
import subprocess
import sys

from screen import Screen, wait_for

ROOT = pathlib.Path(__file__).resolve().parents[1]
GUIDE = ROOT / "docs" / "guide.md"
DOCUMENT = "Notizbuch.kestrum_locale"
TRANSLATION = "Nach &Aktualisierungen suchen..."
SECOND_TRANSLATION = "&Teilen..."
# Places in the document window, which has a menu bar of 20 points above its content.
FIRST_ROW = (120, 99)
VERSIONS = (180, 74)
DEFAULT_VALUE = (440, 130)
OLDER_VALUE = (560, 130)
TRANSLATION_FIELD = (440, 300)
WELCOME_OPEN = (414, 271)


def read(path):
    reader = ROOT / "tests" / "tools" / "locale_reader.py"
    return json.loads(subprocess.run([sys.executable, "-B", reader, path], check=True, capture_output=True).stdout)


def require(condition, message):
    if not condition:
        raise AssertionError(message)


class Tour:
    def __init__(self, screen, program, folder):
        self.screen, self.folder = screen, folder
        self.pictures = []
        self.file = screen.home / DOCUMENT
        shutil.copy(ROOT / "samples" / DOCUMENT, self.file)
        self.before = read(self.file)
        self.program = screen.start(program)

    # --- Looking ---
    def signature(self, picture):
        """Of what is on the screen, once it stands still and is more than one colour."""
        def still():
            taken = []
            for _ in range(2):
                subprocess.run(["import", "-silent", "-window", "root", picture], env=self.screen.env, check=True)
                taken.append(subprocess.run(["identify", "-format", "%k %#", picture], check=True,
                                            capture_output=True, text=True).stdout)
            return taken[0] == taken[1] and not taken[0].startswith("1 ") and taken[0]
        return wait_for("a picture that stands still", still)

    def picture(self, name):
        """Of the step that is done; it must look different from every one before."""
        path = self.folder / ("%d-%s.png" % (len(self.pictures) + 1, name))
        signature = self.signature(path)
        require(signature not in self.pictures, "%s shows nothing new" % path)
        self.pictures.append(signature)
        subprocess.run(["mogrify", "-trim", "+repage", path], check=True)  # the screen round the window
        print("%s: done" % name, flush=True)

    def wait_for_mark(self, modified):
        self.screen.wait_for_windows(DOCUMENT + "*" if modified else DOCUMENT)

    def click(self, place):
        (window,) = self.screen.windows().values()
        self.screen.click(window, *place)

    def edit_first_row(self):
        self.click(FIRST_ROW)
        self.screen.key("Tab")

    def default_value(self):
        self.click(DEFAULT_VALUE)
        return self.screen.field()

    def entry_shown(self):
        """The file's only entry with the default value that the window shows."""
        value = self.default_value()
        entries = [entry for entry in self.before["entries"] if entry[2] == value]
        require(len(entries) == 1, "%d entries have the default value %r" % (len(entries), value))
        return entries[0]

    # --- Steps ---
    def open(self):
        self.screen.wait_for_windows("Welcome to Sorbel")
        self.screen.activate("Welcome to Sorbel")
        self.picture("welcome")
        self.click(WELCOME_OPEN)
        wait_for("the file dialog", lambda: len(self.screen.windows()) == 2)
        wait_for("the focus", lambda: self.screen.active_title() not in (None, "Welcome to Sorbel"))
        self.screen.type(str(self.file))
        self.screen.key("Return")
        self.screen.wait_for_windows(DOCUMENT)
        self.screen.activate(DOCUMENT)
        self.picture("open")

    def search(self):
        self.screen.key("alt+s")
        self.screen.type("check for")
        self.click(FIRST_ROW)
        self.picture("search")
        self.found = self.entry_shown()
        require("check for" in self.found[2].lower() and not self.found[3], "found %s" % self.found)

    def translate(self):
        self.edit_first_row()
        self.screen.type(TRANSLATION)
        self.wait_for_mark(True)
        require(self.screen.field() == TRANSLATION, "the translation is not what was typed")
        self.picture("translate")

    def undo(self):
        for _ in TRANSLATION:
            self.screen.key("ctrl+z")
        self.wait_for_mark(False)
        self.picture("undo")
        for _ in TRANSLATION:
            self.screen.key("ctrl+shift+z")
        self.wait_for_mark(True)
        self.edit_first_row()
        require(self.screen.field() == TRANSLATION, "redo did not bring the translation back")

    def compare(self):
        self.screen.key("alt+s", "ctrl+a", "BackSpace")
        self.click(VERSIONS)
        self.screen.key("End", "Return")
        self.click(FIRST_ROW)
        self.screen.key("Down")  # the first one is new, the second one has changed
        self.picture("earlier-version")
        identifier, platform, default, _ = self.entry_shown()
        older = [entry[2] for entry in self.before["history"][-1]["entries"] if entry[:2] == [identifier, platform]]
        require(older and older != [default], "%s has not changed since that version" % identifier)
        self.click(OLDER_VALUE)
        require(self.screen.field() == older[0], "the older value is not that of the version")

    def step(self):
        self.click(VERSIONS)
        self.screen.key("Home", "Return")
        self.screen.key("ctrl+k")
        self.click(FIRST_ROW)
        self.screen.key("ctrl+bracketright", "ctrl+bracketright")
        self.picture("next-untranslated")
        self.next = self.entry_shown()
        require(not self.next[3] and self.next != self.found, "stepped to %s" % self.next)

    def save(self):
        self.click(TRANSLATION_FIELD)
        self.screen.type(SECOND_TRANSLATION)
        require(self.screen.field() == SECOND_TRANSLATION, "the second translation is not what was typed")
        self.screen.key("ctrl+s")
        self.wait_for_mark(False)
        self.picture("save")
        new = {tuple(self.found[:2]): TRANSLATION, tuple(self.next[:2]): SECOND_TRANSLATION}
        expected = [entry[:3] + [new.get(tuple(entry[:2]), entry[3])] for entry in self.before["entries"]]
        after = read(self.file)
        require(after["entries"] == expected, "the saved file does not hold the two translations and all else")
        require(after["history"] == self.before["history"], "the saved file's history has changed")

    def check_guide(self, renew):
        """The guide shows steps of this tour, under their names."""
        for name in re.findall(r"\(guide/(.*?)\)", GUIDE.read_text()):
            require((self.folder / name).exists(), "no step gives %s, which the guide shows" % name)
            if renew:
                shutil.copy(self.folder / name, GUIDE.parent / "guide" / name)
            require((GUIDE.parent / "guide" / name).exists(), "the guide's picture %s is missing" % name)

    def run(self):
        for step in (self.open, self.search, self.translate, self.undo, self.compare, self.step, self.save):
            step()
        self.screen.key("ctrl+q")
        require(self.program.wait(30) == 0, "the program did not end well")


def main():
    program, folder = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    with Screen(size="960x640") as screen:
        tour = Tour(screen, program, folder)
        try:
            tour.run()
            tour.check_guide(sys.argv[3:] == ["--guide"])
        except AssertionError as failure:
            subprocess.run(["import", "-silent", "-window", "root", folder / "failed.png"], env=screen.env)
            sys.exit("The tour failed. %s. See %s" % (failure, folder / "failed.png"))


if __name__ == "__main__":
    main()
