#!/usr/bin/env python3
"""The samples are what their program makes, and a second reader understands them: check_samples.py SAMPLES"""
import os
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
SAMPLES = os.path.abspath(sys.argv.pop())
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)
import locale_reader  # noqa: E402


def contents(path):
    with open(path, "rb") as file:
        return file.read()


def read(name):
    data = memoryview(contents(os.path.join(SAMPLES, name)))
    return locale_reader.read_file(data, 0, len(data))


class Samples(unittest.TestCase):
    def test_reproduced_byte_for_byte(self):
        with tempfile.TemporaryDirectory() as folder:
            program = os.path.join(SAMPLES, "make_samples.py")
            subprocess.run([sys.executable, "-B", program, folder], check=True)
            names = os.listdir(folder)
            self.assertEqual(len(names), 3)
            for name in names:
                self.assertEqual(contents(os.path.join(folder, name)), contents(os.path.join(SAMPLES, name)), name)

    def test_read_by_the_second_reader(self):
        current, newer = read("Notizbuch.kestrum_locale"), read("Notizbuch newer.kestrum_locale")
        self.assertEqual([element["date"] for element in current["history"]],
                         ["2024-06-03 10:15:00", "2024-11-20 16:40:12"])
        self.assertGreater(len(current["entries"]), 150)
        defaults = [{tuple(e[:2]): e[2] for e in locale["entries"]}
                    for locale in [newer, current] + current["history"]]
        for other in defaults[:1] + defaults[2:]:
            differing = [key for key, default in defaults[1].items() if other.get(key) != default]
            self.assertGreater(len(differing), 4)

    def test_table_fits_the_locale(self):
        keys = {(e[0], e[1]): e[2] for e in read("Notizbuch.kestrum_locale")["entries"]}
        platforms = ["Any", "Mac OS", "Windows", "Linux"]
        lines = contents(os.path.join(SAMPLES, "Notizbuch translations.txt")).decode("utf-8").split("\n")
        for line in lines:
            identifier, platform, default, _ = line.split("\t")
            plain = default.replace('\\"', '"').replace("\\n", "\n").replace("\\t", "\t").replace("\\\\", "\\")
            self.assertEqual(keys[identifier, platforms.index(platform)], plain)

    def test_damage_is_refused(self):
        data = contents(os.path.join(SAMPLES, "Notizbuch newer.kestrum_locale"))
        for damaged in (data[:-1], data[1:], data + b"x", data.replace(b"oval", b"what", 1),
                        data.replace(b"strn", b"bind", 1)):
            with self.assertRaises(locale_reader.Malformed):
                locale_reader.read_file(memoryview(damaged), 0, len(damaged))


if __name__ == "__main__":
    unittest.main()
