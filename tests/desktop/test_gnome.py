# SPDX-License-Identifier: MIT
"""The program in a session of GNOME, which lets in X11 programs alone."""

import time
import unittest

from harness.case import VantorelTestCase
from harness.gnome import GnomeDesktop
from harness.vantorel import NO_TARGET_NOTICE, program_path
from harness.waiting import wait_for

RECORDER = "Keyboard Shortcut"


class Shell(VantorelTestCase):
    desktop_class = GnomeDesktop
    autostart = False

    def start(self):
        """Starts the program and copies until it takes notice."""
        self.vantorel.start(capturing=False)
        attempts = []

        def noticed():
            if not attempts or time.monotonic() - attempts[-1] > 1:
                attempts.append(time.monotonic())
                self.desktop.copy(f"attempt {len(attempts)}")
            return self.vantorel.history.texts()

        wait_for("the program to capture", noticed)

    def press(self, window, name):
        """Presses a button of a window, as a screen reader's user does."""
        def found():
            program = self.vantorel.accessibility.program("vantorel")
            windows = [] if program is None else [
                each for each in program.children if each.name == window and each.showing]
            return [element for each in windows for element in each.find(name=name)]
        element = wait_for(f"{name!r} in {window!r}", found, 20)[0]
        self.vantorel.accessibility.press("vantorel", element)

    def test_copies_of_wayland_programs_are_recorded_at_once(self):
        self.start()
        for text in ("first", "second"):
            self.desktop.copy(text)
            self.vantorel.wait_for_newest(text)

    def test_a_chosen_entry_is_ready_to_be_pasted_by_hand(self):
        self.start()
        self.desktop.copy("a note")
        self.vantorel.wait_for_newest("a note")
        self.desktop.copy("a newer one")
        self.vantorel.wait_for_newest("a newer one")
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        self.desktop.press("Down")
        self.desktop.press("Return")
        self.vantorel.wait_for_notice(NO_TARGET_NOTICE)
        wait_for("the entry on the clipboard", lambda: self.clipboard.text() == "a note",
                 describe=self.clipboard.text)

    def test_check_says_how_the_keys_are_had(self):
        text = self.desktop.run([program_path(), "--check"]).stdout.decode()
        self.assertIn("no   Shortcut", text)
        self.assertIn("vantorel --toggle\n", text)

    def test_keys_that_the_user_lets_gnome_have_open_the_panel(self):
        self.desktop.start_media_keys()
        self.vantorel.start(capturing=False)
        self.vantorel.wait_until_on_bus()  # or the command is the program
        self.vantorel.command("--shortcut")
        self.press(RECORDER, "Add to GNOME")
        self.vantorel.wait_for_notice("Shortcut set to Super+Shift+V")
        self.press(RECORDER, "Close")

        def opened():
            self.desktop.press("Super_L", "Shift_L", "v")
            return self.vantorel.panel()

        wait_for("the panel", opened, 20)
        self.vantorel.command("--shortcut")
        self.press(RECORDER, "Remove")
        self.vantorel.wait_for_notice("Shortcut removed from GNOME.")


if __name__ == "__main__":
    unittest.main()
