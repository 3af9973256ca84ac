"""What can be wrong around a save: calls that fail, disks that are full or read-only, limits, folders that go."""
import functools
import os
import resource
import subprocess

import injection
from bench import Skip

DISK = 1 << 20  # bytes of the small disk
PAGE = 4096
NOBODY = 65534


@functools.cache
def as_nobody():
    """Arguments of Popen for a program that may not do all that an administrator may."""
    if os.getuid() != 0:
        return {}
    nobody = {"user": NOBODY, "group": NOBODY, "extra_groups": []}
    try:
        subprocess.run([os.environ["SORBEL_HEADLESS"]], stdin=subprocess.DEVNULL, check=True, **nobody)
    except (OSError, subprocess.SubprocessError):
        raise Skip("the program cannot be run as nobody") from None
    return nobody


class Trouble:
    """`case` has the folders `place` and `state`, the file `path` and the `program`."""
    early = False  # strikes before anything is typed, not only before the operation

    def prepare(self, case):
        """Before the program starts."""

    def before(self, case):
        return []

    def process(self):
        return {}

    def strike(self, case):
        """Right before the operation."""

    def relieve(self, case):
        """Before the next run."""

    def struck(self, case):
        return True


class Injected(Trouble):
    def __init__(self, *what):
        self.what = what

    def log(self, case):
        return case.bench.folder / "log"

    def before(self, case):
        return injection.words(self.log(case), *self.what)

    def process(self):
        return injection.process()

    def struck(self, case):
        return not self.what or injection.was_injected(self.log(case))


class SizeLimit(Trouble):
    """No file may become longer than so many bytes."""

    def __init__(self, size, early=False):
        self.size = size
        self.early = early

    def strike(self, case):
        number = case.program.number()
        _, hard = resource.prlimit(number, resource.RLIMIT_FSIZE)
        resource.prlimit(number, resource.RLIMIT_FSIZE, (self.size, hard))


class SmallDisk(Trouble):
    """`where`: "place", "state" or both are on a disk of their own."""

    def __init__(self, where, early=False):
        self.where = where
        self.early = early

    def prepare(self, case):
        self.disk = case.bench.folder / "disk"
        self.disk.mkdir()
        options = "size=%d,mode=777" % DISK
        if os.getuid() != 0 or not run("mount", "-t", "tmpfs", "-o", options, "tmpfs", self.disk):
            raise Skip("no small disk can be mounted here")
        case.bench.cleanup.callback(run, "umount", "-l", self.disk)
        for name in self.where:
            setattr(case, name, self.disk / name)


class FullDisk(SmallDisk):
    def __init__(self, where, left, early=False):
        super().__init__(where, early)
        self.left = left

    def strike(self, case):
        status = os.statvfs(self.disk)
        size = status.f_bavail * status.f_frsize - self.left
        with open(self.disk / "filler", "wb") as filler:
            filler.write(bytes(max(0, size)))

    def relieve(self, case):
        os.unlink(self.disk / "filler")


class ReadOnlyDisk(SmallDisk):
    def strike(self, case):
        if not run("mount", "-o", "remount,ro", self.disk):  # refused while a file is open for writing
            raise Skip("a disk with an open file does not become read-only")

    def relieve(self, case):
        run("mount", "-o", "remount,rw", self.disk)


class Removed(Trouble):
    """The folder goes, and comes back before the next run."""

    def __init__(self, name):
        self.name = name

    def strike(self, case):
        self.folder = getattr(case, self.name)
        self.away = self.folder.with_name("away")
        if self.folder.exists():
            self.folder.rename(self.away)

    def relieve(self, case):
        if self.away.exists():
            if self.folder.exists():
                self.folder.rename(self.folder.with_name("meanwhile"))
            self.away.rename(self.folder)


class Forbidden(Trouble):
    """A file or folder becomes read-only; as the administrator may write all the same, the program is nobody's."""

    def __init__(self, name, mode, early=False):
        self.name = name
        self.mode = mode
        self.early = early

    def prepare(self, case):
        nobody = as_nobody()
        for folder in (case.place, case.state):
            folder.mkdir(mode=0o700)
            if nobody:
                os.chown(folder, NOBODY, NOBODY)

    def process(self):
        return as_nobody()

    def strike(self, case):
        target = getattr(case, self.name)
        self.was = target.stat().st_mode & 0o7777
        target.chmod(self.mode)

    def relieve(self, case):
        getattr(case, self.name).chmod(self.was)


def run(*command):
    """Whether it is here and succeeds."""
    try:
        return subprocess.run([str(word) for word in command], capture_output=True).returncode == 0
    except FileNotFoundError:
        return False
