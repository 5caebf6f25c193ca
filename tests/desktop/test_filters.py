# SPDX-License-Identifier: MIT
"""The filter buttons beside the search field, and their menus."""

import unittest

from harness import applications
from harness.panel_case import PanelTestCase
from harness.pictures import png
from harness.waiting import stays_true, wait_for
from harness.wayland_case import on_sway


class TypeFilter(PanelTestCase):
    def setUp(self):
        super().setUp()
        self.clipboard.own(offers={"image/png": png(120, 80)})
        wait_for("the picture on disk", lambda: self.vantorel.newest().get("kind") == "image")

    def _open_menu(self):
        self.vantorel.open_panel()
        self.press("Ctrl+f")
        self.desktop.pointer.click(*self.vantorel.control("Filter by type").centre())
        wait_for("the menu", lambda: self.menu_item("Images"))

    def test_the_menu_lists_every_type(self):
        self._open_menu()
        self.assertEqual(self.menu_titles(), ["All types", "Text", "Images", "Files", "Videos"])
        self.assertTrue(self.menu_item("All types").checked)

    def test_a_chosen_type_narrows_the_list_until_escape(self):
        self._open_menu()
        self.choose("Images")
        self.vantorel.wait_for_rows(["Image"])
        self.assertEqual(self.vantorel.control("Filter by type").description, "Images")
        self.press("Escape")
        self.vantorel.wait_for_rows(["Image", "cherry", "banana", "apple"])
        self.assertIsNotNone(self.vantorel.panel())
        self.press("Escape")
        self.vantorel.wait_until_hidden()

    def test_escape_clears_text_then_filter_then_the_panel(self):
        self._open_menu()
        self.choose("Text")
        self.vantorel.wait_for_rows(["cherry", "banana", "apple"])
        self.desktop.keyboard.type("an")
        self.vantorel.wait_for_rows(["banana"])
        self.press("Escape")
        self.vantorel.wait_for_rows(["cherry", "banana", "apple"])
        self.press("Escape")
        self.vantorel.wait_for_rows(["Image", "cherry", "banana", "apple"])
        self.press("Escape")
        self.vantorel.wait_until_hidden()

    def test_a_click_beside_the_menu_closes_the_menu_alone(self):
        self._open_menu()
        outside = (30, self.desktop.size[1] - 30)
        self.desktop.pointer.click(*outside)
        wait_for("no menu", lambda: self.menu_item("Images") is None)
        stays_true("the panel to be shown", self.vantorel.panel, 0.3)
        self.desktop.pointer.click(*outside)
        self.vantorel.wait_until_hidden()

    def test_copies_are_taken_while_the_menu_is_open(self):
        self._open_menu()
        self.vantorel.copy("date")
        self.assertIsNotNone(self.menu_item("Images"))

    def test_the_next_opening_starts_without_filters(self):
        self._open_menu()
        self.choose("Images")
        self.vantorel.wait_for_rows(["Image"])
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["Image", "cherry", "banana", "apple"])


class SourceFilter(PanelTestCase):
    def test_the_menu_lists_applications_and_narrows_the_list(self):
        other = applications.qt_editor(self.desktop, self.path("qt.txt"))
        self.desktop.windows.activate(other.window)
        self.vantorel.copy("date")
        source = self.vantorel.newest()["sourceAppName"]
        self.desktop.windows.activate(self.editor.window)
        self.vantorel.open_panel()
        self.press("Ctrl+f")
        self.desktop.pointer.click(*self.vantorel.control("Filter by app").centre())
        wait_for("the menu", lambda: self.menu_item("All apps"))
        self.assertEqual(self.menu_titles(), ["All apps", *sorted(["Mousepad", source],
                                                                  key=str.casefold)])
        self.choose(source)
        self.vantorel.wait_for_rows(["date"])
        self.assertEqual(self.vantorel.control("Filter by app").description, source)


TypeFilterOnSway, SourceFilterOnSway = on_sway(TypeFilter, SourceFilter)


if __name__ == "__main__":
    unittest.main()
