#!/usr/bin/env python3
"""Uses the installed package as its user does, on a machine without the source. try_in_root runs it, as a user.

Each start has an empty home. All files that the program asks the system for are written down, and none may lie
where only the machine that built the program has something."""
import json
import pathlib
import re
import shutil
import subprocess
import unittest

from screen import PATIENCE, Screen, wait_for

EXAMPLES = pathlib.Path("/usr/share/doc/sorbel/examples")
SAMPLE = EXAMPLES / "Notizbuch.kestrum_locale"
RESOURCES = pathlib.Path("/usr/share/sorbel/Resources")
ENTRY = "/usr/share/applications/org.sorbel.Sorbel.desktop"
SAMPLE_SCRIPTS = "Documents/Kestrum/Sorbel/Scripts/Samples"
# Of the system; what is in the home folder is the user's.
SYSTEM = ("/usr/", "/etc/", "/lib", "/bin/", "/sbin/", "/proc/", "/sys/", "/dev/", "/run/", "/var/",
          "/tmp/.X11-unix", "/tmp/.ICE-unix", "/tmp/dbus-")
PATH_IN_TRACE = re.compile(r'(?<!\\)"(/(?:[^"\\]|\\.)*)"')


class CleanMachine(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        self.screen.env["TMPDIR"] = str(self.screen.home)
        self.trace = self.screen.home / "trace"
        self.file = self.copy("mine.kestrum_locale")

    def copy(self, name):
        path = self.screen.home / name
        shutil.copy(SAMPLE, path)
        return path

    def traced(self, *command):
        return ["strace", "-f", "-qq", "-e", "trace=%file", "-s", "4096", "-o", str(self.trace), *command]

    def check_trace(self):
        lines = self.trace.read_text(errors="replace").splitlines()
        paths = {re.sub("/+", "/", path) for line in lines for path in PATH_IN_TRACE.findall(line)}
        self.assertTrue(any(path.startswith("/usr/bin/sorbel") for path in paths), "the program is not in the trace")
        system = SYSTEM + (str(self.screen.home),)
        # A file dialog looks at what lies near the root. A source or a build folder lies deeper.
        foreign = {path for path in paths if not path.startswith(system) and path.count("/") > 2}
        self.assertEqual(foreign, set())
        data = {str(pathlib.Path(path).parent.resolve()) for path in paths
                if "/Resources/" in path and not path.startswith(str(self.screen.home))}
        self.assertEqual(data, {str(RESOURCES)})

    def leave(self, title):
        self.screen.activate(title)
        self.screen.key("ctrl+q")
        self.screen.wait_for_windows()

    def start_bus(self):
        """The session's own, which finds the program by what the package has installed."""
        bus = self.screen.start("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE,
                                text=True)
        self.addCleanup(bus.stdout.close)
        self.screen.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def check_export(self, application):
        folder = application / "Contents" / "Resources" / "de.lproj"
        wait_for("the export", lambda: (folder / "NVFramework.strings").exists())
        self.assertEqual((folder / "NVFramework.strings").read_bytes(), (RESOURCES / "de.strings").read_bytes())
        own = (folder / "Localizable.strings").read_bytes().decode("utf-16")
        self.assertGreater(own.count('" = "'), 10)

    def application(self):
        path = self.screen.home / "Mine.app"
        (path / "Contents" / "Resources").mkdir(parents=True)
        return path

    def test_the_desktop_file_starts_it_and_it_exports(self):
        kind = subprocess.run(["gio", "mime", "application/x-kestrum-locale"], env=self.screen.env, check=True,
                              capture_output=True, text=True).stdout
        self.assertIn("org.sorbel.Sorbel.desktop", kind)
        application = self.application()
        program = self.screen.start(*self.traced("gio", "launch", ENTRY, str(self.file)), cwd=self.screen.home)
        self.screen.wait_for_windows(self.file.name)
        self.screen.activate(self.file.name)
        samples = self.screen.home / SAMPLE_SCRIPTS
        wait_for("the sample scripts", lambda: len(list(samples.glob("*.sorbel_script"))) == 2)
        self.screen.key("ctrl+e")
        wait_for("the dialog", lambda: len(self.screen.windows()) == 2)
        wait_for("its focus", lambda: self.screen.active_title() not in (None, self.file.name))
        self.screen.type(str(application))
        self.screen.key("Return")
        self.check_export(application)
        self.leave(self.file.name)
        self.assertEqual(program.wait(PATIENCE), 0)
        self.check_trace()

    def test_the_session_bus_starts_it(self):
        self.start_bus()
        subprocess.run(["gdbus", "call", "--session", "--dest", "org.sorbel.Sorbel", "--object-path",
                        "/org/sorbel/Sorbel", "--method", "org.freedesktop.Application.Open",
                        str([self.file.as_uri()]), "@a{sv} {}"], env=self.screen.env, check=True, timeout=PATIENCE)
        self.screen.wait_for_windows(self.file.name)
        second = self.copy("second.nvl")
        subprocess.run(self.traced("sorbel", second), env=self.screen.env, check=True, timeout=PATIENCE)
        self.screen.wait_for_windows(self.file.name, second.name)
        self.leave(self.file.name)

    def test_the_driver_without_a_screen(self):
        application = self.application()
        requests = [{"op": "start", "files": [str(self.file)]}, {"op": "answer", "file": str(application)},
                    {"op": "menu", "name": "ExportExporttoApplication"}, {"op": "quit"}]
        done = subprocess.run(self.traced("sorbel-headless"), input="".join(json.dumps(r) + "\n" for r in requests),
                              env=self.screen.env, cwd=self.screen.home, check=True, capture_output=True, text=True,
                              timeout=PATIENCE)
        replies = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual([reply["ok"] for reply in replies], [True] * 4, replies)
        self.check_export(application)
        self.check_trace()

    def test_the_program_for_the_command_line(self):
        application = self.application()
        table = self.screen.home / "mine.csv"
        for arguments in (["export", self.file, table], ["import", self.file, table], ["app", self.file, application]):
            subprocess.run(self.traced("sorbel-exchange", *map(str, arguments)), env=self.screen.env,
                           cwd=self.screen.home, check=True, stdout=subprocess.DEVNULL, timeout=PATIENCE)
        self.assertEqual(self.file.read_bytes(), SAMPLE.read_bytes())
        self.check_export(application)
        self.check_trace()

    def test_what_one_reads_is_there(self):
        version = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", "sorbel"], check=True, capture_output=True,
                                 text=True).stdout
        for program in ("sorbel", "sorbel-exchange", "sorbel-headless"):
            told = subprocess.run([program, "--version"], check=True, capture_output=True, text=True,
                                  env={"PATH": "/usr/bin"})
            self.assertEqual((told.stdout, told.stderr), ("%s %s\n" % (program, version), ""))
            self.assertTrue(pathlib.Path("/usr/share/man/man1/%s.1.gz" % program).exists())
        self.assertGreater(len(list((EXAMPLES / "scripts").glob("*.sorbel_script"))), 10)
        self.assertIn("has not chosen a licence", (EXAMPLES.parent / "copyright").read_text())


if __name__ == "__main__":
    unittest.main()
