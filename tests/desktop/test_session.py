# SPDX-License-Identifier: MIT
"""Which window system the program finds, and what it does where there is none."""

import os
import socket
import unittest

from harness.case import VantorelTestCase
from harness.vantorel import program_path


class Surroundings(VantorelTestCase):
    autostart = False

    def test_without_any_window_system_it_says_so_and_ends_in_order(self):
        for arguments in ([], ["--toggle"]):
            done = self.desktop.run([program_path(), *arguments], {"DISPLAY": ":4711"})
            self.assertEqual(done.returncode, 1)
            self.assertEqual(done.stderr.decode(), "vantorel: no X server answers. Start it in "
                                                   "an X11 session, or with Xwayland.\n")

    def test_a_compositor_that_is_gone_is_none(self):
        dead = os.path.join(self.desktop.runtime, "wayland-7")
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(dead)
        self.desktop.env["WAYLAND_DISPLAY"] = "wayland-7"
        self.vantorel.start()
        self.vantorel.open_panel()

    def test_a_compositor_that_says_nothing_is_none(self):
        silent = os.path.join(self.desktop.runtime, "wayland-8")
        listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(listener.close)
        listener.bind(silent)
        listener.listen()
        self.desktop.env["WAYLAND_DISPLAY"] = "wayland-8"
        self.vantorel.start()
        self.vantorel.open_panel()

    def test_the_users_choice_of_a_toolkit_platform_is_not_this_desktops(self):
        for platform in ("wayland", "offscreen", "nonsense"):
            with self.subTest(platform):
                self.desktop.env["QT_QPA_PLATFORM"] = platform
                self.vantorel.start()
                self.vantorel.open_panel()
                self.assertEqual(self.vantorel.quit(), 0)


if __name__ == "__main__":
    unittest.main()
