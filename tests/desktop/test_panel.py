# SPDX-License-Identifier: MIT
"""The panel under a user's hands: keys, search, pointer, shortcut, place."""

import time
import unittest

from Xlib import X

from harness import applications
from harness.case import VantorelTestCase
from harness.panel_case import PanelTestCase
from harness.vantorel import SHORTCUT
from harness.waiting import stays_true, wait_for
from harness.wayland_case import OnSway, on_sway
from harness.windows import Frame

PIN_LIMIT_NOTICE = "Up to 5 pins. Unpin an item first."


class Keys(PanelTestCase):
    def test_rows_are_listed_newest_first_with_their_source(self):
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["cherry", "banana", "apple"])
        self.assertTrue(all(row.metadata.startswith("Mousepad") for row in self.vantorel.rows()))

    def test_control_and_a_digit_paste_that_entry(self):
        self.vantorel.open_panel()
        self.press("Ctrl+3")
        self.editor.wait_for_text("apple")

    def test_control_and_a_digit_beyond_the_list_do_nothing(self):
        panel = self.vantorel.open_panel()
        self.press("Ctrl+4")
        stays_true("the panel to be shown", lambda: self.desktop.windows.has_focus(panel), 0.3)
        self.press("Escape")
        self.vantorel.wait_until_hidden()
        self.editor.assert_empty()

    def test_both_delete_keys_remove_the_selected_entry_from_disk_too(self):
        self.vantorel.open_panel()
        self.press("Down", "Delete")
        self.vantorel.wait_for_texts(["cherry", "apple"])
        self.vantorel.wait_for_rows(["cherry", "apple"])
        self.press("BackSpace")
        self.vantorel.wait_for_texts(["apple"])

    def test_a_pin_goes_to_the_top_and_survives_a_restart(self):
        self.vantorel.open_panel()
        self.press("Down", "Down", "Ctrl+p")
        self.vantorel.wait_for_rows(["apple", "cherry", "banana"])
        self.press("Escape")
        self.vantorel.wait_until_hidden()
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start()
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["apple", "cherry", "banana"])
        self.assertTrue(self.vantorel.history.items()[0]["isPinned"])

    def test_a_sixth_pin_is_refused_with_a_notice(self):
        for text in ("date", "elder", "fig"):
            self.vantorel.copy(text)
        self.vantorel.open_panel()
        # Five times the last row, which each time is an entry not pinned yet.
        for number in range(5):
            self.press("Down", "Down", "Down", "Down", "Down", "Ctrl+p")
            wait_for("one pin more", lambda count=number + 1: self.pins() == count)
        self.press("Down", "Down", "Down", "Down", "Down", "Ctrl+p")
        self.vantorel.wait_for_notice(PIN_LIMIT_NOTICE)
        self.assertEqual(self.pins(), 5)

    def test_alt_and_arrows_move_pins(self):
        self.vantorel.open_panel()
        self.press("Ctrl+p", "Down", "Ctrl+p")
        wait_for("two pins", lambda: self.pins() == 2)
        self.vantorel.wait_for_rows(["cherry", "banana", "apple"])
        self.press("Alt+Up")
        self.vantorel.wait_for_rows(["banana", "cherry", "apple"])
        wait_for("the order on disk", lambda: self.vantorel.history.texts() ==
                 ["banana", "cherry", "apple"])


class Search(PanelTestCase):
    def test_typing_filters_the_list(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.type("an")
        self.vantorel.wait_for_rows(["banana"])
        self.assertEqual(self.vantorel.search_text(), "an")
        self.press("Return")
        self.editor.wait_for_text("banana")

    def test_nothing_that_is_typed_fast_is_lost(self):
        self.press(SHORTCUT)
        self.vantorel.wait_for_panel()
        self.desktop.keyboard.type("cherry")
        wait_for("the whole word in the search field",
                 lambda: self.vantorel.search_text() == "cherry", 20, self.vantorel.search_text)
        self.vantorel.wait_for_rows(["cherry"])

    def test_while_something_is_typed_a_reader_stays_in_the_field(self):
        reader = self.vantorel.accessibility
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["cherry", "banana", "apple"])
        reader.focused()
        sent = []

        def sent_to(beginning):
            sent.extend(reader.focused())
            return any(name.startswith(beginning) for name in sent)

        # The program learns that somebody listens when it does.
        wait_for("the reader in the list", lambda: self.press("Down", "Up") or sent_to("cherry, "), 10,
                 lambda: sent)
        self.desktop.keyboard.type("a")
        wait_for("the reader in the field", lambda: sent_to("Search clips"), 10, lambda: sent)
        sent.clear()
        self.desktop.keyboard.type("n")
        self.vantorel.wait_for_rows(["banana"])
        self.assertFalse(sent_to("banana, "), sent)
        self.press("Tab")
        wait_for("the reader in the list again", lambda: sent_to("banana, "), 10, lambda: sent)

    def test_what_was_typed_is_walked_through_and_pasted_without_leaving_the_field(self):
        self.vantorel.copy("mango")
        self.vantorel.open_panel()
        self.desktop.keyboard.type("an")
        self.vantorel.wait_for_rows(["mango", "banana"])
        self.press("Down", "Return")
        self.editor.wait_for_text("banana")

    def test_filters_and_menus_are_reached_by_keys(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.type("an")
        self.vantorel.wait_for_rows(["banana"])
        self.press("Tab", "Tab", "Space")
        wait_for("the menu of types", lambda: self.menu_item("Images"))
        self.press("Escape")
        wait_for("no menu", lambda: not self.menu_item("Images"))
        self.desktop.keyboard.type("a")
        wait_for("the letter in the field", lambda: self.vantorel.search_text() == "ana")
        self.press("Shift+F10")
        wait_for("the row's menu", lambda: self.menu_item("Delete"))

    def test_asked_for_from_outside_it_takes_the_keyboard_back(self):
        terminal = applications.Terminal(self.desktop, self.path("terminal.txt"))
        self.vantorel.open_panel()
        terminal.to_front()
        self.vantorel.command("--search")
        wait_for("the search field", lambda: self.vantorel.control("Search clips"))
        wait_for("the keyboard in the panel",
                 lambda: self.desktop.windows.has_focus(self.vantorel.panel()), 5)
        self.desktop.keyboard.type("ch")
        self.vantorel.wait_for_rows(["cherry"])
        self.press("Return")
        terminal.wait_for_text("cherry")

    def test_escape_clears_the_text_first_and_hides_then(self):
        panel = self.vantorel.open_panel()
        self.desktop.keyboard.type("an")
        self.vantorel.wait_for_rows(["banana"])
        self.press("Escape")
        self.vantorel.wait_for_rows(["cherry", "banana", "apple"])
        self.assertTrue(self.desktop.windows.has_focus(panel))
        self.press("Escape")
        self.vantorel.wait_until_hidden()
        self.desktop.windows.wait_active(self.editor.window)

    def test_keys_edit_the_text_while_there_is_some(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.type("anx")
        wait_for("the text", lambda: self.vantorel.search_text() == "anx")
        self.press("BackSpace")
        self.vantorel.wait_for_rows(["banana"])
        self.assertEqual(len(self.vantorel.history.items()), 3)

    def test_a_search_without_a_match_says_so(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.type("zzz")
        self.vantorel.wait_for_words("No matching clips")
        self.assertEqual(self.vantorel.rows(), [])

    def test_a_new_opening_starts_without_the_old_search(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.type("an")
        self.vantorel.wait_for_rows(["banana"])
        self.press(SHORTCUT)
        self.vantorel.wait_until_hidden()
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["cherry", "banana", "apple"])


class PointerOnThePanel(PanelTestCase):
    def test_a_click_on_a_row_pastes_it(self):
        self.vantorel.open_panel()
        self.vantorel.click_row("banana")
        self.editor.wait_for_text("banana")

    def test_a_click_outside_hides_the_panel(self):
        self.vantorel.open_panel()
        self.desktop.pointer.click(20, self.desktop.size[1] - 20)
        self.vantorel.wait_until_hidden()

    def test_a_click_into_another_window_hides_the_panel(self):
        self.vantorel.open_panel()
        frame = self.desktop.windows.frame(self.editor.window)
        self.desktop.pointer.click(frame.x + 5, frame.y + frame.height - 5)
        self.vantorel.wait_until_hidden()

    def test_the_pin_button_pins_and_does_not_paste(self):
        self.vantorel.open_panel()
        row = self.vantorel.wait_for_row("apple")
        pin = row.element.find(name="Pin")[0]
        self.desktop.pointer.click(*pin.centre())
        wait_for("the pinned entry on disk", lambda: self.vantorel.history.items()[0]["isPinned"])
        self.assertEqual(self.vantorel.history.texts()[0], "apple")
        self.assertIsNotNone(self.vantorel.panel())

    def test_a_list_that_changes_under_the_pointer_is_not_rebuilt(self):
        self.vantorel.open_panel()
        self.desktop.pointer.move(*self.vantorel.wait_for_row("banana").centre)
        self.vantorel.copy("date")
        self.assert_rows_stay(["cherry", "banana", "apple"])

    def test_a_copy_made_meanwhile_appears_in_the_open_panel(self):
        self.desktop.pointer.move(5, 5)
        self.vantorel.open_panel()
        self.vantorel.copy("date")
        self.vantorel.wait_for_rows(["date", "cherry", "banana", "apple"])


class ShortcutTestCase(PanelTestCase):
    def _opens_and_hides(self):
        self.vantorel.open_panel()
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()
        self.desktop.windows.wait_active(self.editor.window)


class Shortcut(ShortcutTestCase):
    def test_a_second_press_hides_and_the_application_has_the_keyboard_again(self):
        self._opens_and_hides()
        self._opens_and_hides()

    def test_pressed_fast_many_times_it_ends_where_it_should(self):
        for _ in range(9):
            began = time.monotonic()
            self.vantorel.press_shortcut()
            # No hand is faster, and a press in the very moment of a release is a key's repeat.
            wait_for("twenty milliseconds", lambda start=began: time.monotonic() - start > 0.02)
        self.vantorel.wait_for_panel()
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()

    def test_it_reaches_no_other_application(self):
        self._opens_and_hides()
        self.editor.assert_empty()


class ShortcutOfTheProgram(ShortcutTestCase):
    """Where the program asks for the keys itself."""

    def test_it_works_with_caps_lock_and_num_lock(self):
        keyboard = self.desktop.keyboard
        for locks, mask in ((("CapsLock",), X.LockMask), (("NumLock",), X.Mod2Mask),
                            (("CapsLock", "NumLock"), X.LockMask | X.Mod2Mask)):
            with self.subTest(locks):
                for lock in locks:
                    keyboard.tap(lock)
                wait_for("the locks", lambda expected=mask: keyboard.locked() == expected)
                self._opens_and_hides()
                for lock in locks:
                    keyboard.tap(lock)
                wait_for("no locks", lambda: keyboard.locked() == 0)

    def test_a_stored_shortcut_is_used_instead(self):
        self.vantorel.quit()
        self.vantorel.set_defaults({"shortcut.keyCode": 40, "shortcut.modifiers": 0x1800,
                                    "shortcut.keyLabel": "K"})
        self.vantorel.start()
        self.vantorel.press_shortcut()
        self.desktop.keyboard.chord("Ctrl+Alt+k")
        self.vantorel.wait_for_panel()

    def test_a_shortcut_that_is_taken_is_announced(self):
        self.vantorel.quit()
        root = self.desktop.display.screen().root
        root.grab_key(55, X.Mod4Mask | X.ShiftMask, False, X.GrabModeAsync, X.GrabModeAsync)
        self.desktop.display.sync()
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice(
            "Shortcut unavailable. Open Keyboard Shortcut to choose another.")
        self.vantorel.wait_until_capturing()
        self.assertEqual(self.vantorel.command("--toggle").returncode, 0)
        self.vantorel.wait_for_panel()


class VirtualDesktops(PanelTestCase):
    def setUp(self):
        super().setUp()
        self.desktop.windows.set_desktops(2)

    def test_the_panel_comes_up_on_the_desktop_that_is_looked_at(self):
        for number in (1, 0, 1):
            self.desktop.windows.switch_desktop(number)
            self.vantorel.open_panel()
            self.vantorel.press_shortcut()
            self.vantorel.wait_until_hidden()

    def test_an_open_panel_comes_along_and_the_shortcut_hides_it(self):
        self.vantorel.open_panel()
        self.desktop.windows.switch_desktop(1)
        self.assertIsNotNone(self.vantorel.panel())
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()
        self.vantorel.open_panel()

    def test_a_panel_that_was_put_out_of_sight_is_brought_back_by_the_shortcut(self):
        self.vantorel.open_panel()
        self.desktop.windows.show_background()
        self.vantorel.wait_until_hidden()
        self.vantorel.open_panel()
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()


class Layouts(PanelTestCase):
    def _shortcut_opens_and_return_pastes(self, expected):
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")
        self.editor.wait_for_text(expected)

    def test_with_a_french_keyboard(self):
        self.desktop.set_layout("fr")
        self._shortcut_opens_and_return_pastes("cherry")

    def test_a_letter_of_a_dead_key_opens_the_search_whole(self):
        self.desktop.set_layout("fr")
        self.vantorel.open_panel()
        for key in ("[", "e"):  # a dead circumflex
            self.desktop.keyboard.tap(key)
        wait_for("the letter", lambda: self.vantorel.search_text() == "ê", 5,
                 self.vantorel.search_text)

    def test_with_a_second_layout_in_force(self):
        self.desktop.set_layout("us,il", "grp:menu_toggle")
        self.desktop.keyboard.tap("Menu")
        self._shortcut_opens_and_return_pastes("cherry")

    def test_with_a_second_layout_at_rest(self):
        self.desktop.set_layout("us,il")
        self._shortcut_opens_and_return_pastes("cherry")

    def test_with_the_layouts_in_the_other_order(self):
        self.desktop.set_layout("il,us")
        self._shortcut_opens_and_return_pastes("cherry")

    def test_hebrew_typed_into_the_search_finds_hebrew(self):
        self.vantorel.copy("שלום")
        self.desktop.set_layout("us,il", "grp:menu_toggle")
        self.desktop.keyboard.tap("Menu")
        self.vantorel.open_panel()
        for key in ("a", "k"):  # ש, ל
            self.desktop.keyboard.tap(key)
        self.vantorel.wait_for_rows(["שלום"])

    def test_a_layout_changed_while_running_keeps_the_shortcut(self):
        for layout in ("fr", "us", "il,us", "us"):
            self.desktop.set_layout(layout)
            self.vantorel.open_panel()
            self.vantorel.press_shortcut()
            self.vantorel.wait_until_hidden()


class Place(VantorelTestCase):
    def _expected(self, height):
        width, screen = 408, self.desktop.size
        return Frame((screen[0] - width) // 2, (screen[1] - height) // 2, width, height)

    def _shown_frame(self):
        panel = self.vantorel.panel()
        return panel and self.desktop.windows.frame(panel)

    def _wait_for_frame(self, height):
        expected = self._expected(height)

        def near():
            frame = self._shown_frame()
            return frame and all(abs(have - want) <= 1 for have, want in zip(frame, expected))

        wait_for(f"the panel at {expected}", near, 20, self._shown_frame)

    def test_an_empty_history_shows_a_small_panel_in_the_middle(self):
        self.vantorel.open_panel()
        self._wait_for_frame(94)
        self.vantorel.wait_for_words("No clips yet")

    def test_the_panel_is_as_high_as_its_rows_up_to_nine(self):
        for number in range(3):
            self.vantorel.copy(f"text {number}")
        self.vantorel.open_panel()
        self._wait_for_frame(48 * 3 + 2 + 20)
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()
        for number in range(3, 14):
            self.vantorel.copy(f"text {number}")
        self.vantorel.open_panel()
        self._wait_for_frame(48 * 9 + 8 + 20)

    def test_the_search_field_makes_the_panel_higher(self):
        self.vantorel.copy("text")
        self.vantorel.open_panel()
        self._wait_for_frame(94)
        self.desktop.keyboard.type("te")
        self._wait_for_frame(48 + 39 + 20)

    def test_the_panel_is_really_painted(self):
        for number in range(4):
            self.vantorel.copy(f"text {number}")
        self.vantorel.open_panel()
        wait_for("a picture of many colours",
                 lambda: self.desktop.windows.distinct_colours(self._shown_frame()) > 16)


class PlaceWithCompositor(Place):
    desktop_options = {"compositor": True}


KeysOnSway, PlaceOnSway = on_sway(Keys, Place)
PointerOnThePanelOnSway, ShortcutOnSway = on_sway(PointerOnThePanel, Shortcut)


class SearchOnSway(OnSway, Search):
    # No window is brought to the front there while the panel is open.
    test_asked_for_from_outside_it_takes_the_keyboard_back = None


if __name__ == "__main__":
    unittest.main()
