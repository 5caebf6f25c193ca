# SPDX-License-Identifier: MIT
"""What keeps the history from its work is seen for as long as it lasts."""

import os
import unittest

from harness.case import VantorelTestCase
from harness.history import text_item
from harness.keyring import KeyringState
from harness.notifications import NotificationService
from harness.small_disk import small_disk
from harness.tray import Tray
from harness.vantorel import STORAGE_NOTICE
from harness.waiting import stays_true

NOTHING = "Vantorel records nothing"


class TroubleTestCase(VantorelTestCase):
    autostart = False

    def setUp(self):
        super().setUp()
        self.notifications = NotificationService(self.desktop)
        self.tray = Tray(self.desktop)

    def start_in_trouble(self, tool_tip):
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        self.tray.wait_for_tool_tip(tool_tip)
        return self.notifications.wait_for_title(NOTHING)


class WithoutKeyring(TroubleTestCase):
    desktop_options = {"keyring": KeyringState.ABSENT}

    def test_the_bar_the_desktop_and_the_terminal_say_so(self):
        message = self.start_in_trouble("Vantorel — Nothing Recorded: No Keyring")
        self.assertEqual(message["application"], "Vantorel")
        self.assertEqual(message["entry"], "com.vantorel.Vantorel")
        self.assertEqual(list(message["actions"].values()), ["Ask Me"])
        self.assertEqual(self.vantorel.log().count("nothing is recorded"), 1)

    def test_quitting_takes_the_message_away(self):
        self.start_in_trouble("Vantorel — Nothing Recorded: No Keyring")
        self.assertEqual(self.vantorel.quit(), 0)
        self.notifications.wait_until_empty()


class LateNotifications(VantorelTestCase):
    """A desktop whose notification service comes after the trouble."""

    autostart = False
    desktop_options = {"keyring": KeyringState.ABSENT}

    def start_in_trouble(self):
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)

    def test_one_that_comes_later_shows_it_once(self):
        self.start_in_trouble()
        first = NotificationService(self.desktop)
        first.wait_for_title(NOTHING)
        first.stop()
        second = NotificationService(self.desktop)
        stays_true("nothing is said again", lambda: not second.shown(), 2)

    def test_one_that_comes_when_all_is_well_shows_nothing(self):
        self.start_in_trouble()
        self.desktop.keyring.start(KeyringState.UNLOCKED, self.desktop.env)
        self.vantorel.wait_until_capturing()
        service = NotificationService(self.desktop)
        stays_true("nothing is said", lambda: not service.shown(), 2)

    def test_a_bus_that_comes_back_shows_it_again(self):
        NotificationService(self.desktop)
        self.vantorel.start(capturing=False, accessible=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        self.desktop.bus.stop()
        self.desktop.bus.start(self.desktop.env)
        self.vantorel.wait_until_on_bus()
        NotificationService(self.desktop).wait_for_title(NOTHING)


class WithoutItsKey(TroubleTestCase):
    """A sealed history, and a keyring that knows nothing of it."""

    KEY = os.urandom(32)

    def start_without_the_key(self):
        self.vantorel.history.write([text_item("old")], key=self.KEY)
        message = self.start_in_trouble("Vantorel — Nothing Recorded: The Key Is Missing")
        self.assertEqual(self.desktop.keyring.item_count(), 0)
        return message

    def test_it_is_used_when_it_is_there(self):
        self.start_without_the_key()
        self.desktop.keyring.store(self.KEY)
        self.tray.wait_for_tool_tip("Vantorel")
        self.notifications.wait_until_empty()
        self.vantorel.copy("recorded again")
        self.assertEqual(self.vantorel.history.texts(), ["recorded again", "old"])
        self.assertEqual(self.desktop.keyring.key(), self.KEY)

    def test_the_notification_begins_a_new_one_under_a_new_key(self):
        message = self.start_without_the_key()
        before = self.vantorel.history.raw()
        self.notifications.press(message)
        self.tray.wait_for_tool_tip("Vantorel")
        self.notifications.wait_until_empty()
        self.vantorel.copy("recorded again")
        self.assertEqual(self.vantorel.history.texts(), ["recorded again"])
        self.assertEqual(self.desktop.keyring.item_count(), 1)
        kept, = [name for name in os.listdir(self.vantorel.history.directory)
                 if name.startswith("history.vntl.")]
        with open(os.path.join(self.vantorel.history.directory, kept), "rb") as file:
            self.assertEqual(file.read(), before)


class OfAnotherKey(TroubleTestCase):
    def setUp(self):
        super().setUp()
        self.desktop.keyring.store(os.urandom(32))

    def test_a_history_that_does_not_open_is_named(self):
        self.vantorel.history.write([text_item("old")], key=os.urandom(32))
        message = self.start_in_trouble(
            "Vantorel — Nothing Recorded: The History Cannot Be Opened")
        self.assertIn("set it aside", message["body"])
        self.assertIn("--new-history", self.vantorel.log())


    def test_the_notification_begins_a_new_one(self):
        self.vantorel.history.write([text_item("old")], key=os.urandom(32))
        before = self.vantorel.history.raw()
        self.notifications.press(self.start_in_trouble(
            "Vantorel — Nothing Recorded: The History Cannot Be Opened"))
        self.tray.wait_for_tool_tip("Vantorel")
        self.notifications.wait_until_empty()
        self.vantorel.copy("recorded again")
        kept, = [name for name in os.listdir(self.vantorel.history.directory)
                 if name.startswith("history.vntl.")]
        with open(os.path.join(self.vantorel.history.directory, kept), "rb") as file:
            self.assertEqual(file.read(), before)


class NotSaved(TroubleTestCase):
    def test_it_is_said_until_it_is_saved(self):
        disk = small_disk(self.vantorel)
        self.addCleanup(disk.remove)
        self.vantorel.start()
        disk.limit(self.vantorel.process.pid, 1024 * 1024)
        self.vantorel.copy("saved in time")
        self.clipboard.copy("0123456789abcdef" * (4 * 1024 * 1024 // 16))
        self.tray.wait_for_tool_tip("Vantorel — The History Cannot Be Saved")
        self.notifications.wait_for_title("Vantorel cannot save its history")
        disk.widen(self.vantorel.process.pid)
        self.tray.wait_for_tool_tip("Vantorel")
        self.notifications.wait_until_empty()


class WithoutTrouble(TroubleTestCase):
    def test_nothing_is_said(self):
        self.vantorel.start()
        self.tray.wait_for_tool_tip("Vantorel")
        self.vantorel.copy("a text")
        self.assertEqual(self.notifications.shown(), [])
        self.assertNotIn("nothing is recorded", self.vantorel.log())


if __name__ == "__main__":
    unittest.main()
