#!/usr/bin/env python3
"""tools/release on this source, and on copies of it in which one place tells another version or day."""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TELLING = ["CMakeLists.txt", "CHANGELOG.md", "packaging/org.sorbel.Sorbel.metainfo.xml", "packaging/man/sorbel.1",
           "packaging/man/sorbel-headless.1", "src/qt/CMakeLists.txt", "src/headless/CMakeLists.txt",
           "packaging/man/sorbel-exchange.1", "src/exchange/CMakeLists.txt"]
DAY = "2001-02-03"


def release(folder):
    return subprocess.run([sys.executable, "-B", ROOT / "tools" / "release", folder], capture_output=True, text=True)


class Release(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.copy = pathlib.Path(folder.name)
        for path in TELLING:
            (self.copy / path).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / path, self.copy / path)
        self.version = release(self.copy).stdout.strip()

    def faults_with(self, path, old, new):
        """What is told about a copy in which one place differs."""
        text = (self.copy / path).read_text()
        self.assertIn(old, text)
        (self.copy / path).write_text(text.replace(old, new, 1))
        told = release(self.copy)
        (self.copy / path).write_text(text)
        self.assertEqual((told.returncode, told.stdout), (1, ""))
        return told.stderr

    def test_this_source_agrees(self):
        self.assertEqual((release(ROOT).stdout.strip(), release(ROOT).stderr), (self.version, ""))
        self.assertRegex(self.version, r"\A\d+(\.\d+)+\Z")

    def test_each_place_that_differs_is_told(self):
        version, day = self.version, (self.copy / "CHANGELOG.md").read_text().split("(", 1)[1][:10]
        for path, old, new, fault in (
                ("CMakeLists.txt", "VERSION " + version, "VERSION 9.9", "CHANGELOG.md: "),
                ("CMakeLists.txt", "VERSION " + version, "VERSION 9.9", "the metainfo: "),
                ("CHANGELOG.md", "## %s (" % version, "## 9.9 (", "CHANGELOG.md: 9.9 instead of " + version),
                ("CHANGELOG.md", day, DAY, "the manual page of sorbel: "),
                ("CHANGELOG.md", "(%s)" % day, "", "no heading of a release"),
                (TELLING[2], '<release version="%s"' % version, '<release version="9.9"', "the metainfo: "),
                (TELLING[2], day, DAY, "the metainfo: "),
                (TELLING[3], "@PROJECT_VERSION@", version, "the manual page of sorbel: "),
                (TELLING[4], day, DAY, "the manual page of sorbel-headless: "),
                (TELLING[5], "install_program(sorbel ", "install_program(other ", "the manual page of other: no such")):
            self.assertIn(fault, self.faults_with(path, old, new))

    def test_the_changelog_of_the_package(self):
        made = subprocess.run([sys.executable, "-B", ROOT / "tools" / "changelog.py", "86400"], check=True,
                              capture_output=True, text=True).stdout
        self.assertTrue(made.startswith("sorbel (%s) " % self.version), made)
        parsed = subprocess.run(["dpkg-parsechangelog", "-l", "-", "-S", "Timestamp"], input=made, check=True,
                                capture_output=True, text=True)
        self.assertEqual((parsed.stdout, parsed.stderr), ("86400\n", ""))


if __name__ == "__main__":
    unittest.main()
