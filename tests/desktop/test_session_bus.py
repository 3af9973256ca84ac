#!/usr/bin/env python3
"""The program on a session bus of its own: one program per session. SORBEL names the executable."""
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from screen import PATIENCE, Screen, wait_for  # noqa: E402

PROGRAM = os.environ["SORBEL"]
WELCOME = "Welcome to Sorbel"
FIRST, SECOND, THIRD = "first one.kestrum_locale", "zweite%20ä.kestrum_locale", "third.nvl"


class SessionBus(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        self.files = self.screen.home / "files"
        self.files.mkdir()
        for name in (FIRST, SECOND, THIRD):
            shutil.copy(ROOT / "samples" / "Notizbuch.kestrum_locale", self.files / name)

    def start_bus(self):
        """A bus that knows how to start the program."""
        services = self.screen.home / "data" / "dbus-1" / "services"
        services.mkdir(parents=True)
        (services / "org.sorbel.Sorbel.service").write_text(
            "[D-BUS Service]\nName=org.sorbel.Sorbel\nExec=%s\n" % PROGRAM)
        bus = self.screen.start("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE,
                                text=True, env={**self.screen.env, "XDG_DATA_HOME": self.screen.home / "data"})
        self.addCleanup(bus.stdout.close)
        self.screen.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def start(self, *files):
        """A program that stays, with its files named as seen from their folder."""
        return self.screen.start(PROGRAM, *files, cwd=self.files)

    def start_again(self, *files):
        """A start that gives its files to the program that runs."""
        subprocess.run([PROGRAM, *files], env=self.screen.env, cwd=self.files, check=True, timeout=PATIENCE)

    def call(self, method, *arguments, error=""):
        """Asks for something in the way of the desktop; `error`: what the answer must then say.

        Types that a value does not tell are written out: gdbus asks the program for them, but not for long."""
        answer = subprocess.run(
            ["gdbus", "call", "--session", "--dest", "org.sorbel.Sorbel", "--object-path", "/org/sorbel/Sorbel",
             "--method", "org.freedesktop.Application." + method, *arguments, "@a{sv} {}"],
            env=self.screen.env, capture_output=True, text=True, timeout=PATIENCE)
        self.assertEqual(answer.returncode == 0, not error, answer.stderr)
        self.assertIn(error, answer.stderr)

    def watch_bus(self):
        """From now on `wait_for_requests` sees what is asked for on the bus."""
        self.seen = self.screen.home / "requests"
        with self.seen.open("wb") as out:
            self.screen.start("dbus-monitor", "--session", "interface='org.freedesktop.Application'", stdout=out)
        wait_for("the monitor", lambda: "NameLost" in self.seen.read_text())

    def wait_for_requests(self, count):
        wait_for("requests", lambda: self.seen.read_text().count("member=Open") == count)

    def stopped(self, title):
        """A program with one document that gets no turn."""
        program = self.start(title)
        self.screen.wait_for_windows(title)
        program.send_signal(signal.SIGSTOP)
        self.addCleanup(program.kill)
        return program

    def close(self, title):
        self.screen.activate(title)
        self.screen.key("ctrl+w")

    def test_later_starts_reach_the_first(self):
        self.start_bus()
        running = self.start(FIRST)
        self.screen.wait_for_windows(FIRST)
        self.start_again(SECOND)
        self.screen.wait_for_windows(FIRST, SECOND)
        self.screen.activate(FIRST)
        self.start_again()
        self.screen.wait_for_windows(FIRST, SECOND)
        self.start_again(FIRST, SECOND)
        wait_for("two more windows", lambda: len(self.screen.xdotool(
            "search", "--onlyvisible", "--name", "kestrum_locale").split()) == 4)
        self.assertIsNone(running.poll())

    def test_requests_find_a_program_without_windows(self):
        self.start_bus()
        running = self.start(FIRST)
        self.screen.wait_for_windows(FIRST)
        self.close(FIRST)
        self.screen.wait_for_windows()
        self.call("Activate")
        self.screen.wait_for_windows(WELCOME)
        self.call("Open", str([(self.files / SECOND).as_uri()]))
        self.screen.wait_for_windows(SECOND)
        self.call("ActivateAction", "none", "@av []", error="InvalidArgs")
        self.call("Open", "['sftp://example.org/a.nvl']")
        wait_for("the message", lambda: len(self.screen.windows()) == 2)
        self.screen.key("Return")
        self.screen.wait_for_windows(SECOND)
        self.screen.activate(SECOND)
        self.screen.key("ctrl+q")
        self.assertEqual(running.wait(PATIENCE), 0)

    def test_the_bus_starts_it_for_a_request(self):
        self.start_bus()
        self.call("Open", str([(self.files / FIRST).as_uri()]))
        self.screen.wait_for_windows(FIRST)

    def test_a_later_start_waits_for_a_program_that_gets_no_turn(self):
        self.start_bus()
        self.watch_bus()
        running = self.stopped(FIRST)
        later = self.start(SECOND)
        self.wait_for_requests(1)
        self.assertIsNone(later.poll())
        running.send_signal(signal.SIGCONT)
        self.assertEqual(later.wait(PATIENCE), 0)
        self.screen.wait_for_windows(FIRST, SECOND)
        self.wait_for_requests(1)

    def test_a_start_that_waits_takes_the_place_of_a_program_that_dies(self):
        self.start_bus()
        self.watch_bus()
        running = self.stopped(FIRST)
        waiting = [self.start(SECOND), self.start(THIRD)]
        self.wait_for_requests(2)
        running.kill()
        self.screen.wait_for_windows(SECOND, THIRD)
        wait_for("one program", lambda: [start.poll() for start in waiting] in ([0, None], [None, 0]))
        self.start_again(FIRST)
        self.screen.wait_for_windows(FIRST, SECOND, THIRD)

    def test_names_that_are_no_text(self):
        paths = [self.files / os.fsdecode(b"%d\xff.nvl" % number) for number in range(3)]
        for path in paths:
            shutil.copy(self.files / FIRST, path)
        titles = ["%d\ufffd.nvl" % number for number in range(3)]
        self.start_bus()
        self.start(paths[0].name)
        self.screen.wait_for_windows(titles[0])
        self.start_again(paths[1].name)
        self.screen.wait_for_windows(*titles[:2])
        self.call("Open", str([paths[2].as_uri()]))
        self.screen.wait_for_windows(*titles)

    def test_the_signal_of_the_file_size_limit_does_not_end_it(self):
        running = self.start(FIRST)
        self.screen.wait_for_windows(FIRST)
        running.send_signal(signal.SIGXFSZ)
        self.close(FIRST)
        self.assertEqual(running.wait(PATIENCE), 0)

    def test_without_a_bus_each_start_is_its_own(self):
        programs = [self.start(FIRST), self.start(SECOND)]
        self.screen.wait_for_windows(FIRST, SECOND)
        for program, title in zip(programs, (FIRST, SECOND)):
            self.close(title)
            self.assertEqual(program.wait(PATIENCE), 0)


if __name__ == "__main__":
    unittest.main()
