"""Saves and exports while something is wrong: each file is the old or the new, and nothing typed is lost."""
import functools

import injection
import locale_file
import locale_reader
import model
import troubles
import unsaved
from watched import Fault

LONG = "a translation of some length, in a file of some blocks "
ENTRIES = [["key %d" % index, [[0, "Default %d" % index, LONG * 2]]] for index in range(80)]
TYPED = LONG * 120
OLD = locale_file.to_bytes(ENTRIES)
LENGTH = len(locale_file.to_bytes(locale_file.changed(ENTRIES, "key 0", 0, TYPED)))


class Operation:
    """One of those that write. `files`: those that it writes besides the document's."""
    files = ()
    history = ()

    def begin(self, case):
        """Before anything is typed."""

    def run(self, case):
        raise NotImplementedError

    def after(self, entries):
        """The document after it."""
        return entries

    def check(self, case, contents):
        """What it has written where nothing is wrong; that of exports into applications has tests of its own."""
        if not all(contents.values()):
            raise Fault("nothing was written")

    def failed(self, reply):
        """Whether it has told of a failure."""
        return reply.get("unhandled") == "IOException" or any(dialog["kind"] == "MsgBox" for dialog in reply["shown"])


class Save(Operation):
    def run(self, case):
        return case.program.raw("menu", name="FileSave")

    def failed(self, reply):
        if reply["shown"] or reply.get("unhandled"):
            raise Fault("the save gave %r" % reply)
        return unsaved.failed_save(reply)

    def check(self, case, contents):
        if contents != {case.path.name: case.saved}:
            raise Fault("a wrong file was saved")


class SaveVersion(Save):
    """With an earlier version, by an import that has no string of the document: restored twice, it would show."""
    history = ((locale_file.DATE, ENTRIES),)

    def begin(self, case):
        other = case.bench.folder / "other.nvl"
        other.write_bytes(locale_file.to_bytes([]))
        case.program.answer_file(other)
        case.program.menu("FileImportExistingFile", shown=1)


class Close(Save):
    """The save from the question at closing."""

    def run(self, case):
        case.program.answer("action")
        reply = case.program.raw("close")
        reply["shown"] = [dialog for dialog in reply["shown"] if dialog["message"] != "Do you want to save changes?"]
        return reply


class Type(Operation):
    """Writes into the state folder only."""

    def run(self, case):
        case.program.select(1)
        return case.program.raw("type", text=LONG)

    def after(self, entries):
        return locale_file.changed(entries, "key 1", 0, LONG)


class ExportRows(Operation):
    files = ("rows.txt",)

    def run(self, case):
        case.program.answer_file(case.place / "rows.txt")
        return case.program.raw("menu", name="ExportExportTabDelimited")


    def check(self, case, contents):
        if contents["rows.txt"] != model.to_text(case.changed):
            raise Fault("wrong rows were exported")


class ExportInto(Operation):
    def __init__(self, target, *files):
        self.target = target
        self.files = files

    def run(self, case):
        case.program.answer_file(case.place / self.target)
        return case.program.raw("menu", name="ExportExporttoApplication")


OPERATIONS = {
    "save": Save(), "save of a version": SaveVersion(), "close": Close(), "type": Type(), "rows": ExportRows(),
    "mac": ExportInto("A.app", "A.app/Contents/Resources/de.lproj/Localizable.strings"),
    "windows": ExportInto("a.exe", "Resources/de.mo"),
}


class Case:
    """One operation in one trouble, and the run after it."""

    def __init__(self, bench, operation, trouble, existing=True, text=TYPED):
        self.bench = bench
        self.text = text
        self.first = locale_file.changed(ENTRIES, "key 0", 0, text)
        self.changed = operation.after(self.first)
        self.saved = locale_file.to_bytes(self.changed, history=operation.history)
        self.operation = operation
        self.trouble = trouble
        self.existing = existing
        self.place, self.state = bench.folder / "place", bench.folder / "state"

    @property
    def path(self):
        return self.place / "document.kestrum_locale"

    def prepare(self):
        self.trouble.prepare(self)
        self.place.mkdir(exist_ok=True)
        self.path.write_bytes(OLD)
        self.path.chmod(0o666)
        for file in map(self.place.joinpath, self.operation.files):
            file.parent.mkdir(parents=True, exist_ok=True)
            if self.existing:
                file.write_bytes(b"an older one, of some length " * 500)
        for folder in self.place.rglob("*"):
            folder.chmod(0o777)
        self.before = self.contents()

    def contents(self):
        return {name: (self.place / name).read_bytes() if (self.place / name).exists() else None
                for name in (self.path.name, *self.operation.files)}

    def perform(self):
        """Types, and lets the operation write; its reply."""
        self.program = self.bench.program(self.path, state=self.state, before=self.trouble.before(self),
                                          process=self.trouble.process())
        self.program.menus()
        if self.trouble.early:
            self.trouble.strike(self)
        self.operation.begin(self)
        self.program.select(0)
        self.program.call("type", text=self.text)
        if not self.trouble.early:
            self.trouble.strike(self)
        reply = self.operation.run(self)
        if not reply["ok"]:
            raise Fault("the operation gave %r" % reply)
        return reply

    def run(self, new):
        """`new`: the contents that the operation gives where nothing is wrong."""
        self.prepare()
        reply = self.perform()
        failed = self.operation.failed(reply)
        self.lives()
        self.program.end()
        if not self.trouble.struck(self):
            raise ValueError("nothing was injected")  # a fault of this driver
        self.trouble.relieve(self)
        self.whole(new, failed)
        self.next_run(unsaved.unprotected(self.program.notices))

    def lives(self):
        if any(window["class"] == "MainWindow" for window in self.program.windows()):
            if self.program.document()["entries"] != self.changed:
                raise Fault("the document has changed")

    def whole(self, new, failed):
        for name, data in self.contents().items():
            if data not in (self.before[name], new[name]):
                raise Fault("%s is neither the old nor the new, but %s" % (name, "gone" if data is None else
                                                                          "%d bytes" % len(data)))
            if not failed and data != new[name]:
                raise Fault("%s was not written, and nothing told so" % name)

    def next_run(self, unprotected):
        """The typed text is in the file, or is offered; unless the program has said that it can keep nothing."""
        program = self.bench.program(start=False, state=self.state)
        saved = self.path.read_bytes() == self.saved
        if not saved:
            program.answer("action")
        reply = program.raw("start", files=[str(self.path)])
        saved = saved or unsaved.repaired(reply) and self.path.read_bytes() == self.saved
        document = program.document()
        entries, versions = document["entries"], len(document["history"])
        if saved:
            if reply["shown"] or entries != self.changed or versions != len(self.operation.history):
                raise Fault("after a good save: %r, %d versions" % (reply, versions))
        elif unprotected:
            if entries not in (ENTRIES, self.first, self.changed):
                raise Fault("the texts are such as never were")
        elif entries != self.changed or versions != len(self.operation.history):
            raise Fault("the typed text is neither saved nor offered: %r" % reply)
        else:
            self.is_offered(program, reply)

    def is_offered(self, program, reply):
        rows = unsaved.rows_between(ENTRIES, self.changed)
        unsaved.check_question(reply["shown"][0], self.path.name, rows, "action")
        program.menu("EditUndo")
        if program.document()["entries"] != ENTRIES:
            raise Fault("undo does not give the file's texts back")


def plain(bench, operation, existing=True, text=TYPED):
    """The contents that the operation gives, and the calls that it makes."""
    bench.folder.mkdir(exist_ok=True)
    trouble = troubles.Trouble() if injection.why_not() else troubles.Injected()
    case = Case(bench, operation, trouble, existing, text)
    case.prepare()
    case.perform()
    contents = case.contents()
    case.program.end()
    operation.check(case, contents)
    calls = [] if injection.why_not() else injection.calls_of(trouble.log(case), case.program.replies - 1)
    bench.clear()
    return contents, calls


def warm(bench):
    """The first run makes the sample scripts, which those that are counted then find."""
    plain(bench, Type())


def injected(calls):
    """(name, what to inject)"""
    first = {}
    for call in calls:
        first.setdefault(call.name, call)
        for error in injection.ERRORS.get(call.name, injection.OTHERS):
            what = "%s:error=%s:when=%d" % (call.name, error, call.number)
            yield "%s %d %s" % (call.name, call.number, error), what
    for name in injection.LASTING:
        for error in ("ENOSPC", "EIO") if name in first else ():
            yield "%s %s from then on" % (name, error), "%s:error=%s:when=%d+" % (name, error, first[name].number)


def surroundings():
    """(name, trouble) of all that needs no tool."""
    for size in (0, 1, 4096, len(OLD) - 1, len(OLD), LENGTH - 1, LENGTH):
        yield "limit of %d" % size, functools.partial(troubles.SizeLimit, size)
        yield "limit of %d while typing" % size, functools.partial(troubles.SizeLimit, size, early=True)
    for where in (["place"], ["state"], ["place", "state"]):
        for left in (0, 4096, 8192, 16384):
            yield "%d left in %s" % (left, " and ".join(where)), functools.partial(troubles.FullDisk, where, left)
        yield "full %s while typing" % " and ".join(where), functools.partial(troubles.FullDisk, where, 0, early=True)
    yield "read-only disk", functools.partial(troubles.ReadOnlyDisk, ["place"])
    yield "read-only state disk", functools.partial(troubles.ReadOnlyDisk, ["state"], early=True)
    yield "folder gone", functools.partial(troubles.Removed, "place")
    yield "state folder gone", functools.partial(troubles.Removed, "state")
    yield "read-only file", functools.partial(troubles.Forbidden, "path", 0o444)
    yield "read-only folder", functools.partial(troubles.Forbidden, "place", 0o555)
    yield "forbidden folder", functools.partial(troubles.Forbidden, "place", 0)
    yield "read-only state", functools.partial(troubles.Forbidden, "state", 0o500)
    yield "read-only state while typing", functools.partial(troubles.Forbidden, "state", 0o500, early=True)


def suffer(bench, operation, make_trouble, existing, new):
    Case(bench, operation, make_trouble(), existing).run(new)


def cases_of(bench, name, operation, existing):
    new, calls = plain(bench, operation, existing)
    title = name if existing else name + " of a new file"
    for trouble, make in surroundings():
        yield "%s: %s" % (title, trouble), functools.partial(suffer, bench, operation, make, existing, new)
    strikes = list(injected(calls))
    for trouble, what in bench.sample(strikes, 12, title):
        make = functools.partial(troubles.Injected, what)
        yield "%s: %s" % (title, trouble), functools.partial(suffer, bench, operation, make, existing, new)
    if injection.why_not():
        yield title + ": failing system calls", functools.partial(injection.words, "")


def cases(bench):
    if locale_reader.read(OLD) is None:
        raise ValueError("the sample is no locale file")
    warm(bench)
    for name, operation in OPERATIONS.items():
        for existing in (True, False) if operation.files else (True,):
            yield from cases_of(bench, name, operation, existing)
