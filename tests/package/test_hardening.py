#!/usr/bin/env python3
"""The built programs as the loader sees them. SORBEL_PROGRAMS names them, between semicolons, SORBEL_BUILD the folder
that they were built in."""
import json
import os
import pathlib
import platform
import subprocess
import unittest

PROGRAMS = os.environ["SORBEL_PROGRAMS"].split(";")
LANDING = {"x86_64": "endbr64", "aarch64": r"bti|paciasp"}.get(platform.machine())


def readelf(what, program):
    return subprocess.run(["readelf", "--wide", what, program], check=True, capture_output=True, text=True).stdout


def line_of(table, word):
    return next((line for line in table.splitlines() if word in line), "")


class Hardening(unittest.TestCase):
    def of_each(self, what):
        for program in PROGRAMS:
            with self.subTest(program):
                yield readelf(what, program)

    def test_it_lies_anywhere_in_memory(self):
        for header in self.of_each("--file-header"):
            self.assertIn("DYN (Position-Independent Executable file)", header)

    def test_nothing_that_is_written_is_run_or_called_through(self):
        for segments in self.of_each("--program-headers"):
            self.assertIn("GNU_RELRO", segments)
            self.assertIn(" RW ", line_of(segments, "GNU_STACK"))
            loads = [line for line in segments.splitlines() if " LOAD " in line]
            self.assertFalse([line for line in loads if "RWE" in line])
        for dynamic in self.of_each("--dynamic"):
            self.assertIn("NOW", line_of(dynamic, "FLAGS_1"))

    def test_overruns_end_it(self):
        for symbols in self.of_each("--dyn-syms"):
            self.assertIn("__stack_chk_fail", symbols)
            self.assertRegex(symbols, r"__\w+_chk\b(?<!__stack_chk_fail)")

    @unittest.skipUnless(LANDING, "this processor knows no such places")
    def test_jumps_end_where_code_allows(self):
        """The programs' own code; what the system links to it may have no such places, and then no note of them."""
        for program in PROGRAMS:
            code = subprocess.run(["objdump", "--disassemble=main", "--no-show-raw-insn", program], check=True,
                                  capture_output=True, text=True).stdout
            self.assertRegex(code, r"<main>:\n\s*[0-9a-f]+:\s+(?:%s)\b" % LANDING)

    def test_all_code_of_the_programs_is_built_so(self):
        commands = json.loads(pathlib.Path(os.environ["SORBEL_BUILD"], "compile_commands.json").read_text())
        own = [entry for entry in commands if "/src/" in entry["file"]]
        self.assertGreater(len(own), 100)
        for flag in ("-fstack-protector-strong", "-fstack-clash-protection", "-D_FORTIFY_SOURCE=3"):
            self.assertEqual([entry["file"] for entry in own if flag not in entry["command"]], [], flag)


if __name__ == "__main__":
    unittest.main()
