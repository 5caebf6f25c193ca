# SPDX-License-Identifier: MIT
"""What the shipped programs were built with, and what the running one shows to others."""

import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

from harness.case import VantorelTestCase
from harness.vantorel import program_path
from harness.waiting import stays_true, wait_for
from test_colours import DARK, LIGHT, ColoursCase, Portal

NOBODY = 65534


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def worker_paths():
    return [os.path.join(os.path.dirname(program_path()), name)
            for name in ("vantorel-text", "vantorel-pictures")]


class Binaries(unittest.TestCase):
    def each(self, check):
        for program in (program_path(), *worker_paths()):
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


class ClosedProcess(unittest.TestCase):
    """The superuser may read everything: where the tests are his, another user runs these."""

    def test_other_processes_of_the_user_read_nothing_and_a_crash_leaves_nothing(self):
        tests = "test_hardening.AsAnOrdinaryUser"
        if os.getuid() != 0:
            result = self.run_tests(tests, os.path.dirname(os.path.abspath(__file__)), {})
        else:
            with tempfile.TemporaryDirectory(prefix="vantorel-nobody-") as place:
                os.chmod(place, 0o755)
                # Neither has to lie where everybody may look.
                sources = os.path.join(place, "tests")
                shutil.copytree(os.path.dirname(os.path.abspath(__file__)), sources)
                for program in (program_path(), *worker_paths()):
                    if os.path.exists(program):
                        shutil.copy(program, place)
                own = os.path.join(place, "own")
                os.mkdir(own)
                os.chown(own, NOBODY, NOBODY)
                result = self.run_tests(
                    tests, sources,
                    {"VANTOREL_PROGRAM": os.path.join(place, "vantorel"), "HOME": own,
                     "TMPDIR": own}, user=NOBODY, group=NOBODY, extra_groups=[])
        self.assertEqual(result.returncode, 0, result.stderr.decode(errors="replace")[-4000:])
        self.assertIn(b"Ran 3 tests", result.stderr)

    @staticmethod
    def run_tests(tests, directory, environment, **options):
        return subprocess.run([sys.executable, "-m", "unittest", "-v", tests], cwd=directory,
                              env={**os.environ, "VANTOREL_NOT_ROOT": "1", **environment},
                              capture_output=True, timeout=100, check=False, **options)


@unittest.skipUnless(os.environ.get("VANTOREL_NOT_ROOT"), "run by ClosedProcess")
class AsAnOrdinaryUser(VantorelTestCase):
    def test_memory_and_environment_are_closed(self):
        self.vantorel.copy("a text with a needle-in-it")
        other = self.desktop.start("other", ["sleep", "100"])
        with open(f"/proc/{other.pid}/mem", "rb"):
            pass  # of a process that is not closed it may be opened
        for name in ("mem", "environ", "maps"):
            with self.subTest(name=name), self.assertRaises(PermissionError):
                with open(f"/proc/{self.vantorel.process.pid}/{name}", "rb") as file:
                    file.read(1)

    def test_the_portal_is_asked_for_the_colours_before(self):
        self.vantorel.quit()
        portal = Portal(self.desktop, DARK)
        self.vantorel.start()
        self.vantorel.open_panel()
        ColoursCase.wait_for_panel_in(self, dark=True)
        # One that comes anew is not answered to, and still tells of changes.
        portal.stop()
        portal = Portal(self.desktop, LIGHT)
        stays_true("a dark panel", lambda: ColoursCase.panel_is_dark(self), 1)
        portal.change(LIGHT)
        ColoursCase.wait_for_panel_in(self, dark=False)

    def test_a_crash_leaves_no_core(self):
        resource.setrlimit(resource.RLIMIT_CORE, (resource.getrlimit(resource.RLIMIT_CORE)[1],) * 2)
        self.vantorel.quit()
        self.vantorel.start()
        self.vantorel.copy("a text with a needle-in-it")
        with open(f"/proc/{self.vantorel.process.pid}/limits", encoding="ascii") as file:
            self.assertRegex(file.read(), r"Max core file size +0 +0 ")
        os.kill(self.vantorel.process.pid, signal.SIGSEGV)
        _, status = os.waitpid(self.vantorel.process.pid, 0)
        self.vantorel.process.returncode = -os.WTERMSIG(status)
        self.assertEqual(os.WTERMSIG(status), signal.SIGSEGV)
        self.assertFalse(os.WCOREDUMP(status))
        # The program that runs at the end of the test ends in order.
        wait_for("the name to be free", lambda: not self.vantorel.is_on_bus())
        self.vantorel.start()


if __name__ == "__main__":
    unittest.main()
