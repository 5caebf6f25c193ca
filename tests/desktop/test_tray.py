# SPDX-License-Identifier: MIT
"""The item in the desktop's tray and every command of its menu."""

import os
import shutil
import unittest
from datetime import datetime, timedelta, timezone

from cryptography.exceptions import InvalidTag

from harness import applications, pictures
from harness.history import files_holding, unseal
from harness.keyring import KeyringState
from harness.tray import Tray
from harness.tray_case import (ALWAYS, HELP, PINNED_TOO, QUESTION, RECORDER, StatusMenuTestCase,
                               TrayTestCase)
from harness.vantorel import program_path
from harness.waiting import stays_true, wait_for
from test_colours import DARK, LIGHT, Portal


def _in(seconds):
    return (datetime.now(timezone.utc) + timedelta(seconds=seconds)).strftime("%Y-%m-%dT%H:%M:%SZ")


class Item(TrayTestCase):
    def test_it_says_whose_it_is(self):
        item = self.tray.item()
        self.assertEqual(item["Title"], "Vantorel")
        self.assertEqual(item["toolTip"], "Vantorel")
        self.assertEqual(item["Status"], "Active")
        self.assertEqual(item["IconAccessibleDesc"], "Vantorel")
        self.assertIs(item["ItemIsMenu"], False)

    def test_its_picture_is_one_colour_in_several_sizes(self):
        item = self.tray.item()
        self.assertIn([22, 22], item["sizes"])
        self.assertEqual(item["lengths"], [4 * width * height for width, height in item["sizes"]])
        self.assertEqual(item["colours"], [[0x8d, 0x8d, 0x8d]])

    def test_the_name_of_the_picture_is_given_only_where_it_is_installed(self):
        self.assertEqual(self.tray.item()["IconName"], "")

    def test_a_left_click_toggles_the_panel(self):
        self.tray.activate()
        self.vantorel.wait_for_panel()
        self.tray.activate()
        self.vantorel.wait_until_hidden()

    def test_a_middle_click_opens_the_search(self):
        self.tray.activate_secondary()
        self.vantorel.wait_for_panel()
        wait_for("the search field", lambda: self.vantorel.search_text() == "")

    def test_a_tray_that_shows_no_menus_gets_ours(self):
        self.tray.want_menu(300, 200)
        frame = self.wait_for_menu()
        self.assertEqual((frame.x, frame.y), (300, 200))
        self.desktop.keyboard.tap("Up")
        self.desktop.keyboard.tap("Up")
        self.desktop.keyboard.tap("Return")
        self.desktop.windows.wait_for_title(HELP)

    def test_it_comes_back_when_the_tray_restarts(self):
        self.tray.stop()
        self.tray = Tray(self.desktop)
        self.tray.wait_for_item()
        self.assertEqual(self.tray.labels(), ALWAYS)
        self.assertEqual(self.tray.registrations(), 1)

    def test_it_is_gone_with_the_program(self):
        self.assertEqual(self.vantorel.quit(), 0)
        wait_for("no item", lambda: self._item_is_gone())

    def _item_is_gone(self):
        try:
            self.tray.item()
        except AssertionError:
            return True
        return False


class OnADarkDesktop(TrayTestCase):
    desktop_options = {"dark": True}

    def test_its_picture_is_light(self):
        self.assertEqual(self.tray.item()["colours"], [[0xf2, 0xf2, 0xf2]])


class OnADesktopThatBecomesDark(TrayTestCase):
    def test_its_picture_follows(self):
        portal = Portal(self.desktop, LIGHT)
        portal.change(DARK)
        wait_for("a light picture",
                 lambda: self.tray.item()["colours"] == [[0xf2, 0xf2, 0xf2]])
        portal.change(LIGHT)
        wait_for("the former one", lambda: self.tray.item()["colours"] == [[0x8d, 0x8d, 0x8d]])


class LateTray(StatusMenuTestCase):
    def test_a_tray_that_appears_later_gets_the_item(self):
        tray = Tray(self.desktop)
        tray.wait_for_item()
        self.assertEqual(tray.labels(), ALWAYS)
        tray.activate()
        self.vantorel.wait_for_panel()


class InstalledProgram(TrayTestCase):
    """The program where an installation puts it, its pictures beside it."""

    def start_program(self):
        prefix = self.path("prefix", "share", "icons", "hicolor", "symbolic", "apps", "x")
        for name in ("", "-paused"):
            with open(os.path.join(os.path.dirname(prefix),
                                   f"com.vantorel.Vantorel{name}-symbolic.svg"), "wb"):
                pass
        program = self.path("prefix", "bin", "vantorel")
        shutil.copy2(program_path(), program)
        self.vantorel.set_defaults({})
        self.vantorel.process = self.desktop.start("vantorel", [program])
        self.vantorel.wait_until_capturing()
        self.tray.wait_for_item()

    def test_its_pictures_follow_the_bar_by_their_names(self):
        item = self.tray.item()
        self.assertEqual(item["IconName"], "com.vantorel.Vantorel-symbolic")
        self.assertEqual(item["IconThemePath"], self.path("prefix", "share", "icons"))
        self.tray.click("Pause History", "For 1 Hour")
        wait_for("the paused picture", lambda: self.tray.item()["IconName"]
                 == "com.vantorel.Vantorel-paused-symbolic")

    def test_a_login_starts_the_installed_program(self):
        self.tray.click("Launch at Login")
        self.vantorel.wait_for_notice("Vantorel will launch at login.")
        self.assertIn(f"\nExec={self.path('prefix', 'bin', 'vantorel')} --background\n",
                      self.read_autostart_entry())


class Menu(TrayTestCase):
    def test_the_rows_stand_in_their_order(self):
        labels = ["-" if row["separator"] else row["label"] for row in self.tray.all_rows()]
        self.assertEqual(labels, ALWAYS[:6] + ["-"] + ALWAYS[6:8] + ["-"] + ALWAYS[8:])
        self.assertEqual(self.tray.row("Quit Vantorel")["shortcut"], [["Control", "q"]])
        switches = [row["label"] for row in self.tray.rows() if row["switch"]]
        self.assertEqual(switches, ["Ignore Password Managers", "Launch at Login"])

    def test_open_and_search(self):
        self.vantorel.copy("findable")
        self.tray.click("Search & Filter…")
        self.vantorel.wait_for_panel()
        wait_for("the search field", lambda: self.vantorel.search_text() == "")
        self.desktop.keyboard.type("find")
        self.vantorel.wait_for_rows(["findable"])
        self.tray.click("Open Vantorel")
        self.vantorel.wait_until_hidden()

    def test_the_rule_for_password_managers_is_switched(self):
        self.assertTrue(self.tray.row("Ignore Password Managers")["checked"])
        self.tray.click("Ignore Password Managers")
        self.vantorel.wait_for_notice("Password manager history enabled.")
        wait_for("the row to be off",
                 lambda: not self.tray.row("Ignore Password Managers")["checked"])
        self.assertIs(self.vantorel.defaults()["privacy.ignorePasswordManagers"], False)
        self.tray.click("Ignore Password Managers")
        self.vantorel.wait_for_notice("Password managers will be ignored.")
        self.assertIs(self.vantorel.defaults()["privacy.ignorePasswordManagers"], True)

    def test_an_application_is_excluded_and_included_again(self):
        editor = applications.gtk_editor(self.desktop, self.path("notes.txt"), "from the editor")
        self.wait_for_row("Exclude Mousepad")
        self.tray.click("Exclude Mousepad")
        self.vantorel.wait_for_notice("Mousepad excluded from history.")
        self.assertEqual(self.vantorel.defaults()["privacy.excludedBundleIDs"],
                         ["org.xfce.mousepad"])
        editor.select_all_and_copy()
        wait_for("the copy", lambda: self.clipboard.text() == "from the editor")
        self.wait_for_row("Excluded Apps", "Include Mousepad")
        self.assertNotIn("Exclude Mousepad", self.tray.labels())
        self.tray.click("Excluded Apps", "Include Mousepad")
        self.vantorel.wait_for_notice("App included in clipboard history.")
        editor.to_front()
        self.vantorel.copy("included again")
        self.assertEqual(self.vantorel.history.texts(), ["included again"])

    def test_launch_at_login_writes_its_entry_and_hides_it(self):
        self.tray.click("Launch at Login")
        self.vantorel.wait_for_notice("Vantorel will launch at login.")
        self.assertIn(f"\nExec={program_path()} --background\nTryExec={program_path()}\n",
                      self.read_autostart_entry())
        self.desktop.run(["desktop-file-validate", self.autostart_entry]).check_returncode()
        wait_for("the row to be on", lambda: self.tray.row("Launch at Login")["checked"])
        with open(self.autostart_entry, "a", encoding="utf-8") as file:
            file.write("X-Their-Delay=5\n")
        self.tray.click("Launch at Login")
        self.vantorel.wait_for_notice("Launch at Login disabled.")
        wait_for("the row to be off", lambda: not self.tray.row("Launch at Login")["checked"])
        self.assertIn("\nHidden=true\n", self.read_autostart_entry())
        self.tray.click("Launch at Login")
        self.vantorel.wait_for_notice("Vantorel will launch at login.")
        self.assertNotIn("Hidden", self.read_autostart_entry())
        self.assertIn("\nX-Their-Delay=5\n", self.read_autostart_entry())

    def test_an_entry_hidden_by_the_desktop_counts_as_off(self):
        self.tray.click("Launch at Login")
        wait_for("the row to be on", lambda: self.tray.row("Launch at Login")["checked"])
        with open(self.autostart_entry, "a", encoding="utf-8") as file:
            file.write("Hidden=true\n")
        self.assertFalse(self.tray.row("Launch at Login")["checked"])

    def test_an_autostart_directory_that_is_a_file_is_told(self):
        with open(os.path.dirname(self.autostart_entry), "wb"):
            pass
        self.tray.click("Launch at Login")
        self.vantorel.wait_for_notice("Could not change Launch at Login.")
        self.assertFalse(self.tray.row("Launch at Login")["checked"])

    def test_about_and_quit(self):
        self.tray.click("About Vantorel")
        self.desktop.windows.wait_for_title(HELP)
        self.tray.click("Quit Vantorel")
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        self.assertEqual(self.vantorel.process.returncode, 0)

    def test_a_new_shortcut_is_recorded_and_used(self):
        self.tray.click("Keyboard Shortcut…")
        recorder = self.desktop.windows.wait_for_title(RECORDER)
        wait_for("the recorder to have the keyboard",
                 lambda: self.desktop.windows.has_focus(recorder))
        self.desktop.keyboard.chord("Ctrl+Alt+k")
        self.vantorel.wait_for_notice("Shortcut set to Alt+Ctrl+K")
        self.desktop.windows.wait_gone(RECORDER)
        self.vantorel.press_shortcut()
        stays_true("the old shortcut to do nothing", lambda: self.vantorel.panel() is None, 0.3)
        self.desktop.keyboard.chord("Ctrl+Alt+k")
        self.vantorel.wait_for_panel()

    def test_a_row_that_has_left_the_menu_still_does_what_it_says(self):
        self.tray.click("Pause History", "For 1 Hour")
        resume = self.wait_for_row("Clipboard History Paused", "Resume Now")
        self.tray.click_row(resume)
        self.vantorel.wait_for_notice("Clipboard history resumed.")
        self.wait_for_row("Pause History")
        self.tray.click_row(resume)
        self.assertEqual(self.tray.labels(), ALWAYS)


class Pauses(TrayTestCase):
    def test_a_pause_stops_the_capture_until_it_is_ended(self):
        self.tray.signals()
        self.tray.click("Pause History", "For 15 Minutes")
        self.vantorel.wait_for_notice("Clipboard history paused for 15 minutes.")
        self.assertEqual(self.tray.item()["toolTip"], "Vantorel — History Paused")
        self.assertTrue({"NewToolTip", "NewIcon", "LayoutUpdated"} <= set(self.tray.signals()))
        owner = self.clipboard.own(offers={"UTF8_STRING": b"during the pause"})
        self.wait_for_row("Clipboard History Paused", "Resume Now")
        self.tray.click("Clipboard History Paused", "Resume Now")
        self.vantorel.wait_for_notice("Clipboard history resumed.")
        self.assertEqual(self.tray.item()["toolTip"], "Vantorel")
        self.vantorel.copy("after the pause")
        self.assertEqual(owner.contents_requested(), [])
        self.assertEqual(self.vantorel.history.texts(), ["after the pause"])
        self.wait_for_row("Pause History")

    def test_each_length_has_its_notice_and_replaces_the_one_before(self):
        for row, notice, length in (
                ("Until Tomorrow", "Clipboard history paused until tomorrow.", 86400),
                ("For 1 Hour", "Clipboard history paused for 1 hour.", 3600),
                ("For 15 Minutes", "Clipboard history paused for 15 minutes.", 900)):
            menu = [label for label in self.tray.labels() if "Pause" in label][0]
            self.tray.click(menu, row)
            self.vantorel.wait_for_notice(notice)
            self.assertAlmostEqual(self.paused_for(), length, delta=30)

    def test_the_picture_is_another_while_paused(self):
        before = self.tray.item()["picture"]
        self.tray.click("Pause History", "For 1 Hour")
        wait_for("another picture", lambda: self.tray.item()["picture"] != before)
        self.tray.click("Clipboard History Paused", "Resume Now")
        wait_for("the former picture", lambda: self.tray.item()["picture"] == before)

    def test_a_pause_survives_a_restart(self):
        self.tray.click("Pause History", "For 1 Hour")
        self.tray.wait_for_tool_tip("Vantorel — History Paused")
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start(capturing=False)
        self.vantorel.wait_until_on_bus()
        self.tray.wait_for_tool_tip("Vantorel — History Paused")
        self.tray.click("Clipboard History Paused", "Resume Now")
        self.tray.wait_for_tool_tip("Vantorel")

    def test_tool_tip_and_menu_are_right_once_it_has_run_out(self):
        self.vantorel.quit()
        self.vantorel.set_defaults({"privacy.pausedUntil": _in(4)})
        self.vantorel.start(capturing=False)
        self.tray.wait_for_tool_tip("Vantorel — History Paused")
        self.tray.row_without_notice("Clipboard History Paused", "Resume Now")
        self.tray.wait_for_tool_tip("Vantorel")
        # Also in a tray that asks for nothing again.
        self.tray.row_without_notice("Pause History")
        self.assertEqual(self.tray.labels(), ALWAYS)


class Clearing(TrayTestCase):
    def test_it_asks_first_and_keeps_pins(self):
        self.pin("pinned")
        self.vantorel.copy("dropped")
        for way in ("Cancel", "Escape", "close"):
            self.tray.click("Clear History…")
            question = self.desktop.windows.wait_for_title(QUESTION)
            self.assertFalse(self.control(PINNED_TOO).checked)
            if way == "Cancel":
                self.desktop.pointer.click(*self.control("Cancel").centre())
            elif way == "Escape":
                wait_for("the keyboard", lambda: self.desktop.windows.has_focus(question))
                self.desktop.keyboard.tap("Escape")
            else:
                self.desktop.windows.close(question)
            self.desktop.windows.wait_gone(QUESTION)
            self.assertEqual(len(self.vantorel.history.items()), 2, way)
        self.tray.click("Clear History…")
        self.answer_question("Clear")
        self.vantorel.wait_for_notice("History cleared. Pinned clips kept.")
        self.vantorel.wait_for_texts(["pinned"])

    def test_the_question_stands_alone_however_often_it_is_asked_for(self):
        for _ in range(3):
            self.tray.click("Clear History…")
        self.desktop.windows.wait_for_title(QUESTION)
        self.assertEqual(len(self.desktop.windows.titled(QUESTION)), 1)
        self.vantorel.copy("copied while it is asked")
        self.answer_question("Cancel")
        self.assertEqual(self.vantorel.history.texts(), ["copied while it is asked"])

    def test_quitting_over_the_question_loses_nothing(self):
        self.vantorel.copy("kept")
        self.tray.click("Clear History…")
        self.desktop.windows.wait_for_title(QUESTION)
        self.assertEqual(self.vantorel.quit(), 0)
        self.assertEqual(self.vantorel.history.texts(), ["kept"])

    def test_after_clearing_everything_nothing_that_is_left_opens_the_old_files(self):
        self.pin("gone for good")
        self.clipboard.copy_as("image/png", pictures.png(60, 40))
        wait_for("the picture on disk", lambda: self.vantorel.newest().get("kind") == "image")
        old_key = self.desktop.keyring.key()
        old_files = self._sealed_files()
        self.assertEqual(len(old_files), 2)
        for contents in old_files.values():
            unseal(old_key, contents)

        self.tray.click("Clear History…")
        box = self.control(PINNED_TOO)
        self.desktop.pointer.click(*box.centre())
        wait_for("the box to be on", lambda: self.control(PINNED_TOO).checked)
        self.answer_question("Clear")
        self.vantorel.wait_for_notice("All clipboard history cleared.")

        wait_for("a new key", lambda: self.desktop.keyring.key() not in (None, old_key))
        self.assertEqual(self.desktop.keyring.item_count(), 1)
        new_key = self.desktop.keyring.key()
        for contents in old_files.values():
            with self.assertRaises(InvalidTag):
                unseal(new_key, contents)
        self.assertEqual(files_holding(self.desktop.home, old_key), [])
        self.assertEqual(self.vantorel.history.texts(), [])
        self.vantorel.copy("a new beginning")
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start()
        self.assertEqual(self.vantorel.history.texts(), ["a new beginning"])

    def test_a_key_that_cannot_be_replaced_stays_and_nothing_more_is_lost(self):
        self.vantorel.copy("cleared")
        key = self.desktop.keyring.key()
        self.desktop.keyring.lock()
        self.tray.click("Clear History…")
        self.desktop.pointer.click(*self.control(PINNED_TOO).centre())
        self.answer_question("Clear")
        self.vantorel.wait_for_notice("All clipboard history cleared.")
        self.clipboard.copy("copied afterwards")
        self.wait_for_copy_under(key)

    def test_a_keyring_that_died_leaves_the_key_and_what_comes_next(self):
        self.vantorel.copy("cleared")
        key = self.desktop.keyring.key()
        self.desktop.processes.stop(self.desktop.keyring.process)
        self.tray.click("Clear History…")
        self.desktop.pointer.click(*self.control(PINNED_TOO).centre())
        self.answer_question("Clear")
        self.vantorel.wait_for_notice("All clipboard history cleared.")
        self.clipboard.copy("copied afterwards")
        self.wait_for_copy_under(key)
        self.assertEqual(self.vantorel.quit(), 0)
        self.desktop.keyring.start(KeyringState.UNLOCKED, self.desktop.env)
        self.assertEqual(self.desktop.keyring.key(), key)
        self.vantorel.start()
        self.assertEqual(self.vantorel.history.texts(), ["copied afterwards"])

    def wait_for_copy_under(self, key):
        """What is copied after a clear; until it is saved there may be no file at all."""
        history = self.vantorel.history
        wait_for("the copy, sealed under the old key",
                 lambda: history.exists() and b"copied afterwards" in unseal(key, history.raw()))

    def _sealed_files(self):
        files = {}
        for folder, _, names in os.walk(self.vantorel.history.directory):
            for name in names:
                path = os.path.join(folder, name)
                with open(path, "rb") as file:
                    files[path] = file.read()
        return files


class StrangeNeighbours(TrayTestCase):
    """Identifiers and names that no menu was made for."""

    STRANGE = ["a/b/c", "line\nbreak\ttab", "under_score & and", "x" * 10240]

    def start_program(self):
        self.vantorel.set_defaults({"privacy.excludedBundleIDs": self.STRANGE})
        super().start_program()

    def test_each_is_one_short_row_that_includes_exactly_it(self):
        for _ in self.STRANGE:
            row = self.tray.row("Excluded Apps")["rows"][0]
            self.assertTrue(row["label"].startswith("Include "))
            self.assertNotIn("\n", row["label"])
            self.assertLessEqual(len(row["label"]), 80)
            before = self.vantorel.defaults()["privacy.excludedBundleIDs"]
            self.tray.click_row(row)
            wait_for("one less", lambda: self.vantorel.defaults()["privacy.excludedBundleIDs"]
                     == before[1:])
        self.assertEqual(self.tray.labels(), ALWAYS)

    def test_underscores_and_ampersands_are_shown(self):
        labels = [row["label"] for row in self.tray.row("Excluded Apps")["rows"]]
        self.assertIn("Include under_score & and", labels)


class WrongSettings(TrayTestCase):
    """Every setting holds something of another type."""

    def start_program(self):
        self.vantorel.set_defaults({
            "privacy.pausedUntil": 5, "privacy.ignorePasswordManagers": "yes",
            "privacy.excludedBundleIDs": {"a": 1}, "shortcut.keyCode": "nine",
            "shortcut.modifiers": [], "shortcut.keyLabel": 9})
        super().start_program()

    def test_each_command_works_and_mends_its_own(self):
        self.vantorel.copy("captured")
        self.assertEqual(self.tray.labels(), ALWAYS)
        self.assertFalse(self.tray.row("Ignore Password Managers")["checked"])
        self.tray.click("Ignore Password Managers")
        self.vantorel.wait_for_notice("Password managers will be ignored.")
        self.tray.click("Pause History", "For 1 Hour")
        self.tray.wait_for_tool_tip("Vantorel — History Paused")
        self.vantorel.press_shortcut()
        self.vantorel.wait_for_panel()


class SettingsThatCannotBeWritten(TrayTestCase):
    def test_commands_hold_for_this_run(self):
        directory = os.path.dirname(self.vantorel.defaults_file)
        os.rename(directory, directory + ".away")
        with open(directory, "wb"):
            pass
        self.tray.click("Pause History", "For 1 Hour")
        self.vantorel.wait_for_notice("Clipboard history paused for 1 hour.")
        self.tray.wait_for_tool_tip("Vantorel — History Paused")
        os.remove(directory)
        os.rename(directory + ".away", directory)
        self.assertIsNone(self.paused_for())


if __name__ == "__main__":
    unittest.main()
