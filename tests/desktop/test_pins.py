# SPDX-License-Identifier: MIT
"""Naming and ordering pins, and the menu of a row."""

import unittest

from harness.panel_case import PanelTestCase
from harness.waiting import stays_true, wait_for
from harness.wayland_case import on_sway

SHEET = "Name Pinned Clip"


class Renaming(PanelTestCase):
    def _open_sheet(self):
        self.open_with_pins(1)
        self.press("Ctrl+r")
        sheet = self.desktop.windows.wait_for_title(SHEET)
        wait_for("the sheet to have the keyboard", lambda: self.desktop.windows.has_focus(sheet))

    def test_a_pinned_entry_gets_a_name_that_stays(self):
        self._open_sheet()
        self.desktop.keyboard.type("my fruit")
        self.press("Return")
        self.vantorel.wait_for_rows(["my fruit", "banana", "apple"])
        wait_for("the name on disk",
                 lambda: self.vantorel.history.items()[0].get("customName") == "my fruit")
        wait_for("the panel to have the keyboard",
                 lambda: self.desktop.windows.has_focus(self.vantorel.panel()))

    def test_escape_leaves_the_name_and_the_panel(self):
        self._open_sheet()
        self.desktop.keyboard.type("other")
        self.press("Escape")
        self.desktop.windows.wait_gone(SHEET)
        self.vantorel.wait_for_rows(["cherry", "banana", "apple"])
        self.assertIsNotNone(self.vantorel.panel())

    def test_the_list_stays_as_it_is_under_the_sheet(self):
        self._open_sheet()
        self.vantorel.copy("date")
        self.assert_rows_stay(["cherry", "banana", "apple"])
        self.press("Escape")
        self.desktop.windows.wait_gone(SHEET)

    def test_a_click_outside_hides_nothing_while_the_sheet_is_open(self):
        self._open_sheet()
        self.desktop.pointer.click(20, self.desktop.size[1] - 20)
        stays_true("the panel", self.vantorel.panel, 0.4)

    def test_the_shortcut_takes_panel_and_sheet_away(self):
        self._open_sheet()
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()
        self.desktop.windows.wait_gone(SHEET)

    def test_an_entry_that_is_not_pinned_cannot_be_named(self):
        self.vantorel.open_panel()
        self.press("Ctrl+r")
        stays_true("no sheet", lambda: not self.desktop.windows.titled(SHEET), 0.4)


class RowMenu(PanelTestCase):
    def test_a_text_offers_what_can_be_done_with_it(self):
        self.vantorel.open_panel()
        self.open_menu_of("banana")
        self.assertEqual(self.menu_titles(), ["Paste as Plain Text", "Pin", "Delete"])
        self.choose("Pin")
        self.vantorel.wait_for_rows(["banana", "cherry", "apple"])
        self.open_menu_of("banana")
        self.assertEqual(self.menu_titles(), ["Paste as Plain Text", "Unpin", "Rename…", "Move Up",
                                              "Move Down", "Delete"])

    def test_delete_deletes_that_row(self):
        self.vantorel.open_panel()
        self.open_menu_of("banana")
        self.choose("Delete")
        self.vantorel.wait_for_rows(["cherry", "apple"])
        self.vantorel.wait_for_texts(["cherry", "apple"])

    def test_paste_as_plain_text_pastes(self):
        self.vantorel.open_panel()
        self.open_menu_of("apple")
        self.choose("Paste as Plain Text")
        self.editor.wait_for_text("apple")

    def test_rename_opens_the_sheet(self):
        self.open_with_pins(1)
        self.open_menu_of("cherry")
        self.choose("Rename…")
        self.desktop.windows.wait_for_title(SHEET)

    def test_pins_move_down(self):
        self.open_with_pins(2)
        self.open_menu_of("cherry")
        self.choose("Move Down")
        self.vantorel.wait_for_rows(["banana", "cherry", "apple"])

    def test_the_panel_stays_when_the_menu_is_left(self):
        self.vantorel.open_panel()
        self.open_menu_of("banana")
        self.press("Escape")
        wait_for("no menu", lambda: self.menu_item("Delete") is None)
        stays_true("the panel", self.vantorel.panel, 0.3)


class Dragging(PanelTestCase):
    def _drag(self, title, onto, offset):
        start = self.vantorel.wait_for_row(title).centre
        end = self.vantorel.wait_for_row(onto).centre
        self.desktop.pointer.drag(start, (end[0], end[1] + offset))

    def test_a_pin_dropped_on_the_upper_half_goes_before(self):
        self.open_with_pins(3)
        self._drag("apple", "cherry", -14)
        self.vantorel.wait_for_rows(["apple", "cherry", "banana"])
        wait_for("the order on disk",
                 lambda: self.vantorel.history.texts() == ["apple", "cherry", "banana"])
        self.assertIsNotNone(self.vantorel.panel())

    def test_a_pin_dropped_on_the_lower_half_goes_after(self):
        self.open_with_pins(3)
        self._drag("cherry", "banana", 14)
        self.vantorel.wait_for_rows(["banana", "cherry", "apple"])

    def test_a_row_that_is_not_pinned_is_pasted_by_the_same_gesture(self):
        self.open_with_pins(1)
        start = self.vantorel.wait_for_row("banana").centre
        self.desktop.pointer.drag(start, (start[0] + 8, start[1]))
        self.editor.wait_for_text("banana")

    def test_a_pin_dropped_elsewhere_stays_and_nothing_is_pasted(self):
        self.open_with_pins(2)
        self._drag("cherry", "apple", 0)
        self.assert_rows_stay(["cherry", "banana", "apple"])
        self.assertEqual(self.editor.text().strip(), "")


RenamingOnSway, RowMenuOnSway, DraggingOnSway = on_sway(Renaming, RowMenu, Dragging)


if __name__ == "__main__":
    unittest.main()
