"""What the shipped programs were built with, read from the programs themselves."""

import os
import re
import subprocess
import unittest

from harness.vantorel import program_path


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


if __name__ == "__main__":
    unittest.main()
