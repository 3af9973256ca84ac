#!/usr/bin/env python3
"""Installs the build folder that SORBEL_BUILD names and has the desktop's own tools judge the result."""
import configparser
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
ID = "org.sorbel.Sorbel"
SAMPLE = ROOT / "samples" / "Notizbuch.kestrum_locale"


def run(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if done.returncode:
        raise AssertionError("%s\n%s" % (command, done.stdout))
    return done.stdout


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name) / "usr"
        run("cmake", "--install", os.environ["SORBEL_BUILD"], "--prefix", str(cls.prefix))
        cls.share = cls.prefix / "share"

    def content(self, path):
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read(self.share / path, encoding="utf-8")
        return parser

    def test_validators_are_content(self):
        entry = self.share / "applications" / (ID + ".desktop")
        self.assertEqual(run("desktop-file-validate", entry), "")
        run("appstreamcli", "validate", "--no-net", self.share / "metainfo" / (ID + ".metainfo.xml"))

    def test_the_parts_fit_together(self):
        entry = self.content("applications/%s.desktop" % ID)["Desktop Entry"]
        icons = self.share / "icons" / "hicolor"
        self.assertTrue((icons / "scalable" / "apps" / (entry["Icon"] + ".svg")).exists())
        for icon in icons.glob("*x*/apps/*"):
            self.assertEqual(icon.stem, entry["Icon"])
            size = run("identify", "-format", "%wx%h", icon)
            self.assertEqual(size, icon.parts[-3])
        self.assertGreater(len(list(icons.glob("*x*"))), 5)
        service = self.content("dbus-1/services/%s.service" % ID)["D-BUS Service"]
        self.assertEqual((service["Name"], service["Exec"]), (ID, str(self.prefix / "bin" / "sorbel")))
        self.assertTrue(os.access(service["Exec"], os.X_OK))
        self.assertTrue((self.share / "sorbel" / "Resources" / "OptionsMenu.png").exists())

    def test_components_are_complete_and_no_more(self):
        resources = "share/sorbel/Resources/de.strings"
        all_of_it = {
            "bin/sorbel", "bin/sorbel-headless", resources, "share/man/man1/sorbel.1",
            "share/man/man1/sorbel-headless.1", "share/applications/%s.desktop" % ID, "share/doc/sorbel/scripting.md",
            "share/doc/sorbel/examples/Notizbuch.kestrum_locale",
            "share/doc/sorbel/examples/scripts/Statistics.sorbel_script"}
        self.assertEqual({path for path in all_of_it if (self.prefix / path).exists()}, all_of_it)
        for component, has in (
                ("program", {"bin/sorbel", resources, "share/man/man1/sorbel.1",
                             "share/applications/%s.desktop" % ID}),
                ("headless", {"bin/sorbel-headless", resources, "share/man/man1/sorbel-headless.1"}),
                ("documentation", {path for path in all_of_it if path.startswith("share/doc/")})):
            prefix = self.prefix / component
            run("cmake", "--install", os.environ["SORBEL_BUILD"], "--prefix", str(prefix), "--component", component)
            self.assertEqual({path for path in all_of_it if (prefix / path).exists()}, has, component)

    def test_files_are_known_by_content_and_name(self):
        run("update-mime-database", self.share / "mime")
        known = self.content("applications/%s.desktop" % ID)["Desktop Entry"]["MimeType"].split(";")
        other = self.prefix / "text"
        other.write_text("no locale file: nvlocale\n")
        for name, source, kind in (
                ("renamed", SAMPLE, "application/x-kestrum-locale"),
                ("renamed.kestrum_locale", SAMPLE, "application/x-kestrum-locale"),
                ("older.nvl", SAMPLE, "application/x-norvane-locale"),
                ("chore.sorbel_script", other, "text/x-sorbel-script"),
                ("another.txt", other, "text/plain")):
            file = self.prefix / name
            shutil.copy(source, file)
            told = run("gio", "info", "-a", "standard::content-type", file,
                       env={**os.environ, "XDG_DATA_HOME": str(self.share)})
            self.assertIn("standard::content-type: %s\n" % kind, told)
            self.assertEqual(kind in known, source == SAMPLE)


if __name__ == "__main__":
    unittest.main()
