# SPDX-License-Identifier: MIT
"""What tests of the program in Wayland sessions share."""

import time

from .case import VantorelTestCase
from .waiting import wait_for
from .wayland_devices import WaylandKeyboard
from .wayland_wire import Wire


class WaylandTestCase(VantorelTestCase):
    autostart = False

    def start(self):
        """Starts the program and copies until it takes notice."""
        self.vantorel.start(capturing=False)
        attempts = []

        def noticed():
            if not attempts or time.monotonic() - attempts[-1] > 0.6:
                attempts.append(time.monotonic())
                self.desktop.copy(f"attempt {len(attempts)}")
            return self.vantorel.history.texts()

        wait_for("the program to capture", noticed)


class PastingTestCase(WaylandTestCase):
    """The program runs, and so does a keyboard."""

    def setUp(self):
        super().setUp()
        self.keys = self.plug_in("us")
        self.start()

    def plug_in(self, layout):
        wire = Wire(self.desktop.env)
        self.addCleanup(wire.close)
        return WaylandKeyboard(wire, layout)

    def copy(self, *texts):
        for text in texts:
            self.desktop.copy(text)
            self.vantorel.wait_for_newest(text)

    def choose(self, *keys):
        """Opens the panel and chooses in it."""
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        for key in keys:
            self.keys.chord(key)
