"""Programs with a window on a screen that nobody sees: what it takes until they rest, and to search."""
import glob
import itertools
import os
import shutil
import subprocess
import tempfile
import time
from typing import NamedTuple

STEPS = 15       # of each work
STILL = 1.0      # seconds without work after which a program rests
PAUSE = 0.15     # the same after one key
NOISE = 0.015    # seconds of CPU in that time that are a blinking cursor
PATIENCE = 120   # seconds


class Screen:
    """A virtual screen with a window manager, since windows get the keyboard only from one."""

    def __enter__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1400x900x24", "-noreset"],
                                       pass_fds=(write,), stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as answer:
            number = answer.readline().strip()
        self.home = tempfile.mkdtemp(prefix="sorbel-bench-home-")
        self.environment = dict(os.environ, DISPLAY=":" + number, HOME=self.home, XDG_RUNTIME_DIR=self.home,
                                QT_QPA_PLATFORM="xcb", LC_ALL="C.UTF-8")
        # A window that comes before the manager is ready may stay hidden.
        ready = os.path.join(self.home, "ready")
        self.manager = subprocess.Popen(["openbox", "--startup", "touch " + ready], env=self.environment,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        while not os.path.exists(ready):
            time.sleep(0.02)
        return self

    def __exit__(self, *failure):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()
        shutil.rmtree(self.home, ignore_errors=True)

    def tool(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment, capture_output=True, text=True).stdout


class Program:
    """A program on the screen with a file. CPU seconds of threads that have ended are kept."""

    def __init__(self, screen, command):
        self.screen, self.seen = screen, {}
        self.child = subprocess.Popen(["dbus-run-session", "--", *command], env=screen.environment,
                                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                      start_new_session=True)
        self.name = os.path.basename(command[0])
        self.pid = None

    def find(self):
        """The program itself, below the session bus that was started for it."""
        for path in glob.glob("/proc/[0-9]*/stat"):
            try:
                with open(path) as file:
                    text = file.read()
            except OSError:
                continue
            name, rest = text[text.index("(") + 1:text.rindex(")")], text[text.rindex(")") + 2:].split()
            if int(rest[3]) == self.child.pid and name == self.name[:15]:
                return int(path.split("/")[2])
        return None

    def cpu(self):
        self.pid = self.pid or self.find()
        for path in glob.glob("/proc/%s/task/*/schedstat" % self.pid):
            try:
                with open(path) as file:
                    self.seen[path] = int(file.read().split()[0]) / 1e9
            except OSError:
                pass
        return sum(self.seen.values())

    def rest(self):
        """Waits until the CPU time stands still, and gives what it stood at when that began."""
        end, marks = time.monotonic() + PATIENCE, []
        while time.monotonic() < end:
            marks.append((time.monotonic(), self.cpu()))
            before = next((spent for moment, spent in reversed(marks) if marks[-1][0] - moment > STILL), None)
            if before and marks[-1][1] - before < NOISE:
                return before
            time.sleep(0.02)
        raise RuntimeError("%s did not come to rest" % self.name)

    def pause(self):
        """Waits until the CPU time nearly stands still, as between two steps of a user, and gives it."""
        end, before = time.monotonic() + PATIENCE, self.cpu()
        while time.monotonic() < end:
            time.sleep(PAUSE)
            spent, before = self.cpu() - before, self.cpu()
            if spent < 0.001:
                return before
        raise RuntimeError("%s did not pause" % self.name)

    def memory(self):
        """Resident MiB."""
        with open("/proc/%d/status" % self.pid) as file:
            return next(int(line.split()[1]) for line in file if line.startswith("VmRSS")) / 1024

    def window(self):
        """Waits for a window. A program that waits for the disk seems to rest before it has one."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            self.cpu()
            if found := self.screen.tool("search", "--onlyvisible", "--pid", str(self.pid or 0)).split():
                return found[-1]
            time.sleep(0.2)  # asking disturbs the program
        raise RuntimeError("%s shows no window" % self.name)

    def focus(self):
        """The window, once it rests and has the keyboard."""
        self.window()
        self.rest()
        window = self.window()
        self.screen.tool("windowfocus", "--sync", window)
        return window

    def close(self):
        os.killpg(self.child.pid, 15)  # the session that was started for it, and nothing else
        self.child.wait()


def start(screen, command):
    """(CPU seconds until the window is filled and rests, resident MiB then)."""
    program = Program(screen, command)
    try:
        program.window()
        return program.rest(), program.memory()
    finally:
        program.close()


def search(screen, command, place, term):
    """(CPU seconds for each key,): types a term in a search field, at a place of the window or where the focus is
    already. The first key is not counted, since a program may prepare itself then."""
    program = Program(screen, command)
    try:
        window = program.focus()
        if place:
            screen.tool("mousemove", "--window", window, *map(str, place), "click", "1")
        screen.tool("type", term[0])
        before = program.rest()
        screen.tool("type", "--delay", "300", term[1:])
        after = program.rest()
        return ((after - before) / len(term[1:]),)
    finally:
        program.close()


class Work(NamedTuple):
    """What a user does again and again. Each action is a call of xdotool; "{window}" among its words is
    the program's."""
    prepare: list   # actions that are not counted
    steps: list     # of actions; they take turns, and each is counted
    after: list = []  # actions after each step that are not counted


def do(screen, command, works):
    """{work: [CPU seconds of each step, painting included]} of one program that does them one after the other."""
    program = Program(screen, command)
    try:
        window = program.focus()

        def act(actions):
            for action in actions:
                screen.tool(*(word.replace("{window}", window) for word in action))
        spent = {}
        for name, work in works.items():
            act(work.prepare)
            program.rest()
            spent[name] = []
            for step in itertools.islice(itertools.cycle(work.steps), STEPS):
                before = program.pause()
                act([step])
                spent[name].append(program.pause() - before)
                act(work.after)
        return spent
    finally:
        program.close()
