# SPDX-License-Identifier: MIT
"""The program's icon in trays of the older kind, which take a window of each program in."""

from harness.embedding_tray import EmbeddingTray
from harness.tray import Tray
from harness.tray_case import ALWAYS, HELP, StatusMenuTestCase
from harness.waiting import stays_true, wait_for


def _luminance(colour):
    linear = [value / 255 / 12.92 if value <= 10 else ((value / 255 + 0.055) / 1.055) ** 2.4
              for value in colour]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(one, other):
    brighter, darker = sorted((_luminance(one) + 0.05, _luminance(other) + 0.05), reverse=True)
    return brighter / darker


class _InATray:
    """Every test, once for each of the real trays."""

    autostart = False
    kind = None
    look = {}

    def setUp(self):
        super().setUp()
        self.old = EmbeddingTray(self.desktop, self.kind, **self.look)
        self.vantorel.start()
        self.old.wait_for_shape()

    def pause(self):
        self.old.click(button=3)
        self.wait_for_menu()
        # Pause History, and in its own menu: For 1 Hour.
        for key in ("Down", "Down", "Down", "Right", "Down", "Return"):
            self.desktop.keyboard.tap(key)
        self.vantorel.wait_for_notice("Clipboard history paused for 1 hour.")

    def test_it_stands_out_and_is_called_by_its_state(self):
        self.assertGreaterEqual(sum(any(row) for row in self.old.shape()), 14)
        ink, paper = self.old.ink()
        self.assertGreaterEqual(contrast(ink, paper), 7)
        wait_for("its name", lambda: self.old.title() == "Vantorel")

    def test_its_buttons_do_what_they_do_everywhere(self):
        self.old.click()
        self.vantorel.wait_for_panel()
        self.old.click()
        self.vantorel.wait_until_hidden()
        self.old.click(button=2)
        self.vantorel.wait_for_panel()
        wait_for("the search field", lambda: self.vantorel.search_text() == "")

    def test_a_press_on_it_is_none_outside_of_the_panel(self):
        self.vantorel.open_panel()
        self.desktop.pointer.hold(*self.old.centre(), lambda: stays_true(
            "the panel to be shown", lambda: self.vantorel.panel() is not None, 0.5))
        self.vantorel.wait_until_hidden()
        stays_true("the panel to be hidden", lambda: self.vantorel.panel() is None, 0.3)

    def test_its_menu_comes_beside_it_and_does_its_work(self):
        x, y, width, _ = self.old.icon()
        self.old.click(button=3)
        frame = self.wait_for_menu()
        self.assertLessEqual(frame.y, y)
        self.assertGreaterEqual(frame.y + frame.height, y - 4)
        self.assertLess(frame.x, x + width)
        self.assertGreater(frame.x + frame.width, x)
        self.desktop.keyboard.tap("Up")
        self.desktop.keyboard.tap("Up")
        self.desktop.keyboard.tap("Return")
        self.desktop.windows.wait_for_title(HELP)

    def test_a_pause_has_another_picture_and_another_name(self):
        before = self.old.shape()
        self.pause()
        wait_for("another picture", lambda: self.old.shape() != before)
        wait_for("another name", lambda: self.old.title() == "Vantorel — History Paused")

    def test_it_is_back_in_each_tray_that_comes_and_gone_with_the_program(self):
        for _ in range(2):
            self.old.stop()
            wait_for("no icon anywhere", lambda: not self.old.icons())
            self.old.start()
            self.old.wait_for_shape()
        self.assertEqual(self.vantorel.quit(), 0)
        self.old.wait_gone()
        self.vantorel.start()
        self.old.wait_for_shape()

    def test_a_tray_that_speaks_of_items_has_it_alone_as_long_as_it_is_there(self):
        newer = Tray(self.desktop)
        newer.wait_for_item()
        self.assertEqual(newer.labels(), ALWAYS)
        self.old.wait_gone()
        stays_true("the icon to be in one tray", lambda: not self.old.icons(), 0.5)
        newer.stop()
        self.old.wait_for_shape()


    def test_the_check_names_its_kind(self):
        self.assertIn("yes  Tray              there, of the older kind (XEmbed)", self.check())
        newer = Tray(self.desktop)
        self.assertIn("yes  Tray              there, for StatusNotifier items", self.check())
        newer.stop()

    def check(self):
        return self.vantorel.command("--check").stdout.decode()


class Tint2(_InATray, StatusMenuTestCase):
    kind = "tint2"


class LightTint2(_InATray, StatusMenuTestCase):
    kind = "tint2"
    look = {"colour": "#f4f4f4", "position": "top"}

    def test_its_menu_comes_beside_it_and_does_its_work(self):
        _, y, _, height = self.old.icon()
        self.old.click(button=3)
        frame = self.wait_for_menu()
        self.assertEqual(frame.y, y + height + 3)
        self.dismiss_menu()


class Trayer(_InATray, StatusMenuTestCase):
    kind = "trayer"


class Hosts(StatusMenuTestCase):
    """Who collects items of the newer kind may not show them."""

    autostart = False

    def setUp(self):
        super().setUp()
        self.old = EmbeddingTray(self.desktop, "tint2")

    def test_it_is_where_it_is_seen(self):
        newer = Tray(self.desktop, host=False)
        self.vantorel.start()
        newer.wait_for_item()
        self.old.wait_for_shape()
        newer.set_host(True)
        self.old.wait_gone()
        newer.set_host(False)
        self.old.wait_for_shape()

    def test_one_that_does_not_answer_shows_nothing(self):
        newer = Tray(self.desktop)
        newer.fall_silent()
        self.vantorel.start()
        self.old.wait_for_shape()
        newer.speak_again()
        self.old.wait_gone()
        newer.stop()
        self.old.wait_for_shape()

    def test_it_is_seen_while_the_bus_is_gone(self):
        newer = Tray(self.desktop)
        self.vantorel.start()
        newer.wait_for_item()
        self.desktop.bus.stop()
        self.old.wait_for_shape()


class SharpScreen(StatusMenuTestCase):
    """Two pixels for each point."""

    autostart = False
    desktop_options = {"scale": 2}

    def test_the_icon_is_as_large_as_the_tray_makes_it(self):
        tray = EmbeddingTray(self.desktop, "tint2", height=60)
        self.vantorel.start()
        tray.wait_for_shape()
        _, _, width, height = tray.icon()
        self.assertEqual(width, height)
        self.assertGreaterEqual(height, 40)
        ink, paper = tray.ink()
        self.assertGreaterEqual(contrast(ink, paper), 7)
