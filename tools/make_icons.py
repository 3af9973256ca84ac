#!/usr/bin/env python3
"""Render resources/source/*.svg to resources/NAME.png, NAME@2x.png and NAME@3x.png.

usage: make_icons.py      Needs rsvg-convert (package librsvg2-bin). The PNG files are kept in the repository,
so only whoever changes a drawing runs this.
"""
import pathlib
import shutil
import subprocess
import sys

SCALES = (1, 2, 3)


def main():
    if not shutil.which("rsvg-convert"):
        sys.exit("make_icons.py: rsvg-convert is missing; install librsvg2-bin")
    resources = pathlib.Path(__file__).resolve().parent.parent / "resources"
    for drawing in sorted((resources / "source").glob("*.svg")):
        for scale in SCALES:
            suffix = "" if scale == 1 else "@%dx" % scale
            target = resources / (drawing.stem + suffix + ".png")
            subprocess.run(["rsvg-convert", "--zoom", str(scale), "--output", target, drawing], check=True)
            print(target.name)


if __name__ == "__main__":
    main()
