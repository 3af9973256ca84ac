#!/usr/bin/env python3
"""Turn UTF-8 string tables into the UTF-16BE with byte-order mark that Mac applications load.

usage: encode_strings.py IN_DIR OUT_DIR      Each IN_DIR/*.strings becomes OUT_DIR/*.strings.

A file in OUT_DIR is written only if its bytes change, so that nothing built from it is redone in vain.
If any table is malformed, its faults are listed as FILE:LINE: text, nothing is written and the exit code is 1.
"""
import codecs
import pathlib
import re
import sys

TEXT = r'"((?:[^"\\]|\\["\\nt])*)"'
ENTRY = re.compile(TEXT + " = " + TEXT + ";")
COMMENT = re.compile(r"/\*(?:(?!\*/).)*\*/")


def faults_of(text):
    """[(line number, what is wrong)] of a table; one comment, one entry or nothing may stand on a line."""
    faults = []
    seen = set()
    # Only LF ends a line: a U+2028 or a form feed inside a text must not hide an unfinished entry.
    lines = text.split("\n")
    if lines.pop() != "":
        faults.append((len(lines) + 1, "the last line has no line end"))
    for number, line in enumerate(lines, 1):
        if line == "" or COMMENT.fullmatch(line):
            continue
        entry = ENTRY.fullmatch(line)
        if not entry:
            faults.append((number, "neither an entry nor a comment: %r" % line))
        elif entry.group(1) in seen:
            faults.append((number, "the key was there before: %r" % entry.group(1)))
        else:
            seen.add(entry.group(1))
    if not seen:
        faults.append((1, "no entry in the table"))
    return faults


def encode(data):
    """The bytes to write for a table's UTF-8 bytes, and its faults."""
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError as error:
        return b"", [(data.count(b"\n", 0, error.start) + 1, str(error))]
    # A mark of its own, kept as a character, would end up behind the mark that is written below.
    if text.startswith("\ufeff"):
        return b"", [(1, "starts with a byte-order mark")]
    if "\r" in text:
        return b"", [(text.count("\n", 0, text.index("\r")) + 1, "has a carriage return")]
    return codecs.BOM_UTF16_BE + text.encode("utf-16-be"), faults_of(text)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    source, target = map(pathlib.Path, sys.argv[1:])
    tables = sorted(source.glob("*.strings"))
    if not tables:
        sys.exit("encode_strings.py: no *.strings in %s" % source)
    encoded = {path: encode(path.read_bytes()) for path in tables}
    faults = ["%s:%d: %s" % (path, *fault) for path, (_, found) in encoded.items() for fault in found]
    if faults:
        sys.exit("\n".join(faults))
    target.mkdir(parents=True, exist_ok=True)
    for path, (data, _) in encoded.items():
        out = target / path.name
        if not out.exists() or out.read_bytes() != data:
            out.write_bytes(data)


if __name__ == "__main__":
    main()
