# SPDX-License-Identifier: MIT
"""What is used again and again must cost nothing more each time."""

import os
import re
import unittest

import gi
from Xlib import X

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402  (the version has to be named first)

from harness.panel_case import PanelTestCase
from harness.waiting import wait_for

SHOWINGS = 1000
WARM_UP = 100
MOST_GROWTH_KB = 1024


class Showings(PanelTestCase):
    def setUp(self):
        super().setUp()
        self.bus = Gio.DBusConnection.new_for_address_sync(
            self.desktop.bus.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self.window = self.vantorel.open_panel()
        self._toggle(X.IsUnmapped)

    def _toggle(self, state):
        """Asks for the panel to be shown or hidden and waits until it is."""
        self.bus.call_sync("com.vantorel.Vantorel", "/com/vantorel/Vantorel",
                           "org.freedesktop.Application", "ActivateAction",
                           GLib.Variant("(sava{sv})", ("toggle", [], {})), None,
                           Gio.DBusCallFlags.NONE, 20000, None)
        wait_for("the panel's other state",
                 lambda: self.window.get_attributes().map_state == state)

    def _show(self, times):
        for _ in range(times):
            self._toggle(X.IsViewable)
            self._toggle(X.IsUnmapped)

    def _memory_kb(self):
        with open(f"/proc/{self.vantorel.process.pid}/smaps_rollup", encoding="ascii") as file:
            return int(re.search(r"^Private_Dirty:\s+(\d+)", file.read(), re.MULTILINE)[1])

    def _open_files(self):
        return len(os.listdir(f"/proc/{self.vantorel.process.pid}/fd"))

    def _threads(self):
        return len(os.listdir(f"/proc/{self.vantorel.process.pid}/task"))

    def test_a_thousand_showings_leave_nothing_behind(self):
        self._show(WARM_UP)
        memory, files, threads = self._memory_kb(), self._open_files(), self._threads()
        self._show(SHOWINGS)
        self.assertLess(self._memory_kb() - memory, MOST_GROWTH_KB)
        self.assertLessEqual(self._open_files(), files)
        self.assertLessEqual(self._threads(), threads)


if __name__ == "__main__":
    unittest.main()
