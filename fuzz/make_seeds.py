#!/usr/bin/env python3
"""Makes the inputs that fuzzing starts from: make_seeds.py FOLDER. One folder in it for each target.

They come from the samples and from the files that the tests use; small ones, since a fuzzer tries more of them.
"""
import os
import shutil
import struct
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(HERE)
sys.path[:0] = [os.path.join(ROOT, "samples"), os.path.join(ROOT, "tests", "e2e")]

import locale_file  # noqa: E402
from strings import CURRENT  # noqa: E402

PLATFORMS = {"A": 0, "M": 1, "W": 2, "L": 3}

# Values with what the formats treat apart.
ODD = [
    ["key", [[0, 'say "no"\\yes', "line\nend\rand\r\nmore\tTab"]]],
    ["KEY two", [[2, "", "\x00zero"], [7, "unknown", "platform"], [-1, "below", "zero"]]],
    ["stray\udcff", [[1, "\udcc3(", "\udced\udca0\udc80"]]],
    ["Ärger", [[0, "Straße", "𝄞 \u2028"]]],
    ["", [[0, "", "no name"]]],
]


def entries_of_sample(first, count):
    entries = {}
    for identifier, platform, default, translated in CURRENT[first:first + count]:
        entries.setdefault(identifier, []).append([PLATFORMS[platform], default, translated])
    return list(entries.items())


def irregular():
    """Locale files that no program saves, valid and not."""
    chunk, typed, text, number = locale_file.chunk, locale_file.typed, locale_file.text, locale_file.number
    entry = chunk(b"enty", text(b"idnt", "OK") + text(b"tval", "Gut"))
    yield b""
    yield b"nvlocale"
    yield b"nvlocale" + entry + chunk(b"enty", b"")
    yield b"nvlocale" + typed(b"lang", b"long", struct.pack(">i", -7)) + text(b"vers", " -12x")
    yield b"nvlocale" + typed(b"appl", b"bind", b"/a/b.app") + typed(b"appl", b"bind", b"\x00opaque")
    yield b"nvlocale" + typed(b"appl", b"bind", b"/a/b.exe") + entry
    yield b"nvlocale" + chunk(b"enty", number(b"chng", 1) + text(b"idnt", "x") + chunk(b"what", b"?"))
    yield b"nvlocale" + chunk(b"enty", text(b"idnt", "y") + typed(b"plat", b"long", b"\x00\x00\x00\x02\x00"))
    yield b"nvlocale" + chunk(b"enty", b"idnt\x00\x00\x00\x20strn\x00\x00\x00\x18") + entry + entry
    yield b"nvlocale" + typed(b"hist", b"bind", b"nvlocale" + entry) + typed(b"hist", b"strn", b"nothing")
    yield b"nvlocale" + text(b"date", "2004-02-29 23:59:59") + entry
    yield b"nvlocale" + text(b"date", "yesterday") + entry
    yield b"nvlocale" + chunk(b"none", b"123") + entry + b"enty\xff\xff\xff\xff"


def locales():
    """Locale files, small ones first."""
    older = locale_file.changed(locale_file.ENTRIES, "greeting", 0, "Hallo")
    yield locale_file.to_bytes([])
    yield locale_file.to_bytes([["OK", [[0, "OK", "Gut"]]]])
    yield locale_file.to_bytes(locale_file.ENTRIES, tool="2.4", history=[("2000-01-01 00:00:00", older)])
    yield locale_file.to_bytes(ODD)
    yield from irregular()
    for first in range(0, len(CURRENT), 40):
        yield locale_file.to_bytes(entries_of_sample(first, 6))
    yield from samples(".kestrum_locale")


def samples(ending):
    folder = os.path.join(ROOT, "samples")
    for name in sorted(os.listdir(folder)):
        if name.endswith(ending):
            with open(os.path.join(folder, name), "rb") as sample:
                yield sample.read()


def imports():
    documents = [locale_file.to_bytes(entries) for entries in
                 (locale_file.ENTRIES, ODD, entries_of_sample(0, 6), locale_file.changed(
                     locale_file.ENTRIES, "leave", 2, "Beenden"))]
    documents.append(locale_file.to_bytes([["LEAVE", [[3, "Leave", "x"], [0, "", ""]]]], "fr"))
    for document in documents:
        for imported in documents:
            yield document + b"|import|" + imported


def texts():
    for text in samples(".txt"):
        lines = text.split(b"\n")
        for first in range(0, len(lines), 4):
            yield b"\n".join(lines[first:first + 4])
        yield text
    yield b"a\tAny\tA\tx\r\nb\tLinux\tB\ty\rA\tMAC OS\t\\n\\q\\\n|import|a,Any,A,\\tz\\\tcut\nb,windows,B,\\\"q\\\""
    yield b"a\tAny\tA\tx\n|import|a,b,c\na\tAny\t\tz\n\na\tAny\t1\n"
    yield b"a\tAny\tA\n"
    yield b"|import|no delimiter"
    yield b"\xef\xbb\xbfa\t\t\tx\n\xc3\xa4\t\t\t|import|\xc3\x84\tANY\tx\t\\\\n\\R"


def comparisons():
    pairs = [("a, b", "(a)"), ("a  b", "a b"), ("Save the file", "Save file as"), ("x y z", "z y x"), ("", "new"),
             ("C:\\x|\"y\"", "Zwei\nZeilen_ä1 é;"), ("a b c d e", "c a d b e f"), ("a-a-a-b", "b-a-b-a")]
    for current, older in pairs:
        yield ("%s|older|%s" % (current, older)).encode()
    defaults = [row[2] for row in CURRENT if " " in row[2]]
    for current, older in zip(defaults[::9], defaults[1::9]):
        yield ("%s|older|%s" % (current, older)).encode()


def searches():
    block = "\n".join(value for row in CURRENT[::7] for value in row[2:])
    for term in ("datei", "ss", "\u1e9e", "K", "\u212a", "\u017f", "i\u0307", "oe", "", "ÖFF", "aab"):
        yield ("%s\nfile\nFILE Datei\nStraße STRASSE\naaab aab\nOK \u212aelvin\nöffnen ÖFFNEN" % term).encode()
        yield ("%s\n%s" % (term, block[:300])).encode()
    yield b"\xff\xc3\nx\xff\xc3\x28\n\xff\n\xc3\xa4\xff\xff\xc3\n\xed\xa0\x80\xff\xc3"
    yield b"\xc3\xa4\n\xc3\x84\xa4\n\xc3\n\xa4\n\xc3\xa4"


def windows():
    """A document (see Steps.h), and steps by their place in the target's table."""
    document = bytes([0, 5, 0, 0, 1, 2, 0, 1, 3, 3, 0, 0, 2, 4, 0, 6, 5, 3, 3, 6, 0, 5, 2, 7, 4, 0, 1])
    select, click, expand, write, undo, redo, search, scope, version, save, merge, text, tick, paint, reduce, go = (
        0, 1, 2, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16)
    other = bytes([2, 3, 0, 0, 1, 4, 0, 1, 1, 5, 3, 0, 3, 3, 1, 2, 0])
    yield document + bytes([select, 1, write, 3, tick, 40, write, 4, undo, redo, save, undo])
    yield document + bytes([expand, 1, 1, select, 2, write, 5, search, 1, scope, 0, scope, 1, select, 1, undo])
    yield document + bytes([merge, 0]) + other + bytes([undo, version, 1, redo, version, 1, select, 1, save])
    yield document + bytes([merge, 2]) + other + bytes([merge, 1]) + other + bytes([undo, undo, redo, save])
    yield document + bytes([text, 2, 0, 1, 0, 4, 3, 5, 3, 3, 1, undo, select, 1, write, 4, undo, redo])
    yield document + bytes([reduce, paint, click, 1, write, 4, click, 2, go, 1, go, 0, search, 3, reduce])
    yield document


def scripts():
    """The cases of the tests, but for those that are about much memory, and the samples."""
    cases = os.path.join(ROOT, "tests", "script", "cases")
    for name in sorted(os.listdir(cases)):
        if not name.startswith("memory"):
            with open(os.path.join(cases, name), encoding="utf-8") as file:
                yield from (case.encode() for case in file.read().split("// ---\n"))
    samples = os.path.join(ROOT, "samples", "scripts")
    for name in sorted(os.listdir(samples)):
        with open(os.path.join(samples, name), "rb") as file:
            yield file.read()


PO = (
    b'msgid ""\nmsgstr "Content-Type: text/plain; charset=UTF-8\\n"\n\nmsgctxt "a"\nmsgid "A"\nmsgstr "\\x41\\102"\n',
    b'#. c\r\n#, fuzzy\r\nmsgctxt "a|Linux"\r\nmsgid ""\r\n"A"\r\nmsgstr "x\\n"\r\n"y"\r\n#~ msgid "o"\n#~ msgstr ""',
    b'msgctxt "a\\\\|b\\\\\\\\c|7"\nmsgid "x"\nmsgid_plural "y"\nmsgstr[0] "p"\nmsgctxt ""\nmsgid "d\\n"\nmsgstr "t"',
    b'msgctxt "a\\\\|b\\\\\\\\c|7"\nmsgid "a\\\\|b\\\\\\\\c|7"\nmsgstr "\\"\\t\\\\"\n')
XLIFF = (
    b'<xliff version="1.2" xmlns="urn:oasis:names:tc:xliff:document:1.2"><file><body><group><trans-unit id="a">'
    b'<source>A</source><target state="final">b <g id="1">c</g><x id="2" equiv-text="d"/>&amp;&#13;<![CDATA[<]]>'
    b'</target><alt-trans><target>no</target></alt-trans></trans-unit></group></body></file></xliff>',
    b'<!DOCTYPE xliff [<!ENTITY e "x">]><xliff version="1.2"><trans-unit id="a"><target>&e;</target></trans-unit>'
    b'</xliff>',
    b'<xliff version="1.0"><trans-unit id="a|Linux"><source>A</source><target state="new">x</target></trans-unit>'
    b'<trans-unit id=""><source/><target> t </target><!-- c --></trans-unit></xliff>')
TABLES = (
    b'identifier,platform,default,translation\r\na,Any,A,"x ""y"",\r\nz"\r\n"a",linux,A,\r\na|b\\c,7,,7\r\n'
    b'\r\n,Any,"d\n",',
    b'\xef\xbb\xbfa\tAny\tA\t\\n\\q\\\na\tLINUX\tA\ty\r\n\tAny\td\\n\t\nb\tAny\t\t\na\t\t\t',
    b'identifier,platform,default,translation\na,BeOS,A,x\na,Any,A\n')


SEEDS = {
    "locale_reader": locales, "text_locale": texts, "import_undo": imports, "exports": locales,
    "word_comparison": comparisons, "search": searches, "window": windows,
    "script_compile": scripts, "script_run": scripts,
    "exchange_po": lambda: (*PO, *locales()), "exchange_xliff": lambda: (*XLIFF, *locales()),
    "exchange_tables": lambda: (*TABLES, *locales()),
}


def main():
    shutil.rmtree(sys.argv[1], ignore_errors=True)
    for target, inputs in SEEDS.items():
        folder = os.path.join(sys.argv[1], target)
        os.makedirs(folder)
        for number, contents in enumerate(inputs()):
            with open(os.path.join(folder, "%03d" % number), "wb") as seed:
                seed.write(contents)


if __name__ == "__main__":
    main()
