import json
import os
import subprocess
import unittest

import locale_file
from driver import Case


class Protocol(Case):
    def test_bad_input_is_answered_and_ends_nothing(self):
        program = self.program(self.write())
        before = program.document()
        for line in [b"", b"x", b"[]", b"7", b"{", b'{"op":"rows"', b'{"op":7}', b'{"op":null}', b"{}", b'{"op":"nothing"}',
                     b'{"op":"\xff"}', b'{"op":"\\ud800"}', b"\x00", b"[" * 200000, b'{"op":"rows"}x',
                     b'{"op":"type"}', b'{"op":"type","text":7}', b'{"op":"type","text":null}', b'{"op":"search","text":[]}',
                     b'{"op":"click"}', b'{"op":"click","row":"1"}', b'{"op":"click","row":1.5}', b'{"op":"click","row":true}',
                     b'{"op":"click","row":-2}', b'{"op":"click","row":4}', b'{"op":"select","row":4}',
                     b'{"op":"expand","row":99999999999999999999}', b'{"op":"rows","from":-1}', b'{"op":"scope"}',
                     b'{"op":"scope","item":"Nothing"}', b'{"op":"start","files":[]}', b'{"op":"activate","index":1}',
                     b'{"op":"activate","index":-1}', b'{"op":"press","control":"Nothing"}', b'{"op":"press","control":"ListBox1"}',
                     b'{"op":"drag","control":"ListBox1","dx":1,"dy":1}', b'{"op":"accelerator","control":"ListBox1"}',
                     b'{"op":"menu","name":"Nothing"}', b'{"op":"menu","name":""}', b'{"op":"menu"}', b'{"op":"tick","n":-1}',
                     b'{"op":"answer"}', b'{"op":"answer","button":"other"}', b'{"op":"version","index":1}', b'{"op":"open"}']:
            with self.subTest(line=line[:60]):
                reply = program.line(line)
                self.assertFalse(reply["ok"])
                self.assertTrue(reply["error"])
                self.assertEqual((reply["shown"], reply["launched"], reply["beeps"]), ([], [], 0))
        self.assertEqual(program.document(), before)

    def test_start_comes_first_and_windows_may_be_missing(self):
        program = self.program(start=False)
        self.assertIn("start", program.error("windows"))
        program.error("start", files="text")
        program.start()
        program.error("document")
        program.close()
        for op in ["close", "panes", "rows"]:
            program.error(op)
        self.assertEqual(program.windows(), [])

    def test_bytes_that_are_no_utf8_pass_both_ways(self):
        bad = os.fsdecode(b"a\xff\xc3\x80\xe2\x82")
        entries = [[bad, [[0, bad + "\U0001F600\0", ""]]]]
        path = self.write(os.fsdecode(b"\xfe.kestrum_locale"), entries)
        program = self.program(path)
        window = program.windows()[0]
        self.assertEqual((window["path"], window["title"]), (str(path), path.name))
        self.assertEqual(program.document()["entries"], entries)
        self.assertEqual(program.rows()["rows"][0]["identifier"], bad)
        program.select(0)
        program.type("ä" + bad)
        self.assertEqual(program.panes()["LocalizedValueField"]["text"], "ä" + bad)
        program.menu("FileSave")
        self.assertEqual(path.read_bytes(), locale_file.to_bytes(locale_file.changed(entries, bad, 0, "ä" + bad)))

    def test_reading_changes_nothing(self):
        path = self.write()
        program = self.program(path)
        program.select(1)
        reads = ["windows", "panes", "menus", "rows", "versions", "document"]
        first = [program.call(op) for op in reads]
        self.assertEqual([program.call(op) for op in reversed(reads)][::-1], first)
        self.assertEqual(first[3]["rows"][0]["text"], "")
        self.assertEqual(program.rows(**{"from": 1, "count": 2})["rows"], first[3]["rows"][1:3])
        self.assertEqual(program.rows(**{"from": 9})["rows"], [])
        self.assertEqual(path.read_bytes(), locale_file.to_bytes(locale_file.ENTRIES))

    def test_answers_wait_for_their_dialogs(self):
        program = self.program()
        self.assertEqual((program.answer("cancel"), program.answer_file(None), program.answer_file("/a")), (1, 2, 3))
        chosen = [program.press("PushButton1", shown=count)["shown"][0]["chosen"] for count in (1, 2)]
        self.assertEqual(chosen, [None, "/a"])
        self.assertEqual((program.tick(7), program.tick(0), program.tick(5)), (7, 7, 12))

    def test_command_line(self):
        for arguments in (["--now"], ["--now", "yesterday"], ["--now", "2026-02-30 12:00:00"], ["--other", "x"], ["x"]):
            run = subprocess.run([os.environ["SORBEL_HEADLESS"], *arguments], input=b"", capture_output=True)
            self.assertEqual((run.returncode, run.stdout), (2, b""))
            self.assertIn(b"usage:", run.stderr)
        run = subprocess.run([os.environ["SORBEL_HEADLESS"]], input=b'{"op":"start","files":[]}', capture_output=True)
        self.assertEqual((run.returncode, json.loads(run.stdout)["ok"]), (0, True))

    def test_now_dates_a_document_without_a_date(self):
        path = self.folder / "bare.nvl"
        path.write_bytes(b"nvlocale")
        self.assertEqual(self.program(path).document()["date"], "2026-01-31 12:00:00")


if __name__ == "__main__":
    unittest.main()
