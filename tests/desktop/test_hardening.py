"""What the shipped programs were built with, read from the programs themselves."""

import os
import re
import subprocess
import unittest

from harness.case import VantorelTestCase
from harness.vantorel import program_path
from harness.waiting import wait_for


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class Binaries(unittest.TestCase):
    def each(self, check):
        for program in (program_path(), os.path.join(os.path.dirname(program_path()), "vantorel-text")):
            with self.subTest(program=os.path.basename(program)):
                check(program)

    def test_load_anywhere_and_close_the_loaders_tables(self):
        def check(program):
            shape = output("readelf", "--file-header", "--dynamic", "--program-headers", "--wide",
                           program)
            self.assertRegex(shape, r"Type:\s+DYN")
            self.assertRegex(shape, r"FLAGS_1\).*NOW.*PIE")
            self.assertIn("GNU_RELRO", shape)
            self.assertRegex(shape, r"GNU_STACK(\s+0x\w+){5} RW ")
            self.assertNotRegex(shape, r"LOAD(\s+0x\w+){5} RWE ")
        self.each(check)

    def test_end_when_the_stack_or_a_buffer_was_overrun(self):
        def check(program):
            asked = output("nm", "--dynamic", "--undefined-only", program)
            self.assertIn("__stack_chk_fail", asked)
            self.assertRegex(asked, r"__\w+_chk\b")
        self.each(check)

    def test_end_when_a_container_is_asked_for_what_it_has_not(self):
        def check(program):
            asked = output("nm", "--dynamic", "--undefined-only", "--demangle", program)
            self.assertIn("std::__glibcxx_assert_fail", asked)
        self.each(check)

    @unittest.skipUnless(re.match(r"x86_64|amd64", os.uname().machine), "a guard of x86-64")
    def test_are_entered_only_where_a_jump_is_expected(self):
        def check(program):
            code = output("objdump", "--disassemble", "--section=.text", "--no-show-raw-insn", program)
            self.assertGreater(code.count("endbr64"), 100)
        self.each(check)


class ForeignPictures(VantorelTestCase):
    def _copy_file(self, name, contents):
        path = self.file(name, contents=contents)
        self.clipboard.copy_as("text/uri-list", f"file://{path}\r\n".encode())
        wait_for("an entry of files", lambda: self.vantorel.newest().get("filePaths") == [path])

    def _readers(self):
        """The toolkit's readers of pictures that the program has loaded."""
        with open(f"/proc/{self.vantorel.process.pid}/maps", encoding="utf-8") as maps:
            return sorted(set(re.findall(r"/imageformats/(\w+)\.so", maps.read())))

    def _wait_for_picture(self, number, colour):
        def shown():
            rows = self.vantorel.rows()
            if len(rows) <= number:
                return None
            x, y, _, height = rows[number].element.extents
            found = self.desktop.windows.pixel(x + 8 + 28, y + height // 2)
            return all(abs(one - other) < 12 for one, other in zip(found, colour))
        wait_for(f"the picture of colour {colour} in row {number}", shown)

    def test_load_only_the_reader_of_their_own_format(self):
        self._copy_file("drawing.svg", b'<svg xmlns="http://www.w3.org/2000/svg" width="90" '
                        b'height="90"><rect width="90" height="90" fill="#00a0ff"/></svg>')
        picture = self.path("picture.tiff")
        self.desktop.run(["convert", "-size", "90x90", "xc:#a000ff", picture]).check_returncode()
        with open(picture, "rb") as file:
            self._copy_file("picture.tiff", file.read())
        self.vantorel.open_panel()
        self._wait_for_picture(0, (0xa0, 0, 0xff))
        self._wait_for_picture(1, (0, 0xa0, 0xff))
        self.assertEqual(self._readers(), ["libqtiff"])


if __name__ == "__main__":
    unittest.main()
