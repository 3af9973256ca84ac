#!/usr/bin/env python3
"""The thirty framework string tables, encoded and read back.

usage: test_framework_strings.py [unittest options]      FRAMEWORK_STRINGS=DIR names an encoded folder to test;
without it, the tables are encoded into a temporary folder.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
ENCODER = ROOT / "tools" / "encode_strings.py"
SOURCE = ROOT / "resources" / "framework"

# The letters that a language writes its words in; its values have no Latin ones at all.
SCRIPTS = {
    "ar": "\u0600-\u06ff", "el": "\u0370-\u03ff", "he": "\u0590-\u05ff", "ru": "\u0400-\u04ff", "uk": "\u0400-\u04ff",
    "th": "\u0e00-\u0e7f", "ja": "\u3040-\u30ff\u4e00-\u9fff", "ko": "\uac00-\ud7a3", "zh-CN": "\u4e00-\u9fff",
    "zh-TW": "\u4e00-\u9fff",
}
LATIN = set("ca cs da de en es fi fr hr hu it nl no pl pt-BR pt-PT ro sk sv tr".split())

# Letters of the neighbour that a language is easily mistaken for, or of an encoding of its own past.
OF_A_NEIGHBOUR = {"ru": "іїєґ", "uk": "ыэёъ", "ro": "şţŞŢ", "zh-CN": "檔視開關錯誤", "zh-TW": "档视开关错误"}

# What no value has: dots for an ellipsis, typewriter quotes, mnemonics, control, direction and replacement characters.
UNTIDY = r"""\.\.|  |[\x00-\x1f"'&\ufffd\u200e\u200f\u202a-\u202e]"""

# Words that the language really writes like English: shared roots, month names and loan words.
SAME_AS_ENGLISH = {
    "ca": {"Format", "No", "Error", "Document", "Color"},
    "cs": {"OK"},
    "da": {"Format", "Zoom", "Find...", "OK", "Stop"},
    "de": {"Format", "OK", "April", "August", "September", "November", "Name"},
    "es": {"No", "Error", "Color"},
    "fi": {"OK"},
    "fr": {"Services", "Format", "OK", "Document", "Application"},
    "hr": {"Format", "Font"},
    "hu": {"OK"},
    "it": {"File", "OK", "No"},
    "ja": {"OK"},
    "nl": {"Help", "Open", "Open...", "OK", "Stop", "Document"},
    "no": {"Format", "Zoom", "OK"},
    "pl": {"Format", "OK", "Folder"},
    "pt-BR": {"OK"},
    "pt-PT": {"OK"},
    "ro": {"Format", "OK", "Folder", "Document", "Font"},
    "sk": {"OK"},
    "sv": {"Format", "OK"},
}


def parse(text):
    """[(key, value)] of an old-style string table, in its order; ValueError where the syntax ends."""
    pairs, at = [], 0
    token = re.compile(r'\s*(?:/\*.*?\*/\s*)*("(?:[^"\\]|\\.)*"|=|;|$)', re.S)
    escapes = {'"': '"', "\\": "\\", "n": "\n", "t": "\t"}

    def take():
        nonlocal at
        found = token.match(text, at)
        if not found:
            raise ValueError("no token at %r" % text[at:at + 30])
        at = found.end()
        return found.group(1)

    while key := take():
        equals, value, end = take(), take(), take()
        if key[0] != '"' or equals != "=" or value[:1] != '"' or end != ";":
            raise ValueError("not a pair: %r" % [key, equals, value, end])
        pairs.append(tuple(re.sub(r"\\(.)", lambda m: escapes[m[1]], part[1:-1]) for part in (key, value)))
    return pairs


def run_encoder(source, target):
    return subprocess.run([sys.executable, str(ENCODER), str(source), str(target)], capture_output=True, text=True)


class FrameworkStrings(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = os.environ.get("FRAMEWORK_STRINGS")
        if not folder:
            scratch = tempfile.TemporaryDirectory()
            cls.addClassCleanup(scratch.cleanup)
            folder = scratch.name
            done = run_encoder(SOURCE, folder)
            if done.returncode:
                raise AssertionError(done.stderr)
        cls.raw = {path.stem: path.read_bytes() for path in pathlib.Path(folder).glob("*.strings")}
        cls.tables = {name: parse(data[2:].decode("utf-16-be")) for name, data in cls.raw.items()}

    def test_thirty_languages_have_the_same_keys_in_the_same_order(self):
        self.assertEqual(set(self.tables), LATIN | set(SCRIPTS))
        keys = [key for key, _ in self.tables["en"]]
        self.assertGreaterEqual(len(set(keys)), 80)
        self.assertEqual(len(set(keys)), len(keys))
        for name, table in self.tables.items():
            with self.subTest(language=name):
                self.assertEqual(self.raw[name][:2], b"\xfe\xff")
                self.assertEqual([key for key, _ in table], keys)

    def test_values_keep_the_placeholders_and_are_tidy(self):
        for name, key, value in self.rows():
            with self.subTest(language=name, key=key):
                self.assertEqual(sorted(re.findall("%.?", value)), sorted(re.findall("%.?", key)))
                self.assertEqual(value, value.strip() or "not empty")
                self.assertNotRegex(value, UNTIDY)
                self.assertEqual(value.endswith("…"), key.endswith("..."))

    def test_values_are_translated(self):
        english = dict(self.tables["en"])
        for name in set(self.tables) - {"en"}:
            with self.subTest(language=name):
                same = {key for key, value in self.tables[name] if value == english[key]}
                self.assertEqual(same, SAME_AS_ENGLISH.get(name, set()))

    def test_values_are_in_the_script_of_the_language(self):
        for name, key, value in self.rows():
            words = re.sub("%[12]", "", value)
            with self.subTest(language=name, key=key):
                if name in LATIN:
                    self.assertNotRegex(words, "[\u0370-\u1dff\u3040-\ud7a3]")
                elif (name, value) != ("ja", "OK"):
                    self.assertRegex(words, "[%s]" % SCRIPTS[name])
                    self.assertNotRegex(words, "[A-Za-z]")
                self.assertNotRegex(words, "[%s]" % OF_A_NEIGHBOUR.get(name, "\0"))

    def rows(self):
        return [(name, *pair) for name, table in self.tables.items() for pair in table]


class Encoder(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.source, self.target = (pathlib.Path(scratch.name) / part for part in ("in", "out"))
        self.source.mkdir()

    def encode(self, data):
        (self.source / "x.strings").write_bytes(data)
        return run_encoder(self.source, self.target)

    def test_encodes_escapes_and_astral_characters(self):
        self.assertEqual(self.encode('/* A */\n"a\\"b" = "é\\\\ \U0001d11e";\n'.encode()).returncode, 0)
        data = (self.target / "x.strings").read_bytes()
        self.assertEqual(data[:4], b"\xfe\xff\x00/")
        self.assertEqual(parse(data.decode("utf-16")), [('a"b', "é\\ \U0001d11e")])

    def test_rewrites_only_what_differs(self):
        self.encode(b'"a" = "b";\n')
        out = self.target / "x.strings"
        os.utime(out, (1, 1))
        self.encode(b'"a" = "b";\n')
        self.assertEqual(out.stat().st_mtime, 1)
        self.encode(b'"a" = "c";\n')
        self.assertIn(b"\x00c", out.read_bytes())

    def test_refuses_malformed_tables_and_writes_nothing(self):
        (self.source / "good.strings").write_bytes(b'"a" = "b";\n')
        good = b'"k" = "v";\n'
        for line in (b'"a" = "b"\n', b'"a = "b";\n', b'"a" = "\\q";\n', b'"a" = "b";', b"/* open\n", b'"a" = "\xff";\n',
                     b'"a" = "b";\r\n', good):
            with self.subTest(line=line):
                done = self.encode(good + line)
                self.assertEqual(done.returncode, 1)
                self.assertIn("x.strings:2: ", done.stderr)
                self.assertFalse(self.target.exists())
        for data in (b"", b"\xef\xbb\xbf" + good):
            self.assertIn("x.strings:1: ", self.encode(data).stderr)
        (self.source / "x.strings").unlink()
        (self.source / "good.strings").unlink()
        self.assertEqual(run_encoder(self.source, self.target).returncode, 1)


if __name__ == "__main__":
    unittest.main()
