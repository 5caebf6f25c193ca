# SPDX-License-Identifier: MIT
"""The menu's commands on a desktop without a tray: at the pointer, by options, over the bus."""

import configparser
import os
import shlex
import unittest

from Xlib import X, XK
from Xlib.ext import xtest

from harness import applications
from harness.case import VantorelTestCase
from harness.keyring import KeyringState
from harness.tray import Tray
from harness.tray_case import HELP, MENU, PINNED_TOO, QUESTION, RECORDER, StatusMenuTestCase
from harness.vantorel import program_path
from harness.waiting import stays_true, wait_for
from harness.wayland_case import OnSway

_ENTRY = os.path.join(os.path.dirname(__file__), "..", "..", "packaging",
                      "com.vantorel.Vantorel.desktop")

PAUSES = {"pause-15-minutes": ("Clipboard history paused for 15 minutes.", 900),
          "pause-1-hour": ("Clipboard history paused for 1 hour.", 3600),
          "pause-until-tomorrow": ("Clipboard history paused until tomorrow.", 86400)}


class MenuAtThePointer(StatusMenuTestCase):
    def open_menu(self, x, y):
        self.desktop.pointer.move(x, y)
        self.vantorel.command("--menu")
        return self.wait_for_menu()

    def test_the_keys_beside_a_title_choose_its_row(self):
        self.open_menu(400, 300)
        self.desktop.keyboard.chord("Ctrl+q")
        wait_for("the program to end", lambda: not self.vantorel.is_running())

    def test_it_stands_at_the_pointer_and_is_walked_by_keys(self):
        frame = self.open_menu(400, 300)
        self.assertEqual((frame.x, frame.y), (400, 300))
        for key in ("Down", "Down", "Down", "Right", "Down", "Return"):
            self.desktop.keyboard.tap(key)
        self.vantorel.wait_for_notice("Clipboard history paused for 1 hour.")
        self.desktop.windows.wait_gone(MENU)

    def test_it_stays_on_the_screen(self):
        width, height = self.desktop.windows.screen_size()
        frame = self.open_menu(width - 3, height - 3)
        self.assertLessEqual(frame.x + frame.width, width)
        self.assertLessEqual(frame.y + frame.height, height)

    def test_escape_and_a_click_beside_it_choose_nothing(self):
        before = self.vantorel.defaults()
        self.open_menu(400, 300)
        self.dismiss_menu()
        self.open_menu(400, 300)
        self.desktop.pointer.click(1200, 700)
        self.desktop.windows.wait_gone(MENU)
        self.assertEqual(self.vantorel.defaults(), before)

    def test_the_application_in_front_is_the_one_that_it_excludes(self):
        applications.gtk_editor(self.desktop, self.path("notes.txt"), "x")
        self.open_menu(20, 20)
        for key in ("Down", "Down", "Down", "Down", "Down", "Return"):
            self.desktop.keyboard.tap(key)
        self.vantorel.wait_for_notice("Mousepad excluded from history.")
        self.assertEqual(self.vantorel.defaults()["privacy.excludedBundleIDs"],
                         ["org.xfce.mousepad"])

    def test_it_has_the_keyboard_once_the_desktops_own_key_is_let_go(self):
        # A desktop's key for the command: its grab holds the keyboard until the key is let go.
        root = self.desktop.display.screen().root
        code = self.desktop.display.keysym_to_keycode(XK.string_to_keysym("F9"))
        root.grab_key(code, 0, False, X.GrabModeAsync, X.GrabModeAsync)
        xtest.fake_input(self.desktop.display, X.KeyPress, code)
        self.desktop.display.sync()
        self.vantorel.command("--menu")
        self.desktop.windows.wait_for_title(MENU)
        xtest.fake_input(self.desktop.display, X.KeyRelease, code)
        self.desktop.display.sync()
        self.dismiss_menu()

    def test_a_start_may_begin_with_it(self):
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start("--menu", capturing=False)
        self.dismiss_menu()


class EveryCommand(StatusMenuTestCase):
    """Each command once by each way that leads to it."""

    def by_option(self, name, argument=None):
        answer = self.vantorel.command(f"--{name}" + (f"={argument}" if argument else ""))
        self.assertEqual(answer.returncode, 0, answer.stderr)

    def by_bus(self, name, argument=None):
        answer = self.desktop.bus_call(
            "com.vantorel.Vantorel", "/com/vantorel/Vantorel",
            "org.freedesktop.Application.ActivateAction", name,
            f"[<'{argument}'>]" if argument else "[]", "{}")
        self.assertEqual(answer.strip(), "()")

    def by_entry(self, name, argument=None):
        entry = configparser.RawConfigParser(delimiters="=", interpolation=None)
        entry.optionxform = str
        entry.read(_ENTRY, encoding="utf-8")
        actions = entry["Desktop Entry"]["Actions"].strip(";").split(";")
        self.assertEqual(actions, ["toggle", "search", "pause-1-hour", "resume", "quit"])
        if name not in actions:
            return self.by_option(name, argument)  # nothing that a launcher should offer
        program, *arguments = shlex.split(entry[f"Desktop Action {name}"]["Exec"])
        self.assertEqual(program, "vantorel")
        answer = self.vantorel.command(*arguments)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        return None

    def press_all(self, run):
        self._panel(run)
        self._pauses(run)
        self._privacy(run)
        self._login(run)
        self._windows(run)
        run("quit")
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        self.assertEqual(self.vantorel.process.returncode, 0)

    def _panel(self, run):
        run("toggle")
        self.vantorel.wait_for_panel()
        run("toggle")
        self.vantorel.wait_until_hidden()
        run("search")
        self.vantorel.wait_for_panel()
        wait_for("the search field", lambda: self.vantorel.search_text() == "")
        run("toggle")
        self.vantorel.wait_until_hidden()
        run("menu")
        self.dismiss_menu()

    def _pauses(self, run):
        for name, (notice, length) in PAUSES.items():
            run(name)
            self.vantorel.wait_for_notice(notice)
            self.assertAlmostEqual(self.paused_for(), length, delta=30)
        run("resume")
        self.vantorel.wait_for_notice("Clipboard history resumed.")
        self.assertIsNone(self.paused_for())

    def _privacy(self, run):
        run("toggle-password-managers")
        self.vantorel.wait_for_notice("Password manager history enabled.")
        run("toggle-password-managers")
        self.vantorel.wait_for_notice("Password managers will be ignored.")
        editor = applications.gtk_editor(self.desktop, self.path("notes.txt"), "x")
        run("exclude-app")
        self.vantorel.wait_for_notice("Mousepad excluded from history.")
        run("include-app", "org.xfce.mousepad")
        self.vantorel.wait_for_notice("App included in clipboard history.")
        self.assertEqual(self.vantorel.defaults()["privacy.excludedBundleIDs"], [])
        editor.kill()

    def _login(self, run):
        run("toggle-launch-at-login")
        self.vantorel.wait_for_notice("Vantorel will launch at login.")
        run("toggle-launch-at-login")
        self.vantorel.wait_for_notice("Launch at Login disabled.")
        self.assertIn("Hidden=true", self.read_autostart_entry())

    def _windows(self, run):
        run("shortcut")
        self._dismiss(RECORDER, "Escape")
        run("about")
        self._dismiss(HELP, "Return")
        run("new-history")
        self.vantorel.wait_for_notice("The history is open. Nothing was changed.")
        run("clear")
        self.desktop.windows.wait_for_title(QUESTION)
        self.assertFalse(self.control(PINNED_TOO).checked)
        self._dismiss(QUESTION, "Escape")

    def _dismiss(self, title, key):
        window = self.desktop.windows.wait_for_title(title)
        wait_for("the keyboard", lambda: self.desktop.windows.has_focus(window))
        self.desktop.keyboard.tap(key)
        self.desktop.windows.wait_gone(title)

    def test_by_options(self):
        self.press_all(self.by_option)

    def test_by_the_bus(self):
        self.press_all(self.by_bus)

    def test_by_the_desktop_entry(self):
        self.press_all(self.by_entry)


class SecondStart(StatusMenuTestCase):
    def test_it_brings_up_the_panel_and_leaves_it_there(self):
        self.vantorel.command()
        self.vantorel.wait_for_panel()
        self.vantorel.command()
        self.assertIsNotNone(self.vantorel.panel())
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()
        self.vantorel.command()
        self.vantorel.wait_for_panel()


class PlainStart(VantorelTestCase):
    """From the menu of applications, on a desktop without a tray."""

    autostart = False

    def test_it_shows_the_panel(self):
        self.vantorel.start(plain=True, capturing=False)
        self.vantorel.wait_for_panel()

    def test_a_log_in_shows_nothing(self):
        self.vantorel.start("--background")
        stays_true("no window", lambda: self.vantorel.panel() is None, 1)
        self.assertEqual(self.vantorel.command("--background").returncode, 0)
        stays_true("no window", lambda: self.vantorel.panel() is None, 0.5)

    def test_an_entry_of_an_older_version_is_renewed_and_shows_nothing(self):
        entry = self.path(".config", "autostart", "com.vantorel.Vantorel.desktop")
        with open(entry, "w", encoding="utf-8") as file:
            file.write(f"[Desktop Entry]\nType=Application\nName=Vantorel\nExec={os.path.realpath(program_path())}\n")
        self.vantorel.start(plain=True)
        stays_true("no window", lambda: self.vantorel.panel() is None, 1)
        with open(entry, encoding="utf-8") as file:
            self.assertIn(f"\nExec={os.path.realpath(program_path())} --background\n", file.read())

    def test_where_a_tray_shows_it_nothing_comes(self):
        tray = Tray(self.desktop)
        self.vantorel.start(plain=True)
        tray.wait_for_item()
        stays_true("no window", lambda: self.vantorel.panel() is None, 1)


class LostBus(StatusMenuTestCase):
    """The session bus ends while the program runs, and perhaps comes back."""

    autostart = False

    def test_the_program_goes_on_without_it(self):
        self.vantorel.start(accessible=False)
        self.vantorel.copy("before")
        key = self.desktop.keyring.key()
        self.desktop.processes.stop(self.desktop.bus.process)
        self.vantorel.open_panel()
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()
        self.clipboard.copy("afterwards")
        wait_for("the copy on disk", lambda: b"afterwards" in self._contents(key))
        self.assertEqual(self.vantorel.quit(), 0)

    def test_the_program_joins_the_bus_that_comes_back(self):
        for times in ("once", "again"):
            if times == "once":
                self.vantorel.start(accessible=False)
                self.vantorel.copy("before")
            key = self.desktop.keyring.key()
            self.desktop.bus.stop()
            self.desktop.bus.start(self.desktop.env)
            self.desktop.keyring.start(KeyringState.UNLOCKED, self.desktop.env)
            self.assertEqual(self.desktop.keyring.key(), key)
            self.vantorel.wait_until_on_bus()
            tray = Tray(self.desktop)
            tray.wait_for_item()
            self.assertEqual(self.vantorel.command().returncode, 0)
            self.vantorel.wait_for_panel()
            tray.activate()
            self.vantorel.wait_until_hidden()
            # Clearing everything asks the keyring for another key.
            tray.click("Clear History…")
            self._answer_with_pins()
            wait_for("a new key", lambda key=key: self.desktop.keyring.key() not in (None, key))
            tray.stop()

    def test_no_second_instance_writes_to_the_same_history(self):
        self.vantorel.start(accessible=False)
        self.desktop.processes.stop(self.desktop.bus.process)
        second = self.vantorel.command()
        self.assertEqual(second.returncode, 1)
        self.assertIn("already running", second.stderr.decode())
        self.assertTrue(self.vantorel.is_running())

    def _answer_with_pins(self):
        self.vantorel.clear_by_keys(pinned_too=True)
        self.vantorel.wait_for_notice("All clipboard history cleared.")

    def _contents(self, key):
        from harness.history import unseal
        return unseal(key, self.vantorel.history.raw())


class Check(VantorelTestCase):
    autostart = False

    def check(self, env=None):
        done = self.desktop.run([program_path(), "--check"], env)
        return done.returncode, done.stdout.decode()

    def assert_says(self, expected, env=None):
        status, text = self.check(env)
        self.assertIn(expected, text)
        return status

    def test_a_desktop_with_all_that_is_needed_is_enough(self):
        before = sorted(os.listdir(self.desktop.home))
        self.assertEqual(self.assert_says("yes  Keyring           unlocked"), 0)
        self.assert_says("yes  Display           X11 with Openbox")
        self.assert_says("Super+Shift+V is free")
        self.assert_says("no   Tray")
        self.assert_says("read in eng, heb")
        self.assertEqual(self.desktop.keyring.item_count(), 0)
        self.assertEqual(sorted(os.listdir(self.desktop.home)), before)

    def test_who_only_collects_items_is_no_tray(self):
        tray = Tray(self.desktop, host=False)
        self.assertEqual(self.assert_says("no   Tray"), 0)
        tray.set_host(True)
        self.assert_says("yes  Tray              there, for StatusNotifier items")

    def test_the_running_instance_and_a_tray_are_seen(self):
        Tray(self.desktop)
        self.vantorel.start()
        self.assertEqual(self.assert_says(
            "yes  Tray              there, for StatusNotifier items"), 0)
        self.assert_says("asked for by the running Vantorel")

    def test_keys_that_another_program_holds_are_named_as_chosen(self):
        self.vantorel.set_defaults({"shortcut.keyCode": 11, "shortcut.modifiers": 0x100 | 0x200,
                                    "shortcut.keyLabel": "B"})
        self.assert_says("Super+Shift+B is free")
        self.take_keys(XK.XK_b)
        self.assertEqual(self.assert_says("NO   Shortcut          Super+Shift+B cannot be had"), 1)

    def test_a_locked_keyring_is_no_missing_one(self):
        self.desktop.keyring.lock()
        self.assertEqual(self.assert_says("NO   Keyring           locked"), 1)

    def test_damaged_settings_stay_where_they_are(self):
        os.makedirs(os.path.dirname(self.vantorel.defaults_file), exist_ok=True)
        with open(self.vantorel.defaults_file, "w", encoding="ascii") as file:
            file.write("{")
        self.assert_says("Super+Shift+V")
        with open(self.vantorel.defaults_file, encoding="ascii") as file:
            self.assertEqual(file.read(), "{")
        self.assertEqual(os.listdir(os.path.dirname(self.vantorel.defaults_file)),
                         ["defaults.json"])

    def test_without_a_display_or_a_bus_it_says_just_that(self):
        status, text = self.check({"DISPLAY": ":4711", "DBUS_SESSION_BUS_ADDRESS": "unix:path=/no"})
        self.assertEqual(status, 1)
        self.assertIn("NO   Display", text)
        self.assertIn("NO   Session bus", text)
        self.assertNotIn("Keyring", text)

    def take_keys(self, keysym):
        root = self.desktop.display.screen().root
        code = self.desktop.display.keysym_to_keycode(keysym)
        root.grab_key(code, X.Mod4Mask | X.ShiftMask, False, X.GrabModeAsync, X.GrabModeAsync)
        self.desktop.display.sync()


class CheckWithoutKeyring(VantorelTestCase):
    autostart = False
    desktop_options = {"keyring": KeyringState.ABSENT}

    def test_it_says_what_to_install(self):
        done = self.desktop.run([program_path(), "--check"])
        self.assertEqual(done.returncode, 1)
        self.assertIn("Install gnome-keyring", done.stdout.decode())


class EveryCommandOnSway(OnSway, EveryCommand):
    # What comes over the bus knows no desktop.
    test_by_the_bus = test_by_the_desktop_entry = None

    def by_option(self, name, argument=None):
        self.before = self.desktop.picture()
        super().by_option(name, argument)

    def dismiss_menu(self):
        # A reader is told of a menu's rows, but not that it is there.
        wait_for("the menu", lambda: self.desktop.picture() != self.before)
        self.desktop.keyboard.tap("Escape")
        wait_for("no menu", lambda: self.desktop.picture() == self.before)



if __name__ == "__main__":
    unittest.main()
