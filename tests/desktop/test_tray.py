"""The item in the desktop's tray and every command of its menu."""

import os
import unittest

from harness import applications
from harness.case import VantorelTestCase
from harness.tray import Tray
from harness.vantorel import HELP
from harness.waiting import stays_true, wait_for

ALWAYS = ["Open Vantorel", "Search & Filter…", "Pause History", "Ignore Password Managers",
          "Launch at Login", "Keyboard Shortcut…", "Clear History…", "About Vantorel",
          "Quit Vantorel"]


class TrayTestCase(VantorelTestCase):
    """A tray that is there before the program."""

    autostart = False

    def setUp(self):
        super().setUp()
        self.tray = Tray(self.desktop)
        self.vantorel.start()
        self.tray.wait_for_item()

    def wait_for_row(self, *labels):
        def there():
            try:
                return self.tray.row(*labels)
            except AssertionError:
                return None
        return wait_for(f"the row {labels}", there, 20, self.tray.labels)


class Item(TrayTestCase):
    def test_it_has_a_picture_and_says_whose_it_is(self):
        item = self.tray.item()
        self.assertTrue(item["hasPicture"])
        self.assertEqual(item["Title"], "Vantorel")

    def test_a_left_click_toggles_the_panel(self):
        self.tray.activate()
        self.vantorel.wait_for_panel()
        self.tray.activate()
        self.vantorel.wait_until_hidden()

    def test_it_comes_back_when_the_tray_restarts(self):
        self.tray.stop()
        self.tray = Tray(self.desktop)
        self.tray.wait_for_item()
        self.assertIn("Open Vantorel", self.tray.labels())


class LateTray(VantorelTestCase):
    def test_a_tray_that_appears_later_gets_the_item(self):
        tray = Tray(self.desktop)
        tray.wait_for_item()
        self.assertEqual(tray.labels(), ALWAYS)


class Commands(TrayTestCase):
    def test_the_rows_stand_in_their_order(self):
        self.assertEqual(self.tray.labels(), ALWAYS)

    def test_open_and_search(self):
        self.vantorel.copy("findable")
        self.tray.click("Search & Filter…")
        self.vantorel.wait_for_panel()
        wait_for("the search field", lambda: self.vantorel.search_text() == "")
        self.desktop.keyboard.type("find")
        self.vantorel.wait_for_rows(["findable"])
        self.tray.click("Open Vantorel")
        self.vantorel.wait_until_hidden()

    def test_a_pause_stops_the_capture_until_it_is_ended(self):
        self.tray.click("Pause History", "For 15 Minutes")
        self.vantorel.wait_for_notice("Clipboard history paused for 15 minutes.")
        owner = self.clipboard.own(offers={"UTF8_STRING": b"during the pause"})
        self.wait_for_row("Clipboard History Paused", "Resume Now")
        self.tray.click("Clipboard History Paused", "Resume Now")
        self.vantorel.wait_for_notice("Clipboard history resumed.")
        self.vantorel.copy("after the pause")
        self.assertEqual(owner.contents_requested(), [])
        self.assertEqual(self.vantorel.history.texts(), ["after the pause"])
        self.wait_for_row("Pause History")

    def test_each_length_of_a_pause_has_its_notice(self):
        for row, notice in (("For 1 Hour", "Clipboard history paused for 1 hour."),
                            ("Until Tomorrow", "Clipboard history paused until tomorrow.")):
            menu = [label for label in self.tray.labels() if "Pause" in label][0]
            self.tray.click(menu, row)
            self.vantorel.wait_for_notice(notice)

    def test_the_rule_for_password_managers_is_switched(self):
        self.assertTrue(self.tray.row("Ignore Password Managers")["checked"])
        self.tray.click("Ignore Password Managers")
        self.vantorel.wait_for_notice("Password manager history enabled.")
        wait_for("the row to be off",
                 lambda: not self.tray.row("Ignore Password Managers")["checked"])
        self.assertIs(self.vantorel.defaults()["privacy.ignorePasswordManagers"], False)

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
        self.tray.click("Excluded Apps", "Include Mousepad")
        self.vantorel.wait_for_notice("App included in clipboard history.")
        editor.to_front()
        self.vantorel.copy("included again")
        self.assertEqual(self.vantorel.history.texts(), ["included again"])

    def test_launch_at_login_writes_and_removes_its_entry(self):
        path = os.path.join(self.desktop.env["XDG_CONFIG_HOME"], "autostart",
                            "com.vantorel.Vantorel.desktop")
        self.tray.click("Launch at Login")
        self.vantorel.wait_for_notice("Vantorel will launch at login.")
        with open(path, encoding="utf-8") as file:
            self.assertIn("Exec=", file.read())
        wait_for("the row to be on", lambda: self.tray.row("Launch at Login")["checked"])
        self.tray.click("Launch at Login")
        self.vantorel.wait_for_notice("Launch at Login disabled.")
        wait_for("the row to be off", lambda: not self.tray.row("Launch at Login")["checked"])

    def test_clearing_asks_first_and_keeps_pins(self):
        for text in ("pinned", "dropped"):
            self.vantorel.copy(text)
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.chord("Ctrl+p")
        wait_for("the pin", lambda: self.vantorel.history.items()[0].get("isPinned"))
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()
        self.tray.click("Clear History…")
        self._press_button("Cancel")
        self.assertEqual(len(self.vantorel.history.items()), 2)
        self.tray.click("Clear History…")
        self._press_button("Clear")
        self.vantorel.wait_for_notice("History cleared. Pinned clips kept.")
        self.vantorel.wait_for_texts(["pinned"])

    def test_clearing_everything_leaves_no_file_and_a_new_key(self):
        self.vantorel.copy("gone for good")
        key = self.desktop.keyring.key()
        sealed = self.vantorel.history.raw()
        self.tray.click("Clear History…")
        box = self._control("Also delete pinned clips")
        self.desktop.pointer.click(*box.centre())
        wait_for("the box to be on", lambda: self._control("Also delete pinned clips").checked)
        self._press_button("Clear")
        self.vantorel.wait_for_notice("All clipboard history cleared.")
        wait_for("a new key", lambda: self.desktop.keyring.key() != key)
        self.assertEqual(self.desktop.keyring.item_count(), 1)
        self.vantorel.copy("a new beginning")
        self.assertEqual(self.vantorel.history.texts(), ["a new beginning"])
        self.assertNotEqual(self.vantorel.history.raw(), sealed)

    def test_about_and_quit(self):
        self.tray.click("About Vantorel")
        self.desktop.windows.wait_for_title(HELP)
        self.tray.click("Quit Vantorel")
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        self.assertEqual(self.vantorel.process.returncode, 0)

    def test_a_new_shortcut_is_recorded_and_used(self):
        self.tray.click("Keyboard Shortcut…")
        recorder = self.desktop.windows.wait_for_title("Keyboard Shortcut")
        wait_for("the recorder to have the keyboard",
                 lambda: self.desktop.windows.has_focus(recorder))
        self.desktop.keyboard.chord("Ctrl+Alt+k")
        self.vantorel.wait_for_notice("Shortcut set to Alt+Ctrl+K")
        self.desktop.windows.wait_gone("Keyboard Shortcut")
        self.vantorel.press_shortcut()
        stays_true("the old shortcut to do nothing", lambda: self.vantorel.panel() is None, 0.3)
        self.desktop.keyboard.chord("Ctrl+Alt+k")
        self.vantorel.wait_for_panel()

    def _control(self, name):
        def there():
            program = self.vantorel.accessibility.program("vantorel")
            return [element for element in program.walk()
                    if element.name == name and element.showing and element.extents]
        return wait_for(f"the control {name!r}", there)[0]

    def _press_button(self, name):
        self.desktop.pointer.click(*self._control(name).centre())
        wait_for("the question to be gone", lambda: not [
            element for element in self.vantorel.accessibility.program("vantorel").walk()
            if element.name == "Also delete pinned clips" and element.showing])


if __name__ == "__main__":
    unittest.main()
