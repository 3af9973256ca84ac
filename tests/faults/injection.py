"""Lets system calls fail, or the program die at one, by strace: the calls of one operation, each in turn."""
import dataclasses
import functools
import os
import re
import shutil
import subprocess

from bench import Skip

TRACED = ["strace", "-f", "-y", "-qq", "-s", "8", "-e", "trace=%file,%desc", "-e", "signal=none"]
LINE = re.compile(r"(\d+)\s+(\w+)\((.*)")
ENVIRONMENT = {"ASAN_OPTIONS": "detect_leaks=0"}  # the search for leaks traces the program itself

ERRORS = {
    "openat": ["EACCES", "EMFILE", "ENOSPC", "EROFS", "EIO", "EINTR"],
    "write": ["ENOSPC", "EIO", "EDQUOT", "EFBIG", "EINTR"],
    "pwrite64": ["ENOSPC", "EIO", "EDQUOT", "EFBIG", "EINTR"],
    "fallocate": ["ENOSPC", "EDQUOT", "EFBIG", "EIO", "EOPNOTSUPP", "EINTR"],
    "ftruncate": ["EIO", "ENOSPC", "EINTR"],
    "fsync": ["EIO", "ENOSPC", "EDQUOT", "EINTR"],
    "fdatasync": ["EIO", "ENOSPC", "EDQUOT", "EINTR"],
    "close": ["EIO", "ENOSPC", "EDQUOT", "EINTR"],
    "flock": ["ENOLCK", "EINTR"],
    "read": ["EIO", "EINTR"],
    "pread64": ["EIO", "EINTR"],
    "mkdir": ["EACCES", "ENOSPC"],
    "unlink": ["EACCES", "EIO"],
    "rename": ["EACCES", "EIO", "ENOSPC"],
}
OTHERS = ["EIO"]
LASTING = ["openat", "pwrite64", "fallocate", "ftruncate", "fsync", "fdatasync"]  # not write: replies go through it


@dataclasses.dataclass(frozen=True)
class Call:
    """The `number`-th call of that name in the life of the process."""
    name: str
    number: int
    what: str


@functools.cache
def why_not():
    """Why nothing can be injected here; empty if it can."""
    if not shutil.which("strace"):
        return "strace is not installed"
    tried = subprocess.run(["strace", "-qq", "-o", "/dev/null", "true"], capture_output=True)
    return "" if tried.returncode == 0 else "strace is not allowed to trace here"


def words(log, *injected):
    """What stands in front of the command."""
    if why_not():
        raise Skip(why_not())
    return [*TRACED, "-o", str(log), *(word for one in injected for word in ("-e", "inject=" + one))]


def process():
    return {"env": {**os.environ, **ENVIRONMENT}}


def calls_of(log, reply):
    """The calls between two replies: of the operation whose reply is that one, counted from 0."""
    main, seen, replies, calls = None, {}, 0, []
    for line in log.read_text("utf-8", "replace").splitlines():
        found = LINE.match(line)
        if not found or main not in (None, found[1]):
            continue
        main, name, rest = found.groups()
        seen[name] = seen.get(name, 0) + 1
        if name == "write" and rest.startswith("1<"):
            replies += 1
        elif replies == reply and name != "mmap" and not rest.startswith(("0<", "2<")):
            calls.append(Call(name, seen[name], rest[:200]))
    return calls


def was_injected(log):
    return "(INJECTED)" in log.read_text("utf-8", "replace")
