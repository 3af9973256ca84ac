#!/usr/bin/env python3
"""How the program is started: by words, by its desktop file from any prefix, and where there is no display.

SORBEL names the executable, SORBEL_BUILD the build folder that is installed."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from screen import PATIENCE, Screen, wait_for  # noqa: E402

PROGRAM = os.environ["SORBEL"]
SAMPLE = ROOT / "samples" / "Notizbuch.kestrum_locale"
NO_DISPLAY = {"PATH": os.environ["PATH"], "HOME": "/nonexistent", "DBUS_SESSION_BUS_ADDRESS": "disabled:"}


def run(*words, program=PROGRAM, stdout=subprocess.PIPE, **env):
    return subprocess.run([program, *words], env={**NO_DISPLAY, **env}, stdin=subprocess.DEVNULL, stdout=stdout,
                          stderr=subprocess.PIPE, text=True, timeout=PATIENCE)


class Words(unittest.TestCase):
    def test_questions_need_no_display(self):
        for words, begin in ((["--version"], "sorbel "), (["a", "--help"], "Usage: sorbel ")):
            answer = run(*words)
            self.assertEqual((answer.returncode, answer.stderr, answer.stdout[:len(begin)]), (0, "", begin))
            with open("/dev/full", "w") as full:
                self.assertEqual(run(*words, stdout=full).returncode, 1)

    def test_without_a_display_it_ends_with_a_line(self):
        for env in ({}, {"DISPLAY": ":987"}, {"WAYLAND_DISPLAY": "none-there"}, {"QT_QPA_PLATFORM": "xcb"},
                    {"QT_QPA_PLATFORM": "nonsense"}):
            ended = run(str(SAMPLE), **env)
            self.assertEqual((ended.returncode, ended.stdout), (1, ""), env)
            self.assertRegex(ended.stderr, r"\Asorbel: No window can be shown: [^\n]+\n\Z", env)


class Started(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)

    def copy(self, name):
        path = self.screen.home / name
        shutil.copy(SAMPLE, path)
        return path

    def test_files_of_any_name(self):
        plain, dashed, blank = map(self.copy, ("plain.nvl", "--style", "a b.nvl"))
        self.screen.start(PROGRAM, plain.name, blank.as_uri(), "--", dashed.name, cwd=self.screen.home)
        self.screen.wait_for_windows(plain.name, dashed.name, blank.name)

    def test_an_empty_home_gets_the_sample_scripts(self):
        document = self.copy("first.nvl")
        self.assertFalse((self.screen.home / "Documents").exists())
        self.screen.start(PROGRAM, document)
        samples = self.screen.home / "Documents" / "Kestrum" / "Sorbel" / "Scripts" / "Samples"
        wait_for("two samples", lambda: len(list(samples.glob("*.sorbel_script"))) == 2)

    def test_its_desktop_file_finds_it_in_any_prefix(self):
        with tempfile.TemporaryDirectory() as folder:
            for name in ("plain", "all of \"$HOME\" `'s"):
                prefix = pathlib.Path(folder) / name
                subprocess.run(["cmake", "--install", os.environ["SORBEL_BUILD"], "--prefix", prefix, "--component",
                                "program"], check=True, stdout=subprocess.DEVNULL)
                entry = prefix / "share" / "applications" / "org.sorbel.Sorbel.desktop"
                subprocess.run(["desktop-file-validate", entry], check=True)
                document = self.copy(name.split()[0] + ".nvl")
                self.screen.start("gio", "launch", entry, document)
                self.screen.wait_for_windows(document.name)
                self.screen.activate(document.name)
                self.screen.key("ctrl+q")
                self.screen.wait_for_windows()

    def test_the_bus_finds_it_in_any_prefix(self):
        prefix = self.screen.home / "a \"prefix\" $HOME"
        subprocess.run(["cmake", "--install", os.environ["SORBEL_BUILD"], "--prefix", prefix, "--component",
                        "program"], check=True, stdout=subprocess.DEVNULL)
        bus = self.screen.start("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE,
                                text=True, env={**self.screen.env, "XDG_DATA_HOME": prefix / "share"})
        self.addCleanup(bus.stdout.close)
        document = self.copy("by bus.nvl")
        env = {**self.screen.env, "DBUS_SESSION_BUS_ADDRESS": bus.stdout.readline().strip()}
        subprocess.run(["gio", "launch", prefix / "share" / "applications" / "org.sorbel.Sorbel.desktop", document],
                       env=env, check=True, timeout=PATIENCE)
        self.screen.wait_for_windows(document.name)
        # Only the program that the bus started still runs.
        subprocess.run(["gdbus", "call", "--session", "--dest", "org.sorbel.Sorbel", "--object-path",
                        "/org/sorbel/Sorbel", "--method", "org.freedesktop.Application.Activate", "@a{sv} {}"],
                       env=env, check=True, timeout=PATIENCE, stdout=subprocess.DEVNULL)


if __name__ == "__main__":
    unittest.main()
