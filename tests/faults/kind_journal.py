"""The kept changes themselves are damaged, many, held by another program, or meet a file that is another by now."""
import functools
import os

import injection
import kind_kill
import kind_save
import kind_special
import locale_file
import locale_reader
import unsaved
from kind_read import flipped
from locale_file import ENTRIES, changed
from watched import Fault

LATER = "2026-01-31 12:01:00"
BLOCK = 4096


class Document:
    """A file, the state folder, and runs that come and go."""

    def __init__(self, bench, name="strings.kestrum_locale", state="state", entries=ENTRIES):
        self.bench = bench
        self.path = bench.folder / name
        self.state = bench.folder / state
        self.entries = entries
        self.path.write_bytes(locale_file.to_bytes(entries))

    def opened(self, *answers, **options):
        """A run with the file, and what it showed."""
        program = self.bench.program(start=False, state=self.state, **options)
        for button in answers:
            program.answer(button)
        return program, program.raw("start", files=[str(self.path)])

    def typed(self, *texts, **options):
        """A run that has typed into the rows and lives on."""
        program, reply = self.opened(**options)
        type_into(program, *texts)
        return program

    def dies(self, *texts, **options):
        self.typed(*texts, **options).kill()

    def files(self):
        return {str(path.relative_to(self.state)): path.read_bytes()
                for path in sorted(self.state.rglob("*")) if path.is_file()}

    def asks(self, entries, rows, pressed="action", **options):
        """One question, about so many rows; the entries that follow."""
        program, reply = self.opened(pressed)
        if len(reply["shown"]) != 1:
            raise Fault("the opening shows %r" % reply["shown"])
        unsaved.check_question(reply["shown"][0], self.path.name, [rows], pressed, **options)
        self.holds(program, entries)
        return program

    def holds(self, program, entries):
        seen = program.document()["entries"]
        if unsaved.differences(seen, entries)[0]:
            raise Fault("the document is %r, not %r" % (seen, entries))

    def silent(self, entries):
        program, reply = self.opened()
        if reply["shown"] or reply["notices"]:
            raise Fault("the opening shows %r, %r" % (reply["shown"], reply["notices"]))
        self.holds(program, entries)
        program.end()


def type_into(program, *texts):
    """(row, text) of each."""
    for row, text in texts:
        program.select(row)
        program.type(text)


def with_texts(*texts, entries=ENTRIES):
    """The rows of the sample all show the entry for any platform."""
    for row, text in texts:
        identifier = entries[row][0]
        entries = changed(entries, identifier, 0, text)
    return entries


# --- Damage ---

class Recording:
    """A run of several kinds of changes: what the state folder held after each, and the document."""

    def __init__(self, bench):
        bench.folder.mkdir()
        self.document = Document(bench)
        other = bench.folder / "other.nvl"
        other.write_bytes(locale_file.to_bytes([["greeting", [[0, "Hello", "Salut"], [3, "", "Linux"]]]], "fr"))
        (bench.folder / "a.exe").touch()
        (bench.folder / "Resources").mkdir()
        program, _ = self.document.opened()
        self.steps = []
        self.record(program)
        for row, text in ((0, "one"), (1, "two"), (0, "three, of several words\n"), (2, "ü𝄞\udcff")):
            type_into(program, (row, text))
            program.tick(100)
            self.record(program)
        program.menu("EditUndo")
        self.record(program)
        program.answer_file(other)
        program.answer("alternate")
        program.menu("FileImportExistingFile", shown=2)
        self.record(program)
        program.answer_file(bench.folder / "a.exe")
        program.menu("ExportExporttoApplication", shown=1)
        self.record(program)
        type_into(program, (1, "the last"))
        self.record(program)
        program.kill()
        self.files = self.document.files()
        bench.clear()

    def record(self, program):
        self.steps.append(({name: len(data) for name, data in self.document.files().items()}, program.document()))

    def around(self, name, position):
        """The document when all that stands before that place of a journal had been written, and one step later."""
        documents = [told for sizes, told in self.steps if sizes.get(name, 0) <= position]
        return documents[-1], self.steps[min(len(documents), len(self.steps) - 1)][1]


def damaged(bench, recording, name, position, data):
    """What stands before the damage counts, and nothing else."""
    document = Document(bench)
    document.state.mkdir(mode=0o700)
    for file, contents in {**recording.files, name: data}.items():
        (document.state / file).parent.mkdir(mode=0o700, parents=True, exist_ok=True)
        (document.state / file).write_bytes(contents)
        (document.state / file).chmod(0o600)
    program, reply = document.opened("action")
    seen = program.document()
    unsaved.between(seen, *recording.around(name, position))
    if bool(reply["shown"]) == unsaved.same_but_doubtful(seen, recording.steps[0][1]):
        raise Fault("the opening shows %r" % reply["shown"])
    type_into(program, (2, "goes on"))


def damages(bench, recording):
    """(name, arguments of `damaged`)"""
    for name, data in recording.files.items():
        lengths = bench.sample(range(len(data)), 40, "lengths " + name)
        for length in lengths:
            yield "%s cut to %d" % (name[:8], length), (name, length, data[:length])
        bits = range(8 * len(data))
        for bit in bench.chance("bits " + name).sample(bits, min(len(bits), 60 if bench.quick else 4000)):
            yield "%s, bit %d" % (name[:8], bit), (name, bit // 8, flipped(data, bit))
        for length in (1, 8, 100):
            yield "%s and %d bytes of garbage" % (name[:8], length), (name, len(data), data + os.urandom(length))
        yield "%s and zeros" % name[:8], (name, len(data), data + bytes(BLOCK))


def odd_state(bench, make):
    """A thing that is no file in the journal's place."""
    document = Document(bench)
    document.dies((0, "typed"))
    for name in document.files():
        (document.state / name).unlink()
        make(bench, document.state / name)
    program, reply = document.opened()
    if reply["shown"]:
        raise Fault("it shows %r" % reply["shown"])
    type_into(program, (0, "again"))


def swapped(bench):
    """Two journals under each other's names: each document gets its own texts, or none."""
    one, two = Document(bench, "one.nvl"), Document(bench, "two.nvl")
    one.dies((0, "first"))
    names = set(one.files())
    two.dies((1, "second"))
    first, second = sorted(one.files().items(), key=lambda file: file[0] not in names)[:2]
    (one.state / first[0]).write_bytes(second[1])
    (one.state / second[0]).write_bytes(first[1])
    for document, texts in ((one, (0, "first")), (two, (1, "second"))):
        program, _ = document.opened("action")
        seen = program.document()["entries"]
        if seen not in (ENTRIES, with_texts(texts)):
            raise Fault("%s has %r" % (document.path.name, seen))
        program.end()


# --- Several of them ---

def two_programs(bench):
    """What a living program holds is its own; when both have died, both are asked about, the oldest first."""
    document = Document(bench)
    first = document.typed((0, "first"))
    second, reply = document.opened(arguments=["--now", LATER])
    if reply["shown"]:
        raise Fault("a living program's changes are offered: %r" % reply["shown"])
    type_into(second, (1, "second"), (2, "third"))
    first.kill()
    second.kill()
    asks_in_order(document, [(1, unsaved.NOW), (2, unsaved.NOW.replace("12:00", "12:01"))],
                  with_texts((0, "first"), (1, "second"), (2, "third")))


def asks_in_order(document, questions, entries):
    program, reply = document.opened(*["action"] * len(questions))
    if len(reply["shown"]) != len(questions):
        raise Fault("the opening shows %r" % reply["shown"])
    for shown, (rows, when) in zip(reply["shown"], questions):
        unsaved.check_question(shown, document.path.name, [rows], "action", when)
    document.holds(program, entries)
    if program.document()["descriptions"] != ["Restore"] * len(questions):
        raise Fault("the steps are %r" % program.document()["descriptions"])
    for _ in questions:
        program.menu("EditUndo")
    document.holds(program, document.entries)
    return program


def put_off(bench):
    """Not now, twice, with new changes each time."""
    document = Document(bench)
    texts, questions = [], []
    for index in range(3):
        when = "2026-01-31 12:0%d:00" % index
        program, reply = document.opened(*["cancel"] * index, arguments=["--now", when])
        if len(reply["shown"]) != index:
            raise Fault("at opening %d there are %d questions" % (index, len(reply["shown"])))
        document.holds(program, ENTRIES)
        texts.append((index, "text %d" % index))
        questions.append((1, unsaved.NOW.replace("12:00", "12:0%d" % index)))
        type_into(program, texts[-1])
        program.kill()
    asks_in_order(document, questions, with_texts(*texts)).kill()
    asks_in_order(document, questions[:0], ENTRIES)  # undone before that death


def the_same_text(bench):
    """The younger journal wins where both have a text."""
    document = Document(bench)
    document.dies((0, "older"))
    program, _ = document.opened("cancel", arguments=["--now", LATER])
    type_into(program, (0, "younger"))
    program.kill()
    program, reply = document.opened("action", "action")
    document.holds(program, with_texts((0, "younger")))


# --- The three answers, and ends without a question ---

def not_now(bench):
    document = Document(bench)
    document.dies((0, "typed"))
    for _ in range(3):
        document.asks(ENTRIES, 1, "cancel").end()
    document.asks(with_texts((0, "typed")), 1).kill()
    document.asks(with_texts((0, "typed")), 1)  # the restored is no more saved than the typed was


def discard(bench):
    document = Document(bench)
    document.dies((0, "typed"))
    document.asks(ENTRIES, 1, "alternate").end()
    document.silent(ENTRIES)


def saved(bench):
    document = Document(bench)
    document.dies((0, "typed"), (1, "also"))
    program = document.asks(with_texts((0, "typed"), (1, "also")), 2)
    program.menu("FileSave")
    program.kill()
    document.silent(with_texts((0, "typed"), (1, "also")))


def given_up(bench):
    document = Document(bench)
    program = document.typed((0, "typed"))
    program.answer("alternate")
    program.close(shown=1)
    program.kill()
    document.silent(ENTRIES)


def undone(bench):
    document = Document(bench)
    program = document.typed((0, "typed"))
    program.menu("EditUndo")
    program.kill()
    document.silent(ENTRIES)
    program, _ = document.opened()
    type_into(program, (0, "typed"))
    program.menu("EditUndo")
    program.menu("EditRedo")
    program.kill()
    document.asks(with_texts((0, "typed")), 1)


def kept_to_itself(bench):
    """Nobody else reads what was typed."""
    before = os.umask(0)
    try:
        document = Document(bench)
        document.dies((0, "typed"))
    finally:
        os.umask(before)
    if not document.files():
        raise Fault("nothing is kept")
    for path in [document.state, *document.state.rglob("*")]:
        mode = path.stat().st_mode & 0o777
        if mode != (0o700 if path.is_dir() else 0o600):
            raise Fault("%s has the mode %o" % (path.name, mode))


# --- Another file by now ---

def changed_meanwhile(bench):
    document = Document(bench)
    document.dies((0, "typed"), (1, "also"))
    others = with_texts((2, "somebody else's"), (1, "of somebody else"))
    document.path.write_bytes(locale_file.to_bytes(others))
    program = document.asks(with_texts((0, "typed"), (1, "also"), entries=others), 2, foreign=True)
    program.menu("EditUndo")
    document.holds(program, others)
    if document.path.read_bytes() != locale_file.to_bytes(others):
        raise Fault("the opening has written the file")


def lacks_the_string(bench):
    """The string that was typed into is not in the file any more: it comes back."""
    document = Document(bench)
    document.dies((0, "typed"))
    document.path.write_bytes(locale_file.to_bytes(ENTRIES[1:]))
    program, reply = document.opened("action")
    if unsaved.translations(program.document()["entries"]).get(("greeting", 0)) != "typed":
        raise Fault("the typed text is lost: %r" % program.document()["entries"])


def broken_meanwhile(bench):
    document = Document(bench)
    document.dies((0, "typed"))
    data = document.path.read_bytes()
    document.path.write_bytes(data[:-1])
    program, reply = document.opened()
    if [dialog["kind"] for dialog in reply["shown"]] != ["MsgBox"]:
        raise Fault("a broken file shows %r" % reply["shown"])
    program.kill()
    document.path.write_bytes(data)
    document.asks(with_texts((0, "typed")), 1)


def gone_and_back(bench):
    document = Document(bench)
    document.dies((0, "typed"))
    away = document.path.rename(bench.folder / "away")
    program = bench.program(start=False, state=document.state)
    if program.raw("start", files=[])["shown"]:
        raise Fault("changes to a file that is gone are offered")
    program.end()
    away.rename(document.path)
    document.asks(with_texts((0, "typed")), 1)


def old_ones(bench):
    """Ninety days after the file has gone, its journal goes; with its file it stays."""
    for now, stays in (("2026-04-30 12:00:00", True), ("2026-05-10 12:00:00", False)):
        document = Document(bench, "gone.nvl", now[:10])
        document.dies((0, "typed"))
        kept = Document(bench, "kept.nvl", now[:10])
        kept.dies((0, "typed"))
        for path in document.state.rglob("*"):
            os.utime(path, (1769860800, 1769860800))  # 2026-01-31
        data = document.path.read_bytes()
        document.path.unlink()
        bench.program(start=False, state=document.state, arguments=["--now", now]).raw("start", files=[])
        document.path.write_bytes(data)
        if stays:
            document.asks(with_texts((0, "typed")), 1)
        else:
            document.silent(ENTRIES)
        kept.asks(with_texts((0, "typed")), 1)


# --- A save that was cut short ---

class CutShort(kind_kill.KilledCase):
    """Dies before it writes into the file, which then is made what a later death would have left."""

    def run(self, contents):
        """`contents`: of the file, by the old and the new."""
        self.die()
        left = contents(kind_save.OLD, self.saved)
        self.path.write_bytes(left)
        program = self.bench.program(start=False, state=self.state)
        program.answer("action")
        reply = program.raw("start", files=[str(self.path)])
        self.judge(program, reply, left)

    def judge(self, program, reply, left):
        repaired = [notice for notice in reply["notices"] if notice["text"] == unsaved.REPAIRED]
        if program.document()["entries"] != self.changed:
            raise Fault("the typed text did not come back")
        if left == kind_save.OLD:
            unsaved.check_question(reply["shown"][0], self.path.name, [1], "action")
            return
        if reply["shown"] or len(repaired) != (left != self.saved) or self.path.read_bytes() != self.saved:
            raise Fault("it was not made the new file: %r, %r" % (reply["shown"], reply["notices"]))
        if repaired and repaired[0]["title"] != "“%s” was repaired" % self.path.name:
            raise Fault("the notice is %r" % repaired[0])


class OthersWork(CutShort):
    """The file is neither, but somebody else's."""

    def judge(self, program, reply, left):
        if self.path.read_bytes() != left:
            raise Fault("somebody else's file was written")
        if locale_reader.read(left):
            unsaved.check_question(reply["shown"][0], self.path.name, [1], "action", foreign=True)
            if program.document()["entries"][0][1][0][2] != self.text:
                raise Fault("the typed text did not come back")


def first_blocks(count):
    return lambda old, new: new[:count * BLOCK] + old[count * BLOCK:]


def cut_at(length):
    """While it grows: the new as far as it had come."""
    whole = length // BLOCK * BLOCK
    return lambda old, new: new[:length] if length >= len(old) else new[:whole] + old[whole:]


def some_blocks(chance):
    """In any order, as a disk writes them. What has grown is whole from the block on that the old one ended in."""
    def contents(old, new):
        left = bytearray(new + old[len(new):])
        for start in range(0, len(old), BLOCK):
            if start + BLOCK <= min(len(old), len(new)) and chance.random() < 0.5:
                left[start:start + BLOCK] = old[start:start + BLOCK]
        return bytes(left)
    return contents


def not_yet_cut(old, new):
    """All is written, but the end of a longer old one is still there."""
    return new + old[len(new):]


def others_text(old, new):
    """A whole file with another text."""
    entries = locale_file.changed(kind_save.ENTRIES, "key 40", 0, "somebody else's")
    return locale_file.to_bytes(entries)


def others_byte(place):
    def contents(old, new):
        mixed = bytearray(first_blocks(2)(old, new))
        mixed[place % len(mixed)] ^= 1
        return bytes(mixed)
    return contents


def cut_short(bench, kind, call, text, contents):
    kind(bench, kind_save.Save(), kind_kill.Death(call), text=text).run(contents)


def cuts(bench):
    """(name, kind of case, contents)"""
    for count in range(8):
        yield "the first %d blocks" % count, CutShort, first_blocks(count)
    for length in bench.sample(range(kind_save.LENGTH - 8000, kind_save.LENGTH + 1, 97), 8, "cuts"):
        yield "cut at %d" % length, CutShort, cut_at(length)
    for index in range(8 if bench.quick else 200):
        name = "some blocks, %d" % index
        yield name, CutShort, some_blocks(bench.chance(name))
    yield "not yet cut", CutShort, not_yet_cut
    yield "another's text", OthersWork, others_text
    for place in bench.sample(range(0, kind_save.LENGTH, 511), 6, "places"):
        yield "another's byte at %d" % place, OthersWork, others_byte(place)


def cases_of_cuts(bench):
    if injection.why_not():
        yield "saves cut short", functools.partial(injection.words, "")
        return
    kind_save.warm(bench)
    _, calls = kind_save.plain(bench, kind_save.Save())
    writes = [call for call in calls if call.name in ("pwrite64", "write") and "document.kestrum_locale" in call.what]
    if not writes:
        raise ValueError("a save does not write")
    for name, kind, contents in cuts(bench):
        for title, text in (("grown", kind_save.TYPED), ("shrunk", "")):
            yield "%s: %s" % (title, name), functools.partial(cut_short, bench, kind, writes[0], text, contents)


TABLE = [two_programs, put_off, the_same_text, not_now, discard, saved, given_up, undone, kept_to_itself, swapped,
         changed_meanwhile, lacks_the_string, broken_meanwhile, gone_and_back, old_ones]


def cases(bench):
    for case in TABLE:
        yield case.__name__.replace("_", " "), functools.partial(case, bench)
    for name in ("fifo", "folder", "loop", "zero", "full", "null", "socket"):
        yield name + " for a journal", functools.partial(odd_state, bench, kind_special.THINGS[name])
    recording = Recording(bench)
    for name, damage in damages(bench, recording):
        yield name, functools.partial(damaged, bench, recording, *damage)
    yield from cases_of_cuts(bench)
