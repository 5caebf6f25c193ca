# SPDX-License-Identifier: MIT
"""A locked screen: nothing is shown above it, recorded behind it or typed into it."""

import os
import signal
import unittest

from harness import applications
from harness.case import VantorelTestCase
from harness.screen_lock import ScreenLock, start_system_bus
from harness.waiting import stays_true, wait_for


class ScreenSavers(VantorelTestCase):
    autostart = False

    def setUp(self):
        super().setUp()
        self.saver = ScreenLock(self.desktop, "org.gnome.ScreenSaver")
        self.vantorel.start()

    def wait_until_heard(self):
        """What is asked of the program comes behind all that the session bus told it."""
        self.assertEqual(self.vantorel.command("--background").returncode, 0)

    def test_the_panel_goes_and_none_comes(self):
        self.vantorel.copy("a text")
        self.vantorel.open_panel()
        self.saver.lock()
        self.vantorel.wait_until_hidden()
        self.vantorel.press_shortcut()
        for command in ("--toggle", "--search", "--menu", "--shortcut", "--about", "--clear"):
            self.vantorel.command(command)
        stays_true("no window above the lock", lambda: not self.own_windows(), 0.8)
        self.saver.unlock()
        self.wait_until_heard()
        stays_true("no window", lambda: not self.own_windows(), 0.8)
        self.vantorel.open_panel()

    def own_windows(self):
        return [title for title in self.desktop.windows.titles()
                if "Vantorel" in title or title in ("Keyboard Shortcut", "Clear Clipboard History?")]

    def test_what_is_copied_behind_the_lock_is_not_read(self):
        self.vantorel.copy("before")
        self.saver.lock()
        self.wait_until_heard()
        owners = [self.clipboard.own(offers={"UTF8_STRING": f"behind {number}".encode()})
                  for number in range(2)]
        self.saver.unlock()
        self.wait_until_heard()
        stays_true("nothing read", lambda: not owners[1].contents_requested(), 0.8)
        self.vantorel.copy("after")
        self.assertEqual([owner.contents_requested() for owner in owners], [[], []])
        self.assertEqual(self.vantorel.history.texts(), ["after", "before"])

    def test_a_paste_that_waits_for_its_target_is_not_typed_into_the_lock(self):
        self.vantorel.copy("a secret")
        terminal = applications.Terminal(self.desktop, self.path("typed.txt"))
        self.vantorel.open_panel()
        # Nobody brings the target to the front, so that the paste waits.
        manager = self.desktop.window_manager.process
        os.kill(manager.pid, signal.SIGSTOP)
        self.addCleanup(os.kill, manager.pid, signal.SIGCONT)
        self.desktop.keyboard.tap("Return")
        self.vantorel.wait_until_hidden()
        self.saver.lock()
        self.wait_until_heard()
        os.kill(manager.pid, signal.SIGCONT)
        stays_true("nothing typed", lambda: not terminal.text(), 1.5)
        self.assertEqual(self.clipboard.text(), "a secret", "the paste had not begun")

    def test_a_saver_that_dies_locked_does_not_keep_the_program_shut(self):
        self.saver.lock()
        self.wait_until_heard()
        self.saver.stop()
        self.vantorel.wait_until_capturing()
        self.vantorel.open_panel()


class LogInManager(VantorelTestCase):
    autostart = False

    def test_its_hint_is_followed(self):
        manager = ScreenLock(self.desktop, "org.freedesktop.login1",
                             start_system_bus(self.desktop))
        self.vantorel.start()
        self.vantorel.copy("before")
        self.vantorel.open_panel()
        manager.lock()
        self.vantorel.wait_until_hidden()
        owner = self.clipboard.own(offers={"UTF8_STRING": b"behind"})
        manager.unlock()

        def opens():
            self.vantorel.command("--search")
            return self.vantorel.panel()

        wait_for("the panel", opens)
        self.vantorel.copy("after")
        self.assertEqual(owner.contents_requested(), [])
        self.assertEqual(self.vantorel.history.texts(), ["after", "before"])


if __name__ == "__main__":
    unittest.main()
