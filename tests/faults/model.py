"""A document as plain data: what typing, importing, undo and saving must make of it."""
import re

import locale_file
import locale_reader

MERGE_TICKS = 30
PLATFORMS = {"any": 0, "mac os": 1, "windows": 2, "linux": 3}


class Change:
    """One text of one string."""

    def __init__(self, document, identifier, platform, new, original=""):
        platforms = document.entries.find(identifier) or {}
        if platform in platforms:
            default, self.old = platforms[platform]
        else:
            default, self.old = platforms.get(0, ["", ""])[0], ""
        self.document = document
        self.identifier = identifier
        self.platform = platform
        self.new = new
        self.original = original or default
        self.time = document.ticks

    def absorbs(self, newer):
        if not isinstance(newer, Change) or newer.time - self.time >= MERGE_TICKS:
            return False
        if (newer.identifier.lower(), newer.platform) != (self.identifier.lower(), self.platform):
            return False
        self.new = newer.new
        self.time = newer.time
        return True

    def store(self, text):
        self.document.entries.of(self.identifier)[self.platform] = [self.original, text]

    def perform(self):
        self.store(self.new)

    def undo(self):
        self.store(self.old)


class Import:
    """Many changes at once, and with a locale file the version from before: its date, entries and other fields."""

    def __init__(self, document, changes, version=None):
        self.document = document
        self.changes = changes
        self.version = version

    def absorbs(self, newer):
        return False

    def perform(self):
        for change in self.changes:
            change.perform()
        if self.version:
            self.document.history.append(self.version)

    def undo(self):
        for change in self.changes:
            change.undo()
        if self.version:
            self.document.history = [version for version in self.document.history if version is not self.version]


class Document:
    def __init__(self, entries, history=(), language="de", date=locale_file.DATE):
        self.entries = locale_reader.Folded()
        for identifier, platforms in entries:
            self.entries.of(identifier).update({platform: [*values] for platform, *values in platforms})
        self.history = [[date, older, {"language": language}] for date, older in history]
        self.language = language
        self.application = None
        self.date = date
        self.undo_stack = []
        self.redo_stack = []
        self.save_point = 0
        self.ticks = 0

    def add(self, action):
        if not (self.undo_stack and self.undo_stack[-1].absorbs(action)):
            self.undo_stack.append(action)
            self.redo_stack.clear()
        action.perform()

    def type(self, identifier, platform, text):
        """A user's edit that changes nothing does not occur."""
        values = (self.entries.find(identifier) or {}).get(platform, ["", ""])
        if values[1] != text:
            self.add(Change(self, identifier, platform, text))

    def undo(self):
        if self.undo_stack:
            self.redo_stack.append(self.undo_stack.pop())
            self.redo_stack[-1].undo()

    def redo(self):
        if self.redo_stack:
            self.undo_stack.append(self.redo_stack.pop())
            self.undo_stack[-1].perform()

    def save(self):
        self.save_point = len(self.undo_stack)
        return self.file()

    def file(self):
        return locale_file.to_bytes(self.entries.listed(), date=self.date, history=self.history, **self.fields())

    def fields(self):
        return {"language": self.language, "application": self.application}

    def dirty(self):
        return len(self.undo_stack) != self.save_point

    def import_locale(self, locale):
        """Of a file in the document's language, or one whose language is chosen. The same in other letters stays."""
        if locale.language.lower() != self.language.lower():
            self.language = locale.language
        changes = [Change(self, identifier, platform, translated, default)
                   for identifier, platforms in locale.entries.listed() if self.entries.find(identifier) is not None
                   for platform, default, translated in platforms]
        self.add(Import(self, changes, [self.date, self.entries.listed(), self.fields()]))

    def import_text(self, data):
        """False for a text without a delimiter."""
        lines = lines_of(data)
        delimiter = delimiter_of(lines[0])
        if delimiter is None:
            return False
        rows = [line.split(delimiter) for line in lines]
        self.add(Import(self, [change for change in map(self.change_of_row, rows) if change]))
        return True

    def change_of_row(self, fields):
        if len(fields) < 4:
            return None
        identifier, platform = (locale_reader.decode(field) for field in fields[:2])
        if self.entries.find(identifier) is None or platform.lower() not in PLATFORMS:
            return None
        return Change(self, identifier, PLATFORMS[platform.lower()], locale_reader.decode(unescape(fields[3])))

    def told(self):
        """Of what the operation `document` tells, all that this knows."""
        return {"entries": self.entries.listed(), "language": self.language, "application": self.application,
                "history": [{"date": date, "entries": entries} for date, entries, *_ in self.history],
                "dirty": self.dirty(), "undo": len(self.undo_stack), "redo": len(self.redo_stack)}


def lines_of(data):
    lines = re.split(b"\r\n|\r|\n", data.removeprefix(b"\xef\xbb\xbf"))
    return lines[:-1] if len(lines) > 1 and not lines[-1] else lines


def delimiter_of(line):
    tab, comma = line.find(b"\t") + 1, line.find(b",") + 1
    if tab < comma or (tab and not comma):
        return b"\t"
    return b"," if comma else None


def unescape(data):
    return re.sub(rb"\\(.?)", lambda found: {b"n": b"\n", b"r": b"\r", b"t": b"\t", b"N": b"\n", b"R": b"\r",
                                            b"T": b"\t"}.get(found[1], found[1]), data, flags=re.DOTALL)


def to_text(entries):
    """The rows that an export writes."""
    words = {0: "Any", 1: "Mac OS", 2: "Windows", 3: "Linux"}
    return b"".join(locale_file.encode("%s\t%s\t%s\t%s\n" % (identifier, words.get(platform, ""), escape(default),
                                                            escape(translated)))
                    for identifier, platforms in entries for platform, default, translated in platforms)


def escape(text):
    for character, escaped in (("\\", "\\\\"), ('"', '\\"'), ("\r", "\\r"), ("\n", "\\n"), ("\t", "\\t")):
        text = text.replace(character, escaped)
    return text


def compare(seen, expected, after):
    """The document that the program tells of with the one that it must be."""
    for field, value in expected.items():
        if seen[field] != value:
            raise AssertionError("after %s, %s is %r, not %r" % (after, field, seen[field], value))
