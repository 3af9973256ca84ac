"""Runs the cases of one kind of faults and counts what became of them."""
import collections
import contextlib
import dataclasses
import os
import pathlib
import random
import shutil
import tempfile
import traceback

from watched import Watched


class Skip(Exception):
    """A case that this machine cannot carry out, and why."""


@dataclasses.dataclass
class Row:
    kind: str
    cases: int = 0
    kept: int = 0
    slowest: float = 0  # ms, of the operations
    peak: float = 0  # MiB, of the processes
    failures: list = dataclasses.field(default_factory=list)  # (name of the case, what was wrong)
    skips: collections.Counter = dataclasses.field(default_factory=collections.Counter)
    notes: list = dataclasses.field(default_factory=list)

    @property
    def lost(self):
        return len(self.failures)


class Bench:
    """What a case works with: a folder that is empty at its start, programs that end with it, and chance."""

    def __init__(self, kind, quick, seed, only=None):
        self.row = Row(kind)
        self.quick = quick
        self.seed = seed
        self.only = only
        self.programs = []
        self.standing = None
        self.cleanup = contextlib.ExitStack()  # of the case, after its programs have ended
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="sorbel-faults-"))
        self.folder = self.root / "case"
        self.state = self.folder / "state"
        self.documents = self.root / "documents"
        for folder in (self.root, self.documents):
            folder.mkdir(exist_ok=True)
            folder.chmod(0o777)  # some run the program as nobody

    def chance(self, name):
        """Random numbers that depend on the seed and the name alone, so that one case can be repeated."""
        return random.Random("%d %s" % (self.seed, name))

    def sample(self, population, count, name):
        """All in the full form, `count` of them in the quick one."""
        population = list(population)
        if not self.quick or len(population) <= count:
            return population
        return [population[index] for index in sorted(self.chance(name).sample(range(len(population)), count))]

    def program(self, *files, start=True, **options):
        """`options`: those of Watched."""
        program = self.launch(self.folder, **options)
        self.programs.append(program)
        if start:
            program.start(files)
        return program

    def launch(self, folder, state=None, arguments=(), **options):
        arguments = ["--documents", str(self.documents), *arguments]
        return Watched(start=False, arguments=arguments, state=state or folder / "state", **options)

    def shared(self):
        """A program for cases that leave it without a window; a new one after a fault."""
        if self.standing is None or not self.standing.alive():
            self.standing = self.launch(self.root)
            self.standing.start()
        return self.standing

    def run(self, cases):
        try:
            for name, case in cases:
                if self.only is None or name == self.only:
                    self.run_case(name, case)
        except Exception as failure:  # in what the cases need in common
            self.row.failures.append(("before any case", describe(failure)))
            self.clear()
        if self.standing:
            self.note(self.standing)
            self.standing.drop()
        shutil.rmtree(self.root, ignore_errors=True)
        return self.row

    def run_case(self, name, case):
        self.folder.mkdir()
        self.folder.chmod(0o777)
        try:
            case()
            for program in self.programs:
                if program.alive():
                    program.end()
            self.row.cases += 1
            self.row.kept += 1
        except Skip as reason:
            self.row.skips[str(reason)] += 1
        except Exception as failure:  # whatever is wrong must not keep the others from being run
            self.row.cases += 1
            self.row.failures.append((name, describe(failure)))
            self.forget_standing()
        finally:
            self.clear()

    def forget_standing(self):
        if self.standing:
            self.note(self.standing)
            self.standing.drop()
            self.standing = None
            shutil.rmtree(self.root / "state", ignore_errors=True)

    def clear(self):
        for program in self.programs:
            self.note(program)
            program.drop()
        self.programs.clear()
        self.cleanup.close()
        if self.folder.exists():
            remove(self.folder)

    def note(self, program):
        if program.alive():
            with contextlib.suppress(AssertionError):
                program.take_peak()
        self.row.slowest = max(self.row.slowest, program.slowest)
        self.row.peak = max(self.row.peak, program.peak)


def describe(failure):
    text = "%s: %s" % (type(failure).__name__, failure)
    place = traceback.extract_tb(failure.__traceback__)
    ours = [frame for frame in place if os.sep + "faults" + os.sep in frame.filename] or place
    return "%s (%s)" % (text[:600], " < ".join("%s:%d" % (os.path.basename(frame.filename), frame.lineno)
                                               for frame in reversed(ours[-3:])))


def remove(folder):
    """Everything in it too that a case has made unwritable."""
    for place, folders, _ in os.walk(folder):
        os.chmod(place, 0o700)
        for name in folders:
            if not os.path.islink(os.path.join(place, name)):
                os.chmod(os.path.join(place, name), 0o700)
    shutil.rmtree(folder)
