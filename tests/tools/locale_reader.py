#!/usr/bin/env python3
"""Reads a locale file strictly and prints it as JSON: locale_reader.py FILE

An object with version, date (null if there is none), tool, lang, appl (hex of any bytes, or null), entries in the
order of the file, each [identifier, platform, default, translated], and history, a list of such objects. Ends with 1
and a message on anything that a saved file does not hold.
"""
import json
import re
import struct
import sys

STRING, INTEGER, DATA = b"strn", b"long", b"bind"
HEAD = {b"vers": INTEGER, b"date": STRING, b"nvvs": STRING, b"lang": STRING, b"appl": DATA, b"hist": DATA}
FIELDS = {b"idnt": STRING, b"oval": STRING, b"tval": STRING, b"plat": INTEGER}


class Malformed(Exception):
    pass


def require(condition, message, at):
    if not condition:
        raise Malformed("%s at offset %d" % (message, at))


def chunks(data, start, end):
    """(tag, payload's start, payload's end) of the chunks that fill data[start:end]."""
    while start < end:
        require(end - start >= 8, "cut chunk header", start)
        tag, length = struct.unpack_from(">4si", data, start)
        require(0 <= length <= end - start - 8, "length of %r leads out" % tag, start)
        yield tag, start + 8, start + 8 + length
        start += 8 + length


def extent(data, start, end, kind):
    """Where the data of the one typed value lies that fills data[start:end]."""
    values = list(chunks(data, start, end))
    require(len(values) == 1 and values[0][0] == kind, "not one value of type %r" % kind, start)
    return values[0][1:]


def value(data, start, end, kind):
    first, last = extent(data, start, end, kind)
    raw = bytes(data[first:last])
    if kind == INTEGER:
        require(len(raw) == 4, "integer of %d bytes" % len(raw), first)
        return struct.unpack(">i", raw)[0]
    if kind == DATA:
        return raw
    try:
        return raw.decode("utf-8")
    except UnicodeDecodeError:
        raise Malformed("text that is not UTF-8 at offset %d" % first) from None


def read_entry(data, start, end):
    fields = {}
    for tag, first, last in chunks(data, start, end):
        require(tag in FIELDS and tag not in fields, "unexpected field %r" % tag, first - 8)
        fields[tag] = value(data, first, last, FIELDS[tag])
    require(len(fields) == len(FIELDS), "entry without all of its fields", start)
    return [fields[b"idnt"], fields[b"plat"], fields[b"oval"], fields[b"tval"]]


def read_head(data, tag, start, end, seen):
    require(tag in HEAD and tag not in seen, "unexpected chunk %r" % tag, start - 8)
    seen[tag] = value(data, start, end, HEAD[tag])
    if tag == b"date":
        require(re.fullmatch(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d", seen[tag]), "malformed date", start)


def read_file(data, start, end):
    require(bytes(data[start:start + 8]) == b"nvlocale", "wrong magic", start)
    head, entries, keys, history = {}, [], set(), []
    for tag, first, last in chunks(data, start + 8, end):
        if tag == b"enty":
            entries.append(read_entry(data, first, last))
            key = tuple(entries[-1][:2])
            require(key not in keys, "second entry for %r" % (key,), first)
            keys.add(key)
        elif tag == b"hist":
            history.append(read_file(data, *extent(data, first, last, DATA)))
        else:
            read_head(data, tag, first, last, head)
    for tag in (b"vers", b"nvvs", b"lang"):
        require(tag in head, "no %r" % tag, start)
    return {"version": head[b"vers"], "date": head.get(b"date"), "tool": head[b"nvvs"], "lang": head[b"lang"],
            "appl": head[b"appl"].hex() if b"appl" in head else None, "entries": entries, "history": history}


def main():
    with open(sys.argv[1], "rb") as file:
        data = memoryview(file.read())
    try:
        result = read_file(data, 0, len(data))
    except Malformed as failure:
        sys.exit("%s: %s" % (sys.argv[1], failure))
    json.dump(result, sys.stdout, ensure_ascii=False)


if __name__ == "__main__":
    main()
