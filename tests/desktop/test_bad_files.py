# SPDX-License-Identifier: MIT
"""Histories that cannot be read, and the one from before there was sealing."""

import json
import os
import unittest

from harness import pictures
from harness.case import VantorelTestCase
from harness.history import files_holding, seal, text_item
from harness.keyring import KeyringState
from harness.vantorel import SETTINGS_NOTICE, STORAGE_NOTICE
from harness.waiting import stays_true, wait_for


class UnreadableHistory(VantorelTestCase):
    """Whatever is wrong with the file: it is kept byte for byte, it is said, and work goes on."""

    autostart = False
    KEY = bytes(range(32))

    def setUp(self):
        super().setUp()
        self.desktop.keyring.store(self.KEY)
        self.sound = seal(self.KEY, json.dumps([text_item("kept before")]).encode())

    def _expect_untouched(self, data):
        self.vantorel.history.write_raw(data)
        self._start_and_use()
        self.assertEqual(self.vantorel.history.raw(), data)
        self.assertEqual(self.desktop.keyring.key(), self.KEY)

    def _start_and_use(self):
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        owner = self.clipboard.own(offers={"UTF8_STRING": b"not to be captured"})
        self.vantorel.open_panel()
        self.vantorel.wait_for_words("No clips yet")
        stays_true("nothing captured", lambda: not owner.contents_requested(), 0.5)
        self.assertEqual(self.vantorel.quit(), 0)

    def test_the_sound_file_opens(self):
        self.vantorel.history.write_raw(self.sound)
        self.vantorel.start()
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["kept before"])

    def test_a_flipped_byte_in_the_contents(self):
        data = bytearray(self.sound)
        data[len(data) // 2] ^= 1
        self._expect_untouched(bytes(data))

    def test_a_flipped_byte_in_the_tag(self):
        self._expect_untouched(self.sound[:-1] + bytes([self.sound[-1] ^ 0x80]))

    def test_a_truncated_file(self):
        self._expect_untouched(self.sound[:len(self.sound) // 2])

    def test_a_file_cut_within_its_envelope(self):
        self._expect_untouched(self.sound[:20])

    def test_an_empty_file(self):
        self._expect_untouched(b"")

    def test_plain_json_under_the_sealed_name(self):
        self._expect_untouched(json.dumps([text_item("not sealed")]).encode())

    def test_a_file_sealed_under_another_key(self):
        self._expect_untouched(seal(b"another key of thirty-two bytes!", b"[]"))

    def test_a_sealed_file_that_is_not_json(self):
        self._expect_untouched(seal(self.KEY, b"\xff\xfenot json"))

    def test_an_entry_of_an_unknown_kind(self):
        items = [text_item("sound"), text_item("odd", 1, kind="video")]
        self._expect_untouched(seal(self.KEY, json.dumps(items).encode()))

    def test_an_entry_without_a_required_field(self):
        item = text_item("incomplete")
        del item["preview"]
        self._expect_untouched(seal(self.KEY, json.dumps([item]).encode()))

    def test_json_nested_without_end(self):
        self._expect_untouched(seal(self.KEY, b"[" * 2_000_000))

    def test_a_folder_in_the_files_place(self):
        os.makedirs(self.vantorel.history.file, mode=0o700)
        self._start_and_use()
        self.assertEqual(os.listdir(self.vantorel.history.file), [])

    def test_a_file_in_the_folders_place(self):
        with open(self.vantorel.history.directory, "wb") as file:
            file.write(b"somebody else's")
        self._start_and_use()
        with open(self.vantorel.history.directory, "rb") as file:
            self.assertEqual(file.read(), b"somebody else's")

    def test_a_key_of_the_wrong_length_is_neither_used_nor_replaced(self):
        self.desktop.keyring.store(b"short")
        self.vantorel.history.write_raw(self.sound)
        self._start_and_use()
        self.assertEqual(self.vantorel.history.raw(), self.sound)
        self.assertEqual(self.desktop.keyring.key(), b"short")

    def test_a_lost_key_is_not_silently_replaced_under_an_old_history(self):
        self.vantorel.history.write_raw(self.sound)
        self.desktop.run(["secret-tool", "clear", "service", "com.vantorel.mvp.history-encryption",
                          "account", "history-key-v1"]).check_returncode()
        self._start_and_use()
        self.assertEqual(self.vantorel.history.raw(), self.sound)
        self.assertEqual(self.desktop.keyring.item_count(), 0)


class WaysOut(VantorelTestCase):
    """The key was lost or replaced, or the keyring is shut: what can be done, and what is said."""

    autostart = False
    KEY = bytes(range(32))

    def start_on_a_history_of_another_key(self):
        self.desktop.keyring.store(self.KEY)
        self.vantorel.history.write([text_item("of another key")], key=b"\x07" * 32)
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        return self.vantorel.history.raw()

    def clear(self, pinned_too=False):
        self.vantorel.command("--clear")
        self.vantorel.clear_by_keys(pinned_too)

    def expect_recording(self):
        """At once, and after a restart."""
        self.vantorel.copy("recorded")
        self.assertEqual(self.vantorel.history.texts(), ["recorded"])
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start()
        self.assertEqual(self.vantorel.history.texts(), ["recorded"])

    def test_a_clear_removes_what_does_not_open(self):
        self.start_on_a_history_of_another_key()
        self.clear()
        self.vantorel.wait_for_notice("History cleared. Pinned clips kept.")
        self.expect_recording()

    def test_a_clear_of_everything_does_too_and_replaces_the_key(self):
        self.start_on_a_history_of_another_key()
        self.clear(pinned_too=True)
        self.vantorel.wait_for_notice("All clipboard history cleared.")
        wait_for("a new key", lambda: self.desktop.keyring.key() not in (None, self.KEY))
        self.expect_recording()

    def test_without_a_key_nothing_is_claimed_and_nothing_goes(self):
        self.desktop.keyring.store(self.KEY)
        self.vantorel.history.write([text_item("kept")], key=self.KEY)
        before = self.vantorel.history.raw()
        self.desktop.keyring.lock()
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        wait_for("the notice to go", lambda: not self.desktop.windows.titled(STORAGE_NOTICE))
        self.clear()
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        self.assertEqual(self.vantorel.history.raw(), before)
        wait_for("the notice to go", lambda: not self.desktop.windows.titled(STORAGE_NOTICE))
        self.assertEqual(self.vantorel.command("--new-history").returncode, 0)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        self.assertEqual(os.listdir(self.vantorel.history.directory).count("history.vntl"), 1)
        self.assertEqual(self.vantorel.history.raw(), before)

    def test_a_new_history_keeps_the_old_one_beside_it(self):
        before = self.start_on_a_history_of_another_key()
        picture = os.path.join(self.vantorel.history.assets, "picture.png")
        with open(picture, "wb") as file:
            file.write(b"sealed")
        self.assertEqual(self.vantorel.command("--new-history").returncode, 0)
        directory = self.vantorel.history.directory
        kept = wait_for("the old history", lambda: [name for name in os.listdir(directory)
                                                    if name.startswith("history.vntl.2")])
        self.assertEqual(len(kept), 1)
        path = os.path.join(directory, kept[0])
        self.vantorel.wait_for_notice(
            f"A new history has begun. The old one is kept as {path}.")
        self.expect_recording()
        with open(path, "rb") as file:
            self.assertEqual(file.read(), before)
        stamp = kept[0].removeprefix("history.vntl")
        self.assertEqual(os.listdir(self.vantorel.history.assets + stamp), ["picture.png"])


class LegacyHistory(VantorelTestCase):
    autostart = False

    def _write_legacy(self, data):
        os.makedirs(self.vantorel.history.assets, mode=0o700)
        with open(self.vantorel.history.legacy_file, "wb") as file:
            file.write(data)

    def _legacy(self):
        with open(self.vantorel.history.legacy_file, "rb") as file:
            return file.read()

    def test_it_is_sealed_once_with_its_pictures_and_then_gone(self):
        picture = pictures.png(30, 20)
        name = "11111111-2222-4333-8444-555555555555.png"
        image = text_item("", 1, kind="image", title="Image", preview="30 × 20 px",
                          assetFilename=name)
        del image["text"]
        missing = dict(image, id="00000000-0000-4000-8000-00000000AAAA", createdAt=image["createdAt"],
                       assetFilename="99999999-2222-4333-8444-555555555555.png")
        self._write_legacy(json.dumps([text_item("from before"), image, missing]).encode())
        with open(os.path.join(self.vantorel.history.assets, name), "wb") as file:
            file.write(picture)
        self.vantorel.start()
        self.assertFalse(os.path.exists(self.vantorel.history.legacy_file))
        self.assertEqual(self.vantorel.history.texts(), ["from before"])
        self.assertEqual(self.vantorel.history.asset(image), picture)
        for needle in (b"from before", b"IHDR"):
            self.assertEqual(files_holding(self.vantorel.history.directory, needle), [])
        self.vantorel.open_panel()
        wait_for("its rows", lambda: "from before" in self.vantorel.row_titles())

    def test_a_damaged_one_is_kept_byte_for_byte(self):
        self._write_legacy(b'[{"id": "not finished"')
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        self.assertEqual(self._legacy(), b'[{"id": "not finished"')
        self.assertFalse(self.vantorel.history.exists())

    def test_with_both_files_the_sealed_one_wins_and_the_old_one_is_left_alone(self):
        key = b"K" * 32
        self.desktop.keyring.store(key)
        self._write_legacy(json.dumps([text_item("from before")]).encode())
        before = self._legacy()
        self.vantorel.history.write([text_item("sealed")], key)
        self.vantorel.start()
        self.assertEqual(self.vantorel.history.texts(), ["sealed"])
        self.assertEqual(self._legacy(), before)


class LegacyHistoryWithoutKeyring(VantorelTestCase):
    autostart = False
    desktop_options = {"keyring": KeyringState.LOCKED}

    def test_it_is_kept_byte_for_byte_and_the_program_runs_on(self):
        data = json.dumps([text_item("from before")]).encode()
        os.makedirs(self.vantorel.history.assets, mode=0o700)
        with open(self.vantorel.history.legacy_file, "wb") as file:
            file.write(data)
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(STORAGE_NOTICE)
        self.vantorel.open_panel()
        with open(self.vantorel.history.legacy_file, "rb") as file:
            self.assertEqual(file.read(), data)
        self.assertFalse(self.vantorel.history.exists())


class DamagedDefaults(VantorelTestCase):
    autostart = False

    def test_damaged_settings_are_set_aside_and_the_program_starts(self):
        os.makedirs(os.path.dirname(self.vantorel.defaults_file))
        with open(self.vantorel.defaults_file, "wb") as file:
            file.write(b'{"shortcut.keyCode": ')
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(SETTINGS_NOTICE)
        folder = os.path.dirname(self.vantorel.defaults_file)
        kept = [name for name in os.listdir(folder)
                if b'{"shortcut.keyCode": ' == _contents(os.path.join(folder, name))]
        self.assertEqual(len(kept), 1)
        self.assertNotEqual(kept, ["defaults.json"])

    def _cut(self, path):
        with open(path, "rb+") as file:
            file.truncate(os.path.getsize(path) - 5)

    def _copies_nothing(self):
        owner = self.clipboard.own(offers={"UTF8_STRING": b"not to be captured"})
        stays_true("nothing captured", lambda: not owner.contents_requested(), 1)

    def test_exclusion_and_pause_outlive_a_damaged_file(self):
        self.vantorel.set_defaults({"privacy.excludedBundleIDs": ["secretapp"],
                                    "privacy.pausedUntil": "2099-01-01T00:00:00Z"})
        self.vantorel.start(capturing=False)
        wait_for("the settings to be written",
                 lambda: "privacy.ignorePasswordManagers" in self.vantorel.defaults())
        self.assertEqual(self.vantorel.quit(), 0)
        self._cut(self.vantorel.defaults_file)
        self.vantorel.start(capturing=False)
        self.vantorel.wait_until_on_bus()
        self._copies_nothing()
        run_action(self.desktop, "resume")
        self.vantorel.wait_until_capturing()
        self.vantorel.copy("from another application")
        self.clipboard.own(offers={"x-nothing/at-all": b""}, window_class="SecretApp")
        self.desktop.windows.wait_active(self.desktop.windows.wait_for_title("SecretApp"))
        self._copies_nothing()

    def test_with_nothing_to_go_by_it_waits_to_be_resumed(self):
        self.vantorel.set_defaults({"privacy.excludedBundleIDs": ["secretapp"]})
        self._cut(self.vantorel.defaults_file)
        self.vantorel.start(capturing=False, welcome=True)
        self.vantorel.wait_for_notice(SETTINGS_NOTICE)
        self._copies_nothing()
        self.assertEqual(self.vantorel.log().count("the settings cannot be read"), 1)
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start(capturing=False, welcome=True)
        self.vantorel.wait_for_notice(SETTINGS_NOTICE)
        self._copies_nothing()
        run_action(self.desktop, "resume")
        self.vantorel.wait_until_capturing()
        self.vantorel.copy("after resuming")

    def test_unknown_settings_are_kept(self):
        self.vantorel.set_defaults({"didShowOnboardingV2": True, "from.the.future": [1, "two"]})
        self.vantorel.start()
        wait_for("the default to be written",
                 lambda: "privacy.ignorePasswordManagers" in self.vantorel.defaults())
        self.assertEqual(self.vantorel.defaults()["from.the.future"], [1, "two"])


def run_action(desktop, name):
    desktop.bus_call("com.vantorel.Vantorel", "/com/vantorel/Vantorel",
                     "org.freedesktop.Application.ActivateAction", name, "[]", "{}")


def _contents(path):
    with open(path, "rb") as file:
        return file.read()


if __name__ == "__main__":
    unittest.main()
