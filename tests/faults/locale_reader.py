"""Reads locale files as the program ought to: a second reader, to judge what the first makes of damaged files."""
import datetime
import re
import struct

MAGIC = b"nvlocale"
FORM = re.compile(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d", re.ASCII)


class PastEnd(Exception):
    """A length leads out of the bytes: the read of this file is over."""


class Refused(Exception):
    """The whole file is not to be opened, whatever stands around the fault."""


class WrongDate(Refused):
    """The one fault that is not told as a bad file, but as a failure of its own."""


class Folded:
    """A dictionary by text whose case does not count; the first spelling stays, and so does its place."""

    def __init__(self):
        self.items = {}

    def of(self, text):
        return self.items.setdefault(text.lower(), (text, {}))[1]

    def find(self, text):
        return self.items.get(text.lower(), (None, None))[1]

    def listed(self):
        """As the operation `document` tells it."""
        return [[text, [[platform, *values] for platform, values in platforms.items()]]
                for text, platforms in self.items.values()]


class Locale:
    def __init__(self):
        self.valid = True
        self.entries = Folded()
        self.history = []
        self.language = self.tool = ""
        self.version = 0
        self.date = None
        self.application = None


def decode(data):
    return data.decode("utf-8", "surrogateescape")


def as_text(value):
    return "" if value is None else str(value) if isinstance(value, int) else decode(value)


def as_number(value):
    if not isinstance(value, bytes):
        return value or 0
    found = re.match(r"[ \t\r\n]*([+-]?\d+)", value.decode("latin-1"), re.ASCII)
    return max(-2**31, min(2**31 - 1, int(found[1]))) if found else 0


class Reader:
    """One file, or the payload of an earlier version. `budget` holds the bytes that may lie behind entries' ends."""

    def __init__(self, data, budget):
        self.data = data
        self.position = len(MAGIC)
        self.budget = budget
        self.locale = Locale()

    def take(self, count):
        if count < 0 or count > len(self.data) - self.position:
            raise PastEnd
        self.position += count
        return self.data[self.position - count:self.position]

    def number(self):
        return struct.unpack(">i", self.take(4))[0]

    def header(self):
        tag, length = struct.unpack(">4si", self.take(8))
        return tag, length

    def skip(self, length):
        self.locale.valid = False
        self.take(length)

    def value(self):
        kind, length = self.header()
        if kind in (b"strn", b"bind"):
            return self.take(length)
        if kind != b"long":
            return self.skip(length)
        value = self.number()
        if length != 4:
            self.locale.valid = False
            if length < 0 or not 0 <= self.position + length - 4 <= len(self.data):
                raise PastEnd
            self.position += length - 4
        return value

    def read(self):
        try:
            while self.position < len(self.data):
                self.chunk(*self.header())
        except PastEnd:
            self.locale.valid = False
        return self.locale

    def chunk(self, tag, length):
        locale = self.locale
        if tag == b"enty":
            self.entry(length)
        elif tag == b"vers":
            locale.version = as_number(self.value())
        elif tag == b"nvvs":
            locale.tool = as_text(self.value())
        elif tag == b"lang":
            locale.language = as_text(self.value())
        elif tag == b"appl":
            path = as_text(self.value())
            locale.application = path if path.startswith("/") and "\0" not in path else None
        elif tag == b"date":
            locale.date = checked_date(as_text(self.value()))
        elif tag == b"hist":
            self.older(self.value())
        else:
            self.skip(length)

    def older(self, data):
        """An element that is no locale file is dropped without a word."""
        if isinstance(data, bytes) and data.startswith(MAGIC):
            older = Reader(data, self.budget).read()
            if older.valid:
                self.locale.history.append(older)

    def entry(self, length):
        end = self.position + length
        if length < 0 or end > len(self.data):
            raise PastEnd
        fields = {b"idnt": None, b"oval": None, b"tval": None, b"plat": None, b"chng": None}
        while self.position < end:
            tag, field_length = self.header()
            if tag in fields:
                fields[tag] = self.value()
            else:
                self.skip(field_length)
        self.budget[0] -= self.position - end
        if self.budget[0] < 0:
            raise Refused
        self.position = end
        platforms = self.locale.entries.of(as_text(fields[b"idnt"]))
        platforms[as_number(fields[b"plat"])] = [as_text(fields[b"oval"]), as_text(fields[b"tval"])]


def checked_date(text):
    """A text that is no date ends the read of everything."""
    if not FORM.fullmatch(text):
        raise WrongDate
    try:  # the year 0 is one like others, and a leap year like 2000
        datetime.datetime.strptime("2000" + text[4:] if text.startswith("0000") else text, "%Y-%m-%d %H:%M:%S")
    except ValueError:
        raise WrongDate from None
    if text[17:] > "59":
        raise WrongDate
    return text


def read(data):
    """The locale, or None for a file that is not to be opened."""
    try:
        return parse(data)
    except Refused:
        return None


def told(data, now=None):
    """A sound file as the operation `document` tells it; a version without a date has that of the reading."""
    locale = read(data)
    return {"entries": locale.entries.listed(), "language": locale.language, "application": locale.application,
            "history": [{"date": version.date or now, "entries": version.entries.listed()} for version in locale.history],
            "toolVersion": locale.tool, "fileVersion": locale.version}


def parse(data):
    if not data.startswith(MAGIC):
        return None
    locale = Reader(data, [len(data)]).read()
    return locale if locale.valid else None
