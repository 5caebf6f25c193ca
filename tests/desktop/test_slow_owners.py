# SPDX-License-Identifier: MIT
"""Owners of the clipboard that take their time: what was copied is kept, and as what it is."""

import unittest

from harness import pictures
from harness.case import VantorelTestCase
from harness.waiting import stays_true, wait_for
from harness.wayland_case import on_sway

A_WHILE = 0.4
PATIENCE_OF_THE_PROGRAM = 5


class SlowOwners(VantorelTestCase):
    def _newest(self, kind):
        return wait_for("an entry", lambda: (entry := self.vantorel.newest()) and entry["kind"] == kind
                        and entry, describe=self.vantorel.newest)

    def test_a_slow_text_beside_a_picture_is_a_text(self):
        self.clipboard.own(offers={"UTF8_STRING": b"cells", "image/png": pictures.png(8, 8)},
                           delays={"UTF8_STRING": A_WHILE})
        self.vantorel.wait_for_newest("cells")
        self.assertEqual(self.vantorel.history.kinds(), ["text"])

    def test_slow_files_beside_a_text_are_files(self):
        path = self.file("slow.txt", contents=b"slow")
        self.clipboard.own(offers={"text/uri-list": b"file://" + path.encode() + b"\r\n",
                                   "UTF8_STRING": path.encode()},
                           delays={"text/uri-list": A_WHILE})
        self.assertEqual(self._newest("files")["filePaths"], [path])
        self.assertEqual(self.vantorel.history.kinds(), ["files"])

    def test_a_slow_rich_form_is_kept(self):
        self.clipboard.own(offers={"UTF8_STRING": b"rich", "text/html": b"<b>rich</b>"},
                           delays={"text/html": A_WHILE})
        self.vantorel.wait_for_newest("rich")
        self.assertTrue(self.vantorel.newest().get("htmlData"))

    def test_a_slow_list_of_forms_is_waited_for(self):
        self.clipboard.own(offers={"UTF8_STRING": b"late list"}, delays={"TARGETS": A_WHILE})
        self.vantorel.wait_for_newest("late list")

    def test_a_picture_does_not_stand_for_a_text_that_never_comes(self):
        owner = self.clipboard.own(offers={"UTF8_STRING": b"cells", "image/png": pictures.png(8, 8)},
                                   delays={"UTF8_STRING": None})
        owner.wait_until_asked("UTF8_STRING")
        stays_true("an empty history", lambda: self.vantorel.history.kinds() == [],
                   PATIENCE_OF_THE_PROGRAM + 1)
        self.vantorel.copy("the next copy")
        self.assertEqual(owner.contents_requested(), ["UTF8_STRING"])


SlowOwnersOnSway, = on_sway(SlowOwners)


if __name__ == "__main__":
    unittest.main()
