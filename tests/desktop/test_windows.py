# SPDX-License-Identifier: MIT
"""The recorder of the shortcut, the help and the privacy policy, under a user's hands."""

from Xlib import X

from harness.case import VantorelTestCase
from harness.tray_case import QUESTION
from harness.vantorel import PANEL
from harness.waiting import stays_true, wait_for

HELP = "About Vantorel"
POLICY = "מדיניות הפרטיות"
RECORDER = "Keyboard Shortcut"
FIRST_SIZE = (470, 438)


class WindowsTestCase(VantorelTestCase):
    """The program's first start, with the welcome on screen."""

    autostart = False

    def setUp(self):
        super().setUp()
        self.vantorel.start(welcome=True)
        self.help = self.open_window(HELP)

    def open_window(self, title):
        """Waits until a window of the program is there and has the keyboard."""
        window = self.desktop.windows.wait_for_title(title)
        wait_for(f"{title!r} to have the keyboard",
                 lambda: self.desktop.windows.has_focus(window), 20,
                 lambda: hex(self.desktop.windows.focus()))
        return window

    def element(self, window_title, name):
        """The control or text with this name in a window, as a screen reader is told of it."""
        def found():
            program = self.vantorel.accessibility.program("vantorel")
            windows = [] if program is None else [
                window for window in program.children
                if window.name == window_title and window.showing]
            return [element for window in windows for element in window.find(name=name)]
        return wait_for(f"{name!r} in {window_title!r}", found, 20)[0]

    def click(self, window_title, name):
        self.desktop.pointer.click(*self.element(window_title, name).centre())

    def open_recorder(self):
        self.click(HELP, "Change shortcut")
        return self.open_window(RECORDER)

    def record(self, chord):
        """Records a shortcut that can be had."""
        self.open_recorder()
        self.desktop.keyboard.chord(chord)
        self.desktop.windows.wait_gone(RECORDER)

    def grab(self, keycode, modifiers):
        """Another program's shortcut."""
        self.desktop.display.screen().root.grab_key(keycode, modifiers, False, X.GrabModeAsync,
                                                    X.GrabModeAsync)
        self.desktop.display.sync()

    def panel_opens_with(self, chord):
        self.desktop.keyboard.chord(chord)
        self.vantorel.wait_for_panel()
        self.desktop.keyboard.chord(chord)
        self.vantorel.wait_until_hidden()


class Welcome(WindowsTestCase):
    def test_the_first_start_welcomes_once(self):
        frame = self.desktop.windows.frame(self.help)
        self.assertEqual((frame.width, frame.height), FIRST_SIZE)
        wait_for("the welcome to be painted",
                 lambda: self.desktop.windows.distinct_colours(frame) > 50, 20,
                 lambda: self.desktop.windows.distinct_colours(frame))
        self.element(HELP, "ברוכים הבאים ל־Vantorel")
        self.assertIs(self.vantorel.defaults()["didShowOnboardingV2"], True)
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start(welcome=True)
        stays_true("no window", lambda: not self.desktop.windows.titled(HELP), 1)

    def test_return_closes_it_and_the_shortcut_works_afterwards(self):
        self.desktop.keyboard.tap("Return")
        self.desktop.windows.wait_gone(HELP)
        self.panel_opens_with("Super+Shift+v")

    def test_the_shortcut_works_while_it_is_shown(self):
        self.panel_opens_with("Super+Shift+v")

    def test_the_window_managers_close_closes_it(self):
        self.desktop.windows.close(self.help)
        self.desktop.windows.wait_gone(HELP)
        self.assertTrue(self.vantorel.is_running())

    def test_it_says_that_pasting_is_possible_here(self):
        self.click(HELP, "הרשאת הנגישות פעילה")
        self.vantorel.wait_for_notice("This desktop allows automatic paste.")


class About(WindowsTestCase):
    def test_it_leads_to_the_policy_and_return_closes_both(self):
        self.desktop.keyboard.tap("Return")
        self.desktop.windows.wait_gone(HELP)
        self.assertEqual(self.vantorel.command("--about").returncode, 0)
        self.open_window(HELP)
        self.click(HELP, "מדיניות הפרטיות המלאה")
        policy = self.open_window(POLICY)
        frame = self.desktop.windows.frame(policy)
        self.assertEqual((frame.width, frame.height), (520, 590))
        before = self.desktop.windows.pixels(frame)
        self.desktop.keyboard.tap("End")
        wait_for("the text to move", lambda: self.desktop.windows.pixels(frame) != before)
        self.desktop.keyboard.tap("Return")
        self.desktop.windows.wait_gone(POLICY)
        self.open_window(HELP)
        self.desktop.keyboard.tap("Return")
        self.desktop.windows.wait_gone(HELP)


class Languages(WindowsTestCase):
    """Who does not read Hebrew is welcomed in English, and may change."""

    def setUp(self):
        VantorelTestCase.setUp(self)
        self.desktop.env["LC_ALL"] = "de_DE.UTF-8"
        self.vantorel.start(welcome=True)
        self.help = self.open_window(HELP)

    def test_the_link_leads_to_the_other_language_and_back(self):
        self.element(HELP, "Get Started")
        self.click(HELP, "עברית")
        self.element(HELP, "מתחילים")
        self.click(HELP, "English")
        self.element(HELP, "Get Started")

    def test_the_policy_is_of_the_same_language_and_escape_closes_it(self):
        self.desktop.keyboard.tap("Escape")
        self.desktop.windows.wait_gone(HELP)
        self.vantorel.command("--about")
        self.open_window(HELP)
        self.click(HELP, "The full privacy policy")
        self.open_window("Privacy Policy")
        self.desktop.keyboard.tap("Escape")
        self.desktop.windows.wait_gone("Privacy Policy")


class Accessory(WindowsTestCase):
    """No window of the program is one of those that the user works with."""

    def check(self, title):
        window = self.open_window(title)
        wait_for(f"{title!r} to be on every desktop",
                 lambda: self.desktop.windows.on_every_desktop(window))
        self.assertTrue(self.desktop.windows.is_utility(window), title)

    def test_its_windows_are_in_no_taskbar_and_on_every_desktop(self):
        self.check(HELP)
        for option, title in (("--shortcut", RECORDER), ("--clear", QUESTION), ("--about", HELP)):
            self.assertEqual(self.vantorel.command(option).returncode, 0)
            self.check(title)
            self.desktop.keyboard.tap("Return" if title == HELP else "Escape")
            self.desktop.windows.wait_gone(title)
        for _ in range(2):
            self.desktop.keyboard.chord("Super+Shift+v")
            self.check(PANEL)
            self.desktop.keyboard.chord("Super+Shift+v")
            self.desktop.windows.wait_gone(PANEL)

    def test_the_keyboard_goes_back_to_the_window_it_came_from(self):
        self.desktop.keyboard.chord("Super+Shift+v")
        self.vantorel.wait_for_panel()
        self.desktop.keyboard.tap("Escape")
        self.vantorel.wait_until_hidden()
        self.open_window(HELP)
        self.vantorel.command("--clear")
        self.open_window(QUESTION)
        self.desktop.keyboard.tap("Escape")
        self.desktop.windows.wait_gone(QUESTION)
        self.open_window(HELP)

    def test_the_policy_too(self):
        self.desktop.keyboard.tap("Return")
        self.desktop.windows.wait_gone(HELP)
        self.vantorel.command("--about")
        self.open_window(HELP)
        self.click(HELP, "מדיניות הפרטיות המלאה")
        self.check(POLICY)


class Recorder(WindowsTestCase):
    def test_a_new_shortcut_works_at_once_and_after_a_restart(self):
        self.record("Super+Alt+k")
        self.vantorel.wait_for_notice("Shortcut set to Super+Alt+K")
        self.element(HELP, "Super+Alt+K")
        self.panel_opens_with("Super+Alt+k")
        self.assertEqual({key: value for key, value in self.vantorel.defaults().items()
                          if key.startswith("shortcut.")},
                         {"shortcut.keyCode": 40, "shortcut.modifiers": 0x900,
                          "shortcut.keyLabel": "K"})
        self.desktop.keyboard.chord("Super+Shift+v")
        stays_true("no panel", lambda: self.vantorel.panel() is None, 0.3)
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start()
        self.panel_opens_with("Super+Alt+k")

    def test_a_digit_is_recorded_with_shift_too(self):
        self.record("Super+Shift+1")
        self.vantorel.wait_for_notice("Shortcut set to Super+Shift+1")
        self.panel_opens_with("Super+Shift+1")
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start()
        self.panel_opens_with("Super+Shift+1")

    def test_it_hears_keys_that_the_window_manager_uses(self):
        # Alt+F4 closes windows here; no shortcut, but it must not close the recorder either.
        recorder = self.open_recorder()
        self.element(RECORDER, "Press a shortcut with two modifier keys")
        self.desktop.keyboard.chord("Alt+F4")
        self.element(RECORDER, "Use two modifiers and a letter, number or Space")
        self.assertTrue(self.desktop.windows.has_focus(recorder))

    def test_a_shortcut_of_another_program_is_unavailable_and_the_old_one_stays(self):
        self.grab(45, X.Mod4Mask | X.ShiftMask)
        self.open_recorder()
        self.desktop.keyboard.chord("Super+Shift+k")
        self.element(RECORDER, "That shortcut is unavailable. Try another.")
        self.desktop.keyboard.tap("Escape")
        self.desktop.windows.wait_gone(RECORDER)
        self.panel_opens_with("Super+Shift+v")
        self.assertNotIn("shortcut.keyCode", self.vantorel.defaults())

    def test_the_shortcut_in_force_closes_it_and_opens_no_panel(self):
        self.record("Super+Shift+v")
        stays_true("no panel", lambda: self.vantorel.panel() is None, 0.3)
        self.panel_opens_with("Super+Shift+v")

    def test_reset_brings_back_the_default(self):
        self.record("Ctrl+Alt+k")
        self.open_recorder()
        self.click(RECORDER, "Reset")
        self.vantorel.wait_for_notice("Shortcut set to Super+Shift+V")
        self.panel_opens_with("Super+Shift+v")

    def test_cancel_gives_the_keyboard_back(self):
        self.open_recorder()
        self.click(RECORDER, "Cancel")
        self.desktop.windows.wait_gone(RECORDER)
        self.panel_opens_with("Super+Shift+v")

    def test_recorded_on_a_hebrew_keyboard_it_works_on_others(self):
        self.desktop.set_layout("il")
        self.record("Super+Alt+k")
        self.element(HELP, "Super+Alt+K")
        for layout in ("us", "fr", "ru"):
            self.desktop.set_layout(layout)
            self.panel_opens_with("Super+Alt+k")

    def test_its_window_is_no_history_panel(self):
        self.open_recorder()
        self.assertEqual(self.desktop.windows.titled(PANEL), [])
