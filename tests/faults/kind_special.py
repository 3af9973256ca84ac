"""What is no plain file, wherever a file is named: opened, imported, exported onto, saved onto. Nothing may hang."""
import functools
import os
import select
import shutil
import socket
import stat

import locale_file
import troubles
from bench import Skip
from kind_exchange import outcome
from kind_read import UNREADABLE
from locale_file import ENTRIES
from watched import Fault

ANY_REPLY = 5.0  # seconds
NOT_UPDATED = [{"kind": "MsgBox", "text": "Could not update application."}]


def device(path):
    return lambda bench, place: place.symlink_to(path)


def fifo(bench, place):
    os.mkfifo(place)


def link_to_fifo(bench, place):
    os.mkfifo(bench.folder / "pipe")
    place.symlink_to(bench.folder / "pipe")


def bound_socket(bench, place):
    """Its path has to be short, so it is bound from within the folder."""
    before = os.getcwd()
    os.chdir(place.parent)
    try:
        socket.socket(socket.AF_UNIX).bind(place.name)
    finally:
        os.chdir(before)


def folder(bench, place):
    place.mkdir()


def loop(bench, place):
    place.symlink_to(place.name)


def long_loop(bench, place):
    other = bench.folder / "other"
    other.symlink_to(place)
    place.symlink_to(other)


def leads_nowhere(bench, place):
    place.symlink_to(bench.folder / "no such folder" / "file")


def within_file(bench, place):
    """A path that leads through a plain file."""
    (bench.folder / "plain").write_bytes(b"")
    place.symlink_to(bench.folder / "plain" / "file")


def long_name(bench, place):
    place.symlink_to(bench.folder / ("n" * 300))


def enormous(bench, place):
    """A terabyte of nothing."""
    place.touch()
    try:
        os.truncate(place, 1 << 40)
    except OSError:
        raise Skip("the file system has no files of a terabyte") from None


def forbidden(bench, place):
    place.write_bytes(locale_file.to_bytes(ENTRIES))
    place.chmod(0)


def of_the_kernel(path):
    def make(bench, place):
        if not os.access(path, os.R_OK):
            raise Skip("%s cannot be read here" % path)
        place.symlink_to(path)
    return make


THINGS = {
    "fifo": fifo, "link to a fifo": link_to_fifo, "socket": bound_socket, "folder": folder, "loop": loop,
    "long loop": long_loop, "link to nowhere": leads_nowhere, "within a file": within_file, "long name": long_name,
    "enormous": enormous, "forbidden": forbidden,
    "zero": device("/dev/zero"), "full": device("/dev/full"), "null": device("/dev/null"),
    "random": device("/dev/urandom"), "terminal": device("/dev/ptmx"), "maps": device("/proc/self/maps"),
    "kernel's messages": of_the_kernel("/proc/kmsg"), "memory": device("/proc/self/mem"),
}
READ_ONLY = {"enormous", "maps", "kernel's messages", "memory"}  # nothing says that these cannot be written to


def program(bench, *files, forbid, **options):
    """The administrator may read everything: as nobody it takes part that a file is forbidden."""
    return bench.program(*files, deadline=ANY_REPLY, process=troubles.as_nobody() if forbid else {}, **options)


def identity(place):
    status = os.lstat(place)
    return status.st_ino, stat.S_IFMT(status.st_mode)


def document_of(bench, forbid):
    path = bench.folder / "document.kestrum_locale"
    path.write_bytes(locale_file.to_bytes(ENTRIES))
    path.chmod(0o666)
    return path, program(bench, path, forbid=forbid)


def whole(run, before):
    """The document, dirty or not, as it was and its window at work."""
    if run.document() != before:
        raise Fault("the document has changed: %r" % run.document())
    run.select(0)
    run.type("x")
    run.menu("EditUndo")


def opens(bench, make, forbid, at_start):
    place = bench.folder / "odd.kestrum_locale"
    make(bench, place)
    was = identity(place)
    if at_start:
        run = program(bench, forbid=forbid, start=False)
        reply = run.raw("start", files=[str(place)])
    else:
        run = program(bench, forbid=forbid)
        reply = run.raw("open", path=str(place))
    if reply["shown"] != UNREADABLE or reply.get("unhandled"):
        raise Fault("opening gave %r" % reply)
    if identity(place) != was:
        raise Fault("it is another thing now")


def imports(bench, make, forbid, name, fails="refused"):
    path, run = document_of(bench, forbid)
    place = bench.folder / name
    make(bench, place)
    before = run.document()
    run.answer_file(place)
    reply = run.raw("menu", name="FileImportExistingFile")
    if outcome(reply) != fails:
        raise Fault("importing gave %r" % reply)
    whole(run, before)


def exports(bench, make, forbid):
    path, run = document_of(bench, forbid)
    place = bench.folder / "rows.txt"
    make(bench, place)
    was = identity(place)
    before = run.document()
    run.answer_file(place)
    reply = run.raw("menu", name="ExportExportTabDelimited")
    if reply.get("unhandled") != "IOException":
        raise Fault("exporting gave %r" % reply)
    if identity(place) != was:
        raise Fault("it is another thing now")
    whole(run, before)


def exports_into(bench, make, forbid, target, inside):
    """An application, one of whose files is the odd thing."""
    path, run = document_of(bench, forbid)
    place = bench.folder / inside
    place.parent.mkdir(parents=True)
    for made in [place.parent, *place.parent.parents]:
        if bench.folder in made.parents:
            made.chmod(0o777)
    make(bench, place)
    run.answer_file(bench.folder / target)
    reply = run.raw("menu", name="ExportExporttoApplication")
    if reply["shown"][1:] != NOT_UPDATED or reply.get("unhandled"):
        raise Fault("exporting gave %r" % reply)
    run.select(0)
    run.type("x")


def saves(bench, make, forbid):
    """The document's file has become the odd thing: the save says no more than any that fails."""
    path, run = document_of(bench, forbid)
    run.select(0)
    run.type("new")
    before = run.document()["entries"]
    path.unlink()
    make(bench, path)
    was = identity(path)
    reply = run.raw("menu", name="FileSave")
    if reply["shown"] or reply.get("unhandled"):
        raise Fault("saving gave %r" % reply)
    if identity(path) != was:
        raise Fault("it is another thing now")
    if run.document()["entries"] != before:
        raise Fault("the document has changed")


def read_by_somebody(bench, name):
    """A pipe with somebody at its other end, whom a program that writes into it would tell its texts."""
    path, run = document_of(bench, False)
    place = bench.folder / "pipe"
    os.mkfifo(place)
    other = os.open(place, os.O_RDWR | os.O_NONBLOCK)
    try:
        run.answer_file(place)
        reply = run.raw("menu", name=name)
        if select.select([other], [], [], 0)[0]:
            raise Fault("it was written to: %r" % os.read(other, 100))
        if name == "ExportExportTabDelimited" and reply.get("unhandled") != "IOException":
            raise Fault("exporting gave %r" % reply)
    finally:
        os.close(other)


def vanishes(bench):
    """Files and folders that go while the program knows them."""
    path, run = document_of(bench, False)
    other = bench.folder / "folder" / "other.nvl"
    other.parent.mkdir()
    other.write_bytes(locale_file.to_bytes(ENTRIES))
    run.open(other)
    run.select(0)
    run.type("new")
    before = run.document()["entries"]
    shutil.rmtree(other.parent)
    run.menus()
    for name in ("FileSave", "LocalizationOnlyShowNonlocalizedStrings", "EditUndo", "EditRedo"):
        run.menu(name)
    run.answer_file(other)
    run.menu("FileImportExistingFile", shown=2)
    if run.document()["entries"] != before or other.exists():
        raise Fault("the document is %r" % run.document())
    if run.raw("open", path=str(other))["shown"] != UNREADABLE:
        raise Fault("a file that is gone was opened")


def cases(bench):
    for name, make in THINGS.items():
        forbid = name == "forbidden"
        yield "open " + name, functools.partial(opens, bench, make, forbid, False)
        yield "start with " + name, functools.partial(opens, bench, make, forbid, True)
        for kind in ("txt", "nvl"):
            fails = "unhandled" if (name, kind) == ("maps", "txt") else "refused"  # its rows are short
            case = functools.partial(imports, bench, make, forbid, "odd." + kind, fails)
            yield "import %s as %s" % (name, kind), case
        if name in READ_ONLY:
            continue
        yield "export onto " + name, functools.partial(exports, bench, make, forbid)
        yield "save onto " + name, functools.partial(saves, bench, make, forbid)
        for target, inside in (("A.app", "A.app/Contents/Resources/de.lproj/Localizable.strings"),
                               ("a.exe", "Resources/de.mo")):
            into = functools.partial(exports_into, bench, make, forbid, target, inside)
            yield "export into %s with %s" % (target, name), into
    for name in ("ExportExportTabDelimited", "FileImportExistingFile"):
        yield name + " of a pipe with a reader", functools.partial(read_by_somebody, bench, name)
    yield "vanishing", functools.partial(vanishes, bench)
