# SPDX-License-Identifier: MIT
"""What a screen reader says: a real one, which writes its speech down."""

import unittest

from harness import applications
from harness.case import VantorelTestCase
from harness.panel_case import FRUITS
from harness.screen_reader import ScreenReader
from harness.waiting import wait_for


class Speech(VantorelTestCase):
    autostart = False

    def setUp(self):
        super().setUp()
        self.reader = ScreenReader(self.desktop).start()
        self.vantorel.start()
        applications.gtk_editor(self.desktop, self.path("gtk.txt"))

    def press(self, *chords):
        for chord in chords:
            self.desktop.keyboard.chord(chord)

    def open_with(self, texts):
        for text in texts:
            self.vantorel.copy(text)
        self.reader.forget()
        self.vantorel.open_panel()
        return self.reader.wait_for(f"{texts[-1]}, ")

    def hear(self, words, act):
        """Answers all that is said from `act` until these words."""
        self.reader.forget()
        act()
        return self.reader.wait_for(words)

    def test_the_panel_opens_with_its_first_row(self):
        said = self.open_with(FRUITS)
        self.assertIn("Vantorel", said[0])
        self.assertEqual(len([one for one in said if "cherry" in one]), 1, said)
        self.assertIn("cherry", said[-1])

    def test_an_empty_panel_says_so(self):
        self.reader.forget()
        self.vantorel.open_panel()
        self.reader.wait_for("No clips yet")

    def test_rows_are_said_as_one_walks_and_pins_as_a_state(self):
        self.open_with(FRUITS)
        self.hear("banana, ", lambda: self.press("Down"))
        said = self.hear("Pinned", lambda: self.press("Ctrl+p"))
        self.assertEqual(len([one for one in said if "banana" in one]), 1, said)
        self.hear("Not pinned", lambda: self.press("Ctrl+p"))
        self.hear("cherry, ", lambda: self.press("Up"))

    def test_an_entry_that_takes_the_place_of_a_deleted_one_is_said(self):
        self.open_with(FRUITS)
        self.hear("banana, ", lambda: self.press("Delete"))

    def test_a_search_says_how_much_it_found(self):
        self.open_with(FRUITS)
        self.hear("1 clip found", lambda: self.desktop.keyboard.type("an"))
        said = self.hear("No matching clips", lambda: self.desktop.keyboard.type("z"))
        self.assertFalse([one for one in said if "Search clips" in one], said)
        self.hear("cherry, ", lambda: self.press("Escape", "Tab"))
        said = self.hear("Search clips", lambda: self.press("Shift+Tab"))
        self.assertEqual(" ".join(said).count("Search clips"), 1, said)

    def test_what_a_search_has_found_is_said_as_one_walks_from_the_field(self):
        self.open_with((*FRUITS, "mango"))
        self.hear("2 clips found", lambda: self.desktop.keyboard.type("an"))
        said = self.hear("banana, ", lambda: self.press("Down"))
        self.assertEqual(len([one for one in said if "banana" in one]), 1, said)
        self.hear("mango, ", lambda: self.press("Up"))

    def test_a_notice_is_said_once(self):
        said = self.hear("paused for 1 hour", lambda: self.vantorel.command("--pause-1-hour"))
        self.assertEqual(" ".join(said).count("paused for 1 hour"), 1, said)

    def test_the_recorder_says_what_it_waits_for_and_what_it_refuses(self):
        said = self.hear("two modifier keys", lambda: self.vantorel.command("--shortcut"))
        self.assertIn("Keyboard Shortcut dialog", " ".join(said))
        self.hear("Use two modifiers", lambda: self.press("x"))

    def test_the_question_before_clearing_is_said_whole(self):
        self.open_with(FRUITS)
        self.press("Escape")
        self.vantorel.wait_until_hidden()
        said = " ".join(self.hear("Cancel", lambda: self.vantorel.command("--clear")))
        for words in ("Clear Clipboard History?", "dialog", "Pinned clips are kept"):
            self.assertIn(words, said)


class Windows(VantorelTestCase):
    def window(self, title):
        """The window with this title as readers know it."""
        def found():
            program = self.vantorel.accessibility.program("vantorel")
            return program and next((window for window in program.children
                                     if window.name == title), None)
        return wait_for(f"the window {title!r}", found)

    def test_windows_are_windows_and_dialogs_are_dialogs(self):
        self.vantorel.open_panel()
        self.assertEqual(self.window("Vantorel").role, "frame")
        self.desktop.keyboard.chord("Escape")
        self.vantorel.wait_until_hidden()
        for command, title in (("--about", "About Vantorel"), ("--shortcut", "Keyboard Shortcut"),
                               ("--clear", "Clear Clipboard History?")):
            self.vantorel.command(command)
            self.assertEqual(self.window(title).role, "dialog")
            self.desktop.windows.wait_for_title(title)
            self.desktop.keyboard.chord("Escape")
            self.desktop.windows.wait_gone(title)

    def test_the_menus_of_the_filters_have_their_names(self):
        self.vantorel.copy("text")
        self.vantorel.open_panel()
        self.desktop.keyboard.chord("Ctrl+f")
        for name in ("Filter by type", "Filter by app"):
            button = wait_for("the button", lambda n=name: self.vantorel.control(n))
            self.desktop.pointer.click(*button.centre())
            wait_for(f"the menu {name!r}",
                     lambda n=name: self.window("Vantorel").find("popup menu", n))
            self.desktop.keyboard.chord("Escape")
            wait_for("no menu", lambda: not self.window("Vantorel").find("popup menu"))


if __name__ == "__main__":
    unittest.main()
