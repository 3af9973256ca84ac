"""Drives the program through sorbel-headless: one method for each operation, each of which must succeed.

The environment variable SORBEL_HEADLESS names the executable.
"""
import json
import os
import pathlib
import subprocess
import tempfile
import unittest

import locale_file


class Program:
    """One run. A dialog or an unhandled failure that the caller did not announce is an error."""

    def __init__(self, *files, arguments=(), start=True):
        command = [os.environ["SORBEL_HEADLESS"], "--locale", "en_US", "--now", "2026-01-31 12:00:00", *arguments]
        self.process = self.launch(command)
        if start:
            self.start(files)

    def launch(self, command):
        return subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def line(self, data):
        """The reply to one line of bytes, whatever it holds."""
        self.process.stdin.write(data + b"\n")
        self.process.stdin.flush()
        reply = self.process.stdout.readline()
        if not reply.endswith(b"\n"):
            raise AssertionError("no reply to %r; exit status %s" % (data[:200], self.process.wait()))
        reply = json.loads(reply.decode("utf-8"))
        missing = {"ok", "shown", "launched", "beeps", "notices"} - reply.keys()
        if missing:
            raise AssertionError("reply without %s: %r" % (missing, reply))
        return reply

    def raw(self, op, **fields):
        return self.line(json.dumps({"op": op, **fields}).encode("ascii"))

    def call(self, op, shown=0, unhandled=None, **fields):
        """`shown`: how many dialogs it raises; `unhandled`: the failure that it ends in."""
        reply = self.raw(op, **fields)
        if not reply["ok"] or len(reply["shown"]) != shown or reply.get("unhandled") != unhandled:
            raise AssertionError("%s %r: %r" % (op, fields, reply))
        return reply

    def error(self, op, **fields):
        """The text of the error that the operation must give."""
        reply = self.raw(op, **fields)
        if reply["ok"]:
            raise AssertionError("%s %r was carried out: %r" % (op, fields, reply))
        return reply["error"]

    # --- Application ---
    def start(self, files=()): return self.call("start", files=[os.fspath(f) for f in files])
    def open(self, path, shown=0): return self.call("open", shown, path=os.fspath(path))
    def reopen(self): return self.call("reopen")["handled"]
    def appearance(self): return self.call("appearance")
    def quit(self, shown=0): return self.call("quit", shown)["ended"]
    def windows(self): return self.call("windows")["windows"]
    def activate(self, index): return self.call("activate", index=index)
    def close(self, shown=0): return self.call("close", shown)
    def press(self, control, shown=0): return self.call("press", shown, control=control)
    def key(self, text): return self.call("key", text=text)
    def panes(self): return self.call("panes")["controls"]
    def menus(self): return self.call("menus")["menus"]
    def menu(self, name, shown=0): return self.call("menu", shown, name=name)
    def tick(self, n): return self.call("tick", n=n)["ticks"]
    def answer(self, button): return self.call("answer", button=button)["queued"]
    def answer_file(self, path): return self.call("answer", file=path and os.fspath(path))["queued"]

    # --- Document window ---
    def rows(self, **bounds): return self.call("rows", **bounds)
    def paint(self, **bounds): return self.call("paint", **bounds)
    def click(self, row): return self.call("click", row=row)
    def select(self, row): return self.call("select", row=row)
    def expand(self, row): return self.call("expand", row=row)
    def collapse(self, row): return self.call("collapse", row=row)
    def scroll(self, row): return self.call("scroll", row=row)
    def type(self, text): return self.call("type", text=text)["enabled"]
    def search(self, text): return self.call("search", text=text)
    def scope(self, item): return self.call("scope", item=item)
    def versions(self): return self.call("versions")
    def version(self, index): return self.call("version", index=index)
    def drag(self, control, dx, dy): return self.call("drag", control=control, dx=dx, dy=dy)
    def resize(self, width, height): return self.call("resize", width=width, height=height)
    def accelerator(self, control): return self.call("accelerator", control=control)
    def run(self, source, shown=0): return self.call("run", shown, source=source)
    def document(self): return self.call("document")

    # --- What tests ask often ---
    def item(self, name):
        """The menu item of that name as it is on screen, or None."""
        waiting = self.menus()
        while waiting:
            item = waiting.pop()
            if item["name"] == name:
                return item
            waiting += item["items"]
        return None

    def enabled(self, *names):
        return [self.item(name)["enabled"] for name in names]

    def identifiers(self):
        return [row["identifier"] for row in self.rows()["rows"]]

    def end(self):
        """Ends the input and waits; the program must end well."""
        self.process.stdin.close()
        rest = self.process.stdout.read()
        self.process.stdout.close()
        if self.process.wait(60) or rest:
            raise AssertionError("exit status %d, left over: %r" % (self.process.returncode, rest))


class Case(unittest.TestCase):
    """A test with a folder of its own and programs that end with it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def program(self, *files, **options):
        program = Program(*files, **options)
        self.addCleanup(program.end)
        return program

    def write(self, name="strings.kestrum_locale", entries=locale_file.ENTRIES, **fields):
        path = self.folder / name
        path.write_bytes(locale_file.to_bytes(entries, **fields))
        return path
