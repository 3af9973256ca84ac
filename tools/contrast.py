#!/usr/bin/env python3
"""Measures from pixels how well the program's texts can be read, in light and in dark.

usage: contrast.py PROGRAM FOLDER      Leaves the pictures in FOLDER. Prints a table, and ends with 1 if a text has
less contrast than 4.5, the least that WCAG 2 asks of text of this size (https://www.w3.org/TR/WCAG22/#contrast-minimum).
"""
import collections
import pathlib
import shutil
import subprocess
import sys
from typing import NamedTuple

from screen import PATIENCE, Screen, wait_for

ROOT = pathlib.Path(__file__).resolve().parents[1]
DOCUMENT = "Notizbuch.kestrum_locale"
LEAST = 4.5


class Place(NamedTuple):
    """Where a text stands within the window's content, and which of its colours counts."""
    x: int
    y: int
    width: int
    height: int
    hue: str = "any"


def row(number, hue="any"):
    return Place(78, 92 + 18 * number, 200, 16, hue)  # right of the icons of a variant


SEARCH, NAME, VERSIONS = Place(20, 32, 48, 22), Place(372, 38, 170, 20), Place(26, 64, 300, 20)
DEFAULT_LABEL, TRANSLATION_LABEL = Place(372, 65, 120, 18), Place(372, 201, 150, 20)
DEFAULT, TRANSLATION = Place(376, 92, 120, 80), Place(376, 227, 200, 60)
OLDER = Place(502, 92, 110, 80)
MENU_BAR = Place(8, 2, 230, 18)
HUES = {
    "any": lambda red, green, blue: True,
    "red": lambda red, green, blue: red > max(green, blue) + 30,
    "green": lambda red, green, blue: green > max(red, blue) + 30,
}


def luminance(colour):
    linear = [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4 for c in (part / 255 for part in colour)]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(one, other):
    darker, lighter = sorted((luminance(one), luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


def measure(picture, place):
    """(ground, text, contrast): the ground is what most pixels have. Where letters end they are mixed with it, so
    the text has the colour that differs most from it. A place without text has a contrast of 1."""
    crop = "%dx%d+%d+%d" % (place.width, place.height, place.x, place.y)
    pixels = subprocess.run(["convert", picture, "-crop", crop, "+repage", "-depth", "8", "rgb:-"], check=True,
                            capture_output=True).stdout
    colours = collections.Counter(zip(pixels[::3], pixels[1::3], pixels[2::3]))
    ground = colours.most_common(1)[0][0]
    texts = [colour for colour in colours if HUES[place.hue](*colour)] or [ground]
    text = max(texts, key=lambda colour: contrast(colour, ground))
    return ground, text, contrast(text, ground)


class Measurement:
    def __init__(self, screen, program, folder, look):
        self.screen, self.folder, self.look = screen, folder, look
        self.least = float("inf")
        self.shown = None
        self.program = program
        self.title = None

    def start(self, title, *files):
        self.title = title
        self.process = self.screen.start(self.program, *files)
        self.screen.wait_for_windows(title)
        self.screen.activate(title)

    def end(self):
        self.screen.key("ctrl+q")
        self.process.wait(PATIENCE)

    def window(self):
        return self.screen.windows()[self.title]

    def picture(self, name):
        path = self.folder / ("%s-%s.png" % (self.look, name))

        def still():
            taken = []
            for _ in range(2):
                subprocess.run(["import", "-silent", "-window", str(self.window()), path], env=self.screen.env,
                               check=True)
                signature = subprocess.run(["identify", "-format", "%#", path], check=True, capture_output=True)
                taken.append(signature.stdout)
            return taken[0] == taken[1] != self.shown and taken[0]
        self.shown = wait_for("another picture, which stands still", still)
        return path

    def tell(self, picture, **places):
        taken = self.picture(picture)
        for text, place in places.items():
            ground, colour, found = measure(taken, place)
            self.least = min(self.least, found)
            print("| %s | %s | #%02x%02x%02x | #%02x%02x%02x | %.1f |"
                  % (self.look, text.replace("_", " "), *colour, *ground, found), flush=True)

    def run(self):
        self.start("Welcome to Sorbel")
        self.tell("welcome", invitation=Place(8, 160, 110, 80), introduction=Place(140, 30, 330, 170),
                  button=Place(372, 262, 84, 20))
        self.end()
        shutil.copy(ROOT / "samples" / DOCUMENT, self.screen.home)
        self.start(DOCUMENT, str(self.screen.home / DOCUMENT))
        self.rows()
        self.compare()
        self.question()

    def rows(self):
        self.screen.key("alt+s")
        self.screen.type("kMenuFileQuit")
        self.tell("no-selection", no_name=Place(412, 38, 130, 20), no_default_value=DEFAULT)
        self.screen.click(self.window(), 120, 99)
        self.screen.key("Right", "Down")
        self.tell("variant", menu_bar=MENU_BAR, search=SEARCH, name=NAME, versions=VERSIONS,
                  default_label=DEFAULT_LABEL, translation_label=TRANSLATION_LABEL, default_value=DEFAULT,
                  translation=TRANSLATION, row=row(0), selected_row=row(1), untranslated_row=row(2), no_value=row(3))
        self.screen.key("Tab")
        self.tell("without-focus", selected_row_without_focus=row(1))
        self.screen.click(self.window(), 120, 99 + 3 * 18)
        self.tell("no-value", selected_no_value=row(3))
        self.screen.key("Tab")
        self.tell("no-value-without-focus", selected_no_value_without_focus=row(3))

    def question(self):
        """Whether to save."""
        self.screen.key("Tab", "x")
        self.screen.wait_for_windows(DOCUMENT + "*")
        self.screen.key("ctrl+w")
        wait_for("the question", lambda: len(self.screen.windows()) == 2)
        (self.title,) = self.screen.windows().keys() - {DOCUMENT + "*"}
        self.tell("question", question=Place(70, 5, 300, 60))
        self.screen.key("Escape")

    def compare(self):
        self.screen.key("alt+s", "ctrl+a", "BackSpace")
        self.screen.click(self.window(), 180, 74)
        self.screen.key("End", "Return")
        self.screen.click(self.window(), 120, 99)
        self.screen.key("Down")
        self.tell("comparison", added=DEFAULT._replace(hue="green"), removed=OLDER._replace(hue="red"))


def main():
    program, folder = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    print("| Look | Text | Colour | Ground | Contrast |\n|---|---|---|---|---|")
    least = float("inf")
    for look in ("light", "dark"):
        with Screen(size="960x640") as screen:
            screen.set_desktop(9, look == "dark")
            measurement = Measurement(screen, str(program), folder, look)
            measurement.run()
            least = min(least, measurement.least)
    if least < LEAST:
        sys.exit("A text has a contrast of %.2f, less than %.1f." % (least, LEAST))


if __name__ == "__main__":
    main()
