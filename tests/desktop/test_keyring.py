# SPDX-License-Identifier: MIT
"""Keyrings that cannot be used: nothing is created, nothing is written, everything else works."""

import json
import os
import sys
import time
import unittest

import harness

from harness.case import VantorelTestCase
from harness.history import seal, text_item
from harness.keepassxc import KeePassXc
from harness.keyring import KeyringState
from harness.vantorel import STORAGE_NOTICE
from harness.waiting import stays_true, wait_for

KEY = bytes(range(32))
_SLOW_BUS = os.path.join(os.path.dirname(harness.__file__), "slow_bus_process.py")


class KeyringTestCase(VantorelTestCase):
    autostart = False

    def start_and_expect_the_notice(self):
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)

    def expect_panel_and_no_capture(self):
        owner = self.clipboard.own(offers={"UTF8_STRING": b"not to be captured"})
        self.vantorel.open_panel()
        stays_true("nothing read", lambda: not owner.contents_requested(), 0.5)
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()

    def expect_capture(self, limit=20):
        """The keyring has come: what is copied now is kept under the key that lies there."""
        wait_for("capturing", self.copied_text_is_saved, limit)
        self.assertEqual(self.desktop.keyring.item_count(), 1)

    def copied_text_is_saved(self):
        self.clipboard.copy("after the keyring came")
        key = self.desktop.keyring.key()
        return (key is not None and self.vantorel.history.exists()
                and _opens_with(self.vantorel.history, key, "after the keyring came"))

    def expect_no_file(self):
        self.assertFalse(self.vantorel.history.exists())
        files = [name for _, _, names in os.walk(self.vantorel.history.directory)
                 for name in names]
        self.assertEqual(files, [])


class Locked(KeyringTestCase):
    def test_the_key_stays_and_the_history_stays(self):
        sealed = seal(KEY, json.dumps([text_item("behind the lock")]).encode())
        self.desktop.keyring.store(KEY)
        self.desktop.keyring.lock()
        self.vantorel.history.write_raw(sealed)
        self.start_and_expect_the_notice()
        self.expect_panel_and_no_capture()
        self.assertEqual(self.vantorel.quit(), 0)
        self.assertEqual(self.desktop.keyring.item_count(), 1)
        self.assertEqual(self.vantorel.history.raw(), sealed)

    def test_no_key_is_created_on_an_empty_one(self):
        self.desktop.keyring.lock()
        self.start_and_expect_the_notice()
        self.expect_panel_and_no_capture()
        self.assertEqual(self.desktop.keyring.item_count(), 0)
        self.expect_no_file()


class Absent(KeyringTestCase):
    desktop_options = {"keyring": KeyringState.ABSENT}

    def test_nothing_is_written_and_the_panel_works(self):
        self.start_and_expect_the_notice()
        self.expect_panel_and_no_capture()
        self.expect_no_file()

    def test_one_that_comes_later_is_used(self):
        self.start_and_expect_the_notice()
        self.desktop.keyring.start(KeyringState.UNLOCKED, self.desktop.env)
        self.expect_capture()

    def test_one_that_comes_later_and_locked_is_used_when_it_is_unlocked(self):
        self.start_and_expect_the_notice()
        self.desktop.keyring.start(KeyringState.UNLOCKED, self.desktop.env)
        self.expect_capture()
        self.assertEqual(self.vantorel.quit(), 0)
        key = self.desktop.keyring.key()
        before = self.vantorel.history.raw()
        self.desktop.keyring.stop()
        self.start_and_expect_the_notice()
        self.desktop.keyring.start(KeyringState.NO_COLLECTION, self.desktop.env)
        wait_for("the locked collection", self.desktop.keyring.is_locked)
        stays_true("the history", lambda: self.vantorel.history.raw() == before, 2)
        self.desktop.keyring.unlock()
        self.expect_capture()
        self.assertEqual(self.desktop.keyring.key(), key)

    def test_the_history_of_its_key_is_read(self):
        self.desktop.keyring.start(KeyringState.UNLOCKED, self.desktop.env)
        self.desktop.keyring.store(KEY)
        self.desktop.keyring.stop()
        self.vantorel.history.write([text_item("from before")], key=KEY)
        self.start_and_expect_the_notice()
        self.desktop.keyring.start(KeyringState.UNLOCKED, self.desktop.env)
        self.expect_capture()
        self.assertEqual(self.desktop.keyring.key(), KEY)
        self.assertTrue(_opens_with(self.vantorel.history, KEY, "from before"))


class WithoutCollection(KeyringTestCase):
    desktop_options = {"keyring": KeyringState.NO_COLLECTION}

    def test_nothing_is_written_and_the_panel_works(self):
        self.start_and_expect_the_notice()
        self.expect_panel_and_no_capture()
        self.expect_no_file()
        self.assertEqual(self.desktop.keyring.item_count(), 0)

    def test_a_collection_that_is_made_later_is_used(self):
        self.start_and_expect_the_notice()
        self.desktop.keyring.make_default(self.desktop.keyring.create_collection())
        self.expect_capture()

    def test_a_collection_that_becomes_the_default_one_later_is_used(self):
        self.start_and_expect_the_notice()
        made = self.desktop.keyring.create_collection()
        stays_true("no file", lambda: not self.vantorel.history.exists(), 2)
        self.desktop.keyring.make_default(made)
        self.expect_capture()


class Stopped(KeyringTestCase):
    def test_it_is_given_up_in_seconds_and_used_when_it_answers_again(self):
        self.desktop.keyring.suspend()
        self.start_and_expect_the_notice()
        self.expect_panel_and_no_capture()
        self.expect_no_file()
        self.desktop.keyring.resume()
        self.expect_capture()

    def test_an_existing_key_and_history_stay(self):
        sealed = seal(KEY, json.dumps([text_item("behind the silence")]).encode())
        self.desktop.keyring.store(KEY)
        self.vantorel.history.write_raw(sealed)
        self.desktop.keyring.suspend()
        self.start_and_expect_the_notice()
        self.assertEqual(self.vantorel.quit(), 0)
        self.desktop.keyring.resume()
        wait_for("the same key", lambda: self.desktop.keyring.key() == KEY)
        self.assertEqual(self.desktop.keyring.item_count(), 1)
        self.assertEqual(self.vantorel.history.raw(), sealed)


class SlowBus(KeyringTestCase):
    """The bus lets programs join it late: the keyring behind it is used all the same."""

    def start_behind(self, whose, seconds):
        path = self.desktop.path("slow-bus")
        self.desktop.start("slow bus", [
            sys.executable, _SLOW_BUS, path,
            self.desktop.env["DBUS_SESSION_BUS_ADDRESS"].removeprefix("unix:path="), whose, str(seconds)])
        wait_for("the slow bus", lambda: os.path.exists(path))
        self.vantorel.launcher = ["env", f"DBUS_SESSION_BUS_ADDRESS=unix:path={path}"]
        self.vantorel.start(capturing=False)

    def test_the_colours_are_given_up_before_the_keyring(self):
        self.start_behind("each", 0.5)
        self.expect_capture()
        self.assertEqual(self.vantorel.log(), "")

    def test_one_that_takes_longer_than_a_keyring_may_is_joined_later(self):
        self.start_behind("first", 12)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        self.expect_capture(limit=40)


class Unlocked(KeyringTestCase):
    def test_one_key_is_created_and_used_ever_after(self):
        self.vantorel.start()
        key = self.desktop.keyring.key()
        self.vantorel.quit()
        self.vantorel.start()
        self.assertEqual(self.desktop.keyring.key(), key)
        self.assertEqual(self.desktop.keyring.item_count(), 1)

    def test_a_keyring_locked_while_running_does_not_stop_the_capture(self):
        self.vantorel.start()
        key = self.desktop.keyring.key()
        self.desktop.keyring.lock()
        self.clipboard.copy("after the lock")
        wait_for("a saved text", lambda: _opens_with(self.vantorel.history, key, "after the lock"))


class KeePassXcComesLater(KeyringTestCase):
    """A keyring that no bus starts: its user opens it when he likes."""

    desktop_options = {"keyring": KeyringState.ABSENT}

    def setUp(self):
        super().setUp()
        self.desktop.keyring.attach(self.desktop.env)
        self.keepassxc = KeePassXc(self.desktop)

    def start_before_the_keyring(self):
        self.start_and_expect_the_notice()
        self.keepassxc.start()
        self.vantorel.wait_until_capturing()

    def test_it_is_used_when_it_comes_and_holds_the_key_ever_after(self):
        self.start_before_the_keyring()
        self.copy_and_see("from the first start")
        self.assertEqual(self.desktop.keyring.item_count(), 1)
        self.assertEqual(self.vantorel.quit(), 0)
        self.keepassxc.stop()

        self.start_before_the_keyring()
        self.copy_and_see("from the second start", "from the first start")
        self.assertEqual(self.desktop.keyring.item_count(), 1)

    def copy_and_see(self, text, *older):
        self.clipboard.copy(text)
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows([text, *older])
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()


class Clearing(KeyringTestCase):
    """The keyring is asked for a new key while everything else goes on."""

    def clear_everything(self):
        self.vantorel.command("--clear")
        self.vantorel.clear_by_keys(pinned_too=True)

    def start_and_suspend_the_keyring(self):
        self.vantorel.start()
        self.vantorel.copy("before the clear")
        key = self.desktop.keyring.key()
        self.desktop.keyring.suspend()
        return key

    def copy_and_save(self, text, key):
        """While the keyring is silent it cannot be asked for the key."""
        self.clipboard.copy(text)
        history = self.vantorel.history
        wait_for("the saved text", lambda: history.exists() and _opens_with(history, key, text))

    def longest_answer(self):
        """Asks for the tray's status as often as it takes a silent keyring to be given up."""
        longest = 0
        end = time.monotonic() + 6
        while time.monotonic() < end:
            begin = time.monotonic()
            status = self.desktop.bus_call(
                "com.vantorel.Vantorel", "/StatusNotifierItem",
                "org.freedesktop.DBus.Properties.Get", "org.kde.StatusNotifierItem", "Status")
            self.assertIn("Active", status)
            longest = max(longest, time.monotonic() - begin)
        return longest

    def test_a_silent_keyring_stops_nothing(self):
        key = self.start_and_suspend_the_keyring()
        self.clear_everything()
        self.assertLess(self.longest_answer(), 1.5)
        self.copy_and_save("after the clear", key)
        self.desktop.keyring.resume()
        wait_for("the old key", lambda: self.desktop.keyring.key() == key)
        self.assertEqual(self.vantorel.history.texts(), ["after the clear"])

    def test_quitting_meanwhile_takes_no_time_and_loses_nothing(self):
        key = self.start_and_suspend_the_keyring()
        self.clear_everything()
        self.vantorel.wait_for_notice("All clipboard history cleared.")
        self.copy_and_save("after the clear", key)
        begin = time.monotonic()
        self.assertEqual(self.vantorel.quit(), 0)
        self.assertLess(time.monotonic() - begin, 1.5)
        self.desktop.keyring.resume()
        wait_for("the old key", lambda: self.desktop.keyring.key() == key)
        self.vantorel.start()
        self.assertEqual(self.vantorel.history.texts(), ["after the clear"])
        self.assertEqual(self.desktop.keyring.key(), key)

    def test_an_answering_keyring_has_the_new_key_and_the_history_is_sealed_with_it(self):
        self.vantorel.start()
        self.vantorel.copy("before the clear")
        old = self.desktop.keyring.key()
        self.clear_everything()
        wait_for("a new key", lambda: self.desktop.keyring.key() not in (None, old))
        self.vantorel.copy("after the clear")
        self.assertEqual(self.vantorel.quit(), 0)
        self.assertTrue(_opens_with(self.vantorel.history, self.desktop.keyring.key(),
                                    "after the clear"))


def _opens_with(history, key, text):
    from harness.history import unseal
    return text.encode() in unseal(key, history.raw())


if __name__ == "__main__":
    unittest.main()
