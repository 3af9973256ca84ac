"""A run of the program under a watch: each reply has a deadline, the memory a limit, and every end is told of."""
import os
import pathlib
import select
import signal
import subprocess
import sys
import time

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))
import driver  # noqa: E402

DEADLINE = 20.0  # seconds for one operation; everything here takes milliseconds unless it hangs
MEMORY = 512  # MiB
SANITIZED = 1 << 30  # KiB of address space: only the shadow memory of a sanitizer takes so much


class Fault(AssertionError):
    """Something that the program must not do."""


class Replies:
    """The program's standard output, read with a deadline and an eye on the memory."""

    def __init__(self, program, stream):
        self.program = program
        self.stream = stream
        self.waiting = b""

    def readline(self):
        limit = time.monotonic() + self.program.deadline
        while b"\n" not in self.waiting:
            if not self.more(limit):
                break
        line, newline, self.waiting = self.waiting.partition(b"\n")
        return line + newline

    def more(self, limit):
        """False at the end of the output."""
        while not select.select([self.stream], [], [], 0.05)[0]:
            self.program.watch_memory()
            if time.monotonic() > limit:
                raise Fault("no reply within %g s" % self.program.deadline)
        part = os.read(self.stream.fileno(), 1 << 20)
        self.waiting += part
        return part != b""

    def read(self):
        limit = time.monotonic() + self.program.deadline
        while self.more(limit):
            pass
        return self.waiting

    def close(self):
        self.stream.close()


class Watched(driver.Program):
    """`state`: the state folder; `before`: words in front of the command; `process`: further arguments of Popen."""

    def __init__(self, *files, state=None, before=(), deadline=DEADLINE, process=None, arguments=(), **options):
        self.before = list(before)
        self.deadline = deadline
        self.options = process or {}
        self.slowest = self.peak = self.replies = 0
        self.notices = []  # of the whole run
        if state is not None:
            arguments = [*arguments, "--state", os.fspath(state)]
        super().__init__(*files, arguments=arguments, **options)

    def launch(self, command):
        process = subprocess.Popen(self.before + command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, start_new_session=True, **self.options)
        process.stdout = Replies(self, process.stdout)
        return process

    def line(self, data):
        begun = time.monotonic()
        try:
            reply = super().line(data)
            self.replies += 1
            self.notices += reply["notices"]
            return reply
        except BrokenPipeError:
            status = self.process.wait()
            raise Fault("the program has ended before %r, exit status %s" % (data[:100], status)) from None
        finally:
            self.slowest = max(self.slowest, 1000 * (time.monotonic() - begun))

    def number(self):
        """The process of the program itself, which a tool in front of it may have started."""
        number = self.process.pid
        while self.before:
            children = pathlib.Path("/proc/%d/task/%d/children" % (number, number)).read_text().split()
            if not children:
                break
            number = int(children[0])
        return number

    def memory(self, field="VmRSS"):
        """MiB of memory held; 0 when the program is gone."""
        try:
            lines = pathlib.Path("/proc/%d/status" % self.number()).read_text().splitlines()
        except OSError:
            return 0
        sizes = {name: int(rest.split()[0]) for name, _, rest in (line.partition(":") for line in lines)
                 if name.startswith("Vm")}
        return 0 if sizes.get("VmSize", 0) > SANITIZED else sizes.get(field, 0) / 1024

    def watch_memory(self):
        size = self.memory()
        if size > MEMORY:
            raise Fault("the program holds %d MiB" % size)

    def alive(self):
        return self.process.poll() is None

    def take_peak(self):
        self.peak = max(self.peak, self.memory("VmHWM"))
        if self.peak > MEMORY:
            raise Fault("the program held %d MiB" % self.peak)

    def end(self):
        if self.alive():
            self.take_peak()
        super().end()

    def kill(self):
        """Ends it as a power cut would, with whatever stands in front of it."""
        self.peak = max(self.peak, self.memory("VmHWM"))
        try:
            os.kill(self.number(), signal.SIGKILL)
        except (OSError, ProcessLookupError):
            pass
        self.drop()

    def drop(self):
        """The end of a run that need not end well."""
        if self.alive():
            try:
                os.killpg(self.process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        self.process.wait(self.deadline)
        for stream in (self.process.stdin, self.process.stdout):
            try:
                stream.close()
            except BrokenPipeError:
                pass
