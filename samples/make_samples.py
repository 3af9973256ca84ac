#!/usr/bin/env python3
"""Makes the sample documents: make_samples.py [FOLDER], by default the folder of this program.

Writes the locale files byte by byte with a writer of its own, so that the samples also check the program's.
"""
import os
import struct
import sys

from strings import CURRENT, EARLIER, NEW_STRINGS, NEWER, REVIEWED

PLATFORMS = {"A": (0, "Any"), "M": (1, "Mac OS"), "W": (2, "Windows"), "L": (3, "Linux")}


def chunk(tag, payload):
    return tag + struct.pack(">i", len(payload)) + payload


def text(tag, value):
    return chunk(tag, chunk(b"strn", value.encode("utf-8")))


def integer(tag, value):
    return chunk(tag, chunk(b"long", struct.pack(">i", value)))


def in_saved_order(rows):
    """All platforms of a string stand where the string came first, as in every file that the program saves."""
    strings = {}
    for row in rows:
        strings.setdefault(row[0], []).append(row)
    return [row for platforms in strings.values() for row in platforms]


def locale(date, version, rows, history=()):
    out = b"nvlocale" + integer(b"vers", 0) + text(b"date", date) + text(b"nvvs", version) + text(b"lang", "de")
    for identifier, platform, default, translated in in_saved_order(rows):
        out += chunk(b"enty", text(b"idnt", identifier) + text(b"oval", default) + text(b"tval", translated)
                     + integer(b"plat", PLATFORMS[platform][0]))
    for element in history:
        out += chunk(b"hist", chunk(b"bind", element))
    return out


def changed(rows, changes):
    unknown = set(changes) - {row[:2] for row in rows}
    if unknown:
        sys.exit("no such strings: %s" % unknown)
    values = [(row, changes.get(row[:2], row[2:])) for row in rows]
    return [row[:2] + value for row, value in values if value is not None]


def escaped(value):
    return value.replace("\\", "\\\\").replace("\n", "\\n").replace("\t", "\\t").replace('"', '\\"')


def table(rows):
    lines = ["\t".join((row[0], PLATFORMS[row[1]][1], escaped(row[2]), escaped(row[3]))) for row in rows]
    return "\n".join(lines).encode("utf-8")


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    history = [locale(date, version, changed(CURRENT, changes)) for date, version, changes in EARLIER]
    files = {
        "Notizbuch.kestrum_locale": locale("2025-03-14 09:26:53", "2.4", CURRENT, history),
        "Notizbuch newer.kestrum_locale": locale("2025-09-01 08:00:00", "2.5", changed(CURRENT, NEWER) + NEW_STRINGS),
        "Notizbuch translations.txt": table(REVIEWED),
    }
    for name, contents in files.items():
        with open(os.path.join(folder, name), "wb") as out:
            out.write(contents)


if __name__ == "__main__":
    main()
