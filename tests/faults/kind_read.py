"""Damaged files are opened: each gives the document that a second reader sees in it, or the usual message."""
import functools
import struct

import locale_file
import locale_reader
import model
from watched import Fault

UNREADABLE = [{"kind": "MsgBox", "text": "The file could not be opened."}]
HOSTILE = [0, 1, -1, 2**31 - 1, -2**31, 4, 8, 2**31 - 8, 2**30, -8]
LEVELS = 40000
NOW = "2026-01-31 12:00:00"  # of all programs of the driver

ENTRIES = [["greeting", [[0, "Hello", "Grüße"]]], ["leave", [[1, "Quit", ""], [2, "Exit", "Ende"]]]]
SMALL = locale_file.to_bytes(ENTRIES, application="/tmp/My App.app", tool="2",
                             history=[("2000-01-01 00:00:00", [["leave", [[1, "Quit", "Weg"]]]])])
TEXT = "greeting\tAny\tHello\tGrüße\\n\\t\nleave\tWindows\tExit\tEnde \\\\\r\n".encode()


def flipped(data, bit):
    data = bytearray(data)
    data[bit // 8] ^= 1 << bit % 8
    return bytes(data)


def mutants(data):
    """(name, bytes): every prefix, every flip of a bit, every byte 0 or 255."""
    for size in range(len(data) + 1):
        yield "prefix %d" % size, data[:size]
    for bit in range(8 * len(data)):
        yield "bit %d" % bit, flipped(data, bit)
    for index in range(len(data)):
        for byte in (0, 255):
            yield "byte %d=%d" % (index, byte), data[:index] + bytes([byte]) + data[index + 1:]


def length_fields(data, start=8, end=None):
    """Where each length stands that the format has, walking as it is meant to be walked."""
    end = len(data) if end is None else end
    while start < end:
        tag = data[start:start + 4]
        length = struct.unpack_from(">i", data, start + 4)[0]
        yield start + 4
        if tag == b"enty":
            yield from length_fields(data, start + 8, start + 8 + length)
        else:
            yield start + 12
            if tag == b"hist":
                yield from length_fields(data, start + 24, start + 8 + length)
        start += 8 + length


def with_length(data, field, length):
    return data[:field] + struct.pack(">i", length) + data[field + 4:]


def hostile_lengths(data):
    for field in length_fields(data):
        true = struct.unpack_from(">i", data, field)[0]
        rest = len(data) - field - 4
        for length in dict.fromkeys([*HOSTILE, true - 1, true + 1, true - 8, true + 8, rest - 1, rest, rest + 1]):
            yield "length at %d=%d" % (field, length), with_length(data, field, length)


def pairs_of_lengths(bench):
    """Two wrong lengths at once, some thousands of all there are."""
    fields = list(length_fields(SMALL))
    for index in range(5000):
        name = "two lengths %d" % index
        chance = bench.chance(name)
        data = SMALL
        for field in chance.sample(fields, 2):
            data = with_length(data, field, chance.choice([*HOSTILE, chance.randrange(len(SMALL))]))
        yield name, data


def nested(levels):
    """Versions within versions, 24 bytes for each."""
    return locale_reader.MAGIC + b"".join(
        struct.pack(">4si4si8s", b"hist", 24 * left - 8, b"bind", 24 * left - 16, locale_reader.MAGIC)
        for left in range(levels, 0, -1))


def overlapping(count):
    """Entries whose last field runs to the end of the file, over all that follow."""
    size = 36
    return locale_reader.MAGIC + b"".join(
        struct.pack(">4si4si4si12x", b"enty", 28, b"tval", 8, b"strn", size * (count - index) - 24)
        for index in range(count))


def spending_version(outer=ENTRIES):
    """A version inside that reads far too much behind its entries' ends, in a file that is else in order."""
    return locale_file.to_bytes(outer) + locale_file.typed(b"hist", b"bind", overlapping(60))


def opened(bench, path):
    """The document that is made of it, whose window is closed again; None after the usual message."""
    program = bench.shared()
    reply = program.raw("open", path=str(path))
    if not reply["ok"] or reply.get("unhandled") or reply["shown"] not in ([], UNREADABLE):
        raise Fault("opening gave %r" % reply)
    if reply["shown"]:
        return None
    document = program.document()
    program.close()
    return document


def judge(bench, data, name="a.kestrum_locale"):
    path = bench.folder / name
    path.write_bytes(data)
    document = opened(bench, path)
    expected = locale_reader.told(data, NOW) if not name.endswith(".txt") and locale_reader.read(data) else None
    if (document is None) != (expected is None):
        raise Fault("the file was %s" % ("refused" if document is None else "opened, with %r" % document["entries"]))
    if expected:
        model.compare(document, expected, "opening")
    if bench.shared().windows():
        raise Fault("a window is left")


def deep(bench, levels, saves):
    """So deep a file is opened, and saved with a change, as it stood."""
    data = locale_file.to_bytes(ENTRIES) + nested(levels)[8:]
    path = bench.folder / "deep.kestrum_locale"
    path.write_bytes(data)
    program = bench.program(path)
    if not saves:
        return
    program.select(0)
    program.type("new")
    program.menu("FileSave")
    saved = path.read_bytes()
    if not saved.startswith(locale_file.to_bytes(locale_file.changed(ENTRIES, "greeting", 0, "new"))):
        raise Fault("the saved file begins with %r" % saved[:400])
    depth = saved.count(locale_reader.MAGIC) - 1
    if depth != levels:
        raise Fault("%d levels were saved" % depth)


def cases(bench):
    small = [("empty", b""), ("eight bytes", locale_reader.MAGIC), ("eight others", b"nvlocalf"),
             ("overlapping entries", overlapping(20000)), ("a version that spends", spending_version()),
             ("a version that spends, and more", spending_version() + SMALL[8:])]
    damaged = [*bench.sample(mutants(SMALL), 1500, "mutants"), *bench.sample(hostile_lengths(SMALL), 500, "lengths"),
               *bench.sample(pairs_of_lengths(bench), 300, "pairs")]
    for name, data in [*small, *damaged]:
        yield name, functools.partial(judge, bench, data)
    for name, data in bench.sample(mutants(TEXT), 300, "texts"):
        yield "text " + name, functools.partial(judge, bench, data, "a.txt")
    yield "no other than text", functools.partial(judge, bench, TEXT, "a.nvl")
    yield "%d levels" % LEVELS, functools.partial(deep, bench, LEVELS, False)
    yield "%d levels, saved" % LEVELS, functools.partial(deep, bench, LEVELS, True)
