# SPDX-License-Identifier: MIT
"""Hover previews, by a real pointer that rests and moves on."""

import unittest

from harness.panel_case import PanelTestCase
from harness.pictures import png
from harness.waiting import stays_true, wait_for
from harness.wayland_case import on_sway


class TextPreview(PanelTestCase):
    texts = ("apple", "banana", "\n".join(f"line {number} of a long text" for number in range(200)))

    def _rest_on(self, title):
        self.desktop.pointer.move(*self.vantorel.wait_for_row(title).centre)

    def test_a_resting_pointer_shows_the_entry_and_a_leaving_one_ends_it(self):
        self.vantorel.open_panel()
        self._rest_on("banana")
        frame = self.wait_for_preview()
        self.assertEqual(frame[2:], (360, 92))
        self.desktop.pointer.move(2, 2)
        self.wait_for_no_preview()
        self.assertIsNotNone(self.vantorel.panel())

    def test_a_passing_pointer_shows_nothing(self):
        self.vantorel.open_panel()
        self._rest_on("banana")
        self.desktop.pointer.move(2, 2)
        stays_true("no preview", lambda: self.preview() is None, 0.8)

    def test_the_pointer_may_go_into_the_preview_and_back(self):
        panel = self.desktop.windows.frame(self.vantorel.open_panel())
        self._rest_on("banana")
        frame = self.wait_for_preview()
        self.assertGreaterEqual(frame.x, panel.x + panel.width - 20)
        self.desktop.pointer.move(frame.x + 40, frame.y + 40)
        stays_true("the preview", self.preview, 0.8)
        self._rest_on("banana")
        stays_true("the preview", self.preview, 0.8)

    def test_a_click_into_the_preview_leaves_the_panel(self):
        self.vantorel.open_panel()
        self._rest_on("banana")
        frame = self.wait_for_preview()
        self.desktop.pointer.click(frame.x + 40, frame.y + 40)
        stays_true("the panel", self.vantorel.panel, 0.5)

    def test_space_shows_it_at_once_and_escape_takes_it_away_first(self):
        self.vantorel.open_panel()
        self.press("Space")
        self.assertEqual(self.wait_for_preview()[2:], (360, 340))
        self.press("Escape")
        self.wait_for_no_preview()
        stays_true("the panel", self.vantorel.panel, 0.3)
        self.press("Space")
        self.wait_for_preview()
        self.press("Space")
        self.wait_for_no_preview()
        self.press("Escape")
        self.vantorel.wait_until_hidden()

    def test_it_goes_along_with_the_selection_and_away_with_typing(self):
        self.vantorel.open_panel()
        self.press("Space")
        self.wait_for_preview()
        self.press("Down")
        wait_for("the preview of a short text",
                 lambda: (self.preview() or (0,) * 4)[2:] == (360, 92), 20, self.preview)
        self.desktop.keyboard.type("b")
        self.wait_for_no_preview()
        self.vantorel.wait_for_rows(["banana"])

    def test_marked_text_is_copied(self):
        self.vantorel.open_panel()
        self._rest_on("banana")
        frame = self.wait_for_preview()
        self.desktop.pointer.drag((frame.x + 17, frame.y + 24), (frame.x + 200, frame.y + 24))
        self.press("Ctrl+c")
        wait_for("the marked text", lambda: self.clipboard.text() == "banana", 5,
                 self.clipboard.text)
        self.assertIsNotNone(self.vantorel.panel())

    def test_a_text_entered_across_its_symbol_is_shown(self):
        self.vantorel.open_panel()
        x, y, _, height = self.vantorel.wait_for_row("banana").element.extents
        for step in (2, 12, 20, 60):
            self.desktop.pointer.move(x + step, y + height // 2)
        self.wait_for_preview(3)

    def test_a_long_text_scrolls(self):
        self.vantorel.open_panel()
        self.press("Space")
        frame = self.wait_for_preview()
        self.desktop.pointer.move(frame.x + 100, frame.y + 100)
        wait_for("a painted preview", lambda: self.desktop.windows.distinct_colours(frame) > 16)
        before = self.desktop.windows.pixels(frame)
        self.desktop.pointer.click(frame.x + 100, frame.y + 100, button=5)
        wait_for("other lines", lambda: self.desktop.windows.pixels(frame) != before)

    def test_the_list_is_left_alone_while_a_preview_is_shown(self):
        self.vantorel.open_panel()
        self.press("Space")
        self.wait_for_preview()
        titles = wait_for("rows", self.vantorel.row_titles)
        self.vantorel.copy("date")
        self.assert_rows_stay(titles)

    def test_choosing_an_entry_takes_its_preview_away(self):
        self.vantorel.open_panel()
        self._rest_on("banana")
        self.wait_for_preview()
        self.press("Down", "Return")
        self.vantorel.wait_until_hidden()
        self.wait_for_no_preview()
        self.editor.wait_for_text("banana")


class PointerAtRest(PanelTestCase):
    texts = tuple(f"row {number}" for number in range(20))

    def test_one_that_rests_where_the_panel_opens_shows_nothing_until_it_moves(self):
        middle = (self.desktop.size[0] // 2, self.desktop.size[1] // 2)
        self.desktop.pointer.move(*middle)
        self.vantorel.open_panel()
        stays_true("no preview", lambda: self.preview() is None, 0.8)
        self.desktop.pointer.move(middle[0] + 1, middle[1])
        self.wait_for_preview()

    def test_the_row_under_it_is_marked_after_the_wheel_and_after_keys(self):
        self.vantorel.open_panel()
        x, y, _, _ = self.vantorel.wait_for_row("row 14").element.extents
        plain = self.desktop.windows.pixel(x + 200, y + 3)
        self.desktop.pointer.move(x + 300, y + 24)

        def marked():
            return self.desktop.windows.pixel(x + 200, y + 3)

        wait_for("the row's mark", lambda: marked() != plain)
        for what, act in (("a wheel's notch", lambda: self.desktop.pointer.click(x + 300, y + 24, 5)),
                          ("the End key", lambda: self.press("End"))):
            with self.subTest(what):
                act()
                wait_for("three rows to have gone by",
                         lambda: self.vantorel.wait_for_row("row 14").element.extents[1] < y - 100)
                wait_for("the mark under the pointer", lambda: marked() != plain, 5, marked)


class PicturePreview(PanelTestCase):
    texts = ("apple",)

    def setUp(self):
        super().setUp()
        self.clipboard.own(offers={"image/png": png(640, 400, (20, 150, 90))})
        wait_for("the picture on disk", lambda: self.vantorel.newest().get("kind") == "image")

    def test_the_row_shows_the_picture_and_its_thumbnail_opens_the_preview(self):
        self.vantorel.open_panel()
        row = self.vantorel.wait_for_row("Image")
        x, y, _, height = row.element.extents
        middle = (x + 8 + 28, y + height // 2)
        wait_for("the picture in the row", lambda: _green(self.desktop.windows.pixel(
            middle[0] - 15, middle[1] + 8)))
        # The rest of the row opens nothing.
        self.desktop.pointer.move(x + 200, y + height // 2)
        stays_true("no preview", lambda: self.preview() is None, 0.7)
        self.desktop.pointer.move(*middle)
        frame = self.wait_for_preview()
        self.assertEqual(frame[2:], (310, 320))
        wait_for("the picture in the preview", lambda: _green(self.desktop.windows.pixel(
            frame.x + 60, frame.y + 170)))


class PreviewBesideTheEdge(PanelTestCase):
    def test_it_goes_to_the_side_with_more_room(self):
        self.vantorel.open_panel()
        panel = self.vantorel.panel()
        frame = self.desktop.windows.frame(panel)
        # The panel is dragged by its rim to the right edge of the screen.
        right = self.desktop.size[0] - 215
        self.desktop.pointer.carry(
            (frame.x + 200, frame.y + 4), (right, frame.y + 4),
            lambda: self.desktop.windows.frame(panel).x > frame.x + 200)
        moved = self.desktop.windows.frame(panel)
        self.desktop.pointer.move(*self.vantorel.wait_for_row("banana").centre)
        preview = self.wait_for_preview()
        self.assertLessEqual(preview.x + preview.width, moved.x + 20)
        self.assertGreaterEqual(preview.x, 0)

    def test_it_does_not_stay_behind_when_the_panel_is_dragged(self):
        panel = self.vantorel.open_panel()
        frame = self.desktop.windows.frame(panel)
        self.press("Space")
        self.wait_for_preview()
        self.desktop.pointer.carry(
            (frame.x + 200, frame.y + 4), (frame.x + 200, frame.y + 104),
            lambda: self.desktop.windows.frame(panel).y > frame.y + 50)
        self.wait_for_no_preview()


TextPreviewOnSway, PointerAtRestOnSway = on_sway(TextPreview, PointerAtRest)
PicturePreviewOnSway, = on_sway(PicturePreview)


def _green(colour):
    red, green, blue = colour
    return green > red + 40 and green > blue + 20


if __name__ == "__main__":
    unittest.main()
