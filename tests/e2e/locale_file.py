"""Makes locale files, byte for byte as the program saves them."""
import copy
import struct

DATE = "2001-02-03 04:05:06"

# [identifier, [[platform, default, translated], ...]], as the operation `document` tells them.
ENTRIES = [
    ["greeting", [[0, "Hello world", "Hallo Welt"]]],
    ["leave", [[0, "Exit", ""], [1, "Quit", "Beenden"], [2, "Exit", ""]]],
    ["blank", [[0, "", ""]]],
    ["dock", [[1, "Dock", "Dock (de)"]]],
]


def encode(text):
    return text.encode("utf-8", "surrogateescape")


def chunk(tag, payload):
    return tag + struct.pack(">i", len(payload)) + payload


def typed(tag, kind, data):
    return chunk(tag, chunk(kind, data))


def number(tag, value):
    return typed(tag, b"long", struct.pack(">i", value))


def text(tag, value):
    return typed(tag, b"strn", encode(value))


def to_bytes(entries, language="de", date=DATE, tool="", history=(), application=None):
    """`history`: (date, entries) of each earlier version, and as a third its other fields where they differ;
    `application`: the path that it was exported into."""
    parts = [b"nvlocale", number(b"vers", 0), text(b"date", date), text(b"nvvs", tool), text(b"lang", language)]
    if application:
        parts.append(typed(b"appl", b"bind", encode(application)))
    for identifier, platforms in entries:
        for platform, default, translated in platforms:
            parts.append(chunk(b"enty", text(b"idnt", identifier) + text(b"oval", default)
                               + text(b"tval", translated) + number(b"plat", platform)))
    for older_date, older, *fields in history:
        fields = {"language": language, **(fields[0] if fields else {})}
        parts.append(typed(b"hist", b"bind", to_bytes(older, date=older_date, **fields)))
    return b"".join(parts)


def changed(entries, identifier, platform, translated):
    """The entries with one translation replaced."""
    entries = copy.deepcopy(entries)
    for name, platforms in entries:
        for values in platforms:
            if (name, values[0]) == (identifier, platform):
                values[2] = translated
    return entries
