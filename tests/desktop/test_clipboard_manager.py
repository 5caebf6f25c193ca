# SPDX-License-Identifier: MIT
"""Programs that clear the clipboard as they end, and programs that take it over."""

import os
import subprocess
import sys
import unittest

from harness import applications
from harness.case import VantorelTestCase
from harness.waiting import stays_true, wait_for

_ENDING = os.path.join(os.path.dirname(__file__), "harness", "ending_owner_process.py")


class EndingProgram:
    """A program that copies, and ends when it is told to."""

    def __init__(self, desktop, *arguments):
        self.process = desktop.start("ending", [sys.executable, _ENDING, *arguments],
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._hear("owned")

    def end(self):
        """Has it end, and answers what it said meanwhile."""
        said, _ = self.process.communicate("end\n", timeout=30)
        return said.split()

    def _hear(self, word):
        heard = self.process.stdout.readline().strip()
        if heard != word:
            raise AssertionError(f"it said {heard!r}")


class ClipboardManager(VantorelTestCase):
    def _expect_kept(self, text):
        wait_for("the contents to be kept", lambda: self.clipboard.text() == text)
        stays_true("the contents to be kept", lambda: self.clipboard.owner() != 0, 0.5)
        self.assertEqual(self.vantorel.history.texts(), [text])

    def _expect_empty(self):
        wait_for("an empty clipboard", lambda: self.clipboard.owner() == 0)
        stays_true("an empty clipboard", lambda: self.clipboard.owner() == 0, 1)

    def test_what_a_toolkit_stores_and_clears_as_it_ends_is_pasted_afterwards(self):
        program = EndingProgram(self.desktop, "--toolkit", "from a toolkit")
        self.vantorel.wait_for_newest("from a toolkit")
        self.assertEqual(program.end(), ["cleared"])
        self._expect_kept("from a toolkit")
        target = applications.qt_editor(self.desktop, self.path("target.txt"))
        target.to_front()
        target.paste()
        target.wait_for_text("from a toolkit")

    def test_what_is_saved_survives_that_its_owner_clears_the_clipboard(self):
        program = EndingProgram(self.desktop, "--offer", "UTF8_STRING=rich",
                                "--offer", "text/html=<b>rich</b>")
        self.vantorel.wait_for_newest("rich")
        self.assertEqual(program.end(), ["saved", "cleared"])
        self._expect_kept("rich")
        self.assertEqual(self.clipboard.read("text/html"), b"<b>rich</b>")

    def test_one_that_ends_at_once_is_saved_too(self):
        program = EndingProgram(self.desktop, "--offer", "UTF8_STRING=in a hurry")
        self.assertEqual(program.end(), ["saved", "cleared"])
        self._expect_kept("in a hurry")

    def test_what_is_cleared_without_asking_stays_cleared(self):
        program = EndingProgram(self.desktop, "--offer", "UTF8_STRING=on purpose", "--unasked")
        self.vantorel.wait_for_newest("on purpose")
        self.assertEqual(program.end(), ["cleared"])
        self._expect_empty()

    def test_what_privacy_ignores_is_refused_and_gone(self):
        self.vantorel.copy("captured earlier")
        program = EndingProgram(self.desktop, "--offer", "UTF8_STRING=secret",
                                "--offer", "x-kde-passwordManagerHint=secret")
        self.assertEqual(program.end(), ["refused", "cleared"])
        self._expect_empty()
        self.assertEqual(self.vantorel.history.texts(), ["captured earlier"])


class Takeover(VantorelTestCase):
    def test_a_text_that_is_taken_over_after_a_paste_stays_what_it_was(self):
        owner = self.clipboard.own(offers={"UTF8_STRING": b"rich", "text/html": b"<b>rich</b>"})
        self.vantorel.wait_for_newest("rich")
        source = self.vantorel.newest().get("sourceAppName")
        self.vantorel.copy("newer")
        owner.stop()
        terminal = applications.Terminal(self.desktop, self.path("typed.txt"))
        terminal.to_front()
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Return")
        terminal.wait_for_text("rich")
        agent = self.clipboard.own(offers={"UTF8_STRING": b"rich"})
        agent.wait_until_asked("UTF8_STRING")
        stays_true("the order", lambda: self.vantorel.history.texts() == ["newer", "rich"], 1)
        entry = self.vantorel.history.items()[1]
        self.assertTrue(entry.get("htmlData"))
        self.assertEqual(entry.get("sourceAppName"), source)


if __name__ == "__main__":
    unittest.main()
