#!/usr/bin/env python3
"""A script that does not end, in the real window. SORBEL names the executable."""
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from screen import PATIENCE, Screen, wait_for  # noqa: E402

PROGRAM = os.environ["SORBEL"]
ENDLESS = """TranslatedText = "by the script"
Try
  Do
    n = n + 1
    If n Mod 1000000 = 0 Then CurrentRow = 2
  Loop
Finally
  TranslatedText = "never"
End Try
"""
DIALOGS = 'Do\n  Call ShowDialog(Repeat("Again? ", 12), "", "OK", "")\nLoop\n'
WIDTH = 300  # between that of the message that a script was stopped and that of the dialogs above


class RunningScript(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        self.file = self.screen.home / "one.kestrum_locale"
        shutil.copy(ROOT / "samples" / "Notizbuch.kestrum_locale", self.file)

    def start_with(self, script):
        """The program with its window in front and the script under Ctrl+1."""
        scripts = self.screen.home / "Documents" / "Kestrum" / "Sorbel" / "Scripts"
        scripts.mkdir(parents=True)
        (scripts / "Script.sorbel_script").write_text(script)
        self.screen.start(PROGRAM, self.file)
        self.screen.wait_for_windows(self.file.name)
        self.screen.activate(self.file.name)

    def message_is_up(self):
        """That the script was stopped."""
        window = self.screen.windows().get("Sorbel")
        size = window and self.screen.try_xdotool("getwindowgeometry", "--shell", window)
        return size and int(size.split("WIDTH=")[1].split()[0]) < WIDTH

    def close_message(self):
        wait_for("the message", self.message_is_up)
        self.screen.activate("Sorbel")
        self.screen.key("Return")

    def wait_for_title(self, title):
        wait_for("%s in front" % title, lambda: self.screen.active_title() == title)

    def second_start(self):
        """A start that hands a document over."""
        other = self.screen.home / "two.kestrum_locale"
        shutil.copy(self.file, other)
        return subprocess.Popen([PROGRAM, other], env=self.screen.env)

    def start_bus(self):
        bus = self.screen.start("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE,
                                text=True)
        self.addCleanup(bus.stdout.close)
        self.screen.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def test_it_is_stopped_by_escape_and_nothing_else_gets_through(self):
        self.start_bus()
        before = self.file.read_bytes()
        self.start_with("CurrentRow = 1\nDim n As Integer\n" + ENDLESS)
        self.screen.key("ctrl+1")
        # The window shows what the script does, so it is looked after.
        self.screen.wait_for_windows(self.file.name + "*")
        second = self.second_start()
        self.screen.type("zz")
        self.screen.key("ctrl+s")
        self.screen.key("Escape")
        self.assertEqual(second.wait(PATIENCE), 0)
        self.close_message()
        self.screen.wait_for_windows(self.file.name + "*", "two.kestrum_locale")
        self.assertEqual(self.file.read_bytes(), before)
        self.screen.activate(self.file.name + "*")
        self.screen.key("ctrl+s")
        self.screen.wait_for_windows(self.file.name, "two.kestrum_locale")
        self.assertIn("by the script".encode(), self.file.read_bytes())
        self.assertNotIn("never".encode(), self.file.read_bytes())

    def test_dialogs_without_end_are_left_by_holding_escape(self):
        self.start_with(DIALOGS)
        window = self.screen.active_window()
        self.screen.key("ctrl+1")
        wait_for("a dialog", lambda: self.screen.active_window() not in (None, window))
        self.screen.xdotool("keydown", "Escape")
        try:
            wait_for("the message", self.message_is_up)
        finally:
            self.screen.xdotool("keyup", "Escape")
        self.close_message()
        self.wait_for_title(self.file.name)


if __name__ == "__main__":
    unittest.main()
