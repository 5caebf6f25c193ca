# SPDX-License-Identifier: MIT
"""Copy, close the application, paste."""

import unittest

from harness import applications
from harness.case import VantorelTestCase
from harness.waiting import stays_true, wait_for


class OwnerExit(VantorelTestCase):
    def test_what_was_copied_is_pasted_after_its_application_was_closed(self):
        source = applications.gtk_editor(self.desktop, self.path("source.txt"), "outlives its owner")
        target = applications.qt_editor(self.desktop, self.path("target.txt"))
        source.to_front()
        source.select_all_and_copy()
        self.vantorel.wait_for_newest("outlives its owner")
        source.close()
        wait_for("the clipboard to be kept", lambda: self.clipboard.text() == "outlives its owner")
        target.to_front()
        target.paste()
        target.wait_for_text("outlives its owner")
        self.assertEqual(self.vantorel.history.texts(), ["outlives its owner"])

    def test_every_form_of_it_is_kept(self):
        owner = self.clipboard.own(offers={"UTF8_STRING": b"rich", "text/html": b"<b>rich</b>"})
        self.vantorel.wait_for_newest("rich")
        owner.stop()
        wait_for("the rich form", lambda: self.clipboard.read("text/html") == b"<b>rich</b>")

    def test_what_was_ignored_is_not_kept(self):
        self.vantorel.copy("captured earlier")
        owner = self.clipboard.own(offers={"UTF8_STRING": b"secret",
                                           "x-kde-passwordManagerHint": b"secret"})
        owner.wait_until_asked("TARGETS")
        owner.stop()
        wait_for("an empty clipboard", lambda: self.clipboard.owner() == 0)
        stays_true("an empty clipboard", lambda: self.clipboard.owner() == 0, 1)

    def test_what_its_owner_cleared_stays_cleared(self):
        self.vantorel.copy("cleared on purpose")
        self.clipboard.disown()
        wait_for("an empty clipboard", lambda: self.clipboard.owner() == 0)
        stays_true("an empty clipboard", lambda: self.clipboard.owner() == 0, 1)

    def test_a_successor_is_left_alone(self):
        first = self.clipboard.own(offers={"UTF8_STRING": b"first"})
        self.vantorel.wait_for_newest("first")
        second = self.clipboard.own(offers={"UTF8_STRING": b"second"})
        self.vantorel.wait_for_newest("second")
        first.stop()
        stays_true("the second to own it", lambda: not second.lost(), 0.5)


if __name__ == "__main__":
    unittest.main()
