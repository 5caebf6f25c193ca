# SPDX-License-Identifier: MIT
"""The short sentences at the top of the screen."""

import os
import time
import unittest

from harness import applications
from harness.case import VantorelTestCase
from harness.vantorel import GONE_NOTICE, NO_TARGET_NOTICE
from harness.waiting import wait_for
from harness.windows import Frame


class Notices(VantorelTestCase):
    def _paste_without_target(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")
        return self.vantorel.wait_for_notice(NO_TARGET_NOTICE)

    def test_a_notice_stands_at_the_top_in_the_middle(self):
        self.vantorel.copy("text")
        notice = self._paste_without_target()
        self.assertEqual(self.desktop.windows.frame(notice), Frame((1280 - 300) // 2, 30, 300, 48))

    def test_a_notice_goes_by_itself_after_two_seconds(self):
        self.vantorel.copy("text")
        self._paste_without_target()
        began = time.monotonic()
        self.desktop.windows.wait_gone(NO_TARGET_NOTICE)
        self.assertGreater(time.monotonic() - began, 1.5)

    def test_a_notice_takes_no_keys_and_no_clicks(self):
        editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        path = self.file("soon gone.txt")
        self.clipboard.own(offers={"text/uri-list": b"file://" + path.replace(" ", "%20").encode()})
        wait_for("an entry of files", self.vantorel.newest)
        os.remove(path)
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")
        notice = self.vantorel.wait_for_notice(GONE_NOTICE)
        self.desktop.windows.wait_active(editor.window)
        self.desktop.keyboard.type("typed meanwhile")
        editor.wait_for_text("typed meanwhile")
        frame = self.desktop.windows.frame(notice)
        self.desktop.pointer.click(frame.x + 20, frame.y + 20)
        self.desktop.keyboard.type(" on")
        editor.wait_for_text("typed meanwhile on")

    def test_a_notice_is_read_out(self):
        # A reader is there before the program: the toolkit learns late of one that comes.
        self.assertEqual(self.vantorel.quit(), 0)
        reader = self.vantorel.accessibility
        reader.notified()
        self.vantorel.start()
        self.vantorel.copy("text")
        self._paste_without_target()
        said = []
        wait_for("a reader to be told of the notice",
                 lambda: said.extend(reader.notified()) or said, 20)
        self.assertEqual(said, [NO_TARGET_NOTICE])


if __name__ == "__main__":
    unittest.main()
