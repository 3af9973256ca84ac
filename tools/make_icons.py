#!/usr/bin/env python3
"""Render resources/source/*.svg to resources/NAME.png, NAME@2x.png and NAME@3x.png, and the program's icon in the
desktop's sizes to packaging/icons.

usage: make_icons.py      Needs rsvg-convert (package librsvg2-bin). The PNG files are kept in the repository,
so only whoever changes a drawing runs this.
"""
import pathlib
import shutil
import subprocess
import sys

SCALES = (1, 2, 3)
DESKTOP_SIZES = (16, 24, 32, 48, 64, 128, 256)


def render(drawing, target, *options):
    subprocess.run(["rsvg-convert", *options, "--output", target, drawing], check=True)
    print(target.name)


def main():
    if not shutil.which("rsvg-convert"):
        sys.exit("make_icons.py: rsvg-convert is missing; install librsvg2-bin")
    top = pathlib.Path(__file__).resolve().parent.parent
    for drawing in sorted((top / "resources" / "source").glob("*.svg")):
        for scale in SCALES:
            suffix = "" if scale == 1 else "@%dx" % scale
            render(drawing, top / "resources" / (drawing.stem + suffix + ".png"), "--zoom", str(scale))
    for size in DESKTOP_SIZES:
        render(top / "resources" / "source" / "SorbelIcon.svg", top / "packaging" / "icons" / ("%d.png" % size),
               "--width", str(size), "--height", str(size))


if __name__ == "__main__":
    main()
