"""Damaged files are imported: the texts are those that a second reader sees, and undo gives the old ones back."""
import functools

import locale_file
import locale_reader
import model
from kind_read import hostile_lengths, mutants
from watched import Fault

ENTRIES = [["greeting", [[0, "Hello", "Hallo"], [1, "Hello, Mac", ""]]],
           ["leave", [[1, "Quit", "Weg"], [2, "Exit", ""]]],
           ["blank", [[0, "", ""]]]]
NEWER = locale_file.to_bytes([["greeting", [[0, "Hello!", "Grüße"], [3, "", "Linux"]]],
                              ["leave", [[1, "Quit", ""]]], ["gone", [[0, "x", "y"]]]],
                             history=[("2000-01-01 00:00:00", ENTRIES)])
ROWS = ("greeting\tAny\tHello\tGrüße\\n\\t\"\nleave\tLinux\t\tEnde, \\\\\r\n"
        "blank\tWindows\tx\t\nnone\tAny\tx\ty\n").encode()
COMMAS = b"greeting,Any,Hello,\tGo\nleave,Mac OS,,Gone\n"
DATE = "2000-02-03 04:05:06"


def expected_of(document, data, name):
    """What the import must come to: "done", "question", "refused" or "unhandled"."""
    is_text = name.endswith(".txt")
    if is_text and any(line.count(b"\t") < 3 for line in rows_checked(data)):
        return "unhandled"
    try:
        locale = None if is_text else locale_reader.parse(data)
    except locale_reader.WrongDate:
        return "unhandled"
    except locale_reader.Refused:
        locale = None
    if locale and locale.language.lower() != document.language.lower():
        return "question"
    if locale:
        document.import_locale(locale)
        return "done"
    return "done" if document.import_text(data) else "refused"


def rows_checked(data):
    lines = model.lines_of(data)
    return lines if lines != [b""] or data.removeprefix(b"\xef\xbb\xbf") else []


def outcome(reply):
    if not reply["ok"]:
        raise Fault("importing gave %r" % reply)
    if reply.get("unhandled"):
        return "unhandled"
    shown = [dialog["kind"] for dialog in reply["shown"][1:]]
    return {(): "done", ("MessageDialog",): "question", ("MsgBox",): "refused"}.get(tuple(shown), shown)


def imports(bench, data, name):
    path = bench.folder / "document.kestrum_locale"
    path.write_bytes(locale_file.to_bytes(ENTRIES, date=DATE))
    other = bench.folder / name
    other.write_bytes(data)
    document = model.Document(ENTRIES, date=DATE)
    program = bench.shared()
    program.open(path)
    program.answer_file(other)
    seen = outcome(program.raw("menu", name="FileImportExistingFile"))
    expected = expected_of(document, data, name)
    if seen != expected:
        raise Fault("it was %s, not %s" % (seen, expected))
    model.compare(program.document(), document.told(), "the import")
    for command, step in (("EditUndo", document.undo), ("EditRedo", document.redo), ("EditUndo", document.undo)):
        program.menu(command)
        step()
        model.compare(program.document(), document.told(), command)
    texts_are_back(program.document()["entries"])
    if path.read_bytes() != locale_file.to_bytes(ENTRIES, date=DATE):
        raise Fault("the document's file has changed")
    program.menu("EditRedo")
    document.redo()
    program.menu("FileSave")
    program.close()
    if path.read_bytes() != document.file():
        raise Fault("a wrong file was saved")


def texts_are_back(entries):
    """An entry that an import has added stays, without a translation."""
    before = {(identifier, values[0]): values[2] for identifier, platforms in ENTRIES for values in platforms}
    for identifier, platforms in entries:
        for platform, _, translated in platforms:
            if translated != before.get((identifier, platform), ""):
                raise Fault("undo left %r in %s on %d" % (translated, identifier, platform))


def exports(bench, entries):
    """What goes out comes back: other texts meanwhile, then the import of the export."""
    path = bench.folder / "document.kestrum_locale"
    path.write_bytes(locale_file.to_bytes(entries, date=DATE))
    out = bench.folder / "rows.tsv"
    program = bench.program(path)
    program.answer_file(out)
    program.menu("ExportExportTabDelimited", shown=1)
    if out.read_bytes() != model.to_text(entries):
        raise Fault("%r was exported" % out.read_bytes()[:400])
    for row in range(program.rows()["total"]):
        program.select(row)
        program.type("other")
    program.answer_file(out)
    program.menu("FileImportExistingFile", shown=1)
    mine = {(identifier, values[0]): values[2] for identifier, platforms in program.document()["entries"]
            for values in platforms}
    for identifier, platforms in entries:
        for platform, _, translated in platforms:
            if mine[identifier, platform] != translated:
                raise Fault("%s on %d came back as %r" % (identifier, platform, mine[identifier, platform]))


def random_entries(chance):
    def text():
        return "".join(chance.choice("ab \\\"\t\r\n,üß𝄞\udcff\u2028n") for _ in range(chance.randrange(12)))
    return [["k%d" % index, [[platform, text(), text()] for platform in sorted(chance.sample(range(4), 2))]]
            for index in range(5)]


def cases(bench):
    exported = model.to_text(ENTRIES)
    for kind, data, name, count in (("locale", NEWER, "a.nvl", 700), ("rows", ROWS, "a.csv", 400),
                                    ("checked rows", ROWS, "a.txt", 200), ("commas", COMMAS, "a.csv", 200),
                                    ("exported", exported, "a.csv", 200)):
        yield kind, functools.partial(imports, bench, data, name)
        yield "mark and " + kind, functools.partial(imports, bench, b"\xef\xbb\xbf" + data, name)
        for mutant, damaged in bench.sample(mutants(data), count, kind):
            yield "%s, %s" % (kind, mutant), functools.partial(imports, bench, damaged, name)
    for mutant, damaged in bench.sample(hostile_lengths(NEWER), 200, "lengths"):
        yield "locale, " + mutant, functools.partial(imports, bench, damaged, "a.nvl")
    for index in range(20 if bench.quick else 300):
        name = "there and back %d" % index
        yield name, functools.partial(exports, bench, random_entries(bench.chance(name)))
