# SPDX-License-Identifier: MIT
"""Faults by the hundred and thousand: nothing that was saved is lost, nothing grows, nothing leaks."""

import contextlib
import json
import os
import random
import re
import signal
import subprocess
import tempfile
import time
import unittest

from Xlib import X, display
from Xlib.protocol import event

from harness import pictures
from harness.case import VantorelTestCase
from harness.history import files_holding, text_item
from harness.trials import Trials
from harness.waiting import wait_for

KEY = bytes(range(32))
KILLS = int(os.environ.get("VANTOREL_KILLS", "1000"))
COPIES = int(os.environ.get("VANTOREL_COPIES", "10000"))
LIVES = int(os.environ.get("VANTOREL_LIVES", "30"))
MOST_GROWTH_KB = 4096


class Owner:
    """An owner in this very process, which copies as fast as it is asked to."""

    def __init__(self, desktop):
        self._display = display.Display(desktop.env["DISPLAY"])
        # Whoever asked may be dead when the answer comes.
        self._display.set_error_handler(lambda *_: None)
        self._atom = self._display.intern_atom
        self._window = self._display.screen().root.create_window(0, 0, 1, 1, 0, 0)
        self._target, self._data = "", b""
        self.read = 0  # how many copies were read

    def copy(self, data, seconds, target="UTF8_STRING"):
        """Owns the clipboard with some bytes and serves them for so long."""
        self._target, self._data = target, data
        self._window.set_selection_owner(self._atom("CLIPBOARD"), X.CurrentTime)
        self._display.flush()
        end = time.monotonic() + seconds
        asked = False
        while time.monotonic() < end:
            while self._display.pending_events():
                asked = self._serve(self._display.next_event()) or asked
            time.sleep(0.0005)
        self.read += asked

    def _serve(self, request):
        if request.type != X.SelectionRequest:
            return False
        wanted = request.target
        contents = wanted == self._atom(self._target)
        place = request.property
        if wanted == self._atom("TARGETS"):
            request.requestor.change_property(place, self._atom("ATOM"), 32,
                                              [wanted, self._atom(self._target)])
        elif contents:
            request.requestor.change_property(place, wanted, 8, self._data)
        else:
            place = X.NONE
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=wanted, property=place))
        self._display.flush()
        return contents


class Kills(VantorelTestCase):
    """Killed at random moments while texts, long texts and pictures are copied."""

    autostart = False

    def test_what_was_on_the_disk_is_there_after_a_kill(self):
        seed = random.randrange(1 << 30)
        chance = random.Random(seed)
        self.desktop.keyring.store(KEY)
        self.vantorel.history.write([text_item(f"{number} " + "x" * 20_000, number)
                                     for number in range(20)], KEY)
        owner = Owner(self.desktop)
        seen = entries = 0
        for round_number in range(KILLS):
            with self.subTest(round=round_number, seed=seed):
                self.vantorel.start(capturing=False, accessible=False)
                self._copy(owner, chance, round_number)
                before = self._ids()
                self.vantorel.kill()
                self.assertTrue(self.vantorel.history.opens(), "the history does not open")
                after = self._ids()
                # What was seen on the disk is there, but for the oldest where newer ones came.
                kept = [one for one in before if one in after]
                self.assertEqual(kept, before[:len(kept)])
                self.assertTrue(len(kept) == len(before) or len(after) == 50)
                self._expect_every_asset()
                seen, entries = seen + 1, entries + len(before)
        self.vantorel.start()
        wait_for("what was half written to go", lambda: sorted(
            os.listdir(self.vantorel.history.directory)) == ["Assets", "history.vntl"])
        Trials().note("killed (SIGKILL) at a random moment of copying", f"{seen:,} kills",
                      "everything that was on the disk", f"{entries:,} entries seen before, 0 lost")

    def _copy(self, owner, chance, round_number):
        """For a random time, so that the kill comes before, in and after saves."""
        end = time.monotonic() + chance.uniform(0.12, 0.5)
        number = 0
        while time.monotonic() < end:
            what = chance.choice((10, 1_000, 60_000, "picture"))
            seconds = chance.uniform(0.004, 0.03)
            if what == "picture":
                colour = tuple(chance.randbytes(3))
                owner.copy(pictures.png(60, 40, colour), seconds, "image/png")
            else:
                text = f"{round_number}, {number} " + "y" * what
                owner.copy(text.encode(), seconds)
            number += 1

    def _ids(self):
        return [item["id"] for item in self.vantorel.history.items()]

    def _expect_every_asset(self):
        for item in self.vantorel.history.items():
            if item.get("assetFilename"):
                self.vantorel.history.asset(item)


class Copies(VantorelTestCase):
    def test_ten_thousand_copies_leave_memory_as_it_was(self):
        owner = Owner(self.desktop)
        self._burst(owner, "warm-up", COPIES // 10)
        memory, files = self._memory_kb(), self._open_files()
        self._burst(owner, "copy", COPIES)
        self.vantorel.wait_for_newest("last copy")
        grown = self._memory_kb() - memory
        self.assertLess(grown, MOST_GROWTH_KB)
        self.assertLessEqual(self._open_files(), files)
        self.assertGreater(owner.read, COPIES // 10)
        Trials().note("copies 5 ms apart", f"{COPIES:,} copies",
                      "the last one kept, no descriptor more",
                      f"{owner.read:,} read, private memory {grown:+,} kB")

    @staticmethod
    def _burst(owner, name, count):
        for number in range(count):
            owner.copy(f"{name} {number}".encode(), 0.005)
        owner.copy(f"last {name}".encode(), 2)

    def _memory_kb(self):
        with open(f"/proc/{self.vantorel.process.pid}/smaps_rollup", encoding="ascii") as file:
            return int(re.search(r"^Private_Dirty:\s+(\d+)", file.read(), re.MULTILINE)[1])

    def _open_files(self):
        return len(os.listdir(f"/proc/{self.vantorel.process.pid}/fd"))


class Secrets(VantorelTestCase):
    autostart = False

    def test_no_file_holds_what_was_copied_and_nobody_is_called(self):
        trace = self.path("trace.txt")
        self.vantorel.launcher = ["strace", "-f", "-qq", "-e", "trace=socket,connect", "-o", trace]
        self.desktop.keyring.store(KEY)
        self.vantorel.start()
        canaries = [f"canary{random.getrandbits(64):016x}" for _ in range(3)]
        self.vantorel.copy(canaries[0])
        self.vantorel.copy(canaries[1] + "z" * 100_000)
        self.clipboard.copy_as("image/png", pictures.png(200, 100, (20, 90, 160)))
        wait_for("the picture", lambda: "image" in self.vantorel.history.kinds())
        self.vantorel.open_panel()
        self.desktop.keyboard.type(canaries[2])
        self.vantorel.press_shortcut()
        self.assertEqual(self.vantorel.command("--quit").returncode, 0)
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        with open(trace, encoding="utf-8", errors="replace") as file:
            calls = file.read().splitlines()
        sockets = [line for line in calls if "socket(" in line]
        self.assertTrue(sockets)
        self.assertEqual([line for line in sockets if "AF_UNIX" not in line], [])
        os.remove(trace)
        for canary in (*map(str.encode, canaries), KEY):
            self.assertEqual(files_holding(self.desktop.home, canary), [])
        Trials().note("sockets, by the trace of all threads and children",
                      f"{len(sockets)} calls of socket()", "none but local ones")
        Trials().note("canaries in files after quitting", "2 texts, a search and the key",
                      "found in no file of home, runtime and cache")


class SystemCalls(VantorelTestCase):
    """The kernel refuses the thread that saves one of its calls, for as long as it is traced."""

    def setUp(self):
        super().setUp()
        if os.getuid() != 0:
            self.skipTest("the program lets only an administrator trace it")
        self.vantorel.copy("saved before")

    def test_no_file_can_be_opened(self):
        self.refuse("openat", "ENOSPC", "EDQUOT", "EROFS", "EIO")

    def test_no_file_can_be_closed_to_others(self):
        self.refuse("fchmod", "EROFS", "EIO")

    def test_nothing_can_be_written(self):
        self.refuse("write", "ENOSPC", "EDQUOT", "EIO")

    def test_nothing_can_be_brought_to_the_disk(self):
        self.refuse("fsync", "ENOSPC", "EDQUOT", "EIO")

    def test_no_file_can_be_closed(self):
        self.refuse("close", "ENOSPC", "EDQUOT", "EIO")

    def test_no_file_can_take_the_place_of_another(self):
        self.refuse("rename", "ENOSPC", "EDQUOT", "EROFS", "EIO")

    def test_a_history_that_cannot_be_read_stays_as_it_is(self):
        self.vantorel.quit()
        before = self.vantorel.history.raw()
        for call in ("openat", "read"):
            with self.subTest(call=call):
                # Nothing else is refused at a start: -P says of which file.
                self.vantorel.launcher = [*self.strace(call, "error=EIO"), "-P",
                                          self.vantorel.history.file]
                self.vantorel.start(accessible=False, capturing=False)
                self.vantorel.wait_until_on_bus()
                self.assertEqual(self.vantorel.command("--quit").returncode, 0)
                wait_for("the program to end", lambda: not self.vantorel.is_running())
                self.assertTrue(self.refused())
                self.assertEqual(self.vantorel.history.raw(), before)
                Trials().note(f"{call} of the history refused at a start (EIO)", "1 start",
                              "the file, byte for byte")
        self.vantorel.launcher = []
        self.vantorel.start()
        self.vantorel.wait_for_texts(["saved before"])

    def refuse(self, call, *errors):
        kept = self.vantorel.history.texts()
        for error in errors:
            before, text = self.vantorel.history.raw(), f"{call} {error}"
            once = ":when=1" if call == "write" else ""
            if once:
                self.copy_until_the_write(text)
            with self.traced(call, f"error={error}{once}"):
                if once:
                    self.vantorel.process.send_signal(signal.SIGCONT)
                else:
                    self.clipboard.copy(text)
                wait_for(f"{call} to be refused ({error})", self.refused)
                self.assertEqual(self.vantorel.history.raw(), before)
            kept.insert(0, text)
            # A save that failed comes again after some seconds.
            self.vantorel.wait_for_texts(kept, 60)
        Trials().note(f"{call} refused by the kernel ({', '.join(errors)})",
                      f"{len(errors)} copies", "the list before, and the copy once it is allowed")

    def copy_until_the_write(self, text):
        """Stops the program with a new file open and nothing in it: threads wake each other by
        writing, and the next write is one to that file."""
        with self.traced("fchmod", "signal=SIGSTOP"):
            self.clipboard.copy(text)
            wait_for("a stop before the write", lambda: "stopped by SIGSTOP" in self.trace())
        wait_for("the program to stand", lambda: "State:\tT" in status(self.vantorel.process.pid))

    @contextlib.contextmanager
    def traced(self, call, fault):
        """Traces the first thread alone: it is the one that saves a history of this size."""
        process = self.vantorel.process.pid
        trace = self.desktop.start("strace", [*self.strace(call, fault), "-p", str(process)])
        try:
            wait_for("the trace", lambda: f"TracerPid:\t{trace.pid}\n" in status(process))
            yield
        finally:
            trace.terminate()
            trace.wait(10)

    def strace(self, call, fault):
        return ["strace", "-y", "-o", self.path("trace.txt"), "-e", f"trace={call}",
                "-e", f"inject={call}:{fault}"]

    def trace(self):
        with open(self.path("trace.txt"), encoding="utf-8", errors="replace") as file:
            return file.read()

    def refused(self):
        """Whether it was a file of the history: -y has named it."""
        return any("history.vntl" in line and "(INJECTED)" in line
                   for line in self.trace().splitlines())


def status(process):
    with open(f"/proc/{process}/status", encoding="utf-8") as file:
        return file.read()


class Disk(unittest.TestCase):
    """Whole lives of the store on a disk that is recorded: see DiskFaultsTest.cpp."""

    PROGRAM = os.path.join(os.path.dirname(__file__), "..", "..", "build", "asan",
                           "disk_faults_test")

    def test_no_power_failure_and_no_failed_step_costs_what_was_saved(self):
        with tempfile.TemporaryDirectory() as directory:
            figures = os.path.join(directory, "figures.json")
            subprocess.run([self.PROGRAM, "--gtest_brief=1", f"--gtest_output=json:{figures}"],
                           env={**os.environ, "VANTOREL_LIVES": str(LIVES)}, check=True)
            with open(figures, encoding="utf-8") as file:
                suite, = json.load(file)["testsuites"]
        told = {key: int(value) for test in suite["testsuite"] for key, value in test.items()
                if key in ("starts", "failures")}
        Trials().note("power lost after every change of the disk, with any part of what was not "
                      "brought to it", f"{told['starts']:,} starts after {LIVES:,} lives",
                      "the list before or after, every picture", "")
        Trials().note("every step of the disk failing once (full, quota, read-only, error, half a "
                      "file)", f"{told['failures']:,} failures in {LIVES:,} lives",
                      "everything that was saved, and all of it once the disk works", "")


if __name__ == "__main__":
    unittest.main()
