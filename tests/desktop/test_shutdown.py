# SPDX-License-Identifier: MIT
"""Each way in which the program comes to its end: quickly, and with everything left as it was."""

import os
import signal
import time
import unittest

from harness.history import unseal
from harness.session_manager import SessionManager
from harness.tray_case import TrayTestCase
from harness.waiting import PATIENCE, wait_for

LONGEST = 1.0  # seconds
NEVER = 3  # how a program says that a saved session need not start it


class Shutdown(TrayTestCase):
    def start_program(self):
        super().start_program()
        self.tray.click("Launch at Login")
        self.vantorel.wait_for_notice("Vantorel will launch at login.")
        self.vantorel.copy("the last one")
        self.key = self.desktop.keyring.key()
        self.entry = self.read_autostart_entry()
        self.settings = self.vantorel.defaults()

    def ends(self, end):
        """Ends the program by `end` and answers its exit status."""
        began = time.monotonic()
        end()
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        self.assertLess(time.monotonic() - began, LONGEST * PATIENCE)
        status = self.vantorel.process.returncode
        self.vantorel.process = None
        return status

    def assert_all_is_there(self, with_keyring=True):
        self.assertEqual(self.read_autostart_entry(), self.entry)
        self.assertEqual(self.vantorel.defaults(), self.settings)
        self.assertIn(b"the last one", unseal(self.key, self.vantorel.history.raw()))
        left = [name for name in os.listdir(self.vantorel.history.directory)
                if name.endswith(".tmp")]
        self.assertEqual(left, [])
        if with_keyring:
            self.assertEqual(self.desktop.keyring.key(), self.key)
            self.assertEqual(self.desktop.keyring.item_count(), 1)

    def test_by_the_menu(self):
        self.assertEqual(self.ends(lambda: self.tray.click("Quit Vantorel")), 0)
        self.assert_all_is_there()

    def test_by_the_menu_with_every_window_open(self):
        for row in ("Keyboard Shortcut…", "About Vantorel", "Clear History…", "Open Vantorel"):
            self.tray.click(row)
        self.vantorel.wait_for_panel()
        self.assertEqual(self.ends(lambda: self.tray.click("Quit Vantorel")), 0)
        self.assert_all_is_there()

    def test_by_signals(self):
        for sign in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(sign):
                pid = self.vantorel.process.pid
                self.assertEqual(self.ends(lambda pid=pid, sign=sign: os.kill(pid, sign)), 0)
                self.assert_all_is_there()
                self.vantorel.start()

    def test_by_signals_one_upon_the_other(self):
        pid = self.vantorel.process.pid

        def twice():
            os.kill(pid, signal.SIGTERM)
            os.kill(pid, signal.SIGINT)
        self.assertEqual(self.ends(twice), 0)
        self.assert_all_is_there()

    def test_while_the_keyring_is_silent(self):
        self.desktop.keyring.suspend()
        pid = self.vantorel.process.pid
        self.assertEqual(self.ends(lambda: os.kill(pid, signal.SIGTERM)), 0)
        self.desktop.keyring.resume()
        self.assert_all_is_there()

    def test_while_the_bus_is_silent(self):
        os.kill(self.desktop.bus.process.pid, signal.SIGSTOP)
        pid = self.vantorel.process.pid
        self.assertEqual(self.ends(lambda: os.kill(pid, signal.SIGTERM)), 0)
        os.kill(self.desktop.bus.process.pid, signal.SIGCONT)
        self.assert_all_is_there()

    def test_by_the_end_of_the_session(self):
        for shown in ([], ["Keyboard Shortcut…", "About Vantorel", "Clear History…",
                           "Open Vantorel"]):
            with self.subTest(shown=shown):
                self.vantorel.quit()
                session = SessionManager(self.desktop)
                self.vantorel.start()
                session.wait_for("registered")
                session.wait_for("saved")
                self.tray.wait_for_item()
                for row in shown:
                    self.tray.click(row)
                if shown:
                    self.vantorel.wait_for_panel()
                self.assertEqual(self.ends(session.end), 0)
                told = session.wait_for("left")
                self.assertIn({"event": "saved", "success": True}, told)
                self.assertIn({"event": "restarts", "style": NEVER}, told)
                self.assert_all_is_there()
                self.vantorel.start()

    def test_by_the_end_of_the_x_server(self):
        self.desktop.display.close()
        self.desktop.display = None
        status = self.ends(lambda: os.kill(self.desktop.x_server.pid, signal.SIGKILL))
        self.assertGreaterEqual(status, 0, "it crashed")
        self.assert_all_is_there()


if __name__ == "__main__":
    unittest.main()
