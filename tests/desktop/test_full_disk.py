# SPDX-License-Identifier: MIT
"""A disk without room: what was saved stays whole, and saving goes on when there is room."""

import os
import unittest

from harness.case import VantorelTestCase
from harness.small_disk import small_disk
from harness.waiting import stays_true, wait_for

TOO_BIG = "0123456789abcdef" * (4 * 1024 * 1024 // 16)


class FullDisk(VantorelTestCase):
    autostart = False

    def setUp(self):
        super().setUp()
        self.disk = small_disk(self.vantorel)
        self.addCleanup(self.disk.remove)
        self.vantorel.start()
        self.disk.limit(self.vantorel.process.pid, 1024 * 1024)
        self.vantorel.copy("saved in time")

    def test_the_saved_history_stays_whole_and_the_program_runs_on(self):
        before = self.vantorel.history.raw()
        self.clipboard.copy(TOO_BIG)
        self.vantorel.open_panel()
        wait_for("both entries in the panel", lambda: len(self.vantorel.rows()) == 2)
        self.assertEqual(self.vantorel.history.raw(), before)
        self.assertEqual(self.vantorel.history.texts(), ["saved in time"])

    def test_saving_goes_on_when_there_is_room_again(self):
        self.clipboard.copy(TOO_BIG)
        self.vantorel.open_panel()
        wait_for("both entries in the panel", lambda: len(self.vantorel.rows()) == 2)
        self.vantorel.press_shortcut()
        self.disk.widen(self.vantorel.process.pid)
        self.vantorel.copy("saved again")
        self.vantorel.wait_for_texts(["saved again", TOO_BIG, "saved in time"])
        self.assertEqual(sorted(os.listdir(self.vantorel.history.directory)),
                         ["Assets", "history.vntl"])

    def test_a_failed_save_leaves_nothing_behind(self):
        self.clipboard.copy(TOO_BIG)
        self.vantorel.open_panel()
        wait_for("both entries in the panel", lambda: len(self.vantorel.rows()) == 2)
        stays_true("no remains", lambda: sorted(os.listdir(self.vantorel.history.directory)) ==
                   ["Assets", "history.vntl"], 0.3)


if __name__ == "__main__":
    unittest.main()
